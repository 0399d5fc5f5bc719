// TPinyinWrapper.h: Han characters to Mandarin pinyin, for display and for the sort and search
// keys of Chinese names. The readings come from the Unihan database (kMandarin, then
// kHanyuPinyin, then kXHC1983), packed into a table built into the library; every CJK unified
// ideograph with a reading there has one, inside and outside the Basic Multilingual Plane.
//
// Styles of a syllable:
//   ToneMarks    "lǚ", "zhōng" (UTF-8 text as the dictionary spells it)
//   ToneNumbers  "lv3", "zhong1": ASCII, 'v' for u-umlaut, tone 5 for the neutral tone ("de5")
//   Plain        "lv", "zhong": ASCII without tone
//   Initials     "l", "z": the first letter of the plain syllable
//
// A character with several readings gives its most common one first (index 0); text conversion
// always uses that one. In text, every character with a reading becomes its syllable and
// everything else is copied unchanged (bytes that are not valid UTF-8, lone surrogates
// included). The separator goes between two syllables and between a syllable and an adjacent
// ASCII letter or digit; nothing is added next to spaces, punctuation or other characters.
//
//   zeb::TPinyinWrapper::fromUTF8("张三", -1);                                  // "zhāng sān"
//   zeb::TPinyinWrapper::fromUTF8("重庆ABC", -1, zeb::TPinyinWrapper::Plain, ""); // "zhongqingABC"
//   zeb::TPinyinWrapper::fromUTF8("张三", -1, zeb::TPinyinWrapper::Initials, ""); // "zs"
//   zeb::TPinyinWrapper::readingCount(0x884C);                                  // 行: 5
//
// A text ends at its first NUL even within the length given.
//
// Neutral results: a code point without a reading has 0 readings and an empty reading; a null
// text gives an empty result; an unknown style counts as ToneMarks.
#ifndef ZEB_FORMATS_TPINYINWRAPPER_H
#define ZEB_FORMATS_TPINYINWRAPPER_H

#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/zeb_api.h"

namespace zeb {

class ZEB_API TPinyinWrapper {
 public:
  enum tpinyinStyle { ToneMarks = 0, ToneNumbers = 1, Plain = 2, Initials = 3 };

  // The number of readings of a code point; 0 when it has none.
  static int readingCount(unsigned codePoint);
  // Reading `index` (0 the most common) in `style`, UTF-8; "" when there is no such reading.
  static TAnsiString reading(unsigned codePoint, int index = 0, int style = ToneMarks);
  // Every reading in `style`, most common first, joined by `separator` (null counts as "").
  // Readings that look the same in that style (two tones in Plain) appear once.
  static TAnsiString allReadings(unsigned codePoint, int style = ToneMarks,
                                 const char* separator = ",");

  // UTF-8 text of `length` bytes (negative: up to its NUL) to UTF-8 pinyin.
  static TAnsiString fromUTF8(const char* text, int length = -1, int style = ToneMarks,
                              const char* separator = " ");
  // UTF-16 text of `length` units (negative: up to its NUL) to UTF-16 pinyin.
  static TWideString fromUTF16(const zwchar_t* text, int length = -1, int style = ToneMarks,
                               const zwchar_t* separator = ZW(" "));
  // GB2312 text (GBK and GB18030 accepted too) of `length` bytes (negative: up to its NUL) to
  // UTF-8 pinyin. Text that does not decode as GB18030 gives "".
  static TAnsiString fromGB2312(const char* text, int length = -1, int style = ToneMarks,
                                const char* separator = " ");
};

}  // namespace zeb

#endif  // ZEB_FORMATS_TPINYINWRAPPER_H

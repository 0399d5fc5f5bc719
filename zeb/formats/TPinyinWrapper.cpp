// TPinyinWrapper.cpp: lookups in the packed reading table and the conversion of text.

#include "zeb/formats/TPinyinWrapper.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "zeb/charset/zeb_charset.h"
#include "zeb/strings/zeb_cstr.h"

namespace zeb {
namespace {

struct PinyinRun {
  unsigned first;
  unsigned short count;
  unsigned slot;
};

#include "zeb/formats/internal/pinyin_table.inc"

constexpr unsigned kListFlag = 0x8000;
constexpr unsigned kMaxReadings = 16;

// The reading ids of a code point, most common first; returns their number (0 without any).
int readingIds(unsigned codePoint, unsigned short (&ids)[kMaxReadings]) {
  const PinyinRun* end = kPinyinRuns + sizeof kPinyinRuns / sizeof kPinyinRuns[0];
  const PinyinRun* run = std::upper_bound(
      kPinyinRuns, end, codePoint, [](unsigned cp, const PinyinRun& r) { return cp < r.first; });
  if (run == kPinyinRuns || codePoint - (run - 1)->first >= (run - 1)->count) return 0;
  --run;
  const unsigned slot = kPinyinSlots[run->slot + (codePoint - run->first)];
  if (slot == 0) return 0;
  if (slot < kListFlag) {
    ids[0] = static_cast<unsigned short>(slot - 1);
    return 1;
  }
  const unsigned short* list = kPinyinLists + (slot - kListFlag);
  const int count = std::min<int>(list[0], kMaxReadings);
  std::copy(list + 1, list + 1 + count, ids);
  return count;
}

// The syllable of one reading in a style, appended to `out` (UTF-8).
void appendReading(TAnsiString& out, unsigned id, int style) {
  const unsigned packed = kPinyinReadings[id];
  const char* plain = kPinyinSyllables[packed / 8];
  switch (style) {
    case TPinyinWrapper::ToneNumbers:
      out.append(plain);
      out.appendChar(static_cast<char>('0' + packed % 8));
      break;
    case TPinyinWrapper::Plain:
      out.append(plain);
      break;
    case TPinyinWrapper::Initials:
      out.appendChar(plain[0]);
      break;
    default:
      out.append(kPinyinToned[id]);
  }
}

bool isAsciiAlnum(unsigned c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// One decoded character of the input: its code point (or the raw unit when it does not decode)
// and how many units it spans.
struct Decoded {
  unsigned codePoint;
  int units;
  bool valid;
};

Decoded decodeUtf8(const unsigned char* s, int left) {
  const unsigned lead = s[0];
  if (lead < 0x80) return {lead, 1, true};
  int extra = lead >= 0xF0 && lead <= 0xF4 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : -1;
  if (lead >= 0xF5 || extra < 0 || extra >= left) return {lead, 1, false};
  unsigned cp = lead & (0x3F >> extra);
  for (int i = 1; i <= extra; ++i) {
    if ((s[i] & 0xC0) != 0x80) return {lead, 1, false};
    cp = cp << 6 | (s[i] & 0x3F);
  }
  static const unsigned kMinimum[] = {0, 0x80, 0x800, 0x10000};
  if (cp < kMinimum[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
    return {lead, 1, false};
  }
  return {cp, extra + 1, true};
}

Decoded decodeUtf16(const zwchar_t* s, int left) {
  const unsigned unit = static_cast<unsigned>(s[0]);
  if (unit >= 0xD800 && unit <= 0xDBFF && left > 1) {
    const unsigned low = static_cast<unsigned>(s[1]);
    if (low >= 0xDC00 && low <= 0xDFFF) {
      return {0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00), 2, true};
    }
  }
  return {unit, 1, !(unit >= 0xD800 && unit <= 0xDFFF)};
}

// Where the output goes: raw input units copied as they are, syllables and separators added.
// The text grows in a standard string (the library's strings measure themselves on every append).
struct Utf8Output {
  std::string text;
  const char* separator;
  void copy(const char* units, int count) { text.append(units, count); }
  void addSyllable(const TAnsiString& syllable) { text.append(syllable.p()); }
  void addSeparator() {
    if (separator != nullptr) text.append(separator);
  }
  TAnsiString result() const { return TAnsiString(text.data(), static_cast<int>(text.size())); }
};

struct Utf16Output {
  std::basic_string<zwchar_t> text;
  const zwchar_t* separator;
  void copy(const zwchar_t* units, int count) { text.append(units, count); }
  // Pinyin letters are all in the BMP.
  void addSyllable(const TAnsiString& syllable) {
    const auto* s = reinterpret_cast<const unsigned char*>(syllable.p());
    const int length = syllable.length();
    for (int i = 0; i < length;) {
      const Decoded d = decodeUtf8(s + i, length - i);
      text.push_back(static_cast<zwchar_t>(d.codePoint));
      i += d.units;
    }
  }
  void addSeparator() {
    if (separator != nullptr) text.append(separator);
  }
  TWideString result() const { return TWideString(text.data(), static_cast<int>(text.size())); }
};

template <typename Unit, typename Output, typename Decode>
void convertText(const Unit* text, int length, int style, Output& out, Decode decode) {
  enum { Start, Syllable, Alnum, Other } previous = Start;
  unsigned short ids[kMaxReadings];
  TAnsiString syllable;
  for (int i = 0; i < length && text[i] != 0;) {
    const Decoded d = decode(text + i, length - i);
    if (d.valid && readingIds(d.codePoint, ids) > 0) {
      if (previous == Syllable || previous == Alnum) out.addSeparator();
      syllable.setText("");
      appendReading(syllable, ids[0], style);
      out.addSyllable(syllable);
      previous = Syllable;
    } else {
      const bool alnum = d.valid && isAsciiAlnum(d.codePoint);
      if (alnum && previous == Syllable) out.addSeparator();
      out.copy(text + i, d.units);
      previous = alnum ? Alnum : Other;
    }
    i += d.units;
  }
}

}  // namespace

int TPinyinWrapper::readingCount(unsigned codePoint) {
  unsigned short ids[kMaxReadings];
  return readingIds(codePoint, ids);
}

TAnsiString TPinyinWrapper::reading(unsigned codePoint, int index, int style) {
  unsigned short ids[kMaxReadings];
  TAnsiString out;
  if (index >= 0 && index < readingIds(codePoint, ids)) appendReading(out, ids[index], style);
  return out;
}

TAnsiString TPinyinWrapper::allReadings(unsigned codePoint, int style, const char* separator) {
  unsigned short ids[kMaxReadings];
  const int count = readingIds(codePoint, ids);
  std::vector<TAnsiString> seen;
  TAnsiString out;
  for (int i = 0; i < count; ++i) {
    TAnsiString one;
    appendReading(one, ids[i], style);
    if (std::find(seen.begin(), seen.end(), one) != seen.end()) continue;
    if (!seen.empty()) out.append(separator);
    out.append(one);
    seen.push_back(one);
  }
  return out;
}

TAnsiString TPinyinWrapper::fromUTF8(const char* text, int length, int style,
                                     const char* separator) {
  Utf8Output out{std::string(), separator};
  if (text == nullptr) return TAnsiString();
  if (length < 0) length = static_cast<int>(std::strlen(text));
  convertText(text, length, style, out, [](const char* s, int left) {
    return decodeUtf8(reinterpret_cast<const unsigned char*>(s), left);
  });
  return out.result();
}

TWideString TPinyinWrapper::fromUTF16(const zwchar_t* text, int length, int style,
                                      const zwchar_t* separator) {
  Utf16Output out{std::basic_string<zwchar_t>(), separator};
  if (text == nullptr) return TWideString();
  if (length < 0) length = static_cast<int>(zeb_wcslen(text));
  convertText(text, length, style, out, decodeUtf16);
  return out.result();
}

TAnsiString TPinyinWrapper::fromGB2312(const char* text, int length, int style,
                                       const char* separator) {
  if (text == nullptr) return TAnsiString();
  if (length < 0) length = static_cast<int>(std::strlen(text));
  if (length == 0) return TAnsiString();
  // A GB18030 character of n bytes is at most n + n/2 bytes of UTF-8; one more for the NUL.
  std::vector<char> utf8(static_cast<size_t>(length) * 2 + 2);
  const int n = AnyToAny("UTF-8", "gb18030", utf8.data(), static_cast<int>(utf8.size()), text,
                         length);
  if (n <= 0) return TAnsiString();
  return fromUTF8(utf8.data(), n, style, separator);
}

}  // namespace zeb

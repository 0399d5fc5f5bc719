// The transcoder against iconv: every conversion convertText and convertTextReplacing take on the
// fast path must give iconv's result, return value and output bytes, at every output size.
#include "zeb/charset/internal/text_conversion.h"

#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "zeb/charset/internal/utf_transcoder.h"
#include "zeb/charset/zeb_charset.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"

namespace {

using namespace zeb::charset;
using WString = std::basic_string<zwchar_t>;

constexpr CharsetName kUtf8 = fixedName("UTF-8");
constexpr CharsetName kUtf16 = fixedName(kHostUtf16);
constexpr unsigned char kUntouched = 0xA5;

// What a conversion left: its result and every byte of the output buffer.
struct Outcome {
  size_t written;
  bool ok;
  std::vector<unsigned char> buffer;

  bool operator==(const Outcome& other) const {
    return written == other.written && ok == other.ok && buffer == other.buffer;
  }
};

// The input lies in memory aligned for units, as the library's callers pass it.
template <typename Run>
Outcome outcomeOf(const std::string& in, size_t outBytes, Run&& run) {
  const WString aligned((in.size() + 1) / 2, 0);
  memcpy(const_cast<zwchar_t*>(aligned.data()), in.data(), in.size());
  std::vector<zwchar_t> out(outBytes / 2 + 1, static_cast<zwchar_t>(kUntouched * 0x101));
  Outcome outcome{};
  run(aligned.data(), in.size(), out.data(), outBytes, outcome);
  const auto* bytes = reinterpret_cast<const unsigned char*>(out.data());
  outcome.buffer.assign(bytes, bytes + out.size() * 2);
  return outcome;
}

Outcome discarding(bool fast, CharsetName to, CharsetName from, const std::string& in,
                   size_t outBytes) {
  return outcomeOf(in, outBytes,
                   [&](const void* src, size_t n, void* dst, size_t size, Outcome& outcome) {
                     const ConvertResult r = fast ? convertText(to, from, src, n, dst, size)
                                                  : convertDiscarding(to, from, src, n, dst, size);
                     outcome.written = r.written;
                     outcome.ok = r.ok;
                   });
}

size_t oneByte(const unsigned char*, size_t) {
  return 1;
}
const char kQuestionMark = '?';
const Replacement kReplacement{&kQuestionMark, 1, oneByte};

Outcome replacing(bool fast, CharsetName to, CharsetName from, const std::string& in,
                  size_t outBytes) {
  return outcomeOf(
      in, outBytes, [&](const void* src, size_t n, void* dst, size_t size, Outcome& outcome) {
        outcome.written = fast ? convertTextReplacing(to, from, src, n, dst, size, kReplacement)
                               : convertReplacing(to, from, src, n, dst, size, kReplacement);
        outcome.ok = outcome.written != kConversionFailed;
      });
}

// Both conversions of `in` `to` <- `from`, fast path against iconv, into outputs of every size
// from 0 to a little past the largest the text can need.
void expectSameAsIconv(CharsetName to, CharsetName from, const std::string& in) {
  const WString aligned((in.size() + 1) / 2, 0);
  memcpy(const_cast<zwchar_t*>(aligned.data()), in.data(), in.size());
  ASSERT_EQ(convertTextReplacing(to, from, aligned.data(), in.size(), nullptr, 0, kReplacement),
            convertReplacing(to, from, aligned.data(), in.size(), nullptr, 0, kReplacement))
      << "measuring " << from.text << " -> " << to.text << ", " << in.size() << " bytes";
  const size_t largest = 2 * in.size() + 8;
  for (size_t size = 0; size <= largest; ++size) {
    ASSERT_EQ(discarding(true, to, from, in, size), discarding(false, to, from, in, size))
        << from.text << " -> " << to.text << ", " << in.size() << " bytes into " << size;
    ASSERT_EQ(replacing(true, to, from, in, size), replacing(false, to, from, in, size))
        << from.text << " -> " << to.text << ", " << in.size() << " bytes into " << size;
  }
}

std::string bytesOf(const WString& units) {
  return std::string(reinterpret_cast<const char*>(units.data()), units.size() * 2);
}

// Every sequence length and the code points on both sides of each boundary, one per line:
// U+0000, U+007F/0080, U+07FF/0800, U+D7FF/E000, U+FFFD, U+FFFE, U+FFFF/10000, U+10FFFF.
const std::string kBoundaryUtf8[] = {
    std::string(1, '\0'), "\x7F",         "\xC2\x80",         "\xDF\xBF",
    "\xE0\xA0\x80",       "\xED\x9F\xBF", "\xEE\x80\x80",     "\xEF\xBF\xBD",
    "\xEF\xBF\xBE",       "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF",
    "\xEF\xBB\xBF",  // a byte-order mark is an ordinary character
};
const WString kBoundaryUtf16[] = {
    WString(1, 0),
    u"\u007F",
    u"\u0080",
    u"\u07FF",
    u"\u0800",
    u"\uD7FF",
    u"\uE000",
    u"\uFFFD",
    u"\uFFFE",
    u"\uFFFF",
    WString{0xD800, 0xDC00},
    WString{0xDBFF, 0xDFFF},
    u"\uFEFF",
};

// What the transcoders must leave to iconv.
const std::string kRejectedUtf8[] = {
    "\x80",
    "\xBF",
    "\xC0\x80",
    "\xC1\xBF",
    "\xE0\x80\x80",
    "\xE0\x9F\xBF",
    "\xF0\x80\x80\x80",
    "\xF0\x8F\xBF\xBF",
    "\xED\xA0\x80",
    "\xED\xBF\xBF",
    "\xF4\x90\x80\x80",
    "\xF5\x80\x80\x80",
    "\xFE",
    "\xFF",
    "\xC2\x41",
    "\xE4\xB8\x41",
    "\xF0\x90\x80\x41",
    std::string(70, '\x80'),  // more continuation bytes than a vector block holds
};
const WString kRejectedUtf16[] = {
    WString{0xD800},         WString{0xDBFF, 0x0041},         WString{0xDC00},
    WString{0xDFFF, 0xD800}, WString{0xD800, 0xD800, 0xDC00}, WString(20, 0xDC00),
};

// `piece` after `offset` ASCII letters and before a few more, so that it falls at every place of
// a vector block.
template <typename Text>
Text placed(const Text& piece, size_t offset) {
  Text text;
  for (size_t i = 0; i < offset; ++i) text += static_cast<typename Text::value_type>('a' + i % 26);
  return text + piece + Text(5, static_cast<typename Text::value_type>('z'));
}

// Each test runs once with every kind of vector code this processor has.
class EveryVectorCode : public ::testing::TestWithParam<VectorCode> {
 protected:
  void SetUp() override {
    if (GetParam() > bestVectorCode()) GTEST_SKIP() << "not on this processor";
    useVectorCode(GetParam());
  }
  void TearDown() override { useVectorCode(bestVectorCode()); }
};

std::string nameOf(const ::testing::TestParamInfo<VectorCode>& info) {
  static const char* const kNames[] = {"Sse2", "Ssse3", "Avx2", "Avx512"};
  return kNames[static_cast<int>(info.param)];
}

using UtfTranscoder = EveryVectorCode;
using TextConversion = EveryVectorCode;

TEST_P(UtfTranscoder, DecodesEveryLengthAndBoundary) {
  const std::string text = std::string("A\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80", 10) + '\0' + "z";
  zwchar_t out[8];
  ASSERT_EQ(utf8ToUtf16(text.data(), text.size(), out, 8), 7u);
  EXPECT_EQ(WString(out, 7), (WString{u'A', 0xE9, 0x4E2D, 0xD83D, 0xDE00, 0, u'z'}));
  char back[16];
  ASSERT_EQ(utf16ToUtf8(out, 7, back, sizeof back), text.size());
  EXPECT_EQ(std::string(back, text.size()), text);
}

TEST_P(UtfTranscoder, GivesUpOnWhatIconvDiscards) {
  zwchar_t wide[16];
  for (const std::string& bad : kRejectedUtf8) {
    EXPECT_EQ(utf8ToUtf16(bad.data(), bad.size(), wide, 16), kNotTranscoded) << bad;
  }
  for (const std::string& good : kBoundaryUtf8) {
    for (size_t cut = 1; cut < good.size(); ++cut) {
      EXPECT_EQ(utf8ToUtf16(good.data(), cut, wide, 16), kNotTranscoded) << good << " cut";
    }
  }
  char narrow[16];
  for (const WString& bad : kRejectedUtf16) {
    EXPECT_EQ(utf16ToUtf8(bad.data(), bad.size(), narrow, 16), kNotTranscoded);
  }
}

TEST_P(UtfTranscoder, StopsWhereTheOutputEnds) {
  const std::string text = "ab\xE4\xB8\xAD";  // 3 units
  zwchar_t wide[3] = {1, 1, 1};
  EXPECT_EQ(utf8ToUtf16(text.data(), text.size(), wide, 2), kNotTranscoded);
  EXPECT_EQ(wide[2], 1);  // nothing past the room given
  const WString units{u'a', 0x4E2D};
  char narrow[4] = {1, 1, 1, 1};
  EXPECT_EQ(utf16ToUtf8(units.data(), units.size(), narrow, 3), kNotTranscoded);
  EXPECT_EQ(std::string(narrow, 4), std::string("a\x01\x01\x01", 4));  // no partial character
}

TEST_P(TextConversion, Utf8MatchesIconvAtEveryPlaceAndSize) {
  for (size_t offset = 0; offset <= 34; ++offset) {
    for (const std::string& piece : kBoundaryUtf8) {
      const std::string text = placed(piece, offset);
      expectSameAsIconv(kUtf16, kUtf8, text);
      expectSameAsIconv(kUtf16, kUtf8, text.substr(0, offset + piece.size() - 1));  // cut short
    }
    for (const std::string& bad : kRejectedUtf8)
      expectSameAsIconv(kUtf16, kUtf8, placed(bad, offset));
  }
}

TEST_P(TextConversion, Utf16MatchesIconvAtEveryPlaceAndSize) {
  for (size_t offset = 0; offset <= 34; ++offset) {
    for (const WString& piece : kBoundaryUtf16) {
      expectSameAsIconv(kUtf8, kUtf16, bytesOf(placed(piece, offset)));
    }
    for (const WString& bad : kRejectedUtf16) {
      expectSameAsIconv(kUtf8, kUtf16, bytesOf(placed(bad, offset)));
    }
  }
}

// CJK with spaces, where the encoder takes 8 units at a time, `length` units of it.
WString cjkText(size_t length) {
  WString cjk;
  for (size_t i = 0; i < length; ++i) cjk += i % 5 == 4 ? u' ' : static_cast<zwchar_t>(0x4E00 + i);
  return cjk;
}

// The same text in UTF-8, where the decoder takes up to 64 bytes at a time.
std::string cjkUtf8(size_t length) {
  const WString units = cjkText(length);
  std::string text(3 * units.size(), '\0');
  text.resize(utf16ToUtf8(units.data(), units.size(), &text[0], text.size()));
  return text;
}

// Every boundary character, every rejected sequence and every cut-short one at every place of a
// 64-byte block of such text, and the same at its end.
TEST_P(TextConversion, Utf8AmongCjkMatchesIconv) {
  const std::string tail = cjkUtf8(30);
  for (size_t length = 0; length <= 26; ++length) {
    const std::string cjk = cjkUtf8(length);
    for (const std::string& piece : kBoundaryUtf8) {
      expectSameAsIconv(kUtf16, kUtf8, cjk + piece + tail);
      expectSameAsIconv(kUtf16, kUtf8, cjk + piece.substr(0, piece.size() - 1));
    }
    for (const std::string& bad : kRejectedUtf8) {
      expectSameAsIconv(kUtf16, kUtf8, cjk + bad);
      expectSameAsIconv(kUtf16, kUtf8, cjk + bad + tail);
    }
  }
}

// Every boundary character and every unpaired surrogate at every place in and after such text.
TEST_P(TextConversion, Utf16AmongCjkMatchesIconv) {
  const WString tail = cjkText(24);
  for (size_t length = 0; length <= 40; ++length) {
    const WString cjk = cjkText(length);
    for (const WString& piece : kBoundaryUtf16) {
      expectSameAsIconv(kUtf8, kUtf16, bytesOf(cjk + piece + tail));
    }
    for (const WString& bad : kRejectedUtf16) {
      expectSameAsIconv(kUtf8, kUtf16, bytesOf(cjk + bad));
      expectSameAsIconv(kUtf8, kUtf16, bytesOf(cjk + bad + tail));
    }
  }
}

TEST_P(TextConversion, LongMixedTextMatchesIconv) {
  std::string text;
  for (int i = 0; text.size() < 300; ++i) text += i % 3 ? "line of ascii text, " : "中文数据€ü😀";
  expectSameAsIconv(kUtf16, kUtf8, text);
  WString wide(text.size() + 4, 0);
  wide.resize(static_cast<size_t>(StrUtf8ToUnicode(&wide[0], static_cast<int>(wide.size()),
                                                   text.data(), static_cast<int>(text.size()))));
  expectSameAsIconv(kUtf8, kUtf16, bytesOf(wide));
}

// The measures go over long text in pieces, which must never cut a character or a pair: valid
// text is measured by the transcoder itself, as iconv measures it; invalid text is refused.
TEST_P(UtfTranscoder, MeasuresLongTextInWholeCharacters) {
  const std::string pieces[] = {"\xE4\xB8\xAD", "\xF0\x9F\x98\x80", "\xC3\xA9"};
  for (const std::string& piece : pieces) {
    for (size_t lead = 0; lead < 4; ++lead) {
      std::string utf8(lead, 'a');
      while (utf8.size() < 7000) utf8 += piece;
      const size_t units = utf8ToUtf16Length(utf8.data(), utf8.size());
      ASSERT_EQ(2 * units, convertReplacing(kUtf16, kUtf8, utf8.data(), utf8.size(), nullptr, 0,
                                            kReplacement));
      WString wide(units, 0);
      ASSERT_EQ(utf8ToUtf16(utf8.data(), utf8.size(), &wide[0], units), units);
      EXPECT_EQ(utf16ToUtf8Length(wide.data(), wide.size()), utf8.size());
      EXPECT_EQ(utf8ToUtf16Length((utf8 + "\xE4\xB8").data(), utf8.size() + 2), kNotTranscoded);
      EXPECT_EQ(utf16ToUtf8Length((wide + WString(1, 0xD800)).data(), wide.size() + 1),
                kNotTranscoded);
    }
  }
}

TEST_P(TextConversion, OtherNamesAndOddUnitsStayWithIconv) {
  expectSameAsIconv(kUtf8, kUtf16, std::string("a\0b", 3));  // half a unit at the end
  expectSameAsIconv(callerName("utf-16le"), callerName("utf-8"), "caf\xC3\xA9");
  expectSameAsIconv(fixedName("gb2312"), kUtf8, "\xE4\xB8\xAD");
}

// The exported functions and members reach the transcoder and keep their own rules around it.
TEST_P(TextConversion, EntryPointsGiveTheIconvText) {
  const std::string utf8 = "path/\xE4\xB8\xAD\xE6\x96\x87/\xF0\x9F\x98\x80.txt";
  const WString utf16 = u"path/\u4E2D\u6587/\U0001F600.txt";
  EXPECT_EQ(TWideString(utf8.c_str(), MIB_UTF8).p(), utf16);
  EXPECT_EQ(std::string(TWideString(utf16.c_str()).utf8().p()), utf8);
  zwchar_t wide[64];
  ASSERT_EQ(AnyToUnicode("utf-8", wide, 64, utf8.data(), -1), static_cast<int>(utf16.size()));
  EXPECT_EQ(wide[utf16.size()], 0);
  char narrow[64];
  ASSERT_EQ(StrUnicodeToAny("UTF-8", narrow, 64, utf16.c_str()), static_cast<int>(utf8.size()));
  EXPECT_EQ(narrow[63], '\0');  // zero-filled to the end
  const unsigned saved = zeb_getAnsiCodePage();
  zeb_setAnsiCodePage(65001);
  EXPECT_EQ(StrANSIToUnicode(wide, 64, utf8.c_str()), static_cast<int>(utf16.size()) + 1);
  EXPECT_EQ(WString(wide), utf16);
  EXPECT_EQ(StrUnicodeToANSI(narrow, 64, utf16.c_str()), static_cast<int>(utf8.size()) + 1);
  EXPECT_EQ(std::string(narrow), utf8);
  EXPECT_EQ(StrUnicodeToANSI(narrow, static_cast<int>(utf8.size()), utf16.c_str()), 0);
  zeb_setAnsiCodePage(saved);
}

INSTANTIATE_TEST_SUITE_P(, UtfTranscoder,
                         ::testing::Values(VectorCode::kSse2, VectorCode::kSsse3, VectorCode::kAvx2,
                                           VectorCode::kAvx512),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(, TextConversion,
                         ::testing::Values(VectorCode::kSse2, VectorCode::kSsse3, VectorCode::kAvx2,
                                           VectorCode::kAvx512),
                         nameOf);

}  // namespace

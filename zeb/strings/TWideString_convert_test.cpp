// Tests of TWideString's conversion members: the conversion each charset selects, known text in
// each charset, surrogate pairs through UTF-8, buffer sizes, and what a failed conversion leaves.
// The ANSI code page conversions are tested with TAnsiString's (TAnsiString_convert_test.cpp).

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "zeb/strings/TWideString.h"

namespace {

using Units = std::basic_string<zwchar_t>;

Units units(const TWideString& s) {
  return s.isEmpty() ? Units() : Units(s.p());
}

TEST(TWideStringFromCharset, ConstructorsConvertKnownText) {
  const struct {
    tmibcharset cs;
    const char* bytes;
    const zwchar_t* expected;
  } cases[] = {
      {MIB_UTF8, "\xE4\xB8\xAD\xE6\x96\x87", ZW("\u4E2D\u6587")},
      {MIB_GB2312, "\xD6\xD0\xCE\xC4", ZW("\u4E2D\u6587")},
      {114, "\x94\x39\xFC\x36", ZW("\U0001F600")},     // GB18030, four bytes
      {2026, "\xA4\xA4\xA4\xE5", ZW("\u4E2D\u6587")},  // Big5
      {MIB_ASCII,
       "ab\x80"
       "c",
       ZW("ab")},  // the quick ASCII copy
  };
  for (const auto& c : cases) {
    EXPECT_EQ(units(TWideString(c.bytes, c.cs)), c.expected) << c.cs;
    EXPECT_EQ(units(TWideString(TAnsiString(c.bytes), c.cs)), c.expected) << c.cs;
  }
}

TEST(TWideStringFromUTF8, SurrogatePairsSurviveTheRoundTrip) {
  TWideString s;
  EXPECT_TRUE(s.fromUTF8("\xF0\x9F\x98\x80"));
  EXPECT_EQ(units(s), Units({0xD83D, 0xDE00}));
  EXPECT_EQ(s.getCapacity(), 2 * 4 + 4);
  s.append(ZW("\u4E2D"));
  EXPECT_EQ(std::string(s.utf8().p()), "\xF0\x9F\x98\x80\xE4\xB8\xAD");
  EXPECT_TRUE(TWideString(ZW("a\xD800")).utf8().isEmpty());  // unpaired surrogate
}

TEST(TWideStringFromUTF8, FailureDiscardsTheOldContent) {
  TWideString s(ZW("old"));
  EXPECT_FALSE(s.fromUTF8("a\xFF"));
  EXPECT_NE(s.getBuffer(), nullptr);
  EXPECT_EQ(units(s), Units());
  s = ZW("old");
  EXPECT_FALSE(s.fromUTF8(nullptr));
  EXPECT_EQ(s.getBuffer(), nullptr);
}

TEST(TWideStringFromGB3212, FailureKeepsTheOldContent) {
  TWideString s(ZW("old"));
  EXPECT_FALSE(s.fromGB3212("\xFF\xFF"));
  EXPECT_FALSE(s.fromGB3212(""));
  EXPECT_EQ(units(s), ZW("old"));
  EXPECT_TRUE(s.fromGB3212("\xD6\xD0"));
  EXPECT_EQ(units(s), ZW("\u4E2D"));
  EXPECT_EQ(s.getCapacity(), 2 * 2 + 4);
}

TEST(TWideStringFromAny, LengthLimitsTheBytesConverted) {
  TWideString s;
  EXPECT_TRUE(s.fromAny(MIB_UTF8, "abc", 2));
  EXPECT_EQ(units(s), ZW("ab"));
  EXPECT_EQ(s.getCapacity(), 3 * 2 + 7);
  EXPECT_FALSE(s.fromAny(2260, "abc"));  // a charset without a name
  EXPECT_EQ(units(s), Units());
  EXPECT_FALSE(s.fromAny(MIB_UTF8, "abc", INT_MAX));  // 3 * len + 7 units do not fit an int
  EXPECT_EQ(s.getBuffer(), nullptr);
}

// The name table spells these with '_' ("ISO_8859_15", "KOI8_R", "Windows_1252"); iconv knows
// them with '-', and the conversion must find them all the same.
TEST(TWideStringFromAny, TableNamesWithUnderscoresReachTheirCharsets) {
  const struct {
    tmibcharset mib;
    const char* bytes;
    const zwchar_t* expected;
  } cases[] = {
      {111, "\xA4", ZW("\u20AC")},   // ISO-8859-15: euro sign
      {2084, "\xC1", ZW("\u0430")},  // KOI8-R: Cyrillic a
      {2252, "\x80", ZW("\u20AC")},  // Windows-1252: euro sign
  };
  for (const auto& c : cases) {
    TWideString s;
    EXPECT_TRUE(s.fromAny(c.mib, c.bytes)) << c.mib;
    EXPECT_EQ(units(s), c.expected) << c.mib;
  }
}

TEST(TWideStringFromASCIIQuick, StopsAtTheLengthTheNulOrTheFirstNonAsciiByte) {
  const struct {
    const char* bytes;
    unsigned len;
    const zwchar_t* expected;
    int capacity;
  } cases[] = {
      {"abc", 2, ZW("ab"), 3},
      {"ab", 10, ZW("ab"), 3},  // never reads past the NUL
      {"ab\xC3\xA9z", 0, ZW("ab"), 6},
  };
  for (const auto& c : cases) {
    TWideString s(ZW("old"));
    s.fromASCIIQuick(c.bytes, c.len);
    EXPECT_EQ(units(s), c.expected) << c.bytes << " " << c.len;
    EXPECT_EQ(s.getCapacity(), c.capacity) << c.bytes << " " << c.len;
  }
}

}  // namespace

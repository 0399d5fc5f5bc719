#include "zeb/strings/zeb_cstr.h"

#include "testing/comma_locale.h"

#include <gtest/gtest.h>

#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include <memory>
#include <string>

namespace {

TEST(ZebItoaTest, WritesDecimalText) {
  const struct {
    int value;
    const char* text;
  } cases[] = {{0, "0"},
               {7, "7"},
               {-7, "-7"},
               {1234560, "1234560"},
               {INT_MAX, "2147483647"},
               {INT_MIN, "-2147483648"}};
  for (const auto& c : cases) {
    char out[12];
    EXPECT_STREQ(c.text, zeb_itoa(c.value, out));
  }
  EXPECT_EQ(nullptr, zeb_itoa(5, nullptr));
}

TEST(ZebCompareTest, CaseInsensitiveFoldsAsciiLettersToUpperCase) {
  EXPECT_EQ(0, zeb_stricmp_impl("Hello", "hELLO"));
  EXPECT_LT(zeb_stricmp_impl("apple", "Banana"), 0);
  // 'a' folds to 'A' (0x41), which sorts before '_' (0x5F).
  EXPECT_LT(zeb_stricmp_impl("a", "_"), 0);
  // Bytes compare unsigned; bytes outside 'a'..'z' are not folded.
  EXPECT_GT(zeb_stricmp_impl("\xe9", "z"), 0);
  EXPECT_NE(0, zeb_stricmp_impl("\xe9", "\xc9"));
  EXPECT_EQ(0, zeb_stricmp_impl(nullptr, ""));
  EXPECT_LT(zeb_stricmp_impl(nullptr, "a"), 0);
  EXPECT_EQ(0, zeb_stricmpw_impl(ZW("Stra\u00dfe"), ZW("STRA\u00dfE")));
  EXPECT_GT(zeb_stricmpw_impl(ZW("\u4e2d"), ZW("Z")), 0);
}

TEST(ZebCompareTest, LengthLimitedComparisonsStopAfterNCharacters) {
  EXPECT_EQ(0, zeb_strnicmp("abcX", "ABCy", 3));
  EXPECT_LT(zeb_strnicmp("abcX", "ABCy", 4), 0);
  EXPECT_EQ(0, zeb_strnicmp("abc", "xyz", 0));
  EXPECT_EQ(0, zeb_strnicmp("ab", "AB", 10));
  EXPECT_LT(zeb_strnicmp("ab", "ABC", 10), 0);
  EXPECT_EQ(0, zeb_strncmp("abc", "abd", 2));
  EXPECT_NE(0, zeb_strncmp("a", "A", 1));
  EXPECT_EQ(0, zeb_strncmp(nullptr, "", 5));
  EXPECT_GT(zeb_strncmp("\x80", "a", 1), 0);
}

TEST(ZebCompareTest, NullTolerantComparison) {
  EXPECT_EQ(0, zeb_strcmpnil(nullptr, nullptr));
  EXPECT_EQ(0, zeb_strcmpnil(nullptr, ""));
  EXPECT_EQ(0, zeb_strcmpnil("", nullptr));
  EXPECT_NE(0, zeb_strcmpnil(nullptr, "a"));
  EXPECT_NE(0, zeb_strcmpnil("a", nullptr));
  EXPECT_EQ(-1, zeb_strcmpnil("", "a"));
  EXPECT_EQ(-1, zeb_strcmpnil("abc", "abd"));
  EXPECT_EQ(1, zeb_strcmpnil("b", "abc"));
  EXPECT_EQ(1, zeb_strcmpnil("\x80", "a"));
  EXPECT_EQ(0, zeb_strcmpnil("same", "same"));
  EXPECT_EQ(0, zeb_strcmpnilw(nullptr, ZW("")));
  EXPECT_NE(0, zeb_strcmpnilw(ZW("a"), nullptr));
  EXPECT_EQ(1, zeb_strcmpnilw(ZW("\u4e2d"), ZW("a")));
}

TEST(ZebSearchTest, SubstringSearchIgnoresCase) {
  const char* hello = "Hello";
  EXPECT_EQ(hello + 2, zeb_strstri(hello, "LL"));
  EXPECT_EQ(hello, zeb_strstri(hello, ""));
  EXPECT_EQ(hello, zeb_strstri(hello, nullptr));
  EXPECT_EQ(hello + 3, zeb_strstri(hello, "lO"));
  EXPECT_EQ(nullptr, zeb_strstri(hello, "helloo"));
  EXPECT_EQ(nullptr, zeb_strstri("", "a"));
  EXPECT_EQ(nullptr, zeb_strstri(nullptr, "a"));
  const zwchar_t* wide = ZW("xx\u4e2dABab");
  EXPECT_EQ(wide + 2, zeb_wcsstrstri(wide, ZW("\u4e2dab")));
  EXPECT_EQ(wide, zeb_wcsstrstri(wide, ZW("")));
}

TEST(ZebSearchTest, CharacterSearch) {
  const char* text = "hello";
  EXPECT_EQ(text + 2, zeb_strchri(text, 'L'));
  EXPECT_EQ(nullptr, zeb_strchri(text, 'z'));
  EXPECT_EQ(nullptr, zeb_strchri(text, '\0'));
  EXPECT_EQ(nullptr, zeb_strchri(nullptr, 'a'));
  const zwchar_t* wide = ZW("aB\u4e2d");
  EXPECT_EQ(wide + 1, zeb_wcsstrchri(wide, u'b'));
  EXPECT_EQ(nullptr, zeb_wcsstrchr(wide, u'b'));
  EXPECT_EQ(wide + 2, zeb_wcsstrchr(wide, u'\u4e2d'));
}

TEST(ZebAffixTest, PrefixAndSuffixTests) {
  EXPECT_TRUE(zeb_beginWith("report.txt", "rep"));
  EXPECT_FALSE(zeb_beginWith("report.txt", "Rep"));
  EXPECT_TRUE(zeb_beginWithIgnoreCase("report.txt", "REP"));
  EXPECT_FALSE(zeb_beginWith("re", "rep"));
  EXPECT_TRUE(zeb_endWith("report.txt", ".txt"));
  EXPECT_FALSE(zeb_endWith("report.txt", ".TXT"));
  EXPECT_TRUE(zeb_endWithIgnoreCase("report.txt", ".TXT"));
  EXPECT_FALSE(zeb_endWith("xt", ".txt"));
  EXPECT_TRUE(zeb_beginWith("abc", ""));
  EXPECT_TRUE(zeb_endWith("abc", nullptr));
  EXPECT_FALSE(zeb_beginWith(nullptr, ""));
  EXPECT_FALSE(zeb_endWithIgnoreCase(nullptr, nullptr));
  EXPECT_TRUE(zeb_beginWithIgnoreCaseW(ZW("Report"), ZW("rEP")));
  EXPECT_FALSE(zeb_beginWithW(ZW("Report"), ZW("rep")));
  EXPECT_TRUE(zeb_endWithIgnoreCaseW(ZW("a.TXT"), ZW(".txt")));
  EXPECT_FALSE(zeb_endWithW(ZW("a.TXT"), ZW(".txt")));
}

TEST(ZebTrimTest, TrimsSpacesOnly) {
  char buf[] = "  a  ";
  char* trimmed = zeb_trim(buf);
  EXPECT_EQ(buf + 2, trimmed);
  EXPECT_EQ(0, memcmp(buf, "  a\0\0", 6));
  char blank[] = "   ";
  EXPECT_STREQ("", zeb_trim(blank));
  char tabs[] = "\ta\t";
  EXPECT_STREQ("\ta\t", zeb_trim(tabs));
  EXPECT_EQ(nullptr, zeb_trim(nullptr));
}

TEST(ZebDuplicateTest, CopiesAndReportsLength) {
  unsigned len = 99;
  char* copy = zeb_ansistrduplen_impl("abc", &len);
  EXPECT_STREQ("abc", copy);
  EXPECT_EQ(3u, len);
  free(copy);
  len = 99;
  EXPECT_EQ(nullptr, zeb_ansistrduplen_impl(nullptr, &len));
  EXPECT_EQ(0u, len);
  zwchar_t* wide = zeb_strduplen_impl(ZW("\u4e2dx"), &len);
  EXPECT_EQ(std::u16string(ZW("\u4e2dx")), wide);
  EXPECT_EQ(2u, len);
  free(wide);
}

TEST(ZebDuplicateTest, ClearAndDuplicateReplacesTheSlot) {
  char* slot = zeb_strdupa_impl("old");
  EXPECT_STREQ("new", clear_and_strdup(&slot, "new"));
  EXPECT_STREQ("new", slot);
  EXPECT_EQ(nullptr, clear_and_strdup(&slot, nullptr));
  EXPECT_EQ(nullptr, slot);
  EXPECT_EQ(nullptr, clear_and_strdup(nullptr, "x"));
  zwchar_t* wslot = zeb_strdupw_impl(ZW("old"));
  EXPECT_EQ(std::u16string(ZW("w")), clear_and_strdupw(&wslot, ZW("w")));
  free(wslot);
}

TEST(HexToIntTest, ReadsBackwardsFromTheLastCharacter) {
  const struct {
    const char* text;
    int len;
    unsigned long long value;
  } cases[] = {
      {"0x1F", 2, 1},  // 'x' itself is the last character: nibble (0x78 - 7) & 15.
      {"0x1f", -1, 31},
      {"1F", 0, 31},
      {"0X1f", 0, 31},
      {"1F", 10, 31},
      {"abcdef", 3, 0xabc},
      {"x", 0, 1},
      {"zz10", 0, 0x3310},  // no validation: 'z' is (0x7A - 7) & 15.
      {"FFFFFFFFFFFFFFFF", 0, 0xFFFFFFFFFFFFFFFFull},
      {"12345678901234567", 0, 0x2345678901234567ull},  // at most 16 digits
      {"", 0, 0},
      {nullptr, 4, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.value, hextoint(c.text, c.len)) << (c.text ? c.text : "(null)") << " " << c.len;
  }
}

TEST(ZebWcslenTest, CountsSixteenBitUnits) {
  EXPECT_EQ(3u, zeb_wcslen(ZW("a\u4e2dc")));
  EXPECT_EQ(0u, zeb_wcslen(ZW("")));
  EXPECT_EQ(0u, zeb_wcslen(nullptr));
}

// The length is found a 16-byte block at a time: every start alignment and every NUL position
// within a block must count exactly, with the NUL the last unit of its allocation, and units
// whose high byte is set (0x8000, 0xFFFF) must never look like a NUL.
TEST(ZebWcslenTest, ExactForEveryAlignmentAndLength) {
  for (size_t offset = 0; offset < 8; ++offset) {
    for (size_t len = 0; len < 40; ++len) {
      std::unique_ptr<zwchar_t[]> text(new zwchar_t[offset + len + 1]);
      for (size_t i = 0; i < len; ++i)
        text[offset + i] = i % 2 ? zwchar_t(0x8000) : zwchar_t(0xFFFF);
      text[offset + len] = 0;
      EXPECT_EQ(len, zeb_wcslen(text.get() + offset)) << "offset " << offset << " length " << len;
    }
  }
}

TEST(ZebGcvtTest, FormatsInShortestForm) {
  const struct {
    double value;
    int digits;
    const char* text;
  } cases[] = {
      {0.1, 6, "0.1"},
      {1.5, 17, "1.5"},
      {-2.25, 3, "-2.25"},
      {1234567.0, 6, "1.23457e+06"},
      {100.0, 2, "1e+02"},
      {0.0, 5, "0"},
      {0.0001234, 3, "0.000123"},
      {3.14159, 0, "3"},
      {0.1, 40, "0.10000000000000001"},
      {-1.2345678901234567e-300, 17, "-1.2345678901234568e-300"},
  };
  for (const auto& c : cases) {
    char buf[32];
    EXPECT_STREQ(c.text, zeb_gcvt(c.value, c.digits, buf));
  }
  EXPECT_EQ(nullptr, zeb_gcvt(1.0, 3, nullptr));
}

TEST(ZebGcvtTest, IgnoresACommaDecimalLocale) {
  zeb::testing::CommaDecimalLocale comma;
  if (!comma.active()) GTEST_SKIP() << "no locale with a ',' decimal point";
  char buf[32];
  EXPECT_STREQ("2.5", zeb_gcvt(2.5, 6, buf));
}

}  // namespace

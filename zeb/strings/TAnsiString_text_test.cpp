#include <gtest/gtest.h>

#include <limits.h>
#include <math.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <string>
#include <vector>

#include "zeb/platform/wintypes.h"
#include "testing/comma_locale.h"
#include "zeb/strings/TAnsiString.h"

namespace {

std::string text(const TAnsiString& s) {
  return s.isEmpty() ? std::string() : std::string(s.p());
}

// Deliberately without the printf format attribute: the cases below exercise flag combinations
// and null arguments that the compiler's format checker would flag.
std::string format(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  TAnsiString s;
  s.sprintfArgs(fmt, args);
  va_end(args);
  return text(s);
}

struct FormatCase {
  const char* expected;
  std::string actual;
};

void expectAll(const std::vector<FormatCase>& cases) {
  for (const auto& c : cases) EXPECT_EQ(c.expected, c.actual);
}

// ---- sprintf --------------------------------------------------------------------------------

TEST(TAnsiStringSprintfTest, IntegerFlagsWidthsAndPrecisions) {
  expectAll({
      {"   42|42   |00042|-0042", format("%5d|%-5d|%05d|%05d", 42, 42, 42, -42)},
      {"+42| 42|-42|+0", format("%+d|% d|%+d|%+i", 42, 42, -42, 0)},
      {"007|    -007||-3   ", format("%.3d|%08.3d|%.0d|%-05d", 7, -7, 0, -3)},
      {"ff FF 0xff 0XFF 0 0x0000ff", format("%x %X %#x %#X %#x %#08x", 255, 255, 255, 255, 0, 255)},
      {"10 010 0 0 0001", format("%o %#o %#o %#.0o %#.4o", 8, 8, 0, 0, 1)},
      {"4294967295 5", format("%u %+u", 4294967295u, 5u)},
      {"0x1f 0x0      0x1", format("%p %p %8p", (void*)0x1f, (void*)nullptr, (void*)1)},
      {"   1|2   |3   |004|0.500000",
       format("%*d|%-*d|%*d|%.*d|%.*f", 4, 1, 4, 2, -4, 3, 3, 4, -1, 0.5)},
  });
}

TEST(TAnsiStringSprintfTest, LengthModifiersSelectTheArgumentType) {
  expectAll({
      {"44 44 4464 4464", format("%hhd %hhu %hd %hu", 300, 300, 70000, 70000)},
      {"-9223372036854775808 18446744073709551615",
       format("%lld %llu", (long long)INT64_MIN, (unsigned long long)UINT64_MAX)},
      {"-5 ff", format("%ld %lx", -5L, 255UL)},
      {"-1 123 -5 ff",
       format("%jd %zu %td %zx", (intmax_t)-1, (size_t)123, (ptrdiff_t)-5, (size_t)255)},
      {"0.250000 0x8p-5", format("%Lf %La", 0.25L, 0.25L)},
  });
}

TEST(TAnsiStringSprintfTest, FloatingConversions) {
  expectAll({
      {"1.500000 3.14 3 1.234500e+04 1.2345E+04",
       format("%f %.2f %.0f %e %.4E", 1.5, 3.14159, 3.14159, 12345.0, 12345.0)},
      {"0.0001 1e+20 1E-10 1.00000 1.",
       format("%g %g %G %#g %#.0f", 0.0001, 1e20, 1e-10, 1.0, 1.0)},
      {"0x1p+0 -0X1P-1 0x001p+0", format("%a %A %08a", 1.0, -0.5, 1.0)},
      {"-00003.142|2.3       |+1.2e+04| 1.0|-0.000000",
       format("%010.3f|%-10.1f|%+.1e|% .1f|%f", -3.14159, 2.3, 12345.0, 1.0, -0.0)},
  });
}

TEST(TAnsiStringSprintfTest, SpecialTextsTakeWidthButNotZeroPadding) {
  const char* none = nullptr;
  expectAll({
      {"[NaN][NaN][+Inf][-Inf][NaN]",
       format("[%f][%f][%+e][%g][%F]", NAN, -NAN, INFINITY, -INFINITY, NAN)},
      {"[   NaN][+Inf  ][  -Inf][+Inf]",
       format("[%6f][%-6f][%06.2f][%.1f]", NAN, INFINITY, -INFINITY, INFINITY)},
      {"[(NULL)][  (NULL)][(NULL)  ][(NULL)]",
       format("[%s][%8s][%-8s][%.2s]", none, none, none, none)},
  });
}

TEST(TAnsiStringSprintfTest, StringsCharactersAndLiterals) {
  const char unterminated[3] = {'x', 'y', 'z'};  // the precision must bound the read
  int untouched = 7;
  expectAll({
      {"abc|  abc|abc  |ab|  abc|xyz",
       format("%s|%5s|%-5s|%.2s|%05s|%.3s", "abc", "abc", "abc", "abc", "abc", unterminated)},
      {"a|  b|c  |%|100%", format("%c|%3c|%-3c|%%|%d%%", 'a', 'b', 'c', 100)},
      {"ab5", format("a%nb%d", &untouched, 5)},
      {"a", format("a%cb", 0)},
  });
  EXPECT_EQ(7, untouched);
  // Unknown conversions and a cut-off directive are copied and consume no argument.
  const char* unknown = "%y|%5k|%d|tail %-";
  EXPECT_EQ("%y|%5k|3|tail %-", format(unknown, 3));
}

TEST(TAnsiStringSprintfTest, LongOutputsAndCappedWidths) {
  const std::string payload(6000, 'x');
  const std::string longText = format("%s%5000d", payload.c_str(), 1);
  ASSERT_EQ(11000u, longText.size());
  EXPECT_EQ(payload, longText.substr(0, 6000));
  EXPECT_EQ(' ', longText[10998]);
  EXPECT_EQ('1', longText.back());
  EXPECT_EQ(1048576u, format("%99999999999d", 1).size());
  EXPECT_EQ(1048576u, format("%*d", INT_MIN, 1).size());
  EXPECT_EQ(1048576u + 2, format("%.2000000f", 0.5).size());
}

TEST(TAnsiStringSprintfTest, ReplacesContentAndReturnsItsLength) {
  TAnsiString s("abc");
  EXPECT_EQ(5, s.sprintf("[%s]", s.p()));
  EXPECT_EQ("[abc]", text(s));
  const char* noFormat = nullptr;
  EXPECT_EQ(0, s.sprintf(noFormat, 1));
  EXPECT_TRUE(s.isEmpty());
}

TEST(TAnsiStringSprintfTest, DecimalPointIsAlwaysDot) {
  zeb::testing::CommaDecimalLocale comma;
  if (!comma.active()) GTEST_SKIP() << "no locale with a ',' decimal point";
  EXPECT_EQ("1.50 1.500000e+00 0x1.8p+0 2.5", format("%.2f %e %a %g", 1.5, 1.5, 1.5, 2.5));
  TAnsiString s;
  EXPECT_EQ("3.14", text(s.fromFloat(3.14159, 2)));
  EXPECT_EQ("1.50 KB", text(s.fromFileSize(1536)));
}

// ---- tags and tokens ------------------------------------------------------------------------

TEST(TAnsiStringTagsTest, ExtractsTextBetweenTags) {
  TAnsiString s;
  int next = 0;
  EXPECT_TRUE(s.fromBetweenTag("x<b>bold</b>y", "<b>", "</b>", false, 0, &next));
  EXPECT_EQ("bold", text(s));
  EXPECT_EQ(12, next);
  EXPECT_TRUE(s.fromBetweenTag("<B>Bold</B>", "<b>", "</b>", true));
  EXPECT_EQ("Bold", text(s));
  EXPECT_FALSE(s.fromBetweenTag("<B>Bold</B>", "<b>", "</b>", false));
  EXPECT_TRUE(s.fromBetweenTag("key=value", "key=", "", false, -5, &next));
  EXPECT_EQ("value", text(s));
  EXPECT_EQ(9, next);
}

TEST(TAnsiStringTagsTest, MissingTagsOrBadStartGiveEmptyContent) {
  const struct {
    const char* text;
    const char* startTag;
    const char* endTag;
    int start;
  } cases[] = {{"abc", "<", ">", 0},     {"<abc", "<", ">", 0}, {nullptr, "<", ">", 0},
               {"<a>", nullptr, ">", 0}, {"<a>", "", ">", 0},   {"<a>", "<", ">", 4},
               {"<a>", "<", ">", 1}};
  for (const auto& c : cases) {
    TAnsiString s("old");
    int next = 0;
    EXPECT_FALSE(s.fromBetweenTag(c.text, c.startTag, c.endTag, false, c.start, &next));
    EXPECT_TRUE(s.isEmpty());
    EXPECT_EQ(-1, next);
  }
}

TEST(TAnsiStringTagsTest, NextChainsThroughEveryMatch) {
  const TAnsiString xml("<i>1</i><i>22</i> <i></i><i>open");
  std::vector<std::string> found;
  for (int start = 0, guard = 0; start != -1 && guard < 10; ++guard) {
    const TAnsiString item = xml.subStringFromTags("<i>", "</i>", false, start, &start);
    if (start != -1) found.push_back(text(item));
  }
  EXPECT_EQ((std::vector<std::string>{"1", "22", ""}), found);
}

TEST(TAnsiStringTokenTest, PicksFieldsByIndex) {
  TAnsiString s;
  int next = 0;
  EXPECT_TRUE(s.fromToken("a, b ,c", ",", 1, 0, &next, " "));
  EXPECT_EQ("b", text(s));
  EXPECT_EQ(6, next);
  EXPECT_TRUE(s.fromToken("a, b ,c", ",", 1));
  EXPECT_EQ(" b ", text(s));
  EXPECT_TRUE(s.fromToken("a::b::c", "::", 2, 0, &next));
  EXPECT_EQ("c", text(s));
  EXPECT_EQ(-1, next);
  EXPECT_TRUE(s.fromToken("a,b,c", ",", 0, 2));
  EXPECT_EQ("b", text(s));
  EXPECT_TRUE(s.fromToken("a,b", nullptr, 0));
  EXPECT_EQ("a,b", text(s));
  // Past the last field, a negative index or a start past the end.
  EXPECT_FALSE(s.fromToken("a,b", nullptr, 1));
  EXPECT_FALSE(s.fromToken("a,b,c", ",", 3, 0, &next));
  EXPECT_EQ(-1, next);
  EXPECT_FALSE(s.fromToken("a,b,c", ",", -1));
  EXPECT_FALSE(s.fromToken("a,b,c", ",", 0, 6));
  EXPECT_FALSE(s.fromToken(nullptr, ",", 0));
  EXPECT_TRUE(s.isEmpty());
}

TEST(TAnsiStringTokenTest, NextWalksEveryFieldIncludingEmptyOnes) {
  const TAnsiString csv("a,,b,");
  std::vector<std::string> fields;
  int start = 0;
  for (int guard = 0; start != -1 && guard < 10; ++guard) {
    fields.push_back(text(csv.subStringFromToken(",", 0, start, &start)));
  }
  EXPECT_EQ((std::vector<std::string>{"a", "", "b", ""}), fields);
}

TEST(TAnsiStringLinesTest, FirstLineChainsOverEveryLineEnd) {
  TAnsiString s;
  std::vector<std::string> lines;
  const char* p = "one\r\ntwo\n\nthree\rfour\n";
  while (p != nullptr && lines.size() < 10) {
    p = s.fromFirstLine(p);
    lines.push_back(text(s));
  }
  EXPECT_EQ((std::vector<std::string>{"one", "two", "", "three", "four"}), lines);
  EXPECT_EQ(nullptr, s.fromFirstLine(nullptr));
  EXPECT_TRUE(s.isEmpty());
}

// ---- GUIDs ----------------------------------------------------------------------------------

TEST(TAnsiStringGuidTest, RoundTripsWithAndWithoutBraces) {
  const GUID guid = {0x01234567, 0x89AB, 0xCDEF, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}};
  TAnsiString s;
  EXPECT_EQ("{01234567-89AB-CDEF-0123-456789ABCDEF}", text(s.fromGUID(&guid)));
  EXPECT_EQ("01234567-89AB-CDEF-0123-456789ABCDEF", text(s.fromGUID(&guid, false)));
  for (const char* form :
       {"{01234567-89ab-cdef-0123-456789abcdef}", "01234567-89AB-CDEF-0123-456789ABCDEF"}) {
    GUID parsed = {};
    EXPECT_TRUE(TAnsiString(form).hexToGUID(&parsed)) << form;
    EXPECT_EQ(0, memcmp(&guid, &parsed, sizeof guid)) << form;
  }
  EXPECT_TRUE(s.fromGUID(nullptr).isEmpty());
}

TEST(TAnsiStringGuidTest, RejectsMalformedTextAndLeavesTheGuidAlone) {
  for (const char* bad :
       {"", "{01234567-89AB-CDEF-0123-456789ABCDEF", "01234567-89AB-CDEF-0123-456789ABCDEF}",
        "01234567-89AB-CDEF-0123-456789ABCDE", "01234567-89AB-CDEF-0123-456789ABCDEF0",
        "0123456-789AB-CDEF-0123-456789ABCDEF", "01234567-89AB-CDEF-0123-456789ABCDEG",
        " 01234567-89AB-CDEF-0123-456789ABCDE"}) {
    GUID guid;
    memset(&guid, 0xAA, sizeof guid);
    EXPECT_FALSE(TAnsiString(bad).hexToGUID(&guid)) << bad;
    EXPECT_EQ(0xAAAAAAAAu, guid.Data1) << bad;
  }
  EXPECT_FALSE(TAnsiString("01234567-89AB-CDEF-0123-456789ABCDEF").hexToGUID(nullptr));
}

// ---- years ----------------------------------------------------------------------------------

TEST(TAnsiStringYearTest, FindsTheFirstFourDigitRunInRange) {
  const struct {
    const char* text;
    int minYear;
    int maxYear;
    int year;
  } cases[] = {{"2019", 1900, 2100, 2019},      {"Movie.1999.HD", 1900, 2100, 1999},
               {"ends 2020", 1900, 2100, 2020}, {"12019 2018", 1900, 2100, 2018},
               {"20190", 1900, 2100, 0},        {"1850 1950", 1900, 2100, 1950},
               {"2019", 2020, 2030, 0},         {"", 1900, 2100, 0},
               {nullptr, 1900, 2100, 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(c.year, TAnsiString::extractYear(c.text, c.minYear, c.maxYear)) << c.text;
  }
}

TEST(TAnsiStringYearTest, RemovesTheYearAndOneAdjacentSpace) {
  const struct {
    const char* before;
    const char* after;
  } cases[] = {{"Movie 2019 HD", "Movie HD"},
               {"2019 Movie", "Movie"},
               {"Movie 2019", "Movie"},
               {"Movie(2019)", "Movie()"},
               {"2019", ""},
               {"12019 x", "12019 x"}};
  for (const auto& c : cases) {
    char buffer[32];
    strcpy(buffer, c.before);
    TAnsiString::extractYearEX(buffer, true, 1900, 2100);
    EXPECT_STREQ(c.after, buffer) << c.before;
  }
  char kept[] = "Movie 2019";
  EXPECT_EQ(2019, TAnsiString::extractYearEX(kept, false, 1900, 2100));
  EXPECT_STREQ("Movie 2019", kept);
}

// ---- sizes and durations --------------------------------------------------------------------

TEST(TAnsiStringUnitsTest, FileSizesSwitchUnitAtEach1024) {
  const struct {
    long long bytes;
    const char* text;
  } cases[] = {
      {0, "0 B"},           {1023, "1023 B"},     {1024, "1.00 KB"},      {1536, "1.50 KB"},
      {1048575, "1.00 MB"}, {1048576, "1.00 MB"}, {5LL << 30, "5.00 GB"}, {LLONG_MAX, "8.00 EB"},
      {-5, "-5 B"},         {-2048, "-2.00 KB"}};
  TAnsiString s;
  for (const auto& c : cases) EXPECT_EQ(c.text, text(s.fromFileSize(c.bytes))) << c.bytes;
  EXPECT_EQ("1.50KB", text(s.fromFileSize(1536, "")));
}

TEST(TAnsiStringUnitsTest, DurationsAndFixedPointNumbers) {
  TAnsiString s;
  const struct {
    int seconds;
    const char* text;
  } durations[] = {{0, "0:00:00"},        {59, "0:00:59"},   {3661, "1:01:01"},
                   {360000, "100:00:00"}, {-61, "-0:01:01"}, {INT_MIN, "-596523:14:08"}};
  for (const auto& c : durations) EXPECT_EQ(c.text, text(s.fromSeconds(c.seconds)));
  EXPECT_EQ("12.35 ms", text(s.fromMs(12.3456)));
  EXPECT_EQ("-1 ms", text(s.fromMs(-1.2, -3)));
  EXPECT_EQ("3.142", text(s.fromFloat(3.14159, 3)));
  EXPECT_EQ("1.00000000000000000", text(s.fromFloat(1.0, 25)));
  EXPECT_EQ("NaN", text(s.fromFloat(NAN)));
}

}  // namespace

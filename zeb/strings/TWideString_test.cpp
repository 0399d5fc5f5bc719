// Tests of TWideString: what its 16-bit units change against TAnsiString (growth and capacity in
// units, the 16-bit hashes, the 8-bit trim set, ASCII-only folding, the 16-bit printf conventions,
// hexadecimal and floating parsing over units), the members only it has, and the mixed-width
// members that take 8-bit text.

#include "zeb/strings/TWideString.h"

#include <gtest/gtest.h>
#include <string.h>

#include <cmath>
#include <string>
#include <type_traits>
#include <utility>

namespace {

using Units = std::basic_string<zwchar_t>;

template <typename T, typename = void>
struct ComparesWithZero : std::false_type {};
template <typename T>
struct ComparesWithZero<T, std::void_t<decltype(std::declval<const T&>() == 0)>> : std::true_type {
};
static_assert(!ComparesWithZero<TWideString>::value, "s == 0 must not compile");

Units text(const TWideString& s) {
  return s.isEmpty() ? Units() : Units(s.p());
}

// A string holding `content` in a buffer of exactly `capacity` units.
TWideString withCapacity(const zwchar_t* content, int capacity) {
  TWideString s(capacity, tcapacityTag{});
  s.append(content);
  return s;
}

TEST(TWideStringGrowth, CapacityIsCountedInUnits) {
  TWideString s = withCapacity(ZW("123456789"), 10);
  s += ZW('x');
  EXPECT_EQ(s.getCapacity(), 17);
  s.setCapacity(20);
  EXPECT_EQ(s.getCapacity(), 20);
  for (int i = 10; i < 20; ++i) EXPECT_EQ(s.p()[i], 0) << i;
  s.setText(ZW("abcdef")).setCapacity(4);
  EXPECT_EQ(text(s), ZW("abc"));
  s.fill(ZW('z'), 3);
  EXPECT_EQ(s.getCapacity(), 4);
  s.fromInt32(-42, 4);
  EXPECT_EQ(text(s), ZW("-042"));
  EXPECT_EQ(s.getCapacity(), 50);
}

TEST(TWideStringEditing, RepeatReduplicateAndCopies) {
  TWideString s(ZW("ab"));
  s.repeatContent(1);
  EXPECT_EQ(text(s), ZW("abab"));
  EXPECT_EQ(s.getCapacity(), 5);
  s.setText(ZW("ab")).reduplicate(3);
  EXPECT_EQ(text(s), ZW("ababab"));
  s.reduplicate(1).repeatContent(0);
  EXPECT_EQ(text(s), ZW("ababab"));
  s.ncopy(ZW("wxyz"), 2);
  EXPECT_EQ(text(s), ZW("wx"));
  s.ncopy(TWideString(ZW("pq")), -1);
  EXPECT_EQ(text(s), ZW("pq"));
}

TEST(TWideStringEditing, RemoveEndedCharIfRemovesOneUnitAtMost) {
  const struct {
    const zwchar_t* before;
    const zwchar_t* after;
  } cases[] = {
      {ZW("a/b//"), ZW("a/b/")}, {ZW("ab"), ZW("ab")}, {ZW("/"), ZW("")}, {ZW(""), ZW("")}};
  for (const auto& c : cases) {
    TWideString s(c.before);
    EXPECT_EQ(text(s.removeEndedCharIf(ZW('/'))), c.after);
  }
}

TEST(TWideStringEditing, TrimSetIsEightBitAndNeverMatchesWideUnits) {
  // 0x4E20 truncated to a byte would be ' '; it must stay.
  const zwchar_t spaced[] = {0x4E20, ' ', 'a', ' ', 0x4E20, 0};
  TWideString s(spaced);
  EXPECT_EQ(text(s.trim()), Units(spaced));
  const zwchar_t inner[] = {' ', 0x4E20, '\t', 0};
  s.setText(inner).trim(" \t");
  EXPECT_EQ(text(s), Units(1, zwchar_t(0x4E20)));
  s.setText(ZW("\u00E9x\u00E9")).trim("\xE9");
  EXPECT_EQ(text(s), ZW("\u00E9x\u00E9"));
  s.setText(ZW("\t a \t")).trimLeft(nullptr);
  EXPECT_EQ(text(s), ZW("\t a \t"));
}

TEST(TWideStringEditing, CaseFoldingIsAsciiOnly) {
  TWideString s(ZW("az\u00E9\u00C9\u0101"));
  EXPECT_EQ(text(s.toUpper()), ZW("AZ\u00E9\u00C9\u0101"));
  EXPECT_EQ(text(s.toLower()), ZW("az\u00E9\u00C9\u0101"));
  EXPECT_FALSE(TWideString(ZW("\u00E9")).equalIgnoreCase(ZW("\u00C9")));
  EXPECT_TRUE(TWideString(ZW("Abc")).equalIgnoreCase(ZW("aBC")));
  EXPECT_EQ(TWideString(ZW("x\u00E9AB")).posSubStr(ZW("ab"), 0, CaseInsensitive), 2);
}

TEST(TWideStringEditing, RemoveChrComparesUnitsUnsigned) {
  const zwchar_t mixed[] = {'a', 0x7F, 0x8000, 'b', 0xFFFF, 0};
  TWideString s(mixed);
  EXPECT_EQ(text(s.removeChr(0x7F, 0xFFFF)), ZW("ab"));
}

TEST(TWideStringSearch, FindSkipsUnitsAndNeverFolds) {
  const TWideString s(ZW("xab"));
  EXPECT_EQ(s.Find(ZW("ab"), tCaseSensitivity(1)), 1);
  EXPECT_EQ(s.Find(ZW("xa"), tCaseSensitivity(1)), -1);
  EXPECT_EQ(s.Find(ZW("ab"), tCaseSensitivity(9)), -1);
  const TWideString lower(ZW("ab"));
  EXPECT_EQ(lower.Find(ZW("AB")), -1);
  EXPECT_EQ(lower.posSubStr(ZW("AB"), 0, CaseInsensitive), 0);
  const zwchar_t high[] = {0xD83D, 0xDE00, 'a', 0xD83D, 0};
  const TWideString h(high);
  EXPECT_EQ(h.reverseFind(zwchar_t(0xD83D)), 3);
  EXPECT_EQ(h.countOfChar(zwchar_t(0xD83D)), 2);
  EXPECT_EQ(h.back(), zwchar_t(0xD83D));
  EXPECT_EQ(h.getChar(4), 0);
}

TEST(TWideStringNumbers, StaticFormattersAndParsersWorkInUnits) {
  zwchar_t out[32];
  EXPECT_EQ(TWideString::inttostrs(out, -7, 3, false), 3);
  EXPECT_EQ(Units(out), ZW("-07"));
  EXPECT_EQ(TWideString::uinttostrs(out, 18446744073709551615ULL, 0), 20);
  EXPECT_EQ(Units(out), ZW("18446744073709551615"));
  EXPECT_EQ(TWideString::inttostrs(nullptr, 1, 0, false), 0);
  EXPECT_EQ(TWideString::strtoint(ZW("  -12x")), -12);
  EXPECT_EQ(TWideString(ZW(" +1.5e2\u00E9")).toDouble(), 150.0);
  EXPECT_EQ(TWideString::HexToInt(ZW("0x1F")), 31u);
  // 0x178 has the low byte of 'x' but is no "0x" marker: it is read as a digit (nibble 1).
  const zwchar_t notMarker[] = {'1', 0x178, '1', 'F', 0};
  EXPECT_EQ(TWideString::HexToInt(notMarker), 0x111Fu);
  EXPECT_FALSE(TWideString(ZW("0x1F")).isHex());
  EXPECT_TRUE(TWideString::isNumeric(ZW("1-2."), -1, true));
}

TEST(TWideStringText, FormattedNumbersAndGuids) {
  TWideString s;
  EXPECT_EQ(text(s.fromFileSize(1536, ZW("\u00A0"))), ZW("1.50\u00A0KB"));
  EXPECT_EQ(text(s.fromFloat(2.345, 1u)), ZW("2.3"));
  EXPECT_EQ(text(s.fromSeconds(-3661)), ZW("-1:01:01"));
  const unsigned char guid[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  s.fromGUID(guid);
  EXPECT_EQ(text(s), ZW("{04030201-0605-0807-090A-0B0C0D0E0F10}"));
  unsigned char parsed[16] = {};
  EXPECT_TRUE(s.hexToGUID(parsed));
  EXPECT_EQ(memcmp(parsed, guid, 16), 0);
  s.data()[1] = 0x130;  // a unit whose low byte is '0' is still no hexadecimal digit
  EXPECT_FALSE(s.hexToGUID(parsed));
}

// ---- hashes
// ---------------------------------------------------------------------------------------

uint32_t finalMix(uint32_t h) {
  h ^= h << 3;
  h += h >> 5;
  h ^= h << 4;
  h += h >> 17;
  h ^= h << 25;
  return h + (h >> 6);
}

TEST(TWideStringHash, OneUnitTextFollowsTheSingleUnitTail) {
  for (const uint32_t u : {0x01u, 0x61u, 0x7FFFu, 0x8000u, 0xFFFFu}) {
    const zwchar_t single[] = {zwchar_t(u), 0};
    const uint32_t h = (1 + u) ^ ((1 + u) << 10);
    EXPECT_EQ(TWideString::hashValue(single, -1), finalMix(h + (h >> 1))) << u;
  }
}

TEST(TWideStringHash, KnownVectors) {
  const zwchar_t high[] = {0x8000, 0xFFFF, 0x4E2D, 0};
  const zwchar_t pair[] = {'x', 0xD83D, 0xDE00, 'y', 0};
  const zwchar_t withNul[] = {'a', 0, 'b', 0};
  const struct {
    const zwchar_t* s;
    int len;
    unsigned int hash;
    unsigned long long hash64;
  } cases[] = {
      {ZW("a"), -1, 0x115EA782u, 0xC0F295F44736025AULL},
      {ZW("ab"), -1, 0x1F377FCBu, 0x075AEC20A3D3057DULL},
      {ZW("abc"), -1, 0x460219C8u, 0x3120472DB6921C7FULL},
      {ZW("abcd"), -1, 0x1AE711B2u, 0xEFE7D71FCBFD4EB4ULL},
      {ZW("abcde"), -1, 0x17FDD5A7u, 0x987F7EF6C7690754ULL},
      {ZW("hello, world"), -1, 0x2387118Cu, 0x593E7D7C33883BC9ULL},
      {high, -1, 0x7767351Eu, 0x0FAAF4BCD294158BULL},
      {pair, -1, 0x9F50AF82u, 0xDEA7A8A9F4D6E3BDULL},
      {withNul, 3, 0xFF92AD09u, 0xAC4A00CA7562803BULL},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(TWideString::hashValue(c.s, c.len), c.hash) << c.len;
    EXPECT_EQ(TWideString::hashValue64(c.s, c.len), c.hash64) << c.len;
  }
  EXPECT_EQ(TWideString(ZW("abc")).hashValue(), 0x460219C8u);
  EXPECT_EQ(TWideString(ZW("abc")).hashValue64(), 0x3120472DB6921C7FULL);
}

TEST(TWideStringHash, EmptyInputsHashToZero) {
  EXPECT_EQ(TWideString::hashValue(nullptr, 5), 0u);
  EXPECT_EQ(TWideString::hashValue(ZW("abc"), 0), 0u);
  EXPECT_EQ(TWideString::hashValue(ZW(""), -1), 0u);
  EXPECT_EQ(TWideString::hashValue64(nullptr, 5), 0u);
  EXPECT_EQ(TWideString::hashValue64(ZW(""), -1), 0u);
  EXPECT_EQ(TWideString().hashValue(), 0u);
}

// ---- formatting
// -----------------------------------------------------------------------------------

TEST(TWideStringSprintf, SixteenBitConventions) {
  TWideString s;
  EXPECT_EQ(s.sprintf(ZW("[%s|%ls|%c]"), ZW("\u4E2D"), ZW("ab"), int(0x6587)), 8);
  EXPECT_EQ(text(s), ZW("[\u4E2D|ab|\u6587]"));
  s.sprintf(ZW("%hs/%-4.1hs/%hs"), "\xE4\xB8\xAD\xE6\x96\x87", "\xE6\x96\x87x", "ok");
  EXPECT_EQ(text(s), ZW("\u4E2D\u6587/\u6587   /ok"));
  s.sprintf(ZW("%s %hs %5.1f %f %+05d %x"), static_cast<const zwchar_t*>(nullptr),
            static_cast<const char*>(nullptr), 2.25, std::nan(""), 42, 255u);
  EXPECT_EQ(text(s), ZW("(NULL) (NULL)   2.2 NaN +0042 ff"));
  s.sprintf(ZW("<%hs>"), "\xFF\xFE");
  EXPECT_EQ(text(s), ZW("<>"));
  EXPECT_EQ(s.sprintf(nullptr), 0);
  EXPECT_TRUE(s.isEmpty());
}

TEST(TWideStringSprintf, EightBitFormatsAreConverted) {
  TWideString s;
  EXPECT_EQ(s.sprintfFormatA("%s=%03d", "\xE4\xB8\xAD", 7), 5);
  EXPECT_EQ(text(s), ZW("\u4E2D=007"));
  s.sprintfGB("%s!", "\xD6\xD0");
  EXPECT_EQ(text(s), ZW("\u4E2D!"));
  s.sprintfA("%s-%u", "plain", 3u);
  EXPECT_EQ(text(s), ZW("plain-3"));
}

// ---- mixed width
// ------------------------------------------------------------------------------------

TEST(TWideStringMixedWidth, EightBitArgumentsAreConvertedFirst) {
  TWideString s;
  s = "abc";
  EXPECT_EQ(text(s), ZW("abc"));
  s += "de";
  s += 'f';
  s += TAnsiString("g");
  s.append("hij", 2).insert("XYZ", 1, 1);
  EXPECT_EQ(text(s), ZW("aXbcdefghi"));
  EXPECT_EQ(text(s + TAnsiString("!") + '?'), ZW("aXbcdefghi!?"));
  EXPECT_TRUE(s == "aXbcdefghi");
  EXPECT_TRUE(s != "aXbcdefgh");
  EXPECT_TRUE(TWideString(ZW("q")) == 'q');
  EXPECT_EQ(s.compare("AXBCDEFGHI", CaseInsensitive), 0);
  EXPECT_EQ(s.ncompare("aXbz", 3), 0);
  EXPECT_TRUE(s.equalIgnoreCase("AXBCDEFGHI"));
  EXPECT_TRUE(s.contain("DEF", CaseInsensitive));
  EXPECT_TRUE(s.beginWith("AX", true));
  EXPECT_FALSE(s.isEndsWith("HI"));
  EXPECT_TRUE(s.isEndsWith("HI", true));
  EXPECT_EQ(TWideString().compare(""), 0);
}

}  // namespace

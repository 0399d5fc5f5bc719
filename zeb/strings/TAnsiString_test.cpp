// Tests of TAnsiString's core: ownership, growth, numbers, search, comparison, editing,
// extraction and hashing.

#include "zeb/strings/TAnsiString.h"

#include "testing/comma_locale.h"

#include <gtest/gtest.h>
#include <string.h>

#include <climits>
#include <string>
#include <type_traits>
#include <utility>

namespace {

// Comparing a string with an integer must not compile (the int overloads are private).
template <typename T, typename = void>
struct ComparesWithZero : std::false_type {};
template <typename T>
struct ComparesWithZero<T, std::void_t<decltype(std::declval<const T&>() == 0)>> : std::true_type {
};
template <typename T, typename = void>
struct ComparesWithText : std::false_type {};
template <typename T>
struct ComparesWithText<T, std::void_t<decltype(std::declval<const T&>() == "x")>>
    : std::true_type {};
static_assert(!ComparesWithZero<TAnsiString>::value, "s == 0 must not compile");
static_assert(ComparesWithText<TAnsiString>::value, "the detection itself must work");

std::string text(const TAnsiString& s) {
  return s.isEmpty() ? std::string() : s.p();
}

// A string holding `content` in a buffer of exactly `capacity` bytes.
TAnsiString withCapacity(const char* content, int capacity) {
  TAnsiString s(capacity, tcapacityTag{});
  s.append(content);
  return s;
}

TEST(TAnsiStringOwnership, ExplicitLengthCopiesEmbeddedNuls) {
  const TAnsiString s("ab\0cd", 5);
  EXPECT_EQ(s.getCapacity(), 6);
  EXPECT_EQ(memcmp(s.p(), "ab\0cd", 6), 0);
  EXPECT_EQ(s.length(), 2);
  for (const TAnsiString& empty : {TAnsiString(nullptr), TAnsiString(""), TAnsiString("x", 0)}) {
    EXPECT_EQ(empty.p(), nullptr);
    EXPECT_EQ(empty.getCapacity(), 0);
  }
  EXPECT_EQ(TAnsiString(0, tcapacityTag{}).p(), nullptr);
}

TEST(TAnsiStringOwnership, SetTextReusesTheBufferOnlyWhenTheTextFits) {
  TAnsiString s = withCapacity("", 8);
  const char* original = s.p();
  s.setText("1234567");
  EXPECT_EQ(s.p(), original);
  s.setText("12345678");
  EXPECT_EQ(s.getCapacity(), 9);
  s.setText(s.p() + 3);  // source inside the buffer
  EXPECT_EQ(text(s), "45678");
  s.setText("");
  EXPECT_EQ(s.p(), nullptr);
}

TEST(TAnsiStringOwnership, CopyMoveAndSelfAssignment) {
  TAnsiString a("hello");
  TAnsiString b(a);
  EXPECT_NE(a.p(), b.p());
  a = *&a;
  EXPECT_EQ(text(a), "hello");
  TAnsiString c(std::move(a));
  EXPECT_EQ(a.p(), nullptr);
  b = std::move(c);
  EXPECT_EQ(text(b), "hello");
  char* released = b.releasePtr();
  EXPECT_EQ(b.getCapacity(), 0);
  delete[] released;
  EXPECT_EQ(&TAnsiString::nullStr(), &TAnsiString::nullStr());
  EXPECT_EQ(TAnsiString::nullStr().p(), nullptr);
}

TEST(TAnsiStringGrowth, CapacityFollowsTheGrowthRule) {
  TAnsiString s = withCapacity("123456789", 10);
  s += 'x';
  EXPECT_EQ(s.getCapacity(), 17);
  s.append("abcdef");  // 16 + 1 fits in 17: in place
  EXPECT_EQ(s.getCapacity(), 17);
  s.insert("Z", 0);  // 17 + 1 > 17: 17 + 8 + 1 + 1
  EXPECT_EQ(s.getCapacity(), 27);
  EXPECT_EQ(text(s), "Z123456789xabcdef");
  TAnsiString empty;
  empty.append("abc");
  EXPECT_EQ(empty.getCapacity(), 4);
  empty.append(nullptr).append("").appendChar('\0');
  EXPECT_EQ(text(empty), "abc");
}

TEST(TAnsiStringGrowth, AppendingOrInsertingItsOwnTextIsSafe) {
  TAnsiString s("abc");
  s.append(s);
  s += s.p();
  EXPECT_EQ(text(s), "abcabcabcabc");
  s.setText("xyz");
  s.insert(s.p() + 1, 1);
  EXPECT_EQ(text(s), "xyzyz");
  s.insert('-', -5).insert("!", 99);
  EXPECT_EQ(text(s), "-xyzyz!");
}

TEST(TAnsiStringGrowth, SetCapacityFillAndRepeatSizes) {
  TAnsiString s("abcdef");
  s.setCapacity(4);
  EXPECT_EQ(text(s), "abc");
  s.setCapacity(10);
  EXPECT_EQ(memcmp(s.p(), "abc\0\0\0\0\0\0\0", 10), 0);
  s.setCapacity(5, true, true);
  EXPECT_EQ(s.getCapacity(), 10);
  s.resetCapacity(6);
  EXPECT_EQ(s.getCapacity(), 6);
  EXPECT_TRUE(s.isEmpty());
  s.fill('z', 3);
  EXPECT_EQ(s.getCapacity(), 4);
  EXPECT_EQ(text(s), "zzz");
  s.setText("ab").repeat(2);
  EXPECT_EQ(text(s), "ababab");
  EXPECT_EQ(s.getCapacity(), 7);
  s.setCapacity(0);
  EXPECT_EQ(s.p(), nullptr);
}

TEST(TAnsiStringNumbers, DecimalFormatting) {
  const struct {
    long long value;
    int minDigits;
    const char* expected;
  } cases[] = {{0, 0, "0"},
               {-42, 4, "-042"},
               {-7, 3, "-07"},
               {7, 3, "007"},
               {123, 2, "123"},
               {-5, 1, "-5"},
               {LLONG_MIN, 0, "-9223372036854775808"},
               {LLONG_MAX, 0, "9223372036854775807"}};
  for (const auto& c : cases) {
    TAnsiString s;
    EXPECT_EQ(text(s.inttostr(c.value, c.minDigits)), c.expected) << c.value;
    EXPECT_EQ(s.getCapacity(), 50);
  }
  TAnsiString s;
  EXPECT_EQ(text(s.fromUInt64(ULLONG_MAX)), "18446744073709551615");
  EXPECT_EQ(text(s.fromInt32(-1, 0)), "-1");
  char out[32];
  EXPECT_EQ(TAnsiString::inttostrS(out, -1, 0, true), 20);
  EXPECT_STREQ(out, "18446744073709551615");
  EXPECT_EQ(TAnsiString::uinttostrS(nullptr, 5, 0), 0);
  EXPECT_EQ(s.uinttostr(1, 80).length(), 80);
  EXPECT_EQ(s.getCapacity(), 81);
}

TEST(TAnsiStringNumbers, HexFormatting) {
  TAnsiString s;
  EXPECT_EQ(text(s.fromInt32ToHex(0xBEEF, 8)), "0000BEEF");
  EXPECT_EQ(text(s.fromInt64ToHex(0xABCDEF0123456789ULL, 0, false)), "abcdef0123456789");
  const unsigned char bytes[] = {0x0A, 0x1B, 0xFF};
  EXPECT_EQ(text(s.fromHex(bytes, 3)), "0A1BFF");
  EXPECT_EQ(text(s.fromHex(bytes, 3, ' ')), "0A 1B FF");
  EXPECT_EQ(s.getCapacity(), 9);
}

TEST(TAnsiStringNumbers, DecimalParsing) {
  const struct {
    const char* s;
    int start, maxDigits;
    long long expected;
  } cases[] = {{"  -12x", 0, -1, -12}, {"+", 0, -1, 0},    {"12345", 0, 2, 12},  {"12345", 0, 0, 0},
               {"ab12", 2, -1, 12},    {"12", 5, -1, 0},   {"\t\n+7", 0, -1, 7}, {"-+1", 0, -1, 0},
               {"x1", 0, -1, 0},       {nullptr, 0, -1, 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(TAnsiString::strtoint64(c.s, c.start, c.maxDigits), c.expected) << c.s;
    EXPECT_EQ(TAnsiString::strtoint(c.s, c.start, c.maxDigits), c.expected) << c.s;
  }
  EXPECT_EQ(TAnsiString::strtoint("4294967297"), 1);  // wraps in 32 bits
  EXPECT_EQ(TAnsiString::strtouint("-1"), UINT_MAX);
  EXPECT_EQ(TAnsiString::strtoint64("-9223372036854775808"), LLONG_MIN);
  EXPECT_EQ(TAnsiString::strtouint64("18446744073709551615"), ULLONG_MAX);
}

TEST(TAnsiStringNumbers, FloatingParsingIgnoresTheProcessLocale) {
  EXPECT_DOUBLE_EQ(TAnsiString(" +1.5e2").toDouble(), 150.0);
  EXPECT_DOUBLE_EQ(TAnsiString("-0x1p3").toDouble(), -8.0);
  EXPECT_FLOAT_EQ(TAnsiString("2.25xyz").toFloat(), 2.25f);
  EXPECT_EQ(TAnsiString("abc").toDouble(), 0.0);
  EXPECT_EQ(TAnsiString("1e999").toDouble(), 0.0);
  zeb::testing::CommaDecimalLocale comma;
  if (!comma.active()) GTEST_SKIP() << "no locale with a ',' decimal point";
  EXPECT_DOUBLE_EQ(TAnsiString("3.25").toDouble(), 3.25);
}

TEST(TAnsiStringNumbers, NumericAndHexClassification) {
  EXPECT_TRUE(TAnsiString("0123").isNumeric());
  EXPECT_FALSE(TAnsiString("-1").isNumeric());
  EXPECT_TRUE(TAnsiString("1-2").isNumeric(true));
  EXPECT_TRUE(TAnsiString::isNumeric("...", -1, true));
  EXPECT_TRUE(TAnsiString::isNumeric("12ab", 2, false));
  EXPECT_FALSE(TAnsiString::isNumeric("1", 3, false));  // the NUL is not a digit
  EXPECT_FALSE(TAnsiString().isNumeric());
  EXPECT_EQ(TAnsiString::HexToInt("0x1f"), 31U);
  EXPECT_EQ(TAnsiString("1F").HexToInt(), 31U);
  EXPECT_TRUE(TAnsiString("aF09").isHex());
  EXPECT_FALSE(TAnsiString("0x1F").isHex());
  EXPECT_FALSE(TAnsiString("").isHex());
}

TEST(TAnsiStringSearch, FindSkipsBytesAndNeverFolds) {
  EXPECT_EQ(TAnsiString("xab").Find("ab", static_cast<tCaseSensitivity>(1)), 1);
  EXPECT_EQ(TAnsiString("ababab").Find("ab", static_cast<tCaseSensitivity>(3)), 4);
  EXPECT_EQ(TAnsiString("ab").Find("AB"), -1);
  EXPECT_EQ(TAnsiString("ab").posSubStr("AB", 0, CaseInsensitive), 0);
  EXPECT_EQ(TAnsiString("abcabc").posSubStr("c", 3), 5);
  EXPECT_EQ(TAnsiString("abc").posSubStr("c", 4), -1);
  EXPECT_EQ(TAnsiString("abc").posSubStr(""), -1);
  EXPECT_EQ(TAnsiString().posSubStr("a"), -1);
}

TEST(TAnsiStringSearch, CharacterAndBackwardSearch) {
  const TAnsiString s("aXbxc");
  EXPECT_EQ(s.posSubChar('x'), 3);
  EXPECT_EQ(s.posSubChar('x', 0, CaseInsensitive), 1);
  EXPECT_EQ(s.find('a', -3), 0);
  EXPECT_EQ(s.find('c', 99), -1);
  EXPECT_EQ(s.reverseFind('X'), 1);
  EXPECT_EQ(s.reverseFind('X', -1, CaseInsensitive), 3);
  EXPECT_EQ(s.reverseFind('x', 2), -1);
  EXPECT_EQ(s.reverseFind('c', 50), 4);
  EXPECT_EQ(TAnsiString("abcabc").reverseFind("BC", -1, CaseInsensitive), 4);
  EXPECT_EQ(TAnsiString("abcabc").reverseFind("bc", 3), 1);
  EXPECT_EQ(TAnsiString("abc").reverseFind("abcd"), -1);
  EXPECT_EQ(TAnsiString("a.b.c").countOfChar('.'), 2);
  EXPECT_TRUE(TAnsiString("Report.CSV").isEndsWith(".csv", true));
  EXPECT_FALSE(TAnsiString("Report.CSV").beginWith("report"));
  EXPECT_TRUE(TAnsiString().beginWith(""));
}

TEST(TAnsiStringCompare, EmptiesAndOrder) {
  const struct {
    const char* a;
    const char* b;
    tCaseSensitivity cs;
    int expected;
  } cases[] = {{"", "a", CaseSensitive, -1},      {nullptr, nullptr, CaseSensitive, 0},
               {nullptr, "", CaseSensitive, 0},   {"a", nullptr, CaseSensitive, 1},
               {"abc", "abd", CaseSensitive, -1}, {"\x80", "a", CaseSensitive, 1},
               {"ABC", "abc", CaseSensitive, -1}, {"ABC", "abc", CaseInsensitive, 0},
               {"abc", "ab", CaseSensitive, 1}};
  for (const auto& c : cases) {
    const TAnsiString a(c.a);
    EXPECT_EQ(a.compare(c.b, c.cs), c.expected) << (c.a ? c.a : "null") << (c.b ? c.b : "null");
    EXPECT_EQ(a.equal(c.b, c.cs), c.expected == 0);
  }
  EXPECT_EQ(TAnsiString("abcX").ncompare("abcY", 3), 0);
  EXPECT_TRUE(TAnsiString("x") == 'x');
  EXPECT_TRUE(TAnsiString() == '\0');
  EXPECT_TRUE(TAnsiString("xy") != 'x');
  EXPECT_TRUE(TAnsiString("a") < TAnsiString("b"));
}

TEST(TAnsiStringEditing, ShorteningKeepsTheBuffer) {
  TAnsiString s("0123456789");
  const char* original = s.p();
  EXPECT_EQ(text(s.remove(2, 3)), "0156789");
  EXPECT_EQ(text(s.remove(5, 3)), "0156789");  // past the end: no change
  EXPECT_EQ(text(s.trunc(6)), "015678");
  EXPECT_EQ(text(s.truncRight(4)), "5678");
  EXPECT_EQ(text(s.chop(1)), "567");
  EXPECT_EQ(text(s.chop(9)), "");
  EXPECT_EQ(s.p(), original);
  s.setText("  a  ").trim();
  EXPECT_EQ(text(s), "a");
  s.setText("\ta\t").trim();
  EXPECT_EQ(text(s), "\ta\t");
  s.setText("xxaxyx").trimLeft("x").trimRight("xy");
  EXPECT_EQ(text(s), "a");
}

TEST(TAnsiStringEditing, ReplaceAndRemoveCharacters) {
  TAnsiString s("a.b.c");
  s.replace(".", "::");
  EXPECT_EQ(text(s), "a::b::c");
  s.replace("::", nullptr);
  EXPECT_EQ(text(s), "abc");
  s.setText("aAaA").replace("aa", "b", true);
  EXPECT_EQ(text(s), "bb");
  s.setText("aaa").replace("a", "");
  EXPECT_TRUE(s.isEmpty());
  EXPECT_NE(s.p(), nullptr);
  s.setText("a1b2\xC3\xA9").removeChr('0', '9');
  EXPECT_EQ(text(s), "ab\xC3\xA9");
  s.removeChr('\x80', '\xC3');  // signed: 0xA9 (-87) is inside, 'a' and 'b' are not
  EXPECT_EQ(text(s), "ab");
  EXPECT_EQ(text(s.setText("MiXeD").toLower()), "mixed");
  EXPECT_EQ(text(s.replace('x', 'y').toUpper()), "MIYED");
}

TEST(TAnsiStringExtraction, SubstringsAndCharacters) {
  const TAnsiString s("hello world");
  EXPECT_EQ(text(s.substring(-3, 5)), "hello");
  EXPECT_EQ(text(s.substring(6)), "world");
  EXPECT_EQ(text(s.substring(11, 2)), "");
  EXPECT_EQ(text(s.left(0)), "");
  EXPECT_EQ(text(s.last(5)), "world");
  EXPECT_EQ(text(s.right(50)), "hello world");
  EXPECT_EQ(text(TAnsiString(" one \t two  three").getNSubStr(1)), "two");
  EXPECT_EQ(text(TAnsiString("a/b/c").getCharRSubStr(2, '/')), "b/c");
  EXPECT_EQ(text(TAnsiString("abc").getCharRSubStr(1, '/')), "abc");
  EXPECT_EQ(s.getChar(4), 'o');
  EXPECT_EQ(s[11], '\0');
  EXPECT_EQ(s.back(), 'd');
  EXPECT_EQ(TAnsiString().front(), '\0');
}

TEST(TAnsiStringHash, SignedSuperFastHashVectors) {
  const char* base = "The quick brown fox";
  const unsigned expectedPrefix[] = {0,          0x70a549c3, 0xb0adfd9f, 0x4cc3bc0e, 0x00f85410,
                                     0x9c82f6a7, 0x7d4b1f13, 0x39d66775, 0x9c962a13};
  for (int n = 0; n <= 8; ++n) EXPECT_EQ(TAnsiString::hashValue(base, n), expectedPrefix[n]) << n;
  EXPECT_EQ(TAnsiString(base).hashValue(), 0x77d8492bU);
  EXPECT_EQ(TAnsiString::hashValue("\xe4\xb8\xad\xe6\x96\x87"), 0x12cc4485U);
  EXPECT_EQ(TAnsiString::hashValue("a\x80"
                                   "b"),
            0xfc654fb2U);
  EXPECT_EQ(TAnsiString::hashValue("ab\x90"), 0x2cd5462aU);
  EXPECT_EQ(TAnsiString::hashValue("\x80\x81\x82\x83\x84"), 0xee1f67abU);
  EXPECT_EQ(TAnsiString::hashValue(""), 0U);
  EXPECT_EQ(TAnsiString::hashValue(nullptr, 5), 0U);
}

TEST(TAnsiStringHash, MurmurHash64BVectors) {
  const char* base = "The quick brown fox";
  const unsigned long long expectedPrefix[] = {0,
                                               0x975d4f1a950620aeULL,
                                               0xd090fdc989095018ULL,
                                               0x523bcadad02671c4ULL,
                                               0xb4b83326e0134d00ULL,
                                               0x3501927599968418ULL,
                                               0xb6c1fdfbedc9a5aeULL,
                                               0x787aaf30466e3978ULL,
                                               0xd3b8f4839eec6298ULL,
                                               0x950dd95766ef153bULL,
                                               0xd990439dd7ab5a00ULL,
                                               0x41fbcd5ca9aa62d7ULL,
                                               0xb55c27a5114aa6d1ULL,
                                               0xeb2895c1952d66d2ULL,
                                               0x12b2ce87c622ebe7ULL,
                                               0xb3243d9621f0d618ULL};
  for (int n = 0; n <= 15; ++n) {
    EXPECT_EQ(TAnsiString::hashValue64(base, n), expectedPrefix[n]) << n;
  }
  EXPECT_EQ(TAnsiString(base).hashValue64(), 0x564f7f01fbc401d6ULL);
  EXPECT_EQ(TAnsiString::hashValue64("\x80\x81\x82\x83\x84"), 0x581ed23179b3235cULL);
  EXPECT_EQ(TAnsiString::hashValue64("ab\x90"), 0xb1023e64d74f67d0ULL);
  EXPECT_EQ(TAnsiString::hashValue64(nullptr, 3), 0ULL);
}

}  // namespace

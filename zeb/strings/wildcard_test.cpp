#include "zeb/strings/wildcard.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

std::u16string widen(const std::string& s) {
  return std::u16string(s.begin(), s.end());
}

// Runs one (text, pattern) pair through every matcher and reports the ones that disagree with
// `expected` by name.
std::string disagreeingMatchers(const std::string& text, const std::string& pattern,
                                bool expected) {
  const char* t = text.c_str();
  const char* p = pattern.c_str();
  const int len = static_cast<int>(pattern.size());
  const std::u16string wt = widen(text);
  const std::u16string wp = widen(pattern);
  const struct {
    const char* name;
    bool result;
  } results[] = {
      {"wildcardMatch", wildcardMatch(t, p)},
      {"wildcardMatchLen", wildcardMatchLen(t, p, len)},
      {"wildcardMatchLen(-1)", wildcardMatchLen(t, p, -1)},
      {"wildcardMatchW", wildcardMatchW(wt.c_str(), wp.c_str())},
      {"wildcardMatchLenW", wildcardMatchLenW(wt.c_str(), wp.c_str(), len)},
      {"wildcardMatchNormal", wildcardMatchNormal(t, p)},
      {"wildcardMatchNormalLen", wildcardMatchNormalLen(t, p, len)},
      {"wildcharMatchSlow", wildcharMatchSlow(t, p)},
      {"wildcharMatchSlow2", wildcharMatchSlow2(t, p)},
  };
  std::string wrong;
  for (const auto& r : results) {
    if (r.result != expected) wrong += std::string(r.name) + " ";
  }
  return wrong;
}

struct MatchCase {
  const char* text;
  const char* pattern;
  bool expected;
};

const MatchCase kMatchCases[] = {
    // Empty text and empty pattern.
    {"", "", true},
    {"", "*", true},
    {"", "***", true},
    {"", "?", false},
    {"a", "", false},
    {"", "*?", false},
    // Literals, '?' and anchoring.
    {"abc", "abc", true},
    {"abc", "a?c", true},
    {"abc", "ab", false},
    {"ab", "abc", false},
    {"ABC", "abc", false},
    {"abc", "???", true},
    {"abc", "????", false},
    {"a*c", "a*c", true},
    {"a?c", "abc", false},
    // One star.
    {"abc", "a*", true},
    {"abc", "*c", true},
    {"abc", "*b", false},
    {"abc", "b*", false},
    {"abc", "a*c", true},
    {"ac", "a*c", true},
    {"abc", "*abc*", true},
    {"report-2024-11.csv", "report-*.csv", true},
    {"report-2024-11.csv.bak", "report-*.csv", false},
    // Places where taking the first candidate for a segment and never revisiting goes wrong.
    {"abcbcd", "a*bcd", true},
    {"mississippi", "m*iss*ppi", true},
    {"mississippi", "m*iss*iss*ppi", true},
    {"mississippi", "m*iss*iss*iss*ppi", false},
    {"mississippi", "m*is*is*ip*i", true},
    {"aaab", "*aab", true},
    {"ab", "*?b", true},
    {"b", "*?b", false},
    {"abab", "*ab*ab", true},
    {"aab", "a*ab", true},
    {"abc", "*?", true},
    {"abc", "ab*?", true},
    {"ab", "ab*?", false},
    {"abcd", "*?*?*?*?", true},
    {"abc", "*?*?*?*?", false},
    {"xaybyc", "*a?b*c", true},
    {"aaaa", "*a*a*a*a*", true},
    {"aaa", "*a*a*a*a*", false},
    {"ba", "*a*b", false},
    {"abcabd", "*ab?", true},
    {"abcab", "*ab?", false},
    {"a", "**a**", true},
};

TEST(WildcardMatchTest, EveryMatcherGivesTheExpectedResult) {
  for (const MatchCase& c : kMatchCases) {
    EXPECT_EQ("", disagreeingMatchers(c.text, c.pattern, c.expected))
        << "text \"" << c.text << "\" pattern \"" << c.pattern << "\"";
  }
}

TEST(WildcardMatchTest, NullReadsAsEmpty) {
  const zwchar_t* nullW = nullptr;
  EXPECT_TRUE(wildcardMatch(nullptr, nullptr));
  EXPECT_TRUE(wildcardMatch(nullptr, "*"));
  EXPECT_FALSE(wildcardMatch("a", nullptr));
  EXPECT_TRUE(wildcardMatchW(nullW, ZW("*")));
  EXPECT_FALSE(wildcardMatchW(ZW("a"), nullW));
  EXPECT_TRUE(wildcardMatchLen(nullptr, nullptr, 3));
  EXPECT_TRUE(wildcardMatchLenW(nullW, nullW, -1));
  EXPECT_TRUE(wildcardMatchNormal(nullptr, "**"));
  EXPECT_FALSE(wildcardMatchNormalLen("a", nullptr, 1));
  EXPECT_TRUE(wildcharMatchSlow(nullptr, nullptr));
  EXPECT_FALSE(wildcharMatchSlow2(nullptr, "?"));
}

struct LenCase {
  const char* text;
  const char* pattern;
  int patternLen;
  bool expected;
};

TEST(WildcardMatchTest, LengthLimitsThePattern) {
  const LenCase cases[] = {
      {"ab", "abXYZ", 2, true},  {"abX", "abXYZ", 2, false}, {"", "abc", 0, true},
      {"a", "abc", 0, false},    {"abc", "abc", 10, true},   {"abc", "ab*", 3, true},
      {"abzzz", "ab*", 3, true}, {"ab", "ab*", 2, true},     {"abz", "a?zq", 3, true},
      {"abc", "a*c", -5, true},  {"abc", "*?x", 2, true},    {"", "*?x", 1, true},
  };
  for (const LenCase& c : cases) {
    const std::u16string wt = widen(c.text);
    const std::u16string wp = widen(c.pattern);
    SCOPED_TRACE(std::string(c.text) + " / " + c.pattern + " / " + std::to_string(c.patternLen));
    EXPECT_EQ(c.expected, wildcardMatchLen(c.text, c.pattern, c.patternLen));
    EXPECT_EQ(c.expected, wildcardMatchLenW(wt.c_str(), wp.c_str(), c.patternLen));
    EXPECT_EQ(c.expected, wildcardMatchNormalLen(c.text, c.pattern, c.patternLen));
  }
}

TEST(WildcardMatchTest, WideUnitsAreComparedWhole) {
  // U+0161 and U+012A share their low byte with 'a' and '*'.
  EXPECT_FALSE(wildcardMatchW(ZW("\u0161"), ZW("a")));
  EXPECT_FALSE(wildcardMatchW(ZW("xyz"), ZW("\u012a")));
  EXPECT_TRUE(wildcardMatchW(ZW("\u4e2d\u6587.txt"), ZW("?\u6587*.txt")));
  EXPECT_TRUE(wildcardMatchLenW(ZW("\u4e2d\u6587"), ZW("\u4e2d*xyz"), 2));
}

TEST(WildcardMatchTest, ManyStarsAgainstLongTextFinishQuickly) {
  const std::string text(5000, 'a');
  const std::string failing = "*a*a*a*a*a*a*a*a*a*a*a*a*b";
  const std::string failingInside = failing + "*";
  EXPECT_EQ("", disagreeingMatchers(text, failing, false));
  EXPECT_EQ("", disagreeingMatchers(text, failingInside, false));
  EXPECT_EQ("", disagreeingMatchers(text + "b", failing, true));
  EXPECT_EQ("", disagreeingMatchers(text + "b", failingInside, true));
}

TEST(WildcardMatchTest, AgreesWithTheTableOnRandomInput) {
  std::mt19937 random(20240611);
  const char patternAlphabet[] = "ab*?";
  const char textAlphabet[] = "aab*";
  auto randomString = [&](const char* alphabet, size_t maxLen) {
    std::string s(random() % (maxLen + 1), ' ');
    for (char& c : s) c = alphabet[random() % 4];
    return s;
  };
  for (int i = 0; i < 5000; ++i) {
    const std::string text = randomString(textAlphabet, 9);
    const std::string pattern = randomString(patternAlphabet, 7);
    const bool expected = wildcharMatchSlow2(text.c_str(), pattern.c_str());
    ASSERT_EQ("", disagreeingMatchers(text, pattern, expected))
        << "text \"" << text << "\" pattern \"" << pattern << "\"";
  }
}

}  // namespace

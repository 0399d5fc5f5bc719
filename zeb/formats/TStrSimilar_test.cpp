// Tests of TStrSimilar: the distance against a plain dynamic programme on random pairs (short and
// multi-word lengths, mixed case), the early stop, the word distance and word rule, the overlap
// counters with their 8-bit wrap, and the empty-input rule of the scores.

#include "zeb/formats/TStrSimilar.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "testing/plain_levenshtein.h"

namespace {

using zeb::testing::plainLevenshtein;

std::string randomText(std::mt19937& random, size_t n, const std::string& alphabet) {
  std::string s(n, ' ');
  for (char& c : s) c = alphabet[random() % alphabet.size()];
  return s;
}

TEST(StrSimilarDistance, EqualsThePlainProgrammeOnRandomPairs) {
  std::mt19937 random(5);
  TStrSimilar similar;
  const std::string alphabets[] = {"ab", "aAbBc", "abcdefghijklmnopqrstuvwxyz \xe4\xff"};
  const size_t lengths[] = {0, 1, 2, 7, 63, 64, 65, 127, 128, 129, 200, 300};
  for (const std::string& alphabet : alphabets) {
    for (size_t la : lengths) {
      for (size_t lb : lengths) {
        const std::string a = randomText(random, la, alphabet);
        std::string b = randomText(random, lb, alphabet);
        ASSERT_EQ(similar.distance(a.c_str(), b.c_str(), 0), plainLevenshtein(a, b))
            << la << " x " << lb << " over " << alphabet;
        // A shared prefix and suffix with a changed middle exercise the stripping.
        b = a.substr(0, la / 3) + randomText(random, lb % 17, alphabet) + a.substr(la / 3);
        ASSERT_EQ(similar.distance(a.c_str(), b.c_str(), 0), plainLevenshtein(a, b));
      }
    }
  }
}

TEST(StrSimilarDistance, EmptySidesAndFolding) {
  TStrSimilar similar;
  EXPECT_EQ(similar.distance("abc", "", 0), 3u);
  EXPECT_EQ(similar.distance(nullptr, "abcd", 2), 4u);
  EXPECT_EQ(similar.distance("", "", 0), 0u);
  EXPECT_EQ(similar.distance(nullptr, nullptr, 0), 0u);
  EXPECT_EQ(similar.distance("Kitten", "kITTEN", 0), 0u);
  EXPECT_EQ(similar.distance("kitten", "sitting", 0), 3u);
  EXPECT_EQ(similar.distance("\xe4", "\xc4", 0), 1u);  // only ASCII letters fold
  EXPECT_EQ(similar.distance("[", "{", 0), 1u);
}

TEST(StrSimilarDistance, LimitStopsAtTheFirstDiagonalCellAboveIt) {
  TStrSimilar similar;
  // Nothing in common: cell (2, 2) = 2 is the first diagonal cell above 1.
  EXPECT_EQ(similar.distance("abcdef", "uvwxyz", 1), 2u);
  EXPECT_EQ(similar.distance("abcdef", "uvwxyz", 0), 6u);
  EXPECT_EQ(similar.distance("abcdef", "uvwxyz", 6), 6u);
  // Stripping comes first: only "c" against "x" remains.
  EXPECT_EQ(similar.distance("abcdef", "abxdef", 1), 1u);

  std::mt19937 random(9);
  for (int round = 0; round < 300; ++round) {
    const std::string a = randomText(random, random() % 40, "abc");
    const std::string b = randomText(random, random() % 40, "abc");
    const unsigned limit = 1 + random() % 6, full = plainLevenshtein(a, b);
    const unsigned stopped = similar.distance(a.c_str(), b.c_str(), limit);
    if (stopped != full) {
      EXPECT_GT(stopped, limit) << a << " / " << b;
    }
  }
}

TEST(StrSimilarDistance, LongStringsBeyondTheMatrixUseTwoRows) {
  TStrSimilar similar;
  const std::string a(50000, 'a'), b(50000, 'b');
  EXPECT_EQ(similar.distance(a.c_str(), b.c_str(), 1), 2u);
  EXPECT_EQ(similar.distance(a.c_str(), (a + "b").c_str(), 0), 1u);
}

TEST(StrSimilarScores, ProportionAndDecay) {
  TStrSimilar similar;
  EXPECT_EQ(similar.similarity_proportion("Kitten", "kitten"), 100u);
  EXPECT_EQ(similar.similarity_proportion("kitten", "sitting"), 57u);  // 4 * 100 / 7
  EXPECT_EQ(similar.similarity_proportion("", nullptr), 100u);
  EXPECT_EQ(similar.similarity_proportion("abc", ""), 0u);
  EXPECT_EQ(similar.similarity_dkl_s("same", "same", 50), 100u);
  EXPECT_EQ(similar.similarity_dkl_s("same", "sane", 50), 50u);
  EXPECT_EQ(similar.similarity_dkl_s("abcdef", "uvwxyz", 50), 33u);  // stopped at 2: 100 / 3
  EXPECT_EQ(similar.similarity_dkl_s("abcdef", "uvwxyz", 0), 14u);   // full 6: 100 / 7
  EXPECT_EQ(similar.similarity_dkl_s(nullptr, "x", 50), 0u);
  EXPECT_EQ(similar.simlarity_composite("Report 2024", "Report 2024"), 100u);
  // Overlap 100 (same characters), proportion 50 (a swap is two edits): (100 + 150) / 4.
  EXPECT_EQ(similar.simlarity_composite("abcd", "ABDC"), 62u);
}

TEST(StrSimilarWords, WordRuleAndWordScores) {
  TStrSimilar similar;
  EXPECT_EQ(similar.similarityWords_proportion("the quick brown fox", "The QUICK red fox"), 75u);
  EXPECT_EQ(similar.similarityWords_proportion("a~b", "a b"), 100u);
  EXPECT_EQ(similar.similarityWords_proportion("a\tb\x01" "c", "a b c"), 100u);
  EXPECT_EQ(similar.similarityWords_proportion("one two", "one two three four"), 50u);
  // Bytes from 128 up separate words: these texts have none, and two wordless texts are alike.
  EXPECT_EQ(similar.similarityWords_proportion("\xe4\xbd\xa0\xe5\xa5\xbd", "\xe5\x86\x8d"), 100u);
  EXPECT_EQ(similar.similarityWords_proportion("caf\xc3\xa9 bar", "caf bar"), 100u);
  EXPECT_EQ(similar.similarityWords_dkl("a b c d", "a b c d", 50), 100u);
  EXPECT_EQ(similar.similarityWords_dkl("a b c d", "a x c d", 50), 50u);
  EXPECT_EQ(similar.similarityWords_dkl("a b c d", "w x y z", 50), 33u);
  EXPECT_EQ(similar.similarityWords_dkl("", "", 10), 100u);
}

TEST(StrSimilarOverlap, SetsOfPrintableCharacters) {
  TStrSimilar similar;
  EXPECT_EQ(similar.similarity_InterSec("abc", "cab"), 100u);
  EXPECT_EQ(similar.similarity_InterSec("abc", "abd"), 50u);
  EXPECT_EQ(similar.similarity_InterSec("ABC", "abc"), 0u);
  EXPECT_EQ(similar.similarity_InterSecNoCase("ABC", "abc"), 100u);
  EXPECT_EQ(similar.similarity_InterSec("aaaa", "a"), 100u);
  // Bytes outside 32-126 take no part; an empty union scores 0 in both forms.
  EXPECT_EQ(similar.similarity_InterSec("a\xff\x01", "a"), 100u);
  EXPECT_EQ(similar.similarity_InterSec("\xff", "\xfe"), 0u);
  EXPECT_EQ(similar.similarity_InterSecNoCase("\t", "\n"), 0u);
  EXPECT_EQ(similar.similarity_InterSec("", ""), 100u);
  EXPECT_EQ(similar.similarity_InterSecNoCase("x", nullptr), 0u);
}

TEST(StrSimilarOverlap, CountersWrapAfter255) {
  TStrSimilar similar;
  // 256 occurrences of 'a' count as none: the union is {a, b}, the intersection {b}.
  const std::string wrapped = std::string(256, 'a') + "b";
  EXPECT_EQ(similar.similarity_InterSec(wrapped.c_str(), "ab"), 50u);
  const std::string notWrapped = std::string(255, 'a') + "b";
  EXPECT_EQ(similar.similarity_InterSec(notWrapped.c_str(), "ab"), 100u);
  const std::string folded = std::string(128, 'a') + std::string(128, 'A') + "b";
  EXPECT_EQ(similar.similarity_InterSecNoCase(folded.c_str(), "ab"), 50u);
  EXPECT_EQ(similar.similarity_InterSec(folded.c_str(), "ab"), 66u);  // {a, b} of {a, A, b}
}

}  // namespace

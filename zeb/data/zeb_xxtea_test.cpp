// Tests of XXTEA and the text helper: a separate implementation's results, round trips, the
// refused sizes, and the text padding rule.

#include "zeb/data/zeb_xxtea.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {
#include "zeb/data/testdata/codec_vectors.inc"

TEST(Xxtea, MatchesTheReferenceAndDecryptsBack) {
  for (const XxteaVector& v : kXxteaVectors) {
    std::vector<unsigned> words(v.words, v.words + v.n);
    EXPECT_EQ(zeb_xxtea(words.data(), v.n, v.key), 0u);
    EXPECT_EQ(words, std::vector<unsigned>(v.encrypted, v.encrypted + v.n));
    EXPECT_EQ(zeb_xxtea(words.data(), -v.n, v.key), 0u);
    EXPECT_EQ(words, std::vector<unsigned>(v.words, v.words + v.n));
  }
}

TEST(Xxtea, RoundTripsEverySizeAndRefusesSingleWords) {
  std::mt19937 random(3);
  unsigned key[4];
  for (unsigned& k : key) k = static_cast<unsigned>(random());
  for (int n = 2; n < 70; ++n) {
    std::vector<unsigned> words(n);
    for (unsigned& w : words) w = static_cast<unsigned>(random());
    const std::vector<unsigned> original = words;
    zeb_xxtea(words.data(), n, key);
    EXPECT_NE(words, original);
    zeb_xxtea(words.data(), -n, key);
    EXPECT_EQ(words, original);
  }
  unsigned word = 42;
  for (int n : {-1, 0, 1}) {
    EXPECT_EQ(zeb_xxtea(&word, n, key), 1u);
    EXPECT_EQ(word, 42u);
  }
  unsigned pair[2] = {1, 2};
  EXPECT_EQ(zeb_xxtea(pair, 2, nullptr), 1u);
  EXPECT_EQ(zeb_xxtea(nullptr, 2, key), 1u);
  EXPECT_EQ(pair[0], 1u);
}

TEST(TeaTextData, PadsEncryptsAndWritesHex) {
  TAnsiString empty, shortText("abc"), padded("abcde"), exact("abcdefgh");
  EXPECT_TRUE(zeb_tea_textdata(empty));
  EXPECT_EQ(empty.length(), 16);
  EXPECT_TRUE(zeb_tea_textdata(shortText));
  EXPECT_EQ(shortText.length(), 16);
  EXPECT_TRUE(zeb_tea_textdata(padded));
  EXPECT_EQ(padded.length(), 16);
  EXPECT_TRUE(zeb_tea_textdata(exact));
  EXPECT_EQ(exact.length(), 16);
  EXPECT_FALSE(padded.contain("ABCDEF"));
  // Padding is with spaces: "abc" encrypts as its padded form does; other texts differ.
  TAnsiString spelledOut("abc     ");
  EXPECT_TRUE(zeb_tea_textdata(spelledOut));
  EXPECT_EQ(spelledOut, shortText);
  EXPECT_NE(padded, exact);
  EXPECT_NE(shortText, empty);

  TAnsiString four("abcd");
  EXPECT_FALSE(zeb_tea_textdata(four));
  EXPECT_STREQ(four.p(), "abcd");
}

}  // namespace

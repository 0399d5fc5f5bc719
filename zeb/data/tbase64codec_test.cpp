// Tests of Base64: output equal to Python's encoder with the library's line rule on random
// inputs, the line rule at its edges, and the lenient decoding rules.

#include "zeb/data/tbase64codec.h"

#include <gtest/gtest.h>

#include <string>

namespace {
#include "zeb/data/testdata/codec_vectors.inc"

std::string encoded(const std::string& data) {
  TAnsiString out;
  const int n = tbase64codec::Encode(data.data(), static_cast<int>(data.size()), out);
  EXPECT_EQ(n, out.length());
  return n == 0 ? "" : std::string(out.p(), n);
}

std::string decoded(const std::string& text, int length) {
  TAnsiString out;
  const int n = tbase64codec::Decode(text.c_str(), length, out);
  if (n > 0) {
    EXPECT_EQ(out.p()[n], '\0');
  }
  return n == 0 ? "" : std::string(out.p(), n);
}

std::string decoded(const std::string& text) {
  return decoded(text, static_cast<int>(text.size()));
}

TEST(Base64, MatchesTheReferenceEncoderAndDecodesBack) {
  for (const CodecVector& v : kCodecVectors) {
    const std::string data(v.data, v.size);
    EXPECT_EQ(encoded(data), v.base64) << "size " << v.size;
    EXPECT_EQ(decoded(v.base64), data) << "size " << v.size;
    const tbytesdata bytes = tbase64codec::Decode(v.base64, -1);
    ASSERT_EQ(bytes.size(), static_cast<int>(v.size));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.p()), v.size), data);
  }
}

TEST(Base64, BreaksLinesOnlyAfterFullGroups) {
  const std::string line57(57, 'x');
  const std::string text = encoded(line57);
  ASSERT_EQ(text.size(), 78u);
  EXPECT_EQ(text.substr(76), "\r\n");

  const std::string tail = encoded(line57 + "y");
  EXPECT_EQ(tail.substr(76), "\r\neQ==");
  EXPECT_EQ(encoded(std::string(114, 'x')).size(), 2 * 78u);
  EXPECT_EQ(encoded(std::string(56, 'x')).find('\r'), std::string::npos);
}

TEST(Base64, ReservesTheDocumentedRoomAndRejectsNothingToEncode) {
  TAnsiString out;
  EXPECT_EQ(tbase64codec::Encode("a", 1, out), 4);
  EXPECT_STREQ(out.p(), "YQ==");
  tbase64codec::Encode("0123456789", 10, out);
  EXPECT_GE(out.getCapacity(), 31);
  EXPECT_EQ(tbase64codec::Encode(nullptr, 5, out), 0);
  EXPECT_TRUE(out.isEmpty());
  EXPECT_EQ(tbase64codec::Encode("abc", 0, out), 0);
  EXPECT_EQ(tbase64codec::Encode("abc", -1, out), 0);
}

TEST(Base64Decode, SkipsLineBreaksOnlyWhereAGroupStarts) {
  EXPECT_EQ(decoded("\r\nYWJj\nZGVm\r\n"), "abcdef");
  // Inside a group CR counts as a character, here the value 0 in the second position.
  EXPECT_EQ(decoded("Y\rJj"), std::string("\x60\x02\x63", 3));
}

TEST(Base64Decode, ReadsShortAndUnpaddedGroupsByPosition) {
  EXPECT_EQ(decoded("YQ=="), "a");
  EXPECT_EQ(decoded("YWI="), "ab");
  // A lone first character still gives a byte; the missing second counts as 0.
  EXPECT_EQ(decoded("YWJjY"), std::string("abc\x60", 4));
  // Two characters and the end: one byte.
  EXPECT_EQ(decoded("YQ"), "a");
  // A third character before the end gives a second byte, and the missing fourth (not '=') a third.
  EXPECT_EQ(decoded("YWI"), std::string("ab\0", 3));
  // '=' in the fourth position ends the group even when text follows.
  EXPECT_EQ(decoded("YWI=YWJj"), "ababc");
}

TEST(Base64Decode, TakesCharactersOutsideTheAlphabetAsZero) {
  EXPECT_EQ(decoded("!!!!"), std::string(3, '\0'));
  EXPECT_EQ(decoded("Y!Jj"), decoded("YAJj"));
}

TEST(Base64Decode, LeadingDotLengthAndEmptyInput) {
  EXPECT_EQ(decoded(".YWJj"), "");
  EXPECT_EQ(decoded("Y.Jj"), decoded("YAJj"));
  EXPECT_EQ(decoded("YWJjZGVm", 4), "abc");
  EXPECT_EQ(decoded("YWJj", -1), "abc");
  TAnsiString out("kept");
  EXPECT_EQ(tbase64codec::Decode(nullptr, 4, out), 0);
  EXPECT_TRUE(out.isEmpty());
  EXPECT_EQ(tbase64codec::Decode("", -1, out), 0);
  EXPECT_TRUE(tbase64codec::Decode(".abc", -1).isEmpty());
}

}  // namespace

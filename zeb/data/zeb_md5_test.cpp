// Tests of MD5: RFC 1321's test suite, Python's hashlib on random inputs (block and padding
// boundaries included), and the function and class forms.

#include "zeb/data/zeb_md5.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

namespace {
#include "zeb/data/testdata/codec_vectors.inc"

std::string md5Hex(const std::string& data) {
  char hex[33];
  CalculateMD5(nullptr, hex, data.data(), static_cast<unsigned>(data.size()));
  return hex;
}

TEST(Md5, Rfc1321TestSuite) {
  EXPECT_EQ(md5Hex(""), "d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(md5Hex("a"), "0cc175b9c0f1b6a831c399e269772661");
  EXPECT_EQ(md5Hex("abc"), "900150983cd24fb0d6963f7d28e17f72");
  EXPECT_EQ(md5Hex("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
  EXPECT_EQ(md5Hex("abcdefghijklmnopqrstuvwxyz"), "c3fcd3d76192e4007dfb496cca67e13b");
  EXPECT_EQ(md5Hex("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
            "d174ab98d277d9f5a5611c2c9f419d9f");
  EXPECT_EQ(md5Hex("1234567890123456789012345678901234567890123456789012345678901234567890"
                   "1234567890"),
            "57edf4a22be3c955ac49da2e2107b67a");
}

TEST(Md5, MatchesHashlibOnRandomInputs) {
  for (const CodecVector& v : kCodecVectors)
    EXPECT_EQ(md5Hex(std::string(v.data, v.size)), v.md5) << "size " << v.size;
}

TEST(Md5, DigestBuffersAndNullData) {
  unsigned char digest[16];
  EXPECT_EQ(CalculateMD5(digest, nullptr, "abc", 3), digest);
  EXPECT_EQ(digest[0], 0x90);
  EXPECT_EQ(digest[15], 0x72);
  const unsigned char* own = CalculateMD5(nullptr, nullptr, nullptr, 100);
  EXPECT_EQ(memcmp(own, "\xd4\x1d\x8c\xd9", 4), 0);
}

TEST(Md5Class, ConstructorsDigestAtOnceAndCopiesKeepTheHash) {
  EXPECT_TRUE(zeb_md5().GetHash().isEmpty());
  EXPECT_EQ(zeb_md5().GetRawHash()[0], 0);
  const zeb_md5 fromText("abc");
  EXPECT_STREQ(fromText.GetHash().p(), "900150983cd24fb0d6963f7d28e17f72");
  const zeb_md5 fromBytes("abcdef", 3);
  EXPECT_EQ(memcmp(fromBytes.GetRawHash(), fromText.GetRawHash(), 16), 0);

  zeb_md5 md5;
  const unsigned char* raw = md5.Calculate(reinterpret_cast<const unsigned char*>("a"), 1);
  EXPECT_EQ(raw, md5.GetRawHash());
  EXPECT_STREQ(md5.GetHash().p(), "0cc175b9c0f1b6a831c399e269772661");
  EXPECT_STREQ(md5.CalculateText("").p(), "d41d8cd98f00b204e9800998ecf8427e");

  zeb_md5 copy(fromText);
  zeb_md5 moved(std::move(copy));
  EXPECT_STREQ(moved.GetHash().p(), fromText.GetHash().p());
  md5 = moved;
  EXPECT_EQ(memcmp(md5.GetRawHash(), fromText.GetRawHash(), 16), 0);
}

}  // namespace

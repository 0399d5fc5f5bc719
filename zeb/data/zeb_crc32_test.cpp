// Tests of CRC-32: the check value, zlib's values on random inputs, and continuation across
// every split so that the table path and the folding path agree at every alignment and length.

#include "zeb/data/zeb_crc32.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {
#include "zeb/data/testdata/codec_vectors.inc"

// One bit at a time, straight from the definition.
unsigned bitwiseCrc(const unsigned char* p, size_t n) {
  unsigned r = ~0u;
  for (size_t i = 0; i < n; ++i) {
    r ^= p[i];
    for (int k = 0; k < 8; ++k) r = (r >> 1) ^ ((r & 1) ? 0xEDB88320u : 0);
  }
  return ~r;
}

TEST(Crc32, CheckValueAndNullData) {
  EXPECT_EQ(zeb_crc32(0, "123456789", 9), 0xCBF43926u);
  EXPECT_EQ(zeb_crc32(zeb_crc32(0, "1234", 4), "56789", 5), 0xCBF43926u);
  EXPECT_EQ(zeb_crc32(0x1234u, nullptr, 10), 0u);
  EXPECT_EQ(zeb_crc32(0x1234u, "x", 0), 0x1234u);
}

TEST(Crc32, MatchesZlibOnRandomInputs) {
  for (const CodecVector& v : kCodecVectors) EXPECT_EQ(zeb_crc32(0, v.data, v.size), v.crc32);
}

TEST(Crc32, EveryOffsetLengthAndSplitAgreesWithTheDefinition) {
  std::mt19937 random(7);
  std::vector<unsigned char> data(5000);
  for (unsigned char& b : data) b = static_cast<unsigned char>(random());
  for (size_t offset = 0; offset < 32; ++offset) {
    for (size_t length : {0, 1, 15, 16, 63, 64, 255, 256, 257, 300, 1023, 4096, 4900}) {
      const unsigned char* p = data.data() + offset;
      const unsigned expected = bitwiseCrc(p, length);
      ASSERT_EQ(zeb_crc32(0, p, static_cast<unsigned>(length)), expected) << offset << "+" << length;
      const size_t split = length / 3 + offset;
      if (split > length) continue;
      const unsigned first = zeb_crc32(0, p, static_cast<unsigned>(split));
      EXPECT_EQ(zeb_crc32(first, p + split, static_cast<unsigned>(length - split)), expected);
    }
  }
}

}  // namespace

// XXTEA and the text helper built on it.

#include "zeb/data/zeb_xxtea.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "zeb/data/binary_hex.h"
#include "zeb/data/internal/little_endian.h"

using zeb::internal::load32le;
using zeb::internal::store32le;

namespace {

constexpr uint32_t kDelta = 0x9E3779B9u;

// The key of zeb_tea_textdata: a fixed private constant of this library.
constexpr unsigned int kTextKey[4] = {0x7A65622Du, 0x54656131u, 0xC3A95F02u, 0x1D8B6E4Fu};

inline uint32_t mix(uint32_t sum, uint32_t y, uint32_t z, uint32_t p, uint32_t e,
                    const unsigned int* key) {
  return (((z >> 5) ^ (y << 2)) + ((y >> 3) ^ (z << 4))) ^ ((sum ^ y) + (key[(p & 3) ^ e] ^ z));
}

void encrypt(uint32_t* v, uint32_t n, const unsigned int* key) {
  uint32_t rounds = 6 + 52 / n, sum = 0, z = v[n - 1];
  while (rounds-- > 0) {
    sum += kDelta;
    const uint32_t e = (sum >> 2) & 3;
    uint32_t p = 0;
    for (; p < n - 1; ++p) z = v[p] += mix(sum, v[p + 1], z, p, e, key);
    z = v[n - 1] += mix(sum, v[0], z, p, e, key);
  }
}

void decrypt(uint32_t* v, uint32_t n, const unsigned int* key) {
  uint32_t rounds = 6 + 52 / n, sum = rounds * kDelta, y = v[0];
  while (rounds-- > 0) {
    const uint32_t e = (sum >> 2) & 3;
    uint32_t p = n - 1;
    for (; p > 0; --p) y = v[p] -= mix(sum, y, v[p - 1], p, e, key);
    y = v[0] -= mix(sum, y, v[n - 1], p, e, key);
    sum -= kDelta;
  }
}

// The padded length of a text of `length` bytes.
int paddedLength(int length) {
  if (length < 4) return 8;
  return (length + 3) / 4 * 4;
}

}  // namespace

unsigned int zeb_xxtea(unsigned int* words, int n, const unsigned int* key) {
  if (words == nullptr || key == nullptr) return 1;
  if (n > 1) {
    encrypt(words, static_cast<uint32_t>(n), key);
  } else if (n < -1) {
    decrypt(words, static_cast<uint32_t>(-static_cast<long long>(n)), key);
  } else {
    return 1;
  }
  return 0;
}

bool zeb_tea_textdata(TAnsiString& text) {
  const int length = text.length();
  const int padded = paddedLength(length);
  if (padded == 4) return false;
  std::vector<unsigned char> bytes(static_cast<size_t>(padded), ' ');
  for (int i = 0; i < length; ++i) bytes[i] = static_cast<unsigned char>(text.data()[i]);
  std::vector<unsigned int> words(static_cast<size_t>(padded / 4));
  for (size_t w = 0; w < words.size(); ++w) words[w] = load32le(&bytes[4 * w]);
  zeb_xxtea(words.data(), static_cast<int>(words.size()), kTextKey);
  for (size_t w = 0; w < words.size(); ++w) store32le(&bytes[4 * w], words[w]);
  BinaryToHexNoTagA(bytes.data(), padded, text, true, 0);
  return true;
}

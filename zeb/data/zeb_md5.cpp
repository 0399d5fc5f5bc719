// MD5: the 64-step compression function unrolled, with the usual reformulated boolean functions
// (F as z ^ (x & (y ^ z)); G as the sum of (y & ~z) and (x & z), whose bits never overlap, so
// the part that does not depend on the previous step is added early) so each step is a few
// instructions.

#include "zeb/data/zeb_md5.h"

#include <cstdint>
#include <cstring>

#include "zeb/data/binary_hex.h"
#include "zeb/data/internal/little_endian.h"

using zeb::internal::load32le;
using zeb::internal::store32le;

namespace {

constexpr int kDigestSize = 16;
constexpr int kHexSize = 2 * kDigestSize + 1;

inline uint32_t rotl(uint32_t v, int s) {
  return (v << s) | (v >> (32 - s));
}

#define ZEB_MD5_STEP(f, a, b, c, d, k, s, t) a = rotl(a + f(b, c, d) + x[k] + (t), s) + b
#define ZEB_MD5_STEP_G(a, b, c, d, k, s, t) a = rotl(a + (c & ~d) + x[k] + (t) + (b & d), s) + b
#define ZEB_MD5_F(x, y, z) ((z) ^ ((x) & ((y) ^ (z))))
#define ZEB_MD5_H(x, y, z) ((x) ^ (y) ^ (z))
#define ZEB_MD5_I(x, y, z) ((y) ^ ((x) | ~(z)))

void compress(uint32_t state[4], const unsigned char* block) {
  uint32_t x[16];
  for (int i = 0; i < 16; ++i) x[i] = load32le(block + 4 * i);
  uint32_t a = state[0], b = state[1], c = state[2], d = state[3];

  ZEB_MD5_STEP(ZEB_MD5_F, a, b, c, d, 0, 7, 0xd76aa478);
  ZEB_MD5_STEP(ZEB_MD5_F, d, a, b, c, 1, 12, 0xe8c7b756);
  ZEB_MD5_STEP(ZEB_MD5_F, c, d, a, b, 2, 17, 0x242070db);
  ZEB_MD5_STEP(ZEB_MD5_F, b, c, d, a, 3, 22, 0xc1bdceee);
  ZEB_MD5_STEP(ZEB_MD5_F, a, b, c, d, 4, 7, 0xf57c0faf);
  ZEB_MD5_STEP(ZEB_MD5_F, d, a, b, c, 5, 12, 0x4787c62a);
  ZEB_MD5_STEP(ZEB_MD5_F, c, d, a, b, 6, 17, 0xa8304613);
  ZEB_MD5_STEP(ZEB_MD5_F, b, c, d, a, 7, 22, 0xfd469501);
  ZEB_MD5_STEP(ZEB_MD5_F, a, b, c, d, 8, 7, 0x698098d8);
  ZEB_MD5_STEP(ZEB_MD5_F, d, a, b, c, 9, 12, 0x8b44f7af);
  ZEB_MD5_STEP(ZEB_MD5_F, c, d, a, b, 10, 17, 0xffff5bb1);
  ZEB_MD5_STEP(ZEB_MD5_F, b, c, d, a, 11, 22, 0x895cd7be);
  ZEB_MD5_STEP(ZEB_MD5_F, a, b, c, d, 12, 7, 0x6b901122);
  ZEB_MD5_STEP(ZEB_MD5_F, d, a, b, c, 13, 12, 0xfd987193);
  ZEB_MD5_STEP(ZEB_MD5_F, c, d, a, b, 14, 17, 0xa679438e);
  ZEB_MD5_STEP(ZEB_MD5_F, b, c, d, a, 15, 22, 0x49b40821);

  ZEB_MD5_STEP_G(a, b, c, d, 1, 5, 0xf61e2562);
  ZEB_MD5_STEP_G(d, a, b, c, 6, 9, 0xc040b340);
  ZEB_MD5_STEP_G(c, d, a, b, 11, 14, 0x265e5a51);
  ZEB_MD5_STEP_G(b, c, d, a, 0, 20, 0xe9b6c7aa);
  ZEB_MD5_STEP_G(a, b, c, d, 5, 5, 0xd62f105d);
  ZEB_MD5_STEP_G(d, a, b, c, 10, 9, 0x02441453);
  ZEB_MD5_STEP_G(c, d, a, b, 15, 14, 0xd8a1e681);
  ZEB_MD5_STEP_G(b, c, d, a, 4, 20, 0xe7d3fbc8);
  ZEB_MD5_STEP_G(a, b, c, d, 9, 5, 0x21e1cde6);
  ZEB_MD5_STEP_G(d, a, b, c, 14, 9, 0xc33707d6);
  ZEB_MD5_STEP_G(c, d, a, b, 3, 14, 0xf4d50d87);
  ZEB_MD5_STEP_G(b, c, d, a, 8, 20, 0x455a14ed);
  ZEB_MD5_STEP_G(a, b, c, d, 13, 5, 0xa9e3e905);
  ZEB_MD5_STEP_G(d, a, b, c, 2, 9, 0xfcefa3f8);
  ZEB_MD5_STEP_G(c, d, a, b, 7, 14, 0x676f02d9);
  ZEB_MD5_STEP_G(b, c, d, a, 12, 20, 0x8d2a4c8a);

  ZEB_MD5_STEP(ZEB_MD5_H, a, b, c, d, 5, 4, 0xfffa3942);
  ZEB_MD5_STEP(ZEB_MD5_H, d, a, b, c, 8, 11, 0x8771f681);
  ZEB_MD5_STEP(ZEB_MD5_H, c, d, a, b, 11, 16, 0x6d9d6122);
  ZEB_MD5_STEP(ZEB_MD5_H, b, c, d, a, 14, 23, 0xfde5380c);
  ZEB_MD5_STEP(ZEB_MD5_H, a, b, c, d, 1, 4, 0xa4beea44);
  ZEB_MD5_STEP(ZEB_MD5_H, d, a, b, c, 4, 11, 0x4bdecfa9);
  ZEB_MD5_STEP(ZEB_MD5_H, c, d, a, b, 7, 16, 0xf6bb4b60);
  ZEB_MD5_STEP(ZEB_MD5_H, b, c, d, a, 10, 23, 0xbebfbc70);
  ZEB_MD5_STEP(ZEB_MD5_H, a, b, c, d, 13, 4, 0x289b7ec6);
  ZEB_MD5_STEP(ZEB_MD5_H, d, a, b, c, 0, 11, 0xeaa127fa);
  ZEB_MD5_STEP(ZEB_MD5_H, c, d, a, b, 3, 16, 0xd4ef3085);
  ZEB_MD5_STEP(ZEB_MD5_H, b, c, d, a, 6, 23, 0x04881d05);
  ZEB_MD5_STEP(ZEB_MD5_H, a, b, c, d, 9, 4, 0xd9d4d039);
  ZEB_MD5_STEP(ZEB_MD5_H, d, a, b, c, 12, 11, 0xe6db99e5);
  ZEB_MD5_STEP(ZEB_MD5_H, c, d, a, b, 15, 16, 0x1fa27cf8);
  ZEB_MD5_STEP(ZEB_MD5_H, b, c, d, a, 2, 23, 0xc4ac5665);

  ZEB_MD5_STEP(ZEB_MD5_I, a, b, c, d, 0, 6, 0xf4292244);
  ZEB_MD5_STEP(ZEB_MD5_I, d, a, b, c, 7, 10, 0x432aff97);
  ZEB_MD5_STEP(ZEB_MD5_I, c, d, a, b, 14, 15, 0xab9423a7);
  ZEB_MD5_STEP(ZEB_MD5_I, b, c, d, a, 5, 21, 0xfc93a039);
  ZEB_MD5_STEP(ZEB_MD5_I, a, b, c, d, 12, 6, 0x655b59c3);
  ZEB_MD5_STEP(ZEB_MD5_I, d, a, b, c, 3, 10, 0x8f0ccc92);
  ZEB_MD5_STEP(ZEB_MD5_I, c, d, a, b, 10, 15, 0xffeff47d);
  ZEB_MD5_STEP(ZEB_MD5_I, b, c, d, a, 1, 21, 0x85845dd1);
  ZEB_MD5_STEP(ZEB_MD5_I, a, b, c, d, 8, 6, 0x6fa87e4f);
  ZEB_MD5_STEP(ZEB_MD5_I, d, a, b, c, 15, 10, 0xfe2ce6e0);
  ZEB_MD5_STEP(ZEB_MD5_I, c, d, a, b, 6, 15, 0xa3014314);
  ZEB_MD5_STEP(ZEB_MD5_I, b, c, d, a, 13, 21, 0x4e0811a1);
  ZEB_MD5_STEP(ZEB_MD5_I, a, b, c, d, 4, 6, 0xf7537e82);
  ZEB_MD5_STEP(ZEB_MD5_I, d, a, b, c, 11, 10, 0xbd3af235);
  ZEB_MD5_STEP(ZEB_MD5_I, c, d, a, b, 2, 15, 0x2ad7d2bb);
  ZEB_MD5_STEP(ZEB_MD5_I, b, c, d, a, 9, 21, 0xeb86d391);

  state[0] += a;
  state[1] += b;
  state[2] += c;
  state[3] += d;
}

#undef ZEB_MD5_STEP
#undef ZEB_MD5_F
#undef ZEB_MD5_STEP_G
#undef ZEB_MD5_H
#undef ZEB_MD5_I

// The whole message at once: the full blocks straight from the input, then the rest with the
// padding (0x80, zeros, the bit length little-endian) in one or two blocks.
void md5(const unsigned char* data, unsigned int length, unsigned char digest[kDigestSize]) {
  uint32_t state[4] = {0x67452301u, 0xefcdab89u, 0x98badcfeu, 0x10325476u};
  const unsigned int fullBlocks = length / 64;
  for (unsigned int i = 0; i < fullBlocks; ++i) compress(state, data + 64 * i);

  unsigned char tail[128] = {};
  const unsigned int rest = length % 64;
  if (rest > 0) memcpy(tail, data + 64 * fullBlocks, rest);
  tail[rest] = 0x80;
  const unsigned int tailSize = rest < 56 ? 64 : 128;
  const uint64_t bits = static_cast<uint64_t>(length) * 8;
  store32le(tail + tailSize - 8, static_cast<uint32_t>(bits));
  store32le(tail + tailSize - 4, static_cast<uint32_t>(bits >> 32));
  for (unsigned int at = 0; at < tailSize; at += 64) compress(state, tail + at);

  for (int i = 0; i < 4; ++i) store32le(digest + 4 * i, state[i]);
}

const unsigned char* bytesOf(const void* data, unsigned int& length) {
  if (data == nullptr) length = 0;
  return static_cast<const unsigned char*>(data);
}

}  // namespace

unsigned char* CalculateMD5(unsigned char* digest, char* hexText, const void* data,
                            unsigned int length) {
  thread_local unsigned char ownDigest[kDigestSize];
  if (digest == nullptr) digest = ownDigest;
  const unsigned char* bytes = bytesOf(data, length);
  md5(bytes, length, digest);
  if (hexText != nullptr) BinaryToHexNoTagA(digest, kDigestSize, hexText, true, 0);
  return digest;
}

zeb_md5::zeb_md5() = default;

zeb_md5::zeb_md5(const char* text) {
  CalculateText(text);
}

zeb_md5::zeb_md5(const void* data, unsigned int length) {
  CalculateText(static_cast<const unsigned char*>(data), length);
}

const unsigned char* zeb_md5::Calculate(const unsigned char* data, unsigned int length) {
  CalculateText(data, length);
  return m_raw;
}

const TAnsiString& zeb_md5::CalculateText(const unsigned char* data, unsigned int length) {
  m_hex.resetCapacity(kHexSize);
  CalculateMD5(m_raw, m_hex.data(), data, length);
  return m_hex;
}

const TAnsiString& zeb_md5::CalculateText(const char* text) {
  const unsigned int length = text == nullptr ? 0 : static_cast<unsigned int>(strlen(text));
  return CalculateText(reinterpret_cast<const unsigned char*>(text), length);
}

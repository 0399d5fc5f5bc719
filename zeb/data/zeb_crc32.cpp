// CRC-32 in two ways that give identical results:
//   - slicing by 16: sixteen 256-entry tables fold 16 input bytes into the register per step;
//   - on x86-64 processors with PCLMULQDQ, inputs of 64 bytes or more are folded 64 bytes per
//     step with carry-less multiplication (unaligned loads) and reduced to 32 bits by Barrett
//     reduction; the last n mod 16 bytes go through the tables.
// The register is kept inverted inside; the public value is the inverted register.

#include "zeb/data/zeb_crc32.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "zeb/data/internal/little_endian.h"

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#define ZEB_CRC32_CLMUL 1
#include <immintrin.h>
#endif

using zeb::internal::load32le;

namespace {

constexpr uint32_t kPolynomial = 0xEDB88320u;

struct SliceTables {
  uint32_t t[16][256] = {};
  constexpr SliceTables() {
    for (uint32_t b = 0; b < 256; ++b) {
      uint32_t r = b;
      for (int k = 0; k < 8; ++k) r = (r >> 1) ^ ((r & 1) ? kPolynomial : 0);
      t[0][b] = r;
    }
    for (int s = 1; s < 16; ++s)
      for (int b = 0; b < 256; ++b) t[s][b] = (t[s - 1][b] >> 8) ^ t[0][t[s - 1][b] & 0xFF];
  }
};
constexpr SliceTables kTables{};

uint32_t crcBytes(uint32_t r, const unsigned char* p, size_t n) {
  for (; n > 0; --n) r = (r >> 8) ^ kTables.t[0][(r ^ *p++) & 0xFF];
  return r;
}

uint32_t crcSliced(uint32_t r, const unsigned char* p, size_t n) {
  const auto& t = kTables.t;
  for (; n >= 16; n -= 16, p += 16) {
    const uint32_t a = load32le(p) ^ r, b = load32le(p + 4), c = load32le(p + 8),
                   d = load32le(p + 12);
    r = t[15][a & 0xFF] ^ t[14][(a >> 8) & 0xFF] ^ t[13][(a >> 16) & 0xFF] ^ t[12][a >> 24] ^
        t[11][b & 0xFF] ^ t[10][(b >> 8) & 0xFF] ^ t[9][(b >> 16) & 0xFF] ^ t[8][b >> 24] ^
        t[7][c & 0xFF] ^ t[6][(c >> 8) & 0xFF] ^ t[5][(c >> 16) & 0xFF] ^ t[4][c >> 24] ^
        t[3][d & 0xFF] ^ t[2][(d >> 8) & 0xFF] ^ t[1][(d >> 16) & 0xFF] ^ t[0][d >> 24];
  }
  return crcBytes(r, p, n);
}

#ifdef ZEB_CRC32_CLMUL

#define ZEB_CLMUL_TARGET __attribute__((target("pclmul,sse4.1")))

ZEB_CLMUL_TARGET inline __m128i fold(__m128i acc, __m128i constants, __m128i next) {
  const __m128i low = _mm_clmulepi64_si128(acc, constants, 0x00);
  const __m128i high = _mm_clmulepi64_si128(acc, constants, 0x11);
  return _mm_xor_si128(_mm_xor_si128(low, high), next);
}

ZEB_CLMUL_TARGET inline __m128i load128(const unsigned char* p) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

// n is at least 64 and a multiple of 16. The constants, for the reflected polynomial P, are
// x^(4*128+32) and x^(4*128-32) mod P (64-byte folds), x^(128+32) and x^(128-32) mod P (16-byte
// folds), x^64 mod P, and P with its Barrett quotient for the final reduction.
ZEB_CLMUL_TARGET uint32_t crcFolded(uint32_t r, const unsigned char* p, size_t n) {
  const __m128i k1k2 = _mm_set_epi64x(0x01c6e41596LL, 0x0154442bd4LL);
  const __m128i k3k4 = _mm_set_epi64x(0x00ccaa009eLL, 0x01751997d0LL);
  const __m128i k5 = _mm_set_epi64x(0, 0x0163cd6124LL);
  const __m128i poly = _mm_set_epi64x(0x01f7011641LL, 0x01db710641LL);
  const __m128i low32Mask = _mm_setr_epi32(~0, 0, ~0, 0);

  __m128i x1 = _mm_xor_si128(load128(p), _mm_cvtsi32_si128(static_cast<int>(r)));
  __m128i x2 = load128(p + 16), x3 = load128(p + 32), x4 = load128(p + 48);
  for (p += 64, n -= 64; n >= 64; p += 64, n -= 64) {
    x1 = fold(x1, k1k2, load128(p));
    x2 = fold(x2, k1k2, load128(p + 16));
    x3 = fold(x3, k1k2, load128(p + 32));
    x4 = fold(x4, k1k2, load128(p + 48));
  }
  x1 = fold(x1, k3k4, x2);
  x1 = fold(x1, k3k4, x3);
  x1 = fold(x1, k3k4, x4);
  for (; n >= 16; p += 16, n -= 16) x1 = fold(x1, k3k4, load128(p));

  // 128 bits to 64, then 64 to 32 by Barrett reduction.
  __m128i x = _mm_xor_si128(_mm_srli_si128(x1, 8), _mm_clmulepi64_si128(x1, k3k4, 0x10));
  x = _mm_xor_si128(_mm_clmulepi64_si128(_mm_and_si128(x, low32Mask), k5, 0x00),
                    _mm_srli_si128(x, 4));
  __m128i t = _mm_clmulepi64_si128(_mm_and_si128(x, low32Mask), poly, 0x10);
  t = _mm_clmulepi64_si128(_mm_and_si128(t, low32Mask), poly, 0x00);
  return static_cast<uint32_t>(_mm_extract_epi32(_mm_xor_si128(x, t), 1));
}

bool hasCarrylessMultiply() {
  static const bool has = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
  return has;
}

constexpr size_t kFoldingFrom = 64;

uint32_t crcLong(uint32_t r, const unsigned char* p, size_t n) {
  if (n < kFoldingFrom || !hasCarrylessMultiply()) return crcSliced(r, p, n);
  const size_t body = n & ~size_t{15};
  r = crcFolded(r, p, body);
  return crcSliced(r, p + body, n - body);
}

#else

uint32_t crcLong(uint32_t r, const unsigned char* p, size_t n) {
  return crcSliced(r, p, n);
}

#endif

}  // namespace

unsigned int zeb_crc32(unsigned int crc, const void* data, unsigned int length) {
  if (data == nullptr) return 0;
  return ~crcLong(~crc, static_cast<const unsigned char*>(data), length);
}

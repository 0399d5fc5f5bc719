// utf_transcoder.cpp: UTF-8 <-> UTF-16 for valid text.
//
// Both directions share one loop: a run of ASCII goes to the ASCII copiers below, other
// characters to the vector blocks of the processor's kind (SSSE3: UTF-16 of ASCII and three-byte
// characters 8 units at a time; AVX-512: any characters up to three bytes long, both ways), and
// one at a time where the blocks do not take them. Where the output is large enough for any text
// (as the library's documented sizes are) no step checks for room. Every character is checked
// before anything of it is written, and nothing is written past the text of the characters taken
// except by the SSSE3 blocks, whose last store runs a few bytes ahead only where the characters
// that follow are sure to overwrite them (the AVX-512 blocks store under a mask). So a
// transcoder that gives up leaves in `out` exactly the start of what iconv writes there.
#include "zeb/charset/internal/utf_transcoder.h"

#if defined(__x86_64__)
#define ZEB_UTF_X86 1
#include <immintrin.h>
#include <string.h>

#include <array>
#include <atomic>
#else
#define ZEB_UTF_X86 0
#endif

// The ASCII steps sit in the hottest loops; some compilers would rather call them.
#if defined(__GNUC__)
#define ZEB_UTF_INLINE inline __attribute__((always_inline))
#else
#define ZEB_UTF_INLINE inline
#endif

namespace zeb {
namespace charset {
namespace {

size_t smaller(size_t a, size_t b) {
  return a < b ? a : b;
}

bool isContinuation(unsigned byte) {
  return (byte & 0xC0) == 0x80;
}

bool isSurrogate(unsigned unit) {
  return (unit & 0xF800) == 0xD800;
}

#if ZEB_UTF_X86

// The long-run copiers: whole blocks of ASCII from the start of `room` characters, as many as
// there are. They return the characters copied, a multiple of their block size.
using WidenBlocks = size_t (*)(const unsigned char* p, size_t room, zwchar_t* o);
using NarrowBlocks = size_t (*)(const zwchar_t* p, size_t room, unsigned char* o);

__m128i load16(const void* at) {
  return _mm_loadu_si128(static_cast<const __m128i*>(at));
}

void store16(void* at, __m128i value) {
  _mm_storeu_si128(static_cast<__m128i*>(at), value);
}

// The 16 ASCII `bytes` as 16 units at o.
void widen16(zwchar_t* o, __m128i bytes) {
  store16(o, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
  store16(o + 8, _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
}

// Stores the first `count` (below 16) of the 16 ASCII `bytes` at o as units, nothing after them.
ZEB_UTF_INLINE void widenPrefix(zwchar_t* o, __m128i bytes, size_t count) {
  __m128i units = _mm_unpacklo_epi8(bytes, _mm_setzero_si128());
  if (count & 8) {
    store16(o, units);
    units = _mm_unpackhi_epi8(bytes, _mm_setzero_si128());
    o += 8;
  }
  uint64_t four = static_cast<uint64_t>(_mm_cvtsi128_si64(units));
  if (count & 4) {
    memcpy(o, &four, 8);
    four = static_cast<uint64_t>(_mm_cvtsi128_si64(_mm_srli_si128(units, 8)));
    o += 4;
  }
  if (count & 2) {
    const uint32_t two = static_cast<uint32_t>(four);
    memcpy(o, &two, 4);
    four >>= 32;
    o += 2;
  }
  if (count & 1) *o = static_cast<zwchar_t>(four);
}

// Stores the first `count` (below 8) bytes of `bytes` at o, nothing after them, in at most two
// stores that may overlap.
ZEB_UTF_INLINE void storeBytePrefix(unsigned char* o, uint64_t bytes, size_t count) {
  if (count >= 4) {
    const uint32_t head = static_cast<uint32_t>(bytes);
    const uint32_t tail = static_cast<uint32_t>(bytes >> (8 * (count - 4)));
    memcpy(o, &head, 4);
    memcpy(o + count - 4, &tail, 4);
  } else if (count >= 2) {
    const uint16_t head = static_cast<uint16_t>(bytes);
    const uint16_t tail = static_cast<uint16_t>(bytes >> (8 * (count - 2)));
    memcpy(o, &head, 2);
    memcpy(o + count - 2, &tail, 2);
  } else if (count == 1) {
    *o = static_cast<unsigned char>(bytes);
  }
}

// Two bits for each unit of `units` above U+007F.
unsigned nonAsciiUnitBits(__m128i units) {
  const __m128i high = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
  return ~static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128()))) &
         0xFFFFu;
}

size_t widenBlocksSse2(const unsigned char* p, size_t room, zwchar_t* o) {
  size_t done = 0;
  while (room - done >= 16) {
    const __m128i bytes = load16(p + done);
    if (_mm_movemask_epi8(bytes) != 0) break;
    widen16(o + done, bytes);
    done += 16;
  }
  return done;
}

size_t narrowBlocksSse2(const zwchar_t* p, size_t room, unsigned char* o) {
  size_t done = 0;
  while (room - done >= 16) {
    const __m128i low = load16(p + done);
    const __m128i high = load16(p + done + 8);
    if (nonAsciiUnitBits(_mm_or_si128(low, high)) != 0) break;
    store16(o + done, _mm_packus_epi16(low, high));
    done += 16;
  }
  return done;
}

__attribute__((target("avx2"))) size_t widenBlocksAvx2(const unsigned char* p, size_t room,
                                                       zwchar_t* o) {
  size_t done = 0;
  while (room - done >= 32) {
    const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + done));
    if (_mm256_movemask_epi8(bytes) != 0) break;
    __m256i* to = reinterpret_cast<__m256i*>(o + done);
    _mm256_storeu_si256(to, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(bytes)));
    _mm256_storeu_si256(to + 1, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(bytes, 1)));
    done += 32;
  }
  return done;
}

__attribute__((target("avx2"))) size_t narrowBlocksAvx2(const zwchar_t* p, size_t room,
                                                        unsigned char* o) {
  const __m256i nonAscii = _mm256_set1_epi16(static_cast<short>(0xFF80));
  size_t done = 0;
  while (room - done >= 32) {
    const __m256i* from = reinterpret_cast<const __m256i*>(p + done);
    const __m256i low = _mm256_loadu_si256(from);
    const __m256i high = _mm256_loadu_si256(from + 1);
    if (!_mm256_testz_si256(_mm256_or_si256(low, high), nonAscii)) break;
    // packus works per 128-bit lane: put the four quarters back in order.
    const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(low, high), 0xD8);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(o + done), packed);
    done += 32;
  }
  return done;
}

// Whether any of the 8 `units` is a surrogate.
bool hasSurrogate(__m128i units) {
  const __m128i top = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800)));
  return _mm_movemask_epi8(_mm_cmpeq_epi16(top, _mm_set1_epi16(static_cast<short>(0xD800)))) != 0;
}

// Whether each of the 8 `units` is ASCII or a three-byte character (U+0800 to U+FFFF without
// the surrogates), as in text that mixes ASCII with CJK.
bool areAsciiOrThreeByte(__m128i units) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i ascii =
      _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80))), zero);
  const __m128i top = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800)));
  const __m128i twoByte = _mm_andnot_si128(ascii, _mm_cmpeq_epi16(top, zero));
  const __m128i surrogate = _mm_cmpeq_epi16(top, _mm_set1_epi16(static_cast<short>(0xD800)));
  return _mm_movemask_epi8(_mm_or_si128(twoByte, surrogate)) == 0;
}

// How the bytes of 4 characters, one character to a 32-bit lane, close up: the shuffle that
// moves them to the front and how many there are, for each set of lanes holding three bytes
// (bit i for lane i; the other lanes hold one).
struct Compaction {
  int8_t shuffle[16];
  uint8_t length;
};

constexpr std::array<Compaction, 16> makeCompactions() {
  std::array<Compaction, 16> table{};
  for (unsigned threeByteLanes = 0; threeByteLanes < 16; ++threeByteLanes) {
    Compaction& row = table[threeByteLanes];
    unsigned length = 0;
    for (unsigned lane = 0; lane < 4; ++lane) {
      const unsigned bytes = (threeByteLanes >> lane & 1) ? 3 : 1;
      for (unsigned b = 0; b < bytes; ++b)
        row.shuffle[length++] = static_cast<int8_t>(4 * lane + b);
    }
    for (unsigned k = length; k < 16; ++k) row.shuffle[k] = -1;
    row.length = static_cast<uint8_t>(length);
  }
  return table;
}

constexpr std::array<Compaction, 16> kCompactions = makeCompactions();

// Writes the UTF-8 of the 4 characters in the 32-bit lanes of `lanes` (each ASCII or three-byte)
// at o and returns its length. All 16 bytes at o are stored: what follows the text is left for
// the next characters to overwrite.
__attribute__((target("ssse3"))) inline size_t encodeFourSsse3(__m128i lanes, unsigned char* o) {
  const __m128i sixBits = _mm_set1_epi32(0x3F);
  const __m128i continuation = _mm_set1_epi32(0x80);
  const __m128i first = _mm_or_si128(_mm_srli_epi32(lanes, 12), _mm_set1_epi32(0xE0));
  const __m128i second =
      _mm_or_si128(_mm_and_si128(_mm_srli_epi32(lanes, 6), sixBits), continuation);
  const __m128i third = _mm_or_si128(_mm_and_si128(lanes, sixBits), continuation);
  const __m128i threeBytes =
      _mm_or_si128(first, _mm_or_si128(_mm_slli_epi32(second, 8), _mm_slli_epi32(third, 16)));
  const __m128i isThreeByte = _mm_cmpgt_epi32(lanes, _mm_set1_epi32(0x7F));
  const __m128i bytes =
      _mm_or_si128(_mm_and_si128(isThreeByte, threeBytes), _mm_andnot_si128(isThreeByte, lanes));
  const Compaction& row = kCompactions[_mm_movemask_ps(_mm_castsi128_ps(isThreeByte))];
  store16(o, _mm_shuffle_epi8(bytes, load16(row.shuffle)));
  return row.length;
}

// Whether all 8 `units` are three-byte characters: U+0800 to U+FFFF, no surrogates.
bool areThreeByteCharacters(__m128i units) {
  const __m128i top = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800)));
  const __m128i shorter = _mm_cmpeq_epi16(top, _mm_setzero_si128());
  const __m128i surrogate = _mm_cmpeq_epi16(top, _mm_set1_epi16(static_cast<short>(0xD800)));
  return _mm_movemask_epi8(_mm_or_si128(shorter, surrogate)) == 0;
}

// Writes the 24 bytes of UTF-8 of 8 `units` that are all three-byte characters at o.
__attribute__((target("ssse3"))) inline void encodeEightThreeByteSsse3(__m128i u,
                                                                       unsigned char* o) {
  // Where the 24 bytes come from: the first two bytes of character i are bytes 2i and 2i + 1
  // of `leading`, its last byte is byte i of `trailing` (-1: take nothing).
  const __m128i leadingLow = _mm_setr_epi8(0, 1, -1, 2, 3, -1, 4, 5, -1, 6, 7, -1, 8, 9, -1, 10);
  const __m128i trailingLow =
      _mm_setr_epi8(-1, -1, 0, -1, -1, 1, -1, -1, 2, -1, -1, 3, -1, -1, 4, -1);
  const __m128i leadingHigh =
      _mm_setr_epi8(11, -1, 12, 13, -1, 14, 15, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i trailingHigh =
      _mm_setr_epi8(-1, 5, -1, -1, 6, -1, -1, 7, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i sixBits = _mm_set1_epi16(0x3F);
  const __m128i continuation = _mm_set1_epi16(0x80);
  const __m128i first = _mm_or_si128(_mm_srli_epi16(u, 12), _mm_set1_epi16(0xE0));
  const __m128i second = _mm_or_si128(_mm_and_si128(_mm_srli_epi16(u, 6), sixBits), continuation);
  const __m128i third = _mm_or_si128(_mm_and_si128(u, sixBits), continuation);
  const __m128i leading = _mm_or_si128(first, _mm_slli_epi16(second, 8));
  const __m128i trailing = _mm_packus_epi16(third, third);
  store16(o, _mm_or_si128(_mm_shuffle_epi8(leading, leadingLow),
                          _mm_shuffle_epi8(trailing, trailingLow)));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(o + 16),
                   _mm_or_si128(_mm_shuffle_epi8(leading, leadingHigh),
                                _mm_shuffle_epi8(trailing, trailingHigh)));
}

// Encodes whole blocks of 8 units that are all ASCII or three-byte characters from the start of
// p[0, units) at o, which has room for 3 bytes a unit; returns the units done and sets *written
// to the bytes written. A block of three-byte characters only is written exactly; the last
// store of a mixed block runs up to 12 bytes past its text, so such a block is taken only when
// 16 more units without surrogates follow it: encoded after it, they cover those bytes.
using EncodeMixedBlocks = size_t (*)(const zwchar_t* p, size_t units, unsigned char* o,
                                     size_t* written);

size_t encodeMixedBlocksNone(const zwchar_t*, size_t, unsigned char*, size_t* written) {
  *written = 0;
  return 0;
}

__attribute__((target("ssse3"))) size_t encodeMixedBlocksSsse3(const zwchar_t* p, size_t units,
                                                               unsigned char* o, size_t* written) {
  unsigned char* to = o;
  size_t done = 0;
  while (units - done >= 8) {
    const __m128i block = load16(p + done);
    if (areThreeByteCharacters(block)) {
      encodeEightThreeByteSsse3(block, to);
      to += 24;
    } else if (units - done >= 24 && areAsciiOrThreeByte(block) &&
               !hasSurrogate(load16(p + done + 8)) && !hasSurrogate(load16(p + done + 16))) {
      to += encodeFourSsse3(_mm_unpacklo_epi16(block, _mm_setzero_si128()), to);
      to += encodeFourSsse3(_mm_unpackhi_epi16(block, _mm_setzero_si128()), to);
    } else {
      break;
    }
    done += 8;
  }
  *written = static_cast<size_t>(to - o);
  return done;
}

// AVX-512 with byte compression (VBMI2) and byte permutes (VBMI): whole characters, whatever
// their lengths, 16 units or 64 bytes at a time, with masked loads and stores that touch exactly
// the text, so a block needs nothing after it.
#define ZEB_UTF_AVX512 __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi,avx512vbmi2")))

// GCC's AVX-512 intrinsics pass an undefined vector as the unused merge source of their unmasked
// forms, which its own uninitialised-use check then reports.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

ZEB_UTF_AVX512 inline __m512i splat32(int value) {
  return _mm512_set1_epi32(value);
}

// The mask of the lowest n (at most 64) bits: one bit for each of the first n lanes.
inline uint64_t lowBits(size_t n) {
  return n >= 64 ? ~0ULL : (1ULL << n) - 1;
}

// Encodes blocks of 16 units (fewer at the end of the input) that hold no surrogate from the
// start of p[0, units) at o, which has room for 3 bytes a unit; returns the units done and sets
// *written to the bytes written. It stops before a block with a surrogate and before a whole block
// of ASCII, which the ASCII copiers take faster.
ZEB_UTF_AVX512 size_t encodeMixedBlocksAvx512(const zwchar_t* p, size_t units, unsigned char* o,
                                              size_t* written) {
  const __m512i sixBits = splat32(0x3F);
  const __m512i continuation = splat32(0x80);
  unsigned char* to = o;
  size_t done = 0;
  while (done < units) {
    const size_t count = smaller(units - done, 16);
    const __mmask16 live = static_cast<__mmask16>(lowBits(count));
    const __m512i u = _mm512_cvtepu16_epi32(_mm256_maskz_loadu_epi16(live, p + done));
    const __mmask16 surrogate =
        _mm512_cmpeq_epi32_mask(_mm512_and_si512(u, splat32(0xF800)), splat32(0xD800));
    const __mmask16 longer = _mm512_cmpge_epu32_mask(u, splat32(0x80));
    if (surrogate != 0 || (longer == 0 && count == 16)) break;
    const __mmask16 three = _mm512_cmpge_epu32_mask(u, splat32(0x800));
    const __m512i low = _mm512_or_si512(_mm512_and_si512(u, sixBits), continuation);
    const __m512i middle =
        _mm512_or_si512(_mm512_and_si512(_mm512_srli_epi32(u, 6), sixBits), continuation);
    const __m512i twoBytes = _mm512_or_si512(
        _mm512_or_si512(_mm512_srli_epi32(u, 6), splat32(0xC0)), _mm512_slli_epi32(low, 8));
    const __m512i threeBytes =
        _mm512_or_si512(_mm512_or_si512(_mm512_srli_epi32(u, 12), splat32(0xE0)),
                        _mm512_or_si512(_mm512_slli_epi32(middle, 8), _mm512_slli_epi32(low, 16)));
    const __m512i bytes =
        _mm512_mask_mov_epi32(_mm512_mask_mov_epi32(u, longer, twoBytes), three, threeBytes);
    // One bit for each byte of each character, then the characters' bytes closed up.
    const __m512i lengths = _mm512_mask_mov_epi32(
        _mm512_mask_mov_epi32(_mm512_maskz_mov_epi32(live, splat32(0x01)), longer, splat32(0x0101)),
        three, splat32(0x010101));
    const __mmask64 kept = _mm512_test_epi8_mask(lengths, lengths);
    const unsigned length = static_cast<unsigned>(__builtin_popcountll(kept));
    _mm512_mask_storeu_epi8(to, lowBits(length), _mm512_maskz_compress_epi8(kept, bytes));
    to += length;
    done += count;
  }
  *written = static_cast<size_t>(to - o);
  return done;
}

// The bit of each byte of `v` at or above `value` (unsigned).
ZEB_UTF_AVX512 inline __mmask64 bytesAtLeast(__m512i v, int value) {
  return _mm512_cmpge_epu8_mask(v, _mm512_set1_epi8(static_cast<char>(value)));
}

// The units of 32 characters whose first, second and third bytes are in the 16-bit lanes of b0,
// b1 and b2 (ASCII, two- or three-byte, as the first byte says).
ZEB_UTF_AVX512 inline __m512i decodeUnits(__m512i b0, __m512i b1, __m512i b2) {
  const __m512i sixBits = _mm512_set1_epi16(0x3F);
  const __m512i tail = _mm512_and_si512(b1, sixBits);
  const __m512i two =
      _mm512_or_si512(_mm512_slli_epi16(_mm512_and_si512(b0, _mm512_set1_epi16(0x1F)), 6), tail);
  const __m512i three =
      _mm512_or_si512(_mm512_or_si512(_mm512_slli_epi16(b0, 12), _mm512_slli_epi16(tail, 6)),
                      _mm512_and_si512(b2, sixBits));
  const __mmask32 isTwo = _mm512_cmpge_epu16_mask(b0, _mm512_set1_epi16(0xC0));
  const __mmask32 isThree = _mm512_cmpge_epu16_mask(b0, _mm512_set1_epi16(0xE0));
  return _mm512_mask_mov_epi16(_mm512_mask_mov_epi16(b0, isTwo, two), isThree, three);
}

// Decodes blocks of up to 64 bytes of ASCII, two- and three-byte sequences from the start of
// p[0, bytes) at o, which has room for a unit a byte; returns the bytes done and sets *written to
// the units written. A block ends before its last character start unless it reaches the end of
// the input. It stops before a block with anything else (a four-byte sequence, any invalid or
// truncated one) and before a whole block of ASCII, which the ASCII copiers take faster.
ZEB_UTF_AVX512 size_t decodeMixedBlocksAvx512(const unsigned char* p, size_t bytes, zwchar_t* o,
                                              size_t* written) {
  const __m512i positions = _mm512_set_epi8(
      63, 62, 61, 60, 59, 58, 57, 56, 55, 54, 53, 52, 51, 50, 49, 48, 47, 46, 45, 44, 43, 42, 41,
      40, 39, 38, 37, 36, 35, 34, 33, 32, 31, 30, 29, 28, 27, 26, 25, 24, 23, 22, 21, 20, 19, 18,
      17, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
  zwchar_t* to = o;
  size_t done = 0;
  while (done < bytes) {
    const size_t left = bytes - done;
    const bool last = left <= 64;
    const __mmask64 live = lowBits(left);
    const __m512i v = _mm512_maskz_loadu_epi8(live, p + done);
    const __mmask64 nonAscii = bytesAtLeast(v, 0x80);
    if (nonAscii == 0 && !last) break;
    const __mmask64 continuation = nonAscii & ~bytesAtLeast(v, 0xC0);
    const __mmask64 starts = live & ~continuation;
    if (starts == 0) break;  // continuation bytes only
    const __mmask64 twoLeads = bytesAtLeast(v, 0xC2) & ~bytesAtLeast(v, 0xE0);
    const __mmask64 threeLeads = bytesAtLeast(v, 0xE0) & ~bytesAtLeast(v, 0xF0);
    const __mmask64 badLeads =
        (bytesAtLeast(v, 0xC0) & ~bytesAtLeast(v, 0xC2)) | bytesAtLeast(v, 0xF0);
    // The bytes judged: all of a last block; else up to the last character start, which is
    // judged too (no character before it may run into it) and begins the next block.
    const unsigned lastStart = 63u - static_cast<unsigned>(__builtin_clzll(starts));
    const size_t taken = last ? left : lastStart;
    const __mmask64 judged = last ? live : lowBits(lastStart + 1);
    const __mmask64 expected = (twoLeads << 1) | (threeLeads << 1) | (threeLeads << 2);
    // A last block whose final sequence is cut short (its missing bytes past the input, or
    // shifted out past the block's 64 bits).
    const bool cutShort = last && ((expected & ~live) != 0 ||
                                   ((twoLeads | threeLeads) >> 63) != 0 || (threeLeads >> 62) != 0);
    if (taken == 0 || ((expected ^ continuation) & judged) != 0 || (badLeads & judged) != 0 ||
        cutShort) {
      break;
    }
    const __mmask64 characters = starts & lowBits(taken);
    const __m512i at = _mm512_maskz_compress_epi8(characters, positions);
    const __m512i first = _mm512_permutexvar_epi8(at, v);
    const __m512i second = _mm512_permutexvar_epi8(_mm512_add_epi8(at, _mm512_set1_epi8(1)), v);
    const __m512i third = _mm512_permutexvar_epi8(_mm512_add_epi8(at, _mm512_set1_epi8(2)), v);
    // Overlong three-byte forms (E0 80..9F) and encoded surrogates (ED A0..BF).
    const __mmask64 overlong =
        _mm512_cmpeq_epi8_mask(first, _mm512_set1_epi8(static_cast<char>(0xE0))) &
        ~bytesAtLeast(second, 0xA0);
    const __mmask64 surrogate =
        _mm512_cmpeq_epi8_mask(first, _mm512_set1_epi8(static_cast<char>(0xED))) &
        bytesAtLeast(second, 0xA0);
    const unsigned count = static_cast<unsigned>(__builtin_popcountll(characters));
    const __mmask64 counted = lowBits(count);
    if (((overlong | surrogate) & counted) != 0) break;
    const __m512i low = decodeUnits(_mm512_cvtepu8_epi16(_mm512_castsi512_si256(first)),
                                    _mm512_cvtepu8_epi16(_mm512_castsi512_si256(second)),
                                    _mm512_cvtepu8_epi16(_mm512_castsi512_si256(third)));
    _mm512_mask_storeu_epi16(to, static_cast<__mmask32>(counted), low);
    if (count > 32) {
      const __m512i high = decodeUnits(_mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(first, 1)),
                                       _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(second, 1)),
                                       _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(third, 1)));
      _mm512_mask_storeu_epi16(to + 32, static_cast<__mmask32>(counted >> 32), high);
    }
    to += count;
    done += taken;
  }
  *written = static_cast<size_t>(to - o);
  return done;
}

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

using DecodeMixedBlocks = size_t (*)(const unsigned char* p, size_t bytes, zwchar_t* o,
                                     size_t* written);

size_t decodeMixedBlocksNone(const unsigned char*, size_t, zwchar_t*, size_t* written) {
  *written = 0;
  return 0;
}

struct BlockCopiers {
  WidenBlocks widen;
  NarrowBlocks narrow;
  EncodeMixedBlocks encodeMixed;
  DecodeMixedBlocks decodeMixed;
};

// The copiers of each kind of vector code, in the order of VectorCode.
const BlockCopiers kBlockCopiers[] = {
    {widenBlocksSse2, narrowBlocksSse2, encodeMixedBlocksNone, decodeMixedBlocksNone},
    {widenBlocksSse2, narrowBlocksSse2, encodeMixedBlocksSsse3, decodeMixedBlocksNone},
    {widenBlocksAvx2, narrowBlocksAvx2, encodeMixedBlocksSsse3, decodeMixedBlocksNone},
    {widenBlocksAvx2, narrowBlocksAvx2, encodeMixedBlocksAvx512, decodeMixedBlocksAvx512},
};

VectorCode processorsVectorCode() {
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") &&
      __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2")) {
    return VectorCode::kAvx512;
  }
  if (__builtin_cpu_supports("avx2")) return VectorCode::kAvx2;
  if (__builtin_cpu_supports("ssse3")) return VectorCode::kSsse3;
  return VectorCode::kSse2;
}

std::atomic<const BlockCopiers*> chosenCopiers{nullptr};

// Chosen on first use, so that conversions run by other static initialisers find them too.
const BlockCopiers& blockCopiers() {
  const BlockCopiers* copiers = chosenCopiers.load(std::memory_order_relaxed);
  if (copiers == nullptr) {
    copiers = &kBlockCopiers[static_cast<int>(bestVectorCode())];
    chosenCopiers.store(copiers, std::memory_order_relaxed);
  }
  return *copiers;
}

// An ASCII run this long goes on in the widest blocks the processor has; shorter ones stay in
// the inline steps, which cost no call.
constexpr size_t kLongRun = 32;

#endif  // ZEB_UTF_X86

// Copies the ASCII bytes at the start of p[0, room) to o as units; returns how many.
ZEB_UTF_INLINE size_t widenAscii(const unsigned char* p, size_t room, zwchar_t* o) {
  size_t done = 0;
#if ZEB_UTF_X86
  while (room - done >= 16) {
    const __m128i bytes = load16(p + done);
    const unsigned nonAscii = static_cast<unsigned>(_mm_movemask_epi8(bytes));
    if (nonAscii != 0) {
      const size_t count = static_cast<size_t>(__builtin_ctz(nonAscii));
      widenPrefix(o + done, bytes, count);
      return done + count;
    }
    widen16(o + done, bytes);
    done += 16;
    if (done >= kLongRun) done += blockCopiers().widen(p + done, room - done, o + done);
  }
#endif
  for (; done < room && p[done] < 0x80; ++done) o[done] = p[done];
  return done;
}

// Copies the ASCII units at the start of p[0, room) to o as bytes; returns how many.
ZEB_UTF_INLINE size_t narrowAscii(const zwchar_t* p, size_t room, unsigned char* o) {
  size_t done = 0;
#if ZEB_UTF_X86
  while (room - done >= 8) {
    const __m128i units = load16(p + done);
    const unsigned nonAscii = nonAsciiUnitBits(units);
    if (nonAscii != 0) {
      const size_t count = static_cast<size_t>(__builtin_ctz(nonAscii)) / 2;
      const __m128i packed = _mm_packus_epi16(units, units);
      storeBytePrefix(o + done, static_cast<uint64_t>(_mm_cvtsi128_si64(packed)), count);
      return done + count;
    }
    _mm_storel_epi64(reinterpret_cast<__m128i*>(o + done), _mm_packus_epi16(units, units));
    done += 8;
    if (done >= kLongRun) done += blockCopiers().narrow(p + done, room - done, o + done);
  }
#endif
  for (; done < room && p[done] < 0x80; ++done) o[done] = static_cast<unsigned char>(p[done]);
  return done;
}

// The input's cursor and the output's, each with its end. Without kCheckRoom the caller has
// made sure that the output holds the whole text, and room is not looked at.
template <bool kCheckRoom, typename From, typename To>
struct Cursors {
  const From* p;
  const From* const end;
  To* o;
  To* const outEnd;

  size_t inLeft() const { return static_cast<size_t>(end - p); }
  bool hasRoom(size_t size) const { return !kCheckRoom || static_cast<size_t>(outEnd - o) >= size; }
  // The characters of `size` output units each that may be taken.
  size_t roomFor(size_t size) const {
    return kCheckRoom ? smaller(inLeft(), static_cast<size_t>(outEnd - o) / size) : inLeft();
  }
};

template <bool kCheckRoom>
using Decoding = Cursors<kCheckRoom, unsigned char, zwchar_t>;
template <bool kCheckRoom>
using Encoding = Cursors<kCheckRoom, zwchar_t, unsigned char>;

// Decodes the multi-byte sequence at c.p, most common length first; false to give up.
template <typename Decoding>
bool decodeSequence(Decoding& c) {
  const unsigned lead = c.p[0];
  if (lead >= 0xE0 && lead < 0xF0) {
    if (c.inLeft() < 3 || !c.hasRoom(1)) return false;
    const unsigned b1 = c.p[1];
    const unsigned b2 = c.p[2];
    if (!isContinuation(b1) || !isContinuation(b2)) return false;
    const unsigned cp = (lead & 0x0F) << 12 | (b1 & 0x3F) << 6 | (b2 & 0x3F);
    if (cp < 0x800 || isSurrogate(cp)) return false;
    *c.o++ = static_cast<zwchar_t>(cp);
    c.p += 3;
    return true;
  }
  if (lead >= 0xC2 && lead < 0xE0) {
    if (c.inLeft() < 2 || !c.hasRoom(1) || !isContinuation(c.p[1])) return false;
    *c.o++ = static_cast<zwchar_t>((lead & 0x1F) << 6 | (c.p[1] & 0x3F));
    c.p += 2;
    return true;
  }
  if (lead >= 0xF0 && lead < 0xF5) {
    if (c.inLeft() < 4 || !c.hasRoom(2)) return false;
    const unsigned b1 = c.p[1];
    const unsigned b2 = c.p[2];
    const unsigned b3 = c.p[3];
    if (!isContinuation(b1) || !isContinuation(b2) || !isContinuation(b3)) return false;
    const unsigned cp = (lead & 0x07) << 18 | (b1 & 0x3F) << 12 | (b2 & 0x3F) << 6 | (b3 & 0x3F);
    if (cp < 0x10000 || cp > 0x10FFFF) return false;
    c.o[0] = static_cast<zwchar_t>(0xD800 + ((cp - 0x10000) >> 10));
    c.o[1] = static_cast<zwchar_t>(0xDC00 + (cp & 0x3FF));
    c.o += 2;
    c.p += 4;
    return true;
  }
  return false;  // a continuation byte, C0, C1 or F5 to FF
}

// Encodes the character at c.p, which is above U+007F; false to give up.
template <typename Encoding>
bool encodeCharacter(Encoding& c) {
  const unsigned unit = c.p[0];
  unsigned char* o = c.o;
  if (unit < 0x800) {
    if (!c.hasRoom(2)) return false;
    o[0] = static_cast<unsigned char>(0xC0 | unit >> 6);
    o[1] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    c.o += 2;
    c.p += 1;
    return true;
  }
  if (!isSurrogate(unit)) {
    if (!c.hasRoom(3)) return false;
    o[0] = static_cast<unsigned char>(0xE0 | unit >> 12);
    o[1] = static_cast<unsigned char>(0x80 | (unit >> 6 & 0x3F));
    o[2] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    c.o += 3;
    c.p += 1;
    return true;
  }
  if (unit >= 0xDC00 || c.inLeft() < 2 || (c.p[1] & 0xFC00) != 0xDC00) return false;
  if (!c.hasRoom(4)) return false;
  const unsigned cp = 0x10000 + ((unit - 0xD800) << 10) + (c.p[1] - 0xDC00u);
  o[0] = static_cast<unsigned char>(0xF0 | cp >> 18);
  o[1] = static_cast<unsigned char>(0x80 | (cp >> 12 & 0x3F));
  o[2] = static_cast<unsigned char>(0x80 | (cp >> 6 & 0x3F));
  o[3] = static_cast<unsigned char>(0x80 | (cp & 0x3F));
  c.o += 4;
  c.p += 2;
  return true;
}

// The two directions, for the loop they share: the ASCII copier, the vector blocks of other
// characters and the one-character step of each.
struct Decoder {
  template <bool kCheckRoom>
  using Cursors = Decoding<kCheckRoom>;
  static size_t ascii(const unsigned char* p, size_t room, zwchar_t* o) {
    return widenAscii(p, room, o);
  }
#if ZEB_UTF_X86
  static size_t blocks(const unsigned char* p, size_t bytes, zwchar_t* o, size_t* written) {
    return blockCopiers().decodeMixed(p, bytes, o, written);
  }
#endif
  template <typename C>
  static bool character(C& c) {
    return decodeSequence(c);
  }
};

struct Encoder {
  template <bool kCheckRoom>
  using Cursors = Encoding<kCheckRoom>;
  static size_t ascii(const zwchar_t* p, size_t room, unsigned char* o) {
    return narrowAscii(p, room, o);
  }
#if ZEB_UTF_X86
  static size_t blocks(const zwchar_t* p, size_t units, unsigned char* o, size_t* written) {
    return blockCopiers().encodeMixed(p, units, o, written);
  }
#endif
  template <typename C>
  static bool character(C& c) {
    return encodeCharacter(c);
  }
};

// Converts what the vector blocks take of the text at c.p; returns whether they took any. The
// output must hold any text.
template <typename Way, typename C>
bool blocksRun(C& c) {
#if ZEB_UTF_X86
  size_t written = 0;
  const size_t done = Way::blocks(c.p, c.inLeft(), c.o, &written);
  c.p += done;
  c.o += written;
  return done != 0;
#else
  (void)c;
  return false;
#endif
}

// After a try of the blocks that takes nothing, the next few non-ASCII characters go one by one:
// text the blocks do not take (surrogate pairs, for one) would otherwise pay a failed try for
// each.
constexpr unsigned kCharactersBetweenTries = 8;

// Runs of ASCII go to the ASCII copier, other characters to the blocks, one at a time where the
// blocks do not take them. Returns the units written, or kNotTranscoded.
template <typename Way, bool kCheckRoom, typename From, typename To>
size_t transcodeAll(const From* in, size_t inLength, To* out, size_t outLength) {
  typename Way::template Cursors<kCheckRoom> c{in, in + inLength, out, out + outLength};
  unsigned untilNextTry = 0;
  while (c.p < c.end) {
    if (*c.p < 0x80) {
      const size_t run = Way::ascii(c.p, c.roomFor(1), c.o);
      if (run == 0) return kNotTranscoded;  // no room left
      c.p += run;
      c.o += run;
    } else if (untilNextTry == 0) {
      untilNextTry = kCharactersBetweenTries;
      if constexpr (!kCheckRoom) {
        if (blocksRun<Way>(c)) untilNextTry = 0;
      }
    } else if (Way::character(c)) {
      --untilNextTry;
    } else {
      return kNotTranscoded;
    }
  }
  return static_cast<size_t>(c.o - out);
}

}  // namespace

VectorCode bestVectorCode() {
#if ZEB_UTF_X86
  static const VectorCode best = processorsVectorCode();
  return best;
#else
  return VectorCode::kSse2;
#endif
}

void useVectorCode(VectorCode code) {
#if ZEB_UTF_X86
  const VectorCode usable = code < bestVectorCode() ? code : bestVectorCode();
  chosenCopiers.store(&kBlockCopiers[static_cast<int>(usable)], std::memory_order_relaxed);
#else
  (void)code;
#endif
}

// A byte of UTF-8 gives at most one unit, a unit at most three bytes (a pair four): an output of
// that size needs no checks of room.
size_t utf8ToUtf16(const char* in, size_t inBytes, zwchar_t* out, size_t outUnits) {
  const auto* from = reinterpret_cast<const unsigned char*>(in);
  return outUnits >= inBytes ? transcodeAll<Decoder, false>(from, inBytes, out, outUnits)
                             : transcodeAll<Decoder, true>(from, inBytes, out, outUnits);
}

size_t utf16ToUtf8(const zwchar_t* in, size_t inUnits, char* out, size_t outBytes) {
  auto* to = reinterpret_cast<unsigned char*>(out);
  return outBytes / 3 >= inUnits ? transcodeAll<Encoder, false>(in, inUnits, to, outBytes)
                                 : transcodeAll<Encoder, true>(in, inUnits, to, outBytes);
}

// The measures run the transcoders over pieces of the input into a scratch block, each piece
// ending on a character boundary, so they accept exactly what the transcoders accept.
namespace {
constexpr size_t kMeasuredPiece = 2048;
}  // namespace

size_t utf8ToUtf16Length(const char* in, size_t inBytes) {
  zwchar_t scratch[kMeasuredPiece];
  size_t units = 0;
  for (size_t at = 0; at < inBytes;) {
    size_t end = smaller(inBytes, at + kMeasuredPiece);
    // Back to the start of the character the piece would cut (a run of continuation bytes only
    // is invalid whatever the cut, so it keeps the piece whole).
    size_t cut = end;
    while (cut > at && end < inBytes && isContinuation(static_cast<unsigned char>(in[cut]))) --cut;
    if (cut > at) end = cut;
    const size_t done = utf8ToUtf16(in + at, end - at, scratch, kMeasuredPiece);
    if (done == kNotTranscoded) return kNotTranscoded;
    units += done;
    at = end;
  }
  return units;
}

size_t utf16ToUtf8Length(const zwchar_t* in, size_t inUnits) {
  char scratch[3 * kMeasuredPiece];
  size_t bytes = 0;
  for (size_t at = 0; at < inUnits;) {
    size_t end = smaller(inUnits, at + kMeasuredPiece);
    // A pair is never split: a piece does not end on a high surrogate.
    if (end < inUnits && end - at > 1 && (in[end - 1] & 0xFC00) == 0xD800) --end;
    const size_t done = utf16ToUtf8(in + at, end - at, scratch, sizeof scratch);
    if (done == kNotTranscoded) return kNotTranscoded;
    bytes += done;
    at = end;
  }
  return bytes;
}

}  // namespace charset
}  // namespace zeb

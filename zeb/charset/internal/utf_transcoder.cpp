// utf_transcoder.cpp: UTF-8 <-> UTF-16 for valid text.
//
// Both directions alternate between a run of ASCII, copied by the vector code below, and one
// multi-byte character, decoded or encoded directly; the encoder also takes text made of ASCII
// and three-byte characters (CJK) 8 units at a time. Where the output is large enough for any
// text (as the library's documented sizes are) no step checks for room. Every character is
// checked before anything of it is written, and nothing is written past the text of the
// characters taken except by the encoder's blocks, whose last store runs a few bytes ahead only
// where the characters that follow are sure to overwrite them. So a transcoder that gives up
// leaves in `out` exactly the start of what iconv writes there.
#include "zeb/charset/internal/utf_transcoder.h"

#if defined(__x86_64__)
#define ZEB_UTF_X86 1
#include <immintrin.h>
#include <string.h>

#include <array>
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

struct BlockCopiers {
  WidenBlocks widen;
  NarrowBlocks narrow;
  EncodeMixedBlocks encodeMixed;
};

BlockCopiers pickBlockCopiers() {
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2")) {
    return {widenBlocksAvx2, narrowBlocksAvx2, encodeMixedBlocksSsse3};
  }
  if (__builtin_cpu_supports("ssse3")) {
    return {widenBlocksSse2, narrowBlocksSse2, encodeMixedBlocksSsse3};
  }
  return {widenBlocksSse2, narrowBlocksSse2, encodeMixedBlocksNone};
}

// Chosen on first use, so that conversions run by other static initialisers find them too.
const BlockCopiers& blockCopiers() {
  static const BlockCopiers copiers = pickBlockCopiers();
  return copiers;
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

template <bool kCheckRoom>
size_t decode(const unsigned char* in, size_t inBytes, zwchar_t* out, size_t outUnits) {
  Decoding<kCheckRoom> c{in, in + inBytes, out, out + outUnits};
  while (c.p < c.end) {
    if (*c.p < 0x80) {
      const size_t run = widenAscii(c.p, c.roomFor(1), c.o);
      if (run == 0) return kNotTranscoded;  // no room left
      c.p += run;
      c.o += run;
    } else if (!decodeSequence(c)) {
      return kNotTranscoded;
    }
  }
  return static_cast<size_t>(c.o - out);
}

// Encodes what it can of a run of ASCII and three-byte characters, as text in CJK has, 8 units
// at a time where the processor can. The output must hold any text.
void encodeMixedRun(Encoding<false>& c) {
#if ZEB_UTF_X86
  size_t written = 0;
  c.p += blockCopiers().encodeMixed(c.p, c.inLeft(), c.o, &written);
  c.o += written;
#else
  (void)c;
#endif
}

template <bool kCheckRoom>
size_t encode(const zwchar_t* in, size_t inUnits, unsigned char* out, size_t outBytes) {
  // After each try of the blocks, the next few non-ASCII characters go one by one: text with
  // other characters (two-byte ones, surrogate pairs) would otherwise pay a failed try for each.
  constexpr unsigned kCharactersBetweenTries = 8;
  Encoding<kCheckRoom> c{in, in + inUnits, out, out + outBytes};
  unsigned untilNextTry = 0;
  while (c.p < c.end) {
    if (*c.p < 0x80) {
      const size_t run = narrowAscii(c.p, c.roomFor(1), c.o);
      if (run == 0) return kNotTranscoded;
      c.p += run;
      c.o += run;
    } else if (untilNextTry == 0) {
      untilNextTry = kCharactersBetweenTries;
      if constexpr (!kCheckRoom) encodeMixedRun(c);
    } else if (encodeCharacter(c)) {
      --untilNextTry;
    } else {
      return kNotTranscoded;
    }
  }
  return static_cast<size_t>(c.o - out);
}

}  // namespace

// A byte of UTF-8 gives at most one unit, a unit at most three bytes (a pair four): an output of
// that size needs no checks of room.
size_t utf8ToUtf16(const char* in, size_t inBytes, zwchar_t* out, size_t outUnits) {
  const auto* from = reinterpret_cast<const unsigned char*>(in);
  return outUnits >= inBytes ? decode<false>(from, inBytes, out, outUnits)
                             : decode<true>(from, inBytes, out, outUnits);
}

size_t utf16ToUtf8(const zwchar_t* in, size_t inUnits, char* out, size_t outBytes) {
  auto* to = reinterpret_cast<unsigned char*>(out);
  return outBytes / 3 >= inUnits ? encode<false>(in, inUnits, to, outBytes)
                                 : encode<true>(in, inUnits, to, outBytes);
}

}  // namespace charset
}  // namespace zeb

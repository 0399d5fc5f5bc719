// utf_transcoder.cpp: UTF-8 <-> UTF-16 for valid text.
//
// Both directions alternate between a run of ASCII, copied by the vector code below, and one
// multi-byte character, decoded or encoded directly. Every character is checked before anything
// of it is written and nothing is written past the text of the characters taken, so a transcoder
// that gives up leaves in `out` exactly the start of what iconv writes there.
#include "zeb/charset/internal/utf_transcoder.h"

#if defined(__SSE2__) && (defined(__x86_64__) || defined(__i386__))
#define ZEB_UTF_X86 1
#include <immintrin.h>
#else
#define ZEB_UTF_X86 0
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

struct BlockCopiers {
  WidenBlocks widen;
  NarrowBlocks narrow;
};

BlockCopiers pickBlockCopiers() {
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2")) return {widenBlocksAvx2, narrowBlocksAvx2};
  return {widenBlocksSse2, narrowBlocksSse2};
}

// Chosen once, when the library is loaded.
const BlockCopiers g_blockCopiers = pickBlockCopiers();

#endif  // ZEB_UTF_X86

// Copies the ASCII bytes at the start of p[0, room) to o as units; returns how many. A short
// run stays in the inline 16-byte step; a long one goes on in the widest blocks the processor
// has.
size_t widenAscii(const unsigned char* p, size_t room, zwchar_t* o) {
  size_t done = 0;
#if ZEB_UTF_X86
  while (room - done >= 16) {
    const __m128i bytes = load16(p + done);
    const unsigned nonAscii = static_cast<unsigned>(_mm_movemask_epi8(bytes));
    if (nonAscii != 0) {
      room = done + static_cast<size_t>(__builtin_ctz(nonAscii));
      break;
    }
    widen16(o + done, bytes);
    done += 16;
    done += g_blockCopiers.widen(p + done, room - done, o + done);
  }
#endif
  for (; done < room && p[done] < 0x80; ++done) o[done] = p[done];
  return done;
}

// Copies the ASCII units at the start of p[0, room) to o as bytes; returns how many.
size_t narrowAscii(const zwchar_t* p, size_t room, unsigned char* o) {
  size_t done = 0;
#if ZEB_UTF_X86
  while (room - done >= 8) {
    const __m128i units = load16(p + done);
    const unsigned nonAscii = nonAsciiUnitBits(units);
    if (nonAscii != 0) {
      room = done + static_cast<size_t>(__builtin_ctz(nonAscii)) / 2;
      break;
    }
    _mm_storel_epi64(reinterpret_cast<__m128i*>(o + done), _mm_packus_epi16(units, units));
    done += 8;
    done += g_blockCopiers.narrow(p + done, room - done, o + done);
  }
#endif
  for (; done < room && p[done] < 0x80; ++done) o[done] = static_cast<unsigned char>(p[done]);
  return done;
}

// The UTF-8 side's cursor and the UTF-16 side's, each with its end.
template <typename From, typename To>
struct Cursors {
  const From* p;
  const From* const end;
  To* o;
  To* const outEnd;

  size_t inLeft() const { return static_cast<size_t>(end - p); }
  size_t outLeft() const { return static_cast<size_t>(outEnd - o); }
};

using Decoding = Cursors<unsigned char, zwchar_t>;
using Encoding = Cursors<zwchar_t, unsigned char>;

// Decodes the multi-byte sequence at c.p, most common length first; false to give up.
bool decodeSequence(Decoding& c) {
  const unsigned lead = c.p[0];
  if (lead >= 0xE0 && lead < 0xF0) {
    if (c.inLeft() < 3 || c.outLeft() < 1) return false;
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
    if (c.inLeft() < 2 || c.outLeft() < 1 || !isContinuation(c.p[1])) return false;
    *c.o++ = static_cast<zwchar_t>((lead & 0x1F) << 6 | (c.p[1] & 0x3F));
    c.p += 2;
    return true;
  }
  if (lead >= 0xF0 && lead < 0xF5) {
    if (c.inLeft() < 4 || c.outLeft() < 2) return false;
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
bool encodeCharacter(Encoding& c) {
  const unsigned unit = c.p[0];
  unsigned char* o = c.o;
  if (unit < 0x800) {
    if (c.outLeft() < 2) return false;
    o[0] = static_cast<unsigned char>(0xC0 | unit >> 6);
    o[1] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    c.o += 2;
    c.p += 1;
    return true;
  }
  if (!isSurrogate(unit)) {
    if (c.outLeft() < 3) return false;
    o[0] = static_cast<unsigned char>(0xE0 | unit >> 12);
    o[1] = static_cast<unsigned char>(0x80 | (unit >> 6 & 0x3F));
    o[2] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    c.o += 3;
    c.p += 1;
    return true;
  }
  if (unit >= 0xDC00 || c.inLeft() < 2 || (c.p[1] & 0xFC00) != 0xDC00) return false;
  if (c.outLeft() < 4) return false;
  const unsigned cp = 0x10000 + ((unit - 0xD800) << 10) + (c.p[1] - 0xDC00u);
  o[0] = static_cast<unsigned char>(0xF0 | cp >> 18);
  o[1] = static_cast<unsigned char>(0x80 | (cp >> 12 & 0x3F));
  o[2] = static_cast<unsigned char>(0x80 | (cp >> 6 & 0x3F));
  o[3] = static_cast<unsigned char>(0x80 | (cp & 0x3F));
  c.o += 4;
  c.p += 2;
  return true;
}

}  // namespace

size_t utf8ToUtf16(const char* in, size_t inBytes, zwchar_t* out, size_t outUnits) {
  const auto* from = reinterpret_cast<const unsigned char*>(in);
  Decoding c{from, from + inBytes, out, out + outUnits};
  while (c.p < c.end) {
    if (*c.p < 0x80) {
      const size_t run = widenAscii(c.p, smaller(c.inLeft(), c.outLeft()), c.o);
      if (run == 0) return kNotTranscoded;  // no room left
      c.p += run;
      c.o += run;
    } else if (!decodeSequence(c)) {
      return kNotTranscoded;
    }
  }
  return static_cast<size_t>(c.o - out);
}

size_t utf16ToUtf8(const zwchar_t* in, size_t inUnits, char* out, size_t outBytes) {
  auto* to = reinterpret_cast<unsigned char*>(out);
  Encoding c{in, in + inUnits, to, to + outBytes};
  while (c.p < c.end) {
    if (*c.p < 0x80) {
      const size_t run = narrowAscii(c.p, smaller(c.inLeft(), c.outLeft()), c.o);
      if (run == 0) return kNotTranscoded;
      c.p += run;
      c.o += run;
    } else if (!encodeCharacter(c)) {
      return kNotTranscoded;
    }
  }
  return static_cast<size_t>(c.o - to);
}

}  // namespace charset
}  // namespace zeb

// zeb_cstr.cpp: the C-string helpers of zeb_cstr.h. Each idea is written once as a template over
// the character type; the exported 8-bit and 16-bit functions are thin instantiations.
#include "zeb/strings/zeb_cstr.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <charconv>
#include <type_traits>

#include "zeb/strings/internal/units.h"

namespace {

using zeb::internal::orEmpty;
using zeb::internal::unitValue;

unsigned foldAscii(unsigned c) {
  return (c >= 'a' && c <= 'z') ? c - 32 : c;
}

template <typename CharT>
unsigned comparable(CharT c, bool ignoreCase) {
  const unsigned value = unitValue(c);
  return ignoreCase ? foldAscii(value) : value;
}

template <typename CharT>
size_t length(const CharT* s) {
  size_t n = 0;
  if (s) {
    while (s[n]) ++n;
  }
  return n;
}

// The 16-bit length a block at a time: it is on the path of every conversion of UTF-16 text.
// The blocks read are aligned to their size, so no read crosses into another page, but the block
// that holds the NUL may reach past the end of the text's allocation (and the first may start
// before the text); the address and thread sanitizers are told so, as they are for the C
// library's own strlen. A text not aligned for its units goes one unit at a time.
#if defined(__SSE2__)
__attribute__((no_sanitize("address", "thread"))) size_t unitsBeforeNul(const zwchar_t* s) {
  const uintptr_t start = reinterpret_cast<uintptr_t>(s);
  if (start % sizeof(zwchar_t) != 0) return length(s);
  const __m128i zero = _mm_setzero_si128();
  const auto* block = reinterpret_cast<const __m128i*>(start & ~uintptr_t{15});
  // Two bits for each NUL unit of the first block, from the text's first unit on.
  unsigned nuls =
      static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_load_si128(block), zero))) >>
      (start & 15);
  if (nuls != 0) return static_cast<size_t>(__builtin_ctz(nuls)) / 2;
  do {
    ++block;
    nuls = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_load_si128(block), zero)));
  } while (nuls == 0);
  const uintptr_t nul =
      reinterpret_cast<uintptr_t>(block) + static_cast<unsigned>(__builtin_ctz(nuls));
  return static_cast<size_t>(nul - start) / sizeof(zwchar_t);
}
#else
__attribute__((no_sanitize("address", "thread"))) size_t unitsBeforeNul(const zwchar_t* s) {
  const zwchar_t* p = s;
  for (; reinterpret_cast<uintptr_t>(p) % sizeof(uint64_t) != 0; ++p) {
    if (*p == 0) return static_cast<size_t>(p - s);
  }
  constexpr uint64_t kOnes = 0x0001000100010001ULL;
  constexpr uint64_t kHighBits = 0x8000800080008000ULL;
  for (;; p += 4) {
    uint64_t word;
    memcpy(&word, p, sizeof word);
    if (((word - kOnes) & ~word & kHighBits) != 0) break;  // some unit of the word is 0
  }
  while (*p != 0) ++p;
  return static_cast<size_t>(p - s);
}
#endif

// Compares at most `n` characters; a null string sorts as "". Returns -1, 0 or 1.
template <typename CharT>
int compareUpTo(const CharT* a, const CharT* b, size_t n, bool ignoreCase) {
  a = orEmpty(a);
  b = orEmpty(b);
  for (size_t i = 0; i < n; ++i) {
    const unsigned ca = comparable(a[i], ignoreCase);
    const unsigned cb = comparable(b[i], ignoreCase);
    if (ca != cb) return ca < cb ? -1 : 1;
    if (ca == 0) break;
  }
  return 0;
}

template <typename CharT>
bool isNullOrEmpty(const CharT* s) {
  return !s || !*s;
}

template <typename CharT>
ptrdiff_t compareNullTolerant(const CharT* a, const CharT* b) {
  if (isNullOrEmpty(a) && isNullOrEmpty(b)) return 0;
  if (!a || !b) {
    // Only ever tested for zero; unsigned subtraction keeps it free of undefined behaviour.
    return static_cast<ptrdiff_t>(reinterpret_cast<uintptr_t>(a) - reinterpret_cast<uintptr_t>(b));
  }
  return compareUpTo(a, b, SIZE_MAX, false);
}

template <typename CharT>
bool equalFor(const CharT* a, const CharT* b, size_t n, bool ignoreCase) {
  return compareUpTo(a, b, n, ignoreCase) == 0;
}

template <typename CharT>
CharT* findSubstring(const CharT* hay, const CharT* needle, bool ignoreCase) {
  if (isNullOrEmpty(needle)) return const_cast<CharT*>(hay);
  if (!hay) return nullptr;
  const size_t needleLen = length(needle);
  const unsigned first = comparable(needle[0], ignoreCase);
  for (const CharT* p = hay; *p; ++p) {
    if (comparable(*p, ignoreCase) == first && equalFor(p, needle, needleLen, ignoreCase)) {
      return const_cast<CharT*>(p);
    }
  }
  return nullptr;
}

template <typename CharT>
CharT* findChar(const CharT* s, CharT c, bool ignoreCase) {
  if (!s || !c) return nullptr;
  const unsigned wanted = comparable(c, ignoreCase);
  for (; *s; ++s) {
    if (comparable(*s, ignoreCase) == wanted) return const_cast<CharT*>(s);
  }
  return nullptr;
}

template <typename CharT>
bool beginsWith(const CharT* s, const CharT* prefix, bool ignoreCase) {
  if (!s) return false;
  return equalFor(s, prefix, length(prefix), ignoreCase);
}

template <typename CharT>
bool endsWith(const CharT* s, const CharT* suffix, bool ignoreCase) {
  if (!s) return false;
  const size_t sLen = length(s);
  const size_t suffixLen = length(suffix);
  return suffixLen <= sLen && equalFor(s + sLen - suffixLen, suffix, suffixLen, ignoreCase);
}

template <typename CharT>
CharT* duplicate(const CharT* s, unsigned* len) {
  if (len) *len = 0;
  if (!s) return nullptr;
  const size_t n = length(s);
  auto* copy = static_cast<CharT*>(malloc((n + 1) * sizeof(CharT)));
  if (!copy) return nullptr;
  memcpy(copy, s, (n + 1) * sizeof(CharT));
  if (len) *len = static_cast<unsigned>(n);
  return copy;
}

template <typename CharT>
CharT* replaceWithCopy(CharT** slot, const CharT* s) {
  if (!slot) return nullptr;
  free(*slot);
  *slot = duplicate(s, nullptr);
  return *slot;
}

unsigned hexNibble(unsigned char c) {
  const unsigned bit6 = (c & 0x40) ? 1 : 0;
  return (c - 7 * bit6) & 15;
}

bool isHexMarker(char c) {
  return c == 'x' || c == 'X';
}

// Length of `s` limited to `limit` characters (limit < 1: no limit).
size_t lengthUpTo(const char* s, int limit) {
  if (limit < 1) return strlen(s);
  size_t n = 0;
  while (n < static_cast<size_t>(limit) && s[n]) ++n;
  return n;
}

}  // namespace

extern "C" {

char* zeb_itoa(int value, char* out) {
  if (!out) return nullptr;
  unsigned magnitude = static_cast<unsigned>(value);
  if (value < 0) magnitude = 0u - magnitude;
  char digits[10];
  size_t count = 0;
  do {
    digits[count++] = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude);
  char* p = out;
  if (value < 0) *p++ = '-';
  while (count) *p++ = digits[--count];
  *p = '\0';
  return out;
}

int zeb_stricmp_impl(const char* a, const char* b) {
  return compareUpTo(a, b, SIZE_MAX, true);
}
int zeb_stricmpw_impl(const zwchar_t* a, const zwchar_t* b) {
  return compareUpTo(a, b, SIZE_MAX, true);
}
int zeb_strnicmp(const char* a, const char* b, size_t n) {
  return compareUpTo(a, b, n, true);
}
int zeb_strncmp(const char* a, const char* b, size_t n) {
  return compareUpTo(a, b, n, false);
}

ptrdiff_t zeb_strcmpnil(const char* a, const char* b) {
  return compareNullTolerant(a, b);
}
ptrdiff_t zeb_strcmpnilw(const zwchar_t* a, const zwchar_t* b) {
  return compareNullTolerant(a, b);
}

char* zeb_strstri(const char* hay, const char* needle) {
  return findSubstring(hay, needle, true);
}
zwchar_t* zeb_wcsstrstri(const zwchar_t* hay, const zwchar_t* needle) {
  return findSubstring(hay, needle, true);
}

char* zeb_strchri(const char* s, char c) {
  return findChar(s, c, true);
}
zwchar_t* zeb_wcsstrchri(const zwchar_t* s, zwchar_t c) {
  return findChar(s, c, true);
}
zwchar_t* zeb_wcsstrchr(const zwchar_t* s, zwchar_t c) {
  return findChar(s, c, false);
}

bool zeb_beginWith(const char* s, const char* prefix) {
  return beginsWith(s, prefix, false);
}
bool zeb_beginWithIgnoreCase(const char* s, const char* prefix) {
  return beginsWith(s, prefix, true);
}
bool zeb_endWith(const char* s, const char* suffix) {
  return endsWith(s, suffix, false);
}
bool zeb_endWithIgnoreCase(const char* s, const char* suffix) {
  return endsWith(s, suffix, true);
}
bool zeb_beginWithW(const zwchar_t* s, const zwchar_t* prefix) {
  return beginsWith(s, prefix, false);
}
bool zeb_beginWithIgnoreCaseW(const zwchar_t* s, const zwchar_t* prefix) {
  return beginsWith(s, prefix, true);
}
bool zeb_endWithW(const zwchar_t* s, const zwchar_t* suffix) {
  return endsWith(s, suffix, false);
}
bool zeb_endWithIgnoreCaseW(const zwchar_t* s, const zwchar_t* suffix) {
  return endsWith(s, suffix, true);
}

char* zeb_trim(char* s) {
  if (!s) return nullptr;
  size_t end = strlen(s);
  while (end > 0 && s[end - 1] == ' ') s[--end] = '\0';
  while (*s == ' ') ++s;
  return s;
}

char* zeb_ansistrduplen_impl(const char* s, unsigned* len) {
  return duplicate(s, len);
}
zwchar_t* zeb_strduplen_impl(const zwchar_t* s, unsigned* len) {
  return duplicate(s, len);
}
char* zeb_strdupa_impl(const char* s) {
  return duplicate(s, nullptr);
}
zwchar_t* zeb_strdupw_impl(const zwchar_t* s) {
  return duplicate(s, nullptr);
}

char* clear_and_strdup(char** slot, const char* s) {
  return replaceWithCopy(slot, s);
}
zwchar_t* clear_and_strdupw(zwchar_t** slot, const zwchar_t* s) {
  return replaceWithCopy(slot, s);
}

unsigned long long hextoint(const char* s, int len) {
  if (!s) return 0;
  const size_t end = lengthUpTo(s, len);
  unsigned long long value = 0;
  unsigned digits = 0;
  for (size_t i = end; i > 0 && digits < 16; --i, ++digits) {
    // The last character is always taken; an 'x' before it ends the number.
    if (i < end && isHexMarker(s[i - 1])) break;
    value |= static_cast<unsigned long long>(hexNibble(static_cast<unsigned char>(s[i - 1])))
             << (4 * digits);
  }
  return value;
}

size_t zeb_wcslen(const zwchar_t* s) {
  return s ? unitsBeforeNul(s) : 0;
}

char* zeb_gcvt(double value, int digits, char* buf) {
  if (!buf) return nullptr;
  if (digits < 1) digits = 1;
  if (digits > 17) digits = 17;
  // std::to_chars never consults the locale; general format with a precision is "%.*g".
  const std::to_chars_result r =
      std::to_chars(buf, buf + digits + 7, value, std::chars_format::general, digits);
  *r.ptr = '\0';
  return buf;
}

}  // extern "C"

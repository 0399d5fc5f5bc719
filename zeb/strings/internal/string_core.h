// string_core.h: the algorithms of the owning string classes, written once as templates over the
// text unit (char for TAnsiString, zwchar_t for TWideString). Private; not installed.
//
// The classes keep their own small layout (a buffer pointer and a capacity, no stored length) and
// forward every member here:
//   - read-only members to free functions over the content as a `const CharT*` (null: empty);
//   - members that change the content to a StringBuffer, which works on references to the
//     class's `buffer` and `capacity` fields.
// StringT is the owning class itself, used where an algorithm needs a temporary string or returns
// a new one; it must offer the public constructors (const CharT*, int) and (int, tcapacityTag),
// append, data, getCapacity and releasePtr.
//
// Units are compared as unsigned values except where a member documents otherwise; case folding
// is ASCII only.
#ifndef ZEB_STRINGS_INTERNAL_STRING_CORE_H
#define ZEB_STRINGS_INTERNAL_STRING_CORE_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/internal/units.h"
#include "zeb/strings/zeb_cstr.h"

namespace zeb::internal {

// ---- texts --------------------------------------------------------------------------------------

// Units before the NUL; 0 for null.
inline int textLength(const char* s) {
  return s ? static_cast<int>(strlen(s)) : 0;
}
inline int textLength(const zwchar_t* s) {
  return static_cast<int>(zeb_wcslen(s));
}
// Units before the NUL, at most `limit` (never reads past the NUL).
template <typename CharT>
int lengthUpTo(const CharT* s, int limit) {
  int n = 0;
  while (n < limit && s[n] != 0) ++n;
  return n;
}
// Units taken from `s` for an explicit length: at most `len`, never past a NUL (len < 0: all).
template <typename CharT>
int boundedLength(const CharT* s, int len) {
  return len < 0 ? textLength(s) : lengthUpTo(s, len);
}

// `c` (not NUL) occurs in the NUL-terminated `set`.
template <typename CharT>
bool containsUnit(const CharT* set, CharT c) {
  for (; *set != 0; ++set) {
    if (*set == c) return true;
  }
  return false;
}
// Membership in an 8-bit set of bytes: a wider unit can only match when it is below 128 (a unit
// such as 0x4E20 must not match ' ' through truncation).
template <typename CharT>
bool inByteSet(const char* set, CharT c) {
  if (c == 0 || (sizeof(CharT) > 1 && unitValue(c) >= 128)) return false;
  return containsUnit(set, static_cast<char>(c));
}

// The units of `s` up to its NUL or its first unit outside ASCII, as 8-bit text.
template <typename CharT>
std::string asciiPrefix(const CharT* s) {
  std::string ascii;
  for (; s != nullptr && *s != 0 && unitValue(*s) < 128; ++s)
    ascii.push_back(static_cast<char>(*s));
  return ascii;
}
// ASCII 8-bit text as units.
template <typename CharT>
std::basic_string<CharT> widenAscii(const std::string& ascii) {
  std::basic_string<CharT> units;
  for (const char c : ascii) units.push_back(static_cast<CharT>(static_cast<unsigned char>(c)));
  return units;
}

// A unit count as a capacity; beyond what an int capacity can describe the allocation fails the
// way the allocator reports exhaustion.
inline int capacityFor(long long units) {
  if (units > INT_MAX) throw std::bad_alloc();
  return static_cast<int>(units);
}

// ---- search and comparison ----------------------------------------------------------------------

inline const char* findExact(const char* hay, const char* needle) {
  return strstr(hay, needle);
}
template <typename CharT>
const CharT* findExact(const CharT* hay, const CharT* needle) {
  const size_t at = std::basic_string_view<CharT>(hay).find(needle);
  return at == std::basic_string_view<CharT>::npos ? nullptr : hay + at;
}
inline const char* findFolded(const char* hay, const char* needle) {
  return zeb_strstri(hay, needle);
}
inline const zwchar_t* findFolded(const zwchar_t* hay, const zwchar_t* needle) {
  return zeb_wcsstrstri(hay, needle);
}
// The first occurrence of `needle` in `hay`, ASCII case folded when `fold`.
template <typename CharT>
const CharT* findText(const CharT* hay, const CharT* needle, bool fold) {
  return fold ? findFolded(hay, needle) : findExact(hay, needle);
}

// Compares at most `n` units as unsigned values (ASCII letters folded when `fold`); -1, 0 or 1.
template <typename CharT>
int compareUnits(const CharT* a, const CharT* b, size_t n, bool fold) {
  for (size_t i = 0; i < n; ++i) {
    const unsigned ca = unitValue(fold ? foldUpper(a[i]) : a[i]);
    const unsigned cb = unitValue(fold ? foldUpper(b[i]) : b[i]);
    if (ca != cb) return ca < cb ? -1 : 1;
    if (ca == 0) break;
  }
  return 0;
}

// The string classes' comparison: an empty text (null or "") sorts before every other and equals
// another empty; otherwise compareUnits over at most `n` units.
template <typename CharT>
int compareTexts(const CharT* a, const CharT* b, size_t n, bool fold) {
  if (isEmptyText(a)) return isEmptyText(b) ? 0 : -1;
  if (isEmptyText(b)) return 1;
  return compareUnits(a, b, n, fold);
}
template <typename CharT>
int compareTexts(const CharT* a, const CharT* b, bool fold) {
  return compareTexts(a, b, SIZE_MAX, fold);
}
template <typename CharT>
int compareTextsUpTo(const CharT* a, const CharT* b, int n, bool fold) {
  return n < 1 ? 0 : compareTexts(a, b, static_cast<size_t>(n), fold);
}
template <typename CharT>
bool equalsUnit(const CharT* text, CharT c) {
  const CharT single[2] = {c, 0};
  return compareTexts(text, single, false) == 0;
}

template <typename CharT>
bool beginsWith(const CharT* text, const CharT* prefix, bool fold) {
  const int n = textLength(prefix);
  return compareUnits(orEmpty(text), prefix, static_cast<size_t>(n), fold) == 0;
}
template <typename CharT>
bool endsWith(const CharT* text, const CharT* suffix, bool fold) {
  const CharT* s = orEmpty(text);
  const int len = textLength(s);
  const int n = textLength(suffix);
  return n <= len && compareUnits(s + len - n, suffix, static_cast<size_t>(n), fold) == 0;
}

// posSubStr: the first `sub` at or after `start`; -1 when either is empty or the text ends
// before `start`.
template <typename CharT>
int findSubText(const CharT* text, const CharT* sub, int start, bool fold) {
  if (isEmptyText(text) || isEmptyText(sub)) return -1;
  const int from = std::max(start, 0);
  if (lengthUpTo(text, from) < from) return -1;
  const CharT* hit = findText(text + from, sub, fold);
  return hit ? static_cast<int>(hit - text) : -1;
}

// posSubChar: a start past the end gives -1.
template <typename CharT>
int findUnit(const CharT* text, CharT c, int start, bool fold) {
  if (isEmptyText(text) || c == 0) return -1;
  for (const CharT* p = text + lengthUpTo(text, std::max(start, 0)); *p != 0; ++p) {
    if (sameUnit(*p, c, fold)) return static_cast<int>(p - text);
  }
  return -1;
}

// The index where a backward scan from `from` starts: the last unit when `from` is out of range.
inline int backwardStart(int from, int len) {
  return from < 0 || from > len - 1 ? len - 1 : from;
}

template <typename CharT>
int findUnitBackward(const CharT* text, CharT c, int from, bool fold) {
  const int len = textLength(text);
  if (len == 0 || c == 0) return -1;
  for (int i = backwardStart(from, len); i >= 0; --i) {
    if (sameUnit(text[i], c, fold)) return i;
  }
  return -1;
}

template <typename CharT>
int findSubTextBackward(const CharT* text, const CharT* sub, int from, bool fold) {
  const int len = textLength(text);
  const int subLen = textLength(sub);
  if (len == 0 || subLen == 0 || subLen > len) return -1;
  for (int i = std::min(backwardStart(from, len), len - subLen); i >= 0; --i) {
    if (compareUnits(text + i, sub, static_cast<size_t>(subLen), fold) == 0) return i;
  }
  return -1;
}

template <typename CharT>
int countUnit(const CharT* text, CharT c) {
  if (c == 0) return 0;
  const CharT* begin = orEmpty(text);
  return static_cast<int>(std::count(begin, begin + textLength(begin), c));
}

// ---- numbers ------------------------------------------------------------------------------------

// Member number formatters write into the string's own buffer of at least this many units.
constexpr int kNumberBufferSize = 50;

// Writes '-' (when negative), the digits of `magnitude` in `radix` and a NUL into `out`. Digits
// come least significant first; '0's pad the text (sign counted) to `minDigits` characters; then
// digits and padding are reversed so the zeros sit between the sign and the digits. Returns the
// units written, NUL not counted.
template <typename CharT>
int writeNumber(CharT* out, unsigned long long magnitude, bool negative, int minDigits,
                unsigned radix, bool upper) {
  const char* digits = upper ? "0123456789ABCDEF" : "0123456789abcdef";
  CharT* p = out;
  if (negative) *p++ = '-';
  CharT* const first = p;
  do {
    *p++ = static_cast<CharT>(digits[magnitude % radix]);
    magnitude /= radix;
  } while (magnitude != 0);
  while (p - out < minDigits) *p++ = '0';
  std::reverse(first, p);
  *p = 0;
  return static_cast<int>(p - out);
}

// inttostrS / inttostrs: the decimal text of `value` (read as unsigned when `isUnsigned`).
template <typename CharT>
int writeDecimal(CharT* out, long long value, int minDigits, bool isUnsigned) {
  if (out == nullptr) return 0;
  const unsigned long long bits = static_cast<unsigned long long>(value);
  const bool negative = !isUnsigned && value < 0;
  return writeNumber(out, negative ? 0ULL - bits : bits, negative, minDigits, 10, true);
}

// Decimal parsing shared by every integer parser. U is the unsigned type of the result's width:
// the value accumulates (and wraps) in it, and a '-' sign negates it modulo 2^bits.
template <typename U, typename CharT>
U parseDecimal(const CharT* s, int start, int maxDigits) {
  if (s == nullptr) return 0;
  for (int skipped = 0; skipped < start && *s != 0; ++skipped) ++s;
  while (isSpaceOrControl(*s)) ++s;
  const bool negative = *s == '-';
  if (*s == '-' || *s == '+') ++s;
  U value = 0;
  for (int taken = 0; isDigitUnit(*s) && (maxDigits < 0 || taken < maxDigits); ++taken, ++s) {
    value = static_cast<U>(value * 10U + static_cast<U>(*s - '0'));
  }
  return negative ? static_cast<U>(0U - value) : value;
}

// Floating-point parsing independent of the process locale: leading spaces and controls, one
// optional sign, then decimal or "0x" hexadecimal notation, "inf" or "nan". No number, or one
// out of the type's range: 0. A unit outside ASCII ends the number.
template <typename T, typename CharT>
T parseFloating(const CharT* text) {
  const std::string ascii = asciiPrefix(text);
  const char* s = ascii.c_str();
  while (isSpaceOrControl(*s)) ++s;
  const bool negative = *s == '-';
  if (*s == '-' || *s == '+') ++s;
  std::chars_format format = std::chars_format::general;
  if (s[0] == '0' && (s[1] == 'x' || s[1] == 'X')) {
    // Only the "0" is a number when no hexadecimal digits follow ("0xg", "0xnan").
    if (!isHexDigitUnit(s[2]) && s[2] != '.') return 0;
    format = std::chars_format::hex;
    s += 2;
  }
  if (*s == '-' || *s == '+') return 0;
  T value = 0;
  if (std::from_chars(s, s + strlen(s), value, format).ec != std::errc()) return 0;
  return negative ? -value : value;
}

// A NUL inside the first `len` units is not a digit, so the scan never reads past the text.
template <typename CharT>
bool isNumericText(const CharT* s, int len, bool allowSignAndPoint) {
  if (isEmptyText(s) || len == 0) return false;
  for (int i = 0; len < 0 ? s[i] != 0 : i < len; ++i) {
    const CharT c = s[i];
    const bool signOrPoint = c == '.' || c == '+' || c == '-';
    if (!isDigitUnit(c) && !(allowSignAndPoint && signOrPoint)) return false;
  }
  return true;
}

template <typename CharT>
bool isHexText(const CharT* s) {
  return !isEmptyText(s) && std::all_of(s, s + textLength(s), isHexDigitUnit<CharT>);
}

// A unit as a byte that hextoint reads the same way: a unit below 128 as itself, a wider one as a
// byte with its bit 6 and low nibble (so the same digit value) that is neither NUL nor 'x'/'X'.
template <typename CharT>
char hexByteOf(CharT c) {
  const unsigned u = unitValue(c);
  return static_cast<char>(u < 128 ? u : 0x80 | (u & 0x4F));
}

// HexToInt: hextoint(s, 0) over units. hextoint reads at most 16 digits and the unit before them,
// so the last 17 units decide the value.
template <typename CharT>
unsigned long long hexValue(const CharT* s) {
  constexpr int kDecidingUnits = 17;
  const int len = textLength(s);
  char tail[kDecidingUnits + 1];
  int n = 0;
  for (int i = std::max(len - kDecidingUnits, 0); i < len; ++i) tail[n++] = hexByteOf(s[i]);
  tail[n] = '\0';
  return hextoint(tail, 0);
}

// ---- new strings from a content -----------------------------------------------------------------

template <typename StringT, typename CharT>
StringT substringOf(const CharT* text, int start, int count) {
  const int len = textLength(text);
  const int from = std::max(start, 0);
  if (count == 0 || from >= len) return StringT();
  const int available = len - from;
  return StringT(text + from, count < 0 ? available : std::min(count, available));
}

template <typename StringT, typename CharT>
StringT leftOf(const CharT* text, int n) {
  return n < 1 ? StringT() : substringOf<StringT>(text, 0, n);
}

template <typename StringT, typename CharT>
StringT lastOf(const CharT* text, int n) {
  return n < 1 ? StringT() : substringOf<StringT>(text, std::max(textLength(text) - n, 0), n);
}

// getNSubStr: word n (from 0), words separated by runs of spaces and tabs.
template <typename StringT, typename CharT>
StringT wordOf(const CharT* text, int n) {
  if (isEmptyText(text) || n < 0) return StringT();
  const CharT* word = text;
  while (isBlank(*word)) ++word;
  for (int index = 0; index < n && *word != 0; ++index) {
    while (*word != 0 && !isBlank(*word)) ++word;
    while (isBlank(*word)) ++word;
  }
  int size = 0;
  while (word[size] != 0 && !isBlank(word[size])) ++size;
  return StringT(word, size);
}

// getCharRSubStr: the part after the n-th `c` from the end; the whole text when there are fewer.
template <typename StringT, typename CharT>
StringT afterLastUnits(const CharT* text, int n, CharT c) {
  const int wanted = std::max(n, 1);
  int found = 0;
  for (int i = textLength(text) - 1; i >= 0; --i) {
    if (text[i] == c && ++found == wanted) return StringT(text + i + 1);
  }
  return StringT(text);
}

template <typename CharT>
CharT unitAt(const CharT* text, int i) {
  if (i < 0 || isEmptyText(text)) return 0;
  return lengthUpTo(text, i) == i ? text[i] : 0;
}

template <typename CharT>
CharT lastUnit(const CharT* text) {
  const int len = textLength(text);
  return len > 0 ? text[len - 1] : 0;
}

// operator+ forms: a copy of `s` with `text` (`len` units, < 0: all) appended.
template <typename StringT, typename CharT>
StringT joined(const StringT& s, const CharT* text, int len = -1) {
  StringT result(s);
  result.append(text, len);
  return result;
}
template <typename CharT, typename StringT>
StringT joinedDecimal(const StringT& s, long long value, bool isUnsigned) {
  CharT text[kNumberBufferSize];
  return joined(s, text, writeDecimal(text, value, 0, isUnsigned));
}

// A new[] copy of `s` (null for null).
template <typename CharT>
CharT* duplicateText(const CharT* s) {
  if (s == nullptr) return nullptr;
  const size_t size = static_cast<size_t>(textLength(s)) + 1;
  CharT* copy = new CharT[size];
  std::copy(s, s + size, copy);
  return copy;
}

// ---- the content changed in place ---------------------------------------------------------------

template <typename StringT, typename CharT>
class StringBuffer {
 public:
  StringBuffer(CharT*& buffer, int& capacity) : buffer_(buffer), capacity_(capacity) {}

  int length() const { return textLength(buffer_); }

  // The constructor's copy: exactly `len` units (len < 0: up to the NUL), NULs included.
  void initialize(const CharT* s, int len) {
    if (isEmptyText(s) || len == 0) return;
    const int n = len < 0 ? textLength(s) : len;
    buffer_ = new CharT[static_cast<size_t>(capacityFor(n + 1LL))];
    capacity_ = n + 1;
    std::copy(s, s + n, buffer_);
    buffer_[n] = 0;
  }

  // The units are copied as strncpy would (stopping at a NUL, zeros up to `len`), with memmove
  // so that `s` may point into the string's own buffer.
  void setText(const CharT* s, int len) {
    if (isEmptyText(s) || len == 0) return deleteBuffer();
    const int n = len < 0 ? textLength(s) : len;
    const int copied = boundedLength(s, n);
    CharT* target = n < capacity_ ? buffer_ : new CharT[static_cast<size_t>(capacityFor(n + 1LL))];
    memmove(target, s, static_cast<size_t>(copied) * sizeof(CharT));
    std::fill(target + copied, target + n + 1, CharT(0));
    if (target != buffer_) {
      delete[] buffer_;
      buffer_ = target;
      capacity_ = n + 1;
    }
  }

  void deleteBuffer() {
    delete[] std::exchange(buffer_, nullptr);
    capacity_ = 0;
  }

  CharT* release() {
    capacity_ = 0;
    return std::exchange(buffer_, nullptr);
  }

  // Takes over the buffer of `other`.
  void adopt(StringT& other) {
    const int size = other.getCapacity();
    delete[] buffer_;
    buffer_ = other.releasePtr();
    capacity_ = size;
  }

  void setCapacity(int n, bool keepContent, bool onlyGrow) {
    if (n <= 0) return deleteBuffer();
    if ((onlyGrow && capacity_ > n) || capacity_ == n) return;
    CharT* fresh = new CharT[static_cast<size_t>(n)];
    fresh[0] = 0;
    if (keepContent && buffer_ != nullptr) {
      const int kept = std::min(n, capacity_);
      std::copy(buffer_, buffer_ + kept, fresh);
      if (n < capacity_) fresh[n - 1] = 0;
      std::fill(fresh + kept, fresh + n, CharT(0));
    }
    delete[] buffer_;
    buffer_ = fresh;
    capacity_ = n;
  }

  // append / insert: at most `len` units of `s` (stopping at a NUL; len < 0: all) at `pos`
  // (clamped to 0..length).
  void insert(const CharT* s, int pos, int len) {
    if (s == nullptr) return;
    const int n = boundedLength(s, len);
    if (n == 0) return;
    const int current = length();
    spliceIn(current, std::clamp(pos, 0, current), s, n);
  }
  void append(const CharT* s, int len) { insert(s, INT_MAX, len); }
  void appendDecimal(long long value, bool isUnsigned) {
    CharT text[kNumberBufferSize];
    append(text, writeDecimal(text, value, 0, isUnsigned));
  }

  // ---- numbers ----

  void setDecimal(long long value, int minDigits, bool isUnsigned) {
    writeDecimal(numberBuffer(minDigits), value, minDigits, isUnsigned);
  }
  void setHex(unsigned long long value, int width, bool upper) {
    writeNumber(numberBuffer(width), value, false, width, 16, upper);
  }
  // fromHex: built in a new buffer of exactly the needed size, so `bytes` may point into the
  // string.
  void setHexBytes(const void* bytes, int count, int separator) {
    if (bytes == nullptr || count < 1) return clear();
    const long long separators = separator != 0 ? count - 1 : 0;
    StringT text(capacityFor(2LL * count + separators + 1), tcapacityTag{});
    CharT* out = text.data();
    const unsigned char* in = static_cast<const unsigned char*>(bytes);
    for (int i = 0; i < count; ++i) {
      if (i > 0 && separator != 0) *out++ = static_cast<CharT>(separator);
      out += writeNumber(out, in[i], false, 2, 16, true);
    }
    adopt(text);
  }

  // ---- editing ----

  void remove(int pos, int count) {
    const long long len = length();
    if (pos < 0 || count < 1 || pos + static_cast<long long>(count) > len) return;
    moveDown(pos, pos + count);
  }
  void trunc(int n) {
    if (n < 1) return clear();
    if (!isEmptyText(buffer_) && lengthUpTo(buffer_, n) == n) buffer_[n] = 0;
  }
  void truncRight(int n) {
    if (n < 1) return clear();
    const int len = length();
    if (n < len) moveDown(0, len - n);
  }
  void chop(int n) {
    const int len = length();
    if (n < 1 || len == 0) return;
    buffer_[n >= len ? 0 : len - n] = 0;
  }
  void removeLastIf(CharT c) {
    const int len = length();
    if (len > 0 && buffer_[len - 1] == c) buffer_[len - 1] = 0;
  }
  void fill(CharT c, int n) {
    if (n == 0) return clear();
    if (n < 0) {
      std::fill_n(buffer_, length(), c);
      return;
    }
    const int size = capacityFor(n + 1LL);
    if (capacity_ != size) setCapacity(size, false, false);
    std::fill_n(buffer_, n, c);
    buffer_[n] = 0;
  }
  // The content becomes n + 1 copies of itself.
  void repeat(int n) {
    const int len = length();
    if (n < 1 || len == 0) return;
    const int size = capacityFor((n + 1LL) * len + 1);
    if (size > capacity_) setCapacity(size, true, false);
    for (int copy = 1; copy <= n; ++copy) {
      std::copy(buffer_, buffer_ + len, buffer_ + static_cast<size_t>(copy) * len);
    }
    buffer_[size - 1] = 0;
  }
  // trim with an 8-bit set of bytes (null: ' ' only).
  void trimLeft(const char* set) {
    if (isEmptyText(buffer_)) return;
    const char* removable = set ? set : " ";
    int skipped = 0;
    while (inByteSet(removable, buffer_[skipped])) ++skipped;
    if (skipped > 0) moveDown(0, skipped);
  }
  void trimRight(const char* set) {
    const char* removable = set ? set : " ";
    int len = length();
    while (len > 0 && inByteSet(removable, buffer_[len - 1])) --len;
    if (buffer_ != nullptr) buffer_[len] = 0;
  }
  void replace(CharT from, CharT to) {
    if (isEmptyText(buffer_) || from == 0) return;
    for (CharT* p = buffer_; *p != 0; ++p) {
      if (*p == from) *p = to;
    }
  }
  // The result is assembled in a separate string (the search never sees replaced text); it goes
  // back into this buffer when it fits, otherwise its buffer is taken over.
  void replace(const CharT* from, const CharT* to, bool fold) {
    if (isEmptyText(buffer_) || isEmptyText(from)) return;
    const CharT* hit = findText<CharT>(buffer_, from, fold);
    if (hit == nullptr) return;
    const int fromLen = textLength(from);
    StringT result;
    const CharT* rest = buffer_;
    for (; hit != nullptr; hit = findText(rest, from, fold)) {
      result.append(rest, static_cast<int>(hit - rest)).append(to);
      rest = hit + fromLen;
    }
    result.append(rest);
    const int resultLen = textLength(result.data());
    if (resultLen >= capacity_) return adopt(result);
    const CharT* text = orEmpty<CharT>(result.data());
    std::copy(text, text + resultLen + 1, buffer_);
  }
  // removeChr: every unit within [low, high] (high 0: low alone) in rangeOrder goes; the result
  // is written into a new buffer of the same capacity.
  void removeRange(CharT low, CharT high) {
    if (buffer_ == nullptr) return;
    const int lowest = rangeOrder(low);
    const int highest = rangeOrder(high == 0 ? low : high);
    StringT kept(capacity_, tcapacityTag{});
    CharT* out = kept.data();
    for (const CharT* p = buffer_; *p != 0; ++p) {
      const int c = rangeOrder(*p);
      if (c < lowest || c > highest) *out++ = *p;
    }
    *out = 0;
    adopt(kept);
  }
  void toLower() {
    if (buffer_ != nullptr) std::transform(buffer_, buffer_ + length(), buffer_, foldLower<CharT>);
  }
  void toUpper() {
    if (buffer_ != nullptr) std::transform(buffer_, buffer_ + length(), buffer_, foldUpper<CharT>);
  }
  void clear() {
    if (buffer_ != nullptr) buffer_[0] = 0;
  }
  void zero() {
    if (buffer_ != nullptr) std::fill_n(buffer_, capacity_, CharT(0));
  }

 private:
  // True when `p` points into the units the string owns (appending or inserting a string's own
  // text must not read from a buffer the growth has just freed).
  bool ownsPointer(const CharT* p) const {
    if (buffer_ == nullptr || p == nullptr) return false;
    const std::less<const CharT*> before;
    return !before(p, buffer_) && before(p, buffer_ + capacity_);
  }

  // The growth rule shared by every append and insert: room for n more units after `length`
  // units. When length + n + 1 exceeds the capacity C the buffer becomes C + C/2 + 1 + n units,
  // content kept.
  void makeRoom(int length, int n) {
    const long long capacity = capacity_;
    if (length + static_cast<long long>(n) + 1 > capacity) {
      setCapacity(capacityFor(capacity + capacity / 2 + 1 + n), true, false);
    }
  }

  // Inserts the n units at `text` at `pos` (0..length); `length` is the current length.
  void spliceIn(int length, int pos, const CharT* text, int n) {
    if (ownsPointer(text)) {
      const StringT copy(text, n);
      return spliceIn(length, pos, copy.data(), n);
    }
    makeRoom(length, n);
    std::copy_backward(buffer_ + pos, buffer_ + length, buffer_ + length + n);
    std::copy(text, text + n, buffer_ + pos);
    buffer_[length + n] = 0;
  }

  // Moves the text from index `from` (NUL included) down to index `to`.
  void moveDown(int to, int from) {
    const int tail = textLength(buffer_ + from) + 1;
    std::copy(buffer_ + from, buffer_ + from + tail, buffer_ + to);
  }

  // The member number formatters write into the string's own buffer, made at least 50 units (and
  // large enough for the padding).
  CharT* numberBuffer(int minDigits) {
    const long long size = std::max<long long>(kNumberBufferSize, minDigits + 1LL);
    setCapacity(capacityFor(size), false, true);
    return buffer_;
  }

  CharT*& buffer_;
  int& capacity_;
};

// ---- hashing ------------------------------------------------------------------------------------

// SuperFastHash: the step of one block of two 16-bit values (two byte pairs in the 8-bit hash, two
// units in the 16-bit one).
inline uint32_t superFastBlock(uint32_t hash, uint32_t first, uint32_t second) {
  hash += first;
  hash ^= (second << 11) ^ (hash << 16);
  return hash + (hash >> 11);
}
// The tail of a single value (a byte in the 8-bit hash, a unit in the 16-bit one).
inline uint32_t superFastSingleTail(uint32_t hash, uint32_t value) {
  hash += value;
  hash ^= hash << 10;
  return hash + (hash >> 1);
}
inline uint32_t superFastFinalMix(uint32_t hash) {
  hash ^= hash << 3;
  hash += hash >> 5;
  hash ^= hash << 4;
  hash += hash >> 17;
  hash ^= hash << 25;
  return hash + (hash >> 6);
}

constexpr uint32_t kMurmurM = 0x5BD1E995U;
constexpr uint32_t kMurmurSeed = 0xEE6B27EBU;

// One MurmurHash64B step: word `k` mixed into lane `h`.
inline uint32_t murmurStep(uint32_t h, uint32_t k) {
  k *= kMurmurM;
  k ^= k >> 24;
  return (h * kMurmurM) ^ (k * kMurmurM);
}

// MurmurHash64B with seed kMurmurSeed over `words` 32-bit words, word(i) giving word i, and
// then, when `hasTail`, the last 1 to 3 bytes as the value `tail` (byte i at bits 8i); `count` is
// the input length the seed is mixed with. Words alternate between the lanes h1 and h2 (an odd
// last word goes into h1); the tail is xored into h2 before one multiplication.
template <typename WordAt>
unsigned long long murmurHash64B(uint32_t count, int words, WordAt word, bool hasTail,
                                 uint32_t tail) {
  uint32_t h1 = kMurmurSeed ^ count;
  uint32_t h2 = 0;
  int i = 0;
  for (; i + 1 < words; i += 2) {
    h1 = murmurStep(h1, word(i));
    h2 = murmurStep(h2, word(i + 1));
  }
  if (i < words) h1 = murmurStep(h1, word(i));
  if (hasTail) h2 = (h2 ^ tail) * kMurmurM;
  h1 ^= h2 >> 18;
  h1 *= kMurmurM;
  h2 ^= h1 >> 22;
  h2 *= kMurmurM;
  h1 ^= h2 >> 17;
  h1 *= kMurmurM;
  h2 ^= h1 >> 19;
  h2 *= kMurmurM;
  return (static_cast<unsigned long long>(h1) << 32) | h2;
}

// Units hashed: exactly `len` (embedded NULs included), or up to the NUL when len < 0.
template <typename CharT>
int hashInputLength(const CharT* s, int len) {
  if (s == nullptr) return 0;
  return len < 0 ? textLength(s) : len;
}

}  // namespace zeb::internal

#endif  // ZEB_STRINGS_INTERNAL_STRING_CORE_H

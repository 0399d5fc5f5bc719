// TAnsiString.cpp: the owning 8-bit string (everything but the text extraction and formatting
// members, which live in TAnsiString_text.cpp).

#include "zeb/strings/TAnsiString.h"

#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <functional>
#include <new>
#include <utility>

#include "zeb/strings/zeb_cstr.h"

namespace {

// ---- small byte helpers -------------------------------------------------------------------------

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isHexDigit(char c) {
  return isDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}
bool isSpaceOrControl(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
char foldUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}
char foldLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}
bool sameByte(char a, char b, bool fold) {
  return fold ? foldUpper(a) == foldUpper(b) : a == b;
}
int signOf(long long r) {
  return (r > 0) - (r < 0);
}
int textLength(const char* s) {
  return s ? static_cast<int>(strlen(s)) : 0;
}
bool isEmptyText(const char* s) {
  return s == nullptr || *s == '\0';
}

// Bytes taken from `s` for an explicit length: at most `len`, never past a NUL (len < 0: strlen).
int boundedLength(const char* s, int len) {
  return len < 0 ? textLength(s) : static_cast<int>(strnlen(s, static_cast<size_t>(len)));
}

// A byte count as a capacity; beyond what an int capacity can describe the allocation fails the
// way the allocator reports exhaustion.
int capacityFor(long long bytes) {
  if (bytes > INT_MAX) throw std::bad_alloc();
  return static_cast<int>(bytes);
}

// True when `p` points into the bytes the string owns (appending or inserting a string's own
// text must not read from a buffer the growth has just freed).
bool pointsInto(const TAnsiString& s, const char* p) {
  const char* begin = s.getBuffer();
  if (begin == nullptr || p == nullptr) return false;
  const std::less<const char*> before;
  return !before(p, begin) && before(p, begin + s.getCapacity());
}

const char* findText(const char* hay, const char* needle, bool fold) {
  return fold ? zeb_strstri(hay, needle) : strstr(hay, needle);
}

// ---- growth -------------------------------------------------------------------------------------

// The growth rule shared by every append and insert: room for n more bytes after `length`
// bytes. When length + n + 1 exceeds the capacity C the buffer becomes C + C/2 + 1 + n bytes,
// content kept. Returns the (possibly new) buffer.
char* makeRoom(TAnsiString& s, int length, int n) {
  const long long capacity = s.getCapacity();
  if (length + static_cast<long long>(n) + 1 > capacity) {
    s.setCapacity(capacityFor(capacity + capacity / 2 + 1 + n), true, false);
  }
  return s.data();
}

// Inserts the n bytes at `text` at `pos` (0..length) of `s`, whose current length is `length`.
void spliceIn(TAnsiString& s, int length, int pos, const char* text, int n) {
  if (pointsInto(s, text)) {
    const TAnsiString copy(text, n);
    spliceIn(s, length, pos, copy.getBuffer(), n);
    return;
  }
  char* b = makeRoom(s, length, n);
  memmove(b + pos + n, b + pos, static_cast<size_t>(length - pos));
  memcpy(b + pos, text, static_cast<size_t>(n));
  b[length + n] = '\0';
}

// ---- numbers ------------------------------------------------------------------------------------

constexpr int kNumberBufferSize = 50;
constexpr const char* kUpperDigits = "0123456789ABCDEF";
constexpr const char* kLowerDigits = "0123456789abcdef";

// Writes '-' (when negative), the digits of `magnitude` in `radix` and a NUL into `out`. Digits
// come least significant first; '0's pad the text (sign counted) to `minDigits` characters; then
// digits and padding are reversed so the zeros sit between the sign and the digits. Returns the
// characters written, NUL not counted.
int writeNumber(char* out, unsigned long long magnitude, bool negative, int minDigits,
                unsigned radix, const char* digits) {
  char* p = out;
  if (negative) *p++ = '-';
  char* const first = p;
  do {
    *p++ = digits[magnitude % radix];
    magnitude /= radix;
  } while (magnitude != 0);
  while (p - out < minDigits) *p++ = '0';
  std::reverse(first, p);
  *p = '\0';
  return static_cast<int>(p - out);
}

// The text of the member formatters goes into the string's own buffer, made at least 50 bytes
// (and large enough for the padding).
char* numberBuffer(TAnsiString& s, int minDigits) {
  const long long size = std::max<long long>(kNumberBufferSize, minDigits + 1LL);
  s.setCapacity(capacityFor(size), false, true);
  return s.data();
}

// Decimal parsing shared by every integer parser. U is the unsigned type of the result's width:
// the value accumulates (and wraps) in it, and a '-' sign negates it modulo 2^bits.
template <typename U>
U parseDecimal(const char* s, int start, int maxDigits) {
  if (s == nullptr) return 0;
  for (int skipped = 0; skipped < start && *s != '\0'; ++skipped) ++s;
  while (isSpaceOrControl(*s)) ++s;
  const bool negative = *s == '-';
  if (*s == '-' || *s == '+') ++s;
  U value = 0;
  for (int taken = 0; isDigit(*s) && (maxDigits < 0 || taken < maxDigits); ++taken, ++s) {
    value = static_cast<U>(value * 10U + static_cast<U>(*s - '0'));
  }
  return negative ? static_cast<U>(0U - value) : value;
}

// Floating-point parsing independent of the process locale: leading spaces and controls, one
// optional sign, then decimal or "0x" hexadecimal notation, "inf" or "nan". No number, or one
// out of the type's range: 0.
template <typename T>
T parseFloating(const char* s) {
  if (s == nullptr) return 0;
  while (isSpaceOrControl(*s)) ++s;
  const bool negative = *s == '-';
  if (*s == '-' || *s == '+') ++s;
  std::chars_format format = std::chars_format::general;
  if (s[0] == '0' && (s[1] == 'x' || s[1] == 'X')) {
    // Only the "0" is a number when no hexadecimal digits follow ("0xg", "0xnan").
    if (!isHexDigit(s[2]) && s[2] != '.') return 0;
    format = std::chars_format::hex;
    s += 2;
  }
  if (*s == '-' || *s == '+') return 0;
  T value = 0;
  if (std::from_chars(s, s + strlen(s), value, format).ec != std::errc()) return 0;
  return negative ? -value : value;
}

// ---- hashing ------------------------------------------------------------------------------------

// A byte read as a signed char, sign-extended to 32 bits.
uint32_t signedByte(const char* p) {
  return static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(*p)));
}
uint32_t signedPair(const char* p) {
  return signedByte(p) + (signedByte(p + 1) << 8);
}

uint32_t loadLittleEndian32(const unsigned char* p) {
  uint32_t word;
  memcpy(&word, p, sizeof word);
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  word = __builtin_bswap32(word);
#endif
  return word;
}

constexpr uint32_t kMurmurM = 0x5BD1E995U;
constexpr uint32_t kMurmurSeed = 0xEE6B27EBU;

uint32_t murmurMix(uint32_t k) {
  k *= kMurmurM;
  k ^= k >> 24;
  return k * kMurmurM;
}

// Bytes hashed: exactly `len` (embedded NULs included), or strlen when len < 0.
int hashInputLength(const char* s, int len) {
  if (s == nullptr) return 0;
  return len < 0 ? textLength(s) : len;
}

}  // namespace

// ---- construction and assignment ----------------------------------------------------------------

TAnsiString::TAnsiString(const char* s, int len) {
  if (isEmptyText(s) || len == 0) return;
  const int n = len < 0 ? textLength(s) : len;
  buffer = new char[static_cast<size_t>(capacityFor(n + 1LL))];
  capacity = n + 1;
  memcpy(buffer, s, static_cast<size_t>(n));
  buffer[n] = '\0';
}

TAnsiString::TAnsiString(int size, tcapacityTag) {
  resetCapacity(size);
}

TAnsiString::TAnsiString(const TAnsiString& other) : TAnsiString(other.buffer) {}

TAnsiString::TAnsiString(TAnsiString&& other) noexcept
    : buffer(std::exchange(other.buffer, nullptr)), capacity(std::exchange(other.capacity, 0)) {}

TAnsiString::~TAnsiString() {
  delete[] buffer;
  capacity = 0;
}

TAnsiString& TAnsiString::operator=(const TAnsiString& other) {
  return setText(other.buffer);
}

TAnsiString& TAnsiString::operator=(TAnsiString&& other) noexcept {
  if (this != &other) {
    delete[] buffer;
    buffer = std::exchange(other.buffer, nullptr);
    capacity = std::exchange(other.capacity, 0);
  }
  return *this;
}

TAnsiString& TAnsiString::operator=(const char* s) {
  return setText(s);
}

// The bytes are copied as strncpy would (stopping at a NUL, zeros up to `len`), with memmove so
// that `s` may point into this string's own buffer.
TAnsiString& TAnsiString::setText(const char* s, int len) {
  if (isEmptyText(s) || len == 0) {
    deleteBuffer();
    return *this;
  }
  const int n = len < 0 ? textLength(s) : len;
  const int copied = boundedLength(s, n);
  char* target = n < capacity ? buffer : new char[static_cast<size_t>(capacityFor(n + 1LL))];
  memmove(target, s, static_cast<size_t>(copied));
  memset(target + copied, 0, static_cast<size_t>(n - copied) + 1);
  if (target != buffer) {
    delete[] buffer;
    buffer = target;
    capacity = n + 1;
  }
  return *this;
}

TAnsiString& TAnsiString::assign(const char* s, int len) {
  return setText(s, len);
}
TAnsiString& TAnsiString::assign(const TAnsiString& other) {
  return setText(other.buffer);
}
TAnsiString& TAnsiString::copy(const TAnsiString& other) {
  return setText(other.buffer);
}

// ---- buffer access ------------------------------------------------------------------------------

int TAnsiString::length() const {
  return textLength(buffer);
}

char* TAnsiString::releasePtr() {
  capacity = 0;
  return std::exchange(buffer, nullptr);
}

void TAnsiString::deleteBuffer() {
  delete[] std::exchange(buffer, nullptr);
  capacity = 0;
}

const TAnsiString& TAnsiString::nullStr() {
  static const TAnsiString empty;
  return empty;
}

// ---- appending ----------------------------------------------------------------------------------

TAnsiString& TAnsiString::append(const char* s, int len) {
  if (s == nullptr) return *this;
  const int n = boundedLength(s, len);
  if (n > 0) {
    const int current = length();
    spliceIn(*this, current, current, s, n);
  }
  return *this;
}

TAnsiString& TAnsiString::cat(const char* s) {
  return append(s);
}
TAnsiString& TAnsiString::ncat(const char* s, int n) {
  return append(s, n);
}
TAnsiString& TAnsiString::append(const TAnsiString& s) {
  return append(s.buffer);
}
TAnsiString& TAnsiString::appendChar(char c) {
  return append(&c, 1);
}
TAnsiString& TAnsiString::operator+=(const char* s) {
  return append(s);
}
TAnsiString& TAnsiString::operator+=(const TAnsiString& s) {
  return append(s.buffer);
}
TAnsiString& TAnsiString::operator+=(char c) {
  return append(&c, 1);
}

TAnsiString TAnsiString::operator+(const char* s) const {
  TAnsiString result(*this);
  result.append(s);
  return result;
}
TAnsiString TAnsiString::operator+(const TAnsiString& s) const {
  return *this + s.buffer;
}
TAnsiString TAnsiString::operator+(char c) const {
  const char text[2] = {c, '\0'};
  return *this + text;
}

TAnsiString& TAnsiString::operator+=(int value) {
  return *this += static_cast<long long>(value);
}
TAnsiString& TAnsiString::operator+=(unsigned int value) {
  return *this += static_cast<unsigned long long>(value);
}
TAnsiString& TAnsiString::operator+=(long long value) {
  char text[kNumberBufferSize];
  return append(text, inttostrS(text, value, 0, false));
}
TAnsiString& TAnsiString::operator+=(unsigned long long value) {
  char text[kNumberBufferSize];
  return append(text, uinttostrS(text, value, 0));
}
TAnsiString TAnsiString::operator+(int value) const {
  return *this + static_cast<long long>(value);
}
TAnsiString TAnsiString::operator+(unsigned int value) const {
  return *this + static_cast<unsigned long long>(value);
}
TAnsiString TAnsiString::operator+(long long value) const {
  char text[kNumberBufferSize];
  inttostrS(text, value, 0, false);
  return *this + text;
}
TAnsiString TAnsiString::operator+(unsigned long long value) const {
  char text[kNumberBufferSize];
  uinttostrS(text, value, 0);
  return *this + text;
}

// ---- numbers ------------------------------------------------------------------------------------

TAnsiString& TAnsiString::fromInt32(int value, int minDigits) {
  return inttostr(value, minDigits);
}
TAnsiString& TAnsiString::fromUInt32(unsigned int value, int minDigits) {
  return uinttostr(value, minDigits);
}
TAnsiString& TAnsiString::fromInt64(long long value, int minDigits) {
  return inttostr(value, minDigits);
}
TAnsiString& TAnsiString::fromUInt64(unsigned long long value, int minDigits) {
  return uinttostr(value, minDigits);
}

TAnsiString& TAnsiString::inttostr(long long value, int minDigits) {
  inttostrS(numberBuffer(*this, minDigits), value, minDigits, false);
  return *this;
}

TAnsiString& TAnsiString::uinttostr(unsigned long long value, int minDigits) {
  uinttostrS(numberBuffer(*this, minDigits), value, minDigits);
  return *this;
}

int TAnsiString::inttostrS(char* out, long long value, int minDigits, bool isUnsigned) {
  if (out == nullptr) return 0;
  const unsigned long long bits = static_cast<unsigned long long>(value);
  const bool negative = !isUnsigned && value < 0;
  return writeNumber(out, negative ? 0ULL - bits : bits, negative, minDigits, 10, kUpperDigits);
}

int TAnsiString::uinttostrS(char* out, unsigned long long value, int minDigits) {
  return inttostrS(out, static_cast<long long>(value), minDigits, true);
}

TAnsiString& TAnsiString::fromInt32ToHex(unsigned int value, int width, bool upper) {
  return fromInt64ToHex(value, width, upper);
}

TAnsiString& TAnsiString::fromInt64ToHex(unsigned long long value, int width, bool upper) {
  writeNumber(numberBuffer(*this, width), value, false, width, 16,
              upper ? kUpperDigits : kLowerDigits);
  return *this;
}

// Built in a new buffer of exactly the needed size, so `bytes` may point into this string.
TAnsiString& TAnsiString::fromHex(const void* bytes, int count, int separator) {
  if (bytes == nullptr || count < 1) return clear();
  const long long separators = separator != 0 ? count - 1 : 0;
  TAnsiString text(capacityFor(2LL * count + separators + 1), tcapacityTag{});
  char* out = text.buffer;
  const unsigned char* in = static_cast<const unsigned char*>(bytes);
  for (int i = 0; i < count; ++i) {
    if (i > 0 && separator != 0) *out++ = static_cast<char>(separator);
    *out++ = kUpperDigits[in[i] >> 4];
    *out++ = kUpperDigits[in[i] & 15];
  }
  *out = '\0';
  return *this = std::move(text);
}

int TAnsiString::toInt32(int start, int maxDigits) const {
  return strtoint(buffer, start, maxDigits);
}
long long TAnsiString::toInt64(int start, int maxDigits) const {
  return strtoint64(buffer, start, maxDigits);
}

int TAnsiString::strtoint(const char* s, int start, int maxDigits) {
  return static_cast<int>(parseDecimal<unsigned int>(s, start, maxDigits));
}
unsigned int TAnsiString::strtouint(const char* s, int start, int maxDigits) {
  return parseDecimal<unsigned int>(s, start, maxDigits);
}
long long TAnsiString::strtoint64(const char* s, int start, int maxDigits) {
  return static_cast<long long>(parseDecimal<unsigned long long>(s, start, maxDigits));
}
unsigned long long TAnsiString::strtouint64(const char* s, int start, int maxDigits) {
  return parseDecimal<unsigned long long>(s, start, maxDigits);
}

float TAnsiString::toFloat() const {
  return parseFloating<float>(buffer);
}
double TAnsiString::toDouble() const {
  return parseFloating<double>(buffer);
}

bool TAnsiString::isNumeric(bool allowSignAndPoint) const {
  return isNumeric(buffer, -1, allowSignAndPoint);
}

// A NUL inside the first `len` bytes is not a digit, so the scan never reads past the text.
bool TAnsiString::isNumeric(const char* s, int len, bool allowSignAndPoint) {
  if (isEmptyText(s) || len == 0) return false;
  for (int i = 0; len < 0 ? s[i] != '\0' : i < len; ++i) {
    const char c = s[i];
    const bool signOrPoint = c == '.' || c == '+' || c == '-';
    if (!isDigit(c) && !(allowSignAndPoint && signOrPoint)) return false;
  }
  return true;
}

unsigned long long TAnsiString::HexToInt() const {
  return hextoint(buffer, 0);
}
unsigned long long TAnsiString::HexToInt(const char* s) {
  return hextoint(s, 0);
}

bool TAnsiString::isHex() const {
  return isNotEmpty() && std::all_of(buffer, buffer + length(), isHexDigit);
}

// ---- search -------------------------------------------------------------------------------------

int TAnsiString::Find(const char* sub, tCaseSensitivity skip) const {
  return posSubStr(sub, static_cast<int>(skip), CaseSensitive);
}

int TAnsiString::posSubStr(const char* sub, int start, tCaseSensitivity cs) const {
  if (isEmpty() || isEmptyText(sub)) return -1;
  const int from = std::max(start, 0);
  if (static_cast<int>(strnlen(buffer, static_cast<size_t>(from))) < from) return -1;
  const char* hit = findText(buffer + from, sub, cs != CaseSensitive);
  return hit ? static_cast<int>(hit - buffer) : -1;
}

int TAnsiString::posSubChar(char c, int start, tCaseSensitivity cs) const {
  if (isEmpty() || c == '\0') return -1;
  const char* p = buffer + strnlen(buffer, static_cast<size_t>(std::max(start, 0)));
  for (; *p != '\0'; ++p) {
    if (sameByte(*p, c, cs != CaseSensitive)) return static_cast<int>(p - buffer);
  }
  return -1;
}

int TAnsiString::find(char c, int start, tCaseSensitivity cs) const {
  return posSubChar(c, start, cs);
}

int TAnsiString::reverseFind(char c, int from, tCaseSensitivity cs) const {
  const int len = length();
  if (len == 0 || c == '\0') return -1;
  for (int i = from < 0 || from > len - 1 ? len - 1 : from; i >= 0; --i) {
    if (sameByte(buffer[i], c, cs == CaseInsensitive)) return i;
  }
  return -1;
}

int TAnsiString::reverseFind(const char* sub, int from, tCaseSensitivity cs) const {
  const int len = length();
  const int subLen = textLength(sub);
  if (len == 0 || subLen == 0 || subLen > len) return -1;
  const int last = from < 0 || from > len - 1 ? len - 1 : from;
  const size_t n = static_cast<size_t>(subLen);
  for (int i = std::min(last, len - subLen); i >= 0; --i) {
    const int diff =
        cs != CaseSensitive ? zeb_strnicmp(buffer + i, sub, n) : memcmp(buffer + i, sub, n);
    if (diff == 0) return i;
  }
  return -1;
}

bool TAnsiString::contain(const char* sub, tCaseSensitivity cs) const {
  return posSubStr(sub, 0, cs) >= 0;
}
bool TAnsiString::contain(char c, tCaseSensitivity cs) const {
  return posSubChar(c, 0, cs) >= 0;
}

int TAnsiString::countOfChar(char c) const {
  if (c == '\0') return 0;
  return static_cast<int>(std::count(buffer, buffer + length(), c));
}

bool TAnsiString::beginWith(const char* prefix, bool ignoreCase) const {
  const char* text = buffer ? buffer : "";
  return ignoreCase ? zeb_beginWithIgnoreCase(text, prefix) : zeb_beginWith(text, prefix);
}

bool TAnsiString::isEndsWith(const char* suffix, bool ignoreCase) const {
  const char* text = buffer ? buffer : "";
  return ignoreCase ? zeb_endWithIgnoreCase(text, suffix) : zeb_endWith(text, suffix);
}

// ---- comparison ---------------------------------------------------------------------------------

int TAnsiString::compare(const char* s, tCaseSensitivity cs) const {
  if (isEmpty()) return isEmptyText(s) ? 0 : -1;
  if (isEmptyText(s)) return 1;
  return signOf(cs != CaseSensitive ? zeb_stricmp_impl(buffer, s) : strcmp(buffer, s));
}

int TAnsiString::compare(const TAnsiString& s, tCaseSensitivity cs) const {
  return compare(s.buffer, cs);
}

int TAnsiString::ncompare(const char* s, int n, tCaseSensitivity cs) const {
  if (n < 1) return 0;
  if (isEmpty()) return isEmptyText(s) ? 0 : -1;
  if (isEmptyText(s)) return 1;
  const size_t limit = static_cast<size_t>(n);
  return signOf(cs != CaseSensitive ? zeb_strnicmp(buffer, s, limit) : strncmp(buffer, s, limit));
}

bool TAnsiString::equal(const char* s, tCaseSensitivity cs) const {
  return compare(s, cs) == 0;
}
bool TAnsiString::equal(const TAnsiString& s, tCaseSensitivity cs) const {
  return compare(s.buffer, cs) == 0;
}
bool TAnsiString::equalIgnoreCase(const char* s) const {
  return equal(s, CaseInsensitive);
}

bool TAnsiString::operator==(char c) const {
  const char text[2] = {c, '\0'};
  return equal(text);
}

// ---- editing ------------------------------------------------------------------------------------

TAnsiString& TAnsiString::insert(const char* s, int pos, int len) {
  if (s == nullptr) return *this;
  const int n = boundedLength(s, len);
  if (n > 0) {
    const int current = length();
    spliceIn(*this, current, std::clamp(pos, 0, current), s, n);
  }
  return *this;
}

TAnsiString& TAnsiString::insert(const TAnsiString& s, int pos) {
  return insert(s.buffer, pos);
}
TAnsiString& TAnsiString::insert(char c, int pos) {
  return insert(&c, pos, 1);
}

TAnsiString& TAnsiString::remove(int pos, int count) {
  const long long len = length();
  if (pos < 0 || count < 1 || pos + static_cast<long long>(count) > len) return *this;
  memmove(buffer + pos, buffer + pos + count, static_cast<size_t>(len - pos - count + 1));
  return *this;
}

TAnsiString& TAnsiString::trunc(int n) {
  if (n < 1) return clear();
  if (isNotEmpty() && static_cast<int>(strnlen(buffer, static_cast<size_t>(n))) == n) {
    buffer[n] = '\0';
  }
  return *this;
}

TAnsiString& TAnsiString::truncRight(int n) {
  if (n < 1) return clear();
  const int len = length();
  if (n < len) memmove(buffer, buffer + len - n, static_cast<size_t>(n) + 1);
  return *this;
}

TAnsiString& TAnsiString::chop(int n) {
  const int len = length();
  if (n < 1 || len == 0) return *this;
  buffer[n >= len ? 0 : len - n] = '\0';
  return *this;
}

TAnsiString& TAnsiString::fill(char c, int n) {
  if (n == 0) return clear();
  if (n < 0) {
    std::fill_n(buffer, length(), c);
    return *this;
  }
  const int size = capacityFor(n + 1LL);
  if (capacity != size) resetCapacity(size);
  memset(buffer, c, static_cast<size_t>(n));
  buffer[n] = '\0';
  return *this;
}

TAnsiString& TAnsiString::repeat(int n) {
  const int len = length();
  if (n < 1 || len == 0) return *this;
  const int size = capacityFor((n + 1LL) * len + 1);
  if (size > capacity) setCapacity(size, true, false);
  for (int copy = 1; copy <= n; ++copy) {
    memcpy(buffer + static_cast<size_t>(copy) * len, buffer, static_cast<size_t>(len));
  }
  buffer[size - 1] = '\0';
  return *this;
}

TAnsiString& TAnsiString::trim(const char* set) {
  return trimRight(set).trimLeft(set);
}

TAnsiString& TAnsiString::trimLeft(const char* set) {
  if (isEmpty()) return *this;
  const size_t skipped = strspn(buffer, set ? set : " ");
  if (skipped > 0) memmove(buffer, buffer + skipped, strlen(buffer + skipped) + 1);
  return *this;
}

TAnsiString& TAnsiString::trimRight(const char* set) {
  const char* removable = set ? set : " ";
  int len = length();
  while (len > 0 && strchr(removable, buffer[len - 1]) != nullptr) --len;
  if (buffer != nullptr) buffer[len] = '\0';
  return *this;
}

TAnsiString& TAnsiString::replace(char from, char to) {
  if (isEmpty() || from == '\0') return *this;
  for (char* p = buffer; *p != '\0'; ++p) {
    if (*p == from) *p = to;
  }
  return *this;
}

// The result is assembled in a separate string (the search never sees replaced text); it goes
// back into this buffer when it fits, otherwise its buffer is taken over.
TAnsiString& TAnsiString::replace(const char* from, const char* to, bool ignoreCase) {
  if (isEmpty() || isEmptyText(from)) return *this;
  const char* hit = findText(buffer, from, ignoreCase);
  if (hit == nullptr) return *this;
  const int fromLen = textLength(from);
  TAnsiString result;
  const char* rest = buffer;
  for (; hit != nullptr; hit = findText(rest, from, ignoreCase)) {
    result.append(rest, static_cast<int>(hit - rest)).append(to);
    rest = hit + fromLen;
  }
  result.append(rest);
  const int resultLen = result.length();
  if (resultLen >= capacity) return *this = std::move(result);
  memcpy(buffer, result.buffer ? result.buffer : "", static_cast<size_t>(resultLen) + 1);
  return *this;
}

TAnsiString& TAnsiString::removeChr(char low, char high) {
  if (buffer == nullptr) return *this;
  const signed char lowest = static_cast<signed char>(low);
  const signed char highest = static_cast<signed char>(high == '\0' ? low : high);
  TAnsiString kept(capacity, tcapacityTag{});
  char* out = kept.buffer;
  for (const char* p = buffer; *p != '\0'; ++p) {
    const signed char c = static_cast<signed char>(*p);
    if (c < lowest || c > highest) *out++ = *p;
  }
  *out = '\0';
  return *this = std::move(kept);
}

TAnsiString& TAnsiString::toLower() {
  if (buffer != nullptr) std::transform(buffer, buffer + length(), buffer, foldLower);
  return *this;
}

TAnsiString& TAnsiString::toUpper() {
  if (buffer != nullptr) std::transform(buffer, buffer + length(), buffer, foldUpper);
  return *this;
}

TAnsiString& TAnsiString::clear() {
  if (buffer != nullptr) buffer[0] = '\0';
  return *this;
}

TAnsiString& TAnsiString::zeroString() {
  if (buffer != nullptr) memset(buffer, 0, static_cast<size_t>(capacity));
  return *this;
}

bool TAnsiString::setCapacity(int n, bool keepContent, bool onlyGrow) {
  if (n <= 0) {
    deleteBuffer();
    return true;
  }
  if ((onlyGrow && capacity > n) || capacity == n) return true;
  char* fresh = new char[static_cast<size_t>(n)];
  fresh[0] = '\0';
  if (keepContent && buffer != nullptr) {
    const int kept = std::min(n, capacity);
    memcpy(fresh, buffer, static_cast<size_t>(kept));
    if (n < capacity) fresh[n - 1] = '\0';
    memset(fresh + kept, 0, static_cast<size_t>(n - kept));
  }
  delete[] buffer;
  buffer = fresh;
  capacity = n;
  return true;
}

bool TAnsiString::resetCapacity(int n) {
  return setCapacity(n, false, false);
}

// ---- extraction ---------------------------------------------------------------------------------

TAnsiString TAnsiString::substring(int start, int count) const {
  const int len = length();
  const int from = std::max(start, 0);
  if (count == 0 || from >= len) return TAnsiString();
  const int available = len - from;
  return TAnsiString(buffer + from, count < 0 ? available : std::min(count, available));
}

TAnsiString TAnsiString::left(int n) const {
  return n < 1 ? TAnsiString() : substring(0, n);
}

TAnsiString TAnsiString::last(int n) const {
  return n < 1 ? TAnsiString() : substring(std::max(length() - n, 0), n);
}

TAnsiString TAnsiString::right(int n) const {
  return last(n);
}

TAnsiString TAnsiString::getNSubStr(int n) const {
  if (isEmpty() || n < 0) return TAnsiString();
  const char* const separators = " \t";
  const char* word = buffer + strspn(buffer, separators);
  for (int index = 0; index < n && *word != '\0'; ++index) {
    word += strcspn(word, separators);
    word += strspn(word, separators);
  }
  return TAnsiString(word, static_cast<int>(strcspn(word, separators)));
}

TAnsiString TAnsiString::getCharRSubStr(int n, char c) const {
  const int wanted = std::max(n, 1);
  int found = 0;
  for (int i = length() - 1; i >= 0; --i) {
    if (buffer[i] == c && ++found == wanted) return TAnsiString(buffer + i + 1);
  }
  return *this;
}

TAnsiString TAnsiString::dup() const {
  return *this;
}

char TAnsiString::getChar(int i) const {
  if (i < 0 || isEmpty()) return '\0';
  const size_t index = static_cast<size_t>(i);
  return strnlen(buffer, index + 1) > index ? buffer[index] : '\0';
}

char TAnsiString::back() const {
  const int len = length();
  return len > 0 ? buffer[len - 1] : '\0';
}

// ---- hashing ------------------------------------------------------------------------------------

// SuperFastHash over bytes read as signed chars; stored hash values depend on that reading.
unsigned int TAnsiString::hashValue(const char* s, int len) {
  const int n = hashInputLength(s, len);
  if (n <= 0) return 0;
  uint32_t hash = static_cast<uint32_t>(n);
  const char* p = s;
  for (int blocks = n >> 2; blocks > 0; --blocks, p += 4) {
    hash += signedPair(p);
    const uint32_t tmp = (signedPair(p + 2) << 11) ^ hash;
    hash = (hash << 16) ^ tmp;
    hash += hash >> 11;
  }
  switch (n & 3) {
    case 3:
      hash += signedPair(p);
      hash ^= hash << 16;
      hash ^= signedByte(p + 2) << 18;
      hash += hash >> 11;
      break;
    case 2:
      hash += signedPair(p);
      hash ^= hash << 11;
      hash += hash >> 17;
      break;
    case 1:
      hash += signedByte(p);
      hash ^= hash << 10;
      hash += hash >> 1;
      break;
  }
  hash ^= hash << 3;
  hash += hash >> 5;
  hash ^= hash << 4;
  hash += hash >> 17;
  hash ^= hash << 25;
  hash += hash >> 6;
  return hash;
}

unsigned int TAnsiString::hashValue() const {
  return hashValue(buffer, -1);
}

// MurmurHash64B: two 32-bit lanes over little-endian words, tail bytes unsigned.
unsigned long long TAnsiString::hashValue64(const char* s, int len) {
  const int n = hashInputLength(s, len);
  if (n <= 0) return 0;
  const unsigned char* p = reinterpret_cast<const unsigned char*>(s);
  uint32_t h1 = kMurmurSeed ^ static_cast<uint32_t>(n);
  uint32_t h2 = 0;
  int remaining = n;
  for (; remaining >= 8; remaining -= 8, p += 8) {
    h1 = (h1 * kMurmurM) ^ murmurMix(loadLittleEndian32(p));
    h2 = (h2 * kMurmurM) ^ murmurMix(loadLittleEndian32(p + 4));
  }
  if (remaining >= 4) {
    h1 = (h1 * kMurmurM) ^ murmurMix(loadLittleEndian32(p));
    remaining -= 4;
    p += 4;
  }
  if (remaining > 0) {
    for (int i = 0; i < remaining; ++i) h2 ^= static_cast<uint32_t>(p[i]) << (8 * i);
    h2 *= kMurmurM;
  }
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

unsigned long long TAnsiString::hashValue64() const {
  return hashValue64(buffer, -1);
}

// ---- C-string helpers ---------------------------------------------------------------------------

int TAnsiString::getSize(const char* s) {
  return s ? textLength(s) + 1 : 0;
}
int TAnsiString::length(const char* s) {
  return textLength(s);
}

char* TAnsiString::dup(const char* s) {
  if (s == nullptr) return nullptr;
  const size_t size = strlen(s) + 1;
  char* copy = new char[size];
  memcpy(copy, s, size);
  return copy;
}

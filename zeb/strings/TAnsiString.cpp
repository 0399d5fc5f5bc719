// TAnsiString.cpp: the owning 8-bit string (everything but the text extraction and formatting
// members, which live in TAnsiString_text.cpp). The algorithms are shared with TWideString in
// internal/string_core.h; what is written here is the 8-bit hash and the forwarding.

#include "zeb/strings/TAnsiString.h"

#include <stdint.h>

#include <utility>

#include "zeb/strings/internal/string_core.h"

namespace core = zeb::internal;
using Buffer = core::StringBuffer<TAnsiString, char>;

// ---- construction and assignment ----------------------------------------------------------------

TAnsiString::TAnsiString(const char* s, int len) {
  Buffer(buffer, capacity).initialize(s, len);
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
  if (this != &other) Buffer(buffer, capacity).adopt(other);
  return *this;
}

TAnsiString& TAnsiString::operator=(const char* s) {
  return setText(s);
}

TAnsiString& TAnsiString::setText(const char* s, int len) {
  Buffer(buffer, capacity).setText(s, len);
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
  return core::textLength(buffer);
}

char* TAnsiString::releasePtr() {
  return Buffer(buffer, capacity).release();
}

void TAnsiString::deleteBuffer() {
  Buffer(buffer, capacity).deleteBuffer();
}

const TAnsiString& TAnsiString::nullStr() {
  static const TAnsiString empty;
  return empty;
}

// ---- appending ----------------------------------------------------------------------------------

TAnsiString& TAnsiString::append(const char* s, int len) {
  Buffer(buffer, capacity).append(s, len);
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
  return core::joined(*this, s);
}
TAnsiString TAnsiString::operator+(const TAnsiString& s) const {
  return core::joined(*this, s.buffer);
}
TAnsiString TAnsiString::operator+(char c) const {
  return core::joined(*this, &c, 1);
}

TAnsiString& TAnsiString::operator+=(int value) {
  return *this += static_cast<long long>(value);
}
TAnsiString& TAnsiString::operator+=(unsigned int value) {
  return *this += static_cast<unsigned long long>(value);
}
TAnsiString& TAnsiString::operator+=(long long value) {
  Buffer(buffer, capacity).appendDecimal(value, false);
  return *this;
}
TAnsiString& TAnsiString::operator+=(unsigned long long value) {
  Buffer(buffer, capacity).appendDecimal(static_cast<long long>(value), true);
  return *this;
}
TAnsiString TAnsiString::operator+(int value) const {
  return *this + static_cast<long long>(value);
}
TAnsiString TAnsiString::operator+(unsigned int value) const {
  return *this + static_cast<unsigned long long>(value);
}
TAnsiString TAnsiString::operator+(long long value) const {
  return core::joinedDecimal<char>(*this, value, false);
}
TAnsiString TAnsiString::operator+(unsigned long long value) const {
  return core::joinedDecimal<char>(*this, static_cast<long long>(value), true);
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
  Buffer(buffer, capacity).setDecimal(value, minDigits, false);
  return *this;
}

TAnsiString& TAnsiString::uinttostr(unsigned long long value, int minDigits) {
  Buffer(buffer, capacity).setDecimal(static_cast<long long>(value), minDigits, true);
  return *this;
}

int TAnsiString::inttostrS(char* out, long long value, int minDigits, bool isUnsigned) {
  return core::writeDecimal(out, value, minDigits, isUnsigned);
}

int TAnsiString::uinttostrS(char* out, unsigned long long value, int minDigits) {
  return core::writeDecimal(out, static_cast<long long>(value), minDigits, true);
}

TAnsiString& TAnsiString::fromInt32ToHex(unsigned int value, int width, bool upper) {
  return fromInt64ToHex(value, width, upper);
}

TAnsiString& TAnsiString::fromInt64ToHex(unsigned long long value, int width, bool upper) {
  Buffer(buffer, capacity).setHex(value, width, upper);
  return *this;
}

TAnsiString& TAnsiString::fromHex(const void* bytes, int count, int separator) {
  Buffer(buffer, capacity).setHexBytes(bytes, count, separator);
  return *this;
}

int TAnsiString::toInt32(int start, int maxDigits) const {
  return strtoint(buffer, start, maxDigits);
}
long long TAnsiString::toInt64(int start, int maxDigits) const {
  return strtoint64(buffer, start, maxDigits);
}

int TAnsiString::strtoint(const char* s, int start, int maxDigits) {
  return static_cast<int>(core::parseDecimal<unsigned int>(s, start, maxDigits));
}
unsigned int TAnsiString::strtouint(const char* s, int start, int maxDigits) {
  return core::parseDecimal<unsigned int>(s, start, maxDigits);
}
long long TAnsiString::strtoint64(const char* s, int start, int maxDigits) {
  return static_cast<long long>(core::parseDecimal<unsigned long long>(s, start, maxDigits));
}
unsigned long long TAnsiString::strtouint64(const char* s, int start, int maxDigits) {
  return core::parseDecimal<unsigned long long>(s, start, maxDigits);
}

float TAnsiString::toFloat() const {
  return core::parseFloating<float>(buffer);
}
double TAnsiString::toDouble() const {
  return core::parseFloating<double>(buffer);
}

bool TAnsiString::isNumeric(bool allowSignAndPoint) const {
  return isNumeric(buffer, -1, allowSignAndPoint);
}
bool TAnsiString::isNumeric(const char* s, int len, bool allowSignAndPoint) {
  return core::isNumericText(s, len, allowSignAndPoint);
}

unsigned long long TAnsiString::HexToInt() const {
  return HexToInt(buffer);
}
unsigned long long TAnsiString::HexToInt(const char* s) {
  return core::hexValue(s);
}

bool TAnsiString::isHex() const {
  return core::isHexText(buffer);
}

// ---- search -------------------------------------------------------------------------------------

int TAnsiString::Find(const char* sub, tCaseSensitivity skip) const {
  return posSubStr(sub, static_cast<int>(skip), CaseSensitive);
}

int TAnsiString::posSubStr(const char* sub, int start, tCaseSensitivity cs) const {
  return core::findSubText(buffer, sub, start, cs != CaseSensitive);
}

int TAnsiString::posSubChar(char c, int start, tCaseSensitivity cs) const {
  return core::findUnit(buffer, c, start, cs != CaseSensitive);
}

int TAnsiString::find(char c, int start, tCaseSensitivity cs) const {
  return posSubChar(c, start, cs);
}

int TAnsiString::reverseFind(char c, int from, tCaseSensitivity cs) const {
  return core::findUnitBackward(buffer, c, from, cs == CaseInsensitive);
}

int TAnsiString::reverseFind(const char* sub, int from, tCaseSensitivity cs) const {
  return core::findSubTextBackward(buffer, sub, from, cs != CaseSensitive);
}

bool TAnsiString::contain(const char* sub, tCaseSensitivity cs) const {
  return posSubStr(sub, 0, cs) >= 0;
}
bool TAnsiString::contain(char c, tCaseSensitivity cs) const {
  return posSubChar(c, 0, cs) >= 0;
}

int TAnsiString::countOfChar(char c) const {
  return core::countUnit(buffer, c);
}

bool TAnsiString::beginWith(const char* prefix, bool ignoreCase) const {
  return core::beginsWith(buffer, prefix, ignoreCase);
}

bool TAnsiString::isEndsWith(const char* suffix, bool ignoreCase) const {
  return core::endsWith(buffer, suffix, ignoreCase);
}

// ---- comparison ---------------------------------------------------------------------------------

int TAnsiString::compare(const char* s, tCaseSensitivity cs) const {
  return core::compareTexts(buffer, s, cs != CaseSensitive);
}
int TAnsiString::compare(const TAnsiString& s, tCaseSensitivity cs) const {
  return compare(s.buffer, cs);
}
int TAnsiString::ncompare(const char* s, int n, tCaseSensitivity cs) const {
  return core::compareTextsUpTo(buffer, s, n, cs != CaseSensitive);
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
  return core::equalsUnit(buffer, c);
}

// ---- editing ------------------------------------------------------------------------------------

TAnsiString& TAnsiString::insert(const char* s, int pos, int len) {
  Buffer(buffer, capacity).insert(s, pos, len);
  return *this;
}
TAnsiString& TAnsiString::insert(const TAnsiString& s, int pos) {
  return insert(s.buffer, pos);
}
TAnsiString& TAnsiString::insert(char c, int pos) {
  return insert(&c, pos, 1);
}

TAnsiString& TAnsiString::remove(int pos, int count) {
  Buffer(buffer, capacity).remove(pos, count);
  return *this;
}

TAnsiString& TAnsiString::trunc(int n) {
  Buffer(buffer, capacity).trunc(n);
  return *this;
}

TAnsiString& TAnsiString::truncRight(int n) {
  Buffer(buffer, capacity).truncRight(n);
  return *this;
}

TAnsiString& TAnsiString::chop(int n) {
  Buffer(buffer, capacity).chop(n);
  return *this;
}

TAnsiString& TAnsiString::fill(char c, int n) {
  Buffer(buffer, capacity).fill(c, n);
  return *this;
}

TAnsiString& TAnsiString::repeat(int n) {
  Buffer(buffer, capacity).repeat(n);
  return *this;
}

TAnsiString& TAnsiString::trim(const char* set) {
  return trimRight(set).trimLeft(set);
}

TAnsiString& TAnsiString::trimLeft(const char* set) {
  Buffer(buffer, capacity).trimLeft(set);
  return *this;
}

TAnsiString& TAnsiString::trimRight(const char* set) {
  Buffer(buffer, capacity).trimRight(set);
  return *this;
}

TAnsiString& TAnsiString::replace(char from, char to) {
  Buffer(buffer, capacity).replace(from, to);
  return *this;
}

TAnsiString& TAnsiString::replace(const char* from, const char* to, bool ignoreCase) {
  Buffer(buffer, capacity).replace(from, to, ignoreCase);
  return *this;
}

TAnsiString& TAnsiString::removeChr(char low, char high) {
  Buffer(buffer, capacity).removeRange(low, high);
  return *this;
}

TAnsiString& TAnsiString::toLower() {
  Buffer(buffer, capacity).toLower();
  return *this;
}

TAnsiString& TAnsiString::toUpper() {
  Buffer(buffer, capacity).toUpper();
  return *this;
}

TAnsiString& TAnsiString::clear() {
  Buffer(buffer, capacity).clear();
  return *this;
}

TAnsiString& TAnsiString::zeroString() {
  Buffer(buffer, capacity).zero();
  return *this;
}

bool TAnsiString::setCapacity(int n, bool keepContent, bool onlyGrow) {
  Buffer(buffer, capacity).setCapacity(n, keepContent, onlyGrow);
  return true;
}

bool TAnsiString::resetCapacity(int n) {
  return setCapacity(n, false, false);
}

// ---- extraction ---------------------------------------------------------------------------------

TAnsiString TAnsiString::substring(int start, int count) const {
  return core::substringOf<TAnsiString>(buffer, start, count);
}
TAnsiString TAnsiString::left(int n) const {
  return core::leftOf<TAnsiString>(buffer, n);
}
TAnsiString TAnsiString::last(int n) const {
  return core::lastOf<TAnsiString>(buffer, n);
}
TAnsiString TAnsiString::right(int n) const {
  return last(n);
}
TAnsiString TAnsiString::getNSubStr(int n) const {
  return core::wordOf<TAnsiString>(buffer, n);
}
TAnsiString TAnsiString::getCharRSubStr(int n, char c) const {
  return core::afterLastUnits<TAnsiString>(buffer, n, c);
}
TAnsiString TAnsiString::dup() const {
  return *this;
}

char TAnsiString::getChar(int i) const {
  return core::unitAt(buffer, i);
}
char TAnsiString::back() const {
  return core::lastUnit(buffer);
}

// ---- hashing ------------------------------------------------------------------------------------

namespace {

// A byte read as a signed char, sign-extended to 32 bits.
uint32_t signedByte(const char* p) {
  return static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(*p)));
}
uint32_t signedPair(const char* p) {
  return signedByte(p) + (signedByte(p + 1) << 8);
}

uint32_t loadLittleEndian32(const unsigned char* p) {
  return p[0] | (uint32_t(p[1]) << 8) | (uint32_t(p[2]) << 16) | (uint32_t(p[3]) << 24);
}

}  // namespace

// SuperFastHash over bytes read as signed chars; stored hash values depend on that reading.
unsigned int TAnsiString::hashValue(const char* s, int len) {
  const int n = core::hashInputLength(s, len);
  if (n <= 0) return 0;
  uint32_t hash = static_cast<uint32_t>(n);
  const char* p = s;
  for (int blocks = n >> 2; blocks > 0; --blocks, p += 4) {
    hash = core::superFastBlock(hash, signedPair(p), signedPair(p + 2));
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
      hash = core::superFastSingleTail(hash, signedByte(p));
      break;
  }
  return core::superFastFinalMix(hash);
}

unsigned int TAnsiString::hashValue() const {
  return hashValue(buffer, -1);
}

// MurmurHash64B: two 32-bit lanes over little-endian words, tail bytes unsigned.
unsigned long long TAnsiString::hashValue64(const char* s, int len) {
  const int n = core::hashInputLength(s, len);
  if (n <= 0) return 0;
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(s);
  const int words = n / 4;
  uint32_t tail = 0;
  for (int i = 0; i < (n & 3); ++i) tail |= static_cast<uint32_t>(bytes[4 * words + i]) << (8 * i);
  return core::murmurHash64B(
      static_cast<uint32_t>(n), words, [bytes](int i) { return loadLittleEndian32(bytes + 4 * i); },
      (n & 3) != 0, tail);
}

unsigned long long TAnsiString::hashValue64() const {
  return hashValue64(buffer, -1);
}

// ---- C-string helpers ---------------------------------------------------------------------------

int TAnsiString::getSize(const char* s) {
  return s ? core::textLength(s) + 1 : 0;
}
int TAnsiString::length(const char* s) {
  return core::textLength(s);
}
char* TAnsiString::dup(const char* s) {
  return core::duplicateText(s);
}

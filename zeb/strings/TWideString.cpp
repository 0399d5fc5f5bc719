// TWideString.cpp: the owning 16-bit string (everything but the text extraction and formatting
// members, which live in TWideString_text.cpp, the path members of TWideString_path.cpp and the
// conversions of TWideString_convert.cpp). The algorithms are shared with TAnsiString in
// internal/string_core.h; what is written here is the 16-bit hash, the mixed-width members and
// the forwarding.

#include "zeb/strings/TWideString.h"

#include <stdint.h>

#include <utility>

#include "zeb/strings/internal/string_core.h"

namespace core = zeb::internal;
using Buffer = core::StringBuffer<TWideString, zwchar_t>;

namespace {

// The first step of every mixed-width member: 8-bit text in the ANSI code page (at most `len`
// bytes, stopping at a NUL; len < 0: all) as a temporary 16-bit string.
TWideString convertedAnsi(const char* s, int len = -1) {
  if (s == nullptr || len < 0) return TWideString(s, MIB_ANSI);
  return TWideString(TAnsiString(s, core::lengthUpTo(s, len)), MIB_ANSI);
}

}  // namespace

// ---- construction and assignment ----------------------------------------------------------------

TWideString::TWideString(const zwchar_t* s, int len) {
  Buffer(buffer, capacity).initialize(s, len);
}

TWideString::TWideString(int size, tcapacityTag) {
  resetCapacity(size);
}

TWideString::TWideString(const TWideString& other) : TWideString(other.buffer) {}

TWideString::TWideString(TWideString&& other) noexcept
    : buffer(std::exchange(other.buffer, nullptr)), capacity(std::exchange(other.capacity, 0)) {}

TWideString::~TWideString() {
  delete[] buffer;
  capacity = 0;
}

TWideString& TWideString::operator=(const TWideString& other) {
  return setText(other.buffer);
}

TWideString& TWideString::operator=(TWideString&& other) noexcept {
  if (this != &other) Buffer(buffer, capacity).adopt(other);
  return *this;
}

TWideString& TWideString::operator=(const zwchar_t* s) {
  return setText(s);
}

TWideString& TWideString::setText(const zwchar_t* s, int len) {
  Buffer(buffer, capacity).setText(s, len);
  return *this;
}

TWideString& TWideString::assign(const zwchar_t* s, int len) {
  return setText(s, len);
}
TWideString& TWideString::assign(const TWideString& other) {
  return setText(other.buffer);
}
TWideString& TWideString::copy(const TWideString& other) {
  return setText(other.buffer);
}
TWideString& TWideString::ncopy(const zwchar_t* s, int n) {
  return setText(s, n);
}
TWideString& TWideString::ncopy(const TWideString& s, int n) {
  return setText(s.buffer, n);
}

// ---- buffer access ------------------------------------------------------------------------------

int TWideString::length() const {
  return core::textLength(buffer);
}

zwchar_t* TWideString::releasePtr() {
  return Buffer(buffer, capacity).release();
}

void TWideString::deleteBuffer() {
  Buffer(buffer, capacity).deleteBuffer();
}

const TWideString& TWideString::nullStr() {
  static const TWideString empty;
  return empty;
}

// ---- appending ----------------------------------------------------------------------------------

TWideString& TWideString::append(const zwchar_t* s, int len) {
  Buffer(buffer, capacity).append(s, len);
  return *this;
}

TWideString& TWideString::cat(const zwchar_t* s) {
  return append(s);
}
TWideString& TWideString::ncat(const zwchar_t* s, int n) {
  return append(s, n);
}
TWideString& TWideString::append(const TWideString& s) {
  return append(s.buffer);
}
TWideString& TWideString::appendChar(zwchar_t c) {
  return append(&c, 1);
}
TWideString& TWideString::operator+=(const zwchar_t* s) {
  return append(s);
}
TWideString& TWideString::operator+=(const TWideString& s) {
  return append(s.buffer);
}
TWideString& TWideString::operator+=(zwchar_t c) {
  return append(&c, 1);
}

TWideString TWideString::operator+(const zwchar_t* s) const {
  return core::joined(*this, s);
}
TWideString TWideString::operator+(const TWideString& s) const {
  return core::joined(*this, s.buffer);
}
TWideString TWideString::operator+(zwchar_t c) const {
  return core::joined(*this, &c, 1);
}

TWideString& TWideString::operator+=(int value) {
  return *this += static_cast<long long>(value);
}
TWideString& TWideString::operator+=(unsigned int value) {
  return *this += static_cast<unsigned long long>(value);
}
TWideString& TWideString::operator+=(long long value) {
  Buffer(buffer, capacity).appendDecimal(value, false);
  return *this;
}
TWideString& TWideString::operator+=(unsigned long long value) {
  Buffer(buffer, capacity).appendDecimal(static_cast<long long>(value), true);
  return *this;
}
TWideString TWideString::operator+(int value) const {
  return *this + static_cast<long long>(value);
}
TWideString TWideString::operator+(unsigned int value) const {
  return *this + static_cast<unsigned long long>(value);
}
TWideString TWideString::operator+(long long value) const {
  return core::joinedDecimal<zwchar_t>(*this, value, false);
}
TWideString TWideString::operator+(unsigned long long value) const {
  return core::joinedDecimal<zwchar_t>(*this, static_cast<long long>(value), true);
}

// ---- mixed width: 8-bit ANSI text converted first -----------------------------------------------

TWideString& TWideString::operator=(const char* s) {
  return setText(convertedAnsi(s).buffer);
}
TWideString& TWideString::append(const char* s, int len) {
  return append(convertedAnsi(s, len));
}
TWideString& TWideString::operator+=(const char* s) {
  return append(s);
}
TWideString& TWideString::operator+=(char c) {
  return append(&c, 1);
}
TWideString& TWideString::operator+=(const TAnsiString& s) {
  return append(s.p());
}
TWideString TWideString::operator+(const TAnsiString& s) const {
  return *this + convertedAnsi(s.p());
}
TWideString TWideString::operator+(char c) const {
  return *this + convertedAnsi(&c, 1);
}
TWideString& TWideString::insert(const char* s, int pos, int len) {
  return insert(convertedAnsi(s, len), pos);
}
bool TWideString::contain(const char* sub, tCaseSensitivity cs) const {
  return contain(convertedAnsi(sub).buffer, cs);
}
bool TWideString::beginWith(const char* prefix, bool ignoreCase) const {
  return beginWith(convertedAnsi(prefix).buffer, ignoreCase);
}
bool TWideString::isEndsWith(const char* suffix, bool ignoreCase) const {
  return isEndsWith(convertedAnsi(suffix).buffer, ignoreCase);
}
int TWideString::compare(const char* s, tCaseSensitivity cs) const {
  return compare(convertedAnsi(s).buffer, cs);
}
int TWideString::ncompare(const char* s, int n, tCaseSensitivity cs) const {
  return ncompare(convertedAnsi(s).buffer, n, cs);
}
bool TWideString::equalIgnoreCase(const char* s) const {
  return equalIgnoreCase(convertedAnsi(s).buffer);
}
bool TWideString::operator==(const char* s) const {
  return equal(convertedAnsi(s).buffer);
}
bool TWideString::operator==(char c) const {
  return equal(convertedAnsi(&c, 1).buffer);
}

// ---- numbers ------------------------------------------------------------------------------------

TWideString& TWideString::fromInt32(int value, int minDigits) {
  return inttostr(value, minDigits);
}
TWideString& TWideString::fromUInt32(unsigned int value, int minDigits) {
  return uinttostr(value, minDigits);
}
TWideString& TWideString::fromInt64(long long value, int minDigits) {
  return inttostr(value, minDigits);
}
TWideString& TWideString::fromUInt64(unsigned long long value, int minDigits) {
  return uinttostr(value, minDigits);
}

TWideString& TWideString::inttostr(long long value, int minDigits) {
  Buffer(buffer, capacity).setDecimal(value, minDigits, false);
  return *this;
}

TWideString& TWideString::uinttostr(unsigned long long value, int minDigits) {
  Buffer(buffer, capacity).setDecimal(static_cast<long long>(value), minDigits, true);
  return *this;
}

int TWideString::inttostrs(zwchar_t* out, long long value, int minDigits, bool isUnsigned) {
  return core::writeDecimal(out, value, minDigits, isUnsigned);
}

int TWideString::uinttostrs(zwchar_t* out, unsigned long long value, int minDigits) {
  return core::writeDecimal(out, static_cast<long long>(value), minDigits, true);
}

TWideString& TWideString::fromInt32ToHex(unsigned int value, int width, bool upper) {
  return fromInt64ToHex(value, width, upper);
}

TWideString& TWideString::fromInt64ToHex(unsigned long long value, int width, bool upper) {
  Buffer(buffer, capacity).setHex(value, width, upper);
  return *this;
}

TWideString& TWideString::fromHex(const void* bytes, int count, int separator) {
  Buffer(buffer, capacity).setHexBytes(bytes, count, separator);
  return *this;
}

int TWideString::toInt32(int start, int maxDigits) const {
  return strtoint(buffer, start, maxDigits);
}
long long TWideString::toInt64(int start, int maxDigits) const {
  return strtoint64(buffer, start, maxDigits);
}

int TWideString::strtoint(const zwchar_t* s, int start, int maxDigits) {
  return static_cast<int>(core::parseDecimal<unsigned int>(s, start, maxDigits));
}
unsigned int TWideString::strtouint(const zwchar_t* s, int start, int maxDigits) {
  return core::parseDecimal<unsigned int>(s, start, maxDigits);
}
long long TWideString::strtoint64(const zwchar_t* s, int start, int maxDigits) {
  return static_cast<long long>(core::parseDecimal<unsigned long long>(s, start, maxDigits));
}
unsigned long long TWideString::strtouint64(const zwchar_t* s, int start, int maxDigits) {
  return core::parseDecimal<unsigned long long>(s, start, maxDigits);
}

float TWideString::toFloat() const {
  return core::parseFloating<float>(buffer);
}
double TWideString::toDouble() const {
  return core::parseFloating<double>(buffer);
}

bool TWideString::isNumeric(bool allowSignAndPoint) const {
  return isNumeric(buffer, -1, allowSignAndPoint);
}
bool TWideString::isNumeric(const zwchar_t* s, int len, bool allowSignAndPoint) {
  return core::isNumericText(s, len, allowSignAndPoint);
}

unsigned long long TWideString::HexToInt() const {
  return HexToInt(buffer);
}
unsigned long long TWideString::HexToInt(const zwchar_t* s) {
  return core::hexValue(s);
}

bool TWideString::isHex() const {
  return core::isHexText(buffer);
}

// ---- search -------------------------------------------------------------------------------------

int TWideString::Find(const zwchar_t* sub, tCaseSensitivity skip) const {
  return posSubStr(sub, static_cast<int>(skip), CaseSensitive);
}

int TWideString::posSubStr(const zwchar_t* sub, int start, tCaseSensitivity cs) const {
  return core::findSubText(buffer, sub, start, cs != CaseSensitive);
}

int TWideString::posSubChar(zwchar_t c, int start, tCaseSensitivity cs) const {
  return core::findUnit(buffer, c, start, cs != CaseSensitive);
}

int TWideString::find(zwchar_t c, int start, tCaseSensitivity cs) const {
  return posSubChar(c, start, cs);
}

int TWideString::reverseFind(zwchar_t c, int from, tCaseSensitivity cs) const {
  return core::findUnitBackward(buffer, c, from, cs == CaseInsensitive);
}

int TWideString::reverseFind(const zwchar_t* sub, int from, tCaseSensitivity cs) const {
  return core::findSubTextBackward(buffer, sub, from, cs != CaseSensitive);
}

bool TWideString::contain(const zwchar_t* sub, tCaseSensitivity cs) const {
  return posSubStr(sub, 0, cs) >= 0;
}
bool TWideString::contain(zwchar_t c, tCaseSensitivity cs) const {
  return posSubChar(c, 0, cs) >= 0;
}

int TWideString::countOfChar(zwchar_t c) const {
  return core::countUnit(buffer, c);
}

bool TWideString::beginWith(const zwchar_t* prefix, bool ignoreCase) const {
  return core::beginsWith(buffer, prefix, ignoreCase);
}

bool TWideString::isEndsWith(const zwchar_t* suffix, bool ignoreCase) const {
  return core::endsWith(buffer, suffix, ignoreCase);
}

// ---- comparison ---------------------------------------------------------------------------------

int TWideString::compare(const zwchar_t* s, tCaseSensitivity cs) const {
  return core::compareTexts(buffer, s, cs != CaseSensitive);
}
int TWideString::compare(const TWideString& s, tCaseSensitivity cs) const {
  return compare(s.buffer, cs);
}
int TWideString::ncompare(const zwchar_t* s, int n, tCaseSensitivity cs) const {
  return core::compareTextsUpTo(buffer, s, n, cs != CaseSensitive);
}

bool TWideString::equal(const zwchar_t* s, tCaseSensitivity cs) const {
  return compare(s, cs) == 0;
}
bool TWideString::equal(const TWideString& s, tCaseSensitivity cs) const {
  return compare(s.buffer, cs) == 0;
}
bool TWideString::equalIgnoreCase(const zwchar_t* s) const {
  return equal(s, CaseInsensitive);
}

bool TWideString::operator==(zwchar_t c) const {
  return core::equalsUnit(buffer, c);
}

// ---- editing ------------------------------------------------------------------------------------

TWideString& TWideString::insert(const zwchar_t* s, int pos, int len) {
  Buffer(buffer, capacity).insert(s, pos, len);
  return *this;
}
TWideString& TWideString::insert(const TWideString& s, int pos) {
  return insert(s.buffer, pos);
}
TWideString& TWideString::insert(zwchar_t c, int pos) {
  return insert(&c, pos, 1);
}

TWideString& TWideString::remove(int pos, int count) {
  Buffer(buffer, capacity).remove(pos, count);
  return *this;
}

TWideString& TWideString::trunc(int n) {
  Buffer(buffer, capacity).trunc(n);
  return *this;
}

TWideString& TWideString::truncRight(int n) {
  Buffer(buffer, capacity).truncRight(n);
  return *this;
}

TWideString& TWideString::chop(int n) {
  Buffer(buffer, capacity).chop(n);
  return *this;
}

TWideString& TWideString::removeEndedCharIf(zwchar_t c) {
  Buffer(buffer, capacity).removeLastIf(c);
  return *this;
}

TWideString& TWideString::fill(zwchar_t c, int n) {
  Buffer(buffer, capacity).fill(c, n);
  return *this;
}

TWideString& TWideString::repeatContent(int n) {
  Buffer(buffer, capacity).repeat(n);
  return *this;
}

TWideString& TWideString::reduplicate(int n) {
  return n < 2 ? *this : repeatContent(n - 1);
}

TWideString& TWideString::trim(const char* set) {
  return trimRight(set).trimLeft(set);
}

TWideString& TWideString::trimLeft(const char* set) {
  Buffer(buffer, capacity).trimLeft(set);
  return *this;
}

TWideString& TWideString::trimRight(const char* set) {
  Buffer(buffer, capacity).trimRight(set);
  return *this;
}

TWideString& TWideString::replace(zwchar_t from, zwchar_t to) {
  Buffer(buffer, capacity).replace(from, to);
  return *this;
}

TWideString& TWideString::replace(const zwchar_t* from, const zwchar_t* to, bool ignoreCase) {
  Buffer(buffer, capacity).replace(from, to, ignoreCase);
  return *this;
}

TWideString& TWideString::removeChr(zwchar_t low, zwchar_t high) {
  Buffer(buffer, capacity).removeRange(low, high);
  return *this;
}

TWideString& TWideString::toLower() {
  Buffer(buffer, capacity).toLower();
  return *this;
}

TWideString& TWideString::toUpper() {
  Buffer(buffer, capacity).toUpper();
  return *this;
}

TWideString& TWideString::clear() {
  Buffer(buffer, capacity).clear();
  return *this;
}

TWideString& TWideString::zeroString() {
  Buffer(buffer, capacity).zero();
  return *this;
}

bool TWideString::setCapacity(int n, bool keepContent, bool onlyGrow) {
  Buffer(buffer, capacity).setCapacity(n, keepContent, onlyGrow);
  return true;
}

bool TWideString::resetCapacity(int n) {
  return setCapacity(n, false, false);
}

// ---- extraction ---------------------------------------------------------------------------------

TWideString TWideString::substring(int start, int count) const {
  return core::substringOf<TWideString>(buffer, start, count);
}
TWideString TWideString::left(int n) const {
  return core::leftOf<TWideString>(buffer, n);
}
TWideString TWideString::last(int n) const {
  return core::lastOf<TWideString>(buffer, n);
}
TWideString TWideString::right(int n) const {
  return last(n);
}
TWideString TWideString::getNSubStr(int n) const {
  return core::wordOf<TWideString>(buffer, n);
}
TWideString TWideString::getCharRSubStr(int n, zwchar_t c) const {
  return core::afterLastUnits<TWideString>(buffer, n, c);
}
TWideString TWideString::dup() const {
  return *this;
}

zwchar_t TWideString::getChar(int i) const {
  return core::unitAt(buffer, i);
}
zwchar_t TWideString::back() const {
  return core::lastUnit(buffer);
}

// ---- hashing ------------------------------------------------------------------------------------

// SuperFastHash over units read unsigned: a block is a pair of units, a single unit left over
// takes the one-value tail.
unsigned int TWideString::hashValue(const zwchar_t* s, int len) {
  const int n = core::hashInputLength(s, len);
  if (n <= 0) return 0;
  uint32_t hash = static_cast<uint32_t>(n);
  const size_t pairs = static_cast<size_t>(n) / 2;
  for (size_t i = 0; i < pairs; ++i) {
    hash = core::superFastBlock(hash, core::unitValue(s[2 * i]), core::unitValue(s[2 * i + 1]));
  }
  if (n & 1) hash = core::superFastSingleTail(hash, core::unitValue(s[n - 1]));
  return core::superFastFinalMix(hash);
}

unsigned int TWideString::hashValue() const {
  return hashValue(buffer, -1);
}

// MurmurHash64B over the units as little-endian words of two units; a single unit left over is
// the tail: its low byte, then its high byte << 8.
unsigned long long TWideString::hashValue64(const zwchar_t* s, int len) {
  const int n = core::hashInputLength(s, len);
  if (n <= 0) return 0;
  return core::murmurHash64B(
      static_cast<uint32_t>(n), n / 2,
      [s](int i) { return core::unitValue(s[2 * i]) | (core::unitValue(s[2 * i + 1]) << 16); },
      (n & 1) != 0, core::unitValue(s[n - 1]));
}

unsigned long long TWideString::hashValue64() const {
  return hashValue64(buffer, -1);
}

// ---- C-string helpers ---------------------------------------------------------------------------

int TWideString::getSize(const zwchar_t* s) {
  return s ? core::textLength(s) + 1 : 0;
}
int TWideString::length(const zwchar_t* s) {
  return core::textLength(s);
}
zwchar_t* TWideString::dup(const zwchar_t* s) {
  return core::duplicateText(s);
}

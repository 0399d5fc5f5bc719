// tbytesdata.cpp: the growable byte block. Every allocation goes through moveToNewBlock and every
// append through append(const void*, int, bool), so the growth rules live in one place each.
#include "zeb/data/tbytesdata.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "zeb/data/internal/little_endian.h"

namespace {

unsigned char* allocateBlock(int n, bool zeroFill) {
  const size_t bytes = static_cast<size_t>(n);
  return static_cast<unsigned char*>(zeroFill ? std::calloc(bytes, 1) : std::malloc(bytes));
}

// Copies n bytes (n >= 1) from src to dst, or writes n zeros for a null src. The ranges may
// overlap when src points into the destination's own block.
void copyOrZero(unsigned char* dst, const void* src, int n) {
  if (src != nullptr) {
    std::memmove(dst, src, static_cast<size_t>(n));
  } else {
    std::memset(dst, 0, static_cast<size_t>(n));
  }
}

// Capacity for a growing buffer that needs `needed` bytes (1 <= needed <= INT_MAX).
int grownCapacity(long long needed, bool doubleIt) {
  return static_cast<int>(doubleIt ? std::min<long long>(2 * needed, INT_MAX) : needed);
}

// Bytes read by the integer readers: the widest of 8, 4, 2, 1 within min(size, width).
int prefixLength(int size, int width) {
  const int available = std::min(size, width);
  if (available >= 8) return 8;
  if (available >= 4) return 4;
  if (available >= 2) return 2;
  return std::max(available, 0);
}

// The searches below try the candidate starts first..stop-1 of a haystack that holds at least
// (stop - 1) + m bytes, in order, and return the first where the m needle bytes (m >= 1) match,
// or null.

// Bucket of a byte pair in the shift table of findByPairs.
unsigned pairBucket(const unsigned char* pairEnd) {
  return ((static_cast<unsigned>(pairEnd[-1]) << 3) ^ pairEnd[0]) & 0xFF;
}

// Horspool on byte pairs (m >= 2): the window moves by the distance from the needle's end to the
// last earlier pair of the needle in the same bucket as the window's last two bytes (at most
// m - 1, capped at 255; collisions only shorten moves). A bucket marked 0 holds the needle's final
// pair: only then is the window compared. Pairs tell far more positions apart than single bytes
// on text over a small alphabet. No move skips a match, so the first match is the one found.
const unsigned char* findByPairs(const unsigned char* candidate, const unsigned char* stop,
                                 const unsigned char* needle, int m) {
  const int maxShift = std::min(m - 1, 255);
  unsigned char shift[256];
  std::memset(shift, maxShift, sizeof shift);
  for (int j = 1; j < m - 1; ++j) {
    shift[pairBucket(needle + j)] = static_cast<unsigned char>(std::min(m - 1 - j, maxShift));
  }
  const unsigned finalBucket = pairBucket(needle + m - 1);
  const int shiftAfterMismatch = shift[finalBucket];
  shift[finalBucket] = 0;
  while (candidate < stop) {
    int move = shift[pairBucket(candidate + m - 1)];
    if (move == 0) {
      if (std::memcmp(candidate, needle, static_cast<size_t>(m)) == 0) return candidate;
      move = shiftAfterMismatch;
    }
    candidate += move;
  }
  return nullptr;
}

// memchr for the needle's first byte, then a full comparison: fast while that byte is rare in the
// haystack. Once it proves frequent (kDenseStarts false starts, on average closer than kDenseGap
// bytes apart) a longer needle is left to findByPairs, whose moves do not depend on that byte.
const unsigned char* findNeedle(const unsigned char* candidate, const unsigned char* stop,
                                const unsigned char* needle, int m) {
  constexpr ptrdiff_t kDenseStarts = 16;
  constexpr ptrdiff_t kDenseGap = 32;
  const unsigned char* const begin = candidate;
  ptrdiff_t falseStarts = 0;
  while (candidate < stop) {
    if (m > 1 && falseStarts >= kDenseStarts && candidate - begin < kDenseGap * falseStarts) {
      return findByPairs(candidate, stop, needle, m);
    }
    candidate = static_cast<const unsigned char*>(
        std::memchr(candidate, needle[0], static_cast<size_t>(stop - candidate)));
    if (candidate == nullptr) return nullptr;
    if (std::memcmp(candidate, needle, static_cast<size_t>(m)) == 0) return candidate;
    ++candidate;
    ++falseStarts;
  }
  return nullptr;
}

}  // namespace

// ---- construction and ownership ------------------------------------------------------------

tbytesdata::tbytesdata(int capacity, bool zeroFill) {
  createNewData(capacity, zeroFill);
}

tbytesdata::tbytesdata(const void* src, int n) {
  assignExact(src, n);
}

tbytesdata::tbytesdata(const TAnsiString& s) {
  assignExact(s.p(), s.length());
}

tbytesdata::tbytesdata(const tbytesdata& other) {
  assignExact(other.m_data, other.m_size);
}

tbytesdata::tbytesdata(tbytesdata&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)),
      m_capacity(std::exchange(other.m_capacity, 0)),
      m_size(std::exchange(other.m_size, 0)) {}

tbytesdata::~tbytesdata() {
  std::free(m_data);
}

tbytesdata& tbytesdata::operator=(const tbytesdata& other) {
  return assign(other);
}

tbytesdata& tbytesdata::assign(const tbytesdata& other) {
  if (&other != this) assignExact(other.m_data, other.m_size);
  return *this;
}

tbytesdata& tbytesdata::operator=(tbytesdata&& other) noexcept {
  if (&other != this) {
    std::free(m_data);
    m_data = std::exchange(other.m_data, nullptr);
    m_capacity = std::exchange(other.m_capacity, 0);
    m_size = std::exchange(other.m_size, 0);
  }
  return *this;
}

const tbytesdata& tbytesdata::takePtr(const void* block, int n) {
  if (block != m_data) std::free(m_data);
  m_data = static_cast<unsigned char*>(const_cast<void*>(block));
  m_capacity = m_size = (block != nullptr && n > 0) ? n : 0;
  return *this;
}

unsigned char* tbytesdata::releasePtr() {
  m_capacity = m_size = 0;
  return std::exchange(m_data, nullptr);
}

tbytesdata& tbytesdata::setData(const void* src, int n) {
  if (n < 1) return *this;
  m_size = 0;
  return append(src, n, true);
}

tbytesdata& tbytesdata::resetCapacity(int n, bool zeroFill) {
  if (n < 1) return *this;
  m_size = 0;
  createNewData(n, zeroFill);
  return *this;
}

void tbytesdata::createNewData(int n, bool zeroFill) {
  unsigned char* oldBlock = nullptr;
  if (n >= 1 && moveToNewBlock(n, 0, zeroFill, oldBlock)) std::free(oldBlock);
}

bool tbytesdata::moveToNewBlock(int newCapacity, int keep, bool zeroFill,
                                unsigned char*& oldBlock) {
  unsigned char* block = allocateBlock(newCapacity, zeroFill);
  if (block == nullptr) return false;
  if (keep > 0) std::memcpy(block, m_data, static_cast<size_t>(keep));
  oldBlock = std::exchange(m_data, block);
  m_capacity = newCapacity;
  return true;
}

void tbytesdata::assignExact(const void* src, int n) {
  m_size = 0;
  if (n < 1) return;
  if (m_capacity < n) createNewData(n, false);
  if (m_capacity < n) return;
  copyOrZero(m_data, src, n);
  m_size = n;
}

// ---- access ----------------------------------------------------------------------------------

tbytesdata& tbytesdata::clearData(bool freeMemory) {
  m_size = 0;
  if (freeMemory && m_data != nullptr) {
    std::free(std::exchange(m_data, nullptr));
    m_capacity = 0;
  }
  return *this;
}

tbytesdata& tbytesdata::clear(bool freeMemory) {
  return clearData(freeMemory);
}

// ---- growth and appending --------------------------------------------------------------------

tbytesdata& tbytesdata::resize(int n) {
  if (ensureSize(n, true, false)) m_size = n;
  return *this;
}

bool tbytesdata::ensureSize(int n, bool keepData, bool doubleIt) {
  if (n < 1) return false;
  unsigned char* oldBlock = nullptr;
  if (m_capacity < n &&
      moveToNewBlock(grownCapacity(n, doubleIt), keepData ? m_size : 0, false, oldBlock)) {
    std::free(oldBlock);
  }
  return m_capacity >= n;
}

tbytesdata& tbytesdata::append(const void* src, int n, bool doubleIt) {
  const long long needed = static_cast<long long>(m_size) + n;
  if (n < 1 || needed > INT_MAX) return *this;
  // When src lies in the current block, that block must outlive the copy below.
  unsigned char* oldBlock = nullptr;
  if (m_capacity < needed &&
      !moveToNewBlock(grownCapacity(needed, doubleIt), m_size, false, oldBlock)) {
    return *this;
  }
  copyOrZero(m_data + m_size, src, n);
  m_size += n;
  std::free(oldBlock);
  return *this;
}

tbytesdata& tbytesdata::appendLittleEndian(unsigned long long value, int width) {
  unsigned char bytes[8];
  zeb::internal::storeLittleEndian(bytes, value, width);
  return append(bytes, width, true);
}

tbytesdata& tbytesdata::append(unsigned char byte) {
  return append(&byte, 1, true);
}
tbytesdata& tbytesdata::appendUInt16(unsigned short value) {
  return appendLittleEndian(value, 2);
}
tbytesdata& tbytesdata::appendInt16(short value) {
  return appendLittleEndian(static_cast<unsigned short>(value), 2);
}
tbytesdata& tbytesdata::appendUInt32(unsigned int value) {
  return appendLittleEndian(value, 4);
}
tbytesdata& tbytesdata::appendInt32(int value) {
  return appendLittleEndian(static_cast<unsigned int>(value), 4);
}
tbytesdata& tbytesdata::appendUInt64(unsigned long long value) {
  return appendLittleEndian(value, 8);
}
tbytesdata& tbytesdata::appendInt64(long long value) {
  return appendLittleEndian(static_cast<unsigned long long>(value), 8);
}

tbytesdata& tbytesdata::append(const tbytesdata& other, bool doubleIt) {
  return append(other.m_data, other.m_size, doubleIt);
}

tbytesdata& tbytesdata::append(const TAnsiString& s) {
  return append(s.p(), s.length(), true);
}

tbytesdata& tbytesdata::operator+=(const tbytesdata& other) {
  return append(other, true);
}

tbytesdata& tbytesdata::operator+=(const TAnsiString& s) {
  return append(s);
}

tbytesdata tbytesdata::operator+(const tbytesdata& other) const {
  const long long total = static_cast<long long>(m_size) + other.m_size;
  tbytesdata result(static_cast<int>(std::min<long long>(total, INT_MAX)), false);
  result.append(*this, false);
  result.append(other, false);
  return result;
}

// ---- integers read back ----------------------------------------------------------------------

unsigned long long tbytesdata::readLittleEndian(int width) const {
  return zeb::internal::loadLittleEndian(m_data, prefixLength(m_size, width));
}

unsigned long long tbytesdata::asUInt64() const {
  return readLittleEndian(8);
}
long long tbytesdata::asInt64() const {
  return static_cast<long long>(asUInt64());
}
unsigned int tbytesdata::asUInt32() const {
  return static_cast<unsigned int>(readLittleEndian(4));
}
int tbytesdata::asInt32() const {
  return static_cast<int>(asUInt32());
}
unsigned short tbytesdata::asUInt16() const {
  return static_cast<unsigned short>(readLittleEndian(2));
}
short tbytesdata::asInt16() const {
  return static_cast<short>(asUInt16());
}

// ---- conversion to text ----------------------------------------------------------------------

TAnsiString tbytesdata::asString() const {
  return TAnsiString(reinterpret_cast<const char*>(m_data), m_size);
}

TWideString tbytesdata::asStringWide() const {
  const int units = (m_size + 1) / 2;
  TWideString text(units + 1, tcapacityTag{});
  zwchar_t* out = text.data();
  std::memset(out, 0, sizeof(zwchar_t) * static_cast<size_t>(units + 1));
  if (m_size > 0) std::memcpy(out, m_data, static_cast<size_t>(m_size));
  return text;
}

// ---- search, cut and compare -----------------------------------------------------------------

int tbytesdata::findData(const tbytesdata& sub, int start) const {
  const int m = sub.m_size;
  const long long from = std::max(start, 0);
  // Candidates from..size-m-1: one short of the alignment that ends at the buffer's end.
  const long long end = static_cast<long long>(m_size) - m;
  if (m < 1 || end - from < 1) return -1;
  const unsigned char* hit = findNeedle(m_data + from, m_data + end, sub.m_data, m);
  return hit != nullptr ? static_cast<int>(hit - m_data) : -1;
}

bool tbytesdata::contain(const tbytesdata& sub) const {
  return findData(sub, 0) >= 0;
}

int tbytesdata::countOfSubData(const tbytesdata& sub) const {
  int count = 0;
  for (int i = findData(sub, 0); i >= 0; i = findData(sub, i + sub.m_size)) ++count;
  return count;
}

void tbytesdata::remove(int pos, int n, tbytesdata* out) {
  if (pos < 0 || n < 1 || m_size == 0 || pos > m_size - 1) {
    if (out != nullptr) out->m_size = 0;
    return;
  }
  n = std::min(n, m_size - pos);
  if (out != nullptr) out->setData(m_data + pos, n);
  std::memmove(m_data + pos, m_data + pos + n, static_cast<size_t>(m_size - pos - n));
  m_size -= n;
}

tbytesdata& tbytesdata::remove(int pos, int n) {
  remove(pos, n, nullptr);
  return *this;
}

tbytesdata tbytesdata::takeData(int pos, int n) {
  tbytesdata part;
  remove(pos, n, &part);
  return part;
}

tbytesdata tbytesdata::copyData(int pos, int n) const {
  tbytesdata part;
  if (pos >= 0 && n >= 1 && pos < m_size) part.setData(m_data + pos, std::min(n, m_size - pos));
  return part;
}

bool tbytesdata::operator==(const tbytesdata& other) const {
  return m_size == other.m_size &&
         (m_size == 0 || std::memcmp(m_data, other.m_data, static_cast<size_t>(m_size)) == 0);
}

unsigned int tbytesdata::hashValue(const char* data, int length) {
  return length < 1 ? 0 : TAnsiString::hashValue(data, length);
}

unsigned int tbytesdata::hashValue() const {
  return hashValue(reinterpret_cast<const char*>(m_data), m_size);
}

void BinaryToHexA(const tbytesdata& data, TAnsiString& out, bool lowerCase, int lineWidth,
                  bool withTag) {
  BinaryToHexA(data.p(), data.size(), out, lowerCase, lineWidth, withTag);
}

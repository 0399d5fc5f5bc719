// tbytesdata.h: the library's growable block of raw bytes, and the hexadecimal rendering of one.
//
// A tbytesdata owns one block from the C heap (malloc/free) and remembers how many bytes it holds.
// The object is exactly three fields, in this order: the block pointer (m_data, null when there is
// no block), the bytes allocated (m_capacity) and the bytes in use from the start (m_size). Every
// member keeps 0 <= size <= capacity except setDataSize, which trusts its caller. Bytes between
// size and capacity are uninitialised unless a zero-fill flag asked for zeros.
//
// Growth: an append that needs more room than the block has moves the content to a new block of
// twice the needed size (exactly the needed size for append(src, n, false)). Copies (constructors,
// assignment, operator+) allocate exactly what they hold. Multi-byte integers are written and read
// little-endian whatever the host. Counts and positions are never errors: a count below 1 or a
// position outside the content leaves the buffer as it is, or gives an empty buffer, -1 or 0.
// A buffer never grows past INT_MAX bytes: an append that would is ignored. When the allocator
// fails, the member that needed the memory copies or appends nothing.
//
//   tbytesdata packet;
//   packet.appendUInt16(0x0102).appendUInt32(7).append("payload", 7);   // 02 01 07 00 00 00 ...
//   tbytesdata header = packet.takeData(0, 6);                         // packet keeps "payload"
//   unsigned short tag = header.asUInt16();                             // 0x0102
//   TAnsiString hex;
//   BinaryToHexA(header, hex, false, 0, false);                         // "020107000000"
//
// One object must not be used from two threads at once.
#ifndef ZEB_DATA_TBYTESDATA_H
#define ZEB_DATA_TBYTESDATA_H

#include "zeb/data/binary_hex.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/zeb_api.h"

class ZEB_API tbytesdata {
 public:
  // ---- construction and ownership ------------------------------------------------------------

  tbytesdata() = default;
  // capacity >= 1: a block of exactly that many bytes (zeroed when zeroFill), size 0.
  // capacity < 1: the empty buffer (no block).
  explicit tbytesdata(int capacity, bool zeroFill = false);
  // Exact copy of n bytes: capacity = size = n (n < 1: the empty buffer; a null src gives n zero
  // bytes).
  tbytesdata(const void* src, int n);
  // Exact copy of the string's bytes, terminator excluded ("" gives the empty buffer).
  explicit tbytesdata(const TAnsiString& s);
  // Exact copy: capacity = other's size.
  tbytesdata(const tbytesdata& other);
  // Takes the block; `other` is left empty (null block, capacity 0, size 0).
  tbytesdata(tbytesdata&& other) noexcept;
  ~tbytesdata();

  // Exact-copy assignment: size becomes 0; when other is empty nothing else happens (the block is
  // kept); otherwise a block smaller than other's size is replaced by one of exactly that size.
  tbytesdata& operator=(const tbytesdata& other);
  tbytesdata& assign(const tbytesdata& other);
  // Frees the own block and takes other's; `other` is left empty.
  tbytesdata& operator=(tbytesdata&& other) noexcept;

  // Frees the current block (unless it is `block` itself) and adopts `block`, which must come from
  // malloc and hold n bytes, as its content: capacity = size = n. With n < 1 a non-null block is
  // still adopted (the buffer frees it later) but counts as empty: capacity and size 0.
  const tbytesdata& takePtr(const void* block, int n);
  // Hands the block to the caller, who frees it with free(); the buffer becomes empty. Null when
  // there is no block.
  unsigned char* releasePtr();
  // The content becomes n bytes of src, by the append rule with doubling (a block that is too
  // small is replaced by one of 2n bytes). n < 1: no change at all. src may point into this buffer.
  tbytesdata& setData(const void* src, int n);
  // n >= 1: size 0 in a new block of exactly n bytes (zeroed when zeroFill), the old block freed.
  // n < 1: no change.
  tbytesdata& resetCapacity(int n, bool zeroFill = false);

  // ---- access ----------------------------------------------------------------------------------

  // The block (null when there is none).
  unsigned char* p() { return m_data; }
  const unsigned char* p() const { return m_data; }
  unsigned char* get() { return m_data; }
  const unsigned char* get() const { return m_data; }
  unsigned char* data() { return m_data; }
  const unsigned char* data() const { return m_data; }
  const unsigned char* dataConst() const { return m_data; }

  int dataCapacity() const { return m_capacity; }
  int dataSize() const { return m_size; }
  int size() const { return m_size; }
  bool isEmpty() const { return m_size == 0; }
  bool isNotEmpty() const { return m_size != 0; }

  // The size field itself, for a caller that filled the block directly. Keep it within capacity.
  int& dataSizeVar() { return m_size; }
  int* dataSizePtr() { return &m_size; }
  // size = n for n > 0, else 0. Not checked against the capacity.
  void setDataSize(int n) { m_size = n > 0 ? n : 0; }

  // The byte at index i; no bounds check (0 <= i < capacity is the caller's duty).
  unsigned char operator[](int i) const { return m_data[i]; }
  unsigned char& operator[](int i) { return m_data[i]; }

  // size = 0; with freeMemory the block is freed as well (capacity 0).
  tbytesdata& clearData(bool freeMemory = false);
  tbytesdata& clear(bool freeMemory = false);

  // ---- growth and appending --------------------------------------------------------------------

  // n >= 1: size = n, the block grown to exactly n bytes first when smaller (content kept, new
  // bytes uninitialised). n < 1: no change (resize never empties).
  tbytesdata& resize(int n);
  // Makes the block hold at least n bytes. When it is smaller, a new block of n bytes (2n when
  // doubleIt) replaces it; keepData copies the content over, otherwise the content is undefined
  // and the size field is left as it was. Returns capacity >= n; n < 1 returns false.
  bool ensureSize(int n, bool keepData = true, bool doubleIt = false);

  // One byte, or an integer as 2, 4 or 8 little-endian bytes; always with doubling.
  tbytesdata& append(unsigned char byte);
  tbytesdata& appendUInt16(unsigned short value);
  tbytesdata& appendInt16(short value);
  tbytesdata& appendUInt32(unsigned int value);
  tbytesdata& appendInt32(int value);
  tbytesdata& appendUInt64(unsigned long long value);
  tbytesdata& appendInt64(long long value);
  // n bytes of src (n < 1: no change). A block that is too small becomes 2 * (size + n) bytes
  // with doubleIt, exactly size + n without. src may point into this buffer. A null src with
  // n >= 1 appends n zero bytes.
  tbytesdata& append(const void* src, int n, bool doubleIt = true);
  tbytesdata& append(const tbytesdata& other, bool doubleIt = true);
  // The string's bytes without terminator, with doubling.
  tbytesdata& append(const TAnsiString& s);
  tbytesdata& operator+=(const tbytesdata& other);
  tbytesdata& operator+=(const TAnsiString& s);
  // This content followed by other's, in a block of exactly the sum of the sizes.
  tbytesdata operator+(const tbytesdata& other) const;

  // ---- integers read back from the start, little-endian ---------------------------------------
  // The widest prefix of 8, 4, 2 or 1 bytes that the size allows (capped at the type's width) is
  // read; missing bytes count as zero, so an empty buffer reads 0 and a single byte is
  // zero-extended. The signed forms return the same bits.

  unsigned long long asUInt64() const;
  long long asInt64() const;
  unsigned int asUInt32() const;
  int asInt32() const;
  unsigned short asUInt16() const;
  short asInt16() const;

  // ---- conversion to text ----------------------------------------------------------------------

  // Exactly size bytes (NULs included) plus a terminator; the empty buffer gives "".
  TAnsiString asString() const;
  // The bytes taken as UTF-16LE: (size + 1) / 2 units and a terminator. An odd size ends with a
  // half unit whose high byte is zero. The string's capacity is (size + 2) / 2 units, one more
  // for an odd size so that the terminator fits.
  TWideString asStringWide() const;

  // ---- search, cut and compare -----------------------------------------------------------------

  // Index of the first occurrence of sub at or after start (a negative start counts as 0), else
  // -1. By design the last alignment is never tried: a match that ends exactly at the end of the
  // buffer is not found, so a buffer equal to sub gives -1. An empty sub gives -1.
  int findData(const tbytesdata& sub, int start = 0) const;
  bool contain(const tbytesdata& sub) const;
  // Non-overlapping occurrences found by findData from the left (same end rule).
  int countOfSubData(const tbytesdata& sub) const;
  // Deletes n bytes at pos (clipped to the end), moving the tail down. No change when pos < 0,
  // n < 1 or pos is not inside the content.
  tbytesdata& remove(int pos, int n);
  // A copy of n bytes at pos (clipped to the end), made by setData (capacity 2n); this buffer is
  // unchanged. pos < 0, n < 1 or nothing left at pos: an empty buffer.
  tbytesdata copyData(int pos, int n) const;
  // The bytes remove(pos, n) deletes, as a copy made by setData; an empty buffer when remove
  // would change nothing.
  tbytesdata takeData(int pos, int n);

  // Equal sizes and equal bytes; the capacity does not matter.
  bool operator==(const tbytesdata& other) const;
  bool operator!=(const tbytesdata& other) const { return !(*this == other); }

  // TAnsiString::hashValue over the bytes (SuperFastHash over signed bytes): same bytes, same
  // value. Null data or length < 1 gives 0.
  static unsigned int hashValue(const char* data, int length);
  unsigned int hashValue() const;

 private:
  // As resetCapacity, but the size field is left as it is.
  void createNewData(int n, bool zeroFill);
  // Deletes as remove(pos, n) does and, when `out` is given, makes it a copy of the deleted bytes
  // (size 0 when nothing was deleted).
  void remove(int pos, int n, tbytesdata* out);
  // Moves to a new block of newCapacity bytes holding the first `keep` bytes of the old one, and
  // returns the old block for the caller to free (bytes may still be read from it). Returns
  // false, with nothing changed, when the allocator fails.
  bool moveToNewBlock(int newCapacity, int keep, bool zeroFill, unsigned char*& oldBlock);
  // The exact-copy step of constructors and assignments.
  void assignExact(const void* src, int n);
  unsigned long long readLittleEndian(int width) const;
  tbytesdata& appendLittleEndian(unsigned long long value, int width);

  unsigned char* m_data = nullptr;
  int m_capacity = 0;
  int m_size = 0;
};

// BinaryToHexA over the buffer's bytes (see binary_hex.h).
ZEB_API void BinaryToHexA(const tbytesdata& data, TAnsiString& out, bool lowerCase, int lineWidth,
                          bool withTag);

#endif  // ZEB_DATA_TBYTESDATA_H

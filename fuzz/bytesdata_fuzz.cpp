// Differential fuzzing of tbytesdata against a std::vector<unsigned char> model.
//
// The input is a program: each step reads an operation byte and then the operands it needs
// (counts and positions as signed bytes, so negative and past-the-end values come up often, and
// block contents straight from the input). After every step the buffer must hold exactly the
// model's bytes with capacity >= size; where the growth rule fixes the capacity it is checked too.
// Searches are checked against a naive search that skips the alignment ending at the buffer's end.
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "zeb/data/tbytesdata.h"

namespace {

using Bytes = std::vector<unsigned char>;

class Input : public FuzzInput {
 public:
  using FuzzInput::FuzzInput;
  // A count or position in -8..119: mostly small, sometimes negative.
  int smallInt() { return static_cast<int>(byte() % 128) - 8; }
  bool flag() { return (byte() & 1) != 0; }
  // Up to 31 bytes of input; the remaining input when it is shorter.
  Bytes block() {
    const size_t n = std::min<size_t>(byte() % 32, size_ - std::min(pos_, size_));
    Bytes out(data_ + pos_, data_ + pos_ + n);
    pos_ += n;
    return out;
  }
};

void check(bool ok) {
  if (!ok) abort();
}

void checkSame(const tbytesdata& buffer, const Bytes& model) {
  check(buffer.size() == static_cast<int>(model.size()));
  check(buffer.size() >= 0 && buffer.dataCapacity() >= buffer.size());
  check(model.empty() || memcmp(buffer.p(), model.data(), model.size()) == 0);
}

tbytesdata toBuffer(const Bytes& bytes) {
  return tbytesdata(bytes.data(), static_cast<int>(bytes.size()));
}

// The first match at or after max(start, 0) among the alignments that do not end at the end.
int modelFind(const Bytes& haystack, const Bytes& needle, int start) {
  const long long m = static_cast<long long>(needle.size());
  if (m < 1) return -1;
  for (long long i = std::max(start, 0); i + m < static_cast<long long>(haystack.size()); ++i) {
    if (std::equal(needle.begin(), needle.end(), haystack.begin() + i)) return static_cast<int>(i);
  }
  return -1;
}

int modelCount(const Bytes& haystack, const Bytes& needle) {
  int count = 0;
  for (int i = modelFind(haystack, needle, 0); i >= 0;
       i = modelFind(haystack, needle, i + static_cast<int>(needle.size()))) {
    ++count;
  }
  return count;
}

// Little-endian bytes of the low `width` bytes of value.
Bytes littleEndian(unsigned long long value, int width) {
  Bytes out;
  for (int i = 0; i < width; ++i) out.push_back(static_cast<unsigned char>(value >> (8 * i)));
  return out;
}

// Capacity after an append of k bytes that started from `capacity` and `size`.
int expectedCapacity(int capacity, int size, int k, bool doubleIt) {
  const int needed = size + k;
  if (capacity >= needed) return capacity;
  return doubleIt ? 2 * needed : needed;
}

// The part remove(pos, n) deletes, or nothing when it would change nothing.
Bytes modelCut(const Bytes& model, int pos, int n) {
  const int size = static_cast<int>(model.size());
  if (pos < 0 || n < 1 || pos >= size) return Bytes();
  return Bytes(model.begin() + pos, model.begin() + pos + std::min(n, size - pos));
}

void appendInteger(tbytesdata& buffer, Bytes& model, Input& in) {
  const int widths[] = {2, 4, 8};
  const int width = widths[in.byte() % 3];
  const bool isSigned = in.flag();
  unsigned long long value = 0;
  for (int i = 0; i < 8; ++i) value = (value << 8) | in.byte();
  const int capacity = buffer.dataCapacity();
  const int size = buffer.size();
  if (width == 2) {
    isSigned ? buffer.appendInt16(static_cast<short>(value)) : buffer.appendUInt16(value);
  } else if (width == 4) {
    isSigned ? buffer.appendInt32(static_cast<int>(value))
             : buffer.appendUInt32(static_cast<unsigned int>(value));
  } else {
    isSigned ? buffer.appendInt64(static_cast<long long>(value)) : buffer.appendUInt64(value);
  }
  const Bytes bytes = littleEndian(value, width);
  model.insert(model.end(), bytes.begin(), bytes.end());
  check(buffer.dataCapacity() == expectedCapacity(capacity, size, width, true));
}

void appendBlock(tbytesdata& buffer, Bytes& model, Input& in) {
  const Bytes bytes = in.block();
  const bool doubleIt = in.flag();
  const int capacity = buffer.dataCapacity();
  const int size = buffer.size();
  const int k = static_cast<int>(bytes.size());
  buffer.append(bytes.data(), k, doubleIt);
  model.insert(model.end(), bytes.begin(), bytes.end());
  if (k > 0) check(buffer.dataCapacity() == expectedCapacity(capacity, size, k, doubleIt));
}

void checkReaders(const tbytesdata& buffer, const Bytes& model) {
  const int size = static_cast<int>(model.size());
  const int width64 = size >= 8 ? 8 : size >= 4 ? 4 : size >= 2 ? 2 : size;
  unsigned long long expected = 0;
  for (int i = width64 - 1; i >= 0; --i) expected = (expected << 8) | model[i];
  check(buffer.asUInt64() == expected);
  check(buffer.asUInt32() ==
        static_cast<unsigned int>(size >= 8 ? expected & 0xFFFFFFFFu : expected));
  check(buffer.asUInt16() == static_cast<unsigned short>(size >= 4 ? expected & 0xFFFF : expected));
}

void step(tbytesdata& buffer, Bytes& model, Input& in) {
  switch (in.byte() % 16) {
    case 0: {
      const unsigned char b = in.byte();
      const int capacity = buffer.dataCapacity();
      const int size = buffer.size();
      buffer.append(b);
      model.push_back(b);
      check(buffer.dataCapacity() == expectedCapacity(capacity, size, 1, true));
      break;
    }
    case 1:
      appendInteger(buffer, model, in);
      break;
    case 2:
      appendBlock(buffer, model, in);
      break;
    case 3: {  // own bytes appended, the source lying in the block that may be replaced
      const int pos = std::max(0, std::min(in.smallInt(), buffer.size()));
      const int n = std::min(in.smallInt(), buffer.size() - pos);
      buffer.append(buffer.p() + pos, n, in.flag());
      if (n > 0) model.insert(model.end(), model.begin() + pos, model.begin() + pos + n);
      break;
    }
    case 4: {
      const Bytes bytes = in.block();
      buffer += toBuffer(bytes);
      model.insert(model.end(), bytes.begin(), bytes.end());
      break;
    }
    case 5: {
      const int pos = in.smallInt();
      const int n = in.smallInt();
      const Bytes cut = modelCut(model, pos, n);
      buffer.remove(pos, n);
      if (!cut.empty()) model.erase(model.begin() + pos, model.begin() + pos + cut.size());
      break;
    }
    case 6: {
      const int pos = in.smallInt();
      const int n = in.smallInt();
      const Bytes cut = modelCut(model, pos, n);
      const tbytesdata part = buffer.takeData(pos, n);
      checkSame(part, cut);
      check(part.dataCapacity() == 2 * part.size());
      if (!cut.empty()) model.erase(model.begin() + pos, model.begin() + pos + cut.size());
      break;
    }
    case 7: {
      const int pos = in.smallInt();
      const int n = in.smallInt();
      const tbytesdata part = buffer.copyData(pos, n);
      checkSame(part, modelCut(model, pos, n));
      check(part.dataCapacity() == 2 * part.size());
      break;
    }
    case 8: {  // needle from the input, or a slice of the content so that matches are common
      Bytes needle = in.block();
      if (in.flag()) needle = modelCut(model, in.smallInt(), in.smallInt());
      const int start = in.smallInt();
      check(buffer.findData(toBuffer(needle), start) == modelFind(model, needle, start));
      check(buffer.countOfSubData(toBuffer(needle)) == modelCount(model, needle));
      break;
    }
    case 9: {
      const int n = in.smallInt();
      buffer.resize(n);
      if (n >= 1) {
        model.resize(n);
        for (int i = 0; i < n; ++i) buffer[i] = model[i];
      }
      break;
    }
    case 10: {
      const Bytes bytes = in.block();
      buffer.setData(bytes.data(), static_cast<int>(bytes.size()));
      if (!bytes.empty()) model = bytes;
      break;
    }
    case 11: {
      const bool freeMemory = in.flag();
      const int capacity = buffer.dataCapacity();
      buffer.clearData(freeMemory);
      model.clear();
      check(buffer.dataCapacity() == (freeMemory ? 0 : capacity));
      break;
    }
    case 12: {
      const Bytes bytes = in.block();
      const tbytesdata sum = buffer + toBuffer(bytes);
      Bytes expected = model;
      expected.insert(expected.end(), bytes.begin(), bytes.end());
      checkSame(sum, expected);
      check(sum.dataCapacity() == sum.size());
      if (in.flag()) {
        buffer = sum;
        model = expected;
      }
      break;
    }
    case 13: {
      tbytesdata moved(std::move(buffer));
      check(buffer.p() == nullptr && buffer.size() == 0 && buffer.dataCapacity() == 0);
      buffer = in.flag() ? tbytesdata(moved) : std::move(moved);
      break;
    }
    case 14:
      checkReaders(buffer, model);
      break;
    default:
      check(buffer == toBuffer(model));
      check(buffer.hashValue() ==
            TAnsiString::hashValue(reinterpret_cast<const char*>(model.data()),
                                   static_cast<int>(model.size())));
      break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Input in(data, size);
  tbytesdata buffer;
  Bytes model;
  while (!in.done()) {
    step(buffer, model, in);
    checkSame(buffer, model);
  }
  return 0;
}

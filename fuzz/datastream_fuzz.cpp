// Differential fuzzing of tdatastream and tdatastreamWriter against plain byte models.
//
// The first input byte picks a reader over memory, a reader over the same bytes in a temporary
// file (which exercises the 64 KiB cache at a small scale through tiny read limits), a memory
// writer, or a writer on a caller's stream with a buffer of a few bytes. A reader's next 64 bytes
// are its content, repeated to a few hundred KiB for the file. The rest is a program: each step
// reads an operation byte and its operands. Reads, typed reads, seeks and read limits must give
// exactly the model's bytes and positions; writes and seeks must leave the target equal to a
// vector written the same way.
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <climits>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "zeb/data/mdatastream.h"

namespace {

using Bytes = std::vector<unsigned char>;

class Input : public zeb::fuzz::FuzzInput {
 public:
  using FuzzInput::FuzzInput;
  unsigned word() { return byte() | (static_cast<unsigned>(byte()) << 8); }
  unsigned long long wide() {
    unsigned long long v = 0;
    for (int i = 0; i < 8; ++i) v = (v << 8) | byte();
    return v;
  }
};

unsigned long long modelValue(const Bytes& model, int at, int width) {
  unsigned long long v = 0;
  for (int i = width - 1; i >= 0; --i) v = (v << 8) | model[static_cast<size_t>(at + i)];
  return v;
}

struct ReaderModel {
  const Bytes& bytes;
  bool memory;
  int at = 0;
  int limit = 0;
  int read = 0;

  int available() const {
    const int left = std::max(static_cast<int>(bytes.size()) - at, 0);
    return limit > 0 ? std::min(left, std::max(limit - read, 0)) : left;
  }
};

bool typedRead(tdatastream& in, int width, unsigned long long& v) {
  unsigned char b;
  unsigned short s;
  unsigned int i;
  switch (width) {
    case 1:
      if (!in.readUInt8(b)) return false;
      v = b;
      return true;
    case 2:
      if (!in.readUInt16(s)) return false;
      v = s;
      return true;
    case 4:
      if (!in.readUInt32(i)) return false;
      v = i;
      return true;
    default:
      return in.readUInt64(v);
  }
}

void runReader(tdatastream& in, ReaderModel& m, Input& input) {
  const int size = static_cast<int>(m.bytes.size());
  for (int steps = 0; steps < 200 && !input.done(); ++steps) {
    switch (input.byte() % 6) {
      case 0: {
        const int p = static_cast<int>(input.word() % (size + 64)) - 32;
        const bool accepted = m.memory ? p >= 0 && p < size : p >= 0;
        FUZZ_CHECK(in.resetPos(p) == accepted);
        if (accepted) m.at = p;
        break;
      }
      case 1: {
        const int width = 1 << (input.byte() % 4);
        unsigned long long v = 0;
        const bool ok = typedRead(in, width, v);
        FUZZ_CHECK(ok == (m.available() >= width));
        if (ok) {
          FUZZ_CHECK(v == modelValue(m.bytes, m.at, width));
          m.at += width;
          m.read += width;
        }
        break;
      }
      case 2:
      case 3: {
        const int n = static_cast<int>(input.word()) * (input.byte() % 4 + 1) - 8;
        const tbytesdata& got = in.readData(n);
        const int expected = n < 1 ? 0 : std::min(n, m.available());
        FUZZ_CHECK(got.size() == expected);
        FUZZ_CHECK(expected == 0 || memcmp(got.p(), m.bytes.data() + m.at, expected) == 0);
        m.at += expected;
        m.read += expected;
        break;
      }
      case 4:
        m.limit = input.byte() % 3 == 0 ? 0 : static_cast<int>(input.word() % 4096);
        in.setMaxReadSize(m.limit);
        break;
      default:
        in.resetReadDataSize();
        m.read = 0;
        break;
    }
    FUZZ_CHECK(in.pos() == m.at);
    if (m.memory) FUZZ_CHECK(in.isEnd() == (m.at >= size));
  }
}

// A writer's bytes: what was written where, with a write position that may lie past the end.
struct WriterModel {
  Bytes bytes;
  size_t at = 0;
  bool memory = true;

  void resetPos(int p) {
    if (memory) {
      bytes.resize(static_cast<size_t>(std::max(p, 0)), 0);
      at = bytes.size();
    } else if (p >= 0) {
      at = static_cast<size_t>(p);  // fseek may go past the end; a later write fills the gap
    }
  }

  void write(unsigned long long v, int width) {
    if (bytes.size() < at + width) bytes.resize(at + width, 0);
    for (int i = 0; i < width; ++i) bytes[at + i] = static_cast<unsigned char>(v >> (8 * i));
    at += width;
  }
};

bool writeTyped(tdatastreamWriter& out, unsigned long long v, int width) {
  switch (width) {
    case 1:
      return out.writeUInt8(static_cast<unsigned char>(v));
    case 2:
      return out.writeUInt16(static_cast<unsigned short>(v));
    case 4:
      return out.writeUInt32(static_cast<unsigned int>(v));
    default:
      return out.writeUInt64(v);
  }
}

void runWriteSteps(tdatastreamWriter& out, WriterModel& model, Input& input) {
  for (int steps = 0; steps < 200 && !input.done(); ++steps) {
    const unsigned char op = input.byte();
    if (op % 5 == 0) {
      const int p = static_cast<int>(input.word() % 512) - 16;
      out.resetPos(p);
      model.resetPos(p);
    } else {
      const int width = 1 << (op % 5 - 1);
      const unsigned long long v = input.wide();
      FUZZ_CHECK(writeTyped(out, v, width));
      model.write(v, width);
    }
    FUZZ_CHECK(out.pos() == static_cast<int>(model.at));
  }
}

void runMemoryWriter(Input& input) {
  tdatastreamWriter out;
  WriterModel model;
  runWriteSteps(out, model, input);
  const tbytesdata& target = out.memData();
  FUZZ_CHECK(target.size() == static_cast<int>(model.bytes.size()));
  FUZZ_CHECK(model.bytes.empty() ||
             memcmp(target.p(), model.bytes.data(), model.bytes.size()) == 0);
}

// A caller's stream with a buffer of 1 to 32 bytes, so that values often straddle its end.
void runCallersFileWriter(Input& input) {
  FILE* f = tmpfile();
  if (f == nullptr) return;
  char buffer[32];
  setvbuf(f, buffer, _IOFBF, input.byte() % sizeof buffer + 1);
  WriterModel model;
  model.memory = false;
  {
    tdatastreamWriter out(f);
    runWriteSteps(out, model, input);
  }
  Bytes content(model.bytes.size() + 1);
  rewind(f);
  FUZZ_CHECK(fread(content.data(), 1, content.size(), f) == model.bytes.size());
  FUZZ_CHECK(model.bytes.empty() ||
             memcmp(content.data(), model.bytes.data(), model.bytes.size()) == 0);
  fclose(f);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Input input(data, size);
  const unsigned char mode = input.byte();
  if (mode % 4 == 2) {
    runMemoryWriter(input);
    return 0;
  }
  if (mode % 4 == 3) {
    runCallersFileWriter(input);
    return 0;
  }
  Bytes content;
  for (int i = 0; i < 64; ++i) content.push_back(input.byte());
  if (mode % 4 == 0) {
    ReaderModel m{content, true};
    tdatastream in(static_cast<const void*>(content.data()), static_cast<int>(content.size()));
    runReader(in, m, input);
    return 0;
  }
  Bytes big;
  const size_t length = 70000 + (mode % 64) * 1024;
  while (big.size() < length) big.insert(big.end(), content.begin(), content.end());
  big.resize(length);
  FILE* f = tmpfile();
  if (f == nullptr) return 0;
  FUZZ_CHECK(fwrite(big.data(), big.size(), 1, f) == 1);
  {
    ReaderModel m{big, false};
    tdatastream in(f, 0);
    runReader(in, m, input);
  }
  fclose(f);
  return 0;
}

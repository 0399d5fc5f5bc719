#include "zeb/data/mdatastream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "testing/log_capture.h"
#include "testing/temp_dir.h"
#include "zeb/log/zeb_log.h"
#include "zeb/strings/TWideString.h"

using zeb::testing::TempDir;

namespace {

TWideString wide(const std::string& utf8) {
  return TWideString(utf8.c_str(), MIB_UTF8);
}

std::vector<unsigned char> bytesOf(const tbytesdata& data) {
  return std::vector<unsigned char>(data.p(), data.p() + data.size());
}

std::string randomBytes(size_t n, unsigned seed) {
  std::mt19937 rng(seed);
  std::string s(n, '\0');
  for (char& c : s) c = static_cast<char>(rng());
  return s;
}

// ---- reader ------------------------------------------------------------------------------------

TEST(DataStreamRead, ThreeBytesTypedReadsAndTheRefusedEnd) {
  const unsigned char bytes[] = {0x01, 0x02, 0x03};
  tdatastream in(bytes, 3);
  unsigned int u32 = 0xDEADBEEF;
  EXPECT_FALSE(in.readUInt32(u32));
  EXPECT_EQ(u32, 0xDEADBEEFu) << "a failed read leaves the output alone";
  EXPECT_EQ(in.pos(), 0) << "and consumes nothing";
  unsigned short u16 = 0;
  unsigned char u8 = 0;
  EXPECT_TRUE(in.readUInt16(u16));
  EXPECT_EQ(u16, 0x0201);
  EXPECT_FALSE(in.isEnd());
  EXPECT_TRUE(in.readUInt8(u8));
  EXPECT_EQ(u8, 0x03);
  EXPECT_TRUE(in.isEnd());
  EXPECT_FALSE(in.resetPos(3)) << "positioning at the end itself is refused";
  EXPECT_FALSE(in.resetPos(-1));
  EXPECT_TRUE(in.resetPos(2));
  EXPECT_EQ(in.readData(10).size(), 1);
  EXPECT_EQ(in.readData(INT_MAX).size(), 0) << "and allocates nothing for it";
  EXPECT_TRUE(in.resetPos(0));
  EXPECT_EQ(in.readData(INT_MAX).size(), 3);
}

TEST(DataStreamRead, ReadLimitCapsAllReadsUntilReset) {
  const std::string ten = "0123456789";
  tdatastream in(static_cast<const void*>(ten.data()), 10, 0, 5);
  EXPECT_EQ(bytesOf(in.readData(8)), std::vector<unsigned char>(ten.begin(), ten.begin() + 5));
  EXPECT_EQ(in.readData(1).size(), 0);
  unsigned char u8;
  EXPECT_FALSE(in.readUInt8(u8));
  EXPECT_FALSE(in.isEnd());
  in.resetReadDataSize();
  unsigned int u32;
  EXPECT_TRUE(in.readUInt32(u32));
  EXPECT_EQ(u32, 0x38373635u);
  unsigned short u16;
  EXPECT_FALSE(in.readUInt16(u16)) << "one byte allowed";
  in.clearMaxReadSize();
  EXPECT_EQ(in.readData(8).size(), 1);
  EXPECT_TRUE(in.isEnd());
}

TEST(DataStreamRead, ReadLimitSetLaterAlsoStopsTypedReadsFromTheCache) {
  TempDir dir;
  dir.writeFile("ten.bin", "0123456789");
  tdatastream file(wide(dir.filePath("ten.bin")));
  const std::string ten = "0123456789";
  tdatastream memory(static_cast<const void*>(ten.data()), 10);
  for (tdatastream* in : {&file, &memory}) {
    unsigned char u8;
    ASSERT_TRUE(in->readUInt8(u8));  // the file stream's cache now holds all ten bytes
    in->setMaxReadSize(3);
    unsigned int u32;
    EXPECT_FALSE(in->readUInt32(u32)) << "two bytes allowed";
    unsigned short u16;
    EXPECT_TRUE(in->readUInt16(u16));
    EXPECT_EQ(u16, 0x3231);
    EXPECT_EQ(in->readData(4).size(), 0);
    EXPECT_EQ(in->pos(), 3);
  }
}

TEST(DataStreamRead, ConstructorsCopyTheDataAndPosition) {
  std::string data = "abcdef";
  tdatastream in(static_cast<const void*>(data.data()), 6, 4);
  data[4] = 'X';
  EXPECT_EQ(in.readData(2).asString(), TAnsiString("ef"));
  EXPECT_EQ(in.getStreamType(), tdatastream::memory);
  tdatastream empty(static_cast<const void*>(nullptr), 5);
  EXPECT_TRUE(empty.isEnd());
  EXPECT_EQ(empty.memDataSize(), 0);
  EXPECT_EQ(empty.readData(1).size(), 0);
}

TEST(DataStreamRead, LargeReadPastTheEndOfAFile) {
  TempDir dir;
  const std::string content = randomBytes(70000, 1);
  dir.writeFile("f.bin", content);
  tdatastream in(wide(dir.filePath("f.bin")));
  EXPECT_TRUE(in.isFileOpened());
  EXPECT_FALSE(in.isEnd());
  const tbytesdata& got = in.readData(100000);
  EXPECT_EQ(got.size(), 70000);
  EXPECT_EQ(got.asString(), TAnsiString(content.data(), 70000));
  EXPECT_TRUE(in.isEnd());
  EXPECT_EQ(in.pos(), 70000);
  EXPECT_TRUE(in.resetPos(69998));
  EXPECT_FALSE(in.isEnd());
  EXPECT_EQ(in.readAllData().size(), 2);
}

TEST(DataStreamRead, EightBitPathInItsCharset) {
  TempDir dir;
  dir.writeFile("\xe6\x95\xb0\xe6\x8d\xae.bin", "payload");     // "数据" in UTF-8
  const std::string gb = dir.path() + "/\xca\xfd\xbe\xdd.bin";  // the same name in GB2312
  tdatastream in(gb.c_str(), MIB_GB2312);
  EXPECT_TRUE(in.isFileOpened());
  EXPECT_EQ(in.readAllData().asString(), TAnsiString("payload"));
}

TEST(DataStreamRead, MissingFileReadsNothingAndEnds) {
  TempDir dir;
  tdatastream in(wide(dir.filePath("absent")));
  EXPECT_FALSE(in.isFileOpened());
  EXPECT_EQ(in.getStreamType(), tdatastream::file);
  EXPECT_EQ(in.readData(4).size(), 0);
  EXPECT_TRUE(in.isEnd());
  EXPECT_FALSE(in.resetPos(0));
  EXPECT_TRUE(in.readAllData().isEmpty());
}

TEST(DataStreamRead, CallersFileKeepsItsPositionAndStaysOpen) {
  std::FILE* f = std::tmpfile();
  ASSERT_NE(f, nullptr);
  std::fputs("0123456789", f);
  std::fseek(f, 3, SEEK_SET);
  {
    tdatastream in(f);
    EXPECT_FALSE(in.isFileOpened());
    EXPECT_EQ(in.pos(), 3);
    EXPECT_EQ(in.readData(2).asString(), TAnsiString("34"));
    EXPECT_EQ(in.dataHandle(), f);
  }
  EXPECT_EQ(std::fseek(f, 0, SEEK_SET), 0) << "the stream left the file open";
  {
    tdatastream in(f, 8);
    EXPECT_EQ(in.readData(5).asString(), TAnsiString("89"));
  }
  std::fclose(f);
}

// Random seeks, reads of every size (within the cache, across its edge, larger than it) and typed
// reads, each checked against the plain bytes.
void checkAgainstModel(tdatastream& in, const std::string& model, unsigned seed) {
  std::mt19937 rng(seed);
  const int size = static_cast<int>(model.size());
  int at = 0;
  for (int step = 0; step < 3000; ++step) {
    const int op = static_cast<int>(rng() % 10);
    if (op == 0) {
      const int p = static_cast<int>(rng() % (size + 10)) - 5;
      const bool accepted = in.getStreamType() == tdatastream::memory ? p >= 0 && p < size : p >= 0;
      ASSERT_EQ(in.resetPos(p), accepted) << p;
      if (accepted) at = p;
    } else if (op <= 5) {
      const int width = 1 << (rng() % 4);
      unsigned long long v = 0;
      bool ok = false;
      if (width == 1) {
        unsigned char x;
        ok = in.readUInt8(x);
        v = x;
      } else if (width == 2) {
        unsigned short x;
        ok = in.readUInt16(x);
        v = x;
      } else if (width == 4) {
        unsigned int x;
        ok = in.readUInt32(x);
        v = x;
      } else {
        ok = in.readUInt64(v);
      }
      ASSERT_EQ(ok, at + width <= size) << "at " << at;
      if (ok) {
        unsigned long long expected = 0;
        for (int i = width - 1; i >= 0; --i) {
          expected = (expected << 8) | static_cast<unsigned char>(model[at + i]);
        }
        ASSERT_EQ(v, expected);
        at += width;
      }
    } else {
      static const int kLimits[] = {16, 70000, 200000};
      const int n = static_cast<int>(rng() % kLimits[op % 3]) + 1;
      const tbytesdata& got = in.readData(n);
      const int expected = std::min(n, size - at);
      ASSERT_EQ(got.size(), std::max(expected, 0));
      ASSERT_EQ(0, std::memcmp(got.p(), model.data() + at, static_cast<size_t>(got.size())));
      at += got.size();
    }
    ASSERT_EQ(in.pos(), at);
  }
}

TEST(DataStreamRead, CacheMatchesAPlainByteModel) {
  TempDir dir;
  const std::string content = randomBytes(300001, 7);
  dir.writeFile("model.bin", content);
  for (unsigned seed = 1; seed <= 3; ++seed) {
    tdatastream file(wide(dir.filePath("model.bin")));
    checkAgainstModel(file, content, seed);
    tdatastream memory(static_cast<const void*>(content.data()), static_cast<int>(content.size()));
    checkAgainstModel(memory, content, seed);
  }
}

// ---- writer ------------------------------------------------------------------------------------

TEST(DataStreamWrite, LittleEndianBytesAndRewinding) {
  tdatastreamWriter out;
  EXPECT_TRUE(out.writeUInt32(1));
  EXPECT_TRUE(out.writeUInt16(2));
  EXPECT_EQ(bytesOf(out.memData()), (std::vector<unsigned char>{1, 0, 0, 0, 2, 0}));
  out.resetPos(2);
  EXPECT_EQ(bytesOf(out.memData()), (std::vector<unsigned char>{1, 0}));
  EXPECT_TRUE(out.writeUInt64(0x0807060504030201ull));
  EXPECT_TRUE(out.writeUInt8(9));
  EXPECT_EQ(out.pos(), 11);
  EXPECT_EQ(bytesOf(out.memData()), (std::vector<unsigned char>{1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
  out.resetPos(13);
  ASSERT_EQ(out.memData().size(), 13);
  EXPECT_EQ(out.memData()[11] | out.memData()[12], 0) << "a size past the end reads as zeros";
}

TEST(DataStreamWrite, CallersBufferGrowsFromItsSize) {
  tbytesdata target;
  target.append("ab", 2);
  {
    tdatastreamWriter out(target);
    out.setMemDataBufferSize(100);
    EXPECT_EQ(target.dataCapacity(), 100);
    EXPECT_EQ(out.writeData("cd", 2), 2);
    tbytesdata more("efg", 3);
    EXPECT_EQ(out.writeData(more), 3);
  }
  EXPECT_EQ(target.asString(), TAnsiString("abcdefg")) << "the caller's buffer outlives the writer";
}

TEST(DataStreamWrite, ZeroLengthWriteIsLoggedAndWritesNothing) {
  zeb::testing::LogCapture log(MLOG_ASSERT);
  tdatastreamWriter out;
  EXPECT_EQ(out.writeData("x", 0), 0);
  EXPECT_EQ(out.writeData("x", -3), 0);
  EXPECT_EQ(out.memData().size(), 0);
  const auto lines = log.lines();
  ASSERT_EQ(lines.size(), 2u);
  const auto parsed = zeb::testing::parseLogLine(lines[0]);
  ASSERT_TRUE(parsed.has_value());
  EXPECT_EQ(parsed->letter, "A");
  EXPECT_EQ(parsed->tag.substr(0, 11), "mdatastream");
  EXPECT_EQ(parsed->message.rfind(":tdatastreamWriter::writeData:", 0), 0u);
}

TEST(DataStreamWrite, FileInAMissingFolderRoundTrips) {
  TempDir dir;
  const std::string path = dir.filePath("new/deeper/out.bin");
  {
    tdatastreamWriter out(wide(path), false);
    EXPECT_TRUE(out.isFileOpened());
    EXPECT_TRUE(out.writeUInt16(0xBEEF));
    EXPECT_TRUE(out.writeUInt64(42));
    EXPECT_EQ(out.pos(), 10);
    out.finished();
    EXPECT_FALSE(out.isFileOpened());
    EXPECT_FALSE(out.writeUInt8(1)) << "closed by finished()";
  }
  {
    tdatastreamWriter more(path.c_str(), MIB_UTF8, true);
    EXPECT_TRUE(more.writeUInt8(7));
  }
  tdatastream in(wide(path));
  unsigned short a;
  unsigned long long b;
  unsigned char c;
  ASSERT_TRUE(in.readUInt16(a) && in.readUInt64(b) && in.readUInt8(c));
  EXPECT_EQ(a, 0xBEEF);
  EXPECT_EQ(b, 42u);
  EXPECT_EQ(c, 7);
  EXPECT_FALSE(in.readUInt8(c));
  EXPECT_TRUE(in.isEnd());
}

TEST(DataStreamWrite, OwnedFileMatchesAByteModelAcrossSeeksAndLargeBlocks) {
  TempDir dir;
  const std::string path = dir.filePath("model.bin");
  std::string model;
  std::mt19937 rng(5);
  {
    tdatastreamWriter out(wide(path), false);
    for (int step = 0; step < 400; ++step) {
      const unsigned op = rng() % 8;
      if (op == 0 && !model.empty()) {
        const int p = static_cast<int>(rng() % model.size());
        out.resetPos(p);
        model.resize(static_cast<size_t>(p));  // the file keeps its longer tail; see below
      } else if (op == 1) {
        const std::string block = randomBytes(rng() % 140000 + 1, step);
        ASSERT_EQ(out.writeData(block.data(), static_cast<int>(block.size())),
                  static_cast<int>(block.size()));
        model += block;
      } else {
        const unsigned int v = rng();
        ASSERT_TRUE(out.writeUInt32(v));
        for (int i = 0; i < 4; ++i) model.push_back(static_cast<char>(v >> (8 * i)));
      }
      ASSERT_EQ(out.pos(), static_cast<int>(model.size()));
    }
  }
  const std::string written = dir.readFile("model.bin");
  ASSERT_GE(written.size(), model.size());
  EXPECT_TRUE(written.compare(0, model.size(), model) == 0);
}

TEST(DataStreamWrite, FileThatCannotBeOpenedWritesNothing) {
  TempDir dir;
  dir.writeFile("plain", "x");
  tdatastreamWriter out(wide(dir.filePath("plain/out.bin")), false);
  EXPECT_FALSE(out.isFileOpened());
  EXPECT_EQ(out.writeData("abc", 3), 0);
  EXPECT_EQ(out.pos(), -1);
  tdatastreamWriter unopened(tdatastreamWriter::file);
  EXPECT_FALSE(unopened.writeUInt32(1));
}

TEST(DataStreamWrite, CallersFileIsNeverClosed) {
  std::FILE* f = std::tmpfile();
  ASSERT_NE(f, nullptr);
  {
    tdatastreamWriter out(f);
    EXPECT_TRUE(out.writeUInt32(0x64636261));
    out.resetPos(1);
    EXPECT_EQ(out.writeData("Z", 1), 1);
    out.finished();
  }
  std::rewind(f);
  char back[5] = {};
  EXPECT_EQ(std::fread(back, 1, 4, f), 4u);
  EXPECT_STREQ(back, "aZcd");
  std::fclose(f);
}

// The caller and the writer take turns on one stream: the caller writes text, the writer typed
// values, the writer seeks back, the caller reads and then the writer writes again. Returns the
// stream's whole content.
std::string takeTurnsOnOneStream(int bufferMode) {
  std::FILE* f = std::tmpfile();
  if (f == nullptr) return "no tmpfile";
  char buffer[8];
  std::setvbuf(f, bufferMode == _IONBF ? nullptr : buffer, bufferMode, sizeof buffer);
  {
    tdatastreamWriter out(f);
    std::fputs("<", f);
    out.writeUInt32(0x64636261);
    std::fputc('|', f);
    out.writeUInt64(0x6867666564636261ULL);
    out.writeUInt16(0x0A31);
    std::fwrite("xyz", 3, 1, f);
    out.resetPos(2);
    out.writeUInt8('B');
    std::fseek(f, 0, SEEK_SET);
    char first[3];
    if (std::fread(first, 1, 3, f) != 3) return "short read";
    std::fseek(f, 0, SEEK_CUR);
    out.writeUInt8('C');
  }
  std::rewind(f);
  std::string content(64, '\0');
  content.resize(std::fread(&content[0], 1, content.size(), f));
  std::fclose(f);
  return content;
}

TEST(DataStreamWrite, CallersFileTakesTurnsWithTheCallerInEveryBufferMode) {
  const std::string expected = std::string("<aBC") + "d|abcdefgh1\n" + "xyz";
  for (const int mode : {_IOFBF, _IOLBF, _IONBF}) {
    EXPECT_EQ(takeTurnsOnOneStream(mode), expected) << "mode " << mode << ", one thread";
  }
  std::thread other([] {});
  for (const int mode : {_IOFBF, _IOLBF, _IONBF}) {
    EXPECT_EQ(takeTurnsOnOneStream(mode), expected) << "mode " << mode << ", two threads";
  }
  other.join();
}

}  // namespace

// Typed reads and writes through tdatastream and tdatastreamWriter, from memory and from a file
// (opened by the stream, or the caller's FILE*), beside the same values read and written one by
// one with fread and fwrite on a buffered C stream. Each pass handles kRecords records of one 1-,
// 2-, 4- and 8-byte value each.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "testing/temp_dir.h"
#include "zeb/data/mdatastream.h"

namespace {

constexpr int kRecords = 16384;
constexpr int kRecordBytes = 15;

std::vector<unsigned char> recordBytes() {
  tdatastreamWriter out;
  for (int i = 0; i < kRecords; ++i) {
    out.writeUInt8(static_cast<unsigned char>(i));
    out.writeUInt16(static_cast<unsigned short>(i * 3));
    out.writeUInt32(static_cast<unsigned int>(i) * 2654435761u);
    out.writeUInt64(static_cast<unsigned long long>(i) << 33);
  }
  const tbytesdata& bytes = out.memData();
  return std::vector<unsigned char>(bytes.p(), bytes.p() + bytes.size());
}

std::FILE* fileWith(const std::vector<unsigned char>& bytes) {
  std::FILE* f = std::tmpfile();
  if (f == nullptr || std::fwrite(bytes.data(), bytes.size(), 1, f) != 1) std::abort();
  std::rewind(f);
  return f;
}

void setCounters(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * kRecords * kRecordBytes);
}

// Reads every record with readRecord(a, b, c, e) (false on a short read), once per iteration,
// after rewind().
template <typename Rewind, typename ReadRecord>
void readAll(benchmark::State& state, Rewind rewind, ReadRecord readRecord) {
  for (auto _ : state) {
    rewind();
    unsigned long long sum = 0;
    unsigned char a;
    unsigned short b;
    unsigned int c;
    unsigned long long e;
    for (int i = 0; i < kRecords; ++i) {
      if (!readRecord(a, b, c, e)) std::abort();
      sum += a + b + c + e;
    }
    benchmark::DoNotOptimize(sum);
  }
  setCounters(state);
}

void readAll(tdatastream& in, benchmark::State& state) {
  readAll(
      state, [&] { in.resetPos(0); },
      [&](unsigned char& a, unsigned short& b, unsigned int& c, unsigned long long& e) {
        return in.readUInt8(a) && in.readUInt16(b) && in.readUInt32(c) && in.readUInt64(e);
      });
}

void BM_Read_StreamMemory(benchmark::State& state) {
  const auto bytes = recordBytes();
  tdatastream in(static_cast<const void*>(bytes.data()), static_cast<int>(bytes.size()));
  readAll(in, state);
}

void BM_Read_StreamFile(benchmark::State& state) {
  std::FILE* f = fileWith(recordBytes());
  {
    tdatastream in(f, 0);
    readAll(in, state);
  }
  std::fclose(f);
}

void BM_Read_Fread(benchmark::State& state) {
  std::FILE* f = fileWith(recordBytes());
  readAll(
      state, [&] { std::rewind(f); },
      [&](unsigned char& a, unsigned short& b, unsigned int& c, unsigned long long& e) {
        return std::fread(&a, 1, 1, f) == 1 && std::fread(&b, 2, 1, f) == 1 &&
               std::fread(&c, 4, 1, f) == 1 && std::fread(&e, 8, 1, f) == 1;
      });
  std::fclose(f);
}

void writeAll(tdatastreamWriter& out, benchmark::State& state) {
  for (auto _ : state) {
    out.resetPos(0);
    for (int i = 0; i < kRecords; ++i) {
      out.writeUInt8(static_cast<unsigned char>(i));
      out.writeUInt16(static_cast<unsigned short>(i));
      out.writeUInt32(static_cast<unsigned int>(i));
      out.writeUInt64(static_cast<unsigned long long>(i));
    }
    benchmark::ClobberMemory();
  }
  setCounters(state);
}

void BM_Write_StreamMemory(benchmark::State& state) {
  tdatastreamWriter out;
  writeAll(out, state);
}

void BM_Write_StreamFile(benchmark::State& state) {
  zeb::testing::TempDir dir;
  const std::string path = dir.filePath("out.bin");
  tdatastreamWriter out(path.c_str(), MIB_UTF8, false);
  writeAll(out, state);
}

void BM_Write_StreamCallersFile(benchmark::State& state) {
  std::FILE* f = std::tmpfile();
  {
    tdatastreamWriter out(f);
    writeAll(out, state);
  }
  std::fclose(f);
}

void BM_Write_Fwrite(benchmark::State& state) {
  std::FILE* f = std::tmpfile();
  for (auto _ : state) {
    std::rewind(f);
    for (int i = 0; i < kRecords; ++i) {
      const unsigned char a = static_cast<unsigned char>(i);
      const unsigned short b = static_cast<unsigned short>(i);
      const unsigned int c = static_cast<unsigned int>(i);
      const unsigned long long e = static_cast<unsigned long long>(i);
      std::fwrite(&a, 1, 1, f);
      std::fwrite(&b, 2, 1, f);
      std::fwrite(&c, 4, 1, f);
      std::fwrite(&e, 8, 1, f);
    }
    benchmark::ClobberMemory();
  }
  setCounters(state);
  std::fclose(f);
}

}  // namespace

BENCHMARK(BM_Read_StreamMemory);
BENCHMARK(BM_Read_StreamFile);
BENCHMARK(BM_Read_Fread);
BENCHMARK(BM_Write_StreamMemory);
BENCHMARK(BM_Write_StreamFile);
BENCHMARK(BM_Write_StreamCallersFile);
BENCHMARK(BM_Write_Fwrite);

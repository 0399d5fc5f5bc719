// Byte-buffer hot paths beside their anchors:
//   - BinaryToHexNoTagA (caller's char buffer, and the TAnsiString form) against a plain
//     table-driven hex loop written here;
//   - tbytesdata::findData against glibc memmem.
// findData never reports a match that ends at the buffer's very end, so every planted match sits
// 64 bytes before the end; the "miss" inputs hold no match at all.
#include <benchmark/benchmark.h>
#include <string.h>

#include <cstdlib>
#include <random>
#include <vector>

#include "zeb/data/binary_hex.h"
#include "zeb/data/tbytesdata.h"

namespace {

std::vector<unsigned char> randomBytes(size_t n, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<unsigned char> bytes(n);
  for (unsigned char& b : bytes) b = static_cast<unsigned char>(random());
  return bytes;
}

// ---- hexadecimal rendering -------------------------------------------------------------------

// Two upper-case digits for every byte value, looked up as one pair.
struct HexPairs {
  char pairs[256][2];
  HexPairs() {
    const char* digits = "0123456789ABCDEF";
    for (int i = 0; i < 256; ++i) {
      pairs[i][0] = digits[i >> 4];
      pairs[i][1] = digits[i & 15];
    }
  }
};

void tableHex(const unsigned char* in, size_t n, char* out) {
  static const HexPairs table;
  for (size_t i = 0; i < n; ++i, out += 2) memcpy(out, table.pairs[in[i]], 2);
  *out = '\0';
}

void checkSameHex(const std::vector<unsigned char>& input, const char* ours) {
  std::vector<char> reference(2 * input.size() + 1);
  tableHex(input.data(), input.size(), reference.data());
  if (strcmp(reference.data(), ours) != 0) abort();
}

void BM_HexNoTagA_CharBuffer(benchmark::State& state) {
  const auto input = randomBytes(static_cast<size_t>(state.range(0)), 1);
  const int n = static_cast<int>(input.size());
  std::vector<char> out(3 * input.size() + 2);
  for (auto _ : state) {
    benchmark::DoNotOptimize(BinaryToHexNoTagA(input.data(), n, out.data(), false, 0));
    benchmark::ClobberMemory();
  }
  checkSameHex(input, out.data());
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_HexNoTagA_String(benchmark::State& state) {
  const auto input = randomBytes(static_cast<size_t>(state.range(0)), 1);
  const int n = static_cast<int>(input.size());
  TAnsiString out;
  for (auto _ : state) {
    benchmark::DoNotOptimize(BinaryToHexNoTagA(input.data(), n, out, false, 0).p());
    benchmark::ClobberMemory();
  }
  checkSameHex(input, out.p());
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_HexTableLoop(benchmark::State& state) {
  const auto input = randomBytes(static_cast<size_t>(state.range(0)), 1);
  std::vector<char> out(2 * input.size() + 1);
  for (auto _ : state) {
    tableHex(input.data(), input.size(), out.data());
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_HexNoTagA_CharBuffer)->Arg(64)->Arg(4096)->Arg(1 << 20);
BENCHMARK(BM_HexNoTagA_String)->Arg(64)->Arg(4096)->Arg(1 << 20);
BENCHMARK(BM_HexTableLoop)->Arg(64)->Arg(4096)->Arg(1 << 20);

// ---- substring search --------------------------------------------------------------------------

// A haystack and needle for one benchmark: random bytes, or DNA-like text over "acgt" in which
// the needle's first byte is frequent. The needle ends in a byte the haystack never holds except
// where the needle is planted, so the planted copy is the first match.
struct SearchInput {
  tbytesdata haystack;
  tbytesdata needle;
  int expected;
};

SearchInput makeSearchInput(const benchmark::State& state) {
  const int size = static_cast<int>(state.range(0));
  const int m = static_cast<int>(state.range(1));
  const bool dnaLike = state.range(2) != 0;
  const bool planted = state.range(3) != 0;
  std::vector<unsigned char> bytes = randomBytes(static_cast<size_t>(size), 2);
  for (unsigned char& b : bytes) b = dnaLike ? "acgt"[b & 3] : static_cast<unsigned char>(b & 0x7F);
  std::vector<unsigned char> needle(bytes.begin() + size / 2, bytes.begin() + size / 2 + m);
  needle.back() = 0xFF;
  const int at = size - m - 64;
  if (planted) memcpy(bytes.data() + at, needle.data(), needle.size());
  return SearchInput{tbytesdata(bytes.data(), size), tbytesdata(needle.data(), m),
                     planted ? at : -1};
}

void BM_FindData(benchmark::State& state) {
  const SearchInput input = makeSearchInput(state);
  for (auto _ : state) {
    const int found = input.haystack.findData(input.needle, 0);
    if (found != input.expected) abort();
    benchmark::DoNotOptimize(found);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_Memmem(benchmark::State& state) {
  const SearchInput input = makeSearchInput(state);
  for (auto _ : state) {
    const void* hit = memmem(input.haystack.p(), static_cast<size_t>(input.haystack.size()),
                             input.needle.p(), static_cast<size_t>(input.needle.size()));
    const int found =
        hit ? static_cast<int>(static_cast<const unsigned char*>(hit) - input.haystack.p()) : -1;
    if (found != input.expected) abort();
    benchmark::DoNotOptimize(found);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

// Arguments: haystack size, needle size, DNA-like text (0 random bytes), match planted.
void searchArguments(benchmark::internal::Benchmark* b) {
  b->ArgNames({"size", "needle", "dna", "hit"});
  for (int size : {4096, 1 << 20}) {
    for (int needle : {8, 16}) {
      for (int dna : {0, 1}) {
        for (int hit : {1, 0}) b->Args({size, needle, dna, hit});
      }
    }
  }
}

BENCHMARK(BM_FindData)->Apply(searchArguments);
BENCHMARK(BM_Memmem)->Apply(searchArguments);

}  // namespace

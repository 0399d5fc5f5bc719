// hash_bench.cpp: TAnsiString::hashValue / hashValue64 beside plain reference implementations of
// the same two hash formats (the speed to match) and beside xxHash (XXH32, XXH64, XXH3_64bits),
// on 16 B, 256 B and 64 KiB inputs.

#include <benchmark/benchmark.h>
#include <stdint.h>
#include <string.h>
#include <xxhash.h>

#include <random>
#include <string>

#include "zeb/strings/TAnsiString.h"

namespace {

// Reference SuperFastHash, written the textbook way but reading bytes as signed chars (the
// format TAnsiString::hashValue keeps).
uint32_t referenceSuperFastHash(const char* data, int len) {
  if (data == nullptr || len <= 0) return 0;
  auto signedByte = [](char c) {
    return static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(c)));
  };
  auto get16bits = [&](const char* d) { return signedByte(d[0]) + (signedByte(d[1]) << 8); };
  uint32_t hash = static_cast<uint32_t>(len);
  const int rem = len & 3;
  for (len >>= 2; len > 0; len--) {
    hash += get16bits(data);
    const uint32_t tmp = (get16bits(data + 2) << 11) ^ hash;
    hash = (hash << 16) ^ tmp;
    data += 4;
    hash += hash >> 11;
  }
  switch (rem) {
    case 3:
      hash += get16bits(data);
      hash ^= hash << 16;
      hash ^= signedByte(data[2]) << 18;
      hash += hash >> 11;
      break;
    case 2:
      hash += get16bits(data);
      hash ^= hash << 11;
      hash += hash >> 17;
      break;
    case 1:
      hash += signedByte(data[0]);
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

// Reference MurmurHash64B with the seed TAnsiString::hashValue64 uses (words loaded with memcpy
// on a little-endian host).
uint64_t referenceMurmurHash64B(const char* key, int len) {
  if (key == nullptr || len <= 0) return 0;
  const uint32_t m = 0x5bd1e995;
  const int r = 24;
  uint32_t h1 = 0xEE6B27EBU ^ static_cast<uint32_t>(len);
  uint32_t h2 = 0;
  const unsigned char* data = reinterpret_cast<const unsigned char*>(key);
  auto nextWord = [&data] {
    uint32_t k;
    memcpy(&k, data, 4);
    data += 4;
    return k;
  };
  while (len >= 8) {
    uint32_t k1 = nextWord();
    k1 *= m;
    k1 ^= k1 >> r;
    k1 *= m;
    h1 *= m;
    h1 ^= k1;
    uint32_t k2 = nextWord();
    k2 *= m;
    k2 ^= k2 >> r;
    k2 *= m;
    h2 *= m;
    h2 ^= k2;
    len -= 8;
  }
  if (len >= 4) {
    uint32_t k1 = nextWord();
    k1 *= m;
    k1 ^= k1 >> r;
    k1 *= m;
    h1 *= m;
    h1 ^= k1;
    len -= 4;
  }
  switch (len) {
    case 3:
      h2 ^= static_cast<uint32_t>(data[2]) << 16;
      [[fallthrough]];
    case 2:
      h2 ^= static_cast<uint32_t>(data[1]) << 8;
      [[fallthrough]];
    case 1:
      h2 ^= data[0];
      h2 *= m;
  }
  h1 ^= h2 >> 18;
  h1 *= m;
  h2 ^= h1 >> 22;
  h2 *= m;
  h1 ^= h2 >> 17;
  h1 *= m;
  h2 ^= h1 >> 19;
  h2 *= m;
  return (static_cast<uint64_t>(h1) << 32) | h2;
}

// Bytes of every value, high ones included (they take the signed path of the 32-bit hash).
std::string randomBytes(size_t size) {
  std::mt19937 random(42);
  std::string bytes(size, '\0');
  for (char& c : bytes) c = static_cast<char>(random());
  return bytes;
}

template <typename Hash>
void BM_Hash(benchmark::State& state, Hash hash) {
  const std::string input = randomBytes(static_cast<size_t>(state.range(0)));
  const int len = static_cast<int>(input.size());
  for (auto _ : state) benchmark::DoNotOptimize(hash(input.data(), len));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * len);
}

// Our hashes must give the reference values; a mismatch fails the benchmark instead of timing it.
template <typename Hash, typename Reference>
void BM_HashChecked(benchmark::State& state, Hash hash, Reference reference) {
  const std::string input = randomBytes(static_cast<size_t>(state.range(0)));
  const int len = static_cast<int>(input.size());
  if (hash(input.data(), len) != reference(input.data(), len)) {
    state.SkipWithError("differs from the reference implementation");
    return;
  }
  BM_Hash(state, hash);
}

uint32_t ourHash32(const char* s, int len) {
  return TAnsiString::hashValue(s, len);
}
uint64_t ourHash64(const char* s, int len) {
  return TAnsiString::hashValue64(s, len);
}
uint32_t xxh32(const char* s, int len) {
  return XXH32(s, static_cast<size_t>(len), 0);
}
uint64_t xxh64(const char* s, int len) {
  return XXH64(s, static_cast<size_t>(len), 0);
}
uint64_t xxh3(const char* s, int len) {
  return XXH3_64bits(s, static_cast<size_t>(len));
}

#define HASH_SIZES Arg(16)->Arg(256)->Arg(64 << 10)

BENCHMARK_CAPTURE(BM_HashChecked, hashValue, ourHash32, referenceSuperFastHash)->HASH_SIZES;
BENCHMARK_CAPTURE(BM_Hash, referenceSuperFastHash, referenceSuperFastHash)->HASH_SIZES;
BENCHMARK_CAPTURE(BM_HashChecked, hashValue64, ourHash64, referenceMurmurHash64B)->HASH_SIZES;
BENCHMARK_CAPTURE(BM_Hash, referenceMurmurHash64B, referenceMurmurHash64B)->HASH_SIZES;
BENCHMARK_CAPTURE(BM_Hash, XXH32, xxh32)->HASH_SIZES;
BENCHMARK_CAPTURE(BM_Hash, XXH64, xxh64)->HASH_SIZES;
BENCHMARK_CAPTURE(BM_Hash, XXH3_64bits, xxh3)->HASH_SIZES;

}  // namespace

// TStrSimilar::distance and similarity_proportion against a plain two-row Levenshtein programme
// (letters folded, as the library compares), at lengths 8, 32, 256 and 1000. The pairs are
// random letter strings of the same length with nothing in common at either end, so the
// library's prefix and suffix stripping saves nothing. Each benchmark checks its result against
// the plain programme once.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "testing/plain_levenshtein.h"
#include "zeb/formats/TStrSimilar.h"

namespace {

using zeb::testing::plainLevenshtein;

struct Pair {
  std::string a, b;
};

Pair randomPair(size_t n) {
  std::mt19937 random(static_cast<unsigned>(n));
  Pair p{std::string(n, ' '), std::string(n, ' ')};
  for (size_t i = 0; i < n; ++i) {
    p.a[i] = static_cast<char>('a' + random() % 8);
    p.b[i] = static_cast<char>('a' + random() % 8);
  }
  p.a.front() = 'x', p.b.front() = 'y', p.a.back() = 'x', p.b.back() = 'y';
  return p;
}

void checkDistance(const Pair& p, unsigned ours) {
  std::vector<unsigned> prev, row;
  if (ours != plainLevenshtein(p.a, p.b, prev, row)) abort();
}

void BM_Distance_Ours(benchmark::State& state) {
  const Pair p = randomPair(static_cast<size_t>(state.range(0)));
  TStrSimilar similar;
  unsigned d = 0;
  for (auto _ : state) benchmark::DoNotOptimize(d = similar.distance(p.a.c_str(), p.b.c_str(), 0));
  checkDistance(p, d);
}

void BM_Distance_Plain(benchmark::State& state) {
  const Pair p = randomPair(static_cast<size_t>(state.range(0)));
  std::vector<unsigned> prev, row;
  for (auto _ : state) benchmark::DoNotOptimize(plainLevenshtein(p.a, p.b, prev, row));
}

void BM_Proportion_Ours(benchmark::State& state) {
  const Pair p = randomPair(static_cast<size_t>(state.range(0)));
  TStrSimilar similar;
  for (auto _ : state)
    benchmark::DoNotOptimize(similar.similarity_proportion(p.a.c_str(), p.b.c_str()));
}

void BM_Proportion_Plain(benchmark::State& state) {
  const Pair p = randomPair(static_cast<size_t>(state.range(0)));
  std::vector<unsigned> prev, row;
  for (auto _ : state) {
    const unsigned n = static_cast<unsigned>(std::max(p.a.size(), p.b.size()));
    benchmark::DoNotOptimize((n - plainLevenshtein(p.a, p.b, prev, row)) * 100 / n);
  }
}

#define ZEB_LENGTHS ->Arg(8)->Arg(32)->Arg(256)->Arg(1000)
BENCHMARK(BM_Distance_Ours) ZEB_LENGTHS;
BENCHMARK(BM_Distance_Plain) ZEB_LENGTHS;
BENCHMARK(BM_Proportion_Ours) ZEB_LENGTHS;
BENCHMARK(BM_Proportion_Plain) ZEB_LENGTHS;

}  // namespace

// Data bundle hot paths beside std::unordered_map<std::string, ...> holding the same values:
//   - put and get of 100,000 int64 keys ("key<n>");
//   - copying and comparing a bundle of 10,000 mixed items (texts, bytes, nested bundles of
//     four items), against a map of std::variant values doing the same work.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

#include "zeb/data/tdatabundle.h"

namespace {

const int kKeys = 100000;
const int kMixedItems = 10000;

std::vector<std::string> makeKeys(int n) {
  std::vector<std::string> keys;
  keys.reserve(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) keys.push_back("key" + std::to_string(i));
  return keys;
}

// ---- put and get -------------------------------------------------------------------------------

void BM_Bundle_Put(benchmark::State& state) {
  const auto keys = makeKeys(kKeys);
  for (auto _ : state) {
    tdatabundle bundle;
    for (int i = 0; i < kKeys; ++i) bundle.putInt64(keys[static_cast<size_t>(i)].c_str(), i);
    benchmark::DoNotOptimize(bundle.itemsCount());
  }
  state.SetItemsProcessed(state.iterations() * kKeys);
}

void BM_UnorderedMap_Put(benchmark::State& state) {
  const auto keys = makeKeys(kKeys);
  for (auto _ : state) {
    std::unordered_map<std::string, long long> map;
    for (int i = 0; i < kKeys; ++i) map.try_emplace(keys[static_cast<size_t>(i)].c_str(), i);
    benchmark::DoNotOptimize(map.size());
  }
  state.SetItemsProcessed(state.iterations() * kKeys);
}

void BM_Bundle_Get(benchmark::State& state) {
  const auto keys = makeKeys(kKeys);
  tdatabundle bundle;
  for (int i = 0; i < kKeys; ++i) bundle.putInt64(keys[static_cast<size_t>(i)].c_str(), i);
  for (auto _ : state) {
    long long sum = 0;
    for (const std::string& key : keys) sum += bundle.getInt64(key.c_str());
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kKeys);
}

void BM_UnorderedMap_Get(benchmark::State& state) {
  const auto keys = makeKeys(kKeys);
  std::unordered_map<std::string, long long> map;
  for (int i = 0; i < kKeys; ++i) map.try_emplace(keys[static_cast<size_t>(i)], i);
  for (auto _ : state) {
    long long sum = 0;
    for (const std::string& key : keys) {
      const auto it = map.find(key.c_str());
      sum += it != map.end() ? it->second : 0;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kKeys);
}

// ---- copy and compare of mixed items
// -------------------------------------------------------------

tdatabundle mixedBundle() {
  const auto keys = makeKeys(kMixedItems);
  tdatabundle bundle;
  for (int i = 0; i < kMixedItems; ++i) {
    const char* key = keys[static_cast<size_t>(i)].c_str();
    const std::string text = "value number " + std::to_string(i);
    switch (i % 3) {
      case 0:
        bundle.putString(key, text.c_str());
        break;
      case 1:
        bundle.putBytesData(key, tbytesdata(text.data(), static_cast<int>(text.size())));
        break;
      default: {
        tdatabundle nested;
        nested.putInt64("id", i);
        nested.putString("text", text.c_str());
        nested.putBytesData("raw", tbytesdata(text.data(), 8));
        nested.putBoolean("flag", i % 2 == 0);
        bundle.putDataBundle(key, nested);
      }
    }
  }
  return bundle;
}

using NestedMap =
    std::unordered_map<std::string,
                       std::variant<long long, std::string, std::vector<unsigned char>>>;
using MixedValue = std::variant<std::string, std::vector<unsigned char>, NestedMap>;
using MixedMap = std::unordered_map<std::string, MixedValue>;

MixedMap mixedMap() {
  const auto keys = makeKeys(kMixedItems);
  MixedMap map;
  for (int i = 0; i < kMixedItems; ++i) {
    const std::string text = "value number " + std::to_string(i);
    switch (i % 3) {
      case 0:
        map.try_emplace(keys[static_cast<size_t>(i)], text);
        break;
      case 1:
        map.try_emplace(keys[static_cast<size_t>(i)],
                        std::vector<unsigned char>(text.begin(), text.end()));
        break;
      default: {
        NestedMap nested;
        nested.try_emplace("id", static_cast<long long>(i));
        nested.try_emplace("text", text);
        nested.try_emplace("raw", std::vector<unsigned char>(text.begin(), text.begin() + 8));
        nested.try_emplace("flag", static_cast<long long>(i % 2 == 0));
        map.try_emplace(keys[static_cast<size_t>(i)], std::move(nested));
      }
    }
  }
  return map;
}

// The same work on either container: one copy, or one comparison of two equal containers.
template <typename Container, Container (*make)()>
void BM_CopyMixed(benchmark::State& state) {
  const Container source = make();
  for (auto _ : state) {
    Container copy(source);
    benchmark::DoNotOptimize(&copy);
  }
  state.SetItemsProcessed(state.iterations() * kMixedItems);
}

template <typename Container, Container (*make)()>
void BM_CompareMixed(benchmark::State& state) {
  const Container a = make();
  const Container b = make();
  benchmark::DoNotOptimize(&a);
  benchmark::DoNotOptimize(&b);
  for (auto _ : state) {
    benchmark::ClobberMemory();
    if (!(a == b)) std::abort();
  }
  state.SetItemsProcessed(state.iterations() * kMixedItems);
}

}  // namespace

BENCHMARK(BM_Bundle_Put)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UnorderedMap_Put)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Bundle_Get)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UnorderedMap_Get)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_CopyMixed, tdatabundle, mixedBundle)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_CopyMixed, MixedMap, mixedMap)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_CompareMixed, tdatabundle, mixedBundle)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_CompareMixed, MixedMap, mixedMap)->Unit(benchmark::kMillisecond);

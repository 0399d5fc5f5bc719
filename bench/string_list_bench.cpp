// Joining and splitting 100,000 items: TAnsiStrings::text and setText2 against a join and a split
// of std::string written here (a reserved std::string, and a vector<std::string> cut with
// find_first_of).
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "zeb/strings/TAnsiStrings.h"

namespace {

constexpr int kItems = 100000;

// Items of 1 to 10 bytes, such as "ite12345".
std::vector<std::string> sampleItems() {
  std::vector<std::string> out;
  out.reserve(kItems);
  for (int i = 0; i < kItems; ++i)
    out.push_back(std::string("item").substr(0, i % 5) + std::to_string(i));
  return out;
}

std::string joinedText() {
  std::string text;
  for (const std::string& item : sampleItems()) {
    if (!text.empty()) text.push_back(',');
    text += item;
  }
  return text;
}

void TextJoin(benchmark::State& state) {
  TAnsiStrings list;
  for (const std::string& item : sampleItems()) list.add(item.c_str());
  for (auto _ : state) benchmark::DoNotOptimize(list.text(','));
  state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(TextJoin);

void StdStringJoin(benchmark::State& state) {
  const std::vector<std::string> items = sampleItems();
  for (auto _ : state) {
    std::string out;
    for (size_t i = 0; i < items.size(); ++i) {
      if (i > 0) out.push_back(',');
      out += items[i];
    }
    benchmark::DoNotOptimize(out);
  }
  state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(StdStringJoin);

void SetText2Split(benchmark::State& state) {
  const std::string text = joinedText();
  TAnsiStrings list;
  for (auto _ : state) benchmark::DoNotOptimize(list.setText2(text.c_str(), ",", false));
  state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(SetText2Split);

void StdStringSplit(benchmark::State& state) {
  const std::string text = joinedText();
  std::vector<std::string> items;
  for (auto _ : state) {
    items.clear();
    size_t start = 0;
    for (;;) {
      const size_t end = text.find_first_of(",", start);
      items.emplace_back(text, start, end == std::string::npos ? std::string::npos : end - start);
      if (end == std::string::npos) break;
      start = end + 1;
    }
    benchmark::DoNotOptimize(items.data());
  }
  state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(StdStringSplit);

}  // namespace

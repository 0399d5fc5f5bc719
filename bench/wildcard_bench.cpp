// Wildcard matching against glibc fnmatch (flags 0). The inputs avoid '[' and '\\', which
// fnmatch treats specially and our matchers take literally.
#include <benchmark/benchmark.h>
#include <fnmatch.h>

#include <string>
#include <utility>
#include <vector>

#include "zeb/strings/wildcard.h"

namespace {

using Matcher = bool (*)(const char* text, const char* pattern);
using Inputs = std::vector<std::pair<std::string, std::string>>;  // (text, pattern)

bool fnmatchAdapter(const char* text, const char* pattern) {
  return fnmatch(pattern, text, 0) == 0;
}

const Inputs& fileNames() {
  static const Inputs inputs = {
      {"report-2024-11.csv", "report-*.csv"},
      {"report-2024-11.csv", "*.txt"},
      {"report-2024-11.csv", "?eport*2024*"},
      {"notes.txt", "*.txt"},
      {"IMG_20240611_093015.jpg", "IMG_????????_*.jpg"},
      {"archive.tar.gz", "*.tar.*"},
      {"Makefile", "Make*"},
      {"readme.md", "*read*me*.md"},
  };
  return inputs;
}

const Inputs& manyStars() {
  static const Inputs inputs = {
      {std::string(40, 'a'), "*a*a*a*a*a*b"},
      {std::string(100, 'a'), "*a*a*a*a*a*b"},
      {std::string(100, 'a'), "*a*a*a*a*a*b*"},
      {std::string(60, 'a') + "b", "*a*a*a*a*a*b"},
  };
  return inputs;
}

void runMatcher(benchmark::State& state, Matcher match, const Inputs& (*inputs)()) {
  const Inputs& cases = inputs();
  for (auto _ : state) {
    for (const auto& [text, pattern] : cases) {
      benchmark::DoNotOptimize(match(text.c_str(), pattern.c_str()));
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(cases.size()));
}

BENCHMARK_CAPTURE(runMatcher, FileNames_wildcardMatch, wildcardMatch, fileNames);
BENCHMARK_CAPTURE(runMatcher, FileNames_wildcardMatchNormal, wildcardMatchNormal, fileNames);
BENCHMARK_CAPTURE(runMatcher, FileNames_fnmatch, fnmatchAdapter, fileNames);
BENCHMARK_CAPTURE(runMatcher, ManyStars_wildcardMatch, wildcardMatch, manyStars);
BENCHMARK_CAPTURE(runMatcher, ManyStars_wildcardMatchNormal, wildcardMatchNormal, manyStars);
BENCHMARK_CAPTURE(runMatcher, ManyStars_fnmatch, fnmatchAdapter, manyStars);

}  // namespace

// copyfolder beside `cp -r` on the same tree: 10,000 small files (100 folders of 100 files,
// 64 to 4,159 bytes each) in a temporary folder, copied to a fresh destination per iteration (the
// destination is removed outside the timing). Both read the tree from the page cache.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "testing/temp_dir.h"
#include "zeb/strings/TWideString.h"
#include "zeb/utils/tfileutils.h"

namespace {

namespace fs = std::filesystem;

constexpr int kFolders = 100;
constexpr int kFilesPerFolder = 100;

// The shared source tree, built once.
const zeb::testing::TempDir& sourceTree() {
  static const zeb::testing::TempDir* const tree = [] {
    auto* dir = new zeb::testing::TempDir;
    const std::string filler(4160, 'x');
    for (int f = 0; f < kFolders; ++f) {
      const fs::path folder = fs::path(dir->path()) / "src" / ("folder" + std::to_string(f));
      fs::create_directories(folder);
      for (int i = 0; i < kFilesPerFolder; ++i) {
        std::ofstream(folder / ("file" + std::to_string(i) + ".dat"), std::ios::binary)
            << filler.substr(0, 64 + static_cast<std::size_t>((f * 131 + i * 17) % 4096));
      }
    }
    return dir;
  }();
  return *tree;
}

template <typename Copy>
void runCopies(benchmark::State& state, Copy copy) {
  const std::string src = sourceTree().path() + "/src";
  const std::string dst = sourceTree().path() + "/dst";
  for (auto _ : state) {
    if (!copy(src, dst)) state.SkipWithError("copy failed");
    state.PauseTiming();
    fs::remove_all(dst);
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kFolders * kFilesPerFolder);
}

void BM_CopyFolder(benchmark::State& state) {
  runCopies(state, [](const std::string& src, const std::string& dst) {
    TWideString from, to;
    from.fromUTF8(src.c_str());
    to.fromUTF8(dst.c_str());
    return copyfolder(from.p(), to.p(), true, nullptr) == kFolders * kFilesPerFolder;
  });
}

void BM_CpR(benchmark::State& state) {
  runCopies(state, [](const std::string& src, const std::string& dst) {
    return std::system(("cp -r '" + src + "' '" + dst + "'").c_str()) == 0;
  });
}

BENCHMARK(BM_CopyFolder)->Iterations(5)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CpR)->Iterations(5)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

// Loading and saving a 300 KB INI file of 10,000 keys (100 sections of 100 keys, a comment every
// ten keys): TIniFile::load and saveas against inih's ini_parse (load only) and SimpleIni's
// LoadFile and SaveFile (bytes taken as they are on every side).
#define SI_NO_CONVERSION
#include <SimpleIni.h>
#include <benchmark/benchmark.h>
#include <ini.h>

#include <string>

#include "testing/temp_dir.h"
#include "zeb/utils/TIniFile.h"

namespace {

// The sample text: 100 sections of 100 keys, a comment every ten keys.
std::string sampleText() {
  std::string text = "; generated settings\n";
  for (int s = 0; s < 100; ++s) {
    text += "[section" + std::to_string(s) + "]\n";
    for (int k = 0; k < 100; ++k) {
      if (k % 10 == 0) text += "# group " + std::to_string(k / 10) + "\n";
      text += "key" + std::to_string(k) + " = value number " + std::to_string(s * 100 + k) + "\n";
    }
  }
  return text;
}

// A file in a temporary folder holding the sample text, and where saves go; removed at exit.
class SampleFile {
 public:
  SampleFile() : path_(folder_.filePath("sample.ini")), out_(folder_.filePath("out.ini")) {
    const std::string text = sampleText();
    folder_.writeFile("sample.ini", text);
    size_ = text.size();
  }
  const std::string& path() const { return path_; }
  const std::string& out() const { return out_; }
  size_t size() const { return size_; }

 private:
  zeb::testing::TempDir folder_;
  std::string path_, out_;
  size_t size_ = 0;
};

const SampleFile& sample() {
  static const SampleFile file;
  return file;
}

void ZebLoad(benchmark::State& state) {
  for (auto _ : state) {
    zeb::TIniFile ini;
    benchmark::DoNotOptimize(ini.load(sample().path()));
  }
  state.SetBytesProcessed(state.iterations() * sample().size());
}
BENCHMARK(ZebLoad)->Unit(benchmark::kMillisecond);

int countEntry(void* user, const char*, const char*, const char*) {
  ++*static_cast<int*>(user);
  return 1;
}

void InihLoad(benchmark::State& state) {
  for (auto _ : state) {
    int entries = 0;
    benchmark::DoNotOptimize(ini_parse(sample().path().c_str(), countEntry, &entries));
  }
  state.SetBytesProcessed(state.iterations() * sample().size());
}
BENCHMARK(InihLoad)->Unit(benchmark::kMillisecond);

void SimpleIniLoad(benchmark::State& state) {
  for (auto _ : state) {
    CSimpleIniA ini(false, true, false);
    benchmark::DoNotOptimize(ini.LoadFile(sample().path().c_str()));
  }
  state.SetBytesProcessed(state.iterations() * sample().size());
}
BENCHMARK(SimpleIniLoad)->Unit(benchmark::kMillisecond);

void ZebSave(benchmark::State& state) {
  zeb::TIniFile ini;
  ini.load(sample().path());
  for (auto _ : state) benchmark::DoNotOptimize(ini.saveas(sample().out()));
  state.SetBytesProcessed(state.iterations() * sample().size());
}
BENCHMARK(ZebSave)->Unit(benchmark::kMillisecond);

void SimpleIniSave(benchmark::State& state) {
  CSimpleIniA ini(false, true, false);
  ini.LoadFile(sample().path().c_str());
  for (auto _ : state) benchmark::DoNotOptimize(ini.SaveFile(sample().out().c_str()));
  state.SetBytesProcessed(state.iterations() * sample().size());
}
BENCHMARK(SimpleIniSave)->Unit(benchmark::kMillisecond);

}  // namespace

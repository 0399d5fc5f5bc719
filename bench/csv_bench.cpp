// Walking a 16 MiB CSV text with empty callbacks: TCsvFileReader::openFromMem against libcsv's
// csv_parse. The text mixes plain fields with quoted ones holding commas, doubled quotes and
// line breaks.
#include <benchmark/benchmark.h>
#include <csv.h>

#include <string>

#include "zeb/formats/TCsvFileReader.h"

namespace {

const std::string& sampleText() {
  static const std::string text = [] {
    const char* const records[] = {
        "1024,Zhang San,\"Beijing, Haidian\",2024-06-01,18.50\r\n",
        "1025,\"O\"\"Brien\",Dublin,2024-06-02,7.25\r\n",
        "1026,Li Si,\"two\r\nlines\",2024-06-03,1200.00\r\n",
        "1027,plain,fields,only,here\r\n",
    };
    std::string out;
    for (int i = 0; out.size() < (16u << 20); ++i) out += records[i % 4];
    return out;
  }();
  return text;
}

struct EmptyCallbacks : TCsvFileReader::tcallbacks {
  int onReadItem(int, int, const char*) override { return 0; }
};

void OpenFromMem(benchmark::State& state) {
  const std::string& text = sampleText();
  EmptyCallbacks callbacks;
  TCsvFileReader reader(&callbacks);
  for (auto _ : state) benchmark::DoNotOptimize(reader.openFromMem(text.c_str()));
  state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(OpenFromMem)->Unit(benchmark::kMillisecond);

void onField(void*, size_t, void*) {}
void onRecord(int, void*) {}

void LibcsvParse(benchmark::State& state) {
  const std::string& text = sampleText();
  for (auto _ : state) {
    csv_parser parser;
    csv_init(&parser, 0);
    benchmark::DoNotOptimize(csv_parse(&parser, text.data(), text.size(), onField, onRecord, nullptr));
    csv_fini(&parser, onField, onRecord, nullptr);
    csv_free(&parser);
  }
  state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(LibcsvParse)->Unit(benchmark::kMillisecond);

}  // namespace

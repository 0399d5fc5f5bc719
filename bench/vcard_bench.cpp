// vCard reading benchmark: tvcardfile::readText over a 10 MiB address book of 3.0 cards (folded
// lines, escapes, several TEL and EMAIL properties, a small BASE64 photo in every tenth card) and
// 2.1 cards (GB2312 quoted-printable names), beside the floor: one memchr pass that finds every
// line and its first ':', the least any reader of the format does. Throughput in input bytes.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "zeb/formats/tvcard.h"

namespace {

std::string card30(int n) {
  std::string id = std::to_string(n);
  std::string card =
      "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Person Number " + id + "\r\nN:Number;Person;" + id +
      ";;\r\nORG:Example Corporation\\, Ltd.;Research\r\nTITLE:Engineer\r\n"
      "TEL;TYPE=WORK,VOICE:+1-555-010-" + id + "\r\nTEL;TYPE=CELL:+1-555-020-" + id +
      "\r\nEMAIL;TYPE=INTERNET,PREF:person" + id + "@example.com\r\n"
      "ADR;TYPE=HOME:;;" + id + " Long Street Name Avenue;Springfield;IL;62701;United States of Am\r\n"
      " erica\r\nNOTE:Met at the conference\\; follow up\\nabout the project in spring\r\n";
  if (n % 10 == 0) {
    card += "PHOTO;ENCODING=b;TYPE=JPEG:";
    for (int i = 0; i < 8; ++i) card += (i ? "\r\n " : "") + std::string(72, 'Q');
    card += "\r\n";
  }
  return card + "END:VCARD\r\n";
}

std::string card21(int n) {
  return "BEGIN:VCARD\r\nVERSION:2.1\r\n"
         "N;CHARSET=GB2312;ENCODING=QUOTED-PRINTABLE:=D5=C5;=C8=FD\r\n"
         "FN;CHARSET=GB2312;ENCODING=QUOTED-PRINTABLE:=D5=C5=C8=FD\r\n"
         "TEL;CELL:1380013" + std::to_string(n) + "\r\nEND:VCARD\r\n";
}

const std::string& addressBook() {
  static const std::string book = [] {
    std::string text;
    for (int n = 0; text.size() < (10u << 20); ++n) text += n % 4 == 3 ? card21(n) : card30(n);
    return text;
  }();
  return book;
}

void BM_VCardReadText(benchmark::State& state) {
  const std::string& text = addressBook();
  tvcardfile book;
  for (auto _ : state) {
    benchmark::DoNotOptimize(book.readText(text.data(), static_cast<int>(text.size())));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_VCardReadText)->Unit(benchmark::kMillisecond);

void BM_LineAndColonScanFloor(benchmark::State& state) {
  const std::string& text = addressBook();
  for (auto _ : state) {
    size_t colons = 0;
    for (const char* p = text.data(); p < text.data() + text.size();) {
      const char* end = static_cast<const char*>(std::memchr(p, '\n', text.data() + text.size() - p));
      if (end == nullptr) end = text.data() + text.size();
      colons += std::memchr(p, ':', end - p) != nullptr;
      p = end + 1;
    }
    benchmark::DoNotOptimize(colons);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_LineAndColonScanFloor)->Unit(benchmark::kMillisecond);

}  // namespace

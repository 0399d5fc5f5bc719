// Pinyin benchmarks: Chinese names and phrases to tone-marked pinyin with
// zeb::TPinyinWrapper::fromUTF16 and fromUTF8, beside ICU's Han-Latin transliterator on the same
// UTF-16 text. Throughput is counted in Han characters per second.
#include <benchmark/benchmark.h>
#include <unicode/translit.h>
#include <unicode/unistr.h>

#include <memory>
#include <string>

#include "zeb/formats/TPinyinWrapper.h"
#include "zeb/strings/TWideString.h"

namespace {

// About a thousand Han characters of names and phrases, some separated by spaces.
const char kSample[] =
    "张伟 王芳 李娜 刘洋 陈静 杨帆 赵磊 黄勇 周杰 吴敏 徐丽 孙强 马超 朱婷 胡军 郭靖 何平 林涛 "
    "中华人民共和国 北京大学 上海交通大学 长江三角洲 重庆火锅 银行行长 音乐会 快乐 单位 曾经 ";

constexpr int kRepeats = 24;

std::string sampleUtf8() {
  std::string text;
  for (int i = 0; i < kRepeats; ++i) text += kSample;
  return text;
}

int64_t hanCount(const std::string& utf8) {
  int64_t count = 0;
  for (unsigned char c : utf8) count += c >= 0xE0;  // every sample character is 3 bytes
  return count;
}

void BM_PinyinFromUTF16(benchmark::State& state) {
  const std::string utf8 = sampleUtf8();
  TWideString wide;
  wide.fromUTF8(utf8.c_str());
  for (auto _ : state) {
    TWideString out = zeb::TPinyinWrapper::fromUTF16(wide.p(), wide.length());
    benchmark::DoNotOptimize(out.p());
  }
  state.SetItemsProcessed(state.iterations() * hanCount(utf8));
}
BENCHMARK(BM_PinyinFromUTF16);

void BM_PinyinFromUTF8(benchmark::State& state) {
  const std::string utf8 = sampleUtf8();
  for (auto _ : state) {
    TAnsiString out = zeb::TPinyinWrapper::fromUTF8(utf8.data(), static_cast<int>(utf8.size()));
    benchmark::DoNotOptimize(out.p());
  }
  state.SetItemsProcessed(state.iterations() * hanCount(utf8));
}
BENCHMARK(BM_PinyinFromUTF8);

void BM_IcuHanLatin(benchmark::State& state) {
  const std::string utf8 = sampleUtf8();
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Transliterator> hanLatin(
      icu::Transliterator::createInstance("Han-Latin", UTRANS_FORWARD, status));
  if (U_FAILURE(status)) {
    state.SkipWithError("ICU has no Han-Latin transliterator");
    return;
  }
  const icu::UnicodeString text = icu::UnicodeString::fromUTF8(utf8);
  for (auto _ : state) {
    icu::UnicodeString out(text);
    hanLatin->transliterate(out);
    benchmark::DoNotOptimize(out.getBuffer());
  }
  state.SetItemsProcessed(state.iterations() * hanCount(utf8));
}
BENCHMARK(BM_IcuHanLatin);

}  // namespace

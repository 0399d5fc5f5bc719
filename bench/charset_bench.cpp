// Charset conversion benchmarks: each library function beside one raw iconv call on a converter
// opened in advance (the floor for the conversions iconv does: the library adds argument checks,
// the converter cache and the zero-fill around exactly that call) and beside ICU. Inputs are mixed
// ASCII and CJK text of 48 bytes, 1 KiB and 1 MiB (measured in UTF-8), in the source charset of
// each conversion; UTF-8 <-> UTF-16, which the library does itself, also runs on ASCII-only and
// CJK-only text (the second argument: 0 ASCII, 1 mixed, 2 CJK), with ICU's u_strFromUTF8 and
// u_strToUTF8 as the second anchor. The string members TWideString::fromUTF8 and
// TAnsiString::fromWideString(..., 106) stand beside the same anchors; unlike them they allocate
// their result (and free the previous one) on every call.
#include <benchmark/benchmark.h>
#include <iconv.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "zeb/charset/zeb_charset.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"

namespace {

using WString = std::basic_string<zwchar_t>;

// One raw iconv call over the whole input; the converter is opened by the caller.
size_t iconvOnce(iconv_t cd, const void* in, size_t inBytes, void* out, size_t outBytes) {
  char* src = const_cast<char*>(static_cast<const char*>(in));
  char* dst = static_cast<char*>(out);
  size_t dstLeft = outBytes;
  iconv(cd, &src, &inBytes, &dst, &dstLeft);
  return outBytes - dstLeft;
}

std::string convertWithIconv(const char* to, const char* from, const std::string& in) {
  const iconv_t cd = iconv_open(to, from);
  if (cd == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error("iconv_open failed");
  std::string out(4 * in.size() + 4, '\0');
  out.resize(iconvOnce(cd, in.data(), in.size(), &out[0], out.size()));
  iconv_close(cd);
  return out;
}

// The same text in the charsets the conversions start from.
struct Texts {
  std::string utf8;
  std::string gb18030;
  WString utf16;
};

enum TextKind { kAscii, kMixed, kCjk };

// Pieces of text of each kind; all the CJK is in GB2312.
const std::vector<std::string>& piecesOf(TextKind kind) {
  static const std::vector<std::string> kPieces[] = {
      {"Report ", "C:/Users/data/", " 2024-05-01, ", "value=42", " ok; ", "[item 7] "},
      {"Report ", "中文", " 2024-05-01, ", "数据", "处理", " ok; ", "你好", "世界", " [item 42] ",
       "编码"},
      {"中文", "数据", "处理", "你好", "世界", "编码"},
  };
  return kPieces[kind];
}

// Pieces of `kind` one after the other, cut at a character boundary to at most `bytes`.
std::string textUtf8(size_t bytes, TextKind kind) {
  const std::vector<std::string>& pieces = piecesOf(kind);
  std::string text;
  for (size_t i = 0;; ++i) {
    const std::string& piece = pieces[i % pieces.size()];
    if (text.size() + piece.size() > bytes) break;
    text += piece;
  }
  return text;
}

const Texts& textsOf(size_t bytes, TextKind kind) {
  static std::map<std::pair<size_t, TextKind>, Texts> cache;
  auto it = cache.find({bytes, kind});
  if (it == cache.end()) {
    Texts texts;
    texts.utf8 = textUtf8(bytes, kind);
    texts.gb18030 = convertWithIconv("GB18030", "UTF-8", texts.utf8);
    const std::string utf16 = convertWithIconv("UTF-16LE", "UTF-8", texts.utf8);
    texts.utf16.assign(reinterpret_cast<const zwchar_t*>(utf16.data()), utf16.size() / 2);
    it = cache.emplace(std::make_pair(bytes, kind), std::move(texts)).first;
  }
  return it->second;
}

// A conversion benchmarked three ways: its input, the output size the library documents, the
// library call, and the iconv and ICU names of both sides.
struct Conversion {
  const char* iconvTo;
  const char* iconvFrom;
  const char* icuTo;
  const char* icuFrom;
  const void* (*input)(const Texts&, size_t* bytes);
  size_t (*outputBytes)(size_t inBytes);
  int (*library)(const Texts&, void* out, size_t outBytes);
};

const void* utf8Input(const Texts& t, size_t* bytes) {
  *bytes = t.utf8.size();
  return t.utf8.c_str();
}
const void* gb18030Input(const Texts& t, size_t* bytes) {
  *bytes = t.gb18030.size();
  return t.gb18030.c_str();
}
const void* utf16Input(const Texts& t, size_t* bytes) {
  *bytes = t.utf16.size() * sizeof(zwchar_t);
  return t.utf16.c_str();
}

size_t eightBitOutput(size_t inBytes) {
  return 3 * inBytes + 1;
}
size_t eightBitFromUtf16Output(size_t inBytes) {
  return 3 * (inBytes / sizeof(zwchar_t)) + 1;
}
size_t utf16Output(size_t inBytes) {
  return (2 * inBytes + 4) * sizeof(zwchar_t);
}

int libraryGb18030ToUtf8(const Texts& t, void* out, size_t outBytes) {
  return StrGB18030ToUTF8(static_cast<char*>(out), static_cast<int>(outBytes), t.gb18030.c_str());
}
int libraryUtf8ToGb2312(const Texts& t, void* out, size_t outBytes) {
  return StrUTF8ToGB2312(static_cast<char*>(out), static_cast<int>(outBytes), t.utf8.data(),
                         static_cast<int>(t.utf8.size()));
}
int libraryUtf8ToUtf16(const Texts& t, void* out, size_t outBytes) {
  return StrUtf8ToUnicode(static_cast<zwchar_t*>(out),
                          static_cast<int>(outBytes / sizeof(zwchar_t)), t.utf8.data(),
                          static_cast<int>(t.utf8.size()));
}
int libraryUtf16ToUtf8(const Texts& t, void* out, size_t outBytes) {
  return StrUnicodeToUtf8(static_cast<char*>(out), static_cast<int>(outBytes), t.utf16.c_str());
}

const Conversion kGb18030ToUtf8{"UTF-8//IGNORE",     "gb18030",    "UTF-8",
                                "GB18030",           gb18030Input, eightBitOutput,
                                libraryGb18030ToUtf8};
const Conversion kUtf8ToGb2312{"gb2312//IGNORE", "UTF-8",        "GB2312",           "UTF-8",
                               utf8Input,        eightBitOutput, libraryUtf8ToGb2312};
const Conversion kUtf8ToUtf16{"UTF-16LE//IGNORE", "UTF-8",     nullptr,           nullptr,
                              utf8Input,          utf16Output, libraryUtf8ToUtf16};
const Conversion kUtf16ToUtf8{"UTF-8//IGNORE",   "UTF-16LE", nullptr,
                              nullptr,           utf16Input, eightBitFromUtf16Output,
                              libraryUtf16ToUtf8};

// Runs `convert(in, inBytes, out, outBytes)` over the conversion's input of state.range(0) bytes
// of the kind state.range(1).
template <typename Convert>
void runConversion(benchmark::State& state, const Conversion& c, Convert&& convert) {
  const Texts& texts =
      textsOf(static_cast<size_t>(state.range(0)), static_cast<TextKind>(state.range(1)));
  size_t inBytes = 0;
  const void* in = c.input(texts, &inBytes);
  std::vector<char> out(c.outputBytes(inBytes));  // operator new: aligned for zwchar_t output
  if (convert(texts, in, inBytes, out.data(), out.size()) <= 0) {
    state.SkipWithError("the conversion failed");
    return;
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(convert(texts, in, inBytes, out.data(), out.size()));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * inBytes));
}

void BM_Library(benchmark::State& state, const Conversion& c) {
  runConversion(state, c, [&](const Texts& t, const void*, size_t, void* out, size_t outBytes) {
    return c.library(t, out, outBytes);
  });
}

void BM_RawIconv(benchmark::State& state, const Conversion& c) {
  const iconv_t cd = iconv_open(c.iconvTo, c.iconvFrom);
  runConversion(state, c,
                [&](const Texts&, const void* in, size_t inBytes, void* out, size_t outBytes) {
                  return iconvOnce(cd, in, inBytes, out, outBytes);
                });
  iconv_close(cd);
}

using IcuConverter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

IcuConverter openIcu(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  IcuConverter converter(ucnv_open(name, &error), &ucnv_close);
  if (U_FAILURE(error)) throw std::runtime_error(u_errorName(error));
  return converter;
}

void BM_IcuConvertEx(benchmark::State& state, const Conversion& c) {
  const IcuConverter to = openIcu(c.icuTo);
  const IcuConverter from = openIcu(c.icuFrom);
  UChar pivot[1024];
  runConversion(state, c,
                [&](const Texts&, const void* in, size_t inBytes, void* out, size_t outBytes) {
                  UErrorCode error = U_ZERO_ERROR;
                  char* target = static_cast<char*>(out);
                  const char* source = static_cast<const char*>(in);
                  UChar* pivotSource = pivot;
                  UChar* pivotTarget = pivot;
                  ucnv_convertEx(to.get(), from.get(), &target, target + outBytes, &source,
                                 source + inBytes, pivot, &pivotSource, &pivotTarget,
                                 pivot + std::size(pivot), true, true, &error);
                  return target - static_cast<char*>(out);
                });
}

void BM_IcuFromUtf8(benchmark::State& state, const Conversion& c) {
  runConversion(
      state, c, [](const Texts&, const void* in, size_t inBytes, void* out, size_t outBytes) {
        UErrorCode error = U_ZERO_ERROR;
        int32_t length = 0;
        u_strFromUTF8(static_cast<UChar*>(out), static_cast<int32_t>(outBytes / sizeof(UChar)),
                      &length, static_cast<const char*>(in), static_cast<int32_t>(inBytes), &error);
        return length;
      });
}

void BM_IcuToUtf8(benchmark::State& state, const Conversion& c) {
  runConversion(state, c,
                [](const Texts&, const void* in, size_t inBytes, void* out, size_t outBytes) {
                  UErrorCode error = U_ZERO_ERROR;
                  int32_t length = 0;
                  u_strToUTF8(static_cast<char*>(out), static_cast<int32_t>(outBytes), &length,
                              static_cast<const UChar*>(in),
                              static_cast<int32_t>(inBytes / sizeof(UChar)), &error);
                  return length;
                });
}

// Each iteration converts into the same string object, as a caller reusing a string does.
void BM_TWideStringFromUTF8(benchmark::State& state) {
  TWideString s;
  runConversion(state, kUtf8ToUtf16, [&](const Texts& t, const void*, size_t, void*, size_t) {
    return s.fromUTF8(t.utf8.c_str()) ? 1 : 0;
  });
}

void BM_TAnsiStringFromWideString(benchmark::State& state) {
  TAnsiString s;
  runConversion(state, kUtf16ToUtf8, [&](const Texts& t, const void*, size_t, void*, size_t) {
    return s.fromWideString(t.utf16.c_str(), MIB_UTF8) ? 1 : 0;
  });
}

const int kSizes[] = {48, 1024, 1 << 20};

void textSizes(benchmark::internal::Benchmark* b) {
  for (int size : kSizes) b->Args({size, kMixed});
}

void utfTexts(benchmark::internal::Benchmark* b) {
  for (int kind : {kAscii, kMixed, kCjk}) {
    for (int size : kSizes) b->Args({size, kind});
  }
}

BENCHMARK_CAPTURE(BM_Library, StrGB18030ToUTF8, kGb18030ToUtf8)->Apply(textSizes);
BENCHMARK_CAPTURE(BM_RawIconv, GB18030ToUTF8, kGb18030ToUtf8)->Apply(textSizes);
BENCHMARK_CAPTURE(BM_IcuConvertEx, GB18030ToUTF8, kGb18030ToUtf8)->Apply(textSizes);

BENCHMARK_CAPTURE(BM_Library, StrUTF8ToGB2312, kUtf8ToGb2312)->Apply(textSizes);
BENCHMARK_CAPTURE(BM_RawIconv, UTF8ToGB2312, kUtf8ToGb2312)->Apply(textSizes);
BENCHMARK_CAPTURE(BM_IcuConvertEx, UTF8ToGB2312, kUtf8ToGb2312)->Apply(textSizes);

BENCHMARK_CAPTURE(BM_Library, StrUtf8ToUnicode, kUtf8ToUtf16)->Apply(utfTexts);
BENCHMARK_CAPTURE(BM_RawIconv, UTF8ToUTF16, kUtf8ToUtf16)->Apply(utfTexts);
BENCHMARK_CAPTURE(BM_IcuFromUtf8, u_strFromUTF8, kUtf8ToUtf16)->Apply(utfTexts);
BENCHMARK(BM_TWideStringFromUTF8)->Apply(utfTexts);

BENCHMARK_CAPTURE(BM_Library, StrUnicodeToUtf8, kUtf16ToUtf8)->Apply(utfTexts);
BENCHMARK_CAPTURE(BM_RawIconv, UTF16ToUTF8, kUtf16ToUtf8)->Apply(utfTexts);
BENCHMARK_CAPTURE(BM_IcuToUtf8, u_strToUTF8, kUtf16ToUtf8)->Apply(utfTexts);
BENCHMARK(BM_TAnsiStringFromWideString)->Apply(utfTexts);

}  // namespace

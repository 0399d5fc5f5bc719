// Fuzzes pinyin conversion: the bytes as UTF-8 and GB2312 text and, in pairs, as UTF-16 units,
// in every style. Converting a result a second time must change nothing: every character with a
// reading became ASCII or tone-marked letters, and separators only ever stand next to syllables.
#include <stddef.h>
#include <stdint.h>

#include <vector>

#include "fuzz/fuzz_input.h"
#include "zeb/formats/TPinyinWrapper.h"

namespace {

using zeb::TPinyinWrapper;

void fuzzUtf8(const char* text, int length, int style) {
  const TAnsiString once = TPinyinWrapper::fromUTF8(text, length, style, "'");
  FUZZ_CHECK(TPinyinWrapper::fromUTF8(once.p(), once.length(), style, "'") == once);
}

void fuzzUtf16(const std::vector<zwchar_t>& units, int style) {
  const TWideString once =
      TPinyinWrapper::fromUTF16(units.data(), static_cast<int>(units.size()), style, ZW("-"));
  FUZZ_CHECK(TPinyinWrapper::fromUTF16(once.p(), once.length(), style, ZW("-")) == once);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const int style = data[0] % 4;
  const char* text = reinterpret_cast<const char*>(data + 1);
  const int length = static_cast<int>(size - 1);
  fuzzUtf8(text, length, style);
  TPinyinWrapper::fromGB2312(text, length, style);
  std::vector<zwchar_t> units;
  for (size_t i = 1; i + 1 < size; i += 2) {
    units.push_back(static_cast<zwchar_t>(data[i] | data[i + 1] << 8));
  }
  fuzzUtf16(units, style);
  if (size >= 5) {
    const unsigned codePoint = data[1] | data[2] << 8 | data[3] << 16 | unsigned(data[4]) << 24;
    const int count = TPinyinWrapper::readingCount(codePoint);
    FUZZ_CHECK(TPinyinWrapper::reading(codePoint, count, style).isEmpty());
    FUZZ_CHECK(count == 0 || TPinyinWrapper::reading(codePoint, count - 1, style).isNotEmpty());
  }
  return 0;
}

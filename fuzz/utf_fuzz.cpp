// Fuzzes the UTF-8 <-> UTF-16 fast path against the iconv path it stands in for: as UTF-8 both
// arbitrary bytes and pieces picked from a short palette, as UTF-16 both arbitrary 16-bit units
// and units picked from a palette, through both kinds of conversion (discarding and replacing),
// into outputs of every size from 0 up and measuring, with the kind of vector code the first byte
// picks. Results and every byte of the outputs must be the same; the outputs are sized exactly,
// so AddressSanitizer sees any overrun.
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <memory>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "zeb/charset/internal/text_conversion.h"
#include "zeb/charset/internal/utf_transcoder.h"
#include "zeb/zeb_api.h"

namespace {

using namespace zeb::charset;

constexpr CharsetName kUtf8 = fixedName("UTF-8");
constexpr CharsetName kUtf16 = fixedName(kHostUtf16);

// Inputs longer than this are swept over the first kSweptBytes only; the whole input is still
// converted once into an output that holds any text.
constexpr size_t kSweptBytes = 192;

size_t oneByte(const unsigned char*, size_t) {
  return 1;
}
const unsigned char kMark[3] = {0xEF, 0xBF, 0xBD};
const Replacement kReplacement{kMark, sizeof kMark, oneByte};

// An output of exactly `size` bytes, aligned for units, prefilled with `fill`.
struct Output {
  explicit Output(size_t size, unsigned char fill)
      : units(new zwchar_t[size / 2 + 1]), bytes(size) {
    memset(units.get(), fill, size);
  }
  std::unique_ptr<zwchar_t[]> units;
  size_t bytes;
  void* data() { return units.get(); }
};

void checkSameOutputs(Output& fast, Output& slow) {
  FUZZ_CHECK(memcmp(fast.data(), slow.data(), fast.bytes) == 0);
}

void compareAtSize(CharsetName to, CharsetName from, const void* in, size_t inBytes, size_t size,
                   unsigned char fill) {
  Output fast(size, fill);
  Output slow(size, fill);
  const ConvertResult a = convertText(to, from, in, inBytes, fast.data(), size);
  const ConvertResult b = convertDiscarding(to, from, in, inBytes, slow.data(), size);
  FUZZ_CHECK(a.ok == b.ok && a.written == b.written && a.written <= size);
  checkSameOutputs(fast, slow);

  Output fastReplaced(size, fill);
  Output slowReplaced(size, fill);
  const size_t c =
      convertTextReplacing(to, from, in, inBytes, fastReplaced.data(), size, kReplacement);
  const size_t d = convertReplacing(to, from, in, inBytes, slowReplaced.data(), size, kReplacement);
  FUZZ_CHECK(c == d);
  checkSameOutputs(fastReplaced, slowReplaced);
}

void compareAtEverySize(CharsetName to, CharsetName from, const void* in, size_t inBytes,
                        size_t largest, unsigned char fill) {
  const size_t swept = inBytes < kSweptBytes ? inBytes : kSweptBytes;
  for (size_t size = 0; size <= 2 * swept + 8; ++size)
    compareAtSize(to, from, in, swept, size, fill);
  compareAtSize(to, from, in, inBytes, largest, fill);
  FUZZ_CHECK(convertTextReplacing(to, from, in, inBytes, nullptr, 0, kReplacement) ==
             convertReplacing(to, from, in, inBytes, nullptr, 0, kReplacement));
}

// Units that make the transcoder's cases likely: ASCII, two- and three-byte characters, both
// halves of a pair, and NUL.
const zwchar_t kPalette[] = {u'a',   u' ',   0x00E9, 0x07FF, 0x0800, 0x4E2D,
                             0xFFFF, 0xD83D, 0xDE00, 0xDBFF, 0xDC00, 0};

// Each byte of `data` picks a unit of the palette.
std::vector<zwchar_t> paletteUnits(const uint8_t* data, size_t size) {
  std::vector<zwchar_t> units(size);
  for (size_t i = 0; i < size; ++i) units[i] = kPalette[data[i] % (sizeof kPalette / 2)];
  return units;
}

// UTF-8 pieces, whole and cut short, valid and not: ASCII, two-, three- and four-byte
// characters on both sides of each boundary, an overlong form, an encoded surrogate, stray bytes.
const char* const kUtf8Palette[] = {"a",
                                    " ",
                                    "\xC3\xA9",
                                    "\xDF\xBF",
                                    "\xE0\xA0\x80",
                                    "\xE4\xB8\xAD",
                                    "\xEF\xBF\xBF",
                                    "\xF0\x9F\x98\x80",
                                    "\xE0\x9F\xBF",
                                    "\xED\xA0\x80",
                                    "\xC1\xBF",
                                    "\x80",
                                    "\xE4\xB8",
                                    "\xF4\x90\x80\x80",
                                    "\xFF"};

// Each byte of `data` picks a piece of the UTF-8 palette.
std::string paletteBytes(const uint8_t* data, size_t size) {
  std::string text;
  for (size_t i = 0; i < size; ++i)
    text += kUtf8Palette[data[i] % (sizeof kUtf8Palette / sizeof *kUtf8Palette)];
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const unsigned char fill = data[0];
  useVectorCode(static_cast<VectorCode>(fill % 4));
  const size_t inBytes = size - 1;
  // The units lie aligned, as the library's callers pass them.
  std::vector<zwchar_t> aligned(inBytes / 2 + 1, 0);
  memcpy(aligned.data(), data + 1, inBytes);
  compareAtEverySize(kUtf16, kUtf8, aligned.data(), inBytes, 2 * inBytes + 8, fill);
  const size_t unitBytes = inBytes - inBytes % 2;
  compareAtEverySize(kUtf8, kUtf16, aligned.data(), unitBytes, 3 * unitBytes / 2 + 1, fill);
  const std::string pieces = paletteBytes(data + 1, inBytes);
  compareAtEverySize(kUtf16, kUtf8, pieces.data(), pieces.size(), 2 * pieces.size() + 8, fill);
  const std::vector<zwchar_t> picked = paletteUnits(data + 1, inBytes);
  compareAtEverySize(kUtf8, kUtf16, picked.data(), 2 * inBytes, 3 * inBytes + 1, fill);
  return 0;
}

// binary_hex.cpp: one rendering loop, instantiated for 8-bit and 16-bit output, behind the string
// and buffer forms of the hexadecimal renderers.
#include "zeb/data/binary_hex.h"

#include <climits>

namespace {

struct HexOptions {
  bool lowerCase;
  int lineWidth;
  bool withTag;
};

// The two digits of every byte value, upper case then lower case: one lookup per byte.
struct DigitPairs {
  char pair[2][256][2];
};

constexpr DigitPairs makeDigitPairs() {
  constexpr char kDigits[] = "0123456789ABCDEF0123456789abcdef";
  DigitPairs table{};
  for (int lower = 0; lower < 2; ++lower) {
    for (int byte = 0; byte < 256; ++byte) {
      table.pair[lower][byte][0] = kDigits[lower * 16 + (byte >> 4)];
      table.pair[lower][byte][1] = kDigits[lower * 16 + (byte & 0x0F)];
    }
  }
  return table;
}

constexpr DigitPairs kDigitPairs = makeDigitPairs();

// Writes the rendering of `n` bytes (n >= 1) at `out` followed by a NUL; returns `out`. The
// options and each byte are read into locals first: every store through `p` may alias them, and
// re-reading them per byte would cost more than the work itself.
// The common dump form, digits only with no line feeds: two units per byte and nothing to decide.
template <typename CharT>
CharT* renderDigitsOnly(const unsigned char* data, int n, CharT* p, const char (*pairs)[2]) {
  for (int i = 0; i < n; ++i) {
    const char* digits = pairs[data[i]];
    const CharT high = CharT(digits[0]);
    const CharT low = CharT(digits[1]);
    p[0] = high;
    p[1] = low;
    p += 2;
  }
  return p;
}

template <typename CharT>
CharT* renderHex(const unsigned char* data, int n, CharT* out, HexOptions options) {
  const char(*const pairs)[2] = kDigitPairs.pair[options.lowerCase ? 1 : 0];
  if (!options.withTag && options.lineWidth < 1) {
    *renderDigitsOnly(data, n, out, pairs) = CharT(0);
    return out;
  }
  const bool withTag = options.withTag;
  const int lineWidth = options.lineWidth;
  const CharT tagLetter = CharT(options.lowerCase ? 'x' : 'X');
  CharT* p = out;
  int bytesOnLine = 1;
  for (int i = 0; i < n; ++i) {
    const unsigned char byte = data[i];
    const char high = pairs[byte][0];
    const char low = pairs[byte][1];
    if (withTag) {
      *p++ = CharT('0');
      *p++ = tagLetter;
    }
    *p++ = CharT(high);
    *p++ = CharT(low);
    if (withTag && i + 1 < n) *p++ = CharT(',');
    ++bytesOnLine;
    if (lineWidth >= 1 && bytesOnLine > lineWidth) {
      *p++ = CharT('\n');
      bytesOnLine = 1;
    }
  }
  *p = CharT(0);
  return out;
}

// Units to reserve for `n` bytes at `unitsPerByte`: unitsPerByte * n + 2, or 0 when that is not
// a positive int (n below 0, or a count too large for a string).
int roomFor(int n, int unitsPerByte) {
  const long long room = static_cast<long long>(unitsPerByte) * n + 2;
  return room > 0 && room <= INT_MAX ? static_cast<int>(room) : 0;
}

// Replaces `out` with the rendering in a buffer of roomFor(n, unitsPerByte) units.
template <typename StringT>
StringT& renderHexInto(const unsigned char* data, int n, StringT& out, int unitsPerByte,
                       HexOptions options) {
  const int room = roomFor(n, unitsPerByte);
  out.resetCapacity(room);
  if (room > 0 && data != nullptr && n >= 1) renderHex(data, n, out.data(), options);
  return out;
}

int unitsPerByte(int lineWidth, bool withTag) {
  if (!withTag) return 3;
  return lineWidth < 1 ? 5 : 6;
}

}  // namespace

void BinaryToHexA(const unsigned char* data, int n, TAnsiString& out, bool lowerCase, int lineWidth,
                  bool withTag) {
  renderHexInto(data, n, out, unitsPerByte(lineWidth, withTag),
                HexOptions{lowerCase, lineWidth, withTag});
}

TAnsiString& BinaryToHexNoTagA(const unsigned char* data, int n, TAnsiString& out, bool lowerCase,
                               int lineWidth) {
  return renderHexInto(data, n, out, unitsPerByte(lineWidth, false),
                       HexOptions{lowerCase, lineWidth, false});
}

TWideString& BinaryToHexNoTagW(const unsigned char* data, int n, TWideString& out, bool lowerCase,
                               int lineWidth) {
  return renderHexInto(data, n, out, unitsPerByte(lineWidth, false),
                       HexOptions{lowerCase, lineWidth, false});
}

char* BinaryToHexNoTagA(const unsigned char* data, int n, char* out, bool lowerCase,
                        int lineWidth) {
  if (out == nullptr) return out;
  if (data == nullptr || n < 1) {
    out[0] = '\0';
    return out;
  }
  return renderHex(data, n, out, HexOptions{lowerCase, lineWidth, false});
}

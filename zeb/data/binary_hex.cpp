// binary_hex.cpp: one rendering loop, instantiated for 8-bit and 16-bit output, behind the string
// and buffer forms of the hexadecimal renderers.
#include "zeb/data/binary_hex.h"

#include <climits>

namespace {

// Upper-case digits, then lower-case digits.
const char kHexDigits[] = "0123456789ABCDEF0123456789abcdef";

struct HexOptions {
  bool lowerCase;
  int lineWidth;
  bool withTag;
};

// Writes the rendering of `n` bytes (n >= 1) at `out` followed by a NUL; returns `out`.
template <typename CharT>
CharT* renderHex(const unsigned char* data, int n, CharT* out, const HexOptions& options) {
  const char* digits = kHexDigits + (options.lowerCase ? 16 : 0);
  CharT* p = out;
  int bytesOnLine = 1;
  for (int i = 0; i < n; ++i) {
    if (options.withTag) {
      *p++ = CharT('0');
      *p++ = CharT(options.lowerCase ? 'x' : 'X');
    }
    *p++ = CharT(digits[data[i] >> 4]);
    *p++ = CharT(digits[data[i] & 0x0F]);
    if (options.withTag && i + 1 < n) *p++ = CharT(',');
    ++bytesOnLine;
    if (options.lineWidth >= 1 && bytesOnLine > options.lineWidth) {
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
                       const HexOptions& options) {
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

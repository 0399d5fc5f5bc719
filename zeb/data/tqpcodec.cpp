// Quoted-printable encoding and decoding.

#include "zeb/data/tqpcodec.h"

#include <climits>
#include <cstring>

#include "zeb/strings/internal/units.h"

using zeb::internal::foldUpper;
using zeb::internal::isDigitUnit;
using zeb::internal::isHexDigitUnit;

namespace {

constexpr int kSoftBreakAt = 73;
constexpr char kUpperDigits[] = "0123456789ABCDEF";

// The usable length of the input: 0 for null input; strlen for a negative length.
int inputLength(const char* data, int length) {
  if (data == nullptr) return 0;
  return length < 0 ? static_cast<int>(strlen(data)) : length;
}

inline bool isCopiedAsIs(unsigned char c) {
  return c >= 0x21 && c <= 0x7E && c != '=';
}

// Room for the text: the documented reserve, or the most the text can take when that is larger
// (every byte escaped, a soft break after every 25 bytes, the NUL).
long long encodeCapacity(int length) {
  const long long reserve = 3LL * (length + static_cast<long long>(length) * 3 / 76) + 4;
  const long long most = 3LL * length + 3LL * (length / 25 + 1) + 1;
  return reserve > most ? reserve : most;
}

// The value of a hexadecimal digit of either case, or -1.
int hexValue(unsigned char c) {
  if (!isHexDigitUnit(c)) return -1;
  return isDigitUnit(c) ? c - '0' : foldUpper(c) - 'A' + 10;
}

}  // namespace

int tqpcodec::Encode(const char* data, int length, TAnsiString& out) {
  length = inputLength(data, length);
  const long long capacity = encodeCapacity(length);
  if (length == 0 || capacity > INT_MAX) {
    out.deleteBuffer();
    return 0;
  }
  out.resetCapacity(static_cast<int>(capacity));
  const auto* in = reinterpret_cast<const unsigned char*>(data);
  char* o = out.data();
  int lineCount = 0;
  for (int i = 0; i < length; ++i) {
    const unsigned char c = in[i];
    if (isCopiedAsIs(c)) {
      *o++ = static_cast<char>(c);
      lineCount += 1;
    } else {
      o[0] = '=';
      o[1] = kUpperDigits[c >> 4];
      o[2] = kUpperDigits[c & 15];
      o += 3;
      lineCount += 3;
    }
    if (lineCount >= kSoftBreakAt) {
      memcpy(o, "=\r\n", 3);
      o += 3;
      lineCount = 0;
    }
  }
  *o = '\0';
  return static_cast<int>(o - out.data());
}

int tqpcodec::Decode(const char* text, int length, TAnsiString& out) {
  length = inputLength(text, length);
  if (length == 0) {
    out.deleteBuffer();
    return 0;
  }
  out.resetCapacity(length + 1);
  const auto* in = reinterpret_cast<const unsigned char*>(text);
  char* o = out.data();
  int i = 0;
  while (i < length) {
    const unsigned char c = in[i];
    if (c == '=' && i + 2 < length && in[i + 1] == '\r' && in[i + 2] == '\n') {
      for (i += 3; i < length && (in[i] == ' ' || in[i] == '\t'); ++i) {
      }
      continue;
    }
    const int high = c == '=' && i + 2 < length ? hexValue(in[i + 1]) : -1;
    const int low = high >= 0 ? hexValue(in[i + 2]) : -1;
    if (low >= 0) {
      *o++ = static_cast<char>(high * 16 + low);
      i += 3;
    } else {
      *o++ = c == '_' ? ' ' : static_cast<char>(c);
      ++i;
    }
  }
  *o = '\0';
  return static_cast<int>(o - out.data());
}

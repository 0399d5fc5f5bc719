// TWideString_convert.cpp: the members of TWideString that build UTF-16 from 8-bit text or turn
// the content into 8-bit text. Every conversion is one call of a charset function (zeb_charset.h)
// into a buffer sized by a fixed rule; internal/convert_buffer.h decides what becomes of the old
// content.

#include <string.h>

#include "zeb/charset/zeb_charset.h"
#include "zeb/strings/TWideString.h"
#include "zeb/strings/internal/convert_buffer.h"

namespace core = zeb::internal;

namespace {

// The 2n + 4 units the UTF-16 text of `s` (n bytes) gets; 0 for a null `s`.
int wideSizeFor(const char* s, size_t n) {
  return s == nullptr ? 0 : core::convertedSize(n, 2, 4);
}

size_t byteLength(const char* s) {
  return s == nullptr ? 0 : strlen(s);
}

TAnsiString narrowed(const zwchar_t* w, tmibcharset cs) {
  TAnsiString text;
  text.fromWideString(w, cs);
  return text;
}

}  // namespace

TWideString::TWideString(const char* s, tmibcharset cs) {
  switch (cs) {
    case MIB_UTF8:
      fromUTF8(s);
      break;
    case MIB_ANSI:
      fromANSI(s);
      break;
    case MIB_GB2312:
      fromGB3212(s);
      break;
    case MIB_ASCII:
      fromASCIIQuick(s);
      break;
    default:
      fromAny(cs, s);
      break;
  }
}

TWideString::TWideString(const TAnsiString& s, tmibcharset cs) : TWideString(s.p(), cs) {}

bool TWideString::fromUTF8(const char* s) {
  const size_t n = byteLength(s);
  return core::convertAfresh(buffer, capacity, wideSizeFor(s, n), [&](zwchar_t* out, int size) {
    return StrUtf8ToUnicode(out, size, s, static_cast<int>(n));
  });
}

bool TWideString::fromANSI(const char* s) {
  return core::convertAfresh(
      buffer, capacity, wideSizeFor(s, byteLength(s)), [&](zwchar_t* out, int size) {
        return StrANSIToUnicode(out, size, s) - 1;  // its count includes the NUL
      });
}

bool TWideString::fromGB3212(const char* s) {
  const size_t n = byteLength(s);
  return core::replaceIfConverted(buffer, capacity, wideSizeFor(s, n),
                                  [&](zwchar_t* out, int size) {
                                    return StrGB2312ToUnicode(out, size, s, static_cast<int>(n));
                                  });
}

bool TWideString::fromAny(tmibcharset cs, const char* s, int len) {
  const size_t n = len < 0 ? byteLength(s) : static_cast<size_t>(len);
  const int size = s == nullptr ? 0 : core::convertedSize(n, 3, 7);
  return core::convertAfresh(buffer, capacity, size, [&](zwchar_t* out, int outSize) {
    return AnyToUnicode(MIBCharsetValueToName(cs), out, outSize, s, static_cast<int>(n));
  });
}

// The buffer holds the bytes that can be read (at most `len`, never past the NUL) plus the NUL.
TWideString& TWideString::fromASCIIQuick(const char* s, unsigned int len) {
  const size_t n = s == nullptr ? 0 : len == 0 ? strlen(s) : strnlen(s, len);
  const int size = s == nullptr ? 0 : core::convertedSize(n, 1, 1);
  core::convertAfresh(buffer, capacity, size,
                      [&](zwchar_t* out, int) { return core::copyAsciiPrefix(s, n, out); });
  return *this;
}

TAnsiString TWideString::ansi() const {
  return narrowed(buffer, MIB_ANSI);
}

TAnsiString TWideString::utf8() const {
  return narrowed(buffer, MIB_UTF8);
}

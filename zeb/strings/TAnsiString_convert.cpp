// TAnsiString_convert.cpp: the members of TAnsiString that change the encoding of the content or
// take 16-bit text. Every conversion is one call of a charset function (zeb_charset.h), or for
// fromWideString of the conversion core beneath them, into a buffer sized by a fixed rule;
// internal/convert_buffer.h decides what becomes of the old content.

#include <string.h>

#include <memory>

#include "zeb/charset/internal/text_conversion.h"
#include "zeb/charset/zeb_charset.h"
#include "zeb/platform/codepage.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/strings/internal/convert_buffer.h"
#include "zeb/strings/zeb_cstr.h"

namespace core = zeb::internal;

namespace {

// The 3·(n + 1) bytes the 8-bit result of n bytes or units of text gets.
int eightBitSize(size_t n) {
  return core::convertedSize(n, 3, 3);
}

// `n` units of UTF-16 `w` to the iconv charset `to` in `out`, the rest of `out` zero-filled: what
// StrUnicodeToAny does, without measuring `w` again (on long text the scan is a visible part of the
// cost). Returns the bytes written, 0 when the conversion failed.
int unicodeToCharset(const char* to, char* out, int size, const zwchar_t* w, size_t n) {
  using namespace zeb::charset;
  const ConvertResult result =
      convertText(fixedName(to), fixedName(kHostUtf16), w, n * sizeof(zwchar_t), out,
                  static_cast<size_t>(size));
  if (!result.ok) return 0;
  memset(out + result.written, 0, static_cast<size_t>(size) - result.written);
  return static_cast<int>(result.written);
}

// `n` units of UTF-16 `w` into `out` in the 8-bit encoding fromWideString picks for `cs`; the
// bytes of text written, below 1 when nothing was.
int narrowInto(tmibcharset cs, char* out, int size, const zwchar_t* w, size_t n) {
  switch (cs) {
    case MIB_ANSI:  // StrUnicodeToANSI over the measured units and the NUL, which it counts
      return zeb::platform::wideCharToMultiByte(w, static_cast<int>(n) + 1, out, size) - 1;
    case MIB_GB2312:
      return unicodeToCharset("gb2312", out, size, w, n);
    default:
      return unicodeToCharset(zeb::charset::kUtf8Name, out, size, w, n);
  }
}

// Replaces the content of `buffer` (n bytes) by convert(out, size, content, n) into a new buffer of
// 3·(n + 1) bytes when that produces text. An empty content is left alone.
template <typename Convert>
bool convertContent(char*& buffer, int& capacity, Convert&& convert) {
  if (buffer == nullptr || *buffer == '\0') return false;
  const char* content = buffer;
  const int n = TAnsiString::length(content);
  return core::replaceIfConverted(
      buffer, capacity, eightBitSize(static_cast<size_t>(n)),
      [&](char* out, int size) { return convert(out, size, content, n); });
}

// The content converted `to` <- `from` by iconv.
bool convertContentBetween(char*& buffer, int& capacity, const char* to, const char* from) {
  return convertContent(buffer, capacity, [&](char* out, int size, const char* content, int n) {
    return AnyToAny(to, from, out, size, content, n);
  });
}

TAnsiString ansiOf(const zwchar_t* w) {
  TAnsiString ansi;
  ansi.fromWideString(w, MIB_ANSI);
  return ansi;
}

}  // namespace

bool TAnsiString::fromWideString(const zwchar_t* w, tmibcharset cs) {
  const size_t n = w == nullptr ? 0 : zeb_wcslen(w);
  const int size = w == nullptr ? 0 : core::convertedSize(n, 3, 4);
  return core::convertAfresh(buffer, capacity, size, [&](char* out, int outSize) {
    return narrowInto(cs, out, outSize, w, n);
  });
}

TAnsiString& TAnsiString::fromWideStringQuick(const zwchar_t* w) {
  const size_t n = w == nullptr ? 0 : zeb_wcslen(w);
  const int size = n == 0 ? 0 : core::convertedSize(n, 1, 2);
  core::convertAfresh(buffer, capacity, size,
                      [&](char* out, int) { return core::copyAsciiPrefix(w, n, out); });
  return *this;
}

TWideString TAnsiString::wstr(tmibcharset cs) const {
  return TWideString(buffer != nullptr ? buffer : "", cs);
}

// Two steps: the ANSI text to UTF-16 in a temporary of n + 3 units, then UTF-16 to UTF-8 in a
// buffer of at least 3n + 3 bytes (the current one's size when that is larger). The second step
// writes into a new buffer, so a failure of either step leaves the content as it was.
bool TAnsiString::convertANSIToUTF8() {
  if (isEmpty()) return false;
  const int n = length();
  const int utf8Size = eightBitSize(static_cast<size_t>(n));
  if (utf8Size == 0) return false;
  const int wideSize = n + 3;  // cannot overflow: 3n + 3 fits
  const std::unique_ptr<zwchar_t[]> wide(new zwchar_t[static_cast<size_t>(wideSize)]);
  if (StrANSIToUnicode(wide.get(), wideSize, buffer) == 0) return false;
  return core::replaceIfConverted(
      buffer, capacity, capacity > utf8Size ? capacity : utf8Size,
      [&](char* out, int size) { return StrUnicodeToUtf8(out, size, wide.get()); });
}

bool TAnsiString::convertUTF8ToANSI() {
  return convertAnyToANSI("UTF-8");
}

bool TAnsiString::convertAnyToUtf8(const char* from) {
  if (from == nullptr || zeb_stricmp_impl(from, "utf-8") == 0) return false;
  return convertContentBetween(buffer, capacity, "UTF-8", from);
}

// The target is the name of the ANSI code page at the time of the call, so the conversion follows
// zeb_setAnsiCodePage.
bool TAnsiString::convertAnyToANSI(const char* from) {
  return convertContentBetween(buffer, capacity, MIBCharsetValueToName(MIB_ANSI), from);
}

bool TAnsiString::convertGB18030ToUTF8() {
  return convertContent(buffer, capacity, [](char* out, int size, const char* content, int) {
    return StrGB18030ToUTF8(out, size, content);
  });
}

bool TAnsiString::convertLatin9ToUTF8() {
  return convertContent(buffer, capacity, [](char* out, int size, const char* content, int) {
    return StrLatin9ToUTF8(out, size, content);
  });
}

bool TAnsiString::fromUTF8ToANSI(const char* s) {
  return setText(s).convertUTF8ToANSI();
}

bool TAnsiString::fromANSIToUTF8(const char* s) {
  return setText(s).convertANSIToUTF8();
}

bool TAnsiString::fromGB18030ToUTF8(const char* s) {
  return setText(s).convertGB18030ToUTF8();
}

bool TAnsiString::fromLatin9ToUTF8(const char* s) {
  return setText(s).convertLatin9ToUTF8();
}

TAnsiString& TAnsiString::operator=(const zwchar_t* w) {
  fromWideString(w, MIB_ANSI);
  return *this;
}

TAnsiString& TAnsiString::operator+=(const zwchar_t* w) {
  return append(ansiOf(w));
}

TAnsiString& TAnsiString::operator+=(zwchar_t c) {
  const zwchar_t text[2] = {c, 0};
  return *this += text;
}

TAnsiString TAnsiString::operator+(const zwchar_t* w) const {
  return *this + ansiOf(w);
}

TAnsiString TAnsiString::operator+(zwchar_t c) const {
  const zwchar_t text[2] = {c, 0};
  return *this + text;
}

// number_fuzz.cpp: libFuzzer target over the number parsers of TAnsiString, TWideString and
// hextoint.
//
// Input: byte 0 is `start`, byte 1 `maxDigits`, byte 2 a length for the length-limited forms
// (each read as a signed char); the rest is the text (up to its first NUL). Each parser is checked
// against a small model of its rule, or against a sibling that must agree with it.

#include <errno.h>
#include <math.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <string>

#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/strings/zeb_cstr.h"

namespace {

void require(bool condition) {
  if (!condition) abort();
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// Model of the decimal rule: skip `start` bytes, spaces and '\t'..'\r', one sign, then at most
// maxDigits digits (< 0: unlimited), all modulo 2^64.
unsigned long long modelDecimal(const std::string& s, int start, int maxDigits) {
  size_t i = start > 0 ? std::min(s.size(), static_cast<size_t>(start)) : 0;
  while (i < s.size() && (s[i] == ' ' || (s[i] >= '\t' && s[i] <= '\r'))) ++i;
  const bool negative = i < s.size() && s[i] == '-';
  if (i < s.size() && (s[i] == '-' || s[i] == '+')) ++i;
  unsigned long long value = 0;
  for (int taken = 0; i < s.size() && isDigit(s[i]) && taken != maxDigits; ++i, ++taken) {
    value = value * 10 + static_cast<unsigned>(s[i] - '0');
  }
  return negative ? 0 - value : value;
}

void checkDecimal(const std::string& text, int start, int maxDigits) {
  const char* s = text.c_str();
  const unsigned long long expected = modelDecimal(text, start, maxDigits);
  const unsigned long long u64 = TAnsiString::strtouint64(s, start, maxDigits);
  require(u64 == expected);
  require(static_cast<unsigned long long>(TAnsiString::strtoint64(s, start, maxDigits)) == u64);
  require(TAnsiString::strtouint(s, start, maxDigits) == static_cast<unsigned>(u64));
  require(static_cast<unsigned>(TAnsiString::strtoint(s, start, maxDigits)) ==
          static_cast<unsigned>(u64));
  if (maxDigits == 0) require(u64 == 0);
  const TAnsiString str(s);
  require(str.toInt32(start, maxDigits) == TAnsiString::strtoint(s, start, maxDigits));
  require(str.toInt64(start, maxDigits) == TAnsiString::strtoint64(s, start, maxDigits));
}

template <typename T>
bool sameFloating(T a, T b) {
  return (isnan(a) && isnan(b)) || a == b;
}

// The process runs in the C locale, so strtod/strtof are the model wherever they report no range
// error (out of range, the string gives 0).
void checkFloating(const char* s) {
  const TAnsiString str(s);
  errno = 0;
  const double d = strtod(s, nullptr);
  if (errno == 0) require(sameFloating(str.toDouble(), d));
  errno = 0;
  const float f = strtof(s, nullptr);
  if (errno == 0) require(sameFloating(str.toFloat(), f));
}

bool modelNumeric(const char* s, int len, bool allowSignAndPoint) {
  const size_t n = len < 0 ? strlen(s) : static_cast<size_t>(len);
  if (n == 0 || s[0] == '\0') return false;
  for (size_t i = 0; i < n; ++i) {
    if (s[i] == '\0') return false;
    const bool signOrPoint = s[i] == '.' || s[i] == '+' || s[i] == '-';
    if (!isDigit(s[i]) && !(allowSignAndPoint && signOrPoint)) return false;
  }
  return true;
}

void checkClassification(const char* s, int len) {
  const TAnsiString str(s);
  for (bool allow : {false, true}) {
    require(str.isNumeric(allow) == modelNumeric(s, -1, allow));
    require(TAnsiString::isNumeric(s, len, allow) == modelNumeric(s, len, allow));
  }
  const bool hex = *s != '\0' && strspn(s, "0123456789abcdefABCDEF") == strlen(s);
  require(str.isHex() == hex);
}

void checkHex(const char* s, int len) {
  const unsigned long long value = TAnsiString::HexToInt(s);
  require(value == hextoint(s, 0));
  require(TAnsiString(s).HexToInt() == value);
  const size_t size = strlen(s);
  const unsigned long long limited = hextoint(s, len);
  if (len > 0 && static_cast<size_t>(len) <= size) {
    require(limited == hextoint(std::string(s, static_cast<size_t>(len)).c_str(), 0));
  }
}

// The 16-bit class runs the same parsers: the text widened byte by byte must parse alike.
void checkWideAgrees(const std::string& text, int start, int maxDigits) {
  std::u16string units;
  for (unsigned char c : text) units.push_back(static_cast<char16_t>(c));
  const TWideString wide(units.c_str());
  const TAnsiString narrow(text.c_str());
  require(wide.toInt64(start, maxDigits) == narrow.toInt64(start, maxDigits));
  require(wide.isNumeric(true) == narrow.isNumeric(true));
  require(wide.isHex() == narrow.isHex());
  require(wide.HexToInt() == narrow.HexToInt());
  const bool ascii = std::all_of(units.begin(), units.end(), [](char16_t u) { return u < 0x80; });
  if (ascii) require(sameFloating(wide.toDouble(), narrow.toDouble()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3) return 0;
  const int start = static_cast<signed char>(data[0]);
  const int maxDigits = static_cast<signed char>(data[1]);
  const int len = static_cast<signed char>(data[2]);
  const std::string text(reinterpret_cast<const char*>(data + 3), size - 3);
  const char* s = text.c_str();
  checkDecimal(std::string(s), start, maxDigits);
  checkFloating(s);
  checkClassification(s, len);
  checkHex(s, len);
  checkWideAgrees(std::string(s), start, maxDigits);
  return 0;
}

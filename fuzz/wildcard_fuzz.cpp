// Differential fuzzing of every wildcard matcher against the table-driven wildcharMatchSlow2.
//
// Input layout: byte 0 picks the mode (bit 0: map bytes onto a small alphabet so that '*' and
// '?' meet often) and byte 1 the pattern length limit for the *Len forms; the rest is split in
// half into text and pattern, each capped at 64 characters.
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

#include <algorithm>
#include <string>

#include "zeb/strings/wildcard.h"

namespace {

constexpr size_t kMaxLength = 64;

std::string toText(const uint8_t* data, size_t size, bool smallAlphabet, const char* alphabet) {
  std::string s(reinterpret_cast<const char*>(data), std::min(size, kMaxLength));
  if (smallAlphabet) {
    for (char& c : s) c = alphabet[static_cast<unsigned char>(c) % 4];
  }
  return s.substr(0, s.find('\0'));
}

// Bytes from 0x80 up become units above 0xFF, so a matcher that drops the high byte of a
// 16-bit unit shows up as a disagreement.
std::u16string widen(const std::string& s) {
  std::u16string wide;
  for (unsigned char c : s) wide += static_cast<char16_t>(c < 0x80 ? c : 0xFF00 | c);
  return wide;
}

void check(bool expected, bool actual) {
  if (expected != actual) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const bool smallAlphabet = (data[0] & 1) != 0;
  const int lengthLimit = data[1] == 0xFF ? -1 : data[1] % (kMaxLength + 8);
  data += 2;
  size -= 2;
  const size_t half = size / 2;
  const std::string text = toText(data, half, smallAlphabet, "aab*");
  const std::string pattern = toText(data + half, size - half, smallAlphabet, "ab*?");
  const std::u16string wideText = widen(text);
  const std::u16string widePattern = widen(pattern);
  const char* t = text.c_str();
  const char* p = pattern.c_str();

  const bool expected = wildcharMatchSlow2(t, p);
  check(expected, wildcardMatch(t, p));
  check(expected, wildcardMatchW(wideText.c_str(), widePattern.c_str()));
  check(expected, wildcardMatchNormal(t, p));
  check(expected, wildcharMatchSlow(t, p));

  const std::string limited = lengthLimit < 0 ? pattern : pattern.substr(0, lengthLimit);
  const bool expectedLimited = wildcharMatchSlow2(t, limited.c_str());
  check(expectedLimited, wildcardMatchLen(t, p, lengthLimit));
  check(expectedLimited, wildcardMatchLenW(wideText.c_str(), widePattern.c_str(), lengthLimit));
  check(expectedLimited, wildcardMatchNormalLen(t, p, lengthLimit));
  return 0;
}

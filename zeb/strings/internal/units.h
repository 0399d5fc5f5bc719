// units.h: the smallest shared pieces of the string code, over any unit type (char for 8-bit
// text, zwchar_t for UTF-16): unit classes, ASCII case folding, and a null text read as "".
#ifndef ZEB_STRINGS_INTERNAL_UNITS_H
#define ZEB_STRINGS_INTERNAL_UNITS_H

#include <type_traits>

namespace zeb::internal {

// ---- units --------------------------------------------------------------------------------------

template <typename CharT>
unsigned unitValue(CharT c) {
  return static_cast<std::make_unsigned_t<CharT>>(c);
}
template <typename CharT>
bool isDigitUnit(CharT c) {
  return c >= '0' && c <= '9';
}
template <typename CharT>
bool isHexDigitUnit(CharT c) {
  return isDigitUnit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}
template <typename CharT>
bool isSpaceOrControl(CharT c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
template <typename CharT>
bool isBlank(CharT c) {
  return c == ' ' || c == '\t';
}
template <typename CharT>
CharT foldUpper(CharT c) {
  return c >= 'a' && c <= 'z' ? static_cast<CharT>(c - 32) : c;
}
template <typename CharT>
CharT foldLower(CharT c) {
  return c >= 'A' && c <= 'Z' ? static_cast<CharT>(c + 32) : c;
}
template <typename CharT>
bool sameUnit(CharT a, CharT b, bool fold) {
  return fold ? foldUpper(a) == foldUpper(b) : a == b;
}
// The order removeChr ranges use: bytes as signed chars (as the 8-bit class always has), wider
// units unsigned.
template <typename CharT>
int rangeOrder(CharT c) {
  if constexpr (sizeof(CharT) == 1) {
    return static_cast<signed char>(c);
  } else {
    return static_cast<int>(unitValue(c));
  }
}

// ---- texts --------------------------------------------------------------------------------------

template <typename CharT>
bool isEmptyText(const CharT* s) {
  return s == nullptr || *s == 0;
}
template <typename CharT>
const CharT* orEmpty(const CharT* s) {
  static const CharT kEmpty[1] = {};
  return s ? s : kEmpty;
}

}  // namespace zeb::internal

#endif  // ZEB_STRINGS_INTERNAL_UNITS_H

// string_text.h: the text extraction and formatting algorithms of the owning string classes (tags,
// tokens, lines, GUIDs, years, human-readable sizes and durations, printf-style formatting),
// written once as templates over the text unit. Private; not installed. See string_core.h for how
// the classes forward to these templates.
#ifndef ZEB_STRINGS_INTERNAL_STRING_TEXT_H
#define ZEB_STRINGS_INTERNAL_STRING_TEXT_H

#include <math.h>
#include <stdarg.h>
#include <stdint.h>
#include <string.h>

#include <string>

#include "zeb/platform/wintypes.h"
#include "zeb/strings/internal/printf_format.h"
#include "zeb/strings/internal/string_core.h"

namespace zeb::internal {

// ---- tags, tokens and lines ---------------------------------------------------------------------

// A run of units [begin, end) of some text, as indexes.
struct TextRange {
  int begin = 0;
  int end = 0;
  int size() const { return end - begin; }
};

template <typename CharT>
int indexIn(const CharT* text, const CharT* p) {
  return static_cast<int>(p - text);
}

// The text between the first `startTag` at or after `start` and the following `endTag` (an empty
// or null `endTag` reaches the end). *next receives the index past the end tag, or -1.
template <typename CharT>
bool findBetweenTags(const CharT* text, const CharT* startTag, const CharT* endTag, bool fold,
                     int start, TextRange* range, int* next) {
  if (next != nullptr) *next = -1;
  const int length = textLength(text);
  if (length == 0 || isEmptyText(startTag) || start > length) return false;
  const CharT* from = text + (start < 0 ? 0 : start);
  const CharT* opening = findText(from, startTag, fold);
  if (opening == nullptr) return false;
  const CharT* inner = opening + textLength(startTag);
  const CharT* closing = isEmptyText(endTag) ? text + length : findText(inner, endTag, fold);
  if (closing == nullptr) return false;
  *range = TextRange{indexIn(text, inner), indexIn(text, closing)};
  if (next != nullptr) *next = indexIn(text, closing) + textLength(endTag);
  return true;
}

template <typename CharT>
bool inTrimSet(const CharT* trimSet, CharT c) {
  return trimSet != nullptr && c != 0 && containsUnit(trimSet, c);
}

// The separator after `field`, or null when the field is the last one (always so for an empty
// separator).
template <typename CharT>
const CharT* findSeparator(const CharT* field, const CharT* sep) {
  return *sep == 0 ? nullptr : findExact(field, sep);
}

// Field `index` of `text` from `start`, fields separated by `sep`, trimmed of the units in
// `trimSet`. *next receives the index after the field's separator, or -1 after the last field.
template <typename CharT>
bool findToken(const CharT* text, const CharT* sep, int index, int start, const CharT* trimSet,
               TextRange* range, int* next) {
  if (next != nullptr) *next = -1;
  const int length = textLength(text);
  if (text == nullptr || index < 0 || start > length) return false;
  sep = orEmpty(sep);
  const int sepLength = textLength(sep);
  const CharT* field = text + (start < 0 ? 0 : start);
  for (int i = 0; i < index; ++i) {
    const CharT* separator = findSeparator(field, sep);
    if (separator == nullptr) return false;
    field = separator + sepLength;
  }
  const CharT* separator = findSeparator(field, sep);
  const CharT* fieldEnd = separator != nullptr ? separator : text + length;
  if (next != nullptr && separator != nullptr) *next = indexIn(text, separator + sepLength);
  while (field < fieldEnd && inTrimSet(trimSet, *field)) ++field;
  while (fieldEnd > field && inTrimSet(trimSet, fieldEnd[-1])) --fieldEnd;
  *range = TextRange{indexIn(text, field), indexIn(text, fieldEnd)};
  return true;
}

// fromBetweenTag and fromToken: the content becomes the range found, or "" when there is none.
template <typename StringT, typename CharT>
bool setBetweenTags(StringBuffer<StringT, CharT> content, const CharT* text, const CharT* startTag,
                    const CharT* endTag, bool fold, int start, int* next) {
  TextRange range;
  if (!findBetweenTags(text, startTag, endTag, fold, start, &range, next)) {
    content.clear();
    return false;
  }
  content.setText(text + range.begin, range.size());
  return true;
}

template <typename StringT, typename CharT>
bool setToken(StringBuffer<StringT, CharT> content, const CharT* text, const CharT* sep, int index,
              int start, int* next, const CharT* trimSet) {
  TextRange range;
  if (!findToken(text, sep, index, start, trimSet, &range, next)) {
    content.clear();
    return false;
  }
  content.setText(text + range.begin, range.size());
  return true;
}

// fromFirstLine: the content becomes the first line of `text`; returns the start of the next one
// or null (a line end that closes the text starts no further line).
template <typename StringT, typename CharT>
const CharT* setFirstLine(StringBuffer<StringT, CharT> content, const CharT* text) {
  if (text == nullptr) {
    content.clear();
    return nullptr;
  }
  int lineLength = 0;
  while (text[lineLength] != 0 && text[lineLength] != '\r' && text[lineLength] != '\n') {
    ++lineLength;
  }
  const CharT* nextLine = text + lineLength;
  if (*nextLine == '\r') ++nextLine;
  if (*nextLine == '\n') ++nextLine;
  content.setText(text, lineLength);
  return *nextLine != 0 ? nextLine : nullptr;
}

// ---- years --------------------------------------------------------------------------------------

// The position of the first run of exactly four digits in `text` whose value lies in
// [minYear, maxYear], or -1; *year receives that value. "0000" never matches: 0 means "no year".
template <typename CharT>
int findYear(const CharT* text, int minYear, int maxYear, int* year) {
  if (text == nullptr) return -1;
  const CharT* p = text;
  while (*p != 0) {
    if (!isDigitUnit(*p)) {
      ++p;
      continue;
    }
    const CharT* run = p;
    while (isDigitUnit(*p)) ++p;
    if (p - run != 4) continue;
    const int value = static_cast<int>(parseDecimal<unsigned>(run, 0, 4));
    if (value > 0 && value >= minYear && value <= maxYear) {
      *year = value;
      return indexIn(text, run);
    }
  }
  return -1;
}

// extractYearEX: the year, removed from `text` when `removeIt` with one space next to it: the one
// before, or else the one after.
template <typename CharT>
int extractYearFrom(CharT* text, bool removeIt, int minYear, int maxYear) {
  int year = 0;
  const int pos = findYear<CharT>(text, minYear, maxYear, &year);
  if (pos < 0 || !removeIt) return year;
  CharT* begin = text + pos;
  CharT* end = begin + 4;
  if (begin > text && begin[-1] == ' ') {
    --begin;
  } else if (*end == ' ') {
    ++end;
  }
  std::copy(end, end + textLength(end) + 1, begin);
  return year;
}

// ---- GUIDs --------------------------------------------------------------------------------------

// GUID text layout: 8-4-4-4-12 hexadecimal digits separated by dashes.
constexpr int kGuidTextLength = 36;

inline bool isGuidDash(int i) {
  return i == 8 || i == 13 || i == 18 || i == 23;
}

inline bool isGuidText(const char* text) {
  for (int i = 0; i < kGuidTextLength; ++i) {
    if (isGuidDash(i) ? text[i] != '-' : !isHexDigitUnit(text[i])) return false;
  }
  return true;
}

// The byte whose two hexadecimal digits start at `text`.
inline uint8_t hexByte(const char* text) {
  return static_cast<uint8_t>(hextoint(text, 2));
}

// hexToGUID: the content (only ASCII can be GUID text) parsed into *guid.
template <typename CharT>
bool parseGuid(const CharT* content, void* guid) {
  if (guid == nullptr) return false;
  const std::string ascii = asciiPrefix(content);
  if (static_cast<int>(ascii.size()) != textLength(content)) return false;
  const char* text = ascii.c_str();
  int length = static_cast<int>(ascii.size());
  if (length == kGuidTextLength + 2 && text[0] == '{' && text[length - 1] == '}') {
    ++text;
    length -= 2;
  }
  if (length != kGuidTextLength || !isGuidText(text)) return false;
  GUID parsed;
  parsed.Data1 = static_cast<uint32_t>(hextoint(text, 8));
  parsed.Data2 = static_cast<uint16_t>(hextoint(text + 9, 4));
  parsed.Data3 = static_cast<uint16_t>(hextoint(text + 14, 4));
  parsed.Data4[0] = hexByte(text + 19);
  parsed.Data4[1] = hexByte(text + 21);
  for (int i = 0; i < 6; ++i) parsed.Data4[2 + i] = hexByte(text + 24 + 2 * i);
  memcpy(guid, &parsed, sizeof parsed);
  return true;
}

// ---- formatted texts ----------------------------------------------------------------------------

// printf-style formatting into a new text; `fmt` must not be null.
template <typename CharT>
std::basic_string<CharT> formatText(const CharT* fmt, va_list args) {
  std::basic_string<CharT> text;
  formatPrintf(text, fmt, args);
  return text;
}

inline std::string formatAscii(const char* fmt, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;
inline std::string formatAscii(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = formatText(fmt, args);
  va_end(args);
  return text;
}

// Upper-case GUID text, in braces when `braces`.
template <typename CharT>
std::basic_string<CharT> guidText(const void* guid, bool braces) {
  GUID g;
  memcpy(&g, guid, sizeof g);
  return widenAscii<CharT>(formatAscii(
      "%s%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X%s", braces ? "{" : "", unsigned(g.Data1),
      unsigned(g.Data2), unsigned(g.Data3), g.Data4[0], g.Data4[1], g.Data4[2], g.Data4[3],
      g.Data4[4], g.Data4[5], g.Data4[6], g.Data4[7], braces ? "}" : ""));
}

// "512 B", "1.50 KB", ... up to "EB": 1024 steps, two decimals above bytes, the larger unit as
// soon as the value would print as 1024.00. `separator` (null: " ") goes before the unit.
template <typename CharT>
std::basic_string<CharT> fileSizeText(long long bytes, const CharT* separator) {
  static const char* const kUnits[] = {"B", "KB", "MB", "GB", "TB", "PB", "EB"};
  constexpr int kLastUnit = 6;
  std::string number;
  int unit = 0;
  if (bytes > -1024 && bytes < 1024) {
    number = formatAscii("%lld", bytes);
  } else {
    double value = static_cast<double>(bytes);
    do {
      value /= 1024;
      ++unit;
    } while (unit < kLastUnit && round(fabs(value) * 100) >= 102400);
    number = formatAscii("%.2f", value);
  }
  std::basic_string<CharT> text = widenAscii<CharT>(number);
  if (separator == nullptr) {
    text.push_back(' ');
  } else {
    text.append(separator);
  }
  return text + widenAscii<CharT>(kUnits[unit]);
}

// "h:mm:ss", hours unbounded, negative values with a leading '-'.
template <typename CharT>
std::basic_string<CharT> secondsText(int seconds) {
  const unsigned magnitude = seconds < 0 ? 0u - unsigned(seconds) : unsigned(seconds);
  return widenAscii<CharT>(formatAscii("%s%u:%02u:%02u", seconds < 0 ? "-" : "", magnitude / 3600,
                                       magnitude / 60 % 60, magnitude % 60));
}

// Decimals for fromFloat and fromMs: 0..17.
inline int clampDecimals(long long decimals) {
  return decimals < 0 ? 0 : decimals > 17 ? 17 : static_cast<int>(decimals);
}

template <typename CharT>
std::basic_string<CharT> msText(double ms, long long decimals) {
  return widenAscii<CharT>(formatAscii("%.*f ms", clampDecimals(decimals), ms));
}

template <typename CharT>
std::basic_string<CharT> fixedText(double value, long long decimals) {
  return widenAscii<CharT>(formatAscii("%.*f", clampDecimals(decimals), value));
}

}  // namespace zeb::internal

#endif  // ZEB_STRINGS_INTERNAL_STRING_TEXT_H

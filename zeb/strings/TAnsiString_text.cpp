// TAnsiString_text.cpp: the text extraction and formatting members of TAnsiString (tags, tokens,
// lines, GUIDs, years, human-readable sizes and durations, sprintf).

#include <math.h>
#include <stdint.h>
#include <string.h>

#include <string>

#include "zeb/platform/wintypes.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/internal/printf_format.h"
#include "zeb/strings/zeb_cstr.h"

namespace {

// A run of bytes [begin, end) of some text, as byte indexes.
struct TextRange {
  int begin = 0;
  int end = 0;
  int size() const { return end - begin; }
};

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isHexDigit(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

const char* findText(const char* text, const char* needle, bool ignoreCase) {
  return ignoreCase ? zeb_strstri(text, needle) : strstr(text, needle);
}

int indexIn(const char* text, const char* p) {
  return static_cast<int>(p - text);
}

// The text between the first `startTag` at or after `start` and the following `endTag` (an empty
// or null `endTag` reaches the end). *next receives the index past the end tag, or -1.
bool findBetweenTags(const char* text, const char* startTag, const char* endTag, bool ignoreCase,
                     int start, TextRange* range, int* next) {
  if (next != nullptr) *next = -1;
  const int length = TAnsiString::length(text);
  if (length == 0 || startTag == nullptr || *startTag == '\0' || start > length) return false;
  const char* from = text + (start < 0 ? 0 : start);
  const char* opening = findText(from, startTag, ignoreCase);
  if (opening == nullptr) return false;
  const char* inner = opening + strlen(startTag);
  const bool toTheEnd = endTag == nullptr || *endTag == '\0';
  const char* closing = toTheEnd ? text + length : findText(inner, endTag, ignoreCase);
  if (closing == nullptr) return false;
  *range = TextRange{indexIn(text, inner), indexIn(text, closing)};
  if (next != nullptr) *next = indexIn(text, closing) + TAnsiString::length(endTag);
  return true;
}

bool inTrimSet(const char* trimSet, char c) {
  return trimSet != nullptr && c != '\0' && strchr(trimSet, c) != nullptr;
}

// The separator after `field`, or null when the field is the last one (always so for an empty
// separator).
const char* findSeparator(const char* field, const char* sep) {
  return *sep == '\0' ? nullptr : strstr(field, sep);
}

// Field `index` of `text` from `start`, fields separated by `sep`, trimmed of the bytes in
// `trimSet`. *next receives the index after the field's separator, or -1 after the last field.
bool findToken(const char* text, const char* sep, int index, int start, const char* trimSet,
               TextRange* range, int* next) {
  if (next != nullptr) *next = -1;
  const int length = TAnsiString::length(text);
  if (text == nullptr || index < 0 || start > length) return false;
  if (sep == nullptr) sep = "";
  const size_t sepLength = strlen(sep);
  const char* field = text + (start < 0 ? 0 : start);
  for (int i = 0; i < index; ++i) {
    const char* separator = findSeparator(field, sep);
    if (separator == nullptr) return false;
    field = separator + sepLength;
  }
  const char* separator = findSeparator(field, sep);
  const char* fieldEnd = separator != nullptr ? separator : text + length;
  if (next != nullptr && separator != nullptr) *next = indexIn(text, separator + sepLength);
  while (field < fieldEnd && inTrimSet(trimSet, *field)) ++field;
  while (fieldEnd > field && inTrimSet(trimSet, fieldEnd[-1])) --fieldEnd;
  *range = TextRange{indexIn(text, field), indexIn(text, fieldEnd)};
  return true;
}

// The position of the first run of exactly four digits in `text` whose value lies in
// [minYear, maxYear], or -1; *year receives that value. "0000" never matches: 0 means "no year".
int findYear(const char* text, int minYear, int maxYear, int* year) {
  if (text == nullptr) return -1;
  const char* p = text;
  while (*p != '\0') {
    if (!isDigit(*p)) {
      ++p;
      continue;
    }
    const char* run = p;
    while (isDigit(*p)) ++p;
    if (p - run != 4) continue;
    const int value = TAnsiString::strtoint(run, 0, 4);
    if (value > 0 && value >= minYear && value <= maxYear) {
      *year = value;
      return indexIn(text, run);
    }
  }
  return -1;
}

// Removes the four bytes of a year at `pos` and one space next to it: the one before, or else the
// one after.
void removeYear(char* text, int pos) {
  char* begin = text + pos;
  char* end = begin + 4;
  if (begin > text && begin[-1] == ' ') {
    --begin;
  } else if (*end == ' ') {
    ++end;
  }
  memmove(begin, end, strlen(end) + 1);
}

// Decimals for fromFloat and fromMs: 0..17.
int clampDecimals(int decimals) {
  return decimals < 0 ? 0 : decimals > 17 ? 17 : decimals;
}

// GUID text layout: 8-4-4-4-12 hexadecimal digits separated by dashes.
constexpr int kGuidTextLength = 36;

bool isGuidDash(int i) {
  return i == 8 || i == 13 || i == 18 || i == 23;
}

bool isGuidText(const char* text) {
  for (int i = 0; i < kGuidTextLength; ++i) {
    if (isGuidDash(i) ? text[i] != '-' : !isHexDigit(text[i])) return false;
  }
  return true;
}

// The byte whose two hexadecimal digits start at `text`.
uint8_t hexByte(const char* text) {
  return static_cast<uint8_t>(hextoint(text, 2));
}

}  // namespace

// ---- tags and tokens --------------------------------------------------------------------------

bool TAnsiString::fromBetweenTag(const char* text, const char* startTag, const char* endTag,
                                 bool ignoreCase, int start, int* next) {
  TextRange range;
  if (!findBetweenTags(text, startTag, endTag, ignoreCase, start, &range, next)) {
    clear();
    return false;
  }
  setText(text + range.begin, range.size());
  return true;
}

TAnsiString TAnsiString::subStringFromTags(const char* startTag, const char* endTag,
                                           bool ignoreCase, int start, int* next) const {
  TAnsiString result;
  result.fromBetweenTag(buffer, startTag, endTag, ignoreCase, start, next);
  return result;
}

bool TAnsiString::fromToken(const char* text, const char* sep, int index, int start, int* next,
                            const char* trimSet) {
  TextRange range;
  if (!findToken(text, sep, index, start, trimSet, &range, next)) {
    clear();
    return false;
  }
  setText(text + range.begin, range.size());
  return true;
}

TAnsiString TAnsiString::subStringFromToken(const char* sep, int index, int start, int* next,
                                            const char* trimSet) const {
  TAnsiString result;
  result.fromToken(buffer, sep, index, start, next, trimSet);
  return result;
}

const char* TAnsiString::fromFirstLine(const char* text) {
  if (text == nullptr) {
    clear();
    return nullptr;
  }
  const size_t lineLength = strcspn(text, "\r\n");
  const char* nextLine = text + lineLength;
  if (*nextLine == '\r') ++nextLine;
  if (*nextLine == '\n') ++nextLine;
  setText(text, static_cast<int>(lineLength));
  return *nextLine != '\0' ? nextLine : nullptr;
}

// ---- GUIDs --------------------------------------------------------------------------------------

bool TAnsiString::hexToGUID(void* guid) const {
  const char* text = buffer;
  int textLength = length();
  if (guid == nullptr) return false;
  if (textLength == kGuidTextLength + 2 && text[0] == '{' && text[textLength - 1] == '}') {
    ++text;
    textLength -= 2;
  }
  if (textLength != kGuidTextLength || !isGuidText(text)) return false;
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

TAnsiString& TAnsiString::fromGUID(const void* guid, bool braces) {
  if (guid == nullptr) {
    clear();
    return *this;
  }
  GUID g;
  memcpy(&g, guid, sizeof g);
  sprintf("%s%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X%s", braces ? "{" : "",
          unsigned(g.Data1), unsigned(g.Data2), unsigned(g.Data3), g.Data4[0], g.Data4[1],
          g.Data4[2], g.Data4[3], g.Data4[4], g.Data4[5], g.Data4[6], g.Data4[7],
          braces ? "}" : "");
  return *this;
}

// ---- years --------------------------------------------------------------------------------------

int TAnsiString::extractYearEX(char* text, bool removeIt, int minYear, int maxYear) {
  int year = 0;
  const int pos = findYear(text, minYear, maxYear, &year);
  if (pos >= 0 && removeIt) removeYear(text, pos);
  return year;
}

int TAnsiString::extractYear(const char* text, int minYear, int maxYear) {
  int year = 0;
  findYear(text, minYear, maxYear, &year);
  return year;
}

// ---- sizes and durations ------------------------------------------------------------------------

TAnsiString& TAnsiString::fromFileSize(long long bytes, const char* separator) {
  static const char* const kUnits[] = {"B", "KB", "MB", "GB", "TB", "PB", "EB"};
  constexpr int kLastUnit = 6;
  if (separator == nullptr) separator = " ";
  if (bytes > -1024 && bytes < 1024) {
    sprintf("%lld%s%s", bytes, separator, kUnits[0]);
    return *this;
  }
  // Move up a unit while the value would print as 1024.00 or more.
  double value = static_cast<double>(bytes);
  int unit = 0;
  do {
    value /= 1024;
    ++unit;
  } while (unit < kLastUnit && round(fabs(value) * 100) >= 102400);
  sprintf("%.2f%s%s", value, separator, kUnits[unit]);
  return *this;
}

TAnsiString& TAnsiString::fromSeconds(int seconds) {
  const unsigned magnitude = seconds < 0 ? 0u - unsigned(seconds) : unsigned(seconds);
  sprintf("%s%u:%02u:%02u", seconds < 0 ? "-" : "", magnitude / 3600, magnitude / 60 % 60,
          magnitude % 60);
  return *this;
}

TAnsiString& TAnsiString::fromMs(double ms, int decimals) {
  sprintf("%.*f ms", clampDecimals(decimals), ms);
  return *this;
}

TAnsiString& TAnsiString::fromFloat(double value, int decimals) {
  sprintf("%.*f", clampDecimals(decimals), value);
  return *this;
}

// ---- printf-style formatting --------------------------------------------------------------------

int TAnsiString::sprintf(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  const int result = sprintfArgs(fmt, args);
  va_end(args);
  return result;
}

// The text is formatted apart and then copied in, so the format and the arguments may point into
// this string. A NUL produced by %c ends the content.
int TAnsiString::sprintfArgs(const char* fmt, va_list args) {
  if (fmt == nullptr) {
    clear();
    return 0;
  }
  std::string text;
  zeb::internal::formatPrintf(text, fmt, args);
  setText(text.c_str());
  return length();
}

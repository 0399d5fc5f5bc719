// TAnsiString_text.cpp: the text extraction and formatting members of TAnsiString (tags, tokens,
// lines, GUIDs, years, human-readable sizes and durations, sprintf). The algorithms are shared
// with TWideString in internal/string_text.h.

#include "zeb/strings/TAnsiString.h"

#include "zeb/strings/internal/string_text.h"

namespace core = zeb::internal;
using Buffer = core::StringBuffer<TAnsiString, char>;

// ---- tags, tokens and lines ---------------------------------------------------------------------

bool TAnsiString::fromBetweenTag(const char* text, const char* startTag, const char* endTag,
                                 bool ignoreCase, int start, int* next) {
  return core::setBetweenTags(Buffer(buffer, capacity), text, startTag, endTag, ignoreCase, start,
                              next);
}

TAnsiString TAnsiString::subStringFromTags(const char* startTag, const char* endTag,
                                           bool ignoreCase, int start, int* next) const {
  TAnsiString result;
  result.fromBetweenTag(buffer, startTag, endTag, ignoreCase, start, next);
  return result;
}

bool TAnsiString::fromToken(const char* text, const char* sep, int index, int start, int* next,
                            const char* trimSet) {
  return core::setToken(Buffer(buffer, capacity), text, sep, index, start, next, trimSet);
}

TAnsiString TAnsiString::subStringFromToken(const char* sep, int index, int start, int* next,
                                            const char* trimSet) const {
  TAnsiString result;
  result.fromToken(buffer, sep, index, start, next, trimSet);
  return result;
}

const char* TAnsiString::fromFirstLine(const char* text) {
  return core::setFirstLine(Buffer(buffer, capacity), text);
}

// ---- GUIDs and years ----------------------------------------------------------------------------

bool TAnsiString::hexToGUID(void* guid) const {
  return core::parseGuid(buffer, guid);
}

TAnsiString& TAnsiString::fromGUID(const void* guid, bool braces) {
  if (guid == nullptr) return clear();
  return setText(core::guidText<char>(guid, braces).c_str());
}

int TAnsiString::extractYearEX(char* text, bool removeIt, int minYear, int maxYear) {
  return core::extractYearFrom(text, removeIt, minYear, maxYear);
}

int TAnsiString::extractYear(const char* text, int minYear, int maxYear) {
  int year = 0;
  core::findYear(text, minYear, maxYear, &year);
  return year;
}

// ---- sizes, durations and numbers ---------------------------------------------------------------

TAnsiString& TAnsiString::fromFileSize(long long bytes, const char* separator) {
  return setText(core::fileSizeText(bytes, separator).c_str());
}

TAnsiString& TAnsiString::fromSeconds(int seconds) {
  return setText(core::secondsText<char>(seconds).c_str());
}

TAnsiString& TAnsiString::fromMs(double ms, int decimals) {
  return setText(core::msText<char>(ms, decimals).c_str());
}

TAnsiString& TAnsiString::fromFloat(double value, int decimals) {
  return setText(core::fixedText<char>(value, decimals).c_str());
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
  setText(core::formatText(fmt, args).c_str());
  return length();
}

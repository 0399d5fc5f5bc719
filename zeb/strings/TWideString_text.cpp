// TWideString_text.cpp: the text extraction and formatting members of TWideString (tags, tokens,
// lines, GUIDs, years, human-readable sizes and durations, the sprintf family). The algorithms are
// shared with TAnsiString in internal/string_text.h.

#include "zeb/strings/TWideString.h"

#include "zeb/strings/internal/string_text.h"

namespace core = zeb::internal;
using Buffer = core::StringBuffer<TWideString, zwchar_t>;

namespace {

// sprintfA, sprintfGB, sprintfFormatA: the 8-bit engine formats, then the text is converted from
// charset `cs`. A null format gives "".
int setFormattedFrom(TWideString& s, tmibcharset cs, const char* fmt, va_list args) {
  if (fmt == nullptr) {
    s.clear();
    return 0;
  }
  s = TWideString(core::formatText(fmt, args).c_str(), cs);
  return s.length();
}

}  // namespace

// ---- tags, tokens and lines ---------------------------------------------------------------------

bool TWideString::fromBetweenTag(const zwchar_t* text, const zwchar_t* startTag,
                                 const zwchar_t* endTag, bool ignoreCase, int start, int* next) {
  return core::setBetweenTags(Buffer(buffer, capacity), text, startTag, endTag, ignoreCase, start,
                              next);
}

TWideString TWideString::subStringFromTags(const zwchar_t* startTag, const zwchar_t* endTag,
                                           bool ignoreCase, int start, int* next) const {
  TWideString result;
  result.fromBetweenTag(buffer, startTag, endTag, ignoreCase, start, next);
  return result;
}

bool TWideString::fromToken(const zwchar_t* text, const zwchar_t* sep, int index, int start,
                            int* next, const zwchar_t* trimSet) {
  return core::setToken(Buffer(buffer, capacity), text, sep, index, start, next, trimSet);
}

TWideString TWideString::subStringFromToken(const zwchar_t* sep, int index, int start, int* next,
                                            const zwchar_t* trimSet) const {
  TWideString result;
  result.fromToken(buffer, sep, index, start, next, trimSet);
  return result;
}

const zwchar_t* TWideString::fromFirstLine(const zwchar_t* text) {
  return core::setFirstLine(Buffer(buffer, capacity), text);
}

// ---- GUIDs and years ----------------------------------------------------------------------------

bool TWideString::hexToGUID(void* guid) const {
  return core::parseGuid(buffer, guid);
}

TWideString& TWideString::fromGUID(const void* guid, bool braces) {
  if (guid == nullptr) return clear();
  return setText(core::guidText<zwchar_t>(guid, braces).c_str());
}

int TWideString::extractYearEX(zwchar_t* text, bool removeIt, int minYear, int maxYear) {
  return core::extractYearFrom(text, removeIt, minYear, maxYear);
}

int TWideString::extractYear(const zwchar_t* text, int minYear, int maxYear) {
  int year = 0;
  core::findYear(text, minYear, maxYear, &year);
  return year;
}

// ---- sizes, durations and numbers ---------------------------------------------------------------

TWideString& TWideString::fromFileSize(long long bytes, const zwchar_t* separator) {
  return setText(core::fileSizeText(bytes, separator).c_str());
}

TWideString& TWideString::fromSeconds(int seconds) {
  return setText(core::secondsText<zwchar_t>(seconds).c_str());
}

TWideString& TWideString::fromMs(double ms, int decimals) {
  return setText(core::msText<zwchar_t>(ms, decimals).c_str());
}

TWideString& TWideString::fromFloat(double value, unsigned int decimals) {
  return setText(core::fixedText<zwchar_t>(value, decimals).c_str());
}

// ---- printf-style formatting --------------------------------------------------------------------

int TWideString::sprintf(const zwchar_t* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  const int result = sprintfArgs(fmt, args);
  va_end(args);
  return result;
}

// The text is formatted apart and then copied in, so the format and the arguments may point into
// this string. A NUL produced by %c ends the content.
int TWideString::sprintfArgs(const zwchar_t* fmt, va_list args) {
  if (fmt == nullptr) {
    clear();
    return 0;
  }
  setText(core::formatText(fmt, args).c_str());
  return length();
}

int TWideString::sprintfA(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  const int result = setFormattedFrom(*this, MIB_ANSI, fmt, args);
  va_end(args);
  return result;
}

int TWideString::sprintfGB(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  const int result = setFormattedFrom(*this, MIB_GB2312, fmt, args);
  va_end(args);
  return result;
}

int TWideString::sprintfFormatA(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  const int result = setFormattedFrom(*this, MIB_UTF8, fmt, args);
  va_end(args);
  return result;
}

// TWideString_path.cpp: the path and quoting members of TWideString, on the shared path
// algorithms of internal/path_text.h, and the file-name clean-up that TAnsiString reaches
// through this class.

#include "zeb/strings/TWideString.h"
#include "zeb/strings/internal/path_text.h"

namespace path = zeb::path;

namespace {

bool isRejectedInName(zwchar_t c) {
  switch (c) {
    case '<':
    case '>':
    case ':':
    case '"':
    case '|':
    case '?':
    case '*':
      return true;
    default:
      return c < 32;
  }
}

bool isAsciiLetter(zwchar_t c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool keptInPath(const zwchar_t* text, int i) {
  return path::PathText<zwchar_t>::isSeparator(text[i]) ||
         (i == 1 && text[1] == ':' && isAsciiLetter(text[0]));
}

}  // namespace

TWideString& TWideString::extractFileName() {
  return path::keepFileName(*this);
}
TWideString& TWideString::extractFileDir() {
  return path::keepFileDir(*this);
}
TWideString& TWideString::extractFileDriver() {
  return path::keepFileDrive(*this);
}
TWideString& TWideString::extractFileExt() {
  return path::keepFileExt(*this);
}
TWideString& TWideString::extractFileNameNoExt() {
  return path::keepFileNameNoExt(*this);
}
TWideString& TWideString::normalizeFileNameSplash(zwchar_t sep) {
  return path::collapseSeparatorRuns(*this, sep);
}

TWideString& TWideString::normalizeFileName(bool keepPath) {
  const int len = length();
  for (int i = 0; i < len; ++i) {
    const bool separator = path::PathText<zwchar_t>::isSeparator(buffer[i]);
    const bool rejected = separator || isRejectedInName(buffer[i]);
    if (rejected && !(keepPath && keptInPath(buffer, i))) buffer[i] = '_';
  }
  int end = len;
  while (end > 0 && (buffer[end - 1] == ' ' || buffer[end - 1] == '.')) --end;
  if (end < len) buffer[end] = 0;
  return *this;
}

bool TWideString::isEndWithBacksplash(zwchar_t) const {
  return path::endsWithSeparator(*this);
}
TWideString& TWideString::ensureEndWithBacksplash(zwchar_t sep) {
  return path::ensureEndsWithSeparator(*this, sep);
}
TWideString& TWideString::removeEndedBacksplash() {
  return path::removeEndingSeparator(*this);
}
bool TWideString::isQuoted() const {
  return path::startsQuoted(*this);
}
TWideString& TWideString::ensureQuoted() {
  return path::addMissingQuotes(*this);
}
TWideString TWideString::extractFileNameFromURL() const {
  return path::urlFileName(*this);
}

// TAnsiString_path.cpp: the path and quoting members of TAnsiString, on the shared path
// algorithms of internal/path_text.h.

#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/strings/internal/path_text.h"

namespace path = zeb::path;

TAnsiString& TAnsiString::extractFileName() {
  return path::keepFileName(*this);
}
TAnsiString& TAnsiString::extractFileDir() {
  return path::keepFileDir(*this);
}
TAnsiString& TAnsiString::extractFileDriver() {
  return path::keepFileDrive(*this);
}
TAnsiString& TAnsiString::extractFileExt() {
  return path::keepFileExt(*this);
}
TAnsiString& TAnsiString::extractFileNameNoExt() {
  return path::keepFileNameNoExt(*this);
}
TAnsiString& TAnsiString::normalizeFileNameSplash(char sep) {
  return path::collapseSeparatorRuns(*this, sep);
}

// The 16-bit rules do the work: UTF-8 and ASCII text is read as such, any other charset as the
// ANSI code page; the result is written back in `cs`.
TAnsiString& TAnsiString::normalizeFileName(tmibcharset cs, bool keepPath) {
  const tmibcharset from = cs == MIB_UTF8 || cs == MIB_ASCII ? cs : MIB_ANSI;
  TWideString wide(buffer, from);
  wide.normalizeFileName(keepPath);
  fromWideString(wide.p(), cs);
  return *this;
}

bool TAnsiString::isEndWithBacksplash(char) const {
  return path::endsWithSeparator(*this);
}
TAnsiString& TAnsiString::ensureEndWithBacksplash(char sep) {
  return path::ensureEndsWithSeparator(*this, sep);
}
TAnsiString& TAnsiString::removeEndedBacksplash() {
  return path::removeEndingSeparator(*this);
}
bool TAnsiString::isQuoted() const {
  return path::startsQuoted(*this);
}
TAnsiString& TAnsiString::ensureQuoted() {
  return path::addMissingQuotes(*this);
}
TAnsiString TAnsiString::extractFileNameFromURL() const {
  return path::urlFileName(*this);
}

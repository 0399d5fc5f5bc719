// utf8_path.h (POSIX, private): the one conversion of the library's 16-bit paths to the 8-bit
// paths of the POSIX calls.
#ifndef ZEB_PLATFORM_POSIX_UTF8_PATH_H
#define ZEB_PLATFORM_POSIX_UTF8_PATH_H

#include "zeb/strings/TAnsiString.h"

namespace zeb {
namespace platform {

// `path` in UTF-8 in `out`, every '\\' turned into '/' (the byte 0x5C never occurs inside a
// UTF-8 sequence); false for a null or empty path or one that does not convert.
inline bool toUtf8Path(const zwchar_t* path, TAnsiString& out) {
  if (!out.fromWideString(path, MIB_UTF8)) return false;
  for (char* c = out.data(); *c != '\0'; ++c) {
    if (*c == '\\') *c = '/';
  }
  return true;
}

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_POSIX_UTF8_PATH_H

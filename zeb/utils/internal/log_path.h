// log_path.h (private): log lines about one file-system path, shared by the file helpers.
#ifndef ZEB_UTILS_INTERNAL_LOG_PATH_H
#define ZEB_UTILS_INTERNAL_LOG_PATH_H

#include "zeb/log/zeb_log.h"
#include "zeb/strings/TAnsiString.h"

namespace zeb {
namespace internal {

// Logs `fmt` with `path` in UTF-8 as its one argument when `level` passes the global level.
inline void logPath(tloglevel level, const char* tag, const char* fmt, const zwchar_t* path) {
  if (!ZEB_LOG_ENABLED(level)) return;
  TAnsiString utf8;
  utf8.fromWideString(path, MIB_UTF8);
  mlogWithLevel(level, tag, fmt, utf8.isEmpty() ? "" : utf8.p());
}

}  // namespace internal
}  // namespace zeb

#endif  // ZEB_UTILS_INTERNAL_LOG_PATH_H

// assertion_record.h: the record a programming error leaves in the log (a date out of range, a
// thread deleted while working): a level-1 line naming the source, the function and the line,
// with no message. The operation that hit the error carries on.
#ifndef ZEB_LOG_INTERNAL_ASSERTION_RECORD_H
#define ZEB_LOG_INTERNAL_ASSERTION_RECORD_H

#include "zeb/log/zeb_log.h"

namespace zeb::internal {

inline void writeAssertionRecord(const char* source, const char* function, int line) {
  if (ZEB_LOG_ENABLED(MLOG_ASSERT)) {
    mlogWithLevelFileFunLine(MLOG_ASSERT, source, function, line, "");
  }
}

}  // namespace zeb::internal

#endif  // ZEB_LOG_INTERNAL_ASSERTION_RECORD_H

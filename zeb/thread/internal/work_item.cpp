// work_item.cpp: the guarded run of one pool item.
#include "zeb/thread/internal/work_item.h"

#include <exception>

#include "zeb/log/zeb_log.h"

namespace zeb {
namespace thread_internal {

void runWorkItem(WorkItem& item, const char* tag, const char* owner) {
  try {
    if (item.notify != nullptr) {
      item.notify->run();
    } else {
      item.fn();
    }
  } catch (const std::exception& e) {
    if (ZEB_LOG_ENABLED(MLOG_ERROR)) {
      mlogWithLevel(MLOG_ERROR, tag, "%s: work item threw: %s", owner, e.what());
    }
  } catch (...) {
    if (ZEB_LOG_ENABLED(MLOG_ERROR)) mlogWithLevel(MLOG_ERROR, tag, "%s: work item threw", owner);
  }
  dropWorkItem(item);
}

}  // namespace thread_internal
}  // namespace zeb

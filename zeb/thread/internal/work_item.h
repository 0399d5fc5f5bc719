// work_item.h: one queued unit of work of the worker pools: a function, or an owned notify object
// when the function is empty, and the guarded call that runs it once.
#ifndef ZEB_THREAD_INTERNAL_WORK_ITEM_H
#define ZEB_THREAD_INTERNAL_WORK_ITEM_H

#include <functional>

#include "zeb/thread/zeb_Thread.h"

namespace zeb {
namespace thread_internal {

struct WorkItem {
  std::function<void()> fn;
  tNotifyTmp<void>* notify = nullptr;
};

// Runs the item, deletes its notify object and catches what it throws: an error line tagged
// `tag` naming `owner`.
void runWorkItem(WorkItem& item, const char* tag, const char* owner);

// Deletes the notify object of an item that will never run.
inline void dropWorkItem(WorkItem& item) {
  delete item.notify;
  item.notify = nullptr;
}

}  // namespace thread_internal
}  // namespace zeb

#endif  // ZEB_THREAD_INTERNAL_WORK_ITEM_H

// log_thread_context.h: the log's per-thread state. Private to the log core.
#ifndef ZEB_LOG_INTERNAL_LOG_THREAD_CONTEXT_H
#define ZEB_LOG_INTERNAL_LOG_THREAD_CONTEXT_H

namespace zeb {
namespace log_internal {

// Depth of the tick stack of mlogBeginTickCount / mlogEndTickCount.
constexpr int kTickSlots = 49;

// Zero-filled when a thread first logs and released with the thread. It is trivially
// destructible on purpose: lines written while the process exits (a module's global_loginit
// finalising from a static destructor) still find it after the thread's other thread-local
// objects are gone.
struct ThreadContext {
  // The longest tag this thread has written; shorter tags are padded with '.' to it.
  int tagWidth;
  // Spaces of indentation, changed in steps of 2 by mlogFormatPush / mlogFormatPop.
  int indent;
  // The tick stack: start times (milliseconds since load) of the open mlogBeginTickCount calls,
  // tickIndex of them in use.
  long long tickStarts[kTickSlots];
  int tickIndex;
  // The kernel's id of the thread, read on the first line (0 until then).
  unsigned long threadId;
  // "YYYY-MM-DD hh:mm:ss" of the wall-clock second stampSecond (stampLength 0: none yet), so
  // that the local time is converted once per second rather than once per line.
  long long stampSecond;
  int stampLength;
  char stampText[48];
};

inline ThreadContext& threadContext() {
  thread_local ThreadContext context{};
  return context;
}

}  // namespace log_internal
}  // namespace zeb

#endif  // ZEB_LOG_INTERNAL_LOG_THREAD_CONTEXT_H

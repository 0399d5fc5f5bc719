// live_threads.h: the process-wide table behind thread handles.
//
// Every thread the wrapper starts gets an id from a counter that only grows, so ids are never
// reused. The id enters the table before the native thread is created (a thread that finishes at
// once still leaves its trace in the right order) and leaves it when the thread routine has
// returned. The entry also holds the kernel id of the thread, which the thread records itself
// when it starts (0 until then).
//
//   LiveThreads::Id id = table.add();
//   ...                                     // on the new thread:
//   table.recordKernelId(id, currentThreadId());
//   run();
//   table.remove(id);                       // wakes waitUntilRemoved(id)
#ifndef ZEB_THREAD_INTERNAL_LIVE_THREADS_H
#define ZEB_THREAD_INTERNAL_LIVE_THREADS_H

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <unordered_map>

namespace zeb {
namespace thread_internal {

class LiveThreads {
 public:
  // 0 is never handed out, so a null handle is never live.
  using Id = std::uintptr_t;

  Id add() {
    std::lock_guard<std::mutex> lock(mutex_);
    const Id id = ++lastId_;
    kernelIds_.emplace(id, 0UL);
    return id;
  }

  void recordKernelId(Id id, unsigned long kernelId) {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto entry = kernelIds_.find(id);
    if (entry != kernelIds_.end()) entry->second = kernelId;
  }

  void remove(Id id) {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      kernelIds_.erase(id);
    }
    removed_.notify_all();
  }

  // True while `id` is in the table; then *kernelId (when not null) is its thread's kernel id.
  bool find(Id id, unsigned long* kernelId) const {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto entry = kernelIds_.find(id);
    if (entry == kernelIds_.end()) return false;
    if (kernelId != nullptr) *kernelId = entry->second;
    return true;
  }

  void waitUntilRemoved(Id id) {
    std::unique_lock<std::mutex> lock(mutex_);
    removed_.wait(lock, [&] { return kernelIds_.count(id) == 0; });
  }

 private:
  mutable std::mutex mutex_;
  std::condition_variable removed_;
  std::unordered_map<Id, unsigned long> kernelIds_;
  Id lastId_ = 0;
};

}  // namespace thread_internal
}  // namespace zeb

#endif  // ZEB_THREAD_INTERNAL_LIVE_THREADS_H

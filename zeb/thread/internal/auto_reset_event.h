// auto_reset_event.h: an unnamed auto-reset event: set() wakes one waiter, or the next one to
// wait when nobody waits yet; a successful wait resets it.
//
//   AutoResetEvent done;
//   ... on another thread: work(); done.set();
//   done.wait();
//
// set() signals while it holds the lock, so a waiter may destroy the event as soon as its wait
// has returned.
#ifndef ZEB_THREAD_INTERNAL_AUTO_RESET_EVENT_H
#define ZEB_THREAD_INTERNAL_AUTO_RESET_EVENT_H

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace zeb {
namespace thread_internal {

class AutoResetEvent {
 public:
  void set() {
    std::lock_guard<std::mutex> lock(mutex_);
    signaled_ = true;
    wake_.notify_one();
  }

  // Waits without limit.
  void wait() {
    std::unique_lock<std::mutex> lock(mutex_);
    wake_.wait(lock, [this] { return signaled_; });
    signaled_ = false;
  }

  // Waits at most `ms` milliseconds; true when the event was set.
  bool waitFor(int ms) {
    std::unique_lock<std::mutex> lock(mutex_);
    if (!wake_.wait_for(lock, std::chrono::milliseconds(ms), [this] { return signaled_; })) {
      return false;
    }
    signaled_ = false;
    return true;
  }

 private:
  std::mutex mutex_;
  std::condition_variable wake_;
  bool signaled_ = false;
};

}  // namespace thread_internal
}  // namespace zeb

#endif  // ZEB_THREAD_INTERNAL_AUTO_RESET_EVENT_H

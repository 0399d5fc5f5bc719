// zeb_Thread.h: the library's thread wrapper and fire-and-forget threads.
//
// A zeb::TThread runs one body on its own operating-system thread. The body is either the
// overridable onRun, a plain function with a user pointer, or a stored callable. The object keeps
// a working status, a stop request that the body polls (hasStopRequested), and two policies fixed
// by the constructor's flag word: delete the object when the body returns, and stop-and-wait
// before the object is released.
//
//   class TCounter : public zeb::TThread {
//    public:
//     TCounter() : TThread("counter", zeb::TThread::flagWaitStopBeforeDestroy) {}
//    protected:
//     void onRun() override { while (!hasStopRequested()) step(); }
//   };
//   TCounter* t = new TCounter;
//   t->Exec();
//   ...
//   t->release();   // asks the body to stop, waits for it, deletes the object
//
//   zeb::TThread::postRun([] { flush(); }, 100);   // runs on a new thread about 100 ms later
//
// Objects are never deleted by their users: they end through release() or, with
// flagDeleteOnExit, delete themselves when the body returns (such objects must not be released
// by another thread, and must not be touched once Exec has returned).
//
// Thread handles (void*) are opaque ids into a process-wide table of live threads. A thread's
// entry leaves the table when its thread routine has returned; ids are never reused, so a handle
// kept after its thread ended simply reads "not running" (running(handle) is false). Nothing has
// to be closed. Thread ids are the kernel's ids (what a debugger shows).
//
// Every operation is safe to call from any thread while the object exists: the status, the
// flags, the handle and the thread id are read and written under the object's lock (a recursive
// lock, so derived classes may call these members from within the virtual operations).
// Everything is traced with the tag "zeb.thread".
#ifndef ZEB_THREAD_ZEB_THREAD_H
#define ZEB_THREAD_ZEB_THREAD_H

#include <functional>
#include <utility>

#include "zeb/zeb_api.h"

namespace zeb {

// A heap object holding a callable that takes nothing and returns R: the unit of work handed to
// threads and task threads. run() (the first virtual operation) invokes the callable; an empty
// callable gives R(). Derived classes may override run() instead of passing a callable. Whoever
// receives the object owns it and deletes it through the virtual destructor.
template <typename R>
class tNotifyTmp {
 public:
  tNotifyTmp() = default;
  explicit tNotifyTmp(std::function<R()> fn) : m_fn(std::move(fn)) {}
  tNotifyTmp(const tNotifyTmp&) = delete;
  tNotifyTmp& operator=(const tNotifyTmp&) = delete;

  virtual R run() { return m_fn ? m_fn() : R(); }
  virtual ~tNotifyTmp() = default;

 private:
  std::function<R()> m_fn;
};

class tthreadprivate;

class ZEB_API TThread {
 public:
  // The working status (32-bit).
  enum twokringstatus : int {
    statusNotStarted = 0,
    statusWorking = 1,  // from Exec until the body returns
    statusStopped = 2,  // the body has returned, or the thread could not be created
  };

  // Bits of the constructor's flag word; other bits are ignored.
  enum tthreadflags : int {
    // release() asks the body to stop (stop()) and waits for it without limit.
    flagWaitStopBeforeDestroy = 0x1,
    // The thread routine deletes the object once the body has returned.
    flagDeleteOnExit = 0x2,
  };

  // Body: the virtual onRun. A null name is kept as "".
  explicit TThread(const char* name, int flags = 0);
  // Body: fn(data) (onRun when fn is null).
  TThread(const char* name, void (*fn)(void*), void* data, int flags = 0);
  // Body: the callable (onRun when it is empty). Logs its settings at level 20.
  TThread(const char* name, std::function<void()> fn, int flags = 0);
  TThread(const TThread&) = delete;
  TThread& operator=(const TThread&) = delete;

  // Ends the object's life: with flagWaitStopBeforeDestroy, stop() and wait without limit for
  // the body to return; otherwise an error line when the body still runs. Then waits for the
  // thread to end (a body that never polls hasStopRequested makes this block) and deletes the
  // object. A never-started object is deleted at once. Called from the object's own body, or on
  // a delete-on-exit object whose thread still runs, it does not wait: the object is deleted by
  // its thread when the body returns.
  virtual void release();
  // Requests the body to stop (sets the flag read by hasStopRequested) and returns at once.
  virtual void stop();

  // Starts the thread unless the body is already working: clears the stop request, sets the
  // status to working and calls onCreateThread. Returns the thread handle, null when no thread
  // could be created (the status is then stopped, and even a delete-on-exit object is left to
  // its creator's release()). Exec on a stopped object starts it again.
  void* Exec();

  // The stop request; bodies poll it.
  bool hasStopRequested() const;
  // Waits until the status is no longer working. timeoutMs <= 0 waits without limit; otherwise
  // false (and a level-20 line) once more than timeoutMs milliseconds have passed, the thread
  // carrying on. Polls every millisecond on a monotonic clock. Called from the object's own
  // thread it returns true at once.
  bool waitStop(int timeoutMs);
  bool join(int timeoutMs);
  // stop() then waitStop(timeoutMs).
  bool stopAndWait(int timeoutMs);

  void setWaitStopBeforeDestroy(bool wait);
  bool isWorking() const;
  const char* name() const;
  // The kernel id of the object's thread. The new thread records it before it runs the body, so
  // it reads 0 until then.
  unsigned long threadID() const;
  // The handle of the running thread; null before Exec and once the body has returned.
  void* threadHandle() const;
  // True when called on the object's thread. While the id reads 0 (not started yet) no thread
  // is the object's, so the result is false.
  bool isCurrentThread() const;

  // The kernel id of the calling thread.
  static unsigned long currentThreadId();
  // True while the thread of `handle` has not ended (null or stale handles: false).
  static bool running(void* handle);
  // True when called on the thread of `handle` (null, stale or unknown handles: false).
  static bool isCurrentThread(void* handle);
  // Runs fn (or notify, which the new thread owns and deletes) on a new thread after sleeping
  // delayMs when positive. Returns the thread's handle; null when fn is empty, notify is null or
  // no thread could be created (notify is then deleted).
  static void* postRun(std::function<void()> fn, int delayMs = 0);
  static void* postRun(tNotifyTmp<void>* notify, int delayMs = 0);

 protected:
  // The body of objects built without a function or callable; empty here.
  virtual void onRun();
  // Starts the native thread for Exec (which holds the lock). Returns true without starting
  // anything when the held handle still runs. On failure writes an assertion record and sets the
  // status to stopped. Returns whether a handle is held.
  virtual bool onCreateThread();
  // Destroying an object whose status is working writes an assertion record.
  virtual ~TThread();

  void setWorking(twokringstatus status);
  twokringstatus getWorkingStatus() const;
  void setThreadID(const unsigned long& id);
  void setThreadHandle(void* handle);

 private:
  friend class tthreadprivate;
  tthreadprivate* d;
};

}  // namespace zeb

// C entry points (undecorated names). Each returns the new thread's handle (null as for
// zeb::TThread::postRun).
extern "C" {

// zeb::TThread::postRun(notify, delayMs).
ZEB_API void* thread_postRun(zeb::tNotifyTmp<void>* notify, int delayMs);
// Copies `size` bytes of `data` (a negative size, or null data, counts as 0) and calls
// fn(copy, size) on a new thread after delayMs; the caller's buffer may change or go away as soon
// as the call returns. The copy lives until fn returns. A null fn starts nothing.
ZEB_API void* thread_postRunV1(void (*fn)(const void* data, int size), const void* data, int size,
                               int delayMs);
// zeb::TThread::running(handle).
ZEB_API bool threadIsRuning(void* handle);

}  // extern "C"

#endif  // ZEB_THREAD_ZEB_THREAD_H

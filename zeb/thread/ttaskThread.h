// ttaskThread.h: task threads that run posted tasks in order of their fire time.
//
// A ttaskThread runs one-shot, delayed and repeating tasks on its own thread. Tasks run in order
// of fire time, and among equal fire times the higher priority first (tasks posted with delay 0
// run before every delayed task). Fire times fall on whole milliseconds, so tasks posted with the
// same delay in the same millisecond run by priority. A repeating task runs every intervalMs milliseconds, `repeat`
// times (0: until its run() returns false); periods missed by a slow run are skipped.
//
//   ttaskThread* worker = new ttaskThread(ttaskthreadnotauto(), "worker", 0);
//   worker->Exec();
//   worker->postRunTask([] { save(); });                          // as soon as possible
//   worker->postRunTask([] { flush(); }, 500);                    // 500 ms from now
//   ttask* poll = worker->postRunTaskRepeat([] { return poll() ? 1 : 0; }, 0, 0, 100, 0);
//   worker->removeTask(poll, true);
//   worker->release();                  // stops the thread and deletes it with its pending tasks
//
// The task thread named "mainthread" is the UI task thread: it runs its tasks on the application's
// UI thread, driven by a 16 ms timer on that thread's main loop (GLib's on POSIX):
//
//   ttaskThread::initCreateMainUIThread();                 // on the UI thread, before its loop
//   ttaskThread::runOnUIThread([] { updateView(); });      // from any thread
//   ttaskThread::finalizeMainUIThread();                   // on the UI thread, at the end
//
// Tasks are owned by the task thread once posted: it deletes them when they are done, removed,
// or posted to a thread that is stopping. The pointer postTask returns is only a handle for
// removeTask. Everything is traced with the tag "zeb.taskThread".
#ifndef ZEB_THREAD_TTASKTHREAD_H
#define ZEB_THREAD_TTASKTHREAD_H

#include <functional>

#include "zeb/thread/zeb_Thread.h"
#include "zeb/zeb_api.h"

// The unit of work. run() returns false when a repeating task must not run again.
class ZEB_API ttask {
 public:
  ttask() = default;
  ttask(const ttask&) = delete;
  ttask& operator=(const ttask&) = delete;
  virtual ~ttask();
  virtual bool run() = 0;
};

// A task that calls a function (an empty one does nothing); run() returns true.
class ZEB_API tRunnerTask : public ttask {
 public:
  explicit tRunnerTask(std::function<void()> fn);
  bool run() override;

 private:
  std::function<void()> m_fn;
};

// A task that calls a function and returns its result as bool (0 ends a repeating task; an empty
// function gives false).
class ZEB_API tRunnerRepeatTask : public ttask {
 public:
  explicit tRunnerRepeatTask(std::function<int()> fn);
  bool run() override;

 private:
  std::function<int()> m_fn;
};

// Tag of the task thread constructor: the thread is started by Exec(), not by the constructor.
struct ttaskthreadnotauto {};

class ttaskthreadprivate;

class ZEB_API ttaskThread : public zeb::TThread {
 public:
  // `flags` is the zeb::TThread flag word. The thread named "mainthread" is in UI mode: it never
  // starts a thread of its own (use initCreateMainUIThread).
  ttaskThread(ttaskthreadnotauto, const char* name, int flags);

  // Requests the runner to stop and wakes it. Called on the owner thread, the status becomes
  // stopped at once; so it does from any thread for the UI task thread, which has no runner of
  // its own. Tasks posted afterwards are deleted without running.
  void stop() override;
  // Runs the due tasks once when called on the owner thread, stops, waits (polling every 20 ms)
  // until the runner has stopped, then deletes the object and every task still queued. A UI task
  // thread released while it runs tasks (from one of them, or from another thread) is deleted when
  // that run of tasks returns.
  void release() override;

  // Queues `task` to run `delayMs` ms from now (0: as soon as possible), then every `intervalMs`
  // ms (< 1: once) for `repeat` runs (0: unlimited). Returns the task, or null when `task` is
  // null or the thread is stopping (the task is then deleted).
  ttask* postTask(ttask* task, int delayMs = 0, int priority = 0, int intervalMs = 0,
                  int repeat = 0);
  // A one-shot task calling fn / the notify object (owned; null posts nothing).
  ttask* postRunTask(std::function<void()> fn, int delayMs = 0, int priority = 0);
  ttask* postRunTask(zeb::tNotifyTmp<void>* notify, int delayMs = 0, int priority = 0);
  // A repeating task calling fn / the notify object until it returns 0.
  ttask* postRunTaskRepeat(std::function<int()> fn, int delayMs, int priority, int intervalMs,
                           int repeat);
  ttask* postRunTaskRepeat(zeb::tNotifyTmp<int>* notify, int delayMs, int priority, int intervalMs,
                           int repeat);
  // Runs fn / the notify object on this thread and returns once it has run (or has been dropped
  // because the thread stopped). On the owner thread: sleeps delayMs, then calls it directly.
  void postRunTaskSync(std::function<void()> fn, int delayMs = 0, int priority = 0);
  void postRunTaskSync(zeb::tNotifyTmp<void>* notify, int delayMs = 0, int priority = 0);

  // Removes (and deletes) a queued task. A task that is running is deleted after its run. From a
  // foreign thread with `wait`, returns once the runner has applied the removal.
  void removeTask(ttask* task, bool wait);
  // Removes every queued task; from a foreign thread with `wait`, returns once they are gone.
  void removeAllTask(bool wait);
  // Returns once no task is queued: on the owner thread by running them, elsewhere by polling
  // every 100 ms (until the thread has stopped).
  void waitingForAllTaskFinished();
  // The number of queued tasks as the runner last counted them.
  int runningTaskNum();
  // Runs the due tasks on the owner thread. Re-entered from a task it returns at once.
  void processTasks();
  // True for the UI task thread ("mainthread").
  bool isMainThread() const;

  // ---- the UI task thread (a process-wide singleton) ------------------------------------------

  // Creates the singleton on the calling (UI) thread and starts its 16 ms timer on that thread's
  // main loop; returns it (the existing one when already created).
  static ttaskThread* initCreateMainUIThread();
  // Stops the timer, drops every queued task and releases the singleton; singletonUIThread() is
  // null from then on. Call it on the UI thread outside the loop, from a task running on the loop,
  // or from another thread while the loop runs: a run of tasks under way finishes the task it is
  // in, runs nothing more, and the singleton is deleted when it returns.
  static void finalizeMainUIThread();
  // The singleton, or null.
  static ttaskThread* singletonUIThread();
  // On the UI thread: processes until no task is left (waiting out delayed tasks).
  static void processAllMainUIThreadTasks();
  // postRunTask / postRunTaskRepeat on the singleton (nothing, or null, without one).
  static void runOnUIThread(std::function<void()> fn, int delayMs = 0, int priority = 0);
  static ttask* runOnUIThreadRepeat(std::function<int()> fn, int delayMs, int priority,
                                    int intervalMs, int repeat);
  // Runs fn on the UI thread and waits for it. On the UI thread: delay 0 calls fn directly, a
  // positive delay posts it and returns at once (the UI thread cannot wait for itself).
  static void runOnUIThreadSync(std::function<void()> fn, int delayMs = 0);
  static void removeUITask(ttask* task, bool wait);

 protected:
  // In UI mode no thread is created: the calling thread becomes the owner.
  bool onCreateThread() override;
  // The background runner: waits for tasks and processes them until stop is requested.
  void onRun() override;
  ~ttaskThread() override;

 private:
  friend class ttaskthreadprivate;
  ttaskthreadprivate* m;
};

#endif  // ZEB_THREAD_TTASKTHREAD_H

// tstringTaskWorkers.h: work items queued under string keys. Items of one key run one at a time,
// in posting order; items of different keys run in parallel on a ThreadsWorker pool.
//
//   tstringTaskWorkers* io = new tstringTaskWorkers();
//   io->post("C:/data/a.db", [] { appendRecord(); });   // one file is written by one item at a
//   io->post("C:/data/a.db", [] { compact(); });        // time and in this order, while other
//   io->post("C:/data/b.db", [] { appendRecord(); });   // files are written meanwhile
//   io->wait("C:/data/a.db");                           // both a.db items have run
//   io->release();
//
// The process also keeps one shared set of workers behind the stringHashtask_* functions,
// created by the first post and ended by stringHashtask_finalize:
//
//   stringHashtask_post("settings", [] { saveSettings(); });
//   stringHashtask_wait("settings");
//
// Keys compare byte for byte; a null key is the empty key. Posted zeb::tNotifyTmp objects are
// owned by the workers, which delete them once run or dropped. Items should not wait for work
// queued under their own key (it cannot start before they return): wait() refuses to. Every
// member is safe to call from any thread; the object ends through release() like the library's
// other thread classes. Traced with the tag "zeb.mthr.str".
#ifndef ZEB_THREAD_TSTRINGTASKWORKERS_H
#define ZEB_THREAD_TSTRINGTASKWORKERS_H

#include <functional>

#include "zeb/thread/zeb_Thread.h"
#include "zeb/zeb_api.h"

class tstringTaskWorkersPrivate;

class ZEB_API tstringTaskWorkers {
 public:
  // Runs the items on a pool of `threads` workers (cpuCoreNumber() when below 1).
  explicit tstringTaskWorkers(int threads = 0);
  tstringTaskWorkers(const tstringTaskWorkers&) = delete;
  tstringTaskWorkers& operator=(const tstringTaskWorkers&) = delete;

  // Queues an item under `key`, after the key's earlier items. False when there is nothing to
  // run or the workers are stopping (a refused object is deleted at once).
  bool post(const char* key, std::function<void()> fn);
  bool post(const char* key, zeb::tNotifyTmp<void>* work);

  // Returns once no item of `key` is queued or running (at once for an unknown key). False at
  // once, without waiting, when called from an item of that same key.
  bool wait(const char* key);
  // Returns once no item of any key is queued or running. False at once from one of the items.
  bool waitAll();
  // Deletes the items of `key` that have not started and returns how many; the running one, if
  // any, finishes. Items posted afterwards run as usual.
  int cancel(const char* key);

  // Refuses further posts, then runs the queued items of every key (runQueued) or deletes them,
  // waits for the running ones and ends the workers. Returns the number of items dropped; 0 when
  // already stopped; -1 (nothing done) when called from one of the items.
  int stop(bool runQueued);
  // stop(false) and deletes the object; from one of its items, the same happens on another
  // thread once that item has returned.
  void release();

 protected:
  virtual ~tstringTaskWorkers();

 private:
  tstringTaskWorkersPrivate* d;
};

// The process's shared string task workers (one thread per usable processor).
// tstringTaskWorkers::post on them, creating them first when needed.
ZEB_API bool stringHashtask_post(const char* key, std::function<void()> fn);
ZEB_API bool stringHashtask_post(const char* key, zeb::tNotifyTmp<void>* work);
// tstringTaskWorkers::wait / cancel on them (true / 0 when they do not exist).
ZEB_API bool stringHashtask_wait(const char* key);
ZEB_API int stringHashtask_cancel(const char* key);
// Stops and releases them as stop(runQueued) does and returns its count (0 when none exist). A
// later post creates new ones. Not to be called from one of their items (-1).
ZEB_API int stringHashtask_finalize(bool runQueued);

#endif  // ZEB_THREAD_TSTRINGTASKWORKERS_H

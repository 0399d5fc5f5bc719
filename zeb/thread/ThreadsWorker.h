// ThreadsWorker.h: a pool of worker threads that run posted work items in posting order, as many
// at a time as there are threads.
//
//   ThreadsWorker* pool = new ThreadsWorker();          // one thread per usable processor
//   for (const Job& job : jobs) pool->post([job] { job.run(); });
//   pool->post(new zeb::tNotifyTmp<void>([] { flush(); }));   // the pool owns the object
//   pool->waitAll();                                      // every item posted so far has run
//   pool->release();                                      // stops the threads, deletes the pool
//
// Each worker is a zeb::TThread. Work items are std::function<void()> or zeb::tNotifyTmp<void>
// objects, which the pool owns once posted and deletes after running them (or unrun, when they
// are dropped). Items leave the queue in posting order; with several threads they may finish in
// any order. A worker facing a long queue takes a few items at once (its share, halved, at most
// 16) and runs them one after another; taken items count as started. An item that throws is
// caught, logged and counted as run.
//
// Like the library's other thread classes the pool is never deleted by its user: it ends
// through release(). stop() ends the threads first when the caller wants a say in what happens
// to the queued work. Every member is safe to call from any thread; members that wait refuse to
// do so from one of the pool's own items (they would wait for themselves). Traced with the tag
// "zeb.mthr".
#ifndef ZEB_THREAD_THREADSWORKER_H
#define ZEB_THREAD_THREADSWORKER_H

#include <functional>

#include "zeb/thread/zeb_Thread.h"
#include "zeb/zeb_api.h"

class ThreadsWorkerPrivate;

class ZEB_API ThreadsWorker {
 public:
  // Starts `threads` workers (cpuCoreNumber() when below 1) named `name` (null: "ThreadsWorker").
  // A worker the system cannot start is logged as an error and missing from threadCount().
  explicit ThreadsWorker(int threads = 0, const char* name = nullptr);
  ThreadsWorker(const ThreadsWorker&) = delete;
  ThreadsWorker& operator=(const ThreadsWorker&) = delete;

  // Queues one item. False when there is nothing to run (an empty function, a null object), no
  // worker runs, or the pool is stopping; a refused object is deleted at once.
  bool post(std::function<void()> fn);
  bool post(zeb::tNotifyTmp<void>* work);

  // Returns once the queue is empty and no item runs (items posted meanwhile are waited for
  // too). False at once, without waiting, when called from one of the pool's items.
  bool waitAll();

  // Refuses further posts and ends the workers. With runQueued the queued items run first;
  // otherwise they are deleted without running. Items already started always finish. Returns
  // once every worker has ended, with the number of items dropped; 0 when already stopped; -1
  // (nothing done) when called from one of the pool's items.
  int stop(bool runQueued);

  // stop(false) and deletes the pool. Called from one of the pool's own items it returns at once
  // and the pool is stopped and deleted from another thread once that item has returned.
  void release();

  // The workers started by the constructor (0 once stopped).
  int threadCount() const;
  // The items queued and not yet started (taken by a worker).
  int pendingCount() const;

 protected:
  virtual ~ThreadsWorker();

 private:
  ThreadsWorkerPrivate* d;
};

#endif  // ZEB_THREAD_THREADSWORKER_H

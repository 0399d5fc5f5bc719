// ThreadsWorker.cpp: one queue under one lock, shared by the workers. A worker sleeps on a
// condition variable only while the queue is empty, and a post wakes one only when one sleeps,
// so a busy pool takes work without any system call beyond the lock; workers take a long queue
// a few items per lock round trip.
#include "zeb/thread/ThreadsWorker.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "zeb/log/zeb_log.h"
#include "zeb/thread/internal/work_item.h"
#include "zeb/utils/tosInfo.h"

namespace {

using zeb::thread_internal::WorkItem;

const char kTag[] = "zeb.mthr";
constexpr std::size_t kMaxBatch = 16;

}  // namespace

class ThreadsWorkerPrivate {
 public:
  explicit ThreadsWorkerPrivate(const char* poolName)
      : name(poolName != nullptr ? poolName : "ThreadsWorker") {}

  // The loop of every worker: take the oldest items, run them, until stopping leaves nothing to
  // do. A long queue is taken a few items at a time (its share for each worker, halved, at most
  // kMaxBatch), which saves lock round trips without leaving other workers idle.
  void workLoop() {
    t_currentPool = this;
    std::vector<WorkItem> batch;
    batch.reserve(kMaxBatch);
    std::unique_lock<std::mutex> guard(lock);
    for (;;) {
      while (queue.empty() && !stopping) {
        ++sleepers;
        workReady.wait(guard);
        --sleepers;
      }
      if (queue.empty()) break;
      const std::size_t share = queue.size() / (2 * workerCount);
      const std::size_t take = share < 1 ? 1 : share > kMaxBatch ? kMaxBatch : share;
      for (std::size_t i = 0; i < take; ++i) {
        batch.push_back(std::move(queue.front()));
        queue.pop_front();
      }
      running += static_cast<int>(take);
      guard.unlock();
      for (WorkItem& item : batch) zeb::thread_internal::runWorkItem(item, kTag, name.c_str());
      batch.clear();
      guard.lock();
      running -= static_cast<int>(take);
      if (queue.empty() && running == 0 && idleWaiters > 0) allIdle.notify_all();
    }
    t_currentPool = nullptr;
  }

  // Wakes a worker under the lock: once the lock is let go, an item may already have released
  // the pool.
  bool enqueue(WorkItem item) {
    std::lock_guard<std::mutex> guard(lock);
    if (stopping || threads.empty()) {
      zeb::thread_internal::dropWorkItem(item);
      return false;
    }
    queue.push_back(std::move(item));
    if (sleepers > 0) workReady.notify_one();
    return true;
  }

  // Marks the pool stopping and takes the queue out when it is to be dropped.
  std::deque<WorkItem> beginStop(bool runQueued) {
    std::deque<WorkItem> dropped;
    std::lock_guard<std::mutex> guard(lock);
    stopping = true;
    if (!runQueued) dropped.swap(queue);
    workReady.notify_all();
    return dropped;
  }

  bool onOwnThread() const { return t_currentPool == this; }

  static thread_local const ThreadsWorkerPrivate* t_currentPool;

  const std::string name;
  mutable std::mutex lock;
  std::condition_variable workReady;
  std::condition_variable allIdle;
  std::deque<WorkItem> queue;
  int running = 0;
  int sleepers = 0;
  int idleWaiters = 0;
  bool stopping = false;
  std::vector<zeb::TThread*> threads;
  // The workers started (fixed once the constructor returns).
  std::size_t workerCount = 1;
  // Serialises stop() calls, which end the threads outside `lock`.
  std::mutex stopLock;
};

thread_local const ThreadsWorkerPrivate* ThreadsWorkerPrivate::t_currentPool = nullptr;

ThreadsWorker::ThreadsWorker(int threads, const char* name) : d(new ThreadsWorkerPrivate(name)) {
  const int count = threads > 0 ? threads : cpuCoreNumber();
  std::lock_guard<std::mutex> guard(d->lock);
  for (int i = 0; i < count; ++i) {
    ThreadsWorkerPrivate* state = d;
    zeb::TThread* worker = new zeb::TThread(
        d->name.c_str(), [state] { state->workLoop(); }, zeb::TThread::flagWaitStopBeforeDestroy);
    if (worker->Exec() == nullptr) {
      if (ZEB_LOG_ENABLED(MLOG_ERROR)) {
        mlogWithLevel(MLOG_ERROR, kTag, "%s: worker %d could not start", d->name.c_str(), i);
      }
      worker->release();
      continue;
    }
    d->threads.push_back(worker);
  }
  if (!d->threads.empty()) d->workerCount = d->threads.size();
  if (ZEB_LOG_ENABLED(MLOG_DEBUG)) {
    mlogWithLevel(MLOG_DEBUG, kTag, "%s: %d workers", d->name.c_str(),
                  static_cast<int>(d->threads.size()));
  }
}

ThreadsWorker::~ThreadsWorker() {
  delete d;
}

bool ThreadsWorker::post(std::function<void()> fn) {
  if (!fn) return false;
  WorkItem item;
  item.fn = std::move(fn);
  return d->enqueue(std::move(item));
}

bool ThreadsWorker::post(zeb::tNotifyTmp<void>* work) {
  if (work == nullptr) return false;
  WorkItem item;
  item.notify = work;
  return d->enqueue(std::move(item));
}

bool ThreadsWorker::waitAll() {
  if (d->onOwnThread()) return false;
  std::unique_lock<std::mutex> guard(d->lock);
  ++d->idleWaiters;
  d->allIdle.wait(guard, [this] { return d->queue.empty() && d->running == 0; });
  --d->idleWaiters;
  return true;
}

int ThreadsWorker::stop(bool runQueued) {
  if (d->onOwnThread()) return -1;
  std::lock_guard<std::mutex> stopGuard(d->stopLock);
  std::deque<WorkItem> dropped = d->beginStop(runQueued);
  for (WorkItem& item : dropped) zeb::thread_internal::dropWorkItem(item);
  std::vector<zeb::TThread*> threads;
  {
    std::lock_guard<std::mutex> guard(d->lock);
    threads.swap(d->threads);
  }
  for (zeb::TThread* worker : threads) worker->release();
  if (!threads.empty() && ZEB_LOG_ENABLED(MLOG_DEBUG)) {
    mlogWithLevel(MLOG_DEBUG, kTag, "%s: stopped, %d items dropped", d->name.c_str(),
                  static_cast<int>(dropped.size()));
  }
  return static_cast<int>(dropped.size());
}

void ThreadsWorker::release() {
  if (d->onOwnThread()) {
    zeb::TThread::postRun([this] { release(); });
    return;
  }
  stop(false);
  delete this;
}

int ThreadsWorker::threadCount() const {
  std::lock_guard<std::mutex> guard(d->lock);
  return static_cast<int>(d->threads.size());
}

int ThreadsWorker::pendingCount() const {
  std::lock_guard<std::mutex> guard(d->lock);
  return static_cast<int>(d->queue.size());
}

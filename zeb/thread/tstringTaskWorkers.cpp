// tstringTaskWorkers.cpp: one lane per key with work, each lane a queue of items. A lane exists
// exactly while its key has items queued or running, and then has exactly one runner queued in
// or running on the pool. The runner runs the lane's oldest item and, when more are queued,
// posts itself again behind the other keys' runners, so a long lane does not hold a worker
// while other keys wait.
#include "zeb/thread/tstringTaskWorkers.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>

#include "zeb/log/zeb_log.h"
#include "zeb/thread/ThreadsWorker.h"
#include "zeb/thread/internal/work_item.h"

namespace {

using zeb::thread_internal::WorkItem;

const char kTag[] = "zeb.mthr.str";

std::string keyText(const char* key) {
  return key != nullptr ? std::string(key) : std::string();
}

// Each key with work and its items, oldest first. The map's nodes stay put until erased, so a
// runner refers to its lane by a pointer to the entry and reads the key from `first`.
using KeyLanes = std::unordered_map<std::string, std::deque<WorkItem>>;
using KeyLane = KeyLanes::value_type;

}  // namespace

class tstringTaskWorkersPrivate {
 public:
  explicit tstringTaskWorkersPrivate(int threads)
      : pool(new ThreadsWorker(threads, "stringTaskWorkers")) {}

  bool enqueue(const char* key, WorkItem item) {
    std::lock_guard<std::mutex> guard(lock);
    if (stopping) {
      zeb::thread_internal::dropWorkItem(item);
      return false;
    }
    auto placed = lanes.try_emplace(keyText(key));
    KeyLane& lane = *placed.first;
    lane.second.push_back(std::move(item));
    const bool newLane = placed.second;
    return newLane ? scheduleRunner(&lane) : true;
  }

  // Called under `lock`. The pool takes the runner while it has workers (stopping waits for
  // every lane to end before it stops the pool); a pool without any drops the lane.
  bool scheduleRunner(KeyLane* lane) {
    if (pool->post([this, lane] { runNext(lane); })) return true;
    for (WorkItem& item : lane->second) zeb::thread_internal::dropWorkItem(item);
    endLane(lane);
    return false;
  }

  void endLane(KeyLane* lane) {
    lanes.erase(lanes.find(lane->first));
    laneEnded.notify_all();
  }

  void runNext(KeyLane* lane) {
    std::unique_lock<std::mutex> guard(lock);
    if (!lane->second.empty()) {
      WorkItem item = std::move(lane->second.front());
      lane->second.pop_front();
      guard.unlock();
      t_running = RunningItem{this, lane};
      zeb::thread_internal::runWorkItem(item, kTag, lane->first.c_str());
      t_running = RunningItem{};
      guard.lock();
    }
    if (lane->second.empty()) {
      endLane(lane);
    } else {
      scheduleRunner(lane);
    }
  }

  // Takes every queued item of every lane out, under `lock`.
  std::deque<WorkItem> takeAllQueued() {
    std::deque<WorkItem> taken;
    for (auto& entry : lanes) {
      for (WorkItem& item : entry.second) taken.push_back(std::move(item));
      entry.second.clear();
    }
    return taken;
  }

  // True when called from one of this object's items (of `key` when not null).
  bool onOwnItem(const std::string* key = nullptr) const {
    return t_running.owner == this && (key == nullptr || t_running.lane->first == *key);
  }

  // The item the calling thread runs, if any.
  struct RunningItem {
    const tstringTaskWorkersPrivate* owner = nullptr;
    const KeyLane* lane = nullptr;
  };
  static thread_local RunningItem t_running;

  std::mutex lock;
  std::condition_variable laneEnded;
  KeyLanes lanes;
  bool stopping = false;
  ThreadsWorker* pool;
  std::mutex stopLock;
};

thread_local tstringTaskWorkersPrivate::RunningItem tstringTaskWorkersPrivate::t_running;

tstringTaskWorkers::tstringTaskWorkers(int threads) : d(new tstringTaskWorkersPrivate(threads)) {}

tstringTaskWorkers::~tstringTaskWorkers() {
  delete d;
}

bool tstringTaskWorkers::post(const char* key, std::function<void()> fn) {
  if (!fn) return false;
  WorkItem item;
  item.fn = std::move(fn);
  return d->enqueue(key, std::move(item));
}

bool tstringTaskWorkers::post(const char* key, zeb::tNotifyTmp<void>* work) {
  if (work == nullptr) return false;
  WorkItem item;
  item.notify = work;
  return d->enqueue(key, std::move(item));
}

bool tstringTaskWorkers::wait(const char* key) {
  const std::string name = keyText(key);
  if (d->onOwnItem(&name)) return false;
  std::unique_lock<std::mutex> guard(d->lock);
  d->laneEnded.wait(guard, [&] { return d->lanes.find(name) == d->lanes.end(); });
  return true;
}

bool tstringTaskWorkers::waitAll() {
  if (d->onOwnItem()) return false;
  std::unique_lock<std::mutex> guard(d->lock);
  d->laneEnded.wait(guard, [this] { return d->lanes.empty(); });
  return true;
}

int tstringTaskWorkers::cancel(const char* key) {
  std::deque<WorkItem> dropped;
  {
    std::lock_guard<std::mutex> guard(d->lock);
    auto found = d->lanes.find(keyText(key));
    if (found == d->lanes.end()) return 0;
    dropped.swap(found->second);
  }
  for (WorkItem& item : dropped) zeb::thread_internal::dropWorkItem(item);
  if (!dropped.empty() && ZEB_LOG_ENABLED(MLOG_DEBUG)) {
    mlogWithLevel(MLOG_DEBUG, kTag, "%s: %d items cancelled", key != nullptr ? key : "",
                  static_cast<int>(dropped.size()));
  }
  return static_cast<int>(dropped.size());
}

// Every lane ends (its items run, or were dropped, and its runner finished) before the pool
// stops, so no runner is ever refused by a stopping pool.
int tstringTaskWorkers::stop(bool runQueued) {
  if (d->onOwnItem()) return -1;
  std::lock_guard<std::mutex> stopGuard(d->stopLock);
  std::deque<WorkItem> dropped;
  {
    std::unique_lock<std::mutex> guard(d->lock);
    if (d->pool == nullptr) return 0;
    d->stopping = true;
    if (!runQueued) dropped = d->takeAllQueued();
    d->laneEnded.wait(guard, [this] { return d->lanes.empty(); });
  }
  for (WorkItem& item : dropped) zeb::thread_internal::dropWorkItem(item);
  d->pool->release();
  d->pool = nullptr;
  return static_cast<int>(dropped.size());
}

void tstringTaskWorkers::release() {
  if (d->onOwnItem()) {
    zeb::TThread::postRun([this] { release(); });
    return;
  }
  stop(false);
  delete this;
}

namespace {

// The shared workers. Callers hold a reference while they use them; the last reference
// releases them.
struct SharedWorkers {
  std::mutex lock;
  std::shared_ptr<tstringTaskWorkers> workers;
};

SharedWorkers& shared() {
  static SharedWorkers* const instance = new SharedWorkers;
  return *instance;
}

std::shared_ptr<tstringTaskWorkers> sharedWorkers(bool create) {
  SharedWorkers& s = shared();
  std::lock_guard<std::mutex> guard(s.lock);
  if (!s.workers && create) {
    s.workers.reset(new tstringTaskWorkers(), [](tstringTaskWorkers* w) { w->release(); });
  }
  return s.workers;
}

}  // namespace

bool stringHashtask_post(const char* key, std::function<void()> fn) {
  return sharedWorkers(true)->post(key, std::move(fn));
}

bool stringHashtask_post(const char* key, zeb::tNotifyTmp<void>* work) {
  return sharedWorkers(true)->post(key, work);
}

bool stringHashtask_wait(const char* key) {
  std::shared_ptr<tstringTaskWorkers> workers = sharedWorkers(false);
  return !workers || workers->wait(key);
}

int stringHashtask_cancel(const char* key) {
  std::shared_ptr<tstringTaskWorkers> workers = sharedWorkers(false);
  return workers ? workers->cancel(key) : 0;
}

int stringHashtask_finalize(bool runQueued) {
  std::shared_ptr<tstringTaskWorkers> workers = sharedWorkers(false);
  if (!workers) return 0;
  const int dropped = workers->stop(runQueued);
  if (dropped < 0) return dropped;
  SharedWorkers& s = shared();
  std::lock_guard<std::mutex> guard(s.lock);
  if (s.workers == workers) s.workers.reset();
  return dropped;
}

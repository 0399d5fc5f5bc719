// ttaskThread.cpp: the task thread, its queue of entries and the UI task thread.
//
// Three lists hold the queue. Posting threads append entries to the incoming list and task
// handles to the remove list, under the list lock. The running list, sorted by fire time and
// priority, belongs to the owner thread alone and is touched without the lock; the owner moves
// the incoming entries into it and applies the removals (under the lock) before it looks at it.
//
// Fire times are seconds of the high-resolution monotonic counter, so moving the wall clock
// neither delays nor hurries a task; 0 means "as soon as possible".
#include "zeb/thread/ttaskThread.h"

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <mutex>
#include <type_traits>
#include <utility>
#include <vector>

#include "zeb/log/internal/assertion_record.h"
#include "zeb/log/mlog_ticks.h"
#include "zeb/log/zeb_log.h"
#include "zeb/platform/clock.h"
#include "zeb/platform/thread.h"
#include "zeb/platform/ui_timer.h"
#include "zeb/thread/internal/auto_reset_event.h"

namespace {

using zeb::thread_internal::AutoResetEvent;
using Guard = std::lock_guard<std::recursive_mutex>;

const char kTag[] = "zeb.taskThread";
const char kUiThreadName[] = "mainthread";
constexpr tloglevel kTrace19 = static_cast<tloglevel>(19);
constexpr tloglevel kTrace20 = static_cast<tloglevel>(20);
constexpr double kUiTimerPeriodMs = 16.0;
constexpr double kUiTickBudgetSeconds = 0.05;

#if defined(__GNUC__)
__attribute__((format(printf, 2, 3)))
#endif
void trace(tloglevel level, const char* fmt, ...) {
  if (!ZEB_LOG_ENABLED(level)) return;
  va_list args;
  va_start(args, fmt);
  mlogWithLevelArgs(level, kTag, fmt, args);
  va_end(args);
}

void assertionRecord(const char* function, int line) {
  zeb::internal::writeAssertionRecord("ttaskThread", function, line);
}

// A pointer as the "0x%x" of the trace lines prints it.
unsigned pointerForLog(const void* p) {
  return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(p));
}

double nowSeconds() {
  return static_cast<double>(zeb::platform::highResolutionCounter()) /
         static_cast<double>(zeb::platform::highResolutionFrequency());
}

// The fire time `delayMs` from now. It falls on a whole millisecond (now rounded up, so a task
// never runs before its delay is over): tasks posted with the same delay within one millisecond
// get the same fire time, and their priorities decide their order.
double fireTimeAfter(int delayMs) {
  const unsigned long long frequency = zeb::platform::highResolutionFrequency();
  const unsigned long long ticksPerMs = frequency >= 1000 ? frequency / 1000 : 1;
  const unsigned long long nowMs = (zeb::platform::highResolutionCounter() + ticksPerMs - 1) /
                                   ticksPerMs;
  return static_cast<double>(static_cast<long long>(nowMs) + delayMs) / 1000.0;
}

// A task running a notify object it owns: R void runs once per call and returns true, R int
// returns the result as bool.
template <typename R>
class tNotifyTask : public ttask {
 public:
  explicit tNotifyTask(zeb::tNotifyTmp<R>* notify) : m_notify(notify) {}
  ~tNotifyTask() override { delete m_notify; }

  bool run() override {
    if constexpr (std::is_void<R>::value) {
      m_notify->run();
      return true;
    } else {
      return m_notify->run() != 0;
    }
  }

 private:
  zeb::tNotifyTmp<R>* const m_notify;
};

// The task behind postRunTaskSync: runs the notify object, and signals the waiter when it is
// deleted, so the waiter also wakes when the task is dropped without running.
class tSyncTask : public tNotifyTask<void> {
 public:
  tSyncTask(zeb::tNotifyTmp<void>* notify, AutoResetEvent* done)
      : tNotifyTask<void>(notify), m_done(done) {}
  ~tSyncTask() override { m_done->set(); }

 private:
  AutoResetEvent* const m_done;
};

// One queued task. Owned by the task thread; `references` starts at 1 and the run holds one
// more, so a removal during the run deletes the entry only after it.
struct ttaskInner {
  ttaskInner(ttask* t, int delayMs, int intervalMs, int repeatCount, int prio)
      : fireTime(delayMs == 0 ? 0.0 : fireTimeAfter(delayMs)),
        interval(intervalMs),
        repeat(repeatCount),
        priority(prio),
        task(t) {
    trace(kTrace20, "ttaskInner:ptask:%p,delay:%d,firetime:%f", static_cast<void*>(task), delayMs,
          fireTime);
  }
  ~ttaskInner() { delete task; }

  void addRef() { ++references; }
  void release() {
    if (--references < 1) delete this;
  }

  double fireTime;
  int interval;
  int repeat;
  int priority;
  ttask* task;
  int references = 1;
};

// The running list's order: earlier fire time first, then higher priority.
bool runsBefore(const ttaskInner* a, const ttaskInner* b) {
  if (a->fireTime != b->fireTime) return a->fireTime < b->fireTime;
  return a->priority > b->priority;
}

template <typename List>
void releaseAll(List& entries) {
  for (ttaskInner* entry : entries) entry->release();
  entries.clear();
}

// ---- the process-wide UI state ------------------------------------------------------------------

std::atomic<ttaskThread*> g_uiThread{nullptr};
// Guards every change of g_uiThread, the timer below and the holds on a UI task thread (UiHold).
std::mutex g_uiLock;
void* g_uiTimer = nullptr;
double g_uiTimerPeriod = 0.0;
int g_uiTimerReentry = 0;  // touched on the UI thread only

void onUiTimerTick(void*);

}  // namespace

// ---- tasks ------------------------------------------------------------------------------------

ttask::~ttask() = default;

tRunnerTask::tRunnerTask(std::function<void()> fn) : m_fn(std::move(fn)) {}

bool tRunnerTask::run() {
  if (m_fn) m_fn();
  return true;
}

tRunnerRepeatTask::tRunnerRepeatTask(std::function<int()> fn) : m_fn(std::move(fn)) {}

bool tRunnerRepeatTask::run() {
  return m_fn ? m_fn() != 0 : false;
}

// ---- the state block --------------------------------------------------------------------------

class ttaskthreadprivate {
 public:
  explicit ttaskthreadprivate(ttaskThread* owner, const char* name)
      : self(owner), uiMode(name != nullptr && std::strcmp(name, kUiThreadName) == 0) {}
  ~ttaskthreadprivate() {
    releaseAll(incoming);
    releaseAll(running);
  }

  // Moves the incoming entries into the running list and applies the removals.
  void retrieveWaitingTasks();
  // Under the list lock: removes the running entries of the tasks in the remove list.
  void removeTasksIfNeededNoLock();
  // After a run: drops the entry or schedules its next run.
  void finishRun(ttaskInner* entry, bool runAgain);
  void insertSorted(ttaskInner* entry);
  // Removes and releases the first incoming entry of `task`; false when there is none.
  bool removeIncomingNoLock(ttask* task);
  // Polls every ms (tracing `waitText`) while `pending` holds and the thread works.
  template <typename Pending>
  void pollWhile(Pending pending, const char* waitText);
  int taskCount();
  bool stopping();
  void initMainUI();
  // A UI task thread that is held (see UiHold) leaves its release to the last hold: true when
  // the release must wait for it.
  bool deferReleaseWhileHeld();
  static ttaskthreadprivate* of(ttaskThread* thread) { return thread->m; }

  ttaskThread* const self;
  const bool uiMode;
  std::recursive_mutex listLock;
  std::vector<ttaskInner*> incoming;
  std::vector<ttask*> toRemove;
  int count = 0;
  bool clearRunning = false;
  std::deque<ttaskInner*> running;  // owner thread only
  std::atomic<bool> inProcessTasks{false};
  AutoResetEvent wake;
  int holds = 0;                // under g_uiLock
  bool releasePending = false;  // under g_uiLock
};

namespace {

// Keeps a UI task thread alive while it runs tasks. A release meanwhile (finalizeMainUIThread
// called from one of those tasks, or from another thread) is left to the last hold, so the object
// is never deleted while a dispatch is still inside it.
class UiHold {
 public:
  // Holds the UI singleton, when there is one.
  UiHold() {
    std::lock_guard<std::mutex> guard(g_uiLock);
    hold(g_uiThread.load());
  }
  // Holds `thread` when it is in UI mode; a background task thread is not held.
  explicit UiHold(ttaskThread* thread) {
    if (!ttaskthreadprivate::of(thread)->uiMode) return;
    std::lock_guard<std::mutex> guard(g_uiLock);
    hold(thread);
  }
  ~UiHold() {
    if (m_thread == nullptr) return;
    bool releaseNow = false;
    {
      std::lock_guard<std::mutex> guard(g_uiLock);
      ttaskthreadprivate* const d = ttaskthreadprivate::of(m_thread);
      releaseNow = --d->holds == 0 && d->releasePending;
    }
    if (releaseNow) m_thread->release();
  }
  UiHold(const UiHold&) = delete;
  UiHold& operator=(const UiHold&) = delete;

  ttaskThread* get() const { return m_thread; }

 private:
  void hold(ttaskThread* thread) {
    m_thread = thread;
    if (thread != nullptr) ++ttaskthreadprivate::of(thread)->holds;
  }

  ttaskThread* m_thread = nullptr;
};

void onUiTimerTick(void*) {
  if (g_uiTimerReentry > 0) return;
  ++g_uiTimerReentry;
  const UiHold hold;
  if (hold.get() != nullptr) {
    const double start = nowSeconds();
    hold.get()->processTasks();
    const double elapsed = nowSeconds() - start;
    if (elapsed > kUiTimerPeriodMs / 1000.0) {
      trace(kTrace20, "TimerWindowWndProc:cost time:%d", static_cast<int>(elapsed * 1000.0));
    }
  }
  --g_uiTimerReentry;
}

}  // namespace

void ttaskthreadprivate::retrieveWaitingTasks() {
  std::size_t sortedSize = 0;
  {
    Guard guard(listLock);
    if (clearRunning) {
      releaseAll(running);
      clearRunning = false;
    }
    sortedSize = running.size();
    running.insert(running.end(), incoming.begin(), incoming.end());
    incoming.clear();
    removeTasksIfNeededNoLock();
    count = static_cast<int>(running.size());
  }
  if (running.size() <= sortedSize) return;
  // The appended entries are sorted and merged: stable, so equal entries keep posting order.
  const auto appended = running.begin() + static_cast<std::ptrdiff_t>(sortedSize);
  std::stable_sort(appended, running.end(), runsBefore);
  std::inplace_merge(running.begin(), appended, running.end(), runsBefore);
}

void ttaskthreadprivate::removeTasksIfNeededNoLock() {
  for (ttask* task : toRemove) {
    const auto entry = std::find_if(running.begin(), running.end(),
                                    [task](const ttaskInner* e) { return e->task == task; });
    if (entry == running.end()) continue;
    ttaskInner* const removed = *entry;
    running.erase(entry);
    removed->release();
    --count;
    trace(kTrace20, "ttaskThread::removeTasksIfNeededNoLock(),remove task:0x%x",
          pointerForLog(task));
  }
  toRemove.clear();
}

void ttaskthreadprivate::finishRun(ttaskInner* entry, bool runAgain) {
  const auto position = std::find(running.begin(), running.end(), entry);
  if (position == running.end()) return;  // removed while it ran
  const bool last = !runAgain || entry->interval < 1 || entry->repeat == 1;
  running.erase(position);
  if (last) {
    entry->release();
    return;
  }
  if (entry->repeat >= 2) --entry->repeat;
  if (entry->fireTime == 0.0) {
    entry->fireTime = fireTimeAfter(entry->interval);
  } else {
    const double now = nowSeconds();
    const double period = entry->interval / 1000.0;
    while (entry->fireTime <= now) entry->fireTime += period;
  }
  insertSorted(entry);
}

void ttaskthreadprivate::insertSorted(ttaskInner* entry) {
  running.insert(std::upper_bound(running.begin(), running.end(), entry, runsBefore), entry);
}

bool ttaskthreadprivate::removeIncomingNoLock(ttask* task) {
  const auto entry = std::find_if(incoming.begin(), incoming.end(),
                                  [task](const ttaskInner* e) { return e->task == task; });
  if (entry == incoming.end()) return false;
  trace(kTrace20, "ttaskThread::removeTask(%s),remove buffer task:0x%x", self->name(),
        pointerForLog(task));
  ttaskInner* const removed = *entry;
  incoming.erase(entry);
  removed->release();
  --count;
  return true;
}

template <typename Pending>
void ttaskthreadprivate::pollWhile(Pending pending, const char* waitText) {
  while (self->isWorking()) {
    {
      Guard guard(listLock);
      if (!pending()) return;
    }
    trace(kTrace20, "%s", waitText);
    zeb::platform::sleepMilliseconds(1);
  }
}

int ttaskthreadprivate::taskCount() {
  Guard guard(listLock);
  return count;
}

// A thread whose body has returned no longer reports the stop request, so both count.
bool ttaskthreadprivate::stopping() {
  return self->hasStopRequested() || self->getWorkingStatus() == zeb::TThread::statusStopped;
}

bool ttaskthreadprivate::deferReleaseWhileHeld() {
  if (!uiMode) return false;
  std::lock_guard<std::mutex> guard(g_uiLock);
  releasePending = holds > 0;
  return releasePending;
}

void ttaskthreadprivate::initMainUI() {
  if (!uiMode) assertionRecord("ttaskThread::initMainUI", 752);
  self->setThreadHandle(nullptr);
  self->setThreadID(zeb::TThread::currentThreadId());
  if (g_uiTimerPeriod != kUiTimerPeriodMs) {
    g_uiTimerPeriod = kUiTimerPeriodMs;
    g_uiTimer = zeb::platform::startUiTimer(static_cast<unsigned>(kUiTimerPeriodMs), &onUiTimerTick,
                                            nullptr);
  }
  self->setWorking(zeb::TThread::statusWorking);
}

// ---- construction and end of life ---------------------------------------------------------------

ttaskThread::ttaskThread(ttaskthreadnotauto, const char* name, int flags)
    : TThread(name, flags), m(new ttaskthreadprivate(this, name)) {}

ttaskThread::~ttaskThread() {
  delete m;
}

bool ttaskThread::onCreateThread() {
  if (!m->uiMode) return TThread::onCreateThread();
  setThreadHandle(nullptr);
  setThreadID(currentThreadId());
  return false;
}

void ttaskThread::stop() {
  if (hasStopRequested() || getWorkingStatus() == statusStopped) return;
  TThread::stop();
  m->wake.set();
  // A UI task thread has no runner of its own to wait for: it stops at once from any thread.
  if (isCurrentThread() || m->uiMode) setWorking(statusStopped);
}

void ttaskThread::release() {
  if (m->deferReleaseWhileHeld()) return;
  TMLogAutoTicks ticks(MLOG_DEBUG, kTag, "ttaskThread::release()", "name:%s", name());
  const bool onOwner = isCurrentThread();
  if (onOwner && !m->inProcessTasks.load()) processTasks();
  stop();
  if (!onOwner) {
    while (isWorking()) zeb::platform::sleepMilliseconds(20);
  }
  TThread::release();
}

// ---- posting ----------------------------------------------------------------------------------

ttask* ttaskThread::postTask(ttask* task, int delayMs, int priority, int intervalMs, int repeat) {
  if (task == nullptr) return nullptr;
  if (m->stopping()) {
    trace(kTrace20, "ttaskThread::postTask,thread is exiting,ignore.");
    m->wake.set();
    delete task;
    return nullptr;
  }
  trace(kTrace20, "ttaskThread::postTask(%s),task:%p,delay:%d,prio:%d,interval:%d,repeat:%d",
        name(), static_cast<void*>(task), delayMs, priority, intervalMs, repeat);
  ttaskInner* const entry = new ttaskInner(task, delayMs, intervalMs, repeat, priority);
  int count = 0;
  {
    Guard guard(m->listLock);
    m->incoming.push_back(entry);
    count = ++m->count;
  }
  m->wake.set();
  trace(kTrace20, "ttaskThread::postTask:%p taskcount:%d", static_cast<void*>(task), count);
  return task;
}

ttask* ttaskThread::postRunTask(std::function<void()> fn, int delayMs, int priority) {
  return postTask(new tRunnerTask(std::move(fn)), delayMs, priority, 0, 0);
}

ttask* ttaskThread::postRunTask(zeb::tNotifyTmp<void>* notify, int delayMs, int priority) {
  if (notify == nullptr) return nullptr;
  return postTask(new tNotifyTask<void>(notify), delayMs, priority, 0, 0);
}

ttask* ttaskThread::postRunTaskRepeat(std::function<int()> fn, int delayMs, int priority,
                                      int intervalMs, int repeat) {
  return postTask(new tRunnerRepeatTask(std::move(fn)), delayMs, priority, intervalMs, repeat);
}

ttask* ttaskThread::postRunTaskRepeat(zeb::tNotifyTmp<int>* notify, int delayMs, int priority,
                                      int intervalMs, int repeat) {
  if (notify == nullptr) return nullptr;
  return postTask(new tNotifyTask<int>(notify), delayMs, priority, intervalMs, repeat);
}

void ttaskThread::postRunTaskSync(std::function<void()> fn, int delayMs, int priority) {
  postRunTaskSync(new zeb::tNotifyTmp<void>(std::move(fn)), delayMs, priority);
}

void ttaskThread::postRunTaskSync(zeb::tNotifyTmp<void>* notify, int delayMs, int priority) {
  if (notify == nullptr) return;
  if (isCurrentThread()) {
    zeb::platform::sleepMilliseconds(delayMs);
    notify->run();
    delete notify;
    return;
  }
  AutoResetEvent done;
  // A task dropped by a stopping thread is deleted at once, which signals `done` too.
  postTask(new tSyncTask(notify, &done), delayMs, priority, 0, 0);
  done.wait();
}

// ---- removing -----------------------------------------------------------------------------------

void ttaskThread::removeTask(ttask* task, bool wait) {
  {
    Guard guard(m->listLock);
    if (m->removeIncomingNoLock(task)) return;
    m->toRemove.push_back(task);
  }
  if (isCurrentThread()) {
    Guard guard(m->listLock);
    m->removeTasksIfNeededNoLock();
    return;
  }
  m->wake.set();
  if (wait) {
    m->pollWhile([this] { return !m->toRemove.empty(); }, "ttaskThread::removeTask(),wait...");
  }
}

void ttaskThread::removeAllTask(bool wait) {
  if (isCurrentThread()) {
    Guard guard(m->listLock);
    releaseAll(m->incoming);
    if (m->inProcessTasks.load()) {
      for (const ttaskInner* entry : m->running) m->toRemove.push_back(entry->task);
    } else {
      releaseAll(m->running);
      m->count = 0;
    }
    return;
  }
  {
    Guard guard(m->listLock);
    releaseAll(m->incoming);
    m->clearRunning = true;
  }
  m->wake.set();
  if (wait)
    m->pollWhile([this] { return m->clearRunning; }, "ttaskThread::removeAllTask(),wait...");
}

// ---- processing ---------------------------------------------------------------------------------

void ttaskThread::processTasks() {
  const UiHold hold(this);  // a task may finalize the UI task thread
  if (m->inProcessTasks.exchange(true)) {
    trace(MLOG_DEBUG, "ttaskThread::processTasks:ignore,is reEnter.");
    return;
  }
  if (!isCurrentThread()) assertionRecord("ttaskThread::processTasks", 624);
  const double budgetEnd = nowSeconds() + kUiTickBudgetSeconds;
  m->retrieveWaitingTasks();
  while (!m->running.empty()) {
    ttaskInner* const entry = m->running.front();
    if (nowSeconds() < entry->fireTime) break;
    entry->addRef();
    const bool runAgain = entry->task->run();
    m->finishRun(entry, runAgain);
    entry->release();
    if (m->uiMode && nowSeconds() >= budgetEnd) break;
    m->retrieveWaitingTasks();
  }
  m->inProcessTasks.store(false);
}

void ttaskThread::onRun() {
  while (!hasStopRequested()) {
    {
      Guard guard(m->listLock);
      m->count = static_cast<int>(m->incoming.size());
    }
    m->wake.wait();
    m->retrieveWaitingTasks();
    while (!m->running.empty() && !hasStopRequested()) {
      processTasks();
      // Due times are met within about 1 ms; a new post ends the wait early.
      if (!m->running.empty()) m->wake.waitFor(1);
    }
  }
  processTasks();
}

void ttaskThread::waitingForAllTaskFinished() {
  if (!isCurrentThread()) {
    while (m->taskCount() > 0 && getWorkingStatus() != statusStopped) {
      zeb::platform::sleepMilliseconds(100);
    }
    return;
  }
  const UiHold hold(this);
  while (m->taskCount() >= 1) {
    if (m->inProcessTasks.load()) return;
    processTasks();
    // Only delayed tasks are left: wait for them without burning the core.
    if (m->taskCount() >= 1) zeb::platform::sleepMilliseconds(1);
  }
}

int ttaskThread::runningTaskNum() {
  return m->taskCount();
}

bool ttaskThread::isMainThread() const {
  return m->uiMode;
}

// ---- the UI task thread -------------------------------------------------------------------------

ttaskThread* ttaskThread::initCreateMainUIThread() {
  std::lock_guard<std::mutex> guard(g_uiLock);
  ttaskThread* ui = g_uiThread.load();
  if (ui == nullptr) {
    ui = new ttaskThread(ttaskthreadnotauto(), kUiThreadName, 0);
    g_uiThread.store(ui);
  }
  ui->m->initMainUI();
  return ui;
}

// The singleton is taken out of reach first, so no timer tick starts a dispatch on it any more;
// a dispatch already under way holds it, and the release then happens when that dispatch ends.
void ttaskThread::finalizeMainUIThread() {
  ttaskThread* ui = nullptr;
  void* timer = nullptr;
  {
    std::lock_guard<std::mutex> guard(g_uiLock);
    ui = g_uiThread.exchange(nullptr);
    if (ui == nullptr) return;
    timer = std::exchange(g_uiTimer, nullptr);
    g_uiTimerPeriod = 0.0;
  }
  zeb::platform::stopUiTimer(timer);
  ui->stop();
  ui->removeAllTask(true);
  ui->release();
}

ttaskThread* ttaskThread::singletonUIThread() {
  return g_uiThread.load();
}

void ttaskThread::processAllMainUIThreadTasks() {
  TMLogAutoTicks ticks(kTrace19, kTag, "ttaskThread::processAllMainUIThreadTasks");
  const UiHold hold;
  ttaskThread* const ui = hold.get();
  if (ui == nullptr) return;
  while (ui->m->taskCount() > 0) {
    trace(kTrace20, "force process uitask:");
    ui->processTasks();
  }
}

void ttaskThread::runOnUIThread(std::function<void()> fn, int delayMs, int priority) {
  ttaskThread* const ui = g_uiThread.load();
  if (ui != nullptr) ui->postRunTask(std::move(fn), delayMs, priority);
}

ttask* ttaskThread::runOnUIThreadRepeat(std::function<int()> fn, int delayMs, int priority,
                                        int intervalMs, int repeat) {
  ttaskThread* const ui = g_uiThread.load();
  if (ui == nullptr) return nullptr;
  return ui->postRunTaskRepeat(std::move(fn), delayMs, priority, intervalMs, repeat);
}

void ttaskThread::runOnUIThreadSync(std::function<void()> fn, int delayMs) {
  ttaskThread* const ui = g_uiThread.load();
  if (ui == nullptr) return;
  if (ui->isCurrentThread() && delayMs > 0) {
    ui->postRunTask(std::move(fn), delayMs, 0);
    return;
  }
  ui->postRunTaskSync(std::move(fn), delayMs, 0);
}

void ttaskThread::removeUITask(ttask* task, bool wait) {
  ttaskThread* const ui = g_uiThread.load();
  if (ui == nullptr) {
    trace(kTrace20, "ttaskThread::removeUITask(),ui thread is null.");
    return;
  }
  ui->removeTask(task, wait);
}

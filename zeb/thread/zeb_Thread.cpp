// zeb_Thread.cpp: the thread wrapper, its thread routine, the handle table lookups and the
// fire-and-forget threads.
//
// Lifetime rule the routine relies on: after it has set the status to stopped (under the lock)
// it touches the object only when the object is delete-on-exit, because a waiter may delete the
// object the moment it sees the status leave working.
#include "zeb/thread/zeb_Thread.h"

#include <mutex>
#include <new>

#include "zeb/data/tbytesdata.h"
#include "zeb/log/internal/assertion_record.h"
#include "zeb/log/mlog_ticks.h"
#include "zeb/log/zeb_log.h"
#include "zeb/platform/clock.h"
#include "zeb/platform/process.h"
#include "zeb/platform/thread.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/thread/internal/live_threads.h"

namespace zeb {

namespace {

using thread_internal::LiveThreads;
using Guard = std::lock_guard<std::recursive_mutex>;

const char kTag[] = "zeb.thread";
constexpr tloglevel kTraceLevel19 = static_cast<tloglevel>(19);
constexpr tloglevel kTraceLevel20 = static_cast<tloglevel>(20);

// Never destroyed: detached threads may still be ending while the process exits.
LiveThreads& liveThreads() {
  static LiveThreads* const table = new LiveThreads;
  return *table;
}

void* handleOf(LiveThreads::Id id) {
  return reinterpret_cast<void*>(id);
}

LiveThreads::Id idOf(void* handle) {
  return reinterpret_cast<LiveThreads::Id>(handle);
}

// The handle as the "0x%x" of the trace lines prints it.
unsigned handleForLog(void* handle) {
  return static_cast<unsigned>(idOf(handle));
}

struct TrackedStart {
  void (*routine)(void*);
  void* arg;
  LiveThreads::Id id;
};

void runTracked(void* p) {
  const TrackedStart start = *static_cast<TrackedStart*>(p);
  delete static_cast<TrackedStart*>(p);
  liveThreads().recordKernelId(start.id, platform::currentThreadId());
  start.routine(start.arg);
  liveThreads().remove(start.id);
}

// Starts routine(arg) on a new detached thread listed in the table for as long as routine runs.
// Returns its handle, or null when no thread could be created.
void* startTrackedThread(void (*routine)(void*), void* arg) {
  const LiveThreads::Id id = liveThreads().add();
  TrackedStart* start = new (std::nothrow) TrackedStart{routine, arg, id};
  if (start != nullptr && platform::startDetachedThread(&runTracked, start)) return handleOf(id);
  delete start;
  liveThreads().remove(id);
  return nullptr;
}

void traceAt20(const char* fmt) {
  if (ZEB_LOG_ENABLED(kTraceLevel20)) mlogWithLevel(kTraceLevel20, kTag, fmt);
}

// An assertion record with the source position fixed for `function`.
void assertionRecord(const char* function, int line) {
  zeb::internal::writeAssertionRecord("zeb_Thread", function, line);
}

}  // namespace

// The state block behind TThread::d. The body fields and the name never change after
// construction; everything from `status` on is guarded by `lock`.
class tthreadprivate {
 public:
  tthreadprivate(const char* threadName, void (*fn)(void*), void* userData,
                 std::function<void()> fn2, int flags)
      : function(fn),
        callable(std::move(fn2)),
        name(threadName),
        deleteOnExit((flags & TThread::flagDeleteOnExit) != 0),
        waitStopBeforeDestroy((flags & TThread::flagWaitStopBeforeDestroy) != 0),
        data(userData) {}

  // The thread routine, with the object as argument.
  static void threadMain(void* object);

  void (*function)(void*);
  std::function<void()> callable;
  TAnsiString name;
  TThread::twokringstatus status = TThread::statusNotStarted;
  bool deleteOnExit;
  bool stopRequested = false;
  bool waitStopBeforeDestroy;
  std::recursive_mutex lock;
  void* data;
  unsigned long threadId = 0;
  void* handle = nullptr;

  // release() from the object's own body, or on a delete-on-exit object whose thread runs:
  // leaves the deletion to the routine (and raises the stop request when release would have
  // stopped the body). False when release must end the object itself.
  bool handDeletionToThread();
  bool waitsStopBeforeDestroy();
  // Waits until the thread of the held handle has ended, then forgets the handle.
  void waitForThreadEnd();

 private:
  void beginRun();
  void runBody(TThread* thread);
  // Marks the body as returned; true when the routine must now delete the object.
  bool endRun();
};

void tthreadprivate::threadMain(void* object) {
  TThread* const thread = static_cast<TThread*>(object);
  tthreadprivate* const d = thread->d;
  d->beginRun();
  {
    TMLogAutoTicks ticks(MLOG_DEBUG, kTag, "TThread::main()", "name:%s,tid:%u", thread->name(),
                         static_cast<unsigned>(thread->threadID()));
    d->runBody(thread);
  }
  if (d->endRun()) delete thread;
}

void tthreadprivate::beginRun() {
  Guard guard(lock);
  status = TThread::statusWorking;
  threadId = platform::currentThreadId();
}

void tthreadprivate::runBody(TThread* thread) {
  if (function != nullptr) {
    function(data);
  } else if (callable) {
    callable();
  } else {
    thread->onRun();
  }
}

bool tthreadprivate::endRun() {
  Guard guard(lock);
  status = TThread::statusStopped;
  stopRequested = false;
  handle = nullptr;
  return deleteOnExit;
}

bool tthreadprivate::handDeletionToThread() {
  Guard guard(lock);
  if (handle == nullptr) return false;
  if (!deleteOnExit && threadId != TThread::currentThreadId()) return false;
  deleteOnExit = true;
  if (waitStopBeforeDestroy) stopRequested = true;
  return true;
}

bool tthreadprivate::waitsStopBeforeDestroy() {
  Guard guard(lock);
  return waitStopBeforeDestroy;
}

void tthreadprivate::waitForThreadEnd() {
  void* waitFor = nullptr;
  {
    Guard guard(lock);
    waitFor = handle;
  }
  if (waitFor == nullptr) return;
  traceAt20("wait thread handle stop...");
  liveThreads().waitUntilRemoved(idOf(waitFor));
  Guard guard(lock);
  handle = nullptr;
}

// ---- construction and end of life -----------------------------------------------------------

TThread::TThread(const char* name, int flags)
    : d(new tthreadprivate(name, nullptr, nullptr, {}, flags)) {}

TThread::TThread(const char* name, void (*fn)(void*), void* data, int flags)
    : d(new tthreadprivate(name, fn, data, {}, flags)) {}

TThread::TThread(const char* name, std::function<void()> fn, int flags)
    : d(new tthreadprivate(name, nullptr, nullptr, std::move(fn), flags)) {
  if (ZEB_LOG_ENABLED(kTraceLevel20)) {
    mlogWithLevel(kTraceLevel20, kTag,
                  "TThread::TThread(cppfun),name:%s,delAuto:%d,waitStop:%d,callback.empty:%d",
                  this->name(), d->deleteOnExit ? 1 : 0, d->waitStopBeforeDestroy ? 1 : 0,
                  d->callable ? 0 : 1);
  }
}

TThread::~TThread() {
  TMLogAutoTicks ticks(MLOG_DEBUG, kTag, "TThread::~TThread()", "name:%s", name());
  if (isWorking()) assertionRecord("zeb::TThread::~TThread", 211);
  delete d;
}

void TThread::release() {
  TMLogAutoTicks ticks(MLOG_DEBUG, kTag, "TThread::release", ",name:%d",
                       static_cast<int>(threadID()));
  if (d->handDeletionToThread()) return;
  if (d->waitsStopBeforeDestroy()) {
    stopAndWait(-1);
  } else if (isWorking() && ZEB_LOG_ENABLED(MLOG_ERROR)) {
    mlogWithLevel(MLOG_ERROR, kTag, "TThread::release(),thread is runing!");
  }
  d->waitForThreadEnd();
  delete this;
}

// ---- starting and stopping ------------------------------------------------------------------

void* TThread::Exec() {
  Guard guard(d->lock);
  if (d->status != statusWorking) {
    d->stopRequested = false;
    d->status = statusWorking;
    onCreateThread();
  }
  return d->handle;
}

bool TThread::onCreateThread() {
  Guard guard(d->lock);
  if (d->handle != nullptr && running(d->handle)) return true;
  d->threadId = 0;
  d->handle = startTrackedThread(&tthreadprivate::threadMain, this);
  if (d->handle == nullptr) {
    assertionRecord("zeb::TThread::onCreateThread", 250);
    d->status = statusStopped;
  }
  if (ZEB_LOG_ENABLED(kTraceLevel20)) {
    mlogWithLevel(kTraceLevel20, kTag, "TThread::Exec(),create thread:0x%x,%u",
                  handleForLog(d->handle), static_cast<unsigned>(d->threadId));
  }
  return d->handle != nullptr;
}

void TThread::onRun() {}

void TThread::stop() {
  TMLogAutoTicks ticks(kTraceLevel19, kTag, "TThread::requestStop");
  Guard guard(d->lock);
  d->stopRequested = true;
}

bool TThread::hasStopRequested() const {
  Guard guard(d->lock);
  return d->stopRequested;
}

bool TThread::waitStop(int timeoutMs) {
  TMLogAutoTicks ticks(MLOG_DEBUG, kTag, "TThread::waitStop", ",timeout:%d", timeoutMs);
  if (isCurrentThread()) {
    traceAt20("TThread::waitStop,is currentthread,ignore.");
    return true;
  }
  const long long start = platform::millisecondsSinceLoad();
  while (isWorking()) {
    const long long elapsed = platform::millisecondsSinceLoad() - start;
    if (timeoutMs > 0 && elapsed > timeoutMs) {
      if (ZEB_LOG_ENABLED(kTraceLevel20)) {
        mlogWithLevel(kTraceLevel20, kTag, "tthread waitstop ,time out:%llu ms",
                      static_cast<unsigned long long>(elapsed));
      }
      return false;
    }
    platform::sleepMilliseconds(1);
  }
  return true;
}

bool TThread::join(int timeoutMs) {
  return waitStop(timeoutMs);
}

bool TThread::stopAndWait(int timeoutMs) {
  stop();
  return waitStop(timeoutMs);
}

// ---- state ----------------------------------------------------------------------------------

void TThread::setWaitStopBeforeDestroy(bool wait) {
  Guard guard(d->lock);
  d->waitStopBeforeDestroy = wait;
}

bool TThread::isWorking() const {
  return getWorkingStatus() == statusWorking;
}

const char* TThread::name() const {
  return d->name.isEmpty() ? "" : d->name.p();
}

unsigned long TThread::threadID() const {
  Guard guard(d->lock);
  return d->threadId;
}

void* TThread::threadHandle() const {
  Guard guard(d->lock);
  return d->handle;
}

bool TThread::isCurrentThread() const {
  return threadID() == currentThreadId();
}

void TThread::setWorking(twokringstatus status) {
  Guard guard(d->lock);
  d->status = status;
}

TThread::twokringstatus TThread::getWorkingStatus() const {
  Guard guard(d->lock);
  return d->status;
}

void TThread::setThreadID(const unsigned long& id) {
  Guard guard(d->lock);
  d->threadId = id;
}

void TThread::setThreadHandle(void* handle) {
  Guard guard(d->lock);
  d->handle = handle;
}

// ---- handles --------------------------------------------------------------------------------

unsigned long TThread::currentThreadId() {
  return platform::currentThreadId();
}

bool TThread::running(void* handle) {
  unsigned long kernelId = 0;
  if (!liveThreads().find(idOf(handle), &kernelId)) return false;
  if (ZEB_LOG_ENABLED(kTraceLevel20)) {
    mlogWithLevel(kTraceLevel20, kTag, "IsThreadExit():thread is running:tid:%d,handle:0x%x",
                  static_cast<int>(kernelId), handleForLog(handle));
  }
  return true;
}

bool TThread::isCurrentThread(void* handle) {
  unsigned long kernelId = 0;
  return liveThreads().find(idOf(handle), &kernelId) && kernelId == currentThreadId();
}

// ---- fire-and-forget threads ----------------------------------------------------------------

// Sleeps the delay, then runs the notify object it owns; deletes itself when done.
class tpostrunthread : public TThread {
 public:
  tpostrunthread(tNotifyTmp<void>* notify, int delayMs)
      : TThread("postRunThread", flagDeleteOnExit), m_notify(notify), m_delayMs(delayMs) {}

 protected:
  void onRun() override {
    platform::sleepMilliseconds(m_delayMs);
    m_notify->run();
  }
  ~tpostrunthread() override { delete m_notify; }

 private:
  tNotifyTmp<void>* const m_notify;
  const int m_delayMs;
};

void* TThread::postRun(std::function<void()> fn, int delayMs) {
  if (!fn) return nullptr;
  return postRun(new tNotifyTmp<void>(std::move(fn)), delayMs);
}

void* TThread::postRun(tNotifyTmp<void>* notify, int delayMs) {
  if (notify == nullptr) return nullptr;
  TThread* const thread = new tpostrunthread(notify, delayMs);
  void* const handle = thread->Exec();
  // Once started, the object belongs to its thread; one that never started is ours to end.
  if (handle == nullptr) thread->release();
  return handle;
}

}  // namespace zeb

void* thread_postRun(zeb::tNotifyTmp<void>* notify, int delayMs) {
  return zeb::TThread::postRun(notify, delayMs);
}

void* thread_postRunV1(void (*fn)(const void* data, int size), const void* data, int size,
                       int delayMs) {
  if (fn == nullptr) return nullptr;
  tbytesdata copy(data, data == nullptr ? 0 : size);
  return zeb::TThread::postRun([fn, copy = std::move(copy)] { fn(copy.data(), copy.size()); },
                               delayMs);
}

bool threadIsRuning(void* handle) {
  return zeb::TThread::running(handle);
}

// mlog_ticks.cpp: elapsed-time logging (the per-thread tick stack, caller-held starts, timing
// scopes), scoped log initialisation and the log settings daemon.
//
// Locks: the daemon registry is guarded by the log lock, and each daemon has its own lock for its
// stop flag. The order is always log lock, then daemon lock; the daemon's thread never takes the
// log lock while it holds its own. Waiting for the daemon's thread to end happens without the log
// lock, because that thread writes trace lines on its way out (the thread wrapper's timing scopes)
// and would otherwise block on it for ever.
#include "zeb/log/mlog_ticks.h"

#include <stdarg.h>
#include <stdio.h>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "zeb/log/internal/assertion_record.h"
#include "zeb/log/internal/elapsed_parts.h"
#include "zeb/log/internal/log_core.h"
#include "zeb/log/internal/log_thread_context.h"
#include "zeb/platform/clock.h"
#include "zeb/platform/thread.h"
#include "zeb/thread/zeb_Thread.h"

namespace zeb {
namespace log_internal {
namespace {

constexpr char kLogTag[] = "zeb";
// Where an overflow of the tick stack is reported.
constexpr char kOverflowFile[] = "zeb_log";
constexpr char kOverflowFunction[] = "mlogBeginTickCount";
constexpr int kOverflowLine = 1473;
// How often a stop looks whether the daemon's thread has ended.
constexpr int kDaemonPollMs = 100;

// The two forms of a timing line: with the caller's text first, and without it.
struct LineTexts {
  const char* withText;
  const char* bare;
};

constexpr LineTexts kEndTexts{"%s -> ms:%lld", "-> ms:%lld"};
constexpr LineTexts kSnapTexts{"%s ms:%lld", "ms:%lld"};
constexpr LineTexts kMicrosecondTexts{"%s -> us:%d,%03d", "-> us:%d,%03d"};
constexpr LineTexts kEntryTexts{"%s <-", "<-"};
constexpr LineTexts kEntryWithExtraTexts{"%s <- %s", "<- %s"};

template <typename... Values>
void writeTimingLine(int level, const char* tag, const LineTexts& texts, const char* text,
                     Values... values) {
  const tloglevel lineLevel = static_cast<tloglevel>(level);
  if (text != nullptr) {
    mlogWithLevel(lineLevel, tag, texts.withText, text, values...);
  } else {
    mlogWithLevel(lineLevel, tag, texts.bare, values...);
  }
}

long long nowMilliseconds() {
  return platform::millisecondsSinceLoad();
}

double nowSeconds() {
  return static_cast<double>(platform::highResolutionCounter()) /
         static_cast<double>(platform::highResolutionFrequency());
}

// The milliseconds from `start` to now; wraps instead of overflowing for any caller's start.
long long millisecondsSince(long long start) {
  return static_cast<long long>(static_cast<unsigned long long>(nowMilliseconds()) -
                                static_cast<unsigned long long>(start));
}

// Whether an elapsed time is reported under `thresholdMs`: always for MLOG_TICKS_ALWAYS, never
// for MLOG_TICKS_NEVER, otherwise when it exceeds the threshold.
bool passesThreshold(long long elapsedMs, int thresholdMs) {
  return thresholdMs == MLOG_TICKS_ALWAYS ||
         (thresholdMs != MLOG_TICKS_NEVER && elapsedMs > thresholdMs);
}

void reportMilliseconds(int level, const char* tag, const char* text, int thresholdMs,
                        long long elapsedMs) {
  if (passesThreshold(elapsedMs, thresholdMs)) {
    writeTimingLine(level, tag, kEndTexts, text, elapsedMs);
  }
}

void reportMicroseconds(int level, const char* tag, const char* text, int thresholdMs,
                        double seconds) {
  const ElapsedParts parts = splitElapsed(seconds);
  if (passesThreshold(parts.milliseconds, thresholdMs)) {
    writeTimingLine(level, tag, kMicrosecondTexts, text, parts.milliseconds, parts.microseconds);
  }
}

std::string formatText(const char* fmt, va_list args) {
  va_list measure;
  va_copy(measure, args);
  const int length = vsnprintf(nullptr, 0, fmt, measure);
  va_end(measure);
  if (length <= 0) return std::string();
  std::string text(static_cast<size_t>(length) + 1, '\0');
  vsnprintf(&text[0], text.size(), fmt, args);
  text.resize(static_cast<size_t>(length));
  return text;
}

// The milliseconds since the innermost open begin of this thread; since the library was loaded
// when none is open. With `pop` the begin is closed.
long long elapsedSinceBegin(bool pop) {
  ThreadContext& context = threadContext();
  const long long now = nowMilliseconds();
  if (context.tickIndex <= 0) {
    context.tickIndex = 0;
    return now;
  }
  const long long start = context.tickStarts[context.tickIndex - 1];
  if (pop) --context.tickIndex;
  return now - start;
}

// ---- the settings daemon ------------------------------------------------------------------------

// The daemon's thread waits for its stop flag and does nothing else. The object deletes itself
// once its body returns, which is only after requestEnd: until then the log may call it.
class TLogThread : public TThread {
 public:
  explicit TLogThread(int periodMs) : TThread("logthread", flagDeleteOnExit), periodMs_(periodMs) {}

  void setPeriod(int periodMs) {
    std::lock_guard<std::mutex> guard(lock_);
    periodMs_ = periodMs;
  }

  // Sets the stop flag. The notification is sent under the lock, so the body cannot return (and
  // delete the object) before this call is done with it.
  void requestEnd() {
    std::lock_guard<std::mutex> guard(lock_);
    stopFlag_ = true;
    stopChanged_.notify_all();
  }

 protected:
  void onRun() override {
    std::unique_lock<std::mutex> guard(lock_);
    stopChanged_.wait(guard, [this] { return stopFlag_; });
  }

 private:
  std::mutex lock_;
  std::condition_variable stopChanged_;
  bool stopFlag_ = false;
  // Kept for whoever asks; the body has no use for it.
  int periodMs_;
};

struct Daemon {
  TLogThread* thread = nullptr;
  void* handle = nullptr;
};

// Guarded by the log lock.
Daemon g_daemon;

void waitUntilEnded(void* handle) {
  while (TThread::running(handle)) platform::sleepMilliseconds(kDaemonPollMs);
}

}  // namespace

bool stopSettingsDaemon(LogGuard& guard) {
  if (g_daemon.thread == nullptr) return false;
  const Daemon daemon = std::exchange(g_daemon, Daemon{});
  if (ZEB_LOG_ENABLED(MLOG_INFO)) mlogWithLevel(MLOG_INFO, kLogTag, "mlogStopLogSettingsDaemon");
  daemon.thread->requestEnd();
  guard.unlock();
  waitUntilEnded(daemon.handle);
  guard.lock();
  return true;
}

}  // namespace log_internal
}  // namespace zeb

using namespace zeb::log_internal;

// ---- the tick stack -----------------------------------------------------------------------------

void mlogBeginTickCount(void) {
  if (!ZEB_LOG_ENABLED(MLOG_DEBUG)) return;
  ThreadContext& context = threadContext();
  if (context.tickIndex >= kTickSlots) {
    zeb::internal::writeAssertionRecord(kOverflowFile, kOverflowFunction, kOverflowLine);
    return;
  }
  context.tickStarts[context.tickIndex++] = nowMilliseconds();
}

long long mlogEndTickCount(const char* tag, const char* text, int thresholdMs) {
  if (!ZEB_LOG_ENABLED(MLOG_DEBUG)) return MLOG_TICKS_OFF;
  const long long elapsed = elapsedSinceBegin(true);
  reportMilliseconds(MLOG_DEBUG, tag, text, thresholdMs, elapsed);
  return elapsed;
}

long long mlogSnapTickCount(const char* tag, const char* text) {
  if (!ZEB_LOG_ENABLED(MLOG_DEBUG)) return MLOG_TICKS_OFF;
  const long long elapsed = elapsedSinceBegin(false);
  writeTimingLine(MLOG_DEBUG, tag, kSnapTexts, text, elapsed);
  return elapsed;
}

long long ZEB_Log_EndTickCountOld(const char* text) {
  return mlogEndTickCount(nullptr, text, MLOG_TICKS_ALWAYS);
}

// ---- caller-held starts -------------------------------------------------------------------------

long long ZEB_Log_BeginTickCountSafe(void) {
  return ZEB_Log_BeginTickCountSafe2(MLOG_DEBUG);
}

long long ZEB_Log_EndTickCountSafe(long long start, const char* tag, const char* text,
                                   int thresholdMs) {
  return ZEB_Log_EndTickCountSafe2(MLOG_DEBUG, start, tag, text, thresholdMs);
}

long long ZEB_Log_BeginTickCountSafe2(tloglevel level) {
  return ZEB_LOG_ENABLED(level) ? nowMilliseconds() : 0;
}

long long ZEB_Log_EndTickCountSafe2(tloglevel level, long long start, const char* tag,
                                    const char* text, int thresholdMs) {
  if (!ZEB_LOG_ENABLED(level)) return MLOG_TICKS_OFF;
  const long long elapsed = millisecondsSince(start);
  reportMilliseconds(level, tag, text, thresholdMs, elapsed);
  return elapsed;
}

double ZEB_Log_BeginTime(void) {
  return ZEB_LOG_ENABLED(MLOG_DEBUG) ? nowSeconds() : 0.0;
}

double ZEB_Log_EndTime(double start, const char* tag, const char* text, int thresholdMs) {
  if (!ZEB_LOG_ENABLED(MLOG_DEBUG)) return -1.0;
  const double elapsed = nowSeconds() - start;
  reportMicroseconds(MLOG_DEBUG, tag, text, thresholdMs, elapsed);
  return elapsed;
}

// ---- the settings daemon ------------------------------------------------------------------------

void mlogStartLogSettingsDaemon(int periodMs) {
  std::lock_guard<std::recursive_mutex> guard(logMutex());
  if (ZEB_LOG_ENABLED(MLOG_INFO)) {
    mlogWithLevel(MLOG_INFO, kLogTag, "mlogStartLogSettingsDaemon:%d", periodMs);
  }
  if (g_daemon.thread != nullptr) {
    g_daemon.thread->setPeriod(periodMs);
    return;
  }
  TLogThread* thread = new TLogThread(periodMs);
  void* handle = thread->Exec();
  if (handle == nullptr) {
    thread->release();
    return;
  }
  g_daemon = Daemon{thread, handle};
}

void mlogStopLogSettingsDaemon(void) {
  LogGuard guard(logMutex());
  stopSettingsDaemon(guard);
}

// ---- timing scopes ------------------------------------------------------------------------------

struct TMLogAutoTicks::Record {
  std::optional<std::string> name;
  std::optional<std::string> extra;
  double start = 0;
  int thresholdMs = MLOG_TICKS_ALWAYS;
  std::string tag;
  int level = MLOG_DEBUG;
  // The scope pushed one indentation step, which its end takes back.
  bool indented = false;

  // Starts a scope: the entry line, the indentation of a negative threshold, the start time.
  // `fmt` (null: no extra text) is formatted with *args. Null when `level` does not pass.
  static Record* open(int level, const char* tag, const char* name, int thresholdMs,
                      const char* fmt, va_list* args) {
    if (!ZEB_LOG_ENABLED(level)) return nullptr;
    Record* record = new Record;
    if (name != nullptr) record->name = name;
    if (fmt != nullptr) record->extra = formatText(fmt, *args);
    record->thresholdMs = thresholdMs;
    record->tag = tag != nullptr ? tag : "";
    record->level = level;
    record->writeEntry();
    if (thresholdMs < 0) {
      mlogFormatPush(false);
      record->indented = true;
    }
    record->start = nowSeconds();
    return record;
  }

  // The elapsed seconds, reported when the level still passes (-1.0 when it does not).
  double close() const {
    const double elapsed = nowSeconds() - start;
    if (indented) mlogFormatPop(false);
    if (!ZEB_LOG_ENABLED(level)) return -1.0;
    reportMicroseconds(level, tag.c_str(), textOrNull(name), thresholdMs, elapsed);
    return elapsed;
  }

  // The report of a scope with a threshold and extra text names the call: "name:extra".
  void nameWithExtra() {
    if (extra) name = (name ? *name : std::string()) + ':' + *extra;
  }

 private:
  static const char* textOrNull(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
  }

  void writeEntry() const {
    if (extra) {
      writeTimingLine(level, tag.c_str(), kEntryWithExtraTexts, textOrNull(name), extra->c_str());
    } else {
      writeTimingLine(level, tag.c_str(), kEntryTexts, textOrNull(name));
    }
  }
};

TMLogAutoTicks::TMLogAutoTicks(tloglevel level, const char* tag, const char* name)
    : record_(Record::open(level, tag, name, MLOG_TICKS_ALWAYS, nullptr, nullptr)) {}

TMLogAutoTicks::TMLogAutoTicks(tloglevel level, const char* tag, const char* name, const char* fmt,
                               ...) {
  va_list args;
  va_start(args, fmt);
  record_ = Record::open(level, tag, name, MLOG_TICKS_ALWAYS, fmt, &args);
  va_end(args);
}

TMLogAutoTicks::TMLogAutoTicks(mautologinittag, tloglevel level, const char* tag, const char* name,
                               ...)
    : record_(nullptr) {
  ensureLogInitialised();
  if (!ZEB_LOG_ENABLED(level)) return;
  std::string formattedName;
  if (name != nullptr) {
    va_list args;
    va_start(args, name);
    formattedName = formatText(name, args);
    va_end(args);
  }
  record_ = Record::open(level, tag, name != nullptr ? formattedName.c_str() : nullptr,
                         MLOG_TICKS_ALWAYS, nullptr, nullptr);
}

TMLogAutoTicks::TMLogAutoTicks(tloglevel level, const char* tag, const char* name, int thresholdMs)
    : record_(Record::open(level, tag, name, thresholdMs, nullptr, nullptr)) {}

TMLogAutoTicks::TMLogAutoTicks(tloglevel level, const char* tag, const char* name, int thresholdMs,
                               const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  record_ = Record::open(level, tag, name, thresholdMs, fmt, &args);
  va_end(args);
  if (record_ != nullptr) record_->nameWithExtra();
}

TMLogAutoTicks::~TMLogAutoTicks() {
  finish();
}

double TMLogAutoTicks::finish() {
  if (record_ == nullptr) return -1.0;
  const double elapsed = record_->close();
  delete record_;
  record_ = nullptr;
  return elapsed;
}

// ---- scoped initialisation ----------------------------------------------------------------------

struct TMLogScopeInitLog::Record {
  std::optional<std::string> logPath;
};

TMLogScopeInitLog::TMLogScopeInitLog(const char* app, const char* logPath) : record_(new Record) {
  if (logPath != nullptr) record_->logPath = logPath;
  mlogQuickInit(app, logPath);
}

TMLogScopeInitLog::~TMLogScopeInitLog() {
  if (record_->logPath) mlogCloseFile(record_->logPath->c_str());
  mlogQuickFinalize();
  delete record_;
}

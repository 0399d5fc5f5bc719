// mlog_ticks.h: elapsed-time logging and the log settings daemon.
//
// Two ways to time work, both writing at the debug level or finer and costing one comparison
// when the global level (g_zeb_log_level) is below it:
//
// - A per-thread stack of start ticks (49 deep, milliseconds): mlogBeginTickCount pushes,
//   mlogEndTickCount pops and logs "text -> ms:N".
// - Timing scopes: a TMLogAutoTicks logs "name <-" when it is created and
//   "name -> us:M,UUU" (the elapsed microseconds with a comma before the last three digits) when
//   it goes out of scope. A negative threshold also indents the lines written inside the scope.
//
//   void save(const char* path) {
//     TMLogAutoTicks scope(MLOG_DEBUG, "app.io", "save", "path:%s", path);
//     ...                                      // "save <- path:/tmp/a" ... "save -> us:12,345"
//   }
//
//   mlogBeginTickCount();
//   parse();
//   mlogEndTickCount("app.parse", "parse", 100);  // "parse -> ms:250" only when above 100 ms
//
// TMLogScopeInitLog pairs log initialisation and finalisation with a scope, and the settings
// daemon is a background thread kept for the life of the log (the last finalisation stops it).
#ifndef ZEB_LOG_MLOG_TICKS_H
#define ZEB_LOG_MLOG_TICKS_H

#include "zeb/log/zeb_log.h"
#include "zeb/zeb_api.h"

// Thresholds of the timing functions: a positive value logs only an elapsed time above it (in
// milliseconds); MLOG_TICKS_ALWAYS logs every time, MLOG_TICKS_NEVER never. For timing scopes any
// negative threshold also indents the lines written inside the scope.
#define MLOG_TICKS_ALWAYS (-1)
#define MLOG_TICKS_NEVER (-2)

// The result of the tick functions while the global level is below debug.
#define MLOG_TICKS_OFF 2147483647LL

extern "C" {

// ---- the tick stack (per thread, debug level, milliseconds) -------------------------------------

// Pushes the current time. Above 49 nested begins an assertion line is written instead and nothing
// is pushed (the matching end then pairs with an outer begin).
ZEB_API void mlogBeginTickCount(void);
// Pops the last begin and returns the milliseconds since it (with an empty stack: the milliseconds
// since the library was loaded). Writes "text -> ms:N" ("-> ms:N" for a null text) at debug with
// `tag` when the threshold allows. MLOG_TICKS_OFF below debug.
ZEB_API long long mlogEndTickCount(const char* tag, const char* text, int thresholdMs);
// As mlogEndTickCount without popping and without threshold: "text ms:N" ("ms:N").
ZEB_API long long mlogSnapTickCount(const char* tag, const char* text);
// mlogEndTickCount with the default tag that always logs.
ZEB_API long long ZEB_Log_EndTickCountOld(const char* text);

// ---- caller-held starts (no stack, nothing to overflow) -----------------------------------------

// The start to hand to ZEB_Log_EndTickCountSafe (milliseconds; 0 below debug).
ZEB_API long long ZEB_Log_BeginTickCountSafe(void);
// As mlogEndTickCount, measured from `start`.
ZEB_API long long ZEB_Log_EndTickCountSafe(long long start, const char* tag, const char* text,
                                           int thresholdMs);
// The same pair at `level` instead of debug (0 / MLOG_TICKS_OFF when `level` does not pass).
ZEB_API long long ZEB_Log_BeginTickCountSafe2(tloglevel level);
ZEB_API long long ZEB_Log_EndTickCountSafe2(tloglevel level, long long start, const char* tag,
                                            const char* text, int thresholdMs);
// Microsecond timing: the start in seconds (0 below debug), and the end, which writes
// "text -> us:M,UUU" ("-> us:M,UUU") at debug as a timing scope does and returns the elapsed
// seconds (-1.0 below debug).
ZEB_API double ZEB_Log_BeginTime(void);
ZEB_API double ZEB_Log_EndTime(double start, const char* tag, const char* text, int thresholdMs);

// ---- the settings daemon
// -------------------------------------------------------------------------

// Starts the daemon thread ("logthread") unless it runs; `periodMs` is kept with it. Logs
// "mlogStartLogSettingsDaemon:N" at info.
ZEB_API void mlogStartLogSettingsDaemon(int periodMs);
// Stops the daemon and waits until its thread has ended (nothing when none runs). Logs
// "mlogStopLogSettingsDaemon" at info. The last log finalisation calls it.
ZEB_API void mlogStopLogSettingsDaemon(void);

}  // extern "C"

// A timing scope. When `level` passes the global level, the constructor writes "name <-" (or
// "name <- extra" with the formatted extra text) at `level` with `tag` and records the time; the
// destructor writes "name -> us:M,UUU" ("-> us:M,UUU" for a null name) when the threshold allows
// (default MLOG_TICKS_ALWAYS). A scope with a threshold and extra text names itself "name:extra"
// in that line, so a report of a slow call says which call it was. Below its level a scope reads
// no clock and allocates nothing.
class ZEB_API TMLogAutoTicks {
 public:
  // Selects the constructor that also initialises the log (as its first line would) whatever
  // the level.
  struct mautologinittag {};

  TMLogAutoTicks(tloglevel level, const char* tag, const char* name);
  TMLogAutoTicks(tloglevel level, const char* tag, const char* name, const char* fmt, ...);
  // `name` is a format, completed by the arguments that follow.
  TMLogAutoTicks(mautologinittag, tloglevel level, const char* tag, const char* name, ...);
  TMLogAutoTicks(tloglevel level, const char* tag, const char* name, int thresholdMs);
  TMLogAutoTicks(tloglevel level, const char* tag, const char* name, int thresholdMs,
                 const char* fmt, ...);
  ~TMLogAutoTicks();
  TMLogAutoTicks(const TMLogAutoTicks&) = delete;
  TMLogAutoTicks& operator=(const TMLogAutoTicks&) = delete;

  // Ends the scope now: writes its report and returns the elapsed seconds, or -1.0 when the scope
  // was not started (its level did not pass) or has already ended.
  double finish();

 private:
  struct Record;
  Record* record_;
};

// A timing scope with a shorter signature: debug level and the default tag, or level, tag, name.
class ZEB_API TZEBLogAutoTicks : public TMLogAutoTicks {
 public:
  explicit TZEBLogAutoTicks(const char* name) : TMLogAutoTicks(MLOG_DEBUG, nullptr, name) {}
  TZEBLogAutoTicks(tloglevel level, const char* tag, const char* name)
      : TMLogAutoTicks(level, tag, name) {}
};

// Initialises the log with mlogQuickInit(app, logPath); the destructor closes that log file and
// finalises the log once.
class ZEB_API TMLogScopeInitLog {
 public:
  TMLogScopeInitLog(const char* app, const char* logPath);
  ~TMLogScopeInitLog();
  TMLogScopeInitLog(const TMLogScopeInitLog&) = delete;
  TMLogScopeInitLog& operator=(const TMLogScopeInitLog&) = delete;

 private:
  struct Record;
  Record* record_;
};

#endif  // ZEB_LOG_MLOG_TICKS_H

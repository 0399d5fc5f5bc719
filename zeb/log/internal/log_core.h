// log_core.h: what the log core and the timing and daemon unit (mlog_ticks.cpp) share. Private to
// the log.
#ifndef ZEB_LOG_INTERNAL_LOG_CORE_H
#define ZEB_LOG_INTERNAL_LOG_CORE_H

#include <mutex>

namespace zeb {
namespace log_internal {

using LogGuard = std::unique_lock<std::recursive_mutex>;

// The log lock (zeb_log.cpp): serialises every line and setting, and guards the settings daemon.
std::recursive_mutex& logMutex();

// Initialises the log as its first line would (app id "zeb") unless it is initialised.
void ensureLogInitialised();

// Stops the settings daemon (mlog_ticks.cpp). `guard` holds the log lock exactly once: the stop
// is requested under it, then it is released while the daemon's thread ends (that thread's last
// lines need it) and taken again. True when a daemon was stopped, and so the lock was released.
bool stopSettingsDaemon(LogGuard& guard);

}  // namespace log_internal
}  // namespace zeb

#endif  // ZEB_LOG_INTERNAL_LOG_CORE_H

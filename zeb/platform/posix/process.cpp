// process.cpp (POSIX): process and thread ids from the kernel, the wall clock from
// clock_gettime(CLOCK_REALTIME) and the local calendar from localtime_r.
#include "zeb/platform/process.h"

#include <stdio.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace zeb {
namespace platform {

unsigned long currentProcessId() {
  return static_cast<unsigned long>(getpid());
}

unsigned long currentThreadId() {
  return static_cast<unsigned long>(syscall(SYS_gettid));
}

WallClock wallClockNow() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return WallClock{static_cast<long long>(now.tv_sec), static_cast<int>(now.tv_nsec / 1000000)};
}

CalendarTime localCalendarTime(long long seconds) {
  const time_t when = static_cast<time_t>(seconds);
  tm local{};
  if (localtime_r(&when, &local) == nullptr) return CalendarTime{};
  return CalendarTime{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                      local.tm_hour,        local.tm_min,     local.tm_sec};
}

void writeConsole(const char* text) {
  fputs(text, stdout);
}

void writeDebugger(const char*) {}

void requestFileAccessGrant(const char*) {}

}  // namespace platform
}  // namespace zeb

// process.h: the process and clock services the log core needs: the process and kernel thread
// ids, the wall clock split into whole seconds and milliseconds, the local calendar time of a
// second, console and debugger output of a text, and the request to open up a log file the
// process may not write.
//
//   zeb::platform::WallClock now = zeb::platform::wallClockNow();
//   zeb::platform::CalendarTime t = zeb::platform::localCalendarTime(now.seconds);
#ifndef ZEB_PLATFORM_PROCESS_H
#define ZEB_PLATFORM_PROCESS_H

namespace zeb {
namespace platform {

// The id of the calling process.
unsigned long currentProcessId();
// The kernel's id of the calling thread (what a debugger or `top -H` shows).
unsigned long currentThreadId();

// A point of the wall clock: whole seconds since 1970-01-01 UTC and the milliseconds (0..999)
// into that second.
struct WallClock {
  long long seconds;
  int milliseconds;
};
WallClock wallClockNow();

// The local date and time of a second of the wall clock: year (e.g. 2026), month 1..12, day
// 1..31, hour 0..23, minute 0..59, second 0..60. All zero when the time cannot be converted.
struct CalendarTime {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
};
CalendarTime localCalendarTime(long long seconds);

// Writes the NUL-terminated `text` to standard output as printf("%s") would (no flush).
void writeConsole(const char* text);
// Hands `text` to the debugger's output channel; nothing on systems that have none (POSIX).
void writeDebugger(const char* text);

// Asks, without waiting, for every user to be granted full access to the file `path` (8-bit,
// UTF-8). Windows runs the access-control tool elevated; POSIX has no such request and does
// nothing (the file is then simply opened).
void requestFileAccessGrant(const char* path);

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_PROCESS_H

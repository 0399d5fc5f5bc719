// clock.h: the clocks and the zone rules the date-time unit needs: a monotonic millisecond count
// since the library was loaded, the system's monotonic tick, the wall clock as milliseconds since
// 1970-01-01 UTC and as calendar fields (UTC or local), conversion of calendar fields between UTC
// and local time by the system's zone rules, and a high-resolution counter with its frequency.
//
//   zeb::platform::TimeFields now;
//   if (zeb::platform::systemTimeLocal(&now)) printf("%d-%02d-%02d\n", now.year, now.month,
//   now.day);
#ifndef ZEB_PLATFORM_CLOCK_H
#define ZEB_PLATFORM_CLOCK_H

namespace zeb {
namespace platform {

// A calendar date and time of day: year (e.g. 2026), month 1..12, day 1..31, hour 0..23,
// minute 0..59, second 0..59 (60 for a leap second where the system reports one) and
// millisecond 0..999.
struct TimeFields {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
  int millisecond;
};

// Milliseconds of a monotonic clock since the library was loaded; never goes back and keeps
// counting while the process sleeps.
long long millisecondsSinceLoad();

// Milliseconds of the system's monotonic clock since an unspecified origin (boot on Linux).
unsigned long long monotonicMilliseconds();

// The wall clock: milliseconds since 1970-01-01 00:00:00 UTC.
long long wallClockMilliseconds();

// The wall clock as UTC / local calendar fields. False (and *out untouched) when the system
// cannot split the time.
bool systemTimeUtc(TimeFields* out);
bool systemTimeLocal(TimeFields* out);
// The local calendar fields of the wall-clock second `epochSecond` (seconds since 1970-01-01
// UTC), millisecond 0. False (and *out untouched) when the system cannot split it.
bool localTimeOfSecond(long long epochSecond, TimeFields* out);

// The local time of the UTC instant `utc`, and the UTC instant of the local time `local`, by the
// zone rules in force (TZ). Milliseconds are carried over unchanged. A local time that falls in a
// daylight-saving gap is moved forward by the gap; one that occurs twice is taken in whichever
// offset the system picks. False (and *out untouched) when the time cannot be converted.
bool utcToLocal(const TimeFields& utc, TimeFields* out);
bool localToUtc(const TimeFields& local, TimeFields* out);

// A high-resolution monotonic counter and its ticks per second.
unsigned long long highResolutionCounter();
unsigned long long highResolutionFrequency();

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_CLOCK_H

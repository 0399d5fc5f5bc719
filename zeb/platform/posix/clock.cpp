// clock.cpp (POSIX): the clocks come from clock_gettime, the zone rules from timegm, mktime,
// gmtime_r and localtime_r (which read TZ and the system's zone database).
#include "zeb/platform/clock.h"

#include <errno.h>
#include <time.h>

namespace zeb {
namespace platform {

namespace {

constexpr long long kNanosecondsPerSecond = 1000000000LL;
constexpr long long kNanosecondsPerMillisecond = 1000000LL;

long long readClockNanoseconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<long long>(now.tv_sec) * kNanosecondsPerSecond + now.tv_nsec;
}

// The monotonic reading taken when the library was loaded (or, should another library's static
// initialiser ask first, at that first request).
long long loadNanoseconds() {
  static const long long origin = readClockNanoseconds(CLOCK_MONOTONIC);
  return origin;
}

[[maybe_unused]] const long long kOriginTakenAtLoad = loadNanoseconds();

tm toTm(const TimeFields& fields) {
  tm t{};
  t.tm_year = fields.year - 1900;
  t.tm_mon = fields.month - 1;
  t.tm_mday = fields.day;
  t.tm_hour = fields.hour;
  t.tm_min = fields.minute;
  t.tm_sec = fields.second;
  t.tm_isdst = -1;
  return t;
}

TimeFields fromTm(const tm& t, int millisecond) {
  return TimeFields{t.tm_year + 1900, t.tm_mon + 1, t.tm_mday,  t.tm_hour,
                    t.tm_min,         t.tm_sec,     millisecond};
}

// Splits the second `seconds` into UTC (local = false) or local fields.
bool splitSeconds(time_t seconds, int millisecond, bool local, TimeFields* out) {
  tm t{};
  if ((local ? localtime_r(&seconds, &t) : gmtime_r(&seconds, &t)) == nullptr) return false;
  *out = fromTm(t, millisecond);
  return true;
}

// timegm (local = false) or mktime of `fields`; false when the time does not fit a time_t.
bool joinFields(const TimeFields& fields, bool local, time_t* seconds) {
  tm t = toTm(fields);
  errno = 0;
  *seconds = local ? mktime(&t) : timegm(&t);
  return !(*seconds == static_cast<time_t>(-1) && errno != 0);
}

bool systemTime(bool local, TimeFields* out) {
  const long long now = wallClockMilliseconds();
  const long long millisecond = ((now % 1000) + 1000) % 1000;
  return splitSeconds(static_cast<time_t>((now - millisecond) / 1000),
                      static_cast<int>(millisecond), local, out);
}

bool convertFields(const TimeFields& in, bool fromLocal, TimeFields* out) {
  time_t seconds = 0;
  return joinFields(in, fromLocal, &seconds) &&
         splitSeconds(seconds, in.millisecond, !fromLocal, out);
}

}  // namespace

long long millisecondsSinceLoad() {
  return (readClockNanoseconds(CLOCK_MONOTONIC) - loadNanoseconds()) / kNanosecondsPerMillisecond;
}

unsigned long long monotonicMilliseconds() {
  return static_cast<unsigned long long>(readClockNanoseconds(CLOCK_MONOTONIC) /
                                         kNanosecondsPerMillisecond);
}

long long wallClockMilliseconds() {
  return readClockNanoseconds(CLOCK_REALTIME) / kNanosecondsPerMillisecond;
}

bool systemTimeUtc(TimeFields* out) {
  return systemTime(false, out);
}

bool systemTimeLocal(TimeFields* out) {
  return systemTime(true, out);
}

bool localTimeOfSecond(long long epochSecond, TimeFields* out) {
  return splitSeconds(static_cast<time_t>(epochSecond), 0, true, out);
}

bool utcToLocal(const TimeFields& utc, TimeFields* out) {
  return convertFields(utc, false, out);
}

bool localToUtc(const TimeFields& local, TimeFields* out) {
  return convertFields(local, true, out);
}

unsigned long long highResolutionCounter() {
  return static_cast<unsigned long long>(readClockNanoseconds(CLOCK_MONOTONIC));
}

unsigned long long highResolutionFrequency() {
  return static_cast<unsigned long long>(kNanosecondsPerSecond);
}

}  // namespace platform
}  // namespace zeb

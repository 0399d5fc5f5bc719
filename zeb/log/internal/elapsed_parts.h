// elapsed_parts.h: how a timing report splits an elapsed time into the two numbers of its
// "us:M,UUU" text. Private to the log.
#ifndef ZEB_LOG_INTERNAL_ELAPSED_PARTS_H
#define ZEB_LOG_INTERNAL_ELAPSED_PARTS_H

#include <limits.h>

namespace zeb {
namespace log_internal {

// Whole milliseconds, and the microseconds beyond them.
struct ElapsedParts {
  int milliseconds;
  int microseconds;
};

// Splits `seconds` as the integer parts of seconds * 1000 and of seconds * 1,000,000 less 1000
// times the first (so 2.0005 s gives 2000 and 500, and 12.345 ms gives 12 and 345). A negative
// or NaN time gives 0 and 0; a time whose milliseconds do not fit an int gives INT_MAX and 999.
inline ElapsedParts splitElapsed(double seconds) {
  constexpr double kLongestSeconds = INT_MAX / 1000.0;
  if (!(seconds > 0)) return {0, 0};
  if (seconds >= kLongestSeconds) return {INT_MAX, 999};
  const int milliseconds = static_cast<int>(seconds * 1000);
  const long long microseconds = static_cast<long long>(seconds * 1000000);
  return {milliseconds, static_cast<int>(microseconds - 1000LL * milliseconds)};
}

}  // namespace log_internal
}  // namespace zeb

#endif  // ZEB_LOG_INTERNAL_ELAPSED_PARTS_H

// waiting.h: the small timing helpers of tests that involve other threads: sleep, elapsed time
// on the steady clock, and polling until a condition holds.
//
//   const auto start = zeb::testing::Clock::now();
//   EXPECT_TRUE(zeb::testing::eventually([&] { return done.load(); }));
//   EXPECT_LT(zeb::testing::msSince(start), 5000);
#ifndef ZEB_TESTING_WAITING_H
#define ZEB_TESTING_WAITING_H

#include <chrono>
#include <functional>
#include <thread>

namespace zeb {
namespace testing {

using Clock = std::chrono::steady_clock;

inline void sleepMs(int ms) {
  std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

inline long long msSince(Clock::time_point start) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

// Polls every millisecond until `done` holds; false when it has not after 10 s.
inline bool eventually(const std::function<bool()>& done) {
  const Clock::time_point start = Clock::now();
  while (!done()) {
    if (msSince(start) > 10000) return false;
    sleepMs(1);
  }
  return true;
}

}  // namespace testing
}  // namespace zeb

#endif  // ZEB_TESTING_WAITING_H

// Tests of elapsed-time logging, scoped initialisation and the settings daemon, read back from real
// log files. Tick stacks and indentation are per thread, so the tests that depend on them run on a
// fresh thread.

#include "zeb/log/mlog_ticks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "testing/log_capture.h"
#include "testing/waiting.h"
#include "zeb/log/internal/elapsed_parts.h"
#include "zeb/thread/zeb_Thread.h"
#include "zeb/utils/mfile.h"

namespace {

using zeb::testing::LogCapture;
using zeb::testing::LogLine;
using zeb::testing::parseLogLine;

using zeb::testing::onFreshThread;

using zeb::testing::sleepMs;

// A log file at the debug level (or `level` when finer) with the global level at `level`.
struct TimingLog : LogCapture {
  explicit TimingLog(int level = MLOG_DEBUG) : LogCapture(std::max<int>(level, MLOG_DEBUG)) {
    mlogSetLevel(static_cast<tloglevel>(level));
  }
};

// The parsed lines whose message begins with `prefix`.
std::vector<LogLine> linesStartingWith(const LogCapture& log, const std::string& prefix) {
  std::vector<LogLine> found;
  for (const std::string& line : log.lines()) {
    const auto parsed = parseLogLine(line);
    if (parsed && parsed->message.compare(0, prefix.size(), prefix) == 0) found.push_back(*parsed);
  }
  return found;
}

bool hasMessage(const LogCapture& log, const std::string& message) {
  const std::vector<std::string> messages = log.messages();
  return std::find(messages.begin(), messages.end(), message) != messages.end();
}

// The "-> us:M,UUU" text of a scope that reported `seconds`.
std::string microsecondText(double seconds) {
  const zeb::log_internal::ElapsedParts parts = zeb::log_internal::splitElapsed(seconds);
  char text[64];
  std::snprintf(text, sizeof text, "-> us:%d,%03d", parts.milliseconds, parts.microseconds);
  return text;
}

// ---- the tick stack -----------------------------------------------------------------------------

TEST(TickStack, EndLogsTheMillisecondsSinceItsBegin) {
  TimingLog log;
  onFreshThread([&] {
    mlogBeginTickCount();
    sleepMs(20);
    const long long elapsed = mlogEndTickCount("t.tick", "work", MLOG_TICKS_ALWAYS);
    EXPECT_GE(elapsed, 20);
    EXPECT_LT(elapsed, 5000);
    EXPECT_TRUE(hasMessage(log, "work -> ms:" + std::to_string(elapsed)));
    mlogBeginTickCount();
    EXPECT_TRUE(hasMessage(log, "-> ms:" + std::to_string(mlogEndTickCount("t", nullptr, -1))));
  });
}

TEST(TickStack, ThresholdDecidesWhetherTheEndIsLogged) {
  struct ThresholdCase {
    int thresholdMs;
    bool logged;
  };
  const ThresholdCase cases[] = {
      {MLOG_TICKS_ALWAYS, true}, {MLOG_TICKS_NEVER, false}, {0, true}, {100000, false}};
  for (const ThresholdCase& c : cases) {
    TimingLog log;
    onFreshThread([&] {
      mlogBeginTickCount();
      sleepMs(2);
      mlogEndTickCount("t", "timed", c.thresholdMs);
    });
    EXPECT_EQ(linesStartingWith(log, "timed -> ms:").size(), c.logged ? 1u : 0u)
        << "threshold " << c.thresholdMs;
  }
}

TEST(TickStack, SnapReportsWithoutClosingTheBegin) {
  TimingLog log;
  onFreshThread([&] {
    mlogBeginTickCount();
    sleepMs(5);
    const long long snap = mlogSnapTickCount("t", "so far");
    const long long end = mlogEndTickCount("t", "done", MLOG_TICKS_ALWAYS);
    EXPECT_TRUE(hasMessage(log, "so far ms:" + std::to_string(snap)));
    EXPECT_GE(end, snap);
    EXPECT_LT(end, 5000);
  });
}

// The 50th begin is dropped, so the 50th end finds the stack empty: it gives the raw clock.
TEST(TickStack, The50thNestedBeginIsDroppedWithAnAssertionLine) {
  TimingLog log;
  onFreshThread([&] {
    for (int i = 0; i < 50; ++i) mlogBeginTickCount();
    const std::vector<LogLine> asserts = linesStartingWith(log, ":mlogBeginTickCount:1473");
    ASSERT_EQ(asserts.size(), 1u);
    EXPECT_EQ(asserts[0].letter, "A");
    EXPECT_EQ(asserts[0].tag.substr(0, 7), "zeb_log");
    for (int i = 0; i < 49; ++i) EXPECT_LT(mlogEndTickCount("t", "nested", -2), 5000);
    const long long before = ZEB_Log_BeginTickCountSafe();
    EXPECT_GE(mlogEndTickCount("t", "unbalanced", -2), before);
  });
}

TEST(TickStack, BelowDebugNothingIsPushedOrLogged) {
  TimingLog log(MLOG_INFO);
  onFreshThread([&] {
    mlogBeginTickCount();
    EXPECT_EQ(mlogEndTickCount("t", "off", MLOG_TICKS_ALWAYS), MLOG_TICKS_OFF);
    EXPECT_EQ(ZEB_Log_EndTime(ZEB_Log_BeginTime(), "t", "off", -1), -1.0);
    mlogSetLevel(MLOG_DEBUG);
    const long long before = ZEB_Log_BeginTickCountSafe();
    EXPECT_GE(mlogEndTickCount("t", "unbalanced", -2), before);
  });
  EXPECT_TRUE(linesStartingWith(log, "off").empty());
}

TEST(CallerHeldStarts, SafePairsAndMicrosecondPairsLog) {
  TimingLog log;
  const long long start = ZEB_Log_BeginTickCountSafe2(MLOG_INFO);
  const long long elapsed = ZEB_Log_EndTickCountSafe2(MLOG_INFO, start, "t", "safe", -1);
  const std::vector<LogLine> safe = linesStartingWith(log, "safe -> ms:");
  ASSERT_EQ(safe.size(), 1u);
  EXPECT_EQ(safe[0].letter, "I");
  EXPECT_EQ(safe[0].message, "safe -> ms:" + std::to_string(elapsed));
  const double seconds = ZEB_Log_EndTime(ZEB_Log_BeginTime(), "t", "fine", -1);
  EXPECT_TRUE(hasMessage(log, "fine " + microsecondText(seconds)));
}

// ---- timing scopes ------------------------------------------------------------------------------

TEST(ElapsedParts, SplitsIntoMillisecondsAndTheMicrosecondsBeyond) {
  struct SplitCase {
    double seconds;
    int milliseconds;
    int microseconds;
  };
  const SplitCase cases[] = {
      {2.0005, 2000, 500}, {0.012345, 12, 345}, {0.0, 0, 0}, {-1.0, 0, 0}, {1e12, INT_MAX, 999}};
  for (const SplitCase& c : cases) {
    const zeb::log_internal::ElapsedParts parts = zeb::log_internal::splitElapsed(c.seconds);
    EXPECT_EQ(parts.milliseconds, c.milliseconds) << c.seconds;
    EXPECT_EQ(parts.microseconds, c.microseconds) << c.seconds;
  }
}

TEST(TimingScope, WritesTheEntryAndTheElapsedMicroseconds) {
  TimingLog log;
  double seconds = 0;
  {
    TMLogAutoTicks scope(MLOG_DEBUG, "t.scope", "work", "n:%d", 3);
    sleepMs(30);
    seconds = scope.finish();
    EXPECT_EQ(scope.finish(), -1.0);
  }
  EXPECT_GE(seconds, 0.030);
  EXPECT_LT(seconds, 5.0);
  EXPECT_TRUE(hasMessage(log, "work <- n:3"));
  EXPECT_TRUE(hasMessage(log, "work " + microsecondText(seconds)));
}

TEST(TimingScope, ThresholdAndLevelDecideTheReport) {
  TimingLog log;
  { TMLogAutoTicks never(MLOG_DEBUG, "t", "never", MLOG_TICKS_NEVER); }
  { TMLogAutoTicks fast(MLOG_DEBUG, "t", "fast", 100000); }
  {
    TMLogAutoTicks slow(MLOG_DEBUG, "t", "slow", 1, "id:%d", 9);
    sleepMs(5);
  }
  {
    TMLogAutoTicks verbose(MLOG_VERBOSE, "t", "verbose");
    EXPECT_EQ(verbose.finish(), -1.0);
  }
  EXPECT_TRUE(hasMessage(log, "never <-"));
  EXPECT_TRUE(linesStartingWith(log, "never ->").empty());
  EXPECT_TRUE(linesStartingWith(log, "fast ->").empty());
  EXPECT_EQ(linesStartingWith(log, "slow:id:9 -> us:").size(), 1u);
  EXPECT_TRUE(linesStartingWith(log, "verbose").empty());
}

TEST(TimingScope, NegativeThresholdIndentsTheLinesInside) {
  TimingLog log;
  onFreshThread([] {
    {
      TMLogAutoTicks outer(MLOG_DEBUG, "t", "outer");
      mlogWithLevel(MLOG_INFO, "t", "inside");
      TMLogAutoTicks quiet(MLOG_DEBUG, "t", "quiet", 100000);
      mlogWithLevel(MLOG_INFO, "t", "still inside");
    }
    mlogWithLevel(MLOG_INFO, "t", "after");
  });
  const int expected[][2] = {{0, 0}, {1, 2}, {2, 2}, {3, 0}, {4, 0}};
  const char* const messages[] = {"outer <-", "inside", "still inside", "outer -> us:", "after"};
  for (const auto& e : expected) {
    const std::vector<LogLine> lines = linesStartingWith(log, messages[e[0]]);
    ASSERT_EQ(lines.size(), 1u) << messages[e[0]];
    EXPECT_EQ(lines[0].indent, e[1]) << messages[e[0]];
  }
}

TEST(TimingScope, ShortFormsAndTheInitialisingForm) {
  TimingLog log;
  { TZEBLogAutoTicks plain("plain"); }
  { TZEBLogAutoTicks tagged(MLOG_INFO, "t.tagged", "tagged"); }
  { TMLogAutoTicks init(TMLogAutoTicks::mautologinittag{}, MLOG_DEBUG, "t", "job %d", 7); }
  const std::vector<LogLine> plain = linesStartingWith(log, "plain <-");
  ASSERT_EQ(plain.size(), 1u);
  EXPECT_EQ(plain[0].letter, "D");
  EXPECT_EQ(plain[0].tag.substr(0, 3), "zeb");
  const std::vector<LogLine> tagged = linesStartingWith(log, "tagged -> us:");
  ASSERT_EQ(tagged.size(), 1u);
  EXPECT_EQ(tagged[0].letter, "I");
  EXPECT_TRUE(hasMessage(log, "job 7 <-"));
}

TEST(TimingScope, WriteFileIsTimedAtDebug) {
  TimingLog log;
  const std::string path = log.dir().filePath("out.bin");
  const std::u16string widePath(path.begin(), path.end());
  EXPECT_EQ(mwriteFileW(reinterpret_cast<const zwchar_t*>(widePath.c_str()), "abc", 3), 3);
  const std::vector<LogLine> entry = linesStartingWith(log, "mwriteFile <- size:3,name:" + path);
  ASSERT_EQ(entry.size(), 1u);
  EXPECT_EQ(entry[0].tag.substr(0, 8), "zeb.file");
  EXPECT_EQ(linesStartingWith(log, "mwriteFile -> us:").size(), 1u);
  mlogSetLevel(MLOG_INFO);
  mwriteFileW(reinterpret_cast<const zwchar_t*>(widePath.c_str()), "abc", 3);
  EXPECT_EQ(linesStartingWith(log, "mwriteFile").size(), 2u);
}

// ---- scoped initialisation ----------------------------------------------------------------------

TEST(ScopeInitLog, OpensTheLogForTheScopeAndClosesItAfter) {
  LogCapture log(0);
  log.dir().writeFile("mdebug", "");
  {
    TMLogScopeInitLog scope("scoped", log.path().c_str());
    mlogWithLevel(MLOG_INFO, nullptr, "inside");
  }
  mlogWithLevel(MLOG_INFO, nullptr, "after");
  EXPECT_TRUE(hasMessage(log, "inside"));
  EXPECT_TRUE(hasMessage(log, "CLOSE LOG FILE:" + log.path()));
  EXPECT_FALSE(hasMessage(log, "after"));
}

// ---- the settings daemon ------------------------------------------------------------------------

// The handle of the thread the log traced as created last (level 20 shows "create thread:0x%x").
void* lastCreatedThread(const LogCapture& log) {
  const std::vector<LogLine> created = linesStartingWith(log, "TThread::Exec(),create thread:");
  unsigned handle = 0;
  if (created.empty() || std::sscanf(created.back().message.c_str(),
                                     "TThread::Exec(),create thread:0x%x", &handle) != 1) {
    return nullptr;
  }
  return reinterpret_cast<void*>(static_cast<uintptr_t>(handle));
}

TEST(SettingsDaemon, StartsOnceAndStopsItsThread) {
  TimingLog log(20);
  mlogStartLogSettingsDaemon(250);
  mlogStartLogSettingsDaemon(500);
  void* handle = lastCreatedThread(log);
  ASSERT_NE(handle, nullptr);
  EXPECT_TRUE(zeb::TThread::running(handle));
  EXPECT_EQ(linesStartingWith(log, "TThread::Exec(),create thread:").size(), 1u);
  mlogStopLogSettingsDaemon();
  EXPECT_FALSE(zeb::TThread::running(handle));
  mlogStopLogSettingsDaemon();
  EXPECT_TRUE(hasMessage(log, "mlogStartLogSettingsDaemon:250"));
  EXPECT_TRUE(hasMessage(log, "mlogStartLogSettingsDaemon:500"));
  EXPECT_EQ(linesStartingWith(log, "mlogStopLogSettingsDaemon").size(), 1u);
}

TEST(SettingsDaemon, TheLastFinalisationStopsIt) {
  TimingLog log(20);
  mlogQuickInit("app", nullptr);
  mlogStartLogSettingsDaemon(100);
  void* handle = lastCreatedThread(log);
  ASSERT_NE(handle, nullptr);
  mlogQuickFinalize();
  EXPECT_TRUE(zeb::TThread::running(handle));
  mlogQuickFinalize();
  EXPECT_FALSE(zeb::TThread::running(handle));
  EXPECT_TRUE(hasMessage(log, "mlogStopLogSettingsDaemon"));
}

}  // namespace

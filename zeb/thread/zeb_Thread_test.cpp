#include "zeb/thread/zeb_Thread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "testing/log_capture.h"
#include "testing/waiting.h"
#include "zeb/log/zeb_log.h"

namespace {

using zeb::TThread;
using zeb::testing::Clock;
using zeb::testing::eventually;
using zeb::testing::msSince;
using zeb::testing::sleepMs;

bool endsSoon(void* handle) {
  return eventually([handle] { return !TThread::running(handle); });
}

// A thread whose onRun hands the object to `body`; the destructor raises *destroyed.
class TTestThread : public TThread {
 public:
  using Body = std::function<void(TTestThread&)>;
  TTestThread(Body body, int flags, std::atomic<bool>* destroyed = nullptr)
      : TThread("test", flags), body_(std::move(body)), destroyed_(destroyed) {}
  void markWorking() { setWorking(statusWorking); }

 protected:
  void onRun() override { body_(*this); }
  ~TTestThread() override {
    if (destroyed_ != nullptr) *destroyed_ = true;
  }

 private:
  Body body_;
  std::atomic<bool>* destroyed_;
};

void recordThreadId(void* out) {
  static_cast<std::atomic<unsigned long>*>(out)->store(TThread::currentThreadId());
}

TEST(TThreadBody, EachKindOfBodyRunsOnTheObjectsOwnThread) {
  std::atomic<unsigned long> ranOn{0};
  const std::vector<std::function<TThread*()>> makers = {
      [&] { return new TTestThread([&](TTestThread&) { recordThreadId(&ranOn); }, 0); },
      [&] { return new TThread("plain", &recordThreadId, &ranOn); },
      [&] {
        return new TThread("callable", std::function<void()>([&] { recordThreadId(&ranOn); }));
      },
  };
  for (const auto& make : makers) {
    ranOn = 0;
    TThread* thread = make();
    EXPECT_NE(thread->Exec(), nullptr);
    EXPECT_TRUE(thread->waitStop(0));
    EXPECT_FALSE(thread->isWorking());
    EXPECT_NE(ranOn.load(), 0UL);
    EXPECT_NE(ranOn.load(), TThread::currentThreadId());
    EXPECT_EQ(ranOn.load(), thread->threadID());
    EXPECT_EQ(thread->threadHandle(), nullptr);
    thread->release();
  }
}

TEST(TThreadWait, WaitStopWithoutLimitWaitsForTheBody) {
  std::atomic<bool> finished{false};
  auto* thread = new TTestThread(
      [&](TTestThread&) {
        sleepMs(100);
        finished = true;
      },
      0);
  thread->Exec();
  EXPECT_TRUE(thread->waitStop(0));
  EXPECT_TRUE(finished);
  thread->release();
}

TEST(TThreadWait, WaitStopGivesUpAfterTheTimeoutWhileTheBodyCarriesOn) {
  auto* thread = new TTestThread([](TTestThread&) { sleepMs(200); }, 0);
  thread->Exec();
  const Clock::time_point start = Clock::now();
  EXPECT_FALSE(thread->join(50));
  const long long waited = msSince(start);
  EXPECT_GE(waited, 45);
  EXPECT_LT(waited, 190);
  EXPECT_TRUE(thread->isWorking());
  thread->release();
}

TEST(TThreadWait, WaitingFromInsideTheBodyReturnsAtOnce) {
  std::atomic<bool> result{false};
  std::atomic<long long> waited{-1};
  auto* thread = new TTestThread(
      [&](TTestThread& self) {
        const Clock::time_point start = Clock::now();
        result = self.waitStop(5000);
        waited = msSince(start);
      },
      0);
  thread->Exec();
  EXPECT_TRUE(thread->waitStop(0));
  EXPECT_TRUE(result);
  EXPECT_LT(waited, 1000);
  thread->release();
}

TEST(TThreadStop, BodyPollingTheStopRequestEndsAndTheRequestIsCleared) {
  auto* thread = new TTestThread(
      [](TTestThread& self) {
        while (!self.hasStopRequested()) sleepMs(1);
      },
      0);
  thread->Exec();
  EXPECT_FALSE(thread->waitStop(30));
  EXPECT_TRUE(thread->stopAndWait(5000));
  EXPECT_FALSE(thread->hasStopRequested());
  thread->release();
}

TEST(TThreadStop, ExecOnAStoppedObjectRunsTheBodyAgain) {
  std::atomic<int> runs{0};
  auto* thread = new TTestThread([&](TTestThread&) { ++runs; }, 0);
  void* first = thread->Exec();
  thread->waitStop(0);
  void* second = thread->Exec();
  thread->waitStop(0);
  EXPECT_EQ(runs, 2);
  EXPECT_NE(first, second);
  thread->release();
}

TEST(TThreadRelease, NeverStartedObjectIsDeletedAtOnce) {
  std::atomic<bool> destroyed{false};
  (new TTestThread([](TTestThread&) {}, TThread::flagWaitStopBeforeDestroy, &destroyed))->release();
  EXPECT_TRUE(destroyed);
}

TEST(TThreadRelease, WaitStopBeforeDestroyStopsThePollingBody) {
  std::atomic<bool> destroyed{false};
  std::atomic<bool> sawStop{false};
  auto* thread = new TTestThread(
      [&](TTestThread& self) {
        while (!self.hasStopRequested()) sleepMs(1);
        sawStop = true;
      },
      TThread::flagWaitStopBeforeDestroy, &destroyed);
  void* handle = thread->Exec();
  thread->release();
  EXPECT_TRUE(sawStop);
  EXPECT_TRUE(destroyed);
  EXPECT_TRUE(endsSoon(handle));
}

TEST(TThreadRelease, WithoutWaitStopReleaseStillWaitsForTheBody) {
  std::atomic<bool> finished{false};
  auto* thread = new TTestThread(
      [&](TTestThread&) {
        sleepMs(100);
        finished = true;
      },
      0);
  void* handle = thread->Exec();
  thread->release();
  EXPECT_TRUE(finished);
  EXPECT_FALSE(TThread::running(handle));
}

TEST(TThreadRelease, ReleaseFromTheOwnBodyDeletesWhenTheBodyReturns) {
  std::atomic<bool> destroyed{false};
  std::atomic<bool> aliveAfterRelease{false};
  auto* thread = new TTestThread(
      [&](TTestThread& self) {
        self.release();
        aliveAfterRelease = !destroyed && std::strcmp(self.name(), "test") == 0;
      },
      0, &destroyed);
  EXPECT_TRUE(endsSoon(thread->Exec()));
  EXPECT_TRUE(aliveAfterRelease);
  EXPECT_TRUE(destroyed);
}

TEST(TThreadRelease, DeleteOnExitObjectsEndThemselves) {
  constexpr int kThreads = 20;
  std::atomic<bool> destroyed[kThreads] = {};
  std::vector<void*> handles;
  for (auto& flag : destroyed) {
    handles.push_back(
        (new TTestThread([](TTestThread&) { sleepMs(5); }, TThread::flagDeleteOnExit, &flag))
            ->Exec());
  }
  for (void* handle : handles) EXPECT_TRUE(endsSoon(handle));
  for (const auto& flag : destroyed) EXPECT_TRUE(flag);
}

TEST(TThreadHandles, IsCurrentThreadInBothForms) {
  std::atomic<bool> insideByObject{false};
  std::atomic<bool> insideByHandle{false};
  std::atomic<bool> go{false};
  auto* thread = new TTestThread(
      [&](TTestThread& self) {
        while (!go) sleepMs(1);
        insideByObject = self.isCurrentThread();
        insideByHandle = TThread::isCurrentThread(self.threadHandle());
      },
      0);
  void* handle = thread->Exec();
  EXPECT_FALSE(TThread::isCurrentThread(handle));
  EXPECT_FALSE(thread->isCurrentThread());
  go = true;
  thread->waitStop(0);
  EXPECT_TRUE(insideByObject);
  EXPECT_TRUE(insideByHandle);
  EXPECT_TRUE(endsSoon(handle));
  EXPECT_FALSE(TThread::isCurrentThread(handle));
  EXPECT_FALSE(TThread::isCurrentThread(nullptr));
  EXPECT_FALSE(TThread::running(nullptr));
  EXPECT_FALSE(threadIsRuning(handle));
  thread->release();
}

TEST(TThreadPostRun, RunsOnANewThreadAfterTheDelay) {
  std::atomic<long long> ranAfter{-1};
  std::atomic<unsigned long> ranOn{0};
  const Clock::time_point start = Clock::now();
  void* handle = TThread::postRun(
      [&] {
        ranAfter = msSince(start);
        ranOn = TThread::currentThreadId();
      },
      100);
  ASSERT_NE(handle, nullptr);
  EXPECT_TRUE(endsSoon(handle));
  EXPECT_GE(ranAfter, 95);
  EXPECT_NE(ranOn.load(), TThread::currentThreadId());
  EXPECT_EQ(TThread::postRun(std::function<void()>(), 0), nullptr);
  EXPECT_EQ(thread_postRun(nullptr, 0), nullptr);
}

std::string g_seenBytes;
int g_seenSize = -1;

void recordBlock(const void* data, int size) {
  g_seenBytes.assign(static_cast<const char*>(data), static_cast<size_t>(size));
  g_seenSize = size;
}

TEST(TThreadPostRun, V1CallbackSeesACopyOfTheBlock) {
  char buffer[] = "original";
  void* handle = thread_postRunV1(&recordBlock, buffer, 8, 20);
  std::memset(buffer, 'x', sizeof(buffer) - 1);
  ASSERT_TRUE(endsSoon(handle));
  EXPECT_EQ(g_seenBytes, "original");

  ASSERT_TRUE(endsSoon(thread_postRunV1(&recordBlock, buffer, -5, 0)));
  EXPECT_EQ(g_seenSize, 0);
  EXPECT_EQ(thread_postRunV1(nullptr, buffer, 8, 0), nullptr);
}

// The process's thread count from /proc, or -1 where there is none.
int processThreadCount() {
  std::ifstream status("/proc/self/status");
  std::string key;
  while (status >> key) {
    if (key == "Threads:") {
      int count = -1;
      status >> count;
      return count;
    }
  }
  return -1;
}

TEST(TThreadPostRun, ThousandsOfPostsLeaveNoThreadBehind) {
  // One thread first, so that threads a runtime starts on the first thread creation (the
  // ThreadSanitizer runtime starts a background thread then) are already counted.
  ASSERT_TRUE(endsSoon(TThread::postRun([] {})));
  const int threadsBefore = processThreadCount();
  std::atomic<int> runs{0};
  std::vector<void*> handles;
  for (int i = 0; i < 2000; ++i) handles.push_back(TThread::postRun([&] { ++runs; }));
  for (void* handle : handles) ASSERT_TRUE(endsSoon(handle));
  EXPECT_EQ(runs, 2000);
  std::sort(handles.begin(), handles.end());
  EXPECT_EQ(std::adjacent_find(handles.begin(), handles.end()), handles.end());
  if (threadsBefore > 0) {
    EXPECT_TRUE(eventually([&] { return processThreadCount() <= threadsBefore; }));
  }
}

bool hasMessage(const zeb::testing::LogCapture& log, const std::string& message) {
  const std::vector<std::string> messages = log.messages();
  return std::find(messages.begin(), messages.end(), message) != messages.end();
}

TEST(TThreadLog, TraceLinesAtLevel20) {
  zeb::testing::LogCapture log(20);
  mlogSetLevel(static_cast<tloglevel>(20));
  auto* thread = new TThread("traced", std::function<void()>([] { sleepMs(50); }),
                             TThread::flagWaitStopBeforeDestroy);
  thread->Exec();
  EXPECT_FALSE(thread->waitStop(5));
  thread->release();
  EXPECT_TRUE(hasMessage(
      log, "TThread::TThread(cppfun),name:traced,delAuto:0,waitStop:1,callback.empty:0"));
  const std::vector<std::string> messages = log.messages();
  EXPECT_TRUE(std::any_of(messages.begin(), messages.end(), [](const std::string& m) {
    return m.rfind("tthread waitstop ,time out:", 0) == 0;
  }));
}

TEST(TThreadLog, ReleasingAWorkingObjectWritesErrorAndAssertionRecord) {
  zeb::testing::LogCapture log(MLOG_ERROR);
  auto* thread = new TTestThread([](TTestThread&) {}, 0);
  thread->markWorking();
  thread->release();
  EXPECT_TRUE(hasMessage(log, "TThread::release(),thread is runing!"));
  EXPECT_TRUE(hasMessage(log, ":zeb::TThread::~TThread:211"));
}

}  // namespace

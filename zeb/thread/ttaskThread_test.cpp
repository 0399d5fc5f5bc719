#include "zeb/thread/ttaskThread.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "testing/log_capture.h"
#include "testing/waiting.h"
#include "zeb/log/zeb_log.h"

namespace {

using zeb::testing::Clock;
using zeb::testing::msSince;
using zeb::testing::sleepMs;

// A task that counts its runs, returns `again` from run() and sets a flag when deleted.
class ProbeTask : public ttask {
 public:
  ProbeTask(std::atomic<bool>* deleted, std::atomic<int>* runs, bool again = true)
      : m_deleted(deleted), m_runs(runs), m_again(again) {}
  ~ProbeTask() override { *m_deleted = true; }
  bool run() override {
    ++*m_runs;
    return m_again;
  }

 private:
  std::atomic<bool>* const m_deleted;
  std::atomic<int>* const m_runs;
  const bool m_again;
};

// Records labels from tasks in the order they ran.
struct RunLog {
  std::mutex lock;
  std::vector<std::string> labels;
  std::function<void()> add(const std::string& label) {
    return [this, label] {
      std::lock_guard<std::mutex> guard(lock);
      labels.push_back(label);
    };
  }
};

ttaskThread* newWorker() {
  return new ttaskThread(ttaskthreadnotauto(), "worker", 0);
}

ttaskThread* startedWorker() {
  ttaskThread* worker = newWorker();
  worker->Exec();
  return worker;
}

// ---- order
// ----------------------------------------------------------------------------------------

TEST(TaskOrder, FireTimeThenPriorityWithImmediateTasksFirst) {
  RunLog log;
  ttaskThread* worker =
      newWorker();  // queued before the runner starts, so order is all that counts
  worker->postRunTask(log.add("late"), 60, 9);
  worker->postRunTask(log.add("soon"), 20, 0);
  worker->postRunTask(log.add("low"), 0, 1);
  worker->postRunTask(log.add("high"), 0, 5);
  worker->postRunTask(log.add("low-again"), 0, 1);
  worker->Exec();
  worker->postRunTaskSync([] {}, 100);
  worker->release();
  EXPECT_EQ(log.labels, (std::vector<std::string>{"high", "low", "low-again", "soon", "late"}));
}

// Returns just after the monotonic clock (the task thread's clock) enters a new millisecond, so
// that what the caller does next within a few microseconds happens inside one millisecond.
void startOfAMillisecond() {
  using std::chrono::duration_cast;
  using std::chrono::milliseconds;
  const auto now = [] { return duration_cast<milliseconds>(Clock::now().time_since_epoch()); };
  const milliseconds start = now();
  while (now() == start) {
  }
}

TEST(TaskOrder, EqualDelaysRunByPriorityAndThenInPostingOrder) {
  RunLog log;
  ttaskThread* worker = startedWorker();
  startOfAMillisecond();
  worker->postRunTask(log.add("low"), 50, 1);
  worker->postRunTask(log.add("high"), 50, 5);
  worker->postRunTask(log.add("low-again"), 50, 1);
  worker->postRunTaskSync([] {}, 120);
  worker->release();
  EXPECT_EQ(log.labels, (std::vector<std::string>{"high", "low", "low-again"}));
}

TEST(TaskOrder, DelayIsALowerBound) {
  ttaskThread* worker = startedWorker();
  const Clock::time_point start = Clock::now();
  std::atomic<long long> ranAfter{-1};
  worker->postRunTask([&] { ranAfter = msSince(start); }, 50);
  worker->waitingForAllTaskFinished();
  worker->release();
  EXPECT_GE(ranAfter.load(), 50);
  EXPECT_LT(ranAfter.load(), 5000);
}

// ---- repetition -------------------------------------------------------------------------------

TEST(TaskRepeat, RunCounts) {
  struct Case {
    int interval;
    int repeat;
    int stopAfter;  // the function returns 0 on this run (0: never)
    int expectedRuns;
  };
  const Case cases[] = {
      {5, 1, 0, 1}, {5, 3, 0, 3}, {5, 0, 4, 4}, {0, 3, 0, 1}, {5, 3, 2, 2},
  };
  for (const Case& c : cases) {
    ttaskThread* worker = startedWorker();
    std::atomic<int> runs{0};
    worker->postRunTaskRepeat([&] { return ++runs == c.stopAfter ? 0 : 1; }, 0, 0, c.interval,
                              c.repeat);
    worker->waitingForAllTaskFinished();
    sleepMs(30);
    worker->release();
    EXPECT_EQ(runs.load(), c.expectedRuns) << "interval " << c.interval << " repeat " << c.repeat;
  }
}

TEST(TaskRepeat, SlowRunSkipsMissedPeriods) {
  ttaskThread* worker = startedWorker();
  const Clock::time_point start = Clock::now();
  std::vector<long long> starts;
  worker->postRunTaskRepeat(
      [&] {
        starts.push_back(msSince(start));
        if (starts.size() == 1) sleepMs(70);  // fire times are 20, 40, 60, 80, 100 ... ms
        return 1;
      },
      20, 0, 20, 3);
  worker->waitingForAllTaskFinished();
  worker->release();
  ASSERT_EQ(starts.size(), 3u);
  EXPECT_GE(starts[1], 100);  // not at 90 ms, when the slow run ended
  EXPECT_GE(starts[2], starts[1] + 15);
}

// ---- removal ----------------------------------------------------------------------------------

TEST(TaskRemoval, WaitingTaskIsDeletedWithoutRunning) {
  ttaskThread* worker = startedWorker();
  std::atomic<bool> deleted{false};
  std::atomic<int> runs{0};
  ttask* task = worker->postTask(new ProbeTask(&deleted, &runs), 10000);
  sleepMs(20);  // let the runner take it into its running list
  worker->removeTask(task, true);
  EXPECT_TRUE(deleted);
  EXPECT_EQ(worker->runningTaskNum(), 0);
  worker->release();
  EXPECT_EQ(runs.load(), 0);
}

TEST(TaskRemoval, RepeatingTaskRemovedFromOutside) {
  ttaskThread* worker = startedWorker();
  std::atomic<bool> deleted{false};
  std::atomic<int> runs{0};
  ttask* task = worker->postTask(new ProbeTask(&deleted, &runs), 0, 0, 2, 0);
  while (runs < 3) sleepMs(1);
  worker->removeTask(task, true);
  EXPECT_TRUE(deleted);
  const int runsAtRemoval = runs;
  sleepMs(20);
  EXPECT_EQ(runs.load(), runsAtRemoval);
  worker->release();
}

TEST(TaskRemoval, RunningTaskRemovesItselfAndIsDeletedAfterItsRun) {
  ttaskThread* worker = startedWorker();
  std::atomic<ttask*> self{nullptr};
  std::atomic<int> runs{0};
  std::atomic<bool> finishedRun{false};
  std::atomic<bool> deletedDuringRun{false};
  std::atomic<bool> deleted{false};
  struct SelfRemover : ttask {
    std::function<bool()> body;
    std::atomic<bool>* deleted;
    bool run() override { return body(); }
    ~SelfRemover() override { *deleted = true; }
  };
  SelfRemover* task = new SelfRemover;
  task->deleted = &deleted;
  task->body = [&] {
    while (self.load() == nullptr) sleepMs(1);
    ++runs;
    worker->removeTask(self, false);
    deletedDuringRun = deleted.load();
    finishedRun = true;
    return true;
  };
  self = worker->postTask(task, 0, 0, 1, 0);
  while (!deleted) sleepMs(1);
  worker->release();
  EXPECT_TRUE(finishedRun);
  EXPECT_FALSE(deletedDuringRun);
  EXPECT_EQ(runs.load(), 1);
}

TEST(TaskRemoval, RemoveAllDeletesEveryTask) {
  ttaskThread* worker = startedWorker();
  std::atomic<bool> deleted[3] = {{false}, {false}, {false}};
  std::atomic<int> runs{0};
  for (auto& flag : deleted) worker->postTask(new ProbeTask(&flag, &runs), 10000);
  sleepMs(20);
  worker->removeAllTask(true);
  for (auto& flag : deleted) EXPECT_TRUE(flag);
  worker->waitingForAllTaskFinished();
  EXPECT_EQ(worker->runningTaskNum(), 0);
  worker->release();
  EXPECT_EQ(runs.load(), 0);
}

// ---- lifecycle --------------------------------------------------------------------------------

TEST(TaskLifecycle, PostingAfterStopDeletesTheTask) {
  zeb::testing::LogCapture capture(20);
  mlogSetLevel(static_cast<tloglevel>(20));
  ttaskThread* worker = startedWorker();
  worker->stop();
  std::atomic<bool> deleted{false};
  std::atomic<int> runs{0};
  EXPECT_EQ(worker->postTask(new ProbeTask(&deleted, &runs)), nullptr);
  EXPECT_TRUE(deleted);
  worker->release();
  const auto messages = capture.messages();
  EXPECT_NE(std::find(messages.begin(), messages.end(),
                      "ttaskThread::postTask,thread is exiting,ignore."),
            messages.end());
}

TEST(TaskLifecycle, ReleaseDeletesPendingTasks) {
  ttaskThread* worker = startedWorker();
  std::atomic<bool> deleted{false};
  std::atomic<int> runs{0};
  worker->postTask(new ProbeTask(&deleted, &runs), 10000);
  const Clock::time_point start = Clock::now();
  worker->release();
  EXPECT_TRUE(deleted);
  EXPECT_EQ(runs.load(), 0);
  EXPECT_LT(msSince(start), 5000);
}

TEST(TaskLifecycle, PostRunTaskSyncRunsOnTheWorkerBeforeReturning) {
  ttaskThread* worker = startedWorker();
  std::atomic<unsigned long> ranOn{0};
  worker->postRunTaskSync([&] { ranOn = ttaskThread::currentThreadId(); }, 10);
  EXPECT_EQ(ranOn.load(), worker->threadID());
  EXPECT_NE(ranOn.load(), ttaskThread::currentThreadId());
  worker->release();
}

TEST(TaskLifecycle, ProcessTasksReenteredFromATaskReturnsAtOnce) {
  ttaskThread* worker = newWorker();
  std::atomic<bool> secondRan{false};
  std::atomic<bool> secondRanInside{true};
  worker->postRunTask([&] {
    worker->processTasks();
    secondRanInside = secondRan.load();
  });
  worker->postRunTask([&] { secondRan = true; });
  worker->Exec();
  worker->waitingForAllTaskFinished();
  worker->release();
  EXPECT_FALSE(secondRanInside);
  EXPECT_TRUE(secondRan);
}

// ---- the UI task thread, driven by a real GLib main loop on the test thread -------------------

class UiTaskThread : public ::testing::Test {
 protected:
  void SetUp() override {
    context_ = g_main_context_new();
    g_main_context_push_thread_default(context_);
    loop_ = g_main_loop_new(context_, FALSE);
    ASSERT_NE(ttaskThread::initCreateMainUIThread(), nullptr);
  }
  void TearDown() override {
    ttaskThread::finalizeMainUIThread();
    EXPECT_EQ(ttaskThread::singletonUIThread(), nullptr);
    g_main_loop_unref(loop_);
    g_main_context_pop_thread_default(context_);
    g_main_context_unref(context_);
  }
  std::function<void()> quitLoop() {
    return [loop = loop_] { g_main_loop_quit(loop); };
  }
  void runLoop() { g_main_loop_run(loop_); }

  GMainContext* context_ = nullptr;
  GMainLoop* loop_ = nullptr;
};

TEST_F(UiTaskThread, TasksPostedFromAnotherThreadRunOnTheLoopThread) {
  const unsigned long uiThread = ttaskThread::currentThreadId();
  EXPECT_TRUE(ttaskThread::singletonUIThread()->isMainThread());
  std::atomic<unsigned long> ranOn{0};
  std::atomic<int> repeats{0};
  std::thread poster([&] {
    ttaskThread::runOnUIThreadRepeat([&] { return ++repeats < 3 ? 1 : 0; }, 0, 0, 5, 0);
    ttaskThread::runOnUIThread([&] { ranOn = ttaskThread::currentThreadId(); }, 20);
    ttaskThread::runOnUIThread(quitLoop(), 60);
  });
  runLoop();
  poster.join();
  EXPECT_EQ(ranOn.load(), uiThread);
  EXPECT_EQ(repeats.load(), 3);
}

TEST_F(UiTaskThread, RunOnUIThreadSyncFromAnotherThreadWaitsForTheRun) {
  std::atomic<bool> ran{false};
  std::atomic<bool> ranBeforeReturn{false};
  std::thread caller([&] {
    ttaskThread::runOnUIThreadSync([&] { ran = true; }, 10);
    ranBeforeReturn = ran.load();
    ttaskThread::runOnUIThread(quitLoop());
  });
  runLoop();
  caller.join();
  EXPECT_TRUE(ranBeforeReturn);
}

TEST_F(UiTaskThread, RunOnUIThreadSyncOnTheUIThread) {
  bool direct = false;
  ttaskThread::runOnUIThreadSync([&] { direct = true; }, 0);
  EXPECT_TRUE(direct);

  bool delayed = false;
  const Clock::time_point start = Clock::now();
  ttaskThread::runOnUIThreadSync([&] { delayed = true; }, 30);
  EXPECT_FALSE(delayed);  // posted, not waited for
  ttaskThread::runOnUIThread(quitLoop(), 40);
  runLoop();
  EXPECT_TRUE(delayed);
  EXPECT_GE(msSince(start), 30);
}

TEST_F(UiTaskThread, ProcessAllRunsEveryTaskWithoutTheLoop) {
  int runs = 0;
  ttaskThread::runOnUIThread([&] { ++runs; });
  ttaskThread::runOnUIThread([&] { ++runs; }, 20);
  ttaskThread::processAllMainUIThreadTasks();
  EXPECT_EQ(runs, 2);
}

TEST_F(UiTaskThread, FinalizeFromATaskOnTheLoopEndsAfterTheTask) {
  std::atomic<bool> pendingDeleted{false};
  std::atomic<int> pendingRuns{0};
  ttaskThread::singletonUIThread()->postTask(new ProbeTask(&pendingDeleted, &pendingRuns), 10000);
  bool finalized = false;
  ttaskThread::runOnUIThread([&] {
    ttaskThread::finalizeMainUIThread();
    finalized = ttaskThread::singletonUIThread() == nullptr;
    g_main_loop_quit(loop_);
  });
  runLoop();
  EXPECT_TRUE(finalized);
  EXPECT_TRUE(pendingDeleted);
  EXPECT_EQ(pendingRuns.load(), 0);
  // The loop goes on without the task thread; a new one can be made on it.
  g_main_context_iteration(context_, FALSE);
  ASSERT_NE(ttaskThread::initCreateMainUIThread(), nullptr);
  ttaskThread::runOnUIThread(quitLoop());
  runLoop();
}

TEST_F(UiTaskThread, FinalizeFromAnotherThreadWhileATaskRuns) {
  std::atomic<bool> taskStarted{false};
  std::atomic<bool> finalizeReturned{false};
  std::atomic<int> laterRuns{0};
  std::atomic<bool> laterDeleted{false};
  ttaskThread::runOnUIThread([&] {
    taskStarted = true;
    // The dispatch stays inside the task thread until the finalize elsewhere has returned.
    EXPECT_TRUE(zeb::testing::eventually([&] { return finalizeReturned.load(); }));
  });
  ttaskThread::singletonUIThread()->postTask(new ProbeTask(&laterDeleted, &laterRuns), 0, -1);
  std::thread finalizer([&] {
    ASSERT_TRUE(zeb::testing::eventually([&] { return taskStarted.load(); }));
    ttaskThread::finalizeMainUIThread();
    finalizeReturned = true;
    g_main_loop_quit(loop_);
  });
  runLoop();
  finalizer.join();
  EXPECT_EQ(ttaskThread::singletonUIThread(), nullptr);
  EXPECT_EQ(laterRuns.load(), 0);
  EXPECT_TRUE(laterDeleted);
}

TEST_F(UiTaskThread, FinalizeFromAnotherThreadWithTheLoopIdle) {
  std::atomic<bool> deleted{false};
  std::atomic<int> runs{0};
  ttaskThread::singletonUIThread()->postTask(new ProbeTask(&deleted, &runs), 10000);
  std::thread finalizer([] { ttaskThread::finalizeMainUIThread(); });
  finalizer.join();
  EXPECT_EQ(ttaskThread::singletonUIThread(), nullptr);
  EXPECT_TRUE(deleted);
  // The timer is gone: iterating the loop touches nothing that was freed.
  g_main_context_iteration(context_, FALSE);
}

TEST_F(UiTaskThread, FinalizeDeletesPendingTasks) {
  std::atomic<bool> deleted{false};
  std::atomic<int> runs{0};
  ttaskThread::singletonUIThread()->postTask(new ProbeTask(&deleted, &runs), 10000);
  ttaskThread::finalizeMainUIThread();
  EXPECT_TRUE(deleted);
  EXPECT_EQ(runs.load(), 0);
}

}  // namespace

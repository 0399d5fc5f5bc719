#include "zeb/thread/ThreadsWorker.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "testing/waiting.h"
#include "testing/work_probes.h"
#include "zeb/utils/tosInfo.h"

namespace {

using zeb::testing::CountedWork;
using zeb::testing::eventually;
using zeb::testing::Gate;
using zeb::testing::kPosters;
using zeb::testing::postFromManyThreads;

TEST(ThreadsWorker, EveryItemFromManyPostersRunsExactlyOnce) {
  constexpr int kPerPoster = 2000;
  ThreadsWorker* pool = new ThreadsWorker(4);
  EXPECT_EQ(pool->threadCount(), 4);
  std::vector<std::atomic<int>> runs(kPosters * kPerPoster);
  std::atomic<int> notifyRuns{0}, notifyDeleted{0};
  postFromManyThreads(kPerPoster, [&](int p, int i) {
    if (i % 10 == 0) {
      ASSERT_TRUE(pool->post(new CountedWork(&notifyRuns, &notifyDeleted)));
    }
    ASSERT_TRUE(pool->post([&runs, p, i] { ++runs[p * kPerPoster + i]; }));
  });
  EXPECT_TRUE(pool->waitAll());
  EXPECT_EQ(pool->pendingCount(), 0);
  for (std::size_t i = 0; i < runs.size(); ++i) ASSERT_EQ(runs[i].load(), 1) << "item " << i;
  EXPECT_EQ(notifyRuns, kPosters * kPerPoster / 10);
  EXPECT_EQ(notifyDeleted, notifyRuns.load());
  pool->release();
}

TEST(ThreadsWorker, DefaultsToOneThreadPerCoreAndRefusesEmptyWork) {
  ThreadsWorker* pool = new ThreadsWorker();
  EXPECT_EQ(pool->threadCount(), cpuCoreNumber());
  EXPECT_FALSE(pool->post(std::function<void()>()));
  EXPECT_FALSE(pool->post(static_cast<zeb::tNotifyTmp<void>*>(nullptr)));
  pool->release();
}

TEST(ThreadsWorker, WaitAllWaitsForRunningItemsAndItemsTheyPost) {
  ThreadsWorker* pool = new ThreadsWorker(2);
  std::atomic<bool> innerDone{false};
  pool->post([&] {
    zeb::testing::sleepMs(30);
    pool->post([&] {
      zeb::testing::sleepMs(30);
      innerDone = true;
    });
  });
  EXPECT_TRUE(pool->waitAll());
  EXPECT_TRUE(innerDone);
  pool->release();
}

TEST(ThreadsWorker, StopDropsQueuedWorkUnrunButFinishesTheRunningItem) {
  ThreadsWorker* pool = new ThreadsWorker(1);
  Gate gate;
  std::atomic<bool> firstDone{false};
  pool->post([&] {
    gate.pass();
    firstDone = true;
  });
  ASSERT_TRUE(eventually([&] { return gate.waiting() == 1; }));
  std::atomic<int> runs{0}, deleted{0};
  for (int i = 0; i < 50; ++i) pool->post(new CountedWork(&runs, &deleted));
  std::atomic<int> dropped{-2};
  std::thread stopper([&] { dropped = pool->stop(false); });
  // The queued items go before the stop waits for the running one.
  ASSERT_TRUE(eventually([&] { return deleted.load() == 50; }));
  EXPECT_EQ(dropped, -2);
  EXPECT_FALSE(pool->post(new CountedWork(&runs, &deleted)));  // refused and deleted
  EXPECT_EQ(deleted, 51);
  gate.open();
  stopper.join();
  EXPECT_EQ(dropped, 50);
  EXPECT_TRUE(firstDone);
  EXPECT_EQ(runs, 0);
  EXPECT_EQ(pool->threadCount(), 0);
  EXPECT_EQ(pool->stop(false), 0);
  pool->release();
}

TEST(ThreadsWorker, StopCanRunTheQueuedWorkFirst) {
  ThreadsWorker* pool = new ThreadsWorker(2);
  Gate gate;
  pool->post([&] { gate.pass(); });
  pool->post([&] { gate.pass(); });
  ASSERT_TRUE(eventually([&] { return gate.waiting() == 2; }));
  std::atomic<int> runs{0}, deleted{0};
  for (int i = 0; i < 50; ++i) pool->post(new CountedWork(&runs, &deleted));
  gate.open();
  EXPECT_EQ(pool->stop(true), 0);
  EXPECT_EQ(runs, 50);
  EXPECT_EQ(deleted, 50);
  pool->release();
}

TEST(ThreadsWorker, WaitingMembersRefuseFromTheirOwnItemsAndReleaseIsDeferred) {
  ThreadsWorker* pool = new ThreadsWorker(1);
  std::atomic<int> waitAnswer{1}, stopAnswer{0};
  std::atomic<bool> released{false};
  pool->post([&] {
    waitAnswer = pool->waitAll() ? 1 : 0;
    stopAnswer = pool->stop(true);
  });
  ASSERT_TRUE(pool->waitAll());
  EXPECT_EQ(waitAnswer, 0);
  EXPECT_EQ(stopAnswer, -1);
  pool->post([&] {
    pool->release();  // the pool ends on another thread once this item returns
    released = true;
  });
  EXPECT_TRUE(eventually([&] { return released.load(); }));
}

}  // namespace

#include "zeb/thread/tstringTaskWorkers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "testing/waiting.h"
#include "testing/work_probes.h"

namespace {

using zeb::testing::CountedWork;
using zeb::testing::eventually;
using zeb::testing::Gate;
using zeb::testing::kPosters;
using zeb::testing::postFromManyThreads;

// Per key: how many of its items run at this moment, the most ever seen, and the last sequence
// number each poster's items reached.
struct KeyProbe {
  std::atomic<int> active{0};
  std::atomic<int> mostActive{0};
  std::mutex lock;
  std::vector<int> lastSeen = std::vector<int>(kPosters, -1);
  int outOfOrder = 0;
  int runs = 0;

  void record(int poster, int sequence) {
    const int now = ++active;
    int seen = mostActive.load();
    while (now > seen && !mostActive.compare_exchange_weak(seen, now)) {
    }
    {
      std::lock_guard<std::mutex> guard(lock);
      if (sequence <= lastSeen[poster]) ++outOfOrder;
      lastSeen[poster] = sequence;
      ++runs;
    }
    std::this_thread::yield();
    --active;
  }
};

TEST(StringTaskWorkers, KeysKeepTheirPostingOrderOneItemAtATimeUnderContention) {
  constexpr int kKeys = 6;
  constexpr int kPerPoster = 1200;
  tstringTaskWorkers* workers = new tstringTaskWorkers(4);
  std::vector<std::unique_ptr<KeyProbe>> probes;
  for (int k = 0; k < kKeys; ++k) probes.emplace_back(new KeyProbe);
  postFromManyThreads(kPerPoster, [&](int p, int i) {
    const int k = (p + i) % kKeys;
    KeyProbe* probe = probes[k].get();
    ASSERT_TRUE(workers->post(("key" + std::to_string(k)).c_str(),
                              [probe, p, i] { probe->record(p, i); }));
  });
  EXPECT_TRUE(workers->waitAll());
  int total = 0;
  for (int k = 0; k < kKeys; ++k) {
    EXPECT_EQ(probes[k]->mostActive, 1) << "key" << k;
    EXPECT_EQ(probes[k]->outOfOrder, 0) << "key" << k;
    total += probes[k]->runs;
  }
  EXPECT_EQ(total, kPosters * kPerPoster);
  workers->release();
}

TEST(StringTaskWorkers, DifferentKeysRunInParallel) {
  tstringTaskWorkers* workers = new tstringTaskWorkers(2);
  std::atomic<bool> bRan{false}, aSawB{false};
  // Would never see b's item if the keys shared one thread.
  workers->post("a", [&] { aSawB = eventually([&] { return bRan.load(); }); });
  workers->post("b", [&] { bRan = true; });
  EXPECT_TRUE(workers->wait("a"));
  EXPECT_TRUE(aSawB);
  workers->release();
}

TEST(StringTaskWorkers, CancelDropsOnlyTheKeysQueuedItems) {
  tstringTaskWorkers* workers = new tstringTaskWorkers(2);
  Gate gate;
  std::atomic<bool> firstDone{false};
  workers->post("a", [&] {
    gate.pass();
    firstDone = true;
  });
  ASSERT_TRUE(eventually([&] { return gate.waiting() == 1; }));
  std::atomic<int> aRuns{0}, aDeleted{0}, bRuns{0}, bDeleted{0};
  for (int i = 0; i < 10; ++i) {
    workers->post("a", new CountedWork(&aRuns, &aDeleted));
    workers->post("b", new CountedWork(&bRuns, &bDeleted));
  }
  EXPECT_EQ(workers->cancel("a"), 10);
  EXPECT_EQ(aDeleted, 10);
  EXPECT_EQ(workers->cancel("unknown"), 0);
  gate.open();
  EXPECT_TRUE(workers->wait("a"));
  EXPECT_TRUE(firstDone);
  EXPECT_TRUE(workers->wait("b"));
  EXPECT_EQ(aRuns, 0);
  EXPECT_EQ(bRuns, 10);
  EXPECT_TRUE(workers->post("a", new CountedWork(&aRuns, &aDeleted)));  // the key lives on
  EXPECT_TRUE(workers->wait("a"));
  EXPECT_EQ(aRuns, 1);
  workers->release();
}

TEST(StringTaskWorkers, AnItemMayWaitForAnotherKeyButNotForItsOwn) {
  tstringTaskWorkers* workers = new tstringTaskWorkers(2);
  std::atomic<int> ownWait{1}, otherWait{0}, stopAnswer{0};
  std::atomic<bool> otherDone{false};
  workers->post("other", [&] {
    zeb::testing::sleepMs(20);
    otherDone = true;
  });
  workers->post("self", [&] {
    ownWait = workers->wait("self") ? 1 : 0;
    otherWait = workers->wait("other") && otherDone ? 1 : 0;
    stopAnswer = workers->stop(false);
  });
  EXPECT_TRUE(workers->waitAll());
  EXPECT_EQ(ownWait, 0);
  EXPECT_EQ(otherWait, 1);
  EXPECT_EQ(stopAnswer, -1);
  workers->release();
}

TEST(StringTaskWorkers, StopRunsOrDropsEveryKeysQueue) {
  for (bool runQueued : {true, false}) {
    tstringTaskWorkers* workers = new tstringTaskWorkers(2);
    Gate gate;
    workers->post("a", [&] { gate.pass(); });
    ASSERT_TRUE(eventually([&] { return gate.waiting() == 1; }));
    std::atomic<int> runs{0}, deleted{0};
    for (int i = 0; i < 20; ++i) {
      workers->post(i % 2 == 0 ? "a" : "b", new CountedWork(&runs, &deleted));
    }
    std::atomic<int> dropped{-2};
    std::thread stopper([&] { dropped = workers->stop(runQueued); });
    // Probing items under "c" until one is refused tells the stop has begun.
    int accepted = 0;
    ASSERT_TRUE(eventually([&] {
      const bool posted = workers->post("c", new CountedWork(&runs, &deleted));
      accepted += posted ? 1 : 0;
      return !posted;
    }));
    gate.open();
    stopper.join();
    EXPECT_EQ(deleted, 20 + accepted + 1);
    // Key "b" may have run some items before the stop; "a" waited behind the gate.
    EXPECT_EQ(runs + dropped, 20 + accepted) << "runQueued " << runQueued;
    if (runQueued) {
      EXPECT_EQ(dropped, 0);
    } else {
      EXPECT_GE(dropped, 10);
    }
    workers->release();
  }
}

TEST(StringTaskWorkers, ProcessWideFunctionsShareOneSetOfWorkers) {
  std::vector<int> order;
  for (int i = 0; i < 100; ++i) {
    ASSERT_TRUE(stringHashtask_post("shared", [&order, i] { order.push_back(i); }));
  }
  EXPECT_TRUE(stringHashtask_wait("shared"));
  ASSERT_EQ(order.size(), 100u);
  for (int i = 0; i < 100; ++i) ASSERT_EQ(order[i], i);
  Gate gate;
  stringHashtask_post(nullptr, [&] { gate.pass(); });  // a null key is the empty key
  ASSERT_TRUE(eventually([&] { return gate.waiting() == 1; }));
  std::atomic<int> runs{0}, deleted{0};
  stringHashtask_post("", new CountedWork(&runs, &deleted));
  stringHashtask_post("", new CountedWork(&runs, &deleted));
  EXPECT_EQ(stringHashtask_cancel(nullptr), 2);
  gate.open();
  EXPECT_EQ(stringHashtask_finalize(true), 0);
  EXPECT_EQ(stringHashtask_finalize(true), 0);
  EXPECT_EQ(stringHashtask_cancel("shared"), 0);
  EXPECT_TRUE(stringHashtask_wait("shared"));
  std::atomic<bool> again{false};
  EXPECT_TRUE(stringHashtask_post("shared", [&] { again = true; }));  // new workers
  EXPECT_TRUE(stringHashtask_wait("shared"));
  EXPECT_TRUE(again);
  EXPECT_EQ(stringHashtask_finalize(false), 0);
}

}  // namespace

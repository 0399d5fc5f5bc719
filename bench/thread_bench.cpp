// Fire-and-forget threads beside their anchor, a bare detached std::thread:
//   - latency: from the call to the first instruction of the work on the new thread (manual
//     time, one thread per iteration);
//   - throughput: 64 threads started back to back, timed until every one has run its work.
// Between iterations, outside the timed part, every thread of either kind is waited for until it
// has returned from its work, so no iteration pays for the threads of the one before.
#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "zeb/thread/zeb_Thread.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kBurst = 64;

void waitUntil(const std::atomic<bool>& flag) {
  while (!flag.load(std::memory_order_acquire)) std::this_thread::yield();
}

// Starts work on new threads, as postRun does or as a bare detached std::thread does, and waits
// (outside the timed part) until every started thread has returned from its work.
class PostRunStarter {
 public:
  template <typename Work>
  void start(Work work) {
    handles_.push_back(zeb::TThread::postRun(work, 0));
  }
  void finishAll() {
    for (void* handle : handles_) {
      while (zeb::TThread::running(handle)) std::this_thread::yield();
    }
    handles_.clear();
  }

 private:
  std::vector<void*> handles_;
};

class DetachedThreadStarter {
 public:
  template <typename Work>
  void start(Work work) {
    live_.fetch_add(1, std::memory_order_relaxed);
    std::thread([this, work] {
      work();
      live_.fetch_sub(1, std::memory_order_release);
    }).detach();
  }
  void finishAll() {
    while (live_.load(std::memory_order_acquire) != 0) std::this_thread::yield();
  }

 private:
  std::atomic<int> live_{0};
};

template <typename Starter>
void BM_StartLatency(benchmark::State& state) {
  Starter starter;
  for (auto _ : state) {
    std::atomic<bool> started{false};
    Clock::time_point firstInstruction;
    const Clock::time_point call = Clock::now();
    starter.start([&] {
      firstInstruction = Clock::now();
      started.store(true, std::memory_order_release);
    });
    waitUntil(started);
    state.SetIterationTime(std::chrono::duration<double>(firstInstruction - call).count());
    starter.finishAll();
  }
}

template <typename Starter>
void BM_StartThroughput(benchmark::State& state) {
  Starter starter;
  for (auto _ : state) {
    std::atomic<int> ran{0};
    std::atomic<bool> allRan{false};
    for (int i = 0; i < kBurst; ++i) {
      starter.start([&] {
        if (ran.fetch_add(1, std::memory_order_acq_rel) + 1 == kBurst) {
          allRan.store(true, std::memory_order_release);
        }
      });
    }
    waitUntil(allRan);
    state.PauseTiming();
    starter.finishAll();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kBurst);
}

BENCHMARK_TEMPLATE(BM_StartLatency, PostRunStarter)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(BM_StartLatency, DetachedThreadStarter)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(BM_StartThroughput, PostRunStarter)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(BM_StartThroughput, DetachedThreadStarter)->Unit(benchmark::kMicrosecond);

}  // namespace

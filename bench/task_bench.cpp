// Task threads beside two anchors, each running its tasks on one background thread:
//   - floor: a minimal worker written here, a std::priority_queue under a std::mutex with a
//     std::condition_variable (what any task queue has to pay at least);
//   - glib: g_main_context_invoke (delay 0) and timeout sources (delays) on a thread running a
//     GMainLoop.
// Three measurements:
//   - latency: from the post of a delay-0 task to its first instruction, one task at a time
//     (manual time; the median and the 99th percentile are counters, in microseconds);
//   - throughput: 10,000 delay-0 tasks posted back to back, timed until the last has run;
//   - timer accuracy: 1,000 tasks with delays spread over 0..200 ms, posted at once; the
//     lateness of each run against its due time (median and 99th percentile, in milliseconds).
#include <benchmark/benchmark.h>
#include <glib.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <queue>
#include <thread>
#include <vector>

#include "zeb/thread/ttaskThread.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kThroughputTasks = 10000;
constexpr int kAccuracyTasks = 1000;
constexpr int kMaxDelayMs = 200;

double microsecondsBetween(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double, std::micro>(to - from).count();
}

void waitUntilCount(const std::atomic<int>& count, int target) {
  while (count.load(std::memory_order_acquire) < target) std::this_thread::yield();
}

// The value at fraction q (0..1) of the sorted samples.
double percentile(std::vector<double> samples, double q) {
  if (samples.empty()) return 0.0;
  const std::size_t index = static_cast<std::size_t>(q * static_cast<double>(samples.size() - 1));
  std::nth_element(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(index),
                   samples.end());
  return samples[index];
}

class TaskThreadBackend {
 public:
  TaskThreadBackend() : thread_(new ttaskThread(ttaskthreadnotauto(), "bench", 0)) {
    thread_->Exec();
  }
  ~TaskThreadBackend() { thread_->release(); }
  void post(std::function<void()> fn, int delayMs) { thread_->postRunTask(std::move(fn), delayMs); }

 private:
  ttaskThread* thread_;
};

class FloorBackend {
 public:
  FloorBackend() : worker_([this] { run(); }) {}
  ~FloorBackend() {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      stop_ = true;
    }
    wake_.notify_one();
    worker_.join();
  }
  void post(std::function<void()> fn, int delayMs) {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      queue_.push(Item{Clock::now() + std::chrono::milliseconds(delayMs), next_++, std::move(fn)});
    }
    wake_.notify_one();
  }

 private:
  struct Item {
    Clock::time_point due;
    unsigned long long sequence;
    std::function<void()> fn;
  };
  struct RunsLater {
    bool operator()(const Item& a, const Item& b) const {
      return a.due != b.due ? a.due > b.due : a.sequence > b.sequence;
    }
  };

  void run() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!stop_) {
      if (queue_.empty()) {
        wake_.wait(lock);
      } else if (queue_.top().due > Clock::now()) {
        wake_.wait_until(lock, queue_.top().due);
      } else {
        std::function<void()> fn = queue_.top().fn;
        queue_.pop();
        lock.unlock();
        fn();
        lock.lock();
      }
    }
  }

  std::mutex mutex_;
  std::condition_variable wake_;
  std::priority_queue<Item, std::vector<Item>, RunsLater> queue_;
  unsigned long long next_ = 0;
  bool stop_ = false;
  std::thread worker_;
};

class GlibBackend {
 public:
  GlibBackend()
      : context_(g_main_context_new()), loop_(g_main_loop_new(context_, FALSE)), thread_([this] {
          g_main_context_push_thread_default(context_);
          g_main_loop_run(loop_);
          g_main_context_pop_thread_default(context_);
        }) {}
  ~GlibBackend() {
    post([loop = loop_] { g_main_loop_quit(loop); }, 0);
    thread_.join();
    g_main_loop_unref(loop_);
    g_main_context_unref(context_);
  }
  void post(std::function<void()> fn, int delayMs) {
    auto* work = new std::function<void()>(std::move(fn));
    if (delayMs == 0) {
      g_main_context_invoke_full(context_, G_PRIORITY_DEFAULT, &runOnce, work, &freeWork);
      return;
    }
    GSource* source = g_timeout_source_new(static_cast<guint>(delayMs));
    g_source_set_callback(source, &runOnce, work, &freeWork);
    g_source_attach(source, context_);
    g_source_unref(source);
  }

 private:
  static gboolean runOnce(gpointer work) {
    (*static_cast<std::function<void()>*>(work))();
    return G_SOURCE_REMOVE;
  }
  static void freeWork(gpointer work) { delete static_cast<std::function<void()>*>(work); }

  GMainContext* context_;
  GMainLoop* loop_;
  std::thread thread_;
};

template <typename Backend>
void BM_Latency(benchmark::State& state) {
  Backend backend;
  std::vector<double> samples;
  for (auto _ : state) {
    std::atomic<int> done{0};
    Clock::time_point ran;
    const Clock::time_point posted = Clock::now();
    backend.post(
        [&] {
          ran = Clock::now();
          done.store(1, std::memory_order_release);
        },
        0);
    waitUntilCount(done, 1);
    samples.push_back(microsecondsBetween(posted, ran));
    state.SetIterationTime(samples.back() / 1e6);
  }
  state.counters["median_us"] = percentile(samples, 0.5);
  state.counters["p99_us"] = percentile(samples, 0.99);
}

template <typename Backend>
void BM_Throughput(benchmark::State& state) {
  Backend backend;
  for (auto _ : state) {
    std::atomic<int> done{0};
    for (int i = 0; i < kThroughputTasks; ++i) {
      backend.post([&done] { done.fetch_add(1, std::memory_order_release); }, 0);
    }
    waitUntilCount(done, kThroughputTasks);
  }
  state.SetItemsProcessed(state.iterations() * kThroughputTasks);
}

template <typename Backend>
void BM_TimerAccuracy(benchmark::State& state) {
  Backend backend;
  std::vector<double> lateness(kAccuracyTasks);
  for (auto _ : state) {
    std::atomic<int> done{0};
    for (int i = 0; i < kAccuracyTasks; ++i) {
      const int delayMs = (i * 7919) % (kMaxDelayMs + 1);
      const Clock::time_point due = Clock::now() + std::chrono::milliseconds(delayMs);
      backend.post(
          [&lateness, &done, i, due] {
            lateness[static_cast<std::size_t>(i)] = microsecondsBetween(due, Clock::now()) / 1e3;
            done.fetch_add(1, std::memory_order_release);
          },
          delayMs);
    }
    waitUntilCount(done, kAccuracyTasks);
  }
  state.counters["median_late_ms"] = percentile(lateness, 0.5);
  state.counters["p99_late_ms"] = percentile(lateness, 0.99);
}

BENCHMARK_TEMPLATE(BM_Latency, TaskThreadBackend)->UseManualTime()->Iterations(5000);
BENCHMARK_TEMPLATE(BM_Latency, FloorBackend)->UseManualTime()->Iterations(5000);
BENCHMARK_TEMPLATE(BM_Latency, GlibBackend)->UseManualTime()->Iterations(5000);
BENCHMARK_TEMPLATE(BM_Throughput, TaskThreadBackend)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Throughput, FloorBackend)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Throughput, GlibBackend)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_TimerAccuracy, TaskThreadBackend)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_TimerAccuracy, FloorBackend)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_TimerAccuracy, GlibBackend)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

// ThreadsWorker beside a plain pool written here: N threads taking std::function items from a
// std::deque under one std::mutex, woken by a std::condition_variable on every post (the pool
// anyone would write first). Throughput: 10,000 small items (an atomic increment), posted back
// to back by one thread or by four, timed until the last has run. Both pools have one thread
// per usable processor.
#include <benchmark/benchmark.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "zeb/thread/ThreadsWorker.h"
#include "zeb/thread/tstringTaskWorkers.h"
#include "zeb/utils/tosInfo.h"

namespace {

constexpr int kItems = 10000;

class PlainPool {
 public:
  explicit PlainPool(int threads) {
    for (int i = 0; i < threads; ++i) m_threads.emplace_back([this] { run(); });
  }
  ~PlainPool() {
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      m_stop = true;
    }
    m_wake.notify_all();
    for (std::thread& t : m_threads) t.join();
  }
  void post(std::function<void()> fn) {
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      m_queue.push_back(std::move(fn));
    }
    m_wake.notify_one();
  }

 private:
  void run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
      m_wake.wait(lock, [this] { return m_stop || !m_queue.empty(); });
      if (m_queue.empty()) return;
      std::function<void()> fn = std::move(m_queue.front());
      m_queue.pop_front();
      lock.unlock();
      fn();
      lock.lock();
    }
  }

  std::mutex m_mutex;
  std::condition_variable m_wake;
  std::deque<std::function<void()>> m_queue;
  bool m_stop = false;
  std::vector<std::thread> m_threads;
};

class ZebPool {
 public:
  explicit ZebPool(int threads) : m_pool(new ThreadsWorker(threads)) {}
  ~ZebPool() { m_pool->release(); }
  void post(std::function<void()> fn) { m_pool->post(std::move(fn)); }

 private:
  ThreadsWorker* m_pool;
};

// The string task workers, items spread round-robin over 8 keys (the keyed path's cost over the
// plain pool, for context).
class KeyedPool {
 public:
  explicit KeyedPool(int threads) : m_workers(new tstringTaskWorkers(threads)) {}
  ~KeyedPool() { m_workers->release(); }
  void post(std::function<void()> fn) {
    static const char* const keys[] = {"k0", "k1", "k2", "k3", "k4", "k5", "k6", "k7"};
    m_workers->post(keys[m_next.fetch_add(1, std::memory_order_relaxed) % 8], std::move(fn));
  }

 private:
  tstringTaskWorkers* m_workers;
  std::atomic<unsigned> m_next{0};
};

void waitUntilCount(const std::atomic<int>& count, int target) {
  while (count.load(std::memory_order_acquire) < target) std::this_thread::yield();
}

template <typename Pool>
void BM_Throughput(benchmark::State& state) {
  const int posters = static_cast<int>(state.range(0));
  Pool pool(cpuCoreNumber());
  for (auto _ : state) {
    std::atomic<int> done{0};
    std::vector<std::thread> threads;
    for (int p = 0; p < posters; ++p) {
      threads.emplace_back([&] {
        for (int i = 0; i < kItems / posters; ++i) {
          pool.post([&done] { done.fetch_add(1, std::memory_order_release); });
        }
      });
    }
    for (std::thread& t : threads) t.join();
    waitUntilCount(done, kItems / posters * posters);
  }
  state.SetItemsProcessed(state.iterations() * kItems);
}

BENCHMARK_TEMPLATE(BM_Throughput, ZebPool)->Arg(1)->Arg(4)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Throughput, PlainPool)->Arg(1)->Arg(4)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Throughput, KeyedPool)->Arg(1)->Arg(4)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

// work_probes.h: work items and helpers for the worker pool tests: a notify object that counts
// its runs and its deletion, a gate that holds items until the test opens it, and posting from
// many threads at once.
//
//   std::atomic<int> runs{0}, deleted{0};
//   pool->post(new zeb::testing::CountedWork(&runs, &deleted));
#ifndef ZEB_TESTING_WORK_PROBES_H
#define ZEB_TESTING_WORK_PROBES_H

#include <atomic>
#include <thread>
#include <vector>

#include "zeb/thread/zeb_Thread.h"

namespace zeb {
namespace testing {

constexpr int kPosters = 8;

// A notify object that counts its runs and its deletion.
class CountedWork : public tNotifyTmp<void> {
 public:
  CountedWork(std::atomic<int>* runs, std::atomic<int>* deleted)
      : m_runs(runs), m_deleted(deleted) {}
  ~CountedWork() override { ++*m_deleted; }
  void run() override { ++*m_runs; }

 private:
  std::atomic<int>* const m_runs;
  std::atomic<int>* const m_deleted;
};

// Opened once by the test; items that pass() it block until then.
class Gate {
 public:
  void pass() {
    ++m_waiting;
    while (!m_open.load()) std::this_thread::yield();
  }
  void open() { m_open = true; }
  int waiting() const { return m_waiting.load(); }

 private:
  std::atomic<bool> m_open{false};
  std::atomic<int> m_waiting{0};
};

// Runs `post(poster, i)` for i in [0, perPoster) on kPosters threads at once.
template <typename Post>
void postFromManyThreads(int perPoster, Post post) {
  std::vector<std::thread> posters;
  for (int p = 0; p < kPosters; ++p) {
    posters.emplace_back([p, perPoster, &post] {
      for (int i = 0; i < perPoster; ++i) post(p, i);
    });
  }
  for (std::thread& t : posters) t.join();
}

}  // namespace testing
}  // namespace zeb

#endif  // ZEB_TESTING_WORK_PROBES_H

// log_bench.cpp: one info line with two arguments written by the log core beside spdlog writing
// the same line (same fields, local time, CR LF) through a basic file sink:
//   - unbuffered: our file record writes and flushes every line; spdlog flushes on every line;
//   - buffered: our file record has a 64 KiB write-behind buffer; spdlog leaves flushing to its
//     stream;
// each from 1 and 2 threads, and the cost of a call whose level is disabled (the caller's
// ZEB_LOG_ENABLED test against spdlog's level check).

#include <benchmark/benchmark.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <memory>
#include <string>

#include "testing/log_capture.h"
#include "zeb/log/zeb_log.h"

namespace {

constexpr int kWriteBehindBytes = 64 * 1024;
// The fields of our line: date, time, milliseconds, process id, thread id, level letter, tag.
const char kSpdlogPattern[] = "%Y-%m-%d %H:%M:%S.%e %P-%t:%L/%n: %v";

std::unique_ptr<zeb::testing::LogCapture> g_ourLog;
std::unique_ptr<zeb::testing::TempDir> g_spdlogDir;
std::shared_ptr<spdlog::logger> g_spdlog;

void openOurLog(int writeBehindBytes) {
  g_ourLog = std::make_unique<zeb::testing::LogCapture>(MLOG_INFO);
  mlogSetFileBuffer(g_ourLog->path().c_str(), writeBehindBytes);
}

void openOurUnbuffered(const benchmark::State&) {
  openOurLog(0);
}
void openOurBuffered(const benchmark::State&) {
  openOurLog(kWriteBehindBytes);
}
void closeOurLog(const benchmark::State&) {
  g_ourLog.reset();
}

void openSpdlog(bool flushEveryLine) {
  g_spdlogDir = std::make_unique<zeb::testing::TempDir>();
  auto sink =
      std::make_shared<spdlog::sinks::basic_file_sink_mt>(g_spdlogDir->filePath("spd.log"), true);
  g_spdlog = std::make_shared<spdlog::logger>("bench", sink);
  g_spdlog->set_formatter(std::make_unique<spdlog::pattern_formatter>(
      kSpdlogPattern, spdlog::pattern_time_type::local, "\r\n"));
  g_spdlog->set_level(spdlog::level::info);
  g_spdlog->flush_on(flushEveryLine ? spdlog::level::info : spdlog::level::off);
}

void openSpdlogFlushing(const benchmark::State&) {
  openSpdlog(true);
}
void openSpdlogBuffered(const benchmark::State&) {
  openSpdlog(false);
}
void closeSpdlog(const benchmark::State&) {
  g_spdlog.reset();
  g_spdlogDir.reset();
}

void BM_OurInfoLine(benchmark::State& state) {
  int i = 0;
  for (auto _ : state) {
    if (ZEB_LOG_ENABLED(MLOG_INFO)) mlogWithLevel(MLOG_INFO, "bench", "item %d of %s", ++i, "run");
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_SpdlogInfoLine(benchmark::State& state) {
  int i = 0;
  for (auto _ : state) g_spdlog->info("item {} of {}", ++i, "run");
  state.SetItemsProcessed(state.iterations());
}

void BM_OurDisabledLine(benchmark::State& state) {
  int i = 0;
  for (auto _ : state) {
    if (ZEB_LOG_ENABLED(MLOG_DEBUG))
      mlogWithLevel(MLOG_DEBUG, "bench", "item %d of %s", ++i, "run");
    benchmark::DoNotOptimize(i);
  }
}

void BM_SpdlogDisabledLine(benchmark::State& state) {
  int i = 0;
  for (auto _ : state) {
    g_spdlog->debug("item {} of {}", ++i, "run");
    benchmark::DoNotOptimize(i);
  }
}

BENCHMARK(BM_OurInfoLine)
    ->Name("Unbuffered/ours")
    ->Setup(openOurUnbuffered)
    ->Teardown(closeOurLog)
    ->Threads(1)
    ->Threads(2)
    ->UseRealTime();
BENCHMARK(BM_SpdlogInfoLine)
    ->Name("Unbuffered/spdlog")
    ->Setup(openSpdlogFlushing)
    ->Teardown(closeSpdlog)
    ->Threads(1)
    ->Threads(2)
    ->UseRealTime();
BENCHMARK(BM_OurInfoLine)
    ->Name("Buffered/ours")
    ->Setup(openOurBuffered)
    ->Teardown(closeOurLog)
    ->Threads(1)
    ->Threads(2)
    ->UseRealTime();
BENCHMARK(BM_SpdlogInfoLine)
    ->Name("Buffered/spdlog")
    ->Setup(openSpdlogBuffered)
    ->Teardown(closeSpdlog)
    ->Threads(1)
    ->Threads(2)
    ->UseRealTime();
BENCHMARK(BM_OurDisabledLine)
    ->Name("Disabled/ours")
    ->Setup(openOurUnbuffered)
    ->Teardown(closeOurLog);
BENCHMARK(BM_SpdlogDisabledLine)
    ->Name("Disabled/spdlog")
    ->Setup(openSpdlogFlushing)
    ->Teardown(closeSpdlog);

}  // namespace

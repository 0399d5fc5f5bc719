// tosInfo.cpp: the machine and system queries, each a thin layer over platform/system.h.
#include "zeb/utils/tosInfo.h"

#include <cstdlib>

#include "zeb/platform/clock.h"
#include "zeb/platform/system.h"

namespace zeb {

namespace {

constexpr unsigned kBenchmarkRounds = 1u << 22;
constexpr int kBenchmarkRuns = 3;

// Reads the leading decimal number of `text` and moves `text` past it and one following '.'.
int takeVersionNumber(const char*& text) {
  char* end = nullptr;
  const long value = std::strtol(text, &end, 10);
  if (end == text || value < 0) return 0;
  text = *end == '.' ? end + 1 : end;
  return static_cast<int>(value);
}

// One run of the workload; its result feeds a volatile sink so the chain cannot be dropped.
unsigned long long runWorkload() {
  unsigned long long x = 0x9E3779B97F4A7C15ull;
  for (unsigned i = 0; i < kBenchmarkRounds; ++i) {
    x = x * 6364136223846793005ull + i;
    x ^= x >> 29;
  }
  return x;
}

volatile unsigned long long g_workloadSink;

// Microseconds one run of the workload takes.
double timeWorkload() {
  const unsigned long long start = platform::highResolutionCounter();
  g_workloadSink = runWorkload();
  const unsigned long long ticks = platform::highResolutionCounter() - start;
  return static_cast<double>(ticks) * 1e6 /
         static_cast<double>(platform::highResolutionFrequency());
}

}  // namespace

bool tosInfo::IsWinXP() {
  return false;
}

bool tosInfo::IsWow64() {
  return platform::isNarrowProcessOnWideKernel();
}

int tosInfo::GetSysVersion(int* minor) {
  platform::KernelVersion kernel;
  const char* text = platform::kernelVersion(&kernel) ? kernel.release.c_str() : "";
  const int major = takeVersionNumber(text);
  const int minorVersion = major > 0 ? takeVersionNumber(text) : 0;
  if (minor != nullptr) *minor = minorVersion;
  return major;
}

TAnsiString tosInfo::GetFullVersion() {
  std::string text = platform::systemPrettyName();
  platform::KernelVersion kernel;
  if (platform::kernelVersion(&kernel)) {
    if (!text.empty()) text += "; ";
    text += kernel.name + " " + kernel.release + " " + kernel.machine;
  }
  return TAnsiString(text.c_str(), static_cast<int>(text.size()));
}

}  // namespace zeb

int IsAdministrator() {
  return zeb::platform::runsAsAdministrator() ? 1 : 0;
}

int cpuCoreNumber() {
  static const int count = zeb::platform::usableProcessorCount();
  return count;
}

int benchmarkCpu() {
  double best = 0.0;
  for (int run = 0; run < zeb::kBenchmarkRuns; ++run) {
    const double micros = zeb::timeWorkload();
    if (micros > 0.0 && (best == 0.0 || micros < best)) best = micros;
  }
  if (best == 0.0) return 1;
  const double score = static_cast<double>(zeb::kBenchmarkRounds) * 10.0 / best;
  return score < 1.0 ? 1 : static_cast<int>(score);
}

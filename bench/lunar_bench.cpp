// Lunar calendar conversions per second: Gregorian to lunar (GDateToPDate) and back
// (PDateToGDate) over every day of 1900-2100 in turn. There is no anchor library to compare
// with; the numbers are recorded in bench/README.md.
#include <benchmark/benchmark.h>

#include "zeb/datetime/mdatetime.h"
#include "zeb/datetime/tpdate.h"

namespace {

struct Day {
  int year, month, day;
};

Day dayOf(long long dayNumber) {
  Day d{};
  DecodeDate(dayNumber, &d.year, &d.month, &d.day);
  return d;
}

void BM_GregorianToLunar(benchmark::State& state) {
  const long long first = EncodeDate(1900, 1, 31), last = EncodeDate(2100, 12, 31);
  long long n = first;
  for (auto _ : state) {
    const Day d = dayOf(n);
    int y, m, day, leap;
    benchmark::DoNotOptimize(GDateToPDate(d.year, d.month, d.day, &y, &m, &day, &leap));
    n = n == last ? first : n + 1;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GregorianToLunar);

void BM_LunarToGregorian(benchmark::State& state) {
  tpdate lunar(1900, 1, 1, 0);
  for (auto _ : state) {
    int y, m, d;
    benchmark::DoNotOptimize(PDateToGDate(lunar.year, lunar.month, lunar.day, lunar.leap, &y, &m, &d));
    if (lunar.incMonth(1, 1) == 0) lunar = tpdate(1900, 1, 1, 0);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LunarToGregorian);

}  // namespace

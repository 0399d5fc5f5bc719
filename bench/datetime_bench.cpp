// Day-number round trips: EncodeDate then DecodeDate over dates spread across 0001..9999, against
// the era-based civil-date algorithms (days_from_civil / civil_from_days) as the anchor.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "zeb/datetime/mdatetime.h"

namespace {

struct Date {
  int year;
  int month;
  int day;
};

// Days since 1970-01-01 of a proleptic Gregorian date (eras of 400 years counted from March).
long long daysFromCivil(long long y, unsigned m, unsigned d) {
  y -= m <= 2;
  const long long era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
  return era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468;
}

Date civilFromDays(long long z) {
  z += 719468;
  const long long era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  const unsigned d = doy - (153 * mp + 2) / 5 + 1;
  const unsigned m = mp < 10 ? mp + 3 : mp - 9;
  return Date{static_cast<int>(static_cast<long long>(yoe) + era * 400 + (m <= 2)),
              static_cast<int>(m), static_cast<int>(d)};
}

const std::vector<Date>& sampleDates() {
  static const std::vector<Date> dates = [] {
    std::mt19937 random(20240309);
    std::uniform_int_distribution<long long> dayNumbers(-693593, 2958465);
    std::vector<Date> result(4096);
    for (Date& date : result) DecodeDate(dayNumbers(random), &date.year, &date.month, &date.day);
    return result;
  }();
  return dates;
}

void BM_RoundTrip_EncodeDecodeDate(benchmark::State& state) {
  const std::vector<Date>& dates = sampleDates();
  for (auto _ : state) {
    for (const Date& date : dates) {
      Date back{};
      DecodeDate(EncodeDate(date.year, date.month, date.day), &back.year, &back.month, &back.day);
      benchmark::DoNotOptimize(back);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(dates.size()));
}

void BM_RoundTrip_CivilDays(benchmark::State& state) {
  const std::vector<Date>& dates = sampleDates();
  for (auto _ : state) {
    for (const Date& date : dates) {
      Date back = civilFromDays(daysFromCivil(date.year, static_cast<unsigned>(date.month),
                                              static_cast<unsigned>(date.day)));
      benchmark::DoNotOptimize(back);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(dates.size()));
}

BENCHMARK(BM_RoundTrip_EncodeDecodeDate);
BENCHMARK(BM_RoundTrip_CivilDays);

}  // namespace

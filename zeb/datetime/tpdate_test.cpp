// Tests of the lunar calendar: the generated tables against the computed data they came from
// (every year, every leap month, every lunar new year and every solar term), a round trip and a
// day-by-day walk over every Gregorian day of 1900-2100, month arithmetic, the searches and the
// GB2312 texts.

#include "zeb/datetime/tpdate.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "zeb/datetime/internal/lunar_tables.h"

namespace {

// ---- the computed data --------------------------------------------------------------------------

std::vector<std::vector<std::string>> readCsv(const std::string& name) {
  std::vector<std::vector<std::string>> rows;
  std::ifstream in(std::string(ZEB_SHARED_DATA_DIR) + "/" + name);
  std::string line;
  if (!in || !std::getline(in, line)) return rows;  // no data, or only its header
  while (std::getline(in, line)) {
    std::vector<std::string> fields;
    std::stringstream cells(line);
    std::string cell;
    while (std::getline(cells, cell, ',')) fields.push_back(cell);
    rows.push_back(fields);
  }
  return rows;
}

#define ZEB_SKIP_WITHOUT(rows) \
  if ((rows).empty()) GTEST_SKIP() << "no lunar data in " ZEB_SHARED_DATA_DIR

int field(const std::vector<std::string>& row, size_t i) {
  return std::stoi(row.at(i));
}

struct GDate {
  int year, month, day;
};

GDate parseDate(const std::string& text) {  // yyyy-mm-dd
  return {std::stoi(text.substr(0, 4)), std::stoi(text.substr(5, 2)), std::stoi(text.substr(8, 2))};
}

void expectLunar(long long dayNumber, int year, int month, int day, int leap) {
  tpdate d;
  EXPECT_EQ(d.fromGDate(dayNumber), 1);
  EXPECT_EQ(d.year, year);
  EXPECT_EQ(d.month, month);
  EXPECT_EQ(d.day, day);
  EXPECT_EQ(d.leap, leap);
}

// The GB2312 bytes of a UTF-8 text, converted by the library's charset layer (real iconv).
std::string gb2312(const char* utf8Text) {
  char out[64];
  const int n = StrUTF8ToGB2312(out, sizeof out, utf8Text, -1);
  return n > 0 ? std::string(out) : std::string();
}

TEST(LunarTables, YearTableHoldsTheSampleEntries) {
  const std::pair<int, unsigned> samples[] = {{1900, 0x4BD8}, {1901, 0x4AE0}, {2000, 0xC960},
                                              {2001, 0xD954}, {2020, 0x7954}, {2023, 0x5B52},
                                              {2024, 0x4B60}, {2100, 0xD520}};
  for (const auto& s : samples) EXPECT_EQ(zeb_lunar::kYearTable[s.first - 1900], s.second);
  EXPECT_EQ(zeb_lunar::kYearTable[201], 0);
  const unsigned short t1900[12] = {5, 19, 34, 49, 64, 79, 94, 109, 125, 140, 156, 172};
  const unsigned short t2000[12] = {5, 20, 34, 49, 64, 79, 94, 110, 125, 141, 156, 172};
  for (int t = 0; t < 12; ++t) {
    EXPECT_EQ(zeb_lunar::kSolarTerms[0][t], t1900[t]);
    EXPECT_EQ(zeb_lunar::kSolarTerms[100][t], t2000[t]);
  }
  EXPECT_EQ(zeb_lunar::kSolarTerms[0][22], 340);
  EXPECT_EQ(zeb_lunar::kSolarTerms[100][22], 341);
}

// year, leap_month, leap_days, m1..m12, new_year
TEST(LunarTables, EveryYearMatchesTheData) {
  const auto rows = readCsv("lunar_years_1900_2100.csv");
  ZEB_SKIP_WITHOUT(rows);
  ASSERT_EQ(rows.size(), 201u);
  for (const auto& row : rows) {
    const int year = field(row, 0), leapMonth = field(row, 1);
    EXPECT_EQ(GetLeapMonthInPYear(year), leapMonth) << year;
    EXPECT_EQ(getPMonthDays(year, 1, 1), field(row, 2)) << year;
    for (int m = 1; m <= 12; ++m) EXPECT_EQ(getPMonthDays(year, m, 0), field(row, 2 + m)) << year;
  }
}

TEST(LunarConversion, NewYearsAndLeapMonthsOfTheDataConvertBothWays) {
  const auto rows = readCsv("lunar_years_1900_2100.csv");
  ZEB_SKIP_WITHOUT(rows);
  for (const auto& row : rows) {
    const int year = field(row, 0), leapMonth = field(row, 1);
    const GDate newYear = parseDate(row.at(15));
    const long long first = EncodeDate(newYear.year, newYear.month, newYear.day);
    expectLunar(first, year, 1, 1, 0);
    EXPECT_EQ(tpdate(year, 1, 1, 0).asGDate().asUInt64(), TDateTime(TDate(first)).asUInt64());
    if (leapMonth == 0) continue;
    long long leapStart = first;
    for (int m = 1; m <= leapMonth; ++m) leapStart += field(row, 2 + m);
    expectLunar(leapStart, year, leapMonth, 1, 1);
    expectLunar(leapStart - 1, year, leapMonth, field(row, 2 + leapMonth), 0);
    int gy = 0, gm = 0, gd = 0;
    EXPECT_EQ(PDateToGDate(year, leapMonth, 1, 1, &gy, &gm, &gd), 1);
    EXPECT_EQ(EncodeDate(gy, gm, gd), leapStart) << year;
  }
}

TEST(LunarTerms, EveryTermOfTheData) {
  const auto rows = readCsv("solar_terms_1900_2100.csv");
  ZEB_SKIP_WITHOUT(rows);
  ASSERT_EQ(rows.size(), 201u);
  for (const auto& row : rows) {
    const int year = field(row, 0);
    for (int t = 0; t < 24; ++t) {
      const TDateTime expected(TDate(EncodeDate(year, 1, 1) + field(row, 1 + t)));
      EXPECT_EQ(getLunarTermDay(year, t).asUInt64(), expected.asUInt64()) << year << " " << t;
    }
  }
}

TEST(LunarTerms, RangeAndTime) {
  const TDateTime term = getLunarTermDay(2000, 0);
  EXPECT_EQ(term.year(), 2000);
  EXPECT_EQ(term.month(), 1);
  EXPECT_EQ(term.day(), 6);
  EXPECT_EQ(term.hour() + term.minute() + term.second() + term.ms(), 0);
  EXPECT_EQ(getLunarTermDay(2000, 24).asUInt64(), 0u);
  EXPECT_EQ(getLunarTermDay(2000, -1).asUInt64(), 0u);
  EXPECT_EQ(getLunarTermDay(1899, 0).asUInt64(), 0u);
  EXPECT_EQ(getLunarTermDay(2101, 0).asUInt64(), 0u);
}

// ---- conversion over every day ------------------------------------------------------------------

// The day after a lunar date: the next day of the month, or day 1 of the next month in the walk.
tpdate nextLunarDay(tpdate d) {
  if (d.day < getPMonthDays(d.year, d.month, d.leap)) {
    ++d.day;
    return d;
  }
  d.day = 1;
  EXPECT_EQ(d.incMonth(1, 0), 1);
  return d;
}

TEST(LunarConversion, EveryDayOf1900To2100RoundTripsAndAdvancesByOne) {
  const long long first = EncodeDate(1900, 1, 31), last = EncodeDate(2100, 12, 31);
  tpdate expected(1900, 1, 1, 0);
  for (long long day = first; day <= last; ++day) {
    int y, m, d, gy = 0, gm = 0, gd = 0;
    DecodeDate(day, &y, &m, &d);
    tpdate lunar;
    ASSERT_EQ(lunar.fromGDate(y, m, d), 1) << y << "-" << m << "-" << d;
    ASSERT_TRUE(lunar.year == expected.year && lunar.month == expected.month &&
                lunar.day == expected.day && lunar.leap == expected.leap)
        << y << "-" << m << "-" << d;
    ASSERT_EQ(PDateToGDate(lunar.year, lunar.month, lunar.day, lunar.leap, &gy, &gm, &gd), 1);
    ASSERT_EQ(EncodeDate(gy, gm, gd), day);
    if (day < last) expected = nextLunarDay(expected);
  }
}

TEST(LunarConversion, AnchorRangeAndInvalidDates) {
  expectLunar(EncodeDate(1900, 1, 31), 1900, 1, 1, 0);
  int y = 0, m = 0, d = 0, leap = 7;
  EXPECT_EQ(GDateToPDate(1900, 1, 30, &y, &m, &d, &leap), 0);
  EXPECT_TRUE(y == 1899 && m == 1 && d == 1 && leap == 0);
  EXPECT_EQ(GDateToPDate(1899, 12, 31, &y, &m, &d, &leap), -2);
  EXPECT_EQ(GDateToPDate(2101, 1, 1, &y, &m, &d, &leap), -2);
  EXPECT_EQ(GDateToPDate(2023, 2, 29, &y, &m, &d, &leap), -1);
  EXPECT_EQ(GDateToPDate(2024, 2, 10, nullptr, nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(GDateToPDateByTDate(EncodeDate(2200, 1, 1), &y, &m, &d, &leap), 0);
  EXPECT_EQ(y, 1899);

  EXPECT_EQ(PDateToGDate(2023, 3, 1, 1, &y, &m, &d), 0);  // 2023 has no leap third month
  EXPECT_EQ(PDateToGDate(1899, 1, 1, 0, &y, &m, &d), 0);
  EXPECT_EQ(tpdate().asGDate().asUInt64(), 0u);
}

TEST(LunarMonths, ValidityAndLengths) {
  EXPECT_EQ(GetLeapMonthInPYear(2023), 2);
  EXPECT_EQ(GetLeapMonthInPYear(2024), 0);
  EXPECT_EQ(GetLeapMonthInPYear(1800), 0);
  EXPECT_EQ(PDateIsValid(2023, 2, 29, 1), 1);
  EXPECT_EQ(PDateIsValid(2023, 3, 1, 1), 0);
  EXPECT_EQ(PDateIsValid(2024, 1, 0, 0), 0);
  EXPECT_EQ(PDateIsValid(2024, 13, 1, 0), 0);
  EXPECT_EQ(PDateIsValid(2101, 1, 1, 0), 0);
  EXPECT_EQ(PDateIsValid(2024, 2, 30, 0), 1);
  EXPECT_EQ(PDateIsValid(2024, 1, 30, 0), 0);  // a 29-day month
  EXPECT_EQ(getPMonthDays(2024, 5, 1), 0);
  EXPECT_EQ(DaysBetweenPDate(2023, 1, 1, 0, 2024, 1, 1, 0), 384);
  EXPECT_EQ(DaysBetweenPDate(2024, 1, 1, 0, 2023, 1, 1, 0), -384);
  EXPECT_EQ(DaysBetweenPDate(2023, 3, 1, 1, 2024, 1, 1, 0), 0);
}

// ---- arithmetic and searches --------------------------------------------------------------------

TEST(LunarMonths, IncMonthCountsTheLeapMonthAndClampsTheDay) {
  tpdate d(2023, 2, 30, 0);
  EXPECT_EQ(d.incMonth(1, 0), 1);
  EXPECT_TRUE(d.month == 2 && d.leap == 1 && d.day == 30);  // leap 2 has 29 days: kept
  d = tpdate(2023, 2, 30, 0);
  EXPECT_EQ(d.incMonth(1, 1), 1);
  EXPECT_EQ(d.day, getPMonthDays(2023, 2, 1));
  EXPECT_EQ(d.incMonth(1, 1), 1);
  EXPECT_TRUE(d.month == 3 && d.leap == 0);
  EXPECT_EQ(d.incMonth(-2, 1), 1);
  EXPECT_TRUE(d.year == 2023 && d.month == 2 && d.leap == 0);
  // 2023 has 13 months: thirteen steps from its first month reach 2024's first.
  d = tpdate(2023, 1, 1, 0);
  EXPECT_EQ(d.incMonth(13, 0), 1);
  EXPECT_TRUE(d.year == 2024 && d.month == 1);
  EXPECT_EQ(d.incMonth(-13, 0), 1);
  EXPECT_TRUE(d.year == 2023 && d.month == 1);

  d = tpdate(2100, 12, 1, 0);
  EXPECT_EQ(d.incMonth(1, 0), 0);
  EXPECT_EQ(d.month, 12);
  d = tpdate(1900, 1, 1, 0);
  EXPECT_EQ(d.incMonth(-1, 0), 0);
  d = tpdate(2024, 3, 1, 1);
  EXPECT_EQ(d.incMonth(1, 0), 0);
  EXPECT_EQ(incPMonth(nullptr, &d.month, &d.day, &d.leap, 1, 0), 0);
}

TEST(LunarSearches, FindMonthWithDayAndYearWithMonthDay) {
  int y = 2024, m = 1, d = 30, leap = 0;
  ASSERT_EQ(findPDateInDay(&y, &m, &d, &leap), 1);
  EXPECT_EQ(getPMonthDays(y, m, leap), 30);
  if (y != 2024 || m != 1) {
    EXPECT_EQ(getPMonthDays(2024, 1, 0), 29);
  }
  y = 2024, m = 1, d = 31, leap = 0;
  EXPECT_EQ(findPDateInDay(&y, &m, &d, &leap), 0);
  EXPECT_TRUE(y == 2024 && m == 1);

  // The next year from 2024 with a leap second month.
  y = 2024, m = 2, d = 1, leap = 1;
  ASSERT_EQ(findPDateInMonthDay(&y, &m, &d, &leap), 1);
  EXPECT_EQ(GetLeapMonthInPYear(y), 2);
  for (int year = 2024; year < y; ++year) EXPECT_NE(GetLeapMonthInPYear(year), 2);
  y = 2090, m = 1, d = 1, leap = 1;
  const int before = y;
  EXPECT_EQ(findPDateInMonthDay(&y, &m, &d, &leap), 0);
  EXPECT_EQ(y, before);
}

// ---- texts --------------------------------------------------------------------------------------

TEST(LunarTexts, MonthDayAnimalAndStemBranch) {
  TAnsiString text;
  EXPECT_EQ(std::string(pdate2text(tpdate(2023, 2, 1, 1), text, 3).p()), gb2312("润二月初一"));
  EXPECT_EQ(std::string(pdate2text(tpdate(2023, 2, 1, 1), text, 2).p()), "\xC8\xF3\xB6\xFE\xD4\xC2");
  EXPECT_EQ(std::string(pdate2text(tpdate(2024, 11, 20, 0), text, 3).p()), gb2312("十一月二十"));
  EXPECT_EQ(std::string(pdate2text(tpdate(2024, 2, 30, 0), text, 1).p()), gb2312("三十"));
  EXPECT_EQ(std::string(pdate2text(tpdate(2024, 1, 21, 0), text, 3).p()), gb2312("一月廿一"));
  EXPECT_TRUE(pdate2text(tpdate(2024, 1, 21, 0), text, 0).isEmpty());
  EXPECT_TRUE(pdate2text(tpdate(2024, 2, 1, 1), text, 3).isEmpty());

  EXPECT_EQ(std::string(pdate2Animal_signs(tpdate(2024, 1, 1, 0), text).p()), gb2312("龙"));
  EXPECT_EQ(std::string(pdate2TianGanDiZhi(tpdate(2024, 1, 1, 0), text).p()), gb2312("甲辰"));
  EXPECT_EQ(std::string(pdate2TianGanDiZhi(tpdate(1900, 1, 1, 0), text).p()), gb2312("庚子"));
  EXPECT_EQ(std::string(pdate2Animal_signs(tpdate(2023, 2, 1, 1), text).p()), gb2312("兔"));
  text = "kept";
  EXPECT_TRUE(pdate2Animal_signs(tpdate(), text).isEmpty());
  text = "kept";
  EXPECT_TRUE(pdate2TianGanDiZhi(tpdate(2024, 0, 1, 0), text).isEmpty());
}

}  // namespace

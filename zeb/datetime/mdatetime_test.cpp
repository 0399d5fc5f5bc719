// Tests of the date-time unit: day numbers against an independent civil-date computation, the
// packed record, month and week arithmetic, searches, deltas, text forms and parsers, Unix time
// and FILETIME, zone conversion under a daylight-saving TZ, the clocks, and validation records.

#include "zeb/datetime/mdatetime.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "testing/log_capture.h"
#include "zeb/log/zeb_log.h"

namespace {

// Days since 1970-01-01 of a proleptic Gregorian date, computed by eras of 400 years from March.
long long daysFromCivil(long long y, unsigned m, unsigned d) {
  y -= m <= 2;
  const long long era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
  return era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468;
}

constexpr long long kUnixEpochDayNumber = 25569;

struct Fields {
  int year, month, day, hour, minute, second, ms;
};

Fields fieldsOf(const TDateTime& t) {
  return {t.year(), t.month(), t.day(), t.hour(), t.minute(), t.second(), t.ms()};
}

std::string text(const Fields& f) {
  char buffer[64];
  snprintf(buffer, sizeof buffer, "%d-%02d-%02d %02d:%02d:%02d.%03d", f.year, f.month, f.day,
           f.hour, f.minute, f.second, f.ms);
  return buffer;
}

std::string text(const TDateTime& t) {
  return text(fieldsOf(t));
}

struct Date {
  int year, month, day;
};

std::string text(const Date& d) {
  char buffer[40];
  snprintf(buffer, sizeof buffer, "%d-%02d-%02d", d.year, d.month, d.day);
  return buffer;
}

std::string decoded(long long dayNumber) {
  Date d{-1, -1, -1};
  DecodeDate(dayNumber, &d.year, &d.month, &d.day);
  return text(d);
}

// ---- day numbers --------------------------------------------------------------------------------

TEST(DayNumbers, AgreeWithCivilDaysOverTheWholeRange) {
  for (long long dn = -693593; dn <= 2958465; dn += 97) {
    int y = 0, m = 0, d = 0;
    DecodeDate(dn, &y, &m, &d);
    ASSERT_EQ(daysFromCivil(y, m, d) + kUnixEpochDayNumber, dn) << y << "-" << m << "-" << d;
    ASSERT_EQ(EncodeDate(y, m, d), dn);
    ASSERT_EQ(DayOfWeek(dn), (daysFromCivil(y, m, d) % 7 + 10) % 7 + 1) << dn;
  }
  for (int y = 1; y <= 9999; ++y) {
    for (int m = 1; m <= 12; ++m) {
      const int last = daysOfMonthG(y, m);
      const long long dn = EncodeDate(y, m, last);
      ASSERT_EQ(dn, daysFromCivil(y, m, last) + kUnixEpochDayNumber) << y << "-" << m;
      ASSERT_EQ(decoded(dn), text(Date{y, m, last}));
      ASSERT_FALSE(GDateIsValid(y, m, last + 1));
    }
  }
}

TEST(DayNumbers, EdgesAndInvalidDates) {
  EXPECT_EQ(EncodeDate(1899, 12, 30), 0);
  EXPECT_EQ(EncodeDate(1900, 1, 1), 2);
  EXPECT_EQ(DayOfWeek(EncodeDate(1899, 12, 30)), 6);
  EXPECT_EQ(DayOfWeek(EncodeDate(1900, 1, 1)), 1);
  EXPECT_EQ(DayOfWeek(-693593 - 7 * 1000), DayOfWeek(-693593));
  EXPECT_EQ(EncodeDate(1, 1, 1), -693593);
  EXPECT_EQ(EncodeDate(9999, 12, 31), 2958465);
  EXPECT_EQ(decoded(-693594), "0-00-00");
  EXPECT_EQ(decoded(2958466), "0-00-00");
  EXPECT_EQ(EncodeDate(2023, 2, 29), 0);
  EXPECT_EQ(EncodeDate(0, 1, 1), 0);
  EXPECT_EQ(EncodeDate(2024, 13, 1), 0);
  DecodeDate(2, nullptr, nullptr, nullptr);

  int y = 0, m = 0, d = 0;
  IncDate(2023, 12, 31, &y, &m, &d, 1);
  EXPECT_EQ(text(Date{y, m, d}), "2024-01-01");
  IncDate(2024, 3, 1, &y, &m, &d, -1);
  EXPECT_EQ(text(Date{y, m, d}), "2024-02-29");
  IncDate(9999, 12, 31, &y, &m, &d, 1);
  EXPECT_EQ(y + m + d, 0);
}

TEST(DayNumbers, LeapYears) {
  struct Case {
    int year;
    int february;
  } cases[] = {{1900, 28}, {2000, 29}, {2023, 28}, {2024, 29}, {2100, 28}, {1600, 29}};
  for (const Case& c : cases) {
    EXPECT_EQ(daysOfMonthG(c.year, 2), c.february) << c.year;
    EXPECT_EQ(GDateIsValid(c.year, 2, 29), c.february == 29) << c.year;
    EXPECT_EQ(DayOfGYear(c.year, 12, 31), 337 + c.february) << c.year;
  }
  EXPECT_EQ(daysOfMonthG(2024, 0), 0);
  EXPECT_EQ(DayOfGYear(2024, 13, 1), 0);
}

// ---- the packed record --------------------------------------------------------------------------

TEST(DateTimePackedRecord, FieldsSitAtTheirBits) {
  const TDateTime t(2024, 3, 9, 7, 5, 30, 123);
  const unsigned long long expected = (2024ULL << 36) | (3ULL << 32) | (9ULL << 27) | (7ULL << 22) |
                                      (5ULL << 16) | (30ULL << 10) | 123;
  EXPECT_EQ(t.asUInt64(), expected);
  EXPECT_EQ(TDateTime(expected), t);
  EXPECT_EQ(EncodeMinuteTime(2024, 3, 9, 7, 5, 30), expected - 123);
  EXPECT_TRUE(TDateTime().isNull());
  EXPECT_EQ(TDateTime(TDate(2024, 3, 9)).asUInt64(), expected & ~((1ULL << 27) - 1));
}

TEST(DateTimePackedRecord, IntegerOrderIsTimeOrder) {
  const std::vector<TDateTime> ascending = {
      TDateTime(1, 1, 1, 0, 0, 0, 0),    TDateTime(1999, 12, 31, 23, 59, 59, 999),
      TDateTime(2000, 1, 1, 0, 0, 0, 0), TDateTime(2000, 1, 1, 0, 0, 0, 1),
      TDateTime(2000, 1, 1, 0, 0, 1, 0), TDateTime(2000, 1, 1, 0, 1, 0, 0),
      TDateTime(2000, 1, 1, 1, 0, 0, 0), TDateTime(2000, 1, 2, 0, 0, 0, 0),
      TDateTime(2000, 2, 1, 0, 0, 0, 0), TDateTime(4095, 12, 31, 23, 59, 59, 1000)};
  for (size_t i = 1; i < ascending.size(); ++i) {
    EXPECT_LT(ascending[i - 1], ascending[i]) << i;
    EXPECT_LT(ascending[i - 1].asUInt64(), ascending[i].asUInt64());
    EXPECT_FALSE(ascending[i] <= ascending[i - 1]);
  }
}

TEST(DateTimePackedRecord, MaskingAndTheHour24Rule) {
  const TDateTime leapMidnight(2024, 2, 29, 24, 0, 0, 0);
  EXPECT_EQ(text(leapMidnight), "2024-02-29 00:00:00.000");
  TDateTime t(2024, 1, 1, 0, 0, 0, 0);
  t.setYear(4096);
  t.setms(1025);
  t.setminute(-1);
  t.sethour(24);  // a plain setter stores 24
  EXPECT_EQ(text(t), "0-01-01 24:63:00.001");
  EXPECT_FALSE(t.isValid());
  EXPECT_TRUE(TDateTime(2024, 2, 31, 23, 59, 59, 1000).isValid());  // the day is not checked
  EXPECT_TRUE(TDateTime(2024, 1, 1, 0, 0, 0, 0).isNormalValid(2000, -1));
  EXPECT_FALSE(TDateTime(2024, 1, 1, 0, 0, 0, 0).isNormalValid(2000, 2023));
  EXPECT_FALSE(TDateTime(2024, 1, 1, 0, 0, 0, 0).isNormalValid(-1, -1));
}

TEST(DateTimePackedRecord, ExtraWordSurvivesOldLayoutAndFieldChanges) {
  const unsigned long long extra = 0xBEEFULL << 48;
  TDateTime t(extra | TDateTime(2024, 3, 9, 7, 5, 30, 999).asUInt64());
  const unsigned long long old = t.toOldInt();
  EXPECT_EQ(old >> 48, 0xBEEFu);
  EXPECT_EQ((old >> 38) & 0x3FF, 999u);
  int y, mo, d, h, mi, s;
  DecodeMinuteTimeOld(old, &y, &mo, &d, &h, &mi, &s);
  EXPECT_EQ(text(Fields{y, mo, d, h, mi, s, 0}), "2024-03-09 07:05:30.000");
  EXPECT_EQ(EncodeMinuteTimeOld(2024, 3, 9, 7, 5, 30), old & ((1ULL << 38) - 1));
  TDateTime back;
  back.fromOldInt(old);
  EXPECT_EQ(back, t);

  t.incDay(1);
  t.setDateTime(2020, 1, 2, 3, 4, 5, 6);
  EXPECT_EQ(t.asUInt64() >> 48, 0xBEEFu);
  EXPECT_TRUE(t.dateEqual(TDateTime(2020, 1, 2, 9, 0, 0, 0)));
  TDateTime other(1999, 5, 6, 1, 1, 1, 1);
  other.copyDateOnly(t);
  EXPECT_EQ(text(other), "2020-01-02 01:01:01.001");
}

// ---- arithmetic ---------------------------------------------------------------------------------

TEST(MonthArithmetic, MovesAcrossYearsAndHandlesShortMonths) {
  struct Case {
    Date start;
    int months;
    int clampDay;
    const char* expected;
    bool result;
  } cases[] = {
      {{2023, 1, 31}, 1, 1, "2023-02-28", true},   {{2023, 1, 31}, 1, 0, "2023-02-31", false},
      {{2024, 1, 31}, 1, 1, "2024-02-29", true},   {{2023, 12, 15}, 1, 0, "2024-01-15", true},
      {{2024, 1, 15}, -1, 0, "2023-12-15", true},  {{2023, 1, 10}, 11, 0, "2023-12-10", true},
      {{2023, 12, 10}, 12, 0, "2024-12-10", true}, {{2023, 5, 10}, -5, 0, "2022-12-10", true},
      {{2023, 1, 10}, -13, 0, "2021-12-10", true}, {{2023, 3, 31}, -25, 1, "2021-02-28", true},
      {{2023, 6, 30}, 30, 0, "2025-12-30", true},
  };
  for (const Case& c : cases) {
    TDateTime t(c.start.year, c.start.month, c.start.day, 8, 0, 0, 0);
    EXPECT_EQ(t.incMonthResult(c.months, c.clampDay), c.result) << c.expected;
    EXPECT_EQ(text(t), std::string(c.expected) + " 08:00:00.000");
  }
  TDateTime leap(2024, 2, 29, 0, 0, 0, 0);
  EXPECT_TRUE(IncMonth(&leap, 12, 1));
  EXPECT_EQ(text(leap).substr(0, 10), "2025-02-28");
  EXPECT_FALSE(IncMonth(nullptr, 1, 1));
  TDate date(2023, 1, 31);
  date.IncMonth(13);
  EXPECT_EQ(text(Date{date.year(), date.month(), date.day()}), "2024-02-31");
}

TEST(DayArithmetic, MovesThroughDayNumbersAndRefusesInvalidDates) {
  TDateTime t(2023, 12, 31, 23, 59, 30, 250);
  EXPECT_TRUE(t.incSecond(45));
  EXPECT_EQ(text(t), "2024-01-01 00:00:15.250");
  EXPECT_TRUE(t.incMinute(-1));
  EXPECT_EQ(text(t), "2023-12-31 23:59:15.250");
  EXPECT_TRUE(t.incWeek(9));
  EXPECT_EQ(text(t), "2024-03-03 23:59:15.250");
  EXPECT_EQ(text(IncMinute(t, 1440 * 366)), "2025-03-04 23:59:15.250");
  EXPECT_EQ(IncSecond(t, 1LL << 62), t);
  EXPECT_FALSE(t.incDay(-739000));  // before year 1
  TDateTime invalid(2023, 2, 30, 0, 0, 0, 0);
  EXPECT_FALSE(invalid.incDay(1));
  EXPECT_EQ(text(invalid), "2023-02-30 00:00:00.000");
  TDate date(2024, 2, 28);
  date.incDay(2);
  EXPECT_EQ(date.asDateInt(), EncodeDate(2024, 3, 1));
}

// Every month of 2023-2025: each weekday starts some month, lengths 28 to 31 all occur.
TEST(WeekRows, AgreeWithADayByDayWalk) {
  for (int year = 2023; year <= 2025; ++year) {
    for (int month = 1; month <= 12; ++month) {
      const int firstWeekday = DayOfWeek(EncodeDate(year, month, 1));
      const int days = daysOfMonthG(year, month);
      const int lastRow = (days - 1 + firstWeekday - 1) / 7;
      EXPECT_EQ(weeksInMonth(year, month), lastRow + 1);
      for (unsigned char weekday = 1; weekday <= 7; ++weekday) {
        std::vector<long long> occurrences;
        long long inLastRow = 0;
        for (unsigned char row = 0; row <= 6; ++row) {
          long long expected = 0;
          for (int day = 1; day <= days; ++day) {
            const long long dn = EncodeDate(year, month, day);
            if (DayOfWeek(dn) != weekday) continue;
            if ((day - 1 + firstWeekday - 1) / 7 == row) expected = dn;
            if (row == 0) occurrences.push_back(dn);
            if (row == 0 && (day - 1 + firstWeekday - 1) / 7 == lastRow) inLastRow = dn;
          }
          EXPECT_EQ(getDateByWeeksday(year, month, row, weekday), expected)
              << year << "-" << month << " row " << int(row) << " weekday " << int(weekday);
          const long long nth = row < occurrences.size() ? occurrences[row] : 0;
          EXPECT_EQ(getDateByWeekdays(year, month, row, weekday), nth);
        }
        EXPECT_EQ(lastweekDayDate(year, month, weekday), inLastRow);
      }
    }
  }
  EXPECT_EQ(DayOfWeek(EncodeDate(2024, 7, 31)), 3);  // the last row ends on a Wednesday
  EXPECT_EQ(lastweekDayDate(2024, 7, 5), 0);
  EXPECT_EQ(getDateByWeeksday(2024, 7, 0, 8), 0);
  EXPECT_EQ(weeksInMonth(2024, 13), 0);
}

TEST(DateSearches, MoveForwardToTheFirstFittingMonthOrYear) {
  struct Case {
    int (*find)(int*, int*, int*);
    Date start;
    int result;
    const char* expected;
  } cases[] = {
      {findGDateInDay, {2023, 2, 30}, 1, "2023-03-30"},
      {findGDateInDay, {2023, 11, 31}, 1, "2023-12-31"},
      {findGDateInDay, {2023, 12, 31}, 1, "2023-12-31"},
      {findGDateInDay, {2023, 2, 32}, 0, "2023-02-32"},
      {findGDateInDay, {9999, 12, 32}, 0, "9999-12-32"},
      {findGDateInMonthDay, {2021, 2, 29}, 1, "2024-02-29"},
      {findGDateInMonthDay, {2097, 2, 29}, 1, "2104-02-29"},
      {findGDateInMonthDay, {2023, 2, 30}, 0, "2023-02-30"},
  };
  for (const Case& c : cases) {
    int y = c.start.year, m = c.start.month, d = c.start.day;
    EXPECT_EQ(c.find(&y, &m, &d), c.result) << c.expected;
    EXPECT_EQ(text(Date{y, m, d}), c.expected);
  }
  int y = 2023, d = 1;
  EXPECT_EQ(findGDateInDay(&y, nullptr, &d), 0);
}

TEST(DateTimeDeltas, WholeUnitsAndDurationFields) {
  const TDateTime a(2024, 3, 1, 0, 0, 59, 999);
  const TDateTime b(2024, 2, 28, 23, 59, 0, 0);
  EXPECT_EQ(minutesDelta(a, b), 1441);
  EXPECT_EQ(secondsDelta(a, b), 86400 + 60 + 59);
  EXPECT_EQ(a - b, secondsDelta(a, b));
  EXPECT_EQ(b.minutesDeltaWith(a), -1441);

  EXPECT_EQ(text(FormatSecondsDelta(90061)), "0-00-01 01:01:01.000");
  EXPECT_EQ(text(FormatSecondsDelta(-90061)), "0-00-01 01:01:01.000");
  EXPECT_EQ(text(FormatSecondsDelta(86400LL * (365 + 35) + 59)), "1-01-05 00:00:59.000");

  const TDateTime later(2025, 3, 5, 1, 2, 3, 0);
  const TDateTime earlier(2023, 4, 10, 2, 3, 4, 0);
  EXPECT_EQ(text(FormatTwoTimeDelta(later, earlier)), "1-10-24 22:58:59.000");
  EXPECT_EQ(text(FormatTwoTimeDelta(earlier, later)), "2-01-05 01:01:01.000");
}

// ---- text ---------------------------------------------------------------------------------------

TEST(DateTimeExports, PackedValueFunctionsHaveUndecoratedNames) {
  for (const char* name : {"IncMonth", "IncWeek", "IncMinute", "IncSecond", "minutesDelta",
                           "secondsDelta", "FormatSecondsDelta", "FormatTwoTimeDelta"}) {
    EXPECT_NE(dlsym(RTLD_DEFAULT, name), nullptr) << name;
  }
}

TEST(DateTimeTextForms, EveryStyle) {
  const TDateTime t(2024, 3, 9, 7, 5, 0, 123);
  const char* expected[] = {"2024-03-09 07:05:00", "20240309070500",   "20240309-070500",
                            "2024:03:09 07:05:00", "20240309-0705",    "2024-03-09 07:05",
                            "202403090705",        "2024:03:09 07:05", "20240309-0705"};
  for (int style = 0; style <= 8; ++style) {
    EXPECT_STREQ(t.asDateTimeString(style).p(), expected[style]) << style;
    EXPECT_EQ(t.asDateTimeStringW(style), TWideString(t.asDateTimeString(style), MIB_ASCII));
  }
  EXPECT_STREQ(t.asDateTimeString(-1).p(), "20240309-0705");
  EXPECT_STREQ(t.asDateString(0).p(), "2024-03-09");
  EXPECT_STREQ(t.asDateString(1).p(), "20240309");
  const char* times[] = {"07:05:00", "070500", "07:05", "0705", "0705"};
  for (int style = 0; style <= 4; ++style) EXPECT_STREQ(t.asTimeString(style).p(), times[style]);
  EXPECT_STREQ(TDateTime(5, 1, 2, 3, 4, 5, 0).asDateTimeString(0).p(), "5-01-02 03:04:05");
}

TEST(DateTimeParsing, EveryStyleRoundTrips) {
  const Fields records[] = {{2024, 3, 9, 7, 5, 30, 0},
                            {5, 1, 2, 3, 4, 5, 0},
                            {999, 12, 31, 23, 59, 59, 0},
                            {1, 1, 1, 0, 0, 0, 0},
                            {4095, 12, 31, 12, 0, 59, 0}};
  for (const Fields& f : records) {
    const TDateTime t(f.year, f.month, f.day, f.hour, f.minute, f.second, 0);
    for (int style = 0; style <= 8; ++style) {
      const TAnsiString written = t.asDateTimeString(style);
      TDateTime parsed;
      ASSERT_TRUE(parsed.fromDateTimeString(written.p(), style)) << written.p();
      TDateTime expected = t;
      if (style > 3) expected.setsecond(0);  // the five-field styles
      EXPECT_EQ(text(parsed), text(expected)) << written.p();
      const TWideString wide = t.asDateTimeStringW(style);
      TDateTime parsedWide;
      ASSERT_TRUE(parsedWide.parseFromString(wide.p(), -1, style, false));
      EXPECT_EQ(parsedWide, parsed);
      // A run of digits with a year below 100 reads as a longer year under "any layout".
      TDateTime anyStyle;
      if (style != 1 || f.year >= 100) {
        ASSERT_TRUE(anyStyle.fromDateTimeString(written.p(), -1)) << written.p();
        EXPECT_EQ(anyStyle, parsed) << written.p();
      }
    }
    for (int style = 0; style <= 1; ++style) {
      TDateTime date(2000, 1, 1, 11, 12, 13, 14);
      ASSERT_TRUE(date.fromDateString(t.asDateString(style).p(), style));
      EXPECT_EQ(date.asTimeString(0), "11:12:13");
      EXPECT_TRUE(date.dateEqual(t));
    }
  }
}

TEST(DateTimeParsing, IsoFormsZonesAndAmbiguousDigitRuns) {
  struct Case {
    const char* text;
    int style;
    const char* expected;
  } cases[] = {
      {"2024-03-09T07:05:00Z", -1, "2024-03-09 07:05:00.000"},
      {"2024-03-09t07:05:00.5+02:00", -1, "2024-03-09 05:05:00.500"},
      {"20240309T070500,123456789-0130", -1, "2024-03-09 08:35:00.123"},
      {"2024-03-09T07:05+05", 5, "2024-03-09 02:05:00.000"},
      {"2024-01-01T00:30:00+01:00", 0, "2023-12-31 23:30:00.000"},
      {" \t2024-3-9 7:05:00 \r\n", -1, "2024-03-09 07:05:00.000"},
      {"2024-03-09", -1, "2024-03-09 00:00:00.000"},
      {"20240309", -1, "2024-03-09 00:00:00.000"},
      {"50102030405", 1, "5-01-02 03:04:05.000"},
      {"50102030405", -1, "501-02-03 04:05:00.000"},
  };
  for (const Case& c : cases) {
    TDateTime t;
    EXPECT_TRUE(t.fromDateTimeString(c.text, c.style)) << c.text;
    EXPECT_EQ(text(t), c.expected) << c.text;
  }
  TDateTime t;
  EXPECT_TRUE(t.parseFromString("2024-03-09 07:05:00xyz", 19, 0, false));
  EXPECT_TRUE(t.parseFromString(ZW("2024-03-09T07:05:00.25Z"), -1, -1, false));
  EXPECT_EQ(t.ms(), 250);
}

TEST(DateTimeParsing, RejectsBadTextAndLeavesTheRecord) {
  const char* bad[] = {"2024-02-30 00:00:00",
                       "2024-13-01 00:00:00",
                       "2024-03-09 24:00:00",
                       "2024-03-09 07:60",
                       "2024-03-09T07:05:00+24:00",
                       "2024-03-09 07:05:00 junk",
                       "2024-03-09 07:05:00.",
                       "2024-03-09 07:05:00.1234567890",
                       "4096-01-01 00:00:00",
                       "0-01-01 00:00:00",
                       "",
                       "   ",
                       "2024-03-09Z",
                       "0001-01-01T00:30:00+01:00",
                       "20240309-07050",
                       "2024-03-09-07:05"};
  const TDateTime original((0x1234ULL << 48) | TDateTime(2020, 5, 6, 7, 8, 9, 10).asUInt64());
  for (const char* input : bad) {
    TDateTime t = original;
    EXPECT_FALSE(t.fromDateTimeString(input, -1)) << input;
    EXPECT_FALSE(t.fromDateString(input, -1)) << input;
    EXPECT_EQ(t, original) << input;
  }
  TDateTime t = original;
  EXPECT_FALSE(t.fromDateString("2024-03-09", 1));
  EXPECT_FALSE(t.fromDateTimeString("2024-03-09 07:05:00", 1));
  EXPECT_FALSE(t.fromDateTimeString(nullptr, -1));
  EXPECT_FALSE(t.parseFromString(static_cast<const zwchar_t*>(nullptr), -1, -1, false));
  EXPECT_FALSE(t.parseFromString(ZW("2024-03-09 07:05:00\u00e9"), -1, -1, false));
  EXPECT_FALSE(t.parseFromString(ZW("\uff12024-03-09"), -1, -1, true));
  EXPECT_EQ(t, original);
}

// ---- Unix time, FILETIME, zones -----------------------------------------------------------------

TEST(DateTimeEpochs, UnixTimeAndFileTime) {
  TDateTime t(0xABCDULL << 48);
  EXPECT_TRUE(t.fromUnixTimeStampSecond(1700000000));
  EXPECT_EQ(text(t), "2023-11-14 22:13:20.000");
  EXPECT_EQ(t.asUInt64() >> 48, 0xABCDu);
  EXPECT_EQ(t.asUnixTimeStampSecond(), 1700000000);
  EXPECT_TRUE(t.fromUnixTimeStampMs(1700000000999ULL));
  EXPECT_EQ(t.asUnixTimeStampSecond(), 1700000000);
  EXPECT_FALSE(t.fromUnixTimeStampSecond(~0ULL));
  EXPECT_EQ(TDateTime(1969, 12, 31, 23, 59, 0, 0).asUnixTimeStampSecond(), -60);

  const FILETIME unixEpoch = TDateTime(1970, 1, 1, 0, 0, 0, 0).asWindowsFileTime();
  EXPECT_EQ(
      (static_cast<unsigned long long>(unixEpoch.dwHighDateTime) << 32) | unixEpoch.dwLowDateTime,
      116444736000000000ULL);
  TDateTime back;
  EXPECT_TRUE(back.fromWindowsFileTime(TDateTime(4095, 12, 31, 23, 59, 59, 0).asWindowsFileTime()));
  EXPECT_EQ(text(back), "4095-12-31 23:59:59.000");
  EXPECT_EQ(TDateTime(1600, 12, 31, 0, 0, 0, 0).asWindowsFileTime().dwHighDateTime, 0u);
  EXPECT_FALSE(back.fromWindowsFileTime(FILETIME{0xFFFFFFFFu, 0xFFFFFFFFu}));
}

// Sets TZ for one test and puts the previous value back.
class ScopedTimeZone {
 public:
  explicit ScopedTimeZone(const char* zone) {
    const char* previous = getenv("TZ");
    hadPrevious_ = previous != nullptr;
    if (hadPrevious_) previous_ = previous;
    setenv("TZ", zone, 1);
    tzset();
  }
  ~ScopedTimeZone() {
    if (hadPrevious_) {
      setenv("TZ", previous_.c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }

 private:
  bool hadPrevious_;
  std::string previous_;
};

TEST(DateTimeZones, ConvertAcrossDaylightSavingChanges) {
  ScopedTimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");  // central Europe, no zone database needed
  struct Case {
    Fields utc;
    const char* local;
  } cases[] = {
      {{2024, 3, 31, 0, 30, 0, 7}, "2024-03-31 01:30:00.007"},  // before the spring change
      {{2024, 3, 31, 1, 30, 0, 7}, "2024-03-31 03:30:00.007"},  // after it
      {{2024, 10, 27, 1, 30, 0, 0}, "2024-10-27 02:30:00.000"},
      {{2024, 12, 31, 23, 30, 0, 0}, "2025-01-01 00:30:00.000"},
  };
  for (const Case& c : cases) {
    const Fields& f = c.utc;
    TDateTime t(f.year, f.month, f.day, f.hour, f.minute, f.second, f.ms);
    EXPECT_TRUE(t.convertToLocal());
    EXPECT_EQ(text(t), c.local);
    if (c.utc.month != 10) {  // 02:30 on the autumn day occurs twice locally
      EXPECT_TRUE(t.convertToUTC());
      EXPECT_EQ(text(t), text(f));
    }
  }
  TDateTime invalid(2024, 2, 30, 0, 0, 0, 0);
  EXPECT_FALSE(invalid.convertToLocal());
  EXPECT_FALSE(TDateTime().convertToUTC());
}

// ---- clocks -------------------------------------------------------------------------------------

TEST(DateTimeClocks, AdvanceAcrossASleep) {
  const long long startMs = zeb_timems();
  const unsigned startTick = GetSysTickCount();
  const double startNow = zeb_currenttime();
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  EXPECT_GE(startMs, 0);
  EXPECT_GT(zeb_timems(), startMs);
  EXPECT_GT(GetSysTickCount() - startTick, 0u);
  EXPECT_GT(zeb_currenttime(), startNow);

  const double wallMs =
      std::chrono::duration<double, std::milli>(std::chrono::system_clock::now().time_since_epoch())
          .count();
  EXPECT_NEAR(zeb_currenttime(), wallMs, 2000.0);
  TDateTime utc;
  utc.loadCurrentUTC();
  EXPECT_TRUE(utc.isValid());
  EXPECT_NEAR(static_cast<double>(utc.asUnixTimeStampSecond()), wallMs / 1000, 5.0);
  TDateTime local;
  local.loadcurrentlocal();
  TDate today;
  today.loadcurrentlocal();
  EXPECT_TRUE(local.isValid());
  EXPECT_TRUE(GDateIsValid(today.year(), today.month(), today.day()));
}

// ---- validation records -------------------------------------------------------------------------

TEST(DateTimeValidationRecords, EachFailedCheckWritesOneAssertRecord) {
  zeb::testing::LogCapture log(MLOG_ASSERT);
  TDateTime t;
  EXPECT_TRUE(t.setDateTime(4096, 2, 29, 23, 59, 59, 1000));
  EXPECT_EQ(text(t), "0-02-29 23:59:59.1000");
  EXPECT_FALSE(t.setDateTime(0, 0, 32, 24, 60, 60, 1001));
  EXPECT_EQ(t.asUInt64(), (60ULL << 16) | (60ULL << 10) | 1001);  // masked; hour 24 became 0
  EXPECT_FALSE(t.setTime(-1, 0, 0, 0));
  EXPECT_TRUE(t.setTime(0, 0, 0, 0));
  FormatTwoTimeDelta(TDateTime(2024, 5, 5, 0, 0, 0, 0), TDateTime(2024, 4, 5, 0, 0, 0, 0));

  const std::vector<std::string> expected = {
      ":TDateTime::setDateTime:401", ":TDateTime::setDateTime:402", ":TDateTime::setDateTime:403",
      ":TDateTime::setDateTime:404", ":TDateTime::setDateTime:405", ":TDateTime::setDateTime:406",
      ":TDateTime::setDateTime:407", ":TDateTime::setTime:421",     ":TDateTime::setDateTime:401",
      ":TDateTime::setDateTime:403"};
  EXPECT_EQ(log.messages(), expected);
  for (const std::string& line : log.lines()) {
    const auto parsed = zeb::testing::parseLogLine(line);
    ASSERT_TRUE(parsed.has_value()) << line;
    EXPECT_EQ(parsed->letter, "A");
    EXPECT_EQ(parsed->tag.substr(0, 9), "mdatetime");
  }
}

}  // namespace

// calendar.h: the proleptic Gregorian calendar behind the date-time unit: leap years, month
// lengths, days of the year, and day numbers (day 0 = 1899-12-30) with their inverse. The
// functions here trust their arguments; the exported functions check them first.
#ifndef ZEB_DATETIME_INTERNAL_CALENDAR_H
#define ZEB_DATETIME_INTERNAL_CALENDAR_H

namespace zeb {
namespace datetime {

constexpr int kMinYear = 1;
constexpr int kMaxYear = 9999;
// The last year the packed date-time record can hold (12 bits).
constexpr int kMaxStoredYear = 4095;
// The day numbers of 0001-01-01 and 9999-12-31.
constexpr long long kFirstDayNumber = -693593;
constexpr long long kLastDayNumber = 2958465;
constexpr long long kDaysPer400Years = 146097;
// Day 0 is this many days after 0000-03-01.
constexpr long long kDaysFromMarch0000 = 693899;

// Month lengths: 12 common-year entries, then 12 leap-year entries.
constexpr short kMonthLengths[24] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31,
                                     31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
// The 1-based day of the year on which each month starts, common years then leap years.
constexpr short kMonthStarts[24] = {1, 32, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335,
                                    1, 32, 61, 92, 122, 153, 183, 214, 245, 275, 306, 336};

constexpr bool isLeapYear(long long year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

// Index of `month` (1..12) in the two tables above.
constexpr int monthIndex(long long year, int month) {
  return month - 1 + (isLeapYear(year) ? 12 : 0);
}

constexpr int daysInMonth(long long year, int month) {
  return kMonthLengths[monthIndex(year, month)];
}

constexpr bool isValidDate(long long year, long long month, long long day) {
  return year >= kMinYear && year <= kMaxYear && month >= 1 && month <= 12 && day >= 1 &&
         day <= daysInMonth(year, static_cast<int>(month));
}

// The 1-based day of the year of a date whose month is 1..12.
constexpr int dayOfYear(long long year, int month, int day) {
  return day - 1 + kMonthStarts[monthIndex(year, month)];
}

// The day number of a valid date.
constexpr long long encodeDayNumber(int year, int month, int day) {
  const long long before = year - 1;
  return before * 365 + before / 4 - before / 100 + before / 400 + dayOfYear(year, month, day) -
         693594;
}

// Floor division and its remainder (0 <= remainder < divisor) for a positive divisor.
constexpr long long floorDiv(long long value, long long divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}
constexpr long long floorMod(long long value, long long divisor) {
  return value - floorDiv(value, divisor) * divisor;
}

struct CivilDate {
  int year;
  int month;
  int day;
};

// The date of a day number in kFirstDayNumber..kLastDayNumber. Days are counted from 0000-03-01,
// so that each year of the count ends with its leap day: whole 400-year eras, then the year of
// the era and the day of that year by closed formulas, then the month from the day of the year
// (months from March follow a 153-days-per-5-months pattern).
inline CivilDate decodeDayNumber(long long dayNumber) {
  const long long days = dayNumber + kDaysFromMarch0000;  // >= 306 within the range
  const long long era = days / kDaysPer400Years;
  const unsigned dayOfEra = static_cast<unsigned>(days - era * kDaysPer400Years);
  const unsigned yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const unsigned monthFromMarch = (5 * dayOfYear + 2) / 153;
  const int day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
  const int month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
  const int year = static_cast<int>(era * 400 + yearOfEra) + (month <= 2 ? 1 : 0);
  return CivilDate{year, month, day};
}

}  // namespace datetime
}  // namespace zeb

#endif  // ZEB_DATETIME_INTERNAL_CALENDAR_H

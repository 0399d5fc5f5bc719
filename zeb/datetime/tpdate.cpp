// The lunar calendar, driven by the generated year and solar-term tables.
//
// The years before a date are skipped through a table of the day each lunar year begins on
// (built at compile time from the year table), which gives what subtracting whole years from the
// anchor one by one gives. Within a lunar year the months are walked in order: 1 .. L, the leap
// month L', L + 1 .. 12 (L the leap month, when there is one). A month's position in that walk
// (0-based) is its ordinal; the arithmetic and the conversions work on ordinals.

#include "zeb/datetime/tpdate.h"

#include "zeb/datetime/internal/calendar.h"
#include "zeb/datetime/internal/lunar_tables.h"

namespace {

using zeb_lunar::kFirstYear;
using zeb_lunar::kLastYear;
using zeb_lunar::kSolarTerms;
using zeb_lunar::kYearTable;

constexpr int kNoLeapLongPrevious = 15;
constexpr int kDaySearchYears = 5;
constexpr int kMonthDaySearchYears = 60;
// The day number of lunar 1900-01-01, Gregorian 1900-01-31.
constexpr long long kAnchorDay = zeb::datetime::encodeDayNumber(1900, 1, 31);
constexpr int kYears = kLastYear - kFirstYear + 1;

constexpr bool isTabledYear(int year) {
  return year >= kFirstYear && year <= kLastYear;
}

constexpr unsigned entryOf(int year) {
  return kYearTable[year - kFirstYear];
}

constexpr int leapMonthOf(int year) {
  const int low = static_cast<int>(entryOf(year) & 15);
  return low == kNoLeapLongPrevious ? 0 : low;
}

constexpr int ordinaryMonthDays(int year, int month) {
  return (entryOf(year) >> (16 - month)) & 1 ? 30 : 29;
}

constexpr int leapMonthDays(int year) {
  if (leapMonthOf(year) == 0) return 0;
  return (kYearTable[year - kFirstYear + 1] & 15) == kNoLeapLongPrevious ? 30 : 29;
}

constexpr int monthsInYear(int year) {
  return leapMonthOf(year) == 0 ? 12 : 13;
}

constexpr int yearDays(int year) {
  int days = leapMonthDays(year);
  for (int m = 1; m <= 12; ++m) days += ordinaryMonthDays(year, m);
  return days;
}

// start[i]: days from the anchor to the new year of lunar year kFirstYear + i; start[kYears]
// is the day after lunar kLastYear ends.
struct YearStarts {
  long long start[kYears + 1] = {};
  constexpr YearStarts() {
    for (int i = 0; i < kYears; ++i) start[i + 1] = start[i] + yearDays(kFirstYear + i);
  }
};
constexpr YearStarts kYearStarts{};

// The lunar year holding the day `offset` days after the anchor (0 <= offset < start[kYears]).
int yearAt(long long offset) {
  int low = 0, high = kYears - 1;
  while (low < high) {
    const int mid = (low + high + 1) / 2;
    if (kYearStarts.start[mid] <= offset) {
      low = mid;
    } else {
      high = mid - 1;
    }
  }
  return kFirstYear + low;
}

// A month of a lunar year: its number and whether it is the leap month.
struct LunarMonth {
  int month;
  bool leap;
};

int ordinalOf(int year, LunarMonth m) {
  const int leapMonth = leapMonthOf(year);
  const bool afterLeap =
      leapMonth != 0 && (m.month > leapMonth || (m.month == leapMonth && m.leap));
  return m.month - 1 + (afterLeap ? 1 : 0);
}

LunarMonth monthAt(int year, int ordinal) {
  const int leapMonth = leapMonthOf(year);
  if (leapMonth == 0 || ordinal < leapMonth) return {ordinal + 1, false};
  return {ordinal, ordinal == leapMonth};
}

int monthDays(int year, LunarMonth m) {
  return m.leap ? leapMonthDays(year) : ordinaryMonthDays(year, m.month);
}

// The tabled year, a month 1-12, and a leap flag only on the year's leap month.
bool isValidMonth(int year, int month, int leap) {
  if (!isTabledYear(year) || month < 1 || month > 12) return false;
  return leap == 0 || leapMonthOf(year) == month;
}

// Day number of a valid lunar date.
long long dayNumberOf(int year, int month, int day, int leap) {
  long long days = kAnchorDay + kYearStarts.start[year - kFirstYear] + day - 1;
  const int ordinal = ordinalOf(year, {month, leap != 0});
  for (int k = 0; k < ordinal; ++k) days += monthDays(year, monthAt(year, k));
  return days;
}

template <typename T>
void store(T* out, T value) {
  if (out != nullptr) *out = value;
}

void storeLunar(int* pYear, int* pMonth, int* pDay, int* pLeap, int year, int month, int day,
                int leap) {
  store(pYear, year);
  store(pMonth, month);
  store(pDay, day);
  store(pLeap, leap);
}

// The text tables, GB2312.
const char* const kStems[10] = {"\xBC\xD7", "\xD2\xD2", "\xB1\xFB", "\xB6\xA1", "\xCE\xEC",
                                "\xBC\xBA", "\xB8\xFD", "\xD0\xC1", "\xC8\xC9", "\xB9\xEF"};
const char* const kBranches[12] = {"\xD7\xD3", "\xB3\xF3", "\xD2\xFA", "\xC3\xAE",
                                   "\xB3\xBD", "\xCB\xC8", "\xCE\xE7", "\xCE\xB4",
                                   "\xC9\xEA", "\xD3\xCF", "\xD0\xE7", "\xBA\xA5"};
const char* const kAnimals[12] = {"\xCA\xF3", "\xC5\xA3", "\xBB\xA2", "\xCD\xC3",
                                  "\xC1\xFA", "\xC9\xDF", "\xC2\xED", "\xD1\xF2",
                                  "\xBA\xEF", "\xBC\xA6", "\xB9\xB7", "\xD6\xED"};
const char* const kMonthNames[12] = {
    "\xD2\xBB", "\xB6\xFE", "\xC8\xFD", "\xCB\xC4", "\xCE\xE5",         "\xC1\xF9",
    "\xC6\xDF", "\xB0\xCB", "\xBE\xC5", "\xCA\xAE", "\xCA\xAE\xD2\xBB", "\xCA\xAE\xB6\xFE"};
const char* const kDayNames[30] = {
    "\xB3\xF5\xD2\xBB", "\xB3\xF5\xB6\xFE", "\xB3\xF5\xC8\xFD", "\xB3\xF5\xCB\xC4",
    "\xB3\xF5\xCE\xE5", "\xB3\xF5\xC1\xF9", "\xB3\xF5\xC6\xDF", "\xB3\xF5\xB0\xCB",
    "\xB3\xF5\xBE\xC5", "\xB3\xF5\xCA\xAE", "\xCA\xAE\xD2\xBB", "\xCA\xAE\xB6\xFE",
    "\xCA\xAE\xC8\xFD", "\xCA\xAE\xCB\xC4", "\xCA\xAE\xCE\xE5", "\xCA\xAE\xC1\xF9",
    "\xCA\xAE\xC6\xDF", "\xCA\xAE\xB0\xCB", "\xCA\xAE\xBE\xC5", "\xB6\xFE\xCA\xAE",
    "\xD8\xA5\xD2\xBB", "\xD8\xA5\xB6\xFE", "\xD8\xA5\xC8\xFD", "\xD8\xA5\xCB\xC4",
    "\xD8\xA5\xCE\xE5", "\xD8\xA5\xC1\xF9", "\xD8\xA5\xC6\xDF", "\xD8\xA5\xB0\xCB",
    "\xD8\xA5\xBE\xC5", "\xC8\xFD\xCA\xAE"};
const char kLeapPrefix[] = "\xC8\xF3";   // 润
const char kMonthSuffix[] = "\xD4\xC2";  // 月

bool isValid(const tpdate& d) {
  return PDateIsValid(d.year, d.month, d.day, d.leap) == 1;
}

// ((year - 4) mod 60) as a non-negative index into the sixty-year cycle.
int cycleIndex(int year) {
  return static_cast<int>(zeb::datetime::floorMod(year - 4, 60));
}

}  // namespace

// ---- conversion ---------------------------------------------------------------------------------

int GDateToPDateByTDate(long long dayNumber, int* pYear, int* pMonth, int* pDay, int* pLeap) {
  storeLunar(pYear, pMonth, pDay, pLeap, kFirstYear - 1, 1, 1, 0);
  long long offset = dayNumber - kAnchorDay;
  if (offset < 0 || offset >= kYearStarts.start[kYears]) return 0;
  const int year = yearAt(offset);
  offset -= kYearStarts.start[year - kFirstYear];
  const int months = monthsInYear(year);
  int ordinal = 0;
  for (; ordinal < months - 1; ++ordinal) {
    const int days = monthDays(year, monthAt(year, ordinal));
    if (offset < days) break;
    offset -= days;
  }
  const LunarMonth m = monthAt(year, ordinal);
  storeLunar(pYear, pMonth, pDay, pLeap, year, m.month, static_cast<int>(offset) + 1, m.leap);
  return 1;
}

int GDateToPDate(int year, int month, int day, int* pYear, int* pMonth, int* pDay, int* pLeap) {
  if (!isTabledYear(year)) return -2;
  if (!GDateIsValid(year, month, day)) return -1;
  return GDateToPDateByTDate(EncodeDate(year, month, day), pYear, pMonth, pDay, pLeap);
}

int PDateToGDate(int pYear, int pMonth, int pDay, int pLeap, int* year, int* month, int* day) {
  if (PDateIsValid(pYear, pMonth, pDay, pLeap) != 1) return 0;
  DecodeDate(dayNumberOf(pYear, pMonth, pDay, pLeap), year, month, day);
  return 1;
}

// ---- the year's months -----------------------------------------------------------------------

int PDateIsValid(int pYear, int pMonth, int pDay, int pLeap) {
  return isValidMonth(pYear, pMonth, pLeap) && pDay >= 1 &&
         pDay <= getPMonthDays(pYear, pMonth, pLeap);
}

int GetLeapMonthInPYear(int pYear) {
  return isTabledYear(pYear) ? leapMonthOf(pYear) : 0;
}

int getPMonthDays(int pYear, int pMonth, int leap) {
  if (!isTabledYear(pYear) || pMonth < 1 || pMonth > 12) return 0;
  return leap != 0 ? leapMonthDays(pYear) : ordinaryMonthDays(pYear, pMonth);
}

// ---- arithmetic ---------------------------------------------------------------------------------

int incPMonth(int* pYear, int* pMonth, int* pDay, int* pLeap, int n, int clampDay) {
  if (pYear == nullptr || pMonth == nullptr || pDay == nullptr || pLeap == nullptr) return 0;
  int year = *pYear;
  if (!isValidMonth(year, *pMonth, *pLeap)) return 0;
  long long ordinal = ordinalOf(year, {*pMonth, *pLeap != 0}) + static_cast<long long>(n);
  while (ordinal >= monthsInYear(year)) {
    ordinal -= monthsInYear(year);
    if (++year > kLastYear) return 0;
  }
  while (ordinal < 0) {
    if (--year < kFirstYear) return 0;
    ordinal += monthsInYear(year);
  }
  const LunarMonth m = monthAt(year, static_cast<int>(ordinal));
  const int last = monthDays(year, m);
  storeLunar(pYear, pMonth, pDay, pLeap, year, m.month, clampDay && *pDay > last ? last : *pDay,
             m.leap);
  return 1;
}

long long DaysBetweenPDate(int fromYear, int fromMonth, int fromDay, int fromLeap, int toYear,
                           int toMonth, int toDay, int toLeap) {
  if (PDateIsValid(fromYear, fromMonth, fromDay, fromLeap) != 1 ||
      PDateIsValid(toYear, toMonth, toDay, toLeap) != 1)
    return 0;
  return dayNumberOf(toYear, toMonth, toDay, toLeap) -
         dayNumberOf(fromYear, fromMonth, fromDay, fromLeap);
}

// ---- searches -----------------------------------------------------------------------------------

int findPDateInDay(int* y, int* m, int* d, int* leap) {
  if (y == nullptr || m == nullptr || d == nullptr || leap == nullptr) return 0;
  if (!isValidMonth(*y, *m, *leap)) return 0;
  int year = *y;
  int ordinal = ordinalOf(year, {*m, *leap != 0});
  while (year - *y < kDaySearchYears) {
    const LunarMonth month = monthAt(year, ordinal);
    if (*d >= 1 && *d <= monthDays(year, month)) {
      storeLunar(y, m, nullptr, leap, year, month.month, 0, month.leap);
      return 1;
    }
    if (++ordinal == monthsInYear(year)) {
      ordinal = 0;
      if (++year > kLastYear) return 0;
    }
  }
  return 0;
}

int findPDateInMonthDay(int* y, int* m, int* d, int* leap) {
  if (y == nullptr || m == nullptr || d == nullptr || leap == nullptr) return 0;
  for (int year = *y; year - *y < kMonthDaySearchYears && year <= kLastYear; ++year) {
    if (PDateIsValid(year, *m, *d, *leap) == 1) {
      *y = year;
      return 1;
    }
  }
  return 0;
}

// ---- solar terms ------------------------------------------------------------------------------

TDateTime getLunarTermDay(int year, int term) {
  if (!isTabledYear(year) || term < 0 || term > 23) return TDateTime();
  TDateTime date;
  date.setDate(EncodeDate(year, 1, 1) + kSolarTerms[year - kFirstYear][term]);
  return date;
}

// ---- texts ------------------------------------------------------------------------------------

TAnsiString& pdate2text(const tpdate& date, TAnsiString& out, int flags) {
  out.clear();
  if (!isValid(date)) return out;
  if (flags & 2) {
    if (date.leap) out.append(kLeapPrefix);
    out.append(kMonthNames[date.month - 1]).append(kMonthSuffix);
  }
  if (flags & 1) out.append(kDayNames[date.day - 1]);
  return out;
}

TAnsiString& pdate2Animal_signs(const tpdate& date, TAnsiString& out) {
  out.clear();
  if (isValid(date)) out.append(kAnimals[cycleIndex(date.year) % 12]);
  return out;
}

TAnsiString& pdate2TianGanDiZhi(const tpdate& date, TAnsiString& out) {
  out.clear();
  if (!isValid(date)) return out;
  const int k = cycleIndex(date.year);
  return out.append(kStems[k % 10]).append(kBranches[k % 12]);
}

// ---- tpdate -----------------------------------------------------------------------------------

TDateTime tpdate::asGDate() const {
  if (!isValid(*this)) return TDateTime();
  TDateTime date;
  date.setDate(dayNumberOf(year, month, day, leap));
  return date;
}

void tpdate::loadcurrent() {
  TDate today;
  today.loadcurrentlocal();
  if (today.year() != 0) fromGDate(today.year(), today.month(), today.day());
}

int tpdate::fromGDate(int y, int m, int d) {
  return GDateToPDate(y, m, d, &year, &month, &day, &leap);
}

int tpdate::fromGDate(const long long& dayNumber) {
  return GDateToPDateByTDate(dayNumber, &year, &month, &day, &leap);
}

int tpdate::incMonth(int n, int clampDay) {
  return incPMonth(&year, &month, &day, &leap, n, clampDay);
}

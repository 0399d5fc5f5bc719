// tpdate.h: the Chinese lunisolar calendar for the lunar years 1900-2100: conversion to and from
// Gregorian dates, lunar month arithmetic, the Chinese texts of a lunar date (GB2312) and the
// dates of the 24 solar terms.
//
// A lunar year has twelve months of 29 or 30 days and, in some years, a leap month that follows
// the ordinary month of the same number and counts as a month of its own. Lunar 1900-01-01 is
// Gregorian 1900-01-31; dates before it convert to the placeholder lunar date 1899-01-01.
//
//   tpdate lunar;
//   lunar.fromGDate(2023, 3, 22);                 // lunar 2023, leap month 2, day 1
//   TAnsiString text;
//   pdate2text(lunar, text, 3);                   // GB2312 for 润二月初一
//   pdate2TianGanDiZhi(lunar, text);              // GB2312 for 癸卯
//   TDateTime term = getLunarTermDay(2024, 0);    // 2024-01-06 00:00:00.000
//
// The text tables hold these words, stored as GB2312 bytes:
//   stems     甲 乙 丙 丁 戊 己 庚 辛 壬 癸
//   branches  子 丑 寅 卯 辰 巳 午 未 申 酉 戌 亥
//   animals   鼠 牛 虎 兔 龙 蛇 马 羊 猴 鸡 狗 猪
//   months    一 二 三 四 五 六 七 八 九 十 十一 十二, followed by 月
//             (a leap month is prefixed with 润)
//   days      初一 ... 初十 十一 ... 十九 二十 廿一 ... 廿九 三十
//
// Lunar dates are valid (PDateIsValid) for the years whose months are tabled, 1900-2100, so the
// placeholder 1899-01-01 is not a valid date. Nothing here logs or fails loudly: bad input gives
// the zero, negative or empty results each function documents.
#ifndef ZEB_DATETIME_TPDATE_H
#define ZEB_DATETIME_TPDATE_H

#include "zeb/datetime/mdatetime.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/zeb_api.h"

// A lunar date: year, month (1-12), day (1-30), and a leap flag (non-zero when the month is the
// year's leap month). Default-constructed it is the placeholder 1899-01-01.
class ZEB_API tpdate {
 public:
  int year = 1899;
  int month = 1;
  int day = 1;
  int leap = 0;

  tpdate() = default;
  tpdate(int year, int month, int day, int leap) : year(year), month(month), day(day), leap(leap) {}

  // The Gregorian date, time 00:00:00.000; the null time for an invalid lunar date.
  TDateTime asGDate() const;
  // Today's lunar date by the local clock (unchanged when the system cannot tell the time).
  void loadcurrent();
  // The lunar date of a Gregorian date; the result of GDateToPDate.
  int fromGDate(int year, int month, int day);
  // The lunar date of a day number; the result of GDateToPDateByTDate.
  int fromGDate(const long long& dayNumber);
  // incPMonth on this date; 1, or 0 with the date unchanged.
  int incMonth(int n, int clampDay);
};

extern "C" {

// ---- conversion ---------------------------------------------------------------------------------

// The lunar date of a Gregorian date: -2 for a year outside 1900-2100, -1 for an invalid date,
// else the result of GDateToPDateByTDate. Null outputs are skipped.
ZEB_API int GDateToPDate(int year, int month, int day, int* pYear, int* pMonth, int* pDay,
                         int* pLeap);
// The lunar date of a day number (days from 1899-12-30). 1 when converted; 0 for a day before
// Gregorian 1900-01-31 or after the last day of lunar 2100, with the outputs set to the
// placeholder 1899-01-01, not leap. Null outputs are skipped.
ZEB_API int GDateToPDateByTDate(long long dayNumber, int* pYear, int* pMonth, int* pDay,
                                int* pLeap);
// The Gregorian date of a lunar date: 1 with the outputs written; 0 for an invalid lunar date
// (PDateIsValid), outputs untouched. Null outputs are skipped.
ZEB_API int PDateToGDate(int pYear, int pMonth, int pDay, int pLeap, int* year, int* month,
                         int* day);

// ---- the year's months -----------------------------------------------------------------------

// 1 when the year is 1900-2100, the month 1-12, a set leap flag names the year's leap month and
// the day is 1 to the month's length; else 0.
ZEB_API int PDateIsValid(int pYear, int pMonth, int pDay, int pLeap);
// The year's leap month, 0 when it has none or the year is outside 1900-2100.
ZEB_API int GetLeapMonthInPYear(int pYear);
// The length of ordinary month `pMonth` (29 or 30); with leap non-zero, the length of the year's
// leap month whatever `pMonth` says (0 when the year has none). 0 for a year outside 1900-2100
// or a month outside 1-12.
ZEB_API int getPMonthDays(int pYear, int pMonth, int leap);

// ---- arithmetic ---------------------------------------------------------------------------------

// Moves the lunar date by n months (n < 0 moves back), a leap month counting as a month of its
// own. A day past the new month's end becomes its last day when clampDay is non-zero and is kept
// otherwise (the date is then not valid). 1 with the date written back; 0, date untouched, for
// null pointers, an invalid starting month (a year outside 1900-2100, a month outside 1-12, a
// leap flag on a month that is not the leap month) or a result outside 1900-2100.
ZEB_API int incPMonth(int* pYear, int* pMonth, int* pDay, int* pLeap, int n, int clampDay);
// The days from the first lunar date to the second (negative when the second is earlier), through
// their day numbers; 0 when either is invalid.
ZEB_API long long DaysBetweenPDate(int fromYear, int fromMonth, int fromDay, int fromLeap,
                                   int toYear, int toMonth, int toDay, int toLeap);

// ---- searches -----------------------------------------------------------------------------------

// From the lunar month (y, m, leap) forward, month by month with leap months included, to the
// first month that has day d; gives up once the year has advanced by 5 or passed 2100. 1 with the
// found month written to y, m and leap; 0 with the outputs untouched (also for null pointers or
// an invalid starting month).
ZEB_API int findPDateInDay(int* y, int* m, int* d, int* leap);
// From year y forward, through at most 60 years and not past 2100, to the first year in which
// month m (its leap month, with leap set) has day d. 1 with y written; 0 as above.
ZEB_API int findPDateInMonthDay(int* y, int* m, int* d, int* leap);

}  // extern "C"

// The date of solar term `term` (0-23, from the one near January 6) in Gregorian year `year`,
// time 00:00:00.000; the null time for a term outside 0-23 or a year outside 1900-2100. It
// returns a TDateTime and so has C++ linkage.
ZEB_API TDateTime getLunarTermDay(int year, int term);

// ---- texts (GB2312) ---------------------------------------------------------------------------

// flags bit 1: the month (润 for a leap month, the month name, 月); bit 0: the day name after it.
// An invalid date leaves `out` empty. Returns `out`.
ZEB_API TAnsiString& pdate2text(const tpdate& date, TAnsiString& out, int flags);
// The year's animal: animals[((year - 4) mod 60) mod 12]; empty for an invalid date.
ZEB_API TAnsiString& pdate2Animal_signs(const tpdate& date, TAnsiString& out);
// The year's stem and branch: stems[((year - 4) mod 60) mod 10] then
// branches[((year - 4) mod 60) mod 12]; empty for an invalid date.
ZEB_API TAnsiString& pdate2TianGanDiZhi(const tpdate& date, TAnsiString& out);

#endif  // ZEB_DATETIME_TPDATE_H

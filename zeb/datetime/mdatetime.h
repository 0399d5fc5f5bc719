// mdatetime.h: calendar arithmetic in the proleptic Gregorian calendar, the packed date-time
// record, text forms and the clocks.
//
// Day numbers count days from 1899-12-30 (day 0), so 1900-01-01 is day 2; they are defined for
// 0001-01-01 .. 9999-12-31 (days -693593 .. 2958465). TDate is a date as three 16-bit fields.
// TDateTime packs a date and time into one unsigned 64-bit value whose integer order is the order
// of the instants (bit 0 = least significant):
//
//   bits  0-9  milliseconds   10-15 second   16-21 minute   22-26 hour
//   bits 27-31 day            32-35 month    36-47 year     48-63 extra word
//
// The extra word is no calendar field: copies, the old-format conversion and every member that
// changes calendar fields keep it; the constructors zero it. Setters store their argument masked to
// the field width without validating it; setDateTime and setTime validate and write a level-1
// assertion record for each field out of range (see tdatetimeCheckLine), then store anyway.
//
// Text forms (asDateTimeString styles, year month day hour minute second):
//   0 "2024-03-09 07:05:00"   1 "20240309070500"   2 "20240309-070500"   3 "2024:03:09 07:05:00"
//   5 "2024-03-09 07:05"      6 "202403090705"     7 "2024:03:09 07:05"  4, other "20240309-0705"
// asDateString: 1 "20240309", other "2024-03-09". asTimeString: 0 "07:05:00", 1 "070500",
// 2 "07:05", other "0705".
//
// The parsers accept each of these forms and, in addition, ISO 8601 spellings: 'T' (or 't')
// between date and time, a fractional second after the seconds ('.' or ',' and 1..9 digits,
// kept to the millisecond, truncated) and a zone designator after the time ('Z', or '+'/'-'
// followed by hh, hhmm or hh:mm). A text with a zone designator names an instant and is stored
// converted to UTC; a text without one is stored as written. See TDateTime::parseFromString.
//
//   TDateTime due(2024, 1, 31, 9, 30, 0, 0);
//   due.incMonth(1, 1);                          // 2024-02-29 09:30:00, the day clamped
//   TAnsiString text = due.asDateTimeString(0);  // "2024-02-29 09:30:00"
//   TDateTime back;
//   back.fromDateTimeString("2024-02-29T08:30:00+01:00", -1);  // 07:30 UTC
//   long long minutes = minutesDelta(due, back);                 // 120
#ifndef ZEB_DATETIME_MDATETIME_H
#define ZEB_DATETIME_MDATETIME_H

#include "zeb/platform/wintypes.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/zeb_api.h"

class TDateTime;

// The line numbers that the validation records of TDateTime::setDateTime and TDateTime::setTime
// carry, one per check. A record is written at level 1 with the source "datetime/mdatetime", the
// function "TDateTime::setDateTime" or "TDateTime::setTime" and one of these lines.
enum tdatetimeCheckLine : int {
  DATETIME_CHECK_YEAR = 401,
  DATETIME_CHECK_MONTH = 402,
  DATETIME_CHECK_DAY = 403,
  DATETIME_CHECK_HOUR = 404,
  DATETIME_CHECK_MINUTE = 405,
  DATETIME_CHECK_SECOND = 406,
  DATETIME_CHECK_MS = 407,
  TIME_CHECK_HOUR = 421,
  TIME_CHECK_MINUTE = 422,
  TIME_CHECK_SECOND = 423,
  TIME_CHECK_MS = 424,
};

// A date as year, month (1-12) and day (1-31). Default-constructed it is all zero (invalid).
class ZEB_API TDate {
 public:
  TDate() = default;
  TDate(short year, short month, short day) : year_(year), month_(month), day_(day) {}
  // Decodes a day number; one outside 0001-01-01 .. 9999-12-31 gives the all-zero date.
  explicit TDate(long long dayNumber);

  // The day number of the date (EncodeDate: 0 for an invalid date).
  long long asDateInt() const;
  int year() const { return year_; }
  int month() const { return month_; }
  int day() const { return day_; }
  void setdays(int year, int month, int day);
  void fromDateTime(const TDateTime& dateTime);
  // Today by the local clock; unchanged when the system cannot tell the time.
  void loadcurrentlocal();
  // Adds days. An invalid date, or a result outside 0001-01-01 .. 9999-12-31, leaves it unchanged.
  void incDay(int days);
  // Adds months; the day is kept even when the new month is shorter (2023-01-31 + 1 gives
  // 2023-02-31, which is not a valid date).
  void IncMonth(int months);

 private:
  short year_ = 0;
  short month_ = 0;
  short day_ = 0;
};

class ZEB_API TDateTime {
 public:
  // The null time (all 64 bits zero).
  TDateTime() = default;
  // Packs each value masked to its field width, without validating; an hour of 24 becomes 0 on the
  // same date. The extra word is zero.
  TDateTime(int year, int month, int day, int hour, int minute, int second, int ms);
  // The raw packed value (not a count of any unit).
  explicit TDateTime(unsigned long long packed) : value_(packed) {}
  // The date of `date`, time 00:00:00.000.
  explicit TDateTime(const TDate& date);

  static TDateTime nulltime() { return TDateTime(); }
  bool isNull() const { return value_ == 0; }
  void clear() { value_ = 0; }

  // ---- the raw value
  // ------------------------------------------------------------------------------
  unsigned long long asUInt64() const { return value_; }
  unsigned long long asDateTimeInt() const { return value_; }
  void setUInt64(unsigned long long packed) { value_ = packed; }

  // ---- fields
  // ------------------------------------------------------------------------------------
  int year() const;
  int getYear() const { return year(); }
  int month() const;
  int day() const;
  int hour() const;
  int minute() const;
  int second() const;
  int ms() const;

  // Store the argument masked to the field width (setYear(4096) stores 0); no validation.
  void setYear(int year);
  void setMonth(int month);
  void setday(int day);
  void sethour(int hour);
  void setminute(int minute);
  void setsecond(int second);
  void setms(int ms);

  // Stores the three date fields; the time is kept.
  void setDate(int year, int month, int day);
  // Decodes the day number into the date fields; the time is kept. A day number outside
  // 0001-01-01 .. 9999-12-31 stores the date fields 0.
  void setDate(const long long& dayNumber);
  // Checks, in this order, year 1-4096, month 1-12, day 1-31, hour 0-23, minute 0-59, second
  // 0-59 and ms 0-1000, writing an assertion record for each failure (DATETIME_CHECK_*), then
  // stores as the seven-value constructor does (masked, hour-24 rule). True when every check
  // passed.
  bool setDateTime(int year, int month, int day, int hour, int minute, int second, int ms);
  // The same for the time fields only (TIME_CHECK_* records); the date is kept.
  bool setTime(int hour, int minute, int second, int ms);
  // Takes year, month and day from `other`.
  void copyDateOnly(const TDateTime& other);

  // year != 0, month 1-12, day >= 1, hour < 24, minute < 60, second < 60, ms <= 1000. The day is
  // not checked against the month's length.
  bool isValid() const;
  // isValid() and minYear >= 0 and minYear <= year and (maxYear < 0 or year <= maxYear).
  bool isNormalValid(int minYear, int maxYear) const;
  // Equal year, month and day fields.
  bool dateEqual(const TDateTime& other) const;
  bool dateEqual(const unsigned long long& packed) const;

  // ---- the old packed layout
  // --------------------------------------------------------------------- Old layout: second 0-5,
  // minute 6-11, hour 12-16, day 17-21, month 22-25, year 26-37, milliseconds 38-47, extra word
  // 48-63. Both directions carry the extra word across.
  void fromOldInt(unsigned long long oldPacked);
  unsigned long long toOldInt() const;

  // ---- comparison and differences
  // ---------------------------------------------------------------- Whole 64-bit values compare,
  // extra word included.
  bool operator==(const TDateTime& other) const { return value_ == other.value_; }
  bool operator!=(const TDateTime& other) const { return value_ != other.value_; }
  bool operator<(const TDateTime& other) const { return value_ < other.value_; }
  bool operator>(const TDateTime& other) const { return value_ > other.value_; }
  bool operator<=(const TDateTime& other) const { return value_ <= other.value_; }
  bool operator>=(const TDateTime& other) const { return value_ >= other.value_; }
  // secondsDelta(*this, other).
  long long operator-(const TDateTime& other) const;
  long long secondsDeltaWith(const TDateTime& other) const;
  long long minutesDeltaWith(const TDateTime& other) const;

  // ---- arithmetic
  // -------------------------------------------------------------------------------- Through day
  // numbers; the finer fields are kept (incMinute keeps second and ms, incSecond keeps ms). False,
  // and the record unchanged, when the date is not a valid date or the result falls outside the
  // years 1..4095 that the record can hold.
  bool incDay(int days);
  bool incWeek(int weeks);
  bool incMinute(long long minutes);
  bool incSecond(long long seconds);
  // Month arithmetic: the year and month move by `months`; when the day does not exist in the new
  // month, a non-zero clampDay moves it to the month's last day, clampDay 0 leaves it (an invalid
  // date). The Result forms return false only in that last case. incYear moves by 12 * years.
  void incMonth(int months, int clampDay);
  void incYear(int years, int clampDay);
  bool incMonthResult(int months, int clampDay);
  bool incYearResult(int years, int clampDay);

  // ---- Unix time and FILETIME
  // -------------------------------------------------------------------- 1970-01-01 00:00:00 plus
  // `seconds` (fromUnixTimeStampMs: plus ms div 1000 seconds; the rest is dropped); ms 0. False,
  // and the record unchanged, when the result is after 4095-12-31.
  bool fromUnixTimeStampSecond(unsigned long long seconds);
  bool fromUnixTimeStampMs(unsigned long long ms);
  // Seconds since 1970-01-01 00:00:00 (secondsDelta; negative before 1970).
  long long asUnixTimeStampSecond() const;
  // 100-ns units since 1601-01-01 00:00:00 of the whole seconds; {0, 0} for earlier times.
  FILETIME asWindowsFileTime() const;
  // False, and the record unchanged, when the result is after 4095-12-31.
  bool fromWindowsFileTime(const FILETIME& fileTime);

  // ---- clocks and zones
  // -------------------------------------------------------------------------- The current time
  // (UTC / local) to the millisecond; unchanged when the system cannot tell it.
  void loadCurrentUTC();
  void loadcurrentlocal();
  // Treats the record as UTC and makes it local time, or the reverse, by the system's zone rules
  // (TZ). The milliseconds are kept. False, and the record unchanged, when the record is not
  // valid or the result falls outside the years 1..4095. A local time inside a daylight-saving gap
  // moves forward by the gap; one that occurs twice takes the offset the system picks.
  bool convertToLocal();
  bool convertToUTC();

  // ---- text
  // -------------------------------------------------------------------------------------- The
  // forms listed at the top of this header. Fields print as stored (no validation).
  TAnsiString asDateTimeString(int style = 0) const;
  TWideString asDateTimeStringW(int style = 0) const;
  TAnsiString asDateString(int style = 0) const;
  TAnsiString asTimeString(int style = 0) const;

  // Parses `text` into the record. `length` counts the units to read (negative: up to the NUL; a
  // NUL within `length` ends the text). Spaces, tabs, CR and LF around the text are ignored; the
  // rest must match a layout as a whole.
  //
  // dateOnly true: the text is a date; the date fields are replaced and the time is kept. `style`
  // picks the layout as asDateString does (1: "20240309", any other value >= 0: "2024-03-09");
  // a negative style accepts either.
  //
  // dateOnly false: the text is a date and a time; every field is replaced (ms from the fraction,
  // else 0). `style` picks the layout as asDateTimeString does (0..3, 5..7, any other value >= 0
  // the layout of 4); a negative style accepts every layout and also a bare date (time
  // 00:00:00). A run of digits with no separator (styles 1 and 6) is ambiguous when its year has
  // fewer than four digits; with a negative style the reading with the longer year wins.
  //
  // Separated layouts take one or two digits for month, day, hour, minute and second and one to
  // four for the year; compact layouts take exactly two digits per field. The date must exist
  // (year 1..4095, the day within the month), the time must be 00:00:00..23:59:59. The extra word
  // is kept. False, and the record unchanged, for a null text or a text that does not match.
  bool parseFromString(const char* text, int length, int style, bool dateOnly);
  bool parseFromString(const zwchar_t* text, int length, int style, bool dateOnly);
  // parseFromString(text, -1, style, true) / parseFromString(text, -1, style, false).
  bool fromDateString(const char* text, int style);
  bool fromDateTimeString(const char* text, int style);

 private:
  unsigned long long value_ = 0;
};

extern "C" {

// ---- day numbers ------------------------------------------------------------------------------

// The day number of a date; 0 (which is also 1899-12-30) unless GDateIsValid(year, month, day).
ZEB_API long long EncodeDate(int year, int month, int day);
// The date of a day number; all three outputs 0 for a day number outside 0001-01-01 ..
// 9999-12-31. Null outputs are skipped.
ZEB_API void DecodeDate(long long dayNumber, int* year, int* month, int* day);
// Encode, add `days`, decode (so an invalid date or a result out of range gives 0, 0, 0).
ZEB_API void IncDate(int year, int month, int day, int* outYear, int* outMonth, int* outDay,
                     long long days);
// Monday = 1 ... Sunday = 7, for any day number.
ZEB_API int DayOfWeek(long long dayNumber);
// The 1-based day of the year; 0 for a month outside 1..12.
ZEB_API int DayOfGYear(int year, int month, int day);
// Days in the month (February 29 in leap years); 0 for a month outside 1..12.
ZEB_API int daysOfMonthG(int year, int month);
// 1 <= year <= 9999, 1 <= month <= 12 and 1 <= day <= days in the month.
ZEB_API bool GDateIsValid(int year, int month, int day);

// ---- week rows (Monday to Sunday) ---------------------------------------------------------------
// Each returns 0 for an invalid year or month, a weekday outside 1..7, or a day that does not
// exist.

// The number of Monday-first week rows the month touches.
ZEB_API int weeksInMonth(int year, int month);
// The day number of `weekday` in week row `row` (0 = the row holding the 1st), or 0.
ZEB_API long long getDateByWeeksday(int year, int month, unsigned char row, unsigned char weekday);
// The day number of the n-th (0-based) occurrence of `weekday` in the month, or 0.
ZEB_API long long getDateByWeekdays(int year, int month, unsigned char n, unsigned char weekday);
// The day number of `weekday` in the month's last week row, or 0 when that row ends before it.
ZEB_API long long lastweekDayDate(int year, int month, unsigned char weekday);

// ---- searches -----------------------------------------------------------------------------------

// From (year, month) forward month by month to the first month that has `day`; gives up once the
// year has advanced by 5. 1 and the found date written back, or 0 with the outputs untouched
// (also for null pointers or a month outside 1..12).
ZEB_API int findGDateInDay(int* year, int* month, int* day);
// From `year` forward through at most 60 years to the first that has month/day. 1 or 0 as above.
ZEB_API int findGDateInMonthDay(int* year, int* month, int* day);

// ---- minute time --------------------------------------------------------------------------------

// The packed layout of TDateTime with ms 0 (seconds included), built as the seven-value
// constructor builds it.
ZEB_API unsigned long long EncodeMinuteTime(int year, int month, int day, int hour, int minute,
                                            int second);
// Unpacks; null outputs are skipped.
ZEB_API void DecodeMinuteTime(unsigned long long packed, int* year, int* month, int* day, int* hour,
                              int* minute, int* second);
// The same over the old layout (see TDateTime::fromOldInt).
ZEB_API unsigned long long EncodeMinuteTimeOld(int year, int month, int day, int hour, int minute,
                                               int second);
ZEB_API void DecodeMinuteTimeOld(unsigned long long packed, int* year, int* month, int* day,
                                 int* hour, int* minute, int* second);

// ---- clocks -------------------------------------------------------------------------------------

// Monotonic milliseconds since the library was loaded (keeps counting while threads sleep).
ZEB_API long long zeb_timems(void);
// The system's monotonic millisecond tick, truncated to 32 bits (wraps after about 49.7 days).
ZEB_API unsigned int GetSysTickCount(void);
// The wall clock in milliseconds since 1970-01-01 00:00:00 UTC, with sub-millisecond steps
// between calls from a high-resolution counter; the counter's base is taken again whenever it
// drifts 500 ms or more from the wall clock (so a clock change shows at the next call).
ZEB_API double zeb_currenttime(void);

}  // extern "C"

// ---- packed values ------------------------------------------------------------------------------
// Exported undecorated like the functions above, although they pass TDateTime: a C++ caller sees
// no difference, and the packed value is one 64-bit integer on every ABI the library supports.

#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
extern "C" {

// The member operations on a packed value. IncMonth returns incMonthResult (false for a null
// pointer); the others return the new value (the argument unchanged where the member fails).
ZEB_API bool IncMonth(TDateTime* dateTime, int months, int clampDay);
ZEB_API TDateTime IncWeek(TDateTime dateTime, int weeks);
ZEB_API TDateTime IncMinute(TDateTime dateTime, long long minutes);
ZEB_API TDateTime IncSecond(TDateTime dateTime, long long seconds);
// a - b in whole minutes / seconds through day numbers; seconds (minutesDelta) and milliseconds
// are ignored.
ZEB_API long long minutesDelta(TDateTime a, TDateTime b);
ZEB_API long long secondsDelta(TDateTime a, TDateTime b);
// A duration as fields: second, minute, hour of the day; then of the whole days, year = days div
// 365, month = (days mod 365) div 30, day = (days mod 365) mod 30. A negative duration is taken
// by its magnitude. Fields are masked to their widths (years above 4095 wrap).
ZEB_API TDateTime FormatSecondsDelta(long long seconds);
// a - b field by field from the second upward, borrowing 60 for seconds and minutes, 24 for
// hours, 30 for days and 12 for months; the year is the absolute difference. Stored through
// setDateTime(..., 0), so a zero year, month or day writes validation records.
ZEB_API TDateTime FormatTwoTimeDelta(TDateTime a, TDateTime b);

}  // extern "C"
#if defined(__clang__)
#pragma clang diagnostic pop
#endif

#endif  // ZEB_DATETIME_MDATETIME_H

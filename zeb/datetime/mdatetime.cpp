// mdatetime.cpp: day numbers, the packed date-time record and its arithmetic, text forms, and the
// clocks. The calendar itself is in internal/calendar.h, the text layouts in
// internal/datetime_text.h; the system's clocks and zone rules come from platform/clock.h.
#include "zeb/datetime/mdatetime.h"

#include <initializer_list>
#include <mutex>
#include <type_traits>

#include "zeb/datetime/internal/calendar.h"
#include "zeb/datetime/internal/datetime_text.h"
#include "zeb/log/internal/assertion_record.h"
#include "zeb/log/zeb_log.h"
#include "zeb/platform/clock.h"

namespace dt = zeb::datetime;
using zeb::platform::TimeFields;

namespace {

// ---- the packed layout --------------------------------------------------------------------------

struct BitField {
  unsigned shift;
  unsigned width;
};

constexpr BitField kMsField{0, 10};
constexpr BitField kSecondField{10, 6};
constexpr BitField kMinuteField{16, 6};
constexpr BitField kHourField{22, 5};
constexpr BitField kDayField{27, 5};
constexpr BitField kMonthField{32, 4};
constexpr BitField kYearField{36, 12};

constexpr unsigned long long fieldMask(BitField field) {
  return ((1ULL << field.width) - 1) << field.shift;
}

constexpr unsigned long long kDateBits =
    fieldMask(kDayField) | fieldMask(kMonthField) | fieldMask(kYearField);
constexpr unsigned long long kExtraWordBits = 0xFFFFULL << 48;
// The six calendar fields above the milliseconds: 38 bits, at bit 10 now and at bit 0 in the old
// layout, which keeps the milliseconds at bit 38.
constexpr unsigned kOldMsShift = 38;
constexpr unsigned long long kCalendarFieldBits = (1ULL << 38) - 1;

int getField(unsigned long long value, BitField field) {
  return static_cast<int>((value & fieldMask(field)) >> field.shift);
}

// Stores `x` masked to the field width (negative values wrap, as any unsigned conversion does).
unsigned long long putField(unsigned long long value, BitField field, long long x) {
  return (value & ~fieldMask(field)) |
         ((static_cast<unsigned long long>(x) << field.shift) & fieldMask(field));
}

unsigned long long withDate(unsigned long long value, long long year, long long month,
                            long long day) {
  return putField(putField(putField(value, kYearField, year), kMonthField, month), kDayField, day);
}

// The time fields masked, then an hour of 24 becomes 0 (the date does not move).
unsigned long long withTime(unsigned long long value, long long hour, long long minute,
                            long long second, long long ms) {
  value = putField(value, kHourField, hour);
  if (getField(value, kHourField) == 24) value = putField(value, kHourField, 0);
  return putField(putField(putField(value, kMinuteField, minute), kSecondField, second), kMsField,
                  ms);
}

unsigned long long withFields(unsigned long long value, const TimeFields& f) {
  return withTime(withDate(value, f.year, f.month, f.day), f.hour, f.minute, f.second,
                  f.millisecond);
}

TimeFields fieldsOf(unsigned long long value) {
  return TimeFields{getField(value, kYearField),   getField(value, kMonthField),
                    getField(value, kDayField),    getField(value, kHourField),
                    getField(value, kMinuteField), getField(value, kSecondField),
                    getField(value, kMsField)};
}

unsigned long long toOldLayout(unsigned long long value) {
  return (value & kExtraWordBits) |
         (static_cast<unsigned long long>(getField(value, kMsField)) << kOldMsShift) |
         ((value >> kSecondField.shift) & kCalendarFieldBits);
}

unsigned long long fromOldLayout(unsigned long long old) {
  return (old & kExtraWordBits) | ((old >> kOldMsShift) & fieldMask(kMsField)) |
         ((old & kCalendarFieldBits) << kSecondField.shift);
}

// ---- day numbers --------------------------------------------------------------------------------

constexpr long long kSecondsPerDay = 86400;
constexpr long long kSecondsPerMinute = 60;
constexpr long long kMinutesPerDay = 1440;
// Larger moves leave every record's range (about 12,700 years of seconds).
constexpr long long kMaxMoveSeconds = 400000000000LL;
constexpr long long kMaxMoveDays = kMaxMoveSeconds / kSecondsPerDay;
constexpr long long kLastStoredDayNumber = dt::encodeDayNumber(dt::kMaxStoredYear, 12, 31);

bool isInDayNumberRange(long long dayNumber) {
  return dayNumber >= dt::kFirstDayNumber && dayNumber <= dt::kLastDayNumber;
}

long long dayNumberOf(const TimeFields& f) {
  return EncodeDate(f.year, f.month, f.day);
}

long long secondsOfDay(const TimeFields& f) {
  return f.hour * 3600LL + f.minute * kSecondsPerMinute + f.second;
}

void store(int* out, int value) {
  if (out != nullptr) *out = value;
}

// The date of a day number; all zero outside 0001-01-01 .. 9999-12-31.
dt::CivilDate civilDateOf(long long dayNumber) {
  return isInDayNumberRange(dayNumber) ? dt::decodeDayNumber(dayNumber) : dt::CivilDate{0, 0, 0};
}

void storeDate(const dt::CivilDate& date, int* year, int* month, int* day) {
  store(year, date.year);
  store(month, date.month);
  store(day, date.day);
}

// Moves a record with a valid date by `days` and `seconds` (each within kMaxMove*). Moving by
// seconds turns the time of day into a count of seconds and back (so out-of-range time fields
// carry over); moving by days alone keeps the time fields as they are. False, and *value
// unchanged, when the date is invalid or the result leaves the years 1..4095.
bool moveRecord(unsigned long long* value, long long days, long long seconds) {
  TimeFields f = fieldsOf(*value);
  if (!GDateIsValid(f.year, f.month, f.day)) return false;
  long long dayNumber = dayNumberOf(f) + days;
  if (seconds != 0) {
    const long long total = secondsOfDay(f) + seconds;
    const long long carry = dt::floorDiv(total, kSecondsPerDay);
    const long long rest = total - carry * kSecondsPerDay;
    dayNumber += carry;
    f.hour = static_cast<int>(rest / 3600);
    f.minute = static_cast<int>(rest / kSecondsPerMinute % 60);
    f.second = static_cast<int>(rest % kSecondsPerMinute);
  }
  if (dayNumber < dt::kFirstDayNumber || dayNumber > kLastStoredDayNumber) return false;
  const dt::CivilDate date = dt::decodeDayNumber(dayNumber);
  f.year = date.year;
  f.month = date.month;
  f.day = date.day;
  *value = withFields(*value, f);
  return true;
}

bool moveRecordBySeconds(unsigned long long* value, long long seconds) {
  return seconds >= -kMaxMoveSeconds && seconds <= kMaxMoveSeconds && moveRecord(value, 0, seconds);
}

// Sets the record to 00:00:00 of January 1 of `baseYear` plus `seconds`.
bool setFromOffset(unsigned long long* value, int baseYear, unsigned long long seconds) {
  unsigned long long candidate = withFields(*value, TimeFields{baseYear, 1, 1, 0, 0, 0, 0});
  const unsigned long long days = seconds / kSecondsPerDay;
  if (days > static_cast<unsigned long long>(kMaxMoveDays) ||
      !moveRecord(&candidate, static_cast<long long>(days),
                  static_cast<long long>(seconds % kSecondsPerDay))) {
    return false;
  }
  *value = candidate;
  return true;
}

// Moves (year, month) by `months`; a month outside 1..12 counts on from January of `year`.
void moveMonths(long long* year, long long* month, long long months) {
  const long long total = *year * 12 + (*month - 1) + months;
  *year = dt::floorDiv(total, 12);
  *month = total - *year * 12 + 1;
}

bool addMonthsToRecord(unsigned long long* value, long long months, int clampDay) {
  long long year = getField(*value, kYearField);
  long long month = getField(*value, kMonthField);
  moveMonths(&year, &month, months);
  *value = putField(putField(*value, kYearField, year), kMonthField, month);
  const TimeFields f = fieldsOf(*value);
  if (GDateIsValid(f.year, f.month, f.day)) return true;
  if (clampDay == 0) return false;
  *value = putField(*value, kDayField, daysOfMonthG(f.year, f.month));
  return true;
}

bool convertZone(unsigned long long* value, bool toLocal) {
  const TimeFields f = fieldsOf(*value);
  TimeFields converted{};
  if (!dt::isStorableDateTime(f) ||
      !(toLocal ? zeb::platform::utcToLocal(f, &converted)
                : zeb::platform::localToUtc(f, &converted)) ||
      !dt::isStorableDateTime(converted)) {
    return false;
  }
  *value = withFields(*value, converted);
  return true;
}

// ---- validation records -------------------------------------------------------------------------

constexpr char kSourceName[] = "datetime/mdatetime";

struct FieldCheck {
  int value;
  int low;
  int high;
  tdatetimeCheckLine line;
};

// Runs every check, writing an assertion record for each that fails; true when all pass.
bool runChecks(const char* function, std::initializer_list<FieldCheck> checks) {
  bool allPassed = true;
  for (const FieldCheck& check : checks) {
    if (check.value >= check.low && check.value <= check.high) continue;
    allPassed = false;
    zeb::internal::writeAssertionRecord(kSourceName, function, check.line);
  }
  return allPassed;
}

// ---- text ---------------------------------------------------------------------------------------

// Longest text (white space around it aside) that can match a layout: a four-digit year, ISO
// separators, nine fraction digits and a zone.
constexpr size_t kMaxParsedLength = 64;

bool isWhiteSpace(unsigned unit) {
  return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n';
}

// The text as ASCII bytes without the white space around it. False for a unit above 0x7F or a
// text too long to match any layout.
template <typename Unit>
bool collectAscii(const Unit* text, int length, char (&out)[kMaxParsedLength], size_t* size) {
  using UnsignedUnit = std::make_unsigned_t<Unit>;
  const auto unitAt = [text](size_t i) { return static_cast<unsigned>(UnsignedUnit(text[i])); };
  size_t end = 0;
  while ((length < 0 || end < static_cast<size_t>(length)) && unitAt(end) != 0) ++end;
  size_t begin = 0;
  while (begin < end && isWhiteSpace(unitAt(begin))) ++begin;
  while (end > begin && isWhiteSpace(unitAt(end - 1))) --end;
  if (end - begin > kMaxParsedLength) return false;
  for (size_t i = begin; i < end; ++i) {
    if (unitAt(i) > 0x7F) return false;
    out[i - begin] = static_cast<char>(unitAt(i));
  }
  *size = end - begin;
  return true;
}

template <typename Unit>
bool parseInto(unsigned long long* value, const Unit* text, int length, int style, bool dateOnly) {
  char ascii[kMaxParsedLength];
  size_t size = 0;
  dt::ParsedText parsed{};
  if (text == nullptr || !collectAscii(text, length, ascii, &size) ||
      !dt::parseText(ascii, size, style, dateOnly, &parsed)) {
    return false;
  }
  const TimeFields& f = parsed.fields;
  if (dateOnly) {
    *value = withDate(*value, f.year, f.month, f.day);
    return true;
  }
  unsigned long long candidate = withFields(*value, f);
  if (parsed.hasZone && !moveRecord(&candidate, 0, -kSecondsPerMinute * parsed.zoneMinutes)) {
    return false;
  }
  *value = candidate;
  return true;
}

TAnsiString formatRecord(unsigned long long value, const dt::TextLayout& layout) {
  char text[dt::kMaxFormattedLength];
  const size_t length = dt::formatFields(fieldsOf(value), layout, text);
  return TAnsiString(text, static_cast<int>(length));
}

// ---- the refined wall clock ---------------------------------------------------------------------

constexpr double kRebaseDriftMs = 500.0;

struct RefinedClock {
  std::mutex lock;
  bool based = false;
  long long baseWallMs = 0;
  unsigned long long baseCounter = 0;
};

}  // namespace

// ---- TDate --------------------------------------------------------------------------------------

TDate::TDate(long long dayNumber) {
  int year = 0;
  int month = 0;
  int day = 0;
  DecodeDate(dayNumber, &year, &month, &day);
  setdays(year, month, day);
}

long long TDate::asDateInt() const {
  return EncodeDate(year_, month_, day_);
}

void TDate::setdays(int year, int month, int day) {
  year_ = static_cast<short>(year);
  month_ = static_cast<short>(month);
  day_ = static_cast<short>(day);
}

void TDate::fromDateTime(const TDateTime& dateTime) {
  setdays(dateTime.year(), dateTime.month(), dateTime.day());
}

void TDate::loadcurrentlocal() {
  TimeFields now{};
  if (zeb::platform::systemTimeLocal(&now)) setdays(now.year, now.month, now.day);
}

void TDate::incDay(int days) {
  const long long moved = asDateInt() + days;
  if (GDateIsValid(year_, month_, day_) && isInDayNumberRange(moved)) *this = TDate(moved);
}

void TDate::IncMonth(int months) {
  long long year = year_;
  long long month = month_;
  moveMonths(&year, &month, months);
  setdays(static_cast<int>(year), static_cast<int>(month), day_);
}

// ---- TDateTime: construction and fields ---------------------------------------------------------

TDateTime::TDateTime(int year, int month, int day, int hour, int minute, int second, int ms)
    : value_(withTime(withDate(0, year, month, day), hour, minute, second, ms)) {}

TDateTime::TDateTime(const TDate& date)
    : value_(withDate(0, date.year(), date.month(), date.day())) {}

int TDateTime::year() const {
  return getField(value_, kYearField);
}
int TDateTime::month() const {
  return getField(value_, kMonthField);
}
int TDateTime::day() const {
  return getField(value_, kDayField);
}
int TDateTime::hour() const {
  return getField(value_, kHourField);
}
int TDateTime::minute() const {
  return getField(value_, kMinuteField);
}
int TDateTime::second() const {
  return getField(value_, kSecondField);
}
int TDateTime::ms() const {
  return getField(value_, kMsField);
}

void TDateTime::setYear(int year) {
  value_ = putField(value_, kYearField, year);
}
void TDateTime::setMonth(int month) {
  value_ = putField(value_, kMonthField, month);
}
void TDateTime::setday(int day) {
  value_ = putField(value_, kDayField, day);
}
void TDateTime::sethour(int hour) {
  value_ = putField(value_, kHourField, hour);
}
void TDateTime::setminute(int minute) {
  value_ = putField(value_, kMinuteField, minute);
}
void TDateTime::setsecond(int second) {
  value_ = putField(value_, kSecondField, second);
}
void TDateTime::setms(int ms) {
  value_ = putField(value_, kMsField, ms);
}

void TDateTime::setDate(int year, int month, int day) {
  value_ = withDate(value_, year, month, day);
}

void TDateTime::setDate(const long long& dayNumber) {
  int year = 0;
  int month = 0;
  int day = 0;
  DecodeDate(dayNumber, &year, &month, &day);
  setDate(year, month, day);
}

bool TDateTime::setDateTime(int year, int month, int day, int hour, int minute, int second,
                            int ms) {
  const bool valid = runChecks("TDateTime::setDateTime", {{year, 1, 4096, DATETIME_CHECK_YEAR},
                                                          {month, 1, 12, DATETIME_CHECK_MONTH},
                                                          {day, 1, 31, DATETIME_CHECK_DAY},
                                                          {hour, 0, 23, DATETIME_CHECK_HOUR},
                                                          {minute, 0, 59, DATETIME_CHECK_MINUTE},
                                                          {second, 0, 59, DATETIME_CHECK_SECOND},
                                                          {ms, 0, 1000, DATETIME_CHECK_MS}});
  value_ = withTime(withDate(value_, year, month, day), hour, minute, second, ms);
  return valid;
}

bool TDateTime::setTime(int hour, int minute, int second, int ms) {
  const bool valid = runChecks("TDateTime::setTime", {{hour, 0, 23, TIME_CHECK_HOUR},
                                                      {minute, 0, 59, TIME_CHECK_MINUTE},
                                                      {second, 0, 59, TIME_CHECK_SECOND},
                                                      {ms, 0, 1000, TIME_CHECK_MS}});
  value_ = withTime(value_, hour, minute, second, ms);
  return valid;
}

void TDateTime::copyDateOnly(const TDateTime& other) {
  value_ = (value_ & ~kDateBits) | (other.value_ & kDateBits);
}

bool TDateTime::isValid() const {
  return year() != 0 && month() >= 1 && month() <= 12 && day() >= 1 && hour() < 24 &&
         minute() < 60 && second() < 60 && ms() <= 1000;
}

bool TDateTime::isNormalValid(int minYear, int maxYear) const {
  return isValid() && minYear >= 0 && minYear <= year() && (maxYear < 0 || year() <= maxYear);
}

bool TDateTime::dateEqual(const TDateTime& other) const {
  return dateEqual(other.value_);
}

bool TDateTime::dateEqual(const unsigned long long& packed) const {
  return (value_ & kDateBits) == (packed & kDateBits);
}

void TDateTime::fromOldInt(unsigned long long oldPacked) {
  value_ = fromOldLayout(oldPacked);
}

unsigned long long TDateTime::toOldInt() const {
  return toOldLayout(value_);
}

// ---- TDateTime: differences and arithmetic ------------------------------------------------------

long long TDateTime::operator-(const TDateTime& other) const {
  return secondsDelta(*this, other);
}

long long TDateTime::secondsDeltaWith(const TDateTime& other) const {
  return secondsDelta(*this, other);
}

long long TDateTime::minutesDeltaWith(const TDateTime& other) const {
  return minutesDelta(*this, other);
}

bool TDateTime::incDay(int days) {
  return moveRecord(&value_, days, 0);
}

bool TDateTime::incWeek(int weeks) {
  return moveRecord(&value_, 7LL * weeks, 0);
}

bool TDateTime::incMinute(long long minutes) {
  return minutes >= -kMaxMoveSeconds / kSecondsPerMinute &&
         minutes <= kMaxMoveSeconds / kSecondsPerMinute &&
         moveRecordBySeconds(&value_, minutes * kSecondsPerMinute);
}

bool TDateTime::incSecond(long long seconds) {
  return moveRecordBySeconds(&value_, seconds);
}

void TDateTime::incMonth(int months, int clampDay) {
  incMonthResult(months, clampDay);
}

void TDateTime::incYear(int years, int clampDay) {
  incYearResult(years, clampDay);
}

bool TDateTime::incMonthResult(int months, int clampDay) {
  return addMonthsToRecord(&value_, months, clampDay);
}

bool TDateTime::incYearResult(int years, int clampDay) {
  return addMonthsToRecord(&value_, 12LL * years, clampDay);
}

// ---- TDateTime: Unix time and FILETIME ----------------------------------------------------------

namespace {

constexpr int kUnixEpochYear = 1970;
constexpr int kFileTimeEpochYear = 1601;
constexpr unsigned long long kFileTimeTicksPerSecond = 10000000ULL;

TDateTime startOfYear(int year) {
  return TDateTime(year, 1, 1, 0, 0, 0, 0);
}

}  // namespace

bool TDateTime::fromUnixTimeStampSecond(unsigned long long seconds) {
  return setFromOffset(&value_, kUnixEpochYear, seconds);
}

bool TDateTime::fromUnixTimeStampMs(unsigned long long ms) {
  return fromUnixTimeStampSecond(ms / 1000);
}

long long TDateTime::asUnixTimeStampSecond() const {
  return secondsDelta(*this, startOfYear(kUnixEpochYear));
}

FILETIME TDateTime::asWindowsFileTime() const {
  FILETIME fileTime{0, 0};
  const long long seconds = secondsDelta(*this, startOfYear(kFileTimeEpochYear));
  if (!GDateIsValid(year(), month(), day()) || seconds <= 0) return fileTime;
  const unsigned long long ticks =
      static_cast<unsigned long long>(seconds) * kFileTimeTicksPerSecond;
  fileTime.dwLowDateTime = static_cast<DWORD>(ticks);
  fileTime.dwHighDateTime = static_cast<DWORD>(ticks >> 32);
  return fileTime;
}

bool TDateTime::fromWindowsFileTime(const FILETIME& fileTime) {
  const unsigned long long ticks =
      (static_cast<unsigned long long>(fileTime.dwHighDateTime) << 32) | fileTime.dwLowDateTime;
  return setFromOffset(&value_, kFileTimeEpochYear, ticks / kFileTimeTicksPerSecond);
}

// ---- TDateTime: clocks and zones ----------------------------------------------------------------

void TDateTime::loadCurrentUTC() {
  TimeFields now{};
  if (zeb::platform::systemTimeUtc(&now)) value_ = withFields(value_, now);
}

void TDateTime::loadcurrentlocal() {
  TimeFields now{};
  if (zeb::platform::systemTimeLocal(&now)) value_ = withFields(value_, now);
}

bool TDateTime::convertToLocal() {
  return convertZone(&value_, true);
}

bool TDateTime::convertToUTC() {
  return convertZone(&value_, false);
}

// ---- TDateTime: text ----------------------------------------------------------------------------

TAnsiString TDateTime::asDateTimeString(int style) const {
  return formatRecord(value_, dt::dateTimeLayout(style));
}

TWideString TDateTime::asDateTimeStringW(int style) const {
  const TAnsiString text = asDateTimeString(style);
  zwchar_t wide[dt::kMaxFormattedLength];
  int length = 0;
  for (const char* p = text.p(); *p != '\0'; ++p) wide[length++] = static_cast<zwchar_t>(*p);
  return TWideString(wide, length);
}

TAnsiString TDateTime::asDateString(int style) const {
  return formatRecord(value_, dt::dateLayout(style));
}

TAnsiString TDateTime::asTimeString(int style) const {
  return formatRecord(value_, dt::timeLayout(style));
}

bool TDateTime::parseFromString(const char* text, int length, int style, bool dateOnly) {
  return parseInto(&value_, text, length, style, dateOnly);
}

bool TDateTime::parseFromString(const zwchar_t* text, int length, int style, bool dateOnly) {
  return parseInto(&value_, text, length, style, dateOnly);
}

bool TDateTime::fromDateString(const char* text, int style) {
  return parseFromString(text, -1, style, true);
}

bool TDateTime::fromDateTimeString(const char* text, int style) {
  return parseFromString(text, -1, style, false);
}

// ---- day numbers --------------------------------------------------------------------------------

long long EncodeDate(int year, int month, int day) {
  return GDateIsValid(year, month, day) ? dt::encodeDayNumber(year, month, day) : 0;
}

void DecodeDate(long long dayNumber, int* year, int* month, int* day) {
  storeDate(civilDateOf(dayNumber), year, month, day);
}

void IncDate(int year, int month, int day, int* outYear, int* outMonth, int* outDay,
             long long days) {
  const bool movable =
      GDateIsValid(year, month, day) && days >= -kMaxMoveDays && days <= kMaxMoveDays;
  storeDate(movable ? civilDateOf(EncodeDate(year, month, day) + days) : dt::CivilDate{0, 0, 0},
            outYear, outMonth, outDay);
}

int DayOfWeek(long long dayNumber) {
  // Day 0 (1899-12-30) was a Saturday.
  const int weekday = static_cast<int>((dt::floorMod(dayNumber, 7) + 6) % 7);
  return weekday == 0 ? 7 : weekday;
}

int DayOfGYear(int year, int month, int day) {
  return month >= 1 && month <= 12 ? dt::dayOfYear(year, month, day) : 0;
}

int daysOfMonthG(int year, int month) {
  return month >= 1 && month <= 12 ? dt::daysInMonth(year, month) : 0;
}

bool GDateIsValid(int year, int month, int day) {
  return dt::isValidDate(year, month, day);
}

// ---- week rows ----------------------------------------------------------------------------------

namespace {

// What the week-row functions need of a month: the weekday of its 1st, its length and the index
// of its last week row.
struct MonthGrid {
  int year;
  int month;
  int firstWeekday;
  int days;
  int lastRow;

  long long dayNumberOfDay(long long day) const {
    return day >= 1 && day <= days ? EncodeDate(year, month, static_cast<int>(day)) : 0;
  }
};

bool monthGrid(int year, int month, MonthGrid* grid) {
  if (!GDateIsValid(year, month, 1)) return false;
  const int first = DayOfWeek(EncodeDate(year, month, 1));
  const int days = daysOfMonthG(year, month);
  *grid = MonthGrid{year, month, first, days, (days - 2 + first) / 7};
  return true;
}

bool isWeekday(unsigned char weekday) {
  return weekday >= 1 && weekday <= 7;
}

}  // namespace

int weeksInMonth(int year, int month) {
  MonthGrid grid{};
  return monthGrid(year, month, &grid) ? grid.lastRow + 1 : 0;
}

long long getDateByWeeksday(int year, int month, unsigned char row, unsigned char weekday) {
  MonthGrid grid{};
  if (!isWeekday(weekday) || !monthGrid(year, month, &grid) || row > grid.lastRow) return 0;
  if (row == 0 && weekday < grid.firstWeekday) return 0;
  return grid.dayNumberOfDay(row * 7 + weekday - grid.firstWeekday + 1);
}

long long getDateByWeekdays(int year, int month, unsigned char n, unsigned char weekday) {
  MonthGrid grid{};
  if (!isWeekday(weekday) || !monthGrid(year, month, &grid) || n > grid.lastRow) return 0;
  if (weekday >= grid.firstWeekday)
    return grid.dayNumberOfDay(n * 7 + weekday - grid.firstWeekday + 1);
  return grid.dayNumberOfDay(n * 7 + weekday + 8 - grid.firstWeekday);
}

long long lastweekDayDate(int year, int month, unsigned char weekday) {
  MonthGrid grid{};
  if (!isWeekday(weekday) || !monthGrid(year, month, &grid)) return 0;
  return grid.dayNumberOfDay(weekday + 1 + 7 * grid.lastRow - grid.firstWeekday);
}

// ---- searches -----------------------------------------------------------------------------------

namespace {

constexpr int kDaySearchYears = 5;
constexpr int kMonthDaySearchYears = 60;

void storeFound(int* year, int* month, long long foundYear, int foundMonth) {
  *year = static_cast<int>(foundYear);
  *month = foundMonth;
}

}  // namespace

int findGDateInDay(int* year, int* month, int* day) {
  if (year == nullptr || month == nullptr || day == nullptr || *month < 1 || *month > 12) return 0;
  long long candidateYear = *year;
  int candidateMonth = *month;
  while (candidateYear - *year < kDaySearchYears) {
    if (dt::isValidDate(candidateYear, candidateMonth, *day)) {
      storeFound(year, month, candidateYear, candidateMonth);
      return 1;
    }
    if (++candidateMonth > 12) {
      candidateMonth = 1;
      ++candidateYear;
    }
  }
  return 0;
}

int findGDateInMonthDay(int* year, int* month, int* day) {
  if (year == nullptr || month == nullptr || day == nullptr) return 0;
  for (long long candidate = *year; candidate - *year < kMonthDaySearchYears; ++candidate) {
    if (dt::isValidDate(candidate, *month, *day)) {
      storeFound(year, month, candidate, *month);
      return 1;
    }
  }
  return 0;
}

// ---- minute time --------------------------------------------------------------------------------

unsigned long long EncodeMinuteTime(int year, int month, int day, int hour, int minute,
                                    int second) {
  return TDateTime(year, month, day, hour, minute, second, 0).asUInt64();
}

void DecodeMinuteTime(unsigned long long packed, int* year, int* month, int* day, int* hour,
                      int* minute, int* second) {
  const TimeFields f = fieldsOf(packed);
  store(year, f.year);
  store(month, f.month);
  store(day, f.day);
  store(hour, f.hour);
  store(minute, f.minute);
  store(second, f.second);
}

unsigned long long EncodeMinuteTimeOld(int year, int month, int day, int hour, int minute,
                                       int second) {
  return toOldLayout(EncodeMinuteTime(year, month, day, hour, minute, second));
}

void DecodeMinuteTimeOld(unsigned long long packed, int* year, int* month, int* day, int* hour,
                         int* minute, int* second) {
  DecodeMinuteTime(fromOldLayout(packed), year, month, day, hour, minute, second);
}

// ---- clocks -------------------------------------------------------------------------------------

long long zeb_timems(void) {
  return zeb::platform::millisecondsSinceLoad();
}

unsigned int GetSysTickCount(void) {
  return static_cast<unsigned int>(zeb::platform::monotonicMilliseconds());
}

double zeb_currenttime(void) {
  static RefinedClock clock;
  std::lock_guard<std::mutex> guard(clock.lock);
  const long long wallMs = zeb::platform::wallClockMilliseconds();
  const unsigned long long counter = zeb::platform::highResolutionCounter();
  if (clock.based) {
    const double elapsedMs = static_cast<double>(counter - clock.baseCounter) * 1000.0 /
                             static_cast<double>(zeb::platform::highResolutionFrequency());
    const double refined = static_cast<double>(clock.baseWallMs) + elapsedMs;
    const double drift = refined - static_cast<double>(wallMs);
    if (drift < kRebaseDriftMs && drift > -kRebaseDriftMs) return refined;
  }
  clock.based = true;
  clock.baseWallMs = wallMs;
  clock.baseCounter = counter;
  return static_cast<double>(wallMs);
}

// ---- packed values ------------------------------------------------------------------------------

bool IncMonth(TDateTime* dateTime, int months, int clampDay) {
  return dateTime != nullptr && dateTime->incMonthResult(months, clampDay);
}

TDateTime IncWeek(TDateTime dateTime, int weeks) {
  dateTime.incWeek(weeks);
  return dateTime;
}

TDateTime IncMinute(TDateTime dateTime, long long minutes) {
  dateTime.incMinute(minutes);
  return dateTime;
}

TDateTime IncSecond(TDateTime dateTime, long long seconds) {
  dateTime.incSecond(seconds);
  return dateTime;
}

long long minutesDelta(TDateTime a, TDateTime b) {
  const TimeFields fa = fieldsOf(a.asUInt64());
  const TimeFields fb = fieldsOf(b.asUInt64());
  return (dayNumberOf(fa) - dayNumberOf(fb)) * kMinutesPerDay + (fa.hour - fb.hour) * 60LL +
         (fa.minute - fb.minute);
}

long long secondsDelta(TDateTime a, TDateTime b) {
  const TimeFields fa = fieldsOf(a.asUInt64());
  const TimeFields fb = fieldsOf(b.asUInt64());
  return (dayNumberOf(fa) - dayNumberOf(fb)) * kSecondsPerDay + secondsOfDay(fa) - secondsOfDay(fb);
}

TDateTime FormatSecondsDelta(long long seconds) {
  const unsigned long long total = seconds < 0 ? 0ULL - static_cast<unsigned long long>(seconds)
                                               : static_cast<unsigned long long>(seconds);
  const unsigned long long days = total / kSecondsPerDay;
  const auto asField = [](unsigned long long x) { return static_cast<long long>(x); };
  return TDateTime(
      withTime(withDate(0, asField(days / 365), asField(days % 365 / 30), asField(days % 365 % 30)),
               asField(total / 3600 % 24), asField(total / 60 % 60), asField(total % 60), 0));
}

namespace {

// x - y - *borrow, plus `base` (and *borrow set) when that is negative.
int borrowingDifference(int x, int y, int base, int* borrow) {
  const int difference = x - y - *borrow;
  *borrow = difference < 0 ? 1 : 0;
  return difference < 0 ? difference + base : difference;
}

}  // namespace

TDateTime FormatTwoTimeDelta(TDateTime a, TDateTime b) {
  int borrow = 0;
  const int second = borrowingDifference(a.second(), b.second(), 60, &borrow);
  const int minute = borrowingDifference(a.minute(), b.minute(), 60, &borrow);
  const int hour = borrowingDifference(a.hour(), b.hour(), 24, &borrow);
  const int day = borrowingDifference(a.day(), b.day(), 30, &borrow);
  const int month = borrowingDifference(a.month(), b.month(), 12, &borrow);
  const int yearDifference = a.year() - b.year() - borrow;
  TDateTime result;
  result.setDateTime(yearDifference < 0 ? -yearDifference : yearDifference, month, day, hour,
                     minute, second, 0);
  return result;
}

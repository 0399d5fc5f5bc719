// datetime_text.h: the text layouts of dates and times, one description per style that both the
// formatter and the parser follow, so that every text the formatter writes parses back.
//
// A layout is a date (year, month, day: separated by dateSeparator, or run together), a middle
// separator, and a time (hour, minute and optionally second: separated by timeSeparator, or run
// together). The parser also takes the ISO 8601 extras on every layout: 'T' for the middle
// separator, a fraction after the seconds and a zone designator after the time.
#ifndef ZEB_DATETIME_INTERNAL_DATETIME_TEXT_H
#define ZEB_DATETIME_INTERNAL_DATETIME_TEXT_H

#include <stddef.h>

#include "zeb/datetime/internal/calendar.h"
#include "zeb/platform/clock.h"

namespace zeb {
namespace datetime {

struct TextLayout {
  bool hasDate;
  char dateSeparator;  // '-' or ':'; 0: digits run together
  char middle;         // ' ', '-' or 0 (nothing between date and time)
  bool hasTime;
  char timeSeparator;  // ':' or 0
  bool hasSeconds;
};

// The layouts of TDateTime::asDateTimeString, asDateString and asTimeString.
inline TextLayout dateTimeLayout(int style) {
  switch (style) {
    case 0:
      return {true, '-', ' ', true, ':', true};
    case 1:
      return {true, 0, 0, true, 0, true};
    case 2:
      return {true, 0, '-', true, 0, true};
    case 3:
      return {true, ':', ' ', true, ':', true};
    case 5:
      return {true, '-', ' ', true, ':', false};
    case 6:
      return {true, 0, 0, true, 0, false};
    case 7:
      return {true, ':', ' ', true, ':', false};
    default:
      return {true, 0, '-', true, 0, false};
  }
}

inline TextLayout dateLayout(int style) {
  return {true, style == 1 ? '\0' : '-', 0, false, 0, false};
}

inline TextLayout timeLayout(int style) {
  return {false, 0, 0, true, style == 0 || style == 2 ? ':' : '\0', style == 0 || style == 1};
}

// ---- formatting ---------------------------------------------------------------------------------

// Longest text a layout produces from stored fields (at most 4 digits each), NUL included.
constexpr size_t kMaxFormattedLength = 32;

inline char* appendNumber(char* out, int value, int minDigits) {
  char digits[12];
  int count = 0;
  unsigned rest = static_cast<unsigned>(value);
  do {
    digits[count++] = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  for (; count < minDigits; --minDigits) *out++ = '0';
  while (count > 0) *out++ = digits[--count];
  return out;
}

// Writes the fields `layout` names, as stored (0..4095), and a NUL into `out`; returns the length.
inline size_t formatFields(const platform::TimeFields& fields, const TextLayout& layout,
                           char* out) {
  char* p = out;
  if (layout.hasDate) {
    p = appendNumber(p, fields.year, 1);
    if (layout.dateSeparator != 0) *p++ = layout.dateSeparator;
    p = appendNumber(p, fields.month, 2);
    if (layout.dateSeparator != 0) *p++ = layout.dateSeparator;
    p = appendNumber(p, fields.day, 2);
  }
  if (layout.hasDate && layout.hasTime && layout.middle != 0) *p++ = layout.middle;
  if (layout.hasTime) {
    p = appendNumber(p, fields.hour, 2);
    if (layout.timeSeparator != 0) *p++ = layout.timeSeparator;
    p = appendNumber(p, fields.minute, 2);
    if (layout.hasSeconds) {
      if (layout.timeSeparator != 0) *p++ = layout.timeSeparator;
      p = appendNumber(p, fields.second, 2);
    }
  }
  *p = '\0';
  return static_cast<size_t>(p - out);
}

// ---- parsing ------------------------------------------------------------------------------------

// The outcome of parsing one text.
struct ParsedText {
  platform::TimeFields fields;  // millisecond from the fraction, 0 without one
  bool hasZone;
  int zoneMinutes;  // offset east of UTC
};

// A cursor over the text with the few kinds of token the layouts are made of.
class TextScanner {
 public:
  TextScanner(const char* text, size_t length) : p_(text), end_(text + length) {}

  bool atEnd() const { return p_ == end_; }
  char peek(size_t ahead = 0) const {
    return static_cast<size_t>(end_ - p_) > ahead ? p_[ahead] : '\0';
  }
  bool accept(char c) {
    if (atEnd() || *p_ != c) return false;
    ++p_;
    return true;
  }
  bool acceptT() { return accept('T') || accept('t'); }
  // One or more spaces.
  bool acceptSpaces() {
    bool any = false;
    while (accept(' ')) any = true;
    return any;
  }
  size_t digitsAhead() const {
    size_t count = 0;
    while (isDigit(peek(count))) ++count;
    return count;
  }
  // Exactly `count` (at most 9) digits, whatever follows them.
  bool take(size_t count, int* value) {
    if (count > 9 || digitsAhead() < count) return false;
    int result = 0;
    for (size_t i = 0; i < count; ++i) result = result * 10 + (*p_++ - '0');
    *value = result;
    return true;
  }
  // A whole run of minDigits..maxDigits digits.
  bool run(size_t minDigits, size_t maxDigits, int* value) {
    const size_t count = digitsAhead();
    return count >= minDigits && count <= maxDigits && take(count, value);
  }

 private:
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }

  const char* p_;
  const char* end_;
};

inline bool isT(char c) {
  return c == 'T' || c == 't';
}

inline size_t timeDigits(const TextLayout& layout) {
  return layout.hasSeconds ? 6 : 4;
}

inline bool parseDate(TextScanner& scan, const TextLayout& layout, platform::TimeFields* f) {
  const char sep = layout.dateSeparator;
  if (sep != 0) {
    return scan.run(1, 4, &f->year) && scan.accept(sep) && scan.run(1, 2, &f->month) &&
           scan.accept(sep) && scan.run(1, 2, &f->day);
  }
  size_t digits = scan.digitsAhead();
  // Without a middle separator the time's digits continue the run (unless an ISO 'T' splits it).
  if (layout.hasTime && layout.middle == 0 && !isT(scan.peek(digits))) {
    if (digits < timeDigits(layout)) return false;
    digits -= timeDigits(layout);
  }
  return digits >= 5 && digits <= 8 && scan.take(digits - 4, &f->year) && scan.take(2, &f->month) &&
         scan.take(2, &f->day);
}

inline bool parseMiddle(TextScanner& scan, const TextLayout& layout) {
  if (scan.acceptT()) return true;
  switch (layout.middle) {
    case ' ':
      return scan.acceptSpaces();
    case '-':
      return scan.accept('-');
    default:
      return true;
  }
}

inline bool parseTime(TextScanner& scan, const TextLayout& layout, platform::TimeFields* f) {
  const char sep = layout.timeSeparator;
  if (sep != 0) {
    return scan.run(1, 2, &f->hour) && scan.accept(sep) && scan.run(1, 2, &f->minute) &&
           (!layout.hasSeconds || (scan.accept(sep) && scan.run(1, 2, &f->second)));
  }
  return scan.take(2, &f->hour) && scan.take(2, &f->minute) &&
         (!layout.hasSeconds || scan.take(2, &f->second));
}

// An optional fraction of a second: '.' or ',' and 1..9 digits, kept to the millisecond.
inline bool parseFraction(TextScanner& scan, platform::TimeFields* f) {
  if (!scan.accept('.') && !scan.accept(',')) return true;
  const size_t digits = scan.digitsAhead();
  if (digits < 1 || digits > 9) return false;
  const size_t kept = digits < 3 ? digits : 3;
  int dropped = 0;
  if (!scan.take(kept, &f->millisecond) || !scan.take(digits - kept, &dropped)) return false;
  for (size_t i = kept; i < 3; ++i) f->millisecond *= 10;
  return true;
}

// An optional zone designator: 'Z', or a sign with hh, hhmm or hh:mm.
inline bool parseZone(TextScanner& scan, ParsedText* out) {
  if (scan.accept('Z') || scan.accept('z')) {
    out->hasZone = true;
    return true;
  }
  const int sign = scan.accept('+') ? 1 : scan.accept('-') ? -1 : 0;
  if (sign == 0) return true;
  int hours = 0;
  int minutes = 0;
  if (!scan.take(2, &hours)) return false;
  if ((scan.accept(':') || scan.digitsAhead() == 2) && !scan.take(2, &minutes)) return false;
  if (hours > 23 || minutes > 59) return false;
  out->hasZone = true;
  out->zoneMinutes = sign * (hours * 60 + minutes);
  return true;
}

inline bool isStorableDateTime(const platform::TimeFields& f) {
  return f.year <= kMaxStoredYear && isValidDate(f.year, f.month, f.day) && f.hour <= 23 &&
         f.minute <= 59 && f.second <= 59;
}

// Parses `text` (`length` bytes, surrounding white space already removed) as `layout` and checks
// that the date exists within the years 1..4095 and the time within the day.
inline bool parseLayout(const char* text, size_t length, const TextLayout& layout,
                        ParsedText* out) {
  TextScanner scan(text, length);
  ParsedText parsed{};
  platform::TimeFields& f = parsed.fields;
  if (!parseDate(scan, layout, &f)) return false;
  if (layout.hasTime &&
      !(parseMiddle(scan, layout) && parseTime(scan, layout, &f) &&
        (!layout.hasSeconds || parseFraction(scan, &f)) && parseZone(scan, &parsed))) {
    return false;
  }
  if (!scan.atEnd() || !isStorableDateTime(f)) return false;
  *out = parsed;
  return true;
}

// Parses with the layout of `style` (as dateTimeLayout / dateLayout pick it) or, for a negative
// style, with the first layout that matches: for date-times the styles 0, 3, 5, 7, 2, 4, 6, 1
// (6 before 1: an ambiguous run of digits gets the longer year) and then a bare date; for dates
// "y-mm-dd" then "yyyymmdd".
inline bool parseText(const char* text, size_t length, int style, bool dateOnly, ParsedText* out) {
  if (style >= 0) {
    return parseLayout(text, length, dateOnly ? dateLayout(style) : dateTimeLayout(style), out);
  }
  static constexpr int kDateTimeOrder[] = {0, 3, 5, 7, 2, 4, 6, 1};
  if (!dateOnly) {
    for (int candidate : kDateTimeOrder) {
      if (parseLayout(text, length, dateTimeLayout(candidate), out)) return true;
    }
  }
  return parseLayout(text, length, dateLayout(0), out) ||
         parseLayout(text, length, dateLayout(1), out);
}

}  // namespace datetime
}  // namespace zeb

#endif  // ZEB_DATETIME_INTERNAL_DATETIME_TEXT_H

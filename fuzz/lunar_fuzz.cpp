// Fuzzing of the lunar calendar's conversions on arbitrary dates. The input gives a Gregorian
// date (three 16-bit signed fields) and a lunar date (four 16-bit signed fields) plus a month
// step. A Gregorian date converts to a lunar date that converts back to it; a lunar date that is
// valid converts to a Gregorian date that converts back to it; an invalid one is refused; month
// steps keep a valid date valid (with clamping) and can be undone.
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "fuzz/fuzz_input.h"
#include "zeb/datetime/mdatetime.h"
#include "zeb/datetime/tpdate.h"

namespace {

int field(const uint8_t* data, size_t size, size_t i) {
  int16_t v = 0;
  if (2 * i + 2 <= size) memcpy(&v, data + 2 * i, 2);
  return v;
}

void gregorianRoundTrip(int year, int month, int day) {
  int y = 0, m = 0, d = 0, leap = 0;
  const int result = GDateToPDate(year, month, day, &y, &m, &d, &leap);
  if (year < 1900 || year > 2100) {
    FUZZ_CHECK(result == -2);
    return;
  }
  if (!GDateIsValid(year, month, day)) {
    FUZZ_CHECK(result == -1);
    return;
  }
  if (result == 0) {
    FUZZ_CHECK(EncodeDate(year, month, day) < EncodeDate(1900, 1, 31));
    return;
  }
  FUZZ_CHECK(result == 1 && PDateIsValid(y, m, d, leap) == 1);
  int gy = 0, gm = 0, gd = 0;
  FUZZ_CHECK(PDateToGDate(y, m, d, leap, &gy, &gm, &gd) == 1);
  FUZZ_CHECK(gy == year && gm == month && gd == day);
}

void lunarRoundTrip(int year, int month, int day, int leap, int step) {
  int gy = 0, gm = 0, gd = 0;
  const int result = PDateToGDate(year, month, day, leap, &gy, &gm, &gd);
  if (PDateIsValid(year, month, day, leap) != 1) {
    FUZZ_CHECK(result == 0);
    return;
  }
  FUZZ_CHECK(result == 1);
  // Lunar 2100 ends in Gregorian 2101, which only the day-number form accepts.
  tpdate back;
  FUZZ_CHECK(back.fromGDate(EncodeDate(gy, gm, gd)) == 1);
  FUZZ_CHECK(back.year == year && back.month == month && back.day == day &&
             (back.leap != 0) == (leap != 0));
  tpdate moved(year, month, day, leap);
  if (moved.incMonth(step, 1) == 1) {
    FUZZ_CHECK(PDateIsValid(moved.year, moved.month, moved.day, moved.leap) == 1);
    tpdate undone = moved;
    FUZZ_CHECK(undone.incMonth(-step, 0) == 1);
    FUZZ_CHECK(undone.year == year && undone.month == month && (undone.leap != 0) == (leap != 0));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  gregorianRoundTrip(field(data, size, 0), field(data, size, 1), field(data, size, 2));
  lunarRoundTrip(field(data, size, 3), field(data, size, 4), field(data, size, 5),
                 field(data, size, 6), field(data, size, 7));
  return 0;
}

// datetime_fuzz.cpp: libFuzzer target over the date-time text parsers.
//
// Input: byte 0 picks the style hint (-1..8), byte 1 the date-only flag (bit 0); the rest is the
// text, handed over with its exact length (NULs included). The text is parsed as 8-bit units, as
// the same bytes widened to 16-bit units (which must give the same outcome), and as 16-bit units
// made of byte pairs. A failed parse must leave the record alone; a successful one must give a
// valid date that formats as style 0 and parses back to the same fields (style 0 has no ms).
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

#include <vector>

#include "zeb/datetime/mdatetime.h"

namespace {

void require(bool condition) {
  if (!condition) abort();
}

// A starting record with every field and the extra word set, to tell "unchanged" apart.
const TDateTime kStart((0x5A5AULL << 48) | TDateTime(2001, 2, 3, 4, 5, 6, 7).asUInt64());

constexpr unsigned long long kMsBits = 0x3FF;

void checkOutcome(bool parsed, const TDateTime& record, bool dateOnly) {
  if (!parsed) {
    require(record == kStart);
    return;
  }
  require(record.asUInt64() >> 48 == kStart.asUInt64() >> 48);
  require(GDateIsValid(record.year(), record.month(), record.day()));
  require(record.isValid());
  TDateTime again = kStart;
  if (dateOnly) {
    require(again.fromDateString(record.asDateString(0).p(), 0));
    require(again == record);
  } else {
    require(again.fromDateTimeString(record.asDateTimeString(0).p(), 0));
    require((again.asUInt64() & ~kMsBits) == (record.asUInt64() & ~kMsBits));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const int style = data[0] % 10 - 1;
  const bool dateOnly = (data[1] & 1) != 0;
  const char* text = reinterpret_cast<const char*>(data + 2);
  const int length = static_cast<int>(size - 2);

  TDateTime narrow = kStart;
  const bool narrowParsed = narrow.parseFromString(text, length, style, dateOnly);
  checkOutcome(narrowParsed, narrow, dateOnly);

  std::vector<zwchar_t> widened(data + 2, data + size);
  widened.push_back(0);
  TDateTime wide = kStart;
  require(wide.parseFromString(widened.data(), length, style, dateOnly) == narrowParsed);
  require(wide == narrow);

  std::vector<zwchar_t> pairs((size - 2) / 2 + 1, 0);
  for (size_t i = 0; i + 1 < size - 2; i += 2) {
    pairs[i / 2] = static_cast<zwchar_t>(data[2 + i] | (data[3 + i] << 8));
  }
  TDateTime fromPairs = kStart;
  checkOutcome(fromPairs.parseFromString(pairs.data(), -1, style, dateOnly), fromPairs, dateOnly);
  return 0;
}

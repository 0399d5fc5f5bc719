// csv_fuzz.cpp: libFuzzer target over the CSV reader. The input, its NULs replaced, is taken apart
// with csv_skip_oneline and csv_parse_onefield and walked with TCsvFileReader::openFromMem; each
// step must move forward and stay inside the text, and the walk must report as many records as
// the skips found. The input is also quoted with csv_text_to_csvfield and must read back as itself.
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <string>

#include "fuzz/fuzz_input.h"
#include "zeb/formats/TCsvFileReader.h"

namespace {

// The records of `text` as csv_skip_oneline cuts them; every field of each must be taken within
// the record.
int skipAndSplit(std::string text) {
  char* const end = text.data() + text.size();
  int records = 0;
  for (char* p = text.data(); *p != '\0';) {
    char* next = csv_skip_oneline(p);
    FUZZ_CHECK(next > p && next <= end);
    std::string record(p, next);
    char* rest = record.data();
    const char* recordEnd = record.data() + record.size();
    while (rest != nullptr) {
      char* field = nullptr;
      char* after = csv_parse_onefield(rest, &field);
      FUZZ_CHECK(field != nullptr && strlen(field) <= size_t(recordEnd - rest));
      FUZZ_CHECK(after == nullptr || (after > rest && after <= recordEnd));
      rest = after;
    }
    ++records;
    p = next;
  }
  return records;
}

void quoteAndReadBack(std::string value) {
  const std::string original = value;
  char* written = csv_text_to_csvfield(value.data());
  FUZZ_CHECK(written != nullptr);
  std::string field = written;
  char* taken = nullptr;
  char* secondField = csv_parse_onefield(field.data(), &taken);
  FUZZ_CHECK(taken != nullptr && original == taken);
  FUZZ_CHECK(secondField == nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  std::replace(text.begin(), text.end(), '\0', ' ');
  const int records = skipAndSplit(text);
  TCsvFileReader reader(nullptr);
  FUZZ_CHECK(reader.openFromMem(text.c_str()) == records);
  quoteAndReadBack(text);
  return 0;
}

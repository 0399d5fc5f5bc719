// csv_fuzz.cpp: libFuzzer target over the CSV reader. The input, its NULs replaced, is taken apart
// with csv_skip_oneline and csv_parse_onefield and walked with TCsvFileReader::openFromMem; each
// step must move forward and stay inside the text, and the walk must report as many records as
// the skips found. The input is also quoted with csv_text_to_csvfield and must read back as itself.
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <string>

#include "zeb/formats/TCsvFileReader.h"

namespace {

void check(bool condition, const char* what) {
  if (!condition) {
    fprintf(stderr, "check failed: %s\n", what);
    abort();
  }
}

// The records of `text` as csv_skip_oneline cuts them; every field of each must be taken within
// the record.
int skipAndSplit(std::string text) {
  char* const end = text.data() + text.size();
  int records = 0;
  for (char* p = text.data(); *p != '\0';) {
    char* next = csv_skip_oneline(p);
    check(next > p && next <= end, "a skip moves forward within the text");
    std::string record(p, next);
    char* rest = record.data();
    const char* recordEnd = record.data() + record.size();
    while (rest != nullptr) {
      char* field = nullptr;
      char* after = csv_parse_onefield(rest, &field);
      check(field != nullptr && strlen(field) <= size_t(recordEnd - rest), "a field fits");
      check(after == nullptr || (after > rest && after <= recordEnd), "a field moves forward");
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
  check(written != nullptr, "quoting succeeds");
  std::string field = written;
  char* taken = nullptr;
  char* after = csv_parse_onefield(field.data(), &taken);
  check(taken != nullptr && original == taken, "a quoted value reads back as itself");
  check(after == nullptr, "one field only");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  std::replace(text.begin(), text.end(), '\0', ' ');
  const int records = skipAndSplit(text);
  TCsvFileReader reader(nullptr);
  check(reader.openFromMem(text.c_str()) == records, "the walk counts every record");
  quoteAndReadBack(text);
  return 0;
}

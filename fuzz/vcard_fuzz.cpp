// Fuzzes the vCard reader on arbitrary bytes. Whatever it reads must write out and read back as
// the same number of cards, every one of them well formed, with the same properties.
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <initializer_list>

#include "fuzz/fuzz_input.h"
#include "zeb/formats/tvcard.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  tvcardfile book;
  book.maxLineLength = 4096;
  book.readText(reinterpret_cast<const char*>(data), static_cast<int>(size));
  for (int version : {30, 40}) {
    const TAnsiString written = book.writeText(version);
    tvcardfile back;
    back.readText(written.p(), written.length());
    FUZZ_CHECK(back.count() == book.count());
    for (int i = 0; i < book.count(); ++i) {
      FUZZ_CHECK(back.card(i).status() == tvcard::Ok);
      FUZZ_CHECK(back.card(i).propertyCount() == book.card(i).propertyCount());
      for (int p = 0; p < book.card(i).propertyCount(); ++p) {
        FUZZ_CHECK(strcmp(back.card(i).propertyName(p), book.card(i).propertyName(p)) == 0);
        FUZZ_CHECK(back.card(i).bytes(p) == book.card(i).bytes(p));
      }
    }
  }
  return 0;
}

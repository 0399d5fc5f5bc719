// Fuzzes the vCard reader on arbitrary bytes. Whatever it reads must write out and read back as
// the same number of cards, every one of them well formed, with the same properties.
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <initializer_list>

#include "zeb/formats/tvcard.h"

namespace {

void check(bool condition) {
  if (!condition) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  tvcardfile book;
  book.maxLineLength = 4096;
  book.readText(reinterpret_cast<const char*>(data), static_cast<int>(size));
  for (int version : {30, 40}) {
    const TAnsiString written = book.writeText(version);
    tvcardfile back;
    back.readText(written.p(), written.length());
    check(back.count() == book.count());
    for (int i = 0; i < book.count(); ++i) {
      check(back.card(i).status() == tvcard::Ok);
      check(back.card(i).propertyCount() == book.card(i).propertyCount());
      for (int p = 0; p < book.card(i).propertyCount(); ++p) {
        check(strcmp(back.card(i).propertyName(p), book.card(i).propertyName(p)) == 0);
        check(back.card(i).bytes(p) == book.card(i).bytes(p));
      }
    }
  }
  return 0;
}

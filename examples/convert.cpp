// zeb_convert: reads a text file in a legacy charset and prints it as UTF-8, with the size of the
// text in each form.
//
//   zeb_convert FILE CHARSET       CHARSET as iconv names it: gb18030, BIG5, gb2312, Latin-9, ...
//   zeb_convert examples/data/jingyesi.big5.txt BIG5
#include <cstdio>

#include "zeb/zeb_common.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: %s FILE CHARSET\n", argv[0]);
    return 2;
  }
  const char* charset = argv[2];
  void* data = nullptr;
  const int size = mreadFileW(TWideString(argv[1], MIB_UTF8).p(), &data, true);
  if (size <= 0) {
    std::fprintf(stderr, "%s: cannot read %s (%d)\n", argv[0], argv[1], size);
    return 1;
  }
  TAnsiString text(static_cast<const char*>(data));
  zeb_deleteMem(data);

  if (!text.convertAnyToUtf8(charset)) {
    std::fprintf(stderr, "%s: %s is not valid %s text\n", argv[0], argv[1], charset);
    return 1;
  }
  const TWideString wide(text, MIB_UTF8);
  std::printf("%s (%s, %d bytes) -> UTF-8 (%d bytes, %d UTF-16 units):\n", argv[1], charset, size,
              text.length(), wide.length());
  std::fputs(text.p(), stdout);
  return 0;
}

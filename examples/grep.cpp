// zeb_grep: prints the lines of a text file that match a wildcard pattern, each with its 32-bit
// and 64-bit string hashes.
//
//   zeb_grep PATTERN [FILE]      FILE defaults to README.md
//   zeb_grep '*TODO*' notes.txt
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "zeb/zeb_common.h"

namespace {

bool readWholeFile(const char* path, std::string& content) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream text;
  text << in.rdbuf();
  content = text.str();
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s PATTERN [FILE]\n", argv[0]);
    return 2;
  }
  const char* pattern = argv[1];
  const char* path = argc > 2 ? argv[2] : "README.md";
  std::string content;
  if (!readWholeFile(path, content)) {
    std::fprintf(stderr, "%s: cannot read %s\n", argv[0], path);
    return 1;
  }

  TAnsiString line;
  TAnsiString report;
  int matches = 0;
  for (const char* rest = content.c_str(); rest != nullptr;) {
    rest = line.fromFirstLine(rest);
    const char* text = line.isEmpty() ? "" : line.p();
    if (!wildcardMatch(text, pattern)) continue;
    ++matches;
    report.sprintf("%08x %016llx  %s", line.hashValue(), line.hashValue64(), text);
    std::puts(report.p());
  }
  std::printf("%d matching line%s\n", matches, matches == 1 ? "" : "s");
  return 0;
}

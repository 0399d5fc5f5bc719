// ini_fuzz.cpp: libFuzzer target over TIniFile. The input is loaded from a file, saved, loaded
// again and saved again: the second save must equal the first (a save is a fixed point of load).
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <string>

#include "zeb/utils/TIniFile.h"

namespace {

void check(bool condition, const char* what) {
  if (!condition) {
    fprintf(stderr, "check failed: %s\n", what);
    abort();
  }
}

std::string readAll(const std::string& path) {
  std::string text;
  if (FILE* f = fopen(path.c_str(), "rb")) {
    char chunk[4096];
    for (size_t n; (n = fread(chunk, 1, sizeof chunk, f)) > 0;) text.append(chunk, n);
    fclose(f);
  }
  return text;
}

// Three files of this process in the temporary folder: the input and the two saves.
struct Paths {
  std::string input, first, second;
  Paths() {
    const std::string base = "/tmp/zeb_ini_fuzz_" + std::to_string(getpid());
    input = base + ".in";
    first = base + ".1";
    second = base + ".2";
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Paths paths;
  FILE* f = fopen(paths.input.c_str(), "wb");
  check(f != nullptr, "the input file opens");
  fwrite(data, 1, size, f);
  fclose(f);
  zeb::TIniFile ini;
  ini.load(paths.input);
  ini.saveas(paths.first);
  zeb::TIniFile again;
  check(again.load(paths.first), "a saved file loads");
  again.saveas(paths.second);
  check(readAll(paths.first) == readAll(paths.second), "saving is a fixed point");
  return 0;
}

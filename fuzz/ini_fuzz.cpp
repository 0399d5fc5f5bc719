// ini_fuzz.cpp: libFuzzer target over TIniFile. The input is loaded from a file, saved, loaded
// again and saved again: the second save must equal the first (a save is a fixed point of load).
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <unistd.h>

#include <string>

#include "fuzz/fuzz_input.h"
#include "zeb/utils/TIniFile.h"

namespace {

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
  std::string input, firstSave, secondSave;
  Paths() {
    const std::string base = "/tmp/zeb_ini_fuzz_" + std::to_string(getpid());
    input = base + ".in";
    firstSave = base + ".1";
    secondSave = base + ".2";
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Paths paths;
  FILE* inputFile = fopen(paths.input.c_str(), "wb");
  FUZZ_CHECK(inputFile != nullptr);
  fwrite(data, 1, size, inputFile);
  fclose(inputFile);
  zeb::TIniFile ini;
  ini.load(paths.input);
  ini.saveas(paths.firstSave);
  zeb::TIniFile again;
  FUZZ_CHECK(again.load(paths.firstSave));
  again.saveas(paths.secondSave);
  FUZZ_CHECK(readAll(paths.firstSave) == readAll(paths.secondSave));
  return 0;
}

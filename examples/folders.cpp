// folders.cpp: enumerates a folder, then copies it with a progress line.
//
//   zeb_folders SOURCE DESTINATION [PATTERN]
//
// Lists how many files and folders SOURCE holds (recursively) and the files whose names match
// PATTERN (default "*.h"), then copies the whole tree to DESTINATION, replacing existing files,
// while one console line shows how many files have been copied and the current one.
#include <cstdio>

#include "zeb/zeb_common.h"

namespace {

// Counts files and folders, and prints the paths of the files that match the pattern.
class TCounter : public tfileentrycallback {
 public:
  explicit TCounter(const zwchar_t* pattern) : m_pattern(pattern) {}
  int onEntry(const tfileentry& e) override {
    if (e.isFolder) {
      ++folders;
    } else {
      ++files;
      if (wildcardMatchW(e.name, m_pattern)) std::printf("  %s\n", TWideString(e.path).utf8().p());
    }
    return FILEENTRY_CONTINUE;
  }
  int files = 0;
  int folders = 0;

 private:
  const zwchar_t* m_pattern;
};

// Rewrites one console line per file copied.
class TProgress : public tfileentrycallback {
 public:
  int onEntry(const tfileentry& e) override {
    if (!e.isFolder) {
      ++m_files;
      std::printf("\rcopying file %4d: %-60.60s", m_files, TWideString(e.name).utf8().p());
      std::fflush(stdout);
    }
    return FILEENTRY_CONTINUE;
  }

 private:
  int m_files = 0;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: zeb_folders SOURCE DESTINATION [PATTERN]\n");
    return 2;
  }
  const TWideString source(argv[1], MIB_UTF8);
  const TWideString destination(argv[2], MIB_UTF8);
  const TWideString pattern(argc > 3 ? argv[3] : "*.h", MIB_UTF8);

  std::printf("files matching %s:\n", TWideString(pattern).utf8().p());
  TCounter counter(pattern.p());
  const int listed = tfileutils::enumFolderW(source.p(), nullptr,
                                             FILEENUM_FILES | FILEENUM_FOLDERS | FILEENUM_RECURSIVE,
                                             &counter);
  if (listed < 0) {
    std::fprintf(stderr, "cannot enumerate %s (%d)\n", argv[1], listed);
    return 1;
  }
  std::printf("%s: %d files in %d folders\n", argv[1], counter.files, counter.folders);

  TProgress progress;
  const int copied = copyfolder(source.p(), destination.p(), true, &progress);
  std::printf("\n%s -> %s: %d files copied\n", argv[1], argv[2], copied);
  return copied < 0 ? 1 : 0;
}

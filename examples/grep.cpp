// zeb_grep: prints the lines of a text file that match a wildcard pattern, each with its 32-bit
// and 64-bit string hashes. With --log DIR it also writes its work to DIR/zeb_grep.log: it puts
// the marker file "mdebug" into DIR, which turns the log up to debug level.
//
//   zeb_grep PATTERN [FILE] [--log DIR]      FILE defaults to README.md
//   zeb_grep '*TODO*' notes.txt --log /tmp/grep-logs
#include <cstdio>
#include <cstring>
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

// The path of `name` inside folder `dir`, as UTF-16.
TWideString pathIn(const char* dir, const char* name) {
  TAnsiString path(dir);
  path.ensureEndWithBacksplash('/');
  path += name;
  return TWideString(path, MIB_UTF8);
}

// Creates DIR with the marker file that selects debug level, then starts the log there.
void startLog(const char* dir) {
  mforceCreateDirW(TWideString(dir, MIB_UTF8).p());
  mwriteFileW(pathIn(dir, "mdebug").p(), nullptr, 0);
  mlogQuickInit("zeb_grep", pathIn(dir, "zeb_grep.log").utf8().p());
}

struct Options {
  const char* pattern = nullptr;
  const char* path = "README.md";
  const char* logDir = nullptr;
};

bool parseOptions(int argc, char** argv, Options& options) {
  int positional = 0;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--log") == 0 && i + 1 < argc) {
      options.logDir = argv[++i];
    } else if (positional == 0) {
      options.pattern = argv[i];
      ++positional;
    } else {
      options.path = argv[i];
      ++positional;
    }
  }
  return options.pattern != nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!parseOptions(argc, argv, options)) {
    std::fprintf(stderr, "usage: %s PATTERN [FILE] [--log DIR]\n", argv[0]);
    return 2;
  }
  if (options.logDir) startLog(options.logDir);
  std::string content;
  if (!readWholeFile(options.path, content)) {
    std::fprintf(stderr, "%s: cannot read %s\n", argv[0], options.path);
    ZEB_Log_Error("cannot read %s", options.path);
    mlogQuickFinalize();
    return 1;
  }
  ZEB_Log_Info("searching %s for '%s' (%d bytes)", options.path, options.pattern,
               static_cast<int>(content.size()));

  TAnsiString line;
  TAnsiString report;
  int matches = 0;
  for (const char* rest = content.c_str(); rest != nullptr;) {
    rest = line.fromFirstLine(rest);
    const char* text = line.isEmpty() ? "" : line.p();
    if (!wildcardMatch(text, options.pattern)) continue;
    ++matches;
    report.sprintf("%08x %016llx  %s", line.hashValue(), line.hashValue64(), text);
    std::puts(report.p());
    if (ZEB_LOG_ENABLED(MLOG_DEBUG))
      mlogWithLevel(MLOG_DEBUG, "grep", "match %d: %s", matches, text);
  }
  std::printf("%d matching line%s\n", matches, matches == 1 ? "" : "s");
  ZEB_Log_Info("%d matching lines", matches);
  mlogQuickFinalize();
  return 0;
}

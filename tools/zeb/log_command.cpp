// log_command.cpp: `zeb log level DIR [LEVEL] [--file]`, the log level of a log folder as its
// marker files set it. With LEVEL the folder gets the marker of that level in place of any other
// ("m<word>" for the global level, "f<word>" for the file level with --file); the folder is made
// when missing. Without LEVEL the markers in force are printed. LEVEL is a word (disable, assert,
// error, warning, info, debug, vb or verbose) or its number 0 to 6.
#include <array>
#include <filesystem>
#include <memory>
#include <system_error>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

const std::array<const char*, 7> kLevelWords = {"disable", "assert", "error", "warning",
                                                "info",    "debug",  "vb"};

struct LogLevelOptions {
  std::string dir;
  std::string level;
  bool fileLevel = false;
};

// The index of LEVEL in kLevelWords, or -1.
int levelOf(const std::string& level) {
  if (level == "verbose") return 6;
  if (level.size() == 1 && level[0] >= '0' && level[0] <= '6') return level[0] - '0';
  for (size_t i = 0; i < kLevelWords.size(); ++i) {
    if (level == kLevelWords[i]) return static_cast<int>(i);
  }
  return -1;
}

std::filesystem::path markerPath(const std::string& dir, char kind, const char* word) {
  return std::filesystem::u8path(dir) / (std::string(1, kind) + word);
}

// The word of the first marker of `kind` that exists, in the order the log reads them; "" when
// there is none.
std::string markerInForce(const std::string& dir, char kind) {
  std::error_code error;
  for (const char* word : kLevelWords) {
    if (std::filesystem::exists(markerPath(dir, kind, word), error)) return word;
  }
  return "";
}

int printMarkers(const std::string& dir) {
  std::error_code error;
  const std::string global = markerInForce(dir, 'm');
  const std::string file = markerInForce(dir, 'f');
  const bool console = std::filesystem::exists(markerPath(dir, 'm', "console"), error);
  return writeOutput("global: " + (global.empty() ? "(no marker)" : global) + "\nfile: " +
                     (file.empty() ? "(no marker: the global level)" : file) +
                     "\nconsole: " + (console ? "on" : "(no marker)") + "\n")
             ? kSuccess
             : kFailure;
}

int setMarker(const std::string& dir, char kind, int level) {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::u8path(dir), error);
  for (const char* word : kLevelWords) std::filesystem::remove(markerPath(dir, kind, word), error);
  const std::string marker = markerPath(dir, kind, kLevelWords[level]).u8string();
  if (mwriteFileW(TWideString(marker.c_str(), MIB_UTF8).p(), nullptr, 0) != 0) {
    reportError(dir + ": cannot write the marker file " + marker);
    return kFailure;
  }
  return kSuccess;
}

int runLogLevel(const LogLevelOptions& options) {
  if (options.level.empty()) return printMarkers(options.dir);
  const int level = levelOf(options.level);
  if (level < 0) {
    throw CLI::ValidationError("LEVEL", "'" + options.level + "' is not a log level");
  }
  return setMarker(options.dir, options.fileLevel ? 'f' : 'm', level);
}

}  // namespace

void addLogCommand(CLI::App& app, ToolRun& run) {
  CLI::App* log = app.add_subcommand("log", "Log folders.");
  log->require_subcommand(1);
  auto options = std::make_shared<LogLevelOptions>();
  CLI::App* level = log->add_subcommand(
      "level", "Set the level of a log folder through its marker file, or print the markers in "
               "force. LEVEL: disable, assert, error, warning, info, debug, vb, or 0 to 6.");
  level->add_option("dir", options->dir, "the log folder")->required();
  level->add_option("level", options->level, "the new level");
  level->add_flag("--file", options->fileLevel, "set the level of the log files only");
  level->callback([options, &run] { run.status = runLogLevel(*options); });
}

}  // namespace zebtool

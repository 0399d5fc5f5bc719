// hash_command.cpp: `zeb hash [--hash32|--hash64] [FILE...]`, one line per input in the layout
// of md5sum: the hash in lower-case hexadecimal, two spaces, the file name ("-" for standard
// input).
#include <cstdio>
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

struct HashOptions {
  std::string algorithm = "hash64";
  std::vector<std::string> files;
};

std::string hexOf(unsigned long long value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "%0*llx", digits, value);
  return text;
}

// The library's string hashes of `bytes`, by name.
std::string hashOf(const std::string& algorithm, const std::string& bytes) {
  const int length = static_cast<int>(bytes.size());
  if (algorithm == "hash32") return hexOf(TAnsiString::hashValue(bytes.data(), length), 8);
  return hexOf(TAnsiString::hashValue64(bytes.data(), length), 16);
}

int runHash(const HashOptions& options) {
  std::string output;
  for (const std::string& path : inputsOrStdin(options.files)) {
    std::string bytes;
    if (!readInput(path, bytes)) return kFailure;
    if (bytes.size() > 0x7fffffffu) {
      reportError(path + ": too large to hash");
      return kFailure;
    }
    output += hashOf(options.algorithm, bytes) + "  " + path + "\n";
  }
  return writeOutput(output) ? kSuccess : kFailure;
}

}  // namespace

void addHashCommand(CLI::App& app, ToolRun& run) {
  auto options = std::make_shared<HashOptions>();
  CLI::App* command = app.add_subcommand(
      "hash", "Hash files (standard input without FILE or with -), one line each as md5sum "
              "prints them.");
  command->add_flag_callback("--hash32", [options] { options->algorithm = "hash32"; },
                             "the library's 32-bit string hash");
  command->add_flag_callback("--hash64", [options] { options->algorithm = "hash64"; },
                             "the library's 64-bit string hash (the default)");
  command->add_option("files", options->files, "input files");
  command->callback([options, &run] { run.status = runHash(*options); });
}

}  // namespace zebtool

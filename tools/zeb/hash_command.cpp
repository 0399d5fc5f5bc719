// hash_command.cpp: `zeb hash [--md5|--crc32|--hash32|--hash64] [FILE...]`, one line per input
// in the layout of md5sum: the hash in lower-case hexadecimal, two spaces, the file name ("-" for
// standard input). MD5 is the default.
#include <cstdio>
#include <map>
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

const std::map<std::string, std::string> kDescriptions = {
    {"md5", "the MD5 digest (the default)"},
    {"crc32", "the CRC-32 of zip and gzip"},
    {"hash32", "the library's 32-bit string hash"},
    {"hash64", "the library's 64-bit string hash"},
};

struct HashOptions {
  std::string algorithm = "md5";
  std::vector<std::string> files;
};

std::string hexOf(unsigned long long value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "%0*llx", digits, value);
  return text;
}

// The digest or hash of `bytes` named by `algorithm`, in hexadecimal.
std::string hashOf(const std::string& algorithm, const std::string& bytes) {
  const int length = static_cast<int>(bytes.size());
  if (algorithm == "crc32") return hexOf(zeb_crc32(0, bytes.data(), length), 8);
  if (algorithm == "hash32") return hexOf(TAnsiString::hashValue(bytes.data(), length), 8);
  if (algorithm == "hash64") return hexOf(TAnsiString::hashValue64(bytes.data(), length), 16);
  char hex[33];
  CalculateMD5(nullptr, hex, bytes.data(), length);
  return hex;
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
  for (const char* algorithm : {"md5", "crc32", "hash32", "hash64"}) {
    command->add_flag_callback(
        std::string("--") + algorithm, [options, algorithm] { options->algorithm = algorithm; },
        kDescriptions.at(algorithm));
  }
  command->add_option("files", options->files, "input files");
  command->callback([options, &run] { run.status = runHash(*options); });
}

}  // namespace zebtool

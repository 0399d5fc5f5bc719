// tool_io.cpp: reading inputs and writing results for the subcommands of `zeb`.
#include <cstdio>
#include <iostream>
#include <iterator>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

bool readStandardInput(std::string& content) {
  std::cin >> std::noskipws;
  content.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
  if (std::cin.bad()) {
    reportError("-: cannot read standard input");
    return false;
  }
  return true;
}

// The library's whole-file read: an empty file is empty content, every other failure an error.
bool readFile(const std::string& path, std::string& content) {
  const TWideString widePath(path.c_str(), MIB_UTF8);
  void* data = nullptr;
  const int size = mreadFileW(widePath.p(), &data, false);
  if (size == -2) {
    content.clear();
    return true;
  }
  if (size <= 0) {
    reportError(path + (size == -1 ? ": cannot open the file" : ": cannot read the file"));
    return false;
  }
  content.assign(static_cast<const char*>(data), static_cast<size_t>(size));
  zeb_deleteMem(data);
  return true;
}

}  // namespace

void reportError(const std::string& message) {
  std::fprintf(stderr, "zeb: %s\n", message.c_str());
}

bool readInput(const std::string& path, std::string& content) {
  return path == "-" ? readStandardInput(content) : readFile(path, content);
}

std::vector<std::string> inputsOrStdin(const std::vector<std::string>& files) {
  return files.empty() ? std::vector<std::string>{"-"} : files;
}

bool writeOutput(const std::string& bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size() &&
      std::fflush(stdout) == 0) {
    return true;
  }
  reportError("cannot write the output");
  return false;
}

}  // namespace zebtool

// tool_io.cpp: reading inputs and writing results for the subcommands of `zeb`.
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
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

bool isNumber(const std::string& text) {
  if (text.empty()) return false;
  for (const char c : text) {
    if (!std::isdigit(static_cast<unsigned char>(c))) return false;
  }
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

bool convertText(const std::string& to, const std::string& from, const std::string& text,
                 std::string& converted) {
  converted.clear();
  if (text.empty()) return true;
  if (text.size() > (INT_MAX - 4) / 4) return false;
  std::string out(4 * text.size() + 4, '\0');
  const int written = AnyToAny(to.c_str(), from.c_str(), &out[0], static_cast<int>(out.size()),
                               text.data(), static_cast<int>(text.size()));
  if (written <= 0) return false;
  converted.assign(out, 0, static_cast<size_t>(written));
  return true;
}

std::string charsetOf(const std::string& argument) {
  std::string name = argument;
  if (isNumber(argument)) {
    const char* named = MIBCharsetValueToName(std::atoi(argument.c_str()));
    name = named != nullptr ? named : "";
  }
  std::string encoded;
  std::string back;
  if (name.empty() || !convertText(name, "UTF-8", "a", encoded) ||
      !convertText("UTF-8", name, encoded, back)) {
    reportError("unknown charset: " + argument);
    return "";
  }
  return name;
}

bool parseDateArgument(const std::string& text, TDateTime& date) {
  if (text.empty()) {
    date.loadcurrentlocal();
    return true;
  }
  date = TDateTime();
  return date.fromDateString(text.c_str(), 0);
}

std::string jsonString(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
      out += escape;
    } else {
      out += c;
    }
  }
  return out + "\"";
}

}  // namespace zebtool

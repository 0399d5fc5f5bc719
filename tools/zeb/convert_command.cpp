// convert_command.cpp: `zeb convert -f FROM -t TO [FILE...]`, charset conversion in the manner
// of iconv, and `zeb convert --list`, the table of charsets by MIB number.
#include <cctype>
#include <climits>
#include <cstdio>
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

struct ConvertOptions {
  std::string from;
  std::string to;
  std::vector<std::string> files;
  bool list = false;
};

// The largest MIB number the library's table can name.
const int kLastMib = 2259;

bool isNumber(const std::string& text) {
  if (text.empty()) return false;
  for (const char c : text) {
    if (!std::isdigit(static_cast<unsigned char>(c))) return false;
  }
  return true;
}

// `text` converted, or false. Room for the widest result: four bytes out per byte in.
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

// The charset a FROM or TO argument names: a name as it stands, or a MIB number through the
// library's table. Empty, with the error reported, when the library cannot convert it both ways.
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

int listCharsets() {
  std::string table;
  for (int mib = 0; mib <= kLastMib; ++mib) {
    const char* name = MIBCharsetValueToName(mib);
    if (name != nullptr) table += std::to_string(mib) + "\t" + name + "\n";
  }
  return writeOutput(table) ? kSuccess : kFailure;
}

int runConvert(const ConvertOptions& options) {
  if (options.list) return listCharsets();
  if (options.from.empty() || options.to.empty()) {
    throw CLI::ValidationError("convert", "-f FROM and -t TO are both needed");
  }
  const std::string from = charsetOf(options.from);
  const std::string to = charsetOf(options.to);
  if (from.empty() || to.empty()) return kFailure;
  std::string output;
  for (const std::string& path : inputsOrStdin(options.files)) {
    std::string text;
    std::string converted;
    if (!readInput(path, text)) return kFailure;
    if (!convertText(to, from, text, converted)) {
      reportError(path + ": cannot convert from " + options.from + " to " + options.to +
                  " (input not valid in " + options.from + ", or text " + options.to +
                  " cannot hold)");
      return kFailure;
    }
    output += converted;
  }
  return writeOutput(output) ? kSuccess : kFailure;
}

}  // namespace

void addConvertCommand(CLI::App& app, ToolRun& run) {
  auto options = std::make_shared<ConvertOptions>();
  CLI::App* command = app.add_subcommand(
      "convert", "Convert text between charsets (names such as UTF-8, GB18030, BIG5, or MIB "
                 "numbers); reads standard input without FILE or with -. Nothing is written "
                 "unless every input converts.");
  command->add_option("-f,--from", options->from, "the charset of the input");
  command->add_option("-t,--to", options->to, "the charset of the output");
  command->add_flag("--list", options->list, "print the MIB number table and stop");
  command->add_option("files", options->files, "input files");
  command->callback([options, &run] { run.status = runConvert(*options); });
}

}  // namespace zebtool

// convert_command.cpp: `zeb convert -f FROM -t TO [FILE...]`, charset conversion in the manner
// of iconv, and `zeb convert --list`, the table of charsets by MIB number.
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

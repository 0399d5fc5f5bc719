// grep_command.cpp: `zeb grep PATTERN [FILE...]`, the lines that match a wildcard pattern ('*'
// any run, '?' any one character) as a whole, through the library's matcher. With more than one
// input each line is prefixed with its file name and ':'. Exit status 0 when a line matched, 1
// when none did or an input could not be read.
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

struct GrepOptions {
  std::string pattern;
  std::vector<std::string> files;
};

// Appends the lines of `text` that match, each ended by a line feed; returns how many matched.
// A line's CR LF ending is not part of what is matched.
int appendMatchingLines(const std::string& text, const GrepOptions& options,
                        const std::string& prefix, std::string& output) {
  int matches = 0;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (wildcardMatch(line.c_str(), options.pattern.c_str())) {
      output += prefix + line + "\n";
      ++matches;
    }
    start = end + 1;
  }
  return matches;
}

int runGrep(const GrepOptions& options) {
  const std::vector<std::string> inputs = inputsOrStdin(options.files);
  std::string output;
  int matches = 0;
  bool allRead = true;
  for (const std::string& path : inputs) {
    std::string text;
    if (!readInput(path, text)) {
      allRead = false;
      continue;
    }
    matches += appendMatchingLines(text, options, inputs.size() > 1 ? path + ":" : "", output);
  }
  if (!writeOutput(output)) return kFailure;
  return allRead && matches > 0 ? kSuccess : kFailure;
}

}  // namespace

void addGrepCommand(CLI::App& app, ToolRun& run) {
  auto options = std::make_shared<GrepOptions>();
  CLI::App* command = app.add_subcommand(
      "grep", "Print the lines that match a wildcard pattern as a whole ('*' any run, '?' any "
              "character); exit status 1 when no line matched.");
  command->add_option("pattern", options->pattern, "the wildcard pattern")->required();
  command->add_option("files", options->files, "input files (standard input without FILE or "
                                               "with -)");
  command->callback([options, &run] { run.status = runGrep(*options); });
}

}  // namespace zebtool

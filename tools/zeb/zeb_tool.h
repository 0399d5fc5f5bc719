// zeb_tool.h: what the subcommands of the `zeb` tool share: exit codes, error reports, reading
// inputs, and writing a result only once all of it is ready.
//
// Each subcommand lives in its own source file and registers itself on the application:
//
//   void addHashCommand(CLI::App& app, ToolRun& run);   // hash_command.cpp
//
// A subcommand's callback sets run.status; main() returns it. The tool reaches the library only
// through its installed public headers, as any other user of the library does.
#ifndef ZEB_TOOLS_ZEB_TOOL_H
#define ZEB_TOOLS_ZEB_TOOL_H

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

#include "zeb/zeb_common.h"

namespace zebtool {

// Exit statuses: the work was done, the work failed (bad input, a missing file), the command line
// was wrong.
enum ExitStatus { kSuccess = 0, kFailure = 1, kUsage = 2 };

struct ToolRun {
  int status = kSuccess;
};

// Writes "zeb: <message>" and a line feed to standard error.
void reportError(const std::string& message);

// The whole content of the file `path`, or of standard input when it is "-". False, with an error
// reported ("zeb: PATH: ..."), when it cannot be read.
bool readInput(const std::string& path, std::string& content);

// The inputs a command reads: its file arguments, or standard input ("-") when there are none.
std::vector<std::string> inputsOrStdin(const std::vector<std::string>& files);

// Writes `bytes` to standard output as they are; false (reported) when the write fails.
bool writeOutput(const std::string& bytes);

// `text` converted `to` <- `from` through the library; false when the text is not valid in
// `from`, `to` cannot hold it, or a charset is unknown. Empty text converts to empty text.
bool convertText(const std::string& to, const std::string& from, const std::string& text,
                 std::string& converted);

// The charset a command-line argument names: a name as it stands, or a MIB number through the
// library's table. Empty, with the error reported, when the library cannot convert it both ways.
std::string charsetOf(const std::string& argument);

// A DATE argument as YYYY-MM-DD (the library's date parser), or the current local time when
// `text` is empty. False for anything else, a day that does not exist included.
bool parseDateArgument(const std::string& text, TDateTime& date);

// `text` as a JSON string: quoted, with '"', '\\' and control characters escaped and every other
// byte (UTF-8 included) kept as it is.
std::string jsonString(const std::string& text);

// The subcommands.
void addConvertCommand(CLI::App& app, ToolRun& run);
void addHashCommand(CLI::App& app, ToolRun& run);
void addCodecCommands(CLI::App& app, ToolRun& run);
void addGrepCommand(CLI::App& app, ToolRun& run);
void addDateCommand(CLI::App& app, ToolRun& run);
void addLunarCommand(CLI::App& app, ToolRun& run);
void addCsvCommand(CLI::App& app, ToolRun& run);
void addIniCommand(CLI::App& app, ToolRun& run);
void addSimilarCommand(CLI::App& app, ToolRun& run);
void addRegCommand(CLI::App& app, ToolRun& run);
void addVcardCommand(CLI::App& app, ToolRun& run);
void addPinyinCommand(CLI::App& app, ToolRun& run);
void addLogCommand(CLI::App& app, ToolRun& run);

}  // namespace zebtool

#endif  // ZEB_TOOLS_ZEB_TOOL_H

// date_command.cpp: `zeb date [DATE] [--style N]`, a date in every text style of the library
// (or in one), DATE as YYYY-MM-DD and the current local date and time when it is left out.
#include <cstdio>
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

struct DateOptions {
  std::string date;
  int style = -1;
};

const int kLastDateTimeStyle = 8;

std::string everyStyle(const TDateTime& date) {
  std::string lines;
  for (int style = 0; style <= kLastDateTimeStyle; ++style) {
    lines += "asDateTimeString(" + std::to_string(style) + "): " +
             date.asDateTimeString(style).p() + "\n";
  }
  for (int style = 0; style <= 1; ++style) {
    lines += "asDateString(" + std::to_string(style) + "):     " + date.asDateString(style).p() +
             "\n";
  }
  return lines;
}

int runDate(const DateOptions& options) {
  TDateTime date;
  if (!parseDateArgument(options.date, date)) {
    throw CLI::ValidationError("DATE", "'" + options.date + "' is not a date as YYYY-MM-DD");
  }
  const std::string text = options.style < 0
                               ? everyStyle(date)
                               : std::string(date.asDateTimeString(options.style).p()) + "\n";
  return writeOutput(text) ? kSuccess : kFailure;
}

}  // namespace

void addDateCommand(CLI::App& app, ToolRun& run) {
  auto options = std::make_shared<DateOptions>();
  CLI::App* command =
      app.add_subcommand("date", "Print a date (YYYY-MM-DD; now when left out) in every text "
                                 "style of the library, or in one.");
  command->add_option("date", options->date, "the date, YYYY-MM-DD");
  command->add_option("--style", options->style, "only this style of asDateTimeString")
      ->check(CLI::Range(0, kLastDateTimeStyle));
  command->callback([options, &run] { run.status = runDate(*options); });
}

}  // namespace zebtool

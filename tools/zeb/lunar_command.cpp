// lunar_command.cpp: `zeb lunar [DATE]`, a date (YYYY-MM-DD, today when left out) in the Chinese
// lunar calendar: the lunar date, the year's stem and branch with its animal, and the 24 solar
// terms of the Gregorian year with their dates, in UTF-8.
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

// The solar terms in the order of the library's table, from the one near January 6.
const char* const kTermNames[24] = {"小寒", "大寒", "立春", "雨水", "惊蛰", "春分",
                                    "清明", "谷雨", "立夏", "小满", "芒种", "夏至",
                                    "小暑", "大暑", "立秋", "处暑", "白露", "秋分",
                                    "寒露", "霜降", "立冬", "小雪", "大雪", "冬至"};

struct LunarOptions {
  std::string date;
};

// The library's GB2312 text in UTF-8.
std::string utf8Of(const TAnsiString& gb2312) {
  std::string utf8;
  convertText("UTF-8", "GB2312", gb2312.isEmpty() ? "" : gb2312.p(), utf8);
  return utf8;
}

std::string solarTerms(int year) {
  std::string lines = "solar terms of " + std::to_string(year) + ":\n";
  for (int term = 0; term < 24; ++term) {
    lines += std::string("  ") + getLunarTermDay(year, term).asDateString(0).p() + " " +
             kTermNames[term] + "\n";
  }
  return lines;
}

int runLunar(const LunarOptions& options) {
  TDateTime date;
  if (!parseDateArgument(options.date, date)) {
    throw CLI::ValidationError("DATE", "'" + options.date + "' is not a date as YYYY-MM-DD");
  }
  tpdate lunar;
  if (lunar.fromGDate(date.year(), date.month(), date.day()) != 1) {
    reportError(std::string(date.asDateString(0).p()) +
                " is outside the lunar calendar's years (1900-01-31 to 2100)");
    return kFailure;
  }
  TAnsiString text;
  std::string lines = std::string("date: ") + date.asDateString(0).p() + "\n";
  lines += "lunar: " + std::to_string(lunar.year) + " " + utf8Of(pdate2text(lunar, text, 3)) +
           "\n";
  lines += "year: " + utf8Of(pdate2TianGanDiZhi(lunar, text));
  lines += " (" + utf8Of(pdate2Animal_signs(lunar, text)) + ")\n";
  lines += solarTerms(date.year());
  return writeOutput(lines) ? kSuccess : kFailure;
}

}  // namespace

void addLunarCommand(CLI::App& app, ToolRun& run) {
  auto options = std::make_shared<LunarOptions>();
  CLI::App* command = app.add_subcommand(
      "lunar", "Print a date (YYYY-MM-DD; today when left out) in the Chinese lunar calendar, "
               "with its year's stem, branch and animal and the year's solar terms.");
  command->add_option("date", options->date, "the date, YYYY-MM-DD");
  command->callback([options, &run] { run.status = runLunar(*options); });
}

}  // namespace zebtool

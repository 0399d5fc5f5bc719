// pinyin_command.cpp: `zeb pinyin [--tones marks|numbers|none] [--initials] TEXT...`, the pinyin of
// UTF-8 text: every Han character with a reading becomes its most common syllable, everything
// else stays as it is; the texts are joined by spaces. --initials gives the first letters only,
// as sort and search keys use them.
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

struct PinyinOptions {
  std::string tones = "marks";
  bool initials = false;
  std::vector<std::string> texts;
};

int styleOf(const PinyinOptions& options) {
  if (options.initials) return zeb::TPinyinWrapper::Initials;
  if (options.tones == "numbers") return zeb::TPinyinWrapper::ToneNumbers;
  if (options.tones == "none") return zeb::TPinyinWrapper::Plain;
  return zeb::TPinyinWrapper::ToneMarks;
}

int runPinyin(const PinyinOptions& options) {
  std::string joined;
  for (const std::string& text : options.texts) joined += (joined.empty() ? "" : " ") + text;
  const TAnsiString pinyin = zeb::TPinyinWrapper::fromUTF8(
      joined.c_str(), static_cast<int>(joined.size()), styleOf(options),
      options.initials ? "" : " ");
  return writeOutput(std::string(pinyin.isEmpty() ? "" : pinyin.p()) + "\n") ? kSuccess
                                                                             : kFailure;
}

}  // namespace

void addPinyinCommand(CLI::App& app, ToolRun& run) {
  auto options = std::make_shared<PinyinOptions>();
  CLI::App* command = app.add_subcommand(
      "pinyin", "The pinyin of UTF-8 text, with tone marks, tone numbers or none, or its "
                "initials.");
  command->add_option("--tones", options->tones, "marks (the default), numbers or none")
      ->check(CLI::IsMember({"marks", "numbers", "none"}));
  command->add_flag("--initials", options->initials, "only the first letter of each syllable");
  command->add_option("texts", options->texts, "the text")->required();
  command->callback([options, &run] { run.status = runPinyin(*options); });
}

}  // namespace zebtool

// zeb: the command line of the zeb_common library. One subcommand per job: charset conversion,
// hashes, Base64 and quoted-printable, wildcard search, dates and the lunar calendar, CSV and INI
// files, the registry store, string similarity, vCard address books, pinyin, log folder levels.
//
//   zeb --help
//   zeb convert -f GB18030 -t UTF-8 poem.txt
//   zeb hash --hash64 *.csv
//
// Exit status: 0 when the work was done, 1 when it failed (for example input that is not valid
// in the charset it is said to be in, or a missing file), 2 for a wrong command line. Errors go
// to standard error as "zeb: ...".
#include "tools/zeb/zeb_tool.h"

int main(int argc, char** argv) {
  CLI::App app{"zeb: the tools of the zeb_common library", "zeb"};
  app.set_version_flag("--version", "zeb " ZEB_TOOL_VERSION);
  app.require_subcommand(1);
  zebtool::ToolRun run;
  zebtool::addConvertCommand(app, run);
  zebtool::addHashCommand(app, run);
  zebtool::addCodecCommands(app, run);
  zebtool::addGrepCommand(app, run);
  zebtool::addDateCommand(app, run);
  zebtool::addLunarCommand(app, run);
  zebtool::addCsvCommand(app, run);
  zebtool::addIniCommand(app, run);
  zebtool::addSimilarCommand(app, run);
  zebtool::addRegCommand(app, run);
  zebtool::addVcardCommand(app, run);
  zebtool::addPinyinCommand(app, run);
  zebtool::addLogCommand(app, run);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& e) {  // --help, --help-all, --version
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    zebtool::reportError(std::string(e.what()) + " (see zeb --help)");
    return zebtool::kUsage;
  }
  return run.status;
}

// ini_command.cpp: `zeb ini get|set|del|list FILE [SECTION [KEY [VALUE]]]`, INI files through
// the library's reader and writer, which keep every comment.
//
//   zeb ini get FILE SECTION KEY          the value (exit status 1 when there is none)
//   zeb ini set FILE SECTION KEY VALUE    sets it (creating the file, section or key as needed)
//   zeb ini del FILE SECTION [KEY]        removes the key, or the whole section
//   zeb ini list FILE [SECTION]           "key=value" lines under "[section]" headers
//
// The entries before the first header belong to the section named "". A file is rewritten whole
// (a new file renamed over the old one), and the result is read back to make sure it holds the
// change.
#include <filesystem>
#include <memory>
#include <system_error>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

struct IniOptions {
  std::string action;
  std::string file;
  std::string section;
  std::string key;
  std::string value;
  bool hasValue = false;
};

// Loads `file`; a missing file is an empty one when `mayBeMissing`.
bool loadIni(const std::string& file, bool mayBeMissing, zeb::TIniFile& ini) {
  std::error_code error;
  if (mayBeMissing && !std::filesystem::exists(file, error)) return true;
  if (ini.load(file)) return true;
  reportError(file + ": cannot read it as an INI file");
  return false;
}

// Saves `ini` over `file` and reads the file back: true when `check` holds on what was read.
template <typename Check>
bool saveChecked(zeb::TIniFile& ini, const std::string& file, Check check) {
  ini.saveas(file);
  zeb::TIniFile back;
  if (back.load(file) && check(back)) return true;
  reportError(file + ": cannot write the file");
  return false;
}

std::string listing(zeb::TIniFile& ini, const IniOptions& options) {
  std::string lines;
  for (const auto& entry : ini) {
    const zeb::IniSection& section = *entry.second;
    if (!options.section.empty() && section.name != options.section) continue;
    if (!section.name.empty()) lines += "[" + section.name + "]\n";
    for (const zeb::IniItem& item : section.items) lines += item.key + "=" + item.value + "\n";
  }
  return lines;
}

// Sets the first entry of the key; an existing entry keeps its comment.
void setKeepingComment(zeb::TIniFile& ini, const IniOptions& options) {
  for (auto& entry : ini) {
    if (entry.second->name != options.section) continue;
    for (zeb::IniItem& item : entry.second->items) {
      if (item.key == options.key) {
        item.value = options.value;
        return;
      }
    }
  }
  ini.setValue(options.section, options.key, options.value, "");
}

int runGet(zeb::TIniFile& ini, const IniOptions& options) {
  std::string value;
  if (!ini.getValue(options.section, options.key, value)) {
    reportError(options.file + ": no key " + options.key + " in [" + options.section + "]");
    return kFailure;
  }
  return writeOutput(value + "\n") ? kSuccess : kFailure;
}

int runSet(zeb::TIniFile& ini, const IniOptions& options) {
  setKeepingComment(ini, options);
  return saveChecked(ini, options.file, [&](const zeb::TIniFile& back) {
           std::string value;
           return back.getValue(options.section, options.key, value) && value == options.value;
         })
             ? kSuccess
             : kFailure;
}

int runDelete(zeb::TIniFile& ini, const IniOptions& options) {
  if (options.key.empty()) {
    ini.deleteSection(options.section);
  } else {
    ini.deleteKey(options.section, options.key);
  }
  return saveChecked(ini, options.file, [](const zeb::TIniFile&) { return true; }) ? kSuccess
                                                                                     : kFailure;
}

int runIni(const IniOptions& options) {
  const bool needsKey = options.action == "get" || options.action == "set";
  if (needsKey && options.key.empty()) {
    throw CLI::ValidationError("ini " + options.action, "SECTION and KEY are needed");
  }
  if (options.action == "set" && !options.hasValue) {
    throw CLI::ValidationError("ini set", "VALUE is needed");
  }
  zeb::TIniFile ini;
  if (!loadIni(options.file, options.action == "set", ini)) return kFailure;
  if (options.action == "get") return runGet(ini, options);
  if (options.action == "set") return runSet(ini, options);
  if (options.action == "del") return runDelete(ini, options);
  return writeOutput(listing(ini, options)) ? kSuccess : kFailure;
}

}  // namespace

void addIniCommand(CLI::App& app, ToolRun& run) {
  auto options = std::make_shared<IniOptions>();
  CLI::App* command = app.add_subcommand(
      "ini", "Read and change INI files, keeping their comments: get FILE SECTION KEY, set FILE "
             "SECTION KEY VALUE, del FILE SECTION [KEY], list FILE [SECTION].");
  command->add_option("action", options->action, "get, set, del or list")
      ->required()
      ->check(CLI::IsMember({"get", "set", "del", "list"}));
  command->add_option("file", options->file, "the INI file")->required();
  command->add_option("section", options->section, "the section (\"\" before the first header)");
  command->add_option("key", options->key, "the key");
  CLI::Option* value = command->add_option("value", options->value, "the new value");
  command->callback([options, value, &run] {
    options->hasValue = value->count() > 0;
    run.status = runIni(*options);
  });
}

}  // namespace zebtool

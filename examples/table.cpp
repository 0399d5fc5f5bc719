// table.cpp: reads a CSV file on a task thread and prints it as a UTF-8 table, with settings from
// an INI file.
//
//   zeb_table CSVFILE INIFILE
//
// The INI file gives the CSV file's charset ([csv] charset) and how to print ([print] title,
// separator, newline; a value in double quotes keeps its spaces). A task on a background task
// thread walks the CSV file with TCsvFileReader, converts every field to UTF-8 and collects the
// rows; main waits for it and prints them.
#include <cstdio>
#include <string>
#include <vector>

#include "zeb/zeb_common.h"

namespace {

struct Settings {
  std::string charset = "utf-8";
  std::string title = "table";
  std::string separator = " | ";
  std::string newline = " / ";
};

std::string unquoted(const std::string& value) {
  const bool quoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
  return quoted ? value.substr(1, value.size() - 2) : value;
}

Settings readSettings(const char* path) {
  Settings settings;
  zeb::TIniFile ini;
  if (!ini.load(path)) {
    std::fprintf(stderr, "%s: cannot read the settings, using the defaults\n", path);
    return settings;
  }
  std::string value;
  if (ini.getValue("csv", "charset", value)) settings.charset = value;
  if (ini.getValue("print", "title", value)) settings.title = value;
  if (ini.getValue("print", "separator", value)) settings.separator = unquoted(value);
  if (ini.getValue("print", "newline", value)) settings.newline = unquoted(value);
  return settings;
}

// Collects the rows of the CSV file, every field converted to UTF-8 with its line breaks shown as
// the settings say.
class TableReader : public TCsvFileReader::tcallbacks {
 public:
  explicit TableReader(const Settings& settings) : settings_(settings) {}

  int onReadItem(int, int column, const char* fieldText) override {
    if (column == 0) rows.emplace_back();
    TAnsiString field(fieldText);
    field.convertAnyToUtf8(settings_.charset.c_str());
    field.replace("\r\n", settings_.newline.c_str()).replace("\n", settings_.newline.c_str());
    rows.back().add(std::move(field));
    return 0;
  }

  std::vector<TAnsiStrings> rows;

 private:
  const Settings& settings_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: zeb_table CSVFILE INIFILE\n");
    return 2;
  }
  const Settings settings = readSettings(argv[2]);
  TableReader table(settings);
  int records = 0;

  ttaskThread* worker = new ttaskThread(ttaskthreadnotauto(), "demo.csv", 0);
  worker->Exec();
  worker->postRunTaskSync(
      [&] { records = TCsvFileReader(&table).openFile(TWideString(argv[1], MIB_UTF8).p()); });
  worker->release();

  if (records < 0) {
    std::fprintf(stderr, "%s: cannot read the file\n", argv[1]);
    return 1;
  }
  std::printf("%s (%d records, stored as %s)\n", settings.title.c_str(), records,
              settings.charset.c_str());
  for (const TAnsiStrings& row : table.rows) {
    std::string line;
    for (int i = 0; i < row.count(); ++i) {
      if (i > 0) line += settings.separator;
      if (row[i].isNotEmpty()) line += row[i].p();
    }
    std::printf("%s\n", line.c_str());
  }
  return 0;
}

// csv_command.cpp: `zeb csv FILE [--tsv|--json] [--charset NAME]`, the records of a CSV file
// through the library's reader, one per line: as tab-separated values (the default; tab, line
// feed, carriage return and backslash within a field written as \t, \n, \r and \\) or as JSON
// arrays of strings. Fields are converted from the file's charset (UTF-8 unless --charset names
// another) to UTF-8; JSON keeps the UTF-8 text as it is rather than as \u escapes.
#include <cstdio>
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

struct CsvOptions {
  std::string file;
  bool json = false;
  std::string charset = "UTF-8";
};

std::string tsvField(const std::string& field) {
  std::string out;
  for (const char c : field) {
    switch (c) {
      case '\t': out += "\\t"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\\': out += "\\\\"; break;
      default: out += c;
    }
  }
  return out;
}

// Collects the records the reader walks, each field converted to UTF-8.
class RecordPrinter : public TCsvFileReader::tcallbacks {
 public:
  RecordPrinter(const CsvOptions& options, const std::string& charset)
      : options_(options), charset_(charset) {}

  int onReadItem(int, int column, const char* fieldText) override {
    std::string field;
    if (!toUtf8(fieldText, field)) {
      failed_ = true;
      return 2;
    }
    if (options_.json) {
      output_ += (column == 0 ? "[" : ",") + jsonString(field);
    } else {
      output_ += (column == 0 ? "" : "\t") + tsvField(field);
    }
    return 0;
  }
  bool onLineFinished(int, const char*) override {
    output_ += options_.json ? "]\n" : "\n";
    return false;
  }

  bool failed() const { return failed_; }
  const std::string& output() const { return output_; }

 private:
  bool toUtf8(const char* text, std::string& utf8) const {
    return convertText("UTF-8", charset_, text, utf8);
  }

  const CsvOptions& options_;
  const std::string charset_;
  std::string output_;
  bool failed_ = false;
};

int runCsv(const CsvOptions& options) {
  const std::string charset = charsetOf(options.charset);
  std::string text;
  if (charset.empty() || !readInput(options.file, text)) return kFailure;
  RecordPrinter printer(options, charset);
  TCsvFileReader reader(&printer);
  reader.openFromMem(text.c_str());
  if (printer.failed()) {
    reportError(options.file + ": a field is not valid " + options.charset);
    return kFailure;
  }
  return writeOutput(printer.output()) ? kSuccess : kFailure;
}

}  // namespace

void addCsvCommand(CLI::App& app, ToolRun& run) {
  auto options = std::make_shared<CsvOptions>();
  CLI::App* command = app.add_subcommand(
      "csv", "Print the records of a CSV file (- for standard input) as tab-separated values or "
             "JSON lines, in UTF-8.");
  command->add_option("file", options->file, "the CSV file")->required();
  command->add_flag("--json", options->json, "one JSON array of strings per record");
  command->add_flag_callback("--tsv", [options] { options->json = false; },
                             "tab-separated values (the default)");
  command->add_option("--charset", options->charset, "the charset of the file (UTF-8)");
  command->callback([options, &run] { run.status = runCsv(*options); });
}

}  // namespace zebtool

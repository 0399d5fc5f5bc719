// vcard_command.cpp: `zeb vcard FILE [--json]`, the cards of an address book (vCard 2.1, 3.0 or
// 4.0, any charset the cards name) with their names and common properties in UTF-8: a block of
// "PROPERTY: value" lines per card, or with --json one JSON object per card (text kept as UTF-8,
// not as \u escapes). A card that could not be read well is reported on standard error and the
// exit status is 1; the others are still printed.
#include <cstdio>
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

struct VcardOptions {
  std::string file;
  bool json = false;
};

// A property of a card: its label and every value it has (empty ones left out).
struct Field {
  const char* label;
  std::vector<std::string> values;
};

std::string textOf(const TAnsiString& text) {
  return text.isEmpty() ? "" : text.p();
}

template <typename Nth>
std::vector<std::string> every(int count, Nth nth) {
  std::vector<std::string> values;
  for (int i = 0; i < count; ++i) values.push_back(textOf(nth(i)));
  return values;
}

std::string addressOf(const tvcard& card, int nth) {
  std::string address;
  for (int part = tvcard::AdrPoBox; part <= tvcard::AdrCountry; ++part) {
    const std::string text = textOf(card.adr(nth, part));
    if (!text.empty()) address += (address.empty() ? "" : ", ") + text;
  }
  return address;
}

std::vector<Field> fieldsOf(const tvcard& card) {
  std::vector<Field> fields = {
      {"FN", {textOf(card.fn())}},
      {"N", {textOf(card.n(tvcard::NFamily)) + ";" + textOf(card.n(tvcard::NGiven))}},
      {"NICKNAME", {textOf(card.nickname())}},
      {"TEL", every(card.count("TEL"), [&](int i) { return card.tel(i); })},
      {"EMAIL", every(card.count("EMAIL"), [&](int i) { return card.email(i); })},
      {"ADR", {}},
      {"ORG", {textOf(card.org())}},
      {"TITLE", {textOf(card.title())}},
      {"BDAY", {textOf(card.bday())}},
      {"URL", every(card.count("URL"), [&](int i) { return card.url(i); })},
      {"NOTE", {textOf(card.note())}},
  };
  for (int i = 0; i < card.count("ADR"); ++i) fields[5].values.push_back(addressOf(card, i));
  if (fields[1].values[0] == ";") fields[1].values.clear();
  const int photoBytes = card.photo().size();
  if (photoBytes > 0) fields.push_back({"PHOTO", {std::to_string(photoBytes) + " bytes"}});
  return fields;
}

std::string asLines(const std::vector<Field>& fields) {
  std::string lines;
  for (const Field& field : fields) {
    for (const std::string& value : field.values) {
      if (!value.empty()) lines += std::string(field.label) + ": " + value + "\n";
    }
  }
  return lines + "\n";
}

std::string asJson(const std::vector<Field>& fields) {
  std::string object;
  for (const Field& field : fields) {
    std::string values;
    for (const std::string& value : field.values) {
      if (!value.empty()) values += (values.empty() ? "" : ",") + jsonString(value);
    }
    if (values.empty()) continue;
    object += (object.empty() ? "{" : ",") + jsonString(field.label) + ":[" + values + "]";
  }
  return (object.empty() ? "{" : object) + "}\n";
}

int runVcard(const VcardOptions& options) {
  std::string text;
  if (!readInput(options.file, text)) return kFailure;
  tvcardfile book;
  book.readText(text.c_str(), static_cast<int>(text.size()));
  std::string output;
  for (int i = 0; i < book.count(); ++i) {
    const tvcard& card = book.card(i);
    if (card.status() != tvcard::Ok) {
      reportError(options.file + ": card " + std::to_string(i + 1) + ": " + card.errorText());
    }
    output += options.json ? asJson(fieldsOf(card)) : asLines(fieldsOf(card));
  }
  if (!writeOutput(output)) return kFailure;
  return book.failedCount() == 0 ? kSuccess : kFailure;
}

}  // namespace

void addVcardCommand(CLI::App& app, ToolRun& run) {
  auto options = std::make_shared<VcardOptions>();
  CLI::App* command = app.add_subcommand(
      "vcard", "Print the cards of an address book (- for standard input): names and common "
               "properties in UTF-8, or one JSON object per card.");
  command->add_option("file", options->file, "the vCard file")->required();
  command->add_flag("--json", options->json, "one JSON object per card");
  command->callback([options, &run] { run.status = runVcard(*options); });
}

}  // namespace zebtool

// Tests of the CSV reader: the field functions and their asymmetries, the walk with every callback
// verdict, files and their log lines, a writer-reader round trip of random tables, and two threads
// walking at once.

#include "zeb/formats/TCsvFileReader.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <thread>
#include <vector>

#include "testing/log_capture.h"
#include "testing/temp_dir.h"
#include "zeb/log/zeb_log.h"
#include "zeb/strings/TWideString.h"

namespace {

using Record = std::vector<std::string>;
using Table = std::vector<Record>;
using zeb::testing::LogCapture;
using zeb::testing::TempDir;

// Records every callback; the verdicts to give can be set per (line, column).
class Recorder : public TCsvFileReader::tcallbacks {
 public:
  int onReadLine(int line, const char* lineText) override {
    lineTexts.push_back(lineText);
    events += "L" + std::to_string(line);
    return line == lineVerdictAt ? lineVerdict : 0;
  }
  int onReadItem(int line, int column, const char* fieldText) override {
    if (column == 0) table.emplace_back();
    table.back().push_back(fieldText);
    return line == itemVerdictAt && column == 0 ? itemVerdict : 0;
  }
  bool onLineFinished(int line, const char*) override {
    events += "F" + std::to_string(line);
    return line == stopAtFinishedLine;
  }
  void onFinished(int lineCount) override { events += "E" + std::to_string(lineCount); }

  Table table;
  std::vector<std::string> lineTexts;
  std::string events;
  int lineVerdictAt = -1, lineVerdict = 0;
  int itemVerdictAt = -1, itemVerdict = 0;
  int stopAtFinishedLine = -1;
};

// The fields of one record, as csv_parse_onefield takes them one by one.
Record fieldsOf(std::string record) {
  Record out;
  char* p = record.data();
  do {
    char* field = nullptr;
    p = csv_parse_onefield(p, &field);
    out.push_back(field);
  } while (p != nullptr);
  return out;
}

std::string quoted(const char* text) {
  std::string copy(text);
  const char* out = csv_text_to_csvfield(copy.data());
  return out == copy.data() ? "same:" + copy : out;
}

TEST(CsvField, QuotesOnlyWhatNeedsIt) {
  EXPECT_EQ(quoted("abc"), "same:abc");
  EXPECT_EQ(quoted(""), "same:");
  EXPECT_EQ(quoted("a b"), "\"a b\"");
  EXPECT_EQ(quoted("a,b"), "\"a,b\"");
  EXPECT_EQ(quoted("it's"), "\"it's\"");
  EXPECT_EQ(quoted("caf\xC3\xA9"), "\"caf\xC3\xA9\"");
  EXPECT_EQ(quoted("say \"hi\""), "\"say \"\"hi\"\"\"");
  EXPECT_EQ(quoted("\x7F"), "\"\x7F\"");
  EXPECT_EQ(csv_text_to_csvfield(nullptr), nullptr);
}

TEST(CsvField, TakesFieldsWithTheFormatsAsymmetries) {
  EXPECT_EQ(fieldsOf("a,b"), (Record{"a", "b"}));
  EXPECT_EQ(fieldsOf("a,"), (Record{"a", ""})) << "a comma closing the text";
  EXPECT_EQ(fieldsOf("a,\r\n"), (Record{"a"})) << "a comma before a line break";
  EXPECT_EQ(fieldsOf("\"ab\"cd"), (Record{"abcd"}));
  EXPECT_EQ(fieldsOf("ab\"cd"), (Record{"ab\"cd"}));
  EXPECT_EQ(fieldsOf("\"\""), (Record{""}));
  EXPECT_EQ(fieldsOf("\"a\"\"b\",\"x,y\""), (Record{"a\"b", "x,y"}));
  EXPECT_EQ(fieldsOf("\"open,\r\nstill"), (Record{"open,\r\nstill"})) << "an unclosed quote";
  EXPECT_EQ(fieldsOf("a\r\nb"), (Record{"ab"})) << "line breaks outside quotes are dropped";
  char* field = reinterpret_cast<char*>(1);
  EXPECT_EQ(csv_parse_onefield(nullptr, &field), nullptr);
  EXPECT_EQ(field, nullptr);
}

TEST(CsvField, SkipsToTheNextRecord) {
  std::string text = "x,\"1\r\n2\"\r\n\r\n\nnext";
  char* next = csv_skip_oneline(text.data());
  EXPECT_STREQ(next, "next");
  EXPECT_EQ(*csv_skip_oneline(next), '\0');
  std::string midQuote = "ab\"c\nd\",e\nlast";
  EXPECT_STREQ(csv_skip_oneline(midQuote.data()), "last") << "a mid-field quote opens quotes here";
  std::string empty;
  EXPECT_EQ(csv_skip_oneline(empty.data()), nullptr);
  EXPECT_EQ(csv_skip_oneline(nullptr), nullptr);
}

TEST(CsvWalk, RecordsCarryTheirRawTextAndEmptyLinesVanish) {
  Recorder r;
  TCsvFileReader reader(&r);
  EXPECT_EQ(reader.openFromMem("x,y\r\n\r\n\n1,2\n\"q\r\nline\",z"), 3);
  EXPECT_EQ(r.table, (Table{{"x", "y"}, {"1", "2"}, {"q\r\nline", "z"}}));
  EXPECT_EQ(r.lineTexts, (std::vector<std::string>{"x,y\r\n\r\n\n", "1,2\n", "\"q\r\nline\",z"}));
  EXPECT_EQ(r.events, "L0F0L1F1L2F2E3");
}

TEST(CsvWalk, VerdictsSkipAndStop) {
  const char* text = "a,b\nc,d\ne,f\n";
  {
    Recorder r;
    r.itemVerdictAt = 0, r.itemVerdict = 2;
    EXPECT_EQ(TCsvFileReader(&r).openFromMem(text), 1);
    EXPECT_EQ(r.table, (Table{{"a"}}));
    EXPECT_EQ(r.events, "L0F0E1") << "onLineFinished still comes for the stopped record";
  }
  {
    Recorder r;
    r.lineVerdictAt = 0, r.lineVerdict = 2;
    EXPECT_EQ(TCsvFileReader(&r).openFromMem(text), 0);
    EXPECT_EQ(r.events, "L0E0");
  }
  {
    Recorder r;
    r.lineVerdictAt = 1, r.lineVerdict = 1;
    r.itemVerdictAt = 0, r.itemVerdict = 1;
    EXPECT_EQ(TCsvFileReader(&r).openFromMem(text), 3);
    EXPECT_EQ(r.table, (Table{{"a"}, {"e", "f"}}));
    EXPECT_EQ(r.events, "L0F0L1L2F2E3") << "a skipped record counts, without onLineFinished";
  }
  {
    Recorder r;
    r.stopAtFinishedLine = 1;
    EXPECT_EQ(TCsvFileReader(&r).openFromMem(text), 1);
    EXPECT_EQ(r.events, "L0F0L1F1E1");
  }
}

TEST(CsvWalk, WithoutCallbacksEveryRecordCounts) {
  TCsvFileReader reader(nullptr);
  EXPECT_EQ(reader.openFromMem("1\n2\n\n3"), 3);
  EXPECT_EQ(reader.openFromMem(nullptr), 0);
  TCsvFileReader::tcallbacks defaults;
  EXPECT_EQ(TCsvFileReader(&defaults).openFromMem("a,b\nc"), 2);
}

// The reader's lines in the captured log, as "<letter>/<tag>:<message>".
std::vector<std::string> readerLines(const LogCapture& log) {
  std::vector<std::string> result;
  for (const std::string& text : log.lines()) {
    const auto line = zeb::testing::parseLogLine(text);
    if (!line) continue;
    const std::string& m = line->message;
    const bool ours = m.rfind("LINE:", 0) == 0 || m.rfind("TCsvFileReader::", 0) == 0 ||
                      m.rfind("file not exists:", 0) == 0 || m.rfind("failed to read", 0) == 0;
    if (!ours) continue;
    const std::string tag = line->tag.substr(0, line->tag.find_last_not_of('.') + 1);
    result.push_back(line->letter + "/" + tag + ":" + m);
  }
  return result;
}

TEST(CsvWalk, StopsAreLoggedAtInfo) {
  LogCapture log(MLOG_INFO);
  Recorder r;
  r.itemVerdictAt = 0, r.itemVerdict = 2;
  TCsvFileReader(&r).openFromMem("v,w\n");
  Recorder stopper;
  stopper.stopAtFinishedLine = 1;
  TCsvFileReader(&stopper).openFromMem("x\ny\n");
  EXPECT_EQ(readerLines(log),
            (std::vector<std::string>{"I/zeb:LINE:0,break for onReadItem,column:0,fieldtext:v",
                                      "I/zeb:LINE:1,break for onLineFinished"}));
}

TEST(CsvFile, MissingFileGivesMinusTwoAndNoCallback) {
  LogCapture log(MLOG_DEBUG);
  mlogSetLevel(MLOG_DEBUG);
  Recorder r;
  const std::string path = log.dir().filePath("missing.csv");
  EXPECT_EQ(TCsvFileReader(&r).openFile(TWideString(path.c_str(), MIB_UTF8)), -2);
  EXPECT_EQ(r.events, "");
  EXPECT_EQ(readerLines(log), (std::vector<std::string>{"I/zeb:TCsvFileReader::openFile:" + path,
                                                        "D/zeb.csv:file not exists:" + path}));
}

TEST(CsvFile, EmptyFileIsAReadFailure) {
  LogCapture log(MLOG_ERROR);
  log.dir().writeFile("empty.csv", "");
  const std::string path = log.dir().filePath("empty.csv");
  EXPECT_EQ(TCsvFileReader(nullptr).openFile(TWideString(path.c_str(), MIB_UTF8)), -2);
  EXPECT_EQ(
      readerLines(log),
      (std::vector<std::string>{"E/zeb.csv:failed to read file,errorcode:-2,filename:" + path}));
}

TEST(CsvFile, ReadsTheBytesAsTheyAre) {
  TempDir dir;
  dir.writeFile("t.csv", "\xEF\xBB\xBFname,city\r\nLi,\"\xB1\xB1\xBE\xA9\"\r\n");
  Recorder r;
  const std::string path = dir.filePath("t.csv");
  EXPECT_EQ(TCsvFileReader(&r).openFile(TWideString(path.c_str(), MIB_UTF8)), 2);
  EXPECT_EQ(r.table, (Table{{"\xEF\xBB\xBFname", "city"}, {"Li", "\xB1\xB1\xBE\xA9"}}));
}

// ---- round trip ---------------------------------------------------------------------------------

Table randomTable(std::mt19937& random) {
  static const std::string alphabet = std::string("ab ,\"'\r\n\x80\xFF\xE4") + "x";
  Table table(1 + random() % 6);
  for (Record& record : table) {
    record.resize(1 + random() % 5);
    for (std::string& field : record) {
      const int length = random() % 3 == 0 ? 0 : static_cast<int>(random() % 8);
      for (int i = 0; i < length; ++i) field.push_back(alphabet[random() % alphabet.size()]);
    }
  }
  return table;
}

// Writes the table as the format wants it: fields through csv_text_to_csvfield, records ended by
// CR LF except the last. An empty field that ends its record is written as "" (bare, it would
// vanish before a line break, and a record of one bare empty field would be an empty line).
std::string writeTable(const Table& table) {
  std::string text;
  for (size_t r = 0; r < table.size(); ++r) {
    if (r > 0) text += "\r\n";
    for (size_t c = 0; c < table[r].size(); ++c) {
      if (c > 0) text += ',';
      std::string field = table[r][c];
      if (field.empty() && c + 1 == table[r].size()) {
        text += "\"\"";
      } else {
        text += csv_text_to_csvfield(field.data());
      }
    }
  }
  return text;
}

TEST(CsvRoundTrip, RandomTablesComeBackFieldForField) {
  std::mt19937 random(12);
  for (int i = 0; i < 2000; ++i) {
    const Table table = randomTable(random);
    const std::string text = writeTable(table);
    Recorder r;
    ASSERT_EQ(TCsvFileReader(&r).openFromMem(text.c_str()), static_cast<int>(table.size())) << text;
    ASSERT_EQ(r.table, table) << text;
  }
}

TEST(CsvRoundTrip, AnEmptyLastFieldSurvivesAtTheEndOfTheText) {
  Recorder r;
  TCsvFileReader(&r).openFromMem("a,\"b\r\nc\",");
  EXPECT_EQ(r.table, (Table{{"a", "b\r\nc", ""}}));
}

// ---- threads ------------------------------------------------------------------------------------

TEST(CsvThreads, TwoThreadsWalkTwoTextsAtOnce) {
  std::mt19937 random(7);
  const Table tables[2] = {randomTable(random), randomTable(random)};
  const std::string texts[2] = {writeTable(tables[0]), writeTable(tables[1])};
  bool same[2] = {true, true};
  auto walk = [&](int which) {
    for (int i = 0; i < 300; ++i) {
      Recorder r;
      TCsvFileReader(&r).openFromMem(texts[which].c_str());
      same[which] = same[which] && r.table == tables[which];
    }
  };
  std::thread first(walk, 0);
  std::thread second(walk, 1);
  first.join();
  second.join();
  EXPECT_TRUE(same[0]);
  EXPECT_TRUE(same[1]);
}

}  // namespace

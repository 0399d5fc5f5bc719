// Tests of the log core: the line layout, levels, tags, indentation, filters, files, marker files
// and concurrent writers, all through real log files in temporary folders.

#include "zeb/log/zeb_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "testing/log_capture.h"

namespace {

using zeb::testing::LogCapture;
using zeb::testing::LogLine;
using zeb::testing::parseLogLine;

using zeb::testing::onFreshThread;

bool contains(const std::vector<std::string>& items, const std::string& item) {
  return std::find(items.begin(), items.end(), item) != items.end();
}

int countContaining(const std::vector<std::string>& lines, const std::string& part) {
  return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](const std::string& l) {
    return l.find(part) != std::string::npos;
  }));
}

// The tag without the dots that pad it to the thread's tag width (for tags not ending in '.').
std::string unpadded(const std::string& tag) {
  return tag.substr(0, tag.find_last_not_of('.') + 1);
}

LogLine lastLine(const LogCapture& log) {
  const std::vector<std::string> lines = log.lines();
  auto parsed = lines.empty() ? std::nullopt : parseLogLine(lines.back());
  EXPECT_TRUE(parsed.has_value()) << (lines.empty() ? "no lines" : lines.back());
  return parsed.value_or(LogLine{});
}

// ---- the line -----------------------------------------------------------------------------------

TEST(LogLineLayout, CarriesTimeIdsLetterTagAndMessage) {
  LogCapture log(MLOG_VERBOSE);
  const std::time_t before = std::time(nullptr);
  onFreshThread([] { mlogWithLevel(MLOG_WARNING, "net", "hello %d", 42); });
  ASSERT_TRUE(log.text().size() > 2);
  EXPECT_EQ(log.text().substr(log.text().size() - 10), "hello 42\r\n");
  const LogLine line = lastLine(log);
  char today[16];
  std::strftime(today, sizeof today, "%Y-%m-%d", std::localtime(&before));
  EXPECT_EQ(line.date, today);
  EXPECT_EQ(line.letter, "W");
  EXPECT_EQ(line.tag, "net");
  EXPECT_EQ(line.indent, 0);
  EXPECT_EQ(line.message, "hello 42");
  const LogLine opening = *parseLogLine(log.lines().front());
  EXPECT_EQ(line.processId, opening.processId);
  EXPECT_NE(line.threadId, opening.threadId);
}

TEST(LogLineLayout, ShowsTheLetterOfEachLevel) {
  struct LetterCase {
    int level;
    const char* letter;
  };
  const LetterCase cases[] = {
      {0, "S"},         {1, "A"},         {2, "E"},          {3, "W"},          {4, "I"},
      {5, "D"},         {6, "V"},         {15, "A"},         {17, "W"},         {20, "V"},
      {7, "UNKNOWN: "}, {9, "UNKNOWN: "}, {14, "UNKNOWN: "}, {21, "UNKNOWN: "}, {-1, "UNKNOWN: "}};
  LogCapture log(20);
  for (const LetterCase& c : cases) {
    mlogWithLevel(static_cast<tloglevel>(c.level), "t", "x");
    EXPECT_EQ(lastLine(log).letter, c.letter) << c.level;
  }
}

TEST(LogLineLayout, PadsShorterTagsToTheLongestOfTheThread) {
  LogCapture log(MLOG_INFO);
  onFreshThread([] {
    mlogWithLevel(MLOG_INFO, "ab", "1");
    mlogWithLevel(MLOG_INFO, "abcd", "2");
    mlogWithLevel(MLOG_INFO, "ab", "3");
    mlogWithLevel(MLOG_INFO, "", "4");  // the application id, "zeb"
  });
  const std::vector<std::string> lines = log.lines();
  ASSERT_GE(lines.size(), 4u);
  const char* expected[] = {"ab", "abcd", "ab..", "zeb."};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(parseLogLine(lines[lines.size() - 4 + i])->tag, expected[i]);
  }
}

TEST(LogLineLayout, InterpretsAPercentInTheTag) {
  LogCapture log(MLOG_INFO);
  mlogWithLevel(MLOG_INFO, "a%d", "v=%d", 7, 8);
  EXPECT_EQ(unpadded(lastLine(log).tag), "a7");
  EXPECT_EQ(lastLine(log).message, "v=8");
}

TEST(LogLineLayout, NullFormatFunctionLineAndWideFormat) {
  LogCapture log(MLOG_INFO);
  mlogWithLevel(MLOG_INFO, "t", nullptr);
  EXPECT_EQ(lastLine(log).message, "(logerror:null string)");
  mlogWithLevelFileFunLine(MLOG_INFO, "/src/dir/file.cpp", "f", 3, "dropped %d", 1);
  EXPECT_EQ(unpadded(lastLine(log).tag), "file.cpp");
  EXPECT_EQ(lastLine(log).message, ":f:3");
  mlogWithLevelFileFunLine(MLOG_INFO, "file.cpp", nullptr, -1, "kept %d", 1);
  EXPECT_EQ(lastLine(log).message, "kept 1");
  mlogWithLevelFileNameW(MLOG_INFO, "dir\\wide.cpp", ZW("wide %d"), 5);
  EXPECT_EQ(unpadded(lastLine(log).tag), "wide.cpp");
  EXPECT_EQ(lastLine(log).message, "wide 5");
}

TEST(LogLineLayout, IndentsBetweenPushAndPop) {
  LogCapture log(MLOG_DEBUG);
  mlogSetLevel(MLOG_DEBUG);
  const auto write = [&](const char* message) {
    mlogWithLevel(MLOG_INFO, "t", message);
    return lastLine(log).indent;
  };
  mlogFormatPush(true);
  EXPECT_EQ(lastLine(log).message, "{");
  EXPECT_EQ(lastLine(log).indent, 0);
  EXPECT_EQ(write("in 1"), 2);
  mlogFormatPush(false);
  EXPECT_EQ(write("in 2"), 4);
  mlogFormatPop(false);
  mlogFormatPop(true);
  EXPECT_EQ(lastLine(log).message, "}");
  EXPECT_EQ(lastLine(log).indent, 0);
  mlogFormatPop(false);  // stays at 0
  EXPECT_EQ(write("out"), 0);
  mlogFormatPush(false);
  EXPECT_EQ(write("again"), 2);
  mlogFormatPop(false);
}

TEST(LogLineLength, TooLongFormatGivesTheMarker) {
  LogCapture log(MLOG_INFO);
  onFreshThread([] {
    // The tag field "t: " is 3 bytes: 5,067 bytes of format still fit, 5,068 do not.
    mlogWithLevel(MLOG_INFO, "t", std::string(5067, 'a').c_str());
    mlogWithLevel(MLOG_INFO, "t", std::string(5068, 'b').c_str());
  });
  const std::string text = log.text();
  EXPECT_NE(text.find(std::string(5067, 'a') + "\r\n"), std::string::npos);
  EXPECT_EQ(text.find("bbbb"), std::string::npos);
  EXPECT_EQ(text.substr(text.size() - 11), "<MLOG-TTL>\n");
}

TEST(LogLineLength, LongResultsGrowUpToTheLastHeapAttempt) {
  LogCapture log(MLOG_INFO);
  const std::string medium(20000, 'm');
  mlogWithLevel(MLOG_INFO, "t", "%s", medium.c_str());
  EXPECT_EQ(lastLine(log).message, medium);
  const std::string huge(200000, 'h');
  mlogWithLevel(MLOG_INFO, "t", "%s", huge.c_str());
  EXPECT_EQ(log.lines().back().size(), 163839u);  // cut to the 163,840-byte buffer
}

TEST(LogHex, SplitsTheDumpIntoLinesOf320Characters) {
  LogCapture log(MLOG_INFO);
  unsigned char bytes[100];
  for (int i = 0; i < 100; ++i) bytes[i] = static_cast<unsigned char>(i);
  mlogHex(MLOG_INFO, "/src/io.cpp", bytes, 100, "frame %d", 7);
  const std::vector<std::string> messages = log.messages();
  ASSERT_GE(messages.size(), 2u);
  const std::string& first = messages[messages.size() - 2];
  EXPECT_EQ(first.substr(0, 30), "frame 7 hex(size:100):0X00,0X0");
  EXPECT_EQ(first.size(), 22u + 320u);
  EXPECT_EQ(messages.back().size(), 5u * 100u - 1u - 320u);
  EXPECT_EQ(messages.back().substr(messages.back().size() - 4), "0X63");
}

// ---- tag filter ---------------------------------------------------------------------------------

TEST(LogFilter, KeepsTheTagsThePatternsSelect) {
  struct FilterCase {
    const char* filter;
    std::vector<std::string> kept;
  };
  const std::vector<std::string> tags = {"zeb", "zeb.", "zeb.thread", "zeb.file", "zebra", "app"};
  const FilterCase cases[] = {
      {"-zeb.file", {}},
      {"zeb.*,-zeb.file", {"zeb.", "zeb.thread"}},
      {"zeb", {"zeb"}},
      {" app ,\tzeb.t* ", {"zeb.thread", "app"}},
  };
  for (const FilterCase& c : cases) {
    SCOPED_TRACE(c.filter);
    LogCapture log(MLOG_INFO);
    mlogSetDebugPlaces(c.filter);
    for (const std::string& tag : tags) mlogWithLevel(MLOG_INFO, tag.c_str(), "to %s", tag.c_str());
    const std::vector<std::string> messages = log.messages();
    for (const std::string& tag : tags) {
      EXPECT_EQ(contains(messages, "to " + tag), contains(c.kept, tag)) << tag;
    }
  }
}

TEST(LogFilter, SameTextTwiceTurnsTheFilterOff) {
  LogCapture log(MLOG_INFO);
  mlogSetDebugPlaces("app");
  mlogWithLevel(MLOG_INFO, "other", "dropped");
  mlogSetDebugPlaces("app");
  mlogWithLevel(MLOG_INFO, "other", "kept");
  const std::vector<std::string> messages = log.messages();
  EXPECT_FALSE(contains(messages, "dropped"));
  EXPECT_TRUE(contains(messages, "kept"));
}

// ---- files --------------------------------------------------------------------------------------

TEST(LogFiles, NothingOpensWhileTheFileLogLevelIsZero) {
  LogCapture log(0);
  mlogOpenFile(log.path().c_str(), MLOG_INFO);
  ZEB_Log_Info("line");
  EXPECT_FALSE(std::filesystem::exists(log.path()));
}

TEST(LogFiles, EachFileKeepsItsOwnLevel) {
  LogCapture log(MLOG_INFO);
  const std::string debugPath = log.dir().filePath("debug.log");
  mlogOpenFile(debugPath.c_str(), MLOG_DEBUG);
  mlogWithLevel(MLOG_DEBUG, "t", "detail");
  EXPECT_FALSE(contains(log.messages(), "detail"));
  EXPECT_NE(log.dir().readFile("debug.log").find("detail\r\n"), std::string::npos);
}

TEST(LogFiles, SamePathTwiceKeepsOneRecord) {
  LogCapture log(MLOG_INFO);
  mlogOpenFile(log.path().c_str(), MLOG_INFO);
  mlogWithLevel(MLOG_INFO, "t", "once");
  const std::vector<std::string> lines = log.lines();
  EXPECT_EQ(countContaining(lines, "mlog Open File:"), 1);
  EXPECT_EQ(countContaining(lines, "once"), 1);
}

TEST(LogFiles, The33rdFileIsRefused) {
  LogCapture log(MLOG_INFO);
  for (int i = 2; i <= 32; ++i) {
    mlogOpenFile(log.dir().filePath("f" + std::to_string(i) + ".log").c_str(), MLOG_INFO);
  }
  const std::string extra = log.dir().filePath("f33.log");
  mlogOpenFile(extra.c_str(), MLOG_INFO);
  EXPECT_FALSE(std::filesystem::exists(extra));
  EXPECT_TRUE(
      contains(log.messages(), "Too many log files already open, not adding `" + extra + "'"));
  EXPECT_EQ(lastLine(log).letter, "E");
}

TEST(LogFiles, PendingFileOpensWhenItGetsALevel) {
  LogCapture log(0);
  mlogSetFileLogLevel(nullptr, MLOG_INFO);
  mlogOpenFile(log.path().c_str(), MLOG_DISABLE);
  EXPECT_FALSE(std::filesystem::exists(log.path()));
  mlogSetFileLogLevel(log.path().c_str(), MLOG_DEBUG);
  mlogWithLevel(MLOG_DEBUG, "t", "now open");
  EXPECT_TRUE(contains(log.messages(), "now open"));
}

TEST(LogFiles, FileInADeepFolderOpensWithItsWholeFolderChain) {
  LogCapture log(0);
  std::string name;
  for (char level = 'a'; level <= 'c'; ++level) name += std::string(120, level) + "/";
  name += "deep.log";
  const std::string path = log.dir().filePath(name);
  mlogSetFileLogLevel(nullptr, MLOG_INFO);
  mlogOpenFile(path.c_str(), MLOG_INFO);
  mlogWithLevel(MLOG_INFO, "t", "deep line");
  mlogCloseAllFile();
  EXPECT_NE(log.dir().readFile(name).find("deep line"), std::string::npos);
}

TEST(LogFiles, ReopenStartsANewFileAfterAMove) {
  LogCapture log(MLOG_INFO);
  mlogWithLevel(MLOG_INFO, "t", "before");
  const std::string moved = log.dir().filePath("moved.log");
  std::filesystem::rename(log.path(), moved);
  ZEB_Log_Reopen();
  mlogWithLevel(MLOG_INFO, "t", "after");
  EXPECT_EQ(log.messages(), std::vector<std::string>{"after"});
  EXPECT_NE(log.dir().readFile("moved.log").find("before"), std::string::npos);
}

TEST(LogFiles, BufferedFileIsWrittenOutOnClose) {
  LogCapture log(MLOG_INFO);
  mlogSetFileBuffer(log.path().c_str(), 4096);
  const size_t sizeBefore = log.text().size();
  mlogWithLevel(MLOG_INFO, "t", "held back");
  EXPECT_EQ(log.text().size(), sizeBefore);
  mlogCloseFile(log.path().c_str());
  const std::vector<std::string> messages = log.messages();
  ASSERT_GE(messages.size(), 2u);
  EXPECT_EQ(messages[messages.size() - 2], "held back");
  EXPECT_EQ(messages.back(), "CLOSE LOG FILE:" + log.path());
}

TEST(LogFiles, BufferedFileWritesOutWhenFull) {
  LogCapture log(MLOG_INFO);
  mlogSetFileBuffer(log.path().c_str(), 200);
  for (int i = 0; i < 10; ++i) mlogWithLevel(MLOG_INFO, "t", "line %d", i);
  const std::vector<std::string> messages = log.messages();
  EXPECT_TRUE(contains(messages, "line 0"));
  EXPECT_FALSE(contains(messages, "line 9"));
  mlogSetFileBuffer(log.path().c_str(), 0);
  EXPECT_EQ(log.messages().back(), "line 9");
}

// ---- marker files -------------------------------------------------------------------------------

TEST(LogMarkers, TheMarkerMeaningLessLoggingWins) {
  LogCapture log(0);
  log.dir().writeFile("mdebug", "");
  log.dir().writeFile("merror", "");
  mlogUpdateLevelsWithDir(log.dir().path().c_str());
  EXPECT_EQ(g_zeb_log_level, MLOG_ERROR);
  mlogOpenFile(log.path().c_str(), static_cast<tloglevel>(-1));
  ZEB_Log_Error("kept");
  mlogWithLevel(MLOG_WARNING, "t", "dropped");
  const std::vector<std::string> messages = log.messages();
  EXPECT_TRUE(contains(messages, "kept"));
  EXPECT_FALSE(contains(messages, "dropped"));
}

TEST(LogMarkers, FileMarkerAloneSetsOnlyTheFileLevel) {
  LogCapture log(0);
  const int globalBefore = g_zeb_log_level;
  log.dir().writeFile("fdebug", "");
  mlogUpdateLevelsWithDir(log.dir().path().c_str());
  EXPECT_EQ(g_zeb_log_level, globalBefore);
  mlogOpenFile(log.path().c_str(), static_cast<tloglevel>(-1));
  EXPECT_TRUE(contains(log.messages(), "filelogLevel:5"));
}

TEST(LogMarkers, ConsoleMarkerNeverDisables) {
  LogCapture log(0);
  log.dir().writeFile("minfo", "");
  log.dir().writeFile("mconsole", "");
  mlogUpdateLevelsWithDir(log.dir().path().c_str());
  std::filesystem::remove(log.dir().filePath("mconsole"));
  mlogUpdateLevelsWithDir(log.dir().path().c_str());
  ::testing::internal::CaptureStdout();
  mlogOpenFile(log.path().c_str(), static_cast<tloglevel>(-1));
  const std::string console = ::testing::internal::GetCapturedStdout();
  EXPECT_NE(console.find("consoleEnabled:1\r\n"), std::string::npos);
  EXPECT_TRUE(contains(log.messages(), "consoleEnabled:1"));
}

TEST(LogMarkers, QuickInitOpensTheFileAtTheMarkerLevel) {
  LogCapture log(0);
  log.dir().writeFile("mwarning", "");
  mlogQuickInit("app", log.path().c_str());
  onFreshThread([] {
    mlogWithLevel(MLOG_WARNING, nullptr, "warned");
    mlogWithLevel(MLOG_INFO, nullptr, "dropped");
  });
  EXPECT_EQ(lastLine(log).tag, "app");
  EXPECT_EQ(lastLine(log).message, "warned");
  mlogQuickFinalize();
  mlogWithLevel(MLOG_WARNING, nullptr, "after finalise");
  EXPECT_FALSE(contains(log.messages(), "after finalise"));
}

// ---- threads ------------------------------------------------------------------------------------

TEST(LogThreads, LinesFromManyThreadsStayWhole) {
  constexpr int kThreads = 4;
  constexpr int kLines = 300;
  LogCapture log(MLOG_INFO);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t] {
      for (int i = 0; i < kLines; ++i) {
        mlogWithLevel(MLOG_INFO, "worker", "thread %d line %d %s", t, i,
                      std::string(40, 'x').c_str());
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::vector<int> next(kThreads, 0);
  for (const std::string& line : log.lines()) {
    const auto parsed = parseLogLine(line);
    ASSERT_TRUE(parsed.has_value()) << line;
    int t = 0;
    int i = 0;
    if (std::sscanf(parsed->message.c_str(), "thread %d line %d", &t, &i) != 2) continue;
    ASSERT_EQ(parsed->message.size(),
              std::string("thread 0 line ").size() + std::to_string(i).size() + 41);
    EXPECT_EQ(i, next[t]++) << "thread " << t;
  }
  EXPECT_EQ(next, std::vector<int>(kThreads, kLines));
}

}  // namespace

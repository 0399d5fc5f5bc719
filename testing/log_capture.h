// log_capture.h: a log file in a fresh temporary folder for one test, read back line by line, and
// a parser that splits a log line into its fields.
//
//   zeb::testing::LogCapture log(MLOG_DEBUG);     // file level 5
//   mlogWithLevel(MLOG_INFO, "app.net", "sent %d", 3);
//   auto line = zeb::testing::parseLogLine(log.lines().back());
//   EXPECT_EQ(line->message, "sent 3");
//
// The log is process-wide, so the capture leaves it as a fresh process has it: its destructor
// closes every log file, finalises the log and puts the settings back (global level as before,
// console off, no tag filter, application id "zeb", file log level 0).
#ifndef ZEB_TESTING_LOG_CAPTURE_H
#define ZEB_TESTING_LOG_CAPTURE_H

#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "testing/temp_dir.h"

namespace zeb {
namespace testing {

// The fields of one line (without its CR LF).
struct LogLine {
  std::string date;  // "2026-02-01"
  std::string time;  // "00:49:06"
  int milliseconds;
  unsigned long processId;
  unsigned long threadId;
  std::string letter;  // "I", ..., or "UNKNOWN: "
  std::string tag;     // with its padding dots, without the ':'
  int indent;          // the spaces after the ':' less the one every line has
  std::string message;
};

// The fields of `line`, or nothing when it does not have the layout of a log line.
std::optional<LogLine> parseLogLine(const std::string& line);

class LogCapture {
 public:
  // Creates the folder; with fileLevel above 0 also sets the file log level to it and opens
  // path() at that level. With 0 the test sets up the log itself.
  explicit LogCapture(int fileLevel);
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  const TempDir& dir() const { return dir_; }
  // The log file: "test.log" in dir().
  const std::string& path() const { return path_; }
  // The whole file.
  std::string text() const;
  // The file split at CR LF; text after the last CR LF is the last line.
  std::vector<std::string> lines() const;
  // The message of every line that parses, in order.
  std::vector<std::string> messages() const;

  // Closes every log file, finalises the log and restores the defaults (see above), with the
  // global level `level`.
  static void resetLog(int level);

 private:
  TempDir dir_;
  std::string path_;
  int savedLevel_;
};

// Runs `body` on a new thread and waits for it. Tag widths and indentation are per thread and
// only grow, so tests that depend on them log from a fresh thread.
template <typename Body>
void onFreshThread(Body body) {
  std::thread(body).join();
}

}  // namespace testing
}  // namespace zeb

#endif  // ZEB_TESTING_LOG_CAPTURE_H

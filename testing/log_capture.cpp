#include "testing/log_capture.h"

#include <ctype.h>
#include <string.h>

#include <algorithm>

#include "zeb/log/zeb_log.h"

namespace zeb {
namespace testing {

namespace {

// More finalisations than any test initialises; those beyond the last initialisation do nothing.
constexpr int kFinalisations = 64;

// Reads a line from left to right; every step fails once one has failed.
class LineReader {
 public:
  explicit LineReader(const std::string& line) : line_(line) {}
  bool ok() const { return ok_; }

  // Exactly `count` digits (count 0: one or more).
  std::string digits(size_t count) {
    size_t end = pos_;
    while (end < line_.size() && isdigit(static_cast<unsigned char>(line_[end])) != 0) ++end;
    if (end == pos_ || (count != 0 && end - pos_ != count)) ok_ = false;
    return take(end);
  }
  void literal(const char* text) {
    if (line_.compare(pos_, strlen(text), text) != 0) ok_ = false;
    if (ok_) pos_ += strlen(text);
  }
  // The text before the next `stop`, which is passed over.
  std::string until(char stop) {
    const size_t end = line_.find(stop, pos_);
    if (end == std::string::npos) ok_ = false;
    std::string text = take(end);
    if (ok_) ++pos_;
    return text;
  }
  // One or more spaces; returns how many.
  size_t spaces() {
    const size_t end = std::min(line_.find_first_not_of(' ', pos_), line_.size());
    if (end == pos_) ok_ = false;
    return take(end).size();
  }
  std::string letter() {
    if (line_.compare(pos_, 9, "UNKNOWN: ") == 0) return take(pos_ + 9);
    if (pos_ >= line_.size() || strchr("SAEWIDV", line_[pos_]) == nullptr) ok_ = false;
    return take(pos_ + 1);
  }
  std::string rest() { return take(line_.size()); }

 private:
  std::string take(size_t end) {
    if (!ok_ || end == std::string::npos) return std::string();
    std::string text = line_.substr(pos_, end - pos_);
    pos_ = end;
    return text;
  }

  const std::string& line_;
  size_t pos_ = 0;
  bool ok_ = true;
};

}  // namespace

std::optional<LogLine> parseLogLine(const std::string& line) {
  LineReader r(line);
  LogLine out;
  out.date = r.digits(4);
  for (const char* part : {"-", "-"}) {
    r.literal(part);
    out.date += part + r.digits(2);
  }
  r.literal(" ");
  out.time = r.digits(2);
  for (const char* part : {":", ":"}) {
    r.literal(part);
    out.time += part + r.digits(2);
  }
  r.literal(".");
  const std::string milliseconds = r.digits(3);
  r.literal(" ");
  const std::string processId = r.digits(0);
  r.literal("-");
  const std::string threadId = r.digits(0);
  r.literal(":");
  out.letter = r.letter();
  r.literal("/");
  out.tag = r.until(':');
  out.indent = static_cast<int>(r.spaces()) - 1;
  out.message = r.rest();
  if (!r.ok()) return std::nullopt;
  out.milliseconds = std::stoi(milliseconds);
  out.processId = std::stoul(processId);
  out.threadId = std::stoul(threadId);
  return out;
}

LogCapture::LogCapture(int fileLevel)
    : path_(dir_.filePath("test.log")), savedLevel_(g_zeb_log_level) {
  if (fileLevel <= 0) return;
  mlogSetFileLogLevel(nullptr, static_cast<tloglevel>(fileLevel));
  mlogOpenFile(path_.c_str(), static_cast<tloglevel>(fileLevel));
}

LogCapture::~LogCapture() {
  resetLog(savedLevel_);
}

void LogCapture::resetLog(int level) {
  mlogSetConsoleEnable(0);
  mlogSetLevel(static_cast<tloglevel>(level));
  mlogSetFileLogLevel(nullptr, MLOG_DISABLE);
  mlogSetDebugPlaces(nullptr);
  for (int i = 0; i < kFinalisations; ++i) mlogQuickFinalize();
  mlogSetGlobalAppID("zeb");
  mlogSetDebugBreakLevel(0);
}

std::string LogCapture::text() const {
  return dir_.readFile("test.log");
}

std::vector<std::string> LogCapture::lines() const {
  const std::string all = text();
  std::vector<std::string> result;
  size_t start = 0;
  for (size_t end; (end = all.find("\r\n", start)) != std::string::npos; start = end + 2) {
    result.push_back(all.substr(start, end - start));
  }
  if (start < all.size()) result.push_back(all.substr(start));
  return result;
}

std::vector<std::string> LogCapture::messages() const {
  std::vector<std::string> result;
  for (const std::string& line : lines()) {
    if (auto parsed = parseLogLine(line)) result.push_back(parsed->message);
  }
  return result;
}

}  // namespace testing
}  // namespace zeb

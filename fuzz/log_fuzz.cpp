// Fuzzing of the log's tag filter and line formatter through the public interface, with a real
// log file: the first input line is the filter text; the following lines alternate a tag and a
// message. Every message is logged as a format (with '%' removed, so it converts nothing) behind
// a numbered marker; the file must then hold exactly the markers whose tags a plain reference
// reading of the filter keeps. Each input runs in its own log lifetime (initialise, open, write,
// finalise) and the file is removed afterwards, so memory and disk stay bounded.
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "zeb/log/zeb_log.h"

namespace {

namespace fs = std::filesystem;

constexpr size_t kMaxItems = 64;
constexpr size_t kMaxTagLength = 200;
constexpr size_t kMaxMessageLength = 4000;
constexpr size_t kMaxPatterns = 1024;
// Starts and ends each marker; removed from tags and messages.
constexpr char kMarkerEdge = '\x01';

class FuzzFolder {
 public:
  FuzzFolder() {
    std::random_device seed;
    path_ = fs::temp_directory_path() / ("zeb_log_fuzz_" + std::to_string(seed()));
    fs::create_directories(path_);
  }
  ~FuzzFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  std::string logPath() const { return (path_ / "fuzz.log").string(); }

 private:
  fs::path path_;
};

// The text up to its first NUL, without '%' and marker bytes, at most `limit` bytes.
std::string cleaned(const std::string& text, size_t limit) {
  std::string out = text.substr(0, std::min(text.find('\0'), limit));
  out.erase(
      std::remove_if(out.begin(), out.end(), [](char c) { return c == '%' || c == kMarkerEdge; }),
      out.end());
  return out;
}

std::vector<std::string> splitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; lines.size() <= 2 * kMaxItems && std::getline(in, line);) {
    lines.push_back(line);
  }
  return lines;
}

// The filter as its description reads: pieces between spaces and commas, trimmed of blanks; a
// pattern matches a tag equal to it, or one starting with its text before the first '*'; a
// leading '-' excludes.
bool referenceKeeps(const std::string& filterText, const std::string& tag) {
  std::vector<std::string> patterns;
  size_t start = 0;
  while (patterns.size() < kMaxPatterns) {
    start = filterText.find_first_not_of(" ,", start);
    if (start == std::string::npos) break;
    const size_t end = std::min(filterText.find_first_of(" ,", start), filterText.size());
    std::string piece = filterText.substr(start, end - start);
    piece.erase(0, piece.find_first_not_of(" \n\r\t") == std::string::npos
                       ? piece.size()
                       : piece.find_first_not_of(" \n\r\t"));
    piece.erase(piece.find_last_not_of(" \n\r\t") + 1);
    patterns.push_back(piece);
    start = end;
  }
  if (patterns.empty()) return true;
  bool included = false;
  for (const std::string& pattern : patterns) {
    const bool exclude = !pattern.empty() && pattern[0] == '-';
    const std::string body = exclude ? pattern.substr(1) : pattern;
    const size_t star = body.find('*');
    const bool matches = star == std::string::npos
                             ? tag == body
                             : tag.size() >= star && tag.compare(0, star, body, 0, star) == 0;
    if (matches && exclude) return false;
    if (matches) included = true;
  }
  return included;
}

std::string marker(size_t index) {
  return std::string(1, kMarkerEdge) + std::to_string(index) + kMarkerEdge;
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FuzzFolder folder;
  const std::string logPath = folder.logPath();
  const std::vector<std::string> lines =
      splitLines(std::string(reinterpret_cast<const char*>(data), size));
  if (lines.empty()) return 0;
  std::string filterText = lines[0].substr(0, lines[0].find('\0'));
  filterText.erase(std::remove(filterText.begin(), filterText.end(), kMarkerEdge),
                   filterText.end());

  mlogSetFileLogLevel(nullptr, MLOG_VERBOSE);
  mlogOpenFile(logPath.c_str(), MLOG_VERBOSE);
  mlogSetDebugPlaces(filterText.c_str());
  std::vector<bool> expected;
  for (size_t i = 1; i + 1 < lines.size(); i += 2) {
    const std::string tag = cleaned(lines[i], kMaxTagLength);
    const std::string message = marker(expected.size()) + cleaned(lines[i + 1], kMaxMessageLength);
    expected.push_back(referenceKeeps(filterText, tag.empty() ? "zeb" : tag));
    mlogWithLevel(MLOG_INFO, tag.c_str(), message.c_str());
  }
  mlogQuickFinalize();
  mlogSetFileLogLevel(nullptr, MLOG_DISABLE);
  mlogQuickFinalize();

  const std::string written = readFile(logPath);
  fs::remove(logPath);
  for (size_t i = 0; i < expected.size(); ++i) {
    if ((written.find(marker(i)) != std::string::npos) != expected[i]) abort();
  }
  return 0;
}

// tag_filter.h: the log's tag filter. Private to the log core, which uses it under its lock.
//
// The filter text is split at spaces and commas into patterns (each trimmed of " \n\r\t"). A
// pattern matches a tag when they are equal, or when the tag begins with the pattern's text
// before its first '*' ("zeb.*" matches "zeb.thread" and "zeb."; "zeb" only "zeb"). A pattern
// starting with '-' excludes the tags its remainder matches. A tag passes when it matches at
// least one include pattern and no exclude pattern, so a filter of exclude patterns alone drops
// every tag; an empty filter passes every tag.
#ifndef ZEB_LOG_INTERNAL_TAG_FILTER_H
#define ZEB_LOG_INTERNAL_TAG_FILTER_H

#include <string.h>

#include <string>
#include <vector>

namespace zeb {
namespace log_internal {

inline bool tagMatchesPattern(const char* pattern, const char* tag) {
  for (;; ++pattern, ++tag) {
    if (*pattern == '*') return true;
    if (*pattern != *tag) return false;
    if (*tag == '\0') return true;
  }
}

class TagFilter {
 public:
  static constexpr size_t kMaxPatterns = 1024;

  bool passes(const char* tag) const {
    if (patterns_.empty()) return true;
    bool included = false;
    for (const std::string& pattern : patterns_) {
      if (pattern[0] == '-') {
        if (tagMatchesPattern(pattern.c_str() + 1, tag)) return false;
      } else if (!included) {
        included = tagMatchesPattern(pattern.c_str(), tag);
      }
    }
    return included;
  }

  // Drops every pattern, then takes the patterns of `text`, calling onPattern(const char*) after
  // adding each. A null or empty text leaves the filter off, and so does the text it was last
  // set to (setting the same text twice in a row turns the filter off).
  template <typename OnPattern>
  void set(const char* text, OnPattern onPattern) {
    patterns_.clear();
    if (text == nullptr || *text == '\0') return;
    if (hasLastText_ && lastText_ == text) return;
    lastText_ = text;
    hasLastText_ = true;
    for (const char* p = text; *p != '\0' && patterns_.size() < kMaxPatterns;) {
      const size_t pieceLength = strcspn(p, " ,");
      if (pieceLength > 0) {
        patterns_.push_back(trimmed(p, pieceLength));
        onPattern(patterns_.back().c_str());
      }
      p += pieceLength;
      p += strspn(p, " ,");
    }
  }

  void clearPatterns() { patterns_.clear(); }
  // Forgets the text the filter was last set to.
  void forgetText() {
    lastText_.clear();
    hasLastText_ = false;
  }

 private:
  static std::string trimmed(const char* piece, size_t length) {
    const char* kBlanks = " \n\r\t";
    size_t begin = 0;
    while (begin < length && strchr(kBlanks, piece[begin]) != nullptr) ++begin;
    size_t end = length;
    while (end > begin && strchr(kBlanks, piece[end - 1]) != nullptr) --end;
    return std::string(piece + begin, end - begin);
  }

  std::vector<std::string> patterns_;
  std::string lastText_;
  bool hasLastText_ = false;
};

}  // namespace log_internal
}  // namespace zeb

#endif  // ZEB_LOG_INTERNAL_TAG_FILTER_H

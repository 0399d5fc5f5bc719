// log_line.h: the formatting of one log line. Private to the log core, which calls it under its
// lock.
//
// A line is "<date> <time>.<ms> <pid>-<tid>:<letter>/<tag field><message>" ending in CR LF:
//
//   2026-02-01 00:49:06.123 4120-7736:I/zeb.thread.: message
//
// The tag field is the tag padded with '.' to the longest tag the thread has written, ':', and
// the thread's indentation plus one space. Conceptually the line is formatted in two stages: the
// prefix, the tag field and the caller's format are joined into one format text of at most 5,119
// bytes, then that text is formatted with the caller's arguments, so a '%' in a tag is
// interpreted as a conversion. When the tag field holds no '%' the joined text formats to the
// prefix and tag field as they are followed by the caller's format formatted alone (the printf
// engine copies an incomplete or unknown conversion as it stands, so CR LF after the format
// cannot change its meaning), and the line is built that way without the intermediate text.
//
// The second stage is bounded by retrying in heap buffers of 10,240 bytes doubling up to 163,840
// bytes. The printf engine writes into a growing string instead (the log keeps one per thread, so
// lines up to 5,120 bytes touch the heap once per thread), and a result too long for the last
// retry buffer is cut as that buffer would cut it. A NUL produced by the arguments ends the line.
#ifndef ZEB_LOG_INTERNAL_LOG_LINE_H
#define ZEB_LOG_INTERNAL_LOG_LINE_H

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <string>

#include "zeb/log/internal/log_thread_context.h"
#include "zeb/platform/clock.h"
#include "zeb/platform/process.h"
#include "zeb/strings/internal/printf_format.h"

namespace zeb {
namespace log_internal {

// The size of the line buffer: the joined format text holds at most kLineBufferSize - 1 bytes,
// and so does a line that fits without the heap.
constexpr size_t kLineBufferSize = 5120;
// Tags are cut to this many bytes.
constexpr size_t kMaxTagLength = kLineBufferSize - 1;
// Indentation beyond this many spaces is not shown.
constexpr int kMaxShownIndent = 1280;
// A format longer than this together with the tag field gives kTooLongLine instead of a line.
constexpr size_t kMaxFormatAndTagField = 5070;
// The last retry buffer holds 163,840 bytes: a longer line is cut to it, less the terminator.
constexpr size_t kMaxLineLength = 163840 - 1;

// Room for the prefix: the time stamp, two decimal ids, the longest letter and separators.
constexpr size_t kMaxPrefixLength = 128;

constexpr char kTooLongLine[] = "<MLOG-TTL>\n";
constexpr char kNullFormatText[] = "(logerror:null string)";
constexpr char kLineEnd[] = "\r\n";

// "S", "A", "E", "W", "I", "D", "V" for 0..6, the letter of level - 14 for 15..20, else
// "UNKNOWN: ".
inline const char* levelLetter(int level) {
  static const char* const kLetters[] = {"S", "A", "E", "W", "I", "D", "V"};
  if (level >= 0 && level <= 6) return kLetters[level];
  if (level >= 15 && level <= 20) return kLetters[level - 14];
  return "UNKNOWN: ";
}

inline char* writeDecimal(char* out, unsigned long value) {
  char digits[24];
  char* p = digits + sizeof digits;
  do {
    *--p = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  const size_t count = static_cast<size_t>(digits + sizeof digits - p);
  memcpy(out, p, count);
  return out + count;
}

inline bool endsWithNewline(const char* text, size_t length) {
  return length > 0 && text[length - 1] == '\n';
}

// The parts of a line that do not come from the caller's format.
struct LineSource {
  int level;
  const char* tag;  // never null; "" gives no tag text and no ':'
  unsigned long processId;
};

class LineFormatter {
 public:
  LineFormatter(const LineSource& source, ThreadContext& context)
      : source_(source), context_(context) {}

  // Formats the line of `fmt` (null: the "(logerror:null string)" line) with `args` into `line`.
  void format(std::string& line, const char* fmt, va_list args) {
    const TagField field = measureTagField();
    const size_t fmtLength = fmt != nullptr ? strlen(fmt) : 0;
    if (fmt != nullptr && fmtLength + field.length() > kMaxFormatAndTagField) {
      line.assign(kTooLongLine);
      return;
    }
    writeHead(line, field);
    const bool tagHasPercent = memchr(source_.tag, '%', field.tagLength) != nullptr;
    const size_t lineEndLength = fmt != nullptr && endsWithNewline(fmt, fmtLength) ? 0 : 2;
    if (fmt != nullptr && !tagHasPercent &&
        line.size() + fmtLength + lineEndLength < kLineBufferSize) {
      internal::formatPrintf(line, fmt, args);
      line.append(kLineEnd, lineEndLength);
    } else {
      formatJoined(line, fmt, args);
    }
    line.resize(std::min(strlen(line.c_str()), kMaxLineLength));
  }

 private:
  // The tag field: the tag (cut to kMaxTagLength), dots up to `shownLength`, ':' when the tag is
  // not empty, and `spaces` spaces.
  struct TagField {
    size_t tagLength;
    size_t shownLength;
    size_t spaces;
    size_t length() const { return shownLength + (shownLength > 0 ? 1 : 0) + spaces; }
  };

  TagField measureTagField() {
    const size_t tagLength = strnlen(source_.tag, kMaxTagLength);
    const size_t shown = padTagWidth(tagLength);
    return TagField{tagLength, shown,
                    static_cast<size_t>(std::min(context_.indent, kMaxShownIndent)) + 1};
  }

  // Replaces `line` with the prefix and the tag field.
  void writeHead(std::string& line, const TagField& field) {
    char prefix[kMaxPrefixLength];
    const size_t prefixLength = writePrefix(prefix);
    line.resize(prefixLength + field.length());
    char* p = &line[0];
    memcpy(p, prefix, prefixLength);
    p += prefixLength;
    memcpy(p, source_.tag, field.tagLength);
    p += field.tagLength;
    memset(p, '.', field.shownLength - field.tagLength);
    p += field.shownLength - field.tagLength;
    if (field.shownLength > 0) *p++ = ':';
    memset(p, ' ', field.spaces);
  }

  // Widens the thread's tag width to `tagLength`, or returns the width the tag is padded to.
  size_t padTagWidth(size_t tagLength) {
    if (tagLength == 0) return 0;
    const size_t width = static_cast<size_t>(context_.tagWidth);
    if (tagLength <= width) return width;
    context_.tagWidth = static_cast<int>(tagLength);
    return tagLength;
  }

  // Writes "<date> <time>.<ms> <pid>-<tid>:<letter>/" at `out`; returns its length.
  size_t writePrefix(char* out) {
    const long long nowMs = platform::wallClockMilliseconds();
    const int milliseconds = static_cast<int>((nowMs % 1000 + 1000) % 1000);
    const long long second = (nowMs - milliseconds) / 1000;
    if (context_.stampLength == 0 || context_.stampSecond != second) stamp(second);
    if (context_.threadId == 0) context_.threadId = platform::currentThreadId();
    char* p = out;
    memcpy(p, context_.stampText, static_cast<size_t>(context_.stampLength));
    p += context_.stampLength;
    *p++ = '.';
    *p++ = static_cast<char>('0' + milliseconds / 100);
    *p++ = static_cast<char>('0' + milliseconds / 10 % 10);
    *p++ = static_cast<char>('0' + milliseconds % 10);
    *p++ = ' ';
    p = writeDecimal(p, source_.processId);
    *p++ = '-';
    p = writeDecimal(p, context_.threadId);
    *p++ = ':';
    const char* letter = levelLetter(source_.level);
    const size_t letterLength = strlen(letter);
    memcpy(p, letter, letterLength);
    p += letterLength;
    *p++ = '/';
    return static_cast<size_t>(p - out);
  }

  void stamp(long long second) {
    platform::TimeFields t{};
    platform::localTimeOfSecond(second, &t);
    const int length =
        snprintf(context_.stampText, sizeof context_.stampText, "%d-%02d-%02d %02d:%02d:%02d",
                 t.year, t.month, t.day, t.hour, t.minute, t.second);
    context_.stampLength = std::clamp(length, 0, int(sizeof context_.stampText) - 1);
    context_.stampSecond = second;
  }

  // The two stages as such: `line` holds the prefix and the tag field; they are joined with the
  // format in a buffer of kLineBufferSize bytes (cut to fit; CR LF added, as far as it fits, when
  // the text does not end in '\n'), and the joined text is formatted with `args` into `line`.
  static void formatJoined(std::string& line, const char* fmt, va_list args) {
    char joined[kLineBufferSize];
    size_t length = 0;
    const auto add = [&](const char* text, size_t size) {
      const size_t count = std::min(size, kLineBufferSize - 1 - length);
      memcpy(joined + length, text, count);
      length += count;
    };
    add(line.data(), line.size());
    const char* message = fmt != nullptr ? fmt : kNullFormatText;
    add(message, strlen(message));
    if (!endsWithNewline(joined, length)) add(kLineEnd, 2);
    joined[length] = '\0';
    line.clear();
    internal::formatPrintf(line, joined, args);
  }

  const LineSource& source_;
  ThreadContext& context_;
};

}  // namespace log_internal
}  // namespace zeb

#endif  // ZEB_LOG_INTERNAL_LOG_LINE_H

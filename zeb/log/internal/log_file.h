// log_file.h: one open log file of the log core. Private to the log core, which uses it under its
// lock.
//
// A file is unbuffered (every line written and flushed at once) or has a write-behind buffer of a
// given capacity that collects lines and is written out when a line would not fit, when the
// capacity changes and when the file closes. Lines that do not end in '\n' get CR LF.
#ifndef ZEB_LOG_INTERNAL_LOG_FILE_H
#define ZEB_LOG_INTERNAL_LOG_FILE_H

#include <stdio.h>
#include <string.h>

#include <memory>

#include "zeb/log/internal/log_line.h"
#include "zeb/platform/file.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/utils/mfile.h"

namespace zeb {
namespace log_internal {

// Opens the log file `path` for appending: "r+b" keeps what it holds; when that fails, the file
// is created with "w+b", after creating its folder when `createFolder`. Null when both fail.
inline FILE* openLogStream(const TWideString& path, bool createFolder) {
  FILE* stream = platform::openFile(path.p(), "r+b");
  if (stream == nullptr) {
    if (createFolder) mforceCreateDirForFileW(path.p());
    stream = platform::openFile(path.p(), "w+b");
  }
  if (stream != nullptr) fseek(stream, 0, SEEK_END);
  return stream;
}

class LogFile {
 public:
  LogFile(const char* path, FILE* stream, int level)
      : path_(path), stream_(stream), level_(level) {}
  ~LogFile() { close(); }
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;

  const char* path() const { return path_.p(); }
  int level() const { return level_; }
  void setLevel(int level) { level_ = level; }

  // Writes `line` (`length` bytes), with CR LF after it unless it ends in '\n'. A file whose
  // reopening failed drops the line.
  void writeLine(const char* line, size_t length) {
    if (stream_ == nullptr) return;
    const bool needsLineEnd = !endsWithNewline(line, length);
    if (capacity_ == 0) {
      fwrite(line, 1, length, stream_);
      if (needsLineEnd) fwrite(kLineEnd, 1, 2, stream_);
      fflush(stream_);
      return;
    }
    bool reachedStream = false;
    if (used_ + length >= capacity_) reachedStream = writeOutBuffer();
    if (used_ + length >= capacity_) {
      fwrite(line, 1, length, stream_);
      reachedStream = true;
    } else {
      append(line, length);
    }
    if (needsLineEnd) {
      if (used_ + 2 >= capacity_) reachedStream = writeOutBuffer() || reachedStream;
      if (used_ + 2 <= capacity_) {
        append(kLineEnd, 2);
      } else {
        fwrite(kLineEnd, 1, 2, stream_);
        reachedStream = true;
      }
    }
    if (reachedStream) fflush(stream_);
  }

  // Gives the file a write-behind buffer of `capacity` bytes (0 or less: none), after writing out
  // what the current buffer holds (dropped when the file has no stream).
  void setBufferCapacity(int capacity) {
    if (writeOutBuffer()) fflush(stream_);
    used_ = 0;
    capacity_ = capacity > 0 ? static_cast<size_t>(capacity) : 0;
    buffer_.reset(capacity_ > 0 ? new char[capacity_] : nullptr);
  }

  // Closes the stream and opens the file again by its path, positioned at its end (after
  // something else moved or truncated it). What the buffer holds goes to the new stream.
  void reopen() {
    if (stream_ != nullptr) fclose(stream_);
    stream_ = openLogStream(TWideString(path(), MIB_UTF8), false);
  }

  // Writes out the buffer and closes the stream.
  void close() {
    if (stream_ == nullptr) return;
    writeOutBuffer();
    fclose(stream_);
    stream_ = nullptr;
  }

 private:
  void append(const char* bytes, size_t length) {
    memcpy(buffer_.get() + used_, bytes, length);
    used_ += length;
  }

  // Writes the buffered bytes to the stream; true when there were any.
  bool writeOutBuffer() {
    if (used_ == 0 || stream_ == nullptr) return false;
    fwrite(buffer_.get(), 1, used_, stream_);
    used_ = 0;
    return true;
  }

  size_t capacity_ = 0;
  std::unique_ptr<char[]> buffer_;
  size_t used_ = 0;
  TAnsiString path_;
  FILE* stream_;
  int level_;
};

}  // namespace log_internal
}  // namespace zeb

#endif  // ZEB_LOG_INTERNAL_LOG_FILE_H

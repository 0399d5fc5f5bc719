// TCsvFileReader.cpp: the field functions, the per-thread field buffer and the record walk.
#include "zeb/formats/TCsvFileReader.h"

#include <stdlib.h>
#include <string.h>

#include <new>
#include <string>

#include "zeb/log/mlog_ticks.h"
#include "zeb/log/zeb_log.h"
#include "zeb/platform/file.h"
#include "zeb/strings/TWideString.h"
#include "zeb/utils/mfile.h"

namespace {

const char kTag[] = "zeb.csv";
constexpr tloglevel kTrace19 = static_cast<tloglevel>(19);
const char kQuote = '"';

bool isLineBreak(char c) {
  return c == '\r' || c == '\n';
}

// The bytes that make csv_text_to_csvfield quote a value (the comma is tested besides).
struct QuoteTriggers {
  bool quote[256] = {};
  QuoteTriggers() {
    for (int c = 0; c <= 0x20; ++c) quote[c] = true;
    for (int c = 0x7F; c <= 0xFF; ++c) quote[c] = true;
    quote[static_cast<unsigned char>(kQuote)] = true;
    quote[static_cast<unsigned char>('\'')] = true;
  }
  bool needsQuotes(char c) const { return c == ',' || quote[static_cast<unsigned char>(c)]; }
};
const QuoteTriggers kTriggers;

// The calling thread's field buffer: replaced by one of exactly the size asked for when it is too
// small, never shrunk, freed when the thread ends.
class FieldBuffer {
 public:
  FieldBuffer() = default;
  FieldBuffer(const FieldBuffer&) = delete;
  FieldBuffer& operator=(const FieldBuffer&) = delete;
  ~FieldBuffer() { delete[] data_; }

  // A buffer of at least `size` bytes, or null when it cannot be allocated.
  char* reserve(size_t size) {
    if (size > capacity_) {
      delete[] data_;
      capacity_ = 0;
      data_ = new (std::nothrow) char[size];
      if (data_ == nullptr) return nullptr;
      capacity_ = size;
    }
    return data_;
  }

 private:
  char* data_ = nullptr;
  size_t capacity_ = 0;
};

FieldBuffer& fieldBuffer() {
  thread_local FieldBuffer buffer;
  return buffer;
}

// Copies the field that starts at `p` (after an opening quote when `quoted`) into `out` and NUL
// terminates it. Returns the position after the field (past its ending comma) and whether a comma
// ended it.
const char* copyField(const char* p, bool quoted, char* out, bool* endedAtComma) {
  bool inQuotes = quoted;
  *endedAtComma = false;
  while (*p != '\0') {
    const char c = *p;
    if (c == kQuote) {
      if (p[1] == kQuote) {
        *out++ = kQuote;
        p += 2;
        continue;
      }
      if (inQuotes) {
        inQuotes = false;
      } else {
        *out++ = c;
      }
    } else if (isLineBreak(c)) {
      if (inQuotes) *out++ = c;
    } else if (c == ',' && !inQuotes) {
      *endedAtComma = true;
      ++p;
      break;
    } else {
      *out++ = c;
    }
    ++p;
  }
  *out = '\0';
  return p;
}

// csv_parse_onefield on a text of `length` bytes (not counting its NUL).
char* takeField(char* text, size_t length, char** field) {
  const bool quoted = *text == kQuote;
  const char* start = quoted ? text + 1 : text;
  char* out = fieldBuffer().reserve(length + (quoted ? 0 : 1));
  if (out == nullptr) return nullptr;
  bool endedAtComma = false;
  const char* p = copyField(start, quoted, out, &endedAtComma);
  if (field != nullptr) *field = out;
  bool passedLineBreak = false;
  for (; isLineBreak(*p); ++p) passedLineBreak = true;
  if (*p == '\0') return endedAtComma && !passedLineBreak ? const_cast<char*>(p) : nullptr;
  return passedLineBreak ? nullptr : const_cast<char*>(p);
}

// ---- the walk -----------------------------------------------------------------------------------

// The callback results the walk acts on.
enum : int { kSkip = 1, kStop = 2 };

class Walk {
 public:
  explicit Walk(TCsvFileReader::tcallbacks* callbacks) : callbacks_(callbacks) {}

  int run(const char* text) {
    const char* position = text != nullptr ? text : "";
    bool stop = false;
    while (!stop && *position != '\0') {
      char* next = csv_skip_oneline(const_cast<char*>(position));
      if (next == nullptr) break;
      record_.assign(position, static_cast<size_t>(next - position));
      position = next;
      stop = !walkRecord();
    }
    if (callbacks_ != nullptr) callbacks_->onFinished(line_);
    return line_;
  }

 private:
  // Reports one record; false when the walk ends with it.
  bool walkRecord() {
    const char* lineText = record_.c_str();
    const int verdict = callbacks_ != nullptr ? callbacks_->onReadLine(line_, lineText) : 0;
    if (verdict == kSkip) {
      ++line_;
      return true;
    }
    if (verdict == kStop) {
      if (ZEB_LOG_ENABLED(MLOG_INFO)) {
        mlogWithLevel(MLOG_INFO, nullptr, "LINE:%d,break for onReadLine", line_);
      }
      return false;
    }
    const bool stopAfterRecord = !splitRecord();
    if (callbacks_ != nullptr && callbacks_->onLineFinished(line_, lineText)) {
      if (ZEB_LOG_ENABLED(MLOG_INFO)) {
        mlogWithLevel(MLOG_INFO, nullptr, "LINE:%d,break for onLineFinished", line_);
      }
      return false;
    }
    ++line_;
    return !stopAfterRecord;
  }

  // Hands every field of the record to onReadItem; false when a callback asked to stop the walk.
  bool splitRecord() {
    char* const end = record_.data() + record_.size();
    char* p = record_.data();
    for (int column = 0; p != nullptr; ++column) {
      char* fieldText = nullptr;
      p = takeField(p, static_cast<size_t>(end - p), &fieldText);
      if (callbacks_ == nullptr) continue;
      const int verdict = callbacks_->onReadItem(line_, column, fieldText);
      if (verdict == kSkip) return true;
      if (verdict == kStop) {
        if (ZEB_LOG_ENABLED(MLOG_INFO)) {
          mlogWithLevel(MLOG_INFO, nullptr, "LINE:%d,break for onReadItem,column:%d,fieldtext:%s",
                        line_, column, fieldText);
        }
        return false;
      }
    }
    return true;
  }

  TCsvFileReader::tcallbacks* callbacks_;
  std::string record_;  // the raw text of the current record, its buffer reused
  int line_ = 0;
};

void logUnreadableFile(const zwchar_t* fileName, int readResult) {
  if (!zeb::platform::pathExists(fileName)) {
    if (ZEB_LOG_ENABLED(MLOG_DEBUG)) {
      mlogWithLevel(MLOG_DEBUG, kTag, "file not exists:%s", TWideString(fileName).utf8().p());
    }
  } else if (ZEB_LOG_ENABLED(MLOG_ERROR)) {
    mlogWithLevel(MLOG_ERROR, kTag, "failed to read file,errorcode:%lld,filename:%s",
                  static_cast<long long>(readResult), TWideString(fileName).utf8().p());
  }
}

}  // namespace

// ---- the field functions ------------------------------------------------------------------------

char* csv_text_to_csvfield(char* text) {
  if (text == nullptr || *text == '\0') return text;
  size_t length = 0;
  bool quote = false;
  for (; text[length] != '\0'; ++length) quote = quote || kTriggers.needsQuotes(text[length]);
  if (!quote) return text;
  char* out = fieldBuffer().reserve(2 * length + 3);
  if (out == nullptr) return nullptr;
  char* p = out;
  *p++ = kQuote;
  for (const char* s = text; *s != '\0'; ++s) {
    if (*s == kQuote) *p++ = kQuote;
    *p++ = *s;
  }
  *p++ = kQuote;
  *p = '\0';
  return out;
}

char* csv_parse_onefield(char* text, char** field) {
  if (field != nullptr) *field = nullptr;
  if (text == nullptr) return nullptr;
  return takeField(text, strlen(text), field);
}

char* csv_skip_oneline(char* text) {
  if (text == nullptr || *text == '\0') return nullptr;
  bool inQuotes = false;
  char* p = text;
  for (;;) {
    p += strcspn(p, inQuotes ? "\"" : "\"\r\n");
    if (*p == '\0') return p;
    if (*p != kQuote) {
      while (isLineBreak(*p)) ++p;
      return p;
    }
    if (inQuotes && p[1] == kQuote) {
      p += 2;
    } else {
      inQuotes = !inQuotes;
      ++p;
    }
  }
}

// ---- the reader ---------------------------------------------------------------------------------

TCsvFileReader::tcallbacks::~tcallbacks() = default;
void TCsvFileReader::tcallbacks::reserved() {}
int TCsvFileReader::tcallbacks::onReadLine(int, const char*) {
  return 0;
}
int TCsvFileReader::tcallbacks::onReadItem(int, int, const char*) {
  return 0;
}
bool TCsvFileReader::tcallbacks::onLineFinished(int, const char*) {
  return false;
}
void TCsvFileReader::tcallbacks::onFinished(int) {}

TCsvFileReader::TCsvFileReader(tcallbacks* callbacks) : callbacks_(callbacks) {}
TCsvFileReader::TCsvFileReader(const TCsvFileReader& other) = default;
TCsvFileReader& TCsvFileReader::operator=(const TCsvFileReader& other) = default;
TCsvFileReader::~TCsvFileReader() = default;

int TCsvFileReader::openFromMem(const char* text) {
  return Walk(callbacks_).run(text);
}

int TCsvFileReader::openFile(const zwchar_t* fileName) {
  TMLogAutoTicks timing(kTrace19, kTag, "TCsvFileReader::openFile");
  if (ZEB_LOG_ENABLED(MLOG_INFO)) {
    mlogWithLevel(MLOG_INFO, nullptr, "TCsvFileReader::openFile:%s",
                  TWideString(fileName).utf8().p());
  }
  void* data = nullptr;
  const int size = mreadFileW(fileName, &data, true);
  if (size <= 0) {
    logUnreadableFile(fileName, size);
    return -2;
  }
  const int records = openFromMem(static_cast<const char*>(data));
  zeb_deleteMem(data);
  return records;
}

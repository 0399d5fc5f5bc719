// zeb_log.cpp: the log core. One process-wide state guarded by one recursive lock: the entry
// points test the level where they must (cheap, without the lock), take the lock, and hand over
// to a *Locked helper. The helpers call each other freely (opening a file writes lines, writing
// a line may initialise the log), which is why the lock is recursive.
#include "zeb/log/zeb_log.h"

#include <limits.h>
#include <stdarg.h>
#include <string.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "zeb/data/binary_hex.h"
#include "zeb/log/internal/log_core.h"
#include "zeb/log/internal/log_file.h"
#include "zeb/log/internal/log_line.h"
#include "zeb/log/internal/log_thread_context.h"
#include "zeb/log/internal/tag_filter.h"
#include "zeb/platform/file.h"
#include "zeb/platform/process.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/strings/filename.h"
#include "zeb/utils/mfile.h"

extern "C" {
int g_zeb_log_level = MLOG_INFO;
}

int global_loginit::logcount = 0;

namespace zeb {
namespace log_internal {
namespace {

constexpr char kLogTag[] = "zeb";
constexpr char kVersionLine[] = "zeblib version:1.0.0.339620260201004906";
constexpr size_t kMaxOpenFiles = 32;
constexpr size_t kAppIdSize = 1024;
// A hex dump is written in lines of this many hex characters.
constexpr size_t kHexPieceLength = 320;
const tloglevel kFileLogLevelMarker = static_cast<tloglevel>(-1);

// Global and file level marker names, from the least logging (0) to the most (6).
const char* const kGlobalMarkers[] = {"mdisable", "massert", "merror", "mwarning",
                                      "minfo",    "mdebug",  "mvb"};
const char* const kFileMarkers[] = {"fdisable", "fassert", "ferror", "fwarning",
                                    "finfo",    "fdebug",  "fvb"};
constexpr char kConsoleMarker[] = "mconsole";

int globalLevel() {
#if defined(__GNUC__)
  return __atomic_load_n(&g_zeb_log_level, __ATOMIC_RELAXED);
#else
  return g_zeb_log_level;
#endif
}

void storeGlobalLevel(int level) {
#if defined(__GNUC__)
  __atomic_store_n(&g_zeb_log_level, level, __ATOMIC_RELAXED);
#else
  g_zeb_log_level = level;
#endif
}

std::atomic<int> g_debugBreakLevel{0};

struct LogState {
  std::recursive_mutex lock;
  TagFilter filter;
  // Open files in the order they were opened; files registered with level 0, by path.
  std::vector<std::unique_ptr<LogFile>> files;
  std::vector<TAnsiString> pending;
  // Also the tag of lines written without one.
  char appId[kAppIdSize] = "zeb";
  unsigned long processId = 0;
  int fileLogLevel = MLOG_DISABLE;
  int initCount = 0;
  // The file lists exist: set by the first initialisation, cleared by the last finalisation.
  bool initialised = false;
  bool consoleEnabled = false;
  // Set by close-all, cleared when a file opens: close-all runs once per open/close cycle.
  bool closed = false;
};

// Never destroyed: modules may still log from their static destructors.
LogState& state() {
  static LogState* const instance = new LogState;
  return *instance;
}

using LogLock = std::lock_guard<std::recursive_mutex>;

// ---- the line buffer ----------------------------------------------------------------------------

thread_local bool t_lineBufferGone = false;

struct ThreadLineBuffer {
  std::string text;
  ~ThreadLineBuffer() { t_lineBufferGone = true; }
};

// The text buffer of one line: the thread's own, reused from line to line (and released after an
// overlong line), or a fresh one once the thread's own is destroyed (a line written while the
// thread or the process ends).
class LineBuffer {
 public:
  LineBuffer() {
    if (t_lineBufferGone) return;
    thread_local ThreadLineBuffer shared;
    shared.text.reserve(kLineBufferSize);
    text_ = &shared.text;
  }
  ~LineBuffer() {
    if (text_ != &own_ && text_->capacity() > 2 * kLineBufferSize) std::string().swap(*text_);
  }
  LineBuffer(const LineBuffer&) = delete;
  LineBuffer& operator=(const LineBuffer&) = delete;

  std::string& text() { return *text_; }

 private:
  std::string own_;
  std::string* text_ = &own_;
};

// ---- writing ------------------------------------------------------------------------------------

void initLocked(const char* app);

void ensureInitialisedLocked() {
  if (!state().initialised) initLocked(kLogTag);
}

// The core writer: the line of `fmt` and `args` at `level` to the console and to every file
// whose level admits it, unless the tag filter drops its tag.
void writeLineLocked(int level, const char* tag, const char* fmt, va_list args) {
  LogState& s = state();
  ensureInitialisedLocked();
  const char* shownTag = tag != nullptr && *tag != '\0' ? tag : s.appId;
  if (!s.filter.passes(shownTag)) return;
  LineBuffer buffer;
  std::string& line = buffer.text();
  LineFormatter(LineSource{level, shownTag, s.processId}, threadContext()).format(line, fmt, args);
  if (s.consoleEnabled) {
    platform::writeConsole(line.c_str());
    platform::writeDebugger(line.c_str());
  }
  for (const std::unique_ptr<LogFile>& file : s.files) {
    if (file->level() >= level) file->writeLine(line.data(), line.size());
  }
}

void logLocked(int level, const char* tag, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  writeLineLocked(level, tag, fmt, args);
  va_end(args);
}

void writeLine(int level, const char* tag, const char* fmt, va_list args) {
  LogLock guard(state().lock);
  writeLineLocked(level, tag, fmt, args);
}

// ---- settings -----------------------------------------------------------------------------------

void setAppIdLocked(const char* app) {
  char* appId = state().appId;
  const size_t length = app != nullptr ? strnlen(app, kAppIdSize - 1) : 0;
  memcpy(appId, app != nullptr ? app : "", length);
  appId[length] = '\0';
}

int setLevelLocked(int level) {
  const int old = globalLevel();
  if (level != old) {
    storeGlobalLevel(level);
    if (level >= MLOG_INFO) logLocked(MLOG_INFO, kLogTag, "mlogSet_Level:%d -> %d", old, level);
  }
  return old;
}

// Writes the line of a filter pattern at the info level, the global level raised to info for it.
void reportFilterPatternLocked(const char* pattern) {
  const int saved = globalLevel();
  storeGlobalLevel(MLOG_INFO);
  logLocked(MLOG_INFO, kLogTag, "filter:'%s'", pattern);
  storeGlobalLevel(saved);
}

// ---- lifecycle ----------------------------------------------------------------------------------

void initLocked(const char* app) {
  LogState& s = state();
  ++s.initCount;
  s.processId = platform::currentProcessId();
  setAppIdLocked(app);
  if (s.initialised) {
    logLocked(MLOG_INFO, kLogTag, "ZEBLog init.More:<-----------------------------");
    logLocked(MLOG_INFO, "comx", "init count:%d,app:%s", s.initCount, s.appId);
    return;
  }
  s.filter.clearPatterns();
  s.files.clear();
  s.pending.clear();
  s.initialised = true;
  threadContext().indent = 0;
  threadContext().tickIndex = 0;
  logLocked(MLOG_INFO, kLogTag, "ZEBLog init:<-----------------------------");
  logLocked(MLOG_INFO, kLogTag, kVersionLine);
  logLocked(MLOG_INFO, kLogTag, "loglevel:%d", globalLevel());
  logLocked(MLOG_INFO, kLogTag, "consoleEnabled:%d", int(s.consoleEnabled));
}

void closeAllLocked() {
  LogState& s = state();
  if (s.closed) return;
  s.closed = true;
  logLocked(MLOG_INFO, kLogTag, "closing....");
  logLocked(MLOG_INFO, kLogTag, "mlog close all:------------------------------->");
  s.files.clear();  // each file writes out its buffer and closes its stream
  s.pending.clear();
}

// Undoes one initialisation. The last one first stops the settings daemon, which releases the
// lock while the daemon's thread ends; another thread may initialise or start a daemon meanwhile,
// so the count and the daemon are looked at again afterwards.
void finalize(LogGuard& guard) {
  LogState& s = state();
  while (s.initCount == 1 && stopSettingsDaemon(guard)) {
  }
  if (s.initCount == 0) return;
  if (--s.initCount > 0) return;
  s.filter.forgetText();
  closeAllLocked();
  s.files.clear();
  s.pending.clear();
  s.filter.clearPatterns();
  s.initialised = false;
}

// ---- files --------------------------------------------------------------------------------------

// True when `recordPath` is chosen by `path`: every record for a null path, else the same text.
bool selects(const char* path, const char* recordPath) {
  return path == nullptr || strcmp(path, recordPath) == 0;
}

using LogFiles = std::vector<std::unique_ptr<LogFile>>;

// The open file with the path `path`, or the end of the list.
LogFiles::iterator findFileLocked(const char* path) {
  LogFiles& files = state().files;
  return std::find_if(files.begin(), files.end(), [path](const std::unique_ptr<LogFile>& file) {
    return strcmp(file->path(), path) == 0;
  });
}

bool isPendingLocked(const char* path) {
  const std::vector<TAnsiString>& pending = state().pending;
  return std::any_of(pending.begin(), pending.end(),
                     [path](const TAnsiString& p) { return strcmp(p.p(), path) == 0; });
}

// Opens the log file `path` (non-empty, UTF-8) at `level`, or registers it as pending for level
// 0. At most kMaxOpenFiles files are open; a path already open is left as it is.
void addFileLocked(const char* path, int level) {
  LogState& s = state();
  s.closed = false;
  if (s.files.size() >= kMaxOpenFiles) {
    logLocked(MLOG_ERROR, kLogTag, "Too many log files already open, not adding `%s'", path);
    return;
  }
  if (findFileLocked(path) != s.files.end()) return;
  if (level == MLOG_DISABLE) {
    if (!isPendingLocked(path)) s.pending.emplace_back(path);
    return;
  }
  const TWideString widePath(path, MIB_UTF8);
  if (platform::pathExists(widePath.p()) && mcheckFileRights(widePath.p()) == 0) {
    platform::requestFileAccessGrant(path);
  }
  FILE* stream = openLogStream(widePath, true);
  if (stream == nullptr) return;
  logLocked(MLOG_INFO, kLogTag, "OPEN LOG FILE:%s", path);
  logLocked(MLOG_INFO, kLogTag, "file log level:%d", level);
  s.files.push_back(std::make_unique<LogFile>(path, stream, level));
  logLocked(MLOG_INFO, kLogTag, "mlog Open File:<----------------------------");
  logLocked(MLOG_INFO, kLogTag, kVersionLine);
  logLocked(MLOG_INFO, kLogTag, "loglevel:%d", globalLevel());
  logLocked(MLOG_INFO, kLogTag, "filelogLevel:%d", s.fileLogLevel);
  logLocked(MLOG_INFO, kLogTag, "consoleEnabled:%d", int(s.consoleEnabled));
}

void openFileLocked(const char* path, int level) {
  LogState& s = state();
  ensureInitialisedLocked();
  if (s.fileLogLevel == MLOG_DISABLE || path == nullptr || *path == '\0') return;
  addFileLocked(path, level == kFileLogLevelMarker ? s.fileLogLevel : level);
}

// Opens the pending files chosen by `path` at `level` (not 0). They were registered explicitly,
// so they open whatever the file log level is at this moment.
void openPendingLocked(const char* path, int level) {
  std::vector<TAnsiString>& pending = state().pending;
  std::vector<TAnsiString> chosen;
  for (auto it = pending.begin(); it != pending.end();) {
    if (selects(path, it->p())) {
      chosen.push_back(std::move(*it));
      it = pending.erase(it);
    } else {
      ++it;
    }
  }
  for (const TAnsiString& p : chosen) addFileLocked(p.p(), level);
}

void setFileLogLevelLocked(const char* path, int level) {
  LogState& s = state();
  ensureInitialisedLocked();
  for (const std::unique_ptr<LogFile>& file : s.files) {
    if (!selects(path, file->path()) || file->level() == level) continue;
    file->setLevel(level);
    logLocked(MLOG_INFO, kLogTag, "file log level:%d,name:%s", level, file->path());
  }
  if (level != MLOG_DISABLE) openPendingLocked(path, level);
  if (path == nullptr && s.fileLogLevel != level) {
    const int old = s.fileLogLevel;
    s.fileLogLevel = level;
    logLocked(MLOG_INFO, kLogTag, "fileloglevel:%d -> %d", old, level);
  }
}

void closeFileLocked(const char* path) {
  const LogFiles::iterator it = findFileLocked(path);
  if (it == state().files.end()) return;
  logLocked(MLOG_INFO, kLogTag, "CLOSE LOG FILE:%s", path);
  state().files.erase(it);  // writes out the buffer and closes the stream
}

// ---- marker files -------------------------------------------------------------------------------

// True when the file `name` exists in `folder` (the current folder when empty).
bool markerExists(const TWideString& folder, const char* name) {
  TWideString path(folder);
  if (path.isNotEmpty() && !path.isEndWithBacksplash()) path.appendChar(zwchar_t('\\'));
  path.append(name);
  return platform::pathExists(path.p());
}

// The level of the first marker of `names` that exists in `folder`, or -1.
template <size_t N>
int firstMarkerLevel(const TWideString& folder, const char* const (&names)[N]) {
  for (size_t level = 0; level < N; ++level) {
    if (markerExists(folder, names[level])) return static_cast<int>(level);
  }
  return -1;
}

// ---- hex dumps ----------------------------------------------------------------------------------

void writeHexDump(int level, const char* file, const void* data, int size, const char* fmt,
                  va_list args) {
  TAnsiString hex;
  BinaryToHexA(static_cast<const unsigned char*>(data), size, hex, false, 0, true);
  const char* hexText = hex.isEmpty() ? "" : hex.p();
  const size_t hexLength = strlen(hexText);
  const char* tag = ExtractFileNamePtrA(file);
  std::string first = fmt != nullptr ? fmt : "";
  first += " hex(size:" + std::to_string(size) + "):";
  first.append(hexText, std::min(hexLength, kHexPieceLength));
  writeLine(level, tag, first.c_str(), args);
  for (size_t offset = kHexPieceLength; offset < hexLength; offset += kHexPieceLength) {
    const std::string piece(hexText + offset, std::min(hexLength - offset, kHexPieceLength));
    writeLine(level, tag, piece.c_str(), args);
  }
}

}  // namespace

std::recursive_mutex& logMutex() {
  return state().lock;
}

void ensureLogInitialised() {
  LogLock guard(state().lock);
  ensureInitialisedLocked();
}

}  // namespace log_internal
}  // namespace zeb

using namespace zeb::log_internal;

// ---- writing lines ------------------------------------------------------------------------------

void mlogWithLevel(tloglevel level, const char* tag, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  writeLine(level, tag, fmt, args);
  va_end(args);
}

void mlogWithLevelArgs(tloglevel level, const char* tag, const char* fmt, va_list args) {
  writeLine(level, tag, fmt, args);
}

void mlogWithLevelFileName(tloglevel level, const char* file, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  writeLine(level, ExtractFileNamePtrA(file), fmt, args);
  va_end(args);
}

void mlogWithLevelFileNameW(tloglevel level, const char* file, const zwchar_t* fmt, ...) {
  TAnsiString narrow;
  narrow.fromWideString(fmt, MIB_ANSI);
  const char* narrowFmt = fmt == nullptr ? nullptr : narrow.isEmpty() ? "" : narrow.p();
  va_list args;
  va_start(args, fmt);
  writeLine(level, ExtractFileNamePtrA(file), narrowFmt, args);
  va_end(args);
}

void mlogWithLevelFileFunLine(tloglevel level, const char* file, const char* func, int line,
                              const char* fmt, ...) {
  std::string place;
  if ((func != nullptr && *func != '\0') || line >= 0) {
    place = ':';
    if (func != nullptr) place += func;
    if (line >= 0) place += ':' + std::to_string(line);
  }
  va_list args;
  va_start(args, fmt);
  writeLine(level, ExtractFileNamePtrA(file), place.empty() ? fmt : place.c_str(), args);
  va_end(args);
}

void ZEB_Log_Debug(const char* tag, const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  writeLine(MLOG_DEBUG, tag, fmt, args);
  va_end(args);
}

void mlogdebug(const char* fmt, ...) {
  if (!ZEB_LOG_ENABLED(MLOG_DEBUG)) return;
  va_list args;
  va_start(args, fmt);
  writeLine(MLOG_DEBUG, nullptr, fmt, args);
  va_end(args);
}

void mlogvb(const char* fmt, ...) {
  if (!ZEB_LOG_ENABLED(MLOG_VERBOSE)) return;
  va_list args;
  va_start(args, fmt);
  writeLine(MLOG_VERBOSE, nullptr, fmt, args);
  va_end(args);
}

void ZEB_Log_Error(const char* fmt, ...) {
  if (!ZEB_LOG_ENABLED(MLOG_ERROR)) return;
  va_list args;
  va_start(args, fmt);
  writeLine(MLOG_ERROR, nullptr, fmt, args);
  va_end(args);
}

void ZEB_Log_Warning(const char* fmt, ...) {
  if (!ZEB_LOG_ENABLED(MLOG_WARNING)) return;
  va_list args;
  va_start(args, fmt);
  writeLine(MLOG_WARNING, nullptr, fmt, args);
  va_end(args);
}

void ZEB_Log_Info(const char* fmt, ...) {
  if (!ZEB_LOG_ENABLED(MLOG_INFO)) return;
  va_list args;
  va_start(args, fmt);
  writeLine(MLOG_INFO, nullptr, fmt, args);
  va_end(args);
}

void ZEB_Log_Info_args(const char* fmt, va_list args) {
  if (!ZEB_LOG_ENABLED(MLOG_INFO)) return;
  writeLine(MLOG_INFO, nullptr, fmt, args);
}

void mlogHex(tloglevel level, const char* file, const void* data, int size, const char* fmt, ...) {
  if (!ZEB_LOG_ENABLED(level)) return;
  va_list args;
  va_start(args, fmt);
  writeHexDump(level, file, data, size, fmt, args);
  va_end(args);
}

void mlogHexArgs(tloglevel level, const char* file, const void* data, int size, const char* fmt,
                 va_list args) {
  if (!ZEB_LOG_ENABLED(level)) return;
  writeHexDump(level, file, data, size, fmt, args);
}

int mlogDump(tloglevel level, const char* file, const char* dumpPath, const void* data, int size) {
  if (!ZEB_LOG_ENABLED(level) || size < 0) return 0;
  const TWideString widePath(dumpPath, MIB_UTF8);
  const int written = mwriteFileW(widePath.p(), data, static_cast<unsigned>(size));
  if (written > 0 && ZEB_LOG_ENABLED(MLOG_DEBUG)) {
    mlogWithLevelFileName(MLOG_DEBUG, file, "dump file(size:%d):%s", size, dumpPath);
  }
  return 0;
}

int mlogDebugDump(const char* dumpPath, const void* data, int size) {
  return mlogDump(MLOG_DEBUG, kLogTag, dumpPath, data, size);
}

void ZEB_Log_AssertA(bool condition, const char* file, int line) {
  if (condition || !ZEB_LOG_ENABLED(1)) return;
  const char* name = ExtractFileNamePtrA(file);
  ZEB_Log_Error("Fatal Error:FileName:%s Line:%d", name != nullptr && *name != '\0' ? name : file,
                line);
}

void ZEB_Error(int condition, const char* file, int line) {
  if (condition != 0) return;
  const std::string text = std::string("Error:FileName:") + (file != nullptr ? file : "(NULL)") +
                           " Line:" + std::to_string(line);
  ZEB_Log_Error("%s", text.c_str());
}

// ---- settings -----------------------------------------------------------------------------------

tloglevel mlogSetLevel(tloglevel level) {
  LogLock guard(state().lock);
  return static_cast<tloglevel>(setLevelLocked(level));
}

void mlogSetFileLogLevel(const char* path, tloglevel level) {
  LogLock guard(state().lock);
  setFileLogLevelLocked(path, level);
}

void mlogSetConsoleEnable(int enable) {
  LogLock guard(state().lock);
  state().consoleEnabled = enable == 1;
}

void mlogSetGlobalAppID(const char* appId) {
  LogLock guard(state().lock);
  setAppIdLocked(appId);
}

void mlogSetDebugPlaces(const char* patterns) {
  LogLock guard(state().lock);
  ensureInitialisedLocked();
  state().filter.set(patterns, reportFilterPatternLocked);
}

void mlogSetDebugBreakLevel(int level) {
  g_debugBreakLevel.store(level, std::memory_order_relaxed);
}

int mlogGetDebugBreakLevel(void) {
  return g_debugBreakLevel.load(std::memory_order_relaxed);
}

void ZEB_Log_EnabledAssert(void) {
  mlogSetDebugBreakLevel(1);
}

void ZEB_Log_DisableAssert(void) {
  mlogSetDebugBreakLevel(0);
}

void mlogFormatPush(bool brace) {
  if (globalLevel() == MLOG_DISABLE) return;
  LogLock guard(state().lock);
  ensureInitialisedLocked();
  if (brace && globalLevel() >= MLOG_DEBUG) logLocked(MLOG_DEBUG, nullptr, "{");
  ThreadContext& context = threadContext();
  if (context.indent <= INT_MAX - 2) context.indent += 2;
}

void mlogFormatPop(bool brace) {
  if (globalLevel() == MLOG_DISABLE) return;
  ThreadContext& context = threadContext();
  context.indent = std::max(0, context.indent - 2);
  if (!brace || globalLevel() < MLOG_DEBUG) return;
  LogLock guard(state().lock);
  logLocked(MLOG_DEBUG, nullptr, "}");
}

// ---- files and lifecycle ------------------------------------------------------------------------

void mlogOpenFile(const char* path, tloglevel level) {
  LogLock guard(state().lock);
  state().closed = false;
  openFileLocked(path, level);
}

void mlogCloseFile(const char* path) {
  if (path == nullptr || *path == '\0') return;
  LogLock guard(state().lock);
  closeFileLocked(path);
}

void mlogCloseAllFile(void) {
  LogLock guard(state().lock);
  closeAllLocked();
}

void ZEB_Log_Reopen(void) {
  LogLock guard(state().lock);
  ensureInitialisedLocked();
  for (const std::unique_ptr<LogFile>& file : state().files) file->reopen();
}

void mlogSetFileBuffer(const char* path, int capacity) {
  if (path == nullptr || *path == '\0') return;
  LogLock guard(state().lock);
  const LogFiles::iterator it = findFileLocked(path);
  if (it != state().files.end()) (*it)->setBufferCapacity(capacity);
}

int mlogQuickInit(const char* app, const char* logPath) {
  LogLock guard(state().lock);
  initLocked(app);
  if (logPath == nullptr || *logPath == '\0') return 1;
  TAnsiString path = TWideString(logPath, MIB_ANSI).utf8();
  TAnsiString folder(path);
  folder.extractFileDir();
  mlogUpdateLevelsWithDir(folder.isEmpty() ? "" : folder.p());
  openFileLocked(path.p(), kFileLogLevelMarker);
  return 1;
}

int ZEB_Log_QuickInit(const char* app, const char* logPath, int, int, int assertSwitch) {
  mlogQuickInit(app, logPath);
  mlogSetDebugBreakLevel(assertSwitch != 0 ? 1 : 0);
  return 1;
}

void mlogQuickFinalize(void) {
  LogGuard guard(state().lock);
  finalize(guard);
}

void ZEB_Log_Close_all(void) {
  mlogQuickFinalize();
}

void mlogUpdateLevelsWithDir(const char* dir) {
  if (dir == nullptr) return;
  const TWideString folder(dir, MIB_UTF8);
  const int globalMarker = firstMarkerLevel(folder, kGlobalMarkers);
  const int fileMarker = firstMarkerLevel(folder, kFileMarkers);
  if (globalMarker >= 0) mlogSetLevel(static_cast<tloglevel>(globalMarker));
  if (markerExists(folder, kConsoleMarker)) mlogSetConsoleEnable(1);
  if (fileMarker < 0 && globalMarker < 0) return;
  LogLock guard(state().lock);
  setFileLogLevelLocked(nullptr, fileMarker >= 0 ? fileMarker : globalMarker);
}

// ---- global_loginit -----------------------------------------------------------------------------

global_loginit::global_loginit() {
  if (logcount == 0) {
    LogLock guard(state().lock);
    initLocked(kLogTag);
  }
  ++logcount;
}

global_loginit::global_loginit(const char* app, const char* logPath, int) {
  mlogQuickInit(app, logPath);
  ++logcount;
}

global_loginit::~global_loginit() {
  mlogQuickFinalize();
}

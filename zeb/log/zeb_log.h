// zeb_log.h: the process-wide diagnostic log.
//
// Lines go to up to 32 open log files and, when enabled, to standard output. Each line carries
// the local time to the millisecond, the process and thread ids, a level letter, a dotted tag and
// the message, and ends in CR LF:
//
//   2026-02-01 00:49:06.123 4120-7736:I/zeb.thread: started worker 3
//
// Levels (tloglevel): 0 disable, 1 assert, 2 error, 3 warning, 4 info, 5 debug, 6 verbose, and
// 15..20 for tracing finer than verbose (shown with the letter of level - 14). g_zeb_log_level is
// the global level (initially 4). Callers test it before formatting anything, which makes a
// disabled line cost one comparison:
//
//   if (ZEB_LOG_ENABLED(MLOG_DEBUG)) mlogWithLevel(MLOG_DEBUG, "app.net", "sent %d bytes", n);
//
// Every file has its own level; a new file gets the file log level, which stays 0 (no file is
// opened) until marker files or mlogSetFileLogLevel raise it. A tag filter (mlogSetDebugPlaces)
// keeps only the tags that match its patterns. One lock serialises every line, so lines from
// several threads never interleave. Indentation (mlogFormatPush/Pop) and the padding of tags to
// the longest tag seen are per thread.
//
// Typical use:
//
//   mlogQuickInit("myapp", "/var/log/myapp/app.log");   // applies the marker files of the folder
//   ZEB_Log_Info("started, %d workers", 4);
//   mlogQuickFinalize();
#ifndef ZEB_LOG_ZEB_LOG_H
#define ZEB_LOG_ZEB_LOG_H

#include <stdarg.h>

#include "zeb/zeb_api.h"

enum tloglevel : int {
  MLOG_DISABLE = 0,
  MLOG_ASSERT = 1,
  MLOG_ERROR = 2,
  MLOG_WARNING = 3,
  MLOG_INFO = 4,
  MLOG_DEBUG = 5,
  MLOG_VERBOSE = 6,
};

extern "C" {

// The global (console) level. Read it with ZEB_LOG_ENABLED; change it with mlogSetLevel.
ZEB_API extern int g_zeb_log_level;

}  // extern "C"

// True when a line of `level` passes the global level: the test every caller makes before it
// formats a line. A relaxed atomic read: as cheap as a plain one, and free of data races.
#if defined(__GNUC__)
#define ZEB_LOG_ENABLED(level) (__atomic_load_n(&g_zeb_log_level, __ATOMIC_RELAXED) >= (level))
#else
#define ZEB_LOG_ENABLED(level) (g_zeb_log_level >= (level))
#endif

extern "C" {

// ---- writing lines ------------------------------------------------------------------------------
// These write without testing g_zeb_log_level (per-file levels and the tag filter still apply).
// A null or empty tag stands for the application id (initially "zeb"). The tag is formatted
// together with `fmt`, so a '%' in a tag is a conversion that takes an argument. A null `fmt`
// writes "(logerror:null string)"; a format that with the tag field exceeds 5,070 bytes writes
// "<MLOG-TTL>\n" instead of the line; a line longer than 163,839 bytes is cut there. CR LF ends
// every line unless `fmt` itself ends in '\n'.

ZEB_API void mlogWithLevel(tloglevel level, const char* tag, const char* fmt, ...);
ZEB_API void mlogWithLevelArgs(tloglevel level, const char* tag, const char* fmt, va_list args);
// The tag is the file-name part of `file` (so __FILE__ gives "main.cpp").
ZEB_API void mlogWithLevelFileName(tloglevel level, const char* file, const char* fmt, ...);
// As mlogWithLevelFileName with a 16-bit format, converted to the ANSI code page first.
ZEB_API void mlogWithLevelFileNameW(tloglevel level, const char* file, const zwchar_t* fmt, ...);
// When `func` is non-empty or line >= 0 the message is ":func:line" (":func" when line < 0) and
// `fmt` is not used; otherwise the message is `fmt` with the arguments.
ZEB_API void mlogWithLevelFileFunLine(tloglevel level, const char* file, const char* func, int line,
                                      const char* fmt, ...);
// Debug level, tag given: written even when the global level is below debug.
ZEB_API void ZEB_Log_Debug(const char* tag, const char* fmt, ...);

// These test the global level themselves and use the default tag.
ZEB_API void mlogdebug(const char* fmt, ...);
ZEB_API void mlogvb(const char* fmt, ...);
ZEB_API void ZEB_Log_Error(const char* fmt, ...);
ZEB_API void ZEB_Log_Warning(const char* fmt, ...);
ZEB_API void ZEB_Log_Info(const char* fmt, ...);
ZEB_API void ZEB_Log_Info_args(const char* fmt, va_list args);

// Hex dump of `size` bytes at `data`, tested against the global level; the tag is the file-name
// part of `file`. The bytes are rendered by BinaryToHexA with tags, upper case and no line width
// ("0X0A,0XFF": 5 * size + 2 characters reserved). The message is fmt + " hex(size:N):" + the hex
// text, cut into lines of 320 hex characters: the first line carries fmt, the size and the first
// 320 characters, each further line the next 320. Every line is formatted with the arguments and
// written under the lock on its own.
ZEB_API void mlogHex(tloglevel level, const char* file, const void* data, int size, const char* fmt,
                     ...);
ZEB_API void mlogHexArgs(tloglevel level, const char* file, const void* data, int size,
                         const char* fmt, va_list args);
// Writes the bytes to the file `dumpPath` (UTF-8) when `level` passes the global level (a negative
// size writes nothing), and when something was written and the global level is debug, logs
// "dump file(size:N):path" at debug with the tag of `file`. Always returns 0. mlogDebugDump is
// mlogDump at debug with the tag "zeb".
ZEB_API int mlogDump(tloglevel level, const char* file, const char* dumpPath, const void* data,
                     int size);
ZEB_API int mlogDebugDump(const char* dumpPath, const void* data, int size);

// When `condition` is false (0): an error line (through ZEB_Log_Error, so only at the error
// level) naming the file and line: "Fatal Error:FileName:<file-name part> Line:<line>" and
// "Error:FileName:<file> Line:<line>". A '%' in the file name is printed as it stands.
ZEB_API void ZEB_Log_AssertA(bool condition, const char* file, int line);
ZEB_API void ZEB_Error(int condition, const char* file, int line);

// ---- settings -----------------------------------------------------------------------------------

// Sets g_zeb_log_level; returns the previous level.
ZEB_API tloglevel mlogSetLevel(tloglevel level);
// Sets the level of the open files whose path is `path` (every file, and the file log level for
// new files, when `path` is null) and opens the matching pending files when `level` is not 0
// (whatever the file log level is at that moment).
ZEB_API void mlogSetFileLogLevel(const char* path, tloglevel level);
// 1 enables the console sink; any other value disables it.
ZEB_API void mlogSetConsoleEnable(int enable);
// The application id, which is also the tag of lines written without one (at most 1,023 bytes;
// null or "" leaves it empty, and lines without a tag then show no tag and no ':').
ZEB_API void mlogSetGlobalAppID(const char* appId);
// The tag filter: patterns separated by spaces or commas; '*' matches the rest of a tag; a
// leading '-' excludes. "zeb.*,-zeb.file" keeps every zeb. tag but zeb.file; a filter of exclude
// patterns only drops every line. Null or "" turns the filter off, and so does setting the text
// it was last set to (so the same text twice in a row toggles it off). Each pattern is reported
// in a "filter:'...'" line.
ZEB_API void mlogSetDebugPlaces(const char* patterns);
ZEB_API void mlogSetDebugBreakLevel(int level);
ZEB_API int mlogGetDebugBreakLevel(void);
ZEB_API void ZEB_Log_EnabledAssert(void);
ZEB_API void ZEB_Log_DisableAssert(void);
// Per-thread indentation in steps of 2; with `brace` (and the debug level) a "{" / "}" line.
ZEB_API void mlogFormatPush(bool brace);
ZEB_API void mlogFormatPop(bool brace);

// ---- files and lifecycle ------------------------------------------------------------------------

// Opens (or creates, with its folder) the log file `path` (UTF-8) and appends to it. `level` -1
// means the file log level. Nothing happens while the file log level is 0; a file opened with
// level 0 waits in a pending list until mlogSetFileLogLevel gives it a level. At most 32 files are
// open (the 33rd is refused with an error line); a path already open is left as it is.
ZEB_API void mlogOpenFile(const char* path, tloglevel level);
ZEB_API void mlogCloseFile(const char* path);
ZEB_API void mlogCloseAllFile(void);
// Closes and reopens every log file by its path (after something moved or truncated them).
ZEB_API void ZEB_Log_Reopen(void);
// Gives the open log file `path` a write-behind buffer of `capacity` bytes (<= 0: unbuffered,
// every line written and flushed at once, as a file starts). The buffer is written out when a line
// would not fit (a line longer than the buffer goes straight to the file), when the capacity
// changes and when the file closes; it survives ZEB_Log_Reopen. Other paths do nothing.
ZEB_API void mlogSetFileBuffer(const char* path, int capacity);

// Initialises the log (app id `app`). When `logPath` (ANSI code page) is not empty, converts it to
// UTF-8, applies the marker files of its folder (mlogUpdateLevelsWithDir) and opens it with the
// resulting file log level: without a marker no file opens. Returns 1.
ZEB_API int mlogQuickInit(const char* app, const char* logPath);
ZEB_API int ZEB_Log_QuickInit(const char* app, const char* logPath, int reserved1, int reserved2,
                              int assertSwitch);
// Undoes one initialisation; the last stops the settings daemon (waiting for its thread, without
// holding the log lock), closes every file, drops the tag filter and leaves the log uninitialised
// (the next line initialises it again, with the app id "zeb"). A call with no initialisation
// outstanding does nothing. Any line written before the log was initialised initialises it (app id
// "zeb"), and that counts as an initialisation.
ZEB_API void mlogQuickFinalize(void);
ZEB_API void ZEB_Log_Close_all(void);

// Applies the level marker files of folder `dir` (UTF-8; "" is the current folder, null does
// nothing): files named mdisable, massert, merror, mwarning, minfo, mdebug, mvb set the global
// level, fdisable ... fvb the file level (without one, a global marker sets it too: every open
// file, the file log level, and the pending files open), mconsole enables the console (its absence
// never disables it). When several exist the one meaning the least logging wins.
ZEB_API void mlogUpdateLevelsWithDir(const char* dir);

}  // extern "C"

// One object per module pairs log initialisation and finalisation with construction order.
class ZEB_API global_loginit {
 public:
  global_loginit();
  global_loginit(const char* app, const char* logPath, int reserved);
  ~global_loginit();
  global_loginit(const global_loginit&) = delete;
  global_loginit& operator=(const global_loginit&) = delete;

  static int logcount;
};

#endif  // ZEB_LOG_ZEB_LOG_H

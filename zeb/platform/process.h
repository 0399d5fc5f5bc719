// process.h: the process services the log core needs: the process and kernel thread ids,
// console and debugger output of a text, and the request to open up a log file the process may
// not write. (Clocks are in clock.h.)
//
//   unsigned long tid = zeb::platform::currentThreadId();
#ifndef ZEB_PLATFORM_PROCESS_H
#define ZEB_PLATFORM_PROCESS_H

namespace zeb {
namespace platform {

// The id of the calling process.
unsigned long currentProcessId();
// The kernel's id of the calling thread (what a debugger or `top -H` shows).
unsigned long currentThreadId();

// Writes the NUL-terminated `text` to standard output as printf("%s") would (no flush).
void writeConsole(const char* text);
// Hands `text` to the debugger's output channel; nothing on systems that have none (POSIX).
void writeDebugger(const char* text);

// Asks, without waiting, for every user to be granted full access to the file `path` (8-bit,
// UTF-8). Windows runs the access-control tool elevated; POSIX has no such request and does
// nothing (the file is then simply opened).
void requestFileAccessGrant(const char* path);

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_PROCESS_H

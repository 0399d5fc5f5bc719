// process.cpp (POSIX): process and thread ids from the kernel, console output to stdout.
#include "zeb/platform/process.h"

#include <stdio.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zeb {
namespace platform {

unsigned long currentProcessId() {
  return static_cast<unsigned long>(getpid());
}

unsigned long currentThreadId() {
  return static_cast<unsigned long>(syscall(SYS_gettid));
}

void writeConsole(const char* text) {
  fputs(text, stdout);
}

void writeDebugger(const char*) {}

void requestFileAccessGrant(const char*) {}

}  // namespace platform
}  // namespace zeb

// system.h: what the library asks the operating system about itself: the processors the process
// may run on, whether it runs with administrator rights, the width of the process and of the
// kernel, and the names and versions of the kernel and of the installed system.
//
//   int cores = zeb::platform::usableProcessorCount();
#ifndef ZEB_PLATFORM_SYSTEM_H
#define ZEB_PLATFORM_SYSTEM_H

#include <string>

namespace zeb {
namespace platform {

// The processors the calling process may be scheduled on (its affinity mask), at least 1.
int usableProcessorCount();

// True when the process runs with administrator rights (POSIX: effective user id 0).
bool runsAsAdministrator();

// True for a 32-bit process on a 64-bit kernel.
bool isNarrowProcessOnWideKernel();

// The kernel: its name ("Linux"), release ("6.1.0-18-amd64") and machine ("x86_64"). False
// when the system does not say.
struct KernelVersion {
  std::string name;
  std::string release;
  std::string machine;
};
bool kernelVersion(KernelVersion* out);

// The installed system's own name with its version ("Debian GNU/Linux 12 (bookworm)"), from
// os-release; "" when the system does not describe itself.
std::string systemPrettyName();

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_SYSTEM_H

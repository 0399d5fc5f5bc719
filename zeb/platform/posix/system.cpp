// system.cpp (POSIX): the affinity mask, the effective user, uname and os-release.
#include "zeb/platform/system.h"

#include <sched.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

namespace zeb {
namespace platform {

namespace {

// The value of `key` in an os-release file, unquoted; "" when the file or the key is missing.
std::string osReleaseValue(const char* file, const char* key) {
  std::FILE* f = std::fopen(file, "r");
  if (f == nullptr) return std::string();
  const std::size_t keyLength = std::strlen(key);
  char line[512];
  std::string value;
  while (std::fgets(line, sizeof line, f) != nullptr) {
    if (std::strncmp(line, key, keyLength) != 0 || line[keyLength] != '=') continue;
    value = line + keyLength + 1;
    while (!value.empty() && (value.back() == '\n' || value.back() == '\r')) value.pop_back();
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front()) {
      value = value.substr(1, value.size() - 2);
    }
    break;
  }
  std::fclose(f);
  return value;
}

}  // namespace

int usableProcessorCount() {
  cpu_set_t set;
  CPU_ZERO(&set);
  if (sched_getaffinity(0, sizeof set, &set) == 0) {
    const int count = CPU_COUNT(&set);
    if (count > 0) return count;
  }
  const long online = sysconf(_SC_NPROCESSORS_ONLN);
  return online > 0 ? static_cast<int>(online) : 1;
}

bool runsAsAdministrator() {
  return geteuid() == 0;
}

bool isNarrowProcessOnWideKernel() {
  if (sizeof(void*) != 4) return false;
  struct utsname names;
  if (uname(&names) != 0) return false;
  return std::strstr(names.machine, "64") != nullptr;
}

bool kernelVersion(KernelVersion* out) {
  struct utsname names;
  if (out == nullptr || uname(&names) != 0) return false;
  out->name = names.sysname;
  out->release = names.release;
  out->machine = names.machine;
  return true;
}

std::string systemPrettyName() {
  std::string name = osReleaseValue("/etc/os-release", "PRETTY_NAME");
  if (name.empty()) name = osReleaseValue("/usr/lib/os-release", "PRETTY_NAME");
  return name;
}

}  // namespace platform
}  // namespace zeb

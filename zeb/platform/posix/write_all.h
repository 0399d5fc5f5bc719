// write_all.h (POSIX, private): writing a whole block to a file descriptor.
#ifndef ZEB_PLATFORM_POSIX_WRITE_ALL_H
#define ZEB_PLATFORM_POSIX_WRITE_ALL_H

#include <errno.h>
#include <unistd.h>

#include <cstddef>

namespace zeb {
namespace platform {

// Writes all `size` bytes of `data` to `fd`, going on after short writes and interruptions;
// false when a write fails or writes nothing.
inline bool writeAll(int fd, const void* data, size_t size) {
  const char* p = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t written = write(fd, p, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    p += written;
    size -= static_cast<size_t>(written);
  }
  return true;
}

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_POSIX_WRITE_ALL_H

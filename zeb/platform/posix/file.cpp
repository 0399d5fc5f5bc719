// file.cpp (POSIX): the file calls of platform/file.h on UTF-8 paths. Every call converts its
// UTF-16 path with the library's own charset conversion, then makes one C library or POSIX call.
// The library treats '\\' as a separator everywhere (and its path helpers append it), so the
// conversion turns it into '/': "logs\\app.log" names the file app.log in the folder logs.

#include "zeb/platform/file.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <string>

#if defined(__GLIBC__) && __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#define ZEB_STREAM_BUFFER_IN_REACH 1
#endif

#include "zeb/platform/posix/utf8_path.h"
#include "zeb/platform/posix/write_all.h"

namespace zeb {
namespace platform {

namespace {

// memcpy of 1 to 8 bytes (the sizes of typed values, the common case here) in at most two
// inline copies that may overlap, rather than by a call; longer copies call memcpy.
void copySmall(char* to, const void* data, size_t size) {
  const char* from = static_cast<const char*>(data);
  if (size > 8) {
    std::memcpy(to, from, size);
  } else if (size >= 4) {
    std::memcpy(to, from, 4);
    std::memcpy(to + size - 4, from + size - 4, 4);
  } else if (size >= 2) {
    std::memcpy(to, from, 2);
    std::memcpy(to + size - 2, from + size - 2, 2);
  } else {
    *to = *from;
  }
}

bool isFolder(int fd) {
  struct stat info;
  return fstat(fd, &info) == 0 && S_ISDIR(info.st_mode);
}

// Writes all `size` bytes to `fd` and closes it; false when either fails.
bool writeAllAndClose(int fd, const void* data, size_t size) {
  const bool written = writeAll(fd, data, size);
  return close(fd) == 0 && written;
}

bool writeNewFile(const char* path, const void* data, size_t size) {
  const int fd = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) return false;
  if (writeAllAndClose(fd, data, size)) return true;
  unlink(path);
  return false;
}

}  // namespace

std::FILE* openFile(const zwchar_t* path, const char* mode) {
  TAnsiString utf8;
  if (mode == nullptr || !toUtf8Path(path, utf8)) return nullptr;
  std::FILE* f = std::fopen(utf8.p(), mode);
  if (f != nullptr && isFolder(fileno(f))) {
    std::fclose(f);
    return nullptr;
  }
  return f;
}

bool writeToStream(std::FILE* stream, const void* data, size_t size) {
#ifdef ZEB_STREAM_BUFFER_IN_REACH
  // No other thread can hold the stream's lock, the stream is byte-oriented (fwrite has written to
  // it before), and its write pointer has room: fwrite would only copy into the same buffer.
  if (__libc_single_threaded && stream->_mode < 0 && size > 0 &&
      stream->_IO_write_end - stream->_IO_write_ptr >= static_cast<std::ptrdiff_t>(size)) {
    copySmall(stream->_IO_write_ptr, data, size);
    stream->_IO_write_ptr += size;
    return true;
  }
#endif
  return std::fwrite(data, size, 1, stream) == 1;
}

bool pathExists(const zwchar_t* path) {
  TAnsiString utf8;
  return toUtf8Path(path, utf8) && access(utf8.p(), F_OK) == 0;
}

bool makeFolder(const zwchar_t* path) {
  TAnsiString utf8;
  return toUtf8Path(path, utf8) && mkdir(utf8.p(), 0777) == 0;
}

bool fileSize(const zwchar_t* path, long long* size) {
  TAnsiString utf8;
  struct stat info;
  if (!toUtf8Path(path, utf8) || stat(utf8.p(), &info) != 0) return false;
  if (size != nullptr) *size = static_cast<long long>(info.st_size);
  return true;
}

bool replaceFileContent(const char* path, const void* data, size_t size) {
  if (path == nullptr || *path == '\0') return false;
  struct stat old;
  if (stat(path, &old) != 0) return errno == ENOENT && writeNewFile(path, data, size);
  if (!S_ISREG(old.st_mode) || access(path, W_OK) != 0) return false;
  std::string temporary = std::string(path) + ".XXXXXX";
  const int fd = mkostemp(temporary.data(), O_CLOEXEC);
  if (fd < 0) return false;
  const bool complete = fchmod(fd, old.st_mode & 07777) == 0 && writeAll(fd, data, size);
  const bool closed = close(fd) == 0;
  if (complete && closed && rename(temporary.c_str(), path) == 0) return true;
  unlink(temporary.c_str());
  return false;
}

}  // namespace platform
}  // namespace zeb

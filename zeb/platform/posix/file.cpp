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

#include <string>

#include "zeb/strings/TAnsiString.h"

namespace zeb {
namespace platform {

namespace {

// `path` in UTF-8 in `out`, every '\\' turned into '/' (the byte 0x5C never occurs inside a
// UTF-8 sequence); false for a null or empty path or one that does not convert.
bool toUtf8Path(const zwchar_t* path, TAnsiString& out) {
  if (!out.fromWideString(path, MIB_UTF8)) return false;
  for (char* c = out.data(); *c != '\0'; ++c) {
    if (*c == '\\') *c = '/';
  }
  return true;
}

bool isFolder(int fd) {
  struct stat info;
  return fstat(fd, &info) == 0 && S_ISDIR(info.st_mode);
}

// Writes all `size` bytes to `fd` and closes it; false when either fails.
bool writeAllAndClose(int fd, const void* data, size_t size) {
  const char* p = static_cast<const char*>(data);
  bool ok = true;
  while (ok && size > 0) {
    const ssize_t written = write(fd, p, size);
    if (written < 0 && errno == EINTR) continue;
    ok = written > 0;
    if (ok) {
      p += written;
      size -= static_cast<size_t>(written);
    }
  }
  return close(fd) == 0 && ok;
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
  const bool permissionsKept = fchmod(fd, old.st_mode & 07777) == 0;
  const bool complete = writeAllAndClose(fd, data, permissionsKept ? size : 0) && permissionsKept;
  if (complete && rename(temporary.c_str(), path) == 0) return true;
  unlink(temporary.c_str());
  return false;
}

}  // namespace platform
}  // namespace zeb

// file.cpp (POSIX): the file calls of platform/file.h on UTF-8 paths. Every call converts its
// UTF-16 path with the library's own charset conversion, then makes one C library or POSIX call.
// The library treats '\\' as a separator everywhere (and its path helpers append it), so the
// conversion turns it into '/': "logs\\app.log" names the file app.log in the folder logs.

#include "zeb/platform/file.h"

#include <sys/stat.h>
#include <unistd.h>

#include "zeb/strings/TAnsiString.h"

namespace zeb {
namespace platform {

bool toUtf8Path(const zwchar_t* path, TAnsiString& out) {
  if (!out.fromWideString(path, MIB_UTF8)) return false;
  for (char* c = out.data(); *c != '\0'; ++c) {
    if (*c == '\\') *c = '/';
  }
  return true;
}

namespace {

bool isFolder(int fd) {
  struct stat info;
  return fstat(fd, &info) == 0 && S_ISDIR(info.st_mode);
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

}  // namespace platform
}  // namespace zeb

// file.cpp (POSIX): the file calls of platform/file.h on UTF-8 paths. Every call converts its
// UTF-16 path with the library's own charset conversion, then makes one C library or POSIX call.
// The library treats '\\' as a separator everywhere (and its path helpers append it), so the
// conversion turns it into '/': "logs\\app.log" names the file app.log in the folder logs.

#include "zeb/platform/file.h"

#include <sys/stat.h>
#include <unistd.h>

#include "zeb/platform/posix/utf8_path.h"

namespace zeb {
namespace platform {

std::FILE* openFile(const zwchar_t* path, const char* mode) {
  TAnsiString utf8;
  if (mode == nullptr || !toUtf8Path(path, utf8)) return nullptr;
  return std::fopen(utf8.p(), mode);
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

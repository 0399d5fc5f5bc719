// mfile.cpp: the whole-file helpers. They reach the file system only through platform/file.h and
// hand out blocks from malloc, which zeb_deleteMem releases with free.

#include "zeb/utils/mfile.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <optional>
#include <string>

#include "zeb/log/mlog_ticks.h"
#include "zeb/log/zeb_log.h"
#include "zeb/platform/file.h"
#include "zeb/strings/TWideString.h"
#include "zeb/strings/internal/path_text.h"
#include "zeb/strings/internal/units.h"
#include "zeb/utils/internal/log_path.h"

namespace {

const char kFileTag[] = "zeb.file";

// Makes sure the folder `path` exists, creating it when missing. A failure is logged as an error;
// a creation at debug level.
bool ensureFolder(const zwchar_t* path) {
  if (zeb::platform::pathExists(path)) return true;
  if (!zeb::platform::makeFolder(path)) {
    zeb::internal::logPath(MLOG_ERROR, kFileTag, "force create:%s", path);
    return false;
  }
  zeb::internal::logPath(MLOG_DEBUG, kFileTag, "force create:%s", path);
  return true;
}

using FolderPath = std::basic_string<zwchar_t>;

using PathText = zeb::path::PathText<zwchar_t>;

// Whether component 1 of a path names a folder: it is empty for an absolute or UNC path and is a
// bare drive ("C:") for a drive path, neither of which is created.
bool isFolderName(const zwchar_t* component) {
  return component[0] != 0 && !(component[1] == ':' && component[2] == 0);
}

// The size of the open stream `f`, found by seeking to its end; the stream is left at its start.
// Below 1 when it is empty or cannot be measured.
long streamSize(std::FILE* f) {
  if (std::fseek(f, 0, SEEK_END) != 0) return -1;
  const long size = std::ftell(f);
  std::rewind(f);
  return size;
}

// Reads the whole stream `f` of `size` bytes into a new block of size + 2 bytes, the last two
// zero when `addTerminator` is set. Null when the block cannot be had or the read falls short.
void* readBlock(std::FILE* f, long size, bool addTerminator) {
  char* block = static_cast<char*>(std::malloc(static_cast<size_t>(size) + 2));
  if (block == nullptr) return nullptr;
  if (std::fread(block, static_cast<size_t>(size), 1, f) != 1) {
    std::free(block);
    return nullptr;
  }
  if (addTerminator) block[size] = block[size + 1] = 0;
  return block;
}

// True when the existing, non-empty file `path` opens for reading and writing and gives one byte.
bool canReadWrite(const zwchar_t* path) {
  std::FILE* f = zeb::platform::openFile(path, "rb+");
  if (f == nullptr) return false;
  char byte;
  const bool readable = std::fread(&byte, 1, 1, f) == 1;
  std::fclose(f);
  return readable;
}

// At the debug level, opens the timing scope of a write of `size` bytes to `path` (shown in the
// ANSI code page); the path is converted only then.
void openWriteScope(std::optional<TMLogAutoTicks>& scope, const zwchar_t* path, unsigned size) {
  if (!ZEB_LOG_ENABLED(MLOG_DEBUG)) return;
  TAnsiString ansiPath;
  ansiPath.fromWideString(path, MIB_ANSI);
  scope.emplace(MLOG_DEBUG, kFileTag, "mwriteFile", "size:%u,name:%s", size,
                ansiPath.isEmpty() ? "" : ansiPath.p());
}

}  // namespace

// The walk takes the components as extractfiledirexw does (component 1 is the text before the
// first separator run; each later one is a separator run and the name after it), but as spans of
// the whole path rather than through its fixed-size component buffers: a deep path is created as
// it is, never cut short. The prefix grows by one component per level, so an absolute path keeps
// its root and a drive path its drive. Component 1 is itself a folder level when it is a name (the
// "abc" of "abc/def"). A path without component 2 is a single name or a bare drive and creates
// nothing.
bool mforceCreateDirW(const zwchar_t* dir) {
  if (zeb::internal::isEmptyText(dir)) return false;
  const size_t length = PathText::length(dir);
  zeb::path::Span component{};
  if (!PathText::component(dir, length, 2, &component)) return false;
  const FolderPath path(dir, length);
  PathText::component(dir, length, 1, &component);
  const FolderPath first = path.substr(0, component.end);
  if (isFolderName(first.c_str()) && !ensureFolder(first.c_str())) return false;
  for (unsigned n = 2; PathText::component(dir, length, n, &component); ++n) {
    if (!ensureFolder(path.substr(0, component.end).c_str())) return false;
  }
  return true;
}

// The folder part is the path up to its last separator, whatever its length.
bool mforceCreateDirForFileW(const zwchar_t* filePath) {
  if (zeb::internal::isEmptyText(filePath)) return false;
  const FolderPath path(filePath);
  const auto lastSeparator = std::find_if(path.rbegin(), path.rend(), PathText::isSeparator);
  if (lastSeparator == path.rend()) return false;
  return mforceCreateDirW(FolderPath(path.begin(), lastSeparator.base()).c_str());
}

int mwriteFileW(const zwchar_t* path, const void* data, unsigned size) {
  std::optional<TMLogAutoTicks> scope;
  openWriteScope(scope, path, size);
  if (zeb::internal::isEmptyText(path)) return -1;
  std::FILE* f = zeb::platform::openFile(path, "w+b");
  if (f == nullptr) return -2;
  const bool written = data == nullptr || size == 0 || std::fwrite(data, size, 1, f) == 1;
  std::fclose(f);
  return written ? static_cast<int>(size) : -3;
}

// A file larger than an int can count is reported as unreadable (-4).
int mreadFileW(const zwchar_t* path, void** outData, bool addTerminator) {
  if (outData != nullptr) *outData = nullptr;
  if (zeb::internal::isEmptyText(path)) return 0;
  std::FILE* f = zeb::platform::openFile(path, "rb");
  if (f == nullptr) return -1;
  const long size = streamSize(f);
  void* block = size < 1 || size > INT_MAX - 2 ? nullptr : readBlock(f, size, addTerminator);
  std::fclose(f);
  if (size < 1) return -2;
  if (block == nullptr) return -4;
  if (outData != nullptr) {
    *outData = block;
  } else {
    std::free(block);
  }
  return static_cast<int>(size);
}

int mcheckFileRights(const zwchar_t* path) {
  if (zeb::internal::isEmptyText(path) || !zeb::platform::pathExists(path)) return 1;
  long long size = 0;
  if (!zeb::platform::fileSize(path, &size)) return 0;
  if (size == 0 || canReadWrite(path)) return 1;
  zeb::internal::logPath(MLOG_INFO, "", "nofilerights:%s", path);
  return 0;
}

void zeb_deleteMem(void* p) {
  std::free(p);
}

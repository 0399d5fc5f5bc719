// folder.cpp (POSIX): lstat, readdir, copy_file_range with a read/write fallback, readlink and
// symlink, unlink, rmdir, rename and realpath on UTF-8 paths. Files are opened with O_NOFOLLOW,
// so nothing is ever read or written through a link.
#include "zeb/platform/folder.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "zeb/platform/posix/utf8_path.h"
#include "zeb/platform/posix/write_all.h"
#include "zeb/strings/TWideString.h"

namespace zeb {
namespace platform {

namespace {

constexpr std::size_t kCopyBuffer = 64 * 1024;

EntryKind kindOfMode(mode_t mode) {
  if (S_ISREG(mode)) return EntryKind::file;
  if (S_ISDIR(mode)) return EntryKind::folder;
  if (S_ISLNK(mode)) return EntryKind::link;
  return EntryKind::other;
}

EntryKind kindOfUtf8(const char* path) {
  struct stat info;
  return lstat(path, &info) == 0 ? kindOfMode(info.st_mode) : EntryKind::missing;
}

bool fromUtf8(const char* text, WidePath* out) {
  TWideString wide;
  if (!wide.fromUTF8(text)) return false;
  out->assign(wide.p(), static_cast<std::size_t>(wide.length()));
  return true;
}

// The kind readdir reports, examining the entry only when the file system does not say.
EntryKind kindOfDirent(int folderFd, const struct dirent* entry) {
  switch (entry->d_type) {
    case DT_REG:
      return EntryKind::file;
    case DT_DIR:
      return EntryKind::folder;
    case DT_LNK:
      return EntryKind::link;
    case DT_UNKNOWN:
      break;
    default:
      return EntryKind::other;
  }
  struct stat info;
  if (fstatat(folderFd, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0) return EntryKind::missing;
  return kindOfMode(info.st_mode);
}

bool copyByReadWrite(int in, int out) {
  char buffer[kCopyBuffer];
  for (;;) {
    const ssize_t got = read(in, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) return true;
    if (!writeAll(out, buffer, static_cast<size_t>(got))) return false;
  }
}

// Copies the rest of `in` to `out`: in the kernel where the file systems allow it.
bool copyContent(int in, int out, off_t size) {
  off_t done = 0;
  while (done < size) {
    const ssize_t moved =
        copy_file_range(in, nullptr, out, nullptr, static_cast<size_t>(size - done), 0);
    if (moved < 0 && errno == EINTR) continue;
    if (moved <= 0) break;
    done += moved;
  }
  if (done >= size) return true;
  return lseek(in, done, SEEK_SET) == done && lseek(out, done, SEEK_SET) == done &&
         copyByReadWrite(in, out);
}

// Opens `to` for the copy: created new, or replacing what is there when `overwrite`.
// -1 with errno EEXIST when it exists and is kept.
int openTarget(const char* to, mode_t mode, bool overwrite) {
  const int exclusive = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  if (!overwrite) return open(to, exclusive, mode);
  int fd = open(to, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, mode);
  if (fd < 0 && (errno == ELOOP || errno == EACCES || errno == EPERM) &&
      kindOfUtf8(to) != EntryKind::folder && unlink(to) == 0) {
    fd = open(to, exclusive, mode);
  }
  return fd;
}

}  // namespace

EntryKind entryKind(const zwchar_t* path) {
  TAnsiString utf8;
  return toUtf8Path(path, utf8) ? kindOfUtf8(utf8.p()) : EntryKind::missing;
}

bool listFolder(const zwchar_t* path, std::vector<FolderEntry>* out) {
  TAnsiString utf8;
  if (out == nullptr || !toUtf8Path(path, utf8)) return false;
  DIR* folder = opendir(utf8.p());
  if (folder == nullptr) return false;
  const int fd = dirfd(folder);
  while (const struct dirent* entry = readdir(folder)) {
    const char* name = entry->d_name;
    if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'))) continue;
    FolderEntry item;
    item.kind = fromUtf8(name, &item.name) ? kindOfDirent(fd, entry) : EntryKind::unnamed;
    if (item.kind == EntryKind::unnamed) item.name.clear();
    out->push_back(std::move(item));
  }
  closedir(folder);
  return true;
}

CopyResult copyFile(const zwchar_t* from, const zwchar_t* to, bool overwrite) {
  TAnsiString source, target;
  if (!toUtf8Path(from, source) || !toUtf8Path(to, target)) return CopyResult::failed;
  const int in = open(source.p(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
  if (in < 0) return CopyResult::failed;
  struct stat info;
  if (fstat(in, &info) != 0 || !S_ISREG(info.st_mode)) {
    close(in);
    return CopyResult::failed;
  }
  const int out = openTarget(target.p(), info.st_mode & 07777, overwrite);
  if (out < 0) {
    const bool kept = errno == EEXIST && !overwrite;
    close(in);
    return kept ? CopyResult::kept : CopyResult::failed;
  }
  const bool copied = copyContent(in, out, info.st_size);
  close(in);
  return close(out) == 0 && copied ? CopyResult::copied : CopyResult::failed;
}

CopyResult copyLink(const zwchar_t* from, const zwchar_t* to, bool overwrite) {
  TAnsiString source, target;
  if (!toUtf8Path(from, source) || !toUtf8Path(to, target)) return CopyResult::failed;
  char linkText[PATH_MAX];
  const ssize_t length = readlink(source.p(), linkText, sizeof linkText - 1);
  if (length < 0) return CopyResult::failed;
  linkText[length] = '\0';
  if (symlink(linkText, target.p()) == 0) return CopyResult::copied;
  if (errno != EEXIST) return CopyResult::failed;
  if (!overwrite) return CopyResult::kept;
  if (kindOfUtf8(target.p()) == EntryKind::folder || unlink(target.p()) != 0) {
    return CopyResult::failed;
  }
  return symlink(linkText, target.p()) == 0 ? CopyResult::copied : CopyResult::failed;
}

bool removeFile(const zwchar_t* path) {
  TAnsiString utf8;
  return toUtf8Path(path, utf8) && unlink(utf8.p()) == 0;
}

bool removeEmptyFolder(const zwchar_t* path) {
  TAnsiString utf8;
  return toUtf8Path(path, utf8) && rmdir(utf8.p()) == 0;
}

RenameResult renamePath(const zwchar_t* from, const zwchar_t* to) {
  TAnsiString source, target;
  if (!toUtf8Path(from, source) || !toUtf8Path(to, target)) return RenameResult::failed;
  if (rename(source.p(), target.p()) == 0) return RenameResult::renamed;
  return errno == EXDEV ? RenameResult::otherDevice : RenameResult::failed;
}

bool resolvedPath(const zwchar_t* path, WidePath* out) {
  TAnsiString utf8;
  if (out == nullptr || !toUtf8Path(path, utf8)) return false;
  char* resolved = realpath(utf8.p(), nullptr);
  if (resolved == nullptr) return false;
  const bool converted = fromUtf8(resolved, out);
  free(resolved);
  return converted;
}

}  // namespace platform
}  // namespace zeb

// tfileutils.cpp: the folder operations. Each walks the tree depth first with one path buffer
// per side, appending a component on the way down and cutting it off on the way up, so a walk
// allocates little more than each folder's entry list. The file system is reached only through
// platform/folder.h and platform/file.h, whose calls never follow a link they are handed.
#include "zeb/utils/tfileutils.h"

#include <algorithm>
#include <vector>

#include "zeb/platform/file.h"
#include "zeb/platform/folder.h"
#include "zeb/strings/internal/path_text.h"
#include "zeb/strings/internal/units.h"
#include "zeb/strings/wildcard.h"
#include "zeb/utils/internal/log_path.h"
#include "zeb/utils/mfile.h"

namespace {

using zeb::platform::EntryKind;
using zeb::platform::FolderEntry;
using zeb::platform::kPathSeparator;
using zeb::platform::WidePath;
using PathText = zeb::path::PathText<zwchar_t>;

const char kTag[] = "zeb.file";

// `path` with its trailing separators dropped (a lone root separator stays).
WidePath trimmedPath(const zwchar_t* path) {
  WidePath trimmed(path);
  while (trimmed.size() > 1 && PathText::isSeparator(trimmed.back())) trimmed.pop_back();
  return trimmed;
}

// Logs the error `fmt` with `path` in UTF-8 as its one argument.
void logFailure(const char* fmt, const WidePath& path) {
  zeb::internal::logPath(MLOG_ERROR, kTag, fmt, path.c_str());
}

bool matches(const WidePath& name, const zwchar_t* pattern) {
  return zeb::internal::isEmptyText(pattern) || wildcardMatchW(name.c_str(), pattern);
}

// Appends a separator and `name` to `path`; returns the length to cut `path` back to.
std::size_t descend(WidePath& path, const WidePath& name) {
  const std::size_t mark = path.size();
  if (path.empty() || !PathText::isSeparator(path.back())) path += kPathSeparator;
  path += name;
  return mark;
}

// The entries of `folder` in the order of their names; false (logged) when it cannot be read.
bool sortedEntries(const WidePath& folder, std::vector<FolderEntry>& entries) {
  if (!zeb::platform::listFolder(folder.c_str(), &entries)) {
    logFailure("cannot list folder:%s", folder);
    return false;
  }
  std::sort(entries.begin(), entries.end(),
            [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
  return true;
}

// The trimmed `path` of a real folder in *out, or the negative code saying why not.
int checkSourceFolder(const zwchar_t* path, WidePath* out) {
  if (zeb::internal::isEmptyText(path)) return FILEOP_BAD_ARGUMENT;
  *out = trimmedPath(path);
  return zeb::platform::entryKind(out->c_str()) == EntryKind::folder ? 0 : FILEOP_NO_SOURCE;
}

// `path` with every link resolved, for a path that need not exist: its deepest existing
// ancestor resolved, then the rest of it as written (all of it as written when not even the
// root or the working folder resolves).
WidePath resolvedTarget(const WidePath& path) {
  WidePath probe = path;
  WidePath rest;
  WidePath resolved;
  static const zwchar_t kHere[] = {'.', 0};
  while (!zeb::platform::resolvedPath(probe.empty() ? kHere : probe.c_str(), &resolved)) {
    if (probe.empty() || (probe.size() == 1 && PathText::isSeparator(probe[0]))) return path;
    std::size_t cut = probe.size();
    while (cut > 0 && !PathText::isSeparator(probe[cut - 1])) --cut;
    rest.insert(0, probe, cut, WidePath::npos);
    rest.insert(rest.begin(), kPathSeparator);
    while (cut > 0 && PathText::isSeparator(probe[cut - 1])) --cut;
    probe.resize(cut);
    if (probe.empty() && !path.empty() && PathText::isSeparator(path[0]))
      probe.assign(1, kPathSeparator);
  }
  if (!resolved.empty() && resolved.back() == kPathSeparator && !rest.empty()) rest.erase(0, 1);
  return resolved + rest;
}

// True when `target` is the folder `source` or lies inside it, links resolved.
bool isInsideSource(const WidePath& source, const WidePath& target) {
  WidePath resolvedSource;
  if (!zeb::platform::resolvedPath(source.c_str(), &resolvedSource)) return false;
  const WidePath resolved = resolvedTarget(target);
  if (resolved.compare(0, resolvedSource.size(), resolvedSource) != 0) return false;
  return resolved.size() == resolvedSource.size() || resolvedSource.back() == kPathSeparator ||
         resolved[resolvedSource.size()] == kPathSeparator;
}

// Makes sure the folder `path` exists, creating it (and its missing parents) when it does not.
bool ensureFolder(const WidePath& path) {
  const EntryKind kind = zeb::platform::entryKind(path.c_str());
  if (kind == EntryKind::folder) return true;
  if (kind != EntryKind::missing) return false;
  return zeb::platform::makeFolder(path.c_str()) || mforceCreateDirW(path.c_str());
}

// What was done so far and whether anything failed or a callback stopped the work.
struct Tally {
  int done = 0;
  bool failed = false;
  bool stopped = false;

  void fail(const char* fmt, const WidePath& path) {
    failed = true;
    logFailure(fmt, path);
  }
  int result() const { return failed ? FILEOP_INCOMPLETE : done; }
};

// The callback's answer for the entry at `path`; FILEENTRY_CONTINUE without a callback.
int ask(tfileentrycallback* callback, const WidePath& path, const FolderEntry& entry, int depth) {
  if (callback == nullptr) return FILEENTRY_CONTINUE;
  const tfileentry view{path.c_str(), entry.name.c_str(), depth, entry.kind == EntryKind::folder,
                        entry.kind == EntryKind::link};
  const int answer = callback->onEntry(view);
  return answer == FILEENTRY_SKIP || answer == FILEENTRY_STOP ? answer : FILEENTRY_CONTINUE;
}

// Calls visit(entry) for each entry of `folder` in the order of their names, with `folder` (and
// `mirror`, when not null) extended by the entry's name meanwhile. An entry whose name is not
// UTF-8, and a folder that cannot be read, count as failures. visit returns false to end the walk.
template <typename Visit>
void forEachEntry(WidePath& folder, WidePath* mirror, Tally& tally, Visit visit) {
  std::vector<FolderEntry> entries;
  if (!sortedEntries(folder, entries)) {
    tally.failed = true;
    return;
  }
  for (const FolderEntry& entry : entries) {
    if (entry.kind == EntryKind::unnamed) {
      tally.fail("name is not UTF-8 in:%s", folder);
      continue;
    }
    const std::size_t folderMark = descend(folder, entry.name);
    const std::size_t mirrorMark = mirror != nullptr ? descend(*mirror, entry.name) : 0;
    const bool goOn = visit(entry);
    folder.resize(folderMark);
    if (mirror != nullptr) mirror->resize(mirrorMark);
    if (!goOn) return;
  }
}

class Enumerator {
 public:
  Enumerator(const zwchar_t* pattern, int flags, tfileentrycallback* callback)
      : m_pattern(pattern), m_flags(flags), m_callback(callback) {}

  void walk(WidePath& path, int depth) {
    forEachEntry(path, nullptr, tally, [&](const FolderEntry& entry) {
      const bool isFolder = entry.kind == EntryKind::folder;
      int answer = FILEENTRY_CONTINUE;
      if ((m_flags & (isFolder ? FILEENUM_FOLDERS : FILEENUM_FILES)) != 0 &&
          matches(entry.name, m_pattern)) {
        ++tally.done;
        answer = ask(m_callback, path, entry, depth);
      }
      if (isFolder && answer == FILEENTRY_CONTINUE && (m_flags & FILEENUM_RECURSIVE) != 0) {
        walk(path, depth + 1);
      }
      if (answer == FILEENTRY_STOP) tally.stopped = true;
      return !tally.stopped;
    });
  }

  Tally tally;

 private:
  const zwchar_t* const m_pattern;
  const int m_flags;
  tfileentrycallback* const m_callback;
};

// Copies one non-folder entry; `kind` says which copy it needs.
void copyEntry(EntryKind kind, const WidePath& from, const WidePath& to, bool overwrite,
               Tally& tally) {
  using zeb::platform::CopyResult;
  CopyResult result = CopyResult::failed;
  if (kind == EntryKind::file)
    result = zeb::platform::copyFile(from.c_str(), to.c_str(), overwrite);
  if (kind == EntryKind::link)
    result = zeb::platform::copyLink(from.c_str(), to.c_str(), overwrite);
  if (result == CopyResult::copied) ++tally.done;
  if (result == CopyResult::failed) tally.fail("cannot copy:%s", from);
}

class TreeCopier {
 public:
  TreeCopier(bool overwrite, tfileentrycallback* progress)
      : m_overwrite(overwrite), m_progress(progress) {}

  void copy(WidePath& from, WidePath& to, int depth) {
    forEachEntry(from, &to, tally, [&](const FolderEntry& entry) {
      const int answer = ask(m_progress, from, entry, depth);
      if (answer == FILEENTRY_STOP) tally.stopped = true;
      if (answer == FILEENTRY_CONTINUE) copyOne(entry.kind, from, to, depth);
      return !tally.stopped;
    });
  }

  Tally tally;

 private:
  void copyOne(EntryKind kind, WidePath& from, WidePath& to, int depth) {
    if (kind != EntryKind::folder) {
      copyEntry(kind, from, to, m_overwrite, tally);
    } else if (ensureFolder(to)) {
      copy(from, to, depth + 1);
    } else {
      tally.fail("cannot create folder:%s", to);
    }
  }

  const bool m_overwrite;
  tfileentrycallback* const m_progress;
};

class TreeMover {
 public:
  explicit TreeMover(bool overwrite) : m_overwrite(overwrite) {}

  // Moves the content of `from` into `to` and removes the folders it leaves empty.
  void move(WidePath& from, WidePath& to) {
    if (!ensureFolder(to)) {
      tally.fail("cannot create folder:%s", to);
      return;
    }
    forEachEntry(from, &to, tally, [&](const FolderEntry& entry) {
      if (entry.kind == EntryKind::folder) {
        move(from, to);
        zeb::platform::removeEmptyFolder(from.c_str());
      } else {
        moveOne(entry.kind, from, to);
      }
      return true;
    });
  }

  Tally tally;

 private:
  void moveOne(EntryKind kind, const WidePath& from, const WidePath& to) {
    using zeb::platform::RenameResult;
    const EntryKind existing = zeb::platform::entryKind(to.c_str());
    if (existing == EntryKind::folder) return tally.fail("a folder is in the way of:%s", from);
    if (existing != EntryKind::missing && !m_overwrite) return;
    const RenameResult renamed = zeb::platform::renamePath(from.c_str(), to.c_str());
    if (renamed == RenameResult::renamed) {
      ++tally.done;
    } else if (renamed == RenameResult::failed) {
      tally.fail("cannot move:%s", from);
    } else {
      Tally copied;
      copyEntry(kind, from, to, true, copied);
      if (copied.done == 1 && zeb::platform::removeFile(from.c_str())) {
        ++tally.done;
      } else {
        tally.fail("cannot move:%s", from);
      }
    }
  }

  const bool m_overwrite;
};

class FileDeleter {
 public:
  FileDeleter(const zwchar_t* pattern, bool recursive, bool removeEmptied)
      : m_pattern(pattern), m_recursive(recursive), m_removeEmptied(removeEmptied) {}

  // Deletes in `path`; true when anything in it was removed.
  bool clean(WidePath& path) {
    bool removedAny = false;
    forEachEntry(path, nullptr, tally, [&](const FolderEntry& entry) {
      if (entry.kind == EntryKind::folder) {
        removedAny |= m_recursive && clean(path) && m_removeEmptied &&
                      zeb::platform::removeEmptyFolder(path.c_str());
      } else if (matches(entry.name, m_pattern)) {
        if (zeb::platform::removeFile(path.c_str())) {
          ++tally.done;
          removedAny = true;
        } else {
          tally.fail("cannot delete:%s", path);
        }
      }
      return true;
    });
    return removedAny;
  }

  Tally tally;

 private:
  const zwchar_t* const m_pattern;
  const bool m_recursive;
  const bool m_removeEmptied;
};

// Checks the source and target of a copy or move: 0, or the negative code that ends it.
int checkCopyPaths(const zwchar_t* from, const zwchar_t* to, WidePath* source, WidePath* target) {
  const int check = checkSourceFolder(from, source);
  if (check != 0) return check;
  if (zeb::internal::isEmptyText(to)) return FILEOP_BAD_ARGUMENT;
  *target = trimmedPath(to);
  if (isInsideSource(*source, *target)) return FILEOP_INSIDE_SOURCE;
  const EntryKind kind = zeb::platform::entryKind(target->c_str());
  return kind == EntryKind::folder || kind == EntryKind::missing ? 0 : FILEOP_BAD_TARGET;
}

int countFiles(WidePath& folder) {
  Enumerator counter(nullptr, FILEENUM_FILES | FILEENUM_RECURSIVE, nullptr);
  counter.walk(folder, 0);
  return counter.tally.done;
}

// Renames the folder `source` to the missing `target`, creating the target's parents first.
bool renameWhole(const WidePath& source, const WidePath& target) {
  mforceCreateDirForFileW(target.c_str());
  return zeb::platform::renamePath(source.c_str(), target.c_str()) ==
         zeb::platform::RenameResult::renamed;
}

}  // namespace

int tfileutils::enumFolderW(const zwchar_t* folder, const zwchar_t* pattern, int flags,
                            tfileentrycallback* callback) {
  WidePath path;
  const int check = checkSourceFolder(folder, &path);
  if (check != 0) return check;
  Enumerator enumerator(pattern, flags, callback);
  enumerator.walk(path, 0);
  return enumerator.tally.done;
}

int copyfolder(const zwchar_t* from, const zwchar_t* to, bool overwrite,
               tfileentrycallback* progress) {
  WidePath source, target;
  const int check = checkCopyPaths(from, to, &source, &target);
  if (check != 0) return check;
  if (!ensureFolder(target)) {
    logFailure("cannot create folder:%s", target);
    return FILEOP_BAD_TARGET;
  }
  TreeCopier copier(overwrite, progress);
  copier.copy(source, target, 0);
  return copier.tally.result();
}

int movefolder(const zwchar_t* from, const zwchar_t* to, bool overwrite) {
  WidePath source, target;
  const int check = checkCopyPaths(from, to, &source, &target);
  if (check != 0) return check;
  if (zeb::platform::entryKind(target.c_str()) == EntryKind::missing) {
    const int files = countFiles(source);
    if (renameWhole(source, target)) return files;
  }
  TreeMover mover(overwrite);
  mover.move(source, target);
  zeb::platform::removeEmptyFolder(source.c_str());
  return mover.tally.result();
}

int deleteFiles(const zwchar_t* folder, const zwchar_t* pattern, bool recursive,
                bool removeEmptiedFolders) {
  WidePath path;
  const int check = checkSourceFolder(folder, &path);
  if (check != 0) return check;
  FileDeleter deleter(pattern, recursive, removeEmptiedFolders);
  deleter.clean(path);
  return deleter.tally.result();
}

// folder.h: the folder-tree calls of the folder operations, on 16-bit paths (see file.h for the
// conversion): what an entry is without following links, the entries of a folder, copying one
// file or one link, removing, renaming and resolving a path. No call ever follows a symbolic
// link at the end of the path it is given: links are examined, copied and removed as links.
//
//   std::vector<zeb::platform::FolderEntry> entries;
//   if (zeb::platform::listFolder(path, &entries)) { ... }
#ifndef ZEB_PLATFORM_FOLDER_H
#define ZEB_PLATFORM_FOLDER_H

#include <string>
#include <vector>

#include "zeb/zeb_api.h"

namespace zeb {
namespace platform {

using WidePath = std::basic_string<zwchar_t>;

enum class EntryKind {
  missing,   // nothing there, or it cannot be examined
  file,      // a regular file
  folder,    // a real folder (not a link to one)
  link,      // a symbolic link, whatever it points to
  other,     // a device, pipe or socket
  unnamed,   // a folder entry whose name is not valid UTF-8 (listFolder only; name is empty)
};

struct FolderEntry {
  WidePath name;
  EntryKind kind;
};

// What is at `path`, the last component not followed.
EntryKind entryKind(const zwchar_t* path);

// Appends the entries of the folder `path` ("." and ".." left out) to *out, in the order the
// system gives them. False when the folder cannot be read.
bool listFolder(const zwchar_t* path, std::vector<FolderEntry>* out);

enum class CopyResult { copied, kept, failed };

// Copies the regular file `from` to `to` with its permission bits (less the umask). An existing
// `to` is replaced when `overwrite` (a file that does not open for writing, or a link, is
// removed first: nothing is written through a link), else kept.
CopyResult copyFile(const zwchar_t* from, const zwchar_t* to, bool overwrite);

// Makes `to` a symbolic link with the same target text as the link `from`; an existing `to`
// (not a folder) is replaced when `overwrite`, else kept.
CopyResult copyLink(const zwchar_t* from, const zwchar_t* to, bool overwrite);

// Removes the file or link `path` (never what a link points to).
bool removeFile(const zwchar_t* path);
// Removes the folder `path` when it is empty.
bool removeEmptyFolder(const zwchar_t* path);

enum class RenameResult { renamed, otherDevice, failed };

// Renames `from` to `to` (replacing a file or an empty folder at `to`, as the system allows).
// otherDevice when the two are on different file systems.
RenameResult renamePath(const zwchar_t* from, const zwchar_t* to);

// The absolute path of the existing `path` with every link resolved ('/'-separated); false when
// it does not exist.
bool resolvedPath(const zwchar_t* path, WidePath* out);

// The separator of the system's paths.
constexpr zwchar_t kPathSeparator = '/';

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_FOLDER_H

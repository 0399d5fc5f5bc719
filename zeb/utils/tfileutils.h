// tfileutils.h: folder operations on UTF-16 paths: enumerate a folder, copy a folder tree, move
// a folder, delete the files that match a pattern.
//
//   class TPrinter : public tfileentrycallback {
//     int onEntry(const tfileentry& e) override {
//       print(e.path);
//       return e.isFolder && isCache(e.name) ? FILEENTRY_SKIP : FILEENTRY_CONTINUE;
//     }
//   } printer;
//   tfileutils::enumFolderW(ZW("/srv/data"), ZW("*.csv"), FILEENUM_FILES | FILEENUM_RECURSIVE,
//                           &printer);
//   int copied = copyfolder(ZW("/srv/data"), ZW("/backup/data"), true, nullptr);
//   int removed = deleteFiles(ZW("/backup/data"), ZW("*.tmp"), true, true);
//
// Rules every operation keeps:
//   - Symbolic links are never followed: a link is listed, copied, moved and deleted as a link
//     (never entered, never read or written through), so nothing outside the folder named is
//     ever touched. The folder named must itself be a real folder, not a link to one.
//   - Entries are visited folder by folder, each folder's entries in the order of their names'
//     code units, a folder before its content.
//   - Patterns are wildcardMatchW patterns on the entry's name ('*', '?', case-sensitive); a
//     null or empty pattern matches every name.
//   - Results count what was done, or are one of the negative FILEOP_* codes. They never throw.
//     An entry that cannot be done is logged under "zeb.file" and the operation goes on with the
//     others; the result is then FILEOP_INCOMPLETE.
//   - '/' and '\\' both separate path components; paths handed to callbacks use '/'.
#ifndef ZEB_UTILS_TFILEUTILS_H
#define ZEB_UTILS_TFILEUTILS_H

#include "zeb/zeb_api.h"

// Negative results of the folder operations.
enum tfileopresult : int {
  FILEOP_BAD_ARGUMENT = -1,   // a null or empty path
  FILEOP_NO_SOURCE = -2,      // the folder named is missing, or is not a real folder
  FILEOP_INSIDE_SOURCE = -3,  // the destination is the source folder or lies inside it
  FILEOP_INCOMPLETE = -4,     // some entries could not be done (the others were)
  FILEOP_BAD_TARGET = -5,     // the destination exists and is not a real folder
};

// What enumFolderW lists (bits).
enum tfileenumflags : int {
  FILEENUM_FILES = 0x1,      // files, links and other non-folders
  FILEENUM_FOLDERS = 0x2,    // folders
  FILEENUM_RECURSIVE = 0x4,  // descend into every folder (whether listed or not)
};

// Answers of a callback.
enum tfileentryanswer : int {
  FILEENTRY_CONTINUE = 0,
  FILEENTRY_SKIP = 1,  // a folder is not entered (not copied); a file is not copied
  FILEENTRY_STOP = 2,  // end the operation; its result counts what was done so far
};

// One entry as a callback sees it. The texts live until the callback returns.
struct tfileentry {
  const zwchar_t* path;  // the folder given (its trailing separators dropped), '/', the
                         // entry's path below it
  const zwchar_t* name;  // the last component
  int depth;             // 0 for entries directly in the folder given
  bool isFolder;
  bool isLink;  // a symbolic link (isFolder is then false)
};

// A callback, owned by the caller.
class tfileentrycallback {
 public:
  virtual ~tfileentrycallback() = default;
  // Returns one of the FILEENTRY_* answers (other values count as FILEENTRY_CONTINUE).
  virtual int onEntry(const tfileentry& entry) = 0;
};

class ZEB_API tfileutils {
 public:
  // Calls `callback` (null: counts only) for the entries of `folder` that `flags` asks for and
  // whose names match `pattern`. Returns how many entries were reported, or FILEOP_BAD_ARGUMENT
  // / FILEOP_NO_SOURCE. A folder that cannot be read is logged and left out.
  static int enumFolderW(const zwchar_t* folder, const zwchar_t* pattern, int flags,
                         tfileentrycallback* callback);
};

extern "C" {

// Copies the tree of `from` into the folder `to` (created, with its missing parents, when it
// does not exist): folders (empty ones too), files with their permission bits, and links as
// links. An existing file is replaced when `overwrite`, else kept. `progress` (may be null) sees
// each source entry before it is copied and may skip it or stop. Returns the files and links
// copied, or FILEOP_BAD_ARGUMENT, FILEOP_NO_SOURCE, FILEOP_INSIDE_SOURCE (nothing is created),
// FILEOP_BAD_TARGET, FILEOP_INCOMPLETE.
ZEB_API int copyfolder(const zwchar_t* from, const zwchar_t* to, bool overwrite,
                       tfileentrycallback* progress);

// Moves the folder `from` to `to`. When `to` does not exist this is one rename where the system
// allows it (its missing parents are created first). Otherwise, or across file systems, every
// entry is moved one by one into `to`: files and links are renamed (copied and removed across
// file systems); an existing file is replaced when `overwrite`, else kept in both places; source
// folders left empty are removed, `from` included. Returns the files and links moved (counted
// before a whole rename), or the codes of copyfolder.
ZEB_API int movefolder(const zwchar_t* from, const zwchar_t* to, bool overwrite);

// Deletes the files and links in `folder` whose names match `pattern`, in its subfolders too
// when `recursive`. With `removeEmptiedFolders`, a subfolder left empty by the deletion is
// removed as well (folders that were empty before, and `folder` itself, stay). Returns the files
// and links deleted, or FILEOP_BAD_ARGUMENT, FILEOP_NO_SOURCE, FILEOP_INCOMPLETE.
ZEB_API int deleteFiles(const zwchar_t* folder, const zwchar_t* pattern, bool recursive,
                        bool removeEmptiedFolders);

}  // extern "C"

#endif  // ZEB_UTILS_TFILEUTILS_H

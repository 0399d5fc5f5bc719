// mfile.h: whole-file helpers on UTF-16 paths: create a folder chain, create the folder of a
// file, write a whole file, read a whole file, check that a file can be opened for writing, and
// free memory the library handed out. They return plain integers and never throw.
//
//   void* data = nullptr;
//   int size = mreadFileW(ZW("settings.ini"), &data, true);  // text is NUL-terminated
//   if (size > 0) parse(static_cast<const char*>(data));
//   zeb_deleteMem(data);
#ifndef ZEB_UTILS_MFILE_H
#define ZEB_UTILS_MFILE_H

#include "zeb/zeb_api.h"

extern "C" {

// Creates every missing folder of `dir`, from the top down, however long the path (a folder the
// system cannot create fails the call; no shorter folder is ever made instead). True when the
// deepest folder exists at the end; false for null or "", for a path with a single component ("C:", "abc"), and when a
// folder cannot be created (logged as an error with tag "zeb.file").
ZEB_API bool mforceCreateDirW(const zwchar_t* dir);
// mforceCreateDirW of the folder part of `filePath` (false when it has none).
ZEB_API bool mforceCreateDirForFileW(const zwchar_t* filePath);

// Replaces the file `path` with `size` bytes of `data` (the folder must exist). Returns `size`;
// -1 for a null or empty path, -2 when the file cannot be opened, -3 when the write fails. A null
// `data` or a size of 0 leaves the file empty and still returns `size`.
ZEB_API int mwriteFileW(const zwchar_t* path, const void* data, unsigned size);

// Reads the whole file into a block the caller releases with zeb_deleteMem, stored in *outData
// (set to null first). With `addTerminator` two zero bytes follow the data, ending 8-bit and
// UTF-16 text alike. Returns the size; 0 for a null or empty path, -1 when the file cannot be
// opened (a folder included), -2 when it is empty, -4 when it cannot be read (or holds more than INT_MAX - 2 bytes).
// A null `outData` reads and measures.
ZEB_API int mreadFileW(const zwchar_t* path, void** outData, bool addTerminator);

// 1 when the file can be opened for writing, or does not exist (nothing stands in the way of
// creating it), or is empty; 0 (logged as "nofilerights:<path>") when it exists but cannot be
// opened for reading and writing. A folder is not a file that can be written: 0, with that log
// line, so the log tells why a path that names a folder is refused.
ZEB_API int mcheckFileRights(const zwchar_t* path);

// Releases a block the library allocated for its caller (mreadFileW). Null is ignored.
ZEB_API void zeb_deleteMem(void* p);

}  // extern "C"

#endif  // ZEB_UTILS_MFILE_H

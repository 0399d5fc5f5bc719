// file.h: the few file-system calls the library makes on 16-bit paths: open a C stream, test that
// a path exists, create one folder, and ask for the size of an entry. Paths are UTF-16; the POSIX
// implementation converts them to UTF-8 and turns '\\' into '/' (both are separators throughout
// the library), Windows will hand them to its wide-character calls. A path that is null, empty or
// cannot be converted (an unpaired surrogate) makes every call fail.
//
//   std::FILE* f = zeb::platform::openFile(path, "rb");
//   if (f != nullptr) { ...; std::fclose(f); }
#ifndef ZEB_PLATFORM_FILE_H
#define ZEB_PLATFORM_FILE_H

#include <cstddef>
#include <cstdio>

#include "zeb/zeb_api.h"

namespace zeb {
namespace platform {

// fopen of `path` with a C mode ("rb", "w+b", "rb+", "ab", ...); null when it cannot be opened.
// A folder is not a file: it never opens, in any mode (as on Windows). Binary and text modes are
// the same on POSIX. The caller closes the stream with std::fclose.
std::FILE* openFile(const zwchar_t* path, const char* mode);

// Writes `size` bytes to the C stream as one item: true exactly when std::fwrite(data, size, 1,
// stream) would return 1, with the same bytes in the same place. A process with one thread whose
// stream already holds bytes written this way and has room in its buffer gets them copied straight
// into that buffer, as putc_unlocked does for one byte; anything else goes through std::fwrite.
bool writeToStream(std::FILE* stream, const void* data, size_t size);

// True when something (file, folder, ...) exists at `path` (access with F_OK).
bool pathExists(const zwchar_t* path);

// Creates the single folder `path` (its parent must exist) with the default permissions (0777
// less the umask). False when it cannot be created, also when it exists already.
bool makeFolder(const zwchar_t* path);

// The size in bytes of the entry at `path` in *size; false (and *size untouched) when the entry
// is missing or cannot be examined. It opens nothing, so it works on files the process cannot
// read. A null `size` only tests that the entry can be examined.
bool fileSize(const zwchar_t* path, long long* size);

// Replaces the content of the file at the 8-bit `path` (passed to the C library as it is) with
// `size` bytes of `data`, never leaving it half written: an existing file gets the new content in
// a temporary file beside it, with the old file's permissions, which is then renamed over it; a
// new file is written directly and removed again if writing fails. False, with nothing written,
// when the file exists but cannot be opened for writing or its folder cannot take the new file.
bool replaceFileContent(const char* path, const void* data, size_t size);

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_FILE_H

// filename.h: taking paths apart by their text alone, without touching the file system: the
// file name, the extension, the drive, the directory, one component of a path, the last directory
// removed, a path relative to a base directory, and the paths of a multi-selection list.
//
// Every function exists for 8-bit text (char) and 16-bit text (zwchar_t, UTF-16) with the same
// rules. '\\' and '/' are both separators everywhere, and the search for the file name also stops
// at ':' ("C:file.txt"). A leading "\\\\" starts a UNC path ("\\\\server\\share\\dir\\f.txt"),
// which has no drive. Only the ASCII units '\\', '/', ':' and '.' are examined, so 8-bit text may
// be UTF-8 or any code page whose multi-byte characters never contain those bytes (convert GBK
// or Big5 text, whose second bytes may be '\\', to 16 bits first).
//
// Pointer results point into the caller's text. Functions that write into `out` document the
// size it must have; results are cut to fit, never written past it. Null arguments give the
// neutral result each function states.
//
// Plain functions with one signature have C linkage; the overloaded ones and those that return
// a string object are C++ functions.
//
//   const char* name = ExtractFileNamePtr("C:\\docs\\report.txt");   // "report.txt"
//   TAnsiString ext = ExtractFileExt(name);                           // "txt"
//   char dir[ZEB_FILEDIR_OUT_UNITS];
//   ExtractFileDir("/usr/lib/x.so", dir);                              // "/usr/lib/"
//   char part[ZEB_FILECOMPONENT_OUT_UNITS];
//   for (unsigned n = 2; extractfiledirex("/usr/lib/x.so", part, n) > 0; ++n) {
//     // "/usr", "/lib", "/x.so": appending them one by one rebuilds the path
//   }
#ifndef ZEB_STRINGS_FILENAME_H
#define ZEB_STRINGS_FILENAME_H

#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/zeb_api.h"

// Units the `out` buffer of ExtractFileDir / ExtractFileDirW must hold: a drive (2), at most 255
// units of directory and the NUL. Units the `out` buffer of extractfiledirex / extractfiledirexw
// must hold: at most 259 units of component and the NUL.
enum : unsigned { ZEB_FILEDIR_OUT_UNITS = 258, ZEB_FILECOMPONENT_OUT_UNITS = 260 };

// Called with each full path of a multi-selection list (see ExtractFileNames); return false to
// stop the walk. `path` is valid during the call only.
typedef bool (*tFileNameVisitor)(const char* path, void* context);
typedef bool (*tFileNameVisitorW)(const zwchar_t* path, void* context);

extern "C" {

// The file name: the text after the last '\\', '/' or ':' of `path`, or `path` itself when it has
// none ("C:file.txt" gives "file.txt", "dir/" gives ""). Null gives null.
ZEB_API const char* ExtractFileNamePtr(const char* path);
ZEB_API const char* ExtractFileNamePtrA(const char* path);
ZEB_API const zwchar_t* ExtractFileNamePtrW(const zwchar_t* path);

// The extension, without its dot: scanning back from the end, one final '.' is passed over and
// the next '.' starts the extension ("archive.tar.gz" gives "gz", "a.b." gives "b.", ".txt" gives
// "txt"). Null when there is none: the scan meets '\\' or '/' or the start first ("dir.d/file",
// "file.", "noext"), or `path` is null.
ZEB_API const char* ExtractFileExtPtrA(const char* path);
ZEB_API const zwchar_t* ExtractFileExtPtrW(const zwchar_t* path);

// Writes drive and directory into `out` (ZEB_FILEDIR_OUT_UNITS units): the drive is the first two
// units when the second is ':'; the directory is the rest up to and including its last '\\' or
// '/', cut to its first 255 units ("C:\\a\\b.txt" gives "C:\\a\\", "/usr/lib/x.so" "/usr/lib/",
// "C:b.txt" "C:", "b.txt" ""). Returns `out`. A null `out` returns null; a null `path` writes ""
// and returns null.
ZEB_API zwchar_t* ExtractFileDirW(const zwchar_t* path, zwchar_t* out);

// Writes component `n` (from 1) of `path` into `out` (ZEB_FILECOMPONENT_OUT_UNITS units; a longer
// component is cut to 259 units) and returns its length in units. A run of separators counts as
// one. Component 1 is the text before the first separator run: the drive of "C:\\a\\b", "" for
// an absolute path ("/usr/lib") or a UNC path, the first name of a relative one. Every later
// component is a separator run followed by the name after it, the run copied as it stands:
// "C:\\a\\b" gives "C:", "\\a", "\\b"; "/usr/lib/x" gives "", "/usr", "/lib", "/x"; a UNC path
// gives "", "\\\\server", "\\share", ... Appending components 1..k therefore rebuilds the path up
// to the end of its k-th name, root and drive included. A separator run that ends the path starts
// no component. When the path has no component `n` (n 0, or too few names) `out` receives "" and
// the result is -1. A null `path` writes "" and returns -1; a null `out` returns -1.
ZEB_API int extractfiledirex(const char* path, char* out, unsigned n);
ZEB_API int extractfiledirexw(const zwchar_t* path, zwchar_t* out, unsigned n);

// Walks a multi-selection list of files, as a file dialog returns it: NUL-terminated entries
// closed by an empty entry (a second NUL). A list with one entry holds one full path
// ("C:\\a\\f.txt\0\0"); with several, the first is a directory and each other entry a file name
// in it ("C:\\a\0f1.txt\0f2.txt\0\0" gives "C:\\a\\f1.txt" and "C:\\a\\f2.txt"). The directory
// and a name are joined with the directory's first separator ('\\' when it has none) unless the
// directory already ends in one. Names are used as they stand, without any check. `visit`, when
// not null, is called with each full path in order until it returns false. Returns the number
// of paths visited (with a null `visit`: the number of paths). Null or empty `list`: 0.
ZEB_API int ExtractFileNames(const char* list, tFileNameVisitor visit, void* context);
ZEB_API int ExtractFileNamesW(const zwchar_t* list, tFileNameVisitorW visit, void* context);

// The path of `target` relative to the directory `base` (a trailing separator on `base` changes
// nothing). Paths are compared as text, never resolved: "." and ".." are ordinary names. Each
// path splits into a root (the drive, the leading separators and, for a UNC path, the server and
// share names) and names. When the roots differ (another drive, an absolute against a relative
// path, another server or share; ASCII case ignored) the result is `target` unchanged.
// Otherwise the leading names both share, compared whole and ignoring ASCII case as Windows file
// systems do, are dropped; each remaining name of `base` becomes "..", and the remaining names
// of `target` follow. The result uses the first separator of `target` ('\\' when it has none)
// and ends in one when `target` does: base "C:\\a\\b", target "c:/a/c/f.txt" gives
// "../c/f.txt"; target "C:\\a\\b" gives "" (the same directory).
// Returns the length of the relative path in units. `out` receives it when it holds more units
// than that (outSize > length); otherwise "" is written (when outSize > 0), so a cut path is
// never used: call again with length + 1 units. A null `out` or outSize 0 only measures. A null
// `target` gives "" (0); a null `base` counts as "".
ZEB_API int ExtractRelativePath(const char* base, const char* target, char* out, unsigned outSize);

// Removes the last directory of `path` in place, with the separators after it, keeping the
// separator before it: "C:\\a\\b\\" and "C:\\a\\b" give "C:\\a\\", "a" gives "". The root is
// never removed ("C:\\", "/", "C:", "\\\\server\\share\\" stay as they are). Returns `path`;
// null returns null.
ZEB_API char* delLastDir(char* path);
ZEB_API zwchar_t* delLastDirW(zwchar_t* path);

}  // extern "C"

// ---- C++ forms: overloaded, or returning a new string (a null `path` gives "") ----------------

// ExtractFileNamePtr's text as a new string.
ZEB_API TAnsiString ExtractFileName(const char* path);
ZEB_API TWideString ExtractFileName(const zwchar_t* path);

// ExtractFileExtPtrA's text as a new string; "" when there is no extension.
ZEB_API TAnsiString ExtractFileExt(const char* path);
ZEB_API TWideString ExtractFileExt(const zwchar_t* path);

// The file name without its extension and then without one trailing '.': "C:\\dir\\report.txt"
// gives "report", "name." "name", ".profile" "" (nothing precedes the extension's dot).
ZEB_API TAnsiString ExtractFileNameNoExt(const char* path);
ZEB_API TWideString ExtractFileNameNoExtW(const zwchar_t* path);

// The first two units when the second is ':' ("C:"); otherwise "" (UNC paths included).
ZEB_API TAnsiString ExtractFileDrive(const char* path);
ZEB_API TWideString ExtractFileDriveW(const zwchar_t* path);

// ExtractFileDirW's rules. The pointer form writes into `out` (ZEB_FILEDIR_OUT_UNITS bytes) and
// returns it; a null `out` returns null, a null `path` writes "" and returns null. The string
// forms return the same text, cut the same way, as a new string.
ZEB_API char* ExtractFileDir(const char* path, char* out);
ZEB_API TAnsiString ExtractFileDir(const TAnsiString& path);
ZEB_API TWideString ExtractFileDir(const TWideString& path);

// The first full path of a multi-selection list (see ExtractFileNames); "" for an empty list.
ZEB_API TAnsiString ExtractFileFirstName(const char* list);
ZEB_API TWideString ExtractFileFirstName(const zwchar_t* list);

// ExtractRelativePath over 16-bit text: into `out` with the same size rules, or as a new string.
ZEB_API int ExtractRelativePathW(const zwchar_t* base, const zwchar_t* target, zwchar_t* out,
                                 unsigned outSize);
ZEB_API TWideString ExtractRelativePathW(const zwchar_t* base, const zwchar_t* target);

#endif  // ZEB_STRINGS_FILENAME_H

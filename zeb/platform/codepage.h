// codepage.h: the process ANSI code page and the two conversions of the OS code-page API that the
// charset functions and the string classes build on. POSIX keeps the code page as a process-wide
// setting and converts with iconv; Windows will use GetACP and its own code-page functions.
//
//   int units = zeb::platform::multiByteToWideChar(text, -1, nullptr, 0);  // size needed
#ifndef ZEB_PLATFORM_CODEPAGE_H
#define ZEB_PLATFORM_CODEPAGE_H

#include "zeb/zeb_api.h"

namespace zeb {
namespace platform {

// The ANSI code page (65001, 936, ...).
unsigned ansiCodePage();
// Switches the ANSI code page for the whole process; 0 goes back to the process default.
void setAnsiCodePage(unsigned codePage);
// The iconv name of the current ANSI code page ("CP936", "UTF-8", ...); valid for the life of the
// process.
const char* ansiCodePageCharsetName();

// MultiByteToWideChar(CP_ACP, 0, ...): `inLen` bytes of `in` (negative: up to and including its
// NUL; 0 fails) to UTF-16 in `out` of `outChars` units. Undecodable bytes become U+FFFD. Returns
// the units written, or with outChars 0 the units needed; 0 on failure (null `in`, null `out`
// with outChars > 0, negative outChars, an output too small).
int multiByteToWideChar(const char* in, int inLen, zwchar_t* out, int outChars);

// WideCharToMultiByte(CP_ACP, 0, ..., null, null): `inLen` units of `in` (negative: up to and
// including its NUL; 0 fails) to the ANSI code page in `out` of `outSize` bytes. Characters the
// code page cannot hold, and unpaired surrogates, become '?'. Returns as multiByteToWideChar, in
// bytes.
int wideCharToMultiByte(const zwchar_t* in, int inLen, char* out, int outSize);

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_CODEPAGE_H

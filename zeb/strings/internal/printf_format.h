// printf_format.h: the private printf-style formatting engine behind the string classes' sprintf
// members. Not exported.
//
// It follows the C printf conventions: flags "-+ #0", a width and a precision (either may be
// '*'), the length modifiers hh h l ll j z t L, the conversions d i u o x X c s p e E f F g G a A
// and "%%". Where it differs on purpose:
//   - The decimal point is always '.', whatever the process locale.
//   - A NaN prints "NaN" (whatever its sign or the flags), infinities "+Inf" and "-Inf" (the '+'
//     always shown), and a null %s argument "(NULL)". The width and the '-' flag apply to these
//     texts; the '0' flag and the precision do not.
//   - %p prints the address as "0x" followed by lower-case hexadecimal digits ("0x0" for null).
//   - %n consumes its pointer argument and stores nothing.
//   - %s reads a string of the engine's unit type and %c an int converted to that unit; length
//     modifiers on them are ignored, except that the 16-bit engine reads %hs as a NUL-terminated
//     8-bit UTF-8 string, decoded to UTF-16 (text that is not valid UTF-8 prints as nothing; the
//     precision counts units of the decoded text). A '0' flag on them pads with spaces.
//   - "%%" prints '%' whatever flags or width it carries.
//   - An unknown conversion, or a directive cut short by the end of the format, is copied to
//     the output as it stands and consumes no argument.
//   - Widths and precisions above kMaxFieldSize count as kMaxFieldSize, so that a corrupt format
//     cannot ask for gigabytes of padding.
//
//   std::string out;
//   formatPrintf(out, "%-6s|%+.2f", args);   // "total |+3.14"
#ifndef ZEB_STRINGS_INTERNAL_PRINTF_FORMAT_H
#define ZEB_STRINGS_INTERNAL_PRINTF_FORMAT_H

#include <stdarg.h>

#include <string>

#include "zeb/zeb_api.h"

namespace zeb::internal {

// Largest width or precision the engine honours (1 MiB of padding or digits).
constexpr int kMaxFieldSize = 1 << 20;

// Appends the formatting of `fmt` with the arguments in `args` to `out`. `args` itself is not
// consumed (the engine reads a copy), so the caller may still va_end it. `fmt` must not be null.
// CharT is the text unit: char or zwchar_t.
template <typename CharT>
void formatPrintf(std::basic_string<CharT>& out, const CharT* fmt, va_list args);

extern template void formatPrintf<char>(std::string& out, const char* fmt, va_list args);
extern template void formatPrintf<zwchar_t>(std::basic_string<zwchar_t>& out, const zwchar_t* fmt,
                                            va_list args);

}  // namespace zeb::internal

#endif  // ZEB_STRINGS_INTERNAL_PRINTF_FORMAT_H

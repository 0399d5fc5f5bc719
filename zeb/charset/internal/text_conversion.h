// text_conversion.h: the conversions behind the charset functions, the string classes and the
// code-page functions. Between "UTF-8" and UTF-16 in host byte order they try the library's own
// transcoder (utf_transcoder.h) first; every other pair of charsets, and every input the
// transcoder gives up on, goes to iconv (iconv_converter.h). Results, return values and the
// bytes left in `out` are the same as iconv's alone in every case.
//
//   ConvertResult r = convertText(fixedName(kHostUtf16), fixedName("UTF-8"), in, inBytes, out,
//                                 outBytes);
#ifndef ZEB_CHARSET_INTERNAL_TEXT_CONVERSION_H
#define ZEB_CHARSET_INTERNAL_TEXT_CONVERSION_H

#include <stddef.h>

#include "zeb/charset/internal/iconv_converter.h"

namespace zeb {
namespace charset {

// The UTF-8 name the library passes. The dispatch knows it, as it knows kHostUtf16, by its
// address before it compares any text.
inline constexpr char kUtf8Name[] = "UTF-8";

// convertDiscarding, on the transcoder when it takes the conversion.
ConvertResult convertText(CharsetName to, CharsetName from, const void* in, size_t inBytes,
                          void* out, size_t outBytes);

// convertReplacing, on the transcoder when it takes the conversion, measuring (a null `out`)
// included.
size_t convertTextReplacing(CharsetName to, CharsetName from, const void* in, size_t inBytes,
                            void* out, size_t outBytes, const Replacement& replacement);

}  // namespace charset
}  // namespace zeb

#endif  // ZEB_CHARSET_INTERNAL_TEXT_CONVERSION_H

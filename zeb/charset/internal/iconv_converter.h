// iconv_converter.h: the conversion core behind the charset functions and the ANSI code-page
// conversions. Each thread keeps a few open converters, keyed by their charset names, and hands
// one out only in its initial state (reset unless its last call left it there), so the functions
// are reentrant and pay the cost of opening a converter only once per thread and name pair.
//
//   ConvertResult r = convertDiscarding(fixedName("UTF-8"), callerName(from), in, inBytes, out,
//                                       outBytes);
//   if (r.ok) use(out, r.written);
#ifndef ZEB_CHARSET_INTERNAL_ICONV_CONVERTER_H
#define ZEB_CHARSET_INTERNAL_ICONV_CONVERTER_H

#include <stddef.h>
#include <stdint.h>

namespace zeb {
namespace charset {

// The iconv name of zwchar_t text as it lies in memory (UTF-16 in host byte order; glibc's
// "UTF-16LE"/"UTF-16BE" write no byte-order mark).
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
inline constexpr char kHostUtf16[] = "UTF-16BE";
#else
inline constexpr char kHostUtf16[] = "UTF-16LE";
#endif

// A charset name as the converter cache sees it. Names fixed for the life of the process (the
// library's literals, interned names) are matched by address first; names from callers, whose
// buffers may change between calls, only by their text.
struct CharsetName {
  const char* text;
  bool fixed;
};

constexpr CharsetName fixedName(const char* text) {
  return {text, true};
}
constexpr CharsetName callerName(const char* text) {
  return {text, false};
}

// The outcome of one iconv call over a whole input.
struct ConvertResult {
  size_t written;  // bytes stored in the output
  bool ok;         // everything converted, nothing discarded, no irreversible conversion
};

// One iconv call `to` <- `from` over in[0, inBytes) into out[0, outBytes), with illegal and
// unconvertible input discarded. A call that discards anything, runs out of output or ends in an
// incomplete sequence is not ok. A converter that cannot be opened gives {0, false}. The names'
// texts must not be null.
ConvertResult convertDiscarding(CharsetName to, CharsetName from, const void* in, size_t inBytes,
                                void* out, size_t outBytes);

// How convertReplacing treats a character the converter rejects (undecodable input, or a
// character the target cannot hold): `bytes`/`size` are written in its place, and
// rejectedLength(at, left) tells how many input bytes it spans (at least 1, at most `left`).
struct Replacement {
  const void* bytes;
  size_t size;
  size_t (*rejectedLength)(const unsigned char* at, size_t left);
};

inline constexpr size_t kConversionFailed = SIZE_MAX;

// Converts the whole input `to` <- `from`, writing the replacement for every rejected character
// and going on after it. A null `out` only measures. Returns the size of the whole output in
// bytes, or kConversionFailed when the converter cannot be opened or `out` is too small.
size_t convertReplacing(CharsetName to, CharsetName from, const void* in, size_t inBytes, void* out,
                        size_t outBytes, const Replacement& replacement);

// Whether iconv converts between the charset `name` and UTF-8 in both directions.
bool isConvertibleCharset(const char* name);

}  // namespace charset
}  // namespace zeb

#endif  // ZEB_CHARSET_INTERNAL_ICONV_CONVERTER_H

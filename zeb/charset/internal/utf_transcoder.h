// utf_transcoder.h: the library's own UTF-8 <-> UTF-16 transcoders. They take strictly valid
// text only and give up on anything else, leaving that to iconv (text_conversion.h does the
// dispatch), so what they accept they convert exactly as iconv would. On x86-64 they work many
// characters at a time with the widest vector code the processor has (VectorCode below), asked
// once, at the first use. Other processors take one character at a time.
//
//   zwchar_t wide[8];
//   size_t units = utf8ToUtf16("a\xC3\xA9", 3, wide, 8);  // units == 2: u"a\u00E9"
//   if (units == kNotTranscoded) fallBackToIconv();
#ifndef ZEB_CHARSET_INTERNAL_UTF_TRANSCODER_H
#define ZEB_CHARSET_INTERNAL_UTF_TRANSCODER_H

#include <stddef.h>
#include <stdint.h>

#include "zeb/zeb_api.h"

namespace zeb {
namespace charset {

// The result of a transcoder that gave up.
inline constexpr size_t kNotTranscoded = SIZE_MAX;

// The kinds of vector code the transcoders have on x86-64, narrowest first: SSE2 blocks of ASCII;
// SSSE3 adds UTF-16 of ASCII and CJK 8 units at a time; AVX2 widens the ASCII blocks; AVX-512
// (with VBMI2) takes any mix of characters up to three bytes long 16 units or 64 bytes at a time,
// both ways. Other processors use portable code, and these change nothing there.
enum class VectorCode { kSse2, kSsse3, kAvx2, kAvx512 };

// The widest kind this processor runs; the transcoders use it unless told otherwise.
VectorCode bestVectorCode();

// Makes the transcoders use `code`, or the processor's best if that is narrower, from now on, so
// that tests can check every kind on one machine. Not for use while another thread converts.
void useVectorCode(VectorCode code);

// in[0, inBytes) of UTF-8 into out[0, outUnits) as UTF-16 in host byte order. Returns the units
// written, or kNotTranscoded for input that is not valid UTF-8 (a stray, missing or truncated
// continuation byte, an overlong form, an encoded surrogate, a code point above U+10FFFF) and for
// text that does not fit. Having given up it has written the text of the valid characters before
// the stopping point that fit, and nothing else.
size_t utf8ToUtf16(const char* in, size_t inBytes, zwchar_t* out, size_t outUnits);

// in[0, inUnits) of UTF-16 in host byte order into out[0, outBytes) as UTF-8. Returns the bytes
// written, or kNotTranscoded for an unpaired surrogate and for text that does not fit, after
// which `out` holds what utf8ToUtf16 leaves in the same case.
size_t utf16ToUtf8(const zwchar_t* in, size_t inUnits, char* out, size_t outBytes);

// The units utf8ToUtf16 would write for in[0, inBytes) given room enough, or kNotTranscoded when
// it would give up on the text.
size_t utf8ToUtf16Length(const char* in, size_t inBytes);

// The bytes utf16ToUtf8 would write for in[0, inUnits) given room enough, or kNotTranscoded when
// it would give up on the text.
size_t utf16ToUtf8Length(const zwchar_t* in, size_t inUnits);

}  // namespace charset
}  // namespace zeb

#endif  // ZEB_CHARSET_INTERNAL_UTF_TRANSCODER_H

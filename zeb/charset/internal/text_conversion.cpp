// text_conversion.cpp: the choice between the transcoder and iconv.
//
// The transcoder takes a conversion when the names are "UTF-8" and the host's UTF-16 name (any
// case, as iconv reads them) and the UTF-16 side lies on unit boundaries: whole, aligned units.
#include "zeb/charset/internal/text_conversion.h"

#include <stdint.h>

#include "zeb/charset/internal/utf_transcoder.h"
#include "zeb/strings/zeb_cstr.h"

namespace zeb {
namespace charset {
namespace {

// Whether `name` is `other` in any case.
bool isNamed(const char* name, const char* other) {
  return zeb_stricmp_impl(name, other) == 0;
}

enum class Direction { kNone, kUtf8ToUtf16, kUtf16ToUtf8 };

// The way `to` <- `from` goes on the transcoder, if it does: the library's own names by their
// address, other spellings by their text.
Direction directionOf(CharsetName to, CharsetName from) {
  if (from.text == kUtf8Name && to.text == kHostUtf16) return Direction::kUtf8ToUtf16;
  if (from.text == kHostUtf16 && to.text == kUtf8Name) return Direction::kUtf16ToUtf8;
  if (isNamed(from.text, kUtf8Name) && isNamed(to.text, kHostUtf16)) {
    return Direction::kUtf8ToUtf16;
  }
  if (isNamed(from.text, kHostUtf16) && isNamed(to.text, kUtf8Name)) {
    return Direction::kUtf16ToUtf8;
  }
  return Direction::kNone;
}

bool isUnitAligned(const void* at) {
  return reinterpret_cast<uintptr_t>(at) % alignof(zwchar_t) == 0;
}

// The bytes the transcoder wrote (with a null `out`: would write, given room enough), or
// kNotTranscoded when it did not take the conversion or gave up on it.
size_t transcode(CharsetName to, CharsetName from, const void* in, size_t inBytes, void* out,
                 size_t outBytes) {
  const Direction direction = directionOf(to, from);
  if (direction == Direction::kUtf8ToUtf16 && isUnitAligned(out)) {
    const char* text = static_cast<const char*>(in);
    const size_t units = out == nullptr ? utf8ToUtf16Length(text, inBytes)
                                        : utf8ToUtf16(text, inBytes, static_cast<zwchar_t*>(out),
                                                      outBytes / sizeof(zwchar_t));
    return units == kNotTranscoded ? kNotTranscoded : units * sizeof(zwchar_t);
  }
  if (direction == Direction::kUtf16ToUtf8 && isUnitAligned(in) &&
      inBytes % sizeof(zwchar_t) == 0) {
    const zwchar_t* text = static_cast<const zwchar_t*>(in);
    const size_t units = inBytes / sizeof(zwchar_t);
    return out == nullptr ? utf16ToUtf8Length(text, units)
                          : utf16ToUtf8(text, units, static_cast<char*>(out), outBytes);
  }
  return kNotTranscoded;
}

}  // namespace

ConvertResult convertText(CharsetName to, CharsetName from, const void* in, size_t inBytes,
                          void* out, size_t outBytes) {
  if (out != nullptr) {
    const size_t written = transcode(to, from, in, inBytes, out, outBytes);
    if (written != kNotTranscoded) return {written, true};
  }
  return convertDiscarding(to, from, in, inBytes, out, outBytes);
}

size_t convertTextReplacing(CharsetName to, CharsetName from, const void* in, size_t inBytes,
                            void* out, size_t outBytes, const Replacement& replacement) {
  const size_t written = transcode(to, from, in, inBytes, out, outBytes);
  if (written != kNotTranscoded) return written;
  return convertReplacing(to, from, in, inBytes, out, outBytes, replacement);
}

}  // namespace charset
}  // namespace zeb

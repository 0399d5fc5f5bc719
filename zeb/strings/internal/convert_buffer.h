// convert_buffer.h: the buffer handling shared by the conversion members of TAnsiString and
// TWideString. Private; not installed.
//
// A conversion member sizes its output from the length of its source by a fixed rule (3 bytes per
// UTF-16 unit plus 4, 2 units per byte plus 4, ...) and lets one charset function fill a buffer of
// that size. Then either
//   - the member starts afresh (convertAfresh): the old content is dropped before converting and a
//     failed conversion leaves an empty string, or
//   - the member keeps what it has unless the conversion works (replaceIfConverted): the filled
//     buffer takes the old one's place only when it holds text.
// In both, `convert(out, room)` fills `out` of `room` units and returns the units of text written
// (the NUL not counted); a result below 1 means the conversion failed or produced nothing. The
// room is one unit less than the buffer: its last unit is kept for the NUL, so a conversion that
// would fill the whole buffer (a GB18030 or Big5 target can take four bytes for one source byte)
// fails as "did not fit" instead of leaving the text unterminated.
//
//   return replaceIfConverted(buffer, capacity, convertedSize(n, 3, 3), [&](char* out, int room) {
//     return StrLatin9ToUTF8(out, room, text);
//   });
#ifndef ZEB_STRINGS_INTERNAL_CONVERT_BUFFER_H
#define ZEB_STRINGS_INTERNAL_CONVERT_BUFFER_H

#include <limits.h>
#include <stddef.h>

#include <memory>
#include <type_traits>
#include <utility>

namespace zeb::internal {

// perUnit * n + extra as a buffer size in units, or 0 when it does not fit an int: a source that
// large cannot be converted, and the members treat it as a failed conversion.
inline int convertedSize(size_t n, int perUnit, int extra) {
  const size_t limit = static_cast<size_t>(INT_MAX - extra) / static_cast<size_t>(perUnit);
  return n > limit ? 0 : static_cast<int>(n * static_cast<size_t>(perUnit)) + extra;
}

// A buffer of `size` (>= 1) units whose last unit is the NUL that ends any text converted into it.
template <typename CharT>
std::unique_ptr<CharT[]> newTerminatedBuffer(int size) {
  std::unique_ptr<CharT[]> buffer(new CharT[static_cast<size_t>(size)]);
  buffer[static_cast<size_t>(size) - 1] = 0;
  return buffer;
}

// Frees the string's buffer, then converts into a new one of `size` units (size 0: the string
// stays null). A conversion that fails or produces nothing leaves "". Returns whether it produced
// text.
template <typename CharT, typename Convert>
bool convertAfresh(CharT*& buffer, int& capacity, int size, Convert&& convert) {
  delete[] std::exchange(buffer, nullptr);
  capacity = 0;
  if (size <= 0) return false;
  buffer = newTerminatedBuffer<CharT>(size).release();
  capacity = size;
  if (convert(buffer, size - 1) >= 1) return true;
  buffer[0] = 0;
  return false;
}

// Converts into a new buffer of `size` units, which replaces the string's buffer only when the
// conversion produced text; otherwise the string is left as it was. `convert` may read the old
// buffer. Returns whether the buffer was replaced (size 0: false).
template <typename CharT, typename Convert>
bool replaceIfConverted(CharT*& buffer, int& capacity, int size, Convert&& convert) {
  if (size <= 0) return false;
  std::unique_ptr<CharT[]> converted = newTerminatedBuffer<CharT>(size);
  if (convert(converted.get(), size - 1) < 1) return false;
  delete[] buffer;
  buffer = converted.release();
  capacity = size;
  return true;
}

// Copies the units of `in` below 128 to `out`, each as one unit of the other width, stopping after
// `limit` units, at the NUL or at the first unit of 128 or more; then writes a NUL (`out` holds
// limit + 1 units). Returns the units copied.
template <typename To, typename From>
int copyAsciiPrefix(const From* in, size_t limit, To* out) {
  size_t i = 0;
  for (; i < limit && in[i] != 0 && static_cast<std::make_unsigned_t<From>>(in[i]) < 128; ++i) {
    out[i] = static_cast<To>(in[i]);
  }
  out[i] = 0;
  return static_cast<int>(i);
}

}  // namespace zeb::internal

#endif  // ZEB_STRINGS_INTERNAL_CONVERT_BUFFER_H

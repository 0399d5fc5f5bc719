// little_endian.h: unsigned integers stored in bytes least significant byte first, whatever the
// host's byte order: 32-bit loads and stores for the hashes and ciphers, and integers of 0 to 8
// bytes for the byte buffer and the data stream. Compilers turn the shifts into plain loads and
// stores on little-endian hosts (for the sized forms, when the width is a constant).
//
//   unsigned char bytes[4];
//   zeb::internal::store32le(bytes, 0x11223344u);                   // 44 33 22 11
//   unsigned long long v = zeb::internal::loadLittleEndian(bytes, 2);  // 0x3344
#ifndef ZEB_DATA_INTERNAL_LITTLE_ENDIAN_H
#define ZEB_DATA_INTERNAL_LITTLE_ENDIAN_H

#include <cstdint>

namespace zeb::internal {

inline uint32_t load32le(const unsigned char* p) {
  return uint32_t{p[0]} | (uint32_t{p[1]} << 8) | (uint32_t{p[2]} << 16) | (uint32_t{p[3]} << 24);
}

inline void store32le(unsigned char* p, uint32_t v) {
  p[0] = static_cast<unsigned char>(v);
  p[1] = static_cast<unsigned char>(v >> 8);
  p[2] = static_cast<unsigned char>(v >> 16);
  p[3] = static_cast<unsigned char>(v >> 24);
}

// The integer in the `width` bytes (0 to 8) at p.
inline unsigned long long loadLittleEndian(const unsigned char* p, int width) {
  unsigned long long value = 0;
  for (int i = width - 1; i >= 0; --i) value = (value << 8) | p[i];
  return value;
}

// The low `width` bytes (0 to 8) of value into out.
inline void storeLittleEndian(unsigned char* out, unsigned long long value, int width) {
  for (int i = 0; i < width; ++i) out[i] = static_cast<unsigned char>(value >> (8 * i));
}

}  // namespace zeb::internal

#endif  // ZEB_DATA_INTERNAL_LITTLE_ENDIAN_H

// bundle_value.h: how a bundle's getters read an item's raw 64-bit value as each requested type,
// and how a value or address is stored in it; shared by tbundleitem, tdatabundle and
// tsdatabundle. No type checks, by design.
#ifndef ZEB_DATA_INTERNAL_BUNDLE_VALUE_H
#define ZEB_DATA_INTERNAL_BUNDLE_VALUE_H

#include <cstdint>
#include <cstring>

namespace zeb::internal {

inline int valueAsInt32(unsigned long long v) {
  return static_cast<int>(static_cast<uint32_t>(v));
}
inline unsigned int valueAsUInt32(unsigned long long v) {
  return static_cast<unsigned int>(v);
}
inline const char* valueAsString(unsigned long long v) {
  return reinterpret_cast<const char*>(static_cast<std::uintptr_t>(v));
}
inline void* valueAsObject(unsigned long long v) {
  return reinterpret_cast<void*>(static_cast<std::uintptr_t>(v));
}
inline double valueAsFloat(unsigned long long v) {
  double d;
  std::memcpy(&d, &v, sizeof d);
  return d;
}
inline unsigned long long floatAsValue(double d) {
  unsigned long long v;
  std::memcpy(&v, &d, sizeof v);
  return v;
}
inline unsigned long long pointerAsValue(const void* p) {
  return static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(p));
}

}  // namespace zeb::internal

#endif  // ZEB_DATA_INTERNAL_BUNDLE_VALUE_H

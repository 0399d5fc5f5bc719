// module.cpp (POSIX): component libraries as shared objects, through dlopen and dlsym.

#include "zeb/platform/module.h"

#include <dlfcn.h>

#include <cerrno>

#include "zeb/platform/posix/utf8_path.h"

namespace zeb {
namespace platform {

HMODULE loadModule(const zwchar_t* path, int* error) {
  TAnsiString native;
  void* handle = nullptr;
  int code = -1;
  if (toUtf8Path(path, native)) {
    errno = 0;
    handle = dlopen(native.p(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr && errno != 0) code = errno;
  }
  if (handle == nullptr && error != nullptr) *error = code;
  return static_cast<HMODULE>(handle);
}

void* moduleSymbol(HMODULE module, const char* name) {
  if (module == nullptr || name == nullptr) return nullptr;
  return dlsym(module, name);
}

void freeModule(HMODULE module) {
  if (module != nullptr) dlclose(module);
}

}  // namespace platform
}  // namespace zeb

// module.h: loading component libraries and finding their exports. POSIX loads shared objects
// with dlopen and dlsym; Windows will use LoadLibraryW and GetProcAddress.
//
//   int error = 0;
//   HMODULE module = zeb::platform::loadModule(path, &error);
//   void* factory = module != nullptr ? zeb::platform::moduleSymbol(module, "make") : nullptr;
#ifndef ZEB_PLATFORM_MODULE_H
#define ZEB_PLATFORM_MODULE_H

#include "zeb/platform/wintypes.h"
#include "zeb/zeb_api.h"

namespace zeb {
namespace platform {

// Loads the library at `path` (or takes one more reference to it when it is loaded already:
// the same handle comes back). Null when it cannot be loaded; then *error (when not null) gets
// the OS error number, or -1 when the OS gives none. Never 0 for a failure.
HMODULE loadModule(const zwchar_t* path, int* error);

// The address of the export `name`, or null when the library has none (or either is null).
void* moduleSymbol(HMODULE module, const char* name);

// Gives back one reference taken by loadModule; a null module is ignored.
void freeModule(HMODULE module);

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_MODULE_H

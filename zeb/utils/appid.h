// appid.h: application ids and the components that applications are made of.
//
// An application id (1 to 7) names one of the applications built on the library; appid2appname
// gives its short name, the name under which its components are registered.
//
// A component is a library (a shared object on POSIX, a DLL on Windows) that exports one factory,
//   extern "C" interface_classbase* createInterfaceObject(const zwchar_t* name, int reserved);
// called with the name "app.interface.obj" and 0. It returns a new interface object (or null).
//
//   const zwchar_t* name = appid2appname(3);   // null for an id the library does not know
//
//   HMODULE module = nullptr;                  // kept by the caller, reused by later calls
//   interface_classbase* object = nullptr;
//   if (loadCreateInterfaceObjectFromPath(ZW("/opt/app/libpart.so"), &object, &module)) {
//     ...
//     object->Release();
//   }
//
// The short names are supplied by whoever integrates the library: the shipped table holds the
// placeholders "app1" to "app7" (see zeb/utils/internal/app_names.h to replace them).
#ifndef ZEB_UTILS_APPID_H
#define ZEB_UTILS_APPID_H

#include "zeb/platform/wintypes.h"
#include "zeb/utils/interface_classbase.h"
#include "zeb/zeb_api.h"

// The factory every component exports under the name "createInterfaceObject".
typedef interface_classbase* (*createInterfaceObjectFun)(const zwchar_t* name, int reserved);

extern "C" {

// The short name of application `appId`; null (and a "Fatal Error:FileName:appid Line:28" error
// line) for an id outside the table.
ZEB_API const zwchar_t* appid2appname(unsigned long long appId);

// Creates an interface object of the component library at `modulePath`. When *module is null the
// library is loaded first and its handle stored in *module; otherwise the library already in
// *module is used and `modulePath` is not looked at, so one module variable loads a library once
// however many objects it creates. The object comes back in *object holding one reference (the
// caller releases it). Returns 1, or 0 when the library does not load (an error line and the last
// error -1 or the OS error number with "load dll failed:<path>"), has no factory (an error line),
// or a pointer argument is null. A factory that returns null still gives 1 with *object null.
ZEB_API int loadCreateInterfaceObjectFromPath(const zwchar_t* modulePath,
                                              interface_classbase** object, HMODULE* module);

}  // extern "C"

#endif  // ZEB_UTILS_APPID_H

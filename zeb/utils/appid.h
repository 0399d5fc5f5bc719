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
//   if (loadCreateAppInterfaceObject(ZW("app3"), &object, &module)) {   // through the registry
//     ...
//     object->Release();
//   }
//   loadCreateInterfaceObjectFromPath(ZW("/opt/app/libpart.so"), &object, &other);  // by path
//
// Components are registered per user under
//   HKEY_CURRENT_USER\SOFTWARE\zebworks\componets\appobjects\<application name>
// with the text values "appid", "appname", "version" and "dllpath" (the library's full path).
// A record is read from the registry once, at the first lookup of its name, and kept for the life
// of the process: later changes to that key are not seen until the process restarts, and the
// texts handed out stay valid. A name that has no key yet is looked up again at its next use.
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

// Copies the registered library path of `appName`, with its NUL, into `dllPath` (which must have
// room for it; the registry holds full paths, well below 2,048 units) and returns 1 when the record
// exists and names an existing file. Otherwise 0: no key ("unfind reg key:<key>" error line), a
// missing file ("file is not exists:<path>" info line), or a null argument.
ZEB_API int readAppObjectDllPath(const zwchar_t* appName, zwchar_t* dllPath);

// The "appname" value of the record of `appName` ("" when the record lacks it), or `appName`
// itself when there is no record. The text stays valid for the life of the process.
ZEB_API const zwchar_t* checkReadAppName(const zwchar_t* appName);

// As loadCreateInterfaceObjectFromPath, with the library found through the registry record of
// `appName` when *module is null (with *module set, the registry is not read at all). Returns 0 as
// readAppObjectDllPath does for a missing key or file, without touching the last error, and as
// loadCreateInterfaceObjectFromPath does for a library that does not load or has no factory. At
// level 19 the call is one timing scope "loadCreateAppInterfaceObject" (tag "zeb.utils.iobj").
ZEB_API int loadCreateAppInterfaceObject(const zwchar_t* appName, interface_classbase** object,
                                         HMODULE* module);

}  // extern "C"

#endif  // ZEB_UTILS_APPID_H

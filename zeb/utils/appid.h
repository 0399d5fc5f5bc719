// appid.h: application ids and the components that applications are made of.
//
// An application id (1 to 7) names one of the applications built on the library; appid2appname
// gives its short name, the name under which its components are registered.
//
//   const zwchar_t* name = appid2appname(3);   // null for an id the library does not know
//
// The short names are supplied by whoever integrates the library: the shipped table holds the
// placeholders "app1" to "app7" (see zeb/utils/internal/app_names.h to replace them).
#ifndef ZEB_UTILS_APPID_H
#define ZEB_UTILS_APPID_H

#include "zeb/zeb_api.h"

extern "C" {

// The short name of application `appId`; null (and a "Fatal Error:FileName:appid Line:28" error
// line) for an id outside the table.
ZEB_API const zwchar_t* appid2appname(unsigned long long appId);

}  // extern "C"

#endif  // ZEB_UTILS_APPID_H

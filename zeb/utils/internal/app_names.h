// app_names.h: the short names of the applications that appid2appname knows, one per
// application id 1 to 7.
//
// The names belong to whoever ships the library with their applications. The ones below are
// neutral placeholders: an integrator replaces the seven strings here (keeping the ids and the
// order) and rebuilds the library. Nothing else reads this table.
#ifndef ZEB_UTILS_INTERNAL_APP_NAMES_H
#define ZEB_UTILS_INTERNAL_APP_NAMES_H

#include "zeb/zeb_api.h"

namespace zeb::internal {

struct AppName {
  unsigned long long appId;
  const zwchar_t* name;
};

inline constexpr AppName kAppNames[] = {
    {1, ZW("app1")}, {2, ZW("app2")}, {3, ZW("app3")}, {4, ZW("app4")},
    {5, ZW("app5")}, {6, ZW("app6")}, {7, ZW("app7")},
};

}  // namespace zeb::internal

#endif  // ZEB_UTILS_INTERNAL_APP_NAMES_H

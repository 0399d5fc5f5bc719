// appid: application ids and their short names.

#include "zeb/utils/appid.h"

#include "zeb/log/zeb_log.h"
#include "zeb/utils/internal/app_names.h"

namespace {

const char kSource[] = "appid";
const int kLineUnknownApp = 28;

}  // namespace

const zwchar_t* appid2appname(unsigned long long appId) {
  for (const zeb::internal::AppName& row : zeb::internal::kAppNames) {
    if (row.appId == appId) return row.name;
  }
  ZEB_Log_AssertA(false, kSource, kLineUnknownApp);
  return nullptr;
}

// appid: application ids and their short names.

#include "zeb/utils/appid.h"

#include <memory>

#include "zeb/log/mlog_ticks.h"
#include "zeb/log/zeb_log.h"
#include "zeb/platform/module.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/utils/internal/app_names.h"
#include "zeb/utils/lasterror.h"

namespace {

const char kSource[] = "appid";
const int kLineUnknownApp = 28;
const char kLoaderTag[] = "zeb.utils.iobj";
const int kLevelTiming = 19;
const char kFactoryName[] = "createInterfaceObject";

// Loads the library at `path` into *module; false (logged, last error set) when it does not load.
bool loadComponentModule(const zwchar_t* path, HMODULE* module) {
  int error = -1;
  *module = zeb::platform::loadModule(path, &error);
  TAnsiString shownPath;
  shownPath = path;
  if (*module != nullptr) {
    if (ZEB_LOG_ENABLED(MLOG_INFO)) {
      mlogWithLevel(MLOG_INFO, kLoaderTag, "loadCreateAppInterfaceObject(),load %s success!",
                    shownPath.p());
    }
    return true;
  }
  if (ZEB_LOG_ENABLED(MLOG_ERROR)) {
    mlogWithLevel(MLOG_ERROR, kLoaderTag, "loadCreateAppInterfaceObject(),load %s failed!",
                  shownPath.p());
  }
  TAnsiString text;
  text.sprintf("load dll failed:%s", shownPath.p());
  setLastError(error, text.p());
  return false;
}

// The timing scope of one load, only when its level is on.
std::unique_ptr<TMLogAutoTicks> loadTimingScope() {
  if (!ZEB_LOG_ENABLED(kLevelTiming)) return nullptr;
  return std::make_unique<TMLogAutoTicks>(static_cast<tloglevel>(kLevelTiming), kLoaderTag,
                                          "loadCreateAppInterfaceObject");
}

}  // namespace

const zwchar_t* appid2appname(unsigned long long appId) {
  for (const zeb::internal::AppName& row : zeb::internal::kAppNames) {
    if (row.appId == appId) return row.name;
  }
  ZEB_Log_AssertA(false, kSource, kLineUnknownApp);
  return nullptr;
}

int loadCreateInterfaceObjectFromPath(const zwchar_t* modulePath, interface_classbase** object,
                                      HMODULE* module) {
  if (object == nullptr || module == nullptr) return 0;
  const std::unique_ptr<TMLogAutoTicks> timing = loadTimingScope();
  if (*module == nullptr && !loadComponentModule(modulePath, module)) return 0;
  auto factory = reinterpret_cast<createInterfaceObjectFun>(
      zeb::platform::moduleSymbol(*module, kFactoryName));
  if (factory == nullptr) {
    if (ZEB_LOG_ENABLED(MLOG_ERROR)) {
      TAnsiString shownPath;
      shownPath = modulePath;
      mlogWithLevel(MLOG_ERROR, kLoaderTag,
                    "loadCreateAppInterfaceObject(),get createInterfaceObject fun in %s failed!",
                    shownPath.p());
    }
    return 0;
  }
  *object = factory(ZW("app.interface.obj"), 0);
  if (*object != nullptr) (*object)->AddRef();
  return 1;
}

// appid: application ids and their short names.

#include "zeb/utils/appid.h"

#include "zeb/log/mlog_ticks.h"
#include "zeb/log/zeb_log.h"
#include "zeb/platform/file.h"
#include "zeb/platform/module.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/utils/internal/app_names.h"
#include "zeb/utils/internal/component_record.h"
#include "zeb/utils/lasterror.h"

namespace {

const char kSource[] = "appid";
const int kLineUnknownApp = 28;
const char kLoaderTag[] = "zeb.utils.iobj";
const tloglevel kLevelTiming = static_cast<tloglevel>(19);
const char kFactoryName[] = "createInterfaceObject";

// Loads the library at `path` into *module; false (logged, last error set) when it does not load.
bool loadComponentModule(const zwchar_t* path, HMODULE* module) {
  int error = -1;
  *module = zeb::platform::loadModule(path, &error);
  TAnsiString shownPath;
  if (*module != nullptr) {
    if (ZEB_LOG_ENABLED(MLOG_INFO)) {
      shownPath = path;
      mlogWithLevel(MLOG_INFO, kLoaderTag, "loadCreateAppInterfaceObject(),load %s success!",
                    shownPath.p());
    }
    return true;
  }
  shownPath = path;
  if (ZEB_LOG_ENABLED(MLOG_ERROR)) {
    mlogWithLevel(MLOG_ERROR, kLoaderTag, "loadCreateAppInterfaceObject(),load %s failed!",
                  shownPath.p());
  }
  TAnsiString text;
  text.sprintf("load dll failed:%s", shownPath.p());
  setLastError(error, text.p());
  return false;
}

// The object of the factory in *module, loading the library at `path` first when *module is null.
int createFromModule(const zwchar_t* path, interface_classbase** object, HMODULE* module) {
  if (*module == nullptr && !loadComponentModule(path, module)) return 0;
  auto factory = reinterpret_cast<createInterfaceObjectFun>(
      zeb::platform::moduleSymbol(*module, kFactoryName));
  if (factory == nullptr) {
    if (ZEB_LOG_ENABLED(MLOG_ERROR)) {
      TAnsiString shownPath;
      shownPath = path;
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

// The registered library path of `appName` when that file exists; null otherwise (a missing file
// is logged).
const zwchar_t* existingComponentPath(const zwchar_t* appName) {
  const zeb::internal::ComponentRecord* record = zeb::internal::findComponentRecord(appName);
  if (record == nullptr) return nullptr;
  const zwchar_t* path = record->dllPath.c_str();
  if (zeb::platform::pathExists(path)) return path;
  if (ZEB_LOG_ENABLED(MLOG_INFO)) {
    TAnsiString shownPath;
    shownPath.fromWideString(path, MIB_UTF8);
    mlogWithLevel(MLOG_INFO, nullptr, "file is not exists:%s", shownPath.p());
  }
  return nullptr;
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
  const TMLogAutoTicks timing(kLevelTiming, kLoaderTag, "loadCreateAppInterfaceObject");
  return createFromModule(modulePath, object, module);
}

int readAppObjectDllPath(const zwchar_t* appName, zwchar_t* dllPath) {
  if (dllPath == nullptr) return 0;
  const zwchar_t* path = existingComponentPath(appName);
  if (path == nullptr) return 0;
  do {
    *dllPath++ = *path;
  } while (*path++ != 0);
  return 1;
}

const zwchar_t* checkReadAppName(const zwchar_t* appName) {
  const zeb::internal::ComponentRecord* record = zeb::internal::findComponentRecord(appName);
  return record != nullptr ? record->appName.c_str() : appName;
}

int loadCreateAppInterfaceObject(const zwchar_t* appName, interface_classbase** object,
                                 HMODULE* module) {
  if (object == nullptr || module == nullptr) return 0;
  const TMLogAutoTicks timing(kLevelTiming, kLoaderTag, "loadCreateAppInterfaceObject");
  const zwchar_t* path = nullptr;
  if (*module == nullptr) {
    path = existingComponentPath(appName);
    if (path == nullptr) return 0;
  }
  return createFromModule(path, object, module);
}

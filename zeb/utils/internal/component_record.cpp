// component_record: reading and keeping the registry records of components.

#include "zeb/utils/internal/component_record.h"

#include <map>
#include <memory>
#include <mutex>

#include "zeb/log/mlog_ticks.h"
#include "zeb/log/zeb_log.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/utils/zeb_regkey.h"

namespace zeb::internal {
namespace {

const zwchar_t kRecordsKey[] = ZW("SOFTWARE\\zebworks\\componets\\appobjects\\");
const char kTag[] = "zeb.utils.iobj";
const int kLevelTiming = 19;

using Text = std::basic_string<zwchar_t>;

struct Records {
  std::mutex mutex;
  std::map<Text, std::unique_ptr<ComponentRecord>> byName;
};

Records& records() {
  static Records instance;
  return instance;
}

std::string utf8(const zwchar_t* text) {
  TAnsiString s;
  s.fromWideString(text, MIB_UTF8);
  return s.p();
}

Text readText(const TRegKey& key, const zwchar_t* name) {
  RegValue value;
  key.QueryValue(name, value);
  return value.asStringDef(ZW(""));
}

// Reads the record of `appName` from the registry; null when its key does not open.
std::unique_ptr<ComponentRecord> readRecord(const zwchar_t* appName) {
  TMLogAutoTicks timing(static_cast<tloglevel>(kLevelTiming), kTag,
                        "checkAndReadAppItem,read from reg");
  const Text path = Text(kRecordsKey) + appName;
  TRegKey key(HKEY_CURRENT_USER);
  if (key.Open(path.c_str(), KEY_ALL_ACCESS) != ERROR_SUCCESS) {
    if (ZEB_LOG_ENABLED(MLOG_ERROR)) {
      mlogWithLevel(MLOG_ERROR, kTag, "unfind reg key:%s", utf8(path.c_str()).c_str());
    }
    return nullptr;
  }
  auto record = std::make_unique<ComponentRecord>();
  record->appId = readText(key, ZW("appid"));
  record->appName = readText(key, ZW("appname"));
  record->version = readText(key, ZW("version"));
  record->dllPath = readText(key, ZW("dllpath"));
  key.Close();
  if (ZEB_LOG_ENABLED(MLOG_INFO)) {
    mlogWithLevel(MLOG_INFO, kTag, "%s dllpath is:%s", utf8(appName).c_str(),
                  utf8(record->dllPath.c_str()).c_str());
  }
  return record;
}

}  // namespace

const ComponentRecord* findComponentRecord(const zwchar_t* appName) {
  if (appName == nullptr) return nullptr;
  Records& all = records();
  std::lock_guard<std::mutex> guard(all.mutex);
  const auto kept = all.byName.find(appName);
  if (kept != all.byName.end()) return kept->second.get();
  std::unique_ptr<ComponentRecord> record = readRecord(appName);
  if (record == nullptr) return nullptr;
  return all.byName.emplace(appName, std::move(record)).first->second.get();
}

}  // namespace zeb::internal

// component_record.h: the registry records of components, read from
// HKEY_CURRENT_USER\SOFTWARE\zebworks\componets\appobjects\<application name>.
//
//   const zeb::internal::ComponentRecord* record = zeb::internal::findComponentRecord(ZW("app3"));
//   if (record != nullptr) use(record->dllPath.c_str());
//
// A record is read from the registry the first time its name is asked for and kept for the rest of
// the process, so later lookups (and the pointers they hand out) stay valid and answer what the
// registry held at that first read. A name without a key is not kept: it is looked up again next
// time, so a component registered later is found.
#ifndef ZEB_UTILS_INTERNAL_COMPONENT_RECORD_H
#define ZEB_UTILS_INTERNAL_COMPONENT_RECORD_H

#include <string>

#include "zeb/zeb_api.h"

namespace zeb::internal {

// The text values of a component's key; a value that is missing or not text reads as "".
struct ComponentRecord {
  std::basic_string<zwchar_t> appId;
  std::basic_string<zwchar_t> appName;
  std::basic_string<zwchar_t> version;
  std::basic_string<zwchar_t> dllPath;
};

// The record of `appName`, or null when its key cannot be opened ("unfind reg key:<key>" at error
// level) or `appName` is null. The first read of a name logs "<name> dllpath is:<path>" at info
// level and runs inside the timing scope "checkAndReadAppItem,read from reg" (level 19). Safe to
// call from any thread.
const ComponentRecord* findComponentRecord(const zwchar_t* appName);

}  // namespace zeb::internal

#endif  // ZEB_UTILS_INTERNAL_COMPONENT_RECORD_H

// component: finds a component through its registry record, loads it and talks to it.
// The program registers the test component (a library exporting createInterfaceObject) under
// HKEY_CURRENT_USER\SOFTWARE\zebworks\componets\appobjects\demo.component, loads it by that name
// twice with one module variable (the library is loaded once), and hands one of the objects a
// data bundle, which the component reads and answers in. The log goes to the console, so the
// loader's own lines show what it did. Run it with ZEB_REGISTRY_DIR set to a scratch folder.
#include <stdio.h>

#include "testing/test_component.h"
#include "zeb/data/tdatabundle.h"
#include "zeb/log/zeb_log.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/utils/appid.h"
#include "zeb/utils/zeb_regkey.h"

namespace {

const zwchar_t kName[] = ZW("demo.component");

bool registerComponent() {
  TRegKey key(HKEY_CURRENT_USER);
  TWideString path(ZW("SOFTWARE\\zebworks\\componets\\appobjects\\"));
  path.append(kName);
  if (key.Create(path.p()) != ERROR_SUCCESS) return false;
  key[ZW("appid")] = ZW("1");
  key[ZW("appname")] = ZW("Demo component");
  key[ZW("version")] = ZW("1.0");
  key[ZW("dllpath")] = TWideString(ZEB_DEMO_COMPONENT_PATH, MIB_UTF8).p();
  return true;
}

// Hands the component a bundle and prints what it wrote back.
void exchangeBundle(itestcomponent* component) {
  tdatabundle bundle;
  bundle.putInt32("n", 42);
  bundle.putUInt64("u", 10000000000ULL);
  bundle.putString("s", "hello from the host");
  const int walked = component->readBundle(bundle.wrapAsInterface().get());
  printf("The component walked %d items and wrote back sum=%lld, echo=\"%s\".\n", walked,
         bundle.getInt64("sum"), bundle.getString("echo"));
}

}  // namespace

int main() {
  if (!registerComponent()) {
    printf("cannot write the component's record\n");
    return 1;
  }
  mlogSetConsoleEnable(1);
  printf("Registered \"%s\" as \"%s\".\n", TWideString(kName).utf8().p(),
         TWideString(checkReadAppName(kName)).utf8().p());

  HMODULE module = nullptr;
  interface_classbase* first = nullptr;
  interface_classbase* second = nullptr;
  if (!loadCreateAppInterfaceObject(kName, &first, &module) ||
      !loadCreateAppInterfaceObject(kName, &second, &module) || first == nullptr ||
      second == nullptr) {
    printf("cannot load the component\n");
    return 1;
  }
  printf("Two objects (%s) from one loaded library.\n", first != second ? "distinct" : "the same");
  exchangeBundle(static_cast<itestcomponent*>(first));  // what this component's factory makes
  first->Release();
  second->Release();

  interface_classbase* none = nullptr;
  HMODULE unknown = nullptr;
  printf("An unregistered name loads: %d.\n",
         loadCreateAppInterfaceObject(ZW("no.such.component"), &none, &unknown));
  return 0;
}

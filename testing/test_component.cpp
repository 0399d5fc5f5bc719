// The test component: a module exporting createInterfaceObject, loaded by the loader tests.

#include <string>

#include "testing/test_component.h"

namespace {

class TTestComponent : public itestcomponent {
 public:
  int readBundle(idatabundle* bundle) override {
    if (bundle == nullptr) return -1;
    int walked = 0;
    for (const tdatabundleItemData* item = bundle->firstItem(); item != nullptr;
         item = bundle->nextItem()) {
      ++walked;
    }
    const char* text = bundle->getString("s");
    const std::string echo = std::string(text != nullptr ? text : "") + "!";
    bundle->putInt32("count", walked);
    bundle->putInt64("sum", bundle->getInt32("n") + static_cast<long long>(bundle->getUInt64("u")));
    bundle->putString("echo", echo.c_str());
    return walked;
  }
};

}  // namespace

extern "C" __attribute__((visibility("default"))) interface_classbase* createInterfaceObject(
    const zwchar_t* name, int reserved) {
  const std::u16string expected = u"app.interface.obj";
  if (name == nullptr || expected != name || reserved != 0) return nullptr;
  return new TTestComponent;
}

// Tests of the application id table and of loading a real component library: one module
// variable for two objects, a bundle handed to the component, and each way a load fails.

#include "zeb/utils/appid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "testing/log_capture.h"
#include "testing/test_component.h"
#include "zeb/log/zeb_log.h"
#include "zeb/strings/TWideString.h"
#include "zeb/utils/lasterror.h"

namespace {

TEST(AppId, SevenIdsHaveDistinctNames) {
  std::set<std::u16string> names;
  for (unsigned long long id = 1; id <= 7; ++id) {
    const zwchar_t* name = appid2appname(id);
    ASSERT_NE(name, nullptr) << id;
    EXPECT_NE(*name, 0) << id;
    names.insert(std::u16string(name));
  }
  EXPECT_EQ(names.size(), 7u);
}

TEST(AppId, UnknownIdGivesNullAndAFatalLine) {
  zeb::testing::LogCapture log(MLOG_ERROR);
  EXPECT_EQ(appid2appname(0), nullptr);
  EXPECT_EQ(appid2appname(8), nullptr);
  EXPECT_EQ(appid2appname(0x100000001ULL), nullptr);
  const auto messages = log.messages();
  EXPECT_EQ(std::count(messages.begin(), messages.end(), "Fatal Error:FileName:appid Line:28"), 3);
}

bool hasMessage(const zeb::testing::LogCapture& log, const std::string& message) {
  const auto messages = log.messages();
  return std::find(messages.begin(), messages.end(), message) != messages.end();
}

TWideString widePath(const std::string& path) {
  return TWideString(path.c_str(), MIB_UTF8);
}

TEST(ComponentLoader, OneModuleVariableLoadsOnceAndCreatesTwoObjects) {
  zeb::testing::LogCapture log(MLOG_INFO);
  const TWideString path = widePath(ZEB_TEST_COMPONENT_PATH);
  HMODULE module = nullptr;
  interface_classbase* first = nullptr;
  interface_classbase* second = nullptr;
  ASSERT_EQ(loadCreateInterfaceObjectFromPath(path.p(), &first, &module), 1);
  ASSERT_NE(module, nullptr);
  const HMODULE loaded = module;
  ASSERT_EQ(loadCreateInterfaceObjectFromPath(nullptr, &second, &module), 1);
  EXPECT_EQ(module, loaded);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(first->refCount(), 1);
  const std::string loadLine =
      std::string("loadCreateAppInterfaceObject(),load ") + ZEB_TEST_COMPONENT_PATH + " success!";
  const auto messages = log.messages();
  EXPECT_EQ(std::count(messages.begin(), messages.end(), loadLine), 1);
  EXPECT_EQ(first->Release(), 0u);
  EXPECT_EQ(second->Release(), 0u);
}

TEST(ComponentLoader, TheComponentReadsABundleThroughItsInterface) {
  HMODULE module = nullptr;
  interface_classbase* object = nullptr;
  ASSERT_EQ(
      loadCreateInterfaceObjectFromPath(widePath(ZEB_TEST_COMPONENT_PATH).p(), &object, &module),
      1);
  auto* component = static_cast<itestcomponent*>(object);  // what this factory makes
  ASSERT_NE(component, nullptr);

  tdatabundle bundle;
  bundle.putInt32("n", -3);
  bundle.putUInt64("u", 10000000000ULL);
  bundle.putString("s", "hello");
  bundle.putBytesData("raw", tbytesdata("\x00\x01", 2));
  {
    zeb::PassRefPtr<idatabundle> view = bundle.wrapAsInterface();
    EXPECT_EQ(component->readBundle(view.get()), 4);
    EXPECT_EQ(view->refCount(), 1);
  }
  EXPECT_EQ(bundle.getInt32("count"), 4);
  EXPECT_EQ(bundle.getInt64("sum"), 9999999997LL);
  EXPECT_STREQ(bundle.getString("echo"), "hello!");
  EXPECT_EQ(component->readBundle(nullptr), -1);
  object->Release();
}

TEST(ComponentLoader, LibrariesThatDoNotLoadGiveZeroAndTheLastError) {
  zeb::testing::TempDir dir;
  dir.writeFile("libnot_a_library.so", "plain text, no ELF header\n");
  const std::string missing = dir.filePath("libmissing.so");
  const std::string notLibrary = dir.filePath("libnot_a_library.so");
  for (const std::string& path : {missing, notLibrary}) {
    zeb::testing::LogCapture log(MLOG_ERROR);
    clearLastError();
    HMODULE module = nullptr;
    interface_classbase* object = nullptr;
    EXPECT_EQ(loadCreateInterfaceObjectFromPath(widePath(path).p(), &object, &module), 0);
    EXPECT_EQ(module, nullptr);
    EXPECT_EQ(object, nullptr);
    EXPECT_TRUE(hasMessage(log, "loadCreateAppInterfaceObject(),load " + path + " failed!"));
    EXPECT_NE(getLastErrorCode(), 0) << path;
    ASSERT_NE(getLastErrorText(), nullptr);
    EXPECT_EQ(std::string(getLastErrorText()), "load dll failed:" + path);
  }
  clearLastError();
}

TEST(ComponentLoader, ALibraryWithoutTheFactoryGivesZeroWithoutLastError) {
  zeb::testing::LogCapture log(MLOG_ERROR);
  clearLastError();
  HMODULE module = nullptr;
  interface_classbase* object = nullptr;
  EXPECT_EQ(
      loadCreateInterfaceObjectFromPath(widePath(ZEB_TEST_NOFACTORY_PATH).p(), &object, &module),
      0);
  EXPECT_NE(module, nullptr);  // loaded; only the factory is missing
  EXPECT_EQ(object, nullptr);
  EXPECT_TRUE(hasMessage(log, std::string("loadCreateAppInterfaceObject(),get createInterfaceObject"
                                          " fun in ") +
                                  ZEB_TEST_NOFACTORY_PATH + " failed!"));
  EXPECT_EQ(getLastErrorCode(), 0);
}

}  // namespace

// Tests of the application id table and of loading a real component library, by path and through
// its record in a registry of the test's own: one module variable for two objects, records read
// once, a bundle handed to the component, and each way a load fails.

#include "zeb/utils/appid.h"

#include <gtest/gtest.h>

#include <stdlib.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "testing/log_capture.h"
#include "testing/test_component.h"
#include "zeb/log/zeb_log.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/utils/lasterror.h"
#include "zeb/utils/zeb_regkey.h"

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

std::string utf8(const zwchar_t* text) {
  TAnsiString s;
  s.fromWideString(text, MIB_UTF8);
  return s.p();
}

const char kRecordsKey[] = "SOFTWARE\\zebworks\\componets\\appobjects\\";

// Every test gets a registry of its own in a fresh folder. Records stay known to the process once
// read, so each test registers names of its own (the test's name and a suffix).
class RegisteredComponent : public ::testing::Test {
 protected:
  void SetUp() override { setenv("ZEB_REGISTRY_DIR", dir_.filePath("reg").c_str(), 1); }
  void TearDown() override { unsetenv("ZEB_REGISTRY_DIR"); }

  static std::string appName(const std::string& suffix) {
    return std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + "." +
           suffix;
  }
  // Writes the record of `name`; an empty `shownName` leaves "appname" out.
  static void registerComponent(const std::string& name, const std::string& dllPath,
                                const std::string& shownName = "Test component") {
    TRegKey key(HKEY_CURRENT_USER);
    ASSERT_EQ(key.Create(widePath(kRecordsKey + name).p()), ERROR_SUCCESS);
    key[ZW("appid")] = ZW("3");
    key[ZW("version")] = ZW("1.0");
    key[ZW("dllpath")] = widePath(dllPath).p();
    if (!shownName.empty()) key[ZW("appname")] = widePath(shownName).p();
  }
  // checkReadAppName in UTF-8.
  static std::string shownName(const std::string& name) {
    return utf8(checkReadAppName(widePath(name).p()));
  }

  zeb::testing::TempDir dir_;
};

TEST_F(RegisteredComponent, LoadsThroughItsRecordAndOneModuleVariableLoadsOnce) {
  const std::string name = appName("ok");
  registerComponent(name, ZEB_TEST_COMPONENT_PATH);
  zeb::testing::LogCapture log(MLOG_INFO);
  HMODULE module = nullptr;
  interface_classbase* first = nullptr;
  interface_classbase* second = nullptr;
  ASSERT_EQ(loadCreateAppInterfaceObject(widePath(name).p(), &first, &module), 1);
  ASSERT_NE(module, nullptr);
  const HMODULE loaded = module;
  ASSERT_EQ(loadCreateAppInterfaceObject(widePath(name).p(), &second, &module), 1);
  EXPECT_EQ(module, loaded);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(second->refCount(), 1);
  const auto messages = log.messages();
  const std::string loadLine =
      std::string("loadCreateAppInterfaceObject(),load ") + ZEB_TEST_COMPONENT_PATH + " success!";
  EXPECT_EQ(std::count(messages.begin(), messages.end(), loadLine), 1);
  EXPECT_TRUE(hasMessage(log, name + " dllpath is:" + ZEB_TEST_COMPONENT_PATH));
  EXPECT_EQ(first->Release(), 0u);
  EXPECT_EQ(second->Release(), 0u);
}

TEST_F(RegisteredComponent, TheComponentReadsABundleThroughItsInterface) {
  const std::string name = appName("bundle");
  registerComponent(name, ZEB_TEST_COMPONENT_PATH);
  HMODULE module = nullptr;
  interface_classbase* object = nullptr;
  ASSERT_EQ(loadCreateAppInterfaceObject(widePath(name).p(), &object, &module), 1);
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

TEST_F(RegisteredComponent, RecordsAreReadOnceAndMissingKeysAgainEachTime) {
  const std::string name = appName("late");
  zeb::testing::LogCapture log(19);
  mlogSetLevel(static_cast<tloglevel>(19));
  const TWideString wideName = widePath(name);
  EXPECT_EQ(checkReadAppName(wideName.p()), wideName.p());  // no record: the name itself
  registerComponent(name, ZEB_TEST_COMPONENT_PATH, "Späte Komponente");
  EXPECT_EQ(shownName(name), "Späte Komponente");
  registerComponent(name, ZEB_TEST_NOFACTORY_PATH, "Changed");
  EXPECT_EQ(shownName(name), "Späte Komponente");
  zwchar_t path[2048] = {};
  ASSERT_EQ(readAppObjectDllPath(wideName.p(), path), 1);
  EXPECT_EQ(utf8(path), ZEB_TEST_COMPONENT_PATH);

  const auto messages = log.messages();
  const std::string missLine = "unfind reg key:" + std::string(kRecordsKey) + name;
  EXPECT_EQ(std::count(messages.begin(), messages.end(), missLine), 1);
  EXPECT_EQ(std::count(messages.begin(), messages.end(), "checkAndReadAppItem,read from reg <-"),
            2);
  EXPECT_EQ(checkReadAppName(nullptr), nullptr);
}

TEST_F(RegisteredComponent, ARecordWithoutAppNameGivesAnEmptyName) {
  const std::string name = appName("unnamed");
  registerComponent(name, ZEB_TEST_COMPONENT_PATH, "");
  EXPECT_EQ(shownName(name), "");
}

// What one failing load must leave: 0, no object, the log line, and the last error text (empty when
// the last error must stay clear).
struct FailedLoad {
  std::string suffix;
  std::string dllPath;  // "" registers nothing
  std::string logLine;
  std::string lastError;
};

TEST_F(RegisteredComponent, EachFailureGivesZeroWithItsLineAndLastError) {
  dir_.writeFile("libnot_a_library.so", "plain text, no ELF header\n");
  const std::string notLibrary = dir_.filePath("libnot_a_library.so");
  const std::string missing = dir_.filePath("缺少的组件.so");
  const std::string missingKey = appName("nokey");
  const std::vector<FailedLoad> cases = {
      {"nokey", "", "unfind reg key:" + std::string(kRecordsKey) + missingKey, ""},
      {"nofile", missing, "file is not exists:" + missing, ""},
      {"notlib", notLibrary, "loadCreateAppInterfaceObject(),load " + notLibrary + " failed!",
       "load dll failed:" + notLibrary},
      {"nofactory", ZEB_TEST_NOFACTORY_PATH,
       std::string("loadCreateAppInterfaceObject(),get createInterfaceObject fun in ") +
           ZEB_TEST_NOFACTORY_PATH + " failed!",
       ""},
  };
  for (const FailedLoad& c : cases) {
    const std::string name = appName(c.suffix);
    if (!c.dllPath.empty()) registerComponent(name, c.dllPath);
    zeb::testing::LogCapture log(MLOG_INFO);
    clearLastError();
    HMODULE module = nullptr;
    interface_classbase* object = nullptr;
    EXPECT_EQ(loadCreateAppInterfaceObject(widePath(name).p(), &object, &module), 0) << c.suffix;
    EXPECT_EQ(object, nullptr) << c.suffix;
    EXPECT_TRUE(hasMessage(log, c.logLine)) << c.suffix;
    const char* lastError = getLastErrorText();
    EXPECT_EQ(lastError != nullptr ? lastError : "", c.lastError) << c.suffix;
  }
  clearLastError();
}

}  // namespace

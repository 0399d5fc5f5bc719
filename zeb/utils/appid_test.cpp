// Tests of the application id table.

#include "zeb/utils/appid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "testing/log_capture.h"
#include "zeb/log/zeb_log.h"
#include "zeb/strings/TWideString.h"

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

}  // namespace

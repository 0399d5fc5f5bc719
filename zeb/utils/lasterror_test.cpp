// Tests of the last-error slot: stored texts, the library's texts by code, the fallback text,
// the 16-bit copy and the log lines.

#include "zeb/utils/lasterror.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "testing/log_capture.h"
#include "zeb/log/zeb_log.h"
#include "zeb/strings/TWideString.h"

namespace {

class LastError : public ::testing::Test {
 protected:
  void TearDown() override { clearLastError(); }
};

TEST_F(LastError, CodeWithoutTextReadsTheLibraryTextOrTheCode) {
  struct Case {
    int code;
    const char* text;
  };
  const Case cases[] = {
      {1, "invalid params"},
      {12, "invalid record.cycletype"},
      {19, "record.timetype SHOULD be GREGORIAN"},
      {20, "record.appid SHOULD not be 0"},
      {13, "invalid record.notifytype"},
      {17, "title is empty."},
      {18, "db operation failed"},
      {99, "errorCode:99"},
      {-1, "errorCode:-1"},
  };
  for (const Case& c : cases) {
    setLastError(c.code, nullptr);
    EXPECT_EQ(getLastErrorCode(), c.code);
    ASSERT_NE(getLastErrorText(), nullptr);
    EXPECT_STREQ(getLastErrorText(), c.text) << c.code;
  }
}

TEST_F(LastError, GivenTextWinsAndANewCodeForgetsIt) {
  setLastError(17, "custom");
  EXPECT_STREQ(getLastErrorText(), "custom");
  setLastError(18, nullptr);
  EXPECT_STREQ(getLastErrorText(), "db operation failed");
  setLastError(0, "ignored while the code is 0");
  EXPECT_EQ(getLastErrorText(), nullptr);
  EXPECT_EQ(getLastErrorTextW(), nullptr);
}

TEST_F(LastError, ClearedSlotHasNoText) {
  setLastError(17, nullptr);
  clearLastError();
  EXPECT_EQ(getLastErrorCode(), 0);
  EXPECT_EQ(getLastErrorText(), nullptr);
  EXPECT_EQ(getLastErrorTextW(), nullptr);
}

TEST_F(LastError, LongTextIsCutAt1023Bytes) {
  const std::string longText(5000, 'x');
  setLastError(-1, longText.c_str());
  EXPECT_EQ(std::string(getLastErrorText()), std::string(1023, 'x'));
  const zwchar_t* wide = getLastErrorTextW();
  ASSERT_NE(wide, nullptr);
  EXPECT_EQ(TWideString(wide).length(), 1023);
}

TEST_F(LastError, WideTextIsTheSameText) {
  setLastError(-1, "load dll failed:/tmp/a.so");
  EXPECT_EQ(TWideString(getLastErrorTextW()), TWideString(ZW("load dll failed:/tmp/a.so")));
  setLastError(1, nullptr);
  EXPECT_EQ(TWideString(getLastErrorTextW()), TWideString(ZW("invalid params")));
}

TEST_F(LastError, EverySetIsLoggedAsAnError) {
  zeb::testing::LogCapture log(MLOG_ERROR);
  setLastError(5, nullptr);
  setLastError(-1, "load dll failed:x");
  const std::vector<std::string> messages = log.messages();
  EXPECT_NE(std::find(messages.begin(), messages.end(), "setLastError:5"), messages.end());
  EXPECT_NE(std::find(messages.begin(), messages.end(), "setLastError:-1,text:load dll failed:x"),
            messages.end());
}

}  // namespace

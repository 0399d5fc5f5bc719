#include "zeb/utils/confirm_callback.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "testing/waiting.h"

namespace {

// Answers every question with `answer`, records what it was asked, and ticks "do not ask again"
// when told to.
class ScriptedRecord : public tconfirmcallback {
 public:
  explicit ScriptedRecord(int answer) : m_answer(answer) {}
  int confirm(int kind, const zwchar_t* title, const zwchar_t* text,
              bool* doNotAskAgain) override {
    ++calls;
    lastKind = kind;
    lastTitleNull = title == nullptr;
    lastText.assign(text);
    *doNotAskAgain = suppressNext;
    return m_answer;
  }
  std::atomic<int> calls{0};
  int lastKind = 0;
  bool lastTitleNull = false;
  std::u16string lastText;
  bool suppressNext = false;

 private:
  const int m_answer;
};

// Every test leaves the hook as it found it: no record, questions allowed.
class ConfirmHook : public ::testing::Test {
 protected:
  void TearDown() override {
    globalConfirmSetting(nullptr);
    globalConfirmSettingReset();
  }
};

TEST_F(ConfirmHook, WithoutARecordEveryQuestionIsZero) {
  EXPECT_EQ(confirm_error(ZW("t"), ZW("disk full")), 0);
  EXPECT_EQ(confirm_dlg(ZW("t"), ZW("continue?")), 0);
  EXPECT_EQ(confirm_override(ZW("a.txt")), 0);
}

TEST_F(ConfirmHook, EachQuestionReachesTheRecordWithItsKindAndText) {
  ScriptedRecord record(CONFIRM_YES);
  EXPECT_EQ(globalConfirmSetting(&record), nullptr);
  EXPECT_EQ(confirm_override(ZW("报告.csv")), CONFIRM_YES);
  EXPECT_EQ(record.lastKind, CONFIRM_KIND_OVERRIDE);
  EXPECT_TRUE(record.lastTitleNull);
  EXPECT_EQ(record.lastText, u"报告.csv");
  confirm_dlg(ZW("title"), nullptr);
  EXPECT_EQ(record.lastKind, CONFIRM_KIND_DIALOG);
  EXPECT_FALSE(record.lastTitleNull);
  EXPECT_EQ(record.lastText, u"");
  confirm_error(nullptr, ZW("x"));
  EXPECT_EQ(record.lastKind, CONFIRM_KIND_ERROR);
  EXPECT_EQ(record.calls, 3);
  EXPECT_EQ(globalConfirmSetting(nullptr), &record);
  EXPECT_EQ(confirm_dlg(ZW("t"), ZW("x")), 0);
  EXPECT_EQ(record.calls, 3);
}

TEST_F(ConfirmHook, DoNotAskAgainSuppressesUntilReset) {
  ScriptedRecord record(CONFIRM_SKIP);
  globalConfirmSetting(&record);
  record.suppressNext = true;
  EXPECT_EQ(confirm_dlg(ZW("t"), ZW("first")), CONFIRM_SKIP);  // the ticking answer still counts
  record.suppressNext = false;
  EXPECT_EQ(confirm_dlg(ZW("t"), ZW("second")), 0);
  EXPECT_EQ(confirm_override(ZW("f")), 0);
  EXPECT_EQ(record.calls, 1);
  // A new record does not lift the flag; only the reset does.
  ScriptedRecord other(CONFIRM_STOP);
  globalConfirmSetting(&other);
  EXPECT_EQ(confirm_error(ZW("t"), ZW("x")), 0);
  EXPECT_EQ(other.calls, 0);
  globalConfirmSettingReset();
  EXPECT_EQ(confirm_error(ZW("t"), ZW("x")), CONFIRM_STOP);
  EXPECT_EQ(other.calls, 1);
}

// A record that holds its answer open until released, to let other threads ask meanwhile.
class SlowRecord : public tconfirmcallback {
 public:
  int confirm(int, const zwchar_t*, const zwchar_t*, bool* doNotAskAgain) override {
    const int call = ++calls;
    inside = true;
    while (!release) std::this_thread::yield();
    inside = false;
    if (call == 1) *doNotAskAgain = true;
    return call;
  }
  std::atomic<int> calls{0};
  std::atomic<bool> inside{false};
  std::atomic<bool> release{false};
};

TEST_F(ConfirmHook, QuestionsWaitingForAnOpenOneSeeItsDoNotAskAgain) {
  SlowRecord record;
  globalConfirmSetting(&record);
  std::atomic<int> firstAnswer{-1};
  std::thread first([&] { firstAnswer = confirm_dlg(ZW("t"), ZW("first")); });
  ASSERT_TRUE(zeb::testing::eventually([&] { return record.inside.load(); }));
  std::vector<std::thread> others;
  std::atomic<int> nonZero{0};
  for (int i = 0; i < 4; ++i) {
    others.emplace_back([&] {
      if (confirm_dlg(ZW("t"), ZW("later")) != 0) ++nonZero;
    });
  }
  zeb::testing::sleepMs(20);
  EXPECT_EQ(record.calls, 1);  // nobody asked while the first question was open
  record.release = true;
  first.join();
  for (std::thread& t : others) t.join();
  EXPECT_EQ(firstAnswer, 1);
  EXPECT_EQ(record.calls, 1);
  EXPECT_EQ(nonZero, 0);
}

}  // namespace

// confirm_callback.cpp: the process-wide record and "do not ask again" flag behind one lock.
// The lock is held while the record answers, so questions never overlap and a question that
// waited sees the flag an earlier answer set. It is recursive: a record may ask a question
// itself (its own nested question is answered in turn).
#include "zeb/utils/confirm_callback.h"

#include <mutex>

#include "zeb/log/zeb_log.h"

namespace {

const char kTag[] = "zeb.confirm";
const zwchar_t kEmpty[] = {0};

struct ConfirmState {
  std::recursive_mutex lock;
  tconfirmcallback* record = nullptr;
  bool suppressed = false;
};

ConfirmState& state() {
  static ConfirmState* const instance = new ConfirmState;
  return *instance;
}

int ask(int kind, const zwchar_t* title, const zwchar_t* text) {
  ConfirmState& s = state();
  std::lock_guard<std::recursive_mutex> guard(s.lock);
  if (s.record == nullptr || s.suppressed) return CONFIRM_NONE;
  bool doNotAskAgain = false;
  const int answer = s.record->confirm(kind, title, text != nullptr ? text : kEmpty, &doNotAskAgain);
  if (doNotAskAgain) {
    s.suppressed = true;
    if (ZEB_LOG_ENABLED(MLOG_DEBUG)) mlogWithLevel(MLOG_DEBUG, kTag, "questions suppressed");
  }
  return answer;
}

}  // namespace

tconfirmcallback* globalConfirmSetting(tconfirmcallback* record) {
  ConfirmState& s = state();
  std::lock_guard<std::recursive_mutex> guard(s.lock);
  tconfirmcallback* previous = s.record;
  s.record = record;
  return previous;
}

void globalConfirmSettingReset() {
  ConfirmState& s = state();
  std::lock_guard<std::recursive_mutex> guard(s.lock);
  s.suppressed = false;
}

int confirm_error(const zwchar_t* title, const zwchar_t* text) {
  return ask(CONFIRM_KIND_ERROR, title, text);
}

int confirm_dlg(const zwchar_t* title, const zwchar_t* text) {
  return ask(CONFIRM_KIND_DIALOG, title, text);
}

int confirm_override(const zwchar_t* path) {
  return ask(CONFIRM_KIND_OVERRIDE, nullptr, path);
}

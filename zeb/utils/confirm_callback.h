// confirm_callback.h: the confirmation hook. The library has no user interface of its own; when
// an operation has a question for the user (report an error, ask yes or no, overwrite a file?)
// it hands the question to a callback record the host installed, and the record's answer comes
// back as the result. The host may suppress further questions from inside an answer ("do not
// ask again"): from then on every question gets 0 without a call, until
// globalConfirmSettingReset.
//
//   class TDialogs : public tconfirmcallback {
//     int confirm(int kind, const zwchar_t* title, const zwchar_t* text,
//                 bool* doNotAskAgain) override {
//       return showMessageBox(kind, title, text, doNotAskAgain);   // the host's own dialog
//     }
//   };
//   static TDialogs dialogs;
//   globalConfirmSetting(&dialogs);
//   if (confirm_override(ZW("report.csv")) == CONFIRM_YES) save();
//
// Questions are asked one at a time: a question asked while another is open waits for its
// answer (and gets 0 without a call when that answer suppressed further questions). The record
// is the host's: the library keeps a pointer to it and never deletes it. Safe from any thread.
#ifndef ZEB_UTILS_CONFIRM_CALLBACK_H
#define ZEB_UTILS_CONFIRM_CALLBACK_H

#include "zeb/zeb_api.h"

// The kinds of question (the `kind` argument of tconfirmcallback::confirm).
enum tconfirmkind : int {
  CONFIRM_KIND_ERROR = 1,     // an error to acknowledge
  CONFIRM_KIND_DIALOG = 2,    // a question with a yes or no answer
  CONFIRM_KIND_OVERRIDE = 3,  // may an existing file be overwritten? (text: its path)
};

// Answers the library gives a meaning to; a record may return other values, which are passed on.
// 0 is also what every question returns when no record is set or questions are suppressed.
enum tconfirmanswer : int {
  CONFIRM_NONE = 0,  // no answer: the caller goes on with its default
  CONFIRM_SKIP = 1,  // skip this item / no
  CONFIRM_STOP = 2,  // stop the whole operation
  CONFIRM_YES = 3,   // yes / overwrite
};

// The host's callback record.
class tconfirmcallback {
 public:
  virtual ~tconfirmcallback() = default;
  // Answers one question. `title` may be null; `text` is never null. Setting *doNotAskAgain to
  // true suppresses every later question of the process (the current answer is still returned).
  virtual int confirm(int kind, const zwchar_t* title, const zwchar_t* text,
                      bool* doNotAskAgain) = 0;
};

extern "C" {

// Installs `record` (null removes it) and returns the record installed before. Waits while a
// question is being answered, so the record it replaces may be destroyed once this returns.
ZEB_API tconfirmcallback* globalConfirmSetting(tconfirmcallback* record);
// Clears the "do not ask again" flag: the next question reaches the record again.
ZEB_API void globalConfirmSettingReset();

// Each asks its kind of question and returns the answer; 0 without a call when no record is set
// or questions are suppressed. A null text is passed as "".
ZEB_API int confirm_error(const zwchar_t* title, const zwchar_t* text);
ZEB_API int confirm_dlg(const zwchar_t* title, const zwchar_t* text);
// `path`: the file that would be overwritten; the title is null.
ZEB_API int confirm_override(const zwchar_t* path);

}  // extern "C"

#endif  // ZEB_UTILS_CONFIRM_CALLBACK_H

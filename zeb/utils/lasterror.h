// lasterror.h: the process-wide last-error slot: one error code and a text of up to 1,023 bytes
// that a failing operation leaves for its caller (a component that did not load, for instance).
//
//   setLastError(17, nullptr);
//   getLastErrorText();          // "title is empty." (the library's text for code 17)
//   setLastError(-1, "load dll failed:/opt/app/libpart.so");
//   getLastErrorText();          // the text given
//   clearLastError();
//   getLastErrorText();          // null: no error
//
// The slot is one pair of plain variables for the whole process, not per thread and not locked:
// concurrent setLastError calls overwrite each other, and getLastErrorText may write the text
// slot. Texts returned point into the slot and stay valid until the next call that changes it.
#ifndef ZEB_UTILS_LASTERROR_H
#define ZEB_UTILS_LASTERROR_H

#include "zeb/zeb_api.h"

extern "C" {

// Stores `code` and a copy of `text` (cut at 1,023 bytes); a null text empties the text. Logged
// as an error with tag "zeb.lasterr" ("setLastError:<code>,text:<text>" or "setLastError:<code>").
ZEB_API void setLastError(int code, const char* text);
// The stored code (0: no error).
ZEB_API int getLastErrorCode(void);
// Null when the code is 0. Otherwise the stored text; with no text, the library's text for the
// code ("invalid params" for 1, ...), or "errorCode:<code>" for a code it has no text for. That
// text is written into the slot, so it is the stored text from then on.
ZEB_API const char* getLastErrorText(void);
// getLastErrorText converted from the ANSI code page to UTF-16 in a second process-wide slot
// (at most 1,023 units). Null when the code is 0 or nothing converts.
ZEB_API const zwchar_t* getLastErrorTextW(void);
// Code 0, text empty.
ZEB_API void clearLastError(void);

}  // extern "C"

#endif  // ZEB_UTILS_LASTERROR_H

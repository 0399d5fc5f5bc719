// lasterror: the process-wide last-error slot and the library's table of error texts.

#include "zeb/utils/lasterror.h"

#include <cstdio>
#include <cstring>

#include "zeb/log/zeb_log.h"
#include "zeb/platform/codepage.h"

namespace {

const char kTag[] = "zeb.lasterr";
const int kTextSlotSize = 1024;

int g_code = 0;
char g_text[kTextSlotSize] = {0};
zwchar_t g_wideText[kTextSlotSize] = {0};

struct ErrorText {
  int code;
  const char* text;
};

// Searched from the first row; the order is part of the library's behaviour.
const ErrorText kErrorTexts[] = {
    {1, "invalid params"},
    {2, "invalid record.timetype"},
    {3, "invalid record.relativeid & appID"},
    {4, "invalid record:cycledata must > 0"},
    {5, "invalid forcasttime must < precord.cycledata/2"},
    {6, "invalid record.notify_timemode in ctEveryDay"},
    {7, "invalid forcasttime must < half day."},
    {8, "invalid forcasttime must < half month"},
    {9, "invalid forcasttime must < half year"},
    {10, "invalid record.cycledata,must < 0xff"},
    {11, "invalid forcasttime must < half day in week"},
    {12, "invalid record.cycletype"},
    {19, "record.timetype SHOULD be GREGORIAN"},
    {20, "record.appid SHOULD not be 0"},
    {13, "invalid record.notifytype"},
    {14, "invalid record.notify_timemode"},
    {15, "invalid record.folderid"},
    {16, "invalid record.forcastime must > oneday in ignore time mode."},
    {17, "title is empty."},
    {18, "db operation failed"},
};

const char* tableText(int code) {
  for (const ErrorText& row : kErrorTexts) {
    if (row.code == code) return row.text;
  }
  return nullptr;
}

void storeText(const char* text) {
  std::snprintf(g_text, sizeof g_text, "%s", text);
}

}  // namespace

void setLastError(int code, const char* text) {
  g_code = code;
  if (text == nullptr) {
    g_text[0] = '\0';
    if (ZEB_LOG_ENABLED(MLOG_ERROR)) mlogWithLevel(MLOG_ERROR, kTag, "setLastError:%d", code);
    return;
  }
  storeText(text);
  if (ZEB_LOG_ENABLED(MLOG_ERROR)) {
    mlogWithLevel(MLOG_ERROR, kTag, "setLastError:%d,text:%s", code, g_text);
  }
}

int getLastErrorCode(void) {
  return g_code;
}

const char* getLastErrorText(void) {
  if (g_code == 0) return nullptr;
  if (g_text[0] != '\0') return g_text;
  const char* known = tableText(g_code);
  if (known != nullptr) {
    storeText(known);
  } else {
    std::snprintf(g_text, sizeof g_text, "errorCode:%d", g_code);
  }
  return g_text;
}

const zwchar_t* getLastErrorTextW(void) {
  const char* text = getLastErrorText();
  if (text == nullptr || *text == '\0') return nullptr;
  const int units = zeb::platform::multiByteToWideChar(text, static_cast<int>(std::strlen(text)),
                                                       g_wideText, kTextSlotSize - 1);
  if (units <= 0) return nullptr;
  g_wideText[units] = 0;
  return g_wideText;
}

void clearLastError(void) {
  g_code = 0;
  g_text[0] = '\0';
}

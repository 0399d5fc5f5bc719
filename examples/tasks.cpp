// tasks.cpp: hands work to a background task thread and waits for it.
//
//   zeb_tasks [FILE [LOGDIR]]
//
// A task on the thread reads FILE (default README.md), decodes it from UTF-8, converts it to
// GB2312 and logs each step with the tag "demo"; main waits for the task, prints a summary and
// releases the thread. With LOGDIR the folder is created with the marker file "mdebug" (debug
// level) and the log goes to LOGDIR/zeb_tasks.log; without it the log goes to the console.
#include <cstdio>

#include "zeb/zeb_common.h"

namespace {

struct FileSummary {
  int bytes = -1;
  int utf16Units = 0;
  int gb2312Bytes = 0;
};

void startLog(const char* dir) {
  if (dir == nullptr) {
    mlogSetConsoleEnable(1);
    mlogQuickInit("zeb_tasks", "");
    return;
  }
  TAnsiString folder(dir);
  folder.ensureEndWithBacksplash('/');
  mforceCreateDirW(TWideString(folder, MIB_UTF8).p());
  mwriteFileW(TWideString(folder + "mdebug", MIB_UTF8).p(), nullptr, 0);
  mlogQuickInit("zeb_tasks", (folder + "zeb_tasks.log").p());
}

// Runs on the task thread.
void readAndConvert(const char* path, FileSummary& summary) {
  void* data = nullptr;
  summary.bytes = mreadFileW(TWideString(path, MIB_UTF8).p(), &data, true);
  mlogWithLevel(MLOG_INFO, "demo", "read %s: %d bytes", path, summary.bytes);
  if (summary.bytes < 0) return;
  TWideString text;
  text.fromUTF8(static_cast<const char*>(data));
  zeb_deleteMem(data);
  summary.utf16Units = text.length();
  mlogWithLevel(MLOG_INFO, "demo", "decoded UTF-8: %d UTF-16 units", summary.utf16Units);
  TAnsiString gb2312;
  gb2312.fromWideString(text.p(), MIB_GB2312);
  summary.gb2312Bytes = gb2312.length();
  mlogWithLevel(MLOG_DEBUG, "demo", "converted to GB2312: %d bytes", summary.gb2312Bytes);
}

}  // namespace

int main(int argc, char** argv) {
  const char* path = argc > 1 ? argv[1] : "README.md";
  startLog(argc > 2 ? argv[2] : nullptr);
  ZEB_Log_Info("zeb_tasks: starting the task thread");

  ttaskThread* worker = new ttaskThread(ttaskthreadnotauto(), "demo.worker", 0);
  worker->Exec();
  FileSummary summary;
  worker->postRunTaskSync([&] { readAndConvert(path, summary); });
  worker->release();

  std::printf("%s: %d bytes, %d UTF-16 units, %d bytes in GB2312\n", path, summary.bytes,
              summary.utf16Units, summary.gb2312Bytes);
  mlogQuickFinalize();
  return summary.bytes < 0 ? 1 : 0;
}

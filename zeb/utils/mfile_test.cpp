#include "zeb/utils/mfile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "testing/log_capture.h"
#include "testing/temp_dir.h"
#include "zeb/log/zeb_log.h"
#include "zeb/strings/TWideString.h"

namespace fs = std::filesystem;
using zeb::testing::LogCapture;
using zeb::testing::TempDir;

namespace {

TWideString wide(const std::string& utf8) {
  return TWideString(utf8.c_str(), MIB_UTF8);
}

// Runs the test body with the temporary folder as the working folder, for relative paths.
class WorkingFolder {
 public:
  explicit WorkingFolder(const TempDir& dir) : saved_(fs::current_path()) {
    fs::current_path(dir.path());
  }
  ~WorkingFolder() { fs::current_path(saved_); }

 private:
  fs::path saved_;
};

TEST(ForceCreateDir, SingleComponentOrEmptyCreatesNothing) {
  TempDir dir;
  WorkingFolder cwd(dir);
  for (const zwchar_t* path : {ZW(""), ZW("C:"), ZW("abc"), ZW("abc/"), ZW("C:\\")}) {
    EXPECT_FALSE(mforceCreateDirW(path));
  }
  EXPECT_FALSE(mforceCreateDirW(nullptr));
  EXPECT_TRUE(fs::is_empty(dir.path()));
}

TEST(ForceCreateDir, CreatesEveryLevelFromTheTop) {
  TempDir dir;
  WorkingFolder cwd(dir);
  const std::string absolute = dir.filePath("a/b//c/");
  EXPECT_TRUE(mforceCreateDirW(wide(absolute)));
  EXPECT_TRUE(fs::is_directory(absolute));
  EXPECT_TRUE(mforceCreateDirW(wide("rel\\x/y")));
  EXPECT_TRUE(fs::is_directory(dir.filePath("rel/x/y")));
}

TEST(ForceCreateDir, FailsWhenAFileStandsInTheWay) {
  TempDir dir;
  dir.writeFile("plain", "x");
  EXPECT_FALSE(mforceCreateDirW(wide(dir.filePath("plain/sub/deeper"))));
  EXPECT_FALSE(fs::exists(dir.filePath("plain/sub")));
}

TEST(ForceCreateDir, DeepPathsAreCreatedWhole) {
  TempDir dir;
  // A folder part of well over 255 units, in levels of 100 units each.
  std::string deep = dir.path();
  for (char level = 'a'; level <= 'd'; ++level) deep += "/" + std::string(100, level);
  EXPECT_TRUE(mforceCreateDirForFileW(wide(deep + "/file.txt")));
  EXPECT_TRUE(fs::is_directory(deep));
  // A name the file system cannot hold fails, and nothing shorter is made in its place.
  const std::string tooLong = dir.filePath(std::string(300, 'x'));
  EXPECT_FALSE(mforceCreateDirW(wide(tooLong + "/sub")));
  EXPECT_FALSE(fs::exists(dir.filePath(std::string(255, 'x'))));
}

TEST(ForceCreateDir, ForFileCreatesOnlyTheFolder) {
  TempDir dir;
  const std::string file = dir.filePath("p/q/file.txt");
  EXPECT_TRUE(mforceCreateDirForFileW(wide(file)));
  EXPECT_TRUE(fs::is_directory(dir.filePath("p/q")));
  EXPECT_FALSE(fs::exists(file));
  EXPECT_FALSE(mforceCreateDirForFileW(wide("file.txt")));
  EXPECT_FALSE(mforceCreateDirForFileW(nullptr));
}

TEST(WriteFile, ReplacesTheFileOrReportsWhyNot) {
  TempDir dir;
  dir.writeFile("f.bin", "old content");
  const TWideString path = wide(dir.filePath("f.bin"));
  EXPECT_EQ(mwriteFileW(path, "abcd", 4), 4);
  EXPECT_EQ(dir.readFile("f.bin"), "abcd");
  EXPECT_EQ(mwriteFileW(path, nullptr, 10), 10) << "a null block still reports its size";
  EXPECT_EQ(fs::file_size(dir.filePath("f.bin")), 0u);
  EXPECT_EQ(mwriteFileW(ZW(""), "abcd", 4), -1);
  EXPECT_EQ(mwriteFileW(nullptr, "abcd", 4), -1);
  EXPECT_EQ(mwriteFileW(wide(dir.filePath("missing/f.bin")), "abcd", 4), -2);
}

TEST(ReadFile, ReturnsTheSizeOrAFailureCode) {
  TempDir dir;
  dir.writeFile("three", "xyz");
  dir.writeFile("empty", "");
  void* data = &data;
  EXPECT_EQ(mreadFileW(wide(dir.filePath("empty")), &data, true), -2);
  EXPECT_EQ(data, nullptr);
  EXPECT_EQ(mreadFileW(wide(dir.filePath("missing")), &data, true), -1);
  EXPECT_EQ(mreadFileW(nullptr, &data, true), 0);
  EXPECT_EQ(mreadFileW(wide(dir.filePath("three")), nullptr, false), 3);
  fs::create_directory(dir.filePath("folder"));
  EXPECT_EQ(mreadFileW(wide(dir.filePath("folder")), &data, true), -1) << "a folder is no file";
  EXPECT_EQ(data, nullptr);

  ASSERT_EQ(mreadFileW(wide(dir.filePath("three")), &data, true), 3);
  const char* bytes = static_cast<const char*>(data);
  EXPECT_EQ(std::string(bytes, 3), "xyz");
  EXPECT_EQ(bytes[3], 0);
  EXPECT_EQ(bytes[4], 0);
  zeb_deleteMem(data);
  zeb_deleteMem(nullptr);
}

TEST(CheckFileRights, OnlyAnExistingEntryThatCannotBeWrittenFails) {
  TempDir dir;
  dir.writeFile("normal", "content");
  dir.writeFile("empty", "");
  fs::create_directory(dir.filePath("folder"));  // with content: non-empty, never opens "rb+"
  dir.writeFile("folder/inside", "x");
  struct Case {
    const char* name;
    int expected;
  } cases[] = {{"missing", 1}, {"empty", 1}, {"normal", 1}, {"folder", 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(mcheckFileRights(wide(dir.filePath(c.name))), c.expected);
  }
  EXPECT_EQ(mcheckFileRights(nullptr), 1);
  fs::create_directory(dir.filePath("empty-folder"));
  LogCapture log(MLOG_INFO);
  EXPECT_EQ(mcheckFileRights(wide(dir.filePath("empty-folder"))), 0) << "a folder is no file";
  EXPECT_NE(log.text().find("nofilerights"), std::string::npos);
}

TEST(FileHelpers, NonAsciiNamesRoundTripThroughUtf8) {
  TempDir dir;
  const std::string file = dir.filePath(u8"数据/報告 ü.txt");
  ASSERT_TRUE(mforceCreateDirForFileW(wide(file)));
  ASSERT_EQ(mwriteFileW(wide(file), "hello", 5), 5);
  EXPECT_EQ(dir.readFile(u8"数据/報告 ü.txt"), "hello");
  EXPECT_EQ(mreadFileW(wide(file), nullptr, false), 5);
}

// The lines of the file helpers in the captured log, as "<letter>/<tag>:<message>".
std::vector<std::string> fileHelperLines(const LogCapture& log) {
  std::vector<std::string> result;
  for (const std::string& text : log.lines()) {
    const auto line = zeb::testing::parseLogLine(text);
    const bool ours = line && (line->message.rfind("force create:", 0) == 0 ||
                               line->message.rfind("nofilerights:", 0) == 0);
    if (!ours) continue;
    const std::string tag = line->tag.substr(0, line->tag.find_last_not_of('.') + 1);  // unpadded
    result.push_back(line->letter + "/" + tag + ":" + line->message);
  }
  return result;
}

TEST(FileHelpersLog, CreationsAtDebugFailuresAsErrorsUnwritableFilesAsInfo) {
  LogCapture log(MLOG_DEBUG);
  const std::string root = log.dir().path();
  mlogSetLevel(MLOG_INFO);
  ASSERT_TRUE(mforceCreateDirW(wide(root + "/quiet/x"))) << "no debug line below debug level";
  mlogSetLevel(MLOG_DEBUG);
  ASSERT_TRUE(mforceCreateDirW(wide(root + "/a/b")));
  ASSERT_TRUE(mforceCreateDirW(wide(root + "/a/b"))) << "existing folders are not logged";
  log.dir().writeFile("plain", "x");
  ASSERT_FALSE(mforceCreateDirW(wide(root + "/plain/sub")));
  ASSERT_EQ(mcheckFileRights(wide(root)), 0);
  const std::vector<std::string> expected = {
      "D/zeb.file:force create:" + root + "/a",
      "D/zeb.file:force create:" + root + "/a/b",
      "E/zeb.file:force create:" + root + "/plain/sub",
      "I/zeb:nofilerights:" + root,
  };
  EXPECT_EQ(fileHelperLines(log), expected);
}

}  // namespace

#include "zeb/utils/tfileutils.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "testing/temp_dir.h"
#include "zeb/strings/TWideString.h"

namespace {

namespace fs = std::filesystem;

TWideString wide(const std::string& utf8) {
  TWideString w;
  w.fromUTF8(utf8.c_str());
  return w;
}

std::string utf8(const zwchar_t* w) {
  return std::string(TWideString(w).utf8().p());
}

void writeFile(const fs::path& path, const std::string& content) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << content;
}

std::string readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A tree under "src" with non-ASCII names, nested empty folders, a read-only file, and links to
// a file and a folder under "outside", which no operation may touch:
//   src/a.txt  src/b.csv  src/数据/文件.txt  src/数据/深/x.tmp  src/empty/  src/nested/inner/
//   src/readonly.txt (0444)  src/to_file -> ../outside/secret.txt  src/to_dir -> ../outside
struct Tree {
  zeb::testing::TempDir dir;
  fs::path root = dir.path();
  fs::path src = root / "src";
  fs::path outside = root / "outside";

  Tree() {
    writeFile(src / "a.txt", "alpha");
    writeFile(src / "b.csv", "1,2");
    writeFile(src / u8"数据" / u8"文件.txt", u8"内容");
    writeFile(src / u8"数据" / u8"深" / "x.tmp", "tmp");
    fs::create_directories(src / "empty");
    fs::create_directories(src / "nested" / "inner");
    writeFile(src / "readonly.txt", "frozen");
    fs::permissions(src / "readonly.txt", fs::perms::owner_read | fs::perms::group_read |
                                              fs::perms::others_read);
    writeFile(outside / "secret.txt", "secret");
    writeFile(outside / "keep.tmp", "outside tmp");
    fs::create_symlink("../outside/secret.txt", src / "to_file");
    fs::create_symlink("../outside", src / "to_dir");
  }

  TWideString w(const fs::path& p) const { return wide(p.string()); }
  // The whole tree of `src` stands at `copy`, links as links.
  void expectTreeAt(const fs::path& copy) const {
    EXPECT_EQ(readFile(copy / "a.txt"), "alpha");
    EXPECT_EQ(readFile(copy / u8"数据" / u8"文件.txt"), u8"内容");
    EXPECT_EQ(readFile(copy / u8"数据" / u8"深" / "x.tmp"), "tmp");
    EXPECT_TRUE(fs::is_directory(copy / "empty"));
    EXPECT_TRUE(fs::is_directory(copy / "nested" / "inner"));
    EXPECT_EQ(readFile(copy / "readonly.txt"), "frozen");
    EXPECT_TRUE(fs::is_symlink(copy / "to_file"));
    EXPECT_EQ(fs::read_symlink(copy / "to_dir"), "../outside");
  }
  void expectOutsideUntouched() const {
    EXPECT_EQ(readFile(outside / "secret.txt"), "secret");
    EXPECT_EQ(readFile(outside / "keep.tmp"), "outside tmp");
    EXPECT_EQ(std::distance(fs::directory_iterator(outside), fs::directory_iterator()), 2);
  }
};

// Records the entries it is shown, relative to `base`, answering `answerFor(name)`.
class Recorder : public tfileentrycallback {
 public:
  explicit Recorder(std::string base, std::function<int(const std::string&)> answerFor = nullptr)
      : m_base(std::move(base) + "/"), m_answerFor(std::move(answerFor)) {}
  int onEntry(const tfileentry& e) override {
    std::string path = utf8(e.path);
    EXPECT_EQ(path.compare(0, m_base.size(), m_base), 0) << path;
    path.erase(0, m_base.size());
    seen.push_back(path + (e.isFolder ? "/" : "") + (e.isLink ? "@" : "") + ":" +
                   std::to_string(e.depth));
    return m_answerFor ? m_answerFor(utf8(e.name)) : FILEENTRY_CONTINUE;
  }
  std::vector<std::string> seen;

 private:
  std::string m_base;
  std::function<int(const std::string&)> m_answerFor;
};

TEST(EnumFolder, ListsInNameOrderFolderBeforeContentAndNeverEntersLinks) {
  Tree t;
  Recorder all(t.src.string());
  EXPECT_EQ(tfileutils::enumFolderW(t.w(t.src).p(), nullptr,
                                    FILEENUM_FILES | FILEENUM_FOLDERS | FILEENUM_RECURSIVE, &all),
            12);
  const std::vector<std::string> expected = {
      "a.txt:0", "b.csv:0", "empty/:0", "nested/:0", "nested/inner/:1", "readonly.txt:0",
      "to_dir@:0", "to_file@:0", u8"数据/:0", u8"数据/文件.txt:1", u8"数据/深/:1",
      u8"数据/深/x.tmp:2"};
  EXPECT_EQ(all.seen, expected);
}

TEST(EnumFolder, PatternKindsDepthAndCallbackAnswers) {
  Tree t;
  const TWideString src = wide(t.src.string() + "/");  // a trailing separator is dropped
  Recorder txt(t.src.string());
  EXPECT_EQ(tfileutils::enumFolderW(src.p(), ZW("*.txt"), FILEENUM_FILES | FILEENUM_RECURSIVE, &txt),
            3);
  EXPECT_EQ(txt.seen, (std::vector<std::string>{"a.txt:0", "readonly.txt:0", u8"数据/文件.txt:1"}));

  EXPECT_EQ(tfileutils::enumFolderW(src.p(), nullptr, FILEENUM_FILES, nullptr), 5);
  EXPECT_EQ(tfileutils::enumFolderW(src.p(), ZW(""), FILEENUM_FOLDERS | FILEENUM_RECURSIVE, nullptr),
            5);

  Recorder skip(t.src.string(), [](const std::string& name) {
    return name == u8"数据" ? FILEENTRY_SKIP : FILEENTRY_CONTINUE;
  });
  tfileutils::enumFolderW(src.p(), nullptr, FILEENUM_FILES | FILEENUM_FOLDERS | FILEENUM_RECURSIVE,
                          &skip);
  EXPECT_EQ(skip.seen.back(), u8"数据/:0");

  Recorder stop(t.src.string(), [](const std::string& name) {
    return name == "nested" ? FILEENTRY_STOP : FILEENTRY_CONTINUE;
  });
  EXPECT_EQ(tfileutils::enumFolderW(src.p(), nullptr,
                                    FILEENUM_FILES | FILEENUM_FOLDERS | FILEENUM_RECURSIVE, &stop),
            4);
  EXPECT_EQ(stop.seen.back(), "nested/:0");
}

TEST(EnumFolder, RefusesMissingFilesAndLinkedFolders) {
  Tree t;
  EXPECT_EQ(tfileutils::enumFolderW(nullptr, nullptr, FILEENUM_FILES, nullptr), FILEOP_BAD_ARGUMENT);
  EXPECT_EQ(tfileutils::enumFolderW(ZW(""), nullptr, FILEENUM_FILES, nullptr), FILEOP_BAD_ARGUMENT);
  EXPECT_EQ(tfileutils::enumFolderW(t.w(t.root / "nope").p(), nullptr, FILEENUM_FILES, nullptr),
            FILEOP_NO_SOURCE);
  EXPECT_EQ(tfileutils::enumFolderW(t.w(t.src / "a.txt").p(), nullptr, FILEENUM_FILES, nullptr),
            FILEOP_NO_SOURCE);
  EXPECT_EQ(tfileutils::enumFolderW(t.w(t.src / "to_dir").p(), nullptr, FILEENUM_FILES, nullptr),
            FILEOP_NO_SOURCE);
}

TEST(CopyFolder, CopiesTheWholeTreeWithLinksAsLinks) {
  Tree t;
  const fs::path dst = t.root / "backup" / u8"副本";  // its parent does not exist yet
  EXPECT_EQ(copyfolder(t.w(t.src).p(), t.w(dst).p(), false, nullptr), 7);
  t.expectTreeAt(dst);
  EXPECT_EQ(fs::status(dst / "readonly.txt").permissions() & fs::perms::owner_write,
            fs::perms::none);
  t.expectOutsideUntouched();
}

TEST(CopyFolder, OverwriteReplacesEvenReadOnlyFilesAndLinksWithoutWritingThroughThem) {
  Tree t;
  const fs::path dst = t.root / "dst";
  writeFile(dst / "a.txt", "old");
  writeFile(dst / "readonly.txt", "old frozen");
  fs::permissions(dst / "readonly.txt", fs::perms::owner_read);
  fs::create_symlink("../outside/keep.tmp", dst / "b.csv");  // a copy must not write through it

  // Keeping existing files: only the missing ones arrive (b.csv is kept as the link it is).
  EXPECT_EQ(copyfolder(t.w(t.src).p(), t.w(dst).p(), false, nullptr), 4);
  EXPECT_EQ(readFile(dst / "a.txt"), "old");
  EXPECT_EQ(readFile(dst / "readonly.txt"), "old frozen");
  EXPECT_TRUE(fs::is_symlink(dst / "b.csv"));

  EXPECT_EQ(copyfolder(t.w(t.src).p(), t.w(dst).p(), true, nullptr), 7);
  EXPECT_EQ(readFile(dst / "a.txt"), "alpha");
  EXPECT_EQ(readFile(dst / "readonly.txt"), "frozen");
  EXPECT_FALSE(fs::is_symlink(dst / "b.csv"));
  EXPECT_EQ(readFile(dst / "b.csv"), "1,2");
  t.expectOutsideUntouched();
}

TEST(CopyFolder, RefusesBadPathsBeforeTouchingAnything) {
  Tree t;
  const TWideString src = t.w(t.src);
  EXPECT_EQ(copyfolder(nullptr, src.p(), true, nullptr), FILEOP_BAD_ARGUMENT);
  EXPECT_EQ(copyfolder(src.p(), ZW(""), true, nullptr), FILEOP_BAD_ARGUMENT);
  EXPECT_EQ(copyfolder(t.w(t.root / "missing").p(), t.w(t.root / "d1").p(), true, nullptr),
            FILEOP_NO_SOURCE);
  EXPECT_FALSE(fs::exists(t.root / "d1"));
  EXPECT_EQ(copyfolder(src.p(), src.p(), true, nullptr), FILEOP_INSIDE_SOURCE);
  EXPECT_EQ(copyfolder(src.p(), t.w(t.src / "new" / "deeper").p(), true, nullptr),
            FILEOP_INSIDE_SOURCE);
  EXPECT_FALSE(fs::exists(t.src / "new"));
  // Inside the source through a link to it, and through "\\" separators.
  fs::create_symlink(t.src, t.root / "alias");
  EXPECT_EQ(copyfolder(src.p(), t.w(t.root / "alias" / "sub").p(), true, nullptr),
            FILEOP_INSIDE_SOURCE);
  EXPECT_EQ(copyfolder(src.p(), t.w(t.src.string() + "\\sub").p(), true, nullptr),
            FILEOP_INSIDE_SOURCE);
  EXPECT_FALSE(fs::exists(t.src / "sub"));
  EXPECT_EQ(copyfolder(src.p(), t.w(t.src / "a.txt").p(), true, nullptr), FILEOP_INSIDE_SOURCE);
  EXPECT_EQ(copyfolder(src.p(), t.w(t.outside / "secret.txt").p(), true, nullptr),
            FILEOP_BAD_TARGET);
  // A sibling whose name starts like the source is not inside it.
  EXPECT_EQ(copyfolder(src.p(), t.w(t.root / "src2").p(), true, nullptr), 7);
  t.expectOutsideUntouched();
}

TEST(CopyFolder, ProgressSeesEachEntryAndMaySkipOrStop) {
  Tree t;
  Recorder skipData(t.src.string(), [](const std::string& name) {
    return name == u8"数据" || name == "b.csv" ? FILEENTRY_SKIP : FILEENTRY_CONTINUE;
  });
  EXPECT_EQ(copyfolder(t.w(t.src).p(), t.w(t.root / "d").p(), true, &skipData), 4);
  EXPECT_FALSE(fs::exists(t.root / "d" / u8"数据"));
  EXPECT_FALSE(fs::exists(t.root / "d" / "b.csv"));
  EXPECT_EQ(skipData.seen.size(), 9u);

  Recorder stop(t.src.string(), [](const std::string& name) {
    return name == "empty" ? FILEENTRY_STOP : FILEENTRY_CONTINUE;
  });
  EXPECT_EQ(copyfolder(t.w(t.src).p(), t.w(t.root / "e").p(), true, &stop), 2);
  EXPECT_FALSE(fs::exists(t.root / "e" / "empty"));
  EXPECT_FALSE(fs::exists(t.root / "e" / "readonly.txt"));
}

TEST(MoveFolder, RenamesAWholeFolderToANewPlace) {
  Tree t;
  const fs::path dst = t.root / "moved" / u8"到这里";
  EXPECT_EQ(movefolder(t.w(t.src).p(), t.w(dst).p(), false), 7);
  EXPECT_FALSE(fs::exists(t.src));
  t.expectTreeAt(dst);
  t.expectOutsideUntouched();
}

TEST(MoveFolder, MergesIntoAnExistingFolderKeepingOrReplacingItsFiles) {
  Tree t;
  const fs::path dst = t.root / "dst";
  writeFile(dst / "a.txt", "old");
  EXPECT_EQ(movefolder(t.w(t.src).p(), t.w(dst).p(), false), 6);
  EXPECT_EQ(readFile(dst / "a.txt"), "old");
  EXPECT_EQ(readFile(t.src / "a.txt"), "alpha");  // kept in both places
  EXPECT_EQ(std::distance(fs::recursive_directory_iterator(t.src), {}), 1);
  EXPECT_TRUE(fs::is_directory(dst / "empty"));
  EXPECT_EQ(readFile(dst / "readonly.txt"), "frozen");

  EXPECT_EQ(movefolder(t.w(t.src).p(), t.w(dst).p(), true), 1);
  EXPECT_EQ(readFile(dst / "a.txt"), "alpha");
  EXPECT_FALSE(fs::exists(t.src));
  EXPECT_EQ(movefolder(t.w(dst).p(), t.w(dst / "x").p(), true), FILEOP_INSIDE_SOURCE);
  EXPECT_EQ(movefolder(t.w(t.src).p(), t.w(dst).p(), true), FILEOP_NO_SOURCE);
  t.expectOutsideUntouched();
}

// A fresh folder on another file system than the temporary folder, when the machine has one
// (/dev/shm is a memory file system on Linux); removed with its content.
struct OtherDeviceFolder {
  fs::path path;
  OtherDeviceFolder(const fs::path& near) {
    std::error_code error;
    const fs::path base = "/dev/shm";
    if (!fs::is_directory(base, error) || sameDevice(base, near)) return;
    path = base / ("zeb_move_" + std::to_string(::getpid()));
    if (!fs::create_directory(path, error)) path.clear();
  }
  ~OtherDeviceFolder() {
    std::error_code ignored;
    if (!path.empty()) fs::remove_all(path, ignored);
  }
  static bool sameDevice(const fs::path& a, const fs::path& b) {
    struct stat sa, sb;
    return ::stat(a.c_str(), &sa) == 0 && ::stat(b.c_str(), &sb) == 0 && sa.st_dev == sb.st_dev;
  }
};

TEST(MoveFolder, AcrossFileSystemsCopiesThenRemovesTheSource) {
  Tree t;
  OtherDeviceFolder other(t.root);
  if (other.path.empty()) GTEST_SKIP() << "no second file system to move to";
  const fs::path dst = other.path / u8"搬走";
  EXPECT_EQ(movefolder(t.w(t.src).p(), t.w(dst).p(), false), 7);
  EXPECT_FALSE(fs::exists(t.src));
  t.expectTreeAt(dst);
  t.expectOutsideUntouched();
}

TEST(DeleteFiles, DeletesMatchesAndOnlyTheFoldersItEmptied) {
  Tree t;
  writeFile(t.src / "only_tmp" / "1.tmp", "1");
  writeFile(t.src / "only_tmp" / "sub" / "2.tmp", "2");
  writeFile(t.src / "top.tmp", "top");
  fs::permissions(t.src / "top.tmp", fs::perms::owner_read);
  fs::create_symlink("../outside/keep.tmp", t.src / "link.tmp");
  const TWideString src = t.w(t.src);

  EXPECT_EQ(deleteFiles(src.p(), ZW("*.tmp"), false, true), 2);  // top.tmp and link.tmp
  EXPECT_TRUE(fs::exists(t.src / "only_tmp" / "1.tmp"));
  EXPECT_EQ(deleteFiles(src.p(), ZW("*.tmp"), true, true), 3);
  EXPECT_FALSE(fs::exists(t.src / "only_tmp"));
  EXPECT_FALSE(fs::exists(t.src / u8"数据" / u8"深"));
  EXPECT_TRUE(fs::exists(t.src / u8"数据" / u8"文件.txt"));
  EXPECT_TRUE(fs::is_directory(t.src / "empty"));          // empty before: stays
  EXPECT_TRUE(fs::is_directory(t.src / "nested" / "inner"));
  EXPECT_TRUE(fs::is_symlink(t.src / "to_dir"));             // not entered
  t.expectOutsideUntouched();

  // Everything else, the links to outside as links.
  EXPECT_EQ(deleteFiles(src.p(), nullptr, true, true), 6);
  EXPECT_TRUE(fs::is_directory(t.src));
  EXPECT_FALSE(fs::exists(fs::symlink_status(t.src / "to_dir")));
  EXPECT_FALSE(fs::exists(t.src / u8"数据"));
  EXPECT_TRUE(fs::is_directory(t.src / "nested" / "inner"));
  t.expectOutsideUntouched();
  EXPECT_EQ(deleteFiles(t.w(t.root / "nope").p(), nullptr, true, true), FILEOP_NO_SOURCE);
  EXPECT_EQ(deleteFiles(nullptr, nullptr, true, true), FILEOP_BAD_ARGUMENT);
}

}  // namespace

// Tests of TIniFile: what a load keeps (comments, spacing, duplicates), when it fails, how values
// change, and what a save writes and when it writes nothing.

#include "zeb/utils/TIniFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "testing/temp_dir.h"

namespace {

using zeb::TIniFile;
using zeb::testing::TempDir;
using Strings = std::vector<std::string>;

// A temporary folder and an object to load into it and save from it.
class Ini : public ::testing::Test {
 protected:
  // Loads `content` from a file in the folder.
  bool load(const std::string& content) {
    dir.writeFile("in.ini", content);
    return ini.load(dir.filePath("in.ini"));
  }
  std::string saved() {
    ini.saveas(dir.filePath("out.ini"));
    return dir.readFile("out.ini");
  }

  TempDir dir;
  TIniFile ini;
};

TEST_F(Ini, EntriesBeforeAnyHeaderAreWrittenFirstWithoutHeader) {
  ASSERT_TRUE(load("[b]\nx=1\na=1\nb=2\n"));
  ASSERT_TRUE(load("a=1\nb=2\n[B]\nx=3\n[a]\ny=4\n"));
  EXPECT_FALSE(ini.hasSection("b")) << "a load starts from an empty object";
  EXPECT_EQ(saved(), "a=1\nb=2\n[B]\nx=3\n[a]\ny=4\n");
}

TEST_F(Ini, DuplicateKeysStayInFileOrder) {
  ASSERT_TRUE(load("[s]\nk=first\nk=second\n"));
  std::string value;
  ASSERT_TRUE(ini.getValue("s", "k", value));
  EXPECT_EQ(value, "first");
  Strings values, comments;
  ASSERT_TRUE(ini.getValues("s", "k", values, comments));
  EXPECT_EQ(values, (Strings{"first", "second"}));
  ini.setValue("s", "k", "changed", "");
  ini.getValues("s", "k", values);
  EXPECT_EQ(values, (Strings{"changed", "second"}));
  ini.deleteKey("s", "k");
  ini.getValues("s", "k", values);
  EXPECT_EQ(values, (Strings{"second"}));
}

TEST_F(Ini, InlineCommentsAreCutAndKeptAboveTheirEntry) {
  ASSERT_TRUE(load("[s]\nkey = value ; note\nurl=a#b;c\n"));
  std::string value, comment;
  ASSERT_TRUE(ini.getValue("s", "key ", value, comment));
  EXPECT_EQ(value, " value");
  EXPECT_EQ(comment, "; note");
  ASSERT_TRUE(ini.getValue("s", "url", value, comment));
  EXPECT_EQ(value, "a");
  EXPECT_EQ(comment, "#b;c") << "the tail from the first flag on";
  EXPECT_EQ(saved(), "[s]\n; note\nkey = value\n#b;c\nurl=a\n");
}

TEST_F(Ini, CommentLinesJoinIntoTheNextSectionsComment) {
  ASSERT_TRUE(load("  # a\n\n; b\n[s]\nk=v\n# lost at the end\n"));
  std::string comment;
  ASSERT_TRUE(ini.getSectionComment("s", comment));
  EXPECT_EQ(comment, "# a\n; b");
  EXPECT_EQ(saved(), "# a\n; b\n[s]\nk=v\n");
}

TEST_F(Ini, BadHeadersFailTheLoadAndKeepWhatWasRead) {
  EXPECT_FALSE(load("[sec]\na=1\n[sec]\nb=2\n"));
  EXPECT_TRUE(ini.hasKey("sec", "a"));
  EXPECT_FALSE(ini.hasKey("sec", "b"));
  EXPECT_FALSE(load("[sec\na=1\n"));
  EXPECT_FALSE(ini.load(dir.filePath("missing.ini")));
  EXPECT_FALSE(ini.hasSection(""));
}

TEST_F(Ini, OddLinesAndLineEnds) {
  for (const char* text : {"[s]\r\nk=v\r\n", "[s]\nk=v\n", "[s]\nk=v"}) {
    ASSERT_TRUE(load(text)) << text;
    EXPECT_EQ(saved(), "[s]\nk=v\n") << text;
  }
  ASSERT_TRUE(load("[ a ]junk\nno equals sign\n=\n[]\nlost=1\n[b]\nkept=1\n"));
  EXPECT_EQ(saved(), "[ a ]\n=\n[b]\nkept=1\n");
  EXPECT_TRUE(load(""));
  EXPECT_TRUE(ini.hasSection(""));
}

TEST_F(Ini, LongLinesAndHighBytesSurvive) {
  const std::string longValue(10000, 'v');
  ASSERT_TRUE(load("[\xE4\xB8\xAD]\nk=" + longValue + "\n\xFF=\x80\n"));
  int found = 0;
  EXPECT_EQ(ini.getStringValue("\xE4\xB8\xAD", "k", found), longValue);
  EXPECT_EQ(ini.getStringValue("\xE4\xB8\xAD", "\xFF", found), "\x80");
  EXPECT_EQ(found, 1);
}

TEST_F(Ini, CustomCommentFlagsReplaceTheDefaults) {
  ini.setCommentFlags({"//"});
  ASSERT_TRUE(load("// head\n[s]\nk=a # b ; c // d\n/x=1\n"));
  std::string value, comment;
  ASSERT_TRUE(ini.getValue("s", "k", value, comment));
  EXPECT_EQ(value, "a # b ; c");
  EXPECT_EQ(comment, "// d");
  EXPECT_TRUE(ini.hasKey("s", "/x")) << "one slash is not the flag";
  ini.getSectionComment("s", comment);
  EXPECT_EQ(comment, "// head");
}

TEST(IniValues, NumbersAndMissingEntries) {
  TIniFile ini;
  ini.setValue("s", "n", "12abc", "");
  ini.setValue("s", "x", "2.5e1", "");
  int found = -1;
  EXPECT_EQ(ini.getIntValue("s", "n", found), 12);
  EXPECT_EQ(found, 1);
  EXPECT_DOUBLE_EQ(ini.getDoubleValue("s", "x", found), 25.0);
  EXPECT_EQ(ini.getIntValue("s", "missing", found), 0);
  EXPECT_EQ(found, 0);
  EXPECT_EQ(ini.getStringValue("nosection", "n", found), "");
  std::string untouched = "same";
  EXPECT_FALSE(ini.getValue("s", "missing", untouched));
  EXPECT_EQ(untouched, "same");
  Strings values{"stale"};
  EXPECT_FALSE(ini.getValues("nosection", "n", values));
  EXPECT_TRUE(values.empty());
}

TEST_F(Ini, SetValuePrefixesTheFirstFlag) {
  ini.setValue("s", "k", "v", "note");
  EXPECT_EQ(saved(), "[s]\n#note\nk=v\n");
  ini.setValue("s", "k", "v", "#x");
  std::string value, comment;
  ini.getValue("s", "k", value, comment);
  EXPECT_EQ(comment, "##x");
  EXPECT_FALSE(ini.setSectionComment("none", "c"));
  EXPECT_FALSE(ini.hasSection("none"));
  EXPECT_TRUE(ini.setSectionComment("s", "plain"));
  ini.deleteSection("s");
  ini.deleteSection("s");
  EXPECT_FALSE(ini.hasSection("s"));
}

TEST(IniValues, CopiesAreIndependent) {
  TIniFile ini;
  ini.setValue("s", "k", "v", "");
  TIniFile copy(ini);
  copy.setValue("s", "k", "changed", "");
  int found = 0;
  EXPECT_EQ(ini.getStringValue("s", "k", found), "v");
  ini = copy;
  EXPECT_EQ(ini.getStringValue("s", "k", found), "changed");
  int sections = 0;
  for (const auto& pair : ini) sections += pair.second->name == pair.first ? 1 : 0;
  EXPECT_EQ(sections, 1);
}

TEST(IniSave, LoadSaveLoadSaveIsAFixedPoint) {
  const std::string original =
      "; application settings\n"
      "version = 3\r\n"
      "\n"
      "# window placement\n"
      "[window]   \n"
      "  width=1024 ; pixels\n"
      "height =768\n"
      "title= \xE4\xB8\xAD\xE6\x96\x87 editor \n"
      "\n"
      "\t; recent files, newest first\n"
      "[recent]\n"
      "file=/home/a/x.txt\n"
      "file=/home/a/y.txt#second\n"
      "[ Network ]\n"
      "proxy=\n"
      "=empty key\n";
  TempDir dir;
  dir.writeFile("a.ini", original);
  TIniFile first;
  ASSERT_TRUE(first.load(dir.filePath("a.ini")));
  first.saveas(dir.filePath("b.ini"));
  TIniFile second;
  ASSERT_TRUE(second.load(dir.filePath("b.ini")));
  second.saveas(dir.filePath("c.ini"));
  EXPECT_EQ(dir.readFile("b.ini"), dir.readFile("c.ini"));
  EXPECT_EQ(dir.readFile("b.ini"),
            "; application settings\nversion = 3\n"
            "[ Network ]\nproxy=\n=empty key\n"
            "; recent files, newest first\n[recent]\nfile=/home/a/x.txt\n#second\n"
            "file=/home/a/y.txt\n"
            "# window placement\n[window]\n; pixels\nwidth=1024\nheight =768\n"
            "title= \xE4\xB8\xAD\xE6\x96\x87 editor\n");
}

TEST(IniSave, NothingIsWrittenWhereTheFileCannotBeWritten) {
  TempDir dir;
  TIniFile ini;
  ini.setValue("s", "k", "v", "");
  EXPECT_EQ(ini.saveas(dir.filePath("no/such/folder.ini")), 0);
  EXPECT_FALSE(std::filesystem::exists(dir.filePath("no")));
  std::filesystem::create_directory(dir.filePath("folder.ini"));
  EXPECT_EQ(ini.saveas(dir.filePath("folder.ini")), 0);
  EXPECT_TRUE(std::filesystem::is_directory(dir.filePath("folder.ini")));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1)
      << "no temporary file is left behind";
}

TEST(IniSave, ReplacingAFileKeepsItsPermissions) {
  TempDir dir;
  dir.writeFile("p.ini", "old content that is longer than the new one\n");
  const std::string path = dir.filePath("p.ini");
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  TIniFile ini;
  ini.setValue("", "k", "v", "");
  ini.saveas(path);
  EXPECT_EQ(dir.readFile("p.ini"), "k=v\n");
  struct stat info;
  ASSERT_EQ(stat(path.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0640u);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

TEST(IniSave, SaveUsesTheLoadedName) {
  TempDir dir;
  dir.writeFile("s.ini", "[s]\nk=v\n");
  TIniFile ini;
  ASSERT_TRUE(ini.load(dir.filePath("s.ini")));
  ini.setValue("s", "k", "new", "");
  ini.saveas(dir.filePath("other.ini"));
  EXPECT_EQ(dir.readFile("s.ini"), "[s]\nk=v\n") << "saveas does not change the stored name";
  ini.save();
  EXPECT_EQ(dir.readFile("s.ini"), "[s]\nk=new\n");
}

}  // namespace

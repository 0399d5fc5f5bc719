// Tests of the file-name functions (8-bit and 16-bit) and of the path members of TAnsiString and
// TWideString. Every table runs through both widths.

#include "zeb/strings/filename.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using ustring = std::basic_string<zwchar_t>;

ustring widen(const std::string& s) {
  return ustring(s.begin(), s.end());
}
// Only for comparing results: units above 0xFF lose their high byte.
std::string narrow(const ustring& s) {
  return std::string(s.begin(), s.end());
}
std::string text(const char* s) {
  return s != nullptr ? s : "";
}
std::string text(const zwchar_t* s) {
  return s != nullptr ? narrow(s) : "";
}
std::string text(const TAnsiString& s) {
  return text(s.p());
}
std::string text(const TWideString& s) {
  return text(s.p());
}

// ---- file name, extension, name without extension, drive, directory -----------------------------

struct PartsCase {
  const char* path;
  const char* name;
  const char* ext;  // null: no extension
  const char* nameNoExt;
  const char* drive;
  const char* dir;
};

const PartsCase kPartsCases[] = {
    {"C:\\a\\b.txt", "b.txt", "txt", "b", "C:", "C:\\a\\"},
    {"C:file.txt", "file.txt", "txt", "file", "C:", "C:"},
    {"C:", "", nullptr, "", "C:", "C:"},
    {"dir/sub\\f", "f", nullptr, "f", "", "dir/sub\\"},
    {"noslash", "noslash", nullptr, "noslash", "", ""},
    {"archive.tar.gz", "archive.tar.gz", "gz", "archive.tar", "", ""},
    {"dir.d/file", "file", nullptr, "file", "", "dir.d/"},
    {"file.", "file.", nullptr, "file", "", ""},
    {"a.b.", "a.b.", "b.", "a", "", ""},
    {"a..txt", "a..txt", "txt", "a", "", ""},
    {".profile", ".profile", "profile", "", "", ""},
    {"dir/", "", nullptr, "", "", "dir/"},
    {"C:\\dir\\report.txt", "report.txt", "txt", "report", "C:", "C:\\dir\\"},
    {"\\\\server\\share\\dir\\f.txt", "f.txt", "txt", "f", "", "\\\\server\\share\\dir\\"},
    {"/usr/lib/x.so", "x.so", "so", "x", "", "/usr/lib/"},
    {"", "", nullptr, "", "", ""},
};

TEST(FileNameParts, EightBitFunctions) {
  for (const PartsCase& c : kPartsCases) {
    SCOPED_TRACE(c.path);
    EXPECT_EQ(text(ExtractFileNamePtr(c.path)), c.name);
    EXPECT_EQ(ExtractFileNamePtrA(c.path), ExtractFileNamePtr(c.path));
    EXPECT_EQ(text(ExtractFileName(c.path)), c.name);
    EXPECT_EQ(ExtractFileExtPtrA(c.path) != nullptr, c.ext != nullptr);
    EXPECT_EQ(text(ExtractFileExtPtrA(c.path)), text(c.ext));
    EXPECT_EQ(text(ExtractFileExt(c.path)), text(c.ext));
    EXPECT_EQ(text(ExtractFileNameNoExt(c.path)), c.nameNoExt);
    EXPECT_EQ(text(ExtractFileDrive(c.path)), c.drive);
    char dir[ZEB_FILEDIR_OUT_UNITS];
    EXPECT_EQ(ExtractFileDir(c.path, dir), dir);
    EXPECT_EQ(text(dir), c.dir);
    EXPECT_EQ(text(ExtractFileDir(TAnsiString(c.path))), c.dir);
  }
}

TEST(FileNameParts, SixteenBitFunctions) {
  for (const PartsCase& c : kPartsCases) {
    SCOPED_TRACE(c.path);
    const ustring path = widen(c.path);
    const zwchar_t* p = path.c_str();
    EXPECT_EQ(text(ExtractFileNamePtrW(p)), c.name);
    EXPECT_EQ(text(ExtractFileName(p)), c.name);
    EXPECT_EQ(ExtractFileExtPtrW(p) != nullptr, c.ext != nullptr);
    EXPECT_EQ(text(ExtractFileExt(p)), text(c.ext));
    EXPECT_EQ(text(ExtractFileNameNoExtW(p)), c.nameNoExt);
    EXPECT_EQ(text(ExtractFileDriveW(p)), c.drive);
    zwchar_t dir[ZEB_FILEDIR_OUT_UNITS];
    EXPECT_EQ(ExtractFileDirW(p, dir), dir);
    EXPECT_EQ(text(dir), c.dir);
    EXPECT_EQ(text(ExtractFileDir(TWideString(p))), c.dir);
  }
}

TEST(FileNameParts, NullPathGivesNeutralResults) {
  const char* none = nullptr;
  const zwchar_t* wnone = nullptr;
  EXPECT_EQ(ExtractFileNamePtr(none), nullptr);
  EXPECT_EQ(ExtractFileNamePtrW(wnone), nullptr);
  EXPECT_EQ(ExtractFileExtPtrA(none), nullptr);
  EXPECT_TRUE(ExtractFileName(none).isEmpty());
  EXPECT_TRUE(ExtractFileExt(wnone).isEmpty());
  EXPECT_TRUE(ExtractFileNameNoExt(none).isEmpty());
  EXPECT_TRUE(ExtractFileDriveW(wnone).isEmpty());
  char dir[4] = "xyz";
  EXPECT_EQ(ExtractFileDir(none, dir), nullptr);
  EXPECT_STREQ(dir, "");
  EXPECT_EQ(ExtractFileDir("C:\\a\\b", nullptr), nullptr);
}

TEST(FileNameParts, DirectoryIsCutTo255UnitsAfterTheDrive) {
  const std::string longDir = "C:" + std::string(300, 'd') + "\\f.txt";
  std::vector<char> out(ZEB_FILEDIR_OUT_UNITS);  // exact size: ASan reports any overrun
  ExtractFileDir(longDir.c_str(), out.data());
  EXPECT_EQ(text(out.data()), longDir.substr(0, 2 + 255));
  std::vector<zwchar_t> wout(ZEB_FILEDIR_OUT_UNITS);
  ExtractFileDirW(widen(longDir).c_str(), wout.data());
  EXPECT_EQ(text(wout.data()), longDir.substr(0, 2 + 255));
}

// ---- components ---------------------------------------------------------------------------------

struct ComponentCase {
  const char* path;
  std::vector<const char*> components;  // 1, 2, ...; component size() + 1 does not exist
};

const ComponentCase kComponentCases[] = {
    {"C:\\a\\b\\f.txt", {"C:", "\\a", "\\b", "\\f.txt"}},
    {"/usr/lib/x.so", {"", "/usr", "/lib", "/x.so"}},
    {"\\\\server\\share\\dir\\f.txt", {"", "\\\\server", "\\share", "\\dir", "\\f.txt"}},
    {"rel//sub\\/", {"rel", "//sub"}},
    {"C:", {"C:"}},
    {"", {""}},
};

TEST(FileComponent, ComponentsCarryTheirSeparatorAndRebuildThePath) {
  for (const ComponentCase& c : kComponentCases) {
    SCOPED_TRACE(c.path);
    const ustring wide = widen(c.path);
    std::string rebuilt;
    for (unsigned n = 1; n <= c.components.size() + 1; ++n) {
      const bool exists = n <= c.components.size();
      const std::string expected = exists ? c.components[n - 1] : "";
      const int expectedResult = exists ? static_cast<int>(expected.size()) : -1;
      char out[ZEB_FILECOMPONENT_OUT_UNITS] = "stale";
      zwchar_t wout[ZEB_FILECOMPONENT_OUT_UNITS] = ZW("stale");
      EXPECT_EQ(extractfiledirex(c.path, out, n), expectedResult) << n;
      EXPECT_EQ(extractfiledirexw(wide.c_str(), wout, n), expectedResult) << n;
      EXPECT_EQ(text(out), expected) << n;
      EXPECT_EQ(text(wout), expected) << n;
      rebuilt += out;
    }
    EXPECT_EQ(std::string(c.path).rfind(rebuilt, 0), 0u) << rebuilt;
  }
}

TEST(FileComponent, NeutralResultsAndCut) {
  char out[ZEB_FILECOMPONENT_OUT_UNITS] = "stale";
  EXPECT_EQ(extractfiledirex("a\\b", out, 0), -1);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(extractfiledirex(nullptr, out, 1), -1);
  EXPECT_EQ(extractfiledirex("a", nullptr, 1), -1);

  const std::string longName = "a\\" + std::string(400, 'n');
  std::vector<char> exact(ZEB_FILECOMPONENT_OUT_UNITS);
  EXPECT_EQ(extractfiledirex(longName.c_str(), exact.data(), 2), 259);
  EXPECT_EQ(text(exact.data()), longName.substr(1, 259));
}

// ---- multi-selection lists ----------------------------------------------------------------------

template <class C>
bool collect(const C* path, void* context) {
  static_cast<std::vector<std::string>*>(context)->push_back(text(path));
  return true;
}

// The whole literal, NULs and terminator included: a list closed by an empty entry.
template <size_t N>
std::string listOf(const char (&entries)[N]) {
  return std::string(entries, N);
}

struct ListCase {
  std::string list;
  std::vector<std::string> paths;
};

const ListCase kListCases[] = {
    {listOf("C:\\dir\\one.txt\0"), {"C:\\dir\\one.txt"}},
    {listOf("C:\\dir\0a.txt\0b.txt\0"), {"C:\\dir\\a.txt", "C:\\dir\\b.txt"}},
    {listOf("C:\\\0a.txt\0b\0"), {"C:\\a.txt", "C:\\b"}},
    {listOf("/home/u\0a\0b\0"), {"/home/u/a", "/home/u/b"}},
    {listOf("dir\0a\0b\0"), {"dir\\a", "dir\\b"}},
    {listOf(""), {}},
};

TEST(FileNameList, SplitsDirectoryAndNamesInBothWidths) {
  for (const ListCase& c : kListCases) {
    SCOPED_TRACE(c.paths.empty() ? "" : c.paths[0]);
    const std::string& list = c.list;
    const ustring wlist = widen(list);
    std::vector<std::string> paths;
    std::vector<std::string> wpaths;
    EXPECT_EQ(ExtractFileNames(list.c_str(), collect<char>, &paths), int(c.paths.size()));
    EXPECT_EQ(ExtractFileNamesW(wlist.c_str(), collect<zwchar_t>, &wpaths), int(c.paths.size()));
    EXPECT_EQ(paths, c.paths);
    EXPECT_EQ(wpaths, c.paths);
    const std::string first = c.paths.empty() ? "" : c.paths[0];
    EXPECT_EQ(text(ExtractFileFirstName(list.c_str())), first);
    EXPECT_EQ(text(ExtractFileFirstName(wlist.c_str())), first);
  }
}

bool stopAfterFirst(const char*, void*) {
  return false;
}

TEST(FileNameList, VisitorStopsTheWalkAndNullVisitorCounts) {
  const char list[] = "C:\\d\0a\0b\0c\0";
  EXPECT_EQ(ExtractFileNames(list, stopAfterFirst, nullptr), 1);
  EXPECT_EQ(ExtractFileNames(list, nullptr, nullptr), 3);
  EXPECT_EQ(ExtractFileNames(nullptr, nullptr, nullptr), 0);
}

// ---- relative paths -----------------------------------------------------------------------------

struct RelativeCase {
  const char* base;
  const char* target;
  const char* relative;
};

const RelativeCase kRelativeCases[] = {
    {"C:\\a\\b", "C:\\a\\b\\c\\f.txt", "c\\f.txt"},
    {"C:\\a\\b\\", "c:/A/c/f.txt", "../c/f.txt"},
    {"C:\\a\\b", "C:\\a\\b", ""},
    {"C:\\a\\b", "C:\\a\\", "..\\"},
    {"C:\\ab", "C:\\abc\\f", "..\\abc\\f"},
    {"C:\\a\\b", "D:\\a\\b\\f", "D:\\a\\b\\f"},
    {"C:\\a", "C:a\\f", "C:a\\f"},
    {"/usr/lib", "/usr/share//doc/", "../share/doc/"},
    {"/usr/lib", "usr/lib/x", "usr/lib/x"},
    {"\\\\srv\\share\\d", "\\\\SRV\\share\\e\\f", "..\\e\\f"},
    {"\\\\srv\\share", "\\\\srv\\share\\f", "f"},
    {"\\\\srv\\share\\d", "\\\\other\\share\\d", "\\\\other\\share\\d"},
    {"a\\b", "", "..\\.."},
    {"", "x/y", "x/y"},
};

TEST(RelativePath, ComparesWholeComponentsWithinTheSameRoot) {
  for (const RelativeCase& c : kRelativeCases) {
    SCOPED_TRACE(std::string(c.base) + " -> " + c.target);
    const std::string expected = c.relative;
    const int size = static_cast<int>(expected.size());
    std::vector<char> out(expected.size() + 1);
    EXPECT_EQ(ExtractRelativePath(c.base, c.target, out.data(), unsigned(out.size())), size);
    EXPECT_EQ(text(out.data()), expected);
    std::vector<zwchar_t> wout(expected.size() + 1);
    const ustring base = widen(c.base);
    const ustring target = widen(c.target);
    EXPECT_EQ(
        ExtractRelativePathW(base.c_str(), target.c_str(), wout.data(), unsigned(wout.size())),
        size);
    EXPECT_EQ(text(wout.data()), expected);
    EXPECT_EQ(text(ExtractRelativePathW(base.c_str(), target.c_str())), expected);
  }
}

TEST(RelativePath, TooSmallOutReceivesNothingAndLearnsTheLength) {
  char out[4] = "old";
  EXPECT_EQ(ExtractRelativePath("C:\\a", "C:\\b", out, 4), 4);  // "..\\b" needs 5
  EXPECT_STREQ(out, "");
  EXPECT_EQ(ExtractRelativePath("C:\\a", "C:\\b", nullptr, 0), 4);
  EXPECT_EQ(ExtractRelativePath(nullptr, "x", out, 4), 1);
  EXPECT_STREQ(out, "x");
  EXPECT_EQ(ExtractRelativePath("C:\\a", nullptr, out, 4), 0);
}

// ---- removing the last directory ----------------------------------------------------------------

TEST(DelLastDir, RemovesOneDirectoryButNeverTheRoot) {
  const struct {
    const char* path;
    const char* result;
  } cases[] = {
      {"C:\\a\\b\\", "C:\\a\\"},
      {"C:\\a\\b", "C:\\a\\"},
      {"C:\\", "C:\\"},
      {"C:a", "C:"},
      {"/usr/lib//", "/usr/"},
      {"/usr", "/"},
      {"a", ""},
      {"\\\\srv\\share\\d\\", "\\\\srv\\share\\"},
      {"\\\\srv\\share\\", "\\\\srv\\share\\"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.path);
    std::string path = c.path;
    ustring wpath = widen(c.path);
    EXPECT_EQ(delLastDir(&path[0]), &path[0]);
    EXPECT_EQ(text(path.c_str()), c.result);
    EXPECT_EQ(text(delLastDirW(&wpath[0])), c.result);
  }
  EXPECT_EQ(delLastDir(nullptr), nullptr);
}

// ---- the path members of both string classes ----------------------------------------------------

template <class S>
class PathMembers : public ::testing::Test {
 protected:
  static S make(const std::string& s);
};
template <>
TAnsiString PathMembers<TAnsiString>::make(const std::string& s) {
  return TAnsiString(s.c_str());
}
template <>
TWideString PathMembers<TWideString>::make(const std::string& s) {
  return TWideString(widen(s).c_str());
}
using StringClasses = ::testing::Types<TAnsiString, TWideString>;
TYPED_TEST_SUITE(PathMembers, StringClasses);

TYPED_TEST(PathMembers, ExtractMembersReplaceTheContentAndKeepTheBuffer) {
  for (const PartsCase& c : kPartsCases) {
    SCOPED_TRACE(c.path);
    TypeParam s = this->make(c.path);
    EXPECT_EQ(text(TypeParam(s).extractFileName()), c.name);
    EXPECT_EQ(text(TypeParam(s).extractFileExt()), text(c.ext));
    EXPECT_EQ(text(TypeParam(s).extractFileNameNoExt()), c.nameNoExt);
    EXPECT_EQ(text(TypeParam(s).extractFileDriver()), c.drive);
    EXPECT_EQ(text(TypeParam(s).extractFileDir()), c.dir);
  }
  TypeParam s = this->make("C:\\dir\\file.txt");
  const auto* buffer = s.p();
  s.extractFileNameNoExt();
  EXPECT_EQ(s.p(), buffer);
  EXPECT_EQ(text(s), "file");
  EXPECT_TRUE(TypeParam().extractFileName().isEmpty());
}

TYPED_TEST(PathMembers, NormalizeFileNameSplashCollapsesRunsAndKeepsUncPrefix) {
  EXPECT_EQ(text(this->make("a//b\\/\\c").normalizeFileNameSplash()), "a\\b\\c");
  EXPECT_EQ(text(this->make("//x\\y").normalizeFileNameSplash('/')), "/x/y");
  EXPECT_EQ(text(this->make("\\\\server//share\\\\f").normalizeFileNameSplash()),
            "\\\\server\\share\\f");
  TypeParam s = this->make("a//b");
  s.setCapacity(40);
  s.normalizeFileNameSplash();
  EXPECT_EQ(s.getCapacity(), 40);
  EXPECT_TRUE(TypeParam().normalizeFileNameSplash().isEmpty());
}

TYPED_TEST(PathMembers, TrailingSeparator) {
  EXPECT_TRUE(this->make("a/").isEndWithBacksplash());
  EXPECT_FALSE(this->make("").isEndWithBacksplash());
  EXPECT_EQ(text(this->make("a").ensureEndWithBacksplash()), "a\\");
  EXPECT_EQ(text(this->make("a").ensureEndWithBacksplash('/')), "a/");
  EXPECT_EQ(text(this->make("a/").ensureEndWithBacksplash('\\')), "a/");
  EXPECT_EQ(text(TypeParam().ensureEndWithBacksplash()), "\\");
  EXPECT_EQ(text(this->make("a\\/").removeEndedBacksplash()), "a\\");
  EXPECT_EQ(text(this->make("a").removeEndedBacksplash()), "a");
}

TYPED_TEST(PathMembers, QuotingLooksAtTheFirstTwoUnits) {
  EXPECT_TRUE(this->make("\"abc").isQuoted());
  EXPECT_TRUE(this->make("a\"bc").isQuoted());
  EXPECT_FALSE(this->make("abc\"").isQuoted());
  EXPECT_FALSE(this->make("\"").isQuoted());
  EXPECT_EQ(text(this->make("a").ensureQuoted()), "\"a\"");
  EXPECT_EQ(text(this->make("\"a").ensureQuoted()), "\"a\"");
  EXPECT_EQ(text(this->make("a\"").ensureQuoted()), "\"a\"");
  TypeParam empty;
  empty.ensureQuoted();
  EXPECT_EQ(text(empty), "\"\"");
  EXPECT_GE(empty.getCapacity(), 3);
}

TYPED_TEST(PathMembers, FileNameFromUrlDropsQueryAndFragment) {
  EXPECT_EQ(text(this->make("http://h/d/file.zip?x=1/2#f").extractFileNameFromURL()), "file.zip");
  EXPECT_EQ(text(this->make("http://h/d/page#a/b").extractFileNameFromURL()), "page");
  EXPECT_EQ(text(this->make("http://h/").extractFileNameFromURL()), "");
  EXPECT_TRUE(TypeParam().extractFileNameFromURL().isEmpty());
}

// ---- making a text usable as a file name --------------------------------------------------------

TEST(NormalizeFileName, ReplacesRejectedUnitsAndTrimsTheEnd) {
  const struct {
    const zwchar_t* in;
    bool keepPath;
    const zwchar_t* out;
  } cases[] = {
      {ZW("a<b>c:d\"e|f?g*h\x01.txt"), false, ZW("a_b_c_d_e_f_g_h_.txt")},
      {ZW("C:\\dir/x:y. . "), false, ZW("C__dir_x_y")},
      {ZW("C:\\dir/x:y. . "), true, ZW("C:\\dir/x_y")},
      {ZW("1:\\x"), true, ZW("1_\\x")},
      {ZW("\u00e9t\u00e9\u4e2d.txt"), false, ZW("\u00e9t\u00e9\u4e2d.txt")},
      {ZW(" . "), false, ZW("")},
  };
  for (const auto& c : cases) {
    TWideString s(c.in);
    EXPECT_EQ(text(s.normalizeFileName(c.keepPath)), text(c.out)) << text(c.in);
  }
}

TEST(NormalizeFileName, EightBitTextGoesThroughItsCharset) {
  TAnsiString utf8("r\xC3\xA9sum\xC3\xA9?.txt ");
  utf8.normalizeFileName(MIB_UTF8, false);
  EXPECT_EQ(text(utf8), "r\xC3\xA9sum\xC3\xA9_.txt");
  TAnsiString ascii("C:\\a|b");
  ascii.normalizeFileName(MIB_ASCII, true);
  EXPECT_EQ(text(ascii), "C:\\a_b");
}

}  // namespace

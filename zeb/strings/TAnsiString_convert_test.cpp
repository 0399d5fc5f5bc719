// Tests of TAnsiString's conversion members: the encoding fromWideString picks, the in-place
// conversions of named charsets to UTF-8, what a failed conversion leaves, and the ANSI code page
// conversions of both string classes, switched between UTF-8 and GBK.

#include <gtest/gtest.h>

#include <string>

#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"

namespace {

using Units = std::basic_string<zwchar_t>;

const char kZhongwenUtf8[] = "\xE4\xB8\xAD\xE6\x96\x87";  // U+4E2D U+6587
const char kZhongwenGb[] = "\xD6\xD0\xCE\xC4";
const char kGrinningUtf8[] = "\xF0\x9F\x98\x80";  // U+1F600
const char kGrinningGb18030[] = "\x94\x39\xFC\x36";

std::string text(const TAnsiString& s) {
  return s.isEmpty() ? std::string() : s.p();
}

Units units(const TWideString& s) {
  return s.isEmpty() ? Units() : Units(s.p());
}

// Puts the process default ANSI code page back when a test that switches it ends.
struct DefaultCodePageRestorer {
  ~DefaultCodePageRestorer() { zeb_setAnsiCodePage(0); }
};

TEST(TAnsiStringFromWideString, OnlyAnsiAndGb2312SelectSomethingOtherThanUtf8) {
  const struct {
    tmibcharset cs;
    const zwchar_t* wide;
    const char* expected;
  } cases[] = {
      {MIB_UTF8, ZW("\u4E2D\u6587"), kZhongwenUtf8},
      {MIB_ASCII, ZW("\u4E2D\u6587"), kZhongwenUtf8},
      {MIB_GB2312, ZW("\u4E2D\u6587"), kZhongwenGb},
      {MIB_UTF8, ZW("\U0001F600"), kGrinningUtf8},
  };
  for (const auto& c : cases) {
    TAnsiString s("old");
    EXPECT_TRUE(s.fromWideString(c.wide, c.cs)) << c.cs;
    EXPECT_EQ(text(s), c.expected) << c.cs;
    EXPECT_EQ(s.getCapacity(), 3 * TWideString::length(c.wide) + 4) << c.cs;
  }
}

TEST(TAnsiStringFromWideString, FailureDiscardsTheOldContent) {
  TAnsiString s("old");
  EXPECT_FALSE(s.fromWideString(ZW("\U0001F600"), MIB_GB2312));  // not in GB2312
  EXPECT_NE(s.getBuffer(), nullptr);
  EXPECT_EQ(text(s), "");
  EXPECT_FALSE(s.fromWideString(nullptr, MIB_UTF8));
  EXPECT_EQ(s.getBuffer(), nullptr);
}

TEST(TAnsiStringFromWideString, QuickCopyStopsAtTheFirstNonAsciiUnit) {
  TAnsiString s;
  s.fromWideStringQuick(
      ZW("ab\u4E2D"
         "c"));
  EXPECT_EQ(text(s), "ab");
  EXPECT_EQ(s.getCapacity(), 6);
  s.fromWideStringQuick(ZW(""));
  EXPECT_EQ(s.getBuffer(), nullptr);
}

TEST(TAnsiStringConvertToUtf8, NamedCharsetsGiveKnownBytes) {
  const struct {
    bool (*convert)(TAnsiString&);
    const char* input;
    const char* expected;
    int capacity;  // 3 * (bytes converted + 1)
  } cases[] = {
      {[](TAnsiString& s) { return s.convertAnyToUtf8("gb2312"); }, kZhongwenGb, kZhongwenUtf8, 15},
      {[](TAnsiString& s) { return s.convertGB18030ToUTF8(); }, kGrinningGb18030, kGrinningUtf8,
       15},
      {[](TAnsiString& s) { return s.convertLatin9ToUTF8(); }, "\xA4", "\xE2\x82\xAC", 6},
      {[](TAnsiString& s) { return s.fromLatin9ToUTF8("1\xA4"); }, "old", "1\xE2\x82\xAC", 9},
  };
  for (const auto& c : cases) {
    TAnsiString s(c.input);
    EXPECT_TRUE(c.convert(s)) << c.expected;
    EXPECT_EQ(text(s), c.expected);
    EXPECT_EQ(s.getCapacity(), c.capacity) << c.expected;
  }
}

TEST(TAnsiStringConvertToUtf8, Utf8SourceIsLeftUntouched) {
  for (const char* name : {"UTF-8", "utf-8"}) {
    TAnsiString s("\xFF\xFE");  // not even valid UTF-8: nothing looks at it
    EXPECT_FALSE(s.convertAnyToUtf8(name)) << name;
    EXPECT_EQ(text(s), "\xFF\xFE") << name;
    EXPECT_EQ(s.getCapacity(), 3) << name;
  }
}

TEST(TAnsiStringConvertToUtf8, FailureKeepsContentAndCapacity) {
  const struct {
    const char* input;
    bool (*convert)(TAnsiString&);
  } cases[] = {
      {"a\xFF\xFF", [](TAnsiString& s) { return s.convertAnyToUtf8("gb2312"); }},
      {"ab\x81", [](TAnsiString& s) { return s.convertGB18030ToUTF8(); }},  // cut-off character
      {"a\xD6\xD0", [](TAnsiString& s) { return s.convertAnyToUtf8(nullptr); }},
  };
  for (const auto& c : cases) {
    TAnsiString s(c.input);
    EXPECT_FALSE(c.convert(s)) << c.input;
    EXPECT_EQ(text(s), c.input);
    EXPECT_EQ(s.getCapacity(), 4);
  }
  EXPECT_NE(TAnsiString().wstr(MIB_UTF8).getBuffer(), nullptr);  // "" for a null buffer
}

TEST(AnsiCodePageConversion, FollowsTheCodePageSwitch) {
  const DefaultCodePageRestorer restorer;
  zeb_setAnsiCodePage(65001);
  TAnsiString s(kZhongwenUtf8);
  EXPECT_TRUE(s.convertUTF8ToANSI());
  EXPECT_EQ(text(s), kZhongwenUtf8);

  zeb_setAnsiCodePage(936);
  EXPECT_TRUE(s.convertUTF8ToANSI());
  EXPECT_EQ(text(s), kZhongwenGb);
  EXPECT_EQ(s.getCapacity(), 21);  // 3 * (6 + 1)
  EXPECT_TRUE(s.convertANSIToUTF8());
  EXPECT_EQ(text(s), kZhongwenUtf8);
  EXPECT_EQ(s.getCapacity(), 21);  // larger than 3 * 4 + 3: kept
  TAnsiString fresh;
  EXPECT_TRUE(fresh.fromANSIToUTF8(kZhongwenGb));
  EXPECT_EQ(fresh.getCapacity(), 15);  // 3 * 4 + 3
  EXPECT_EQ(units(TWideString(kZhongwenGb, MIB_ANSI)), ZW("\u4E2D\u6587"));
  EXPECT_EQ(text(TWideString(ZW("\u4E2D\u6587")).ansi()), kZhongwenGb);
}

TEST(AnsiCodePageConversion, WideOperatorsConvertFirst) {
  const DefaultCodePageRestorer restorer;
  zeb_setAnsiCodePage(936);
  TAnsiString s;
  s = ZW("\u4E2D");
  s += ZW('\u6587');
  EXPECT_EQ(text(s), kZhongwenGb);
  EXPECT_EQ(text(TAnsiString("a") + ZW("\u4E2D")), "a\xD6\xD0");
  s += static_cast<const zwchar_t*>(nullptr);
  EXPECT_EQ(text(s), kZhongwenGb);
}

TEST(AnsiCodePageConversion, TextTheCodePageCannotHold) {
  const DefaultCodePageRestorer restorer;
  zeb_setAnsiCodePage(936);
  TAnsiString s;
  EXPECT_FALSE(s.fromUTF8ToANSI(kGrinningUtf8));  // the converter drops it: a failure
  EXPECT_EQ(text(s), kGrinningUtf8);
  EXPECT_TRUE(s.fromWideString(ZW("a\U0001F600"), MIB_ANSI));  // the OS pair writes '?'
  EXPECT_EQ(text(s), "a?");
}

// GB18030 can take four bytes for one Latin-9 byte: three such bytes fill all 3 * (3 + 1) bytes
// of the new buffer, leaving no room for the NUL. That counts as "did not fit".
TEST(AnsiCodePageConversion, ResultThatWouldFillTheWholeBufferKeepsTheContent) {
  const DefaultCodePageRestorer restorer;
  zeb_setAnsiCodePage(54936);
  TAnsiString s("\xE2\xBC\xA9");
  EXPECT_FALSE(s.convertAnyToANSI("Latin-9"));
  EXPECT_EQ(text(s), "\xE2\xBC\xA9");
  TAnsiString fits("\xE2\xBC");
  EXPECT_TRUE(fits.convertAnyToANSI("Latin-9"));
  EXPECT_EQ(fits.length(), 8);
  EXPECT_LT(fits.length(), fits.getCapacity());
}

}  // namespace

#include "zeb/charset/zeb_charset.h"

#include <gtest/gtest.h>

#include <limits.h>
#include <stdio.h>
#include <stdlib.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using WString = std::basic_string<zwchar_t>;

const char kFailed[] = "<failed>";
const WString kFailedW(u"<failed>");

// Conversions into buffers sized by the documented rules; a 0 result reads as kFailed/kFailedW.
std::string anyToAny(const char* to, const char* from, const std::string& in) {
  std::string out(3 * in.size() + 1, '\0');
  const int n = AnyToAny(to, from, &out[0], static_cast<int>(out.size()), in.data(),
                         static_cast<int>(in.size()));
  return n > 0 ? out.substr(0, static_cast<size_t>(n)) : kFailed;
}

std::string unicodeToAny(const char* to, const WString& in) {
  std::string out(3 * in.size() + 1, '\0');
  const int n = StrUnicodeToAny(to, &out[0], static_cast<int>(out.size()), in.c_str());
  return n > 0 ? out.substr(0, static_cast<size_t>(n)) : kFailed;
}

WString anyToUnicode(const char* from, const std::string& in) {
  WString out(2 * in.size() + 4, 0);
  const int n = AnyToUnicode(from, &out[0], static_cast<int>(out.size()), in.data(),
                             static_cast<int>(in.size()));
  return n > 0 ? out.substr(0, static_cast<size_t>(n)) : kFailedW;
}

// Switches the ANSI code page for one test and restores the previous one.
class ScopedCodePage {
 public:
  explicit ScopedCodePage(unsigned codePage) : saved_(zeb_getAnsiCodePage()) {
    zeb_setAnsiCodePage(codePage);
  }
  ~ScopedCodePage() { zeb_setAnsiCodePage(saved_); }

 private:
  unsigned saved_;
};

struct KnownText {
  const char* charset;
  std::string utf8;
  std::string encoded;
  WString utf16;
};

const KnownText kKnownTexts[] = {
    {"gb2312", "中文 ok", "\xD6\xD0\xCE\xC4 ok", u"中文 ok"},
    {"gb18030", "😀", "\x94\x39\xFC\x36", u"\U0001F600"},
    {"gb18030", "\U00020000", "\x95\x32\x82\x36", u"\U00020000"},
    {"gb18030", "中", "\xD6\xD0", u"中"},
    {"Latin-9", "€ café", "\xA4 caf\xE9", u"€ café"},
    {"BIG5", "中文", "\xA4\xA4\xA4\xE5", u"中文"},
    {"us-ascii", "plain text", "plain text", u"plain text"},
    {"UTF-8", "a😀z", "a\xF0\x9F\x98\x80z", u"a\xD83D\xDE00z"},
};

TEST(CharsetConversionTest, KnownTextsConvertBothWays) {
  for (const KnownText& t : kKnownTexts) {
    SCOPED_TRACE(t.charset);
    EXPECT_EQ(t.encoded, anyToAny(t.charset, "UTF-8", t.utf8));
    EXPECT_EQ(t.utf8, anyToAny("UTF-8", t.charset, t.encoded));
    EXPECT_EQ(t.utf16, anyToUnicode(t.charset, t.encoded));
    EXPECT_EQ(t.encoded, unicodeToAny(t.charset, t.utf16));
  }
}

TEST(CharsetConversionTest, CjkCodePagesConvertTextEndingInADoubleByteCharacter) {
  const char* const kCjk[] = {"GB2312", "GBK", "CP936", "GB18030", "BIG5", "CP950"};
  const std::string text = "ok \xE4\xB8\xAD\xE6\x96\x87";  // "ok " and two Han characters
  for (const char* from : kCjk) {
    const std::string encoded = anyToAny(from, "UTF-8", text);
    ASSERT_NE(encoded, kFailed) << from;
    for (const char* to : kCjk) {
      SCOPED_TRACE(std::string(from) + " -> " + to);
      const std::string converted = anyToAny(to, from, encoded);
      ASSERT_NE(converted, kFailed);
      EXPECT_EQ(anyToAny("UTF-8", to, converted), text);
    }
  }
  EXPECT_EQ(kFailed, anyToAny("CP936", "GB2312", "ok \xD6")) << "a cut sequence still fails";
}

TEST(CharsetConversionTest, NamedWrappersUseTheirCharsets) {
  const std::string utf8 = "中€";
  const WString utf16 = u"中€";
  char out[32];
  zwchar_t wide[16];
  EXPECT_EQ(3, StrUTF8ToGB2312(out, sizeof out, "中z", -1));
  EXPECT_STREQ("\xD6\xD0z", out);
  EXPECT_EQ(1, StrUTF8ToLatin9(out, sizeof out, "€", -1));
  EXPECT_STREQ("\xA4", out);
  EXPECT_EQ(2, StrUTF8ToASCII(out, sizeof out, "ab€", 2));
  EXPECT_EQ(2, StrUTF8ToAny("BIG5", out, sizeof out, "中", -1));
  EXPECT_STREQ("\xA4\xA4", out);

  EXPECT_EQ(3, StrGB2312ToUTF8(out, sizeof out, "\xD6\xD0"));
  EXPECT_STREQ("中", out);
  EXPECT_EQ(4, StrGB18030ToUTF8(out, sizeof out, "\x94\x39\xFC\x36"));
  EXPECT_STREQ("😀", out);
  EXPECT_EQ(3, StrLatin9ToUTF8(out, sizeof out, "\xA4"));
  EXPECT_STREQ("€", out);

  EXPECT_EQ(6, StrUnicodeToUtf8(out, sizeof out, utf16.c_str()));
  EXPECT_EQ(utf8, out);
  EXPECT_EQ(3, StrUnicodeToGB2312(out, sizeof out, u"中a"));
  EXPECT_EQ(1, StrUnicodeToLatin9(out, sizeof out, u"€"));
  EXPECT_EQ(2, StrUnicodeToASCII(out, sizeof out, u"ok"));

  EXPECT_EQ(2, StrUtf8ToUnicode(wide, 16, utf8.c_str(), -1));
  EXPECT_EQ(utf16, wide);
  EXPECT_EQ(1, StrGB2312ToUnicode(wide, 16, "\xD6\xD0", -1));
  EXPECT_EQ(WString(u"中"), wide);
  EXPECT_EQ(1, StrLatin9ToUnicode(wide, 16, "\xA4", -1));
  EXPECT_EQ(WString(u"€"), wide);
  EXPECT_EQ(2, Big5CodeToUnicode(wide, 16, "\xA4\xA4\xA4\xE5", -1));
  EXPECT_EQ(WString(u"中文"), wide);
  EXPECT_EQ(3, StrASCIIToUnicode(wide, 16, "abc"));
  EXPECT_EQ(WString(u"abc"), wide);
}

TEST(CharsetConversionTest, TextTheTargetCannotHoldOrInvalidInputFails) {
  EXPECT_EQ(kFailed, anyToAny("Latin-9", "UTF-8", "a中b"));
  EXPECT_EQ(kFailed, anyToAny("us-ascii", "UTF-8", "a中b"));
  EXPECT_EQ(kFailed, unicodeToAny("gb2312", u"a😀"));
  EXPECT_EQ(kFailed, unicodeToAny("UTF-8", u"a\xD800z"));  // unpaired surrogate
  EXPECT_EQ(kFailedW, anyToUnicode("UTF-8", "a\xFFz"));
  EXPECT_EQ(kFailedW, anyToUnicode("UTF-8", "a\xE4\xB8"));  // truncated sequence
  EXPECT_EQ(kFailedW, anyToUnicode("UTF-8", "\xC0\xAF"));   // overlong '/'
  EXPECT_EQ(kFailed, anyToAny("no-such-charset", "UTF-8", "abc"));
  EXPECT_EQ(kFailedW, anyToUnicode("no-such-charset", "abc"));
}

TEST(CharsetConversionTest, BadArgumentsGiveZeroAndLeaveTheOutputAlone) {
  char out[8] = "xxxxxxx";
  zwchar_t wide[4] = {'x', 'x', 'x', 0};
  EXPECT_EQ(0, AnyToAny("UTF-8", "UTF-8", out, sizeof out, nullptr, -1));
  EXPECT_EQ(0, AnyToAny(nullptr, "UTF-8", out, sizeof out, "a", -1));
  EXPECT_EQ(0, AnyToAny("UTF-8", "", out, sizeof out, "a", -1));
  EXPECT_EQ(0, AnyToAny("UTF-8", "UTF-8", nullptr, 8, "a", -1));
  EXPECT_EQ(0, AnyToAny("UTF-8", "UTF-8", out, 0, "a", -1));
  EXPECT_EQ(0, AnyToAny("UTF-8", "UTF-8", out, -5, "a", -1));
  EXPECT_EQ(0, StrUnicodeToUtf8(out, sizeof out, nullptr));
  EXPECT_EQ(0, StrUnicodeToUtf8(out, sizeof out, u""));
  EXPECT_STREQ("xxxxxxx", out);
  EXPECT_EQ(0, AnyToUnicode("UTF-8", wide, 4, nullptr, -1));
  EXPECT_EQ(0, AnyToUnicode(nullptr, wide, 4, "a", -1));
  EXPECT_EQ(0, AnyToUnicode("UTF-8", wide, 0, "", -1));
  EXPECT_EQ(0, AnyToUnicode("UTF-8", wide, INT_MIN, "", -1));
  EXPECT_EQ(WString(u"xxx"), wide);
  EXPECT_EQ(0, AnyToUnicode("UTF-8", nullptr, 4, "a", -1));
}

TEST(CharsetOutputTest, EightBitResultsZeroFillTheRestOfTheOutput) {
  std::string out(10, 'x');
  ASSERT_EQ(4, StrUTF8ToGB2312(&out[0], 10, "中文", -1));
  EXPECT_EQ(std::string("\xD6\xD0\xCE\xC4\0\0\0\0\0\0", 10), out);
}

TEST(CharsetOutputTest, UnicodeResultsWriteOneNulAfterTheLastUnit) {
  WString out(6, 'x');
  ASSERT_EQ(2, StrUtf8ToUnicode(&out[0], 6, "ab", -1));
  EXPECT_EQ(WString(u"ab\0xxx", 6), out);

  WString exact(2, 'x');
  EXPECT_EQ(2, StrUtf8ToUnicode(&exact[0], 2, "ab", -1));
  EXPECT_EQ(WString(u"ab"), exact);
}

TEST(CharsetOutputTest, EmptyInputToUnicodeWritesANul) {
  zwchar_t out[3] = {'x', 'x', 'x'};
  EXPECT_EQ(0, StrUtf8ToUnicode(out, 3, "", -1));
  EXPECT_EQ(0, out[0]);
  out[0] = 'x';
  EXPECT_EQ(0, AnyToUnicode("gb2312", out, 3, "abc", 0));
  EXPECT_EQ(0, out[0]);
  EXPECT_EQ('x', out[1]);
}

TEST(CharsetOutputTest, OutputTooSmallFails) {
  char out[4];
  EXPECT_EQ(0, StrUTF8ToGB2312(out, 3, "中文", -1));
  EXPECT_EQ(0, StrUnicodeToUtf8(out, 4, u"中文"));
  EXPECT_EQ(3, StrUnicodeToUtf8(out, 4, u"中"));
  zwchar_t wide[2];
  EXPECT_EQ(0, StrUtf8ToUnicode(wide, 1, "ab", -1));
  EXPECT_EQ(0, StrUtf8ToUnicode(wide, 1, "😀", -1));  // a surrogate pair needs 2 units
}

TEST(AnsiCodePageTest, Utf8CodePageConvertsWithNulCountedAndReplacements) {
  const ScopedCodePage utf8(65001);
  EXPECT_EQ(65001u, zeb_getAnsiCodePage());
  zwchar_t wide[8];
  EXPECT_EQ(3, StrANSIToUnicode(nullptr, 0, "中文"));
  EXPECT_EQ(3, StrANSIToUnicode(wide, 8, "中文"));
  EXPECT_EQ(WString(u"中文"), wide);
  EXPECT_EQ(0, StrANSIToUnicode(wide, 2, "中文"));
  EXPECT_EQ(4, StrANSIToUnicode(wide, 8, "a\xFFz"));
  EXPECT_EQ(WString(u"a\xFFFDz"), wide);
  EXPECT_EQ(0, StrANSIToUnicode(wide, -1, "a"));
  EXPECT_EQ(0, StrANSIToUnicode(nullptr, 8, "a"));

  char out[8];
  EXPECT_EQ(7, StrUnicodeToANSI(nullptr, 0, u"中文"));
  EXPECT_EQ(7, StrUnicodeToANSI(out, 8, u"中文"));
  EXPECT_STREQ("中文", out);
  EXPECT_EQ(0, StrUnicodeToANSI(out, 6, u"中文"));
}

TEST(AnsiCodePageTest, SwitchingToGbkChangesConversionsAndTheName) {
  const ScopedCodePage gbk(936);
  EXPECT_EQ(936u, zeb_getAnsiCodePage());
  const char* name = MIBCharsetValueToName(MIB_ANSI);
  EXPECT_STREQ("CP936", name);

  char out[16];
  EXPECT_EQ(5, StrUnicodeToANSI(out, sizeof out, u"中文"));
  EXPECT_STREQ("\xD6\xD0\xCE\xC4", out);
  EXPECT_EQ(3, StrUnicodeToANSI(out, sizeof out, u"a😀"));  // GBK cannot hold U+1F600
  EXPECT_STREQ("a?", out);
  EXPECT_EQ(4, StrUnicodeToANSI(out, sizeof out, u"\xDC00yz"));  // unpaired surrogate
  EXPECT_STREQ("?yz", out);
  zwchar_t wide[8];
  EXPECT_EQ(3, StrANSIToUnicode(wide, 8, "\xD6\xD0\xCE\xC4"));
  EXPECT_EQ(WString(u"中文"), wide);

  zeb_setAnsiCodePage(65001);
  EXPECT_STREQ("UTF-8", MIBCharsetValueToName(MIB_ANSI));
  EXPECT_STREQ("CP936", name);  // names handed out earlier stay valid
  zeb_setAnsiCodePage(54936);
  EXPECT_STREQ("GB18030", MIBCharsetValueToName(MIB_ANSI));
}

// Each case runs in a fresh process, where the default code page has not been read yet.
TEST(AnsiCodePageDeathTest, DefaultComesFromTheEnvironment) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const struct {
    const char* zebAcp;
    const char* lcAll;
    const char* lang;
    const char* expected;
  } cases[] = {
      {nullptr, nullptr, "zh_CN.GBK", "cp=936;"},
      {nullptr, nullptr, "zh_CN.gb18030@x", "cp=54936;"},
      {nullptr, "zh_TW.Big5", "zh_CN.GBK", "cp=950;"},
      {nullptr, "", "zh_CN.gb2312", "cp=936;"},
      {nullptr, nullptr, "C", "cp=65001;"},
      {nullptr, nullptr, "de_DE.ISO-8859-15", "cp=65001;"},
      {"1252", "zh_CN.GBK", nullptr, "cp=1252;"},
      {"junk", nullptr, "en_US.utf8", "cp=65001;"},
  };
  for (const auto& c : cases) {
    const auto setOrClear = [](const char* variable, const char* value) {
      if (value != nullptr) {
        setenv(variable, value, 1);
      } else {
        unsetenv(variable);
      }
    };
    EXPECT_EXIT(
        {
          setOrClear("ZEB_ACP", c.zebAcp);
          setOrClear("LC_ALL", c.lcAll);
          unsetenv("LC_CTYPE");
          setOrClear("LANG", c.lang);
          fprintf(stderr, "cp=%u;", zeb_getAnsiCodePage());
          exit(0);
        },
        ::testing::ExitedWithCode(0), c.expected);
  }
}

TEST(MibNameTest, NamesAtTheEdgesOfTheTable) {
  const struct {
    int mib;
    const char* name;
  } cases[] = {
      {3, "ASCII"},     {106, "UTF-8"},  {113, "GBK"},      {1000, "csUnicode"}, {2010, "IBM852"},
      {2025, "GB2312"}, {2026, "BIG5"},  {2259, "TIS_620"}, {0, nullptr},        {2, nullptr},
      {107, nullptr},   {2260, nullptr}, {-1, nullptr},     {INT_MIN, nullptr},  {INT_MAX, nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.mib);
    const char* name = MIBCharsetValueToName(c.mib);
    if (c.name == nullptr) {
      EXPECT_EQ(nullptr, name);
    } else {
      EXPECT_STREQ(c.name, name);
    }
  }
}

TEST(MibNameTest, TableHas254Rows) {
  int rows = 0;
  for (int mib = 0; mib < 2260; ++mib) {
    if (mib != MIB_ANSI && MIBCharsetValueToName(mib) != nullptr) ++rows;
  }
  EXPECT_EQ(254, rows);
}

TEST(ConverterCacheTest, FailuresDoNotAffectLaterCallsOnTheSameConverter) {
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(kFailed, anyToAny("gb2312", "UTF-8", "a\xE4\xB8"));  // ends mid-sequence
    EXPECT_EQ("\xD6\xD0", anyToAny("gb2312", "UTF-8", "中"));
    EXPECT_EQ(kFailed, anyToAny("no-such-charset", "UTF-8", "a"));
  }
}

TEST(ConverterCacheTest, ThreadsGetIdenticalResultsAcrossManyCalls) {
  // More charset pairs than a thread keeps open, so converters are also replaced on the way.
  const auto convertAll = [] {
    std::vector<std::string> results;
    for (const KnownText& t : kKnownTexts) {
      results.push_back(anyToAny(t.charset, "UTF-8", t.utf8));
      results.push_back(anyToAny("UTF-8", t.charset, t.encoded));
    }
    return results;
  };
  const std::vector<std::string> expected = convertAll();
  std::vector<int> mismatches(4, 0);
  std::vector<std::thread> threads;
  for (size_t i = 0; i < mismatches.size(); ++i) {
    threads.emplace_back([&, i] {
      for (int round = 0; round < 300; ++round) {
        if (convertAll() != expected) ++mismatches[i];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::vector<int>(4, 0), mismatches);
}

// Converts text when destroyed. Made before its thread's first conversion, it is destroyed after
// that thread's converter cache.
struct ConvertsWhenDestroyed {
  std::string* result;
  ~ConvertsWhenDestroyed() { *result = anyToAny("gb2312", "UTF-8", "中"); }
};

TEST(ConverterCacheTest, ConversionsStillWorkWhileAThreadEnds) {
  std::string result;
  std::thread([&result] {
    thread_local ConvertsWhenDestroyed late{nullptr};
    late.result = &result;
    EXPECT_EQ("\xD6\xD0", anyToAny("gb2312", "UTF-8", "中"));
  }).join();
  EXPECT_EQ("\xD6\xD0", result);
}

}  // namespace

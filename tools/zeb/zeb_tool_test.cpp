// Tests of the zeb tool, each run as a process on real files in a temporary folder: known
// outputs, round trips, and each kind of bad input with its exit status and message.
#include <sys/wait.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "testing/temp_dir.h"

namespace {

using zeb::testing::TempDir;

struct ToolResult {
  int status;
  std::string out;
  std::string err;
};

std::string quoted(const std::string& arg) {
  std::string text = "'";
  for (const char c : arg) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

// Runs zeb with `args`, `input` on its standard input, in a fresh folder.
class Tool {
 public:
  ToolResult operator()(const std::vector<std::string>& args, const std::string& input = "") const {
    dir_.writeFile(".in", input);
    std::string command = environment_ + quoted(ZEB_TOOL_PATH);
    for (const std::string& arg : args) command += " " + quoted(arg);
    command += " <" + quoted(dir_.filePath(".in")) + " >" + quoted(dir_.filePath(".out")) +
               " 2>" + quoted(dir_.filePath(".err"));
    const int wait = std::system(command.c_str());
    return {WIFEXITED(wait) ? WEXITSTATUS(wait) : -1, dir_.readFile(".out"),
            dir_.readFile(".err")};
  }
  const TempDir& dir() const { return dir_; }
  std::string path(const std::string& name) const { return dir_.filePath(name); }
  // Runs the tool from now on with `name` set to `value` in its environment.
  void setEnvironment(const std::string& name, const std::string& value) {
    environment_ += name + "=" + quoted(value) + " ";
  }

 private:
  TempDir dir_;
  std::string environment_;
};

const std::string kGb18030Poem = "\xB4\xB2\xC7\xB0\xC3\xF7\xD4\xC2\xB9\xE2\n";  // a line of Han text
const std::string kUtf8Poem =
    "\xE5\xBA\x8A\xE5\x89\x8D\xE6\x98\x8E\xE6\x9C\x88\xE5\x85\x89\n";

TEST(ToolConventions, HelpVersionAndUsageErrors) {
  Tool zeb;
  const ToolResult help = zeb({"--help"});
  EXPECT_EQ(help.status, 0);
  for (const char* command : {"convert", "hash", "base64", "qp", "grep", "date", "lunar", "csv",
                              "ini", "reg", "similar", "vcard", "pinyin", "log"}) {
    EXPECT_NE(help.out.find(command), std::string::npos) << command;
  }
  EXPECT_EQ(zeb({"convert", "--help"}).status, 0);
  const ToolResult version = zeb({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out.rfind("zeb ", 0), 0u);
  for (const std::vector<std::string>& wrong :
       {std::vector<std::string>{}, {"nosuchcommand"}, {"hash", "--nosuchflag"}, {"grep"},
        {"convert", "-f", "UTF-8"}, {"date", "2024-02-30"}, {"log", "level", "d", "loud"}}) {
    const ToolResult run = zeb(wrong);
    EXPECT_EQ(run.status, 2) << (wrong.empty() ? "" : wrong[0]);
    EXPECT_EQ(run.err.rfind("zeb: ", 0), 0u) << run.err;
  }
}

TEST(ToolConvert, ConvertsFilesAndStandardInputBothWays) {
  Tool zeb;
  zeb.dir().writeFile("poem.txt", kGb18030Poem);
  const ToolResult utf8 = zeb({"convert", "-f", "GB18030", "-t", "UTF-8", zeb.path("poem.txt")});
  EXPECT_EQ(utf8.status, 0) << utf8.err;
  EXPECT_EQ(utf8.out, kUtf8Poem);
  const ToolResult back = zeb({"convert", "--from", "106", "--to", "GB18030"}, utf8.out);
  EXPECT_EQ(back.status, 0) << back.err;
  EXPECT_EQ(back.out, kGb18030Poem);
  const ToolResult twice = zeb({"convert", "-f", "GB18030", "-t", "UTF-8", zeb.path("poem.txt"), "-"},
                        kGb18030Poem);
  EXPECT_EQ(twice.out, kUtf8Poem + kUtf8Poem);
  const ToolResult list = zeb({"convert", "--list"});
  EXPECT_NE(list.out.find("106\tUTF-8\n"), std::string::npos);
  EXPECT_NE(list.out.find("2025\t"), std::string::npos);
}

TEST(ToolConvert, BadInputFailsWithOneMessageAndNoOutput) {
  Tool zeb;
  zeb.dir().writeFile("good.txt", "fine\n");
  zeb.dir().writeFile("bad.txt", "\xFF\xFE broken");
  struct Case {
    std::vector<std::string> args;
    const char* message;
  } cases[] = {
      {{"convert", "-f", "NO-SUCH-SET", "-t", "UTF-8", zeb.path("good.txt")}, "unknown charset"},
      {{"convert", "-f", "9999", "-t", "UTF-8", zeb.path("good.txt")}, "unknown charset"},
      {{"convert", "-f", "UTF-8", "-t", "GB2312", zeb.path("missing.txt")}, "missing.txt"},
      {{"convert", "-f", "UTF-8", "-t", "GB2312", zeb.path("good.txt"), zeb.path("bad.txt")},
       "bad.txt"},
  };
  for (const Case& c : cases) {
    const ToolResult run = zeb(c.args);
    EXPECT_EQ(run.status, 1) << c.message;
    EXPECT_NE(run.err.find(c.message), std::string::npos) << run.err;
    EXPECT_EQ(run.out, "") << "nothing is written when any input fails";
  }
}

TEST(ToolHash, PrintsOneLinePerInputLikeMd5sum) {
  Tool zeb;
  zeb.dir().writeFile("a.txt", "hello");
  const ToolResult run = zeb({"hash", "--hash32", zeb.path("a.txt"), "-"}, "hello");
  ASSERT_EQ(run.status, 0) << run.err;
  const size_t firstEnd = run.out.find('\n');
  const std::string first = run.out.substr(0, firstEnd);
  EXPECT_EQ(first.size(), 8 + 2 + zeb.path("a.txt").size());
  EXPECT_EQ(first.substr(8), "  " + zeb.path("a.txt"));
  EXPECT_EQ(run.out.substr(firstEnd + 1), first.substr(0, 8) + "  -\n") << "same bytes, same hash";
  const ToolResult wide = zeb({"hash", "--hash64"}, "hello");
  EXPECT_EQ(wide.out.size(), 16 + 3 + 1u);
  EXPECT_EQ(zeb({"hash"}, "hello").out, "5d41402abc4b2a76b9719d911017c592  -\n") << "MD5";
  EXPECT_EQ(zeb({"hash", "--crc32"}, "123456789").out, "cbf43926  -\n");
  const ToolResult missing = zeb({"hash", zeb.path("missing")});
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.err.find("missing"), std::string::npos);
}

TEST(ToolCodecs, EncodeAndDecodeRoundTrip) {
  Tool zeb;
  EXPECT_EQ(zeb({"base64"}, "hello").out, "aGVsbG8=\n");
  EXPECT_EQ(zeb({"base64", "-d"}, "aGVsbG8=\n").out, "hello");
  EXPECT_EQ(zeb({"qp"}, "a=b c").out, "a=3Db=20c\n");
  EXPECT_EQ(zeb({"qp", "-d"}, "a_b").out, "a b") << "'_' is a space, as in headers";
  std::string bytes;
  for (int i = 0; i < 256; ++i) {
    if (i != '_') bytes += static_cast<char>(i);
  }
  bytes += bytes;
  zeb.dir().writeFile("bytes.bin", bytes);
  for (const char* codec : {"base64", "qp"}) {
    SCOPED_TRACE(codec);
    const ToolResult encoded = zeb({codec, zeb.path("bytes.bin")});
    ASSERT_EQ(encoded.status, 0);
    EXPECT_EQ(zeb({codec, "-d"}, encoded.out).out, bytes);
  }
}

TEST(ToolGrep, WholeLineWildcardMatchesWithFileNamesForSeveralInputs) {
  Tool zeb;
  zeb.dir().writeFile("one.txt", "report-2024.csv\r\nnotes.txt\nreport.csv");
  zeb.dir().writeFile("two.txt", "old-report.csv\n");
  const ToolResult one = zeb({"grep", "report*.csv", zeb.path("one.txt")});
  EXPECT_EQ(one.status, 0);
  EXPECT_EQ(one.out, "report-2024.csv\nreport.csv\n");
  const ToolResult two = zeb({"grep", "*report?csv", zeb.path("one.txt"), zeb.path("two.txt")});
  EXPECT_EQ(two.out, zeb.path("one.txt") + ":report.csv\n" + zeb.path("two.txt") +
                         ":old-report.csv\n");
  EXPECT_EQ(zeb({"grep", "nothing*"}, "a\nb\n").status, 1);
}

TEST(ToolDate, EveryStyleOrOne) {
  Tool zeb;
  const ToolResult all = zeb({"date", "2024-02-29"});
  EXPECT_EQ(all.status, 0);
  EXPECT_NE(all.out.find("asDateTimeString(0): 2024-02-29 00:00:00\n"), std::string::npos);
  EXPECT_NE(all.out.find("asDateString(1):     20240229\n"), std::string::npos);
  EXPECT_EQ(zeb({"date", "2024-02-29", "--style", "0"}).out, "2024-02-29 00:00:00\n");
  EXPECT_EQ(zeb({"date"}).status, 0);
  EXPECT_EQ(zeb({"date", "2024-02-29", "--style", "99"}).status, 2);
}

TEST(ToolLunar, LunarDateYearAndSolarTermsInUtf8) {
  Tool zeb;
  const ToolResult run = zeb({"lunar", "2023-03-22"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("lunar: 2023 \xE6\xB6\xA6\xE4\xBA\x8C\xE6\x9C\x88\xE5\x88\x9D\xE4\xB8\x80\n"),
            std::string::npos)
      << run.out;  // the first day of the leap second month
  EXPECT_NE(run.out.find("  2023-01-05 \xE5\xB0\x8F\xE5\xAF\x92\n"), std::string::npos);
  EXPECT_EQ(zeb({"lunar", "1800-01-01"}).status, 1);
}

TEST(ToolCsv, RecordsAsTsvOrJsonInUtf8) {
  Tool zeb;
  zeb.dir().writeFile("t.csv", "name,note\r\n\"Li, Lei\",\"say \"\"hi\"\"\ttab\"\r\n\xD6\xD0\r\n");
  const ToolResult tsv = zeb({"csv", zeb.path("t.csv"), "--charset", "GB18030"});
  ASSERT_EQ(tsv.status, 0) << tsv.err;
  EXPECT_EQ(tsv.out, "name\tnote\nLi, Lei\tsay \"hi\"\\ttab\n\xE4\xB8\xAD\n");
  const ToolResult json = zeb({"csv", zeb.path("t.csv"), "--json", "--charset", "GB18030"});
  EXPECT_EQ(json.out, "[\"name\",\"note\"]\n[\"Li, Lei\",\"say \\\"hi\\\"\\u0009tab\"]\n"
                      "[\"\xE4\xB8\xAD\"]\n");
  const ToolResult invalid = zeb({"csv", zeb.path("t.csv")});
  EXPECT_EQ(invalid.status, 1) << "GB18030 bytes are not UTF-8";
  EXPECT_EQ(invalid.out, "");
}

TEST(ToolIni, SetGetDeleteAndListKeepComments) {
  Tool zeb;
  zeb.dir().writeFile("a.ini", "; settings\n[window]\n# pixels\nwidth=800\n");
  const std::string ini = zeb.path("a.ini");
  EXPECT_EQ(zeb({"ini", "set", ini, "window", "width", "1024"}).status, 0);
  EXPECT_EQ(zeb({"ini", "get", ini, "window", "width"}).out, "1024\n");
  EXPECT_NE(zeb.dir().readFile("a.ini").find("# pixels"), std::string::npos);
  EXPECT_NE(zeb.dir().readFile("a.ini").find("; settings"), std::string::npos);
  EXPECT_EQ(zeb({"ini", "set", ini, "user", "name", ""}).status, 0);
  EXPECT_EQ(zeb({"ini", "list", ini}).out, "[user]\nname=\n[window]\nwidth=1024\n");
  EXPECT_EQ(zeb({"ini", "del", ini, "user"}).status, 0);
  EXPECT_EQ(zeb({"ini", "list", ini, "user"}).out, "");
  EXPECT_EQ(zeb({"ini", "get", ini, "window", "height"}).status, 1);
  EXPECT_EQ(zeb({"ini", "get", zeb.path("missing.ini"), "a", "b"}).status, 1);
  EXPECT_EQ(zeb({"ini", "set", zeb.path("new.ini"), "s", "k", "v"}).status, 0);
  EXPECT_EQ(zeb({"ini", "get", zeb.path("new.ini"), "s", "k"}).out, "v\n");
  EXPECT_EQ(zeb({"ini", "frob", ini}).status, 2);
}

TEST(ToolReg, ValuesWrittenByOneProcessAreReadByTheNext) {
  Tool zeb;
  zeb.setEnvironment("ZEB_REGISTRY_DIR", zeb.path("registry"));
  const std::string key = "HKCU\\Software\\zebworks\\tool";
  EXPECT_EQ(zeb({"reg", "set", key, "user", "\xE6\x9D\x8E\xE9\x9B\xB7"}).status, 0);
  EXPECT_EQ(zeb({"reg", "set", key, "runs", "0x10", "--type", "dword"}).status, 0);
  EXPECT_EQ(zeb({"reg", "set", key, "big", "4294967296", "--type", "qword"}).status, 0);
  EXPECT_EQ(zeb({"reg", "set", key, "raw", "00ff", "--type", "binary"}).status, 0);
  EXPECT_EQ(zeb({"reg", "set", key + "\\sub", "list", "a\\0b", "--type", "multi"}).status, 0);
  EXPECT_EQ(zeb({"reg", "get", "HKEY_CURRENT_USER\\Software\\zebworks\\tool", "user"}).out,
            "\xE6\x9D\x8E\xE9\x9B\xB7\n");
  EXPECT_EQ(zeb({"reg", "get", key, "runs"}).out, "16\n");
  EXPECT_EQ(zeb({"reg", "get", key + "\\sub", "list"}).out, "a\nb\n");
  EXPECT_EQ(zeb({"reg", "list", key}).out,
            "user\tREG_SZ\t\xE6\x9D\x8E\xE9\x9B\xB7\nruns\tREG_DWORD\t16\n"
            "big\tREG_QWORD\t4294967296\nraw\tREG_BINARY\t00ff\n" + key + "\\sub\n");
  EXPECT_EQ(zeb({"reg", "tree", "HKCU\\Software"}).out, "zebworks\n  tool\n    sub\n");
  EXPECT_EQ(zeb({"reg", "del", key, "runs"}).status, 0);
  const ToolResult gone = zeb({"reg", "get", key, "runs"});
  EXPECT_EQ(gone.status, 1);
  EXPECT_NE(gone.err.find("not found"), std::string::npos);
  EXPECT_EQ(zeb({"reg", "del", key}).status, 0);
  EXPECT_EQ(zeb({"reg", "list", key}).status, 1);
  EXPECT_EQ(zeb({"reg", "set", key, "n", "-1", "--type", "dword"}).status, 2);
  EXPECT_EQ(zeb({"reg", "set", key, "n", "0fg", "--type", "binary"}).status, 2);
  EXPECT_EQ(zeb({"reg", "get", "HKXX\\Software", "n"}).status, 2);
}

TEST(ToolVcard, CardsInUtf8AndBadCardsReported) {
  Tool zeb;
  zeb.dir().writeFile("book.vcf",
                      "BEGIN:VCARD\r\nVERSION:2.1\r\nN;CHARSET=GB2312:\xD5\xC5;\xCE\xB0\r\n"
                      "FN;CHARSET=GB2312:\xD5\xC5\xCE\xB0\r\nTEL;CELL:138\r\nEND:VCARD\r\n"
                      "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ada\r\nEMAIL:ada@example.org\r\n"
                      "END:VCARD\r\nBEGIN:VCARD\r\nVERSION:3.0\r\nFN:Cut\r\n");
  const ToolResult text = zeb({"vcard", zeb.path("book.vcf")});
  EXPECT_EQ(text.status, 1) << "the last card is not terminated";
  EXPECT_NE(text.err.find("card 3"), std::string::npos);
  EXPECT_EQ(text.out.substr(0, text.out.find("\n\n") + 2),
            "FN: \xE5\xBC\xA0\xE4\xBC\x9F\nN: \xE5\xBC\xA0;\xE4\xBC\x9F\nTEL: 138\n\n");
  const ToolResult json = zeb({"vcard", zeb.path("book.vcf"), "--json"});
  EXPECT_NE(json.out.find("{\"FN\":[\"Ada\"],\"EMAIL\":[\"ada@example.org\"]}\n"),
            std::string::npos)
      << json.out;
}

TEST(ToolPinyin, TonesNumbersPlainAndInitials) {
  Tool zeb;
  const std::string name = "\xE5\xBC\xA0\xE4\xB8\x89";  // two Han characters, a name
  EXPECT_EQ(zeb({"pinyin", name}).out, "zh\xC4\x81ng s\xC4\x81n\n");
  EXPECT_EQ(zeb({"pinyin", "--tones", "numbers", name, "ok"}).out, "zhang1 san1 ok\n");
  EXPECT_EQ(zeb({"pinyin", "--tones", "none", name}).out, "zhang san\n");
  EXPECT_EQ(zeb({"pinyin", "--initials", name}).out, "zs\n");
  EXPECT_EQ(zeb({"pinyin", "--tones", "loud", name}).status, 2);
}

TEST(ToolSimilar, EveryScore) {
  Tool zeb;
  const ToolResult run = zeb({"similar", "kitten", "sitting"});
  ASSERT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("distance: 3\n"), std::string::npos);
  EXPECT_NE(run.out.find("proportion: 57\n"), std::string::npos);
  EXPECT_EQ(zeb({"similar", "only-one"}).status, 2);
}

TEST(ToolLog, LevelMarkersReplaceEachOther) {
  Tool zeb;
  const std::string logs = zeb.path("logs");
  EXPECT_EQ(zeb({"log", "level", logs, "debug"}).status, 0);
  EXPECT_TRUE(std::filesystem::exists(logs + "/mdebug"));
  EXPECT_EQ(zeb({"log", "level", logs, "2"}).status, 0);
  EXPECT_FALSE(std::filesystem::exists(logs + "/mdebug"));
  EXPECT_TRUE(std::filesystem::exists(logs + "/merror"));
  EXPECT_EQ(zeb({"log", "level", logs, "vb", "--file"}).status, 0);
  EXPECT_EQ(zeb({"log", "level", logs}).out,
            "global: error\nfile: vb\nconsole: (no marker)\n");
}

}  // namespace

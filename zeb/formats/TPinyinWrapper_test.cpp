// Tests of pinyin conversion: names and phrases in every style, several readings, characters
// outside the BMP, mixed text in each input form, and the built-in table against the installed
// Unihan readings.

#include "zeb/formats/TPinyinWrapper.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using zeb::TPinyinWrapper;

std::string text(const TAnsiString& s) { return s.isEmpty() ? std::string() : s.p(); }

std::string pinyin(const char* utf8, int style = TPinyinWrapper::ToneMarks, const char* sep = " ") {
  return text(TPinyinWrapper::fromUTF8(utf8, -1, style, sep));
}

TEST(PinyinText, NamesAndPhrasesInEveryStyle) {
  EXPECT_EQ(pinyin("张三"), "zhāng sān");
  EXPECT_EQ(pinyin("中华人民共和国"), "zhōng huá rén mín gòng hé guó");
  EXPECT_EQ(pinyin("张三", TPinyinWrapper::ToneNumbers), "zhang1 san1");
  EXPECT_EQ(pinyin("李小龙", TPinyinWrapper::Plain, ""), "lixiaolong");
  EXPECT_EQ(pinyin("欧阳娜娜", TPinyinWrapper::Initials, ""), "oynn");
  // u-umlaut: marked in the tone form, 'v' in the ASCII forms.
  EXPECT_EQ(pinyin("吕女士"), "lǚ nǚ shì");
  EXPECT_EQ(pinyin("吕女士", TPinyinWrapper::ToneNumbers, ""), "lv3nv3shi4");
  // The neutral tone is 5.
  EXPECT_EQ(pinyin("的", TPinyinWrapper::ToneNumbers), "de5");
  // An unknown style reads as tone marks.
  EXPECT_EQ(pinyin("三", 42), "sān");
}

TEST(PinyinText, LatinAndHanMixed) {
  EXPECT_EQ(pinyin("Hello世界!"), "Hello shì jiè!");
  EXPECT_EQ(pinyin("王5号 and 李"), "wáng 5 hào and lǐ");
  EXPECT_EQ(pinyin("《红楼梦》，第1回"), "《hóng lóu mèng》，dì 1 huí");
  EXPECT_EQ(pinyin("张-三", TPinyinWrapper::Plain, "_"), "zhang-san");
  EXPECT_EQ(pinyin("Café 茶", TPinyinWrapper::Plain), "Café cha");
  EXPECT_EQ(pinyin(""), "");
  EXPECT_TRUE(TPinyinWrapper::fromUTF8(nullptr).isEmpty());
  // A length stops the text mid-way; the separator may be empty or null-free text.
  EXPECT_STREQ(TPinyinWrapper::fromUTF8("张三李四", 6, TPinyinWrapper::Plain, "/").p(),
               "zhang/san");
  EXPECT_STREQ(TPinyinWrapper::fromUTF8("张\0三", 7, TPinyinWrapper::Plain).p(), "zhang");
}

TEST(PinyinText, BadUtf8IsCopiedAndTheRestConverts) {
  EXPECT_EQ(pinyin("\xFF张\xE5\xBC"), "\xFF" "zhāng\xE5\xBC");
  // An overlong form of a Han character is not that character.
  EXPECT_EQ(pinyin("\xF0\x84\xB8\xAD"), "\xF0\x84\xB8\xAD");
  // A surrogate encoded in UTF-8 is not decoded.
  EXPECT_EQ(pinyin("\xED\xA0\x80中"), "\xED\xA0\x80zhōng");
}

TEST(PinyinText, CharactersOutsideTheBmp) {
  // U+20000 and U+2A6A5, from CJK extension B.
  EXPECT_EQ(text(TPinyinWrapper::reading(0x20000)), "hē");
  EXPECT_EQ(pinyin("\xF0\xA0\x80\x80" "a"), "hē a");
  const zwchar_t wide[] = {0xD840, 0xDC00, 0x5F20, 0};
  EXPECT_TRUE(TPinyinWrapper::fromUTF16(wide, -1, TPinyinWrapper::ToneNumbers) ==
              TWideString(ZW("he1 zhang1")));
}

TEST(PinyinText, Utf16InputKeepsLoneSurrogates) {
  const zwchar_t text[] = {0xDC00, 0x5F20, 'x', 0xD840, 0};
  const zwchar_t expected[] = {0xDC00, 'z', 'h', 0x0101, 'n', 'g', '+', 'x', 0xD840, 0};
  EXPECT_TRUE(TPinyinWrapper::fromUTF16(text, -1, TPinyinWrapper::ToneMarks, ZW("+")) ==
              TWideString(expected));
  EXPECT_TRUE(TPinyinWrapper::fromUTF16(nullptr).isEmpty());
  EXPECT_TRUE(TPinyinWrapper::fromUTF16(ZW("张三"), 1, TPinyinWrapper::Initials) ==
              TWideString(ZW("z")));
}

TEST(PinyinText, Gb2312Input) {
  // 张三 and 北京 in GB2312, with ASCII between.
  const char gb[] = "\xD5\xC5\xC8\xFD, \xB1\xB1\xBE\xA9";
  EXPECT_STREQ(TPinyinWrapper::fromGB2312(gb).p(), "zhāng sān, běi jīng");
  EXPECT_STREQ(TPinyinWrapper::fromGB2312(gb, 4, TPinyinWrapper::Plain, "").p(), "zhangsan");
  // A lead byte without its trail byte: the text does not decode.
  EXPECT_TRUE(TPinyinWrapper::fromGB2312("\xD5").isEmpty());
  EXPECT_TRUE(TPinyinWrapper::fromGB2312(nullptr).isEmpty());
}

TEST(PinyinReadings, SeveralReadingsMostCommonFirst) {
  EXPECT_EQ(text(TPinyinWrapper::reading(0x884C)), "xíng");  // 行
  EXPECT_EQ(text(TPinyinWrapper::allReadings(0x884C, TPinyinWrapper::Plain, " ")),
            "xing hang heng");
  EXPECT_GE(TPinyinWrapper::readingCount(0x884C), 4);
  // 长, 单, 乐, 重: the other readings of simplified characters are listed too.
  EXPECT_NE(text(TPinyinWrapper::allReadings(0x957F)).find("cháng"), std::string::npos);
  EXPECT_NE(text(TPinyinWrapper::allReadings(0x5355)).find("shàn"), std::string::npos);
  EXPECT_NE(text(TPinyinWrapper::allReadings(0x4E50)).find("yuè"), std::string::npos);
  EXPECT_EQ(text(TPinyinWrapper::reading(0x91CD, 0)), "zhòng");
  EXPECT_NE(text(TPinyinWrapper::allReadings(0x91CD)).find("chóng"), std::string::npos);
}

TEST(PinyinReadings, NoReadingGivesNeutralResults) {
  for (unsigned cp : {0u, 0x41u, 0x3000u, 0x33FFu, 0xAC00u, 0x10FFFFu, 0x110000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(TPinyinWrapper::readingCount(cp), 0) << cp;
    EXPECT_TRUE(TPinyinWrapper::reading(cp).isEmpty()) << cp;
    EXPECT_TRUE(TPinyinWrapper::allReadings(cp).isEmpty()) << cp;
  }
  EXPECT_TRUE(TPinyinWrapper::reading(0x4E2D, -1).isEmpty());
  EXPECT_TRUE(TPinyinWrapper::reading(0x4E2D, TPinyinWrapper::readingCount(0x4E2D)).isEmpty());
  EXPECT_STREQ(TPinyinWrapper::allReadings(0x884C, TPinyinWrapper::Initials, nullptr).p(), "xh");
}

// ---- the table against the Unihan source -------------------------------------------------------

const char kUnihanReadings[] = "/usr/share/unicode/Unihan_Readings.txt.bz2";

// field -> code point -> readings, from the installed source (empty when it is not installed).
std::map<std::string, std::map<unsigned, std::vector<std::string>>> loadUnihan() {
  std::map<std::string, std::map<unsigned, std::vector<std::string>>> fields;
  FILE* probe = std::fopen(kUnihanReadings, "rb");
  if (probe == nullptr) return fields;
  std::fclose(probe);
  FILE* pipe = popen((std::string("bzcat ") + kUnihanReadings).c_str(), "r");
  if (pipe == nullptr) return fields;
  char line[4096];
  while (std::fgets(line, sizeof line, pipe) != nullptr) {
    std::istringstream in(line);
    std::string code, field, value;
    if (!(in >> code >> field) || code.rfind("U+", 0) != 0) continue;
    if (field != "kMandarin" && field != "kHanyuPinyin") continue;
    std::vector<std::string>& readings = fields[field][std::stoul(code.substr(2), nullptr, 16)];
    while (in >> value) {
      if (field == "kHanyuPinyin") value = value.substr(value.find(':') + 1);
      std::istringstream parts(value);
      for (std::string one; std::getline(parts, one, ',');) readings.push_back(one);
    }
  }
  pclose(pipe);
  return fields;
}

TEST(PinyinTable, AgreesWithTheInstalledUnihanReadings) {
  const auto fields = loadUnihan();
  if (fields.empty()) GTEST_SKIP() << "Unihan readings not installed";
  ASSERT_GT(fields.at("kMandarin").size(), 40000u);
  int wrong = 0;
  for (const auto& [cp, readings] : fields.at("kMandarin")) {
    if (text(TPinyinWrapper::reading(cp)) != readings[0] && ++wrong < 10) {
      ADD_FAILURE() << std::hex << cp << " reads " << text(TPinyinWrapper::reading(cp));
    }
  }
  for (const auto& [cp, readings] : fields.at("kHanyuPinyin")) {
    const std::string all = "," + text(TPinyinWrapper::allReadings(cp)) + ",";
    for (const std::string& one : readings) {
      if (all.find("," + one + ",") == std::string::npos && ++wrong < 10) {
        ADD_FAILURE() << std::hex << cp << " lacks " << one << " in " << all;
      }
    }
  }
  EXPECT_EQ(wrong, 0);
}

}  // namespace

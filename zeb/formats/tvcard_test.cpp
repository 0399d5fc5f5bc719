// Tests of the vCard reader and writer: cards in the shapes of the RFC examples and of real
// exporters (2.1 quoted-printable with GB2312, 3.0 folded BASE64 photos, 4.0 data URIs), read,
// written, read again to the same properties; bad input that fails one card and spares the rest.

#include "zeb/formats/tvcard.h"

#include <gtest/gtest.h>

#include <string>

#include "testing/temp_dir.h"
#include "zeb/strings/TWideString.h"

namespace {

std::string str(const TAnsiString& s) { return s.isEmpty() ? std::string() : s.p(); }

const char kRfc3[] =
    "BEGIN:vCard\r\n"
    "VERSION:3.0\r\n"
    "FN:Frank Dawson\r\n"
    "ORG:Lotus Development Corporation\r\n"
    "ADR;TYPE=WORK,POSTAL,PARCEL:;;6544 Battleford Drive\r\n"
    " ;Raleigh;NC;27613-3502;U.S.A.\r\n"
    "TEL;TYPE=VOICE,MSG,WORK:+1-919-676-9515\r\n"
    "TEL;TYPE=FAX,WORK:+1-919-676-9564\r\n"
    "EMAIL;TYPE=INTERNET,PREF:Frank_Dawson@Lotus.com\r\n"
    "EMAIL;TYPE=INTERNET:fdawson@earthlink.net\r\n"
    "URL:http://home.earthlink.net/~fdawson\r\n"
    "N:Dawson;Frank;;Dr.;\r\n"
    "NOTE:This fax number is operational 0800 to 1715\\n EST\\, Mon-Fri\\; ok\r\n"
    "item1.X-CUSTOM;X-P=\"a:b;c\":grouped\r\n"
    "END:vCard\r\n";

// An address book in the 2.1 shape phone exporters write: GB2312 and UTF-8 text in
// quoted-printable with soft breaks, bare TYPE parameters, LF line ends.
const char kExport21[] =
    "BEGIN:VCARD\n"
    "VERSION:2.1\n"
    "N;CHARSET=GB2312;ENCODING=QUOTED-PRINTABLE:=D5=C5;=C8=FD\n"
    "FN;CHARSET=GB2312;ENCODING=QUOTED-PRINTABLE:=D5=C5=C8=FD\n"
    "TEL;CELL;PREF:13800138000\n"
    "EMAIL;INTERNET:zhang_san@example.cn\n"
    "NOTE;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=E5=8C=97=E4=BA=AC=0D=0A=\n"
    "line_two=\n"
    "=3D end\n"
    "END:VCARD\n"
    "BEGIN:VCARD\n"
    "VERSION:2.1\n"
    "N;CHARSET=BIG5:\xB3\xAF;\xA4\x6A\xA4\xE5\n"
    "END:VCARD\n";

const char kPhotoBase64[] =
    "iVBORw0KGgoAAAANAAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8gISIjJCUmJygpKissLS4vMDEyMzQ1Njc4"
    "OTo7PD0+P0BBQkNERUZHSElKS0xNTk9QUVJTVFVWV1hZWltcXV5fYGFiY2RlZmdoaWprbG1ub3BxcnN0dXZ3eHl6e3x9"
    "fn+AgYKDhIWGh4iJiouMjY6PkJGSk5SVlpeYmZqbnJ2en6ChoqOkpaanqKmqq6ytrq+wsbKztLW2t7i5uru8vb6/wMHC"
    "w8TFxsfIycrLzM3Oz9DR0tPU1dbX2Nna29zd3t/g4eLj5OXm5+jp6uvs7e7v8PHy8/T19vf4+fr7/P3+/w==";

// 3.0 with a photo folded the way address-book programs write it.
std::string photoCard30() {
  std::string card = "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Photo Person\r\nPHOTO;ENCODING=b;TYPE=PNG:";
  const std::string data = kPhotoBase64;
  for (size_t i = 0; i < data.size(); i += 60) card += (i ? "\r\n " : "") + data.substr(i, 60);
  return card + "\r\nEND:VCARD\r\n";
}

std::string photoBytes() {
  std::string b = "\x89PNG\r\n\x1A\n";
  b += std::string("\0\0\0\x0D", 4);
  for (int i = 0; i < 256; ++i) b += static_cast<char>(i);
  return b;
}

const char kCard40[] =
    "BEGIN:VCARD\r\n"
    "VERSION:4.0\r\n"
    "FN:J. Doe\r\n"
    "N:Doe;J.;;;\r\n"
    "NICKNAME:Johnny,JD\r\n"
    "TEL;VALUE=uri;TYPE=\"voice,home\":tel:+1-555-555-5555;ext=5555\r\n"
    "BDAY:19531015T231000Z\r\n"
    "TITLE:Research Scientist\r\n"
    "PHOTO:data:image/jpeg;base64,/9j/4AAQSkZJRg==\r\n"
    "END:VCARD\r\n";

std::string bytesOf(const tbytesdata& b) {
  return std::string(reinterpret_cast<const char*>(b.data()), b.size());
}

// Every property of two cards matches: name, group, parameters, value and kind.
void expectSameProperties(const tvcard& a, const tvcard& b) {
  ASSERT_EQ(a.propertyCount(), b.propertyCount());
  for (int i = 0; i < a.propertyCount(); ++i) {
    SCOPED_TRACE(a.propertyName(i));
    EXPECT_STREQ(a.propertyName(i), b.propertyName(i));
    EXPECT_STREQ(a.propertyGroup(i), b.propertyGroup(i));
    EXPECT_EQ(a.isBinary(i), b.isBinary(i));
    EXPECT_EQ(bytesOf(a.bytes(i)), bytesOf(b.bytes(i)));
    ASSERT_EQ(a.paramCount(i), b.paramCount(i));
    for (int p = 0; p < a.paramCount(i); ++p) {
      EXPECT_STREQ(a.paramName(i, p), b.paramName(i, p));
      EXPECT_STREQ(a.paramValue(i, p), b.paramValue(i, p));
    }
  }
}

// Written lines are at most 75 octets and never cut a UTF-8 sequence.
void expectFolded(const std::string& text) {
  size_t start = 0;
  for (size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2) {
    EXPECT_LE(end - start, 75u) << text.substr(start, end - start);
    if (end > start) {
      EXPECT_NE(static_cast<unsigned char>(text[start]) & 0xC0, 0x80u);
    }
  }
  EXPECT_EQ(start, text.size());
}

TEST(VCardRead, Rfc2426ExampleWithFoldingEscapesAndLists) {
  tvcardfile book;
  ASSERT_EQ(book.readText(kRfc3), 1);
  const tvcard& card = book.card(0);
  EXPECT_EQ(card.status(), tvcard::Ok);
  EXPECT_STREQ(card.version(), "3.0");
  EXPECT_EQ(str(card.fn()), "Frank Dawson");
  EXPECT_EQ(str(card.n(tvcard::NFamily)), "Dawson");
  EXPECT_EQ(str(card.n(tvcard::NPrefix)), "Dr.");
  EXPECT_EQ(str(card.adr(0, tvcard::AdrStreet)), "6544 Battleford Drive");
  EXPECT_EQ(str(card.adr(0, tvcard::AdrCountry)), "U.S.A.");
  EXPECT_EQ(card.count("TEL"), 2);
  EXPECT_EQ(str(card.tel(1)), "+1-919-676-9564");
  EXPECT_STREQ(card.param(card.findProperty("tel"), "type"), "VOICE,MSG,WORK");
  EXPECT_EQ(str(card.email(0)), "Frank_Dawson@Lotus.com");
  EXPECT_EQ(str(card.url(0)), "http://home.earthlink.net/~fdawson");
  EXPECT_EQ(str(card.note()), "This fax number is operational 0800 to 1715\n EST, Mon-Fri; ok");
  const int custom = card.findProperty("X-CUSTOM");
  EXPECT_STREQ(card.propertyGroup(custom), "item1");
  EXPECT_STREQ(card.param(custom, "X-P"), "a:b;c");
  EXPECT_TRUE(card.tel(2).isEmpty());
  EXPECT_TRUE(card.photo().size() == 0);
}

TEST(VCardRead, Version21QuotedPrintableAndCharsets) {
  tvcardfile book;
  ASSERT_EQ(book.readText(kExport21), 2);
  const tvcard& card = book.card(0);
  EXPECT_EQ(card.status(), tvcard::Ok) << card.errorText();
  EXPECT_EQ(str(card.fn()), "张三");
  EXPECT_EQ(str(card.n(tvcard::NGiven)), "三");
  const int tel = card.findProperty("TEL");
  EXPECT_STREQ(card.paramName(tel, 0), "TYPE");
  EXPECT_STREQ(card.paramValue(tel, 1), "PREF");
  EXPECT_EQ(str(card.email(0)), "zhang_san@example.cn");
  // Soft breaks join the lines; '_' stays itself; CR LF in the text is a line break.
  EXPECT_EQ(str(card.note()), "北京\nline_two= end");
  EXPECT_EQ(card.param(card.findProperty("NOTE"), "ENCODING"), nullptr);
  EXPECT_EQ(str(book.card(1).n(tvcard::NFamily)), "陳");
  EXPECT_EQ(str(book.card(1).n(tvcard::NGiven)), "大文");
}

TEST(VCardRead, FoldedBase64PhotoAndDataUri) {
  tvcardfile book;
  ASSERT_EQ(book.readText(photoCard30().c_str()), 1);
  const tvcard& card = book.card(0);
  EXPECT_EQ(card.status(), tvcard::Ok) << card.errorText();
  EXPECT_EQ(bytesOf(card.photo()), photoBytes());
  EXPECT_STREQ(card.param(card.findProperty("PHOTO"), "TYPE"), "PNG");

  ASSERT_EQ(book.readText(kCard40), 1);
  const tvcard& v4 = book.card(0);
  EXPECT_EQ(bytesOf(v4.photo()), std::string("\xFF\xD8\xFF\xE0\x00\x10JFIF", 10));
  EXPECT_STREQ(v4.param(v4.findProperty("PHOTO"), "MEDIATYPE"), "image/jpeg");
  EXPECT_EQ(str(v4.listItem(v4.findProperty("NICKNAME"), 1)), "JD");
  EXPECT_EQ(str(v4.tel(0)), "tel:+1-555-555-5555;ext=5555");
  EXPECT_STREQ(v4.param(v4.findProperty("TEL"), "TYPE"), "voice,home");
  EXPECT_EQ(str(v4.bday()), "19531015T231000Z");
}

TEST(VCardRead, Version21Base64RunsToTheEmptyLine) {
  const std::string data = kPhotoBase64;
  const std::string text = "BEGIN:VCARD\r\nVERSION:2.1\r\nPHOTO;TYPE=PNG;BASE64:\r\n" +
                           data.substr(0, 76) + "\r\n" + data.substr(76, 76) + "\r\n  " +
                           data.substr(152) + "\r\n\r\nFN:After\r\nEND:VCARD\r\n";
  tvcardfile book;
  ASSERT_EQ(book.readText(text.c_str()), 1);
  EXPECT_EQ(book.card(0).status(), tvcard::Ok) << book.card(0).errorText();
  EXPECT_EQ(bytesOf(book.card(0).photo()), photoBytes());
  EXPECT_EQ(str(book.card(0).fn()), "After");
}

TEST(VCardRead, Utf16FilesAndByteOrderMarks) {
  const std::string card = "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:\xE7\x8E\x8B\r\nEND:VCARD\r\n";
  std::string utf16 = "\xFF\xFE";
  for (char c : std::string("BEGIN:VCARD\r\nFN:")) utf16 += std::string{c, '\0'};
  utf16 += std::string("\x8B\x73\r\0\n\0", 6);  // U+738B
  for (char c : std::string("END:VCARD\r\n")) utf16 += std::string{c, '\0'};
  tvcardfile book;
  ASSERT_EQ(book.readText(utf16.data(), static_cast<int>(utf16.size())), 1);
  EXPECT_EQ(str(book.card(0).fn()), "\xE7\x8E\x8B");
  ASSERT_EQ(book.readText(("\xEF\xBB\xBF" + card).c_str()), 1);
  EXPECT_EQ(book.card(0).status(), tvcard::Ok);
  // Text ends at a NUL; a NUL decoded into text is a broken encoding.
  const std::string withNul = card + std::string(1, '\0') + card;
  EXPECT_EQ(book.readText(withNul.data(), static_cast<int>(withNul.size())), 1);
  book.readText("BEGIN:VCARD\r\nNOTE;ENCODING=QUOTED-PRINTABLE:a=00b\r\nEND:VCARD\r\n");
  EXPECT_EQ(book.card(0).status(), tvcard::BadEncoding);
}

TEST(VCardWrite, ReadWriteReadKeepsEveryProperty) {
  const std::string inputs[] = {kRfc3, kExport21, photoCard30(), kCard40};
  for (const std::string& input : inputs) {
    tvcardfile first;
    first.readText(input.c_str());
    for (int version : {30, 40}) {
      SCOPED_TRACE(version);
      const std::string written = str(first.writeText(version));
      expectFolded(written);
      tvcardfile second;
      ASSERT_EQ(second.readText(written.c_str()), first.count());
      for (int i = 0; i < first.count(); ++i) {
        EXPECT_EQ(second.card(i).status(), tvcard::Ok);
        EXPECT_STREQ(second.card(i).version(), version == 30 ? "3.0" : "4.0");
        expectSameProperties(first.card(i), second.card(i));
      }
    }
  }
}

TEST(VCardWrite, BuiltCardsEscapeAndFold) {
  tvcard card;
  card.addText("FN", "李; 小龙, \\ Bruce\nLee");
  const int note = card.addText("note", std::string(100, 'x').append("中文中文").c_str());
  card.addParam(note, "language", "zh");
  const int photo = card.addBinary("g", "PHOTO", "\0\1\2", 3);
  EXPECT_EQ(card.addProperty("x", "", "v"), -1);
  EXPECT_FALSE(card.addParam(99, "A", "b"));
  tvcardfile book;
  book.add(card);
  const std::string written = str(book.writeText(30));
  expectFolded(written);
  EXPECT_NE(written.find("FN:李\\; 小龙\\, \\\\ Bruce\\nLee\r\n"), std::string::npos);
  EXPECT_NE(written.find("g.PHOTO;ENCODING=b:AAEC\r\n"), std::string::npos);
  tvcardfile back;
  back.readText(written.c_str());
  EXPECT_EQ(str(back.card(0).fn()), "李; 小龙, \\ Bruce\nLee");
  EXPECT_STREQ(back.card(0).param(note, "LANGUAGE"), "zh");
  EXPECT_EQ(bytesOf(back.card(0).bytes(photo)), std::string("\0\1\2", 3));
}

TEST(VCardRead, BadCardsFailAloneAndTheRestIsRead) {
  const std::string longLine = "NOTE:" + std::string(500, 'n') + "\r\n";
  const std::string text =
      "junk before any card\r\n"
      "BEGIN:VCARD\r\nFN:Unended\r\n"
      "BEGIN:VCARD\r\nFN:Broken QP\r\nNOTE;ENCODING=QUOTED-PRINTABLE:=ZZ\r\nTEL:1\r\nEND:VCARD\r\n"
      "BEGIN:VCARD\r\nPHOTO;ENCODING=BASE64:AB*D\r\nEND:VCARD\r\n"
      "BEGIN:VCARD\r\nNOTE;ENCODING=ROT13:x\r\nEND:VCARD\r\n"
      "BEGIN:VCARD\r\nNOTE;CHARSET=NO-SUCH-CHARSET:x\r\nEND:VCARD\r\n"
      "BEGIN:VCARD\r\n" + longLine + "END:VCARD\r\n"
      "BEGIN:VCARD\r\nFN:Good\r\nEND:VCARD\r\n"
      "BEGIN:VCARD\r\nFN:Cut off at the end";
  tvcardfile book;
  book.maxLineLength = 200;
  ASSERT_EQ(book.readText(text.c_str()), 8);
  const tvcard::tstatus expected[] = {tvcard::Unterminated, tvcard::BadEncoding,
                                      tvcard::BadEncoding,  tvcard::BadEncoding,
                                      tvcard::BadCharset,   tvcard::LineTooLong,
                                      tvcard::Ok,           tvcard::Unterminated};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(book.card(i).status(), expected[i]) << i;
  EXPECT_EQ(book.failedCount(), 7);
  EXPECT_EQ(str(book.card(0).fn()), "Unended");
  // The properties before the failure stay; those after it are dropped.
  EXPECT_EQ(str(book.card(1).fn()), "Broken QP");
  EXPECT_TRUE(book.card(1).tel(0).isEmpty());
  EXPECT_NE(std::string(book.card(1).errorText()).find("line 5"), std::string::npos);
  EXPECT_EQ(str(book.card(6).fn()), "Good");
  EXPECT_EQ(book.card(-1).propertyCount(), 0);
  EXPECT_EQ(book.card(99).propertyName(0), nullptr);
  EXPECT_EQ(book.readText(nullptr), 0);
}

TEST(VCardFile, WritesAndReadsFiles) {
  zeb::testing::TempDir dir;
  TWideString path;
  path.fromUTF8(dir.filePath("book.vcf").c_str());
  tvcardfile book;
  book.readText(kExport21);
  ASSERT_TRUE(book.writeFile(path.p(), 40));
  tvcardfile back;
  EXPECT_EQ(back.readFile(path.p()), 2);
  expectSameProperties(book.card(0), back.card(0));
  TWideString missing;
  missing.fromUTF8(dir.filePath("none.vcf").c_str());
  EXPECT_EQ(back.readFile(missing.p()), -1);
  EXPECT_EQ(back.count(), 0);
}

}  // namespace

// Tests of the hexadecimal renderers: every form over the same table of options.

#include "zeb/data/binary_hex.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

namespace {

const unsigned char kBytes[] = {0x0A, 0xFF, 0x0B};

struct HexCase {
  int n;
  bool lowerCase;
  int lineWidth;
  bool withTag;
  const char* expected;
};

const HexCase kCases[] = {
    {2, true, 0, true, "0x0a,0xff"},
    {2, false, 0, true, "0X0A,0XFF"},
    {2, false, 0, false, "0AFF"},
    {2, true, 0, false, "0aff"},
    {2, false, 1, false, "0A\nFF\n"},
    {3, false, 2, false, "0AFF\n0B"},
    {3, true, 1, true, "0x0a,\n0xff,\n0x0b\n"},
    {3, false, 2, true, "0X0A,0XFF,\n0X0B"},
    {1, false, -5, true, "0X0A"},
    {0, false, 0, true, ""},
    {-4, false, 1, false, ""},
};

std::string narrow(const TWideString& s) {
  std::string out;
  for (const zwchar_t* p = s.p(); p != nullptr && *p != 0; ++p) out += static_cast<char>(*p);
  return out;
}

std::string text(const TAnsiString& s) {
  return s.isEmpty() ? "" : s.p();
}

TEST(BinaryToHex, RendersEveryFormAlike) {
  for (const HexCase& c : kCases) {
    SCOPED_TRACE(c.expected);
    if (c.withTag) {
      TAnsiString out("old");
      BinaryToHexA(kBytes, c.n, out, c.lowerCase, c.lineWidth, true);
      EXPECT_EQ(text(out), c.expected);
      continue;
    }
    TAnsiString ansi("old");
    EXPECT_EQ(text(BinaryToHexNoTagA(kBytes, c.n, ansi, c.lowerCase, c.lineWidth)), c.expected);
    TWideString wide(ZW("old"));
    EXPECT_EQ(narrow(BinaryToHexNoTagW(kBytes, c.n, wide, c.lowerCase, c.lineWidth)), c.expected);
    char buffer[16] = "old";
    EXPECT_STREQ(BinaryToHexNoTagA(kBytes, c.n, buffer, c.lowerCase, c.lineWidth), c.expected);
  }
}

TEST(BinaryToHex, BufferFormIsExportedUndecorated) {
  using BufferForm = char* (*)(const unsigned char*, int, char*, bool, int);
  const auto exported = reinterpret_cast<BufferForm>(dlsym(RTLD_DEFAULT, "BinaryToHexNoTagA"));
  ASSERT_NE(exported, nullptr);
  const unsigned char bytes[] = {0x0A, 0xFF};
  char text[8];
  EXPECT_STREQ(exported(bytes, 2, text, true, 0), "0aff");
}

TEST(BinaryToHex, NullDataGivesEmptyText) {
  TAnsiString out("old");
  BinaryToHexA(nullptr, 2, out, false, 0, true);
  EXPECT_TRUE(out.isEmpty());
  char buffer[8] = "old";
  EXPECT_STREQ(BinaryToHexNoTagA(nullptr, 2, buffer, false, 0), "");
  EXPECT_EQ(BinaryToHexNoTagA(kBytes, 2, static_cast<char*>(nullptr), false, 0), nullptr);
}

TEST(BinaryToHex, ReservesTheDocumentedRoom) {
  TAnsiString out;
  BinaryToHexA(kBytes, 3, out, false, 0, true);
  EXPECT_EQ(out.getCapacity(), 5 * 3 + 2);
  BinaryToHexA(kBytes, 3, out, false, 2, true);
  EXPECT_EQ(out.getCapacity(), 6 * 3 + 2);
  BinaryToHexNoTagA(kBytes, 3, out, false, 0);
  EXPECT_EQ(out.getCapacity(), 3 * 3 + 2);
  BinaryToHexA(kBytes, -1, out, false, 0, true);  // room 5 * -1 + 2 < 1: storage released
  EXPECT_EQ(out.getBuffer(), nullptr);
}

}  // namespace

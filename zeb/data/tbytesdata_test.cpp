// Tests of tbytesdata: ownership, the two growth rules, little-endian integers, text views, the
// search with its end-of-buffer rule, cutting, equality and the hash.

#include "zeb/data/tbytesdata.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

tbytesdata bytesOf(const std::string& s) {
  return tbytesdata(s.data(), static_cast<int>(s.size()));
}

std::string contentOf(const tbytesdata& b) {
  return b.isEmpty() ? "" : std::string(reinterpret_cast<const char*>(b.p()), b.size());
}

TEST(TbytesdataOwnership, ConstructorsCopyExactly) {
  tbytesdata empty;
  EXPECT_EQ(empty.p(), nullptr);
  EXPECT_EQ(empty.dataCapacity(), 0);

  tbytesdata reserved(16, true);
  EXPECT_EQ(reserved.dataCapacity(), 16);
  EXPECT_EQ(reserved.size(), 0);
  EXPECT_EQ(reserved[15], 0);
  EXPECT_EQ(tbytesdata(0, true).p(), nullptr);
  EXPECT_EQ(tbytesdata("abc", -1).p(), nullptr);

  tbytesdata grown = bytesOf("ab");
  grown.append(static_cast<unsigned char>('c'));
  const tbytesdata copy(grown);
  EXPECT_EQ(contentOf(copy), "abc");
  EXPECT_EQ(copy.dataCapacity(), 3);
  EXPECT_EQ(contentOf(tbytesdata(TAnsiString("x\0y", 3))), "x");
}

TEST(TbytesdataOwnership, MoveTakePtrAndReleasePtrHandOverTheBlock) {
  tbytesdata source = bytesOf("abcd");
  const unsigned char* block = source.p();
  tbytesdata moved(std::move(source));
  EXPECT_EQ(moved.p(), block);
  EXPECT_EQ(source.p(), nullptr);
  EXPECT_EQ(source.dataCapacity(), 0);
  EXPECT_EQ(source.size(), 0);

  tbytesdata target = bytesOf("zz");
  target = std::move(moved);
  EXPECT_EQ(contentOf(target), "abcd");
  EXPECT_EQ(moved.size(), 0);

  unsigned char* released = target.releasePtr();
  EXPECT_EQ(target.p(), nullptr);
  tbytesdata adopter;
  adopter.takePtr(released, 4);
  EXPECT_EQ(contentOf(adopter), "abcd");
  EXPECT_EQ(adopter.dataCapacity(), 4);
}

TEST(TbytesdataGrowth, CountsBelowOneChangeNothing) {
  tbytesdata b = bytesOf("abc");
  b.resize(0).setData("xyz", 0).resetCapacity(-1).append("xyz", 0).remove(-1, 2).remove(3, 1);
  b.setDataSize(-4);
  EXPECT_EQ(b.size(), 0);
  b.setDataSize(3);
  EXPECT_EQ(contentOf(b), "abc");
  EXPECT_EQ(b.dataCapacity(), 3);
  EXPECT_FALSE(b.ensureSize(0));
}

TEST(TbytesdataGrowth, AppendsDoubleWhileCopiesAreExact) {
  struct Case {
    const char* what;
    void (*operation)(tbytesdata&);
    int expectedCapacity;
  };
  const Case cases[] = {
      {"byte into empty",
       [](tbytesdata& b) { b.clear(true).append(static_cast<unsigned char>(1)); }, 2},
      {"int32 into full 3", [](tbytesdata& b) { b.appendInt32(-1); }, 14},
      {"block without doubling", [](tbytesdata& b) { b.append("12345", 5, false); }, 8},
      {"block with doubling", [](tbytesdata& b) { b.append("12345", 5, true); }, 16},
      {"setData grows to 2n", [](tbytesdata& b) { b.setData("12345", 5); }, 10},
      {"setData fits", [](tbytesdata& b) { b.setData("12", 2); }, 3},
      {"resize exact", [](tbytesdata& b) { b.resize(9); }, 9},
      {"ensureSize doubled", [](tbytesdata& b) { b.ensureSize(5, true, true); }, 10},
      {"clearData keeps block", [](tbytesdata& b) { b.clearData(false); }, 3},
      {"clearData frees", [](tbytesdata& b) { b.clearData(true); }, 0},
      {"operator+ exact", [](tbytesdata& b) { b = b + bytesOf("de"); }, 5},
      {"assign keeps larger block",
       [](tbytesdata& b) {
         const tbytesdata x = bytesOf("x");
         b = x;
       },
       3},
      {"resetCapacity exact", [](tbytesdata& b) { b.resetCapacity(7); }, 7},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    tbytesdata b = bytesOf("abc");
    c.operation(b);
    EXPECT_EQ(b.dataCapacity(), c.expectedCapacity);
  }
}

TEST(TbytesdataGrowth, GrowingKeepsContentAndAcceptsItsOwnBytes) {
  tbytesdata b = bytesOf("abc");
  b.resize(5);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(b.p()), 3), "abc");
  b.setDataSize(3);
  b += b;
  b.append(b.p() + 1, 2, false);
  b += TAnsiString("!");
  EXPECT_EQ(contentOf(b), "abcabcbc!");
  b.setData(b.p() + 6, 3);
  EXPECT_EQ(contentOf(b), "bc!");
}

TEST(TbytesdataIntegers, AppendsAreLittleEndian) {
  tbytesdata b;
  b.appendUInt32(0x11223344).appendInt16(-2).appendUInt16(0xABCD).appendInt64(-2);
  b.appendUInt64(0x0102030405060708ULL).appendInt32(-2);
  const std::vector<unsigned char> expected = {
      0x44, 0x33, 0x22, 0x11, 0xFE, 0xFF, 0xCD, 0xAB, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
      0xFF, 0xFF, 0x08, 0x07, 0x06, 0x05, 0x04, 0x03, 0x02, 0x01, 0xFE, 0xFF, 0xFF, 0xFF};
  EXPECT_EQ(std::vector<unsigned char>(b.p(), b.p() + b.size()), expected);
}

TEST(TbytesdataIntegers, ReadersTakeTheWidestPrefixTheSizeAllows) {
  struct Case {
    std::vector<unsigned char> bytes;
    unsigned long long u64;
    unsigned int u32;
    unsigned short u16;
  };
  const Case cases[] = {
      {{}, 0, 0, 0},
      {{0xFF}, 0xFF, 0xFF, 0xFF},
      {{0x01, 0x02, 0x03}, 0x0201, 0x0201, 0x0201},
      {{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07}, 0x04030201, 0x04030201, 0x0201},
      {{1, 2, 3, 4, 5, 6, 7, 0x88, 9}, 0x8807060504030201ULL, 0x04030201, 0x0201},
  };
  for (const Case& c : cases) {
    const tbytesdata b(c.bytes.data(), static_cast<int>(c.bytes.size()));
    SCOPED_TRACE(b.size());
    EXPECT_EQ(b.asUInt64(), c.u64);
    EXPECT_EQ(b.asInt64(), static_cast<long long>(c.u64));
    EXPECT_EQ(b.asUInt32(), c.u32);
    EXPECT_EQ(b.asInt32(), static_cast<int>(c.u32));
    EXPECT_EQ(b.asUInt16(), c.u16);
    EXPECT_EQ(b.asInt16(), static_cast<short>(c.u16));
  }
}

TEST(TbytesdataText, StringsHoldTheBytesAsTheyAre) {
  const TAnsiString s = bytesOf(std::string("a\0b", 3)).asString();
  EXPECT_EQ(s.getCapacity(), 4);
  EXPECT_EQ(std::memcmp(s.p(), "a\0b\0", 4), 0);
  EXPECT_TRUE(tbytesdata().asString().isEmpty());

  const TWideString even = bytesOf(std::string("A\0B\0", 4)).asStringWide();
  EXPECT_EQ(even.getCapacity(), 3);
  EXPECT_EQ(std::u16string(even.p()), u"AB");
  const TWideString odd = bytesOf(std::string("A\0\x42\x30\x43", 5)).asStringWide();
  EXPECT_EQ(odd.getCapacity(), 4);
  EXPECT_EQ(std::u16string(odd.p()), u"A\u3042C");
  EXPECT_EQ(std::u16string(bytesOf("C").asStringWide().p()), u"C");
  EXPECT_EQ(tbytesdata().asStringWide().length(), 0);
}

TEST(TbytesdataSearch, NeverMatchesTheLastAlignment) {
  struct Case {
    const char* haystack;
    const char* needle;
    int start;
    int found;
    int count;
  };
  const Case cases[] = {
      {"abc", "c", 0, -1, 0},     {"abc", "b", 0, 1, 1},       {"abc", "abc", 0, -1, 0},
      {"abab", "ab", 0, 0, 1},    {"ababa", "ab", 0, 0, 2},    {"ababa", "ab", 1, 2, 2},
      {"aaaa", "aa", 0, 0, 1},    {"aaaaa", "aa", 0, 0, 2},    {"abc", "", 0, -1, 0},
      {"xabcx", "abc", -7, 1, 1}, {"abcabcx", "abc", 2, 3, 2}, {"abc", "b", 2, -1, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.haystack) + " / " + c.needle);
    const tbytesdata haystack = bytesOf(c.haystack);
    const tbytesdata needle = bytesOf(c.needle);
    EXPECT_EQ(haystack.findData(needle, c.start), c.found);
    EXPECT_EQ(haystack.countOfSubData(needle), c.count);
    EXPECT_EQ(haystack.contain(needle), c.count > 0);
  }
}

TEST(TbytesdataSearch, FrequentFirstBytesAndLongNeedlesFindTheFirstMatch) {
  const std::string longNeedle = std::string(300, 'a') + "b";
  EXPECT_EQ(bytesOf(std::string(101, 'a') + "bx").findData(bytesOf("ab")), 100);
  EXPECT_EQ(bytesOf(std::string(1000, 'a') + longNeedle + "x").findData(bytesOf(longNeedle)), 1000);
  EXPECT_EQ(bytesOf(std::string(1000, 'a') + longNeedle).findData(bytesOf(longNeedle)), -1);
  std::string dna;
  for (int i = 0; i < 200; ++i) dna += "acgtt";
  EXPECT_EQ(bytesOf(dna).countOfSubData(bytesOf("gtta")), 199);
  EXPECT_EQ(bytesOf(dna).findData(bytesOf("tac"), 600), 604);
}

TEST(TbytesdataCutting, TakeRemoveAndCopyClipToTheContent) {
  tbytesdata b = bytesOf("abcd");
  const tbytesdata taken = b.takeData(1, 100);
  EXPECT_EQ(contentOf(taken), "bcd");
  EXPECT_EQ(taken.dataCapacity(), 6);
  EXPECT_EQ(contentOf(b), "a");
  EXPECT_TRUE(b.takeData(1, 1).isEmpty());

  tbytesdata c = bytesOf("abcdef");
  EXPECT_EQ(contentOf(c.remove(1, 2)), "adef");
  EXPECT_EQ(contentOf(c.copyData(2, 100)), "ef");
  EXPECT_EQ(c.copyData(1, 2).dataCapacity(), 4);
  EXPECT_TRUE(c.copyData(-1, 2).isEmpty());
  EXPECT_TRUE(c.copyData(0, 0).isEmpty());
  EXPECT_TRUE(c.copyData(4, 1).isEmpty());
  EXPECT_EQ(contentOf(c), "adef");
}

TEST(TbytesdataCompare, EqualityIgnoresCapacity) {
  tbytesdata roomy(32, false);
  EXPECT_EQ(roomy, tbytesdata());
  roomy.append("ab", 2);
  EXPECT_EQ(roomy, bytesOf("ab"));
  EXPECT_NE(roomy, bytesOf("ac"));
  EXPECT_NE(roomy, bytesOf("abc"));
}

TEST(TbytesdataHash, MatchesTheStringHashOnTheSameBytes) {
  const std::string samples[] = {"a", "ab\x90", std::string("\x80\0\x82\x83\xff", 5), "0123456789"};
  for (const std::string& s : samples) {
    EXPECT_EQ(bytesOf(s).hashValue(), TAnsiString::hashValue(s.data(), static_cast<int>(s.size())));
  }
  EXPECT_EQ(TAnsiString::hashValue("ab\x90"), 0x2cd5462aU);
  EXPECT_EQ(bytesOf("ab\x90").hashValue(), 0x2cd5462aU);
  EXPECT_EQ(tbytesdata().hashValue(), 0U);
  EXPECT_EQ(tbytesdata(8, true).hashValue(), 0U);
  EXPECT_EQ(tbytesdata::hashValue(nullptr, 4), 0U);
  EXPECT_EQ(tbytesdata::hashValue("abc", -1), 0U);
}

TEST(TbytesdataHex, BufferOverloadRendersItsBytes) {
  TAnsiString out("old");
  BinaryToHexA(bytesOf("\x0a\xff"), out, true, 0, true);
  EXPECT_STREQ(out.p(), "0x0a,0xff");
  BinaryToHexA(tbytesdata(), out, false, 0, false);
  EXPECT_TRUE(out.isEmpty());
}

}  // namespace

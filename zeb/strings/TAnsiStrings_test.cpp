// Tests of the string lists and hash lists: splitting and joining, the cursor, search and order,
// ownership across copies and moves, line files, and the hash list's one-entry-per-key rule.

#include "zeb/strings/TAnsiStrings.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "testing/temp_dir.h"
#include "zeb/strings/TWideStrings.h"

namespace {

using zeb::testing::TempDir;

std::vector<std::string> items(const TAnsiStrings& list) {
  std::vector<std::string> out;
  for (int i = 0; i < list.count(); ++i) {
    out.push_back(list[i].isEmpty() ? std::string() : list[i].p());
  }
  return out;
}

using Items = std::vector<std::string>;

TWideString wide(const char* utf8) {
  return TWideString(utf8, MIB_UTF8);
}

TEST(StringListSplit, EmptyFieldsAreKeptOrSkipped) {
  EXPECT_EQ(items(TAnsiStrings("a,,b;c,", ",;", false)), (Items{"a", "", "b", "c", ""}));
  EXPECT_EQ(items(TAnsiStrings(",a", ",", false)), (Items{"", "a"}));
  EXPECT_EQ(items(TAnsiStrings(",a,,b,", ",", true)), (Items{"a", "b"}));
  EXPECT_TRUE(TAnsiStrings(",,,", ",", true).isEmpty());
  for (const char* text : {"", static_cast<const char*>(nullptr)}) {
    EXPECT_TRUE(TAnsiStrings(text, ",", false).isEmpty());
  }
}

TEST(StringListSplit, WithoutSeparatorsTheTextIsOneItem) {
  EXPECT_EQ(items(TAnsiStrings("a,b", "", false)), (Items{"a,b"}));
  EXPECT_EQ(items(TAnsiStrings("a,b", nullptr, true)), (Items{"a,b"}));
}

TEST(StringListSplit, BytesAbove127AreNeitherSeparatorsNorLost) {
  TAnsiStrings list;
  EXPECT_EQ(list.setText2("\xC3\xA9|\xFF\xFE|x", "|", false), 3);
  EXPECT_EQ(items(list), (Items{"\xC3\xA9", "\xFF\xFE", "x"}));
  EXPECT_EQ(list.setText2("a\xFF"
                          "b",
                          "\xFF", false),
            2)
      << "a high byte as a separator";
}

TEST(StringListSplit, SetTextClearsFirstAndSplitsAtOneByte) {
  TAnsiStrings list{"old"};
  EXPECT_EQ(list.setText("x;;y", ';'), 3);
  EXPECT_EQ(items(list), (Items{"x", "", "y"}));
  EXPECT_EQ(list.setText("only", ';'), 1) << "a shorter split leaves nothing of the longer one";
  EXPECT_EQ(items(list), (Items{"only"}));
}

TEST(StringListSplit, LinesEndAtLfOrCrLf) {
  TAnsiStrings list;
  list.addListFromText("a\r\nb\n\nc\rd\n");
  EXPECT_EQ(items(list), (Items{"a", "b", "", "c\rd"}));
  list.addListFromText("last line without end");
  EXPECT_EQ(items(list), (Items{"last line without end"}));
  list.addListFromText("\n");
  EXPECT_EQ(items(list), (Items{""}));
}

TEST(StringListSplit, BetweenTagsCollectsEveryPair) {
  TAnsiStrings list;
  EXPECT_EQ(list.setTextBetweenTags("<b>x</b> - <b></b><b>y</b><b>open", "<b>", "</b>"), 3);
  EXPECT_EQ(items(list), (Items{"x", "", "y"}));
  list.setTextBetweenTags("id=1;id=2", "id=", nullptr);
  EXPECT_EQ(items(list), (Items{"1;id=2"}));
  EXPECT_EQ(list.setTextBetweenTags("abc", "", "c"), 0);
}

TEST(StringListJoin, LeadingEmptyItemGivesLeadingSeparator) {
  EXPECT_EQ(std::string(TAnsiStrings({"a", "b"}).text(',').p()), "a,b");
  EXPECT_EQ(std::string(TAnsiStrings({"", "b"}).text(',').p()), ",,b");
  EXPECT_EQ(std::string(TAnsiStrings({""}).text(',').p()), ",");
  EXPECT_EQ(std::string(TAnsiStrings({"a", "", ""}).text(',').p()), "a,,");
  EXPECT_TRUE(TAnsiStrings().text(',').isEmpty());
}

TEST(StringListJoin, SplitUndoesJoinWhenTheFirstItemIsNotEmpty) {
  const TAnsiStrings list{"x", "", "y z", ""};
  EXPECT_EQ(TAnsiStrings(list.text('|'), "|", false).compare(list), 0);
}

TEST(StringListItems, OutOfRangeReadsEmptyAndWritesGoNowhere) {
  TAnsiStrings list{"a"};
  EXPECT_TRUE(list.getItem(1).isEmpty());
  EXPECT_TRUE(list.getItem(-1).isEmpty());
  list[5] = "lost";
  EXPECT_TRUE(list[5].isEmpty());
  EXPECT_EQ(list.count(), 1);
  list[0] = "changed";
  EXPECT_EQ(items(list), (Items{"changed"}));
}

TEST(StringListItems, InsertClampsTheIndex) {
  TAnsiStrings list{"b"};
  list.insert("a", -3).insert("c", 99).insert("x", 1);
  EXPECT_EQ(items(list), (Items{"a", "x", "b", "c"}));
}

TEST(StringListItems, RemoveClampsTheRange) {
  TAnsiStrings list{"0", "1", "2", "3", "4"};
  list.remove(5, 1);
  list.remove(-1, 2);
  EXPECT_EQ(list.count(), 5);
  list.remove(1, 2);
  EXPECT_EQ(items(list), (Items{"0", "3", "4"}));
  list.remove(1, -1);
  EXPECT_EQ(items(list), (Items{"0"}));
}

TEST(StringListItems, CopiesAreIndependentAndMovesTakeTheItems) {
  TAnsiStrings original{"a", "b", "c"};
  TAnsiStrings copy(original);
  copy[0] = "changed";
  EXPECT_EQ(items(original), (Items{"a", "b", "c"}));
  EXPECT_EQ(items(TAnsiStrings(original, 1, 5)), (Items{"b", "c"}));
  EXPECT_EQ(items(TAnsiStrings(original, -2, 1)), (Items{"a"}));

  TAnsiStrings target{"z"};
  target.add(std::move(copy));
  EXPECT_EQ(items(target), (Items{"z", "changed", "b", "c"}));
  EXPECT_TRUE(copy.isEmpty());
  copy.add("usable");  // a moved-from list is still a list
  EXPECT_EQ(copy.count(), 1);

  TAnsiStrings moved(std::move(target));
  EXPECT_EQ(moved.count(), 4);
  target = moved;
  target += "d";
  EXPECT_EQ((target + "e").count(), 6);
  EXPECT_EQ(moved.count(), 4);
  target = target;
  EXPECT_EQ(target.count(), 5);
}

TEST(StringListCursor, WalksBothWaysAndStopsAtTheEnds) {
  TAnsiStrings list{"a", "b", "c"};
  std::string forward, backward;
  for (TAnsiString* s = list.begin(1); s != nullptr; s = list.next()) forward += s->p();
  for (TAnsiString* s = list.rbegin(); s != nullptr; s = list.rnext()) backward += s->p();
  EXPECT_EQ(forward, "bc");
  EXPECT_EQ(backward, "cba");
  EXPECT_EQ(list.next(), nullptr);
  EXPECT_EQ(list.begin(3), nullptr);
  EXPECT_EQ(TAnsiStrings().rbegin(), nullptr);
}

TEST(StringListSearch, FirstExactMatchWins) {
  const TAnsiStrings list{"a", "", "A", "a", ""};
  EXPECT_EQ(list.indexOf("a"), 0);
  EXPECT_EQ(list.find("A"), 2);
  EXPECT_EQ(list.indexOf(""), 1);
  EXPECT_EQ(list.indexOf(nullptr), 1);
  EXPECT_EQ(list.indexOf("b"), -1);
}

TEST(StringListOrder, SortIsByteWiseAndStable) {
  TAnsiStrings list{"b", "B", "\xC3\xA9", "a", ""};
  list.sort(true);
  EXPECT_EQ(items(list), (Items{"", "B", "a", "b", "\xC3\xA9"}));
  list.sort(false);
  EXPECT_EQ(items(list), (Items{"\xC3\xA9", "b", "a", "B", ""}));

  TAnsiStrings byLength{"ccc", "a", "bb", "d"};
  byLength.sort(
      [](const TAnsiString* x, const TAnsiString* y) { return x->length() < y->length(); });
  EXPECT_EQ(items(byLength), (Items{"a", "d", "bb", "ccc"}));
  byLength.sort(nullptr);
  EXPECT_EQ(items(byLength), (Items{"a", "d", "bb", "ccc"}));
}

TEST(StringListOrder, CompareGoesItemByItemThenByCount) {
  const TAnsiStrings ab{"a", "b"};
  EXPECT_EQ(ab.compare(TAnsiStrings{"a", "b"}), 0);
  EXPECT_EQ(ab.compare(TAnsiStrings{"a", "c"}), -1);
  EXPECT_EQ(ab.compare(TAnsiStrings{"a"}), 1);
  EXPECT_EQ(TAnsiStrings().compare(ab), -1);
  EXPECT_EQ(ab.compare(TAnsiStrings{"A", "B"}), 1);
  EXPECT_EQ(ab.compare(TAnsiStrings{"A", "B"}, CaseInsensitive), 0);
}

TEST(StringValueCompare, FoldsAsciiAndPutsNullFirst) {
  EXPECT_EQ(strvalueicmp("abc", "ABC"), 0);
  EXPECT_EQ(strvalueicmp("abc", "abd"), -1);
  EXPECT_EQ(strvalueicmp("b", "A"), 1);
  EXPECT_EQ(strvalueicmp(nullptr, nullptr), 0);
  EXPECT_EQ(strvalueicmp(nullptr, ""), -1);
  EXPECT_EQ(strvalueicmp("", nullptr), 1);
}

TEST(StringListFile, SaveThenLoadGivesTheListBack) {
  TempDir dir;
  const TWideString path = wide(dir.filePath("list.txt").c_str());
  const TAnsiStrings list{"first", "", "\xFF\xFE raw bytes", "last"};
  ASSERT_TRUE(list.saveToFile(path));
  EXPECT_EQ(dir.readFile("list.txt"), "first\n\n\xFF\xFE raw bytes\nlast\n");
  TAnsiStrings back{"stale"};
  ASSERT_TRUE(back.loadFromFile(path));
  EXPECT_EQ(back.compare(list), 0);
}

TEST(StringListFile, LoadDropsAByteOrderMarkAndAcceptsCrLf) {
  TempDir dir;
  dir.writeFile("bom.txt", "\xEF\xBB\xBFone\r\ntwo");
  TAnsiStrings list;
  ASSERT_TRUE(list.loadFromFile(wide(dir.filePath("bom.txt").c_str())));
  EXPECT_EQ(items(list), (Items{"one", "two"}));
}

TEST(StringListFile, MissingFileFailsAndEmptyFileGivesAnEmptyList) {
  TempDir dir;
  dir.writeFile("empty.txt", "");
  TAnsiStrings list{"x"};
  EXPECT_TRUE(list.loadFromFile(wide(dir.filePath("empty.txt").c_str())));
  EXPECT_TRUE(list.isEmpty());
  list.add("x");
  EXPECT_FALSE(list.loadFromFile(wide(dir.filePath("missing.txt").c_str())));
  EXPECT_TRUE(list.isEmpty());
  EXPECT_FALSE(list.saveToFile(wide(dir.filePath("no/such/folder.txt").c_str())));
}

TEST(StringListCharset, ItemsConvertOneByOne) {
  const TAnsiStrings gb{"\xD6\xD0\xCE\xC4", "plain"};  // "中文" in GB18030
  EXPECT_EQ(items(gb.toUtf8("gb18030")), (Items{"\xE4\xB8\xAD\xE6\x96\x87", "plain"}));
  EXPECT_EQ(items(gb.toUtf8("no-such-charset")), items(gb)) << "failed items are kept";
}

TEST(WideStringList, SharesTheBehaviourAndConvertsToUtf8) {
  TWideStrings list(ZW("\u4e2d,,b"), ZW(","), false);
  EXPECT_EQ(list.count(), 3);
  EXPECT_EQ(items(list.toUtf8()), (Items{"\xE4\xB8\xAD", "", "b"}));
  EXPECT_TRUE(TWideStrings({ZW(""), ZW("b")}).text(',').equal(ZW(",,b")));
  TWideStrings separatorAbove255(ZW("a\u3001b"), ZW("\u3001"), false);
  EXPECT_EQ(separatorAbove255.count(), 2);
  EXPECT_EQ(list.indexOf(ZW("b")), 2);
}

TEST(WideStringList, FilesHoldUtf8) {
  TempDir dir;
  const TWideString path = wide(dir.filePath("w.txt").c_str());
  const TWideStrings list{ZW("\u4e2d\u6587"), ZW(""), ZW("z")};
  ASSERT_TRUE(list.saveToFile(path));
  EXPECT_EQ(dir.readFile("w.txt"), "\xE4\xB8\xAD\xE6\x96\x87\n\nz\n");
  TWideStrings back;
  ASSERT_TRUE(back.loadFromFile(path));
  EXPECT_EQ(back.compare(list), 0);
}

TEST(StringHashList, OneEntryPerKeyAndNullIsTheEmptyKey) {
  int a = 0, b = 0;
  tstringHashList map;
  map.add("k", &a).add("k", &b).add(nullptr, &a);
  EXPECT_EQ(map.count(), 2);
  EXPECT_EQ(map.getObject("k"), &b);
  EXPECT_EQ(map.getObject(""), &a);
  EXPECT_TRUE(map.has(nullptr));
  EXPECT_FALSE(map.has("K")) << "keys are case-sensitive";
  EXPECT_EQ(map.getObject("missing"), nullptr);
  map.remove("k");
  EXPECT_FALSE(map.has("k"));
}

TEST(StringHashList, CursorVisitsEveryKeyOnce) {
  tstringHashList map;
  TAnsiString key("untouched");
  EXPECT_FALSE(map.first(key));
  EXPECT_STREQ(key.p(), "untouched");

  std::set<std::string> expected;
  for (int i = 0; i < 100; ++i) {
    expected.insert("key" + std::to_string(i));
    map.add(("key" + std::to_string(i)).c_str(), nullptr);
  }
  std::set<std::string> seen;
  for (bool more = map.first(key); more; more = map.next(key)) {
    EXPECT_TRUE(seen.insert(key.p()).second) << key.p();
  }
  EXPECT_EQ(seen, expected);
  EXPECT_FALSE(map.next(key));

  const Items keys = items(map.asStringlist());
  EXPECT_EQ(std::set<std::string>(keys.begin(), keys.end()), expected);
}

TEST(StringHashList, CopiesAndMergesPairs) {
  int a = 0, b = 0;
  tstringHashList one, two;
  one.add("x", &a);
  two.add("x", &b).add("y", &b);
  tstringHashList copy(one);
  copy.add(two);
  EXPECT_EQ(copy.getObject("x"), &b);
  EXPECT_EQ(copy.count(), 2);
  EXPECT_EQ(one.getObject("x"), &a);
  one = copy;
  EXPECT_EQ(one.count(), 2);
  one.clear();
  TAnsiString key;
  EXPECT_FALSE(one.first(key));
}

TEST(WideStringHashList, KeysAreUtf16) {
  int a = 0;
  twstringHashList map;
  map.add(ZW("\u4e2d"), &a);
  EXPECT_EQ(map.getObject(ZW("\u4e2d")), &a);
  TWideString key;
  ASSERT_TRUE(map.first(key));
  EXPECT_TRUE(key.equal(ZW("\u4e2d")));
  EXPECT_EQ(map.asStringlist().count(), 1);
}

}  // namespace

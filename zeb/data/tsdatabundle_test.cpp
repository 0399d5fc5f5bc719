// Tests of the ordered bundle: the read cursor, bounds, removal and copies.

#include <gtest/gtest.h>

#include <limits>

#include "zeb/data/tdatabundle.h"

namespace {

tsdatabundle tens() {
  tsdatabundle s;
  s.putInt32(10).putInt32(20).putInt32(30);
  return s;
}

TEST(TSDataBundleCursor, ReadsAtMinusOneWalkTheSequence) {
  tsdatabundle s = tens();
  s.resetPos();
  EXPECT_EQ(s.getInt32(-1), 10);
  EXPECT_EQ(s.getInt32(-1), 20);
  EXPECT_EQ(s.getInt32(-1), 30);
  EXPECT_EQ(s.getInt32(-1), 0);
  EXPECT_EQ(s.getInt32(-1), 0);  // an empty read does not move the cursor past the end
  s.resetPos();
  EXPECT_EQ(s.getInt32(-1), 10);
}

TEST(TSDataBundleCursor, ReadsByIndexMoveTheCursorToo) {
  tsdatabundle s = tens();
  EXPECT_EQ(s.getInt32(2), 30);  // cursor 0 -> 1
  EXPECT_EQ(s.getInt32(-1), 20);
  EXPECT_EQ(s.getInt32(3), 0);  // outside: no move
  EXPECT_EQ(s.getInt32(-2), 0);
  EXPECT_EQ(s.getInt32(-1), 30);
  EXPECT_TRUE(s.getBytesData(-1).isEmpty());
}

TEST(TSDataBundleValues, EachTypeReadsBack) {
  int target = 0;
  tsdatabundle s;
  s.putFloat(-2.5)
      .putFloat(std::numeric_limits<double>::denorm_min())
      .putBoolean(true)
      .putString("")
      .putString("t")
      .putObject(&target)
      .putUInt32(0xFFFFFFFFu)
      .putBytesData(tbytesdata("b", 1));
  EXPECT_EQ(s.getFloat(0), -2.5);
  EXPECT_EQ(s.getFloat(1), std::numeric_limits<double>::denorm_min());
  EXPECT_TRUE(s.getBoolean(2));
  EXPECT_EQ(s.getString(3), nullptr);
  EXPECT_STREQ(s.getString(4), "t");
  EXPECT_EQ(s.getObject(5), &target);
  EXPECT_EQ(s.getInt64(6), 0xFFFFFFFFLL);
  EXPECT_EQ(s.getBytesData(7).asString(), "b");
  EXPECT_TRUE(s.getBytesData(6).isEmpty());
  EXPECT_EQ(tsdatabundle(42LL).getInt64(0), 42);
}

TEST(TSDataBundleEdit, RemoveClearAndAppendingItself) {
  tsdatabundle s = tens();
  EXPECT_FALSE(s.remove(3));
  EXPECT_FALSE(s.remove(-1));
  EXPECT_TRUE(s.remove(1));
  EXPECT_EQ(s.itemsCount(), 2);
  EXPECT_EQ(s.getInt32(1), 30);

  s.putDatas(s);
  EXPECT_EQ(s.itemsCount(), 4);
  EXPECT_EQ(s.getInt32(3), 30);

  s.getInt32(-1);
  s.clear();
  s.putInt32(5);
  EXPECT_EQ(s.getInt32(-1), 5);  // clear put the cursor back to 0
}

TEST(TSDataBundleCopy, CopiesAreDeepAndCompareItemByItem) {
  tdatabundle nested("k", "v");
  tsdatabundle a;
  a.putString("text").putDataBundle(nested).putBytesData(tbytesdata("\x00\x01", 2));
  tsdatabundle b(a);
  EXPECT_TRUE(a == b);
  EXPECT_NE(a.getString(0), b.getString(0));

  b[1] = tdatabundle("k", "w");
  EXPECT_FALSE(a == b);
  b = a;
  EXPECT_TRUE(a == b);
  b.putInt32(0);
  EXPECT_FALSE(a == b);

  tsdatabundle moved(std::move(b));
  EXPECT_EQ(moved.itemsCount(), 4);
  EXPECT_EQ(b.itemsCount(), 0);  // NOLINT(bugprone-use-after-move)

  a[9] = "detached";  // outside the sequence: changes nothing
  EXPECT_EQ(a.itemsCount(), 3);
  const tsdatabundle& constA = a;
  EXPECT_EQ(constA[9].type(), tbundleitem::dtEmpty);
}

}  // namespace

// Tests of bundle items, keyed bundles and the bundle interface: the put and assign rules, the
// unchecked reads, deep copies and equality with nested payloads, iteration, and the interface.

#include "zeb/data/tdatabundle.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

namespace {

tdatabundle nestedSample() {
  tdatabundle inner;
  inner.putString("city", "Lyon");
  inner.putBytesData("raw", tbytesdata("\x01\x02\x00\x03", 4));
  tdatabundle outer;
  outer.putInt32("n", 7);
  outer.putDataBundle("inner", inner);
  outer.putBytesData("blob", tbytesdata("abc", 3));
  outer.putString("name", "outer");
  return outer;
}

TEST(TDataBundlePut, PutKeepsTheFirstValueAndAssignmentOverwrites) {
  tdatabundle b;
  EXPECT_TRUE(b.putInt32("a", 1));
  EXPECT_FALSE(b.putInt32("a", 2));
  EXPECT_FALSE(b.putString("a", "text"));
  EXPECT_EQ(b.getInt32("a"), 1);
  EXPECT_EQ(b["a"].type(), tbundleitem::dtInt32);

  b["a"] = 2LL;
  EXPECT_EQ(b.getInt32("a"), 2);
  EXPECT_EQ(b["a"].type(), tbundleitem::dtInt64);
  b["a"] = "now a text";
  EXPECT_STREQ(b.getString("a"), "now a text");
  EXPECT_EQ(b.itemsCount(), 1);
}

TEST(TDataBundlePut, KeysAreExactAndNullIsTheEmptyKey) {
  tdatabundle b;
  b.putInt32("Key", 1);
  EXPECT_TRUE(b.putInt32("key", 2));
  EXPECT_TRUE(b.putInt32(nullptr, 3));
  EXPECT_FALSE(b.putInt32("", 4));
  EXPECT_EQ(b.getInt32("Key"), 1);
  EXPECT_EQ(b.getInt32("key"), 2);
  EXPECT_EQ(b.getInt32(""), 3);
  EXPECT_TRUE(b.has(nullptr));
}

TEST(TDataBundlePut, EmptyAndNullTextsAreStoredAsNull) {
  tdatabundle b;
  b.putString("empty", "");
  b.putString("null", nullptr);
  EXPECT_TRUE(b.has("empty"));
  EXPECT_EQ(b["empty"].type(), tbundleitem::dtString);
  EXPECT_EQ(b.getString("empty"), nullptr);
  EXPECT_EQ(b.getString("null"), nullptr);
  EXPECT_TRUE(b["empty"] == "");
  EXPECT_TRUE(b["empty"].equal(b["null"]));
}

TEST(TDataBundleGet, ReadsTakeTheRawValueWithoutATypeCheck) {
  tdatabundle b;
  b.putInt32("neg", -1);
  b.putUInt32("big", 0xFFFFFFFFu);
  b.putInt64("wide", 0x1234567890ABCDEFLL);
  b.putBoolean("yes", true);
  b.putString("text", "abc");

  EXPECT_EQ(b.getInt64("neg"), -1);  // int32 is sign-extended
  EXPECT_EQ(b.getUInt32("neg"), 0xFFFFFFFFu);
  EXPECT_EQ(b.getInt64("big"), 0xFFFFFFFFLL);  // uint32 is zero-extended
  EXPECT_EQ(b.getInt32("big"), -1);
  EXPECT_EQ(b.getUInt32("wide"), 0x90ABCDEFu);  // the low 32 bits
  EXPECT_EQ(b["yes"].type(), tbundleitem::dtUInt64);
  EXPECT_EQ(b.getUInt64("yes"), 1u);

  // A text read as a number is its address; a number read as a pointer is the number.
  EXPECT_EQ(static_cast<std::uintptr_t>(b.getUInt64("text")),
            reinterpret_cast<std::uintptr_t>(b.getString("text")));
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(b.getObject("big")), 0xFFFFFFFFu);
  EXPECT_TRUE(b.getBoolean("text"));

  EXPECT_EQ(b.getInt64("missing"), 0);
  EXPECT_EQ(b.getString("missing"), nullptr);
  EXPECT_FALSE(b.getBoolean("missing"));
}

TEST(TDataBundleGet, BytesAreReadOnlyFromBytesItems) {
  tdatabundle b;
  b.putBytesData("raw", tbytesdata("xyz", 3));
  b.putInt32("n", 5);
  EXPECT_EQ(b.getBytesData("raw").asString(), "xyz");
  EXPECT_TRUE(b.getBytesData("n").isEmpty());
  const tbytesdata& missing = b.getBytesData("missing");
  EXPECT_TRUE(missing.isEmpty());
  EXPECT_EQ(&missing, &b.getBytesData("n"));  // one shared empty buffer
  EXPECT_EQ(b["n"].asDataBundle().itemsCount(), 0);
}

TEST(TBundleItem, ComparisonsLookAtTheType) {
  tbundleitem int32(tbundleitem::dtInt32, 1);
  tbundleitem uint64(tbundleitem::dtUInt64, 1);
  EXPECT_TRUE(int32 == 1LL);
  EXPECT_FALSE(uint64 == 1LL);
  EXPECT_FALSE(int32.equal(uint64));
  int x = 0;
  tbundleitem object;
  object = static_cast<void*>(&x);
  EXPECT_TRUE(object == static_cast<void*>(&x));
  EXPECT_EQ(object.asPointer(), &x);
  EXPECT_EQ(int32.asPointer(), nullptr);
  EXPECT_EQ(tbundleitem(static_cast<udatatype>(42), 7).type(), tbundleitem::dtEmpty);
}

TEST(TBundleItem, ReleatPtrHandsOverTheText) {
  tbundleitem item;
  item = "owned";
  char* text = const_cast<char*>(item.asString());
  item.releatPtr();
  EXPECT_EQ(item.type(), tbundleitem::dtEmpty);
  EXPECT_EQ(item.value(), 0u);
  EXPECT_STREQ(text, "owned");
  delete[] text;
}

TEST(TDataBundleCopy, CopiesAreDeepAndEqual) {
  tdatabundle original = nestedSample();
  tdatabundle copy(original);
  EXPECT_TRUE(copy == original);
  EXPECT_NE(copy.getString("name"), original.getString("name"));  // its own text
  EXPECT_NE(&copy.getBytesData("blob"), &original.getBytesData("blob"));

  original["inner"] = tdatabundle("city", "Nice");
  EXPECT_FALSE(copy == original);
  EXPECT_STREQ(copy["inner"].asDataBundle().getString("city"), "Lyon");

  tdatabundle assigned;
  assigned.putInt32("gone", 1);
  assigned = copy;
  EXPECT_TRUE(assigned == copy);
  EXPECT_FALSE(assigned.has("gone"));
}

TEST(TDataBundleCopy, EqualityComparesNestedBytesAndTypes) {
  tdatabundle a = nestedSample();
  tdatabundle b = nestedSample();
  EXPECT_TRUE(a == b);

  tdatabundle inner = b["inner"].asDataBundle();
  inner["raw"] = tbytesdata("\x01\x02\x00\x04", 4);  // differs after the NUL
  b["inner"] = inner;
  EXPECT_FALSE(a == b);

  tdatabundle c = nestedSample();
  c["n"] = 7LL;  // same value, int64 instead of int32
  EXPECT_FALSE(a == c);

  tdatabundle d = nestedSample();
  d.putInt32("extra", 0);
  EXPECT_FALSE(a == d);
  EXPECT_FALSE(d == a);
}

TEST(TDataBundleCopy, MoveLeavesAnEmptyUsableBundle) {
  tdatabundle source = nestedSample();
  tdatabundle target(std::move(source));
  EXPECT_EQ(target.itemsCount(), 4);
  EXPECT_EQ(source.itemsCount(), 0);  // NOLINT(bugprone-use-after-move)
  EXPECT_TRUE(source.putInt32("again", 1));
  target = std::move(source);
  EXPECT_EQ(target.itemsCount(), 1);
  EXPECT_EQ(source.itemsCount(), 0);  // NOLINT(bugprone-use-after-move)
}

TEST(TDataBundleCopy, BundlePutIntoItselfIsCopiedAsItWas) {
  tdatabundle b = nestedSample();
  EXPECT_TRUE(b.putDataBundle("self", b));
  EXPECT_EQ(b.itemsCount(), 5);
  EXPECT_TRUE(b["self"].asDataBundle() == nestedSample());
}

TEST(TDataBundleIterate, EveryItemOnceAndChangesEndTheWalk) {
  tdatabundle b = nestedSample();
  std::map<std::string, int> seen;
  for (const tdatabundleItemData* item = b.firstItem(); item != nullptr; item = b.nextItem()) {
    ++seen[item->name];
    EXPECT_EQ(item->type, b[item->name].type());
    EXPECT_EQ(item->value, b.getItem(item->name));
  }
  EXPECT_EQ(seen, (std::map<std::string, int>{{"blob", 1}, {"inner", 1}, {"n", 1}, {"name", 1}}));

  ASSERT_NE(b.firstItem(), nullptr);
  b.remove("n");
  EXPECT_EQ(b.nextItem(), nullptr);
  b.clear();
  EXPECT_EQ(b.firstItem(), nullptr);

  int visits = 0;
  nestedSample().traval([](const char*, const tbundleitem&, void* c) { ++*static_cast<int*>(c); },
                        &visits);
  EXPECT_EQ(visits, 4);
}

TEST(TDataBundlePutDatas, ExistingKeysAreKept) {
  tdatabundle target;
  target.putString("name", "mine");
  target.putDatas(nestedSample());
  EXPECT_EQ(target.itemsCount(), 4);
  EXPECT_STREQ(target.getString("name"), "mine");
  EXPECT_TRUE(target["inner"] == nestedSample()["inner"].asDataBundle());
}

TEST(TDataBundleInterface, WrapsTheBundleItselfWithOneReference) {
  tdatabundle b;
  {
    zeb::PassRefPtr<idatabundle> view = b.wrapAsInterface();
    ASSERT_TRUE(view);
    EXPECT_EQ(view->refCount(), 1);
    EXPECT_TRUE(view->putInt32("i", -5));
    EXPECT_FALSE(view->putInt32("i", 9));
    EXPECT_TRUE(view->putUInt64("u", 1ULL << 40));
    EXPECT_TRUE(view->putString("s", "via view"));
    EXPECT_EQ(view->getInt32("i"), -5);
    EXPECT_EQ(view->getUInt32("i"), 0xFFFFFFFBu);
    EXPECT_EQ(view->getInt64("u"), 1LL << 40);
    EXPECT_STREQ(view->getString("s"), "via view");
    EXPECT_TRUE(view->remove("u"));
    EXPECT_EQ(view->itemsCount(), 2);
  }
  EXPECT_EQ(b.getInt32("i"), -5);  // the bundle outlives its view
  EXPECT_STREQ(b.getString("s"), "via view");
}

TEST(TDataBundleInterface, PutDatasThroughAnInterfaceCopiesOwnedPayloads) {
  tdatabundle source = nestedSample();
  tdatabundle target;
  target.putInt32("n", 100);
  {
    zeb::PassRefPtr<idatabundle> view = source.wrapAsInterface();
    target.putDatas(view.get());
  }
  source.clear();  // the copies must not point into the source
  EXPECT_EQ(target.getInt32("n"), 100);
  EXPECT_STREQ(target.getString("name"), "outer");
  EXPECT_EQ(target.getBytesData("blob").asString(), "abc");
  EXPECT_STREQ(target["inner"].asDataBundle().getString("city"), "Lyon");
}

TEST(TDataBundleInterface, WithoutABundleEverythingIsZero) {
  idatabundle* view = new tdatabundleInterfaceObject(nullptr);
  view->AddRef();
  EXPECT_FALSE(view->putInt32("a", 1));
  EXPECT_FALSE(view->has("a"));
  EXPECT_EQ(view->getString("a"), nullptr);
  EXPECT_EQ(view->itemsCount(), 0);
  EXPECT_EQ(view->firstItem(), nullptr);
  view->putDatas(view);
  view->Release();
}

#if defined(__GNUC__) && !defined(_WIN32)
// A component built against an older header calls by table position, so the order is fixed.
// Under the Itanium C++ ABI the destructor takes two entries: position n of the documented table
// is entry n + 1 from slot 4 on.
#if defined(__clang__)
#define ZEB_TEST_NO_FUNCTION_CHECK __attribute__((no_sanitize("function")))
#else
#define ZEB_TEST_NO_FUNCTION_CHECK
#endif
template <typename Result, typename... Args>
ZEB_TEST_NO_FUNCTION_CHECK Result callEntry(idatabundle* view, int documentedSlot, Args... args) {
  void** table = *reinterpret_cast<void***>(view);
  const int entry = documentedSlot >= 4 ? documentedSlot + 1 : documentedSlot;
  auto function = reinterpret_cast<Result (*)(idatabundle*, Args...)>(table[entry]);
  return function(view, args...);
}

TEST(TDataBundleInterface, VirtualTableKeepsTheDocumentedOrder) {
  tdatabundle b;
  zeb::PassRefPtr<idatabundle> holder = b.wrapAsInterface();
  idatabundle* view = holder.get();
  int target = 0;
  EXPECT_EQ(callEntry<unsigned long>(view, 1), 2u);  // AddRef
  EXPECT_EQ(callEntry<unsigned long>(view, 2), 1u);  // Release
  EXPECT_TRUE(callEntry<bool>(view, 5, "i32", -7));
  EXPECT_TRUE(callEntry<bool>(view, 6, "u32", 7u));
  EXPECT_TRUE(callEntry<bool>(view, 7, "i64", -(1LL << 40)));
  EXPECT_TRUE(callEntry<bool>(view, 8, "u64", 1ULL << 41));
  EXPECT_TRUE(callEntry<bool>(view, 9, "s", "text"));
  EXPECT_TRUE(callEntry<bool>(view, 10, "o", static_cast<void*>(&target)));
  EXPECT_EQ(b["i32"].type(), tbundleitem::dtInt32);
  EXPECT_EQ(b["u32"].type(), tbundleitem::dtUInt32);
  EXPECT_EQ(b["i64"].type(), tbundleitem::dtInt64);
  EXPECT_EQ(b["u64"].type(), tbundleitem::dtUInt64);
  EXPECT_EQ(b["o"].type(), tbundleitem::dtObject);
  EXPECT_TRUE(callEntry<bool>(view, 4, "s"));
  EXPECT_EQ(callEntry<int>(view, 11, "i32"), -7);
  EXPECT_EQ(callEntry<unsigned>(view, 12, "i32"), static_cast<unsigned>(-7));
  EXPECT_EQ(callEntry<long long>(view, 13, "i64"), -(1LL << 40));
  EXPECT_EQ(callEntry<unsigned long long>(view, 14, "u64"), 1ULL << 41);
  EXPECT_TRUE(callEntry<bool>(view, 15, "u32"));
  EXPECT_STREQ(callEntry<const char*>(view, 16, "s"), "text");
  EXPECT_EQ(callEntry<void*>(view, 17, "o"), &target);
  EXPECT_TRUE(callEntry<bool>(view, 18, "o"));
  EXPECT_EQ(callEntry<int>(view, 20), 5);
  EXPECT_NE(callEntry<const tdatabundleItemData*>(view, 21), nullptr);
  EXPECT_NE(callEntry<const tdatabundleItemData*>(view, 22), nullptr);
  tdatabundle other("added", 1LL);
  zeb::PassRefPtr<idatabundle> otherView = other.wrapAsInterface();
  callEntry<void>(view, 23, otherView.get());
  EXPECT_TRUE(b.has("added"));
  callEntry<void>(view, 19);
  EXPECT_EQ(b.itemsCount(), 0);
}
#endif

}  // namespace

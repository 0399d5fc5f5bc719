// Tests of the counted interface base: the count's life cycle, QueryInterface's answers, misuse
// lines, counting from many threads and the PassRefPtr holder.

#include "zeb/utils/interface_classbase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "testing/log_capture.h"
#include "zeb/log/zeb_log.h"

namespace {

// Counts its own destructions so a test sees exactly when Release deletes.
class TProbe : public interface_classbase {
 public:
  TProbe(std::atomic<int>* destroyed, bool threadSafe = false)
      : interface_classbase(threadSafe), m_destroyed(destroyed) {}
  ~TProbe() override { ++*m_destroyed; }

 private:
  std::atomic<int>* m_destroyed;
};

bool hasMessage(const zeb::testing::LogCapture& log, const std::string& message) {
  const std::vector<std::string> messages = log.messages();
  return std::find(messages.begin(), messages.end(), message) != messages.end();
}

TEST(InterfaceClassbase, FirstAddRefGivesOneAndLastReleaseDeletes) {
  std::atomic<int> destroyed{0};
  interface_classbase* object = new TProbe(&destroyed);
  EXPECT_EQ(object->refCount(), 0);
  EXPECT_EQ(object->AddRef(), 1u);
  EXPECT_EQ(object->AddRef(), 2u);
  EXPECT_EQ(object->Release(), 1u);
  EXPECT_EQ(destroyed, 0);
  EXPECT_EQ(object->Release(), 0u);
  EXPECT_EQ(destroyed, 1);
}

TEST(InterfaceClassbase, QueryInterfaceAnswersOnlyItsTwoIdentifiers) {
  std::atomic<int> destroyed{0};
  interface_classbase* object = new TProbe(&destroyed);
  object->AddRef();

  void* out = reinterpret_cast<void*>(&destroyed);  // must be overwritten with null
  const GUID other = {0xCF4D91F3, 0x8275, 0x4A4B, {0x9F, 0xD3, 0x2D, 0x24, 0x84, 0x73, 0x87, 0x31}};
  EXPECT_EQ(object->QueryInterface(other, &out), 0);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(object->refCount(), 1);

  EXPECT_EQ(object->QueryInterface(zeb::kIIDUnknown, &out), 0);
  EXPECT_EQ(out, object);
  EXPECT_EQ(object->refCount(), 2);
  out = nullptr;
  EXPECT_EQ(object->QueryInterface(zeb::kIIDInterfaceBase, &out), 0);
  EXPECT_EQ(out, object);
  EXPECT_EQ(object->refCount(), 3);
  EXPECT_EQ(object->QueryInterface(zeb::kIIDUnknown, nullptr), 0);
  EXPECT_EQ(object->refCount(), 3);

  object->Release();
  object->Release();
  object->Release();
  EXPECT_EQ(destroyed, 1);
}

TEST(InterfaceClassbase, CopyStartsUncounted) {
  std::atomic<int> destroyed{0};
  TProbe original(&destroyed);
  original.AddRef();
  TProbe* copy = new TProbe(original);
  EXPECT_EQ(copy->refCount(), 0);
  copy->AddRef();
  copy->Release();
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(original.refCount(), 1);
}

TEST(InterfaceClassbaseLog, MisuseWritesFatalLinesAndCarriesOn) {
  zeb::testing::LogCapture log(MLOG_ERROR);
  std::atomic<int> destroyed{0};
  // Released without a reference: the underflow is reported, the object still goes.
  (new TProbe(&destroyed))->Release();
  EXPECT_EQ(destroyed, 1);
  EXPECT_TRUE(hasMessage(log, "Fatal Error:FileName:interface_classbase Line:41"));

  interface_classbase* held = new TProbe(&destroyed);
  held->AddRef();
  held->AddRef();
  delete held;
  EXPECT_EQ(destroyed, 2);
  EXPECT_TRUE(hasMessage(log, "Fatal Error:FileName:interface_classbase Line:13"));
}

TEST(InterfaceClassbaseLog, TraceLinesFollowTheObject) {
  zeb::testing::LogCapture log(20);
  mlogSetLevel(static_cast<tloglevel>(20));
  std::atomic<int> destroyed{0};
  interface_classbase* object = new TProbe(&destroyed);
  char address[32];
  std::snprintf(address, sizeof address, "0x%x",
                static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(object)));
  object->AddRef();
  void* out = nullptr;
  object->QueryInterface(zeb::kIIDUnknown, &out);
  object->Release();
  object->Release();
  const std::string a(address);
  EXPECT_TRUE(hasMessage(log, "interface_classbase::interface_classbase() this:" + a));
  EXPECT_TRUE(hasMessage(log, "interface_classbase::QueryInterface,iid(0-0-0-c0)"));
  EXPECT_TRUE(hasMessage(log, "pvObject=" + a));
  EXPECT_TRUE(hasMessage(log, "interface_classbase::Release(), this:" + a + " ref:1"));
  EXPECT_TRUE(hasMessage(log, "interface_classbase::Release(),delete this:" + a));
  EXPECT_TRUE(hasMessage(log, "interface_classbase::~interface_classbase() this:" + a));
}

TEST(InterfaceClassbaseThreads, EightThreadsCountExactlyWithTheThreadSafeFlag) {
  const int kThreads = 8;
  const int kRounds = 20000;
  std::atomic<int> destroyed{0};
  interface_classbase* object = new TProbe(&destroyed, true);
  object->AddRef();  // the test's own reference keeps the object alive throughout
  std::atomic<int> peakSeen{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < kRounds; ++i) {
        const int up = static_cast<int>(object->AddRef());
        if (up > peakSeen) peakSeen = up;
        object->AddRef();
        object->Release();
        object->Release();
      }
    });
  }
  for (std::thread& t : threads) t.join();
  EXPECT_EQ(object->refCount(), 1);
  EXPECT_EQ(destroyed, 0);
  EXPECT_GE(peakSeen, 2);
  EXPECT_LE(peakSeen, 1 + 2 * kThreads);
  EXPECT_EQ(object->Release(), 0u);
  EXPECT_EQ(destroyed, 1);
}

TEST(PassRefPtr, HoldsExactlyOneReferenceThroughCopiesAndMoves) {
  std::atomic<int> destroyed{0};
  auto* object = new TProbe(&destroyed);
  object->AddRef();
  {
    auto holder = zeb::PassRefPtr<TProbe>::adopt(object);
    EXPECT_EQ(object->refCount(), 1);
    zeb::PassRefPtr<TProbe> copy = holder;
    EXPECT_EQ(object->refCount(), 2);
    zeb::PassRefPtr<TProbe> moved = std::move(copy);
    EXPECT_FALSE(copy);
    EXPECT_EQ(object->refCount(), 2);
    moved = zeb::PassRefPtr<TProbe>();
    EXPECT_EQ(object->refCount(), 1);
    TProbe* leaked = holder.leakRef();
    EXPECT_EQ(leaked, object);
    holder = zeb::PassRefPtr<TProbe>::adopt(leaked);
  }
  EXPECT_EQ(destroyed, 1);
}

}  // namespace

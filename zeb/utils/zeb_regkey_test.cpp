#include "zeb/utils/zeb_regkey.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "testing/log_capture.h"
#include "testing/temp_dir.h"
#include "zeb/log/zeb_log.h"

using zeb::testing::TempDir;

namespace {

const zwchar_t* const kApp = ZW("SOFTWARE\\zebworks\\regtest");

std::u16string text(const zwchar_t* s) {
  return s != nullptr ? std::u16string(s) : std::u16string(u"(null)");
}

// Every test gets a registry of its own in a fresh folder.
class Registry : public ::testing::Test {
 protected:
  void SetUp() override { setenv("ZEB_REGISTRY_DIR", folder().c_str(), 1); }
  void TearDown() override { unsetenv("ZEB_REGISTRY_DIR"); }
  std::string folder() const { return dir_.filePath("reg"); }
  std::string userDb() const { return folder() + "/user.db"; }

  // Runs `body` in a child process and returns its exit status (the child never returns).
  static int inChild(const std::function<int()>& body) {
    const pid_t pid = fork();
    if (pid == 0) _exit(body());
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
  }

  TempDir dir_;
};

// ---- RegValue ----------------------------------------------------------------------------------

TEST(RegValueTest, ComparisonsRespectTheType) {
  EXPECT_TRUE(RegValue(ZW("ab"), false) == ZW("ab"));
  EXPECT_FALSE(RegValue(ZW("ab"), true) == ZW("ab"));
  EXPECT_FALSE(RegValue(ZW("ab")) == ZW("abc"));
  EXPECT_TRUE(RegValue(5ul) == 5ul);
  EXPECT_FALSE(RegValue(5ull) == 5ul);
  EXPECT_TRUE(RegValue(5ull) == 5ull);
  EXPECT_FALSE(RegValue() == 0ull) << "no data never equals a number";
  EXPECT_EQ(RegValue(ZW("ab")).Size(), 6u);

  EXPECT_TRUE(RegValue(ZW("z"), true) < RegValue(0ul)) << "a smaller type code is less";
  EXPECT_FALSE(RegValue(0ul) < RegValue(ZW("z"), true));
  unsigned char ab[] = {1, 2}, abc[] = {1, 2, 0}, b[] = {2};
  EXPECT_TRUE(RegValue(2ul, ab) < RegValue(3ul, abc)) << "a prefix is less";
  EXPECT_TRUE(RegValue(3ul, abc) < RegValue(1ul, b));
  EXPECT_FALSE(RegValue(2ul, ab) < RegValue(2ul, ab));
}

TEST(RegValueTest, CopiesAndMovesLeaveTheSourceIntact) {
  RegValue source(ZW("keep"));
  RegValue moved(std::move(source));
  EXPECT_TRUE(source == ZW("keep"));
  EXPECT_TRUE(moved == ZW("keep"));
  RegValue assigned;
  assigned = std::move(moved);
  EXPECT_TRUE(moved == ZW("keep"));
  assigned = 7ul;
  EXPECT_EQ(assigned.getType(), REG_DWORD);
  assigned = ZW("x");
  EXPECT_EQ(assigned.getType(), REG_SZ);
  assigned.Resize(6);
  EXPECT_EQ(assigned.getData(4), 0);
  EXPECT_EQ(assigned.getDataReadPtr(6), nullptr);
}

TEST(RegValueTest, MultiStringIsTheDoubleNulList) {
  const zwchar_t* parts[] = {ZW("one"), ZW(""), ZW("three")};
  const RegValue two(2, parts);
  EXPECT_EQ(two.getType(), REG_MULTI_SZ);
  EXPECT_EQ(two.Size(), (4u + 1u + 1u) * 2u);
  EXPECT_EQ(text(two.at(0)), u"one");
  EXPECT_EQ(text(two.at(1)), u"") << "the empty string ends the list";
  const RegValue one(1, parts);
  EXPECT_EQ(text(one.at(0)), u"one");
  EXPECT_EQ(text(one.at(1)), u"");
  EXPECT_EQ(text(RegValue(ZW("x")).at(0)), u"") << "not a multi-string";
  const zwchar_t* full[] = {ZW("a"), ZW("bc")};
  const RegValue list(2, full);
  EXPECT_EQ(text(list.at(1)), u"bc");
  EXPECT_EQ(text(static_cast<const zwchar_t*>(list)), u"a");
}

TEST(RegValueTest, DefaultedReaders) {
  EXPECT_EQ(RegValue(0xFFFFFFFFul).asInt32Def(5), -1);
  EXPECT_EQ(RegValue(0xFFFFFFFFul).asInt64Def(5), 0xFFFFFFFFll);
  EXPECT_EQ(RegValue(42ull).asInt32Def(5), 42);
  EXPECT_EQ(RegValue(1ull << 40).asInt32Def(5), 5) << "does not fit";
  EXPECT_EQ(RegValue(1ull << 40).asInt64Def(5), 1ll << 40);
  EXPECT_EQ(RegValue(ZW("-123")).asInt32Def(5), -123);
  EXPECT_EQ(RegValue(ZW("9223372036854775807")).asInt64Def(5), 9223372036854775807ll);
  EXPECT_EQ(RegValue(ZW("9223372036854775808")).asInt64Def(5), 5);
  EXPECT_EQ(RegValue(ZW("12a")).asInt32Def(5), 5);
  EXPECT_EQ(RegValue(ZW("")).asInt32Def(5), 5);
  EXPECT_EQ(RegValue(ZW("3000000000")).asInt32Def(5), 5);
  EXPECT_EQ(RegValue().asInt64Def(-2), -2);
  EXPECT_EQ(text(RegValue(ZW("t"), true).asStringDef(ZW("d"))), u"t");
  EXPECT_EQ(text(RegValue(1ul).asStringDef(ZW("d"))), u"d");
  EXPECT_EQ(static_cast<unsigned long>(RegValue(ZW("x"))), 0ul);
  EXPECT_EQ(static_cast<unsigned long long>(RegValue(3ull)), 3ull);
  unsigned char odd[] = {'a', 0, 'b'};
  RegValue raw(3ul, odd);
  raw.getTypeWriter() = REG_SZ;
  EXPECT_EQ(text(static_cast<const zwchar_t*>(raw)), u"ab") << "an odd tail still ends";
}

TEST_F(Registry, FailedChecksLogTheSourceAndLine) {
  zeb::testing::LogCapture log(MLOG_ERROR);
  EXPECT_EQ(static_cast<unsigned long>(RegValue(ZW("x"))), 0ul);
  EXPECT_EQ(static_cast<unsigned long long>(RegValue(1ul)), 0ull);
  EXPECT_EQ(RegValue(ZW("x")).asInt32Def(4), 4);
  EXPECT_EQ(RegValue().asInt32Def(4), 4) << "a missing value is no error";
  EXPECT_EQ(text(RegValue(1ul).at(0)), u"");
  EXPECT_EQ(TRegKey(HKEY_CURRENT_USER).Delete(), ERROR_ACCESS_DENIED);
  const std::vector<std::string> messages = log.messages();
  ASSERT_EQ(messages.size(), 5u);
  for (const std::string& message : messages) {
    EXPECT_EQ(message.rfind("Error:FileName:utils/zeb_regkey Line:", 0), 0u) << message;
  }
}

// ---- keys and values ---------------------------------------------------------------------------

TEST_F(Registry, FirstUseCreatesTheFolderAndValuesRoundTrip) {
  TRegKey key(HKEY_CURRENT_USER);
  ASSERT_EQ(key.Create(kApp), ERROR_SUCCESS);
  EXPECT_TRUE(std::filesystem::exists(userDb()));
  EXPECT_EQ(text(key.Path()), text(kApp));
  unsigned char bytes[] = {0, 1, 2, 0xFF};
  const RegValue values[] = {RegValue(ZW("text")), RegValue(ZW("%PATH%"), true), RegValue(7ul),
                             RegValue(1ull << 63), RegValue(4ul, bytes),         RegValue()};
  const zwchar_t* names[] = {ZW("s"), ZW("e"), ZW("d"), ZW("q"), ZW("b"), ZW("n")};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(key.SetValue(names[i], values[i]), ERROR_SUCCESS);
  TRegKey reader(HKEY_CURRENT_USER);
  ASSERT_EQ(reader.Open(kApp), ERROR_SUCCESS);
  for (int i = 0; i < 6; ++i) {
    RegValue back;
    EXPECT_EQ(reader.QueryValue(names[i], back), ERROR_SUCCESS);
    EXPECT_TRUE(back == values[i]) << i;
  }
  EXPECT_TRUE(reader[ZW("D")] == RegValue(7ul)) << "names are case-insensitive";
  EXPECT_FALSE(reader.isEmpty());
  EXPECT_TRUE(reader.isLeaf());
}

TEST_F(Registry, QueryValueMissingAndReusedValues) {
  TRegKey key(HKEY_CURRENT_USER);
  ASSERT_EQ(key.Create(kApp), ERROR_SUCCESS);
  RegValue out;
  EXPECT_EQ(key.QueryValue(ZW("absent"), out), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(out.getType(), REG_NONE);
  EXPECT_EQ(out.Size(), 0u);

  key[ZW("long")] = RegValue(ZW("123456789"));  // 20 bytes
  key[ZW("short")] = RegValue(ZW("ab"));        // 6 bytes
  EXPECT_EQ(key.QueryValue(ZW("long"), out), ERROR_SUCCESS);
  EXPECT_EQ(out.Size(), 20u);
  EXPECT_EQ(key.QueryValue(ZW("short"), out), ERROR_SUCCESS);
  EXPECT_EQ(out.Size(), 20u) << "a reused value never shrinks";
  EXPECT_EQ(text(static_cast<const zwchar_t*>(out)), u"ab");
  RegValue small(1ul);
  EXPECT_EQ(key.QueryValue(ZW("long"), small), ERROR_SUCCESS) << "grows on ERROR_MORE_DATA";
  EXPECT_TRUE(small == ZW("123456789"));
}

TEST_F(Registry, DefaultValueAndCasePreservingNames) {
  TRegKey key(HKEY_CURRENT_USER);
  ASSERT_EQ(key.Create(kApp), ERROR_SUCCESS);
  key[ZW("")] = RegValue(ZW("default"));
  EXPECT_TRUE(key[nullptr] == RegValue(ZW("default")));
  key[ZW("MixedCase")] = RegValue(1ul);
  key[ZW("MIXEDCASE")] = RegValue(2ul);
  zwchar_t name[32];
  unsigned long length = 32;
  RegValue value;
  EXPECT_EQ(key.EnumValue(1, name, &length, value), ERROR_SUCCESS);
  EXPECT_EQ(text(name), u"MixedCase") << "the first spelling is kept";
  EXPECT_TRUE(value == 2ul);
  EXPECT_EQ(length, 9u) << "length without the NUL";
  EXPECT_EQ(key.EnumValue(2, name, &length, value), ERROR_NO_MORE_ITEMS);
  EXPECT_EQ(key.Create(ZW("software\\ZEBWORKS\\RegTest")), ERROR_SUCCESS);
  EXPECT_TRUE(key[ZW("mixedcase")] == RegValue(2ul)) << "the same key";
}

TEST_F(Registry, EnumerationOrderAndBufferSizes) {
  TRegKey key(HKEY_CURRENT_USER);
  ASSERT_EQ(key.Create(kApp), ERROR_SUCCESS);
  for (const zwchar_t* sub : {ZW("b"), ZW("_x"), ZW("C"), ZW("a")}) {
    TRegKey child(HKEY_CURRENT_USER);
    ASSERT_EQ(child.Create((std::u16string(kApp) + u"\\" + sub).c_str()), ERROR_SUCCESS);
  }
  std::vector<std::u16string> subkeys;
  zwchar_t name[8];
  for (unsigned long i = 0;; ++i) {
    unsigned long length = 8;
    if (key.EnumKey(i, name, &length) != ERROR_SUCCESS) break;
    EXPECT_EQ(length, std::u16string(name).size());
    subkeys.push_back(name);
  }
  EXPECT_EQ(subkeys, (std::vector<std::u16string>{u"a", u"b", u"C", u"_x"}));
  EXPECT_FALSE(key.isLeaf());

  for (const zwchar_t* v : {ZW("zeta"), ZW("alpha"), ZW("mid")}) key[v] = RegValue(ZW("v"));
  key[ZW("zeta")] = RegValue(9ul);  // replacing keeps the place
  std::vector<std::u16string> values;
  for (unsigned long i = 0;; ++i) {
    unsigned long length = 8;
    RegValue value;
    if (key.EnumValue(i, name, &length, value) != ERROR_SUCCESS) break;
    values.push_back(name);
  }
  EXPECT_EQ(values, (std::vector<std::u16string>{u"zeta", u"alpha", u"mid"}));
  unsigned long tight = 4;  // "zeta" needs 5 units with its NUL
  RegValue value;
  EXPECT_EQ(key.EnumValue(0, name, &tight, value), ERROR_MORE_DATA);
}

TEST_F(Registry, CloseOpenCopyAndRemote) {
  TRegKey fresh(HKEY_CURRENT_USER);
  EXPECT_EQ(fresh.Close(), ERROR_INVALID_HANDLE) << "the hive itself was never opened";
  EXPECT_EQ(fresh.Key(), nullptr);
  EXPECT_EQ(fresh.Close(), ERROR_SUCCESS);

  TRegKey key(HKEY_CURRENT_USER);
  EXPECT_EQ(key.Open(ZW("no\\such\\key")), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(key.Key(), nullptr);
  EXPECT_EQ(text(key.Path()), u"no\\such\\key");
  ASSERT_EQ(key.Create(kApp), ERROR_SUCCESS);
  key[ZW("v")] = RegValue(3ul);
  TRegKey copy(key);
  EXPECT_NE(copy.Key(), key.Key());
  EXPECT_EQ(key.Close(), ERROR_SUCCESS);
  EXPECT_TRUE(copy[ZW("v")] == RegValue(3ul)) << "the copy's handle is its own";
  TRegKey assigned(HKEY_LOCAL_MACHINE);
  assigned = copy;
  EXPECT_TRUE(assigned[ZW("v")] == RegValue(3ul));

  TRegKey remote(HKEY_CURRENT_USER, ZW("\\\\server"));
  EXPECT_EQ(remote.Key(), HKEY_CURRENT_USER);
}

TEST_F(Registry, DeleteRefusesSubkeysAndStaleHandlesSayDeleted) {
  TRegKey parent(HKEY_CURRENT_USER), child(HKEY_CURRENT_USER), other(HKEY_CURRENT_USER);
  ASSERT_EQ(parent.Create(kApp), ERROR_SUCCESS);
  ASSERT_EQ(child.Create((std::u16string(kApp) + u"\\child").c_str()), ERROR_SUCCESS);
  ASSERT_EQ(other.Open(kApp), ERROR_SUCCESS);
  other[ZW("v")] = RegValue(1ul);
  EXPECT_EQ(parent.Delete(), ERROR_ACCESS_DENIED);
  EXPECT_EQ(child.Delete(), ERROR_SUCCESS);
  EXPECT_EQ(child.SetValue(ZW("x"), RegValue(1ul)), ERROR_KEY_DELETED);
  EXPECT_EQ(parent.Delete(), ERROR_SUCCESS);
  RegValue out;
  EXPECT_EQ(other.QueryValue(ZW("v"), out), ERROR_KEY_DELETED);
  EXPECT_EQ(other.DeleteValue(ZW("v")), ERROR_KEY_DELETED);
  EXPECT_EQ(parent.Create(kApp), ERROR_SUCCESS);
  EXPECT_EQ(parent.QueryValue(ZW("v"), out), ERROR_FILE_NOT_FOUND) << "values went with the key";
  EXPECT_EQ(other.QueryValue(ZW("v"), out), ERROR_KEY_DELETED) << "a new key is not the old one";

  ASSERT_EQ(child.Create((std::u16string(kApp) + u"\\a\\b\\c").c_str()), ERROR_SUCCESS);
  child[ZW("deep")] = RegValue(2ul);
  EXPECT_EQ(parent.DeleteTree(), ERROR_SUCCESS);
  EXPECT_EQ(child.QueryValue(ZW("deep"), out), ERROR_KEY_DELETED);
  EXPECT_EQ(TRegKey(HKEY_CURRENT_USER).Open(kApp), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(TRegKey(HKEY_CURRENT_USER).Delete(), ERROR_ACCESS_DENIED) << "never the hive";
}

// ---- several processes -------------------------------------------------------------------------

TEST_F(Registry, OneProcessWritesAnotherReads) {
  const int written = inChild([] {
    TRegKey key(HKEY_CURRENT_USER);
    if (key.Create(kApp) != ERROR_SUCCESS) return 1;
    return key.SetValue(ZW("from child"), RegValue(ZW("hello"))) == ERROR_SUCCESS ? 0 : 2;
  });
  ASSERT_EQ(written, 0);
  TRegKey key(HKEY_CURRENT_USER);
  ASSERT_EQ(key.Open(kApp), ERROR_SUCCESS);
  EXPECT_TRUE(key[ZW("from child")] == RegValue(ZW("hello")));
  key[ZW("from parent")] = RegValue(77ull);
  EXPECT_EQ(inChild([] {
              TRegKey key(HKEY_CURRENT_USER);
              if (key.Open(kApp) != ERROR_SUCCESS) return 1;
              return key[ZW("from parent")] == RegValue(77ull) ? 0 : 2;
            }),
            0);
}

TEST_F(Registry, EightProcessesWritingAtOnceLoseNothing) {
  constexpr int kProcesses = 8;
  constexpr int kValues = 10000;
  {
    TRegKey key(HKEY_CURRENT_USER);
    ASSERT_EQ(key.Create(kApp), ERROR_SUCCESS);
  }
  auto nameOf = [](int process, int i) {
    return u"p" + std::u16string(1, static_cast<char16_t>(u'0' + process)) + u"-" +
           std::u16string(1, static_cast<char16_t>(0x4E00 + i % 1000)) +
           std::u16string(1, static_cast<char16_t>(u'0' + i / 1000)) +
           std::u16string(1, static_cast<char16_t>(u'0' + i % 10));
  };
  auto payload = [](int process, int i) {
    return static_cast<unsigned long long>(process) << 32 | static_cast<unsigned>(i * 2654435761u);
  };
  std::vector<pid_t> children;
  for (int p = 0; p < kProcesses; ++p) {
    const pid_t pid = fork();
    if (pid == 0) {
      TRegKey key(HKEY_CURRENT_USER);
      if (key.Open(kApp, KEY_ALL_ACCESS) != ERROR_SUCCESS) _exit(1);
      for (int i = 0; i < kValues; ++i) {
        if (key.SetValue(nameOf(p, i).c_str(), RegValue(payload(p, i))) != ERROR_SUCCESS) _exit(2);
      }
      _exit(0);
    }
    children.push_back(pid);
  }
  for (pid_t pid : children) {
    int status = 0;
    waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "a writer saw an error";
  }
  TRegKey key(HKEY_CURRENT_USER);
  ASSERT_EQ(key.Open(kApp), ERROR_SUCCESS);
  int wrong = 0;
  RegValue value;
  for (int p = 0; p < kProcesses; ++p) {
    for (int i = 0; i < kValues; ++i) {
      value.clearData();
      if (key.QueryValue(nameOf(p, i).c_str(), value) != ERROR_SUCCESS ||
          !(value == payload(p, i))) {
        ++wrong;
      }
    }
  }
  EXPECT_EQ(wrong, 0);
  zwchar_t name[16];
  unsigned long length = 16;
  EXPECT_EQ(key.EnumValue(kProcesses * kValues - 1, name, &length, value), ERROR_SUCCESS);
  length = 16;
  EXPECT_EQ(key.EnumValue(kProcesses * kValues, name, &length, value), ERROR_NO_MORE_ITEMS);
}

TEST_F(Registry, ThreadsShareTheStoreOfTheirProcess) {
  constexpr int kThreads = 4;
  constexpr int kValues = 300;
  std::vector<std::thread> threads;
  std::atomic<int> failures{0};
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t, &failures] {
      TRegKey key(HKEY_CURRENT_USER);
      if (key.Create(kApp) != ERROR_SUCCESS) ++failures;
      for (int i = 0; i < kValues; ++i) {
        const std::u16string name = u"t" + std::u16string(1, static_cast<char16_t>(u'0' + t)) +
                                    std::u16string(1, static_cast<char16_t>(0x100 + i));
        const RegValue value(static_cast<unsigned long>(t * kValues + i));
        RegValue back;
        if (key.SetValue(name.c_str(), value) != ERROR_SUCCESS ||
            key.QueryValue(name.c_str(), back) != ERROR_SUCCESS || !(back == value)) {
          ++failures;
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures.load(), 0);
  TRegKey key(HKEY_CURRENT_USER);
  ASSERT_EQ(key.Open(kApp), ERROR_SUCCESS);
  zwchar_t name[8];
  unsigned long length = 8;
  RegValue last;
  EXPECT_EQ(key.EnumValue(kThreads * kValues - 1, name, &length, last), ERROR_SUCCESS);
}

// ---- damaged stores ----------------------------------------------------------------------------

TEST_F(Registry, CorruptDatabaseGivesAStatus) {
  std::filesystem::create_directories(folder());
  std::ofstream(userDb()) << std::string(8192, '\x5A');
  TRegKey key(HKEY_CURRENT_USER);
  EXPECT_EQ(TRegKey(HKEY_CURRENT_USER).SetValue(ZW("v"), RegValue(1ul)), ERROR_BADDB)
      << "on the hive itself";
  EXPECT_EQ(key.Create(kApp), ERROR_BADDB);
  EXPECT_EQ(key.Open(kApp), ERROR_BADDB);
  EXPECT_EQ(std::filesystem::file_size(userDb()), 8192u) << "the file is left alone";
}

TEST_F(Registry, DamagedPagesNeverCrash) {
  {
    TRegKey key(HKEY_CURRENT_USER);
    ASSERT_EQ(key.Create(kApp), ERROR_SUCCESS);
    for (int i = 0; i < 300; ++i) {
      const std::u16string name = u"value" + std::u16string(1, static_cast<char16_t>(0x100 + i));
      key[name.c_str()] = RegValue(static_cast<unsigned long long>(i));
    }
  }  // the last handle closes the database and folds the log back into the file
  {
    std::fstream file(userDb(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(4096 + 100);
    file << std::string(3000, '\xC3');
  }
  TRegKey key(HKEY_CURRENT_USER);
  const long opened = key.Open(kApp);
  if (opened == ERROR_SUCCESS) {
    RegValue out;
    zwchar_t name[16];
    for (unsigned long i = 0; i < 400; ++i) {
      unsigned long length = 16;
      out.clearData();
      const long status = key.EnumValue(i, name, &length, out);
      if (status == ERROR_NO_MORE_ITEMS) break;
      EXPECT_TRUE(status == ERROR_SUCCESS || status == ERROR_BADDB) << status;
    }
    const long written = key.SetValue(ZW("after"), RegValue(1ul));
    EXPECT_TRUE(written == ERROR_SUCCESS || written == ERROR_BADDB) << written;
  } else {
    EXPECT_EQ(opened, ERROR_BADDB);
  }
}

TEST_F(Registry, ReadOnlyDatabaseKeepsItsValues) {
  {
    TRegKey key(HKEY_CURRENT_USER);
    ASSERT_EQ(key.Create(kApp), ERROR_SUCCESS);
    key[ZW("kept")] = RegValue(ZW("yes"));
  }
  {
    // Header bytes 18 and 19: a write format newer than this SQLite knows makes the file
    // read-only to it, whoever runs the test (permissions do not stop root).
    std::fstream file(userDb(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(18);
    file.put('\x03').put('\x01');
  }
  TRegKey key(HKEY_CURRENT_USER);
  ASSERT_EQ(key.Open(kApp), ERROR_SUCCESS);
  EXPECT_EQ(key.SetValue(ZW("kept"), RegValue(ZW("no"))), ERROR_ACCESS_DENIED);
  EXPECT_EQ(key.Create(ZW("SOFTWARE\\other")), ERROR_ACCESS_DENIED);
  ASSERT_EQ(key.Open(kApp), ERROR_SUCCESS);
  EXPECT_TRUE(key[ZW("kept")] == RegValue(ZW("yes")));
}

TEST_F(Registry, WriterHeldPastTheWaitGivesBusyAndKeepsTheValues) {
  TRegKey key(HKEY_CURRENT_USER);
  ASSERT_EQ(key.Create(kApp), ERROR_SUCCESS);
  key[ZW("kept")] = RegValue(ZW("yes"));

  sqlite3* holder = nullptr;
  ASSERT_EQ(sqlite3_open(userDb().c_str(), &holder), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(holder, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(key.SetValue(ZW("kept"), RegValue(ZW("no"))), ERROR_BUSY) << "after the 30 s wait";
  EXPECT_TRUE(key[ZW("kept")] == RegValue(ZW("yes"))) << "readers are not held up";
  sqlite3_exec(holder, "COMMIT", nullptr, nullptr, nullptr);
  sqlite3_close(holder);

  EXPECT_EQ(key.SetValue(ZW("kept"), RegValue(ZW("again"))), ERROR_SUCCESS);
  EXPECT_TRUE(key[ZW("kept")] == RegValue(ZW("again")));
}

}  // namespace

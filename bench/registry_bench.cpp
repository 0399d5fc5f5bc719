// TRegKey::SetValue and QueryValue against the floor: SQLite's own prepared single statements
// (the same upsert and select, on the same schema and settings: WAL, synchronous=NORMAL) on a
// connection of the benchmark's own. One process, and four processes writing to one key at once.
// Values are 8-byte REG_QWORDs under 1,000 names, so writes replace values in place.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "testing/temp_dir.h"
#include "zeb/utils/zeb_regkey.h"

namespace {

constexpr int kNames = 1000;
constexpr int kProcesses = 4;
constexpr int kWritesPerProcess = 5000;
const zwchar_t* const kKey = ZW("SOFTWARE\\zebworks\\bench");

const char* const kSchema =
    "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
    "CREATE TABLE IF NOT EXISTS vals(seq INTEGER PRIMARY KEY AUTOINCREMENT,"
    " key INTEGER NOT NULL, fold BLOB NOT NULL, name BLOB NOT NULL, type INTEGER NOT NULL,"
    " data BLOB NOT NULL, UNIQUE(key, fold));";
const char* const kUpsert =
    "INSERT INTO vals(key, fold, name, type, data) VALUES(1, ?1, ?1, 11, ?2)"
    " ON CONFLICT(key, fold) DO UPDATE SET type = excluded.type, data = excluded.data";
const char* const kSelect = "SELECT type, data FROM vals WHERE key = 1 AND fold = ?1";

std::vector<std::u16string> names() {
  std::vector<std::u16string> all;
  for (int i = 0; i < kNames; ++i)
    all.push_back(u"value" + std::u16string(1, u'A' + i % 26) +
                  std::u16string(1, static_cast<char16_t>(0x4E00 + i)));
  return all;
}

// The registry in a temporary folder for the whole program, removed at exit.
const zeb::testing::TempDir& folder() {
  static const zeb::testing::TempDir dir;
  static const bool pointed = setenv("ZEB_REGISTRY_DIR", dir.path().c_str(), 1) == 0;
  (void)pointed;
  return dir;
}

void writeThroughKey(int count, int offset) {
  TRegKey key(HKEY_CURRENT_USER);
  if (key.Create(kKey) != ERROR_SUCCESS) std::abort();
  const auto all = names();
  for (int i = 0; i < count; ++i) {
    const int n = (i + offset) % kNames;
    if (key.SetValue(all[n].c_str(), RegValue(static_cast<unsigned long long>(i))) != 0) {
      std::abort();
    }
  }
}

// The floor's connection and statements.
struct Raw {
  sqlite3* db = nullptr;
  sqlite3_stmt* upsert = nullptr;
  sqlite3_stmt* select = nullptr;

  Raw() {
    const std::string path = folder().filePath("raw.db");
    if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) std::abort();
    sqlite3_busy_timeout(db, 30000);
    if (sqlite3_exec(db, kSchema, nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
    sqlite3_prepare_v3(db, kUpsert, -1, SQLITE_PREPARE_PERSISTENT, &upsert, nullptr);
    sqlite3_prepare_v3(db, kSelect, -1, SQLITE_PREPARE_PERSISTENT, &select, nullptr);
  }
  ~Raw() {
    sqlite3_finalize(upsert);
    sqlite3_finalize(select);
    sqlite3_close(db);
  }
  void set(const std::u16string& name, unsigned long long v) {
    sqlite3_bind_blob(upsert, 1, name.data(), static_cast<int>(name.size() * 2), SQLITE_STATIC);
    sqlite3_bind_blob(upsert, 2, &v, sizeof v, SQLITE_STATIC);
    if (sqlite3_step(upsert) != SQLITE_DONE) std::abort();
    sqlite3_reset(upsert);
  }
  unsigned long long get(const std::u16string& name) {
    unsigned long long v = 0;
    sqlite3_bind_blob(select, 1, name.data(), static_cast<int>(name.size() * 2), SQLITE_STATIC);
    if (sqlite3_step(select) == SQLITE_ROW) {
      v = static_cast<unsigned long long>(sqlite3_column_bytes(select, 1));
    }
    sqlite3_reset(select);
    return v;
  }
};

void writeRaw(int count, int offset) {
  Raw raw;
  const auto all = names();
  for (int i = 0; i < count; ++i) raw.set(all[(i + offset) % kNames], i);
}

template <typename Writer>
void inProcesses(benchmark::State& state, Writer writer) {
  for (auto _ : state) {
    std::vector<pid_t> children;
    for (int p = 0; p < kProcesses; ++p) {
      const pid_t pid = fork();
      if (pid == 0) {
        writer(kWritesPerProcess, p * 250);
        _exit(0);
      }
      children.push_back(pid);
    }
    for (pid_t pid : children) {
      int status = 0;
      waitpid(pid, &status, 0);
      if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) std::abort();
    }
  }
  state.SetItemsProcessed(state.iterations() * kProcesses * kWritesPerProcess);
}

void BM_SetValue_TRegKey(benchmark::State& state) {
  folder();
  TRegKey key(HKEY_CURRENT_USER);
  if (key.Create(kKey) != ERROR_SUCCESS) std::abort();
  const auto all = names();
  int i = 0;
  for (auto _ : state) {
    key.SetValue(all[i % kNames].c_str(), RegValue(static_cast<unsigned long long>(i)));
    ++i;
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_SetValue_SqliteFloor(benchmark::State& state) {
  Raw raw;
  const auto all = names();
  int i = 0;
  for (auto _ : state) {
    raw.set(all[i % kNames], i);
    ++i;
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_QueryValue_TRegKey(benchmark::State& state) {
  folder();
  writeThroughKey(kNames, 0);
  TRegKey key(HKEY_CURRENT_USER);
  if (key.Open(kKey) != ERROR_SUCCESS) std::abort();
  const auto all = names();
  RegValue value;
  int i = 0;
  for (auto _ : state) {
    if (key.QueryValue(all[i % kNames].c_str(), value) != ERROR_SUCCESS) std::abort();
    ++i;
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_QueryValue_SqliteFloor(benchmark::State& state) {
  writeRaw(kNames, 0);
  Raw raw;
  const auto all = names();
  int i = 0;
  for (auto _ : state) {
    if (raw.get(all[i % kNames]) != 8) std::abort();
    ++i;
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_SetValue_TRegKey_4Processes(benchmark::State& state) {
  folder();
  inProcesses(state, writeThroughKey);
}

void BM_SetValue_SqliteFloor_4Processes(benchmark::State& state) {
  folder();
  inProcesses(state, writeRaw);
}

}  // namespace

BENCHMARK(BM_SetValue_TRegKey);
BENCHMARK(BM_SetValue_SqliteFloor);
BENCHMARK(BM_QueryValue_TRegKey);
BENCHMARK(BM_QueryValue_SqliteFloor);
BENCHMARK(BM_SetValue_TRegKey_4Processes)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SetValue_SqliteFloor_4Processes)->UseRealTime()->Unit(benchmark::kMillisecond);

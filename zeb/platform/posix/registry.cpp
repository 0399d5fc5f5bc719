// registry.cpp (POSIX): the registry as one SQLite database per hive.
//
// Files: $ZEB_REGISTRY_DIR, else $XDG_CONFIG_HOME/zebworks/registry, else
// $HOME/.config/zebworks/registry, holding user.db (HKEY_CURRENT_USER), machine.db
// (HKEY_LOCAL_MACHINE), classes.db, users.db and config.db; the folder and the file are created on
// first use. The folder is looked up on every open under a hive, so a process (or a test) that
// changes the variable reaches the other store from then on.
//
// Schema: keys(id, parent, fold, name) with the root of the hive as id 1, and vals(seq, key, fold,
// name, type, data). Names are stored as their UTF-16 units (exactly as given, so any sequence of
// units round-trips); `fold` is the name with ASCII letters upper-cased, as big-endian UTF-16, so
// that one unique index makes names case-insensitive and byte order is code-unit order. Subkeys
// enumerate by fold, values by seq (insertion order; replacing a value keeps its place). Key ids
// are never reused (AUTOINCREMENT), so a handle to a deleted key can never reach a newer one.
//
// Sharing: WAL mode, a 30 s busy timeout, and every write in one BEGIN IMMEDIATE transaction, so
// writers queue for the lock instead of failing and readers never wait. synchronous=NORMAL: a
// committed value survives a crash of the process; a power cut may lose the last commits. Each
// process keeps one connection per database file, shared by its handles and guarded by a mutex.
#include "zeb/platform/registry.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

#include "zeb/strings/internal/units.h"
#include "zeb/strings/zeb_cstr.h"

namespace zeb {
namespace platform {

namespace {

constexpr int kBusyTimeoutMs = 30000;
constexpr sqlite3_int64 kRootId = 1;

const char* const kSchema =
    "CREATE TABLE IF NOT EXISTS keys(id INTEGER PRIMARY KEY AUTOINCREMENT,"
    " parent INTEGER NOT NULL, fold BLOB NOT NULL, name BLOB NOT NULL, UNIQUE(parent, fold));"
    "CREATE TABLE IF NOT EXISTS vals(seq INTEGER PRIMARY KEY AUTOINCREMENT,"
    " key INTEGER NOT NULL, fold BLOB NOT NULL, name BLOB NOT NULL, type INTEGER NOT NULL,"
    " data BLOB NOT NULL, UNIQUE(key, fold));"
    "INSERT OR IGNORE INTO keys(id, parent, fold, name) VALUES(1, 0, x'', x'');";

// The statements every operation is made of, prepared once per connection.
enum Statement {
  kBegin,
  kCommit,
  kRollback,
  kFindKey,
  kInsertKey,
  kKeyExists,
  kQueryValue,
  kSetValue,
  kDeleteValue,
  kEnumKey,
  kEnumValue,
  kCountKeys,
  kCountValues,
  kChildKeys,
  kDeleteKeyValues,
  kDeleteKeyRow,
  kStatementCount
};

const char* const kStatementText[kStatementCount] = {
    "BEGIN IMMEDIATE",
    "COMMIT",
    "ROLLBACK",
    "SELECT id FROM keys WHERE parent = ?1 AND fold = ?2",
    "INSERT INTO keys(parent, fold, name) VALUES(?1, ?2, ?3)",
    "SELECT 1 FROM keys WHERE id = ?1",
    "SELECT type, data FROM vals WHERE key = ?1 AND fold = ?2",
    ("INSERT INTO vals(key, fold, name, type, data) VALUES(?1, ?2, ?3, ?4, ?5)"
     " ON CONFLICT(key, fold) DO UPDATE SET type = excluded.type, data = excluded.data"),
    "DELETE FROM vals WHERE key = ?1 AND fold = ?2",
    "SELECT name FROM keys WHERE parent = ?1 ORDER BY fold LIMIT 1 OFFSET ?2",
    "SELECT name, type, data FROM vals WHERE key = ?1 ORDER BY seq LIMIT 1 OFFSET ?2",
    "SELECT count(*) FROM keys WHERE parent = ?1",
    "SELECT count(*) FROM vals WHERE key = ?1",
    "SELECT id FROM keys WHERE parent = ?1",
    "DELETE FROM vals WHERE key = ?1",
    "DELETE FROM keys WHERE id = ?1",
};

// The Win32 status for an SQLite result code.
LONG statusOf(int rc) {
  switch (rc & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return ERROR_SUCCESS;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return ERROR_BUSY;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return ERROR_ACCESS_DENIED;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
      return ERROR_BADDB;
    case SQLITE_NOMEM:
      return ERROR_NOT_ENOUGH_MEMORY;
    default:
      return ERROR_REGISTRY_IO_FAILED;
  }
}

// One name: its units as stored, and its folded form.
struct Name {
  std::string units;
  std::string fold;

  Name(const zwchar_t* s, size_t n) : units(reinterpret_cast<const char*>(s), n * 2) {
    fold.resize(n * 2);
    for (size_t i = 0; i < n; ++i) {
      const zwchar_t u = zeb::internal::foldUpper(s[i]);
      fold[2 * i] = static_cast<char>(u >> 8);
      fold[2 * i + 1] = static_cast<char>(u & 0xFF);
    }
  }
};

// The components of a '\\'-separated path; empty components are skipped.
std::vector<Name> splitPath(const zwchar_t* path) {
  std::vector<Name> parts;
  const size_t n = zeb_wcslen(path);
  size_t start = 0;
  for (size_t i = 0; i <= n; ++i) {
    if (i == n || path[i] == '\\') {
      if (i > start) parts.emplace_back(path + start, i - start);
      start = i + 1;
    }
  }
  return parts;
}

// Resets a statement and its bindings when the operation using it ends.
class Use {
 public:
  explicit Use(sqlite3_stmt* s) : s_(s) {}
  ~Use() {
    sqlite3_reset(s_);
    sqlite3_clear_bindings(s_);
  }
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;
  sqlite3_stmt* operator->() const { return s_; }
  operator sqlite3_stmt*() const { return s_; }
  void bind(int i, sqlite3_int64 v) { sqlite3_bind_int64(s_, i, v); }
  void bind(int i, const std::string& bytes) {
    sqlite3_bind_blob(s_, i, bytes.data(), static_cast<int>(bytes.size()), SQLITE_STATIC);
  }
  int step() { return sqlite3_step(s_); }

 private:
  sqlite3_stmt* s_;
};

class Database {
 public:
  ~Database() {
    for (sqlite3_stmt* s : statements_) sqlite3_finalize(s);
    sqlite3_close_v2(db_);
  }

  // Opens (creating) the database file, sets it up and prepares every statement.
  static LONG open(const std::string& path, std::shared_ptr<Database>& out) {
    auto database = std::make_shared<Database>();
    int rc =
        sqlite3_open_v2(path.c_str(), &database->db_,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (rc != SQLITE_OK) return statusOf(rc);
    sqlite3_busy_timeout(database->db_, kBusyTimeoutMs);
    rc = database->setUp();
    if (rc != SQLITE_OK) return statusOf(rc);
    for (int i = 0; i < kStatementCount; ++i) {
      rc = sqlite3_prepare_v3(database->db_, kStatementText[i], -1, SQLITE_PREPARE_PERSISTENT,
                              &database->statements_[i], nullptr);
      if (rc != SQLITE_OK) return statusOf(rc);
    }
    out = std::move(database);
    return ERROR_SUCCESS;
  }

  std::mutex& mutex() { return mutex_; }
  // Rows changed by the last statement.
  int changes() const { return sqlite3_changes(db_); }
  Use use(Statement which) { return Use(statements_[which]); }

  // Runs `body` in one immediate transaction: committed when it returns ERROR_SUCCESS, rolled
  // back otherwise.
  template <typename Body>
  LONG write(Body body) {
    int rc = use(kBegin).step();
    if (rc != SQLITE_DONE) return statusOf(rc);
    LONG status = body();
    if (status == ERROR_SUCCESS) {
      rc = use(kCommit).step();
      if (rc == SQLITE_DONE) return ERROR_SUCCESS;
      status = statusOf(rc);
    }
    use(kRollback).step();
    return status;
  }

  // ERROR_SUCCESS when key `id` exists, ERROR_KEY_DELETED when not.
  LONG keyExists(sqlite3_int64 id) {
    Use s = use(kKeyExists);
    s.bind(1, id);
    const int rc = s.step();
    if (rc == SQLITE_ROW) return ERROR_SUCCESS;
    return rc == SQLITE_DONE ? ERROR_KEY_DELETED : statusOf(rc);
  }

  // The child of `parent` named `name` in *id; ERROR_FILE_NOT_FOUND when there is none.
  LONG findKey(sqlite3_int64 parent, const Name& name, sqlite3_int64* id) {
    Use s = use(kFindKey);
    s.bind(1, parent);
    s.bind(2, name.fold);
    const int rc = s.step();
    if (rc == SQLITE_ROW) {
      *id = sqlite3_column_int64(s, 0);
      return ERROR_SUCCESS;
    }
    return rc == SQLITE_DONE ? ERROR_FILE_NOT_FOUND : statusOf(rc);
  }

  LONG insertKey(sqlite3_int64 parent, const Name& name, sqlite3_int64* id) {
    Use s = use(kInsertKey);
    s.bind(1, parent);
    s.bind(2, name.fold);
    s.bind(3, name.units);
    const int rc = s.step();
    if (rc != SQLITE_DONE) return statusOf(rc);
    *id = sqlite3_last_insert_rowid(db_);
    return ERROR_SUCCESS;
  }

  // A count query on one id.
  LONG count(Statement which, sqlite3_int64 id, DWORD* out) {
    Use s = use(which);
    s.bind(1, id);
    const int rc = s.step();
    if (rc != SQLITE_ROW) return statusOf(rc);
    if (out != nullptr) *out = static_cast<DWORD>(sqlite3_column_int64(s, 0));
    return ERROR_SUCCESS;
  }

  // Deletes key `id` and its values, and with `recursive` its subtree first.
  LONG deleteKey(sqlite3_int64 id, bool recursive) {
    if (recursive) {
      std::vector<sqlite3_int64> children;
      {
        Use s = use(kChildKeys);
        s.bind(1, id);
        int rc;
        while ((rc = s.step()) == SQLITE_ROW) children.push_back(sqlite3_column_int64(s, 0));
        if (rc != SQLITE_DONE) return statusOf(rc);
      }
      for (sqlite3_int64 child : children) {
        const LONG status = deleteKey(child, true);
        if (status != ERROR_SUCCESS) return status;
      }
    }
    for (Statement which : {kDeleteKeyValues, kDeleteKeyRow}) {
      Use s = use(which);
      s.bind(1, id);
      const int rc = s.step();
      if (rc != SQLITE_DONE) return statusOf(rc);
    }
    return ERROR_SUCCESS;
  }

 private:
  // WAL mode and the schema. A database that is read-only (or already set up) is used as it is.
  int setUp() {
    sqlite3_exec(db_, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL", nullptr, nullptr,
                 nullptr);
    sqlite3_stmt* check = nullptr;
    int rc =
        sqlite3_prepare_v2(db_, "SELECT count(*) FROM sqlite_master WHERE name IN ('keys', 'vals')",
                           -1, &check, nullptr);
    if (rc != SQLITE_OK) return rc;
    rc = sqlite3_step(check);
    const bool ready = rc == SQLITE_ROW && sqlite3_column_int(check, 0) == 2;
    sqlite3_finalize(check);
    if (rc != SQLITE_ROW) return rc;
    if (ready) return SQLITE_OK;
    rc = sqlite3_exec(db_, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) return rc;
    rc = sqlite3_exec(db_, kSchema, nullptr, nullptr, nullptr);
    const int end =
        sqlite3_exec(db_, rc == SQLITE_OK ? "COMMIT" : "ROLLBACK", nullptr, nullptr, nullptr);
    return rc != SQLITE_OK ? rc : end;
  }

  sqlite3* db_ = nullptr;
  sqlite3_stmt* statements_[kStatementCount] = {};
  std::mutex mutex_;
};

// An open key: its database and its id there.
struct KeyHandle {
  std::shared_ptr<Database> db;
  sqlite3_int64 id;
};

// The live handles and the open databases of the process (weakly held: a database closes with its
// last handle).
struct Handles {
  std::mutex mutex;
  std::unordered_set<KeyHandle*> live;
  std::map<std::string, std::weak_ptr<Database>> databases;
};

Handles& handles() {
  static Handles* instance = new Handles;  // never destroyed: handles may close during exit
  return *instance;
}

const char* hiveFileName(HKEY hive) {
  if (hive == HKEY_CURRENT_USER) return "user.db";
  if (hive == HKEY_LOCAL_MACHINE) return "machine.db";
  if (hive == HKEY_CLASSES_ROOT) return "classes.db";
  if (hive == HKEY_USERS) return "users.db";
  if (hive == HKEY_CURRENT_CONFIG) return "config.db";
  return nullptr;
}

std::string registryFolder() {
  const char* dir = std::getenv("ZEB_REGISTRY_DIR");
  if (dir != nullptr && *dir != '\0') return dir;
  const char* config = std::getenv("XDG_CONFIG_HOME");
  if (config != nullptr && *config != '\0') return std::string(config) + "/zebworks/registry";
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') return std::string(home) + "/.config/zebworks/registry";
  return std::string();
}

// mkdir -p.
bool makeFolders(const std::string& folder) {
  for (size_t slash = folder.find('/', 1);; slash = folder.find('/', slash + 1)) {
    const std::string part = folder.substr(0, slash);
    if (mkdir(part.c_str(), 0777) != 0 && errno != EEXIST) return false;
    if (slash == std::string::npos) return true;
  }
}

LONG hiveDatabase(HKEY hive, std::shared_ptr<Database>& out) {
  const std::string folder = registryFolder();
  if (folder.empty()) return ERROR_REGISTRY_IO_FAILED;
  const std::string path = folder + "/" + hiveFileName(hive);
  Handles& h = handles();
  std::lock_guard<std::mutex> guard(h.mutex);
  out = h.databases[path].lock();
  if (out != nullptr) return ERROR_SUCCESS;
  if (!makeFolders(folder)) return ERROR_REGISTRY_IO_FAILED;
  const LONG status = Database::open(path, out);
  if (status == ERROR_SUCCESS) h.databases[path] = out;
  return status;
}

// What a handle refers to: a hive's root or an open key.
struct Target {
  std::shared_ptr<Database> db;
  sqlite3_int64 id = kRootId;
};

LONG resolve(HKEY key, Target& target) {
  if (hiveFileName(key) != nullptr) return hiveDatabase(key, target.db);
  KeyHandle* handle = reinterpret_cast<KeyHandle*>(key);
  Handles& h = handles();
  std::lock_guard<std::mutex> guard(h.mutex);
  if (key == nullptr || h.live.count(handle) == 0) return ERROR_INVALID_HANDLE;
  target.db = handle->db;
  target.id = handle->id;
  return ERROR_SUCCESS;
}

HKEY newHandle(const Target& target, sqlite3_int64 id) {
  KeyHandle* handle = new KeyHandle{target.db, id};
  Handles& h = handles();
  std::lock_guard<std::mutex> guard(h.mutex);
  h.live.insert(handle);
  return reinterpret_cast<HKEY>(handle);
}

// Runs body(db, id) for the database and key that `key` names, under the database's lock.
template <typename Body>
LONG onKey(HKEY key, Body body) {
  Target target;
  const LONG status = resolve(key, target);
  if (status != ERROR_SUCCESS) return status;
  std::lock_guard<std::mutex> guard(target.db->mutex());
  return body(*target.db, target.id);
}

// As onKey, inside one write transaction, once the key is known to still exist.
template <typename Body>
LONG writeOnKey(HKEY key, Body body) {
  return onKey(key, [&](Database& db, sqlite3_int64 id) {
    return db.write([&]() -> LONG {
      const LONG status = db.keyExists(id);
      return status == ERROR_SUCCESS ? body(db, id) : status;
    });
  });
}

// Finds the key `parts` names under key *id (creating missing ones with `create`); *id becomes it.
LONG walkPath(Database& db, const std::vector<Name>& parts, bool create, sqlite3_int64* id) {
  LONG status = db.keyExists(*id);
  for (size_t i = 0; i < parts.size() && status == ERROR_SUCCESS; ++i) {
    status = db.findKey(*id, parts[i], id);
    if (status == ERROR_FILE_NOT_FOUND && create) status = db.insertKey(*id, parts[i], id);
  }
  return status;
}

LONG openOrCreate(HKEY parent, const zwchar_t* path, HKEY* out, bool create) {
  if (out == nullptr) return ERROR_INVALID_PARAMETER;
  *out = nullptr;
  const std::vector<Name> parts = splitPath(path);
  Target target;
  const LONG status = resolve(parent, target);
  if (status != ERROR_SUCCESS) return status;
  sqlite3_int64 id = target.id;
  Database& db = *target.db;
  std::lock_guard<std::mutex> guard(db.mutex());
  auto walk = [&]() { return walkPath(db, parts, create, &id); };
  const LONG result = create ? db.write(walk) : walk();
  if (result == ERROR_SUCCESS) *out = newHandle(target, id);
  return result;
}

// Copies a stored name into a caller's buffer of *nameLen units (Win32 enumeration rules).
LONG copyName(const void* units, int bytes, zwchar_t* name, DWORD* nameLen) {
  if (name == nullptr || nameLen == nullptr) return ERROR_INVALID_PARAMETER;
  const DWORD length = static_cast<DWORD>(bytes / 2);
  if (*nameLen < length + 1) return ERROR_MORE_DATA;
  if (length > 0) std::memcpy(name, units, static_cast<size_t>(length) * 2);
  name[length] = 0;
  *nameLen = length;
  return ERROR_SUCCESS;
}

// Hands a value's type and bytes to a caller (Win32 query rules).
LONG copyData(sqlite3_stmt* s, int typeColumn, DWORD* type, BYTE* data, DWORD* size) {
  if (data != nullptr && size == nullptr) return ERROR_INVALID_PARAMETER;
  if (type != nullptr) *type = static_cast<DWORD>(sqlite3_column_int64(s, typeColumn));
  const void* bytes = sqlite3_column_blob(s, typeColumn + 1);
  const DWORD length = static_cast<DWORD>(sqlite3_column_bytes(s, typeColumn + 1));
  if (size == nullptr) return ERROR_SUCCESS;
  const DWORD room = *size;
  *size = length;
  if (data == nullptr) return ERROR_SUCCESS;
  if (room < length) return ERROR_MORE_DATA;
  if (length > 0) std::memcpy(data, bytes, length);
  return ERROR_SUCCESS;
}

// The status of a single-row read of key `id` that found no row: the key may be gone.
LONG missingRow(Database& db, sqlite3_int64 id, int rc, LONG notFound) {
  if (rc != SQLITE_DONE) return statusOf(rc);
  const LONG status = db.keyExists(id);
  return status == ERROR_SUCCESS ? notFound : status;
}

LONG deleteSubkey(HKEY parent, const zwchar_t* path, bool recursive) {
  const std::vector<Name> parts = splitPath(path);
  if (parts.empty()) return ERROR_ACCESS_DENIED;
  return onKey(parent, [&](Database& db, sqlite3_int64 parentId) {
    return db.write([&]() -> LONG {
      sqlite3_int64 id = parentId;
      LONG status = walkPath(db, parts, false, &id);
      DWORD subKeys = 0;
      if (status == ERROR_SUCCESS && !recursive) status = db.count(kCountKeys, id, &subKeys);
      if (status != ERROR_SUCCESS) return status;
      if (subKeys > 0) return ERROR_ACCESS_DENIED;
      return db.deleteKey(id, recursive);
    });
  });
}

}  // namespace

LONG regOpenKey(HKEY parent, const zwchar_t* path, REGSAM, HKEY* out) {
  return openOrCreate(parent, path, out, false);
}

LONG regCreateKey(HKEY parent, const zwchar_t* path, REGSAM, HKEY* out) {
  return openOrCreate(parent, path, out, true);
}

LONG regCloseKey(HKEY key) {
  if (hiveFileName(key) != nullptr) return ERROR_SUCCESS;
  KeyHandle* handle = reinterpret_cast<KeyHandle*>(key);
  {
    Handles& h = handles();
    std::lock_guard<std::mutex> guard(h.mutex);
    if (key == nullptr || h.live.erase(handle) == 0) return ERROR_INVALID_HANDLE;
  }
  delete handle;
  return ERROR_SUCCESS;
}

LONG regConnectRegistry(const zwchar_t*, HKEY, HKEY*) {
  return ERROR_BAD_NETPATH;
}

LONG regDeleteKey(HKEY parent, const zwchar_t* path) {
  return deleteSubkey(parent, path, false);
}

LONG regDeleteTree(HKEY parent, const zwchar_t* path) {
  return deleteSubkey(parent, path, true);
}

LONG regQueryValue(HKEY key, const zwchar_t* name, DWORD* type, BYTE* data, DWORD* size) {
  const Name valueName(name, zeb_wcslen(name));
  return onKey(key, [&](Database& db, sqlite3_int64 id) {
    Use s = db.use(kQueryValue);
    s.bind(1, id);
    s.bind(2, valueName.fold);
    const int rc = s.step();
    if (rc == SQLITE_ROW) return copyData(s, 0, type, data, size);
    return missingRow(db, id, rc, ERROR_FILE_NOT_FOUND);
  });
}

LONG regSetValue(HKEY key, const zwchar_t* name, DWORD type, const BYTE* data, DWORD size) {
  if ((data == nullptr && size > 0) || size > 0x7FFFFFFF) return ERROR_INVALID_PARAMETER;
  const Name valueName(name, zeb_wcslen(name));
  return writeOnKey(key, [&](Database& db, sqlite3_int64 id) {
    Use s = db.use(kSetValue);
    s.bind(1, id);
    s.bind(2, valueName.fold);
    s.bind(3, valueName.units);
    s.bind(4, static_cast<sqlite3_int64>(type));
    sqlite3_bind_blob(s, 5, size > 0 ? static_cast<const void*>(data) : "", static_cast<int>(size),
                      SQLITE_STATIC);
    return statusOf(s.step());
  });
}

LONG regDeleteValue(HKEY key, const zwchar_t* name) {
  const Name valueName(name, zeb_wcslen(name));
  return writeOnKey(key, [&](Database& db, sqlite3_int64 id) -> LONG {
    Use s = db.use(kDeleteValue);
    s.bind(1, id);
    s.bind(2, valueName.fold);
    const int rc = s.step();
    if (rc != SQLITE_DONE) return statusOf(rc);
    return db.changes() > 0 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

// The row `index` of an enumeration statement over key `id`, handed to `found`.
template <typename Found>
LONG enumerate(HKEY key, Statement which, DWORD index, Found found) {
  return onKey(key, [&](Database& db, sqlite3_int64 id) {
    Use s = db.use(which);
    s.bind(1, id);
    s.bind(2, static_cast<sqlite3_int64>(index));
    const int rc = s.step();
    if (rc != SQLITE_ROW) return missingRow(db, id, rc, ERROR_NO_MORE_ITEMS);
    const LONG named =
        copyName(sqlite3_column_blob(s, 0), sqlite3_column_bytes(s, 0), found.name, found.nameLen);
    return named == ERROR_SUCCESS ? found(s) : named;
  });
}

LONG regEnumKey(HKEY key, DWORD index, zwchar_t* name, DWORD* nameLen) {
  struct {
    zwchar_t* name;
    DWORD* nameLen;
    LONG operator()(sqlite3_stmt*) const { return ERROR_SUCCESS; }
  } found{name, nameLen};
  return enumerate(key, kEnumKey, index, found);
}

LONG regEnumValue(HKEY key, DWORD index, zwchar_t* name, DWORD* nameLen, DWORD* type, BYTE* data,
                  DWORD* size) {
  struct {
    zwchar_t* name;
    DWORD* nameLen;
    DWORD* type;
    BYTE* data;
    DWORD* size;
    LONG operator()(sqlite3_stmt* s) const { return copyData(s, 1, type, data, size); }
  } found{name, nameLen, type, data, size};
  return enumerate(key, kEnumValue, index, found);
}

LONG regQueryInfoKey(HKEY key, DWORD* subKeys, DWORD* values) {
  return onKey(key, [&](Database& db, sqlite3_int64 id) {
    LONG status = db.keyExists(id);
    if (status == ERROR_SUCCESS) status = db.count(kCountKeys, id, subKeys);
    if (status == ERROR_SUCCESS) status = db.count(kCountValues, id, values);
    return status;
  });
}

}  // namespace platform
}  // namespace zeb

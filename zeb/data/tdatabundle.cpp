// tdatabundle: text keys mapped to bundle items, in a hash map keyed by 32-bit FNV-1a.

#include "zeb/data/tdatabundle.h"

#include <string>
#include <unordered_map>
#include <utility>

#include "zeb/data/internal/bundle_value.h"
#include "zeb/strings/internal/units.h"

using zeb::internal::orEmpty;
using zeb::internal::pointerAsValue;
using zeb::internal::valueAsInt32;
using zeb::internal::valueAsObject;
using zeb::internal::valueAsString;
using zeb::internal::valueAsUInt32;

namespace {

// 32-bit FNV-1a over the key's bytes.
struct Fnv1aHash {
  std::size_t operator()(const std::string& key) const {
    std::uint32_t hash = 0x811C9DC5u;
    for (unsigned char c : key) {
      hash ^= c;
      hash *= 16777619u;
    }
    return hash;
  }
};

const tbundleitem& sharedEmptyItem() {
  static const tbundleitem empty;
  return empty;
}

}  // namespace

struct tdatabundle::Store {
  typedef std::unordered_map<std::string, tbundleitem, Fnv1aHash> Map;

  Map items;
  Map::const_iterator cursor = items.end();
  tdatabundleItemData record = {nullptr, tbundleitem::dtEmpty, 0};

  // A key was added or removed: the walk in progress cannot go on.
  void endWalk() { cursor = items.end(); }

  const tbundleitem* find(const char* name) const {
    const auto it = items.find(orEmpty(name));
    return it != items.end() ? &it->second : nullptr;
  }

  // Adds the key with `item` unless it is present already.
  bool insert(const char* name, tbundleitem&& item) {
    const bool inserted = items.try_emplace(orEmpty(name), std::move(item)).second;
    if (inserted) endWalk();
    return inserted;
  }

  const tdatabundleItemData* recordAtCursor() {
    if (cursor == items.end()) return nullptr;
    record = {cursor->first.c_str(), cursor->second.type(), cursor->second.value()};
    return &record;
  }
};

tdatabundle::tdatabundle() : m_store(new Store) {}

tdatabundle::tdatabundle(const tdatabundle& other) : m_store(new Store) {
  m_store->items = other.m_store->items;
  m_store->endWalk();
}

tdatabundle::tdatabundle(tdatabundle&& other) noexcept : m_store(other.m_store) {
  other.m_store = new Store;
}

tdatabundle::tdatabundle(const char* name, long long value) : tdatabundle() {
  putInt64(name, value);
}

tdatabundle::tdatabundle(const char* name, const char* text) : tdatabundle() {
  putString(name, text);
}

tdatabundle::tdatabundle(const char* name, void* object) : tdatabundle() {
  putObject(name, object);
}

tdatabundle::~tdatabundle() {
  delete m_store;
}

tdatabundle& tdatabundle::operator=(const tdatabundle& other) {
  if (this == &other) return *this;
  tdatabundle copy(other);
  return *this = std::move(copy);
}

tdatabundle& tdatabundle::operator=(tdatabundle&& other) noexcept {
  if (this == &other) return *this;
  std::swap(m_store, other.m_store);
  other.clear();
  return *this;
}

bool tdatabundle::putItem(const char* name, udatatype type, unsigned long long value) {
  // The item is made before the key exists, so a bundle put into itself is copied as it was.
  return m_store->insert(name, tbundleitem(type, value));
}

bool tdatabundle::putInt32(const char* name, int value) {
  return putItem(name, tbundleitem::dtInt32,
                 static_cast<unsigned long long>(static_cast<long long>(value)));
}

bool tdatabundle::putUInt32(const char* name, unsigned int value) {
  return putItem(name, tbundleitem::dtUInt32, value);
}

bool tdatabundle::putInt64(const char* name, long long value) {
  return putItem(name, tbundleitem::dtInt64, static_cast<unsigned long long>(value));
}

bool tdatabundle::putUInt64(const char* name, unsigned long long value) {
  return putItem(name, tbundleitem::dtUInt64, value);
}

bool tdatabundle::putBoolean(const char* name, bool value) {
  return putItem(name, tbundleitem::dtUInt64, value ? 1 : 0);
}

bool tdatabundle::putString(const char* name, const char* text) {
  return putItem(name, tbundleitem::dtString, pointerAsValue(text));
}

bool tdatabundle::putObject(const char* name, void* object) {
  return putItem(name, tbundleitem::dtObject, pointerAsValue(object));
}

bool tdatabundle::putBytesData(const char* name, const tbytesdata& bytes) {
  return putItem(name, tbundleitem::dtBytesData, pointerAsValue(&bytes));
}

bool tdatabundle::putDataBundle(const char* name, const tdatabundle& bundle) {
  return putItem(name, tbundleitem::dtDataBundle, pointerAsValue(&bundle));
}

tdatabundle& tdatabundle::nameValue(const char* name, long long value) {
  putInt64(name, value);
  return *this;
}

tdatabundle& tdatabundle::nameValue(const char* name, const char* text) {
  putString(name, text);
  return *this;
}

tdatabundle& tdatabundle::nameValue(const char* name, void* object) {
  putObject(name, object);
  return *this;
}

tdatabundle& tdatabundle::nameValue(const char* name, const tbytesdata& bytes) {
  putBytesData(name, bytes);
  return *this;
}

void tdatabundle::putDatas(const tdatabundle& other) {
  if (&other == this) return;
  for (const auto& entry : other.m_store->items) {
    if (m_store->items.try_emplace(entry.first, entry.second).second) m_store->endWalk();
  }
}

void tdatabundle::putDatas(idatabundle* other) {
  if (other == nullptr) return;
  for (const tdatabundleItemData* item = other->firstItem(); item != nullptr;
       item = other->nextItem()) {
    putItem(item->name, item->type, item->value);
  }
}

tbundleitem& tdatabundle::operator[](const char* name) {
  const auto result = m_store->items.try_emplace(orEmpty(name));
  if (result.second) m_store->endWalk();
  return result.first->second;
}

const tbundleitem& tdatabundle::operator[](const char* name) const {
  const tbundleitem* item = m_store->find(name);
  return item != nullptr ? *item : sharedEmptyItem();
}

unsigned long long tdatabundle::getItem(const char* name) const {
  return (*this)[name].value();
}

int tdatabundle::getInt32(const char* name) const {
  return valueAsInt32(getItem(name));
}

unsigned int tdatabundle::getUInt32(const char* name) const {
  return valueAsUInt32(getItem(name));
}

long long tdatabundle::getInt64(const char* name) const {
  return static_cast<long long>(getItem(name));
}

unsigned long long tdatabundle::getUInt64(const char* name) const {
  return getItem(name);
}

bool tdatabundle::getBoolean(const char* name) const {
  return getItem(name) != 0;
}

const char* tdatabundle::getString(const char* name) const {
  return valueAsString(getItem(name));
}

void* tdatabundle::getObject(const char* name) const {
  return valueAsObject(getItem(name));
}

const tbytesdata& tdatabundle::getBytesData(const char* name) const {
  return (*this)[name].asBytesData();
}

bool tdatabundle::has(const char* name) const {
  return m_store->find(name) != nullptr;
}

bool tdatabundle::remove(const char* name) {
  const bool removed = m_store->items.erase(orEmpty(name)) != 0;
  if (removed) m_store->endWalk();
  return removed;
}

void tdatabundle::clear() {
  m_store->items.clear();
  m_store->endWalk();
}

int tdatabundle::itemsCount() const {
  return static_cast<int>(m_store->items.size());
}

const tdatabundleItemData* tdatabundle::firstItem() {
  m_store->cursor = m_store->items.begin();
  return m_store->recordAtCursor();
}

const tdatabundleItemData* tdatabundle::nextItem() {
  if (m_store->cursor == m_store->items.end()) return nullptr;
  ++m_store->cursor;
  return m_store->recordAtCursor();
}

void tdatabundle::traval(tdatabundleTravalFun callback, void* context) const {
  if (callback == nullptr) return;
  for (const auto& entry : m_store->items) callback(entry.first.c_str(), entry.second, context);
}

bool tdatabundle::operator==(const tdatabundle& other) const {
  if (this == &other) return true;
  if (m_store->items.size() != other.m_store->items.size()) return false;
  for (const auto& entry : m_store->items) {
    const auto it = other.m_store->items.find(entry.first);
    if (it == other.m_store->items.end() || !entry.second.equal(it->second)) return false;
  }
  return true;
}

zeb::PassRefPtr<idatabundle> tdatabundle::wrapAsInterface() {
  idatabundle* view = new tdatabundleInterfaceObject(this);
  view->AddRef();
  return zeb::PassRefPtr<idatabundle>::adopt(view);
}

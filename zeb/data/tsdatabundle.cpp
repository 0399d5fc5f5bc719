// tsdatabundle: an ordered sequence of bundle items with a read cursor.

#include <utility>
#include <vector>

#include "zeb/data/internal/bundle_value.h"
#include "zeb/data/tdatabundle.h"

using zeb::internal::floatAsValue;
using zeb::internal::pointerAsValue;
using zeb::internal::valueAsFloat;
using zeb::internal::valueAsInt32;
using zeb::internal::valueAsObject;
using zeb::internal::valueAsString;
using zeb::internal::valueAsUInt32;

struct tsdatabundle::Store {
  std::vector<tbundleitem> items;
  int cursor = 0;

  bool valid(int index) const { return index >= 0 && index < static_cast<int>(items.size()); }

  // The item a read at `index` (-1: the cursor) sees, moving the cursor on; null outside.
  const tbundleitem* read(int index) {
    const int at = index == -1 ? cursor : index;
    if (!valid(at)) return nullptr;
    ++cursor;
    return &items[static_cast<std::size_t>(at)];
  }
};

namespace {

const tbundleitem& sharedEmptyItem() {
  static const tbundleitem empty;
  return empty;
}

}  // namespace

tsdatabundle::tsdatabundle() : m_store(new Store) {}

tsdatabundle::tsdatabundle(const tsdatabundle& other) : m_store(new Store(*other.m_store)) {}

tsdatabundle::tsdatabundle(tsdatabundle&& other) noexcept : m_store(other.m_store) {
  other.m_store = new Store;
}

tsdatabundle::tsdatabundle(const char* text) : tsdatabundle() {
  putString(text);
}

tsdatabundle::tsdatabundle(void* object) : tsdatabundle() {
  putObject(object);
}

tsdatabundle::tsdatabundle(long long value) : tsdatabundle() {
  putInt64(value);
}

tsdatabundle::~tsdatabundle() {
  delete m_store;
}

tsdatabundle& tsdatabundle::operator=(const tsdatabundle& other) {
  if (this != &other) *m_store = *other.m_store;
  return *this;
}

tsdatabundle& tsdatabundle::operator=(tsdatabundle&& other) noexcept {
  if (this == &other) return *this;
  std::swap(m_store, other.m_store);
  other.clear();
  return *this;
}

tsdatabundle& tsdatabundle::putItem(udatatype type, unsigned long long value) {
  m_store->items.emplace_back(type, value);
  return *this;
}

tsdatabundle& tsdatabundle::putInt32(int value) {
  return putItem(tbundleitem::dtInt32,
                 static_cast<unsigned long long>(static_cast<long long>(value)));
}

tsdatabundle& tsdatabundle::putUInt32(unsigned int value) {
  return putItem(tbundleitem::dtUInt32, value);
}

tsdatabundle& tsdatabundle::putInt64(long long value) {
  return putItem(tbundleitem::dtInt64, static_cast<unsigned long long>(value));
}

tsdatabundle& tsdatabundle::putUInt64(unsigned long long value) {
  return putItem(tbundleitem::dtUInt64, value);
}

tsdatabundle& tsdatabundle::putFloat(double value) {
  return putItem(tbundleitem::dtFloat, floatAsValue(value));
}

tsdatabundle& tsdatabundle::putBoolean(bool value) {
  return putItem(tbundleitem::dtUInt64, value ? 1 : 0);
}

tsdatabundle& tsdatabundle::putString(const char* text) {
  return putItem(tbundleitem::dtString, pointerAsValue(text));
}

tsdatabundle& tsdatabundle::putObject(void* object) {
  return putItem(tbundleitem::dtObject, pointerAsValue(object));
}

tsdatabundle& tsdatabundle::putBytesData(const tbytesdata& bytes) {
  return putItem(tbundleitem::dtBytesData, pointerAsValue(&bytes));
}

tsdatabundle& tsdatabundle::putDataBundle(const tdatabundle& bundle) {
  return putItem(tbundleitem::dtDataBundle, pointerAsValue(&bundle));
}

tsdatabundle& tsdatabundle::putDatas(const tsdatabundle& other) {
  std::vector<tbundleitem>& items = m_store->items;
  if (&other == this) {
    const std::vector<tbundleitem> added = items;  // a vector cannot insert its own items
    items.insert(items.end(), added.begin(), added.end());
  } else {
    items.insert(items.end(), other.m_store->items.begin(), other.m_store->items.end());
  }
  return *this;
}

unsigned long long tsdatabundle::getItem(int index) {
  const tbundleitem* item = m_store->read(index);
  return item != nullptr ? item->value() : 0;
}

int tsdatabundle::getInt32(int index) {
  return valueAsInt32(getItem(index));
}

unsigned int tsdatabundle::getUInt32(int index) {
  return valueAsUInt32(getItem(index));
}

long long tsdatabundle::getInt64(int index) {
  return static_cast<long long>(getItem(index));
}

unsigned long long tsdatabundle::getUInt64(int index) {
  return getItem(index);
}

double tsdatabundle::getFloat(int index) {
  return valueAsFloat(getItem(index));
}

bool tsdatabundle::getBoolean(int index) {
  return getItem(index) != 0;
}

const char* tsdatabundle::getString(int index) {
  return valueAsString(getItem(index));
}

void* tsdatabundle::getObject(int index) {
  return valueAsObject(getItem(index));
}

const tbytesdata& tsdatabundle::getBytesData(int index) {
  const tbundleitem* item = m_store->read(index);
  return (item != nullptr ? *item : sharedEmptyItem()).asBytesData();
}

void tsdatabundle::resetPos() {
  m_store->cursor = 0;
}

tbundleitem& tsdatabundle::operator[](int index) {
  if (m_store->valid(index)) return m_store->items[static_cast<std::size_t>(index)];
  // Outside the sequence: a scratch item per thread, emptied on every such call.
  thread_local tbundleitem detached;
  detached = tbundleitem();
  return detached;
}

const tbundleitem& tsdatabundle::operator[](int index) const {
  return m_store->valid(index) ? m_store->items[static_cast<std::size_t>(index)]
                               : sharedEmptyItem();
}

bool tsdatabundle::remove(int index) {
  if (!m_store->valid(index)) return false;
  m_store->items.erase(m_store->items.begin() + index);
  return true;
}

void tsdatabundle::clear() {
  m_store->items.clear();
  m_store->cursor = 0;
}

int tsdatabundle::itemsCount() const {
  return static_cast<int>(m_store->items.size());
}

bool tsdatabundle::operator==(const tsdatabundle& other) const {
  return m_store->items == other.m_store->items;
}

// tdatabundleInterfaceObject: idatabundle over a borrowed tdatabundle.

#include "zeb/data/tdatabundle.h"

bool tdatabundleInterfaceObject::has(const char* name) {
  return m_bundle != nullptr && m_bundle->has(name);
}

bool tdatabundleInterfaceObject::putInt32(const char* name, int value) {
  return m_bundle != nullptr && m_bundle->putInt32(name, value);
}

bool tdatabundleInterfaceObject::putUInt32(const char* name, unsigned int value) {
  return m_bundle != nullptr && m_bundle->putUInt32(name, value);
}

bool tdatabundleInterfaceObject::putInt64(const char* name, long long value) {
  return m_bundle != nullptr && m_bundle->putInt64(name, value);
}

bool tdatabundleInterfaceObject::putUInt64(const char* name, unsigned long long value) {
  return m_bundle != nullptr && m_bundle->putUInt64(name, value);
}

bool tdatabundleInterfaceObject::putString(const char* name, const char* text) {
  return m_bundle != nullptr && m_bundle->putString(name, text);
}

bool tdatabundleInterfaceObject::putObject(const char* name, void* object) {
  return m_bundle != nullptr && m_bundle->putObject(name, object);
}

int tdatabundleInterfaceObject::getInt32(const char* name) {
  return m_bundle != nullptr ? m_bundle->getInt32(name) : 0;
}

unsigned int tdatabundleInterfaceObject::getUInt32(const char* name) {
  return m_bundle != nullptr ? m_bundle->getUInt32(name) : 0;
}

long long tdatabundleInterfaceObject::getInt64(const char* name) {
  return m_bundle != nullptr ? m_bundle->getInt64(name) : 0;
}

unsigned long long tdatabundleInterfaceObject::getUInt64(const char* name) {
  return m_bundle != nullptr ? m_bundle->getUInt64(name) : 0;
}

bool tdatabundleInterfaceObject::getBoolean(const char* name) {
  return m_bundle != nullptr && m_bundle->getBoolean(name);
}

const char* tdatabundleInterfaceObject::getString(const char* name) {
  return m_bundle != nullptr ? m_bundle->getString(name) : nullptr;
}

void* tdatabundleInterfaceObject::getObject(const char* name) {
  return m_bundle != nullptr ? m_bundle->getObject(name) : nullptr;
}

bool tdatabundleInterfaceObject::remove(const char* name) {
  return m_bundle != nullptr && m_bundle->remove(name);
}

void tdatabundleInterfaceObject::clear() {
  if (m_bundle != nullptr) m_bundle->clear();
}

int tdatabundleInterfaceObject::itemsCount() {
  return m_bundle != nullptr ? m_bundle->itemsCount() : 0;
}

const tdatabundleItemData* tdatabundleInterfaceObject::firstItem() {
  return m_bundle != nullptr ? m_bundle->firstItem() : nullptr;
}

const tdatabundleItemData* tdatabundleInterfaceObject::nextItem() {
  return m_bundle != nullptr ? m_bundle->nextItem() : nullptr;
}

void tdatabundleInterfaceObject::putDatas(idatabundle* other) {
  if (m_bundle != nullptr) m_bundle->putDatas(other);
}

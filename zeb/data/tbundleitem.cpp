// tbundleitem: one typed value of a bundle, owning its text, bytes or nested bundle.

#include <cstring>
#include <utility>

#include "zeb/data/internal/bundle_value.h"
#include "zeb/data/tdatabundle.h"
#include "zeb/strings/zeb_cstr.h"

using zeb::internal::pointerAsValue;
using zeb::internal::valueAsObject;
using zeb::internal::valueAsString;

namespace {

// The owned copy of a text; "" and null give null.
char* copyText(const char* text) {
  if (text == nullptr || *text == '\0') return nullptr;
  const std::size_t n = std::strlen(text) + 1;
  char* copy = new char[n];
  std::memcpy(copy, text, n);
  return copy;
}

bool isKnownType(int type) {
  return type >= tbundleitem::dtEmpty && type <= tbundleitem::dtDataBundle;
}

const tbytesdata& sharedEmptyBytes() {
  static const tbytesdata empty;
  return empty;
}

const tdatabundle& sharedEmptyBundle() {
  static const tdatabundle empty;
  return empty;
}

}  // namespace

tbundleitem::tbundleitem(udatatype type, unsigned long long value) {
  if (!isKnownType(type)) return;
  m_type = type;
  switch (type) {
    case dtString:
      m_value = pointerAsValue(copyText(valueAsString(value)));
      break;
    case dtBytesData: {
      const auto* bytes = static_cast<const tbytesdata*>(valueAsObject(value));
      m_value = pointerAsValue(bytes != nullptr ? new tbytesdata(*bytes) : new tbytesdata);
      break;
    }
    case dtDataBundle: {
      const auto* bundle = static_cast<const tdatabundle*>(valueAsObject(value));
      m_value = pointerAsValue(bundle != nullptr ? new tdatabundle(*bundle) : new tdatabundle);
      break;
    }
    default:
      m_value = value;
  }
}

tbundleitem::tbundleitem(const tDataInitPair& pair) : tbundleitem(pair.type, pair.value) {}

tbundleitem::tbundleitem(const tbundleitem& other) : tbundleitem(other.m_type, other.m_value) {}

tbundleitem::tbundleitem(tbundleitem&& other) noexcept
    : m_value(other.m_value), m_type(other.m_type) {
  other.setEmpty();
}

tbundleitem::~tbundleitem() {
  freePayload();
}

tbundleitem& tbundleitem::operator=(const tbundleitem& other) {
  if (this == &other) return *this;
  tbundleitem copy(other);
  return *this = std::move(copy);
}

tbundleitem& tbundleitem::operator=(tbundleitem&& other) noexcept {
  if (this == &other) return *this;
  freePayload();
  m_value = other.m_value;
  m_type = other.m_type;
  other.setEmpty();
  return *this;
}

tbundleitem& tbundleitem::operator=(long long value) {
  return *this = tbundleitem(dtInt64, static_cast<unsigned long long>(value));
}

tbundleitem& tbundleitem::operator=(const char* text) {
  return *this = tbundleitem(dtString, pointerAsValue(text));
}

tbundleitem& tbundleitem::operator=(const tbytesdata& bytes) {
  return *this = tbundleitem(dtBytesData, pointerAsValue(&bytes));
}

tbundleitem& tbundleitem::operator=(const tdatabundle& bundle) {
  return *this = tbundleitem(dtDataBundle, pointerAsValue(&bundle));
}

tbundleitem& tbundleitem::operator=(void* object) {
  return *this = tbundleitem(dtObject, pointerAsValue(object));
}

void tbundleitem::releatPtr() {
  setEmpty();
}

const char* tbundleitem::asString() const {
  return m_type == dtString ? valueAsString(m_value) : nullptr;
}

void* tbundleitem::asPointer() const {
  return m_type == dtObject ? valueAsObject(m_value) : nullptr;
}

const tbytesdata& tbundleitem::asBytesData() const {
  return m_type == dtBytesData ? *static_cast<const tbytesdata*>(valueAsObject(m_value))
                               : sharedEmptyBytes();
}

const tdatabundle& tbundleitem::asDataBundle() const {
  return m_type == dtDataBundle ? *static_cast<const tdatabundle*>(valueAsObject(m_value))
                                : sharedEmptyBundle();
}

bool tbundleitem::operator==(long long value) const {
  return (m_type == dtInt32 || m_type == dtInt64) && asInt64() == value;
}

bool tbundleitem::operator==(void* object) const {
  return m_type == dtObject && valueAsObject(m_value) == object;
}

bool tbundleitem::operator==(const char* text) const {
  return m_type == dtString && zeb_strcmpnil(asString(), text) == 0;
}

bool tbundleitem::operator==(const tbytesdata& bytes) const {
  return m_type == dtBytesData && asBytesData() == bytes;
}

bool tbundleitem::operator==(const tdatabundle& bundle) const {
  return m_type == dtDataBundle && asDataBundle() == bundle;
}

bool tbundleitem::equal(const tbundleitem& other) const {
  if (m_type != other.m_type) return false;
  switch (m_type) {
    case dtString:
      return zeb_strcmpnil(asString(), other.asString()) == 0;
    case dtBytesData:
      return asBytesData() == other.asBytesData();
    case dtDataBundle:
      return asDataBundle() == other.asDataBundle();
    default:
      return m_value == other.m_value;
  }
}

void tbundleitem::freePayload() {
  switch (m_type) {
    case dtString:
      delete[] valueAsString(m_value);
      break;
    case dtBytesData:
      delete static_cast<tbytesdata*>(valueAsObject(m_value));
      break;
    case dtDataBundle:
      delete static_cast<tdatabundle*>(valueAsObject(m_value));
      break;
    default:
      break;
  }
  setEmpty();
}

void tbundleitem::setEmpty() {
  m_value = 0;
  m_type = dtEmpty;
}

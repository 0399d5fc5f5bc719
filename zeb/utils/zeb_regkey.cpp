// zeb_regkey.cpp: RegValue and TRegKey over the platform registry functions.
#include "zeb/utils/zeb_regkey.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "zeb/data/tbytesdata.h"
#include "zeb/log/zeb_log.h"
#include "zeb/platform/registry.h"
#include "zeb/strings/zeb_cstr.h"

namespace {

const char* const kSource = "utils/zeb_regkey";
const zwchar_t kEmptyText[1] = {0};

void assertionLine(int line) {
  if (ZEB_LOG_ENABLED(MLOG_ASSERT)) ZEB_Error(0, kSource, line);
}

zwchar_t* copyText(const zwchar_t* s) {
  const size_t n = zeb_wcslen(s);
  zwchar_t* copy = static_cast<zwchar_t*>(std::malloc((n + 1) * sizeof(zwchar_t)));
  if (copy == nullptr) return nullptr;
  if (n > 0) std::memcpy(copy, s, n * sizeof(zwchar_t));
  copy[n] = 0;
  return copy;
}

// A whole decimal number with an optional sign that fits in a long long.
bool parseDecimal(const zwchar_t* s, long long& out) {
  bool negative = false;
  if (*s == '-' || *s == '+') negative = *s++ == '-';
  if (*s == 0) return false;
  unsigned long long magnitude = 0;
  for (; *s != 0; ++s) {
    if (*s < '0' || *s > '9') return false;
    if (magnitude > (ULLONG_MAX - 9) / 10) return false;
    magnitude = magnitude * 10 + static_cast<unsigned>(*s - '0');
  }
  if (negative) {
    if (magnitude > static_cast<unsigned long long>(LLONG_MAX) + 1) return false;
    out = magnitude == 0 ? 0 : -static_cast<long long>(magnitude - 1) - 1;
  } else {
    if (magnitude > static_cast<unsigned long long>(LLONG_MAX)) return false;
    out = static_cast<long long>(magnitude);
  }
  return true;
}

}  // namespace

// ---- RegValue ----------------------------------------------------------------------------------

struct RegValue::Record {
  unsigned long type = REG_NONE;
  tbytesdata data;

  void setBytes(unsigned long newType, const void* bytes, unsigned long n) {
    type = newType;
    data.clearData();
    if (n > 0 && n <= INT_MAX) data.setData(bytes, static_cast<int>(n));
  }
  void setInteger(unsigned long newType, unsigned long long v, int width) {
    unsigned char bytes[8];
    for (int i = 0; i < width; ++i) bytes[i] = static_cast<unsigned char>(v >> (8 * i));
    setBytes(newType, bytes, static_cast<unsigned long>(width));
  }
  void setText(unsigned long newType, const zwchar_t* s) {
    const zwchar_t* text = s != nullptr ? s : kEmptyText;
    setBytes(newType, text, (zeb_wcslen(text) + 1) * sizeof(zwchar_t));
  }
};

RegValue::RegValue() : r(new Record) {}

RegValue::RegValue(const zwchar_t* s, bool expand) : r(new Record) {
  r->setText(expand ? REG_EXPAND_SZ : REG_SZ, s);
}

RegValue::RegValue(unsigned long v) : r(new Record) {
  r->setInteger(REG_DWORD, v, 4);
}

RegValue::RegValue(unsigned long long v) : r(new Record) {
  r->setInteger(REG_QWORD, v, 8);
}

RegValue::RegValue(unsigned long size, unsigned char* bytes) : r(new Record) {
  r->setBytes(REG_BINARY, bytes, size);
}

RegValue::RegValue(unsigned short count, const zwchar_t* const* strings) : r(new Record) {
  r->type = REG_MULTI_SZ;
  const zwchar_t nul = 0;
  for (unsigned short i = 0; i < count; ++i) {
    const zwchar_t* s = strings != nullptr && strings[i] != nullptr ? strings[i] : kEmptyText;
    r->data.append(s, static_cast<int>((zeb_wcslen(s) + 1) * sizeof(zwchar_t)));
  }
  r->data.append(&nul, sizeof nul);
}

RegValue::RegValue(const RegValue& other) : r(new Record) {
  *this = other;
}

RegValue::RegValue(RegValue&& other) : RegValue(static_cast<const RegValue&>(other)) {}

RegValue& RegValue::operator=(const RegValue& other) {
  if (&other != this) r->setBytes(other.r->type, other.r->data.p(), other.Size());
  return *this;
}

RegValue& RegValue::operator=(RegValue&& other) {
  return *this = static_cast<const RegValue&>(other);
}

RegValue::~RegValue() {
  delete r;
}

RegValue& RegValue::operator=(unsigned long v) {
  r->setInteger(REG_DWORD, v, 4);
  return *this;
}

RegValue& RegValue::operator=(unsigned long long v) {
  r->setInteger(REG_QWORD, v, 8);
  return *this;
}

RegValue& RegValue::operator=(const zwchar_t* s) {
  r->setText(REG_SZ, s);
  return *this;
}

unsigned long RegValue::getType() const {
  return r->type;
}

unsigned long& RegValue::getTypeWriter() {
  return r->type;
}

unsigned long RegValue::Size() const {
  return static_cast<unsigned long>(r->data.size());
}

unsigned char* RegValue::Pointer() const {
  return r->data.isEmpty() ? nullptr : r->data.p();
}

unsigned char RegValue::getData(unsigned long i) const {
  return i < Size() ? r->data[static_cast<int>(i)] : 0;
}

const unsigned char* RegValue::getDataReadPtr(unsigned long i) const {
  return i < Size() ? r->data.p() + i : nullptr;
}

unsigned char* RegValue::getDataWritePtr(unsigned long i) {
  return i < Size() ? r->data.p() + i : nullptr;
}

void RegValue::Resize(unsigned long n) {
  const unsigned long before = Size();
  if (n > INT_MAX) return;
  if (n <= before) {
    r->data.setDataSize(static_cast<int>(n));
    return;
  }
  r->data.resize(static_cast<int>(n));
  if (Size() == n) std::memset(r->data.p() + before, 0, n - before);
}

void RegValue::clearData() {
  r->data.clearData();
}

bool RegValue::readInteger(unsigned long long& out) const {
  int width = 0;
  if (r->type == REG_DWORD && Size() >= 4) width = 4;
  if (r->type == REG_QWORD && Size() >= 8) width = 8;
  if (width == 0) return false;
  out = 0;
  for (int i = width - 1; i >= 0; --i) out = (out << 8) | r->data[i];
  return true;
}

RegValue::operator unsigned long() const {
  unsigned long long v = 0;
  if (r->type != REG_DWORD || !readInteger(v)) {
    assertionLine(__LINE__);
    return 0;
  }
  return static_cast<unsigned long>(v);
}

RegValue::operator unsigned long long() const {
  unsigned long long v = 0;
  if (r->type != REG_QWORD || !readInteger(v)) {
    assertionLine(__LINE__);
    return 0;
  }
  return v;
}

const zwchar_t* RegValue::textAt(unsigned long offset) const {
  tbytesdata& data = r->data;
  const int size = data.size();
  // Three zero bytes after the data end the text whether its length is even or odd.
  if (!data.ensureSize(size + 3, true, false)) return kEmptyText;
  std::memset(data.p() + size, 0, 3);
  if (offset >= static_cast<unsigned long>(size)) return kEmptyText;
  return reinterpret_cast<const zwchar_t*>(data.p() + offset);
}

RegValue::operator const zwchar_t*() const {
  const unsigned long type = r->type;
  if (type != REG_SZ && type != REG_EXPAND_SZ && type != REG_MULTI_SZ) return kEmptyText;
  return textAt(0);
}

int RegValue::asInt32Def(int def) const {
  const long long v = asInt64Def(def);
  if (r->type == REG_QWORD && (v < INT_MIN || v > static_cast<long long>(UINT_MAX))) {
    assertionLine(__LINE__);
    return def;
  }
  if (r->type == REG_DWORD) return static_cast<int>(static_cast<unsigned int>(v));
  if (v < INT_MIN || v > INT_MAX) return def;
  return static_cast<int>(v);
}

long long RegValue::asInt64Def(long long def) const {
  unsigned long long v = 0;
  if (readInteger(v)) {
    return r->type == REG_DWORD ? static_cast<long long>(static_cast<unsigned int>(v))
                                : static_cast<long long>(v);
  }
  long long parsed = 0;
  if ((r->type == REG_SZ || r->type == REG_EXPAND_SZ) && parseDecimal(textAt(0), parsed)) {
    return parsed;
  }
  if (r->type != REG_NONE) assertionLine(__LINE__);
  return def;
}

const zwchar_t* RegValue::asStringDef(const zwchar_t* def) const {
  if (r->type != REG_SZ && r->type != REG_EXPAND_SZ) return def;
  return textAt(0);
}

const zwchar_t* RegValue::at(unsigned long i) const {
  if (r->type == REG_MULTI_SZ) {
    unsigned long offset = 0;
    const unsigned long size = Size();
    for (unsigned long k = 0; offset + 1 < size; ++k) {
      const zwchar_t* s = textAt(offset);
      if (*s == 0) break;
      if (k == i) return s;
      offset += (zeb_wcslen(s) + 1) * sizeof(zwchar_t);
    }
  }
  assertionLine(__LINE__);
  return kEmptyText;
}

bool RegValue::operator==(const zwchar_t* s) const {
  if (r->type != REG_SZ || s == nullptr) return false;
  const unsigned long bytes = (zeb_wcslen(s) + 1) * sizeof(zwchar_t);
  return Size() == bytes && std::memcmp(r->data.p(), s, bytes) == 0;
}

bool RegValue::operator==(unsigned long v) const {
  unsigned long long stored = 0;
  return r->type == REG_DWORD && readInteger(stored) && stored == static_cast<unsigned int>(v);
}

bool RegValue::operator==(unsigned long long v) const {
  unsigned long long stored = 0;
  return r->type == REG_QWORD && readInteger(stored) && stored == v;
}

bool RegValue::operator==(const RegValue& other) const {
  return r->type == other.r->type && r->data == other.r->data;
}

bool RegValue::operator!=(const RegValue& other) const {
  return !(*this == other);
}

bool RegValue::operator<(const RegValue& other) const {
  if (r->type != other.r->type) return r->type < other.r->type;
  const unsigned long common = std::min(Size(), other.Size());
  const int order = common > 0 ? std::memcmp(r->data.p(), other.r->data.p(), common) : 0;
  if (order != 0) return order < 0;
  return Size() < other.Size();
}

// ---- TRegKey -----------------------------------------------------------------------------------

TRegKey::RegValueProxy::RegValueProxy(TRegKey& key, const zwchar_t* name)
    : key_(key), name_(copyText(name)) {}

TRegKey::RegValueProxy::RegValueProxy(const RegValueProxy& other)
    : key_(other.key_), name_(copyText(other.name_)) {}

TRegKey::RegValueProxy::~RegValueProxy() {
  std::free(name_);
}

TRegKey::RegValueProxy& TRegKey::RegValueProxy::operator=(const RegValue& value) {
  key_.SetValue(name_, value);
  return *this;
}

TRegKey::RegValueProxy& TRegKey::RegValueProxy::operator=(const RegValueProxy& other) {
  key_.SetValue(name_, other.QueryValue());
  return *this;
}

RegValue TRegKey::RegValueProxy::QueryValue() const {
  RegValue value;
  key_.QueryValue(name_, value);
  return value;
}

TRegKey::RegValueProxy::operator RegValue() const {
  return QueryValue();
}

bool TRegKey::RegValueProxy::operator==(const RegValue& value) const {
  return QueryValue() == value;
}

bool TRegKey::RegValueProxy::operator==(const RegValueProxy& other) const {
  return QueryValue() == other.QueryValue();
}

TRegKey::TRegKey(HKEY hive, const zwchar_t* machine)
    : hive_(hive), key_(hive), sam_(0), path_(copyText(nullptr)) {
  if (machine != nullptr && *machine != 0 && hive != nullptr) {
    zeb::platform::regConnectRegistry(machine, hive, &key_);
  }
}

TRegKey::TRegKey(const TRegKey& other) : TRegKey(other.hive_) {
  *this = other;
}

TRegKey& TRegKey::operator=(const TRegKey& other) {
  if (&other == this) return *this;
  closeOwnHandle();
  hive_ = other.hive_;
  sam_ = other.sam_;
  setPath(other.path_);
  if (other.key_ != other.hive_ && other.key_ != nullptr) {
    zeb::platform::regOpenKey(hive_, path_, sam_, &key_);
  } else {
    key_ = other.key_;
  }
  return *this;
}

TRegKey::~TRegKey() {
  closeOwnHandle();
  std::free(path_);
}

const zwchar_t* TRegKey::Path() const {
  return path_ != nullptr ? path_ : kEmptyText;
}

HKEY TRegKey::readHandle() const {
  return key_ == hive_ ? nullptr : key_;
}

void TRegKey::closeOwnHandle() {
  if (key_ != nullptr && key_ != hive_) zeb::platform::regCloseKey(key_);
  key_ = nullptr;
}

void TRegKey::setPath(const zwchar_t* path) {
  zwchar_t* copy = copyText(path);
  std::free(path_);
  path_ = copy;
}

long TRegKey::openWith(bool create, const zwchar_t* path, unsigned long sam) {
  closeOwnHandle();
  const REGSAM access = static_cast<REGSAM>(sam);
  const LONG status = create ? zeb::platform::regCreateKey(hive_, path, access, &key_)
                             : zeb::platform::regOpenKey(hive_, path, access, &key_);
  sam_ = sam;
  setPath(path);
  return status;
}

long TRegKey::Open(const zwchar_t* path, unsigned long sam) {
  return openWith(false, path, sam);
}

long TRegKey::Create(const zwchar_t* path, unsigned long sam) {
  return openWith(true, path, sam);
}

long TRegKey::Close() {
  if (key_ == nullptr) return ERROR_SUCCESS;
  const LONG status = zeb::platform::regCloseKey(readHandle());
  key_ = nullptr;
  sam_ = 0;
  setPath(nullptr);
  return status;
}

long TRegKey::QueryValue(const zwchar_t* name, RegValue& out) const {
  const HKEY handle = readHandle();
  DWORD size = static_cast<DWORD>(out.Size());
  if (size == 0) {
    DWORD type = REG_NONE;
    const LONG status = zeb::platform::regQueryValue(handle, name, &type, nullptr, &size);
    if (status != ERROR_SUCCESS) {
      out.getTypeWriter() = REG_NONE;
      out.clearData();
      return status;
    }
    out.getTypeWriter() = type;
    out.Resize(size);
  }
  DWORD type = REG_NONE;
  DWORD have = static_cast<DWORD>(out.Size());
  size = have;
  LONG status = zeb::platform::regQueryValue(handle, name, &type, out.Pointer(), &size);
  if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA) return status;
  out.getTypeWriter() = type;
  if (status != ERROR_MORE_DATA && have >= size) return status;
  out.Resize(size);
  status = zeb::platform::regQueryValue(handle, name, &type, out.Pointer(), &size);
  if (status == ERROR_SUCCESS) out.getTypeWriter() = type;
  return status;
}

long TRegKey::SetValue(const zwchar_t* name, const RegValue& value) {
  return zeb::platform::regSetValue(key_, name, static_cast<DWORD>(value.getType()),
                                    value.Pointer(), static_cast<DWORD>(value.Size()));
}

long TRegKey::DeleteValue(const zwchar_t* name) {
  return zeb::platform::regDeleteValue(key_, name);
}

long TRegKey::EnumValue(unsigned long index, zwchar_t* name, unsigned long* nameLen,
                        RegValue& out) {
  if (nameLen == nullptr) return ERROR_INVALID_PARAMETER;
  const DWORD room = static_cast<DWORD>(*nameLen);
  DWORD length = room;
  DWORD type = REG_NONE;
  if (out.Size() == 0) {
    DWORD size = 0;
    const LONG status =
        zeb::platform::regEnumValue(key_, index, name, &length, &type, nullptr, &size);
    if (status != ERROR_SUCCESS) return status;
    out.Resize(size);
    length = room;
  }
  DWORD size = static_cast<DWORD>(out.Size());
  const LONG status =
      zeb::platform::regEnumValue(key_, index, name, &length, &type, out.Pointer(), &size);
  if (status == ERROR_SUCCESS) {
    out.getTypeWriter() = type;
    out.Resize(size);
    *nameLen = length;
  }
  return status;
}

long TRegKey::EnumKey(unsigned long index, zwchar_t* name, unsigned long* nameLen) {
  if (nameLen == nullptr) return ERROR_INVALID_PARAMETER;
  DWORD length = static_cast<DWORD>(*nameLen);
  const LONG status = zeb::platform::regEnumKey(key_, index, name, &length);
  if (status == ERROR_SUCCESS) *nameLen = length;
  return status;
}

long TRegKey::Delete() {
  if (*Path() == 0) assertionLine(__LINE__);
  return zeb::platform::regDeleteKey(hive_, Path());
}

long TRegKey::DeleteTree() {
  if (*Path() == 0) assertionLine(__LINE__);
  return zeb::platform::regDeleteTree(hive_, Path());
}

bool TRegKey::isLeaf() const {
  DWORD subKeys = 0;
  return zeb::platform::regQueryInfoKey(key_, &subKeys, nullptr) == ERROR_SUCCESS && subKeys == 0;
}

bool TRegKey::isEmpty() const {
  DWORD values = 0;
  return zeb::platform::regQueryInfoKey(key_, nullptr, &values) == ERROR_SUCCESS && values == 0;
}

TRegKey::RegValueProxy TRegKey::operator[](const zwchar_t* name) {
  return RegValueProxy(*this, name);
}

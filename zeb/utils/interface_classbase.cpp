// interface_classbase: the counted base of interface objects.

#include "zeb/utils/interface_classbase.h"

#include <cstdint>
#include <cstring>
#include <mutex>

#include "zeb/log/zeb_log.h"

namespace {

const char kTag[] = "zeb.intf";
const char kSource[] = "interface_classbase";
const int kLineStillReferenced = 13;
const int kLineUnderflow = 41;
const int kLevelTrace = 20;

// Log lines show an object by the low 32 bits of its address.
unsigned shortAddress(const void* p) {
  return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(p));
}

void fatalLine(int line) {
  ZEB_Log_AssertA(false, kSource, line);
}

std::recursive_mutex& lockOf(void* lock) {
  return *static_cast<std::recursive_mutex*>(lock);
}

bool sameGuid(const GUID& a, const GUID& b) {
  return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}

// Holds the count's lock for a scope when the object asks for one.
class CountGuard {
 public:
  CountGuard(bool threadSafe, void* lock) : m_lock(threadSafe ? &lockOf(lock) : nullptr) {
    if (m_lock != nullptr) m_lock->lock();
  }
  ~CountGuard() {
    if (m_lock != nullptr) m_lock->unlock();
  }
  CountGuard(const CountGuard&) = delete;
  CountGuard& operator=(const CountGuard&) = delete;

 private:
  std::recursive_mutex* m_lock;
};

}  // namespace

interface_classbase::interface_classbase(bool threadSafe)
    : m_refCount(0), m_threadSafe(threadSafe), m_lock(new std::recursive_mutex) {
  if (ZEB_LOG_ENABLED(kLevelTrace)) {
    mlogWithLevel(static_cast<tloglevel>(kLevelTrace), kTag,
                  "interface_classbase::interface_classbase() this:0x%x", shortAddress(this));
  }
}

interface_classbase::interface_classbase(const interface_classbase& other)
    : interface_classbase(other.m_threadSafe) {}

interface_classbase::~interface_classbase() {
  if (m_refCount >= 2) fatalLine(kLineStillReferenced);
  delete &lockOf(m_lock);
  if (ZEB_LOG_ENABLED(kLevelTrace)) {
    mlogWithLevel(static_cast<tloglevel>(kLevelTrace), kTag,
                  "interface_classbase::~interface_classbase() this:0x%x", shortAddress(this));
  }
}

long ZEB_STDCALL interface_classbase::QueryInterface(const GUID& iid, void** object) {
  if (ZEB_LOG_ENABLED(MLOG_INFO)) {
    mlogWithLevel(MLOG_INFO, kTag, "interface_classbase::QueryInterface,iid(%x-%x-%x-%x)",
                  static_cast<unsigned>(iid.Data1), static_cast<unsigned>(iid.Data2),
                  static_cast<unsigned>(iid.Data3), static_cast<unsigned>(iid.Data4[0]));
  }
  if (object == nullptr) return 0;
  *object = nullptr;
  if (sameGuid(iid, zeb::kIIDUnknown) || sameGuid(iid, zeb::kIIDInterfaceBase)) {
    if (ZEB_LOG_ENABLED(MLOG_INFO)) {
      mlogWithLevel(MLOG_INFO, kTag, "pvObject=0x%x", shortAddress(this));
    }
    *object = this;
    AddRef();
  }
  return 0;
}

unsigned long ZEB_STDCALL interface_classbase::AddRef() {
  CountGuard guard(m_threadSafe, m_lock);
  return static_cast<unsigned long>(++m_refCount);
}

unsigned long ZEB_STDCALL interface_classbase::Release() {
  int count;
  {
    CountGuard guard(m_threadSafe, m_lock);
    if (m_refCount <= 0) fatalLine(kLineUnderflow);
    count = --m_refCount;
    if (ZEB_LOG_ENABLED(kLevelTrace)) {
      mlogWithLevel(static_cast<tloglevel>(kLevelTrace), kTag,
                    "interface_classbase::Release(), this:0x%x ref:%d", shortAddress(this), count);
    }
  }
  if (count > 0) return static_cast<unsigned long>(count);
  if (ZEB_LOG_ENABLED(MLOG_DEBUG)) {
    mlogWithLevel(MLOG_DEBUG, kTag, "interface_classbase::Release(),delete this:0x%x",
                  shortAddress(this));
  }
  delete this;
  return 0;
}

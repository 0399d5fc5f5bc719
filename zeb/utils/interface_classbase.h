// interface_classbase.h: the reference-counted base of every interface object that crosses a
// component boundary, and zeb::PassRefPtr, the holder of one such reference.
//
// The first three virtual slots are QueryInterface, AddRef and Release, in that order, followed by
// the virtual destructor, so a component built by another compiler of the same platform can call
// them through the table. A new object has a count of 0: the first AddRef makes it 1 and the
// Release that brings it back to 0 deletes the object. Constructed with threadSafe = true, the
// count changes under a lock; otherwise the count is a plain integer and the object belongs to
// one thread at a time.
//
//   class TCounter : public interface_classbase {
//    public:
//     TCounter() : interface_classbase(true) {}
//   };
//   interface_classbase* object = new TCounter;
//   object->AddRef();                       // 1
//   void* base = nullptr;
//   object->QueryInterface(zeb::kIIDInterfaceBase, &base);   // base == object, count 2
//   object->Release();                      // 1
//   object->Release();                      // 0: deleted
//
// QueryInterface always returns 0, also for an identifier it does not know; only the pointer it
// stores tells the answer, so callers test that pointer. Misuse is logged, never fatal: releasing
// an object whose count is already 0 and deleting one that still holds two or more references each
// write a "Fatal Error:FileName:interface_classbase Line:<n>" error line and carry on.
#ifndef ZEB_UTILS_INTERFACE_CLASSBASE_H
#define ZEB_UTILS_INTERFACE_CLASSBASE_H

#include "zeb/platform/wintypes.h"
#include "zeb/zeb_api.h"

namespace zeb {

// IUnknown's identifier {00000000-0000-0000-C000-000000000046}.
inline constexpr GUID kIIDUnknown = {
    0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
// The identifier of interface_classbase {CF4D91F3-8275-4A4B-9FD3-2D2484738730}.
inline constexpr GUID kIIDInterfaceBase = {
    0xCF4D91F3, 0x8275, 0x4A4B, {0x9F, 0xD3, 0x2D, 0x24, 0x84, 0x73, 0x87, 0x30}};

}  // namespace zeb

class ZEB_API interface_classbase {
 public:
  explicit interface_classbase(bool threadSafe);
  // A copy is a new object: count 0, the same thread-safe flag, a lock of its own.
  interface_classbase(const interface_classbase& other);
  interface_classbase& operator=(const interface_classbase&) = delete;

  // Stores this object in *object and adds a reference when `iid` is kIIDUnknown or
  // kIIDInterfaceBase; otherwise stores null. Returns 0 in every case (a null `object` is left
  // alone).
  virtual long ZEB_STDCALL QueryInterface(const GUID& iid, void** object);
  // The count after adding one.
  virtual unsigned long ZEB_STDCALL AddRef();
  // The count after taking one away; at 0 the object deletes itself and 0 is returned.
  virtual unsigned long ZEB_STDCALL Release();
  virtual ~interface_classbase();

  // AddRef and Release for C++ holders such as zeb::PassRefPtr.
  void ref() { AddRef(); }
  void deref() { Release(); }

  // The current count (for diagnostics; another thread may change it at once).
  int refCount() const { return m_refCount; }

 private:
  int m_refCount;
  bool m_threadSafe;
  void* m_lock;  // the count's lock, created and destroyed with the object
};

namespace zeb {

// Holds one reference to an interface object and gives it back when it goes out of scope.
// Moving passes the reference on; leakRef() hands it to the caller, who releases it later.
//
//   zeb::PassRefPtr<idatabundle> view = bundle.wrapAsInterface();
//   if (view) view->has("name");
template <typename T>
class PassRefPtr {
 public:
  PassRefPtr() = default;
  // Adopts a reference the caller already holds (no AddRef).
  static PassRefPtr adopt(T* object) {
    PassRefPtr holder;
    holder.m_object = object;
    return holder;
  }
  PassRefPtr(const PassRefPtr& other) : m_object(other.m_object) {
    if (m_object != nullptr) m_object->ref();
  }
  PassRefPtr(PassRefPtr&& other) noexcept : m_object(other.leakRef()) {}
  PassRefPtr& operator=(PassRefPtr other) noexcept {
    T* old = m_object;
    m_object = other.m_object;
    other.m_object = old;
    return *this;
  }
  ~PassRefPtr() {
    if (m_object != nullptr) m_object->deref();
  }

  T* get() const { return m_object; }
  T* operator->() const { return m_object; }
  T& operator*() const { return *m_object; }
  explicit operator bool() const { return m_object != nullptr; }
  // The held reference, now the caller's; the holder becomes empty.
  T* leakRef() {
    T* object = m_object;
    m_object = nullptr;
    return object;
  }

 private:
  T* m_object = nullptr;
};

}  // namespace zeb

#endif  // ZEB_UTILS_INTERFACE_CLASSBASE_H

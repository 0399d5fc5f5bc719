// tdatabundle.h: in-memory sets of typed values.
//
// - tbundleitem: one typed value (integers, a double, a text, a borrowed pointer, bytes, a nested
//   bundle). Texts, bytes and nested bundles are owned copies; a pointer is only borrowed.
// - tdatabundle: text keys mapped to items (keys are exact, case-sensitive byte strings). put*
//   never overwrites an existing key; assigning through operator[] does.
// - tsdatabundle: an ordered sequence of items, read by index or by a read cursor.
// - idatabundle: the counted interface through which a bundle crosses a component boundary;
//   tdatabundle::wrapAsInterface gives one over an existing bundle.
//
//   tdatabundle request;
//   request.putString("user", "ann");
//   request.putInt32("retries", 3);
//   request["retries"] = 5LL;                   // overwrites: now an int64 item holding 5
//   int retries = request.getInt32("retries");  // 5
//
//   tsdatabundle row;
//   row.putInt32(10).putString("x").putBoolean(true);
//   row.resetPos();
//   int a = row.getInt32(-1);                    // 10: index -1 reads at the cursor
//   const char* b = row.getString(-1);           // "x"
//
// Read each value with the type it was put with. Apart from getBytesData, the getters read the
// stored 64-bit value without looking at its type: a 32-bit getter takes the low 32 bits, a
// float getter reinterprets the bits, and getString/getObject hand back the value as an address.
// So a number read with getString is that number used as a pointer (not a text), and a text read
// with getInt64 is the address of the text. This is how the bundle has always behaved, and
// callers on both sides of a component boundary rely on it, so it stays.
//
// A bundle has no byte form: it lives in memory only and copies value by value. Missing keys
// and bad indexes give 0, false, null or an empty buffer; nothing throws and nothing is logged.
// A null key is the empty key. A bundle belongs to one thread at a time.
#ifndef ZEB_DATA_TDATABUNDLE_H
#define ZEB_DATA_TDATABUNDLE_H

#include "zeb/data/tbytesdata.h"
#include "zeb/utils/interface_classbase.h"
#include "zeb/zeb_api.h"

class tdatabundle;
class idatabundle;

class ZEB_API tbundleitem {
 public:
  // The type tag of an item.
  enum udatatype {
    dtEmpty = 0,
    dtInt32 = 1,   // sign-extended into the 64-bit value
    dtUInt32 = 2,  // zero-extended
    dtInt64 = 3,
    dtUInt64 = 4,      // booleans too, as 0 or 1
    dtFloat = 5,       // the bits of a double
    dtString = 6,      // an owned copy of the text; "" and null are kept as a null text
    dtObject = 7,      // a borrowed pointer, never freed by the item
    dtBytesData = 8,   // an owned tbytesdata copy
    dtDataBundle = 9,  // an owned tdatabundle copy
  };

  // A (type, value) pair to construct an item from; the value as for tbundleitem(type, value).
  struct tDataInitPair {
    udatatype type;
    unsigned long long value;
  };

  tbundleitem() = default;
  // For the owned types the value is the address of what to copy: a `const char*` for dtString,
  // a `const tbytesdata*` for dtBytesData, a `const tdatabundle*` for dtDataBundle (null gives
  // an empty payload). For every other type the value is stored as it is. A type outside the
  // table gives an empty item.
  tbundleitem(udatatype type, unsigned long long value);
  explicit tbundleitem(const tDataInitPair& pair);
  tbundleitem(const tbundleitem& other);
  tbundleitem(tbundleitem&& other) noexcept;
  ~tbundleitem();

  // Each assignment frees the old owned payload first.
  tbundleitem& operator=(const tbundleitem& other);
  tbundleitem& operator=(tbundleitem&& other) noexcept;
  tbundleitem& operator=(long long value);            // dtInt64
  tbundleitem& operator=(const char* text);           // dtString
  tbundleitem& operator=(const tbytesdata& bytes);    // dtBytesData
  tbundleitem& operator=(const tdatabundle& bundle);  // dtDataBundle
  tbundleitem& operator=(void* object);               // dtObject

  // Forgets the payload without freeing it (the item becomes empty); for a caller that took it.
  void releatPtr();

  udatatype type() const { return m_type; }
  // The raw 64-bit value whatever the type (for owned types the payload's address).
  unsigned long long value() const { return m_value; }

  // The text of a dtString item (null for the empty text and for other types).
  const char* asString() const;
  // The pointer of a dtObject item, else null.
  void* asPointer() const;
  long long asInt64() const { return static_cast<long long>(m_value); }
  bool asBoolean() const { return m_value != 0; }
  // The bytes of a dtBytesData item, else a shared empty buffer.
  const tbytesdata& asBytesData() const;
  // The bundle of a dtDataBundle item, else a shared empty bundle.
  const tdatabundle& asDataBundle() const;

  // True only for dtInt32 and dtInt64 items holding `value`.
  bool operator==(long long value) const;
  // dtObject holding that pointer.
  bool operator==(void* object) const;
  // dtString with the same text (null and "" are the same empty text).
  bool operator==(const char* text) const;
  bool operator==(const tbytesdata& bytes) const;
  bool operator==(const tdatabundle& bundle) const;
  // Same type and equal payload: texts, bytes and bundles by content, the rest by the value.
  bool operator==(const tbundleitem& other) const { return equal(other); }
  bool operator!=(const tbundleitem& other) const { return !equal(other); }
  bool equal(const tbundleitem& other) const;

 private:
  void freePayload();
  void setEmpty();

  unsigned long long m_value = 0;
  udatatype m_type = dtEmpty;
};

typedef tbundleitem::udatatype udatatype;

// One item as iteration hands it out: the key, the type and the raw value (as in the item).
struct tdatabundleItemData {
  const char* name;
  udatatype type;
  unsigned long long value;
};

// Called by tdatabundle::traval for every item.
typedef void (*tdatabundleTravalFun)(const char* name, const tbundleitem& item, void* context);

class ZEB_API tdatabundle {
 public:
  tdatabundle();
  tdatabundle(const tdatabundle& other);
  // Takes other's items; other is left empty.
  tdatabundle(tdatabundle&& other) noexcept;
  // A bundle holding one item: dtInt64, dtString or dtObject.
  tdatabundle(const char* name, long long value);
  tdatabundle(const char* name, const char* text);
  tdatabundle(const char* name, void* object);
  virtual ~tdatabundle();

  tdatabundle& operator=(const tdatabundle& other);
  tdatabundle& operator=(tdatabundle&& other) noexcept;

  // ---- put: adds a new key; an existing key keeps its value and the call returns false ---------
  bool putInt32(const char* name, int value);
  bool putUInt32(const char* name, unsigned int value);
  bool putInt64(const char* name, long long value);
  bool putUInt64(const char* name, unsigned long long value);
  bool putBoolean(const char* name, bool value);
  bool putString(const char* name, const char* text);
  bool putObject(const char* name, void* object);
  bool putBytesData(const char* name, const tbytesdata& bytes);
  bool putDataBundle(const char* name, const tdatabundle& bundle);
  // An explicit type and raw value, as tbundleitem(type, value) takes them.
  bool putItem(const char* name, udatatype type, unsigned long long value);
  // put, returning the bundle for chaining.
  tdatabundle& nameValue(const char* name, long long value);
  tdatabundle& nameValue(const char* name, const char* text);
  tdatabundle& nameValue(const char* name, void* object);
  tdatabundle& nameValue(const char* name, const tbytesdata& bytes);
  // Puts every item of `other`; keys already here keep their values.
  void putDatas(const tdatabundle& other);
  // The same through another bundle's interface (its firstItem/nextItem); null does nothing.
  void putDatas(idatabundle* other);

  // The item under `name`, created empty when missing; assigning through it overwrites.
  tbundleitem& operator[](const char* name);
  // The item under `name`, or a shared empty item.
  const tbundleitem& operator[](const char* name) const;

  // ---- get: the stored value read without a type check; 0, false or null when missing --------
  unsigned long long getItem(const char* name) const;
  int getInt32(const char* name) const;
  unsigned int getUInt32(const char* name) const;
  long long getInt64(const char* name) const;
  unsigned long long getUInt64(const char* name) const;
  bool getBoolean(const char* name) const;
  const char* getString(const char* name) const;
  void* getObject(const char* name) const;
  // The bytes of a dtBytesData item; a shared empty buffer otherwise (never null).
  const tbytesdata& getBytesData(const char* name) const;

  bool has(const char* name) const;
  // False when the key is missing.
  bool remove(const char* name);
  void clear();
  int itemsCount() const;

  // Iteration in the store's own order: firstItem, then nextItem until null. The record is reused
  // by the next call. Adding or removing a key ends the walk (nextItem gives null).
  const tdatabundleItemData* firstItem();
  const tdatabundleItemData* nextItem();
  // callback(name, item, context) for every item; a null callback does nothing.
  void traval(tdatabundleTravalFun callback, void* context) const;

  // The same keys with equal items.
  bool operator==(const tdatabundle& other) const;
  bool operator!=(const tdatabundle& other) const { return !(*this == other); }

  // A new interface object over this bundle (not a copy), holding one reference. The bundle must
  // outlive it.
  zeb::PassRefPtr<idatabundle> wrapAsInterface();

 private:
  struct Store;
  Store* m_store;
};

class ZEB_API tsdatabundle {
 public:
  tsdatabundle();
  // Copies take the read cursor along; a moved-from sequence is empty with its cursor at 0.
  tsdatabundle(const tsdatabundle& other);
  tsdatabundle(tsdatabundle&& other) noexcept;
  // A sequence of one item: dtString, dtObject or dtInt64.
  explicit tsdatabundle(const char* text);
  explicit tsdatabundle(void* object);
  explicit tsdatabundle(long long value);
  virtual ~tsdatabundle();

  tsdatabundle& operator=(const tsdatabundle& other);
  tsdatabundle& operator=(tsdatabundle&& other) noexcept;

  // ---- append one item ------------------------------------------------------------------------
  tsdatabundle& putInt32(int value);
  tsdatabundle& putUInt32(unsigned int value);
  tsdatabundle& putInt64(long long value);
  tsdatabundle& putUInt64(unsigned long long value);
  tsdatabundle& putFloat(double value);
  tsdatabundle& putBoolean(bool value);
  tsdatabundle& putString(const char* text);
  tsdatabundle& putObject(void* object);
  tsdatabundle& putBytesData(const tbytesdata& bytes);
  tsdatabundle& putDataBundle(const tdatabundle& bundle);
  tsdatabundle& putItem(udatatype type, unsigned long long value);
  // Appends every item of `other` (itself included).
  tsdatabundle& putDatas(const tsdatabundle& other);

  // ---- read ------------------------------------------------------------------------------------
  // `index` -1 reads at the cursor. An index outside 0..count-1 gives 0, false, null or the
  // shared empty buffer. Every read at a valid index moves the cursor on by one, whatever index
  // was given, so resetPos() then repeated reads at -1 walk the sequence.
  unsigned long long getItem(int index);
  int getInt32(int index);
  unsigned int getUInt32(int index);
  long long getInt64(int index);
  unsigned long long getUInt64(int index);
  double getFloat(int index);
  bool getBoolean(int index);
  const char* getString(int index);
  void* getObject(int index);
  // The bytes of a dtBytesData item, else the shared empty buffer.
  const tbytesdata& getBytesData(int index);
  // The cursor back to 0.
  void resetPos();

  // The item at `index` (no cursor, no move). Outside the sequence: an empty item, detached from
  // the bundle.
  tbundleitem& operator[](int index);
  const tbundleitem& operator[](int index) const;

  // False for an index outside the sequence. The cursor stays where it is.
  bool remove(int index);
  // No items, cursor 0.
  void clear();
  int itemsCount() const;

  // The same count and pairwise equal items.
  bool operator==(const tsdatabundle& other) const;
  bool operator!=(const tsdatabundle& other) const { return !(*this == other); }

 private:
  struct Store;
  Store* m_store;
};

// The counted interface of a bundle, for passing one across a component boundary. The virtual
// table, in order (the slots of interface_classbase first):
//
//   0 QueryInterface   1 AddRef   2 Release   3 destructor (two entries under the Itanium C++ ABI)
//   4 has
//   5 putInt32    6 putUInt32    7 putInt64    8 putUInt64    9 putString   10 putObject
//  11 getInt32   12 getUInt32   13 getInt64   14 getUInt64   15 getBoolean  16 getString
//  17 getObject
//  18 remove     19 clear       20 itemsCount  21 firstItem   22 nextItem    23 putDatas
//
// The getters read as tdatabundle's do (no type check); getInt32 gives the low 32 bits and
// getInt64/getUInt64 the whole value. Put operations never overwrite.
class ZEB_API idatabundle : public interface_classbase {
 public:
  idatabundle() : interface_classbase(false) {}

  virtual bool has(const char* name) = 0;
  virtual bool putInt32(const char* name, int value) = 0;
  virtual bool putUInt32(const char* name, unsigned int value) = 0;
  virtual bool putInt64(const char* name, long long value) = 0;
  virtual bool putUInt64(const char* name, unsigned long long value) = 0;
  virtual bool putString(const char* name, const char* text) = 0;
  virtual bool putObject(const char* name, void* object) = 0;
  virtual int getInt32(const char* name) = 0;
  virtual unsigned int getUInt32(const char* name) = 0;
  virtual long long getInt64(const char* name) = 0;
  virtual unsigned long long getUInt64(const char* name) = 0;
  virtual bool getBoolean(const char* name) = 0;
  virtual const char* getString(const char* name) = 0;
  virtual void* getObject(const char* name) = 0;
  virtual bool remove(const char* name) = 0;
  virtual void clear() = 0;
  virtual int itemsCount() = 0;
  virtual const tdatabundleItemData* firstItem() = 0;
  virtual const tdatabundleItemData* nextItem() = 0;
  virtual void putDatas(idatabundle* other) = 0;
};

// idatabundle over a borrowed tdatabundle (never owned or freed). With no bundle every operation
// gives false, 0 or null.
class ZEB_API tdatabundleInterfaceObject : public idatabundle {
 public:
  explicit tdatabundleInterfaceObject(tdatabundle* bundle) : m_bundle(bundle) {}

  bool has(const char* name) override;
  bool putInt32(const char* name, int value) override;
  bool putUInt32(const char* name, unsigned int value) override;
  bool putInt64(const char* name, long long value) override;
  bool putUInt64(const char* name, unsigned long long value) override;
  bool putString(const char* name, const char* text) override;
  bool putObject(const char* name, void* object) override;
  int getInt32(const char* name) override;
  unsigned int getUInt32(const char* name) override;
  long long getInt64(const char* name) override;
  unsigned long long getUInt64(const char* name) override;
  bool getBoolean(const char* name) override;
  const char* getString(const char* name) override;
  void* getObject(const char* name) override;
  bool remove(const char* name) override;
  void clear() override;
  int itemsCount() override;
  const tdatabundleItemData* firstItem() override;
  const tdatabundleItemData* nextItem() override;
  void putDatas(idatabundle* other) override;

 private:
  tdatabundle* m_bundle;
};

#endif  // ZEB_DATA_TDATABUNDLE_H

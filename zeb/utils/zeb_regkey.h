// zeb_regkey.h: typed registry values (RegValue) and keys (TRegKey) over the platform registry.
// On POSIX the registry is a persistent store shared by every process of the user (see
// "Registry" in the README); all text is UTF-16 and every result is the platform's status code
// (0 for success), passed through unchanged.
//
//   TRegKey key(HKEY_CURRENT_USER);
//   if (key.Create(ZW("SOFTWARE\\zebworks\\demo"), KEY_ALL_ACCESS) == ERROR_SUCCESS) {
//     key[ZW("runs")] = RegValue(key[ZW("runs")].QueryValue().asInt32Def(0) + 1ul);
//     key[ZW("user")] = ZW("ada");
//     RegValue user;
//     key.QueryValue(ZW("user"), user);   // user == ZW("ada")
//   }
//
// Decisions of this library:
//   - Delete() removes only a key without subkeys (ERROR_ACCESS_DENIED otherwise, as Win32's
//     non-recursive delete); DeleteTree() removes the key with everything under it. A handle to a
//     deleted key answers ERROR_KEY_DELETED until it is closed.
//   - asInt32Def / asInt64Def read REG_DWORD (4 bytes or more) and REG_QWORD (8 bytes or more; for
//     asInt32Def only when the value fits in 32 bits, as signed or unsigned) and REG_SZ /
//     REG_EXPAND_SZ text holding a whole decimal number (optional sign, nothing else); anything
//     else gives `def`, and a value of another kind than REG_NONE also logs an assertion line.
//   - asStringDef reads REG_SZ and REG_EXPAND_SZ only.
//   - A multi-string (REG_MULTI_SZ) is the Win32 list: each string followed by its NUL, then one
//     more NUL. An empty string therefore ends the list for at(i).
//   - The conversions to unsigned long and unsigned long long are by value: a DWORD value holds 4
//     bytes, which on LP64 systems is narrower than an unsigned long, so no reference into the
//     value's bytes is handed out.
//
// Objects are not shared between threads; the platform registry itself may be used from any
// thread and any process at once.
#ifndef ZEB_UTILS_ZEB_REGKEY_H
#define ZEB_UTILS_ZEB_REGKEY_H

#include "zeb/platform/wintypes.h"
#include "zeb/zeb_api.h"

class ZEB_API RegValue {
 public:
  // Type REG_NONE, no data.
  RegValue();
  // REG_EXPAND_SZ when expand, else REG_SZ: the text and its NUL ((length + 1) * 2 bytes). A null
  // text is stored as "".
  RegValue(const zwchar_t* s, bool expand = false);
  // REG_DWORD: the low 32 bits, little-endian.
  RegValue(unsigned long v);
  // REG_QWORD: 8 bytes, little-endian.
  RegValue(unsigned long long v);
  // REG_BINARY: a copy of `size` bytes (a null `bytes` gives zeros).
  RegValue(unsigned long size, unsigned char* bytes);
  // REG_MULTI_SZ from `count` strings (null ones count as "").
  RegValue(unsigned short count, const zwchar_t* const* strings);
  // Copies; the move forms copy too and leave the source unchanged.
  RegValue(const RegValue& other);
  RegValue(RegValue&& other);
  RegValue& operator=(const RegValue& other);
  RegValue& operator=(RegValue&& other);
  ~RegValue();

  RegValue& operator=(unsigned long v);
  RegValue& operator=(unsigned long long v);
  // REG_SZ (never REG_EXPAND_SZ).
  RegValue& operator=(const zwchar_t* s);

  unsigned long getType() const;
  unsigned long& getTypeWriter();
  unsigned long Size() const;
  // The bytes (null when there are none).
  unsigned char* Pointer() const;
  // Byte i; 0 (or null) when i is outside the data.
  unsigned char getData(unsigned long i) const;
  const unsigned char* getDataReadPtr(unsigned long i) const;
  unsigned char* getDataWritePtr(unsigned long i);
  // Truncates, or extends with zero bytes.
  void Resize(unsigned long n);
  void clearData();

  // REG_DWORD's value (0 and an assertion line for another type or fewer than 4 bytes).
  operator unsigned long() const;
  // REG_QWORD's value (0 and an assertion line for another type or fewer than 8 bytes).
  operator unsigned long long() const;
  // The text of REG_SZ, REG_EXPAND_SZ or REG_MULTI_SZ (its first string), always NUL-terminated;
  // "" for other types.
  operator const zwchar_t*() const;
  int asInt32Def(int def) const;
  long long asInt64Def(long long def) const;
  const zwchar_t* asStringDef(const zwchar_t* def) const;
  // String i of a REG_MULTI_SZ value; "" and an assertion line when there is no such string or the
  // value is of another type.
  const zwchar_t* at(unsigned long i) const;

  // REG_SZ with exactly the text's bytes and NUL (REG_EXPAND_SZ never equals text).
  bool operator==(const zwchar_t* s) const;
  // REG_DWORD whose first four bytes are v.
  bool operator==(unsigned long v) const;
  // REG_QWORD whose first eight bytes are v.
  bool operator==(unsigned long long v) const;
  // Same type, same length, same bytes.
  bool operator==(const RegValue& other) const;
  bool operator!=(const RegValue& other) const;
  // By type, then the bytes as unsigned, then the length.
  bool operator<(const RegValue& other) const;

 private:
  struct Record;
  // The text at byte `offset`, with a NUL guaranteed after the data.
  const zwchar_t* textAt(unsigned long offset) const;
  // The integer of 4 or 8 bytes, when the type and length allow it.
  bool readInteger(unsigned long long& out) const;
  Record* r;
};

class ZEB_API TRegKey {
 public:
  class ZEB_API RegValueProxy {
   public:
    RegValueProxy(TRegKey& key, const zwchar_t* name);
    RegValueProxy(const RegValueProxy& other);
    ~RegValueProxy();
    // SetValue(name, value).
    RegValueProxy& operator=(const RegValue& value);
    // Stores the other proxy's queried value under this name.
    RegValueProxy& operator=(const RegValueProxy& other);
    // The value read into a fresh RegValue (type REG_NONE, no data, when it cannot be read).
    RegValue QueryValue() const;
    operator RegValue() const;
    bool operator==(const RegValue& value) const;
    bool operator==(const RegValueProxy& other) const;

   private:
    TRegKey& key_;
    zwchar_t* name_;
  };

  // A key at the hive itself. A non-empty `machine` asks for that machine's hive, which the
  // POSIX registry does not offer (the key stays the local hive).
  explicit TRegKey(HKEY hive, const zwchar_t* machine = nullptr);
  // Opens the same path again under the same hive, with a handle of its own. (A key that was never
  // opened is copied as it is.) There is no move: moving copies.
  TRegKey(const TRegKey& other);
  TRegKey& operator=(const TRegKey& other);
  ~TRegKey();

  HKEY Hive() const { return hive_; }
  HKEY Key() const { return key_; }
  unsigned long SAM() const { return sam_; }
  // The last path opened or created ("" when none).
  const zwchar_t* Path() const;
  operator HKEY() const { return key_; }
  operator HKEY&() { return key_; }

  // Closes the current handle, then opens (creates) `path` under the hive. sam and path are kept
  // whatever the result; on failure the key is null.
  long Open(const zwchar_t* path, unsigned long sam = KEY_READ);
  long Create(const zwchar_t* path, unsigned long sam = KEY_ALL_ACCESS);
  // 0 for a null key. Otherwise closes it (a key that is the hive itself was never opened:
  // ERROR_INVALID_HANDLE), then key and sam become 0 and the path "".
  long Close();

  // Reads `name` into `out`. A RegValue that already holds data is read into as it is and only
  // grows: reused for a shorter value it keeps its length, with stale bytes at the end. On a
  // missing value `out` becomes REG_NONE with no data.
  long QueryValue(const zwchar_t* name, RegValue& out) const;
  long SetValue(const zwchar_t* name, const RegValue& value);
  long DeleteValue(const zwchar_t* name);
  // Value `index` in insertion order: its name into `name` (room *nameLen units with the NUL; on
  // success *nameLen is the length without it) and its value into `out`, which grows to the
  // value's size when it holds no data.
  long EnumValue(unsigned long index, zwchar_t* name, unsigned long* nameLen, RegValue& out);
  // Subkey `index` in name order, with the same name rules.
  long EnumKey(unsigned long index, zwchar_t* name, unsigned long* nameLen);
  // See the decisions above.
  long Delete();
  long DeleteTree();
  // No subkeys / no values (false when the key cannot be read).
  bool isLeaf() const;
  bool isEmpty() const;

  RegValueProxy operator[](const zwchar_t* name);

 private:
  // The handle for reads: null when the key is the hive itself (never opened).
  HKEY readHandle() const;
  void closeOwnHandle();
  void setPath(const zwchar_t* path);
  long openWith(bool create, const zwchar_t* path, unsigned long sam);

  HKEY hive_;
  HKEY key_;
  unsigned long sam_;
  zwchar_t* path_;
};

#endif  // ZEB_UTILS_ZEB_REGKEY_H

// TAnsiStrings.h: an owning, ordered list of 8-bit strings with splitting, joining, search,
// sorting and line files; a hash list from 8-bit keys to object pointers; and strvalueicmp.
//
// TAnsiStrings owns its items (heap TAnsiString objects): removing, clearing, assigning and
// destroying delete them. Indexes are 0-based ints. Out-of-range positions never fail: reads give
// an empty string, writes through operator[] land in a scratch item that the list ignores.
//
//   TAnsiStrings parts("red,green,,blue", ",", true);   // "red", "green", "blue"
//   parts.sort(true);                                   // "blue", "green", "red"
//   TAnsiString joined = parts.text(';');               // "blue;green;red"
//   for (TAnsiString* s = parts.begin(0); s; s = parts.next()) puts(s->p());
//
// Choices where callers might expect otherwise:
// - setText2(text, separators, skipEmpty) and the text constructor: every byte of `separators` is
//   a separator. With skipEmpty false, empty fields are kept: "a,,b" gives "a", "", "b" and "a,"
//   gives "a", "". With skipEmpty true they are dropped. An empty or null text gives an empty list
//   either way. Null or empty separators make the whole text one item.
// - text(sep) puts the separator before every item but the first, and before the first as well
//   when it is empty: {"", "b"} gives ",,b" and {""} gives ",". An empty list gives "".
// - setText(text, separator) splits at one separator byte, keeping empty fields.
// - addListFromText(text) and loadFromFile split lines at LF and CR LF (a lone CR stays in the
//   line); a line end that closes the text starts no further line. loadFromFile drops a leading
//   UTF-8 byte-order mark and otherwise keeps the bytes as they are; saveToFile writes each item
//   followed by LF, so saving and loading give the same list back.
// - compare(other, cs) compares item by item with TAnsiString::compare; the first difference
//   decides and a list that is a prefix of the other sorts first. The result is -1, 0 or 1.
// - setTextBetweenTags(text, startTag, endTag) collects, left to right, every text standing between
//   `startTag` and the next `endTag` (matched case-sensitively). A null or empty end tag takes the
//   rest of the text after the first start tag.
// - The splitting members must not be given a text that points into one of the list's own items.
// - sort is stable: equal items keep their order.
//
// The hash list tstringHashList maps keys (compared exactly; a null key is the empty key) to
// pointers it does not own. One object, list or hash list, serves one thread at a time: the
// iteration cursors live inside the objects.
#ifndef ZEB_STRINGS_TANSISTRINGS_H
#define ZEB_STRINGS_TANSISTRINGS_H

#include <functional>
#include <initializer_list>
#include <type_traits>

#include "zeb/strings/TAnsiString.h"
#include "zeb/zeb_api.h"

namespace zeb::internal {
template <typename StringT>
struct StringListState;
template <typename CharT>
struct StringHashState;
}  // namespace zeb::internal

class ZEB_API TAnsiStrings {
 public:
  TAnsiStrings();
  TAnsiStrings(std::initializer_list<const char*> items);
  // setText2(text, separators, skipEmpty).
  TAnsiStrings(const char* text, const char* separators, bool skipEmpty);
  TAnsiStrings(const TAnsiStrings& other);
  TAnsiStrings(TAnsiStrings&& other) noexcept;
  // The slice of `count` items from `start` (start < 0 counts as 0; count < 0 or past the end:
  // up to the end).
  TAnsiStrings(const TAnsiStrings& other, int start, int count);
  virtual ~TAnsiStrings();

  TAnsiStrings& operator=(const TAnsiStrings& other);
  TAnsiStrings& operator=(TAnsiStrings&& other) noexcept;

  // ---- adding -----------------------------------------------------------------------------------

  // Append a copy (a null text appends an empty item); the list forms append copies of every
  // item, or take them over when moved (the moved-from list is left empty).
  TAnsiStrings& add(const TAnsiString& s);
  TAnsiStrings& add(TAnsiString&& s);
  TAnsiStrings& add(const char* s);
  TAnsiStrings& add(const TAnsiStrings& list);
  TAnsiStrings& add(TAnsiStrings&& list);
  TAnsiStrings& push_back(const TAnsiString& s) { return add(s); }
  TAnsiStrings& push_back(TAnsiString&& s) { return add(static_cast<TAnsiString&&>(s)); }
  TAnsiStrings& push_back(const char* s) { return add(s); }
  TAnsiStrings& operator+=(const TAnsiString& s) { return add(s); }
  TAnsiStrings& operator+=(const char* s) { return add(s); }
  TAnsiStrings& operator+=(const TAnsiStrings& list) { return add(list); }
  TAnsiStrings operator+(const char* s) const;
  // Insert at `index` (index < 0 counts as 0; past the end appends).
  TAnsiStrings& insert(const char* s, int index);

  // ---- size and items ---------------------------------------------------------------------------

  int count() const;
  int size() const { return count(); }
  bool isEmpty() const { return count() == 0; }
  // The item at `i`; an empty string when `i` is out of range.
  const TAnsiString& getItem(int i) const;
  const TAnsiString& operator[](int i) const { return getItem(i); }
  TAnsiString& operator[](int i);

  // ---- the cursor: each returns the current item, or null past either end -----------------------

  TAnsiString* begin(int start = 0);
  TAnsiString* next();
  TAnsiString* rbegin();
  TAnsiString* rnext();

  // ---- text -------------------------------------------------------------------------------------

  TAnsiString text(char separator) const;
  // Each clears the list, then splits `text` (see the header comment). They return the new count.
  int setText2(const char* text, const char* separators, bool skipEmpty);
  int setText(const char* text, int separator);
  int addListFromText(const char* text);
  int setTextBetweenTags(const char* text, const char* startTag, const char* endTag);

  // ---- search, order, removal -------------------------------------------------------------------

  // The first item equal to `s` (exact); null or "" finds the first empty item. -1 when none.
  int indexOf(const char* s) const;
  int find(const char* s) const { return indexOf(s); }
  // Takes exactly a bool, so that a lambda passed to the predicate form never reads as one.
  template <typename Bool, typename = std::enable_if_t<std::is_same_v<Bool, bool>>>
  void sort(Bool ascending) {
    sortByOrder(ascending);
  }
  // A null predicate leaves the order as it is.
  void sort(const std::function<bool(const TAnsiString*, const TAnsiString*)>& less);
  int compare(const TAnsiStrings& other, tCaseSensitivity cs = CaseSensitive) const;
  // Deletes `count` items from `start` (count < 0 or past the end: up to the end); a start out of
  // range removes nothing.
  void remove(int start, int count);
  void clear();

  // ---- files and charsets -----------------------------------------------------------------------

  // Replaces the list with the lines of the file; false (list empty) when it cannot be read. An
  // empty file reads as an empty list and gives true.
  bool loadFromFile(const zwchar_t* path);
  // Writes every item followed by LF; false when the file cannot be written.
  bool saveToFile(const zwchar_t* path) const;
  // Copies with every item converted from charset `from` (an iconv name) to UTF-8 or to the ANSI
  // code page; an item that does not convert is copied as it is.
  TAnsiStrings toUtf8(const char* from) const;
  TAnsiStrings toAnsi(const char* from) const;

 private:
  void sortByOrder(bool ascending);
  friend class tstringHashList;
  zeb::internal::StringListState<TAnsiString>* d;
};

extern "C" {
// ASCII case-insensitive comparison of two item values: -1, 0 or 1. Null sorts before every
// text, the empty one included; two nulls are equal.
ZEB_API int strvalueicmp(const char* a, const char* b);
}

class ZEB_API tstringHashList {
 public:
  tstringHashList();
  tstringHashList(const tstringHashList& other);
  ~tstringHashList();
  tstringHashList& operator=(const tstringHashList& other);

  // Inserts the pair, or replaces the object of a key already present.
  tstringHashList& add(const char* key, void* object);
  tstringHashList& add(const tstringHashList& other);
  void remove(const char* key);
  // The object of `key`, or null when absent.
  void* getObject(const char* key) const;
  bool has(const char* key) const;
  int count() const;
  void clear();

  // Iteration over the keys in the map's own order. first: false for an empty map (key
  // untouched). next: false past the last key. Changing the map invalidates the cursor.
  bool first(TAnsiString& key);
  bool next(TAnsiString& key);
  TAnsiStrings asStringlist() const;

 private:
  zeb::internal::StringHashState<char>* d;
};

#endif  // ZEB_STRINGS_TANSISTRINGS_H

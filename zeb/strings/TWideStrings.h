// TWideStrings.h: the UTF-16 twins of TAnsiStrings and tstringHashList (see TAnsiStrings.h for
// the behaviour they share, item for item, with zwchar_t text).
//
//   TWideStrings names(ZW("Ann;Bob"), ZW(";"), true);
//   TAnsiStrings utf8 = names.toUtf8();
//
// Files hold UTF-8: loadFromFile drops a leading byte-order mark and converts the text to UTF-16;
// saveToFile writes each item in UTF-8 followed by LF.
#ifndef ZEB_STRINGS_TWIDESTRINGS_H
#define ZEB_STRINGS_TWIDESTRINGS_H

#include <functional>
#include <initializer_list>
#include <type_traits>

#include "zeb/strings/TAnsiStrings.h"
#include "zeb/strings/TWideString.h"
#include "zeb/zeb_api.h"

class ZEB_API TWideStrings {
 public:
  TWideStrings();
  TWideStrings(std::initializer_list<const zwchar_t*> items);
  // setText2(text, separators, skipEmpty).
  TWideStrings(const zwchar_t* text, const zwchar_t* separators, bool skipEmpty);
  TWideStrings(const TWideStrings& other);
  TWideStrings(TWideStrings&& other) noexcept;
  // The slice of `count` items from `start` (start < 0 counts as 0; count < 0 or past the end:
  // up to the end).
  TWideStrings(const TWideStrings& other, int start, int count);
  virtual ~TWideStrings();

  TWideStrings& operator=(const TWideStrings& other);
  TWideStrings& operator=(TWideStrings&& other) noexcept;

  // ---- adding -----------------------------------------------------------------------------------

  // Append a copy (a null text appends an empty item); the list forms append copies of every
  // item, or take them over when moved (the moved-from list is left empty).
  TWideStrings& add(const TWideString& s);
  TWideStrings& add(TWideString&& s);
  TWideStrings& add(const zwchar_t* s);
  TWideStrings& add(const TWideStrings& list);
  TWideStrings& add(TWideStrings&& list);
  TWideStrings& push_back(const TWideString& s) { return add(s); }
  TWideStrings& push_back(TWideString&& s) { return add(static_cast<TWideString&&>(s)); }
  TWideStrings& push_back(const zwchar_t* s) { return add(s); }
  TWideStrings& operator+=(const TWideString& s) { return add(s); }
  TWideStrings& operator+=(const zwchar_t* s) { return add(s); }
  TWideStrings& operator+=(const TWideStrings& list) { return add(list); }
  TWideStrings operator+(const zwchar_t* s) const;
  // Insert at `index` (index < 0 counts as 0; past the end appends).
  TWideStrings& insert(const zwchar_t* s, int index);

  // ---- size and items ---------------------------------------------------------------------------

  int count() const;
  int size() const { return count(); }
  bool isEmpty() const { return count() == 0; }
  // The item at `i`; an empty string when `i` is out of range.
  const TWideString& getItem(int i) const;
  const TWideString& operator[](int i) const { return getItem(i); }
  TWideString& operator[](int i);

  // ---- the cursor: each returns the current item, or null past either end -----------------------

  TWideString* begin(int start = 0);
  TWideString* next();
  TWideString* rbegin();
  TWideString* rnext();

  // ---- text -------------------------------------------------------------------------------------

  TWideString text(zwchar_t separator) const;
  // Each clears the list, then splits `text` (see the header comment). They return the new count.
  int setText2(const zwchar_t* text, const zwchar_t* separators, bool skipEmpty);
  int setText(const zwchar_t* text, int separator);
  int addListFromText(const zwchar_t* text);
  int setTextBetweenTags(const zwchar_t* text, const zwchar_t* startTag, const zwchar_t* endTag);

  // ---- search, order, removal -------------------------------------------------------------------

  // The first item equal to `s` (exact); null or "" finds the first empty item. -1 when none.
  int indexOf(const zwchar_t* s) const;
  int find(const zwchar_t* s) const { return indexOf(s); }
  // Takes exactly a bool, so that a lambda passed to the predicate form never reads as one.
  template <typename Bool, typename = std::enable_if_t<std::is_same_v<Bool, bool>>>
  void sort(Bool ascending) {
    sortByOrder(ascending);
  }
  // A null predicate leaves the order as it is.
  void sort(const std::function<bool(const TWideString*, const TWideString*)>& less);
  int compare(const TWideStrings& other, tCaseSensitivity cs = CaseSensitive) const;
  // Deletes `count` items from `start` (count < 0 or past the end: up to the end); a start out of
  // range removes nothing.
  void remove(int start, int count);
  void clear();

  // ---- files and charsets -----------------------------------------------------------------------

  // Replaces the list with the lines of a UTF-8 file; false (list empty) when it cannot be read. An
  // empty file reads as an empty list and gives true.
  bool loadFromFile(const zwchar_t* path);
  // Writes every item in UTF-8 followed by LF; false when the file cannot be written.
  bool saveToFile(const zwchar_t* path) const;
  // 8-bit copies: every item in UTF-8, or in the ANSI code page.
  TAnsiStrings toUtf8() const;
  TAnsiStrings toAnsi() const;

 private:
  void sortByOrder(bool ascending);
  friend class twstringHashList;
  zeb::internal::StringListState<TWideString>* d;
};

class ZEB_API twstringHashList {
 public:
  twstringHashList();
  twstringHashList(const twstringHashList& other);
  ~twstringHashList();
  twstringHashList& operator=(const twstringHashList& other);

  // Inserts the pair, or replaces the object of a key already present.
  twstringHashList& add(const zwchar_t* key, void* object);
  twstringHashList& add(const twstringHashList& other);
  void remove(const zwchar_t* key);
  // The object of `key`, or null when absent.
  void* getObject(const zwchar_t* key) const;
  bool has(const zwchar_t* key) const;
  int count() const;
  void clear();

  // Iteration over the keys in the map's own order. first: false for an empty map (key
  // untouched). next: false past the last key. Changing the map invalidates the cursor.
  bool first(TWideString& key);
  bool next(TWideString& key);
  TWideStrings asStringlist() const;

 private:
  zeb::internal::StringHashState<zwchar_t>* d;
};

#endif  // ZEB_STRINGS_TWIDESTRINGS_H

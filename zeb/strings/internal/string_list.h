// string_list.h: the algorithms of the string lists and string hash lists, written once as
// templates over the owning string class (TAnsiString or TWideString) and its text unit. Private;
// not installed.
//
// A list's state is a vector of pointers to heap items that the list owns, an iteration cursor
// and a scratch item that out-of-range writes land in. A hash list's state is a standard
// unordered map from the key text to the object pointer, with its own cursor.
#ifndef ZEB_STRINGS_INTERNAL_STRING_LIST_H
#define ZEB_STRINGS_INTERNAL_STRING_LIST_H

#include <algorithm>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "zeb/strings/internal/string_core.h"
#include "zeb/strings/internal/units.h"

namespace zeb::internal {

// ---- lists --------------------------------------------------------------------------------------

template <typename StringT>
struct StringListState {
  std::vector<StringT*> items;
  int cursor = -1;
  StringT scratch;

  StringListState() = default;
  StringListState(const StringListState&) = delete;
  StringListState& operator=(const StringListState&) = delete;
  ~StringListState() { clear(); }

  int count() const { return static_cast<int>(items.size()); }
  bool inRange(int i) const { return i >= 0 && i < count(); }
  void clear() {
    for (StringT* item : items) delete item;
    items.clear();
    cursor = -1;
  }
  void appendCopies(const StringListState& other, int start, int n) {
    items.reserve(items.size() + n);
    for (int i = start; i < start + n; ++i) items.push_back(new StringT(*other.items[i]));
  }
  // Takes over every item of `other`, which is left empty.
  void appendMoved(StringListState& other) {
    items.insert(items.end(), other.items.begin(), other.items.end());
    other.items.clear();
    other.cursor = -1;
  }
  void insertAt(StringT* item, int index) {
    index = std::clamp(index, 0, count());
    items.insert(items.begin() + index, item);
  }
  // Deletes `n` items from `start`, both clamped to the list (n < 0: to the end).
  void removeRange(int start, int n) {
    if (start < 0 || start >= count() || n == 0) return;
    const int end = n < 0 || n > count() - start ? count() : start + n;
    for (int i = start; i < end; ++i) delete items[i];
    items.erase(items.begin() + start, items.begin() + end);
  }
  StringT* cursorItem() { return inRange(cursor) ? items[cursor] : nullptr; }

  // Refilling replaces the content as clear() followed by adds would, but hands the new texts to
  // the item objects already there (reusing their buffers) before it allocates new ones.
  template <typename CharT>
  void refill(const CharT* s, int n) {
    if (filled < items.size()) {
      items[filled]->setText(s, n);
    } else {
      items.push_back(new StringT(s, n));
    }
    ++filled;
  }
  // Deletes the items that the last refill did not reach; refilling starts again from the first.
  void endRefill() {
    for (size_t i = filled; i < items.size(); ++i) delete items[i];
    items.resize(filled);
    filled = 0;
    cursor = -1;
  }

 private:
  size_t filled = 0;
};

// The first item and the item count of a slice: start < 0 counts as 0, n < 0 runs to the end.
inline std::pair<int, int> clampSlice(int size, int start, int n) {
  start = std::clamp(start, 0, size);
  const int available = size - start;
  return {start, n < 0 || n > available ? available : n};
}

// ---- splitting: each replaces the list's items with the pieces of a text ------------------------

// A set of separator units: a table for units below 256, a scan of the set for the others.
template <typename CharT>
class SeparatorSet {
 public:
  explicit SeparatorSet(const CharT* set) : set_(set) {
    for (const CharT* p = set; p != nullptr && *p != 0; ++p) {
      if (unitValue(*p) < 256) {
        small_[unitValue(*p)] = true;
      } else {
        hasWide_ = true;
      }
    }
  }
  bool contains(CharT c) const {
    const unsigned v = unitValue(c);
    if (v < 256) return small_[v];
    return hasWide_ && containsUnit(set_, c);
  }

 private:
  const CharT* set_;
  bool small_[256] = {};
  bool hasWide_ = false;
};

// The fields of `text` cut at every unit of `separators`. Without separators the whole
// text is one field. An empty text gives no field at all; otherwise empty fields (between adjacent
// separators, or before a leading or after a trailing one) are kept unless `skipEmpty`.
template <typename StringT, typename CharT>
void refillFields(StringListState<StringT>& list, const CharT* text, const CharT* separators,
                  bool skipEmpty) {
  if (isEmptyText(text)) return;
  const SeparatorSet<CharT> set(separators);
  const CharT* field = text;
  for (const CharT* p = text;; ++p) {
    const bool end = *p == 0;
    if (end || set.contains(*p)) {
      const int length = static_cast<int>(p - field);
      if (length > 0 || !skipEmpty) list.refill(field, length);
      if (end) return;
      field = p + 1;
    }
  }
}

// The lines of `text`: a line ends at LF or CR LF; a line end that closes the text starts
// no further line, so "a\n" is one line and "a\n\n" two. A lone CR stays in its line.
template <typename StringT, typename CharT>
void refillLines(StringListState<StringT>& list, const CharT* text) {
  if (isEmptyText(text)) return;
  const CharT* line = text;
  for (const CharT* p = text;; ++p) {
    if (*p == 0) {
      if (p != line) list.refill(line, static_cast<int>(p - line));
      return;
    }
    if (*p == '\n') {
      const CharT* end = p > line && p[-1] == '\r' ? p - 1 : p;
      list.refill(line, static_cast<int>(end - line));
      line = p + 1;
    }
  }
}

// Every text that stands between `startTag` and the following `endTag`, left to right (an
// empty or null `endTag` takes the rest of the text as one item).
template <typename StringT, typename CharT>
void refillBetweenTags(StringListState<StringT>& list, const CharT* text, const CharT* startTag,
                       const CharT* endTag) {
  if (isEmptyText(text) || isEmptyText(startTag)) return;
  const int startLength = textLength(startTag);
  const int endLength = textLength(endTag);
  const CharT* from = text;
  while (const CharT* opening = findText(from, startTag, false)) {
    const CharT* inner = opening + startLength;
    const CharT* closing =
        endLength == 0 ? inner + textLength(inner) : findText(inner, endTag, false);
    if (closing == nullptr) return;
    list.refill(inner, static_cast<int>(closing - inner));
    if (endLength == 0) return;
    from = closing + endLength;
  }
}

// The refills above, each ended: the items the new pieces did not reach are deleted.
template <typename StringT, typename CharT>
void splitAtSeparators(StringListState<StringT>& list, const CharT* text, const CharT* separators,
                       bool skipEmpty) {
  refillFields(list, text, separators, skipEmpty);
  list.endRefill();
}
template <typename StringT, typename CharT>
void splitLines(StringListState<StringT>& list, const CharT* text) {
  refillLines(list, text);
  list.endRefill();
}
template <typename StringT, typename CharT>
void splitBetweenTags(StringListState<StringT>& list, const CharT* text, const CharT* startTag,
                      const CharT* endTag) {
  refillBetweenTags(list, text, startTag, endTag);
  list.endRefill();
}

// ---- joining, searching, comparing --------------------------------------------------------------

// Joins the items: the separator goes before every item but the first, and before the first too
// when it is empty (a leading empty item gives a leading separator). One pass measures, a second
// copies into a result of exactly the right size.
template <typename StringT, typename CharT>
StringT joinItems(const StringListState<StringT>& list, CharT separator) {
  std::vector<int> lengths(list.items.size());
  size_t total = 0;
  for (size_t i = 0; i < lengths.size(); ++i) {
    lengths[i] = textLength(list.items[i]->p());
    total += lengths[i] + (i > 0 || lengths[i] == 0 ? 1 : 0);
  }
  if (total == 0) return StringT();
  StringT out(static_cast<int>(total + 1), tcapacityTag{});
  CharT* p = out.data();
  for (size_t i = 0; i < lengths.size(); ++i) {
    if (i > 0 || lengths[i] == 0) *p++ = separator;
    std::copy_n(list.items[i]->p(), lengths[i], p);
    p += lengths[i];
  }
  *p = 0;
  return out;
}

template <typename StringT, typename CharT>
int indexOfItem(const StringListState<StringT>& list, const CharT* s) {
  for (int i = 0; i < list.count(); ++i) {
    if (list.items[i]->equal(s)) return i;
  }
  return -1;
}

// Item by item; the first difference decides, and a list that is a prefix of the other sorts
// first. Exactly -1, 0 or 1.
template <typename StringT>
int compareLists(const StringListState<StringT>& a, const StringListState<StringT>& b,
                 tCaseSensitivity cs) {
  const int common = std::min(a.count(), b.count());
  for (int i = 0; i < common; ++i) {
    const int order = a.items[i]->compare(*b.items[i], cs);
    if (order != 0) return order < 0 ? -1 : 1;
  }
  return a.count() == b.count() ? 0 : (a.count() < b.count() ? -1 : 1);
}

template <typename StringT>
void sortItems(StringListState<StringT>& list,
               const std::function<bool(const StringT*, const StringT*)>& less) {
  if (less) std::stable_sort(list.items.begin(), list.items.end(), less);
}

template <typename StringT>
void sortItems(StringListState<StringT>& list, bool ascending) {
  if (ascending) {
    std::stable_sort(list.items.begin(), list.items.end(),
                     [](const StringT* a, const StringT* b) { return *a < *b; });
  } else {
    std::stable_sort(list.items.begin(), list.items.end(),
                     [](const StringT* a, const StringT* b) { return *a > *b; });
  }
}

// ---- hash lists ---------------------------------------------------------------------------------

template <typename CharT>
struct StringHashState {
  using Key = std::basic_string<CharT>;
  using Map = std::unordered_map<Key, void*>;
  Map map;
  typename Map::const_iterator cursor;

  StringHashState() : map(8) {
    map.max_load_factor(1.0f);
    cursor = map.end();
  }
  static Key keyOf(const CharT* key) { return key == nullptr ? Key() : Key(key); }
  void add(const CharT* key, void* object) { map.insert_or_assign(keyOf(key), object); }
  void addAll(const StringHashState& other) {
    for (const auto& pair : other.map) map.insert_or_assign(pair.first, pair.second);
  }
  void* find(const CharT* key) const {
    const auto it = map.find(keyOf(key));
    return it == map.end() ? nullptr : it->second;
  }
};

// Moves the cursor to `position` and hands out its key; false at the end.
template <typename CharT, typename StringT>
bool hashCursorTo(StringHashState<CharT>& state,
                  typename StringHashState<CharT>::Map::const_iterator position, StringT& key) {
  state.cursor = position;
  if (position == state.map.end()) return false;
  key.setText(position->first.data(), static_cast<int>(position->first.size()));
  return true;
}

template <typename CharT, typename StringT>
void collectKeys(const StringHashState<CharT>& state, StringListState<StringT>& list) {
  list.items.reserve(list.items.size() + state.map.size());
  for (const auto& pair : state.map) {
    list.items.push_back(new StringT(pair.first.data(), static_cast<int>(pair.first.size())));
  }
}

}  // namespace zeb::internal

#endif  // ZEB_STRINGS_INTERNAL_STRING_LIST_H

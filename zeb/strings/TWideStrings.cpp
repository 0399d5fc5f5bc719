// TWideStrings.cpp: the UTF-16 string list and hash list, forwarding to the shared templates.
#include "zeb/strings/TWideStrings.h"

#include <string>

#include "zeb/strings/internal/string_list.h"

using zeb::internal::clampSlice;
using ListState = zeb::internal::StringListState<TWideString>;
using HashState = zeb::internal::StringHashState<zwchar_t>;

// ---- construction -------------------------------------------------------------------------------

TWideStrings::TWideStrings() : d(new ListState) {}

TWideStrings::TWideStrings(std::initializer_list<const zwchar_t*> items) : TWideStrings() {
  for (const zwchar_t* s : items) add(s);
}

TWideStrings::TWideStrings(const zwchar_t* text, const zwchar_t* separators, bool skipEmpty)
    : TWideStrings() {
  setText2(text, separators, skipEmpty);
}

TWideStrings::TWideStrings(const TWideStrings& other) : TWideStrings(other, 0, -1) {}

TWideStrings::TWideStrings(TWideStrings&& other) noexcept : TWideStrings() {
  std::swap(d, other.d);
}

TWideStrings::TWideStrings(const TWideStrings& other, int start, int count) : TWideStrings() {
  const auto [first, n] = clampSlice(other.count(), start, count);
  d->appendCopies(*other.d, first, n);
}

TWideStrings::~TWideStrings() {
  delete d;
}

TWideStrings& TWideStrings::operator=(const TWideStrings& other) {
  if (this != &other) {
    clear();
    add(other);
  }
  return *this;
}

TWideStrings& TWideStrings::operator=(TWideStrings&& other) noexcept {
  std::swap(d, other.d);
  return *this;
}

// ---- adding -------------------------------------------------------------------------------------

TWideStrings& TWideStrings::add(const TWideString& s) {
  d->items.push_back(new TWideString(s));
  return *this;
}

TWideStrings& TWideStrings::add(TWideString&& s) {
  d->items.push_back(new TWideString(std::move(s)));
  return *this;
}

TWideStrings& TWideStrings::add(const zwchar_t* s) {
  d->items.push_back(new TWideString(s));
  return *this;
}

TWideStrings& TWideStrings::add(const TWideStrings& list) {
  d->appendCopies(*list.d, 0, list.count());
  return *this;
}

TWideStrings& TWideStrings::add(TWideStrings&& list) {
  if (this != &list) d->appendMoved(*list.d);
  return *this;
}

TWideStrings TWideStrings::operator+(const zwchar_t* s) const {
  TWideStrings result(*this);
  result.add(s);
  return result;
}

TWideStrings& TWideStrings::insert(const zwchar_t* s, int index) {
  d->insertAt(new TWideString(s), index);
  return *this;
}

// ---- size, items, cursor ------------------------------------------------------------------------

int TWideStrings::count() const {
  return d->count();
}

const TWideString& TWideStrings::getItem(int i) const {
  return d->inRange(i) ? *d->items[i] : TWideString::nullStr();
}

TWideString& TWideStrings::operator[](int i) {
  if (d->inRange(i)) return *d->items[i];
  d->scratch.deleteBuffer();
  return d->scratch;
}

TWideString* TWideStrings::begin(int start) {
  d->cursor = start;
  return d->cursorItem();
}

TWideString* TWideStrings::next() {
  if (d->inRange(d->cursor)) ++d->cursor;
  return d->cursorItem();
}

TWideString* TWideStrings::rbegin() {
  d->cursor = count() - 1;
  return d->cursorItem();
}

TWideString* TWideStrings::rnext() {
  if (d->inRange(d->cursor)) --d->cursor;
  return d->cursorItem();
}

// ---- text ---------------------------------------------------------------------------------------

TWideString TWideStrings::text(zwchar_t separator) const {
  return zeb::internal::joinItems(*d, separator);
}

int TWideStrings::setText2(const zwchar_t* text, const zwchar_t* separators, bool skipEmpty) {
  zeb::internal::splitAtSeparators(*d, text, separators, skipEmpty);
  return count();
}

int TWideStrings::setText(const zwchar_t* text, int separator) {
  const zwchar_t separators[2] = {static_cast<zwchar_t>(separator), 0};
  return setText2(text, separators, false);
}

int TWideStrings::addListFromText(const zwchar_t* text) {
  zeb::internal::splitLines(*d, text);
  return count();
}

int TWideStrings::setTextBetweenTags(const zwchar_t* text, const zwchar_t* startTag,
                                     const zwchar_t* endTag) {
  zeb::internal::splitBetweenTags(*d, text, startTag, endTag);
  return count();
}

// ---- search, order, removal ---------------------------------------------------------------------

int TWideStrings::indexOf(const zwchar_t* s) const {
  return zeb::internal::indexOfItem(*d, s);
}

void TWideStrings::sortByOrder(bool ascending) {
  zeb::internal::sortItems(*d, ascending);
}

void TWideStrings::sort(const std::function<bool(const TWideString*, const TWideString*)>& less) {
  zeb::internal::sortItems(*d, less);
}

int TWideStrings::compare(const TWideStrings& other, tCaseSensitivity cs) const {
  return zeb::internal::compareLists(*d, *other.d, cs);
}

void TWideStrings::remove(int start, int count) {
  d->removeRange(start, count);
}

void TWideStrings::clear() {
  d->clear();
}

// ---- files and charsets -------------------------------------------------------------------------

bool TWideStrings::loadFromFile(const zwchar_t* path) {
  TAnsiStrings lines;
  if (!lines.loadFromFile(path)) return false;
  TWideStrings converted;
  for (TAnsiString* line = lines.begin(0); line != nullptr; line = lines.next()) {
    converted.add(TWideString(*line, MIB_UTF8));
  }
  *this = std::move(converted);
  return true;
}

bool TWideStrings::saveToFile(const zwchar_t* path) const {
  return toUtf8().saveToFile(path);
}

TAnsiStrings TWideStrings::toUtf8() const {
  TAnsiStrings result;
  for (const TWideString* item : d->items) result.add(item->utf8());
  return result;
}

TAnsiStrings TWideStrings::toAnsi() const {
  TAnsiStrings result;
  for (const TWideString* item : d->items) result.add(item->ansi());
  return result;
}

// ---- hash list ----------------------------------------------------------------------------------

twstringHashList::twstringHashList() : d(new HashState) {}

twstringHashList::twstringHashList(const twstringHashList& other) : twstringHashList() {
  d->addAll(*other.d);
}

twstringHashList::~twstringHashList() {
  delete d;
}

twstringHashList& twstringHashList::operator=(const twstringHashList& other) {
  if (this != &other) {
    clear();
    d->addAll(*other.d);
  }
  return *this;
}

twstringHashList& twstringHashList::add(const zwchar_t* key, void* object) {
  d->add(key, object);
  return *this;
}

twstringHashList& twstringHashList::add(const twstringHashList& other) {
  if (this != &other) d->addAll(*other.d);
  return *this;
}

void twstringHashList::remove(const zwchar_t* key) {
  d->map.erase(HashState::keyOf(key));
}

void* twstringHashList::getObject(const zwchar_t* key) const {
  return d->find(key);
}

bool twstringHashList::has(const zwchar_t* key) const {
  return d->map.count(HashState::keyOf(key)) != 0;
}

int twstringHashList::count() const {
  return static_cast<int>(d->map.size());
}

void twstringHashList::clear() {
  d->map.clear();
  d->cursor = d->map.end();
}

bool twstringHashList::first(TWideString& key) {
  return zeb::internal::hashCursorTo(*d, d->map.cbegin(), key);
}

bool twstringHashList::next(TWideString& key) {
  if (d->cursor == d->map.cend()) return false;
  return zeb::internal::hashCursorTo(*d, std::next(d->cursor), key);
}

TWideStrings twstringHashList::asStringlist() const {
  TWideStrings keys;
  zeb::internal::collectKeys(*d, *keys.d);
  return keys;
}

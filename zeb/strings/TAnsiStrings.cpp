// TAnsiStrings.cpp: the 8-bit string list and hash list, forwarding to the shared templates.
#include "zeb/strings/TAnsiStrings.h"

#include <string.h>

#include "zeb/strings/internal/string_list.h"
#include "zeb/utils/mfile.h"

using zeb::internal::clampSlice;
using ListState = zeb::internal::StringListState<TAnsiString>;
using HashState = zeb::internal::StringHashState<char>;

namespace {

const char kUtf8ByteOrderMark[] = "\xEF\xBB\xBF";

}  // namespace

// ---- construction -------------------------------------------------------------------------------

TAnsiStrings::TAnsiStrings() : d(new ListState) {}

TAnsiStrings::TAnsiStrings(std::initializer_list<const char*> items) : TAnsiStrings() {
  for (const char* s : items) add(s);
}

TAnsiStrings::TAnsiStrings(const char* text, const char* separators, bool skipEmpty)
    : TAnsiStrings() {
  setText2(text, separators, skipEmpty);
}

TAnsiStrings::TAnsiStrings(const TAnsiStrings& other) : TAnsiStrings(other, 0, -1) {}

TAnsiStrings::TAnsiStrings(TAnsiStrings&& other) noexcept : TAnsiStrings() {
  std::swap(d, other.d);
}

TAnsiStrings::TAnsiStrings(const TAnsiStrings& other, int start, int count) : TAnsiStrings() {
  const auto [first, n] = clampSlice(other.count(), start, count);
  d->appendCopies(*other.d, first, n);
}

TAnsiStrings::~TAnsiStrings() {
  delete d;
}

TAnsiStrings& TAnsiStrings::operator=(const TAnsiStrings& other) {
  if (this != &other) {
    clear();
    add(other);
  }
  return *this;
}

TAnsiStrings& TAnsiStrings::operator=(TAnsiStrings&& other) noexcept {
  std::swap(d, other.d);
  return *this;
}

// ---- adding -------------------------------------------------------------------------------------

TAnsiStrings& TAnsiStrings::add(const TAnsiString& s) {
  d->items.push_back(new TAnsiString(s));
  return *this;
}

TAnsiStrings& TAnsiStrings::add(TAnsiString&& s) {
  d->items.push_back(new TAnsiString(std::move(s)));
  return *this;
}

TAnsiStrings& TAnsiStrings::add(const char* s) {
  d->items.push_back(new TAnsiString(s));
  return *this;
}

TAnsiStrings& TAnsiStrings::add(const TAnsiStrings& list) {
  d->appendCopies(*list.d, 0, list.count());
  return *this;
}

TAnsiStrings& TAnsiStrings::add(TAnsiStrings&& list) {
  if (this != &list) d->appendMoved(*list.d);
  return *this;
}

TAnsiStrings TAnsiStrings::operator+(const char* s) const {
  TAnsiStrings result(*this);
  result.add(s);
  return result;
}

TAnsiStrings& TAnsiStrings::insert(const char* s, int index) {
  d->insertAt(new TAnsiString(s), index);
  return *this;
}

// ---- size, items, cursor ------------------------------------------------------------------------

int TAnsiStrings::count() const {
  return d->count();
}

const TAnsiString& TAnsiStrings::getItem(int i) const {
  return d->inRange(i) ? *d->items[i] : TAnsiString::nullStr();
}

TAnsiString& TAnsiStrings::operator[](int i) {
  if (d->inRange(i)) return *d->items[i];
  d->scratch.deleteBuffer();
  return d->scratch;
}

TAnsiString* TAnsiStrings::begin(int start) {
  d->cursor = start;
  return d->cursorItem();
}

TAnsiString* TAnsiStrings::next() {
  if (d->inRange(d->cursor)) ++d->cursor;
  return d->cursorItem();
}

TAnsiString* TAnsiStrings::rbegin() {
  d->cursor = count() - 1;
  return d->cursorItem();
}

TAnsiString* TAnsiStrings::rnext() {
  if (d->inRange(d->cursor)) --d->cursor;
  return d->cursorItem();
}

// ---- text ---------------------------------------------------------------------------------------

TAnsiString TAnsiStrings::text(char separator) const {
  return zeb::internal::joinItems(*d, separator);
}

int TAnsiStrings::setText2(const char* text, const char* separators, bool skipEmpty) {
  zeb::internal::splitAtSeparators(*d, text, separators, skipEmpty);
  return count();
}

int TAnsiStrings::setText(const char* text, int separator) {
  const char separators[2] = {static_cast<char>(separator), '\0'};
  return setText2(text, separators, false);
}

int TAnsiStrings::addListFromText(const char* text) {
  zeb::internal::splitLines(*d, text);
  return count();
}

int TAnsiStrings::setTextBetweenTags(const char* text, const char* startTag, const char* endTag) {
  zeb::internal::splitBetweenTags(*d, text, startTag, endTag);
  return count();
}

// ---- search, order, removal ---------------------------------------------------------------------

int TAnsiStrings::indexOf(const char* s) const {
  return zeb::internal::indexOfItem(*d, s);
}

void TAnsiStrings::sortByOrder(bool ascending) {
  zeb::internal::sortItems(*d, ascending);
}

void TAnsiStrings::sort(const std::function<bool(const TAnsiString*, const TAnsiString*)>& less) {
  zeb::internal::sortItems(*d, less);
}

int TAnsiStrings::compare(const TAnsiStrings& other, tCaseSensitivity cs) const {
  return zeb::internal::compareLists(*d, *other.d, cs);
}

void TAnsiStrings::remove(int start, int count) {
  d->removeRange(start, count);
}

void TAnsiStrings::clear() {
  d->clear();
}

// ---- files and charsets -------------------------------------------------------------------------

bool TAnsiStrings::loadFromFile(const zwchar_t* path) {
  clear();
  void* data = nullptr;
  const int size = mreadFileW(path, &data, true);
  if (size == -2) return true;
  if (size <= 0) return false;
  const char* text = static_cast<const char*>(data);
  if (strncmp(text, kUtf8ByteOrderMark, 3) == 0) text += 3;
  addListFromText(text);
  zeb_deleteMem(data);
  return true;
}

bool TAnsiStrings::saveToFile(const zwchar_t* path) const {
  std::string out;
  for (const TAnsiString* item : d->items) {
    if (!item->isEmpty()) out.append(item->p());
    out.push_back('\n');
  }
  return mwriteFileW(path, out.data(), static_cast<unsigned>(out.size())) >= 0;
}

TAnsiStrings TAnsiStrings::toUtf8(const char* from) const {
  TAnsiStrings result(*this);
  for (TAnsiString* item : result.d->items) item->convertAnyToUtf8(from);
  return result;
}

TAnsiStrings TAnsiStrings::toAnsi(const char* from) const {
  TAnsiStrings result(*this);
  for (TAnsiString* item : result.d->items) item->convertAnyToANSI(from);
  return result;
}

int strvalueicmp(const char* a, const char* b) {
  if (a == nullptr || b == nullptr) return (a != nullptr) - (b != nullptr);
  const int order = zeb_stricmp_impl(a, b);
  return (order > 0) - (order < 0);
}

// ---- hash list ----------------------------------------------------------------------------------

tstringHashList::tstringHashList() : d(new HashState) {}

tstringHashList::tstringHashList(const tstringHashList& other) : tstringHashList() {
  d->addAll(*other.d);
}

tstringHashList::~tstringHashList() {
  delete d;
}

tstringHashList& tstringHashList::operator=(const tstringHashList& other) {
  if (this != &other) {
    clear();
    d->addAll(*other.d);
  }
  return *this;
}

tstringHashList& tstringHashList::add(const char* key, void* object) {
  d->add(key, object);
  return *this;
}

tstringHashList& tstringHashList::add(const tstringHashList& other) {
  if (this != &other) d->addAll(*other.d);
  return *this;
}

void tstringHashList::remove(const char* key) {
  d->map.erase(HashState::keyOf(key));
}

void* tstringHashList::getObject(const char* key) const {
  return d->find(key);
}

bool tstringHashList::has(const char* key) const {
  return d->map.count(HashState::keyOf(key)) != 0;
}

int tstringHashList::count() const {
  return static_cast<int>(d->map.size());
}

void tstringHashList::clear() {
  d->map.clear();
  d->cursor = d->map.end();
}

bool tstringHashList::first(TAnsiString& key) {
  return zeb::internal::hashCursorTo(*d, d->map.cbegin(), key);
}

bool tstringHashList::next(TAnsiString& key) {
  if (d->cursor == d->map.cend()) return false;
  return zeb::internal::hashCursorTo(*d, std::next(d->cursor), key);
}

TAnsiStrings tstringHashList::asStringlist() const {
  TAnsiStrings keys;
  zeb::internal::collectKeys(*d, *keys.d);
  return keys;
}

// path_text.h: the path algorithms behind filename.h and behind the path members of TAnsiString
// and TWideString, written once over the text unit (char or zwchar_t). PathText<C> holds the
// algorithms on plain text (defined in filename.cpp, instantiated there for both widths); the
// templates below it apply them to a string object of either class.
#ifndef ZEB_STRINGS_INTERNAL_PATH_TEXT_H
#define ZEB_STRINGS_INTERNAL_PATH_TEXT_H

#include <stddef.h>
#include <string.h>

#include <string>
#include <type_traits>
#include <utility>

#include "zeb/strings/TAnsiString.h"
#include "zeb/zeb_api.h"

namespace zeb {
namespace path {

// Longest directory part ExtractFileDir keeps, and longest component extractfiledirex copies.
constexpr size_t kMaxDirPart = 255;
constexpr size_t kMaxComponent = 259;

// The units [begin, end) of a text.
struct Span {
  size_t begin;
  size_t end;
  size_t size() const { return end - begin; }
};

template <class C>
struct PathText {
  using Text = std::basic_string<C>;
  using Visitor = bool (*)(const C* path, void* context);

  static bool isSeparator(C c) { return c == C('\\') || c == C('/'); }
  // Units before the NUL; 0 for null.
  static size_t length(const C* s);

  // Index just after the last '\\', '/' or ':' (0 when there is none).
  static size_t fileNameStart(const C* path, size_t len);
  // Finds the extension: true and *start = the index after its dot, or false when there is none.
  static bool findExtension(const C* path, size_t len, size_t* start);
  // The file-name part without its extension and without one trailing dot.
  static Span nameWithoutExtension(const C* path, size_t len);
  // 2 when the second unit is ':', else 0.
  static size_t driveLength(const C* path, size_t len);
  // Length of drive plus directory (through the last separator, cut to kMaxDirPart units).
  static size_t dirLength(const C* path, size_t len);
  // Component n (from 1) of the path: component 1 is the text before the first separator run,
  // component k >= 2 is the k-1-th separator run together with the name after it. False when
  // the path has no such component (n 0, or fewer runs followed by a name).
  static bool component(const C* path, size_t len, unsigned n, Span* out);
  // The part no path operation goes above: the drive, then the leading separators; for a UNC path
  // ("\\\\server\\share") the server and share names too.
  static size_t rootLength(const C* path, size_t len);
  // Length of the path once its last directory component and that component's trailing
  // separators are removed; the root is never removed.
  static size_t withoutLastDirLength(const C* path, size_t len);
  // `target` relative to the directory `base` (see ExtractRelativePath in filename.h).
  static Text relativePath(const C* base, const C* target);
  // The last path segment of a URL before any '?' or '#'.
  static Span urlFileName(const C* url, size_t len);
  // Copies `in` to `out` with a leading "\\\\" kept and every other separator run turned into one
  // `sep`; `out` may be `in` or a buffer at least as long. Returns the units written.
  static size_t collapseSeparators(const C* in, C sep, C* out);
  // Calls `visit` (when not null) with each full path of a multi-selection list; returns the
  // number of paths visited.
  static int forEachFileName(const C* list, Visitor visit, void* context);
};

extern template struct PathText<char>;
extern template struct PathText<zwchar_t>;

// ---- the path members of TAnsiString and TWideString, written once over the string class ------

template <class S>
using UnitOf = std::remove_pointer_t<decltype(std::declval<S&>().data())>;

// Moves the units `span` of the content to the front and ends the content there; the buffer and
// its capacity stay. A null buffer stays null.
template <class S>
S& keepSpan(S& s, Span span) {
  UnitOf<S>* text = s.data();
  if (text == nullptr) return s;
  memmove(text, text + span.begin, span.size() * sizeof(*text));
  text[span.size()] = 0;
  return s;
}

template <class S>
size_t contentLength(const S& s) {
  return PathText<UnitOf<S>>::length(s.data());
}

template <class S>
S& keepFileName(S& s) {
  const size_t len = contentLength(s);
  return keepSpan(s, {PathText<UnitOf<S>>::fileNameStart(s.data(), len), len});
}

template <class S>
S& keepFileDir(S& s) {
  return keepSpan(s, {0, PathText<UnitOf<S>>::dirLength(s.data(), contentLength(s))});
}

template <class S>
S& keepFileDrive(S& s) {
  return keepSpan(s, {0, PathText<UnitOf<S>>::driveLength(s.data(), contentLength(s))});
}

template <class S>
S& keepFileExt(S& s) {
  const size_t len = contentLength(s);
  size_t start = len;
  PathText<UnitOf<S>>::findExtension(s.data(), len, &start);
  return keepSpan(s, {start, len});
}

template <class S>
S& keepFileNameNoExt(S& s) {
  return keepSpan(s, PathText<UnitOf<S>>::nameWithoutExtension(s.data(), contentLength(s)));
}

// The content with its separator runs collapsed, in a new buffer of the same capacity.
template <class S>
S& collapseSeparatorRuns(S& s, UnitOf<S> sep) {
  if (s.data() == nullptr) return s;
  S collapsed(s.getCapacity(), tcapacityTag{});
  PathText<UnitOf<S>>::collapseSeparators(s.data(), sep != 0 ? sep : '\\', collapsed.data());
  return s = std::move(collapsed);
}

template <class S>
bool endsWithSeparator(const S& s) {
  const size_t len = contentLength(s);
  return len > 0 && PathText<UnitOf<S>>::isSeparator(s.data()[len - 1]);
}

template <class S>
S& ensureEndsWithSeparator(S& s, UnitOf<S> sep) {
  if (!endsWithSeparator(s)) s.appendChar(sep != 0 ? sep : '\\');
  return s;
}

template <class S>
S& removeEndingSeparator(S& s) {
  if (endsWithSeparator(s)) s.chop(1);
  return s;
}

// Looks at the first two units only: a quote in either place counts.
template <class S>
bool startsQuoted(const S& s) {
  return contentLength(s) >= 2 && (s.data()[0] == '"' || s.data()[1] == '"');
}

template <class S>
S& addMissingQuotes(S& s) {
  using C = UnitOf<S>;
  if (s.isEmpty()) {
    const C quotes[] = {'"', '"', 0};
    return s.append(quotes, 2);
  }
  if (s.front() != '"') s.insert(C('"'), 0);
  if (s.back() != '"') s.appendChar('"');
  return s;
}

template <class S>
S urlFileName(const S& s) {
  const Span span = PathText<UnitOf<S>>::urlFileName(s.data(), contentLength(s));
  return s.data() == nullptr ? S() : S(s.data() + span.begin, static_cast<int>(span.size()));
}

}  // namespace path
}  // namespace zeb

#endif  // ZEB_STRINGS_INTERNAL_PATH_TEXT_H

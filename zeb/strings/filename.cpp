// filename.cpp: the path algorithms (PathText, one template over the text unit) and the exported
// 8-bit and 16-bit file-name functions built on them.

#include "zeb/strings/filename.h"

#include <algorithm>
#include <string>

#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/strings/internal/path_text.h"

namespace zeb {
namespace path {

namespace {

template <class C>
C foldUpper(C c) {
  return c >= C('a') && c <= C('z') ? static_cast<C>(c - ('a' - 'A')) : c;
}

template <class C>
size_t skipSeparators(const C* text, size_t len, size_t i) {
  while (i < len && PathText<C>::isSeparator(text[i])) ++i;
  return i;
}

template <class C>
size_t skipName(const C* text, size_t len, size_t i) {
  while (i < len && !PathText<C>::isSeparator(text[i])) ++i;
  return i;
}

// Equal up to ASCII case, any separator run matching any other separator run.
template <class C>
bool samePathText(const C* a, size_t alen, const C* b, size_t blen) {
  size_t i = 0;
  size_t j = 0;
  while (i < alen && j < blen) {
    const bool aSep = PathText<C>::isSeparator(a[i]);
    if (aSep != PathText<C>::isSeparator(b[j])) return false;
    if (aSep) {
      i = skipSeparators(a, alen, i);
      j = skipSeparators(b, blen, j);
    } else if (foldUpper(a[i++]) != foldUpper(b[j++])) {
      return false;
    }
  }
  return i == alen && j == blen;
}

// The first separator of `text`, or '\\' when it has none.
template <class C>
C separatorStyle(const C* text, size_t len) {
  const C* end = text + len;
  const C* sep = std::find_if(text, end, PathText<C>::isSeparator);
  return sep != end ? *sep : C('\\');
}

}  // namespace

template <class C>
size_t PathText<C>::length(const C* s) {
  return s != nullptr ? std::char_traits<C>::length(s) : 0;
}

template <class C>
size_t PathText<C>::fileNameStart(const C* path, size_t len) {
  size_t i = len;
  while (i > 0 && !isSeparator(path[i - 1]) && path[i - 1] != C(':')) --i;
  return i;
}

// Backwards from the end: one final '.' is passed over, the next '.' starts the extension, and a
// separator or the start of the text means there is none.
template <class C>
bool PathText<C>::findExtension(const C* path, size_t len, size_t* start) {
  size_t i = len;
  if (i > 0 && path[i - 1] == C('.')) --i;
  for (; i > 0 && !isSeparator(path[i - 1]); --i) {
    if (path[i - 1] == C('.')) {
      *start = i;
      return true;
    }
  }
  return false;
}

template <class C>
Span PathText<C>::nameWithoutExtension(const C* path, size_t len) {
  Span name{fileNameStart(path, len), len};
  size_t extension = 0;
  if (findExtension(path + name.begin, name.size(), &extension)) {
    name.end = name.begin + extension - 1;
  }
  if (name.size() > 0 && path[name.end - 1] == C('.')) --name.end;
  return name;
}

template <class C>
size_t PathText<C>::driveLength(const C* path, size_t len) {
  return len >= 2 && path[1] == C(':') ? 2 : 0;
}

template <class C>
size_t PathText<C>::dirLength(const C* path, size_t len) {
  const size_t drive = driveLength(path, len);
  size_t end = len;
  while (end > drive && !isSeparator(path[end - 1])) --end;
  return drive + std::min(end - drive, kMaxDirPart);
}

template <class C>
bool PathText<C>::component(const C* path, size_t len, unsigned n, Span* out) {
  if (n == 0) return false;
  Span current{0, skipName(path, len, 0)};
  for (unsigned k = 1; k < n; ++k) {
    const size_t nameStart = skipSeparators(path, len, current.end);
    if (nameStart == len) return false;
    current = {current.end, skipName(path, len, nameStart)};
  }
  *out = current;
  return true;
}

template <class C>
size_t PathText<C>::rootLength(const C* path, size_t len) {
  size_t root = driveLength(path, len);
  const bool unc = root == 0 && len >= 2 && path[0] == C('\\') && path[1] == C('\\');
  root = skipSeparators(path, len, root);
  if (unc) root = skipName(path, len, skipSeparators(path, len, skipName(path, len, root)));
  return root;
}

template <class C>
size_t PathText<C>::withoutLastDirLength(const C* path, size_t len) {
  const size_t root = rootLength(path, len);
  size_t end = len;
  while (end > root && isSeparator(path[end - 1])) --end;
  if (end == root) return len;
  while (end > root && !isSeparator(path[end - 1])) --end;
  return end;
}

// Both paths are split into a root and names. Different roots leave the target as it is.
// Otherwise the leading names they share (ASCII case folded) are dropped, each remaining name of
// the base becomes "..", and the target's remaining names follow, joined with the target's
// separator style; a trailing separator of the target is kept.
template <class C>
typename PathText<C>::Text PathText<C>::relativePath(const C* base, const C* target) {
  if (target == nullptr) return Text();
  const size_t baseLen = length(base);
  const size_t targetLen = length(target);
  size_t b = rootLength(base, baseLen);
  size_t t = rootLength(target, targetLen);
  if (!samePathText(base, b, target, t)) return Text(target, targetLen);

  b = skipSeparators(base, baseLen, b);
  t = skipSeparators(target, targetLen, t);
  while (b < baseLen && t < targetLen) {
    const size_t baseEnd = skipName(base, baseLen, b);
    const size_t targetEnd = skipName(target, targetLen, t);
    if (!samePathText(base + b, baseEnd - b, target + t, targetEnd - t)) break;
    b = skipSeparators(base, baseLen, baseEnd);
    t = skipSeparators(target, targetLen, targetEnd);
  }

  const C sep = separatorStyle(target, targetLen);
  Text relative;
  const auto addName = [&](const C* name, size_t size) {
    if (!relative.empty()) relative += sep;
    relative.append(name, size);
  };
  const C up[] = {'.', '.'};
  for (; b < baseLen; b = skipSeparators(base, baseLen, skipName(base, baseLen, b))) addName(up, 2);
  for (; t < targetLen; t = skipSeparators(target, targetLen, t)) {
    const size_t end = skipName(target, targetLen, t);
    addName(target + t, end - t);
    t = end;
  }
  if (!relative.empty() && targetLen > 0 && isSeparator(target[targetLen - 1])) relative += sep;
  return relative;
}

template <class C>
Span PathText<C>::urlFileName(const C* url, size_t len) {
  size_t end = 0;
  while (end < len && url[end] != C('?') && url[end] != C('#')) ++end;
  size_t begin = end;
  while (begin > 0 && !isSeparator(url[begin - 1])) --begin;
  return {begin, end};
}

template <class C>
size_t PathText<C>::collapseSeparators(const C* in, C sep, C* out) {
  size_t written = 0;
  if (in[0] == C('\\') && in[1] == C('\\')) {
    out[written++] = *in++;
    out[written++] = *in++;
  }
  while (*in != 0) {
    if (isSeparator(*in)) {
      while (isSeparator(*in)) ++in;
      out[written++] = sep;
    } else {
      out[written++] = *in++;
    }
  }
  out[written] = 0;
  return written;
}

// The list is a run of NUL-terminated entries closed by an empty one. A single entry is a full
// path; otherwise the first entry is a directory and each following entry a name inside it.
template <class C>
int PathText<C>::forEachFileName(const C* list, Visitor visit, void* context) {
  if (list == nullptr || *list == 0) return 0;
  const size_t dirLen = length(list);
  const C* name = list + dirLen + 1;
  if (*name == 0) {
    if (visit != nullptr) visit(list, context);
    return 1;
  }
  Text path(list, dirLen);
  if (!isSeparator(list[dirLen - 1])) path += separatorStyle(list, dirLen);
  const size_t prefix = path.size();
  int count = 0;
  for (; *name != 0; name += length(name) + 1) {
    path.resize(prefix);
    path += name;
    ++count;
    if (visit != nullptr && !visit(path.c_str(), context)) break;
  }
  return count;
}

template struct PathText<char>;
template struct PathText<zwchar_t>;

}  // namespace path
}  // namespace zeb

namespace {

using zeb::path::PathText;
using zeb::path::Span;

// The string class of a text unit.
template <class C>
struct StringOf;
template <>
struct StringOf<char> {
  using type = TAnsiString;
};
template <>
struct StringOf<zwchar_t> {
  using type = TWideString;
};
template <class C>
using StringFor = typename StringOf<C>::type;

template <class C>
StringFor<C> stringOf(const C* text, Span span) {
  return StringFor<C>(text + span.begin, static_cast<int>(span.size()));
}

template <class C>
C* copyOut(C* out, const C* text, Span span) {
  std::copy(text + span.begin, text + span.end, out);
  out[span.size()] = 0;
  return out;
}

template <class C>
const C* fileNamePtr(const C* path) {
  if (path == nullptr) return nullptr;
  return path + PathText<C>::fileNameStart(path, PathText<C>::length(path));
}

template <class C>
const C* fileExtPtr(const C* path) {
  size_t start = 0;
  const bool found = PathText<C>::findExtension(path, PathText<C>::length(path), &start);
  return found ? path + start : nullptr;
}

template <class C>
StringFor<C> fileName(const C* path) {
  const size_t len = PathText<C>::length(path);
  return stringOf(path, {PathText<C>::fileNameStart(path, len), len});
}

template <class C>
StringFor<C> fileExt(const C* path) {
  const C* ext = fileExtPtr(path);
  return ext != nullptr ? stringOf(ext, {0, PathText<C>::length(ext)}) : StringFor<C>();
}

template <class C>
StringFor<C> fileNameNoExt(const C* path) {
  return stringOf(path, PathText<C>::nameWithoutExtension(path, PathText<C>::length(path)));
}

template <class C>
StringFor<C> fileDrive(const C* path) {
  return stringOf(path, {0, PathText<C>::driveLength(path, PathText<C>::length(path))});
}

template <class C>
C* fileDir(const C* path, C* out) {
  if (out == nullptr) return nullptr;
  if (path == nullptr) {
    *out = 0;
    return nullptr;
  }
  return copyOut(out, path, {0, PathText<C>::dirLength(path, PathText<C>::length(path))});
}

template <class C>
StringFor<C> fileDirString(const C* path) {
  return stringOf(path, {0, PathText<C>::dirLength(path, PathText<C>::length(path))});
}

template <class C>
int fileComponent(const C* path, C* out, unsigned n) {
  if (out == nullptr) return -1;
  *out = 0;
  Span span{0, 0};
  if (path == nullptr || !PathText<C>::component(path, PathText<C>::length(path), n, &span)) {
    return -1;
  }
  span.end = span.begin + std::min(span.size(), zeb::path::kMaxComponent);
  copyOut(out, path, span);
  return static_cast<int>(span.size());
}

template <class C>
bool keepFirst(const C* path, void* context) {
  *static_cast<StringFor<C>*>(context) = StringFor<C>(path);
  return false;
}

template <class C>
StringFor<C> firstFileName(const C* list) {
  StringFor<C> first;
  PathText<C>::forEachFileName(list, keepFirst<C>, &first);
  return first;
}

template <class C>
int relativePathOut(const C* base, const C* target, C* out, unsigned outSize) {
  const std::basic_string<C> relative = PathText<C>::relativePath(base, target);
  if (out != nullptr && outSize > 0) {
    const bool fits = relative.size() < outSize;
    copyOut(out, relative.c_str(), {0, fits ? relative.size() : 0});
  }
  return static_cast<int>(relative.size());
}

template <class C>
C* withoutLastDir(C* path) {
  if (path != nullptr) path[PathText<C>::withoutLastDirLength(path, PathText<C>::length(path))] = 0;
  return path;
}

}  // namespace

// ---- exported functions -------------------------------------------------------------------------

const char* ExtractFileNamePtr(const char* path) {
  return fileNamePtr(path);
}
const char* ExtractFileNamePtrA(const char* path) {
  return fileNamePtr(path);
}
const zwchar_t* ExtractFileNamePtrW(const zwchar_t* path) {
  return fileNamePtr(path);
}
TAnsiString ExtractFileName(const char* path) {
  return fileName(path);
}
TWideString ExtractFileName(const zwchar_t* path) {
  return fileName(path);
}

const char* ExtractFileExtPtrA(const char* path) {
  return fileExtPtr(path);
}
const zwchar_t* ExtractFileExtPtrW(const zwchar_t* path) {
  return fileExtPtr(path);
}
TAnsiString ExtractFileExt(const char* path) {
  return fileExt(path);
}
TWideString ExtractFileExt(const zwchar_t* path) {
  return fileExt(path);
}

TAnsiString ExtractFileNameNoExt(const char* path) {
  return fileNameNoExt(path);
}
TWideString ExtractFileNameNoExtW(const zwchar_t* path) {
  return fileNameNoExt(path);
}

TAnsiString ExtractFileDrive(const char* path) {
  return fileDrive(path);
}
TWideString ExtractFileDriveW(const zwchar_t* path) {
  return fileDrive(path);
}

char* ExtractFileDir(const char* path, char* out) {
  return fileDir(path, out);
}
zwchar_t* ExtractFileDirW(const zwchar_t* path, zwchar_t* out) {
  return fileDir(path, out);
}
TAnsiString ExtractFileDir(const TAnsiString& path) {
  return fileDirString(path.p());
}
TWideString ExtractFileDir(const TWideString& path) {
  return fileDirString(path.p());
}

int extractfiledirex(const char* path, char* out, unsigned n) {
  return fileComponent(path, out, n);
}
int extractfiledirexw(const zwchar_t* path, zwchar_t* out, unsigned n) {
  return fileComponent(path, out, n);
}

int ExtractFileNames(const char* list, tFileNameVisitor visit, void* context) {
  return PathText<char>::forEachFileName(list, visit, context);
}
int ExtractFileNamesW(const zwchar_t* list, tFileNameVisitorW visit, void* context) {
  return PathText<zwchar_t>::forEachFileName(list, visit, context);
}
TAnsiString ExtractFileFirstName(const char* list) {
  return firstFileName(list);
}
TWideString ExtractFileFirstName(const zwchar_t* list) {
  return firstFileName(list);
}

int ExtractRelativePath(const char* base, const char* target, char* out, unsigned outSize) {
  return relativePathOut(base, target, out, outSize);
}
int ExtractRelativePathW(const zwchar_t* base, const zwchar_t* target, zwchar_t* out,
                         unsigned outSize) {
  return relativePathOut(base, target, out, outSize);
}
TWideString ExtractRelativePathW(const zwchar_t* base, const zwchar_t* target) {
  const std::basic_string<zwchar_t> relative = PathText<zwchar_t>::relativePath(base, target);
  return TWideString(relative.c_str(), static_cast<int>(relative.size()));
}

char* delLastDir(char* path) {
  return withoutLastDir(path);
}
zwchar_t* delLastDirW(zwchar_t* path) {
  return withoutLastDir(path);
}

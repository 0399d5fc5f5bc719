// Fuzzing of the file-name functions and the path members of both string classes on arbitrary
// text: the input as 8-bit text, and reinterpreted as 16-bit units. Every out buffer has exactly
// the size the header documents, in its own heap block, so AddressSanitizer reports any overrun.
// Input layout: byte 0 holds the keepPath flag of normalizeFileName (bit 0) and the out size for
// ExtractRelativePath (the other bits); the rest is split in half into a base and a target path
// (the first half is also the path every other function gets).
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <string>
#include <vector>

#include "zeb/strings/filename.h"

namespace {

using ustring = std::basic_string<zwchar_t>;

void require(bool condition) {
  if (!condition) abort();
}

template <class C>
std::basic_string<C> unitsOf(const uint8_t* data, size_t size) {
  std::basic_string<C> units(size / sizeof(C), C());
  memcpy(&units[0], data, units.size() * sizeof(C));
  return units;
}

template <class C>
size_t unitLength(const C* s) {
  return std::char_traits<C>::length(s);
}

// The pointer and out-buffer functions of one width, with the invariants they promise.
template <class C, class Forms>
void checkPointerForms(const std::basic_string<C>& text, const std::basic_string<C>& other,
                       unsigned relativeSize) {
  const C* path = text.c_str();
  const size_t len = unitLength(path);

  const C* name = Forms::namePtr(path);
  require(name >= path && name <= path + len);
  const C* ext = Forms::extPtr(path);
  require(ext == nullptr || (ext > path && ext <= path + len && ext[-1] == '.'));

  std::vector<C> dir(ZEB_FILEDIR_OUT_UNITS);
  Forms::dir(path, dir.data());
  require(memcmp(dir.data(), path, unitLength(dir.data()) * sizeof(C)) == 0);

  // Components rebuild the path as long as none was cut.
  std::basic_string<C> rebuilt;
  std::vector<C> part(ZEB_FILECOMPONENT_OUT_UNITS);
  bool cut = false;
  for (unsigned n = 1; Forms::component(path, part.data(), n) >= 0; ++n) {
    cut = cut || unitLength(part.data()) == 259;
    rebuilt += part.data();
  }
  require(cut || text.compare(0, rebuilt.size(), rebuilt) == 0);

  std::vector<C> relative(relativeSize + 1);
  const int needed = Forms::relative(path, other.c_str(), relative.data(), relativeSize);
  require(needed >= 0 && (unitLength(relative.data()) == size_t(needed) || relative[0] == 0));

  const std::basic_string<C> list = text + C() + other + C();  // c_str adds the closing NUL
  Forms::names(list.c_str());

  std::basic_string<C> shortened = text;
  Forms::delLastDir(&shortened[0]);
  require(text.compare(0, unitLength(shortened.c_str()), shortened.c_str()) == 0);
}

struct NarrowForms {
  static const char* namePtr(const char* p) { return ExtractFileNamePtr(p); }
  static const char* extPtr(const char* p) { return ExtractFileExtPtrA(p); }
  static char* dir(const char* p, char* out) { return ExtractFileDir(p, out); }
  static int component(const char* p, char* out, unsigned n) { return extractfiledirex(p, out, n); }
  static int relative(const char* base, const char* target, char* out, unsigned size) {
    return ExtractRelativePath(base, target, out, size);
  }
  static void names(const char* list) {
    ExtractFileNames(list, nullptr, nullptr);
    ExtractFileFirstName(list);
  }
  static void delLastDir(char* p) { ::delLastDir(p); }
};

struct WideForms {
  static const zwchar_t* namePtr(const zwchar_t* p) { return ExtractFileNamePtrW(p); }
  static const zwchar_t* extPtr(const zwchar_t* p) { return ExtractFileExtPtrW(p); }
  static zwchar_t* dir(const zwchar_t* p, zwchar_t* out) { return ExtractFileDirW(p, out); }
  static int component(const zwchar_t* p, zwchar_t* out, unsigned n) {
    return extractfiledirexw(p, out, n);
  }
  static int relative(const zwchar_t* base, const zwchar_t* target, zwchar_t* out, unsigned size) {
    ExtractRelativePathW(base, target);
    return ExtractRelativePathW(base, target, out, size);
  }
  static void names(const zwchar_t* list) {
    ExtractFileNamesW(list, nullptr, nullptr);
    ExtractFileFirstName(list);
  }
  static void delLastDir(zwchar_t* p) { delLastDirW(p); }
};

// The string forms and the path members of one string class.
template <class S, class C>
void checkStringForms(const C* path) {
  ExtractFileName(path);
  ExtractFileExt(path);
  ExtractFileDir(S(path));
  S(path).extractFileName();
  S(path).extractFileDir();
  S(path).extractFileDriver();
  S(path).extractFileExt();
  S(path).extractFileNameNoExt();
  S(path).normalizeFileNameSplash();
  S(path).ensureEndWithBacksplash();
  S(path).removeEndedBacksplash();
  S(path).ensureQuoted();
  S(path).isQuoted();
  S(path).extractFileNameFromURL();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const bool keepPath = (data[0] & 1) != 0;
  const unsigned relativeSize = data[0] >> 1;
  ++data;
  --size;
  const size_t half = size / 2;
  const std::string text(reinterpret_cast<const char*>(data), half);
  const std::string other(reinterpret_cast<const char*>(data) + half, size - half);
  const ustring wideText = unitsOf<zwchar_t>(data, half);
  const ustring wideOther = unitsOf<zwchar_t>(data + half, size - half);

  checkPointerForms<char, NarrowForms>(text, other, relativeSize);
  checkPointerForms<zwchar_t, WideForms>(wideText, wideOther, relativeSize);
  checkStringForms<TAnsiString>(text.c_str());
  checkStringForms<TWideString>(wideText.c_str());
  ExtractFileNameNoExt(text.c_str());
  ExtractFileNameNoExtW(wideText.c_str());
  ExtractFileDrive(text.c_str());
  ExtractFileDriveW(wideText.c_str());
  TWideString(wideText.c_str()).normalizeFileName(keepPath);
  TAnsiString(text.c_str()).normalizeFileName(MIB_UTF8, keepPath);
  return 0;
}

// codepage.cpp (POSIX): the ANSI code page as a process-wide setting, and the code-page
// conversions on the iconv core.
//
// The default code page is read once: ZEB_ACP when it holds a number, else the codeset of the
// locale variables. Every code page ever used is interned with its iconv name, so the name handed
// out for the current code page stays valid after the code page is switched again.
#include "zeb/platform/codepage.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include <atomic>
#include <map>
#include <mutex>
#include <string>

#include "zeb/charset/internal/text_conversion.h"
#include "zeb/strings/zeb_cstr.h"

namespace zeb {
namespace platform {
namespace {

constexpr unsigned kUtf8CodePage = 65001;

struct CodePage {
  unsigned number;
  std::string charset;
};

struct NamedCodePage {
  const char* name;
  unsigned codePage;
};

// Code pages that glibc does not know as "CP<n>", with the names it knows them by.
constexpr NamedCodePage kCharsetFallbacks[] = {
    {"UTF-8", 65001},
    {"GB18030", 54936},
    {"ASCII", 20127},
    {"ISO-8859-15", 28605},
};

// Locale codesets and their code pages; any other codeset counts as UTF-8.
constexpr NamedCodePage kLocaleCodesets[] = {
    {"UTF-8", 65001}, {"UTF8", 65001}, {"GB18030", 54936},
    {"GBK", 936},     {"GB2312", 936}, {"BIG5", 950},
};

std::string charsetNameOf(unsigned codePage) {
  std::string cpName = "CP" + std::to_string(codePage);
  if (charset::isConvertibleCharset(cpName.c_str())) return cpName;
  for (const NamedCodePage& fallback : kCharsetFallbacks) {
    if (fallback.codePage == codePage) return fallback.name;
  }
  return "ASCII";
}

// The record of `codePage`, made on first use and never freed.
const CodePage* internCodePage(unsigned codePage) {
  static std::mutex mutex;
  static auto* const records = new std::map<unsigned, CodePage>();
  const std::lock_guard<std::mutex> lock(mutex);
  auto it = records->find(codePage);
  if (it == records->end()) {
    it = records->emplace(codePage, CodePage{codePage, charsetNameOf(codePage)}).first;
  }
  return &it->second;
}

unsigned codePageFromEnvironmentNumber() {
  const char* text = getenv("ZEB_ACP");
  if (text == nullptr || *text < '0' || *text > '9') return 0;
  char* end = nullptr;
  const unsigned long value = strtoul(text, &end, 10);
  return (*end == '\0' && value <= UINT_MAX) ? static_cast<unsigned>(value) : 0;
}

// The first of LC_ALL, LC_CTYPE, LANG that is set and not empty; "" when none is.
const char* localeName() {
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return "";
}

// The codeset part of a locale name ("zh_CN.GBK@euro" gives "GBK"); "" when there is none.
std::string codesetOf(const char* locale) {
  const char* dot = strchr(locale, '.');
  if (dot == nullptr) return std::string();
  const char* start = dot + 1;
  return std::string(start, strcspn(start, "@"));
}

unsigned codePageOfLocale() {
  const std::string codeset = codesetOf(localeName());
  for (const NamedCodePage& known : kLocaleCodesets) {
    if (zeb_stricmp_impl(codeset.c_str(), known.name) == 0) return known.codePage;
  }
  return kUtf8CodePage;
}

const CodePage* defaultCodePage() {
  static const CodePage* const initial = [] {
    const unsigned fromNumber = codePageFromEnvironmentNumber();
    return internCodePage(fromNumber != 0 ? fromNumber : codePageOfLocale());
  }();
  return initial;
}

std::atomic<const CodePage*> g_current{nullptr};

const CodePage* currentCodePage() {
  const CodePage* current = g_current.load(std::memory_order_acquire);
  if (current != nullptr) return current;
  const CodePage* initial = defaultCodePage();
  // A concurrent setAnsiCodePage wins over the default.
  return g_current.compare_exchange_strong(current, initial, std::memory_order_acq_rel) ? initial
                                                                                        : current;
}

// Undecodable input bytes are replaced one by one.
size_t oneByte(const unsigned char*, size_t) {
  return 1;
}

bool isHighSurrogate(unsigned unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(unsigned unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

zwchar_t unitAt(const unsigned char* at) {
  zwchar_t unit;
  memcpy(&unit, at, sizeof unit);
  return unit;
}

// A rejected UTF-16 character is a surrogate pair or a single unit.
size_t oneUtf16Character(const unsigned char* at, size_t left) {
  const size_t unit = sizeof(zwchar_t);
  if (left < unit) return left;
  const bool pair =
      left >= 2 * unit && isHighSurrogate(unitAt(at)) && isLowSurrogate(unitAt(at + unit));
  return pair ? 2 * unit : unit;
}

constexpr charset::CharsetName kUtf16 = charset::fixedName(charset::kHostUtf16);

// Interned names never change, so the converter cache may match them by address.
charset::CharsetName fixedAnsiName() {
  return charset::fixedName(ansiCodePageCharsetName());
}

const zwchar_t kReplacementCharacter = 0xFFFD;
const char kDefaultCharacter = '?';

const charset::Replacement kDecodeReplacement{&kReplacementCharacter, sizeof kReplacementCharacter,
                                              oneByte};
const charset::Replacement kEncodeReplacement{&kDefaultCharacter, sizeof kDefaultCharacter,
                                              oneUtf16Character};

// The shared body of the two conversions: `inUnits` counts units of `inUnitSize` bytes, `outUnits`
// units of `outUnitSize` bytes.
int convertCodePageText(charset::CharsetName to, charset::CharsetName from, const void* in,
                        size_t inUnits, size_t inUnitSize, void* out, int outUnits,
                        size_t outUnitSize, const charset::Replacement& replacement) {
  if (outUnits < 0 || (outUnits > 0 && out == nullptr)) return 0;
  void* target = outUnits == 0 ? nullptr : out;
  const size_t bytes =
      charset::convertTextReplacing(to, from, in, inUnits * inUnitSize, target,
                                    static_cast<size_t>(outUnits) * outUnitSize, replacement);
  if (bytes == charset::kConversionFailed) return 0;
  const size_t units = bytes / outUnitSize;
  return units <= static_cast<size_t>(INT_MAX) ? static_cast<int>(units) : 0;
}

}  // namespace

unsigned ansiCodePage() {
  return currentCodePage()->number;
}

void setAnsiCodePage(unsigned codePage) {
  g_current.store(codePage == 0 ? defaultCodePage() : internCodePage(codePage),
                  std::memory_order_release);
}

const char* ansiCodePageCharsetName() {
  return currentCodePage()->charset.c_str();
}

int multiByteToWideChar(const char* in, int inLen, zwchar_t* out, int outChars) {
  if (in == nullptr || inLen == 0) return 0;
  const size_t inBytes = inLen < 0 ? strlen(in) + 1 : static_cast<size_t>(inLen);
  return convertCodePageText(kUtf16, fixedAnsiName(), in, inBytes, 1, out, outChars,
                             sizeof(zwchar_t), kDecodeReplacement);
}

int wideCharToMultiByte(const zwchar_t* in, int inLen, char* out, int outSize) {
  if (in == nullptr || inLen == 0) return 0;
  const size_t inUnits = inLen < 0 ? zeb_wcslen(in) + 1 : static_cast<size_t>(inLen);
  return convertCodePageText(fixedAnsiName(), kUtf16, in, inUnits, sizeof(zwchar_t), out, outSize,
                             1, kEncodeReplacement);
}

}  // namespace platform
}  // namespace zeb

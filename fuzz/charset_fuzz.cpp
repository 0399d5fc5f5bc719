// Fuzzes the charset functions and the conversion members of the string classes: arbitrary bytes
// through the decoders and arbitrary 16-bit units through the encoders, into buffers sized exactly
// (so AddressSanitizer sees any overflow) by the documented rules or deliberately too small. Checks
// that no result exceeds its buffer and that the terminator and zero-fill rules hold.
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "zeb/charset/zeb_charset.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"

namespace {

const char* const kCharsets[] = {"UTF-8", "gb2312",   "gb18030", "Latin-9",
                                 "BIG5",  "us-ascii", "UTF-16LE"};
const unsigned kCodePages[] = {65001, 936, 950, 54936, 1252, 20127};

void check(bool condition) {
  if (!condition) abort();
}

// The fuzzer's first bytes choose what to do; the rest is the text.
struct Choices {
  uint8_t mode;
  uint8_t codePage;
  uint8_t size;  // below 64: a buffer of only that many 64ths of the documented size
  uint8_t to;
  uint8_t from;
};

// The documented capacity, or a deliberately short one.
int capacity(const Choices& choices, size_t documented) {
  const size_t chosen = choices.size < 64 ? documented * choices.size / 64 : documented;
  return static_cast<int>(chosen);
}

template <typename Unit>
std::unique_ptr<Unit[]> exactBuffer(int size) {
  return std::unique_ptr<Unit[]>(new Unit[size > 0 ? size : 1]);
}

void checkZeroFilled(const char* out, int written, int size) {
  check(written >= 0 && written <= size);
  if (written == 0) return;
  for (int i = written; i < size; ++i) check(out[i] == '\0');
}

void checkUnicodeResult(const zwchar_t* out, int written, int size) {
  check(written >= 0 && written <= size);
  if (written > 0 && written < size) check(out[written] == 0);
}

void fuzzDecoder(const Choices& choices, const std::string& text,
                 int (*decode)(zwchar_t*, int, const char*, int)) {
  const int size = capacity(choices, 2 * text.size() + 4);
  auto out = exactBuffer<zwchar_t>(size);
  const int written = decode(out.get(), size, text.data(), static_cast<int>(text.size()));
  checkUnicodeResult(out.get(), written, size);
}

void fuzzToUtf8(const Choices& choices, const std::string& text,
                int (*convert)(char*, int, const char*)) {
  const int size = capacity(choices, 3 * text.size() + 1);
  auto out = exactBuffer<char>(size);
  checkZeroFilled(out.get(), convert(out.get(), size, text.c_str()), size);
}

void fuzzAnyToAny(const Choices& choices, const std::string& text) {
  const char* to = kCharsets[choices.to % std::size(kCharsets)];
  const char* from = kCharsets[choices.from % std::size(kCharsets)];
  const int size = capacity(choices, 4 * text.size() + 4);
  auto out = exactBuffer<char>(size);
  const int written =
      AnyToAny(to, from, out.get(), size, text.data(), static_cast<int>(text.size()));
  checkZeroFilled(out.get(), written, size);
}

void fuzzEncoders(const Choices& choices, const zwchar_t* units, size_t count) {
  using FromUnicode = int (*)(char*, int, const zwchar_t*);
  const FromUnicode encoders[] = {StrUnicodeToUtf8, StrUnicodeToGB2312, StrUnicodeToASCII,
                                  StrUnicodeToLatin9};
  const FromUnicode encode = encoders[choices.from % std::size(encoders)];
  const int size = capacity(choices, 3 * count + 1);
  auto out = exactBuffer<char>(size);
  checkZeroFilled(out.get(), encode(out.get(), size, units), size);

  const char* to = kCharsets[choices.to % std::size(kCharsets)];
  checkZeroFilled(out.get(), StrUnicodeToAny(to, out.get(), size, units), size);
}

// The ANSI pair: the size asked for with 0 must be exactly what a conversion then writes, and one
// unit less must fail (an output size of 0 would measure again).
template <typename Unit, typename Source>
void fuzzAnsi(int (*convert)(Unit*, int, const Source*), const Source* text) {
  const int needed = convert(nullptr, 0, text);
  check(needed >= 0);
  if (needed == 0) return;
  auto out = exactBuffer<Unit>(needed);
  check(convert(out.get(), needed, text) == needed);
  check(out[needed - 1] == 0);
  if (needed > 1) check(convert(out.get(), needed - 1, text) == 0);
}

// A converted string is terminated inside its own buffer.
void checkTerminated(const TAnsiString& s) {
  check(s.getCapacity() == 0 || s.length() < s.getCapacity());
}
void checkTerminated(const TWideString& s) {
  check(s.getCapacity() == 0 || s.length() < s.getCapacity());
}

const tmibcharset kMibs[] = {MIB_ANSI, MIB_ASCII, MIB_UTF8, MIB_GB2312, 114, 2026, 4};

// The members convert into buffers they size themselves: bytes to 16 bits and back, in place
// and afresh, in every charset the library names.
void fuzzStringMembers(const Choices& choices, const std::string& text, const zwchar_t* units) {
  const tmibcharset cs = kMibs[choices.to % std::size(kMibs)];
  TWideString wide(text.c_str(), cs);
  checkTerminated(wide);
  wide.fromAny(kMibs[choices.from % std::size(kMibs)], text.c_str(), choices.size % 2 ? -1 : 1);
  checkTerminated(wide);
  wide.fromASCIIQuick(text.c_str(), choices.size);
  checkTerminated(wide);
  checkTerminated(wide.utf8());
  checkTerminated(wide.ansi());
  TAnsiString narrow;
  narrow.fromWideString(units, cs);
  checkTerminated(narrow);
  narrow.fromWideStringQuick(units);
  checkTerminated(narrow);
  narrow.setText(text.c_str());
  narrow.convertAnyToUtf8(kCharsets[choices.from % std::size(kCharsets)]);
  checkTerminated(narrow);
  narrow.convertAnyToANSI(kCharsets[choices.to % std::size(kCharsets)]);
  checkTerminated(narrow);
  narrow.convertANSIToUTF8();
  checkTerminated(narrow);
  narrow.fromGB18030ToUTF8(text.c_str());
  checkTerminated(narrow);
  narrow.fromLatin9ToUTF8(text.c_str());
  checkTerminated(narrow);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Choices choices{};
  if (size < sizeof choices) return 0;
  memcpy(&choices, data, sizeof choices);
  const std::string text(reinterpret_cast<const char*>(data) + sizeof choices,
                         size - sizeof choices);
  std::vector<zwchar_t> units(text.size() / sizeof(zwchar_t) + 1, 0);
  memcpy(units.data(), text.data(), text.size() - text.size() % sizeof(zwchar_t));

  zeb_setAnsiCodePage(kCodePages[choices.codePage % std::size(kCodePages)]);
  switch (choices.mode % 11) {
    case 0:
      fuzzDecoder(choices, text, StrUtf8ToUnicode);
      break;
    case 1:
      fuzzDecoder(choices, text, StrGB2312ToUnicode);
      break;
    case 2:
      fuzzDecoder(choices, text, Big5CodeToUnicode);
      break;
    case 3:
      fuzzDecoder(choices, text, StrLatin9ToUnicode);
      break;
    case 4:
      fuzzToUtf8(choices, text, StrGB18030ToUTF8);
      break;
    case 5:
      fuzzAnyToAny(choices, text);
      break;
    case 6:
      fuzzAnsi(StrANSIToUnicode, text.c_str());
      break;
    case 7:
      fuzzAnsi(StrUnicodeToANSI, units.data());
      break;
    case 8:
      fuzzStringMembers(choices, text, units.data());
      break;
    default:
      fuzzEncoders(choices, units.data(), units.size() - 1);
      break;
  }
  return 0;
}

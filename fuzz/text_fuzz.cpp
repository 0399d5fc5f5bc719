// text_fuzz.cpp: libFuzzer target over TAnsiString's text parsers (tags, tokens, lines, GUIDs,
// years) and its sprintf. Each input runs one operation, chosen by its first byte, and checks the
// result's invariants; sprintf is compared with the C library's snprintf on formats holding one
// conversion that matches the argument passed.
#include <fuzzer/FuzzedDataProvider.h>
#include <math.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <string>
#include <type_traits>

#include "zeb/strings/TAnsiString.h"

namespace {

void check(bool condition, const char* what) {
  if (!condition) {
    fprintf(stderr, "check failed: %s\n", what);
    abort();
  }
}

std::string textOf(const TAnsiString& s) {
  return s.isEmpty() ? std::string() : std::string(s.p());
}

// A string without NULs (so that its length is its C length).
std::string consumeText(FuzzedDataProvider& in, size_t maxLength) {
  std::string text = in.ConsumeRandomLengthString(maxLength);
  std::replace(text.begin(), text.end(), '\0', '_');
  return text;
}

int consumeStart(FuzzedDataProvider& in, const std::string& text) {
  return in.ConsumeIntegralInRange<int>(-4, int(text.size()) + 4);
}

// ---- text parsers ---------------------------------------------------------------------------

void fuzzTags(FuzzedDataProvider& in) {
  const std::string startTag = consumeText(in, 6);
  const std::string endTag = consumeText(in, 6);
  const bool ignoreCase = in.ConsumeBool();
  const std::string text = consumeText(in, 512);
  const TAnsiString whole(text.c_str());
  int start = consumeStart(in, text);
  for (int step = 0; step <= int(text.size()) && start != -1; ++step) {
    TAnsiString found;
    int next = 0;
    int subNext = 0;
    const bool ok = found.fromBetweenTag(text.c_str(), startTag.c_str(), endTag.c_str(), ignoreCase,
                                         start, &next);
    const TAnsiString sub =
        whole.subStringFromTags(startTag.c_str(), endTag.c_str(), ignoreCase, start, &subNext);
    check(next == subNext && textOf(found) == textOf(sub), "tags: both forms agree");
    check(ok ? next > start && next <= int(text.size()) : next == -1 && found.isEmpty(),
          "tags: next moves forward inside the text");
    check(found.length() <= int(text.size()), "tags: result inside the text");
    start = next;
  }
}

void fuzzTokens(FuzzedDataProvider& in) {
  const std::string sep = consumeText(in, 3);
  const bool trims = in.ConsumeBool();
  const std::string trimSet = consumeText(in, 3);
  const int index = in.ConsumeIntegralInRange<int>(-1, 8);
  const std::string text = consumeText(in, 512);
  const int start = consumeStart(in, text);
  TAnsiString field;
  int next = 0;
  field.fromToken(text.c_str(), sep.c_str(), index, start, &next,
                  trims ? trimSet.c_str() : nullptr);
  check(next == -1 || (next > start && next <= int(text.size())), "token: next inside the text");

  // Walking the untrimmed fields from `start` and joining them with `sep` gives the text back.
  if (start > int(text.size())) return;
  const TAnsiString whole(text.c_str());
  std::string joined;
  int walk = std::max(start, 0);
  for (int step = 0; step <= int(text.size()) && walk != -1; ++step) {
    const int from = walk;
    if (step > 0) joined += sep;
    joined += textOf(whole.subStringFromToken(sep.c_str(), 0, walk, &walk));
    check(walk == -1 || walk > from, "token: walk moves forward");
  }
  check(walk == -1 && joined == text.substr(size_t(std::max(start, 0))), "token: fields rejoin");
}

void fuzzLines(FuzzedDataProvider& in) {
  const std::string text = consumeText(in, 512);
  const char* end = text.c_str() + text.size();
  TAnsiString line;
  size_t lineBytes = 0;
  const char* p = text.c_str();
  for (size_t step = 0; step <= text.size() && p != nullptr; ++step) {
    const char* next = line.fromFirstLine(p);
    check(next == nullptr || (next > p && next < end), "lines: next line moves forward");
    check(strpbrk(textOf(line).c_str(), "\r\n") == nullptr, "lines: no line end inside");
    lineBytes += size_t(line.length());
    p = next;
  }
  check(p == nullptr && lineBytes <= text.size(), "lines: walk ends");
}

void fuzzGuid(FuzzedDataProvider& in) {
  const std::string text = consumeText(in, 40);
  unsigned char guid[16];
  memset(guid, 0xA5, sizeof guid);
  if (!TAnsiString(text.c_str()).hexToGUID(guid)) {
    for (unsigned char b : guid) check(b == 0xA5, "guid: untouched on failure");
    return;
  }
  // Accepted text is the canonical text up to case and braces.
  TAnsiString canonical;
  canonical.fromGUID(guid, text[0] == '{');
  check(canonical.equal(text.c_str(), CaseInsensitive), "guid: round trip");
}

void fuzzYears(FuzzedDataProvider& in) {
  const int minYear = in.ConsumeIntegralInRange<int>(-10, 10000);
  const int maxYear = in.ConsumeIntegralInRange<int>(-10, 10000);
  const bool removeIt = in.ConsumeBool();
  const std::string text = consumeText(in, 256);
  std::string copy = text;
  const int year = TAnsiString::extractYear(text.c_str(), minYear, maxYear);
  check(year == TAnsiString::extractYearEX(&copy[0], removeIt, minYear, maxYear),
        "years: both forms agree");
  const size_t removed = text.size() - strlen(copy.c_str());
  if (year == 0 || !removeIt) {
    check(removed == 0, "years: text kept");
  } else {
    check(year >= minYear && year <= maxYear && (removed == 4 || removed == 5), "years: removed");
  }
}

// ---- sprintf against snprintf ---------------------------------------------------------------

// A format holding one conversion between two literal texts, and the '*' values it needs.
struct Format {
  std::string text;
  std::string prefix;
  std::string suffix;
  bool leftAlign = false;
  int width = 0;
  bool starWidth = false;
  bool starPrecision = false;
  int starWidthValue = 0;
  int starPrecisionValue = 0;
};

std::string consumeLiteral(FuzzedDataProvider& in) {
  std::string literal = consumeText(in, 6);
  std::replace(literal.begin(), literal.end(), '%', '_');
  return literal;
}

void consumeWidthAndPrecision(FuzzedDataProvider& in, Format& f, std::string& directive) {
  switch (in.ConsumeIntegralInRange(0, 2)) {
    case 1:
      f.width = in.ConsumeIntegralInRange(0, 64);
      directive += std::to_string(f.width);
      break;
    case 2:
      f.starWidth = true;
      f.starWidthValue = in.ConsumeIntegralInRange(-64, 64);
      f.width = abs(f.starWidthValue);
      f.leftAlign = f.leftAlign || f.starWidthValue < 0;
      directive += '*';
      break;
  }
  switch (in.ConsumeIntegralInRange(0, 3)) {
    case 1:
      directive += '.';
      break;
    case 2:
      directive += '.' + std::to_string(in.ConsumeIntegralInRange(0, 40));
      break;
    case 3:
      f.starPrecision = true;
      f.starPrecisionValue = in.ConsumeIntegralInRange(-5, 40);
      directive += ".*";
      break;
  }
}

Format consumeFormat(FuzzedDataProvider& in, const char* lengthModifier, char conversion) {
  Format f;
  std::string directive = "%";
  for (char flag : std::string("-+ #0")) {
    if (in.ConsumeBool()) directive += flag;
  }
  f.leftAlign = directive.find('-') != std::string::npos;
  consumeWidthAndPrecision(in, f, directive);
  directive += lengthModifier;
  directive += conversion;
  f.prefix = consumeLiteral(in);
  f.suffix = consumeLiteral(in);
  f.text = f.prefix + directive + f.suffix;
  return f;
}

template <typename... Args>
std::string ours(const Format& f, Args... args) {
  TAnsiString s;
  s.sprintf(f.text.c_str(), args...);
  return textOf(s);
}

// Calls `fn` with the '*' values the format asks for, then `value`.
template <typename T, typename Fn>
auto withStarArguments(const Format& f, T value, Fn fn) {
  if (f.starWidth && f.starPrecision) return fn(f.starWidthValue, f.starPrecisionValue, value);
  if (f.starWidth) return fn(f.starWidthValue, value);
  if (f.starPrecision) return fn(f.starPrecisionValue, value);
  return fn(value);
}

template <typename T>
std::string oursWith(const Format& f, T value) {
  return withStarArguments(f, value, [&](auto... args) { return ours(f, args...); });
}

template <typename T>
void compareValue(const Format& f, T value) {
  const std::string actual = oursWith(f, value);
  withStarArguments(f, value, [&](auto... args) {
    char expected[1024];
    snprintf(expected, sizeof expected, f.text.c_str(), args...);
    check(actual == expected, "sprintf: same text as snprintf");
  });
}

// NaN, infinities and a null string print their own text, padded with spaces to the width.
template <typename T>
void checkSpecialText(const Format& f, T value, const std::string& special) {
  const size_t padding = size_t(f.width) > special.size() ? size_t(f.width) - special.size() : 0;
  const std::string field =
      f.leftAlign ? special + std::string(padding, ' ') : std::string(padding, ' ') + special;
  check(oursWith(f, value) == f.prefix + field + f.suffix, "sprintf: special text");
}

template <typename Signed, typename Unsigned>
void fuzzInteger(FuzzedDataProvider& in, const char* lengthModifier) {
  const char conversion = in.PickValueInArray({'d', 'i', 'u', 'o', 'x', 'X'});
  const Format f = consumeFormat(in, lengthModifier, conversion);
  const long long value = in.ConsumeIntegral<long long>();
  if (conversion == 'd' || conversion == 'i') return compareValue(f, static_cast<Signed>(value));
  compareValue(f, static_cast<Unsigned>(value));
}

void fuzzIntegers(FuzzedDataProvider& in) {
  switch (in.ConsumeIntegralInRange(0, 7)) {
    case 0:
      return fuzzInteger<int, unsigned>(in, "");
    case 1:
      return fuzzInteger<int, unsigned>(in, "hh");
    case 2:
      return fuzzInteger<int, unsigned>(in, "h");
    case 3:
      return fuzzInteger<long, unsigned long>(in, "l");
    case 4:
      return fuzzInteger<long long, unsigned long long>(in, "ll");
    case 5:
      return fuzzInteger<intmax_t, uintmax_t>(in, "j");
    case 6:
      return fuzzInteger<std::make_signed_t<size_t>, size_t>(in, "z");
    default:
      return fuzzInteger<ptrdiff_t, std::make_unsigned_t<ptrdiff_t>>(in, "t");
  }
}

template <typename Float>
void fuzzFloat(FuzzedDataProvider& in, const char* lengthModifier) {
  const char conversion = in.PickValueInArray({'e', 'E', 'f', 'F', 'g', 'G', 'a', 'A'});
  const Format f = consumeFormat(in, lengthModifier, conversion);
  const uint64_t bits = in.ConsumeIntegral<uint64_t>();
  double number;
  memcpy(&number, &bits, sizeof number);
  const Float value = number;
  if (isnan(number)) return checkSpecialText(f, value, "NaN");
  if (isinf(number)) return checkSpecialText(f, value, number < 0 ? "-Inf" : "+Inf");
  compareValue(f, value);
}

void fuzzCharactersAndStrings(FuzzedDataProvider& in) {
  if (in.ConsumeBool()) {
    const Format f = consumeFormat(in, "", 'c');
    return compareValue(f, in.ConsumeIntegral<int>());
  }
  const Format f = consumeFormat(in, "", 's');
  if (in.ConsumeBool()) return checkSpecialText(f, static_cast<const char*>(nullptr), "(NULL)");
  const std::string text = consumeText(in, 64);
  compareValue(f, text.c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  switch (in.ConsumeIntegralInRange(0, 8)) {
    case 0:
      fuzzTags(in);
      break;
    case 1:
      fuzzTokens(in);
      break;
    case 2:
      fuzzLines(in);
      break;
    case 3:
      fuzzGuid(in);
      break;
    case 4:
      fuzzYears(in);
      break;
    case 5:
      fuzzIntegers(in);
      break;
    case 6:
      fuzzFloat<double>(in, "");
      break;
    case 7:
      fuzzFloat<long double>(in, "L");
      break;
    default:
      fuzzCharactersAndStrings(in);
      break;
  }
  return 0;
}

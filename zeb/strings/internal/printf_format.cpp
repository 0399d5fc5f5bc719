// printf_format.cpp: the printf-style formatting engine (see printf_format.h).
//
// Integers are formatted here, in unsigned arithmetic. For a floating conversion the C library
// produces the digits of the magnitude alone (no sign, no width); the engine then makes '.' the
// decimal point and adds the sign, the padding and the special texts itself, exactly as for
// integers.
#include "zeb/strings/internal/printf_format.h"

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <climits>
#include <cmath>
#include <type_traits>

#include "zeb/charset/zeb_charset.h"

namespace zeb::internal {
namespace {

// A va_list inside a struct, so that helpers can take it by reference on every ABI (va_list may
// be an array type, which does not pass by reference as itself).
struct ArgList {
  va_list ap;
};

enum class LengthModifier { None, Char, Short, Long, LongLong, IntMax, Size, PtrDiff, LongDouble };

// One parsed conversion directive.
struct Directive {
  bool leftAlign = false;
  bool plusSign = false;
  bool spaceSign = false;
  bool alternate = false;
  bool zeroPad = false;
  bool widthFromArg = false;
  bool precisionFromArg = false;
  int width = 0;
  int precision = -1;  // -1: none given
  LengthModifier length = LengthModifier::None;
  unsigned conversion = 0;  // the conversion unit; 0 when the format ended first
};

template <typename CharT>
unsigned unitAt(const CharT* p) {
  return static_cast<std::make_unsigned_t<CharT>>(*p);
}

bool isDigit(unsigned c) {
  return c >= '0' && c <= '9';
}

int clampCount(unsigned count) {
  return count > unsigned(kMaxFieldSize) ? kMaxFieldSize : int(count);
}

template <typename Signed>
std::make_unsigned_t<Signed> magnitudeOf(Signed value) {
  using Unsigned = std::make_unsigned_t<Signed>;
  return value < 0 ? Unsigned(0) - Unsigned(value) : Unsigned(value);
}

// ---- parsing --------------------------------------------------------------------------------

// Reads a run of decimal digits; the value saturates at kMaxFieldSize.
template <typename CharT>
int parseCount(const CharT*& p) {
  unsigned count = 0;
  for (; isDigit(unitAt(p)); ++p) {
    if (count <= unsigned(kMaxFieldSize)) count = count * 10 + (unitAt(p) - '0');
  }
  return clampCount(count);
}

template <typename CharT>
const CharT* parseFlags(const CharT* p, Directive& directive) {
  for (;; ++p) {
    switch (unitAt(p)) {
      case '-':
        directive.leftAlign = true;
        break;
      case '+':
        directive.plusSign = true;
        break;
      case ' ':
        directive.spaceSign = true;
        break;
      case '#':
        directive.alternate = true;
        break;
      case '0':
        directive.zeroPad = true;
        break;
      default:
        return p;
    }
  }
}

template <typename CharT>
const CharT* parseWidthAndPrecision(const CharT* p, Directive& directive) {
  if (unitAt(p) == '*') {
    directive.widthFromArg = true;
    ++p;
  } else {
    directive.width = parseCount(p);
  }
  if (unitAt(p) != '.') return p;
  ++p;
  if (unitAt(p) == '*') {
    directive.precisionFromArg = true;
    return p + 1;
  }
  directive.precision = parseCount(p);
  return p;
}

// 'h' or 'l', alone or doubled ("hh", "ll").
template <typename CharT>
const CharT* parseDoublingModifier(const CharT* p, Directive& directive, LengthModifier single,
                                   LengthModifier doubled) {
  const bool isDoubled = unitAt(p + 1) == unitAt(p);
  directive.length = isDoubled ? doubled : single;
  return p + (isDoubled ? 2 : 1);
}

template <typename CharT>
const CharT* parseLengthModifier(const CharT* p, Directive& directive) {
  switch (unitAt(p)) {
    case 'h':
      return parseDoublingModifier(p, directive, LengthModifier::Short, LengthModifier::Char);
    case 'l':
      return parseDoublingModifier(p, directive, LengthModifier::Long, LengthModifier::LongLong);
    case 'j':
      directive.length = LengthModifier::IntMax;
      break;
    case 'z':
      directive.length = LengthModifier::Size;
      break;
    case 't':
      directive.length = LengthModifier::PtrDiff;
      break;
    case 'L':
      directive.length = LengthModifier::LongDouble;
      break;
    default:
      return p;
  }
  return p + 1;
}

// Parses the directive that follows a '%'. Returns the position just past its conversion
// unit, or the terminating NUL when the format ends first (directive.conversion then stays 0).
template <typename CharT>
const CharT* parseSpec(const CharT* p, Directive& directive) {
  p = parseFlags(p, directive);
  p = parseWidthAndPrecision(p, directive);
  p = parseLengthModifier(p, directive);
  directive.conversion = unitAt(p);
  return directive.conversion != 0 ? p + 1 : p;
}

bool isKnownConversion(unsigned c) {
  return c != 0 && c < 128 && strchr("diouxXcspneEfFgGaA%", int(c)) != nullptr;
}

// ---- arguments ------------------------------------------------------------------------------

template <typename T>
T nextArg(ArgList& args) {
  return va_arg(args.ap, T);
}

// Reads the '*' width and precision: a negative width means the '-' flag and its magnitude, a
// negative precision means none.
void fetchStarArguments(Directive& directive, ArgList& args) {
  if (directive.widthFromArg) {
    const int width = nextArg<int>(args);
    if (width < 0) directive.leftAlign = true;
    directive.width = clampCount(magnitudeOf(width));
  }
  if (directive.precisionFromArg) {
    const int precision = nextArg<int>(args);
    directive.precision = precision < 0 ? -1 : clampCount(unsigned(precision));
  }
}

// T, or its signed or unsigned counterpart.
template <bool isSigned, typename T>
using WithSign = std::conditional_t<isSigned, std::make_signed_t<T>, std::make_unsigned_t<T>>;

// The integer argument of d or i (isSigned) or of u, o, x or X, read with the type its length
// modifier names (L counts as ll) and widened to intmax_t or uintmax_t.
template <bool isSigned>
WithSign<isSigned, intmax_t> fetchInteger(LengthModifier length, ArgList& args) {
  using Int = WithSign<isSigned, int>;
  switch (length) {
    case LengthModifier::Char:
      return static_cast<WithSign<isSigned, char>>(nextArg<Int>(args));
    case LengthModifier::Short:
      return static_cast<WithSign<isSigned, short>>(nextArg<Int>(args));
    case LengthModifier::Long:
      return nextArg<WithSign<isSigned, long>>(args);
    case LengthModifier::LongLong:
    case LengthModifier::LongDouble:
      return nextArg<WithSign<isSigned, long long>>(args);
    case LengthModifier::IntMax:
      return nextArg<WithSign<isSigned, intmax_t>>(args);
    case LengthModifier::Size:
      return nextArg<WithSign<isSigned, size_t>>(args);
    case LengthModifier::PtrDiff:
      return nextArg<WithSign<isSigned, ptrdiff_t>>(args);
    case LengthModifier::None:
      break;
  }
  return nextArg<Int>(args);
}

// ---- output ---------------------------------------------------------------------------------

// What goes before the leading zeros of a number: its sign and its radix prefix ("0x").
struct Prefix {
  char text[3];
  size_t size = 0;
  void add(char c) { text[size++] = c; }
};

// One field, in output order: the prefix, `zeros` leading zeros, then the body.
template <typename BodyT>
struct Field {
  Prefix prefix;
  size_t zeros;
  const BodyT* body;
  size_t bodySize;
  bool zeroPadWidth;  // fill the width with '0' after the prefix rather than with spaces before it
};

// Appends the field padded to the width: spaces before it, '0' after its prefix, or spaces after
// it with the '-' flag (which wins over '0').
template <typename CharT, typename BodyT>
void appendField(std::basic_string<CharT>& out, const Directive& directive,
                 const Field<BodyT>& field) {
  const size_t size = field.prefix.size + field.zeros + field.bodySize;
  const size_t width = size_t(directive.width);
  const size_t padding = width > size ? width - size : 0;
  const bool zeroFill = field.zeroPadWidth && !directive.leftAlign;
  if (!directive.leftAlign && !zeroFill) out.append(padding, CharT(' '));
  out.append(field.prefix.text, field.prefix.text + field.prefix.size);
  out.append(field.zeros + (zeroFill ? padding : 0), CharT('0'));
  out.append(field.body, field.body + field.bodySize);
  if (directive.leftAlign) out.append(padding, CharT(' '));
}

// A text padded to the width with spaces: strings, characters and the special texts.
template <typename CharT, typename BodyT>
void appendText(std::basic_string<CharT>& out, const Directive& directive, const BodyT* text,
                size_t size) {
  appendField(out, directive, Field<BodyT>{Prefix{}, 0, text, size, false});
}

void addSign(Prefix& prefix, const Directive& directive, bool negative) {
  if (negative) {
    prefix.add('-');
  } else if (directive.plusSign) {
    prefix.add('+');
  } else if (directive.spaceSign) {
    prefix.add(' ');
  }
}

// Writes the digits of `value` so that they end at `end`; returns the first digit.
char* writeDigits(char* end, uintmax_t value, unsigned base, bool upper) {
  const char* digits = upper ? "0123456789ABCDEF" : "0123456789abcdef";
  char* p = end;
  do {
    *--p = digits[value % base];
    value /= base;
  } while (value != 0);
  return p;
}

template <typename CharT>
void appendInteger(std::basic_string<CharT>& out, const Directive& directive, uintmax_t magnitude,
                   const Prefix& prefix, unsigned base) {
  char buffer[sizeof(uintmax_t) * 3];  // room for the octal digits of the largest value
  char* const end = buffer + sizeof buffer;
  const char* digits = writeDigits(end, magnitude, base, directive.conversion == 'X');
  if (directive.precision == 0 && magnitude == 0) digits = end;  // "%.0d" of 0 prints no digit
  const size_t digitCount = size_t(end - digits);
  const size_t precision = directive.precision < 0 ? 0 : size_t(directive.precision);
  size_t zeros = precision > digitCount ? precision - digitCount : 0;
  // "%#o" makes sure the text starts with a '0'.
  if (directive.alternate && base == 8 && zeros == 0 && (digitCount == 0 || magnitude != 0))
    zeros = 1;
  const bool zeroPadWidth = directive.zeroPad && directive.precision < 0;
  appendField(out, directive, Field<char>{prefix, zeros, digits, digitCount, zeroPadWidth});
}

template <typename CharT>
void appendSigned(std::basic_string<CharT>& out, const Directive& directive, intmax_t value) {
  Prefix prefix;
  addSign(prefix, directive, value < 0);
  appendInteger(out, directive, magnitudeOf(value), prefix, 10);
}

template <typename CharT>
void appendHex(std::basic_string<CharT>& out, const Directive& directive, uintmax_t value) {
  Prefix prefix;
  if (directive.alternate && value != 0) {
    prefix.add('0');
    prefix.add(char(directive.conversion));
  }
  appendInteger(out, directive, value, prefix, 16);
}

template <typename CharT>
void appendPointer(std::basic_string<CharT>& out, const Directive& directive, const void* pointer) {
  Prefix prefix;
  prefix.add('0');
  prefix.add('x');
  appendInteger(out, directive, uintptr_t(pointer), prefix, 16);
}

template <typename CharT>
void appendString(std::basic_string<CharT>& out, const Directive& directive, const CharT* text) {
  if (text == nullptr) return appendText(out, directive, "(NULL)", 6);
  // The precision bounds the read: the text need not be terminated within it.
  const size_t limit = directive.precision < 0 ? SIZE_MAX : size_t(directive.precision);
  size_t size = 0;
  while (size < limit && text[size] != 0) ++size;
  appendText(out, directive, text, size);
}

// %hs of the 16-bit engine: UTF-8 text decoded to UTF-16 first (nothing when it is not valid
// UTF-8), then printed as a %s argument.
void appendUtf8String(std::basic_string<zwchar_t>& out, const Directive& directive,
                      const char* text) {
  if (text == nullptr) return appendText(out, directive, "(NULL)", 6);
  const size_t size = strlen(text);
  if (size > size_t(INT_MAX / 2 - 4)) return;  // beyond what the decoder's sizes can express
  // Room as the decoder asks for: two units per byte and four more.
  std::basic_string<zwchar_t> decoded(2 * size + 4, zwchar_t(0));
  const int units = StrUtf8ToUnicode(decoded.data(), int(decoded.size()), text, int(size));
  decoded.resize(size_t(units > 0 ? units : 0));
  appendString(out, directive, decoded.c_str());
}

// The C library writes the locale's decimal point, which may be ',' or several bytes. Every other
// byte of a finite, unsigned conversion is a (hexadecimal) digit, 'x', 'p' or an exponent sign,
// so the one run of other bytes is the decimal point: it becomes '.'. `text` is NUL-terminated;
// returns its new size.
size_t useDotAsDecimalPoint(char* text, size_t size) {
  static const char kNumberBytes[] = "0123456789abcdefABCDEFxXpP+-";
  const size_t point = strspn(text, kNumberBytes);
  if (point == size) return size;
  const size_t after = point + strcspn(text + point, kNumberBytes);
  text[point] = '.';
  memmove(text + point + 1, text + after, size - after + 1);
  return size - (after - point - 1);
}

// The text of one finite, non-negative floating conversion, without sign or width ("%#.*e" and
// the like), with '.' as the decimal point.
class FloatDigits {
 public:
  template <typename Float>
  FloatDigits(const Directive& directive, Float magnitude) {
    char format[8];
    buildFormat(format, directive, std::is_same_v<Float, long double>);
    const int size = snprintf(local_, sizeof local_, format, directive.precision, magnitude);
    text_ = local_;
    if (size < 0) {  // the C library failed: no digits rather than undefined bytes
      local_[0] = '\0';
      size_ = 0;
      return;
    }
    if (size >= int(sizeof local_)) {
      heap_.resize(size_t(size) + 1);
      snprintf(heap_.data(), heap_.size(), format, directive.precision, magnitude);
      text_ = heap_.data();
    }
    size_ = useDotAsDecimalPoint(text_, size_t(size));
  }
  FloatDigits(const FloatDigits&) = delete;
  FloatDigits& operator=(const FloatDigits&) = delete;

  const char* data() const { return text_; }
  size_t size() const { return size_; }

 private:
  static void buildFormat(char* format, const Directive& directive, bool longDouble) {
    char* p = format;
    *p++ = '%';
    if (directive.alternate) *p++ = '#';
    *p++ = '.';
    *p++ = '*';
    if (longDouble) *p++ = 'L';
    *p++ = char(directive.conversion);
    *p = '\0';
  }

  char local_[128];
  std::string heap_;
  char* text_;
  size_t size_;
};

template <typename CharT, typename Float>
void appendFloat(std::basic_string<CharT>& out, const Directive& directive, Float value) {
  if (std::isnan(value)) return appendText(out, directive, "NaN", 3);
  const bool negative = std::signbit(value);
  if (std::isinf(value)) return appendText(out, directive, negative ? "-Inf" : "+Inf", 4);
  const FloatDigits digits(directive, std::fabs(value));
  Prefix prefix;
  addSign(prefix, directive, negative);
  // The "0x" of %a joins the prefix, so that zero padding goes after it.
  const bool hexFloat = directive.conversion == 'a' || directive.conversion == 'A';
  const size_t radixSize = hexFloat ? 2 : 0;
  for (size_t i = 0; i < radixSize; ++i) prefix.add(digits.data()[i]);
  appendField(out, directive,
              Field<char>{prefix, 0, digits.data() + radixSize, digits.size() - radixSize,
                          directive.zeroPad});
}

template <typename CharT>
void appendConversion(std::basic_string<CharT>& out, const Directive& directive, ArgList& args) {
  switch (directive.conversion) {
    case 'd':
    case 'i':
      return appendSigned(out, directive, fetchInteger<true>(directive.length, args));
    case 'u':
      return appendInteger(out, directive, fetchInteger<false>(directive.length, args), Prefix{},
                           10);
    case 'o':
      return appendInteger(out, directive, fetchInteger<false>(directive.length, args), Prefix{},
                           8);
    case 'x':
    case 'X':
      return appendHex(out, directive, fetchInteger<false>(directive.length, args));
    case 'p':
      return appendPointer(out, directive, nextArg<const void*>(args));
    case 'c': {
      const CharT c = static_cast<CharT>(nextArg<int>(args));
      return appendText(out, directive, &c, 1);
    }
    case 's':
      if constexpr (!std::is_same_v<CharT, char>) {
        if (directive.length == LengthModifier::Short) {
          return appendUtf8String(out, directive, nextArg<const char*>(args));
        }
      }
      return appendString(out, directive, nextArg<const CharT*>(args));
    case 'n':  // the pointer is consumed, never written through
      nextArg<void*>(args);
      return;
    case '%':
      out.push_back(CharT('%'));
      return;
    default:  // e E f F g G a A
      if (directive.length == LengthModifier::LongDouble) {
        return appendFloat(out, directive, nextArg<long double>(args));
      }
      return appendFloat(out, directive, nextArg<double>(args));
  }
}

template <typename CharT>
const CharT* findPercentOrEnd(const CharT* p) {
  while (*p != 0 && unitAt(p) != '%') ++p;
  return p;
}

}  // namespace

template <typename CharT>
void formatPrintf(std::basic_string<CharT>& out, const CharT* fmt, va_list args) {
  ArgList list;
  va_copy(list.ap, args);
  const CharT* p = fmt;
  while (*p != 0) {
    const CharT* percent = findPercentOrEnd(p);
    out.append(p, percent);
    if (*percent == 0) break;
    Directive directive;
    p = parseSpec(percent + 1, directive);
    if (isKnownConversion(directive.conversion)) {
      fetchStarArguments(directive, list);
      appendConversion(out, directive, list);
    } else {
      out.append(percent, p);
    }
  }
  va_end(list.ap);
}

template void formatPrintf<char>(std::string& out, const char* fmt, va_list args);
template void formatPrintf<zwchar_t>(std::basic_string<zwchar_t>& out, const zwchar_t* fmt,
                                     va_list args);

}  // namespace zeb::internal

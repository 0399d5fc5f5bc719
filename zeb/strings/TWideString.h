// TWideString.h: the library's owning 16-bit string (UTF-16 code units, zwchar_t).
//
// TWideString is the 16-bit twin of TAnsiString: every TAnsiString member exists here with
// zwchar_t in place of char and follows the same rules, with lengths, positions and capacities
// counted in 16-bit units. It stores only the buffer pointer and its capacity (units allocated,
// NUL included); the length is found by scanning for the NUL each time. Case folding and
// character classes are ASCII only: 'a'..'z' and 'A'..'Z' fold, every other unit (U+00E9
// included) stays as it is.
//
// A null buffer and a buffer whose first unit is NUL are both "empty". The getters return the
// buffer as it is, so they may return null for a default-constructed string; use nullStr() or
// isEmpty() where a C string is required. Bad arguments never fail: null pointers and
// out-of-range positions or counts give the neutral result each member documents (no change, an
// empty result, 0 or -1).
//
// Growth: appending or inserting n units to a string of length L and capacity C reallocates only
// when L + n + 1 > C, and then to C + C/2 + 1 + n units.
//
// The mixed-width members take 8-bit text in the ANSI code page: each converts its argument to a
// temporary TWideString (as TWideString(s, MIB_ANSI) does) and applies the 16-bit member to it.
//
//   TWideString name(ZW("report"));
//   name += ".csv";                                   // 8-bit text, converted from ANSI
//   if (name.isEndsWith(ZW(".CSV"), true)) name.insert(ZW("2024-"), 0);
//   TAnsiString bytes = name.utf8();
//
// One object must not be used from two threads at once.
#ifndef ZEB_STRINGS_TWIDESTRING_H
#define ZEB_STRINGS_TWIDESTRING_H

#include <stdarg.h>

#include "zeb/charset/zeb_charset.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/zeb_api.h"

class ZEB_API TWideString {
 public:
  // ---- construction and assignment -----------------------------------------------------------

  TWideString() = default;
  // Null `s`, empty `s` or len 0: null buffer. len < 0: up to the NUL. Otherwise exactly len + 1
  // units holding `len` units of `s` (embedded NULs included) and a NUL.
  TWideString(const zwchar_t* s, int len = -1);
  // capacity < 1: null buffer; otherwise exactly `capacity` units holding "".
  TWideString(int capacity, tcapacityTag);
  TWideString(const TWideString& other);
  TWideString(TWideString&& other) noexcept;
  virtual ~TWideString();

  TWideString& operator=(const TWideString& other);
  TWideString& operator=(TWideString&& other) noexcept;
  TWideString& operator=(const zwchar_t* s);

  // Null/empty `s` or len 0 frees the buffer. len < 0: up to the NUL. When len < capacity the
  // units are copied into the existing buffer; otherwise a buffer of exactly len + 1 units
  // replaces it. The copy stops at a NUL within `len` (zeros fill up to `len`); `s` may point
  // into this string's own buffer.
  TWideString& setText(const zwchar_t* s, int len = -1);
  TWideString& assign(const zwchar_t* s, int len = -1);
  TWideString& assign(const TWideString& other);
  TWideString& copy(const TWideString& other);
  // Length-limited copies: the content becomes at most `n` units of `s`, fewer when `s` ends
  // first (n < 0: all of `s`). Exactly setText(s, n): null/empty `s` or n 0 frees the buffer.
  TWideString& ncopy(const zwchar_t* s, int n);
  TWideString& ncopy(const TWideString& s, int n);

  // ---- buffer access --------------------------------------------------------------------------

  const zwchar_t* getBuffer() const { return buffer; }
  zwchar_t* data() { return buffer; }
  const zwchar_t* data() const { return buffer; }
  const zwchar_t* p() const { return buffer; }
  operator const zwchar_t*() const { return buffer; }

  // Units before the NUL (0 for a null buffer).
  int length() const;
  bool isEmpty() const { return buffer == nullptr || buffer[0] == 0; }
  bool isNotEmpty() const { return !isEmpty(); }
  int getCapacity() const { return capacity; }

  // Hands the buffer to the caller (release it with delete[]); the string becomes null.
  zwchar_t* releasePtr();
  // Frees the buffer; the string becomes null.
  void deleteBuffer();

  // One process-wide empty string (null buffer), built on first use.
  static const TWideString& nullStr();

  // ---- appending: every form follows the growth rule; null, "" or NUL appends nothing ---------
  // An explicit length takes at most `len` units and stops at a NUL (len < 0: all). The text may
  // be this string's own (s.append(s) doubles it).

  TWideString& cat(const zwchar_t* s);
  TWideString& ncat(const zwchar_t* s, int n);
  TWideString& append(const zwchar_t* s, int len = -1);
  TWideString& append(const TWideString& s);
  TWideString& appendChar(zwchar_t c);
  TWideString& operator+=(const zwchar_t* s);
  TWideString& operator+=(const TWideString& s);
  TWideString& operator+=(zwchar_t c);
  TWideString operator+(const zwchar_t* s) const;
  TWideString operator+(const TWideString& s) const;
  TWideString operator+(zwchar_t c) const;

  // ---- numbers --------------------------------------------------------------------------------

  // Replace the content with the decimal text of the value, '0'-padded after the sign to at least
  // `minDigits` characters ("-042" for -42 with 4). A buffer smaller than 50 units (or than
  // minDigits + 1, for wider padding) is replaced by one of exactly that size.
  TWideString& fromInt32(int value, int minDigits = 0);
  TWideString& fromUInt32(unsigned int value, int minDigits = 0);
  TWideString& fromInt64(long long value, int minDigits = 0);
  TWideString& fromUInt64(unsigned long long value, int minDigits = 0);
  TWideString& inttostr(long long value, int minDigits = 0);
  TWideString& uinttostr(unsigned long long value, int minDigits = 0);
  // Write the decimal text and a NUL into `out` (at least 22 units, or minDigits + 1); return the
  // units written, NUL not counted. Null `out` returns 0.
  static int inttostrs(zwchar_t* out, long long value, int minDigits, bool isUnsigned);
  static int uinttostrs(zwchar_t* out, unsigned long long value, int minDigits);

  // Hexadecimal text of the value, '0'-padded to `width` digits; the buffer as for fromInt32.
  TWideString& fromInt32ToHex(unsigned int value, int width = 0, bool upper = true);
  TWideString& fromInt64ToHex(unsigned long long value, int width = 0, bool upper = true);
  // Two upper-case digits per byte; a non-zero `separator` unit goes between bytes ("0A 1B" with
  // ' '), in a new buffer of exactly the size needed. Null `bytes` or count < 1 gives "" (the
  // buffer kept).
  TWideString& fromHex(const void* bytes, int count, int separator = 0);

  // Decimal parsing: skip `start` units, then spaces and '\t'..'\r', one optional sign, then at
  // most `maxDigits` digits (< 0: unlimited). No overflow check: the value wraps. No number: 0.
  int toInt32(int start = 0, int maxDigits = -1) const;
  long long toInt64(int start = 0, int maxDigits = -1) const;
  static int strtoint(const zwchar_t* s, int start = 0, int maxDigits = -1);
  static unsigned int strtouint(const zwchar_t* s, int start = 0, int maxDigits = -1);
  static long long strtoint64(const zwchar_t* s, int start = 0, int maxDigits = -1);
  static unsigned long long strtouint64(const zwchar_t* s, int start = 0, int maxDigits = -1);
  // Floating-point parsing as TAnsiString::toDouble ('.' whatever the locale); the number ends at
  // the first unit outside ASCII.
  float toFloat() const;
  double toDouble() const;

  // True when every unit (of the first `len`, len < 0: all) is a digit; with allowSignAndPoint
  // '.', '+' and '-' may also appear anywhere. Null, empty or len 0: false.
  bool isNumeric(bool allowSignAndPoint = false) const;
  static bool isNumeric(const zwchar_t* s, int len, bool allowSignAndPoint);

  // Hexadecimal value read from the end, as hextoint(s, 0) reads bytes (see zeb_cstr.h): each
  // unit c gives the nibble (c - 7 * bit6(c)) & 15; reading stops at the start, before a
  // preceding 'x' or 'X', or after 16 digits.
  unsigned long long HexToInt() const;
  static unsigned long long HexToInt(const zwchar_t* s);
  // Non-empty and only '0'..'9', 'A'..'F', 'a'..'f' ("0x1F" is not).
  bool isHex() const;

  // ---- search: a unit index, or -1 --------------------------------------------------------------

  // Deliberately asymmetric: the second argument is a count of leading units to skip (the search
  // starts at index `skip`) and the search is always case-sensitive. Use posSubStr to fold case.
  int Find(const zwchar_t* sub, tCaseSensitivity skip = CaseSensitive) const;
  // First occurrence at or after `start`; -1 when this or `sub` is empty or the string ends
  // before `start`. Folds ASCII case when `cs` is non-zero.
  int posSubStr(const zwchar_t* sub, int start = 0, tCaseSensitivity cs = CaseSensitive) const;
  // First occurrence of `c` at or after `start` (a start past the end gives -1).
  int posSubChar(zwchar_t c, int start = 0, tCaseSensitivity cs = CaseSensitive) const;
  int find(zwchar_t c, int start = 0, tCaseSensitivity cs = CaseSensitive) const;
  // Backwards from index `from`; from < 0 or past the last unit starts at the last unit. Folds
  // case only when `cs` is exactly CaseInsensitive.
  int reverseFind(zwchar_t c, int from = -1, tCaseSensitivity cs = CaseSensitive) const;
  // The last occurrence of `sub` that starts at or before `from` (same start rule); folds when
  // `cs` is non-zero. -1 when either is empty.
  int reverseFind(const zwchar_t* sub, int from = -1, tCaseSensitivity cs = CaseSensitive) const;
  bool contain(const zwchar_t* sub, tCaseSensitivity cs = CaseSensitive) const;
  bool contain(zwchar_t c, tCaseSensitivity cs = CaseSensitive) const;
  bool contain(const char* sub, tCaseSensitivity cs = CaseSensitive) const;
  int countOfChar(zwchar_t c) const;
  // Prefix / suffix tests; an empty prefix or suffix is always found.
  bool beginWith(const zwchar_t* prefix, bool ignoreCase = false) const;
  bool beginWith(const char* prefix, bool ignoreCase = false) const;
  bool isEndsWith(const zwchar_t* suffix, bool ignoreCase = false) const;
  bool isEndsWith(const char* suffix, bool ignoreCase = false) const;

  // ---- comparison -----------------------------------------------------------------------------

  // Empty (null or "") sorts before everything else and equals another empty. Otherwise units
  // compare as unsigned values, ASCII letters folded when `cs` is non-zero; the result is -1, 0
  // or 1.
  int compare(const zwchar_t* s, tCaseSensitivity cs = CaseSensitive) const;
  int compare(const TWideString& s, tCaseSensitivity cs = CaseSensitive) const;
  int compare(const char* s, tCaseSensitivity cs = CaseSensitive) const;
  // As compare, over at most `n` units (n < 1: 0).
  int ncompare(const zwchar_t* s, int n, tCaseSensitivity cs = CaseSensitive) const;
  int ncompare(const char* s, int n, tCaseSensitivity cs = CaseSensitive) const;
  bool equal(const zwchar_t* s, tCaseSensitivity cs = CaseSensitive) const;
  bool equal(const TWideString& s, tCaseSensitivity cs = CaseSensitive) const;
  bool equalIgnoreCase(const zwchar_t* s) const;
  bool equalIgnoreCase(const char* s) const;

  bool operator==(const TWideString& s) const { return equal(s); }
  bool operator==(const zwchar_t* s) const { return equal(s); }
  bool operator==(zwchar_t c) const;
  bool operator==(const char* s) const;
  bool operator==(char c) const;
  bool operator!=(const TWideString& s) const { return !equal(s); }
  bool operator!=(const zwchar_t* s) const { return !equal(s); }
  bool operator!=(zwchar_t c) const { return !(*this == c); }
  bool operator!=(const char* s) const { return !(*this == s); }
  bool operator!=(char c) const { return !(*this == c); }
  bool operator<(const TWideString& s) const { return compare(s) < 0; }
  bool operator>(const TWideString& s) const { return compare(s) > 0; }
  bool operator<=(const TWideString& s) const { return compare(s) <= 0; }
  bool operator>=(const TWideString& s) const { return compare(s) >= 0; }
  bool operator<(const zwchar_t* s) const { return compare(s) < 0; }
  bool operator>(const zwchar_t* s) const { return compare(s) > 0; }
  bool operator<=(const zwchar_t* s) const { return compare(s) <= 0; }
  bool operator>=(const zwchar_t* s) const { return compare(s) >= 0; }

  // ---- editing in place -----------------------------------------------------------------------

  // Insert at unit `pos`; pos < 0 counts as 0 and pos past the end appends. len < 0: all of `s`;
  // otherwise at most `len` units, stopping at a NUL. The growth rule applies. The 8-bit form
  // converts `s` (its first `len` bytes, len < 0: all) from ANSI first.
  TWideString& insert(const zwchar_t* s, int pos, int len = -1);
  TWideString& insert(const TWideString& s, int pos);
  TWideString& insert(zwchar_t c, int pos);
  TWideString& insert(const char* s, int pos, int len = -1);
  // No change when pos < 0, count < 1 or pos + count > length.
  TWideString& remove(int pos, int count);
  // Keep the first n units (n < 1 empties; n >= length: no change).
  TWideString& trunc(int n);
  // Keep the last n units (n < 1 empties; n >= length: no change).
  TWideString& truncRight(int n);
  // Drop the last n units (n < 1: no change; n >= length empties).
  TWideString& chop(int n);
  // Removes the last unit when it equals `c` (one unit at most); an empty string is unchanged.
  TWideString& removeEndedCharIf(zwchar_t c);
  // n > 0: n copies of c in a buffer of exactly n + 1 units. n < 0: overwrite every unit with c.
  // n == 0: empty.
  TWideString& fill(zwchar_t c, int n);
  // Append n further copies of the content, which becomes n + 1 copies of itself; the buffer
  // grows to exactly (n + 1) * length + 1 units when it is smaller. n < 1 or empty: no change.
  TWideString& repeatContent(int n);
  // The content becomes n copies of itself in total: repeatContent(n - 1). n < 2 or empty: no
  // change.
  TWideString& reduplicate(int n);
  // Remove leading / trailing units found in the 8-bit `set`; a null set means ' ' only. Only
  // units below 128 can be in the set: a unit of 128 or more is never removed.
  TWideString& trim(const char* set = nullptr);
  TWideString& trimLeft(const char* set = nullptr);
  TWideString& trimRight(const char* set = nullptr);
  TWideString& replace(zwchar_t from, zwchar_t to);
  // Every non-overlapping occurrence of `from`, left to right, becomes `to` (null `to`: removed).
  // Null or empty `from`: no change.
  TWideString& replace(const zwchar_t* from, const zwchar_t* to, bool ignoreCase = false);
  // Remove every unit c with low <= c <= high (units compare unsigned), high 0 meaning `low`
  // alone. The result goes into a new buffer of the same capacity.
  TWideString& removeChr(zwchar_t low, zwchar_t high = 0);
  // ASCII only: 'A'..'Z' <-> 'a'..'z'; every other unit is unchanged.
  TWideString& toLower();
  TWideString& toUpper();
  // First unit NUL; the buffer is kept.
  TWideString& clear();
  // Every unit of the buffer NUL; the buffer is kept.
  TWideString& zeroString();
  // n <= 0 frees. onlyGrow and capacity > n: no change. Otherwise exactly n units, the content
  // kept (truncated or zero-extended) when keepContent. Always true.
  bool setCapacity(int n, bool keepContent = true, bool onlyGrow = false);
  // An empty string in a buffer of exactly n units (n <= 0: null): setCapacity(n, false, false).
  bool resetCapacity(int n);

  // ---- extraction: new strings ----------------------------------------------------------------

  // start < 0 counts as 0; a start past the end or count 0 gives ""; count < 0: to the end.
  TWideString substring(int start, int count = -1) const;
  TWideString left(int n) const;
  // The last n units (n > length: all).
  TWideString last(int n) const;
  // Same as last(n).
  TWideString right(int n) const;
  // The n-th (from 0) word of the content, words being separated by runs of spaces and tabs.
  TWideString getNSubStr(int n) const;
  // The part after the n-th occurrence of `c` counted from the end (n < 1 counts as 1); the whole
  // string when `c` occurs fewer than n times.
  TWideString getCharRSubStr(int n, zwchar_t c) const;
  TWideString dup() const;

  // Unit at index i; 0 when i is out of range or the string is empty.
  zwchar_t getChar(int i) const;
  zwchar_t at(int i) const { return getChar(i); }
  zwchar_t operator[](int i) const { return getChar(i); }
  zwchar_t front() const { return getChar(0); }
  zwchar_t back() const;

  // ---- conversion from and to 8-bit encodings ------------------------------------------------
  // Conversions never crash on bad input. fromUTF8, fromANSI and fromAny start from an empty
  // string, so a failed conversion leaves "" (a null `s`: a null string); the others keep the old
  // content when the conversion fails or produces nothing. They return true when the content was
  // converted.

  // Builds the string from `s` in charset `cs`: 106 UTF-8, 1 ANSI, 2025 GB2312, 3 ASCII (as
  // fromASCIIQuick), any other value through fromAny.
  TWideString(const char* s, tmibcharset cs);
  TWideString(const TAnsiString& s, tmibcharset cs);
  bool fromUTF8(const char* s);
  bool fromANSI(const char* s);
  // From GB2312; the digit order of the name is deliberate.
  bool fromGB3212(const char* s);
  // From charset `cs` (named as MIBCharsetValueToName names it), `len` bytes (-1: up to the NUL).
  bool fromAny(tmibcharset cs, const char* s, int len = -1);
  // Widens the bytes below 128 one unit each, stopping after `len` bytes (0: up to the NUL) or at
  // the first byte of 128 or more.
  TWideString& fromASCIIQuick(const char* s, unsigned int len = 0);
  // The content in the ANSI code page / in UTF-8.
  TAnsiString ansi() const;
  TAnsiString utf8() const;
  // The 8-bit text (ANSI code page) converted, then assigned or appended.
  TWideString& operator=(const char* s);
  TWideString& append(const char* s, int len = -1);
  TWideString& operator+=(const char* s);
  TWideString& operator+=(char c);
  TWideString& operator+=(const TAnsiString& s);
  TWideString operator+(const TAnsiString& s) const;
  TWideString operator+(char c) const;

  // ---- paths: '/' and '\\' are both separators ----------------------------------------------

  // Replace the content with its file name, directory (separator kept), drive ("C:"), extension
  // (without the dot) or file name without extension. A null buffer reads as "".
  TWideString& extractFileName();
  TWideString& extractFileDir();
  TWideString& extractFileDriver();
  TWideString& extractFileExt();
  TWideString& extractFileNameNoExt();
  // Every run of '/' and '\\' becomes one `sep` (0: '\\'); a leading UNC "\\\\" is kept.
  TWideString& normalizeFileNameSplash(zwchar_t sep = 0);
  // Makes the content usable as a file name: units that file systems reject in names ('<', '>',
  // ':', '"', '|', '?', '*' and controls below 32) become '_', and so do '/' and '\\' unless
  // keepPath; with keepPath a drive colon at index 1 after a letter is kept. Trailing spaces and
  // dots are removed.
  TWideString& normalizeFileName(bool keepPath);
  // Non-empty and ending in '/' or '\\' (the argument is not consulted).
  bool isEndWithBacksplash(zwchar_t sep = 0) const;
  // Appends `sep` (0: '\\') unless the content already ends in '/' or '\\'.
  TWideString& ensureEndWithBacksplash(zwchar_t sep = 0);
  // Removes one trailing '/' or '\\'.
  TWideString& removeEndedBacksplash();
  // At least two units, and the first or the second is '"'.
  bool isQuoted() const;
  // "" becomes "\"\""; otherwise a '"' is added in front and at the end where missing.
  TWideString& ensureQuoted();
  // The file-name part of a URL: the last path segment, without query ("?...") or fragment
  // ("#...").
  TWideString extractFileNameFromURL() const;

  // ---- text extraction and formatting ---------------------------------------------------------
  // As the TAnsiString members of the same names, over units.

  // The content becomes the text between the first `startTag` at or after `start` in `text` and
  // the following `endTag` (a null or empty `endTag` means to the end). *next, when given,
  // receives the index just past the end tag, ready to be the next call's `start`. Returns false
  // (content "", *next -1) when a tag is missing, `startTag` is null or empty, or `start` lies
  // past the end of `text` (a negative start counts as 0).
  bool fromBetweenTag(const zwchar_t* text, const zwchar_t* startTag, const zwchar_t* endTag,
                      bool ignoreCase = false, int start = 0, int* next = nullptr);
  // The content becomes field `index` (from 0) of `text` from unit `start`, fields being
  // separated by the string `sep` (matched case-sensitively; a null or empty `sep` makes the rest
  // of the text one field); units in `trimSet` (null: none) are trimmed from both ends of the
  // field. *next receives the index after the field's separator, or -1 after the last field.
  // Returns false (content "", *next -1) when there are fewer fields, index < 0 or `start` lies
  // past the end (a negative start counts as 0).
  bool fromToken(const zwchar_t* text, const zwchar_t* sep, int index, int start = 0,
                 int* next = nullptr, const zwchar_t* trimSet = nullptr);
  // fromBetweenTag / fromToken applied to this string's content, giving a new string.
  TWideString subStringFromTags(const zwchar_t* startTag, const zwchar_t* endTag,
                                bool ignoreCase = false, int start = 0, int* next = nullptr) const;
  TWideString subStringFromToken(const zwchar_t* sep, int index, int start = 0, int* next = nullptr,
                                 const zwchar_t* trimSet = nullptr) const;
  // The content becomes the first line of `text` (without "\r\n", "\n" or "\r"); returns the start
  // of the next line, or null when there is none. Null `text`: content "" and null.
  const zwchar_t* fromFirstLine(const zwchar_t* text);

  // Parses "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX", with or without braces, into a 16-byte GUID.
  // False, guid untouched, on bad text or a null `guid`.
  bool hexToGUID(void* guid) const;
  // Upper-case GUID text, in braces when `braces`; a null `guid` gives "".
  TWideString& fromGUID(const void* guid, bool braces = true);

  // The first four-digit run in `text` that is not part of a longer digit run and lies in
  // [minYear, maxYear]; 0 when none or for a null `text`. extractYearEX removes it from `text`
  // when `removeIt`, with one space next to it: the one before, or else the one after.
  static int extractYearEX(zwchar_t* text, bool removeIt, int minYear, int maxYear);
  static int extractYear(const zwchar_t* text, int minYear, int maxYear);

  // "512 B", "1.50 KB", ... as TAnsiString::fromFileSize; `separator` (null: " ") goes between
  // the number and the unit.
  TWideString& fromFileSize(long long bytes, const zwchar_t* separator = nullptr);
  // "h:mm:ss" (hours unbounded; negative values get a leading '-').
  TWideString& fromSeconds(int seconds);
  // Milliseconds with `decimals` decimals (clamped to 0..17) and the unit: "12.35 ms".
  TWideString& fromMs(double ms, int decimals = 2);
  // Fixed-point text with `decimals` decimals (at most 17), '.' as the decimal point.
  TWideString& fromFloat(double value, unsigned int decimals = 2);

  // printf-style formatting with the conventions of TAnsiString::sprintf over 16-bit units:
  // %s and %ls take a const zwchar_t*; %hs takes a NUL-terminated const char* in UTF-8, decoded
  // to UTF-16 (text that is not valid UTF-8 prints as nothing), its precision counting the units
  // of the decoded text; %c takes a zwchar_t (promoted to int). Returns the length of the new
  // content; a null format gives "" and 0.
  int sprintf(const zwchar_t* fmt, ...);
  int sprintfArgs(const zwchar_t* fmt, va_list args);
  // Formatted with the 8-bit engine (TAnsiString::sprintf), the format and the text arguments
  // being in the ANSI code page (sprintfA), GB2312 (sprintfGB) or UTF-8 (sprintfFormatA); the
  // result is converted to UTF-16. A null format or a failed conversion gives "" and 0.
  int sprintfA(const char* fmt, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 2, 3)))
#endif
      ;
  int sprintfGB(const char* fmt, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 2, 3)))
#endif
      ;
  int sprintfFormatA(const char* fmt, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 2, 3)))
#endif
      ;

  // ---- hashing --------------------------------------------------------------------------------

  // SuperFastHash over 16-bit units read unsigned, one unit where the 8-bit hash reads a pair of
  // bytes; 0 for null, len 0 or "". len < 0: up to the NUL; otherwise exactly `len` units.
  static unsigned int hashValue(const zwchar_t* s, int len = -1);
  unsigned int hashValue() const;
  // MurmurHash64B over the units as little-endian 32-bit words (two units each, alternating
  // between the two lanes), seed 0xEE6B27EB xor the unit count; a last single unit is the tail (its
  // low byte, then its high byte << 8, xored into the second lane). 0 for null, len 0 or "".
  // len < 0: up to the NUL; otherwise exactly `len` units.
  static unsigned long long hashValue64(const zwchar_t* s, int len = -1);
  unsigned long long hashValue64() const;

  // ---- C-string helpers -----------------------------------------------------------------------

  // Length + 1, or 0 for null.
  static int getSize(const zwchar_t* s);
  // Units before the NUL, or 0 for null.
  static int length(const zwchar_t* s);
  // A new[] copy (release with delete[]), or null for null.
  static zwchar_t* dup(const zwchar_t* s);

 protected:
  zwchar_t* buffer = nullptr;
  int capacity = 0;

 private:
  // Comparing a string with an integer is a mistake: these keep `s == 0` from compiling.
  bool operator==(int) const;
  bool operator!=(int) const;
  // Appending a number appends its decimal text; private so that `s += 5` is not mistaken for a
  // character append.
  TWideString& operator+=(int value);
  TWideString& operator+=(unsigned int value);
  TWideString& operator+=(long long value);
  TWideString& operator+=(unsigned long long value);
  TWideString operator+(int value) const;
  TWideString operator+(unsigned int value) const;
  TWideString operator+(long long value) const;
  TWideString operator+(unsigned long long value) const;
};

#endif  // ZEB_STRINGS_TWIDESTRING_H

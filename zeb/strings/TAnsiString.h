// TAnsiString.h: the library's owning 8-bit string.
//
// A TAnsiString is a NUL-terminated byte buffer that the object allocates, grows and frees. It
// stores only the buffer pointer and its capacity (bytes allocated, NUL included); the length is
// found by scanning for the NUL each time. The bytes are opaque: ANSI, UTF-8 or any other 8-bit
// encoding. Case folding and character classes are ASCII only.
//
// A null buffer and a buffer whose first byte is NUL are both "empty". The getters return the
// buffer as it is, so they may return null for a default-constructed string; use nullStr() or
// isEmpty() where a C string is required. Bad arguments never fail: null pointers and
// out-of-range positions or counts give the neutral result each member documents (no change, an
// empty result, 0 or -1).
//
// Growth: appending or inserting n bytes to a string of length L and capacity C reallocates only
// when L + n + 1 > C, and then to C + C/2 + 1 + n bytes.
//
//   TAnsiString s("report");
//   s += ".csv";
//   if (s.isEndsWith(".CSV", true)) s.insert("2024-", 0);   // "2024-report.csv"
//   unsigned h = s.hashValue();
//
// One object must not be used from two threads at once.
#ifndef ZEB_STRINGS_TANSISTRING_H
#define ZEB_STRINGS_TANSISTRING_H

#include <stdarg.h>

#include "zeb/charset/zeb_charset.h"
#include "zeb/zeb_api.h"

class TWideString;

// 0: bytes compare exactly. Any non-zero value: ASCII letters fold before comparing. The int
// underlying type makes every int a valid value (Find takes a count of bytes to skip here).
enum tCaseSensitivity : int { CaseSensitive = 0, CaseInsensitive = 1 };

// Selects the capacity-reserving constructor.
struct tcapacityTag {};

class ZEB_API TAnsiString {
 public:
  // ---- construction and assignment -----------------------------------------------------------

  TAnsiString() = default;
  // Null `s`, empty `s` or len 0: null buffer. len < 0: up to the NUL. Otherwise exactly len + 1
  // bytes holding `len` bytes of `s` (embedded NULs included) and a NUL.
  TAnsiString(const char* s, int len = -1);
  // capacity < 1: null buffer; otherwise exactly `capacity` bytes holding "".
  TAnsiString(int capacity, tcapacityTag);
  TAnsiString(const TAnsiString& other);
  TAnsiString(TAnsiString&& other) noexcept;
  virtual ~TAnsiString();

  TAnsiString& operator=(const TAnsiString& other);
  TAnsiString& operator=(TAnsiString&& other) noexcept;
  TAnsiString& operator=(const char* s);

  // Null/empty `s` or len 0 frees the buffer. len < 0: strlen. When len < capacity the bytes are
  // copied into the existing buffer; otherwise a buffer of exactly len + 1 bytes replaces it. The
  // copy works like strncpy (it stops at a NUL within `len`, zeros fill up to `len`); `s` may
  // point into this string's own buffer.
  TAnsiString& setText(const char* s, int len = -1);
  TAnsiString& assign(const char* s, int len = -1);
  TAnsiString& assign(const TAnsiString& other);
  TAnsiString& copy(const TAnsiString& other);

  // ---- buffer access --------------------------------------------------------------------------

  const char* getBuffer() const { return buffer; }
  char* data() { return buffer; }
  const char* data() const { return buffer; }
  const char* p() const { return buffer; }
  operator const char*() const { return buffer; }

  int length() const;
  bool isEmpty() const { return buffer == nullptr || buffer[0] == '\0'; }
  bool isNotEmpty() const { return !isEmpty(); }
  int getCapacity() const { return capacity; }

  // Hands the buffer to the caller (release it with delete[]); the string becomes null.
  char* releasePtr();
  // Frees the buffer; the string becomes null.
  void deleteBuffer();

  // One process-wide empty string (null buffer), built on first use.
  static const TAnsiString& nullStr();

  // ---- appending: every form follows the growth rule; null, "" or NUL appends nothing ---------
  // An explicit length takes at most `len` bytes and stops at a NUL (len < 0: strlen). The text
  // may be this string's own (s.append(s) doubles it).

  TAnsiString& cat(const char* s);
  TAnsiString& ncat(const char* s, int n);
  TAnsiString& append(const char* s, int len = -1);
  TAnsiString& append(const TAnsiString& s);
  TAnsiString& appendChar(char c);
  TAnsiString& operator+=(const char* s);
  TAnsiString& operator+=(const TAnsiString& s);
  TAnsiString& operator+=(char c);
  TAnsiString operator+(const char* s) const;
  TAnsiString operator+(const TAnsiString& s) const;
  TAnsiString operator+(char c) const;

  // ---- numbers --------------------------------------------------------------------------------

  // Replace the content with the decimal text of the value, '0'-padded after the sign to at least
  // `minDigits` characters ("-042" for -42 with 4). A buffer smaller than 50 bytes (or than
  // minDigits + 1, for wider padding) is replaced by one of exactly that size.
  TAnsiString& fromInt32(int value, int minDigits = 0);
  TAnsiString& fromUInt32(unsigned int value, int minDigits = 0);
  TAnsiString& fromInt64(long long value, int minDigits = 0);
  TAnsiString& fromUInt64(unsigned long long value, int minDigits = 0);
  TAnsiString& inttostr(long long value, int minDigits = 0);
  TAnsiString& uinttostr(unsigned long long value, int minDigits = 0);
  // Write the decimal text and a NUL into `out` (at least 22 bytes, or minDigits + 1); return the
  // characters written, NUL not counted. Null `out` returns 0.
  static int inttostrS(char* out, long long value, int minDigits, bool isUnsigned);
  static int uinttostrS(char* out, unsigned long long value, int minDigits);

  // Hexadecimal text of the value, '0'-padded to `width` digits; the buffer as for fromInt32.
  TAnsiString& fromInt32ToHex(unsigned int value, int width = 0, bool upper = true);
  TAnsiString& fromInt64ToHex(unsigned long long value, int width = 0, bool upper = true);
  // Two upper-case digits per byte; a non-zero `separator` character goes between bytes
  // ("0A 1B" with ' '), in a new buffer of exactly the size needed. Null `bytes` or count < 1
  // gives "" (the buffer kept).
  TAnsiString& fromHex(const void* bytes, int count, int separator = 0);

  // Decimal parsing: skip `start` bytes, then spaces and '\t'..'\r', one optional sign, then at
  // most `maxDigits` digits (< 0: unlimited). No overflow check: the value wraps. No number: 0.
  int toInt32(int start = 0, int maxDigits = -1) const;
  long long toInt64(int start = 0, int maxDigits = -1) const;
  static int strtoint(const char* s, int start = 0, int maxDigits = -1);
  static unsigned int strtouint(const char* s, int start = 0, int maxDigits = -1);
  static long long strtoint64(const char* s, int start = 0, int maxDigits = -1);
  static unsigned long long strtouint64(const char* s, int start = 0, int maxDigits = -1);
  // Floating-point parsing with '.' as the decimal point whatever the process locale, after
  // leading spaces and '\t'..'\r': one optional sign, then decimal notation with an optional
  // exponent, "0x" hexadecimal notation, "inf"/"infinity" or "nan" (as strtod). No number, or
  // one beyond the range of the type, gives 0.
  float toFloat() const;
  double toDouble() const;

  // True when every byte (of the first `len`, len < 0: all) is a digit; with allowSignAndPoint
  // '.', '+' and '-' may also appear anywhere. Null, empty or len 0: false.
  bool isNumeric(bool allowSignAndPoint = false) const;
  static bool isNumeric(const char* s, int len, bool allowSignAndPoint);

  // Hexadecimal value read from the end, as hextoint(s, 0) (see zeb_cstr.h).
  unsigned long long HexToInt() const;
  static unsigned long long HexToInt(const char* s);
  // Non-empty and only '0'..'9', 'A'..'F', 'a'..'f' ("0x1F" is not).
  bool isHex() const;

  // ---- search: a byte index, or -1 --------------------------------------------------------------

  // Deliberately asymmetric: the second argument is a count of leading bytes to skip (the search
  // starts at index `skip`) and the search is always case-sensitive. Use posSubStr to fold case.
  int Find(const char* sub, tCaseSensitivity skip = CaseSensitive) const;
  // First occurrence at or after `start`; -1 when this or `sub` is empty or the string ends
  // before `start`. Folds ASCII case when `cs` is non-zero.
  int posSubStr(const char* sub, int start = 0, tCaseSensitivity cs = CaseSensitive) const;
  // First occurrence of `c` at or after `start` (a start past the end gives -1).
  int posSubChar(char c, int start = 0, tCaseSensitivity cs = CaseSensitive) const;
  int find(char c, int start = 0, tCaseSensitivity cs = CaseSensitive) const;
  // Backwards from index `from`; from < 0 or past the last byte starts at the last byte. Folds
  // case only when `cs` is exactly CaseInsensitive.
  int reverseFind(char c, int from = -1, tCaseSensitivity cs = CaseSensitive) const;
  // The last occurrence of `sub` that starts at or before `from` (same start rule); folds when
  // `cs` is non-zero. -1 when either is empty.
  int reverseFind(const char* sub, int from = -1, tCaseSensitivity cs = CaseSensitive) const;
  bool contain(const char* sub, tCaseSensitivity cs = CaseSensitive) const;
  bool contain(char c, tCaseSensitivity cs = CaseSensitive) const;
  int countOfChar(char c) const;
  // Prefix / suffix tests; an empty prefix or suffix is always found.
  bool beginWith(const char* prefix, bool ignoreCase = false) const;
  bool isEndsWith(const char* suffix, bool ignoreCase = false) const;

  // ---- comparison -----------------------------------------------------------------------------

  // Empty (null or "") sorts before everything else and equals another empty. Otherwise
  // _stricmp when folding, else unsigned byte order; the result is -1, 0 or 1.
  int compare(const char* s, tCaseSensitivity cs = CaseSensitive) const;
  int compare(const TAnsiString& s, tCaseSensitivity cs = CaseSensitive) const;
  // As compare, over at most `n` bytes (n < 1: 0).
  int ncompare(const char* s, int n, tCaseSensitivity cs = CaseSensitive) const;
  bool equal(const char* s, tCaseSensitivity cs = CaseSensitive) const;
  bool equal(const TAnsiString& s, tCaseSensitivity cs = CaseSensitive) const;
  bool equalIgnoreCase(const char* s) const;

  bool operator==(const TAnsiString& s) const { return equal(s); }
  bool operator==(const char* s) const { return equal(s); }
  bool operator==(char c) const;
  bool operator!=(const TAnsiString& s) const { return !equal(s); }
  bool operator!=(const char* s) const { return !equal(s); }
  bool operator!=(char c) const { return !(*this == c); }
  bool operator<(const TAnsiString& s) const { return compare(s) < 0; }
  bool operator>(const TAnsiString& s) const { return compare(s) > 0; }
  bool operator<=(const TAnsiString& s) const { return compare(s) <= 0; }
  bool operator>=(const TAnsiString& s) const { return compare(s) >= 0; }
  bool operator<(const char* s) const { return compare(s) < 0; }
  bool operator>(const char* s) const { return compare(s) > 0; }
  bool operator<=(const char* s) const { return compare(s) <= 0; }
  bool operator>=(const char* s) const { return compare(s) >= 0; }

  // ---- editing in place -----------------------------------------------------------------------

  // Insert at byte `pos`; pos < 0 counts as 0 and pos past the end appends. len < 0: strlen;
  // otherwise at most `len` bytes, stopping at a NUL. The growth rule applies.
  TAnsiString& insert(const char* s, int pos, int len = -1);
  TAnsiString& insert(const TAnsiString& s, int pos);
  TAnsiString& insert(char c, int pos);
  // No change when pos < 0, count < 1 or pos + count > length.
  TAnsiString& remove(int pos, int count);
  // Keep the first n bytes (n < 1 empties; n >= length: no change).
  TAnsiString& trunc(int n);
  // Keep the last n bytes (n < 1 empties; n >= length: no change).
  TAnsiString& truncRight(int n);
  // Drop the last n bytes (n < 1: no change; n >= length empties).
  TAnsiString& chop(int n);
  // n > 0: n copies of c in a buffer of exactly n + 1 bytes. n < 0: overwrite every byte with c.
  // n == 0: empty.
  TAnsiString& fill(char c, int n);
  // Append n further copies of the content (n < 1 or empty: no change).
  TAnsiString& repeat(int n);
  // Remove leading / trailing bytes found in `set`; a null set means ' ' only.
  TAnsiString& trim(const char* set = nullptr);
  TAnsiString& trimLeft(const char* set = nullptr);
  TAnsiString& trimRight(const char* set = nullptr);
  TAnsiString& replace(char from, char to);
  // Every non-overlapping occurrence of `from`, left to right, becomes `to` (null `to`: removed).
  // Null or empty `from`: no change.
  TAnsiString& replace(const char* from, const char* to, bool ignoreCase = false);
  // Remove every byte c with low <= c <= high (signed), high 0 meaning `low` alone. The result
  // goes into a new buffer of the same capacity.
  TAnsiString& removeChr(char low, char high = 0);
  TAnsiString& toLower();
  TAnsiString& toUpper();
  // First byte NUL; the buffer is kept.
  TAnsiString& clear();
  // Every byte of the buffer NUL; the buffer is kept.
  TAnsiString& zeroString();
  // n <= 0 frees. onlyGrow and capacity > n: no change. Otherwise exactly n bytes, the content
  // kept (truncated or zero-extended) when keepContent. Always true.
  bool setCapacity(int n, bool keepContent = true, bool onlyGrow = false);
  // An empty string in a buffer of exactly n bytes (n <= 0: null): setCapacity(n, false, false).
  bool resetCapacity(int n);

  // ---- extraction: new strings ----------------------------------------------------------------

  // start < 0 counts as 0; a start past the end or count 0 gives ""; count < 0: to the end.
  TAnsiString substring(int start, int count = -1) const;
  TAnsiString left(int n) const;
  // The last n bytes (n > length: all).
  TAnsiString last(int n) const;
  // Same as last(n).
  TAnsiString right(int n) const;
  // The n-th (from 0) word of the content, words being separated by runs of spaces and tabs.
  TAnsiString getNSubStr(int n) const;
  // The part after the n-th occurrence of `c` counted from the end (n < 1 counts as 1); the whole
  // string when `c` occurs fewer than n times.
  TAnsiString getCharRSubStr(int n, char c) const;
  TAnsiString dup() const;

  // Byte at index i; 0 when i is out of range or the string is empty.
  char getChar(int i) const;
  char at(int i) const { return getChar(i); }
  char operator[](int i) const { return getChar(i); }
  char front() const { return getChar(0); }
  char back() const;

  // ---- conversion between encodings ----------------------------------------------------------
  // The members that convert keep the old content when the conversion fails or produces nothing,
  // except fromWideString, which starts from an empty string. They return true when the content
  // was converted into at least one byte. A conversion fails when the converter drops anything:
  // undecodable input, or a character the target charset cannot hold. The exceptions are the
  // steps between UTF-16 and the ANSI code page (fromWideString with cs 1, convertANSIToUTF8, the
  // zwchar_t operators), which follow the OS code-page API: undecodable bytes become U+FFFD and
  // characters the code page cannot hold '?'. "ANSI" is the code page current at the call
  // (zeb_getAnsiCodePage).

  // The content becomes `w` in the ANSI code page (cs 1), GB2312 (cs 2025) or UTF-8 (any other
  // value, 3 included) in a buffer of 3n + 4 bytes for n units. Null `w`: a null string, false;
  // empty `w` or a failed conversion: "", false.
  bool fromWideString(const zwchar_t* w, tmibcharset cs);
  // ASCII-only copy of `w` up to its first unit of 128 or more, in a buffer of n + 2 bytes for n
  // units (null or empty `w`: null string).
  TAnsiString& fromWideStringQuick(const zwchar_t* w);
  // The content read in charset `cs` as a 16-bit string ("" for a null buffer).
  TWideString wstr(tmibcharset cs) const;
  // In place: ANSI code page -> UTF-8. The capacity becomes at least 3n + 3 for n bytes.
  bool convertANSIToUTF8();
  // In place: UTF-8 -> ANSI, `from` -> UTF-8, `from` -> ANSI, GB18030 -> UTF-8, Latin-9 -> UTF-8.
  // The result replaces the content in a new buffer of 3(n + 1) bytes for n bytes. An empty
  // string, a null or empty `from`, and for convertAnyToUtf8 a `from` of "utf-8" in any case,
  // leave the content as it is.
  bool convertUTF8ToANSI();
  bool convertAnyToUtf8(const char* from);
  bool convertAnyToANSI(const char* from);
  bool convertGB18030ToUTF8();
  bool convertLatin9ToUTF8();
  // setText(s) followed by the matching in-place conversion (so a failure leaves `s` itself).
  bool fromUTF8ToANSI(const char* s);
  bool fromANSIToUTF8(const char* s);
  bool fromGB18030ToUTF8(const char* s);
  bool fromLatin9ToUTF8(const char* s);
  // The 16-bit text converted to the ANSI code page (as fromWideString(w, 1)), then assigned or
  // appended; a null `w` assigns a null string and appends nothing.
  TAnsiString& operator=(const zwchar_t* w);
  TAnsiString& operator+=(const zwchar_t* w);
  TAnsiString& operator+=(zwchar_t c);
  TAnsiString operator+(const zwchar_t* w) const;
  TAnsiString operator+(zwchar_t c) const;

  // ---- paths: '/' and '\\' are both separators ----------------------------------------------

  // Replace the content with its file name, directory (separator kept), drive ("C:"), extension
  // (without the dot) or file name without extension. A null buffer reads as "".
  TAnsiString& extractFileName();
  TAnsiString& extractFileDir();
  TAnsiString& extractFileDriver();
  TAnsiString& extractFileExt();
  TAnsiString& extractFileNameNoExt();
  // Every run of '/' and '\\' becomes one `sep` (0: '\\'); a leading UNC "\\\\" is kept.
  TAnsiString& normalizeFileNameSplash(char sep = 0);
  // Reads the content as UTF-8 when `cs` is 106, as ASCII when it is 3 and as the ANSI code page
  // for every other charset, applies TWideString::normalizeFileName(keepPath) and writes the
  // result back in `cs`.
  TAnsiString& normalizeFileName(tmibcharset cs, bool keepPath);
  // Non-empty and ending in '/' or '\\' (the argument is not consulted).
  bool isEndWithBacksplash(char sep = 0) const;
  // Appends `sep` (0: '\\') unless the content already ends in '/' or '\\'.
  TAnsiString& ensureEndWithBacksplash(char sep = 0);
  // Removes one trailing '/' or '\\'.
  TAnsiString& removeEndedBacksplash();
  // At least two bytes, and the first or the second is '"'.
  bool isQuoted() const;
  // "" becomes "\"\""; otherwise a '"' is added in front and at the end where missing.
  TAnsiString& ensureQuoted();
  // The file-name part of a URL: the last path segment, without query ("?...") or fragment
  // ("#...").
  TAnsiString extractFileNameFromURL() const;

  // ---- text extraction and formatting ---------------------------------------------------------

  // The content becomes the text between the first `startTag` at or after `start` in `text` and
  // the following `endTag` (a null or empty `endTag` means to the end). *next, when given,
  // receives the index just past the end tag, ready to be the next call's `start`. Returns false
  // (content "", *next -1) when a tag is missing, `startTag` is null or empty, or `start` lies
  // past the end of `text` (a negative start counts as 0).
  bool fromBetweenTag(const char* text, const char* startTag, const char* endTag,
                      bool ignoreCase = false, int start = 0, int* next = nullptr);
  // The content becomes field `index` (from 0) of `text` from byte `start`, fields being
  // separated by the string `sep` (matched case-sensitively; a null or empty `sep` makes the rest
  // of the text one field); bytes in `trimSet` (null: none) are trimmed from both ends of the
  // field. *next receives the index after the field's separator, or -1 after the last field, so
  // that fromToken(text, sep, 0, next, &next) walks the fields ("a," has two: "a" and "").
  // Returns false (content "", *next -1) when there are fewer fields, index < 0 or `start` lies
  // past the end (a negative start counts as 0).
  bool fromToken(const char* text, const char* sep, int index, int start = 0, int* next = nullptr,
                 const char* trimSet = nullptr);
  // fromBetweenTag / fromToken applied to this string's content, giving a new string.
  TAnsiString subStringFromTags(const char* startTag, const char* endTag, bool ignoreCase = false,
                                int start = 0, int* next = nullptr) const;
  TAnsiString subStringFromToken(const char* sep, int index, int start = 0, int* next = nullptr,
                                 const char* trimSet = nullptr) const;
  // The content becomes the first line of `text` (without "\r\n", "\n" or "\r"); returns the start
  // of the next line, or null when there is none: a line end that closes the text starts no
  // further line ("a\n" is one line, "a\n\n" two). Null `text`: content "" and null.
  const char* fromFirstLine(const char* text);

  // Parses "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX", with or without braces, into a 16-byte GUID
  // (Data1, Data2, Data3 in native order, then 8 bytes); hexadecimal digits in either case,
  // nothing else around. False, guid untouched, on bad text or a null `guid`.
  bool hexToGUID(void* guid) const;
  // Upper-case GUID text, in braces when `braces`; a null `guid` gives "".
  TAnsiString& fromGUID(const void* guid, bool braces = true);

  // The first four-digit run in `text` that is not part of a longer digit run and lies in
  // [minYear, maxYear]; 0 when none or for a null `text` ("0000" never matches). extractYearEX
  // removes it from `text` when `removeIt`, with one space next to it: the one before, or else
  // the one after ("Movie 2019 HD" becomes "Movie HD", "2019 Movie" becomes "Movie").
  static int extractYearEX(char* text, bool removeIt, int minYear, int maxYear);
  static int extractYear(const char* text, int minYear, int maxYear);

  // "512 B", "1.50 KB", "3.00 MB", ... up to "EB" (1024 steps, two decimals above bytes; the
  // larger unit as soon as the value would print as 1024.00, so 1048575 gives "1.00 MB");
  // negative sizes get a '-'. `separator` (null: " ") goes between the number and the unit.
  TAnsiString& fromFileSize(long long bytes, const char* separator = nullptr);
  // "h:mm:ss" (hours unbounded; negative values get a leading '-').
  TAnsiString& fromSeconds(int seconds);
  // Milliseconds with `decimals` decimals (clamped to 0..17) and the unit: "12.35 ms".
  TAnsiString& fromMs(double ms, int decimals = 2);
  // Fixed-point text with `decimals` decimals (clamped to 0..17), '.' as the decimal point; NaN
  // and infinities print as sprintf prints them.
  TAnsiString& fromFloat(double value, int decimals = 2);

  // printf-style formatting of the C conventions (flags "-+ #0", width and precision, '*', the
  // length modifiers hh h l ll j z t L, the conversions d i u o x X c s p e E f F g G a A and
  // "%%"), except that: NaN prints "NaN" and infinities "-Inf" and "+Inf" (the width and '-'
  // apply, '0' and the precision do not); a null %s prints "(NULL)" the same way; '.' is always
  // the decimal point, whatever the locale; %p prints "0x" and lower-case hex digits; %n
  // consumes its pointer and stores nothing; an unknown conversion is copied as it stands;
  // widths and precisions above 1048576 count as 1048576. The format and arguments may point
  // into this string. A NUL written by %c ends the content. Returns the length of the new
  // content; a null format gives "" and 0.
  int sprintf(const char* fmt, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 2, 3)))
#endif
      ;
  int sprintfArgs(const char* fmt, va_list args);

  // ---- hashing --------------------------------------------------------------------------------

  // SuperFastHash over signed bytes; 0 for null, len 0 or "". len < 0: strlen; otherwise exactly
  // `len` bytes, NULs included.
  static unsigned int hashValue(const char* s, int len = -1);
  unsigned int hashValue() const;
  // MurmurHash64B, seed 0xEE6B27EB; 0 for null, len 0 or "". len < 0: strlen; otherwise exactly
  // `len` bytes, NULs included.
  static unsigned long long hashValue64(const char* s, int len = -1);
  unsigned long long hashValue64() const;

  // ---- C-string helpers -----------------------------------------------------------------------

  // strlen + 1, or 0 for null.
  static int getSize(const char* s);
  // strlen, or 0 for null.
  static int length(const char* s);
  // A new[] copy (release with delete[]), or null for null.
  static char* dup(const char* s);

 protected:
  char* buffer = nullptr;
  int capacity = 0;

 private:
  // Comparing a string with an integer is a mistake: these keep `s == 0` from compiling.
  bool operator==(int) const;
  bool operator!=(int) const;
  // Appending a number appends its decimal text; private so that `s += 5` is not mistaken for a
  // character append.
  TAnsiString& operator+=(int value);
  TAnsiString& operator+=(unsigned int value);
  TAnsiString& operator+=(long long value);
  TAnsiString& operator+=(unsigned long long value);
  TAnsiString operator+(int value) const;
  TAnsiString operator+(unsigned int value) const;
  TAnsiString operator+(long long value) const;
  TAnsiString operator+(unsigned long long value) const;
};

#endif  // ZEB_STRINGS_TANSISTRING_H

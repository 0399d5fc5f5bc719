// zeb_cstr.h: plain functions over NUL-terminated 8-bit (char) and 16-bit (zwchar_t) strings,
// shared by the string classes and the rest of the library: decimal and hexadecimal numbers,
// ASCII case-insensitive comparison and search, prefix and suffix tests, trimming and heap
// copies.
//
// Case folding is ASCII only: 'a'..'z' fold to 'A'..'Z', nothing else changes. Every function
// accepts null pointers and answers them with the neutral result it documents. Heap copies are
// made with malloc and released with free.
//
//   char* name = nullptr;
//   clear_and_strdup(&name, "Report.TXT");
//   if (zeb_endWithIgnoreCase(name, ".txt")) { ... }
//   free(name);
#ifndef ZEB_STRINGS_ZEB_CSTR_H
#define ZEB_STRINGS_ZEB_CSTR_H

#include <stddef.h>

#include "zeb/zeb_api.h"

extern "C" {

// Writes the decimal text of `value` ('-' first for negatives, at least one digit) and a NUL into
// `out`, which must hold 12 bytes. Returns `out`; a null `out` returns null.
ZEB_API char* zeb_itoa(int value, char* out);

// ASCII case-insensitive comparison: negative, 0 or positive. A null string sorts as "".
ZEB_API int zeb_stricmp_impl(const char* a, const char* b);
ZEB_API int zeb_stricmpw_impl(const zwchar_t* a, const zwchar_t* b);

// As zeb_stricmp_impl / strcmp, over at most `n` characters.
ZEB_API int zeb_strnicmp(const char* a, const char* b, size_t n);
ZEB_API int zeb_strncmp(const char* a, const char* b, size_t n);

// Null-tolerant comparison. Both null-or-empty: 0. Exactly one a null pointer: non-zero (test it
// for zero only). Otherwise unsigned byte-wise comparison giving exactly -1, 0 or 1.
ZEB_API ptrdiff_t zeb_strcmpnil(const char* a, const char* b);
ZEB_API ptrdiff_t zeb_strcmpnilw(const zwchar_t* a, const zwchar_t* b);

// ASCII case-insensitive strstr: the first match in `hay`. A null or empty `needle` returns
// `hay`; a null or empty `hay` (with a non-empty needle) returns null.
ZEB_API char* zeb_strstri(const char* hay, const char* needle);
ZEB_API zwchar_t* zeb_wcsstrstri(const zwchar_t* hay, const zwchar_t* needle);

// The first occurrence of `c` in `s`, or null (also for a null `s` or c == 0). The i forms fold.
ZEB_API char* zeb_strchri(const char* s, char c);
ZEB_API zwchar_t* zeb_wcsstrchri(const zwchar_t* s, zwchar_t c);
ZEB_API zwchar_t* zeb_wcsstrchr(const zwchar_t* s, zwchar_t c);

// Prefix and suffix tests. A null or empty prefix/suffix is always found (true) unless `s` is
// null, which gives false.
ZEB_API bool zeb_beginWith(const char* s, const char* prefix);
ZEB_API bool zeb_beginWithIgnoreCase(const char* s, const char* prefix);
ZEB_API bool zeb_endWith(const char* s, const char* suffix);
ZEB_API bool zeb_endWithIgnoreCase(const char* s, const char* suffix);
ZEB_API bool zeb_beginWithW(const zwchar_t* s, const zwchar_t* prefix);
ZEB_API bool zeb_beginWithIgnoreCaseW(const zwchar_t* s, const zwchar_t* prefix);
ZEB_API bool zeb_endWithW(const zwchar_t* s, const zwchar_t* suffix);
ZEB_API bool zeb_endWithIgnoreCaseW(const zwchar_t* s, const zwchar_t* suffix);

// In place: trailing spaces become NULs; returns the first non-space byte of `s`. Only ' ' is
// trimmed. Null returns null.
ZEB_API char* zeb_trim(char* s);

// Heap copies (malloc; release with free). `len`, when given, is set to 0 first and to the length
// in characters (NUL not counted) on success. A null `s` returns null.
ZEB_API char* zeb_ansistrduplen_impl(const char* s, unsigned* len);
ZEB_API zwchar_t* zeb_strduplen_impl(const zwchar_t* s, unsigned* len);
ZEB_API char* zeb_strdupa_impl(const char* s);
ZEB_API zwchar_t* zeb_strdupw_impl(const zwchar_t* s);

// Frees *slot (free) and sets it to null; then, if `s` is non-null, stores a heap copy of `s`.
// Returns the new *slot. A null `slot` does nothing and returns null.
ZEB_API char* clear_and_strdup(char** slot, const char* s);
ZEB_API zwchar_t* clear_and_strdupw(zwchar_t** slot, const zwchar_t* s);

// Hexadecimal value of the first `len` characters (`len` < 1: the whole string), read backwards
// from the last of them: each byte c gives the nibble (c - 7 * bit6(c)) & 15 without validation;
// reading stops at the start, before a preceding 'x' or 'X', or after 16 digits. Null or empty
// gives 0. "0x1F" and "1F" both give 31.
ZEB_API unsigned long long hextoint(const char* s, int len);

// Length of a 16-bit string in units, NUL not counted; 0 for null. (The C library's wcslen
// counts 32-bit units on POSIX and must not be used for zwchar_t text.)
ZEB_API size_t zeb_wcslen(const zwchar_t* s);

// Formats `value` with `digits` significant digits into `buf` in the shortest form ("%.*g"
// without a trailing decimal point), always with '.' as the decimal point. `buf` must hold
// digits + 8 bytes; digits < 1 counts as 1 and digits > 17 as 17. Returns `buf`; null `buf`
// returns null.
ZEB_API char* zeb_gcvt(double value, int digits, char* buf);

}  // extern "C"

#endif  // ZEB_STRINGS_ZEB_CSTR_H

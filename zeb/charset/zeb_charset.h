// zeb_charset.h: conversion of text among UTF-16 (zwchar_t), UTF-8, the process ANSI code page and
// the named legacy charsets (GB2312, GB18030, Big5, Latin-9, US-ASCII), plus the table that names
// a charset by its IANA MIB number.
//
// The iconv functions (AnyToAny, StrUnicodeToAny, AnyToUnicode and their wrappers) run one
// conversion over the whole input with illegal and unconvertible input discarded; a conversion in
// which anything was discarded, or that did not fit, counts as failed and returns 0. On success
// the 8-bit forms zero-fill the rest of `out` and AnyToUnicode writes one 16-bit NUL after the
// last unit when room is left. Size the output so that room is always left: 3 bytes per input
// character plus 1 for 8-bit results, 2 units per input byte plus 4 for UTF-16 results.
// Between "UTF-8" and UTF-16 the library converts valid text itself, several times faster, and
// leaves the rest to iconv: results and output bytes are iconv's either way.
//
// The ANSI functions (StrUnicodeToANSI, StrANSIToUnicode) follow the OS code-page API instead:
// counts include the NUL, an outSize of 0 asks for the size needed, undecodable bytes become
// U+FFFD and characters the code page cannot hold become '?'.
//
// No function crashes on bad arguments: null pointers, negative or zero sizes and unknown charset
// names give 0 (or null) and leave `out` untouched. A conversion that fails may leave part of the
// text in `out`.
//
//   char gb[64];
//   int n = StrUTF8ToGB2312(gb, sizeof gb, "\xE4\xB8\xAD\xE6\x96\x87", -1);  // n == 4
//   zwchar_t wide[16];
//   int units = StrGB2312ToUnicode(wide, 16, gb, n);                       // units == 2
#ifndef ZEB_CHARSET_ZEB_CHARSET_H
#define ZEB_CHARSET_ZEB_CHARSET_H

#include "zeb/zeb_api.h"

extern "C" {

// A charset named by its IANA MIB number; 1 stands for the process ANSI code page.
typedef int tmibcharset;

// The MIB numbers the library itself uses.
enum : tmibcharset {
  MIB_ANSI = 1,
  MIB_ASCII = 3,
  MIB_UTF8 = 106,
  MIB_GB2312 = 2025,
};

// The charset name of a MIB number (106 "UTF-8", 2025 "GB2312", ...). 1 gives the iconv name of
// the current ANSI code page ("CP936", "UTF-8", ...). Null for numbers without a name, negative
// numbers and numbers of 2260 or more. The text stays valid for the life of the process.
ZEB_API const char* MIBCharsetValueToName(int mib);

// The process ANSI code page (65001, 936, ...). The default comes from the ZEB_ACP environment
// variable when it holds a number, else from the codeset of LC_ALL / LC_CTYPE / LANG (UTF-8 65001,
// GB18030 54936, GBK and GB2312 936, BIG5 950, anything else 65001).
ZEB_API unsigned zeb_getAnsiCodePage(void);
// Switches the ANSI code page for the whole process; 0 goes back to the default.
ZEB_API void zeb_setAnsiCodePage(unsigned codePage);

// iconv `to` <- `from` of `inLen` bytes of `in` (negative: up to its NUL) into `out` of `outSize`
// bytes. Returns the bytes written; 0 for a failed conversion, a null or empty name, null `in` or
// `out`, or outSize <= 0.
ZEB_API int AnyToAny(const char* to, const char* from, char* out, int outSize, const char* in,
                     int inLen);

// AnyToAny from "UTF-8" to `to`, "us-ascii", "gb2312", "Latin-9".
ZEB_API int StrUTF8ToAny(const char* to, char* out, int outSize, const char* in, int inLen);
ZEB_API int StrUTF8ToASCII(char* out, int outSize, const char* in, int inLen);
ZEB_API int StrUTF8ToGB2312(char* out, int outSize, const char* in, int inLen);
ZEB_API int StrUTF8ToLatin9(char* out, int outSize, const char* in, int inLen);

// AnyToAny to "UTF-8" from "gb2312", "gb18030", "Latin-9" of `in` up to its NUL.
ZEB_API int StrGB2312ToUTF8(char* out, int outSize, const char* in);
ZEB_API int StrGB18030ToUTF8(char* out, int outSize, const char* in);
ZEB_API int StrLatin9ToUTF8(char* out, int outSize, const char* in);

// iconv `to` <- UTF-16 of `in` up to its NUL into `out` of `outSize` bytes. Returns the bytes
// written; 0 for an empty or null `in` (nothing written) and for every failure AnyToAny lists.
ZEB_API int StrUnicodeToAny(const char* to, char* out, int outSize, const zwchar_t* in);

// StrUnicodeToAny to "UTF-8", "gb2312", "us-ascii", "Latin-9".
ZEB_API int StrUnicodeToUtf8(char* out, int outSize, const zwchar_t* in);
ZEB_API int StrUnicodeToGB2312(char* out, int outSize, const zwchar_t* in);
ZEB_API int StrUnicodeToASCII(char* out, int outSize, const zwchar_t* in);
ZEB_API int StrUnicodeToLatin9(char* out, int outSize, const zwchar_t* in);

// `in` up to its NUL in the ANSI code page, NUL included. Returns the bytes written, NUL counted;
// outSize 0 returns the size needed without writing. 0 for null `in`, negative outSize, null `out`
// with outSize > 0 and an output too small (which may then hold part of the text).
ZEB_API int StrUnicodeToANSI(char* out, int outSize, const zwchar_t* in);

// iconv UTF-16 <- `from` of `inLen` bytes of `in` (negative: up to its NUL) into `out` of
// `outChars` units. Returns the units written, the NUL not counted. An empty input writes a NUL
// at out[0] and returns 0 (before `from` is looked at, unless it is null or empty). 0 without
// writing for a null or empty name, null `in` or `out`, outChars <= 0; 0 for a failed conversion.
ZEB_API int AnyToUnicode(const char* from, zwchar_t* out, int outChars, const char* in, int inLen);

// AnyToUnicode from "UTF-8", "gb2312", "Latin-9", "BIG5".
ZEB_API int StrUtf8ToUnicode(zwchar_t* out, int outChars, const char* in, int inLen);
ZEB_API int StrGB2312ToUnicode(zwchar_t* out, int outChars, const char* in, int inLen);
ZEB_API int StrLatin9ToUnicode(zwchar_t* out, int outChars, const char* in, int inLen);
ZEB_API int Big5CodeToUnicode(zwchar_t* out, int outChars, const char* in, int inLen);

// AnyToUnicode from "us-ascii" of `in` up to its NUL.
ZEB_API int StrASCIIToUnicode(zwchar_t* out, int outChars, const char* in);

// `in` up to its NUL from the ANSI code page to UTF-16, NUL included. Returns the units written,
// NUL counted; outChars 0 returns the size needed without writing. 0 for null `in`, negative
// outChars, null `out` with outChars > 0 and an output too small.
ZEB_API int StrANSIToUnicode(zwchar_t* out, int outChars, const char* in);

}  // extern "C"

#endif  // ZEB_CHARSET_ZEB_CHARSET_H

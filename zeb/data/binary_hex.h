// binary_hex.h: bytes rendered as hexadecimal text, two digits per byte, high nibble first.
//
// Options shared by every form:
//   lowerCase   digits a-f instead of A-F (and the tag "0x" instead of "0X").
//   lineWidth   >= 1: a line feed (0x0A) after every lineWidth bytes, also after the last byte
//               when the count is a multiple of lineWidth; < 1: one line.
//   withTag     each byte as "0x0a" and the bytes separated by ',' (no space); the comma of a
//               line's last byte comes before its line feed. The NoTag forms write digits only.
//
//   TAnsiString text;
//   const unsigned char bytes[] = {0x0A, 0xFF};
//   BinaryToHexA(bytes, 2, text, true, 0, true);    // "0x0a,0xff"
//   BinaryToHexNoTagA(bytes, 2, text, false, 1);    // "0A\nFF\n"
//
// Null data, or a count below 1, gives "". The buffer form of BinaryToHexNoTagA is exported
// undecorated (C linkage); its string overload beside it is C++.
#ifndef ZEB_DATA_BINARY_HEX_H
#define ZEB_DATA_BINARY_HEX_H

#include "zeb/strings/TAnsiString.h"
#include "zeb/strings/TWideString.h"
#include "zeb/zeb_api.h"

// Replaces `out` with the rendering, in a buffer of (lineWidth < 1 ? 5 : 6) * n + 2 bytes. When
// that size is 0 or less (n below 0), or too large for a string, `out` releases its storage.
ZEB_API void BinaryToHexA(const unsigned char* data, int n, TAnsiString& out, bool lowerCase,
                          int lineWidth, bool withTag);

// The rendering without tags in a buffer of 3 * n + 2 units, with the release rule above.
// Returns `out`.
ZEB_API TAnsiString& BinaryToHexNoTagA(const unsigned char* data, int n, TAnsiString& out,
                                       bool lowerCase, int lineWidth);
ZEB_API TWideString& BinaryToHexNoTagW(const unsigned char* data, int n, TWideString& out,
                                       bool lowerCase, int lineWidth);

extern "C" {
// The rendering without tags into the caller's buffer `out`, which must hold 3 * n + 2 bytes,
// NUL-terminated. A null `out` writes nothing. Returns `out`.
ZEB_API char* BinaryToHexNoTagA(const unsigned char* data, int n, char* out, bool lowerCase,
                                int lineWidth);
}  // extern "C"

#endif  // ZEB_DATA_BINARY_HEX_H

// zeb_xxtea.h: the XXTEA block cipher (corrected block TEA) over whole arrays of 32-bit words,
// and a helper that encrypts a short text into hex.
//
//   unsigned int words[2] = {1, 2};
//   const unsigned int key[4] = {k0, k1, k2, k3};
//   zeb_xxtea(words, 2, key);     // encrypts in place
//   zeb_xxtea(words, -2, key);    // decrypts: words is {1, 2} again
//
//   TAnsiString text("secret");
//   zeb_tea_textdata(text);       // text: 16 lower-case hex digits (padded to 8 bytes, encrypted)
#ifndef ZEB_DATA_ZEB_XXTEA_H
#define ZEB_DATA_ZEB_XXTEA_H

#include "zeb/strings/TAnsiString.h"
#include "zeb/zeb_api.h"

#ifdef __cplusplus
extern "C" {
#endif

// n > 1 encrypts the n words in place, n < -1 decrypts the -n words, under the 128-bit key
// (delta 0x9E3779B9, 6 + 52 / n rounds). Returns 0; for -1 <= n <= 1 nothing is done and the
// result is 1 (the cipher needs at least two words), as it is for null words or a null key.
ZEB_API unsigned int zeb_xxtea(unsigned int* words, int n, const unsigned int* key);

#ifdef __cplusplus
}
#endif

// Pads the text with spaces (a text of 0-3 bytes to 8 bytes, a longer one to the next multiple
// of 4), encrypts its bytes, taken as little-endian words, under the library's own fixed key and
// replaces the text with the lower-case hex digits of the result; returns true. A text of exactly
// 4 bytes is a single word, which the cipher refuses: the result is false and the text unchanged.
// The key is a private constant of this library, so only this library's decryption reads the
// result back; the helper obscures a text, it does not protect it from anyone who has the library.
ZEB_API bool zeb_tea_textdata(TAnsiString& text);

#endif  // ZEB_DATA_ZEB_XXTEA_H

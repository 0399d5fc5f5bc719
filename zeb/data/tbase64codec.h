// tbase64codec.h: Base64 text of bytes and back, with the library's line and decoding rules.
//
// Encoding uses the standard alphabet with '=' padding and writes CR LF after every 19th full
// four-character group (76 characters). Only full groups are followed by a break, so a text whose
// last full group ends a line has CR LF there, before any padded tail, and a padded tail is never
// followed by one:
//
//   TAnsiString text;
//   tbase64codec::Encode("hello", 5, text);         // "aGVsbG8=", returns 8
//   tbytesdata bytes = tbase64codec::Decode("aGVsbG8=", -1);   // the 5 bytes of "hello"
//
// Decoding is lenient by design and never fails: CR and LF are skipped where a group would start;
// any other character starts a group of up to four. The first two characters always give one
// byte; a third that is neither '=' nor the end of the text (a NUL or the given length) gives a
// second; after that, a fourth that is not '=' gives a third. Characters outside the alphabet are
// not rejected: they count as the value 0, and so does a position past the end of the text. A text
// whose first character is '.' decodes to nothing.
#ifndef ZEB_DATA_TBASE64CODEC_H
#define ZEB_DATA_TBASE64CODEC_H

#include "zeb/data/tbytesdata.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/zeb_api.h"

class ZEB_API tbase64codec {
 public:
  // Replaces `out` with the Base64 text of `length` bytes and returns the number of characters
  // written (line breaks included). The buffer holds at least 3 * length + 1 bytes. Null data or
  // a length below 1 gives 0 and an empty `out`.
  static int Encode(const char* data, int length, TAnsiString& out);

  // Decodes `length` characters (a negative length: up to the NUL) into `out`'s buffer, followed
  // by a NUL, and returns the number of bytes decoded. The bytes may hold NULs, so use the count,
  // not out.length(). Null or empty text, or a text starting with '.', gives 0 and an empty `out`.
  static int Decode(const char* text, int length, TAnsiString& out);
  // The same into a byte buffer whose size is the count.
  static tbytesdata Decode(const char* text, int length);
};

#endif  // ZEB_DATA_TBASE64CODEC_H

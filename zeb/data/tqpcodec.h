// tqpcodec.h: quoted-printable text of bytes and back.
//
// Encoding copies the printable bytes 0x21-0x7E except '=' and writes every other byte, space and
// tab included, as '=' and two upper-case hex digits. A running line count adds 1 for a copied
// byte and 3 for an escaped one; once it reaches 73 a soft break "=\r\n" follows and the count
// starts again.
//
// Decoding undoes that: "=\r\n" is a soft break, skipped together with the tabs and spaces after
// it; '=' and two hex digits (either case) give that byte; '_' gives a space (the header form's
// rule, applied to all text); every other byte, a lone '=' included, is copied.
//
//   TAnsiString text;
//   tqpcodec::Encode("a=b", 3, text);         // "a=3Db"
//   tqpcodec::Decode("a_b", 3, text);         // "a b"
//
// Lengths below 0 mean up to the NUL; null input or a length of 0 gives 0 and an empty `out`.
#ifndef ZEB_DATA_TQPCODEC_H
#define ZEB_DATA_TQPCODEC_H

#include "zeb/strings/TAnsiString.h"
#include "zeb/zeb_api.h"

class ZEB_API tqpcodec {
 public:
  // Replaces `out` with the encoded text and returns its length. The buffer holds at least
  // 3 * (length + length * 3 / 76) + 4 bytes.
  static int Encode(const char* data, int length, TAnsiString& out);
  // Replaces `out` with the decoded bytes and a NUL; returns the byte count (the bytes may hold
  // NULs, so use the count).
  static int Decode(const char* text, int length, TAnsiString& out);
};

#endif  // ZEB_DATA_TQPCODEC_H

// tvcard.h: vCard address books, versions 2.1, 3.0 and 4.0. `tvcard` is one card: its properties
// in file order, each with a group, a name, parameters and a value, and typed accessors for the
// common ones. `tvcardfile` reads every card of a file or a text and writes cards back as 3.0 or
// 4.0 in UTF-8 with lines folded at 75 octets.
//
//   tvcardfile book;
//   book.readFile(ZW("contacts.vcf"));
//   for (int i = 0; i < book.count(); ++i) {
//     const tvcard& card = book.card(i);
//     if (card.status() == tvcard::Ok) printf("%s %s\n", card.fn().p(), card.tel(0).p());
//   }
//   TAnsiString text = book.writeText(40);
//
// Reading takes UTF-8 text up to its first NUL (a UTF-16 text with a byte-order mark is converted
// first, a UTF-8 byte-order mark skipped), unfolds lines (a line starting with a space or tab
// continues the one before), joins quoted-printable soft breaks, decodes QUOTED-PRINTABLE, BASE64, b and data: URI values, converts
// text with a CHARSET parameter (GB2312, GB18030, Big5, ...) to UTF-8 and keeps every other text
// in its escaped form ("\n", "\,", "\;", "\\"); the text accessors resolve the escapes. Names of
// properties and parameters are kept in upper case; a 2.1 bare parameter (TEL;CELL) becomes a TYPE
// parameter. Values are UTF-8 text or, for binary properties, the decoded bytes.
//
// A card that cannot be read well gets a failure status (logged as a warning, tag "zeb.vcard") and
// keeps the properties read before the failure; reading goes on with the next card. Accessors with a bad index or a missing property
// give "" (null for the raw pointer forms), -1 or an empty byte buffer.
#ifndef ZEB_FORMATS_TVCARD_H
#define ZEB_FORMATS_TVCARD_H

#include "zeb/data/tbytesdata.h"
#include "zeb/strings/TAnsiString.h"
#include "zeb/zeb_api.h"

struct tvcardState;

class ZEB_API tvcard {
 public:
  enum tstatus {
    Ok = 0,
    Unterminated = 1,  // no END:VCARD before the next BEGIN:VCARD or the end of the text
    BadEncoding = 2,   // a broken or unknown ENCODING value
    BadCharset = 3,    // a CHARSET the text does not convert from
    LineTooLong = 4,   // an unfolded line longer than the reader's limit
  };
  // The parts of N and ADR.
  enum { NFamily = 0, NGiven = 1, NAdditional = 2, NPrefix = 3, NSuffix = 4 };
  enum { AdrPoBox = 0, AdrExtended = 1, AdrStreet = 2, AdrLocality = 3, AdrRegion = 4,
         AdrPostalCode = 5, AdrCountry = 6 };

  tvcard();
  tvcard(const tvcard& other);
  tvcard& operator=(const tvcard& other);
  ~tvcard();

  tstatus status() const;
  // A short English description of the failure ("" for Ok), with the line it happened on.
  const char* errorText() const;
  // The VERSION value as read ("2.1", "3.0", "4.0"; "" when absent).
  const char* version() const;

  // ---- properties by index, in file order (BEGIN, VERSION and END are not properties) ---------
  int propertyCount() const;
  // The index of the first property named `name` (ASCII case-insensitive) at or after `from`.
  int findProperty(const char* name, int from = 0) const;
  const char* propertyName(int i) const;
  const char* propertyGroup(int i) const;  // "" when the property has none
  int paramCount(int i) const;
  const char* paramName(int i, int p) const;
  const char* paramValue(int i, int p) const;
  // The value of the first parameter named `name` of property i; null when there is none.
  const char* param(int i, const char* name) const;
  bool isBinary(int i) const;
  // The stored value: escaped UTF-8 text, or for a binary property its bytes (which may hold
  // NULs: use bytes()).
  const char* rawValue(int i) const;
  // The whole value with its escapes resolved.
  TAnsiString text(int i) const;
  // Part `part` of a structured value (split at unescaped ';'), escapes resolved.
  TAnsiString component(int i, int part) const;
  // Item `item` of a list value (split at unescaped ','), escapes resolved.
  TAnsiString listItem(int i, int item) const;
  // The bytes of a binary value, or the text of a text value.
  tbytesdata bytes(int i) const;

  // ---- the common properties; `nth` counts properties of that name from 0 ---------------------
  TAnsiString fn() const;
  TAnsiString n(int part) const;
  TAnsiString nickname() const;
  TAnsiString tel(int nth) const;
  TAnsiString email(int nth) const;
  TAnsiString adr(int nth, int part) const;
  TAnsiString org() const;  // the organisation name, the first part of ORG
  TAnsiString title() const;
  TAnsiString bday() const;
  TAnsiString note() const;
  TAnsiString url(int nth) const;
  tbytesdata photo() const;
  int count(const char* name) const;

  // ---- building a card ------------------------------------------------------------------------
  // Adds a text property whose value is already in escaped form; returns its index (-1 for a
  // null or empty name).
  int addProperty(const char* group, const char* name, const char* escapedValue);
  // Adds a property whose value is `text` escaped (for ';' and ',' inside one value).
  int addText(const char* name, const char* text);
  int addBinary(const char* group, const char* name, const void* data, int size);
  bool addParam(int i, const char* name, const char* value);

 private:
  friend class tvcardfile;
  tvcardState* state;
};

class ZEB_API tvcardfile {
 public:
  tvcardfile();
  tvcardfile(const tvcardfile& other);
  tvcardfile& operator=(const tvcardfile& other);
  ~tvcardfile();

  // Replaces the cards with those of `length` bytes of text (negative: up to its NUL). Returns
  // the number of cards, failed ones included.
  int readText(const char* text, int length = -1);
  // The same from a file; -1 when the file cannot be read, 0 for an empty one.
  int readFile(const zwchar_t* path);

  int count() const;
  // The number of cards whose status is not Ok.
  int failedCount() const;
  // Card i; an empty card for a bad index.
  const tvcard& card(int i) const;
  void add(const tvcard& card);
  void clear();

  // Every card as vCard 3.0 (version 30) or 4.0 (version 40, anything else too), UTF-8, CR LF,
  // lines folded at 75 octets.
  TAnsiString writeText(int version = 40) const;
  // writeText into a file; false when it cannot be written.
  bool writeFile(const zwchar_t* path, int version = 40) const;

  // The longest unfolded line accepted, in bytes (8 MiB unless changed).
  int maxLineLength;

 private:
  struct tcards* cards;
};

#endif  // ZEB_FORMATS_TVCARD_H

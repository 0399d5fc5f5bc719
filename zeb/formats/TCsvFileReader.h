// TCsvFileReader.h: a comma-separated-values reader and one writing aid, on 8-bit text taken as
// bytes (no charset conversion; a byte-order mark stays part of the first field).
//
// The separator is always ',' and the quote always '"'. Three C functions work on NUL-terminated
// text: csv_text_to_csvfield quotes one value for writing, csv_parse_onefield takes one field off
// the front of a record, csv_skip_oneline finds where the next record starts. TCsvFileReader walks
// a whole text record by record and field by field and reports them to a caller's callbacks.
//
//   struct Printer : TCsvFileReader::tcallbacks {
//     int onReadItem(int line, int column, const char* field) override {
//       printf("%d.%d: %s\n", line, column, field);
//       return 0;                              // 1: skip the rest of the record, 2: stop after it
//     }
//   } printer;
//   TCsvFileReader reader(&printer);
//   int records = reader.openFile(ZW("table.csv"));   // -2 when the file cannot be read
//
// Fields come back in a field buffer that belongs to the calling thread: a field pointer stays
// valid until the same thread's next call of csv_text_to_csvfield or csv_parse_onefield (a walk
// makes such calls for every field). Two threads may walk two texts at once.
//
// The format keeps a few asymmetries on purpose:
// - a quote in the middle of an unquoted field is an ordinary byte for csv_parse_onefield
//   (`ab"cd` is the field `ab"cd`) but opens quotes for csv_skip_oneline, so such a record runs
//   on to the next line break that stands after a closing quote;
// - `a,` at the very end of the text gives the fields `a` and ""; `a,` followed by a line break
//   gives only `a`;
// - empty lines are swallowed by the record before them and never make a record of their own.
#ifndef ZEB_FORMATS_TCSVFILEREADER_H
#define ZEB_FORMATS_TCSVFILEREADER_H

#include "zeb/zeb_api.h"

extern "C" {

// The text ready to be written as one field. Null for null. `text` itself when it is empty or has
// no comma, no byte below 0x21, no '"', '\'', 0x7F or byte of 0x80 and above. Otherwise a copy in
// the field buffer: '"', the text with every '"' doubled, '"'. Null when the buffer cannot grow.
ZEB_API char* csv_text_to_csvfield(char* text);

// Takes one field off the front of `text` (one record, as csv_skip_oneline cuts it) into the field
// buffer and stores it in *field (null first, and null when nothing was taken; a null `field` is
// allowed). Returns where the next field of the record starts, or null after the record's last
// field. Inside quotes CR and LF are kept; outside they are dropped; "" is one quote anywhere.
ZEB_API char* csv_parse_onefield(char* text, char** field);

// The start of the next record: past the line break that ends this one (outside quotes) and every
// CR and LF after it, or the position of the NUL. Null only for a null or empty `text`.
ZEB_API char* csv_skip_oneline(char* text);

}  // extern "C"

class ZEB_API TCsvFileReader {
 public:
  // What the reader reports. The default bodies go on with the walk, so a caller overrides only
  // what it needs. Results: onReadLine 1 skips the record, 2 stops; onReadItem 1 skips the rest of
  // the record, 2 stops after it; onLineFinished true stops. onFinished comes once at the end of
  // every walk with the number of records walked. `line` and `column` count from 0; `lineText` is
  // the record's raw text, line-break bytes included.
  class ZEB_API tcallbacks {
   public:
    virtual ~tcallbacks();
    // Kept for the layout of the callback table; the reader never calls it.
    virtual void reserved();
    virtual int onReadLine(int line, const char* lineText);
    virtual int onReadItem(int line, int column, const char* fieldText);
    virtual bool onLineFinished(int line, const char* lineText);
    virtual void onFinished(int lineCount);
  };

  // `callbacks` (not owned) may be null: every record is then split and counted.
  explicit TCsvFileReader(tcallbacks* callbacks);
  TCsvFileReader(const TCsvFileReader& other);
  TCsvFileReader& operator=(const TCsvFileReader& other);
  virtual ~TCsvFileReader();

  // Reads the whole file and walks it: the number of records walked, or -2 (and no callback) when
  // the file is missing, empty or cannot be read.
  int openFile(const zwchar_t* fileName);
  // Walks a NUL-terminated text (null reads as empty): the number of records walked.
  int openFromMem(const char* text);

 private:
  tcallbacks* callbacks_;
};

#endif  // ZEB_FORMATS_TCSVFILEREADER_H

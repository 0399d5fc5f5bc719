// mdatastream.h: binary streams of raw bytes and little-endian unsigned integers.
//
// tdatastream reads from a private copy of a memory block or from a file (opened by path, or the
// caller's FILE*). File reads go through a 64 KiB cache, so many small typed reads cost few system
// reads; a request larger than the cache bypasses it with one direct read. An optional read limit
// caps the total number of bytes all reads together may return.
//
// tdatastreamWriter appends to a byte buffer (its own or the caller's) or writes to a file
// (opened by path, its folder created when missing, or the caller's FILE*).
//
//   tdatastreamWriter out;
//   out.writeUInt32(1);
//   out.writeUInt16(2);                                       // 01 00 00 00 02 00
//   tdatastream in(out.memData().p(), out.memData().size());
//   unsigned int a;
//   unsigned short b;
//   if (in.readUInt32(a) && in.readUInt16(b)) use(a, b);      // in.isEnd() is now true
//
// Nothing throws: a failed open shows as empty reads (reader) or 0 bytes written (writer), a
// short read as a short result or false. Neither class is copyable; one object belongs to one
// thread at a time.
#ifndef ZEB_DATA_MDATASTREAM_H
#define ZEB_DATA_MDATASTREAM_H

#include <cstdio>

#include "zeb/charset/zeb_charset.h"
#include "zeb/data/tbytesdata.h"
#include "zeb/zeb_api.h"

class ZEB_API tdatastream {
 public:
  enum tdataStreamType { memory = 0, file = 1 };

  // A memory stream over a private copy of `size` bytes of `data` (no copy when data is null or
  // size <= 0: the stream is empty), then resetPos(startPos). maxReadSize 0 means no read limit.
  // A char pointer picks the path constructor below: pass bytes held as text as const void*.
  tdatastream(const void* data, int size, int startPos = 0, int maxReadSize = 0);
  // A file stream: the file opened for binary reading and closed by the stream, then
  // resetPos(startPos). When the open fails the stream has no file: every read returns nothing
  // and isEnd() is true.
  tdatastream(const zwchar_t* path, int startPos = 0, int maxReadSize = 0);
  // As above, the path converted from `charset` to UTF-16 first.
  tdatastream(const char* path, tmibcharset charset, int startPos = 0, int maxReadSize = 0);
  // Reads the caller's open file, which the stream never closes. startPos -1 keeps the file's
  // current position; any other value goes through resetPos.
  tdatastream(std::FILE* file, int startPos = -1, int maxReadSize = 0);
  ~tdatastream();

  // Up to n bytes; the buffer's size is the number read (0 at the end, on error, for n < 1 or
  // once the read limit is used up). The reference stays valid until the next read.
  const tbytesdata& readData(int n);
  // True only when exactly n bytes were read; they are then copied to `out`. A short read still
  // consumes what it read.
  bool readData(int n, void* out);
  // Exactly 1, 2, 4 or 8 bytes, little-endian. When fewer are available (end of data or read
  // limit) the result is false, `value` is untouched and nothing is consumed.
  bool readUInt8(unsigned char& value);
  bool readUInt16(unsigned short& value);
  bool readUInt32(unsigned int& value);
  bool readUInt64(unsigned long long& value);
  // Reads 64 KiB chunks until one comes back empty; everything read.
  tbytesdata readAllData();

  // Memory: no byte left. File: a read hit the end of the file and no cached byte is unread.
  bool isEnd() const;
  // The offset of the next byte to read.
  int pos() const;
  // Moves the next read to offset p. Memory: only 0 <= p <= size - 1 is accepted, so the end
  // itself is refused (false). File: within the cached bytes only the cache offset moves;
  // otherwise the cache is dropped and the file seeked (false when the seek fails or there is no
  // file). A negative p is refused without any change.
  bool resetPos(int p);
  // The stream opened its file itself and owns it.
  bool isFileOpened() const;

  // Read limit: n > 0 caps the bytes all reads together return (counted since construction or
  // resetReadDataSize); 0 lifts the cap.
  void setMaxReadSize(int n);
  void clearMaxReadSize();
  void resetReadDataSize();

  tdataStreamType getStreamType() const;
  // The memory copy or the FILE*.
  void* dataHandle() const;
  int memDataSize() const;

 private:
  struct State;
  tdatastream(const tdatastream&);
  tdatastream& operator=(const tdatastream&);
  State* d;
};

class ZEB_API tdatastreamWriter {
 public:
  enum tdataStreamType { memory = 0, file = 1 };

  // A writer with its own empty target buffer. A file writer made this way has no file: its
  // writes return 0.
  explicit tdatastreamWriter(tdataStreamType type = memory);
  // A memory writer appending to the caller's buffer, from its current size. The buffer must
  // outlive the writer.
  explicit tdatastreamWriter(tbytesdata& target);
  // A file writer: "ab" when append, else "w+b" (truncate). When the open fails the file's
  // folder is created with its parents and the open tried once more. Writes to a file the writer
  // opened itself collect in a 64 KiB block that resetPos, finished() and the destructor hand to
  // the file (so a failed disk write can show at that point rather than in writeData).
  tdatastreamWriter(const zwchar_t* path, bool append);
  // As above, the path converted from `charset` to UTF-16 first.
  tdatastreamWriter(const char* path, tmibcharset charset, bool append);
  // Writes to the caller's file, which the writer never closes. Each write reaches the stream at
  // once, exactly as one fwrite of it would, so the caller may write to it and seek it in between.
  explicit tdatastreamWriter(std::FILE* file);
  ~tdatastreamWriter();

  // n bytes of p; returns n, or 0 when nothing was written (no file, a failed write, or a memory
  // target that cannot grow). n <= 0 is a programming error: an assertion record is logged and 0
  // returned.
  int writeData(const void* p, int n);
  int writeData(const tbytesdata& data);
  // 1, 2, 4 or 8 bytes little-endian; true when all were written.
  bool writeUInt8(unsigned char value);
  bool writeUInt16(unsigned short value);
  bool writeUInt32(unsigned int value);
  bool writeUInt64(unsigned long long value);

  // Memory writer, n >= 1: a target whose capacity is below n is moved to a block of exactly n
  // bytes, content kept. Otherwise nothing.
  tdatastreamWriter& setMemDataBufferSize(int n);
  // Memory: the target's size becomes max(p, 0), so later writes overwrite or extend from there;
  // a size past the old end is filled with zero bytes. File: seek to p from the start.
  void resetPos(int p);
  // File: the file offset; memory: the target's size; -1 without a target.
  int pos() const;
  // The target buffer. A file writer has none until this is first called; it then gets an empty
  // one of its own.
  tbytesdata& memData();
  // A file writer that opened its file closes it; later writes return 0. Nothing otherwise.
  void finished();
  // A file is present.
  bool isFileOpened() const;

 private:
  struct State;
  tdatastreamWriter(const tdatastreamWriter&);
  tdatastreamWriter& operator=(const tdatastreamWriter&);
  void openFile(const zwchar_t* path, bool append);
  State* d;
};

#endif  // ZEB_DATA_MDATASTREAM_H

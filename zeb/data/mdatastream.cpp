// mdatastream.cpp: the stream reader and writer. The reader's file side keeps one invariant: the
// file's own offset is always position + cacheFilled (position being where the cache starts), so
// the read point is position + cacheOffset and no read needs a seek.
#include "zeb/data/mdatastream.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "zeb/data/internal/little_endian.h"
#include "zeb/log/internal/assertion_record.h"
#include "zeb/platform/file.h"
#include "zeb/strings/TWideString.h"
#include "zeb/utils/mfile.h"

using zeb::internal::loadLittleEndian;
using zeb::internal::storeLittleEndian;

namespace {

constexpr int kCacheSize = 65536;

}  // namespace

// ---- reader ------------------------------------------------------------------------------------

struct tdatastream::State {
  unsigned char* memCopy = nullptr;  // memory: the private copy
  std::FILE* file = nullptr;         // file: the stream read from
  int memSize = 0;
  int position = 0;  // memory: next offset; file: the offset where the cache starts
  int cacheOffset = 0;
  tdataStreamType type = memory;
  tbytesdata lastResult;
  bool atEndOfFile = false;
  unsigned char* cache = nullptr;
  int cacheFilled = 0;
  bool ownsFile = false;
  int maxReadSize = 0;
  int bytesRead = 0;

  // Bytes the read limit still allows (INT_MAX without a limit).
  int allowance() const { return maxReadSize > 0 ? std::max(maxReadSize - bytesRead, 0) : INT_MAX; }
  int unreadCached() const { return cacheFilled - cacheOffset; }

  void openFile(const zwchar_t* path) {
    type = tdatastream::file;
    file = zeb::platform::openFile(path, "rb");
    ownsFile = file != nullptr;
    atEndOfFile = file == nullptr;
  }

  // Reads up to n bytes from the file at the cache's end into `into`; a short read marks the end.
  int readFromFile(unsigned char* into, int n) {
    const int got = static_cast<int>(std::fread(into, 1, static_cast<size_t>(n), file));
    if (got < n) atEndOfFile = true;
    return got;
  }

  // Drops the cached bytes: the cache now starts where the file's offset is.
  void dropCache() {
    position += cacheFilled;
    cacheFilled = 0;
    cacheOffset = 0;
  }

  // The read cache, allocated on first use; false when it cannot be.
  bool haveCache() {
    if (cache == nullptr) cache = static_cast<unsigned char*>(std::malloc(kCacheSize));
    return cache != nullptr;
  }

  bool refillCache() {
    dropCache();
    if (!haveCache()) return false;
    cacheFilled = readFromFile(cache, std::min(kCacheSize, allowance()));
    return cacheFilled > 0;
  }

  int readMemory(unsigned char* out, int n) {
    n = std::min({n, memSize - position, allowance()});
    if (n < 1) return 0;
    std::memcpy(out, memCopy + position, static_cast<size_t>(n));
    position += n;
    bytesRead += n;
    return n;
  }

  int readFile(unsigned char* out, int n) {
    int delivered = 0;
    while (delivered < n && file != nullptr && allowance() > 0) {
      const int remaining = n - delivered;
      if (unreadCached() > 0) {
        const int k = std::min({remaining, unreadCached(), allowance()});
        std::memcpy(out + delivered, cache + cacheOffset, static_cast<size_t>(k));
        cacheOffset += k;
        delivered += k;
        bytesRead += k;
      } else if (remaining > kCacheSize) {
        dropCache();
        const int got = readFromFile(out + delivered, std::min(remaining, allowance()));
        position += got;
        delivered += got;
        bytesRead += got;
        break;
      } else if (!refillCache()) {
        break;
      }
    }
    return delivered;
  }

  // The unsigned integer of `width` bytes at the read point, or false without consuming.
  template <int width>
  bool readLittleEndian(unsigned long long& value) {
    if (allowance() < width) return false;
    if (type == tdatastream::memory) {
      if (memSize - position < width) return false;
      value = loadLittleEndian(memCopy + position, width);
      position += width;
    } else {
      if (!cacheAtLeast(width)) return false;
      value = loadLittleEndian(cache + cacheOffset, width);
      cacheOffset += width;
    }
    bytesRead += width;
    return true;
  }

  // readLittleEndian of the width of T, into `value` only on success.
  template <typename T>
  bool readUnsigned(T& value) {
    unsigned long long v = 0;
    if (!readLittleEndian<sizeof(T)>(v)) return false;
    value = static_cast<T>(v);
    return true;
  }

  // Makes at least `width` unread bytes sit in the cache when the file holds them (the read limit
  // must allow `width` more bytes), moving the unread tail to the front before reading more.
  // Consumes nothing.
  bool cacheAtLeast(int width) {
    if (unreadCached() >= width) return true;
    if (file == nullptr || !haveCache()) return false;
    const int unread = unreadCached();
    std::memmove(cache, cache + cacheOffset, static_cast<size_t>(unread));
    position += cacheOffset;
    cacheOffset = 0;
    cacheFilled = unread;
    const int room = std::min(kCacheSize, allowance()) - unread;
    cacheFilled += readFromFile(cache + unread, room);
    return cacheFilled >= width;
  }
};

tdatastream::tdatastream(const void* data, int size, int startPos, int maxReadSize) : d(new State) {
  d->maxReadSize = maxReadSize;
  if (data != nullptr && size > 0) {
    d->memCopy = static_cast<unsigned char*>(std::malloc(static_cast<size_t>(size)));
    if (d->memCopy != nullptr) {
      std::memcpy(d->memCopy, data, static_cast<size_t>(size));
      d->memSize = size;
    }
  }
  resetPos(startPos);
}

tdatastream::tdatastream(const zwchar_t* path, int startPos, int maxReadSize) : d(new State) {
  d->maxReadSize = maxReadSize;
  d->openFile(path);
  resetPos(startPos);
}

tdatastream::tdatastream(const char* path, tmibcharset charset, int startPos, int maxReadSize)
    : d(new State) {
  d->maxReadSize = maxReadSize;
  d->openFile(TWideString(path, charset));
  resetPos(startPos);
}

tdatastream::tdatastream(std::FILE* file, int startPos, int maxReadSize) : d(new State) {
  d->maxReadSize = maxReadSize;
  d->type = tdatastream::file;
  d->file = file;
  d->atEndOfFile = file == nullptr;
  if (startPos == -1 && file != nullptr) {
    d->position = static_cast<int>(std::max(std::ftell(file), 0L));
  } else {
    resetPos(startPos);
  }
}

tdatastream::~tdatastream() {
  if (d->ownsFile) std::fclose(d->file);
  std::free(d->memCopy);
  std::free(d->cache);
  delete d;
}

const tbytesdata& tdatastream::readData(int n) {
  tbytesdata& result = d->lastResult;
  result.setDataSize(0);
  // No block larger than the bytes that can be delivered: a huge n at the end allocates nothing.
  n = std::min(n, d->allowance());
  if (d->type == memory) n = std::min(n, d->memSize - d->position);
  if (n < 1) return result;
  if (result.dataCapacity() < n) result.resetCapacity(n);
  if (result.dataCapacity() < n) return result;
  const int got = d->type == memory ? d->readMemory(result.p(), n) : d->readFile(result.p(), n);
  result.setDataSize(got);
  return result;
}

bool tdatastream::readData(int n, void* out) {
  const tbytesdata& got = readData(n);
  if (n < 1 || got.size() != n) return false;
  std::memcpy(out, got.p(), static_cast<size_t>(n));
  return true;
}

bool tdatastream::readUInt8(unsigned char& value) {
  return d->readUnsigned(value);
}

bool tdatastream::readUInt16(unsigned short& value) {
  return d->readUnsigned(value);
}

bool tdatastream::readUInt32(unsigned int& value) {
  return d->readUnsigned(value);
}

bool tdatastream::readUInt64(unsigned long long& value) {
  return d->readUnsigned(value);
}

tbytesdata tdatastream::readAllData() {
  tbytesdata all;
  for (;;) {
    const tbytesdata& chunk = readData(kCacheSize);
    if (chunk.isEmpty()) break;
    all.append(chunk);
  }
  return all;
}

bool tdatastream::isEnd() const {
  if (d->type == memory) return d->position >= d->memSize;
  return d->atEndOfFile && d->unreadCached() <= 0;
}

int tdatastream::pos() const {
  if (d->type == memory || d->cacheFilled == 0) return d->position;
  return d->position + d->cacheOffset;
}

bool tdatastream::resetPos(int p) {
  if (d->type == memory) {
    if (p < 0 || p > d->memSize - 1) return false;
    d->position = p;
    return true;
  }
  if (d->file == nullptr || p < 0) return false;
  if (d->cacheFilled > 0 && p >= d->position && p - d->position < d->cacheFilled) {
    d->cacheOffset = p - d->position;
    return true;
  }
  d->dropCache();
  d->atEndOfFile = false;
  if (std::fseek(d->file, p, SEEK_SET) != 0) return false;
  d->position = p;
  return true;
}

bool tdatastream::isFileOpened() const {
  return d->ownsFile;
}

void tdatastream::setMaxReadSize(int n) {
  d->maxReadSize = n;
}

void tdatastream::clearMaxReadSize() {
  d->maxReadSize = 0;
}

void tdatastream::resetReadDataSize() {
  d->bytesRead = 0;
}

tdatastream::tdataStreamType tdatastream::getStreamType() const {
  return d->type;
}

void* tdatastream::dataHandle() const {
  return d->type == memory ? static_cast<void*>(d->memCopy) : static_cast<void*>(d->file);
}

int tdatastream::memDataSize() const {
  return d->memSize;
}

// ---- writer ------------------------------------------------------------------------------------

struct tdatastreamWriter::State {
  tdataStreamType type = memory;
  tbytesdata* target = nullptr;
  std::FILE* file = nullptr;
  bool ownsFile = false;
  bool ownsBuffer = false;
  // An owned file is written through this block of kCacheSize bytes (nobody else writes to that
  // file, so the order of its bytes cannot change); a caller's file gets every write at once.
  unsigned char* pending = nullptr;
  int pendingSize = 0;

  ~State() { std::free(pending); }

  // Hands the pending bytes to the file; false when that write fails.
  bool flush() {
    if (pendingSize == 0) return true;
    const bool written = std::fwrite(pending, static_cast<size_t>(pendingSize), 1, file) == 1;
    pendingSize = 0;
    return written;
  }

  int writeFile(const void* p, int n) {
    if (file == nullptr) return 0;
    if (!ownsFile) return zeb::platform::writeToStream(file, p, static_cast<size_t>(n)) ? n : 0;
    if (pending == nullptr) {
      pending = static_cast<unsigned char*>(std::malloc(kCacheSize));
    }
    if (pending == nullptr || n > kCacheSize - pendingSize) {
      if (!flush()) return 0;
    }
    if (pending == nullptr || n >= kCacheSize) {
      return std::fwrite(p, static_cast<size_t>(n), 1, file) == 1 ? n : 0;
    }
    std::memcpy(pending + pendingSize, p, static_cast<size_t>(n));
    pendingSize += n;
    return n;
  }

  // writeData for n >= 1.
  int write(const void* p, int n) {
    if (type == tdatastreamWriter::file) return writeFile(p, n);
    if (target == nullptr) return 0;
    const int before = target->size();
    if (target->dataCapacity() - before >= n) {
      std::memcpy(target->p() + before, p, static_cast<size_t>(n));
      target->setDataSize(before + n);
      return n;
    }
    if (before > INT_MAX - n) return 0;
    target->append(p, n, true);
    return target->size() == before + n ? n : 0;
  }

  template <int width>
  bool writeLittleEndian(unsigned long long value) {
    unsigned char bytes[width];
    storeLittleEndian(bytes, value, width);
    return write(bytes, width) == width;
  }
};

tdatastreamWriter::tdatastreamWriter(tdataStreamType type) : d(new State) {
  d->type = type;
  d->target = new tbytesdata;
  d->ownsBuffer = true;
}

tdatastreamWriter::tdatastreamWriter(tbytesdata& target) : d(new State) {
  d->target = &target;
}

tdatastreamWriter::tdatastreamWriter(const zwchar_t* path, bool append) : d(new State) {
  openFile(path, append);
}

tdatastreamWriter::tdatastreamWriter(const char* path, tmibcharset charset, bool append)
    : d(new State) {
  openFile(TWideString(path, charset), append);
}

tdatastreamWriter::tdatastreamWriter(std::FILE* file) : d(new State) {
  d->type = tdatastreamWriter::file;
  d->file = file;
}

tdatastreamWriter::~tdatastreamWriter() {
  finished();
  if (d->ownsBuffer) delete d->target;
  delete d;
}

void tdatastreamWriter::openFile(const zwchar_t* path, bool append) {
  d->type = tdatastreamWriter::file;
  const char* mode = append ? "ab" : "w+b";
  d->file = zeb::platform::openFile(path, mode);
  if (d->file == nullptr && mforceCreateDirForFileW(path)) {
    d->file = zeb::platform::openFile(path, mode);
  }
  d->ownsFile = d->file != nullptr;
}

int tdatastreamWriter::writeData(const void* p, int n) {
  if (n <= 0) {
    zeb::internal::writeAssertionRecord("mdatastream", "tdatastreamWriter::writeData", __LINE__);
    return 0;
  }
  return d->write(p, n);
}

int tdatastreamWriter::writeData(const tbytesdata& data) {
  return writeData(data.p(), data.size());
}

bool tdatastreamWriter::writeUInt8(unsigned char value) {
  return d->writeLittleEndian<1>(value);
}

bool tdatastreamWriter::writeUInt16(unsigned short value) {
  return d->writeLittleEndian<2>(value);
}

bool tdatastreamWriter::writeUInt32(unsigned int value) {
  return d->writeLittleEndian<4>(value);
}

bool tdatastreamWriter::writeUInt64(unsigned long long value) {
  return d->writeLittleEndian<8>(value);
}

tdatastreamWriter& tdatastreamWriter::setMemDataBufferSize(int n) {
  if (d->type == memory && d->target != nullptr && n >= 1 && d->target->dataCapacity() < n) {
    d->target->ensureSize(n, true, false);
  }
  return *this;
}

void tdatastreamWriter::resetPos(int p) {
  if (d->type == file) {
    if (d->file != nullptr && d->flush()) std::fseek(d->file, p, SEEK_SET);
    return;
  }
  tbytesdata* target = d->target;
  if (target == nullptr) return;
  const int size = std::max(p, 0);
  const int before = target->size();
  if (size > before) {
    if (!target->ensureSize(size, true, false)) return;
    std::memset(target->p() + before, 0, static_cast<size_t>(size - before));
  }
  target->setDataSize(size);
}

int tdatastreamWriter::pos() const {
  if (d->type == file) {
    return d->file != nullptr ? static_cast<int>(std::ftell(d->file)) + d->pendingSize : -1;
  }
  return d->target != nullptr ? d->target->size() : -1;
}

tbytesdata& tdatastreamWriter::memData() {
  if (d->target == nullptr) {
    d->target = new tbytesdata;
    d->ownsBuffer = true;
  }
  return *d->target;
}

void tdatastreamWriter::finished() {
  if (!d->ownsFile || d->file == nullptr) return;
  d->flush();
  std::fclose(d->file);
  d->file = nullptr;
  d->ownsFile = false;
}

bool tdatastreamWriter::isFileOpened() const {
  return d->file != nullptr;
}

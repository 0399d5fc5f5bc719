// iconv_converter.cpp: iconv behind a per-thread cache of open converters.
//
// glibc has no iconvctl, so discarding illegal input is asked for with the "//IGNORE" suffix on
// the target name. glibc then converts the rest of the input and reports the discarded part as an
// error, which the callers count as a failed conversion.
#include "zeb/charset/internal/iconv_converter.h"

#include <errno.h>
#include <iconv.h>
#include <string.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "zeb/strings/zeb_cstr.h"

namespace zeb {
namespace charset {
namespace {

const iconv_t kNoConverter = reinterpret_cast<iconv_t>(-1);
const size_t kIconvError = static_cast<size_t>(-1);

// What a converter does with input it cannot convert.
enum class Rejects { kDiscard, kStop };

// An open iconv converter, closed with the object; kNoConverter when opening failed.
class IconvHandle {
 public:
  IconvHandle() = default;
  IconvHandle(const char* to, const char* from, Rejects rejects) : cd_(open(to, from, rejects)) {}
  ~IconvHandle() { close(); }
  IconvHandle(IconvHandle&& other) noexcept : cd_(std::exchange(other.cd_, kNoConverter)) {}
  IconvHandle& operator=(IconvHandle&& other) noexcept {
    if (this != &other) {
      close();
      cd_ = std::exchange(other.cd_, kNoConverter);
    }
    return *this;
  }

  bool isOpen() const { return cd_ != kNoConverter; }
  iconv_t get() const { return cd_; }

 private:
  static std::string targetName(const std::string& to, Rejects rejects) {
    return rejects == Rejects::kDiscard ? to + "//IGNORE" : to;
  }
  // The MIB name table spells many names with '_' where iconv's aliases have '-' ("KOI8_R",
  // "Windows_1252", "ISO_8859_15", "UTF_16LE"): a pair of names iconv does not know is tried
  // once more in that spelling.
  static std::string hyphenated(const char* name) {
    std::string text(name);
    std::replace(text.begin(), text.end(), '_', '-');
    return text;
  }
  static iconv_t open(const char* to, const char* from, Rejects rejects) {
    const iconv_t cd = iconv_open(targetName(to, rejects).c_str(), from);
    if (cd != kNoConverter || (strchr(to, '_') == nullptr && strchr(from, '_') == nullptr)) {
      return cd;
    }
    return iconv_open(targetName(hyphenated(to), rejects).c_str(), hyphenated(from).c_str());
  }
  void close() {
    if (isOpen()) iconv_close(cd_);
    cd_ = kNoConverter;
  }

  iconv_t cd_ = kNoConverter;
};

// strcmp for the short names of charsets, inline: the library call costs more than the compare.
bool sameText(const char* a, const char* b) {
  while (*a != '\0' && *a == *b) {
    ++a;
    ++b;
  }
  return *a == *b;
}

// One side of a cached converter's key: the name's text, and its address when it is fixed.
struct CachedName {
  std::string text;
  const char* fixedAddress = nullptr;

  void assign(CharsetName name) {
    text = name.text;
    fixedAddress = name.fixed ? name.text : nullptr;
  }
  bool matches(CharsetName name) const {
    return (name.fixed && name.text == fixedAddress) || sameText(text.c_str(), name.text);
  }
};

// Charsets whose glibc converters keep no state between characters: after a call that converted
// everything without error such a converter is back in its initial state and needs no reset.
bool isStatelessCharset(const char* name) {
  static const char* const kStateless[] = {
      "UTF-8", "UTF-16LE", "UTF-16BE", "GB2312",      "GBK",      "CP936", "GB18030",
      "BIG5",  "CP950",    "LATIN-9",  "ISO-8859-15", "US-ASCII", "ASCII", "CP1252",
  };
  for (const char* stateless : kStateless) {
    if (zeb_stricmp_impl(stateless, name) == 0) return true;
  }
  return false;
}

// A converter kept open for later calls; a failed open is kept too, so it is not retried.
struct CachedConverter {
  CachedName to;
  CachedName from;
  Rejects rejects = Rejects::kStop;
  bool stateless = false;
  bool initial = true;  // in its initial state: no reset needed before the next use
  IconvHandle handle;

  bool matches(CharsetName wantTo, CharsetName wantFrom, Rejects wantRejects) const {
    return rejects == wantRejects && to.matches(wantTo) && from.matches(wantFrom);
  }
};

class ConverterCache;

// The calling thread's cache, reached without the guard a thread_local object with a destructor
// needs: null until the thread's first conversion and again once the cache is gone. After that
// (the thread is ending) t_cacheGone is set and each conversion opens and closes its converter.
// Both live in the static TLS block (initial-exec): reaching them is one load instead of a call
// into the dynamic loader, which matters for short conversions. Their 9 bytes fit the surplus the
// loader keeps for libraries that are opened later.
#if defined(__GNUC__)
#define ZEB_FAST_TLS __attribute__((tls_model("initial-exec")))
#else
#define ZEB_FAST_TLS
#endif
ZEB_FAST_TLS thread_local ConverterCache* t_cache = nullptr;
ZEB_FAST_TLS thread_local bool t_cacheGone = false;

// The converters of one thread: a handful, replaced round-robin once the cache is full.
class ConverterCache {
 public:
  ConverterCache() { t_cache = this; }
  ConverterCache(const ConverterCache&) = delete;
  ConverterCache& operator=(const ConverterCache&) = delete;
  ~ConverterCache() {
    t_cache = nullptr;
    t_cacheGone = true;
  }

  // The calling thread's cache, made on first use; null once it is gone.
  static ConverterCache* ofThisThread() {
    if (t_cache == nullptr && !t_cacheGone) {
      thread_local ConverterCache cache;  // sets t_cache
    }
    return t_cache;
  }

  CachedConverter& get(CharsetName to, CharsetName from, Rejects rejects) {
    for (size_t i = 0; i < used_; ++i) {
      if (entries_[i].matches(to, from, rejects)) return entries_[i];
    }
    CachedConverter& slot = used_ < kCapacity ? entries_[used_++] : entries_[nextVictim()];
    slot.to.assign(to);
    slot.from.assign(from);
    slot.rejects = rejects;
    slot.stateless = isStatelessCharset(to.text) && isStatelessCharset(from.text);
    slot.initial = true;
    slot.handle = IconvHandle(to.text, from.text, rejects);
    return slot;
  }

 private:
  static constexpr size_t kCapacity = 8;

  size_t nextVictim() {
    const size_t victim = victim_;
    victim_ = (victim_ + 1) % kCapacity;
    return victim;
  }

  std::array<CachedConverter, kCapacity> entries_;
  size_t used_ = 0;
  size_t victim_ = 0;
};

// Runs work(cd) with a converter `to` <- `from` in its initial state; `work` returns whether it
// converted everything without error. Returns false, without running `work`, when no such
// converter can be opened.
template <typename Work>
bool withConverter(CharsetName to, CharsetName from, Rejects rejects, Work&& work) {
  ConverterCache* cache = ConverterCache::ofThisThread();
  if (cache == nullptr) {
    const IconvHandle handle(to.text, from.text, rejects);
    if (!handle.isOpen()) return false;
    work(handle.get());
    return true;
  }
  CachedConverter& converter = cache->get(to, from, rejects);
  if (!converter.handle.isOpen()) return false;
  if (!converter.initial) iconv(converter.handle.get(), nullptr, nullptr, nullptr, nullptr);
  const bool clean = work(converter.handle.get());
  converter.initial = converter.stateless && clean;
  return true;
}

// The output side of convertReplacing: the caller's buffer, or a small scratch buffer that is
// counted and reused when only measuring.
class ReplacingOutput {
 public:
  ReplacingOutput(void* out, size_t outBytes)
      : measuring_(out == nullptr),
        start_(measuring_ ? scratch_ : static_cast<char*>(out)),
        cursor_(start_),
        left_(measuring_ ? sizeof scratch_ : outBytes) {}

  char** cursor() { return &cursor_; }
  size_t* left() { return &left_; }
  size_t total() const { return counted_ + static_cast<size_t>(cursor_ - start_); }

  // Makes room after iconv ran out of it; false when the caller's buffer is full.
  bool makeRoom() {
    if (!measuring_ || cursor_ == start_) return false;
    counted_ += static_cast<size_t>(cursor_ - start_);
    cursor_ = start_;
    left_ = sizeof scratch_;
    return true;
  }

  bool append(const void* bytes, size_t size) {
    if (left_ < size && !makeRoom()) return false;
    memcpy(cursor_, bytes, size);
    cursor_ += size;
    left_ -= size;
    return true;
  }

 private:
  const bool measuring_;
  char scratch_[256];
  char* const start_;
  char* cursor_;
  size_t left_;
  size_t counted_ = 0;
};

size_t runReplacing(iconv_t cd, const void* in, size_t inBytes, ReplacingOutput& output,
                    const Replacement& replacement) {
  char* src = const_cast<char*>(static_cast<const char*>(in));
  size_t srcLeft = inBytes;
  while (iconv(cd, &src, &srcLeft, output.cursor(), output.left()) == kIconvError) {
    if (errno == E2BIG) {
      if (!output.makeRoom()) return kConversionFailed;
    } else if (errno == EILSEQ || errno == EINVAL) {
      if (!output.append(replacement.bytes, replacement.size)) return kConversionFailed;
      const size_t skip =
          replacement.rejectedLength(reinterpret_cast<const unsigned char*>(src), srcLeft);
      src += skip;
      srcLeft -= skip;
    } else {
      return kConversionFailed;
    }
  }
  return output.total();
}

bool isUtf16Name(const char* name) {
  return zeb_strnicmp(name, "UTF-16", 6) == 0;
}

// A conversion between two 8-bit charsets done in two steps through UTF-16: each charset's own
// decoder and encoder, rather than the direct converter of the pair.
ConvertResult convertThroughUtf16(CharsetName to, CharsetName from, const void* in, size_t inBytes,
                                  void* out, size_t outBytes) {
  // A byte of 8-bit text decodes to at most one UTF-16 unit; a four-byte GB18030 sequence to two.
  std::basic_string<char16_t> wide(inBytes, u'\0');
  const ConvertResult decoded = convertDiscarding(fixedName(kHostUtf16), from, in, inBytes,
                                                  &wide[0], wide.size() * sizeof(char16_t));
  if (!decoded.ok) return decoded;
  return convertDiscarding(to, fixedName(kHostUtf16), wide.data(), decoded.written, out, outBytes);
}

}  // namespace

// Some direct converters between two 8-bit charsets are wrong at the end of the input: glibc's
// GB2312 to GBK (CP936) reports an incomplete sequence after a final double-byte character of
// complete text. A conversion between 8-bit charsets that ends that way is done again through
// UTF-16, so every pair that can represent the text converts it.
ConvertResult convertDiscarding(CharsetName to, CharsetName from, const void* in, size_t inBytes,
                                void* out, size_t outBytes) {
  ConvertResult result{0, false};
  bool endedIncomplete = false;
  withConverter(to, from, Rejects::kDiscard, [&](iconv_t cd) {
    char* src = const_cast<char*>(static_cast<const char*>(in));
    size_t srcLeft = inBytes;
    char* dst = static_cast<char*>(out);
    size_t dstLeft = outBytes;
    const size_t status = iconv(cd, &src, &srcLeft, &dst, &dstLeft);
    endedIncomplete = status == kIconvError && errno == EINVAL;
    result = {outBytes - dstLeft, status == 0};
    return result.ok;
  });
  if (endedIncomplete && !isUtf16Name(to.text) && !isUtf16Name(from.text)) {
    return convertThroughUtf16(to, from, in, inBytes, out, outBytes);
  }
  return result;
}

size_t convertReplacing(CharsetName to, CharsetName from, const void* in, size_t inBytes, void* out,
                        size_t outBytes, const Replacement& replacement) {
  size_t total = kConversionFailed;
  withConverter(to, from, Rejects::kStop, [&](iconv_t cd) {
    ReplacingOutput output(out, outBytes);
    total = runReplacing(cd, in, inBytes, output, replacement);
    return false;  // after a rejected character the state is unknown: reset next time
  });
  return total;
}

bool isConvertibleCharset(const char* name) {
  return IconvHandle(name, "UTF-8", Rejects::kStop).isOpen() &&
         IconvHandle("UTF-8", name, Rejects::kStop).isOpen();
}

}  // namespace charset
}  // namespace zeb

// zeb_md5.h: the MD5 digest (RFC 1321), raw (16 bytes) or as 32 lower-case hex digits.
//
//   char hex[33];
//   CalculateMD5(nullptr, hex, "abc", 3);      // hex: "900150983cd24fb0d6963f7d28e17f72"
//
//   zeb_md5 md5("abc");                         // digests at once
//   const TAnsiString& text = md5.GetHash();    // the same hex digits
//   md5.Calculate(bytes, n);                    // digests other data; GetRawHash() has its bytes
//
// A zeb_md5 object must not be used from two threads at once.
#ifndef ZEB_DATA_ZEB_MD5_H
#define ZEB_DATA_ZEB_MD5_H

#include "zeb/strings/TAnsiString.h"
#include "zeb/zeb_api.h"

#ifdef __cplusplus
extern "C" {
#endif

// The digest of `length` bytes into `digest` (16 bytes); a null `digest` uses a buffer of the
// library's own, one per thread, valid until the thread's next call. A non-null `hexText` also
// gets the 32 lower-case hex digits and a NUL (33 bytes). Null data counts as no bytes. Returns
// the digest pointer.
ZEB_API unsigned char* CalculateMD5(unsigned char* digest, char* hexText, const void* data,
                                    unsigned int length);

#ifdef __cplusplus
}
#endif

class ZEB_API zeb_md5 {
 public:
  // No digest yet: the raw hash is 16 zero bytes and the hex text empty.
  zeb_md5();
  // The digest of a NUL-terminated text (null counts as empty).
  explicit zeb_md5(const char* text);
  // The digest of `length` bytes.
  zeb_md5(const void* data, unsigned int length);
  zeb_md5(const zeb_md5& other) = default;
  zeb_md5(zeb_md5&& other) noexcept = default;
  zeb_md5& operator=(const zeb_md5& other) = default;
  zeb_md5& operator=(zeb_md5&& other) noexcept = default;
  ~zeb_md5() = default;

  // Digests `length` bytes; returns the 16 raw bytes (valid while the object lives unchanged).
  const unsigned char* Calculate(const unsigned char* data, unsigned int length);
  // Digests the bytes, or a NUL-terminated text; returns the hex text.
  const TAnsiString& CalculateText(const unsigned char* data, unsigned int length);
  const TAnsiString& CalculateText(const char* text);

  // The last digest: 16 raw bytes, and its hex text.
  const unsigned char* GetRawHash() const { return m_raw; }
  const TAnsiString& GetHash() const { return m_hex; }

 private:
  unsigned char m_raw[16] = {};
  TAnsiString m_hex;
};

#endif  // ZEB_DATA_ZEB_MD5_H

// zeb_crc32.h: the CRC-32 of IEEE 802.3 (reflected, polynomial 0xEDB88320, register inverted
// before and after), the checksum of zip, gzip and PNG.
//
// A call continues from the value a previous call returned, so a stream is checksummed piece by
// piece, starting from 0:
//
//   unsigned crc = zeb_crc32(0, "12345", 5);
//   crc = zeb_crc32(crc, "6789", 4);            // 0xCBF43926, as in one call over "123456789"
//
// Long inputs run on the processor's carry-less multiply when it has one, chosen at run time;
// every path gives the same value.
#ifndef ZEB_DATA_ZEB_CRC32_H
#define ZEB_DATA_ZEB_CRC32_H

#include "zeb/zeb_api.h"

#ifdef __cplusplus
extern "C" {
#endif

// The CRC continued from `crc` over `length` bytes. Null data gives 0.
ZEB_API unsigned int zeb_crc32(unsigned int crc, const void* data, unsigned int length);

#ifdef __cplusplus
}
#endif

#endif  // ZEB_DATA_ZEB_CRC32_H

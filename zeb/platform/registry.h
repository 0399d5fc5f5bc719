// registry.h: the platform registry behind TRegKey, with the Win32 registry's contract: handles
// (HKEY) opened under a predefined hive, subkey paths separated by '\\', typed values of raw bytes,
// and Win32 status codes as results. Windows puts its own registry behind these functions; POSIX
// keeps one SQLite database per hive (see posix/registry.cpp).
//
// Semantics shared by every implementation:
//   - key and value names are case-insensitive (ASCII folding) and case-preserving; the default
//     value has the empty name (a null name means the same);
//   - subkeys enumerate in name order, values in the order they were first set;
//   - a handle whose key was deleted through another handle answers ERROR_KEY_DELETED;
//   - a null, closed or unknown handle answers ERROR_INVALID_HANDLE;
//   - a remote machine answers ERROR_BAD_NETPATH.
// POSIX adds storage failures: ERROR_BADDB for a database file that is not a registry database
// (corrupt, or another kind of file), ERROR_ACCESS_DENIED for a write to a read-only database,
// ERROR_BUSY when another process holds the database past the 30 s wait, and
// ERROR_REGISTRY_IO_FAILED when the database cannot be opened or read at all.
//
//   HKEY key;
//   if (regCreateKey(HKEY_CURRENT_USER, ZW("SOFTWARE\\zebworks\\demo"), KEY_ALL_ACCESS, &key) == 0)
//   {
//     DWORD runs = 1;
//     regSetValue(key, ZW("runs"), REG_DWORD, reinterpret_cast<BYTE*>(&runs), sizeof runs);
//     regCloseKey(key);
//   }
#ifndef ZEB_PLATFORM_REGISTRY_H
#define ZEB_PLATFORM_REGISTRY_H

#include "zeb/platform/wintypes.h"
#include "zeb/zeb_api.h"

namespace zeb {
namespace platform {

// Opens `path` under `parent` (a hive or an open key). A null or empty path opens the parent key
// itself as a new handle. *out is the new handle, or null on failure (ERROR_FILE_NOT_FOUND when
// a component is missing).
LONG regOpenKey(HKEY parent, const zwchar_t* path, REGSAM sam, HKEY* out);
// As regOpenKey, creating every missing component.
LONG regCreateKey(HKEY parent, const zwchar_t* path, REGSAM sam, HKEY* out);
// Closes an open key. A predefined hive closes successfully and stays usable.
LONG regCloseKey(HKEY key);
// The hive of `machine` as a handle; always ERROR_BAD_NETPATH here (no remote registries), with
// *out untouched.
LONG regConnectRegistry(const zwchar_t* machine, HKEY hive, HKEY* out);

// Deletes the key `path` under `parent`, which must have no subkeys (ERROR_ACCESS_DENIED
// otherwise, and for an empty path: a hive is never deleted). Its values go with it.
LONG regDeleteKey(HKEY parent, const zwchar_t* path);
// Deletes the key `path` under `parent` with all its subkeys and values.
LONG regDeleteTree(HKEY parent, const zwchar_t* path);

// Win32 RegQueryValueEx: with a null `data` only *size (and *type) are set; with a buffer of
// *size bytes the value is copied when it fits, else ERROR_MORE_DATA. *size is the value's size
// either way. `type` may be null; `size` may be null only when `data` is.
LONG regQueryValue(HKEY key, const zwchar_t* name, DWORD* type, BYTE* data, DWORD* size);
// Stores `size` bytes of `data` (null only with size 0) under `name` with the type code `type`,
// replacing an earlier value of that name in its place.
LONG regSetValue(HKEY key, const zwchar_t* name, DWORD type, const BYTE* data, DWORD size);
LONG regDeleteValue(HKEY key, const zwchar_t* name);

// Win32 RegEnumKeyEx: the name of subkey `index` into `name`, whose room is *nameLen units
// including the NUL. On success *nameLen is the name's length without the NUL; a buffer too small
// gives ERROR_MORE_DATA; past the last subkey ERROR_NO_MORE_ITEMS.
LONG regEnumKey(HKEY key, DWORD index, zwchar_t* name, DWORD* nameLen);
// Win32 RegEnumValue: name as regEnumKey, type and data as regQueryValue.
LONG regEnumValue(HKEY key, DWORD index, zwchar_t* name, DWORD* nameLen, DWORD* type, BYTE* data,
                  DWORD* size);
// Counts of subkeys and values (either pointer may be null).
LONG regQueryInfoKey(HKEY key, DWORD* subKeys, DWORD* values);

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_REGISTRY_H

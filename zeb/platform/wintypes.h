// wintypes.h: the handful of Win32 types, constants and status codes that the public interface
// speaks in. On Windows it is <windows.h>; elsewhere it declares the same names with the same
// values, so status codes compare equal on every platform.
#ifndef ZEB_PLATFORM_WINTYPES_H
#define ZEB_PLATFORM_WINTYPES_H

#if defined(_WIN32)
#include <windows.h>
#else

#include <stdint.h>

typedef int32_t LONG;
typedef uint32_t DWORD;
typedef uint16_t WORD;
typedef uint8_t BYTE;
typedef int BOOL;
typedef DWORD REGSAM;

typedef struct HKEY__* HKEY;
typedef struct HINSTANCE__* HMODULE;
typedef void* HANDLE;

typedef struct _FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
} FILETIME;

typedef struct _GUID {
  uint32_t Data1;
  uint16_t Data2;
  uint16_t Data3;
  uint8_t Data4[8];
} GUID;

#define HKEY_CLASSES_ROOT ((HKEY)(uintptr_t)0x80000000u)
#define HKEY_CURRENT_USER ((HKEY)(uintptr_t)0x80000001u)
#define HKEY_LOCAL_MACHINE ((HKEY)(uintptr_t)0x80000002u)
#define HKEY_USERS ((HKEY)(uintptr_t)0x80000003u)
#define HKEY_CURRENT_CONFIG ((HKEY)(uintptr_t)0x80000005u)

#define REG_NONE 0u
#define REG_SZ 1u
#define REG_EXPAND_SZ 2u
#define REG_BINARY 3u
#define REG_DWORD 4u
#define REG_MULTI_SZ 7u
#define REG_QWORD 11u

#define KEY_QUERY_VALUE 0x0001u
#define KEY_SET_VALUE 0x0002u
#define KEY_CREATE_SUB_KEY 0x0004u
#define KEY_ENUMERATE_SUB_KEYS 0x0008u
#define KEY_NOTIFY 0x0010u
#define KEY_CREATE_LINK 0x0020u
#define KEY_WOW64_64KEY 0x0100u
#define KEY_WOW64_32KEY 0x0200u
#define KEY_READ 0x20019u
#define KEY_WRITE 0x20006u
#define KEY_ALL_ACCESS 0xF003Fu

#define ERROR_SUCCESS 0L
#define ERROR_FILE_NOT_FOUND 2L
#define ERROR_ACCESS_DENIED 5L
#define ERROR_INVALID_HANDLE 6L
#define ERROR_NOT_ENOUGH_MEMORY 8L
#define ERROR_BAD_NETPATH 53L
#define ERROR_INVALID_PARAMETER 87L
#define ERROR_BUSY 170L
#define ERROR_MORE_DATA 234L
#define ERROR_NO_MORE_ITEMS 259L
#define ERROR_BADDB 1009L
#define ERROR_REGISTRY_IO_FAILED 1016L
#define ERROR_KEY_DELETED 1018L

#endif  // _WIN32

#endif  // ZEB_PLATFORM_WINTYPES_H

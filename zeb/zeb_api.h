// zeb_api.h: the export macro, the calling-convention macro and the 16-bit text unit that every
// public header of zeb_common shares.
//
//   zwchar_t   one UTF-16 code unit: wchar_t on Windows, char16_t elsewhere.
//   ZW("abc")  a literal of zwchar_t units: L"abc" on Windows, u"abc" elsewhere.
//   ZEB_API    marks an exported class or function; everything else stays hidden.
#ifndef ZEB_ZEB_API_H
#define ZEB_ZEB_API_H

#if defined(_WIN32)
#if defined(ZEB_COMMON_BUILDING)
#define ZEB_API __declspec(dllexport)
#else
#define ZEB_API __declspec(dllimport)
#endif
#define ZEB_STDCALL __stdcall
typedef wchar_t zwchar_t;
#define ZEB_WIDEN_(s) L##s
#else
#define ZEB_API __attribute__((visibility("default")))
#define ZEB_STDCALL
typedef char16_t zwchar_t;
#define ZEB_WIDEN_(s) u##s
#endif

#define ZW(s) ZEB_WIDEN_(s)

#endif  // ZEB_ZEB_API_H

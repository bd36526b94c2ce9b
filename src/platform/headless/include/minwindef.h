#pragma once

// Basic types. `long` is 8 bytes on this host and 4 on Windows, so the 32-bit names are fixed here.

#include <cstddef>
#include <cstdint>

#define WINAPI
#define CALLBACK
#define CONST const
#define STDMETHODCALLTYPE

using BYTE = uint8_t;
using UCHAR = uint8_t;
using WORD = uint16_t;
using USHORT = uint16_t;
using SHORT = int16_t;
using DWORD = uint32_t;
using UINT = uint32_t;
using ULONG = uint32_t;
using INT = int;
using LONG = int32_t;
using LONGLONG = int64_t;
using BOOL = int;
using CHAR = char;
using FLOAT = float;
using ATOM = WORD;
using SIZE_T = uintptr_t;
using UINT_PTR = uintptr_t;
using INT_PTR = intptr_t;
using LONG_PTR = intptr_t;
using ULONG_PTR = uintptr_t;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;
using HRESULT = LONG;
using LSTATUS = LONG;
using LPVOID = void*;
using LPCVOID = const void*;
using LPSTR = char*;
using LPCSTR = const char*;
using PBYTE = BYTE*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using PLONG = LONG*;

// NOLINTBEGIN(bugprone-macro-parentheses): a type's name takes none.
#define DECLARE_HANDLE(name)                                                                       \
    struct name##__;                                                                               \
    using name = name##__*
// NOLINTEND(bugprone-macro-parentheses)

using HANDLE = void*;
DECLARE_HANDLE(HINSTANCE);
using HMODULE = HINSTANCE;
DECLARE_HANDLE(HWND);
DECLARE_HANDLE(HICON);
using HCURSOR = HICON;
DECLARE_HANDLE(HBRUSH);
DECLARE_HANDLE(HMENU);
DECLARE_HANDLE(HDC);
DECLARE_HANDLE(HRGN);
DECLARE_HANDLE(HKEY);
DECLARE_HANDLE(HMONITOR);

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<INT_PTR>(-1)))
#define MAX_PATH 260
#define FALSE 0
#define TRUE 1

struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPRECT = RECT*;

struct POINT {
    LONG x;
    LONG y;
};

struct SIZE {
    LONG cx;
    LONG cy;
};

union LARGE_INTEGER {
    struct {
        DWORD LowPart;
        LONG HighPart;
    } u;
    LONGLONG QuadPart;
};

struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

struct GUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
};
using IID = GUID;
#define REFIID const IID&
#define REFGUID const GUID&

inline constexpr WORD LOWORD(uintptr_t value)
{
    return static_cast<WORD>(value & 0xFFFF);
}

inline constexpr WORD HIWORD(uintptr_t value)
{
    return static_cast<WORD>((value >> 16) & 0xFFFF);
}

#define S_OK (static_cast<HRESULT>(0))
#define S_FALSE (static_cast<HRESULT>(1))
#define E_NOTIMPL (static_cast<HRESULT>(0x80004001u))
#define E_NOINTERFACE (static_cast<HRESULT>(0x80004002u))
#define E_POINTER (static_cast<HRESULT>(0x80004003u))
#define E_FAIL (static_cast<HRESULT>(0x80004005u))
#define E_OUTOFMEMORY (static_cast<HRESULT>(0x8007000Eu))
#define E_INVALIDARG (static_cast<HRESULT>(0x80070057u))

inline constexpr bool SUCCEEDED(HRESULT result)
{
    return result >= 0;
}

inline constexpr bool FAILED(HRESULT result)
{
    return result < 0;
}

#define ERROR_SUCCESS 0
#define ERROR_FILE_NOT_FOUND 2
#define ERROR_PATH_NOT_FOUND 3
#define ERROR_ACCESS_DENIED 5
#define ERROR_INVALID_HANDLE 6
#define ERROR_NO_MORE_FILES 18
#define ERROR_INVALID_PARAMETER 87
#define ERROR_MORE_DATA 234

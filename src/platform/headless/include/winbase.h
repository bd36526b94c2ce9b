#pragma once

// Files, directories, clock, memory.

#include "minwindef.h"

#define FILE_ATTRIBUTE_READONLY 0x00000001
#define FILE_ATTRIBUTE_HIDDEN 0x00000002
#define FILE_ATTRIBUTE_SYSTEM 0x00000004
#define FILE_ATTRIBUTE_DIRECTORY 0x00000010
#define FILE_ATTRIBUTE_ARCHIVE 0x00000020
#define INVALID_FILE_ATTRIBUTES (static_cast<DWORD>(-1))

#define FILE_SHARE_READ 0x00000001
#define FILE_SHARE_WRITE 0x00000002
#define FILE_SHARE_DELETE 0x00000004
#define OPEN_EXISTING 3
#define FILE_FLAG_BACKUP_SEMANTICS 0x02000000
#define FILE_NAME_NORMALIZED 0x0
#define MOVEFILE_REPLACE_EXISTING 0x00000001

struct WIN32_FIND_DATAA {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0;
    DWORD dwReserved1;
    CHAR cFileName[MAX_PATH];
    CHAR cAlternateFileName[14];
};

struct BY_HANDLE_FILE_INFORMATION {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD dwVolumeSerialNumber;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD nNumberOfLinks;
    DWORD nFileIndexHigh;
    DWORD nFileIndexLow;
};

struct MEMORYSTATUS {
    DWORD dwLength;
    DWORD dwMemoryLoad;
    SIZE_T dwTotalPhys;
    SIZE_T dwAvailPhys;
    SIZE_T dwTotalPageFile;
    SIZE_T dwAvailPageFile;
    SIZE_T dwTotalVirtual;
    SIZE_T dwAvailVirtual;
};

struct SECURITY_ATTRIBUTES;

DWORD WINAPI GetLastError();
void WINAPI SetLastError(DWORD code);

/// The counter counts nanoseconds.
BOOL WINAPI QueryPerformanceFrequency(LARGE_INTEGER* frequencyOut);
BOOL WINAPI QueryPerformanceCounter(LARGE_INTEGER* countOut);
/// Fills `dwTotalPhys` and `dwAvailPhys`; the other sizes are 0 here.
void WINAPI GlobalMemoryStatus(MEMORYSTATUS* statusOut);

/// Returns the length of the text, or the required size including the terminator if `size` is too
/// small.
DWORD WINAPI GetCurrentDirectoryA(DWORD size, LPSTR buffer);
BOOL WINAPI SetCurrentDirectoryA(LPCSTR path);
BOOL WINAPI CreateDirectoryA(LPCSTR path, SECURITY_ATTRIBUTES* security);

/// A search returns "." and ".." and then the matches in byte order of their names, as they were
/// when it began. Dangling links are omitted; a leading dot means hidden.
HANDLE WINAPI FindFirstFileA(LPCSTR pattern, WIN32_FIND_DATAA* dataOut);
BOOL WINAPI FindNextFileA(HANDLE search, WIN32_FIND_DATAA* dataOut);
BOOL WINAPI FindClose(HANDLE search);

/// Opens an existing file or directory for its attributes only: `access` 0 and `OPEN_EXISTING`.
HANDLE WINAPI CreateFileA(LPCSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                          DWORD disposition, DWORD flags, HANDLE templateFile);
BOOL WINAPI GetFileInformationByHandle(HANDLE file, BY_HANDLE_FILE_INFORMATION* infoOut);
/// The path with links resolved; `flags` are ignored. Returns the length of the text, or the
/// required size including the terminator if `size` is too small.
DWORD WINAPI GetFinalPathNameByHandleA(HANDLE file, LPSTR buffer, DWORD size, DWORD flags);
BOOL WINAPI CloseHandle(HANDLE file);

DWORD WINAPI GetFileAttributesA(LPCSTR path);
BOOL WINAPI DeleteFileA(LPCSTR path);
BOOL WINAPI MoveFileExA(LPCSTR from, LPCSTR to, DWORD flags);

/// One process, one module: null.
HMODULE WINAPI GetModuleHandleA(LPCSTR name);
HMODULE WINAPI LoadLibraryA(LPCSTR name);
BOOL WINAPI FreeLibrary(HMODULE module);

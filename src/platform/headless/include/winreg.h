#pragma once

// Registry reads. The key `Software\A\B` of the current user is the file `A/B.conf` in
// $XDG_CONFIG_HOME (default ~/.config), with lines `Name=Value`.

#include "minwindef.h"

// Sign-extended, as in the public definition.
#define HKEY_CURRENT_USER                                                                          \
    (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000001u))))
#define KEY_READ 0x20019
#define REG_SZ 1

LSTATUS WINAPI RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD options, DWORD access, HKEY* keyOut);
/// `sizeInOut` is in bytes, including the terminator. A buffer that is too small is not written.
LSTATUS WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD typeOut,
                                LPBYTE data, LPDWORD sizeInOut);
LSTATUS WINAPI RegCloseKey(HKEY key);

#pragma once

// Registry reads. The key `Software\A\B` of the current user is the file `A/B.conf` under
// $XDG_CONFIG_HOME (default ~/.config), with lines `Name=Value`.

#include "minwindef.h"

// Widened as a signed number, as the public definition does.
#define HKEY_CURRENT_USER                                                                          \
    (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000001u))))
#define KEY_READ 0x20019
#define REG_SZ 1

LSTATUS WINAPI RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD options, DWORD access, HKEY* keyOut);
/// `sizeInOut` counts bytes, the terminator included. A buffer that is too small is left alone.
LSTATUS WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD typeOut,
                                LPBYTE data, LPDWORD sizeInOut);
LSTATUS WINAPI RegCloseKey(HKEY key);

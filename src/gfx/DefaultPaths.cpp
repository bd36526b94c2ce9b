#include "gfx/DefaultPaths.h"

#include "gfx/KRE_Gfx.h"

#include <algorithm>
#include <windows.h>

char gDefaultTexturePath[1024];
char gDefaultBasePath[1024];

namespace {

constexpr char kRegistryKey[] = "Software\\Fenwhistle\\QSAView";

/// Reads one value. Returns false and an empty text if there is no such key or value.
bool ReadRegistryText(const char* name, char (&textOut)[1024])
{
    textOut[0] = '\0';
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, kRegistryKey, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    DWORD size = sizeof textOut;
    const LSTATUS result =
        RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(textOut), &size);
    RegCloseKey(key);
    // A registry value need not end in a NUL. One that leaves no room for it would be truncated and
    // would name another directory.
    const bool isCut =
        size >= sizeof textOut && (size > sizeof textOut || textOut[size - 1] != '\0');
    const bool isRead = result == ERROR_SUCCESS && !isCut;
    textOut[isRead ? std::min<DWORD>(size, sizeof textOut - 1) : 0] = '\0';
    return isRead;
}

} // namespace

void ReadDefaultPaths()
{
    if (ReadRegistryText("DefaultTexturePath", gDefaultTexturePath))
        gGfx->SetDefaultTexturePath(gDefaultTexturePath);
    if (ReadRegistryText("DefaultBasePath", gDefaultBasePath))
        gGfx->SetDefaultBasePath(gDefaultBasePath);
}

void UseDefaultPaths()
{
    if (gDefaultTexturePath[0] != '\0')
        gGfx->SetDefaultTexturePath(gDefaultTexturePath);
    if (gDefaultBasePath[0] != '\0')
        gGfx->SetDefaultBasePath(gDefaultBasePath);
}

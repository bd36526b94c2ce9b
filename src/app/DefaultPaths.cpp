#include "app/DefaultPaths.h"

#include "gfx/KRE_Gfx.h"

#include <windows.h>

char gDefaultTexturePath[1024];
char gDefaultBasePath[1024];

namespace {

constexpr char kRegistryKey[] = "Software\\Fenwhistle\\QSAView";

/// Reads one value; false, with an empty text, if there is no such key or value.
bool ReadRegistryText(const char* name, char (&textOut)[1024])
{
    textOut[0] = '\0';
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, kRegistryKey, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    // A registry text need not end in a NUL, so one byte is kept back for it.
    DWORD size = sizeof textOut - 1;
    const LSTATUS result =
        RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(textOut), &size);
    RegCloseKey(key);
    const bool isRead = result == ERROR_SUCCESS;
    textOut[isRead ? size : 0] = '\0';
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

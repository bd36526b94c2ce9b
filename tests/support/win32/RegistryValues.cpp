#include "tests/support/RegistryValues.h"

#include <windows.h>

static const char kKey[] = "Software\\Fenwhistle\\QSAView";

RegistryValues::RegistryValues(const std::map<std::string, std::string>& values)
{
    RegDeleteKeyA(HKEY_CURRENT_USER, kKey);
    for (const auto& [name, value] : values) {
        HKEY key = nullptr;
        RegCreateKeyA(HKEY_CURRENT_USER, kKey, &key);
        RegSetValueExA(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                       static_cast<DWORD>(value.size() + 1));
        RegCloseKey(key);
    }
}

RegistryValues::~RegistryValues()
{
    RegDeleteKeyA(HKEY_CURRENT_USER, kKey);
}

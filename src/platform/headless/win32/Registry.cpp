#include "platform/headless/win32/HostPath.h"
#include "platform/headless/win32/LastError.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace headless {

namespace {

/// An opened key: the lines of its file.
struct Key {
    std::vector<std::string> lines;
};

std::string ConfigDirectory()
{
    const char* configHome = std::getenv("XDG_CONFIG_HOME");
    if (configHome != nullptr && configHome[0] != '\0')
        return configHome;
    const char* home = std::getenv("HOME");
    return home != nullptr ? std::string(home) + "/.config" : std::string();
}

/// `Software\A\B` is the file A/B.conf; other hives of the registry have no file.
std::string KeyFile(const char* subKey)
{
    std::string path = subKey;
    std::replace(path.begin(), path.end(), '\\', '/');
    const std::string prefix = "software/";
    if (path.size() <= prefix.size() ||
        !SameNameIgnoringCase(path.substr(0, prefix.size()).c_str(), prefix.c_str()))
        return {};
    const std::string directory = ConfigDirectory();
    return directory.empty() ? directory : directory + "/" + path.substr(prefix.size()) + ".conf";
}

} // namespace

} // namespace headless

using namespace headless;

LSTATUS WINAPI RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD, DWORD access, HKEY* keyOut)
{
    if (key != HKEY_CURRENT_USER || access != KEY_READ)
        return ERROR_INVALID_PARAMETER;
    const std::string path = KeyFile(subKey);
    std::ifstream file(ResolveHostPath(path.c_str()));
    if (path.empty() || !file)
        return ERROR_FILE_NOT_FOUND;
    auto opened = std::make_unique<Key>();
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        opened->lines.push_back(line);
    }
    *keyOut = reinterpret_cast<HKEY>(opened.release());
    return ERROR_SUCCESS;
}

LSTATUS WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD, LPDWORD typeOut, LPBYTE data,
                                LPDWORD sizeInOut)
{
    for (const std::string& line : reinterpret_cast<Key*>(key)->lines) {
        const size_t equals = line.find('=');
        if (equals == std::string::npos ||
            !SameNameIgnoringCase(line.substr(0, equals).c_str(), name))
            continue;
        const std::string value = line.substr(equals + 1);
        const DWORD needed = static_cast<DWORD>(value.size() + 1);
        const DWORD room = *sizeInOut;
        *sizeInOut = needed;
        if (typeOut != nullptr)
            *typeOut = REG_SZ;
        if (data == nullptr)
            return ERROR_SUCCESS;
        if (needed > room)
            return ERROR_MORE_DATA;
        std::memcpy(data, value.c_str(), needed);
        return ERROR_SUCCESS;
    }
    return ERROR_FILE_NOT_FOUND;
}

LSTATUS WINAPI RegCloseKey(HKEY key)
{
    delete reinterpret_cast<Key*>(key);
    return ERROR_SUCCESS;
}

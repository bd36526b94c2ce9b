#include "app/DirectorySearch.h"

#include <cstring>

DirectorySearch::DirectorySearch(const char* pattern) : entry()
{
    search = FindFirstFileA(pattern, &entry);
}

DirectorySearch::~DirectorySearch()
{
    if (!IsAtEnd())
        FindClose(search);
}

void DirectorySearch::Next()
{
    if (IsAtEnd() || FindNextFileA(search, &entry))
        return;
    FindClose(search);
    search = INVALID_HANDLE_VALUE;
}

bool DirectorySearch::IsSubdirectory() const
{
    return (Attributes() & FILE_ATTRIBUTE_DIRECTORY) != 0 && std::strcmp(Name(), ".") != 0 &&
           std::strcmp(Name(), "..") != 0;
}

bool DirectoryIdentity::IsNumbered() const
{
    constexpr DWORD kAllOnes = 0xFFFFFFFF;
    const bool hasVolume = volume != 0 && volume != kAllOnes;
    const bool isIndexZero = indexHigh == 0 && indexLow == 0;
    const bool isIndexAllOnes = indexHigh == kAllOnes && indexLow == kAllOnes;
    return hasVolume && !isIndexZero && !isIndexAllOnes;
}

bool DirectoryIdentity::operator==(const DirectoryIdentity& other) const
{
    if (IsNumbered() && other.IsNumbered())
        return volume == other.volume && indexHigh == other.indexHigh && indexLow == other.indexLow;
    return !path.IsEmpty() && std::strcmp(path.c_str(), other.path.c_str()) == 0;
}

/// Empty if the system does not know it.
static String ResolvedPath(HANDLE directory)
{
    String path;
    const DWORD size = GetFinalPathNameByHandleA(directory, nullptr, 0, FILE_NAME_NORMALIZED);
    if (size == 0)
        return path;
    char* buffer = path.GetBuffer(static_cast<int32_t>(size));
    const DWORD length = GetFinalPathNameByHandleA(directory, buffer, size, FILE_NAME_NORMALIZED);
    if (length == 0 || length >= size)
        path.Clear();
    return path;
}

DirectoryIdentity IdentifyDirectory(const char* path)
{
    DirectoryIdentity identity;
    const DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE directory =
        CreateFileA(path, 0, shareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (directory == INVALID_HANDLE_VALUE)
        return identity;
    BY_HANDLE_FILE_INFORMATION info;
    if (GetFileInformationByHandle(directory, &info))
        identity = {info.dwVolumeSerialNumber, info.nFileIndexHigh, info.nFileIndexLow, String()};
    if (!identity.IsNumbered())
        identity.path = ResolvedPath(directory);
    CloseHandle(directory);
    return identity;
}

String CurrentDirectory()
{
    String path;
    const DWORD size = GetCurrentDirectoryA(0, nullptr);
    if (size == 0)
        return path;
    if (GetCurrentDirectoryA(size, path.GetBuffer(static_cast<int32_t>(size))) == 0)
        path.Clear();
    return path;
}

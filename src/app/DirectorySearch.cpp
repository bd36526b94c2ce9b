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

bool DirectoryIdentity::operator==(const DirectoryIdentity& other) const
{
    const bool isKnown = volume != 0 || indexHigh != 0 || indexLow != 0;
    return isKnown && volume == other.volume && indexHigh == other.indexHigh &&
           indexLow == other.indexLow;
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
        identity = {info.dwVolumeSerialNumber, info.nFileIndexHigh, info.nFileIndexLow};
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

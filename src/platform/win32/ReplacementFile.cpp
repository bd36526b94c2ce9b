// The name of a file tells its owner: computer, start of the machine and process. Other processes cannot
// remove an open file anyway.

#include "platform/ReplacementFile.h"

#include <windows.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <io.h>

namespace {

constexpr const char* kPrefix = ".qsa2qsb-";
constexpr const char* kSuffix = ".tmp";
constexpr int kMostAttempts = 1000;

std::string gClearedDirectory; ///< full path of the directory cleaned last

std::string FullPath(const std::string& path)
{
    char text[MAX_PATH * 4];
    const DWORD length = GetFullPathNameA(path.c_str(), sizeof text, text, nullptr);
    return length > 0 && length < sizeof text ? std::string(text, length) : path;
}

/// Includes the separator; empty for the current directory.
std::string DirectoryOf(const std::string& path)
{
    return path.substr(0, path.find_last_of("\\/:") + 1);
}

constexpr ULONGLONG kTicksOfOthers = 24ULL * 60 * 60 * 10'000'000; // 24 hours in 100 ns

/// Windows counts its starts; 0 where it does not.
DWORD BootNumber()
{
    DWORD number = 0;
    DWORD size = sizeof number;
    RegGetValueA(HKEY_LOCAL_MACHINE,
                 "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Memory Management"
                 "\\PrefetchParameters",
                 "BootId", RRF_RT_REG_DWORD, nullptr, &number, &size);
    return number;
}

/// Process ids are only valid on one computer, until it is started again.
std::string OwnPrefix()
{
    char name[MAX_COMPUTERNAME_LENGTH + 1] = "";
    DWORD size = sizeof name;
    GetComputerNameA(name, &size);
    return std::string(kPrefix) + name + '-' + std::to_string(BootNumber()) + '-';
}

bool IsRunning(DWORD processId)
{
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, processId);
    if (!process)
        return GetLastError() == ERROR_ACCESS_DENIED;
    const bool runs = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    CloseHandle(process);
    return runs;
}

ULONGLONG TicksOf(const FILETIME& time)
{
    return ULONGLONG{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

/// A file of a process of this computer that has ended, or one to which nothing was written for long.
bool IsAbandoned(const WIN32_FIND_DATAA& found, const std::string& prefix, const FILETIME& now)
{
    if (_strnicmp(found.cFileName, prefix.c_str(), prefix.size()) == 0)
        return !IsRunning(std::strtoul(found.cFileName + prefix.size(), nullptr, 10));
    return TicksOf(found.ftLastWriteTime) + kTicksOfOthers < TicksOf(now);
}

/// Cleans a directory only if it is not the last one cleaned, so that a run over many files does
/// not read it for each of them.
void RemoveAbandoned(const std::string& directory, const FILETIME& now)
{
    const std::string full = FullPath(directory.empty() ? "." : directory);
    if (full == gClearedDirectory)
        return;
    gClearedDirectory = full;
    const std::string prefix = OwnPrefix();
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA((directory + kPrefix + "*" + kSuffix).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return;
    do {
        if (_strnicmp(found.cFileName, kPrefix, std::strlen(kPrefix)) != 0)
            continue; // the pattern may match a short name
        if (IsAbandoned(found, prefix, now))
            DeleteFileA((directory + found.cFileName).c_str());
    } while (FindNextFileA(search, &found));
    FindClose(search);
}

std::string NewName()
{
    static unsigned number = 0;
    return OwnPrefix() + std::to_string(GetCurrentProcessId()) + '-' + std::to_string(number++) +
           kSuffix;
}

int ErrnoOf(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return ENOENT;
    case ERROR_DISK_FULL:
        return ENOSPC;
    default:
        return EACCES;
    }
}

} // namespace

ReplacementFile::~ReplacementFile()
{
    if (!path.empty() && !isInPlace)
        DeleteFileA(path.c_str());
}

bool ReplacementFile::IsTargetThere(const char* targetPath)
{
    FILE* file = targetPath && *targetPath ? std::fopen(targetPath, "rb") : nullptr;
    return file && std::fclose(file) == 0;
}

bool ReplacementFile::Make(const char* targetPath)
{
    target = targetPath ? targetPath : "";
    const DWORD attributes = GetFileAttributesA(target.c_str());
    const bool isThere = attributes != INVALID_FILE_ATTRIBUTES;
    // An elevated process could open a write-protected file, but not replace it.
    const bool isProtected =
        isThere && (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0;
    FILE* present = isProtected ? nullptr : std::fopen(target.c_str(), "r+b");
    if (isThere && !present) {
        errno = EACCES; // also if the file is in use
        return false;
    }
    if (present) {
        const intptr_t handle = _get_osfhandle(_fileno(present));
        isInPlace = GetFileType(reinterpret_cast<HANDLE>(handle)) != FILE_TYPE_DISK;
        std::fclose(present);
    }
    if (!isInPlace)
        return MakeBeside();
    path = target;
    return true;
}

bool ReplacementFile::MakeBeside()
{
    const std::string directory = DirectoryOf(target);
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        const std::string made = directory + NewName();
        const HANDLE file = CreateFileA(made.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            FILETIME now; // by the clock of the file system
            const bool hasTime = GetFileTime(file, nullptr, nullptr, &now);
            CloseHandle(file);
            path = made;
            if (hasTime)
                RemoveAbandoned(directory, now);
            return true;
        }
        if (GetLastError() != ERROR_FILE_EXISTS) {
            errno = ErrnoOf(GetLastError());
            return false;
        }
    }
    errno = EEXIST;
    return false;
}

bool ReplacementFile::MoveOverTarget()
{
    if (isInPlace)
        return true;
    if (!MoveFileExA(path.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        errno = ErrnoOf(GetLastError());
        return false;
    }
    path.clear();
    return true;
}

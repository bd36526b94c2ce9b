#include "platform/headless/win32/DirectoryEntries.h"
#include "platform/headless/win32/DirectoryIndex.h"
#include "platform/headless/win32/HostPath.h"
#include "platform/headless/win32/LastError.h"
#include "platform/headless/win32/SimulateFileIndex.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace headless {

namespace {

/// What a search returns for one entry.
struct FoundEntry {
    std::string name;
    DWORD attributes;
    uint64_t sizeBytes;
};

/// A search in progress: the entries as they were at its start, and the next one to return. Nothing
/// is looked up later, because the current directory may have changed by then.
struct Search {
    std::vector<FoundEntry> entries;
    size_t next = 0;
};

/// A file or directory opened for its attributes only.
struct InfoFile {
    struct stat info;
    std::string path; // with links resolved; empty if not known
};

std::optional<uint64_t> gReportedFileIndex;

uint64_t FileIndexOf(const struct stat& info)
{
    return gReportedFileIndex.value_or(info.st_ino);
}

std::string PathWithoutLinks(const std::string& path)
{
    const std::unique_ptr<char, void (*)(void*)> resolved(realpath(path.c_str(), nullptr),
                                                          std::free);
    return resolved ? resolved.get() : "";
}

DWORD AttributesOf(const char* name, const struct stat& info)
{
    DWORD attributes = 0;
    const bool isDots = std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
    if (name[0] == '.' && !isDots)
        attributes |= FILE_ATTRIBUTE_HIDDEN;
    if (S_ISDIR(info.st_mode))
        return attributes | FILE_ATTRIBUTE_DIRECTORY;
    if ((info.st_mode & S_IWUSR) == 0)
        attributes |= FILE_ATTRIBUTE_READONLY;
    return attributes | FILE_ATTRIBUTE_ARCHIVE;
}

std::string LeafOf(const std::string& path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

/// Adds an entry unless it is a dangling link or no longer exists.
void AddEntry(Search& search, const std::string& directory, const std::string& name)
{
    struct stat info;
    if (stat((directory + name).c_str(), &info) != 0)
        return;
    search.entries.push_back(
        {name, AttributesOf(name.c_str(), info), static_cast<uint64_t>(info.st_size)});
}

/// Adds all entries that match the pattern, "." and ".." first. False if the directory cannot be
/// read.
bool AddMatches(Search& search, const std::string& directory, const std::string& pattern)
{
    const bool isRead = VisitEntries(directory, [&](const dirent& entry) {
        if (MatchesWildcard(entry.d_name, pattern.c_str()))
            AddEntry(search, directory, entry.d_name);
    });
    if (!isRead)
        return false;
    std::sort(search.entries.begin(), search.entries.end(),
              [](const FoundEntry& a, const FoundEntry& b) {
                  const bool aDots = a.name == "." || a.name == "..";
                  const bool bDots = b.name == "." || b.name == "..";
                  return aDots != bDots ? aDots : a.name < b.name;
              });
    return true;
}

BOOL GiveNextEntry(Search& search, WIN32_FIND_DATAA* dataOut)
{
    if (search.next == search.entries.size())
        return FailWith(ERROR_NO_MORE_FILES);
    const FoundEntry& entry = search.entries[search.next++];
    *dataOut = {};
    dataOut->dwFileAttributes = entry.attributes;
    dataOut->nFileSizeLow = static_cast<DWORD>(entry.sizeBytes & 0xFFFFFFFF);
    dataOut->nFileSizeHigh = static_cast<DWORD>(entry.sizeBytes >> 32);
    static_assert(sizeof dataOut->cFileName > NAME_MAX);
    std::memcpy(dataOut->cFileName, entry.name.c_str(), entry.name.size() + 1);
    return TRUE;
}

/// Copies a text to the caller's buffer of `size` bytes.
DWORD GiveText(const std::string& text, DWORD size, LPSTR buffer)
{
    const auto length = static_cast<DWORD>(text.size());
    if (length >= size)
        return length + 1;
    std::memcpy(buffer, text.c_str(), length + 1);
    return length;
}

} // namespace

} // namespace headless

using namespace headless;

DWORD WINAPI GetCurrentDirectoryA(DWORD size, LPSTR buffer)
{
    const std::unique_ptr<char, void (*)(void*)> path(getcwd(nullptr, 0), std::free);
    // A deleted directory has no path; the kernel then says "(unreachable)".
    if (path == nullptr || path.get()[0] != '/') {
        FailWith(ERROR_FILE_NOT_FOUND);
        return 0;
    }
    return GiveText(path.get(), size, buffer);
}

BOOL WINAPI SetCurrentDirectoryA(LPCSTR path)
{
    return chdir(ResolveHostPath(path).c_str()) == 0 ? TRUE : FailWithErrno();
}

BOOL WINAPI CreateDirectoryA(LPCSTR path, SECURITY_ATTRIBUTES*)
{
    return mkdir(ResolveTargetPath(path).c_str(), 0777) == 0 ? TRUE : FailWithErrno();
}

HANDLE WINAPI FindFirstFileA(LPCSTR pattern, WIN32_FIND_DATAA* dataOut)
{
    const std::string path = ResolveHostPath(pattern);
    const std::string leaf = LeafOf(path);
    const std::string directory = path.substr(0, path.size() - leaf.size());
    if (leaf.empty() || leaf.size() > NAME_MAX) {
        FailWith(ERROR_PATH_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
    }
    auto search = std::make_unique<Search>();
    // A plain name means a single file, which ResolveHostPath has found.
    if (!HasWildcard(leaf.c_str())) {
        AddEntry(*search, directory, leaf);
    } else if (!AddMatches(*search, directory, leaf)) {
        FailWithErrno();
        return INVALID_HANDLE_VALUE;
    }
    if (!GiveNextEntry(*search, dataOut)) {
        FailWith(ERROR_FILE_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
    }
    return search.release();
}

BOOL WINAPI FindNextFileA(HANDLE search, WIN32_FIND_DATAA* dataOut)
{
    if (search == INVALID_HANDLE_VALUE || search == nullptr)
        return FailWith(ERROR_INVALID_HANDLE);
    return GiveNextEntry(*static_cast<Search*>(search), dataOut);
}

BOOL WINAPI FindClose(HANDLE search)
{
    if (search == INVALID_HANDLE_VALUE || search == nullptr)
        return FailWith(ERROR_INVALID_HANDLE);
    delete static_cast<Search*>(search);
    return TRUE;
}

HANDLE WINAPI CreateFileA(LPCSTR path, DWORD access, DWORD, SECURITY_ATTRIBUTES*, DWORD disposition,
                          DWORD, HANDLE)
{
    // UNMODELLED: reading and writing through handles; the engine opens files for their attributes
    // only.
    if (access != 0 || disposition != OPEN_EXISTING) {
        FailWith(ERROR_INVALID_PARAMETER);
        return INVALID_HANDLE_VALUE;
    }
    auto file = std::make_unique<InfoFile>();
    const std::string resolved = ResolveHostPath(path);
    if (stat(resolved.c_str(), &file->info) != 0) {
        FailWithErrno();
        return INVALID_HANDLE_VALUE;
    }
    file->path = PathWithoutLinks(resolved);
    return file.release();
}

BOOL WINAPI GetFileInformationByHandle(HANDLE file, BY_HANDLE_FILE_INFORMATION* infoOut)
{
    if (file == INVALID_HANDLE_VALUE || file == nullptr)
        return FailWith(ERROR_INVALID_HANDLE);
    const struct stat& info = static_cast<InfoFile*>(file)->info;
    const uint64_t index = FileIndexOf(info);
    *infoOut = {};
    infoOut->dwFileAttributes = AttributesOf("", info);
    infoOut->dwVolumeSerialNumber = static_cast<DWORD>(info.st_dev);
    infoOut->nFileSizeHigh = static_cast<DWORD>(info.st_size >> 32);
    infoOut->nFileSizeLow = static_cast<DWORD>(info.st_size & 0xFFFFFFFF);
    infoOut->nNumberOfLinks = static_cast<DWORD>(info.st_nlink);
    infoOut->nFileIndexHigh = static_cast<DWORD>(index >> 32);
    infoOut->nFileIndexLow = static_cast<DWORD>(index & 0xFFFFFFFF);
    return TRUE;
}

void headless::SimulateFileIndex(std::optional<uint64_t> index)
{
    gReportedFileIndex = index;
}

DWORD WINAPI GetFinalPathNameByHandleA(HANDLE file, LPSTR buffer, DWORD size, DWORD)
{
    if (file == INVALID_HANDLE_VALUE || file == nullptr ||
        static_cast<InfoFile*>(file)->path.empty()) {
        FailWith(ERROR_INVALID_HANDLE);
        return 0;
    }
    return GiveText(static_cast<InfoFile*>(file)->path, size, buffer);
}

BOOL WINAPI CloseHandle(HANDLE file)
{
    if (file == INVALID_HANDLE_VALUE || file == nullptr)
        return FailWith(ERROR_INVALID_HANDLE);
    delete static_cast<InfoFile*>(file);
    return TRUE;
}

DWORD WINAPI GetFileAttributesA(LPCSTR path)
{
    const std::string resolved = ResolveHostPath(path);
    struct stat info;
    if (stat(resolved.c_str(), &info) != 0) {
        FailWithErrno();
        return INVALID_FILE_ATTRIBUTES;
    }
    return AttributesOf(LeafOf(resolved).c_str(), info);
}

BOOL WINAPI DeleteFileA(LPCSTR path)
{
    const std::string resolved = ResolveHostPath(path);
    if (unlink(resolved.c_str()) != 0)
        return FailWithErrno();
    NoteEntryChanged(resolved);
    return TRUE;
}

BOOL WINAPI MoveFileExA(LPCSTR from, LPCSTR to, DWORD flags)
{
    const std::string source = ResolveHostPath(from);
    const std::string target = ResolveTargetPath(to);
    struct stat info;
    if ((flags & MOVEFILE_REPLACE_EXISTING) == 0 && stat(target.c_str(), &info) == 0)
        return FailWith(ERROR_ACCESS_DENIED);
    if (std::rename(source.c_str(), target.c_str()) != 0)
        return FailWithErrno();
    NoteEntryChanged(source);
    NoteEntryChanged(target);
    return TRUE;
}

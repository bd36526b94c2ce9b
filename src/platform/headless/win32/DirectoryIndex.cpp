#include "platform/headless/win32/DirectoryIndex.h"

#include "platform/headless/win32/DirectoryEntries.h"

#include <algorithm>
#include <dirent.h>
#include <new>
#include <sys/stat.h>
#include <unordered_map>

namespace headless {

namespace {

/// With fewer entries, reading the directory is as fast as keeping an index up to date.
constexpr size_t kIndexThreshold = 1024;

/// The entries of the most recent large directory, by folded name.
struct DirectoryIndex {
    dev_t device = 0;
    ino_t inode = 0;
    timespec changed = {};
    std::unordered_map<std::string, std::string> entries;

    bool IsOf(const struct stat& info) const
    {
        return !entries.empty() && device == info.st_dev && inode == info.st_ino;
    }
    bool IsCurrent(const struct stat& info) const
    {
        return IsOf(info) && changed.tv_sec == info.st_mtim.tv_sec &&
               changed.tv_nsec == info.st_mtim.tv_nsec;
    }
};

DirectoryIndex gIndex;

std::string Folded(std::string name)
{
    std::transform(name.begin(), name.end(), name.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return name;
}

void Insert(std::unordered_map<std::string, std::string>& entries, const std::string& name)
{
    const auto [place, isNew] = entries.emplace(Folded(name), name);
    if (!isNew)
        place->second = std::min(place->second, name);
}

std::string LookUp(const std::unordered_map<std::string, std::string>& entries,
                   const std::string& name)
{
    const auto found = entries.find(Folded(name));
    return found != entries.end() ? found->second : std::string();
}

bool ReadEntries(const std::string& directory,
                 std::unordered_map<std::string, std::string>& entriesOut)
{
    return VisitEntries(directory, [&](const dirent& entry) { Insert(entriesOut, entry.d_name); });
}

void UpdateEntry(const std::string& path)
{
    const size_t slash = path.rfind('/');
    const std::string directory = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    struct stat info;
    if (stat(directory.c_str(), &info) != 0 || !gIndex.IsOf(info))
        return;
    const std::string leaf = slash == std::string::npos ? path : path.substr(slash + 1);
    struct stat entry;
    if (lstat(path.c_str(), &entry) == 0)
        Insert(gIndex.entries, leaf);
    else if (LookUp(gIndex.entries, leaf) == leaf)
        gIndex.entries.erase(Folded(leaf));
    gIndex.changed = info.st_mtim;
}

} // namespace

std::string FindEntryIgnoringCase(const std::string& directory, const std::string& name)
{
    const std::string path = directory.empty() ? "." : directory;
    struct stat info;
    if (stat(path.c_str(), &info) != 0)
        return {};
    if (gIndex.IsCurrent(info))
        return LookUp(gIndex.entries, name);

    // The modification time is read before the entries, so that a change in between is noticed.
    std::unordered_map<std::string, std::string> entries;
    if (!ReadEntries(path, entries))
        return {};
    std::string found = LookUp(entries, name);
    if (entries.size() >= kIndexThreshold)
        gIndex = {info.st_dev, info.st_ino, info.st_mtim, std::move(entries)};
    return found;
}

void NoteEntryChanged(const std::string& path) noexcept
{
    if (gIndex.entries.empty())
        return;
    try {
        UpdateEntry(path);
    } catch (const std::bad_alloc&) {
        gIndex.entries.clear(); // the next search reads the directory again
    }
}

} // namespace headless

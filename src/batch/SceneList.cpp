#include "batch/SceneList.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>

#include "base/FileStream.h"
#include "batch/LineBuffer.h"
#include "batch/WorkingDirectory.h"
#include "platform/headless/win32/DescriptorStream.h"
#include "platform/headless/win32/DirectoryEntries.h"

namespace {

/// The names of a directory in byte order. False, with `errno`, if it cannot be read.
bool ReadNames(const Descriptor& opened, std::vector<std::string>& namesOut)
{
    const bool isRead = headless::VisitEntries(dup(opened.Get()), [&](const dirent& entry) {
        if (entry.d_name[0] != '.')
            namesOut.emplace_back(entry.d_name);
    });
    const int reason = errno;
    std::sort(namesOut.begin(), namesOut.end());
    errno = reason;
    return isRead;
}

/// A relative path keeps its directories below another one; of any other only the name is kept.
size_t MirrorOfFile(const std::string& path)
{
    const bool leadsOut =
        path[0] == '/' || path.starts_with("../") || path.find("/../") != std::string::npos;
    if (leadsOut)
        return path.rfind('/') + 1;
    size_t from = 0;
    while (path.compare(from, 2, "./") == 0)
        from += 2;
    return from;
}

} // namespace

bool SceneList::Collect(const BatchOptions& wanted)
{
    options = &wanted;
    LeaveOut(wanted.outDirectory);
    LeaveOut(wanted.framesDirectory);
    for (const std::string& path : wanted.paths)
        AddPath(path);
    const bool isRead = wanted.listFile.empty() || ReadListFile();
    files = {};
    directories = {};
    roots = {};
    entries.shrink_to_fit();
    return isRead;
}

void SceneList::MoveTo(size_t number, const std::string& path)
{
    entries[number].path = path;
    entries[number].mirrorFrom = 0;
}

/// What this run writes is no source of it.
void SceneList::LeaveOut(const std::string& directory)
{
    struct stat info;
    if (!directory.empty() && stat(directory.c_str(), &info) == 0)
        directories.insert({info.st_dev, info.st_ino});
}

void SceneList::AddPath(const std::string& path)
{
    struct stat info;
    if (stat(path.c_str(), &info) != 0) {
        SceneEntry missing;
        missing.path = path;
        missing.errorNumber = errno;
        entries.push_back(std::move(missing));
    } else if (S_ISDIR(info.st_mode)) {
        NoteNamed(path);
        if (!roots.insert({info.st_dev, info.st_ino}).second)
            return;                                    // nothing new is below it
        directories.erase({info.st_dev, info.st_ino}); // named, so it is wanted
        Walk(path);
    } else {
        NoteNamed(SplitPath(path).directory);
        AddFile(path, MirrorOfFile(path), info);
    }
}

/// Files of one directory follow each other in most lists.
void SceneList::NoteNamed(const std::string& directory)
{
    if (named.empty() || named.back() != directory)
        named.push_back(directory);
}

void SceneList::AddFile(std::string path, size_t mirrorFrom, const struct stat& info)
{
    if (!files.insert({info.st_dev, info.st_ino}).second)
        return;
    const FileStamp stamp = StampOf(info);
    SceneEntry entry;
    entry.path = std::move(path);
    entry.path.shrink_to_fit();
    entry.mirrorFrom = static_cast<uint32_t>(mirrorFrom);
    entry.sizeBytes = stamp.sizeBytes;
    entry.changedNs = stamp.changedNs;
    entries.push_back(std::move(entry));
}

/// Depth first, without recursion: the depth of a tree is not ours to decide.
void SceneList::Walk(const std::string& root)
{
    const size_t rootLength = root.back() == '/' ? root.size() : root.size() + 1;
    std::vector<std::string> waiting = {root};
    while (!waiting.empty()) {
        const std::string path = std::move(waiting.back());
        waiting.pop_back();
        std::vector<std::string> below;
        ReadDirectory(path, rootLength, below);
        waiting.insert(waiting.end(), std::make_move_iterator(below.rbegin()),
                       std::make_move_iterator(below.rend()));
    }
}

void SceneList::ReadDirectory(const std::string& path, size_t rootLength,
                              std::vector<std::string>& belowOut)
{
    const Descriptor opened = OpenDirectory(AT_FDCWD, path);
    struct stat self;
    if (opened.IsOpen() && fstat(opened.Get(), &self) == 0 &&
        !directories.insert({self.st_dev, self.st_ino}).second)
        return;
    std::vector<std::string> names;
    if (!opened.IsOpen() || !ReadNames(opened, names)) {
        unread.push_back({path, errno});
        return;
    }
    const std::string prefix = path.back() == '/' ? path : path + "/";
    for (const std::string& name : names) {
        struct stat info;
        std::string whole = prefix + name;
        const std::string below = whole.substr(std::min(rootLength, whole.size()));
        if (fstatat(opened.Get(), name.c_str(), &info, 0) != 0) // a dangling link, or just gone
            continue;
        if (S_ISDIR(info.st_mode) && !IsExcluded(name.c_str(), below))
            belowOut.push_back(std::move(whole));
        else if (S_ISREG(info.st_mode) && IsWanted(name.c_str(), below))
            AddFile(std::move(whole), rootLength, info);
    }
}

bool SceneList::IsExcluded(const char* name, const std::string& below) const
{
    return std::any_of(options->excludes.begin(), options->excludes.end(),
                       [&](const std::string& pattern) {
                           return fnmatch(pattern.c_str(), name, 0) == 0 ||
                                  fnmatch(pattern.c_str(), below.c_str(), 0) == 0;
                       });
}

/// The converter's patterns ignore case, as its authors' file names do.
bool SceneList::IsWanted(const char* name, const std::string& below) const
{
    const bool isIncluded = std::any_of(
        options->includes.begin(), options->includes.end(), [&](const std::string& pattern) {
            return fnmatch(pattern.c_str(), name, FNM_CASEFOLD) == 0 ||
                   fnmatch(pattern.c_str(), below.c_str(), FNM_CASEFOLD) == 0;
        });
    return isIncluded && !IsExcluded(name, below);
}

void SceneList::SetListError()
{
    error = "the list '" + options->listFile + "' cannot be read: " + std::strerror(errno) +
            "; name another one with --from-file";
}

bool SceneList::ReadListFile()
{
    const bool isStandardInput = options->listFile == "-";
    const FileStream opened(isStandardInput
                                ? nullptr
                                : headless::OpenDescriptorStream(options->listFile.c_str(), "rbe"));
    FILE* const stream = isStandardInput ? stdin : opened.get();
    if (!stream) {
        SetListError();
        return false;
    }
    LineBuffer line;
    const int end = options->listHasNulls ? '\0' : '\n';
    for (ssize_t got = getdelim(&line.text, &line.room, end, stream); got >= 0;
         got = getdelim(&line.text, &line.room, end, stream)) {
        std::string path(line.text, static_cast<size_t>(got));
        if (path.back() == static_cast<char>(end)) // there is at least one byte
            path.pop_back();
        if (!path.empty() && path.find('\0') == std::string::npos)
            AddPath(path);
    }
    const bool isRead = std::ferror(stream) == 0;
    if (!isRead)
        SetListError();
    return isRead;
}

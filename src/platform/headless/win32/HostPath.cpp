#include "platform/headless/win32/HostPath.h"

#include "platform/headless/win32/DirectoryIndex.h"

#include <algorithm>
#include <cstring>
#include <sys/stat.h>

namespace headless {

namespace {

char FoldCase(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool Exists(const std::string& path)
{
    struct stat info;
    return stat(path.c_str(), &info) == 0;
}

} // namespace

bool SameNameIgnoringCase(const char* a, const char* b)
{
    for (; *a != '\0' && FoldCase(*a) == FoldCase(*b); ++a)
        ++b;
    return FoldCase(*a) == FoldCase(*b);
}

bool HasWildcard(const char* pattern)
{
    return std::strpbrk(pattern, "*?") != nullptr;
}

bool MatchesWildcard(const char* name, const char* pattern)
{
    if (std::strcmp(pattern, "*.*") == 0)
        return true;

    // After a mismatch only the latest star can match more characters, so no recursion is needed.
    const char* star = nullptr;
    const char* resume = nullptr;
    while (*name != '\0') {
        if (*pattern == '*') {
            star = ++pattern;
            resume = name;
        } else if (*pattern == '?' || (*pattern != '\0' && FoldCase(*pattern) == FoldCase(*name))) {
            ++pattern;
            ++name;
        } else if (star != nullptr) {
            pattern = star;
            name = ++resume;
        } else {
            return false;
        }
    }
    while (*pattern == '*')
        ++pattern;
    return *pattern == '\0';
}

std::string WithHostSeparators(const char* path)
{
    std::string converted = path != nullptr ? path : "";
    std::replace(converted.begin(), converted.end(), '\\', '/');
    return converted;
}

std::string ResolveHostPath(const char* path)
{
    const std::string wanted = WithHostSeparators(path);
    if (wanted.empty() || Exists(wanted))
        return wanted;

    std::string resolved;
    size_t start = 0;
    while (start < wanted.size()) {
        if (wanted[start] == '/') {
            resolved += '/';
            ++start;
            continue;
        }
        const size_t end = std::min(wanted.find('/', start), wanted.size());
        const std::string component = wanted.substr(start, end - start);
        if (!Exists(resolved + component)) {
            const std::string entry = FindEntryIgnoringCase(resolved, component);
            if (entry.empty())
                return resolved + wanted.substr(start);
            resolved += entry;
        } else {
            resolved += component;
        }
        start = end;
    }
    return resolved;
}

std::string ResolveTargetPath(const char* path)
{
    const std::string wanted = WithHostSeparators(path);
    const size_t leaf = wanted.find_last_of('/') + 1; // 0 without a directory
    if (leaf == 0)
        return wanted;
    return ResolveHostPath(wanted.substr(0, leaf).c_str()) + wanted.substr(leaf);
}

} // namespace headless

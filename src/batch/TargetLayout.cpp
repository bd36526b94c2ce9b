#include "batch/TargetLayout.h"

#include <filesystem>
#include <functional>

#include "app/TargetName.h"
#include "batch/WorkingDirectory.h"

namespace {

constexpr size_t kMostNameBytes = 255;

std::string JoinedPath(const std::string& directory, const std::string& name)
{
    if (directory.empty() || directory.back() == '/')
        return directory + name;
    return directory + "/" + name;
}

/// The part of the path that is kept below another directory.
std::string MirroredPath(const SceneEntry& entry)
{
    return entry.path.substr(entry.mirrorFrom);
}

std::string WithLeaf(const std::string& path, const std::string& leaf)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? leaf : path.substr(0, slash + 1) + leaf;
}

std::string LeafOfPath(const std::string& path)
{
    return path.substr(path.rfind('/') + 1); // npos + 1 is 0
}

/// As the converter names its pictures. Where that is too long for a file, the extension goes.
std::string FrameName(const std::string& leaf)
{
    if (leaf.size() + 4 <= kMostNameBytes)
        return leaf + ".png";
    const std::string target = MakeTargetName(leaf.c_str()).c_str();
    return target.substr(0, target.size() - 4) + ".png";
}

} // namespace

std::string TargetLayout::TargetOf(const SceneEntry& entry) const
{
    const std::string leaf = MakeTargetName(LeafOfPath(entry.path).c_str()).c_str();
    if (options.outDirectory.empty())
        return WithLeaf(entry.path, leaf);
    return JoinedPath(options.outDirectory, WithLeaf(MirroredPath(entry), leaf));
}

std::string TargetLayout::FrameOf(const SceneEntry& entry) const
{
    if (options.framesDirectory.empty())
        return "";
    const std::string leaf = FrameName(LeafOfPath(entry.path));
    return JoinedPath(options.framesDirectory, WithLeaf(MirroredPath(entry), leaf));
}

std::string TargetLayout::ResultOf(size_t number, const std::vector<SceneEntry>& entries,
                                   bool isFrame) const
{
    return isFrame ? FrameOf(entries[number]) : TargetOf(entries[number]);
}

/// The one path of a file, however it is written. Its directory may not be there yet.
std::string TargetLayout::PlaceOf(const std::string& result)
{
    const SplitPath split(result);
    if (split.directory != lastDirectory || lastPlace.empty()) {
        std::error_code ignored;
        const std::filesystem::path whole = std::filesystem::absolute(split.directory, ignored);
        lastPlace = std::filesystem::weakly_canonical(whole, ignored).string();
        lastDirectory = split.directory;
    }
    return JoinedPath(lastPlace, split.leaf);
}

void TargetLayout::FindConflict(const std::vector<SceneEntry>& entries, size_t number,
                                const std::string& result,
                                std::unordered_map<size_t, uint32_t>& seen)
{
    const bool isFrame = &seen == &framesSeen;
    const std::string whole = PlaceOf(result);
    const auto [place, isNew] =
        seen.emplace(std::hash<std::string>()(whole), static_cast<uint32_t>(number));
    if (isNew || PlaceOf(ResultOf(place->second, entries, isFrame)) != whole)
        return;
    others.emplace(number, place->second);
    others.emplace(place->second, number);
}

void TargetLayout::FindConflicts(const std::vector<SceneEntry>& entries)
{
    for (size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].errorNumber != 0)
            continue;
        FindConflict(entries, i, TargetOf(entries[i]), targetsSeen);
        const std::string frame = FrameOf(entries[i]);
        if (!frame.empty())
            FindConflict(entries, i, frame, framesSeen);
    }
    targetsSeen = {};
    framesSeen = {};
}

long TargetLayout::OtherOf(size_t entryNumber) const
{
    const auto found = others.find(entryNumber);
    return found == others.end() ? -1 : static_cast<long>(found->second);
}

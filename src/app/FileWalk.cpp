#include "app/FileWalk.h"

#include "app/DirectorySearch.h"
#include "app/Options.h"
#include "base/Paths.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace {

constexpr DWORD kLeftOut = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

/// One directory on the way down, while its subdirectories are walked.
struct WalkLevel {
    DirectorySearch subdirectories{"*.*"};
    DirectoryIdentity identity;
    String parent;           // where to return to; empty for the directory that the walk began in
    int32_t belowLength = 0; // of the path to here
};

/// The walk is a loop over a stack of its own, so deep trees do not use the process's stack.
class Walk {
public:
    Walk(const char* patternDirectory, const DirectoryVisit& visitDirectory)
        : directory(patternDirectory),
          visit(visitDirectory)
    {}

    bool Run();

private:
    void EnterLevel(const String& parent);
    bool EnterNextSubdirectory(const String& current);
    bool LeaveLevel();
    bool IsOnTheWayDown(const DirectoryIdentity& identity) const;

    const char* directory;
    const DirectoryVisit& visit;
    std::vector<std::unique_ptr<WalkLevel>> levels;
    String below; // the path to the lowest level
};

bool Walk::Run()
{
    EnterLevel(String());
    while (!levels.empty()) {
        if (!EnterNextSubdirectory(CurrentDirectory()) && !LeaveLevel())
            return false;
    }
    return true;
}

bool Walk::IsOnTheWayDown(const DirectoryIdentity& identity) const
{
    for (const auto& level : levels) {
        if (level->identity == identity)
            return true;
    }
    return false;
}

/// Visits the current directory and adds it to the stack.
void Walk::EnterLevel(const String& parent)
{
    visit(directory, below.c_str());
    levels.push_back(std::make_unique<WalkLevel>());
    levels.back()->identity = IdentifyDirectory(".");
    levels.back()->parent = parent;
    levels.back()->belowLength = below.TextLength();
}

/// Makes the next subdirectory of the lowest level the current one. False if there is none left.
bool Walk::EnterNextSubdirectory(const String& current)
{
    DirectorySearch& search = levels.back()->subdirectories;
    for (; !search.IsAtEnd(); search.Next()) {
        if (!search.IsSubdirectory() || !IsDirectoryOfWalk(search.Attributes()))
            continue;
        const DirectoryIdentity identity = IdentifyDirectory(search.Name());
        if (IsOnTheWayDown(identity) || !SetCurrentDirectoryA(search.Name()))
            continue;
        below.Append(search.Name());
        below.Append("/");
        search.Next();
        EnterLevel(current);
        return true;
    }
    return false;
}

/// Goes back up. If the path has become too long to be used, it tries one step up, which leads to the
/// same directory unless the way down went through a link.
bool ReturnTo(const String& directory, const DirectoryIdentity& identity)
{
    if (SetCurrentDirectoryA(directory.c_str()))
        return true;
    return SetCurrentDirectoryA("..") && IdentifyDirectory(".") == identity;
}

bool Walk::LeaveLevel()
{
    const String parent = levels.back()->parent;
    levels.pop_back();
    if (levels.empty())
        return true;
    below.Assign(below.c_str(), levels.back()->belowLength);
    return ReturnTo(parent, levels.back()->identity);
}

} // namespace

bool IsFileOfWalk(DWORD attributes)
{
    return (attributes & (kLeftOut | FILE_ATTRIBUTE_DIRECTORY)) == 0;
}

bool IsDirectoryOfWalk(DWORD attributes)
{
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && (attributes & kLeftOut) == 0;
}

bool WalkDirectories(const char* directory, const DirectoryVisit& visit)
{
    if (gRecurse)
        return Walk(directory, visit).Run();
    visit(directory, "");
    return true;
}

String PatternDirectory(const char* pattern)
{
    String directory;
    String leaf;
    SplitDirectory(pattern, &directory);
    SplitLeaf(pattern, &leaf);
    const int32_t length = directory.TextLength();
    const bool isBehindSeparator = std::strlen(pattern) > std::strlen(leaf.c_str());
    const bool isRoot = length == 0 || directory.c_str()[length - 1] == ':';
    if (isBehindSeparator && isRoot)
        directory.Assign(pattern, length + 1);
    return directory;
}

bool WalkFilePattern(const DirectoryVisit& visit)
{
    const String before = CurrentDirectory();
    const String pattern(gFilePattern);
    const String directory = PatternDirectory(pattern.c_str());
    String leaf;
    SplitLeaf(pattern.c_str(), &leaf);
    String asGiven;
    asGiven.Assign(pattern.c_str(), pattern.TextLength() - leaf.TextLength());
    std::snprintf(gFilePattern, sizeof gFilePattern, "%s", leaf.c_str());

    // A wrong directory must not turn into a run over the files of the current one.
    bool isWhole = true;
    if (directory.IsEmpty() || SetCurrentDirectoryA(directory.c_str()))
        isWhole = WalkDirectories(asGiven.c_str(), visit);
    SetCurrentDirectoryA(before.c_str());
    return isWhole;
}

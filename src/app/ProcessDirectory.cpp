#include "app/ProcessDirectory.h"

#include "app/DirectorySearch.h"
#include "app/Options.h"
#include "app/ProcessFile.h"
#include "base/Paths.h"
#include "gfx/KRE_Gfx.h"

#include <cstdio>
#include <memory>
#include <vector>
#include <windows.h>

namespace {

constexpr DWORD kSkippedFile =
    FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_DIRECTORY;
constexpr DWORD kSkippedDirectory = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

constexpr int32_t kPixelsWorthCompressing = 0x10000; // 256 x 256

/// One directory on the way down, while its subdirectories are walked.
struct WalkLevel {
    DirectorySearch subdirectories{"*.*"};
    DirectoryIdentity identity;
    String parent; // where to return to; empty for the directory that the walk began in
};

/// The walk is a loop over this stack, so that deep trees cost no stack of the process.
using WalkStack = std::vector<std::unique_ptr<WalkLevel>>;

/// The files of one directory. Each directory starts with textures as their files have them, whatever
/// the one before it asked for.
void ConvertMatches()
{
    gGfx->SetTextureCompression(0, kPixelsWorthCompressing);
    const int overwrite = gNoOverwrite ? 0 : 1;
    DirectorySearch matches(gFilePattern);
    for (; !matches.IsAtEnd(); matches.Next()) {
        if ((matches.Attributes() & kSkippedFile) != 0)
            continue;
        ProcessFile(matches.Name(), overwrite);
        std::printf("'%s' converted\n", matches.Name());
    }
}

bool IsOnTheWayDown(const WalkStack& levels, const DirectoryIdentity& identity)
{
    for (const auto& level : levels) {
        if (level->identity == identity)
            return true;
    }
    return false;
}

/// Converts what lies in the current directory and adds it to the stack.
void EnterLevel(WalkStack& levels, const String& parent)
{
    ConvertMatches();
    levels.push_back(std::make_unique<WalkLevel>());
    levels.back()->identity = IdentifyDirectory(".");
    levels.back()->parent = parent;
}

/// Makes the next subdirectory of the lowest level the current one. False if there is none left.
bool EnterNextSubdirectory(WalkStack& levels, const String& current)
{
    DirectorySearch& search = levels.back()->subdirectories;
    for (; !search.IsAtEnd(); search.Next()) {
        if (!search.IsSubdirectory() || (search.Attributes() & kSkippedDirectory) != 0)
            continue;
        const DirectoryIdentity identity = IdentifyDirectory(search.Name());
        if (IsOnTheWayDown(levels, identity) || !SetCurrentDirectoryA(search.Name()))
            continue;
        search.Next();
        EnterLevel(levels, current);
        return true;
    }
    return false;
}

/// Goes back up. A path may have become too long to be named; then one step up must lead to the
/// same directory, which it does unless the way down went through a link.
bool ReturnTo(const String& directory, const DirectoryIdentity& identity)
{
    if (SetCurrentDirectoryA(directory.c_str()))
        return true;
    return SetCurrentDirectoryA("..") && IdentifyDirectory(".") == identity;
}

} // namespace

void ProcessDirectory()
{
    if (!gRecurse) {
        ConvertMatches();
        return;
    }
    WalkStack levels;
    EnterLevel(levels, String());
    while (!levels.empty()) {
        if (EnterNextSubdirectory(levels, CurrentDirectory()))
            continue;
        const String parent = levels.back()->parent;
        levels.pop_back();
        // If a directory on the way was moved or removed meanwhile, names below it mean nothing.
        if (!levels.empty() && !ReturnTo(parent, levels.back()->identity))
            return;
    }
}

void ProcessFilePattern()
{
    const String before = CurrentDirectory();
    const String pattern(gFilePattern);
    String directory;
    String leaf;
    SplitDirectory(pattern.c_str(), &directory);
    SplitLeaf(pattern.c_str(), &leaf);
    // A name in the root directory has nothing in front of its only separator.
    if (directory.IsEmpty() && leaf.TextLength() + 1 == pattern.TextLength())
        directory.Assign(pattern.c_str(), 1);
    std::snprintf(gFilePattern, sizeof gFilePattern, "%s", leaf.c_str());

    // A wrong directory must not turn into a run over the files of the current one.
    if (directory.IsEmpty() || SetCurrentDirectoryA(directory.c_str()))
        ProcessDirectory();
    SetCurrentDirectoryA(before.c_str());
}

#include "app/ProcessDirectory.h"

#include "app/DirectorySearch.h"
#include "app/FileWalk.h"
#include "app/Options.h"
#include "app/ProcessFile.h"
#include "gfx/KRE_Gfx.h"
#include "platform/WalkedFile.h"

#include <cstdio>

namespace {

constexpr int32_t kPixelsWorthCompressing = 0x10000; // 256 x 256

/// The files of one directory. Each directory starts without texture compression, whatever the one
/// before it used.
void ConvertMatches(const char* directory, const char* below)
{
    gGfx->SetTextureCompression(0, kPixelsWorthCompressing);
    const int overwrite = gNoOverwrite ? 0 : 1;
    DirectorySearch matches(gFilePattern);
    for (; !matches.IsAtEnd(); matches.Next()) {
        if (!IsFileOfWalk(matches.Attributes()))
            continue;
        WalkedFile file(directory, below, matches.Name());
        ProcessFile(matches.Name(), overwrite);
        std::printf("'%s' converted\n", matches.Name());
        file.Converted();
    }
}

void TellHowItEnded(bool isWhole)
{
    if (!isWhole)
        gGfx->Warning("A directory was moved or removed: the search for '%s' ended", gFilePattern);
}

} // namespace

void ProcessDirectory()
{
    TellHowItEnded(WalkDirectories("", ConvertMatches));
}

void ProcessFilePattern()
{
    TellHowItEnded(WalkFilePattern(ConvertMatches));
}

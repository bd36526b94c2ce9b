#include "platform/WalkedFile.h"

#include "platform/headless/win32/FileInHand.h"

#include <cstdio>

namespace headless {

namespace {

/// Null outside a conversion.
struct FileInHand {
    const char* directory;
    const char* below;
    const char* name;
} gFile;

void Say(const char* what)
{
    // Earlier output on standard output must appear before this line.
    std::fflush(stdout);
    std::fprintf(stderr, "%s%s%s: %s\n", gFile.directory, gFile.below, gFile.name, what);
}

} // namespace

} // namespace headless

using namespace headless;

WalkedFile::WalkedFile(const char* directory, const char* below, const char* name)
{
    gFile = {directory, below, name};
}

WalkedFile::~WalkedFile()
{
    if (gFile.name != nullptr)
        Say("not converted");
    gFile = {};
}

void WalkedFile::Converted()
{
    gFile = {};
}

void (*headless::gNoKeywordSink)() = nullptr;

void ReportNoKeyword()
{
    if (gNoKeywordSink) {
        gNoKeywordSink();
        return;
    }
    if (gFile.name != nullptr)
        Say("holds no scene (no keyword of the format found)");
}

namespace headless {

std::string DirectoriesBelowPattern()
{
    return gFile.below != nullptr ? gFile.below : "";
}

} // namespace headless

// Process entry of the headless host: joins the arguments into one command line and calls
// `WinMain`, whose result is the exit status.

#include "platform/HostStream.h"
#include "platform/headless/d3d9/Audience.h"
#include "platform/headless/d3d9/FrameFile.h"
#include "platform/headless/win32/JoinArguments.h"

#include <cstdio>
#include <new>
#include <windows.h>

using namespace headless;

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int showCommand);

/// Ends as after a caught error: what fails here is at the start, before the program's own guard.
static int EndWithoutMemory(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        std::fprintf(stderr, "'%s': Not enough memory for the scene\n", argv[i]);
    return 0;
}

int main(int argc, char** argv)
try {
    MakeStandardStreamsSteady();
    // With line buffering, a reader at the other end of a pipe gets each line as soon as its file
    // is done, in order with standard error.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    // The program never reads a drawn picture, so only the frame files show it.
    if (!AreFramesKept())
        DismissAudience();
    std::string commandLine = JoinArguments(argc - 1, argv + 1);
    return WinMain(nullptr, nullptr, commandLine.data(), SW_SHOWNORMAL);
} catch (const std::bad_alloc&) {
    return EndWithoutMemory(argc, argv);
}

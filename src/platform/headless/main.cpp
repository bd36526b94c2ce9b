// Process entry of the headless host: joins the arguments into one command line and calls
// `WinMain`, whose result is the exit status.

#include "platform/headless/d3d9/Audience.h"
#include "platform/headless/d3d9/FrameFile.h"
#include "platform/headless/win32/JoinArguments.h"

#include <cstdio>
#include <windows.h>

using namespace headless;

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int showCommand);

int main(int argc, char** argv)
{
    // With line buffering, a reader at the other end of a pipe gets each line as soon as its file
    // is done, in order with standard error.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    // The program never reads a drawn picture, so only the frame files show it.
    if (!AreFramesKept())
        DismissAudience();
    std::string commandLine = JoinArguments(argc - 1, argv + 1);
    return WinMain(nullptr, nullptr, commandLine.data(), SW_SHOWNORMAL);
}

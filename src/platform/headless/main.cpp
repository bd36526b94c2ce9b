// The process entry of the headless host: builds the one command line and runs the program's own
// entry, whose result is the exit status.

#include "platform/headless/win32/JoinArguments.h"

#include <cstdio>
#include <windows.h>

using namespace headless;

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int showCommand);

int main(int argc, char** argv)
{
    // Whoever reads the output through a pipe sees a line when its file is done, in its place among
    // those of standard error.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::string commandLine = JoinArguments(argc - 1, argv + 1);
    return WinMain(nullptr, nullptr, commandLine.data(), SW_SHOWNORMAL);
}

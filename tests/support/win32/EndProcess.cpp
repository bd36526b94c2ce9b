#include "tests/support/EndProcess.h"

#include <cstdio>
#include <cstdlib>
#include <windows.h>

void EndTestProcess(int status)
{
    std::fflush(nullptr);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
    std::abort();
}

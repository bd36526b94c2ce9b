#include "tests/faults/FaultTrace.h"

#include "tests/faults/FaultOrder.h"

#include <csignal>
#include <cstdlib>
#include <initializer_list>

#include <execinfo.h>
#include <unistd.h>

namespace faults {

namespace {

constexpr int kMostFrames = 40;
bool gIsTracing = false;

void PrintStack()
{
    void* frames[kMostFrames];
    const bool wasArmed = gIsArmed;
    gIsArmed = false;
    backtrace_symbols_fd(frames, backtrace(frames, kMostFrames), STDERR_FILENO);
    gIsArmed = wasArmed;
}

void OnCrash(int number)
{
    PrintStack();
    std::signal(number, SIG_DFL);
    std::raise(number);
}

} // namespace

void BeginTrace()
{
    gIsTracing = getenv("FAULTS_TRACE") != nullptr;
    if (!gIsTracing)
        return;
    for (const int number : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS})
        std::signal(number, OnCrash);
}

void TraceFault()
{
    if (gIsTracing && gResult->hits == 1)
        PrintStack();
}

} // namespace faults

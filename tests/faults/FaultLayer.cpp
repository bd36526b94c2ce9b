// Loaded in front of a program (LD_PRELOAD), makes one memory request or one call of the system fail, and counts
// both. tools/fault-checks drives it. The program itself has nothing of this.
//
// The process that is started is a server: it stops before `main`, and for each order that it reads it forks a
// child, which goes on into `main`. So a run costs neither a start of the program nor the loading of its libraries.
// Calls of the system are caught below the C library, also those of its streams, by a filter of the kernel that
// turns calls out of the library's code into a signal.

#include "tests/faults/FaultCalls.h"
#include "tests/faults/FaultMemory.h"
#include "tests/faults/FaultOrder.h"
#include "tests/faults/FaultTrace.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace faults {

namespace {

constexpr int kOrders = 198; // descriptors of the server
constexpr int kAnswers = 199;
constexpr rlim_t kMostSeconds = 60; // of processor time; a run takes milliseconds
constexpr unsigned kMostWait = 200; // seconds

int (*gMain)(int, char**, char**);
char gNow[128] = "FAULTS_NOW="; // of a worker that is started anew

void LimitRun()
{
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    const rlimit most = {kMostSeconds, kMostSeconds};
    setrlimit(RLIMIT_CPU, &most);
    alarm(kMostWait);
}

void BeginFaults()
{
    gResult->role = 1;
    BeginTrace();
    BeginCalls();
    BeginMemory();
}

/// What the program leaves when all of its own clean-up is done.
void CheckEnd()
{
    if (!gIsArmed)
        return;
    gIsArmed = false;
    CheckLeaks();
    CheckDescriptors();
    gResult->wasEndChecked = 1;
}

bool ReadOrder(char* line, size_t size)
{
    for (size_t at = 0; at + 1 < size; ++at) {
        if (read(kOrders, line + at, 1) != 1)
            return false;
        line[at + 1] = '\0';
        if (line[at] == '\n') {
            line[at] = '\0';
            return true;
        }
    }
    return false;
}

/// Returns in a child, with the order to follow. The server itself ends here.
void Serve()
{
    char line[100];
    while (ReadOrder(line, sizeof line)) {
        std::memset(gResult, 0, sizeof *gResult);
        const pid_t child = fork();
        if (child == 0) {
            close(kOrders);
            close(kAnswers);
            gOrder.Read(line);
            std::snprintf(gNow, sizeof gNow, "FAULTS_NOW=%s", line);
            putenv(gNow);
            unsetenv("FAULTS_SERVER");
            LimitRun();
            return;
        }
        int status = -1;
        waitpid(child, &status, 0);
        char answer[32];
        const int length = std::snprintf(answer, sizeof answer, "%d\n", status);
        if (write(kAnswers, answer, static_cast<size_t>(length)) != length)
            break;
    }
    _exit(0);
}

int RunMain(int count, char** values, char** environment)
{
    const bool isServer = getenv("FAULTS_SERVER") != nullptr;
    if (isServer)
        Serve();
    else if (const char* now = getenv("FAULTS_NOW"))
        gOrder.Read(now);
    else
        return gMain(count, values, environment);
    const Role own = isServer ? Role::kProgram : Role::kWorker;
    if (gOrder.role == own)
        BeginFaults();
    return gMain(count, values, environ);
}

} // namespace

} // namespace faults

// ---- What stands in front of the C library

extern "C" pid_t fork() noexcept
{
    static const auto real = reinterpret_cast<pid_t (*)()>(dlsym(RTLD_NEXT, "fork"));
    const pid_t child = real();
    if (child != 0)
        return child;
    const bool wasArmed = faults::gIsArmed;
    faults::gIsArmed = false;
    if (!wasArmed && faults::gOrder.role == faults::Role::kChild)
        faults::BeginFaults();
    return child;
}

using Start = int(int (*)(int, char**, char**), int, char**, void (*)(), void (*)(), void (*)(),
                  void*);

// Registered ahead of everything, so run after everything.
extern "C" int __libc_start_main(int (*programMain)(int, char**, char**), int count, char** values,
                                 void (*init)(), void (*fini)(), void (*loaderFini)(),
                                 void* stackEnd)
{
    faults::gMain = programMain;
    faults::OpenResult();
    std::atexit(faults::CheckEnd);
    const auto real = reinterpret_cast<Start*>(dlsym(RTLD_NEXT, "__libc_start_main"));
    return real(faults::RunMain, count, values, init, fini, loaderFini, stackEnd);
}

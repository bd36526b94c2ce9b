#include "batch/SignalWatch.h"

#include <csignal>

#include <sys/signalfd.h>

static sigset_t WatchedSignals()
{
    sigset_t watched;
    sigemptyset(&watched);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&watched, number);
    return watched;
}

SignalWatch::SignalWatch()
{
    const sigset_t watched = WatchedSignals();
    sigprocmask(SIG_BLOCK, &watched, nullptr);
    handle = Descriptor(signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK));
}

SignalWatch::~SignalWatch()
{
    const sigset_t watched = WatchedSignals();
    sigprocmask(SIG_UNBLOCK, &watched, nullptr);
}

int SignalWatch::Take() const
{
    signalfd_siginfo info = {};
    const bool isThere = read(handle.Get(), &info, sizeof info) == sizeof info;
    return isThere ? static_cast<int>(info.ssi_signo) : 0;
}

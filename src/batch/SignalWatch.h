#pragma once

#include "batch/Descriptor.h"

/// Takes SIGINT, SIGTERM and SIGHUP as something to read while it lives, so that they never interrupt
/// anything half done.
class SignalWatch {
public:
    SignalWatch();
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

    /// Readable when a signal has come.
    int Handle() const { return handle.Get(); }
    /// The next signal; 0 if none has come.
    int Take() const;

private:
    Descriptor handle;
};

#pragma once

#include "app/MainWindow.h"

/// Resets the window's flags in its destructor. Declare it before the window: a destroyed window loses the
/// focus, and the next file would wait for it.
struct WindowFlags {
    WindowFlags() { Reset(); }
    ~WindowFlags() { Reset(); }
    WindowFlags(const WindowFlags&) = delete;
    WindowFlags& operator=(const WindowFlags&) = delete;

    static void Reset()
    {
        gWindowShown = gAppActive = 1;
        gPaused = gWindowDestroyed = 0;
    }
};

#pragma once

#include "app/MainWindow.h"

/// Puts the window's flags back at its end. Declared ahead of the window: one that goes away takes the
/// focus with it, and the next file would wait for that.
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

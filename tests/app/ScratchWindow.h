#pragma once

/// The program's window under given options, without an engine. The window, its class and the
/// messages left for it go with this object, and the window's variables start afresh.
class ScratchWindow {
public:
    explicit ScratchWindow(const char* options);
    ~ScratchWindow();
    ScratchWindow(const ScratchWindow&) = delete;
    ScratchWindow& operator=(const ScratchWindow&) = delete;
};

/// Takes the program's window and its class away, with all messages, and resets its variables.
void RemoveMainWindow();

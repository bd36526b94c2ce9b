#pragma once

/// The program's window with the given options, without an engine. The destructor removes the window, its
/// class and its remaining messages, and resets the window's variables.
class ScratchWindow {
public:
    explicit ScratchWindow(const char* options);
    ~ScratchWindow();
    ScratchWindow(const ScratchWindow&) = delete;
    ScratchWindow& operator=(const ScratchWindow&) = delete;
};

/// Removes the program's window and its class, with all messages, and resets its variables.
void RemoveMainWindow();

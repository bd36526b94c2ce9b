#pragma once

#include <string>
#include <windows.h>

/// Keeps the first frame of the program on the screen until somebody has taken a picture of it. A
/// program in the background waits after its frame, so this tells its window that it is. The
/// conversion is not affected.
class FrameHold {
public:
    /// When the frame is drawn, writes the window's rectangle on the screen to the file as
    /// "WIDTHxHEIGHT+X+Y"; the program continues once the file is removed.
    explicit FrameHold(std::string placeFile);
    /// Takes the next step if it is due; call it until the process has ended.
    void Step(DWORD processId);

private:
    enum class State { NoWindow, Loading, Shown, Done };

    void FindWindowOf(DWORD processId);
    void WaitForFrame();
    bool WritePlace() const;

    std::string placeFile;
    State state = State::NoWindow;
    HWND window = nullptr;
    std::string startTitle;
};

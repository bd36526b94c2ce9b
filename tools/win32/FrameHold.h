#pragma once

#include <string>
#include <windows.h>

/// Keeps the first frame of the program on the screen until somebody has taken a picture of it: a
/// program that is behind another one waits after its frame, so its window is told that it is. What
/// the program does with its files is not changed by that.
class FrameHold {
public:
    /// When the frame is there, the window's rectangle on the screen is written to the file as
    /// "WIDTHxHEIGHT+X+Y"; once the file is gone the program goes on.
    explicit FrameHold(std::string placeFile);
    /// Goes on if the time for the next step has come; to be called until the process has ended.
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

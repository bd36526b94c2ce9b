#pragma once

#include <windows.h>

/// A window that is never shown, to create a device on. It has no frame, so its client area is as
/// large as the window.
class HiddenWindow {
public:
    HiddenWindow(int width, int height)
    {
        WNDCLASSEXA windowClass = {};
        windowClass.cbSize = sizeof windowClass;
        windowClass.lpfnWndProc = DefWindowProcA;
        windowClass.hInstance = GetModuleHandleA(nullptr);
        windowClass.lpszClassName = kClassName;
        RegisterClassExA(&windowClass); // fails harmlessly while another hidden window exists
        window = CreateWindowExA(0, kClassName, "hidden", WS_POPUP, 0, 0, width, height, nullptr,
                                 nullptr, windowClass.hInstance, nullptr);
    }
    ~HiddenWindow()
    {
        DestroyWindow(window);
        UnregisterClassA(kClassName, GetModuleHandleA(nullptr));
    }
    HiddenWindow(const HiddenWindow&) = delete;
    HiddenWindow& operator=(const HiddenWindow&) = delete;

    void Resize(int width, int height) { MoveWindow(window, 0, 0, width, height, FALSE); }
    /// Null if the window could not be created.
    HWND Handle() const { return window; }

private:
    static constexpr const char* kClassName = "QSA2QSB_HIDDEN_WINDOW";

    HWND window; // owned
};

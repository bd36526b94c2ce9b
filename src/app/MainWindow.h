#pragma once

#include <windows.h>

// The one top-level window: the device draws into it, and its messages are pumped between files.

extern char gWindowTitle[100];     // from the string table
extern char gWindowClassName[100]; // from the string table
extern HINSTANCE gInstance;
extern HWND gMainWindow;

/// Size of the client area in pixels, as last seen.
extern int gClientWidth;
extern int gClientHeight;

extern int gWindowShown;     // 0 while minimised or hidden
extern int gAppActive;       // 0 while another program has the focus
extern int gPaused;          // 1 while a menu is open or the window is being moved
extern int gWindowDestroyed; // 1 once the window is gone

/// Loads the title and the class name from the string table.
void LoadWindowTexts(HINSTANCE instance);

/// Registers the window class; without a menu in full screen or with /nm.
void RegisterMainWindowClass(HINSTANCE instance);

/// Creates and shows the window. `gResX` and `gResY` are its outer size, so the client area is
/// smaller. Returns 1, or 0 if there is no window.
int CreateMainWindow(HINSTANCE instance, int showCommand);

/// Stores the client area's size in gClientWidth and gClientHeight.
void UpdateClientSize();

/// The window procedure. It reads neither keyboard nor mouse: it passes their messages and all others
/// to the system, which also destroys the window when it is closed.
LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

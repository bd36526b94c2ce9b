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
extern int gPaused;          // 1 while a menu or a move of the window is going on
extern int gWindowDestroyed; // 1 once the window is gone

/// Takes the title and the class name from the string table.
void LoadWindowTexts(HINSTANCE instance);

/// Registers the window class; without a menu in full screen or under /nm.
void RegisterMainWindowClass(HINSTANCE instance);

/// Makes and shows the window. `gResX` and `gResY` are its outer size, so the client area comes out
/// smaller. Gives 1, or 0 if there is no window.
int CreateMainWindow(HINSTANCE instance, int showCommand);

/// Takes the client area's size into gClientWidth and gClientHeight.
void UpdateClientSize();

/// Everything that the window does. It reads neither keyboard nor mouse: they and all else go to the
/// system, which also destroys the window when it is closed.
LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

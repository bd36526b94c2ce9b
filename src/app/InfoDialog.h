#pragma once

#include <windows.h>

/// Shows the Info dialog over `owner` and returns when it is closed.
void ShowInfoDialog(HWND owner);

/// Closes the dialog on OK, and on Esc and the close button, which both arrive as IDCANCEL.
INT_PTR CALLBACK InfoDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

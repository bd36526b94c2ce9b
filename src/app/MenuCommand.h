#pragma once

#include <windows.h>

extern int gOpenRequested; // 1 once a file was chosen to be opened; not used

/// Runs a menu command. False for an id without a command, such as the entries for the default paths
/// and the scene's information. Errors of a save pass through.
bool DoMenuCommand(HWND window, int id);

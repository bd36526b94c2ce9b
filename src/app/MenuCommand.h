#pragma once

#include <windows.h>

extern int gOpenRequested; // 1 once a file was chosen to be opened; read by nothing

/// Does what a menu entry stands for. False for an id that nothing stands behind, which includes the
/// entries for the default paths and the scene's information. Lets failures of a save through.
bool DoMenuCommand(HWND window, int id);

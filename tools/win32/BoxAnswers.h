#pragma once

#include <string>
#include <windows.h>

/// Answers the message boxes (OK) and file dialogs (Cancel) that a process currently shows.
/// Returns the texts of the boxes: title, line end, text and line end for each; nothing for file dialogs.
/// Each box is answered once; call it again until the process has ended.
std::string AnswerOpenBoxes(DWORD processId);

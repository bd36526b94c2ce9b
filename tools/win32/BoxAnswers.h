#pragma once

#include <string>
#include <windows.h>

/// Answers the message boxes (OK) and file dialogs (Cancel) that a process shows at this moment.
/// Gives what the boxes said: title, line end, text and line end for each; file dialogs say nothing.
/// Each box is answered once; call it again until the process has ended.
std::string AnswerOpenBoxes(DWORD processId);

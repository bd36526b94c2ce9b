#pragma once

#include <functional>

#include <windows.h>

#include <commdlg.h>

namespace headless {

// For tests only: plays the user at a desktop, and reports what the program requested.

/// Answers a file dialog: fills `lpstrFile` and returns TRUE, or returns FALSE to cancel. `call` is
/// the name of the operation that showed it.
using FileDialogAnswer = std::function<BOOL(const char* call, OPENFILENAMEA& dialog)>;

/// From now on `answer` handles file dialogs; an empty one restores cancelling.
void AnswerFileDialogs(FileDialogAnswer answer);

/// The resource number of the last dialog; 0 before the first one.
WORD LastDialogResource();

/// The flags of the last `RedrawWindow`; 0 before the first one.
UINT LastRedrawFlags();

} // namespace headless

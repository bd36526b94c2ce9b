#pragma once

#include <functional>

#include <windows.h>

#include <commdlg.h>

namespace headless {

// For tests only: answers what a user at a desktop would, and tells what the program asked for.

/// The answer to a file dialog: fills `lpstrFile` and gives TRUE, or cancels with FALSE. `call` is the
/// name of the operation that showed it.
using FileDialogAnswer = std::function<BOOL(const char* call, OPENFILENAMEA& dialog)>;

/// From now on file dialogs are answered by `answer`; an empty one has them cancelled again.
void AnswerFileDialogs(FileDialogAnswer answer);

/// The number of the resource that the last dialog was made from; 0 before the first one.
WORD LastDialogResource();

/// What the last `RedrawWindow` was told; 0 before the first one.
UINT LastRedrawFlags();

} // namespace headless

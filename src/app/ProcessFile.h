#pragma once

/// Converts one scene file: load, fit the view, save as QSB, draw one frame.
/// `fileName` is a leaf name in the current directory. With `overwrite` 0 a file whose target exists
/// is skipped. Failures raise ErrorMsg or KRE_Error.
void ProcessFile(const char* fileName, int overwrite);

#pragma once

#include <windows.h>

namespace headless {

/// Stores `code` for `GetLastError` and returns FALSE, for the return statement of a failing call.
BOOL FailWith(DWORD code);

/// The same with the code that corresponds to `errno`.
BOOL FailWithErrno();

} // namespace headless

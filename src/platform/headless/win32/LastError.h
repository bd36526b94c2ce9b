#pragma once

#include <windows.h>

namespace headless {

/// Stores `code` for `GetLastError` and gives FALSE, for a failing call's return statement.
BOOL FailWith(DWORD code);

/// The same with the code that fits `errno`.
BOOL FailWithErrno();

} // namespace headless

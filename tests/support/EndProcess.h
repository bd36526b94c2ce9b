#pragma once

/// Ends the test program with `status`. A Windows process that still holds a device may crash on its
/// way out, after all tests have passed, so there the process is ended without that way.
[[noreturn]] void EndTestProcess(int status);

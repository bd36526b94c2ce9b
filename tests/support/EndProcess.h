#pragma once

/// Ends the test program with `status`. A Windows process that still holds a device may crash on
/// exit, after all tests have passed, so there the process is terminated without the usual
/// clean-up.
[[noreturn]] void EndTestProcess(int status);

#pragma once

#include <cstdlib>

/// True if the tests run under the emulator of another processor. It does not hold them to a limit of
/// memory.
inline bool RunsUnderAnEmulator()
{
    const char* emulator = std::getenv("QSA_EMULATOR");
    return emulator && *emulator;
}

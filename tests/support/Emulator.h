#pragma once

#include <cstdlib>
#include <string>

/// The command that runs programs built for the tests' processor, with its options; empty where they run
/// directly. The build passes it in QSA_EMULATOR.
inline std::string EmulatorCommand()
{
    const char* command = std::getenv("QSA_EMULATOR");
    return command ? command : "";
}

/// An emulator does not enforce memory limits on the tests.
inline bool RunsUnderAnEmulator()
{
    return !EmulatorCommand().empty();
}

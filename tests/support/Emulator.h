#pragma once

#include <cstdlib>
#include <string>

/// The command, with its blanks, that runs a program of the processor that the tests are built for;
/// empty where programs run directly. The build passes it in QSA_EMULATOR.
inline std::string EmulatorCommand()
{
    const char* command = std::getenv("QSA_EMULATOR");
    return command ? command : "";
}

/// An emulator does not hold the tests to a limit of memory.
inline bool RunsUnderAnEmulator()
{
    return !EmulatorCommand().empty();
}

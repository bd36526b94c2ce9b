#pragma once

#include <string>

// Not in builds without the library; Confinement.cpp knows.

/// Whether this kernel can filter system calls.
bool KernelFiltersCalls();

/// Refuses all system calls of this process, for good, but those that reading, converting and drawing a scene needs:
/// files that are opened without changing their length, memory that cannot be run, sending and receiving on `socket`
/// (-1 for none). Others fail with EPERM. Gives what failed; empty if the filter is in force.
std::string FilterCalls(int socket);

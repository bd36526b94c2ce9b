#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "batch/LandlockRules.h"

/// What a process may still do that reads files of strangers.
struct ConfinementRules {
    std::vector<std::string> readable; ///< directories with all below them; absolute paths
    std::vector<std::string> writable; ///< the same; they may be read too
    uint64_t mostFileBytes = 0;        ///< of a file that it writes
    uint64_t processorSeconds = 0;
    int socket = -1;                ///< on which it may send and receive; -1 for none
    int landlock = kNewestLandlock; ///< use at most this version
};

/// Files that a confined process may have open at a time.
inline constexpr uint64_t kMostOpenFiles = 64;

/// The parts of a confinement that are missing, with the reason, as "Landlock, which this kernel lacks"; empty if
/// none is.
std::string MissingConfinement();

/// Closes this process in, for good: files by Landlock, system calls by a filter, and limits. It must have one thread.
/// Descriptors that are open stay open. Parts that are missing are left out. Gives what failed; empty if all
/// others are in force.
std::string Confine(const ConfinementRules& rules);

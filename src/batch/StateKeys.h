#pragma once

#include <string>

/// Hashes of all that decides about results besides files: program, options, default paths.
struct StateKeys {
    std::string target;
    std::string frame;
};

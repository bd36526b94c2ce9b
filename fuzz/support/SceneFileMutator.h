#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Inputs begin with the version of a QSB file.

/// Another QSB file: a field changed by what it means, a record removed or repeated with its count, a text
/// replaced with its length.
std::string MutateSceneFile(std::string_view bytes, uint32_t seed);

/// A file with a record of another one behind one of its own of that kind.
std::string CrossSceneFiles(std::string_view bytes, std::string_view other, uint32_t seed);

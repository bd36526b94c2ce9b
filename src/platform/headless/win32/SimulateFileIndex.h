#pragma once

#include <cstdint>
#include <optional>

namespace headless {

/// For tests: all files and directories get this index, as on file systems without file indices. No
/// value restores the real ones.
void SimulateFileIndex(std::optional<uint64_t> index);

} // namespace headless

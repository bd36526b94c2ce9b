#pragma once

#include <cstdint>
#include <optional>

namespace headless {

/// For tests: from now on every file and directory has this index, as on file systems that have none.
/// Without a value the true ones come back.
void SimulateFileIndex(std::optional<std::uint64_t> index);

} // namespace headless

#pragma once

namespace faults {

/// From here on requests for memory count, and fail as ordered.
void BeginMemory();
/// Counts the blocks that nothing points to any more, neither the data of the program and its libraries nor other
/// blocks that are pointed to. The stack does not count: `main` is over.
void CheckLeaks();

} // namespace faults

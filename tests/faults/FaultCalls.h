#pragma once

namespace faults {

/// From here on calls of the system count, and fail as ordered.
void BeginCalls();
/// Names the descriptors that are open and were not when the counting began.
void CheckDescriptors();

} // namespace faults

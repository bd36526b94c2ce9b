#pragma once

namespace headless {

/// Each call that is not modelled is written once more, and the last refusal is forgotten: as in a process
/// that has just begun.
void ForgetUnmodelledCalls();

} // namespace headless

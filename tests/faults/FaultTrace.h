#pragma once

namespace faults {

/// With FAULTS_TRACE in the environment: prints the stack of the first fault, and of a crash, to standard error.
void BeginTrace();
void TraceFault();

} // namespace faults

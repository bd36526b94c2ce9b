#pragma once

/// Puts the log and the warning counters of both class families back to their state at process
/// start, so that tests in one process do not see each other. Objects that are alive stay counted.
/// Only for tests: the program's counters live as long as its process.
void ResetLogForTests();

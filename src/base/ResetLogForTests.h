#pragma once

/// Resets the log and the warning counters of both class families to their state at process
/// start, so that tests in one process are independent. Live objects stay counted.
/// Only for tests: the program's counters live as long as its process.
void ResetLogForTests();

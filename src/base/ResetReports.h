#pragma once

/// Resets the count of log entries, and the counters, last texts and records of warnings and errors of both
/// class families to their state at process start. Live objects stay counted; who sees reports stays.
void ResetReports();

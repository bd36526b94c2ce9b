#pragma once

#include <string>
#include <vector>

/// Exit status of qsbatch; 128 and the number of the signal for a run that was interrupted.
enum BatchStatus { kBatchWell = 0, kBatchFailures = 1, kBatchTrouble = 2, kBatchSignal = 128 };

/// Does what the arguments after the program's name request and returns the exit status.
int RunBatch(const std::vector<std::string>& arguments);

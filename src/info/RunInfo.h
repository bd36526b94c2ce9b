#pragma once

#include <cstdio>
#include <string>
#include <vector>

/// Exit status of qsbinfo.
enum InfoStatus { kInfoWell = 0, kInfoDifferent = 1, kInfoTrouble = 2 };

/// Does what the arguments after the program's name request and returns the exit status: 0 for
/// success, 1 for a fault or a difference, 2 for trouble. A file that cannot be loaded is trouble,
/// but a fault for a check. Starts and ends an engine of its own.
int RunInfo(const std::vector<std::string>& arguments, FILE* out, FILE* err);

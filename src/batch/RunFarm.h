#pragma once

#include <string>
#include <vector>

/// Does what the arguments of `qsbatch plan`, `run` or `merge` request, the command's name first, and
/// returns the exit status.
int RunFarm(const std::vector<std::string>& arguments);

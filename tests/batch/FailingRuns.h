#pragma once

#include <string>
#include <vector>

#include "tests/support/RunProgram.h"
#include "tests/support/headless/FailingCalls.h"

namespace batch_testing {

/// A run of qsbatch, and of its workers, in which these calls fail.
ProgramRun BatchWith(const std::vector<FailingCall>& calls, std::vector<std::string> arguments);

/// The same for a run that has no workers, in a child of this process: the start of a program makes such calls too.
ProgramRun CommandWith(const std::vector<FailingCall>& calls,
                       const std::vector<std::string>& arguments);

} // namespace batch_testing

#include "tests/app/ScratchWalk.h"

#include "app/Options.h"
#include "app/ProcessDirectory.h"
#include "tests/app/ScratchEngine.h"

#include <cstdio>
#include <gtest/gtest.h>

std::string Walk(const char* pattern, const char* options)
{
    const ScratchEngine engine(options);
    return WalkOn(pattern);
}

std::string WalkOn(const char* pattern)
{
    std::snprintf(gFilePattern, sizeof gFilePattern, "%s", pattern);
    testing::internal::CaptureStdout();
    try {
        ProcessFilePattern();
    } catch (...) {
        std::fflush(stdout);
        testing::internal::GetCapturedStdout();
        throw;
    }
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

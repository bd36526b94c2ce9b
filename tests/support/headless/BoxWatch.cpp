#include "tests/support/BoxWatch.h"

#include <gtest/gtest.h>

struct BoxWatch::State {
    bool isTaken = false;
};

BoxWatch::BoxWatch() : state(std::make_unique<State>())
{
    testing::internal::CaptureStderr();
}

BoxWatch::~BoxWatch()
{
    if (!state->isTaken)
        Take();
}

std::string BoxWatch::Take()
{
    state->isTaken = true;
    return testing::internal::GetCapturedStderr();
}

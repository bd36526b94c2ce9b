#include "tests/support/EndProcess.h"

#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    EndTestProcess(RUN_ALL_TESTS());
}

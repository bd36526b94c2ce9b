#include "tests/support/EndProcess.h"

#include <cstdlib>

void EndTestProcess(int status)
{
    std::exit(status);
}

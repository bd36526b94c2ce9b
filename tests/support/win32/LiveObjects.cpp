#include "tests/support/LiveObjects.h"

std::string TakeLiveObjects()
{
    return "";
}

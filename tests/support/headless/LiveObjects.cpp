#include "tests/support/LiveObjects.h"

#include "platform/headless/d3d9/TestControl.h"

using namespace headless;

std::string TakeLiveObjects()
{
    const std::string outlived = TakeLeakReport();
    const std::string alive = LiveObjectReport();
    return outlived + (outlived.empty() || alive.empty() ? "" : "; ") + alive;
}

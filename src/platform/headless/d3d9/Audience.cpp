#include "platform/headless/d3d9/Audience.h"

namespace headless {

static bool gHasAudience = true;

void DismissAudience()
{
    gHasAudience = false;
}

void RecallAudience()
{
    gHasAudience = true;
}

bool HasAudience()
{
    return gHasAudience;
}

} // namespace headless

#include "platform/CutDraw.h"

/// The system ends or restarts a display driver that hangs.
bool TakeCutDraw()
{
    return false;
}

bool TakeCutFrame()
{
    return false;
}

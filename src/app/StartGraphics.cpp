#include "app/StartGraphics.h"

#include "gfx/KRE_Gfx.h"

void StartGraphics()
{
    gGfx = new KRE_Gfx;
}

void ShutdownGraphics()
{
    delete gGfx;
    gGfx = nullptr;
}

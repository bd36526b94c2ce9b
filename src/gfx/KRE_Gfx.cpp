#include "gfx/KRE_Gfx.h"

KRE_Gfx* gGfx = nullptr;

KRE_Gfx::KRE_Gfx()
{
    SetClassName("KRE_Gfx");
}

KRE_Gfx::~KRE_Gfx() = default;

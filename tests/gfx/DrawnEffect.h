#pragma once

#include "gfx/KRE_ShaderEffect.h"
#include "tests/gfx/EngineTest.h"

/// An engine on the host's own device, 64 x 48, and an effect that draws. The camera is at the origin and looks
/// along z; one triangle at z = 1 covers the screen, from -2 to 2 in both directions.
class DrawnEffect : public EngineTest {
protected:
    DrawnEffect();

    /// The frame of the triangle on black, with the effect if it is selected.
    std::vector<D3DCOLOR> Drawn();
    /// The colour where the triangle is at (x, y).
    static D3DCOLOR At(const std::vector<D3DCOLOR>& frame, float x, float y);

    KRE_ShaderEffect effect;
    KRE_VertexListTemp<KRE_PointVertex> list;
};

#pragma once

#include <d3dx9.h>

#include "tests/platform/d3d9/DeviceTestFixture.h"

/// A device, an effect's passes on it, and what they set there.
class EffectOnDevice : public DeviceTest {
protected:
    /// Begins the current technique and its first pass.
    void BeginFirstPass(ID3DXEffect* effect, DWORD flags = 0);
    void EndPassAndEffect(ID3DXEffect* effect);

    DWORD Render(D3DRENDERSTATETYPE state);
    DWORD Stage(DWORD stage, D3DTEXTURESTAGESTATETYPE type);
    DWORD Sampler(DWORD sampler, D3DSAMPLERSTATETYPE type);
    D3DMATRIX Transform(D3DTRANSFORMSTATETYPE type);
    /// The texture at a stage, only for comparison.
    IDirect3DBaseTexture9* BoundTexture(DWORD stage);
};

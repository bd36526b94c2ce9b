#include "tests/platform/d3dx/EffectOnDevice.h"

DWORD EffectOnDevice::Render(D3DRENDERSTATETYPE state)
{
    DWORD value = 0;
    EXPECT_EQ(device->GetRenderState(state, &value), D3D_OK);
    return value;
}

DWORD EffectOnDevice::Stage(DWORD stage, D3DTEXTURESTAGESTATETYPE type)
{
    DWORD value = 0;
    EXPECT_EQ(device->GetTextureStageState(stage, type, &value), D3D_OK);
    return value;
}

DWORD EffectOnDevice::Sampler(DWORD sampler, D3DSAMPLERSTATETYPE type)
{
    DWORD value = 0;
    EXPECT_EQ(device->GetSamplerState(sampler, type, &value), D3D_OK);
    return value;
}

D3DMATRIX EffectOnDevice::Transform(D3DTRANSFORMSTATETYPE type)
{
    D3DMATRIX matrix = {};
    EXPECT_EQ(device->GetTransform(type, &matrix), D3D_OK);
    return matrix;
}

IDirect3DBaseTexture9* EffectOnDevice::BoundTexture(DWORD stage)
{
    Com<IDirect3DBaseTexture9> texture;
    EXPECT_EQ(device->GetTexture(stage, texture.Out()), D3D_OK);
    return texture.Get();
}

void EffectOnDevice::BeginFirstPass(ID3DXEffect* effect, DWORD flags)
{
    UINT passes = 0;
    ASSERT_EQ(effect->Begin(&passes, flags), D3D_OK);
    ASSERT_GT(passes, 0u);
    ASSERT_EQ(effect->BeginPass(0), D3D_OK);
}

void EffectOnDevice::EndPassAndEffect(ID3DXEffect* effect)
{
    EXPECT_EQ(effect->EndPass(), D3D_OK);
    EXPECT_EQ(effect->End(), D3D_OK);
}

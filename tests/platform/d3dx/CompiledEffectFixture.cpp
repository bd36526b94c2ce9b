#include "tests/platform/d3dx/CompiledEffectFixture.h"

bool CompiledEffectFixture::Load(ID3DXEffectPool* pool)
{
    return SUCCEEDED(LoadBytes(file.Bytes(), pool)) && effect;
}

HRESULT CompiledEffectFixture::LoadBytes(const std::string& bytes, ID3DXEffectPool* pool)
{
    return D3DXCreateEffect(device.Get(), bytes.data(), static_cast<UINT>(bytes.size()), nullptr,
                            nullptr, 0, pool, effect.Out(), nullptr);
}

void CompiledEffectFixture::TearDown()
{
    device->SetVertexShader(nullptr);
    device->SetPixelShader(nullptr);
    for (DWORD i = 0; i < 16; ++i)
        device->SetTexture(i, nullptr);
    effect.Release();
    DeviceTest::TearDown();
}

void CompiledEffectFixture::BeginPass()
{
    ASSERT_TRUE(effect);
    BeginFirstPass(effect.Get(), D3DXFX_DONOTSAVESTATE);
}

void CompiledEffectFixture::EndPass()
{
    ASSERT_TRUE(effect);
    EndPassAndEffect(effect.Get());
}

D3DXPARAMETER_DESC CompiledEffectFixture::Describe(D3DXHANDLE handle)
{
    D3DXPARAMETER_DESC desc = {};
    EXPECT_EQ(effect->GetParameterDesc(handle, &desc), D3D_OK);
    return desc;
}

std::vector<float> CompiledEffectFixture::VertexFloats(UINT first, UINT count)
{
    std::vector<float> values(size_t{count} * 4);
    EXPECT_EQ(device->GetVertexShaderConstantF(first, values.data(), count), D3D_OK);
    return values;
}

std::vector<float> CompiledEffectFixture::PixelFloats(UINT first, UINT count)
{
    std::vector<float> values(size_t{count} * 4);
    EXPECT_EQ(device->GetPixelShaderConstantF(first, values.data(), count), D3D_OK);
    return values;
}

void CompiledEffectFixture::AddPass(const std::vector<EffectFile::State>& states)
{
    file.AddTechnique("t", {{"p", states, {}}});
}

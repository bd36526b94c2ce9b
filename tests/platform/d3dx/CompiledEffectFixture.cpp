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
    UINT passes = 0;
    ASSERT_TRUE(effect);
    ASSERT_EQ(effect->Begin(&passes, D3DXFX_DONOTSAVESTATE), D3D_OK);
    ASSERT_GT(passes, 0u);
    ASSERT_EQ(effect->BeginPass(0), D3D_OK);
}

void CompiledEffectFixture::EndPass()
{
    ASSERT_TRUE(effect);
    ASSERT_EQ(effect->EndPass(), D3D_OK);
    ASSERT_EQ(effect->End(), D3D_OK);
}

DWORD CompiledEffectFixture::Render(D3DRENDERSTATETYPE state)
{
    DWORD value = 0;
    EXPECT_EQ(device->GetRenderState(state, &value), D3D_OK);
    return value;
}

DWORD CompiledEffectFixture::Stage(DWORD stage, D3DTEXTURESTAGESTATETYPE type)
{
    DWORD value = 0;
    EXPECT_EQ(device->GetTextureStageState(stage, type, &value), D3D_OK);
    return value;
}

DWORD CompiledEffectFixture::Sampler(DWORD sampler, D3DSAMPLERSTATETYPE type)
{
    DWORD value = 0;
    EXPECT_EQ(device->GetSamplerState(sampler, type, &value), D3D_OK);
    return value;
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

const std::vector<uint32_t>& PlainVertexShader()
{
    static const std::vector<uint32_t> words = {0xFFFE0101, 0x0000001F, 0x80000000, 0x900F0000,
                                                0x00000001, 0xC00F0000, 0x90E40000, 0x0000FFFF};
    return words;
}

const std::vector<uint32_t>& PlainPixelShader()
{
    static const std::vector<uint32_t> words = {0xFFFF0200, 0x02000001, 0x800F0800, 0xA0E40000,
                                                0x0000FFFF};
    return words;
}

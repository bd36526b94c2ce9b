#include "tests/platform/headless_effect/EffectTest.h"

#include <bit>

#include "platform/EffectCompiler.h"
#include "tests/support/ScratchDirectory.h"

namespace {

std::string TextOf(ID3DXBuffer* buffer)
{
    return buffer ? static_cast<const char*>(buffer->GetBufferPointer()) : "";
}

} // namespace

Com<ID3DXEffect> EffectTest::Make(const std::string& text, ID3DXEffectPool* pool)
{
    Com<ID3DXEffect> effect;
    Com<ID3DXBuffer> errors;
    EXPECT_EQ(D3DXCreateEffect(device.Get(), text.data(), static_cast<UINT>(text.size()), nullptr,
                               nullptr, 0, pool, effect.Out(), errors.Out()),
              D3D_OK)
        << TextOf(errors.Get()) << text;
    return effect;
}

Com<ID3DXEffect> EffectTest::MakeCompiled(const std::string& text)
{
    const ScratchDirectory folder;
    folder.Write("a.fx", text);
    std::string bytes;
    EXPECT_EQ(CompileEffect("a.fx", bytes), "") << text;
    Com<ID3DXEffect> effect;
    EXPECT_EQ(D3DXCreateEffect(device.Get(), bytes.data(), static_cast<UINT>(bytes.size()), nullptr,
                               nullptr, 0, nullptr, effect.Out(), nullptr),
              D3D_OK)
        << text;
    return effect;
}

float EffectTest::FogStartOf(ID3DXEffect* effect)
{
    BeginFirstPass(effect);
    const float value = std::bit_cast<float>(Render(D3DRS_FOGSTART));
    EndPassAndEffect(effect);
    return value;
}

std::string EffectTest::ErrorOf(const std::string& text, const D3DXMACRO* defines,
                                ID3DXInclude* include)
{
    Com<ID3DXEffect> effect;
    Com<ID3DXBuffer> errors;
    const HRESULT result =
        D3DXCreateEffect(device.Get(), text.data(), static_cast<UINT>(text.size()), defines,
                         include, 0, nullptr, effect.Out(), errors.Out());
    EXPECT_EQ(result, errors ? D3DXERR_INVALIDDATA : D3D_OK);
    EXPECT_EQ(static_cast<bool>(effect), !errors);
    return TextOf(errors.Get());
}

std::string EffectTest::ErrorOfFile(const char* path)
{
    Com<ID3DXEffect> effect;
    Com<ID3DXBuffer> errors;
    const HRESULT result = D3DXCreateEffectFromFileA(device.Get(), path, nullptr, nullptr, 0,
                                                     nullptr, effect.Out(), errors.Out());
    EXPECT_EQ(result, errors ? D3DXERR_INVALIDDATA : D3D_OK);
    return TextOf(errors.Get());
}

float FloatOf(ID3DXEffect* effect, const char* name)
{
    float value = 0.0f;
    EXPECT_EQ(effect->GetFloat(name, &value), D3D_OK) << name;
    return value;
}

int IntOf(ID3DXEffect* effect, const char* name)
{
    int value = 0;
    EXPECT_EQ(effect->GetInt(name, &value), D3D_OK) << name;
    return value;
}

std::string StringOf(ID3DXEffect* effect, const char* name)
{
    const char* text = "";
    EXPECT_EQ(effect->GetString(name, &text), D3D_OK) << name;
    return text;
}

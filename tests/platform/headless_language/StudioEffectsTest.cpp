// Whole effects in the manner of studios: they compile, draw, and draw the same in compiled form.

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

#include "platform/EffectCompiler.h"
#include "platform/EffectFault.h"
#include "tests/platform/headless_effect/EffectTest.h"
#include "tests/support/TreePaths.h"

namespace {

constexpr UINT kTargetSide = 32;
constexpr const char* kStudioEffects[] = {"bloom", "fur",     "parallax", "shadow",
                                          "skin",  "terrain", "toon",     "water"};

/// The indices of bones are a colour, as D3DCOLORtoUBYTE4 takes them.
struct StudioVertex {
    float place[3], weights[3];
    DWORD bones;
    float normal[3], uv[2];
};
constexpr DWORD kStudioFvf = D3DFVF_XYZB4 | D3DFVF_LASTBETA_D3DCOLOR | D3DFVF_NORMAL | D3DFVF_TEX1;

class StudioEffects : public EffectTest {
protected:
    void SetUp() override
    {
        EffectTest::SetUp();
        ASSERT_EQ(device->CreateRenderTarget(kTargetSide, kTargetSide, D3DFMT_A8R8G8B8,
                                             D3DMULTISAMPLE_NONE, 0, TRUE, target.Out(), nullptr),
                  D3D_OK);
        ASSERT_EQ(device->SetRenderTarget(0, target.Get()), D3D_OK);
        ASSERT_EQ(device->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, texture.Out(),
                                        nullptr),
                  D3D_OK);
        D3DLOCKED_RECT locked = {};
        ASSERT_EQ(texture->LockRect(0, &locked, nullptr, 0), D3D_OK);
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 4; ++x)
                reinterpret_cast<DWORD*>(static_cast<BYTE*>(locked.pBits) + y * locked.Pitch)[x] =
                    0xFF000000 | static_cast<DWORD>(x * 60 + 40) << 16 |
                    static_cast<DWORD>(y * 50 + 60) << 8 | 0xC0;
        texture->UnlockRect(0);
    }
    void TearDown() override
    {
        target.Release();
        texture.Release();
        EffectTest::TearDown();
    }
    /// Identity matrices, the texture everywhere, lights in front.
    void Feed(ID3DXEffect& effect)
    {
        D3DXEFFECT_DESC desc = {};
        ASSERT_EQ(effect.GetDesc(&desc), D3D_OK);
        D3DXMATRIX one;
        D3DXMatrixIdentity(&one);
        const std::vector<D3DXMATRIX> many(26, one);
        const std::vector<D3DXVECTOR4> lights(6, D3DXVECTOR4(0.3f, 0.4f, -2.0f, 1.0f));
        for (UINT i = 0; i < desc.Parameters; ++i) {
            const D3DXHANDLE handle = effect.GetParameter(nullptr, i);
            D3DXPARAMETER_DESC told = {};
            effect.GetParameterDesc(handle, &told);
            if (told.Type >= D3DXPT_TEXTURE && told.Type <= D3DXPT_TEXTURECUBE)
                effect.SetTexture(handle, texture.Get());
            else if (told.Class == D3DXPC_MATRIX_ROWS && told.Elements > 0)
                effect.SetMatrixArray(handle, many.data(), told.Elements);
            else if (told.Class == D3DXPC_MATRIX_ROWS)
                effect.SetMatrix(handle, &one);
            else if (told.Class == D3DXPC_VECTOR && told.Elements > 0 && told.Semantic)
                effect.SetVectorArray(handle, lights.data(), told.Elements);
            else if (told.Class == D3DXPC_VECTOR && told.Semantic)
                effect.SetVector(handle, &lights[0]);
        }
    }
    /// The picture that all passes of a technique leave.
    std::vector<DWORD> Draw(ID3DXEffect& effect, D3DXHANDLE technique)
    {
        static const StudioVertex kQuad[] = {
            {{-1, 1, 0.5f}, {0.5f, 0.5f, 0}, 0x00020100, {0, 0, -1}, {0, 0}},
            {{1, 1, 0.5f}, {0.5f, 0.5f, 0}, 0x00020100, {0.2f, 0, -1}, {1, 0}},
            {{-1, -1, 0.5f}, {1, 0, 0}, 0, {0, 0.3f, -1}, {0, 1}},
            {{1, -1, 0.5f}, {1, 0, 0}, 0, {0, 0, -1}, {1, 1}}};
        device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF203040, 1.0f, 0);
        device->SetRenderState(D3DRS_CULLMODE, D3DCULL_NONE);
        device->SetRenderState(D3DRS_ZENABLE, D3DZB_FALSE);
        UINT passes = 0;
        EXPECT_EQ(effect.SetTechnique(technique), D3D_OK);
        EXPECT_EQ(effect.Begin(&passes, 0), D3D_OK);
        EXPECT_EQ(device->BeginScene(), D3D_OK);
        for (UINT pass = 0; pass < passes; ++pass) {
            EXPECT_EQ(effect.BeginPass(pass), D3D_OK);
            device->SetFVF(kStudioFvf);
            EXPECT_EQ(device->DrawPrimitiveUP(D3DPT_TRIANGLESTRIP, 2, kQuad, sizeof(StudioVertex)),
                      D3D_OK);
            effect.EndPass();
        }
        device->EndScene();
        effect.End();
        std::vector<DWORD> pixels;
        D3DLOCKED_RECT locked = {};
        EXPECT_EQ(target->LockRect(&locked, nullptr, D3DLOCK_READONLY), D3D_OK);
        for (UINT y = 0; y < kTargetSide; ++y) {
            const auto* line = reinterpret_cast<const DWORD*>(
                static_cast<const BYTE*>(locked.pBits) + y * static_cast<size_t>(locked.Pitch));
            pixels.insert(pixels.end(), line, line + kTargetSide);
        }
        target->UnlockRect();
        return pixels;
    }

    Com<IDirect3DSurface9> target;
    Com<IDirect3DTexture9> texture;
};

std::string TextOfFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST_F(StudioEffects, DrawTheSameInCompiledForm)
{
    for (const std::string name : kStudioEffects) {
        const std::string path =
            SourcePath("tests/platform/headless_language/studio/" + name + ".fx");
        const Com<ID3DXEffect> effect = Make(TextOfFile(path));
        std::string bytes;
        ASSERT_EQ(CompileEffect(path, bytes), "") << name;
        Com<ID3DXEffect> compiled;
        ASSERT_EQ(D3DXCreateEffect(device.Get(), bytes.data(), static_cast<UINT>(bytes.size()),
                                   nullptr, nullptr, 0, nullptr, compiled.Out(), nullptr),
                  D3D_OK)
            << name;
        Feed(*effect.Get());
        Feed(*compiled.Get());
        D3DXEFFECT_DESC desc = {};
        ASSERT_EQ(effect->GetDesc(&desc), D3D_OK);
        for (UINT i = 0; i < desc.Techniques; ++i) {
            const D3DXHANDLE technique = effect->GetTechnique(i), twin = compiled->GetTechnique(i);
            EXPECT_EQ(EffectFault(*effect.Get(), technique), "") << name;
            EXPECT_EQ(EffectFault(*compiled.Get(), twin), "") << name;
            const std::vector<DWORD> picture = Draw(*effect.Get(), technique);
            const auto changed = std::count_if(picture.begin(), picture.end(),
                                               [](DWORD pixel) { return pixel != 0xFF203040; });
            EXPECT_GT(changed, static_cast<ptrdiff_t>(kTargetSide * kTargetSide / 2))
                << name << " draws nothing";
            EXPECT_EQ(picture, Draw(*compiled.Get(), twin)) << name;
        }
    }
}

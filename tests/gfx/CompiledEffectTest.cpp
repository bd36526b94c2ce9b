// The engine with compiled effects that the host's D3DX loads, draws with and describes.

#include "tests/support/CompiledEffect.h"
#include "tests/gfx/DrawnEffect.h"
#include "tests/support/SolidDds.h"

#include <algorithm>

using testing::ElementsAre;
using testing::StartsWith;

namespace {

/// Compares by value: D3DX compares bits, where -0 differs from 0.
bool HaveSameValues(const D3DXMATRIX& a, const D3DXMATRIX& b)
{
    const float* const first = &a._11;
    return std::equal(first, first + 16, &b._11);
}

/// An effect that is written by the test.
class CompiledEffectTest : public DrawnEffect {
protected:
    int32_t Load(KRE_ShaderEffect& target, const char* name = "one.fxo", bool usePool = false)
    {
        scratch.Write(name, file.Bytes());
        return gfx.LoadEffect(&target, name, usePool, 0, true);
    }
    D3DXMATRIX Matrix(EffectSemantic semantic)
    {
        D3DXMATRIX matrix;
        EXPECT_EQ(effect.data->effect->GetMatrix(effect.data->Handle(semantic), &matrix), D3D_OK);
        return matrix;
    }
    D3DXVECTOR4 Vector(D3DXHANDLE handle)
    {
        D3DXVECTOR4 vector(-1, -1, -1, -1);
        EXPECT_EQ(effect.data->effect->GetVector(handle, &vector), D3D_OK);
        return vector;
    }
    float Float(D3DXHANDLE handle)
    {
        float value = -1.0f;
        EXPECT_EQ(effect.data->effect->GetFloat(handle, &value), D3D_OK);
        return value;
    }
    DWORD CullState()
    {
        DWORD value = 0;
        gfx.device->GetRenderState(D3DRS_CULLMODE, &value);
        return value;
    }
    ComPointer<IDirect3DSurface9> Target()
    {
        ComPointer<IDirect3DSurface9> target;
        gfx.device->GetRenderTarget(0, target.Out());
        return target;
    }
    static D3DSURFACE_DESC DescriptionOf(IDirect3DSurface9* surface)
    {
        D3DSURFACE_DESC description{};
        surface->GetDesc(&description);
        return description;
    }

    CompiledEffect file;
};

} // namespace

TEST_F(CompiledEffectTest, LoadsWithAndWithoutThePool)
{
    file.AddFloat("Opacity");
    file.AddTechnique({{}});
    for (const bool usePool : {false, true}) {
        EXPECT_EQ(Load(effect, "one.fxo", usePool), 1);
        EXPECT_TRUE(effect.IsUsable());
        EXPECT_EQ(effect.data->parameterCount, 1);
        EXPECT_EQ(effect.data->techniqueCount, 1);
        EXPECT_EQ(effect.technique, 0);
        EXPECT_EQ(LastWarning(), "");
        effect.Free();
        EXPECT_EQ(gfx.effectManager.GetCount(), 0);
    }
}

TEST_F(CompiledEffectTest, TextThatIsRefusedIsAnErrorWithItsMessage)
{
    scratch.Write("bad.fx", "technique { pass { CullMode = SIDEWAYS; } }");
    EXPECT_THAT(RaisedBy([&] { gfx.LoadEffect(&effect, "bad.fx", false, 0, true); }),
                StartsWith("Could not compile effect from file 'bad.fx': '"));
}

TEST_F(CompiledEffectTest, FileOfAnotherVersionIsAnError)
{
    file.AddTechnique({{}});
    std::string bytes = file.Bytes();
    bytes[1] = 8; // of the first word, 0xFEFF0901
    scratch.Write("old.fxo", bytes);
    EXPECT_THAT(RaisedBy([&] { gfx.LoadEffect(&effect, "old.fxo", false, 0, true); }),
                StartsWith("Could not compile effect from file 'old.fxo': '"));
    EXPECT_FALSE(effect.IsUsable());
}

TEST_F(CompiledEffectTest, SecondUserSharesTheEffectAndItsTechnique)
{
    file.AddTechnique({{nullptr, 0, false, true}});
    file.AddTechnique({{}});
    Load(effect);
    KRE_ShaderEffect second;
    Load(second);
    EXPECT_EQ(second.data, effect.data);
    EXPECT_EQ(second.technique, 1);
    EXPECT_EQ(gfx.effectManager.GetEntry(0)->useCount, 2);
}

// ---- Parameters

TEST_F(CompiledEffectTest, MatricesReachTheirSemantics)
{
    for (const char* semantic : {"WORLD", "VIEW", "WORLDVIEW", "VIEWINVERSE"})
        file.AddMatrix(semantic);
    file.AddVector("VIEWPOSITION");
    file.AddTechnique({{}});
    Load(effect);
    D3DXMATRIX world;
    D3DXMATRIX view;
    gfx.SetWorldMatrix(*D3DXMatrixTranslation(&world, 1, 2, 3));
    gfx.SetViewMatrix(*D3DXMatrixTranslation(&view, -10, -20, -30));
    gfx.UpdateEffectFrame(effect);
    using enum EffectSemantic;
    EXPECT_TRUE(HaveSameValues(Matrix(kWorld), world));
    EXPECT_TRUE(HaveSameValues(Matrix(kView), view));
    // Translations add up, and the inverse leads back to the camera's position.
    D3DXMATRIX expected;
    D3DXMatrixTranslation(&expected, -9, -18, -27);
    EXPECT_TRUE(HaveSameValues(Matrix(kWorldView), expected));
    D3DXMatrixTranslation(&expected, 10, 20, 30);
    EXPECT_TRUE(HaveSameValues(Matrix(kViewInverse), expected));
    EXPECT_EQ(Vector(effect.data->Handle(kViewPosition)), D3DXVECTOR4(10, 20, 30, 1));
}

TEST_F(CompiledEffectTest, NumbersAndTexturesReachTheirSemantics)
{
    file.AddFloat("Opacity");
    file.AddVector("InvViewPortDim");
    file.AddTexture("SCREENCOPY");
    file.AddTexture("SCREENBUFFER2");
    file.AddTexture("SCREENQUARTERBUFFER3");
    file.AddTechnique({{}});
    Load(effect);
    gfx.blendValue = 51; // a fifth of 255
    gfx.UpdateEffectFrame(effect);
    const ShaderEffectData& data = *effect.data;
    EXPECT_EQ(Float(data.Handle(EffectSemantic::kOpacity)), 0.2f);
    EXPECT_EQ(Vector(data.Handle(EffectSemantic::kInvViewPortDim)),
              D3DXVECTOR4(1.0f / 64, 1.0f / 48, 0, 0));
    const auto textureOf = [&](D3DXHANDLE handle) {
        ComPointer<IDirect3DBaseTexture9> texture;
        EXPECT_EQ(data.effect->GetTexture(handle, texture.Out()), D3D_OK);
        return texture;
    };
    ASSERT_TRUE(gfx.screenCopy && gfx.screenBuffers[1] && gfx.screenQuarterBuffers[2]);
    EXPECT_EQ(textureOf(data.Handle(EffectSemantic::kScreenCopy)).Get(), gfx.screenCopy.Get());
    EXPECT_EQ(textureOf(data.screenBuffers[1]).Get(), gfx.screenBuffers[1].Get());
    EXPECT_EQ(textureOf(data.screenQuarterBuffers[2]).Get(), gfx.screenQuarterBuffers[2].Get());
    EXPECT_FALSE(gfx.screenBuffers[0]) << "what is not asked for is not made";
}

TEST_F(CompiledEffectTest, LightsFillTheirArrays)
{
    file.AddInt("NumOmniLights", -1);
    file.AddVector("OmniLightPosition", 6);
    file.AddVector("AmbientColor");
    file.AddTechnique({{}});
    Load(effect);
    D3DLIGHT9 light{};
    light.Type = D3DLIGHT_POINT;
    light.Position = {1, 2, 3};
    gfx.SetLighting(1, nullptr);
    gfx.SetLight(0, light);
    gfx.LightEnable(0, 1);
    gfx.SetAmbient(0x00FF3300); // 1, 0.2, 0
    gfx.UpdateEffectLights(effect);
    const ShaderEffectData& data = *effect.data;
    int count = -1;
    EXPECT_EQ(data.effect->GetInt(data.Handle(EffectSemantic::kNumOmniLights), &count), D3D_OK);
    EXPECT_EQ(count, 1);
    std::vector<D3DXVECTOR4> positions(6, D3DXVECTOR4(-1, -1, -1, -1));
    EXPECT_EQ(data.effect->GetVectorArray(data.Handle(EffectSemantic::kOmniLightPosition),
                                          positions.data(), 6),
              D3D_OK);
    const D3DXVECTOR4 zero(0, 0, 0, 0);
    EXPECT_THAT(positions, ElementsAre(D3DXVECTOR4(1, 2, 3, 1), zero, zero, zero, zero, zero));
    EXPECT_EQ(Vector(data.Handle(EffectSemantic::kAmbientColor)), D3DXVECTOR4(1, 0.2f, 0, 1));
}

TEST_F(CompiledEffectTest, MaterialsValuesReplaceTheInitialOnes)
{
    file.AddFloat("fParam1", 7.0f);
    file.AddFloat("fParam2", 8.0f);
    file.AddVector("vParam3");
    file.AddTechnique({{}});
    Load(effect);
    effect.fParam[0] = {0.5f, true};
    effect.vParam[2] = {1.0f, 2.0f, 3.0f, true};
    gfx.SelectEffect(&effect);
    EXPECT_EQ(Float(effect.data->fParams[0]), 0.5f);
    EXPECT_EQ(Float(effect.data->fParams[1]), 8.0f) << "it is not set";
    EXPECT_EQ(Vector(effect.data->vParams[2]), D3DXVECTOR4(1, 2, 3, 0));
}

TEST_F(CompiledEffectTest, NamedTexturesAreFoundByTheirAnnotation)
{
    file.AddTexture("plain");
    file.AddTexture("named", "no such.bmp");
    file.AddTechnique({{}});
    Load(effect);
    ASSERT_EQ(effect.data->resourceCount, 1);
    LPCSTR name = nullptr;
    EXPECT_EQ(effect.data->effect->GetString(effect.data->resourceNames[0], &name), D3D_OK);
    EXPECT_STREQ(name, "no such.bmp");
    gfx.UpdateEffectFrame(effect);
    KRE_Texture* texture = gfx.catalogue.GetTexture("NO SUCH.BMP_FX_");
    ASSERT_NE(texture, nullptr);
    ComPointer<IDirect3DBaseTexture9> set;
    EXPECT_EQ(effect.data->effect->GetTexture(effect.data->resourceParams[0], set.Out()), D3D_OK);
    EXPECT_EQ(set.Get(), texture->current);
}

/// The triangle's places are the coordinates:
/// towards (x, y, 1) lies the face of x beyond 1, that of y above, else +z; a matrix makes x choose the slice.
TEST_F(CompiledEffectTest, CubesAndVolumesThatItNamesAreDrawn)
{
    scratch.Write("sky.dds", CubeDds({0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004, 0xFF000005,
                                      0xFF000006}));
    scratch.Write("smoke.dds", VolumeDds({0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004}));
    file.AddTexture("sky", "sky.dds");
    file.AddTexture("smoke", "smoke.dds");
    file.AddTechnique({{nullptr, D3DCULL_NONE, false, false, "sky"}});
    Load(effect);
    effect.needsStageIndices = false;
    IDirect3DDevice9& device = *gfx.device.Get();
    device.SetTextureStageState(0, D3DTSS_TEXCOORDINDEX, D3DTSS_TCI_CAMERASPACEPOSITION);
    device.SetTextureStageState(0, D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_COUNT3);
    device.SetTextureStageState(0, D3DTSS_COLOROP, D3DTOP_SELECTARG1);
    device.SetTextureStageState(0, D3DTSS_COLORARG1, D3DTA_TEXTURE);
    gfx.SelectEffect(&effect);
    const auto sky = Drawn();
    EXPECT_EQ(At(sky, 0, 0), 5u);
    EXPECT_EQ(At(sky, 1.5f, 0.5f), 1u);
    EXPECT_EQ(At(sky, -1.5f, -0.5f), 2u);
    EXPECT_EQ(At(sky, 0.5f, 1.5f), 3u);
    EXPECT_EQ(At(sky, -0.5f, -1.5f), 4u);

    file = {};
    file.AddTexture("smoke", "smoke.dds");
    file.AddTechnique({{nullptr, D3DCULL_NONE, false, false, "smoke"}});
    Load(effect, "two.fxo");
    effect.needsStageIndices = false;
    const D3DMATRIX toSlices = {{{0, 0, 0.25f, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.5f, 1}}};
    device.SetTransform(D3DTS_TEXTURE0, &toSlices);
    gfx.SelectEffect(&effect);
    const auto smoke = Drawn();
    EXPECT_EQ(At(smoke, -1.5f, 0), 1u);
    EXPECT_EQ(At(smoke, -0.5f, 0), 2u);
    EXPECT_EQ(At(smoke, 0.5f, 1), 3u);
    EXPECT_EQ(At(smoke, 1.5f, -1), 4u);
}

TEST_F(CompiledEffectTest, DamagedFileOfACubeIsAnError)
{
    const std::string whole = CubeDds({1, 2, 3, 4, 5, 6});
    scratch.Write("sky.dds", whole.substr(0, whole.size() - 1));
    file.AddTexture("sky", "sky.dds");
    file.AddTechnique({{}});
    Load(effect);
    EXPECT_THAT(RaisedBy([&] { gfx.UpdateEffectFrame(effect); }),
                testing::HasSubstr("failed: D3DXERR_INVALIDDATA (file:"));
}

// ---- Techniques and passes

TEST_F(CompiledEffectTest, TechniqueThatDoesNotRunHereIsSkipped)
{
    file.AddTechnique({{nullptr, 0, false, true}});
    file.AddTechnique({{}, {nullptr, 0, true, false}});
    Load(effect);
    EXPECT_EQ(effect.technique, 1);
    EXPECT_EQ(effect.data->effect->GetCurrentTechnique(), effect.data->techniques[1].handle);
    EXPECT_EQ(effect.data->techniques[1].passCount, 2);
    EXPECT_TRUE(effect.TechniqueHasVertexShader());
    EXPECT_FALSE(effect.TechniqueHasVertexShader(0));
    EXPECT_EQ(LastWarning(), "");
}

TEST_F(CompiledEffectTest, EffectWithoutATechniqueThatRunsWarnsAndIsUnusable)
{
    file.AddTechnique({{nullptr, 0, false, true}});
    EXPECT_EQ(Load(effect), 1);
    EXPECT_FALSE(effect.IsUsable());
    EXPECT_EQ(LastWarning(), "Shader could not be validated for this GPU: 'one.fxo'");
    EXPECT_EQ(effect.technique, 0);
}

TEST_F(CompiledEffectTest, PassesSetTheirStatesAndTheEndRestoresThem)
{
    file.AddTechnique({{nullptr, D3DCULL_CW}, {nullptr, D3DCULL_NONE}});
    Load(effect);
    gfx.device->SetRenderState(D3DRS_CULLMODE, D3DCULL_CCW);
    EXPECT_EQ(effect.Begin(), 2u);
    effect.BeginPass(0);
    EXPECT_EQ(CullState(), static_cast<DWORD>(D3DCULL_CW));
    effect.EndPass();
    effect.BeginPass(1);
    EXPECT_EQ(CullState(), static_cast<DWORD>(D3DCULL_NONE));
    effect.EndPass();
    effect.End();
    EXPECT_EQ(CullState(), static_cast<DWORD>(D3DCULL_CCW));
}

TEST_F(CompiledEffectTest, ListIsDrawnWithTheStatesOfThePass)
{
    // One triangle over the whole screen: one of the two culling modes hides it, the effect's does
    // not.
    file.AddTechnique({{nullptr, D3DCULL_NONE}});
    Load(effect);
    const auto isShown = [&](int32_t cullMode) {
        gfx.SetCullMode(cullMode);
        return At(Drawn(), 0, 0) == 0xFFFFFF;
    };
    EXPECT_NE(isShown(1), isShown(-1));
    gfx.SelectEffect(&effect);
    EXPECT_TRUE(isShown(1));
    EXPECT_TRUE(isShown(-1));
}

TEST_F(CompiledEffectTest, PassesDrawIntoTheBuffersOfTheirAnnotations)
{
    file.AddTechnique({{"ScreenBuffer1"}, {"ScreenQuarterBuffer2"}, {"Initial"}, {}});
    Load(effect);
    const ComPointer<IDirect3DSurface9> before = Target();
    // The window is 64 x 48, a quarter of it 16 x 12.
    const UINT widths[] = {64, 16, 64, 64};
    gfx.BeginScene();
    ASSERT_EQ(effect.Begin(), 4u);
    for (UINT pass = 0; pass < 4; ++pass) {
        effect.BeginPass(pass);
        const ComPointer<IDirect3DSurface9> inside = Target();
        EXPECT_EQ(DescriptionOf(inside.Get()).Width, widths[pass]) << pass;
        EXPECT_EQ(inside.Get() == before.Get(), pass >= 2) << pass;
        effect.EndPass();
        EXPECT_EQ(Target().Get(), before.Get()) << pass;
    }
    effect.End();
    gfx.EndScene();
}

TEST_F(CompiledEffectTest, TargetThatDoesNotExistIsAnError)
{
    file.AddTechnique({{"ScreenBuffer3"}});
    EXPECT_EQ(RaisedBy([&] { Load(effect); }), "Not more than 2 ScreenBuffer supported");
}

TEST_F(CompiledEffectTest, SurvivesAResetWithItsBuffers)
{
    file.AddTexture("SCREENQUARTERBUFFER1");
    file.AddTechnique({{"ScreenQuarterBuffer1"}});
    Load(effect);
    gfx.UpdateEffectFrame(effect);
    ASSERT_TRUE(gfx.screenQuarterBuffers[0]);
    window.Resize(80, 60);
    EXPECT_EQ(RaisedBy([&] { gfx.ResetDevice(nullptr); }), "no error");
    EXPECT_TRUE(effect.IsUsable());
    gfx.UpdateEffectFrame(effect);
    D3DSURFACE_DESC description{};
    gfx.screenQuarterBuffers[0]->GetLevelDesc(0, &description);
    EXPECT_EQ(description.Width, 20u);
}

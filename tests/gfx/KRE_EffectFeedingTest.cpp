#include "tests/gfx/EffectFrame.h"

#include "base/Clock.h"

#include <algorithm>

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;

namespace {

using KRE_EffectFeedingTest = EffectFrame;

D3DXMATRIX Rows(const D3DXVECTOR4& a, const D3DXVECTOR4& b, const D3DXVECTOR4& c,
                const D3DXVECTOR4& d)
{
    return {a.x, a.y, a.z, a.w, b.x, b.y, b.z, b.w, c.x, c.y, c.z, c.w, d.x, d.y, d.z, d.w};
}

/// Compares by value: D3DX compares bits, where -0 differs from 0.
bool SameValues(const D3DXMATRIX& a, const D3DXMATRIX& b)
{
    const float* const first = &a._11;
    return std::equal(first, first + 16, &b._11);
}

float SixYears()
{
    return 189e6f;
}

} // namespace

// ---- Matrices

TEST_F(KRE_EffectFeedingTest, MatricesOfAKnownCameraAndObject)
{
    // The object is scaled by 2, 4 and 8 and is at (1, 2, 3); the camera is at (10, 20, 30) and
    // looks along Z; the projection scales x by 2 and y by 3 and divides by z, with its near plane
    // at 1. Products are of rows by columns.
    gfx.SetWorldMatrix(Rows({2, 0, 0, 0}, {0, 4, 0, 0}, {0, 0, 8, 0}, {1, 2, 3, 1}));
    gfx.SetViewMatrix(Rows({1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {-10, -20, -30, 1}));
    gfx.SetProjectionMatrix(Rows({2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 1, 1}, {0, 0, -1, 0}));
    const struct {
        const char* semantic;
        D3DXMATRIX value;
    } rows[] = {
        {"WORLD", Rows({2, 0, 0, 0}, {0, 4, 0, 0}, {0, 0, 8, 0}, {1, 2, 3, 1})},
        {"VIEW", Rows({1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {-10, -20, -30, 1})},
        {"PROJECTION", Rows({2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 1, 1}, {0, 0, -1, 0})},
        // The position becomes 1 - 10, 2 - 20, 3 - 30.
        {"WORLDVIEW", Rows({2, 0, 0, 0}, {0, 4, 0, 0}, {0, 0, 8, 0}, {-9, -18, -27, 1})},
        // Last row: -9 * 2, -18 * 3, -27 - 1, -27.
        {"WORLDVIEWPROJECTION",
         Rows({4, 0, 0, 0}, {0, 12, 0, 0}, {0, 0, 8, 8}, {-18, -54, -28, -27})},
        // Last row: -10 * 2, -20 * 3, -30 - 1, -30.
        {"VIEWPROJECTION", Rows({2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 1, 1}, {-20, -60, -31, -30})},
        {"VIEWINVERSE", Rows({1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {10, 20, 30, 1})},
        // The inverse scales by 1/2, 1/4, 1/8 and moves by -1/2, -2/4, -3/8; then it is transposed.
        {"WORLDINVERSETRANSPOSE",
         Rows({0.5f, 0, 0, -0.5f}, {0, 0.25f, 0, -0.5f}, {0, 0, 0.125f, -0.375f}, {0, 0, 0, 1})},
    };
    for (const auto& row : rows)
        file.AddParameter(row.semantic);
    file.AddParameter("VIEWPOSITION");
    UpdateFrame();
    for (const auto& row : rows)
        EXPECT_TRUE(SameValues(file.matrices[row.semantic].at(0), row.value)) << row.semantic;
    EXPECT_EQ(Vector("VIEWPOSITION"), D3DXVECTOR4(10, 20, 30, 1));
}

TEST_F(KRE_EffectFeedingTest, FlatObjectHasTheIdentityForItsInverse)
{
    gfx.SetWorldMatrix(Rows({1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 1}));
    file.AddParameter("WORLDINVERSETRANSPOSE");
    UpdateFrame();
    D3DXMATRIX identity;
    D3DXMatrixIdentity(&identity);
    EXPECT_EQ(file.matrices["WORLDINVERSETRANSPOSE"].at(0), identity);
}

TEST_F(KRE_EffectFeedingTest, TextureMatrixIsThatOfTheFirstStage)
{
    const D3DXMATRIX shift = Rows({1, 0, 0, 0}, {0, 1, 0, 0}, {5, 6, 1, 0}, {0, 0, 0, 1});
    gfx.textureMatrix[0] = shift;
    file.AddParameter("TextureMatrix");
    UpdateFrame();
    EXPECT_EQ(file.matrices["TextureMatrix"].at(0), shift);
}

// ---- Numbers

TEST_F(KRE_EffectFeedingTest, FogViewportAndOpacity)
{
    gfx.SetFog({0xFF112233, D3DFOG_LINEAR, 1, 5.0f, 600.0f, 0.0f});
    gfx.blendValue = 51; // a fifth of 255
    file.AddParameters({"FOGSTARTEND", "InvViewPortDim", "Opacity"});
    UpdateFrame();
    EXPECT_EQ(Vector("FOGSTARTEND"), D3DXVECTOR4(5, 600, 0, 0));
    EXPECT_EQ(Vector("InvViewPortDim"), D3DXVECTOR4(1.0f / 64, 1.0f / 48, 0, 0));
    EXPECT_EQ(file.floats["Opacity"], 0.2f);
}

TEST_F(KRE_EffectFeedingTest, TimesAreSecondsSinceTheStartAndSecondsPerFrame)
{
    gfx.startTime = GetTimeSeconds() - 100.0;
    // Ten frames in the half second between the oldest sample and the newest one are 20 a second.
    for (KRE_Gfx::FrameSample& sample : gfx.fpsRing)
        sample = {7.0, 30};
    gfx.fpsRing[0] = {7.5, 40};
    gfx.fpsRingIndex = 1;
    file.AddParameters({"TIME", "ELAPSEDTIME", "GAMETIME"});
    UpdateFrame();
    EXPECT_GE(file.floats["TIME"], 100.0f);
    EXPECT_LT(file.floats["TIME"], 200.0f);
    EXPECT_EQ(file.floats["GAMETIME"], file.floats["TIME"]);
    EXPECT_EQ(file.floats["ELAPSEDTIME"], 1.0f / 20.0f);
    gfx.getGameTime = SixYears;
    gfx.UpdateEffectFrame(effect);
    EXPECT_EQ(file.floats["GAMETIME"], 189e6f);
    EXPECT_LT(file.floats["TIME"], 200.0f);
}

TEST_F(KRE_EffectFeedingTest, RandomNumbersComeFromTheEnginesGenerator)
{
    gfx.random.Seed(5);
    RandomGenerator same;
    same.Seed(5);
    file.AddParameter("RANDOM");
    UpdateFrame();
    EXPECT_EQ(file.floats["RANDOM"], same.NextFloat());
    gfx.UpdateEffectFrame(effect);
    EXPECT_EQ(file.floats["RANDOM"], same.NextFloat());
}

TEST_F(KRE_EffectFeedingTest, ParametersThatAreMissingAreNotSet)
{
    UpdateFrame();
    gfx.UpdateEffectLights(effect);
    EXPECT_THAT(Calls(), Not(Contains(StartsWith("Set"))));
    EXPECT_FALSE(gfx.screenCopy);
    EXPECT_FALSE(gfx.screenBuffers[0]);
    EXPECT_FALSE(gfx.screenQuarterBuffers[0]);
}

TEST_F(KRE_EffectFeedingTest, NamesAreCaseSensitive)
{
    file.AddParameters({"world", "OPACITY", "Time"});
    Load();
    for (D3DXHANDLE handle : effect.data->semantics)
        EXPECT_EQ(handle, nullptr);
}

// ---- Textures

TEST_F(KRE_EffectFeedingTest, MapsAreThoseOfTheDiffuseStageAndTheNext)
{
    ComPointer<IDirect3DTexture9> made[2];
    for (ComPointer<IDirect3DTexture9>& texture : made)
        gfx.device->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, texture.Out(),
                                  nullptr);
    gfx.diffuseStage = 1;
    gfx.boundTexture[1] = made[0].Get();
    gfx.boundTexture[2] = made[1].Get();
    file.AddParameters({"DIFFUSEMAP", "NORMALMAP"});
    UpdateFrame();
    EXPECT_EQ(file.textures["DIFFUSEMAP"], made[0].Get());
    EXPECT_EQ(file.textures["NORMALMAP"], made[1].Get());
    gfx.ResetStateCache(); // the bound textures are unknown
    gfx.UpdateEffectFrame(effect);
    EXPECT_EQ(file.textures["DIFFUSEMAP"], nullptr);
    gfx.diffuseStage = KRE_Gfx::kStages - 1; // there is no next one
    gfx.UpdateEffectFrame(effect);
    EXPECT_EQ(file.textures["NORMALMAP"], nullptr);
}

TEST_F(KRE_EffectFeedingTest, ScreenTexturesAreThoseOfTheirNumbers)
{
    file.AddParameters({"SCREENCOPY", "SCREENBUFFER1", "SCREENBUFFER2", "SCREENBUFFER3",
                        "SCREENQUARTERBUFFER1", "SCREENQUARTERBUFFER2", "SCREENQUARTERBUFFER3",
                        "SCREENQUARTERBUFFER4"});
    UpdateFrame();
    EXPECT_TRUE(gfx.screenCopy);
    EXPECT_EQ(file.textures, (std::map<std::string, IDirect3DBaseTexture9*>{
                                 {"SCREENCOPY", gfx.screenCopy.Get()},
                                 {"SCREENBUFFER1", gfx.screenBuffers[0].Get()},
                                 {"SCREENBUFFER2", gfx.screenBuffers[1].Get()},
                                 {"SCREENQUARTERBUFFER1", gfx.screenQuarterBuffers[0].Get()},
                                 {"SCREENQUARTERBUFFER2", gfx.screenQuarterBuffers[1].Get()},
                                 {"SCREENQUARTERBUFFER3", gfx.screenQuarterBuffers[2].Get()}}));
}

TEST_F(KRE_EffectFeedingTest, NamedTextureIsKeptInTheCatalogueUnderItsOwnName)
{
    // A lower-case letter becomes a capital; '~' and bytes from 0x80 on are outside 0x20 to 0x60.
    // The file is missing, so the catalogue has a placeholder.
    file.AddParameter("any", "pic~1\xE4.bmp");
    UpdateFrame();
    KRE_Texture* texture = gfx.catalogue.GetTexture("PIC_1_.BMP_FX_");
    ASSERT_NE(texture, nullptr);
    EXPECT_EQ(file.textures["any"], texture->current);
    EXPECT_EQ(LastWarning(), "Texture file not found: 'pic~1\xE4.bmp'");
    gfx.UpdateEffectFrame(effect);
    EXPECT_EQ(LastWarning(), "") << "it is loaded once";
    EXPECT_EQ(file.textures["any"], texture->current);
}

TEST_F(KRE_EffectFeedingTest, NamedTextureKeepsTheCharactersFrom0x20To0x60)
{
    // 0x1F and 0x61 are just outside; the letters 0x61 to 0x7A are first turned into capitals.
    file.AddParameter("any", "a`z{ \x1F.bmp");
    UpdateFrame();
    EXPECT_NE(gfx.catalogue.GetTexture("A`Z_ _.BMP_FX_"), nullptr);
}

TEST_F(KRE_EffectFeedingTest, NamedTextureMayBeStretched)
{
    // A bitmap of 1 by 1 pixels.
    std::string bytes("BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0", 30);
    scratch.Write("pic.bmp", bytes + std::string(28, '\0'));
    file.AddParameter("any", "pic.bmp");
    UpdateFrame();
    ASSERT_NE(gfx.catalogue.GetTexture("PIC.BMP_FX_"), nullptr);
    EXPECT_EQ(PictureFilter(), DWORD{D3DX_FILTER_LINEAR});
}

// ---- Preparing

TEST_F(KRE_EffectFeedingTest, StagesTakeTheirOwnCoordinates)
{
    file.AddParameters({"Opacity", "SpecularPower", "NUMBLENDWEIGHTS"});
    Load();
    gfx.PrepareEffect(effect, nullptr, -1);
    std::vector<std::string> calls;
    for (int stage = 0; stage < 6; ++stage)
        calls.push_back("SetTextureStageState " + std::to_string(stage) + " D3DTSS_TEXCOORDINDEX " +
                        std::to_string(stage));
    calls.push_back("SetFloat Opacity");
    calls.push_back("SetFloat SpecularPower");
    EXPECT_EQ(Calls(), calls) << "without a mesh nothing is said of one";
}

TEST_F(KRE_EffectFeedingTest, WhatAnEffectDoesNotNeedIsLeftOut)
{
    file.AddParameters({"Opacity", "SpecularPower"});
    Load();
    effect.needsLights = false;
    effect.needsStageIndices = false;
    gfx.PrepareEffect(effect, nullptr, -1);
    EXPECT_THAT(Calls(), ElementsAre("SetFloat Opacity"));
}

TEST_F(KRE_EffectFeedingTest, VertexShaderSwitchesTheTextureTransformsOff)
{
    ScriptedEffect shaded(recorder);
    shaded.AddTechnique({{nullptr, true}});
    scratch.Write("shaded.fx", "text");
    script.effects["shaded.fx"] = &shaded;
    KRE_ShaderEffect user;
    gfx.LoadEffect(&user, "shaded.fx", false, 0, true);
    for (int32_t stage = 0; stage < 8; ++stage)
        gfx.SetTextureTransformFlags(stage, D3DTTFF_COUNT2);
    user.needsStageIndices = false;
    Calls();
    gfx.PrepareEffect(user, nullptr, -1);
    std::vector<std::string> calls;
    for (const char* stage : {"0", "1", "2", "3"})
        calls.push_back(std::string("SetTextureStageState ") + stage +
                        " D3DTSS_TEXTURETRANSFORMFLAGS D3DTTFF_DISABLE");
    EXPECT_EQ(Calls(), calls);
}

// ---- Drawing

TEST_F(KRE_EffectFeedingTest, ListIsDrawnInEachPass)
{
    ScriptedEffect twice(recorder);
    twice.AddTechnique({{}, {}});
    scratch.Write("twice.fx", "text");
    script.effects["twice.fx"] = &twice;
    KRE_ShaderEffect user;
    gfx.LoadEffect(&user, "twice.fx", false, 0, true);
    gfx.sceneEffect = &user;
    KRE_VertexListTemp<KRE_PointVertex> list;
    gfx.CreateVertexList(&list, 6, -1, 1);
    Calls();
    const auto passes = [&] {
        EXPECT_EQ(RaisedBy([&] { gfx.DrawTriangleList(list, nullptr, 2); }), "no error");
        std::vector<std::string> calls = Calls();
        const auto begin = std::find(calls.begin(), calls.end(), "Begin 0");
        return std::vector<std::string>(begin, calls.end());
    };
    EXPECT_THAT(passes(),
                ElementsAre("Begin 0", "BeginPass 0", "DrawPrimitive D3DPT_TRIANGLELIST 0 2",
                            "EndPass", "BeginPass 1", "DrawPrimitive D3DPT_TRIANGLELIST 0 2",
                            "EndPass", "End"));
    gfx.drawDisabled = 1;
    EXPECT_THAT(passes(),
                ElementsAre("Begin 0", "BeginPass 0", "EndPass", "BeginPass 1", "EndPass", "End"))
        << "effects go on where drawing is switched off";
}

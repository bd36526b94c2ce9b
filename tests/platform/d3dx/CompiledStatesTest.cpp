// The states that a pass of a compiled effect sets.

#include "tests/platform/d3dx/CompiledEffectFixture.h"

#include <gmock/gmock.h>

#include <bit>
#include <functional>

using testing::ElementsAre;
using Typed = EffectFile::Typed;

namespace {

class CompiledStates : public CompiledEffectFixture {
protected:
    Typed Word(uint32_t bits)
    {
        return {file.Put(file.NumberType(D3DXPT_INT, D3DXPC_SCALAR, "", 1, 1)), file.Put({bits})};
    }
};

/// Operations in the order of their numbers, from 0 on.
constexpr D3DRENDERSTATETYPE kRenderStates[] = {D3DRS_ZENABLE,
                                                D3DRS_FILLMODE,
                                                D3DRS_SHADEMODE,
                                                D3DRS_ZWRITEENABLE,
                                                D3DRS_ALPHATESTENABLE,
                                                D3DRS_LASTPIXEL,
                                                D3DRS_SRCBLEND,
                                                D3DRS_DESTBLEND,
                                                D3DRS_CULLMODE,
                                                D3DRS_ZFUNC,
                                                D3DRS_ALPHAREF,
                                                D3DRS_ALPHAFUNC,
                                                D3DRS_DITHERENABLE,
                                                D3DRS_ALPHABLENDENABLE,
                                                D3DRS_FOGENABLE,
                                                D3DRS_SPECULARENABLE,
                                                D3DRS_FOGCOLOR,
                                                D3DRS_FOGTABLEMODE,
                                                D3DRS_FOGSTART,
                                                D3DRS_FOGEND,
                                                D3DRS_FOGDENSITY,
                                                D3DRS_RANGEFOGENABLE,
                                                D3DRS_STENCILENABLE,
                                                D3DRS_STENCILFAIL,
                                                D3DRS_STENCILZFAIL,
                                                D3DRS_STENCILPASS,
                                                D3DRS_STENCILFUNC,
                                                D3DRS_STENCILREF,
                                                D3DRS_STENCILMASK,
                                                D3DRS_STENCILWRITEMASK,
                                                D3DRS_TEXTUREFACTOR,
                                                D3DRS_WRAP0,
                                                D3DRS_WRAP1,
                                                D3DRS_WRAP2,
                                                D3DRS_WRAP3,
                                                D3DRS_WRAP4,
                                                D3DRS_WRAP5,
                                                D3DRS_WRAP6,
                                                D3DRS_WRAP7,
                                                D3DRS_WRAP8,
                                                D3DRS_WRAP9,
                                                D3DRS_WRAP10,
                                                D3DRS_WRAP11,
                                                D3DRS_WRAP12,
                                                D3DRS_WRAP13,
                                                D3DRS_WRAP14,
                                                D3DRS_WRAP15,
                                                D3DRS_CLIPPING,
                                                D3DRS_LIGHTING,
                                                D3DRS_AMBIENT,
                                                D3DRS_FOGVERTEXMODE,
                                                D3DRS_COLORVERTEX,
                                                D3DRS_LOCALVIEWER,
                                                D3DRS_NORMALIZENORMALS,
                                                D3DRS_DIFFUSEMATERIALSOURCE,
                                                D3DRS_SPECULARMATERIALSOURCE,
                                                D3DRS_AMBIENTMATERIALSOURCE,
                                                D3DRS_EMISSIVEMATERIALSOURCE,
                                                D3DRS_VERTEXBLEND,
                                                D3DRS_CLIPPLANEENABLE,
                                                D3DRS_POINTSIZE,
                                                D3DRS_POINTSIZE_MIN,
                                                D3DRS_POINTSIZE_MAX,
                                                D3DRS_POINTSPRITEENABLE,
                                                D3DRS_POINTSCALEENABLE,
                                                D3DRS_POINTSCALE_A,
                                                D3DRS_POINTSCALE_B,
                                                D3DRS_POINTSCALE_C,
                                                D3DRS_MULTISAMPLEANTIALIAS,
                                                D3DRS_MULTISAMPLEMASK,
                                                D3DRS_PATCHEDGESTYLE,
                                                D3DRS_DEBUGMONITORTOKEN,
                                                D3DRS_INDEXEDVERTEXBLENDENABLE,
                                                D3DRS_COLORWRITEENABLE,
                                                D3DRS_TWEENFACTOR,
                                                D3DRS_BLENDOP,
                                                D3DRS_POSITIONDEGREE,
                                                D3DRS_NORMALDEGREE,
                                                D3DRS_SCISSORTESTENABLE,
                                                D3DRS_SLOPESCALEDEPTHBIAS,
                                                D3DRS_ANTIALIASEDLINEENABLE,
                                                D3DRS_MINTESSELLATIONLEVEL,
                                                D3DRS_MAXTESSELLATIONLEVEL,
                                                D3DRS_ADAPTIVETESS_X,
                                                D3DRS_ADAPTIVETESS_Y,
                                                D3DRS_ADAPTIVETESS_Z,
                                                D3DRS_ADAPTIVETESS_W,
                                                D3DRS_ENABLEADAPTIVETESSELLATION,
                                                D3DRS_TWOSIDEDSTENCILMODE,
                                                D3DRS_CCW_STENCILFAIL,
                                                D3DRS_CCW_STENCILZFAIL,
                                                D3DRS_CCW_STENCILPASS,
                                                D3DRS_CCW_STENCILFUNC,
                                                D3DRS_COLORWRITEENABLE1,
                                                D3DRS_COLORWRITEENABLE2,
                                                D3DRS_COLORWRITEENABLE3,
                                                D3DRS_BLENDFACTOR,
                                                D3DRS_SRGBWRITEENABLE,
                                                D3DRS_DEPTHBIAS,
                                                D3DRS_SEPARATEALPHABLENDENABLE,
                                                D3DRS_SRCBLENDALPHA,
                                                D3DRS_DESTBLENDALPHA,
                                                D3DRS_BLENDOPALPHA};

constexpr D3DTEXTURESTAGESTATETYPE kStageStates[] = {D3DTSS_COLOROP,
                                                     D3DTSS_COLORARG0,
                                                     D3DTSS_COLORARG1,
                                                     D3DTSS_COLORARG2,
                                                     D3DTSS_ALPHAOP,
                                                     D3DTSS_ALPHAARG0,
                                                     D3DTSS_ALPHAARG1,
                                                     D3DTSS_ALPHAARG2,
                                                     D3DTSS_RESULTARG,
                                                     D3DTSS_BUMPENVMAT00,
                                                     D3DTSS_BUMPENVMAT01,
                                                     D3DTSS_BUMPENVMAT10,
                                                     D3DTSS_BUMPENVMAT11,
                                                     D3DTSS_TEXCOORDINDEX,
                                                     D3DTSS_BUMPENVLSCALE,
                                                     D3DTSS_BUMPENVLOFFSET,
                                                     D3DTSS_TEXTURETRANSFORMFLAGS,
                                                     D3DTSS_CONSTANT};
constexpr uint32_t kFirstStageState = 0x67;

constexpr D3DSAMPLERSTATETYPE kSamplerStates[] = {
    D3DSAMP_ADDRESSU,    D3DSAMP_ADDRESSV,      D3DSAMP_ADDRESSW,    D3DSAMP_BORDERCOLOR,
    D3DSAMP_MAGFILTER,   D3DSAMP_MINFILTER,     D3DSAMP_MIPFILTER,   D3DSAMP_MIPMAPLODBIAS,
    D3DSAMP_MAXMIPLEVEL, D3DSAMP_MAXANISOTROPY, D3DSAMP_SRGBTEXTURE, D3DSAMP_ELEMENTINDEX,
    D3DSAMP_DMAPOFFSET};
constexpr uint32_t kTexture = 0xA4, kFirstSamplerState = 0xA5;

} // namespace

TEST_F(CompiledStates, EveryRenderStateHasItsNumber)
{
    std::vector<EffectFile::State> states;
    for (uint32_t i = 0; i < std::size(kRenderStates); ++i)
        states.push_back({i, 0, Word(1)});
    for (const D3DRENDERSTATETYPE state : kRenderStates)
        device->SetRenderState(state, 2);
    AddPass(states);
    ASSERT_TRUE(Load());
    BeginPass();
    for (uint32_t i = 0; i < std::size(kRenderStates); ++i)
        EXPECT_EQ(Render(kRenderStates[i]), 1u) << "operation " << i;
    EndPass();
}

/// One at a time, so that no two can be exchanged.
TEST_F(CompiledStates, NoTwoRenderStatesAreExchanged)
{
    for (uint32_t i = 0; i < std::size(kRenderStates); i += 3) {
        for (const D3DRENDERSTATETYPE state : kRenderStates)
            device->SetRenderState(state, 2);
        file = {};
        AddPass({{i, 0, Word(1)}});
        ASSERT_TRUE(Load());
        BeginPass();
        for (uint32_t other = 0; other < std::size(kRenderStates); ++other)
            EXPECT_EQ(Render(kRenderStates[other]), other == i ? 1u : 2u) << i << " " << other;
        EndPass();
    }
}

TEST_F(CompiledStates, EveryStageStateHasItsNumber)
{
    std::vector<EffectFile::State> states;
    for (uint32_t i = 0; i < std::size(kStageStates); ++i)
        states.push_back({kFirstStageState + i, 3, Word(i + 1)});
    AddPass(states);
    ASSERT_TRUE(Load());
    BeginPass();
    for (uint32_t i = 0; i < std::size(kStageStates); ++i)
        EXPECT_EQ(Stage(3, kStageStates[i]), i + 1) << "operation " << kFirstStageState + i;
    EndPass();
}

TEST_F(CompiledStates, SamplersSetTheirStatesAndTheirTexture)
{
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    const Typed map = file.Object(D3DXPT_TEXTURE, "map");
    file.AddContent(file.lastObject, "");
    file.AddParameter(map);
    EffectFile::Words value = {1 + static_cast<uint32_t>(std::size(kSamplerStates))};
    const Typed none = file.Object(D3DXPT_TEXTURE, "");
    value.insert(value.end(), {kTexture, 0, none.type, none.value});
    for (uint32_t i = 0; i < std::size(kSamplerStates); ++i) {
        const Typed word = Word(i % 3 + 1);
        value.insert(value.end(), {kFirstSamplerState + i, 0, word.type, word.value});
    }
    file.AddParameter({file.Put(file.ObjectType(D3DXPT_SAMPLER2D, "look")), file.Put(value)});
    file.AddResource({EffectFile::kNone, 1, EffectFile::kNone, 0, EffectFile::kReference},
                     std::string("map\0", 4));
    const EffectFile::Words table =
        ConstantTableWords({{"look", 3, 2, 1, D3DXPC_OBJECT, D3DXPT_SAMPLER2D, 1, 1, 1, {}}});
    AddPass({{0x93, 0, file.Object(D3DXPT_PIXELSHADER, "")}});
    file.AddResource({0, 0, EffectFile::kNone, 0, EffectFile::kCode},
                     ShaderBytes(PlainPixelShader(), ProgramComment("CTAB", table)));
    ASSERT_TRUE(Load());
    ASSERT_EQ(effect->SetTexture("map", texture.Get()), D3D_OK);
    BeginPass();
    for (uint32_t i = 0; i < std::size(kSamplerStates); ++i)
        EXPECT_EQ(Sampler(2, kSamplerStates[i]), i % 3 + 1)
            << "operation " << kFirstSamplerState + i;
    Com<IDirect3DBaseTexture9> bound;
    ASSERT_EQ(device->GetTexture(2, bound.Out()), D3D_OK);
    EXPECT_EQ(bound.Get(), texture.Get());
    EndPass();
}

TEST_F(CompiledStates, TransformsTheMaterialAndLights)
{
    std::vector<float> matrix;
    for (int i = 0; i < 16; ++i)
        matrix.push_back(static_cast<float>(i + 1));
    AddPass({{0x7B, 0, file.Matrix("", matrix)},                   // projection
             {0x7C, 0, file.Matrix("", matrix)},                   // view
             {0x7E, 2, file.Matrix("", matrix)},                   // texture 2
             {0x7F, 0, file.Floats("", {0.1f, 0.2f, 0.3f, 0.4f})}, // diffuse
             {0x83, 0, file.Float("", 12.0f)},                     // power
             {0x84, 1, Word(D3DLIGHT_SPOT)},
             {0x85, 1, file.Floats("", {0.5f, 0.6f, 0.7f, 0.8f})},
             {0x88, 1, file.Floats("", {1.0f, 2.0f, 3.0f})}, // position
             {0x8A, 1, file.Float("", 77.0f)},               // range
             {0x90, 1, file.Float("", 0.75f)},               // phi
             {0x91, 1, Word(1)}});
    ASSERT_TRUE(Load());
    BeginPass();
    for (const D3DTRANSFORMSTATETYPE type : {D3DTS_PROJECTION, D3DTS_VIEW, D3DTS_TEXTURE2}) {
        D3DMATRIX set = {};
        device->GetTransform(type, &set);
        EXPECT_EQ(set._12, 2.0f) << type;
        EXPECT_EQ(set._44, 16.0f) << type;
    }
    D3DMATERIAL9 material = {};
    device->GetMaterial(&material);
    EXPECT_EQ(material.Diffuse.b, 0.3f);
    EXPECT_EQ(material.Power, 12.0f);
    D3DLIGHT9 light = {};
    ASSERT_EQ(device->GetLight(1, &light), D3D_OK);
    EXPECT_EQ(light.Type, D3DLIGHT_SPOT);
    EXPECT_EQ(light.Diffuse.g, 0.6f);
    EXPECT_EQ(light.Position.z, 3.0f);
    EXPECT_EQ(light.Range, 77.0f);
    EXPECT_EQ(light.Phi, 0.75f);
    BOOL isOn = FALSE;
    device->GetLightEnable(1, &isOn);
    EXPECT_TRUE(isOn);
    EndPass();
}

TEST_F(CompiledStates, ConstantsOfShadersSetByStates)
{
    AddPass({{0x94, 3, file.Floats("", {1.0f, 2.0f, 3.0f, 4.0f})},   // VertexShaderConstantF
             {0x9C, 5, file.Floats("", {5.0f, 6.0f, 7.0f, 8.0f})}}); // PixelShaderConstantF
    ASSERT_TRUE(Load());
    BeginPass();
    EXPECT_THAT(VertexFloats(3, 1), ElementsAre(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_THAT(PixelFloats(5, 1), ElementsAre(5.0f, 6.0f, 7.0f, 8.0f));
    EndPass();
}

TEST_F(CompiledStates, StateFollowsTheParameterThatItNames)
{
    file.AddParameter(file.Int("cull", D3DCULL_CW));
    AddPass({{0x08, 0, Word(0)}});
    file.AddResource({0, 0, EffectFile::kNone, 0, EffectFile::kReference},
                     std::string("cull\0", 5));
    ASSERT_TRUE(Load());
    BeginPass();
    EXPECT_EQ(Render(D3DRS_CULLMODE), DWORD{D3DCULL_CW});
    ASSERT_EQ(effect->SetInt("cull", D3DCULL_NONE), D3D_OK);
    ASSERT_EQ(effect->CommitChanges(), D3D_OK);
    EXPECT_EQ(Render(D3DRS_CULLMODE), DWORD{D3DCULL_NONE});
    EndPass();
}

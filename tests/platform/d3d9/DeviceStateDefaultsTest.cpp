#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <bit>

// The defaults come from the public reference of `D3DRENDERSTATETYPE`, `D3DTEXTURESTAGESTATETYPE`
// and `D3DSAMPLERSTATETYPE`.

namespace {

using DeviceStateDefaultsTest = DeviceTest;

DWORD BitsOfDefault(float value)
{
    return std::bit_cast<DWORD>(value);
}

} // namespace

TEST_F(DeviceStateDefaultsTest, RenderStatesBeginAtTheirPublishedValues)
{
    static const struct {
        const char* name;
        D3DRENDERSTATETYPE state;
        DWORD value;
    } cases[] = {
        {"ZENABLE with a depth buffer", D3DRS_ZENABLE, D3DZB_TRUE},
        {"FILLMODE", D3DRS_FILLMODE, D3DFILL_SOLID},
        {"SHADEMODE", D3DRS_SHADEMODE, D3DSHADE_GOURAUD},
        {"ZWRITEENABLE", D3DRS_ZWRITEENABLE, TRUE},
        {"ALPHATESTENABLE", D3DRS_ALPHATESTENABLE, FALSE},
        {"LASTPIXEL", D3DRS_LASTPIXEL, TRUE},
        {"SRCBLEND", D3DRS_SRCBLEND, D3DBLEND_ONE},
        {"DESTBLEND", D3DRS_DESTBLEND, D3DBLEND_ZERO},
        {"CULLMODE", D3DRS_CULLMODE, D3DCULL_CCW},
        {"ZFUNC", D3DRS_ZFUNC, D3DCMP_LESSEQUAL},
        {"ALPHAREF", D3DRS_ALPHAREF, 0},
        {"ALPHAFUNC", D3DRS_ALPHAFUNC, D3DCMP_ALWAYS},
        {"DITHERENABLE", D3DRS_DITHERENABLE, FALSE},
        {"ALPHABLENDENABLE", D3DRS_ALPHABLENDENABLE, FALSE},
        {"FOGENABLE", D3DRS_FOGENABLE, FALSE},
        {"SPECULARENABLE", D3DRS_SPECULARENABLE, FALSE},
        {"FOGCOLOR", D3DRS_FOGCOLOR, 0},
        {"FOGTABLEMODE", D3DRS_FOGTABLEMODE, D3DFOG_NONE},
        {"FOGSTART", D3DRS_FOGSTART, BitsOfDefault(0.0f)},
        {"FOGEND", D3DRS_FOGEND, BitsOfDefault(1.0f)},
        {"FOGDENSITY", D3DRS_FOGDENSITY, BitsOfDefault(1.0f)},
        {"RANGEFOGENABLE", D3DRS_RANGEFOGENABLE, FALSE},
        {"STENCILENABLE", D3DRS_STENCILENABLE, FALSE},
        {"STENCILFUNC", D3DRS_STENCILFUNC, D3DCMP_ALWAYS},
        {"STENCILMASK", D3DRS_STENCILMASK, 0xFFFFFFFF},
        {"TEXTUREFACTOR", D3DRS_TEXTUREFACTOR, 0xFFFFFFFF},
        {"CLIPPING", D3DRS_CLIPPING, TRUE},
        {"LIGHTING", D3DRS_LIGHTING, TRUE},
        {"AMBIENT", D3DRS_AMBIENT, 0},
        {"FOGVERTEXMODE", D3DRS_FOGVERTEXMODE, D3DFOG_NONE},
        {"COLORVERTEX", D3DRS_COLORVERTEX, TRUE},
        {"LOCALVIEWER", D3DRS_LOCALVIEWER, TRUE},
        {"NORMALIZENORMALS", D3DRS_NORMALIZENORMALS, FALSE},
        {"DIFFUSEMATERIALSOURCE", D3DRS_DIFFUSEMATERIALSOURCE, D3DMCS_COLOR1},
        {"SPECULARMATERIALSOURCE", D3DRS_SPECULARMATERIALSOURCE, D3DMCS_COLOR2},
        {"AMBIENTMATERIALSOURCE", D3DRS_AMBIENTMATERIALSOURCE, D3DMCS_MATERIAL},
        {"EMISSIVEMATERIALSOURCE", D3DRS_EMISSIVEMATERIALSOURCE, D3DMCS_MATERIAL},
        {"VERTEXBLEND", D3DRS_VERTEXBLEND, D3DVBF_DISABLE},
        {"CLIPPLANEENABLE", D3DRS_CLIPPLANEENABLE, 0},
        {"POINTSIZE", D3DRS_POINTSIZE, BitsOfDefault(1.0f)},
        {"POINTSIZE_MIN", D3DRS_POINTSIZE_MIN, BitsOfDefault(1.0f)},
        {"POINTSPRITEENABLE", D3DRS_POINTSPRITEENABLE, FALSE},
        {"POINTSCALEENABLE", D3DRS_POINTSCALEENABLE, FALSE},
        {"POINTSCALE_A", D3DRS_POINTSCALE_A, BitsOfDefault(1.0f)},
        {"POINTSCALE_B", D3DRS_POINTSCALE_B, BitsOfDefault(0.0f)},
        {"POINTSCALE_C", D3DRS_POINTSCALE_C, BitsOfDefault(0.0f)},
        {"INDEXEDVERTEXBLENDENABLE", D3DRS_INDEXEDVERTEXBLENDENABLE, FALSE},
        {"COLORWRITEENABLE", D3DRS_COLORWRITEENABLE, 0xF},
        {"BLENDOP", D3DRS_BLENDOP, D3DBLENDOP_ADD},
        {"SCISSORTESTENABLE", D3DRS_SCISSORTESTENABLE, FALSE},
        {"DEPTHBIAS", D3DRS_DEPTHBIAS, BitsOfDefault(0.0f)},
        {"SLOPESCALEDEPTHBIAS", D3DRS_SLOPESCALEDEPTHBIAS, BitsOfDefault(0.0f)},
        {"SEPARATEALPHABLENDENABLE", D3DRS_SEPARATEALPHABLENDENABLE, FALSE},
    };
    for (const auto& c : cases) {
        DWORD value = ~c.value;
        EXPECT_EQ(device->GetRenderState(c.state, &value), D3D_OK) << c.name;
        EXPECT_EQ(value, c.value) << c.name;
    }
}

TEST_F(DeviceStateDefaultsTest, StageStatesBeginAtTheirPublishedValues)
{
    static const struct {
        const char* name;
        D3DTEXTURESTAGESTATETYPE type;
        DWORD first; ///< on stage 0
        DWORD later; ///< on the others
    } cases[] = {
        {"COLOROP", D3DTSS_COLOROP, D3DTOP_MODULATE, D3DTOP_DISABLE},
        {"COLORARG1", D3DTSS_COLORARG1, D3DTA_TEXTURE, D3DTA_TEXTURE},
        {"COLORARG2", D3DTSS_COLORARG2, D3DTA_CURRENT, D3DTA_CURRENT},
        {"ALPHAOP", D3DTSS_ALPHAOP, D3DTOP_SELECTARG1, D3DTOP_DISABLE},
        {"ALPHAARG1", D3DTSS_ALPHAARG1, D3DTA_TEXTURE, D3DTA_TEXTURE},
        {"ALPHAARG2", D3DTSS_ALPHAARG2, D3DTA_CURRENT, D3DTA_CURRENT},
        {"TEXTURETRANSFORMFLAGS", D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_DISABLE, D3DTTFF_DISABLE},
        {"COLORARG0", D3DTSS_COLORARG0, D3DTA_CURRENT, D3DTA_CURRENT},
        {"ALPHAARG0", D3DTSS_ALPHAARG0, D3DTA_CURRENT, D3DTA_CURRENT},
        {"RESULTARG", D3DTSS_RESULTARG, D3DTA_CURRENT, D3DTA_CURRENT},
    };
    for (DWORD stage = 0; stage < 8; ++stage) {
        DWORD value = 0;
        for (const auto& c : cases) {
            EXPECT_EQ(device->GetTextureStageState(stage, c.type, &value), D3D_OK);
            EXPECT_EQ(value, stage == 0 ? c.first : c.later) << c.name << " on " << stage;
        }
        EXPECT_EQ(device->GetTextureStageState(stage, D3DTSS_TEXCOORDINDEX, &value), D3D_OK);
        EXPECT_EQ(value, stage) << "each stage takes its own texture coordinates";
    }
}

TEST_F(DeviceStateDefaultsTest, SamplerStatesBeginAtTheirPublishedValues)
{
    static const struct {
        const char* name;
        D3DSAMPLERSTATETYPE type;
        DWORD value;
    } cases[] = {
        {"ADDRESSU", D3DSAMP_ADDRESSU, D3DTADDRESS_WRAP},
        {"ADDRESSV", D3DSAMP_ADDRESSV, D3DTADDRESS_WRAP},
        {"ADDRESSW", D3DSAMP_ADDRESSW, D3DTADDRESS_WRAP},
        {"BORDERCOLOR", D3DSAMP_BORDERCOLOR, 0},
        {"MAGFILTER", D3DSAMP_MAGFILTER, D3DTEXF_POINT},
        {"MINFILTER", D3DSAMP_MINFILTER, D3DTEXF_POINT},
        {"MIPFILTER", D3DSAMP_MIPFILTER, D3DTEXF_NONE},
        {"MIPMAPLODBIAS", D3DSAMP_MIPMAPLODBIAS, BitsOfDefault(0.0f)},
        {"MAXMIPLEVEL", D3DSAMP_MAXMIPLEVEL, 0},
        {"MAXANISOTROPY", D3DSAMP_MAXANISOTROPY, 1},
    };
    for (const DWORD sampler : {0u, 7u, 15u})
        for (const auto& c : cases) {
            DWORD value = ~c.value;
            EXPECT_EQ(device->GetSamplerState(sampler, c.type, &value), D3D_OK);
            EXPECT_EQ(value, c.value) << c.name << " on " << sampler;
        }
}

TEST_F(DeviceStateDefaultsTest, TransformsBeginAsIdentity)
{
    for (const D3DTRANSFORMSTATETYPE type :
         {D3DTS_VIEW, D3DTS_PROJECTION, D3DTS_WORLD, D3DTS_WORLDMATRIX(1), D3DTS_WORLDMATRIX(255),
          D3DTS_TEXTURE0, D3DTS_TEXTURE7}) {
        D3DMATRIX matrix = {};
        ASSERT_EQ(device->GetTransform(type, &matrix), D3D_OK) << type;
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column)
                EXPECT_EQ(matrix.m[row][column], row == column ? 1.0f : 0.0f) << type;
    }
}

TEST_F(DeviceStateDefaultsTest, ViewportAndScissorBeginAsTheWholeTarget)
{
    D3DVIEWPORT9 viewport = {};
    ASSERT_EQ(device->GetViewport(&viewport), D3D_OK);
    EXPECT_EQ(viewport.X, 0u);
    EXPECT_EQ(viewport.Y, 0u);
    EXPECT_EQ(viewport.Width, 64u);
    EXPECT_EQ(viewport.Height, 48u);
    EXPECT_EQ(viewport.MinZ, 0.0f);
    EXPECT_EQ(viewport.MaxZ, 1.0f);
    RECT scissor = {};
    ASSERT_EQ(device->GetScissorRect(&scissor), D3D_OK);
    EXPECT_EQ(scissor.left, 0);
    EXPECT_EQ(scissor.right, 64);
    EXPECT_EQ(scissor.bottom, 48);
}

TEST_F(DeviceStateDefaultsTest, NothingIsBoundAtFirst)
{
    for (const DWORD stage : {0u, 7u}) {
        Com<IDirect3DBaseTexture9> texture;
        EXPECT_EQ(device->GetTexture(stage, texture.Out()), D3D_OK);
        EXPECT_FALSE(texture);
    }
    Com<IDirect3DVertexBuffer9> vertices;
    UINT offset = 1, stride = 1;
    EXPECT_EQ(device->GetStreamSource(0, vertices.Out(), &offset, &stride), D3D_OK);
    EXPECT_FALSE(vertices);
    EXPECT_EQ(offset, 0u);
    EXPECT_EQ(stride, 0u);
    Com<IDirect3DIndexBuffer9> indices;
    EXPECT_EQ(device->GetIndices(indices.Out()), D3D_OK);
    EXPECT_FALSE(indices);
    DWORD fvf = 1;
    EXPECT_EQ(device->GetFVF(&fvf), D3D_OK);
    EXPECT_EQ(fvf, 0u);
}

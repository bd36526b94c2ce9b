#include "tests/support/D3DNames.h"

#include "tests/support/CallText.h"

#include <gtest/gtest.h>

// The expected texts follow from the public names and from the IEEE single-precision bits: 0.5 is
// 0x3F000000, 1 is 0x3F800000, 64 is 0x42800000, -2 is 0xC0000000.

TEST(D3DNames, RenderStatesAreWrittenByTheirKind)
{
    static const struct {
        const char* what;
        D3DRENDERSTATETYPE state;
        DWORD value;
        const char *name, *text;
    } cases[] = {
        {"enumeration", D3DRS_ZENABLE, 2, "D3DRS_ZENABLE", "D3DZB_USEW"},
        {"blend factor", D3DRS_DESTBLEND, 6, "D3DRS_DESTBLEND", "D3DBLEND_INVSRCALPHA"},
        {"compare function", D3DRS_ALPHAFUNC, 5, "D3DRS_ALPHAFUNC", "D3DCMP_GREATER"},
        {"culling", D3DRS_CULLMODE, 3, "D3DRS_CULLMODE", "D3DCULL_CCW"},
        {"fog mode", D3DRS_FOGVERTEXMODE, 3, "D3DRS_FOGVERTEXMODE", "D3DFOG_LINEAR"},
        {"vertex blend", D3DRS_VERTEXBLEND, 256, "D3DRS_VERTEXBLEND", "D3DVBF_0WEIGHTS"},
        {"boolean", D3DRS_LIGHTING, 1, "D3DRS_LIGHTING", "1"},
        {"number", D3DRS_ALPHAREF, 128, "D3DRS_ALPHAREF", "128"},
        {"float", D3DRS_FOGSTART, 0x3F000000, "D3DRS_FOGSTART", "0.5"},
        {"float", D3DRS_POINTSIZE_MAX, 0x42800000, "D3DRS_POINTSIZE_MAX", "64"},
        {"negative float", D3DRS_DEPTHBIAS, 0xC0000000, "D3DRS_DEPTHBIAS", "-2"},
        {"colour", D3DRS_TEXTUREFACTOR, 0x00ABCDEF, "D3DRS_TEXTUREFACTOR", "0x00ABCDEF"},
        {"mask", D3DRS_COLORWRITEENABLE, 15, "D3DRS_COLORWRITEENABLE", "0xF"},
        {"value without a name", D3DRS_CULLMODE, 9, "D3DRS_CULLMODE", "9"},
        {"state without a name", static_cast<D3DRENDERSTATETYPE>(5), 3, "5", "3"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(RenderStateName(c.state), c.name) << c.what;
        EXPECT_EQ(RenderStateValue(c.state, c.value), c.text) << c.what;
    }
}

TEST(D3DNames, StageStatesAreWrittenByTheirKind)
{
    static const struct {
        const char* what;
        D3DTEXTURESTAGESTATETYPE type;
        DWORD value;
        const char *name, *text;
    } cases[] = {
        {"operation", D3DTSS_COLOROP, 4, "D3DTSS_COLOROP", "D3DTOP_MODULATE"},
        {"argument", D3DTSS_COLORARG1, 2, "D3DTSS_COLORARG1", "D3DTA_TEXTURE"},
        {"argument 0 has a name", D3DTSS_ALPHAARG2, 0, "D3DTSS_ALPHAARG2", "D3DTA_DIFFUSE"},
        {"changed argument", D3DTSS_COLORARG2, 0x13, "D3DTSS_COLORARG2",
         "D3DTA_TFACTOR|D3DTA_COMPLEMENT"},
        {"coordinate set", D3DTSS_TEXCOORDINDEX, 1, "D3DTSS_TEXCOORDINDEX", "1"},
        {"made coordinates", D3DTSS_TEXCOORDINDEX, 0x30002, "D3DTSS_TEXCOORDINDEX",
         "2|D3DTSS_TCI_CAMERASPACEREFLECTIONVECTOR"},
        {"transform flags", D3DTSS_TEXTURETRANSFORMFLAGS, 3, "D3DTSS_TEXTURETRANSFORMFLAGS",
         "D3DTTFF_COUNT3"},
        {"projected", D3DTSS_TEXTURETRANSFORMFLAGS, 0x104, "D3DTSS_TEXTURETRANSFORMFLAGS",
         "D3DTTFF_COUNT4|D3DTTFF_PROJECTED"},
        {"float", D3DTSS_BUMPENVMAT00, 0x3F800000, "D3DTSS_BUMPENVMAT00", "1"},
        {"colour", D3DTSS_CONSTANT, 0xFF000001, "D3DTSS_CONSTANT", "0xFF000001"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(TextureStageStateName(c.type), c.name) << c.what;
        EXPECT_EQ(TextureStageStateValue(c.type, c.value), c.text) << c.what;
    }
}

TEST(D3DNames, SamplerStatesAreWrittenByTheirKind)
{
    EXPECT_EQ(SamplerStateName(D3DSAMP_MIPMAPLODBIAS), "D3DSAMP_MIPMAPLODBIAS");
    EXPECT_EQ(SamplerStateValue(D3DSAMP_MIPMAPLODBIAS, 0xC0000000), "-2");
    EXPECT_EQ(SamplerStateValue(D3DSAMP_MAGFILTER, 2), "D3DTEXF_LINEAR");
    EXPECT_EQ(SamplerStateValue(D3DSAMP_ADDRESSV, 3), "D3DTADDRESS_CLAMP");
    EXPECT_EQ(SamplerStateValue(D3DSAMP_BORDERCOLOR, 1), "0x00000001");
    EXPECT_EQ(SamplerStateValue(D3DSAMP_MAXANISOTROPY, 16), "16");
}

TEST(D3DNames, WorldMatricesAreWrittenByTheirIndex)
{
    EXPECT_EQ(TransformName(D3DTS_VIEW), "D3DTS_VIEW");
    EXPECT_EQ(TransformName(D3DTS_TEXTURE7), "D3DTS_TEXTURE7");
    EXPECT_EQ(TransformName(D3DTS_WORLD), "D3DTS_WORLDMATRIX(0)");
    EXPECT_EQ(TransformName(D3DTS_WORLDMATRIX(255)), "D3DTS_WORLDMATRIX(255)");
    EXPECT_EQ(TransformName(D3DTS_WORLDMATRIX(256)), "512");
}

TEST(D3DNames, VertexFormatsAreWrittenByTheirParts)
{
    static const struct {
        const char* what;
        DWORD fvf;
        const char* text;
    } cases[] = {
        {"nothing", 0, "0"},
        {"position and colour", 0x42, "D3DFVF_XYZ|D3DFVF_DIFFUSE"},
        {"transformed", 0x1C4, "D3DFVF_XYZRHW|D3DFVF_DIFFUSE|D3DFVF_SPECULAR|D3DFVF_TEX1"},
        {"two sets", 0x212, "D3DFVF_XYZ|D3DFVF_NORMAL|D3DFVF_TEX2"},
        {"weights and indices", 0x1018, "D3DFVF_XYZB2|D3DFVF_NORMAL|D3DFVF_LASTBETA_UBYTE4"},
        {"a set of one coordinate", 0x30102, "D3DFVF_XYZ|D3DFVF_TEX1|0x30000"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FvfFlags(c.fvf), c.text) << c.what;
}

TEST(D3DNames, FlagsEndWithTheBitsThatHaveNoName)
{
    EXPECT_EQ(ClearFlags(0), "0");
    EXPECT_EQ(ClearFlags(7), "D3DCLEAR_TARGET|D3DCLEAR_ZBUFFER|D3DCLEAR_STENCIL");
    EXPECT_EQ(ClearFlags(0x82), "D3DCLEAR_ZBUFFER|0x80");
    EXPECT_EQ(UsageFlags(0x208), "D3DUSAGE_WRITEONLY|D3DUSAGE_DYNAMIC");
    EXPECT_EQ(BehaviorFlags(0x80), "D3DCREATE_MIXED_VERTEXPROCESSING");
}

TEST(D3DNames, FloatsHaveSixDigitsAndTheSameExponentOnEveryHost)
{
    EXPECT_EQ(FloatText(1.0f), "1");
    EXPECT_EQ(FloatText(-0.25f), "-0.25");
    EXPECT_EQ(FloatText(0.7854f), "0.7854");
    EXPECT_EQ(FloatText(10000.0f), "10000");
    EXPECT_EQ(FloatText(1.0f / 3.0f), "0.333333");
    EXPECT_EQ(FloatText(1e10f), "1e+10");
    EXPECT_EQ(FloatText(1e-7f), "1e-07");
}

TEST(D3DNames, FormatsAndIntervalsHaveNames)
{
    EXPECT_EQ(FormatName(D3DFMT_X8R8G8B8), "D3DFMT_X8R8G8B8");
    EXPECT_EQ(FormatName(static_cast<D3DFORMAT>(0x31545844)), "D3DFMT_DXT1"); // "DXT1"
    EXPECT_EQ(FormatName(static_cast<D3DFORMAT>(9999)), "9999");
    EXPECT_EQ(IntervalName(0x80000000), "D3DPRESENT_INTERVAL_IMMEDIATE");
    EXPECT_EQ(IntervalName(77), "77");
}

TEST(CallText, MatricesAreIdentityOrSixteenNumbers)
{
    D3DMATRIX matrix = {};
    for (int i = 0; i < 4; ++i)
        matrix.m[i][i] = 1.0f;
    EXPECT_EQ(MatrixText(&matrix), "identity");
    matrix.m[3][0] = 2.5f;
    EXPECT_EQ(MatrixText(&matrix), "[1 0 0 0 0 1 0 0 0 0 1 0 2.5 0 0 1]");
    EXPECT_EQ(MatrixText(nullptr), "null");
}

TEST(CallText, NullRecordsAreNull)
{
    EXPECT_EQ(MaterialText(nullptr), "null");
    EXPECT_EQ(LightText(nullptr), "null");
    EXPECT_EQ(ViewportText(nullptr), "null");
    EXPECT_EQ(GammaRampText(nullptr), "null");
    EXPECT_EQ(PresentParametersText(nullptr), "null");
    EXPECT_EQ(RectText(nullptr), "null");
    EXPECT_EQ(FloatsText(nullptr, 4), "null");
}

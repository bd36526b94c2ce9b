#include <bit>

#include "tests/platform/headless_effect/EffectTest.h"
#include "tests/support/RecordingDevice.h"

// The effect of passes on the device, read back from it.

namespace {

using FxPassStatesTest = EffectTest;

DWORD BitsOfState(float value)
{
    return std::bit_cast<DWORD>(value);
}

} // namespace

TEST_F(FxPassStatesTest, RenderStatesArriveInEveryNotation)
{
    static const struct {
        const char* text;
        D3DRENDERSTATETYPE state;
        DWORD value;
    } cases[] = {
        {"ZEnable = FALSE;", D3DRS_ZENABLE, D3DZB_FALSE},
        {"zenable = usew;", D3DRS_ZENABLE, D3DZB_USEW},
        {"CullMode = CW;", D3DRS_CULLMODE, D3DCULL_CW},
        {"CullMode = D3DCULL_NONE;", D3DRS_CULLMODE, D3DCULL_NONE},
        {"CullMode = 2;", D3DRS_CULLMODE, D3DCULL_CW},
        {"CullMode = (1 + 1);", D3DRS_CULLMODE, D3DCULL_CW},
        {"CullMode = <mode>;", D3DRS_CULLMODE, 1},
        {"CullMode = mode;", D3DRS_CULLMODE, 1},
        {"CullMode = CCW;", D3DRS_CULLMODE, D3DCULL_CCW}, // the word, not the parameter
        {"CullMode = <CCW>;", D3DRS_CULLMODE, 2},         // the parameter, not the word
        {"SrcBlend = SrcAlpha;", D3DRS_SRCBLEND, D3DBLEND_SRCALPHA},
        {"AlphaBlendEnable = true;", D3DRS_ALPHABLENDENABLE, 1},
        {"AlphaBlendEnable = 5;", D3DRS_ALPHABLENDENABLE, 1},
        {"AlphaFunc = GreaterEqual;", D3DRS_ALPHAFUNC, D3DCMP_GREATEREQUAL},
        {"StencilPass = IncrSat;", D3DRS_STENCILPASS, D3DSTENCILOP_INCRSAT},
        {"BlendOp = RevSubtract;", D3DRS_BLENDOP, D3DBLENDOP_REVSUBTRACT},
        {"FillMode = WireFrame;", D3DRS_FILLMODE, D3DFILL_WIREFRAME},
        {"FogTableMode = EXP2;", D3DRS_FOGTABLEMODE, D3DFOG_EXP2},
        {"FogStart = 2.5;", D3DRS_FOGSTART, 0x40200000},
        {"FogEnd = 2;", D3DRS_FOGEND, 0x40000000},
        {"PointSize = <half2.y>;", D3DRS_POINTSIZE, 0x3F000000},
        {"VertexBlend = 2WEIGHTS;", D3DRS_VERTEXBLEND, D3DVBF_2WEIGHTS},
        {"ColorWriteEnable = RED | ALPHA;", D3DRS_COLORWRITEENABLE, 9},
        {"Wrap3 = U | V;", D3DRS_WRAP3, 3},
        {"ClipPlaneEnable = ClipPlane0 | ClipPlane2;", D3DRS_CLIPPLANEENABLE, 5},
        {"Ambient = 0x80102030;", D3DRS_AMBIENT, 0x80102030},
        {"Ambient = float4(1, 0.5, 0, 0.2);", D3DRS_AMBIENT, 0x33FF8000}, // 127.5 + 0.5 = 0x80
        {"FogColor = float3(0, 0, 1);", D3DRS_FOGCOLOR, 0x000000FF},
        {"FogColor = {1, 0.5, 0, 0.2};", D3DRS_FOGCOLOR, 0x33FF8000},
        {"CullMode = {CW};", D3DRS_CULLMODE, D3DCULL_CW},
        {"FogStart = {half2.y * 5};", D3DRS_FOGSTART, 0x40200000},
        {"TextureFactor = <color * 0.5>;", D3DRS_TEXTUREFACTOR, 0x80800000},
        {"DiffuseMaterialSource = COLOR2;", D3DRS_DIFFUSEMATERIALSOURCE, D3DMCS_COLOR2},
        {"CCW_StencilFail = INVERT;", D3DRS_CCW_STENCILFAIL, D3DSTENCILOP_INVERT},
    };
    for (const auto& c : cases) {
        const Com<ID3DXEffect> effect = Make(
            "int mode = 1; int CCW = 2; float2 half2 = {0, 0.5}; float4 color = {1, 0, 0, 1};\n"
            "technique { pass { " +
            std::string(c.text) + " } }");
        ASSERT_TRUE(effect) << c.text;
        BeginFirstPass(effect.Get());
        EXPECT_EQ(Render(c.state), c.value) << c.text;
        EndPassAndEffect(effect.Get());
    }
}

TEST_F(FxPassStatesTest, StagesAndSamplersArriveAtTheirPlaces)
{
    const Com<ID3DXEffect> effect = Make(
        "int n = 1; texture t; texture list[2]; int which = 1;\n"
        "sampler s = sampler_state { Texture = <t>; MinFilter = LINEAR; AddressU = CLAMP;\n"
        "  MipMapLodBias = -1; BorderColor = float4(1, 1, 1, 1); };\n"
        "technique { pass {\n"
        "  ColorOp[0] = MODULATE2X; ColorArg1[1] = TEXTURE | COMPLEMENT; AlphaArg2[7] = TFACTOR;\n"
        "  TexCoordIndex[n + 1] = 1 | CAMERASPACEPOSITION; BumpEnvMat01[3] = 0.5;\n"
        "  TextureTransformFlags[2] = COUNT3 | PROJECTED; Constant[4] = 0xFF00FF00; ResultArg[1] = TEMP;\n"
        "  Sampler[2] = <s>; Texture[3] = (t); Texture[4] = <list[which]>; Texture[5] = NULL;\n"
        "  MagFilter[15] = ANISOTROPIC; MaxAnisotropy[15] = 4;\n"
        "} }");
    const Com<IDirect3DTexture9> first = Texture(4, 4, 1, D3DPOOL_MANAGED);
    const Com<IDirect3DTexture9> second = Texture(4, 4, 1, D3DPOOL_MANAGED);
    ASSERT_EQ(effect->SetTexture("t", first.Get()), D3D_OK);
    ASSERT_EQ(effect->SetTexture("list[1]", second.Get()), D3D_OK);
    ASSERT_EQ(device->SetTexture(5, second.Get()), D3D_OK);
    BeginFirstPass(effect.Get());
    EXPECT_EQ(Stage(0, D3DTSS_COLOROP), static_cast<DWORD>(D3DTOP_MODULATE2X));
    EXPECT_EQ(Stage(1, D3DTSS_COLORARG1), static_cast<DWORD>(D3DTA_TEXTURE | D3DTA_COMPLEMENT));
    EXPECT_EQ(Stage(7, D3DTSS_ALPHAARG2), static_cast<DWORD>(D3DTA_TFACTOR));
    EXPECT_EQ(Stage(2, D3DTSS_TEXCOORDINDEX), 0x20001u);
    EXPECT_EQ(Stage(3, D3DTSS_BUMPENVMAT01), 0x3F000000u);
    EXPECT_EQ(Stage(2, D3DTSS_TEXTURETRANSFORMFLAGS), 259u);
    EXPECT_EQ(Stage(4, D3DTSS_CONSTANT), 0xFF00FF00u);
    EXPECT_EQ(Stage(1, D3DTSS_RESULTARG), static_cast<DWORD>(D3DTA_TEMP));
    EXPECT_EQ(Sampler(2, D3DSAMP_MINFILTER), static_cast<DWORD>(D3DTEXF_LINEAR));
    EXPECT_EQ(Sampler(2, D3DSAMP_ADDRESSU), static_cast<DWORD>(D3DTADDRESS_CLAMP));
    EXPECT_EQ(Sampler(2, D3DSAMP_MIPMAPLODBIAS), 0xBF800000u);
    EXPECT_EQ(Sampler(2, D3DSAMP_BORDERCOLOR), 0xFFFFFFFFu);
    EXPECT_EQ(Sampler(15, D3DSAMP_MAGFILTER), static_cast<DWORD>(D3DTEXF_ANISOTROPIC));
    EXPECT_EQ(Sampler(15, D3DSAMP_MAXANISOTROPY), 4u);
    EXPECT_EQ(BoundTexture(2), first.Get());
    EXPECT_EQ(BoundTexture(3), first.Get());
    EXPECT_EQ(BoundTexture(4), second.Get());
    EXPECT_EQ(BoundTexture(5), nullptr);
    EndPassAndEffect(effect.Get());
    EXPECT_EQ(BoundTexture(2), nullptr);
    EXPECT_EQ(BoundTexture(5), second.Get());
    EXPECT_EQ(device->SetTexture(5, nullptr), D3D_OK);
}

TEST_F(FxPassStatesTest, TransformsMaterialAndLightsArriveWhole)
{
    const Com<ID3DXEffect> effect = Make(
        "float4x4 m : VIEW = {1,2,3,4, 5,6,7,8, 9,10,11,12, 13,14,15,16}; float time = 0.5;\n"
        "technique { pass {\n"
        "  ViewTransform = <m>; ProjectionTransform = transpose(m); WorldTransform[2] = m * 2;\n"
        "  TextureTransform[1] = float4x4(1,0,0,0, 0,1,0,0, time,0,1,0, 0,0,0,1);\n"
        "  MaterialDiffuse = float4(1, 2, 3, 4); MaterialPower = 8; MaterialEmissive = 0.5;\n"
        "  LightType[1] = POINT; LightPosition[1] = float4(1, 2, 3, 9); LightRange[1] = 100;\n"
        "  LightAttenuation1[1] = 1; LightEnable[1] = TRUE; LightDiffuse[1] = float4(1, 0, 0, 1);\n"
        "  LightDirection[0] = float3(0, 1, 0); FVF = XYZ | NORMAL | TEX1;\n"
        "} }");
    D3DMATERIAL9 before = {};
    before.Ambient = {7, 7, 7, 7};
    ASSERT_EQ(device->SetMaterial(&before), D3D_OK);
    BeginFirstPass(effect.Get());
    EXPECT_EQ(Transform(D3DTS_VIEW)._12, 2.0f);
    EXPECT_EQ(Transform(D3DTS_PROJECTION)._12, 5.0f);
    EXPECT_EQ(Transform(D3DTS_WORLDMATRIX(2))._44, 32.0f);
    EXPECT_EQ(Transform(D3DTS_TEXTURE1)._31, 0.5f);
    D3DMATERIAL9 material = {};
    ASSERT_EQ(device->GetMaterial(&material), D3D_OK);
    EXPECT_EQ(material.Diffuse.a, 4.0f);
    EXPECT_EQ(material.Emissive.g, 0.5f);
    EXPECT_EQ(material.Power, 8.0f);
    EXPECT_EQ(material.Ambient.r, 7.0f) << "what the pass does not name stays";
    D3DLIGHT9 light = {};
    ASSERT_EQ(device->GetLight(1, &light), D3D_OK);
    EXPECT_EQ(light.Type, D3DLIGHT_POINT);
    EXPECT_EQ(light.Position.z, 3.0f);
    EXPECT_EQ(light.Range, 100.0f);
    EXPECT_EQ(light.Attenuation1, 1.0f);
    EXPECT_EQ(light.Diffuse.g, 0.0f);
    ASSERT_EQ(device->GetLight(0, &light), D3D_OK);
    EXPECT_EQ(light.Type, D3DLIGHT_DIRECTIONAL) << "a new light begins as a directional one";
    EXPECT_EQ(light.Direction.y, 1.0f);
    BOOL isOn = FALSE;
    ASSERT_EQ(device->GetLightEnable(1, &isOn), D3D_OK);
    EXPECT_TRUE(isOn);
    DWORD fvf = 0;
    ASSERT_EQ(device->GetFVF(&fvf), D3D_OK);
    EXPECT_EQ(fvf, static_cast<DWORD>(D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1));

    EndPassAndEffect(effect.Get());
    EXPECT_EQ(Transform(D3DTS_VIEW)._12, 0.0f);
    EXPECT_EQ(Transform(D3DTS_WORLDMATRIX(2))._44, 1.0f);
    ASSERT_EQ(device->GetMaterial(&material), D3D_OK);
    EXPECT_EQ(material.Power, 0.0f);
    EXPECT_EQ(material.Ambient.r, 7.0f);
    ASSERT_EQ(device->GetLightEnable(1, &isOn), D3D_OK);
    EXPECT_FALSE(isOn);
    ASSERT_EQ(device->GetFVF(&fvf), D3D_OK);
    EXPECT_EQ(fvf, 0u);
}

TEST_F(FxPassStatesTest, EndRestoresWhatAnyPassChanged)
{
    const Com<ID3DXEffect> effect = Make(
        "technique { pass { CullMode = NONE; } pass { Lighting = FALSE; MinFilter[0] = LINEAR; } }");
    ASSERT_EQ(device->SetRenderState(D3DRS_CULLMODE, D3DCULL_CW), D3D_OK);
    ASSERT_EQ(device->SetRenderState(D3DRS_FOGENABLE, FALSE), D3D_OK);
    BeginFirstPass(effect.Get());
    EXPECT_EQ(effect->EndPass(), D3D_OK);
    EXPECT_EQ(Render(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_NONE)) << "until End";
    ASSERT_EQ(effect->BeginPass(1), D3D_OK);
    EXPECT_EQ(Render(D3DRS_LIGHTING), 0u);
    ASSERT_EQ(device->SetRenderState(D3DRS_FOGENABLE, TRUE), D3D_OK);
    EndPassAndEffect(effect.Get());
    EXPECT_EQ(Render(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_CW));
    EXPECT_EQ(Render(D3DRS_LIGHTING), 1u);
    EXPECT_EQ(Sampler(0, D3DSAMP_MINFILTER), static_cast<DWORD>(D3DTEXF_POINT));
    EXPECT_EQ(Render(D3DRS_FOGENABLE), 1u) << "the caller's own change stays";
}

TEST_F(FxPassStatesTest, StatesExcludedByTheCallerAreNotRestored)
{
    const Com<ID3DXEffect> effect =
        Make("technique { pass { CullMode = NONE; MinFilter[0] = LINEAR; } }");
    BeginFirstPass(effect.Get(), D3DXFX_DONOTSAVESAMPLERSTATE);
    EndPassAndEffect(effect.Get());
    EXPECT_EQ(Render(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_CCW));
    EXPECT_EQ(Sampler(0, D3DSAMP_MINFILTER), static_cast<DWORD>(D3DTEXF_LINEAR));
    BeginFirstPass(effect.Get(), D3DXFX_DONOTSAVESTATE);
    EndPassAndEffect(effect.Get());
    EXPECT_EQ(Render(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_NONE));
}

TEST_F(FxPassStatesTest, ChangesArriveWhenTheyAreCommitted)
{
    const Com<ID3DXEffect> effect =
        Make("float a = 1; texture t; sampler s = sampler_state { Texture = <t>; };\n"
             "technique { pass { FogStart = <a * 2>; CullMode = NONE; Sampler[0] = <s>; } }");
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    BeginFirstPass(effect.Get());
    EXPECT_EQ(Render(D3DRS_FOGSTART), BitsOfState(2.0f));
    ASSERT_EQ(effect->SetFloat("a", 3.0f), D3D_OK);
    ASSERT_EQ(effect->SetTexture("t", texture.Get()), D3D_OK);
    ASSERT_EQ(device->SetRenderState(D3DRS_CULLMODE, D3DCULL_CW), D3D_OK);
    EXPECT_EQ(Render(D3DRS_FOGSTART), BitsOfState(2.0f));
    EXPECT_EQ(effect->CommitChanges(), D3D_OK);
    EXPECT_EQ(Render(D3DRS_FOGSTART), BitsOfState(6.0f));
    EXPECT_EQ(BoundTexture(0), texture.Get());
    EXPECT_EQ(Render(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_CW)) << "it reads nothing new";
    EndPassAndEffect(effect.Get());
    EXPECT_EQ(BoundTexture(0), nullptr);
}

TEST_F(FxPassStatesTest, ADeviceFailureIsReported)
{
    RecordingDevice* const failing = RecordingDevice::Wrap(device.Get()).release();
    *device.Out() = failing; // it holds the other one
    const Com<ID3DXEffect> effect =
        Make("technique { pass { CullMode = NONE; Lighting = FALSE; } }");
    ASSERT_EQ(effect->Begin(nullptr, 0), D3D_OK);
    failing->FailNext("SetRenderState", D3DERR_DRIVERINTERNALERROR);
    EXPECT_EQ(effect->BeginPass(0), D3DERR_DRIVERINTERNALERROR);
    EXPECT_EQ(Render(D3DRS_LIGHTING), 0u) << "the other states are set all the same";
    EndPassAndEffect(effect.Get());
}

TEST_F(FxPassStatesTest, AResetBetweenBeginAndEndRestoresNothing)
{
    const Com<ID3DXEffect> effect =
        Make("technique { pass { CullMode = NONE; Texture[0] = NULL; } }");
    {
        const Com<IDirect3DTexture9> target =
            Texture(4, 4, 1, D3DPOOL_DEFAULT, D3DUSAGE_RENDERTARGET);
        ASSERT_EQ(device->SetTexture(0, target.Get()), D3D_OK);
        BeginFirstPass(effect.Get());
    }
    EXPECT_EQ(effect->OnLostDevice(), D3D_OK);
    ASSERT_EQ(device->Reset(&parameters), D3D_OK);
    EndPassAndEffect(effect.Get());
    EXPECT_EQ(BoundTexture(0), nullptr);
}

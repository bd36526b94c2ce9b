#include "platform/headless/d3d9/TestControl.h"
#include "tests/platform/headless_effect/EffectTest.h"

using namespace headless;

namespace {

using FxEffectTest = EffectTest;

} // namespace

TEST_F(FxEffectTest, ParametersAreDescribedAsDeclared)
{
    const Com<ID3DXEffect> effect = Make(
        "shared float4x4 wvp : WorldViewProjection < string ui = \"none\"; float step = 0.5; >;\n"
        "column_major float3x4 cm; const int n = 3; vector<half, 2> v[3] : LIST;\n"
        "struct s { float3 a : POSITION; texture b; } one; sampler2D q : register(s3);\n"
        "Texture2D big; VertexShader vs = NULL;\n"
        "float f(in float x) : COLOR { return x; } technique t0 { } technique t1 { pass { } }");
    D3DXEFFECT_DESC desc = {};
    ASSERT_EQ(effect->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Parameters, 8u);
    EXPECT_EQ(desc.Techniques, 2u);

    static const struct {
        const char* name;
        const char* semantic;
        D3DXPARAMETER_CLASS kind;
        D3DXPARAMETER_TYPE type;
        UINT rows, columns, elements, annotations, members, bytes;
        DWORD flags;
    } cases[] = {
        {"wvp", "WorldViewProjection", D3DXPC_MATRIX_ROWS, D3DXPT_FLOAT, 4, 4, 0, 2, 0, 64,
         D3DX_PARAMETER_SHARED},
        {"cm", nullptr, D3DXPC_MATRIX_COLUMNS, D3DXPT_FLOAT, 3, 4, 0, 0, 0, 48, 0},
        {"n", nullptr, D3DXPC_SCALAR, D3DXPT_INT, 1, 1, 0, 0, 0, 4, D3DX_PARAMETER_LITERAL},
        {"v", "LIST", D3DXPC_VECTOR, D3DXPT_FLOAT, 1, 2, 3, 0, 0, 24, 0},
        {"one", nullptr, D3DXPC_STRUCT, D3DXPT_VOID, 0, 0, 0, 0, 2, 12 + sizeof(void*), 0},
        {"q", nullptr, D3DXPC_OBJECT, D3DXPT_SAMPLER2D, 0, 0, 0, 0, 0, sizeof(void*), 0},
        {"big", nullptr, D3DXPC_OBJECT, D3DXPT_TEXTURE2D, 0, 0, 0, 0, 0, sizeof(void*), 0},
        {"vs", nullptr, D3DXPC_OBJECT, D3DXPT_VERTEXSHADER, 0, 0, 0, 0, 0, sizeof(void*), 0},
    };
    for (UINT i = 0; i < desc.Parameters; ++i) {
        D3DXPARAMETER_DESC told = {};
        ASSERT_EQ(effect->GetParameterDesc(effect->GetParameter(nullptr, i), &told), D3D_OK);
        const auto& c = cases[i];
        EXPECT_STREQ(told.Name, c.name);
        EXPECT_STREQ(told.Semantic, c.semantic) << c.name;
        EXPECT_EQ(told.Class, c.kind) << c.name;
        EXPECT_EQ(told.Type, c.type) << c.name;
        EXPECT_EQ(told.Rows, c.rows) << c.name;
        EXPECT_EQ(told.Columns, c.columns) << c.name;
        EXPECT_EQ(told.Elements, c.elements) << c.name;
        EXPECT_EQ(told.Annotations, c.annotations) << c.name;
        EXPECT_EQ(told.StructMembers, c.members) << c.name;
        EXPECT_EQ(told.Flags, c.flags) << c.name;
        EXPECT_EQ(told.Bytes, c.bytes) << c.name;
    }
    EXPECT_EQ(effect->GetParameter(nullptr, 8), nullptr);
}

TEST_F(FxEffectTest, HandlesAreFoundByIndexNameAndSemantic)
{
    const Com<ID3DXEffect> effect =
        Make("struct s { float a : ONE; float b[2]; }; s x : TWO; s y[2]; float z : Two;\n"
             "technique q { pass first { } pass second { } }");
    ID3DXEffect& e = *effect.Get();
    const D3DXHANDLE x = e.GetParameterByName(nullptr, "x");
    ASSERT_NE(x, nullptr);
    EXPECT_EQ(e.GetParameter(nullptr, 0), x);
    EXPECT_EQ(e.GetParameterBySemantic(nullptr, "two"), x) << "letter case does not matter";
    EXPECT_EQ(e.GetParameterBySemantic(nullptr, "three"), nullptr);
    EXPECT_EQ(e.GetParameterByName(nullptr, "X"), nullptr) << "in names it does";
    const D3DXHANDLE a = e.GetParameterByName(x, "a");
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(e.GetParameter(x, 0), a);
    EXPECT_EQ(e.GetParameterBySemantic(x, "ONE"), a);
    EXPECT_EQ(e.GetParameterByName(nullptr, "x.a"), a);
    EXPECT_EQ(e.GetParameterElement(e.GetParameter(x, 1), 1),
              e.GetParameterByName(nullptr, "x.b[1]"));
    EXPECT_EQ(e.GetParameterByName(e.GetParameterElement("y", 1), "a"),
              e.GetParameterByName(nullptr, "y[1].a"));
    for (const char* bad : {"y[2]", "y[", "y[]", "y[-1]", "y[1", "x.c", "x.", "", "y.a", "x@a"})
        EXPECT_EQ(e.GetParameterByName(nullptr, bad), nullptr) << bad;

    const D3DXHANDLE technique = e.GetTechniqueByName("q");
    EXPECT_EQ(e.GetTechnique(0), technique);
    EXPECT_EQ(e.GetTechnique(1), nullptr);
    EXPECT_EQ(e.GetPass(technique, 1), e.GetPassByName("q", "second"));
    EXPECT_EQ(e.GetPass(technique, 2), nullptr);
    EXPECT_EQ(e.SetFloat(technique, 1.0f), D3DERR_INVALIDCALL) << "a handle of another kind";
    D3DXPASS_DESC pass = {};
    EXPECT_EQ(e.GetPassDesc(technique, &pass), D3DERR_INVALIDCALL);
    D3DXTECHNIQUE_DESC desc = {};
    ASSERT_EQ(e.GetTechniqueDesc("q", &desc), D3D_OK);
    EXPECT_STREQ(desc.Name, "q");
    EXPECT_EQ(desc.Passes, 2u);
    EXPECT_EQ(e.GetTechniqueDesc(x, &desc), D3DERR_INVALIDCALL);
}

TEST_F(FxEffectTest, EverythingCanHaveAnnotations)
{
    const Com<ID3DXEffect> effect =
        Make("texture t < string ResourceName = \"wall.png\"; int2 size = {3, 4}; >;\n"
             "float x < bool b = true; >= 2;\n" // the closing sign and the equals sign joined
             "technique q < string Script = \"one\"; > {\n"
             "  pass p < string RenderTarget = \"ScreenBuffer1\"; float f = 1 + 1; > { } }");
    ID3DXEffect& e = *effect.Get();
    EXPECT_EQ(StringOf(&e, e.GetAnnotationByName("t", "ResourceName")), "wall.png");
    EXPECT_EQ(e.GetAnnotationByName("t", "resourcename"), nullptr);
    EXPECT_EQ(e.GetAnnotation("t", 1), e.GetAnnotationByName("t", "size"));
    EXPECT_EQ(e.GetAnnotation("t", 2), nullptr);
    EXPECT_EQ(e.GetParameterByName(nullptr, "t@size"), e.GetAnnotation("t", 1));
    EXPECT_EQ(FloatOf(&e, "x"), 2.0f);
    EXPECT_EQ(StringOf(&e, e.GetAnnotationByName(e.GetTechnique(0), "Script")), "one");
    const D3DXHANDLE pass = e.GetPass("q", 0);
    EXPECT_EQ(StringOf(&e, e.GetAnnotationByName(pass, "RenderTarget")), "ScreenBuffer1");
    EXPECT_EQ(FloatOf(&e, e.GetAnnotationByName(pass, "f")), 2.0f);
    D3DXPARAMETER_DESC desc = {};
    ASSERT_EQ(e.GetParameterDesc(e.GetAnnotation("t", 0), &desc), D3D_OK);
    EXPECT_EQ(desc.Flags, static_cast<DWORD>(D3DX_PARAMETER_ANNOTATION));
    D3DXPASS_DESC passDesc = {};
    ASSERT_EQ(e.GetPassDesc(pass, &passDesc), D3D_OK);
    EXPECT_STREQ(passDesc.Name, "p");
    EXPECT_EQ(passDesc.Annotations, 2u);
}

TEST_F(FxEffectTest, ATechniqueWithAShaderBeyondTheLimitsDoesNotValidate)
{
    const Com<ID3DXEffect> effect =
        Make("#define TOO_LONG for (int i = 0; i < 2000; i++) p += p * p; return p;\n"
             "float4 f(float4 p : TEXCOORD) : COLOR { TOO_LONG }\n"
             "float4 g(float4 p : POSITION) : POSITION { TOO_LONG }\n"
             "vertexshader kept = compile vs_1_1 g();\n"
             "technique shader { pass { VertexShader = compile vs_2_0 g(); } }\n"
             "technique pixel { pass { } pass { PixelShader = compile ps_1_4 f(); } }\n"
             "technique code { pass { PixelShader = asm { ps_1_1 mov r0, c0 }; } }\n"
             "technique parameter { pass { VertexShader = <kept>; } }\n"
             "technique constant { pass { VertexShaderConstant[4] = { 1, 2 }; } }\n"
             "technique fixed { pass { VertexShader = NULL; PixelShader = NULL; } }");
    ID3DXEffect& e = *effect.Get();
    static const struct {
        const char* name;
        UINT pass;
        HRESULT valid;
        DWORD vertex, pixel; ///< 0 for none
    } cases[] = {
        {"shader", 0, D3DXERR_INVALIDDATA, D3DVS_VERSION(2, 0), 0},
        {"pixel", 0, D3DXERR_INVALIDDATA, 0, 0},
        {"pixel", 1, D3DXERR_INVALIDDATA, 0, D3DPS_VERSION(1, 4)},
        {"code", 0, D3D_OK, 0, D3DPS_VERSION(1, 1)},
        {"parameter", 0, D3DXERR_INVALIDDATA, D3DVS_VERSION(1, 1), 0},
        {"constant", 0, D3D_OK, 0, 0},
        {"fixed", 0, D3D_OK, 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(e.ValidateTechnique(c.name), c.valid) << c.name;
        D3DXPASS_DESC desc = {};
        ASSERT_EQ(e.GetPassDesc(e.GetPass(c.name, c.pass), &desc), D3D_OK);
        EXPECT_EQ(desc.pVertexShaderFunction ? *desc.pVertexShaderFunction : 0, c.vertex) << c.name;
        EXPECT_EQ(desc.pPixelShaderFunction ? *desc.pPixelShaderFunction : 0, c.pixel) << c.name;
    }
    EXPECT_EQ(e.ValidateTechnique("none"), D3DERR_INVALIDCALL);
    D3DXHANDLE next = nullptr;
    EXPECT_EQ(e.FindNextValidTechnique(nullptr, &next), D3D_OK);
    for (const char* name : {"code", "constant", "fixed"}) {
        EXPECT_EQ(next, e.GetTechniqueByName(name));
        e.FindNextValidTechnique(next, &next);
    }
    EXPECT_EQ(next, nullptr);

    const int before = UnmodelledCallCount("ID3DXEffect::BeginPass");
    ASSERT_EQ(e.SetTechnique("shader"), D3D_OK);
    ASSERT_EQ(e.Begin(nullptr, 0), D3D_OK);
    EXPECT_EQ(e.BeginPass(0), D3DERR_INVALIDCALL);
    EXPECT_EQ(e.End(), D3D_OK);
    EXPECT_EQ(UnmodelledCallCount("ID3DXEffect::BeginPass"), before + 1);
}

TEST_F(FxEffectTest, PassesRunInTheirOrderOnly)
{
    const Com<ID3DXEffect> effect = Make("technique a { pass { } pass { } } technique b { }");
    ID3DXEffect& e = *effect.Get();
    EXPECT_EQ(e.GetCurrentTechnique(), e.GetTechnique(0)) << "the first one, unless another is set";
    EXPECT_EQ(e.BeginPass(0), D3DERR_INVALIDCALL);
    EXPECT_EQ(e.EndPass(), D3DERR_INVALIDCALL);
    EXPECT_EQ(e.End(), D3DERR_INVALIDCALL);
    EXPECT_EQ(e.CommitChanges(), D3DERR_INVALIDCALL);
    UINT passes = 0;
    ASSERT_EQ(e.Begin(&passes, 0), D3D_OK);
    EXPECT_EQ(passes, 2u);
    EXPECT_EQ(e.Begin(&passes, 0), D3DERR_INVALIDCALL);
    EXPECT_EQ(e.SetTechnique("b"), D3DERR_INVALIDCALL);
    EXPECT_EQ(e.BeginPass(2), D3DERR_INVALIDCALL);
    ASSERT_EQ(e.BeginPass(1), D3D_OK);
    EXPECT_EQ(e.BeginPass(0), D3DERR_INVALIDCALL);
    EXPECT_EQ(e.End(), D3DERR_INVALIDCALL);
    EXPECT_EQ(e.EndPass(), D3D_OK);
    EXPECT_EQ(e.End(), D3D_OK);
    ASSERT_EQ(e.SetTechnique("b"), D3D_OK);
    ASSERT_EQ(e.Begin(&passes, 0), D3D_OK);
    EXPECT_EQ(passes, 0u);
    EXPECT_EQ(e.End(), D3D_OK);

    const Com<ID3DXEffect> none = Make("float x;");
    EXPECT_EQ(none->GetCurrentTechnique(), nullptr);
    EXPECT_EQ(none->Begin(&passes, 0), D3DERR_INVALIDCALL);
}

TEST_F(FxEffectTest, WhatIsNotModelledIsRefusedByName)
{
    const Com<ID3DXEffect> effect = Make("float x[4];");
    ID3DXEffect& e = *effect.Get();
    Com<ID3DXEffect> clone;
    const int before = UnmodelledCallCount("ID3DXEffect::CloneEffect");
    EXPECT_EQ(e.CloneEffect(device.Get(), clone.Out()), D3DERR_INVALIDCALL);
    EXPECT_EQ(UnmodelledCallCount("ID3DXEffect::CloneEffect"), before + 1);
    EXPECT_EQ(e.BeginParameterBlock(), D3DERR_INVALIDCALL);
    EXPECT_EQ(e.EndParameterBlock(), nullptr);
    EXPECT_EQ(e.SetArrayRange("x", 0, 2), D3DERR_INVALIDCALL);
    EXPECT_EQ(e.GetFunction(0), nullptr);
    EXPECT_EQ(e.SetStateManager(nullptr), D3D_OK);
    Com<ID3DXEffectStateManager> manager;
    EXPECT_EQ(e.GetStateManager(manager.Out()), D3D_OK);
    EXPECT_FALSE(manager);
}

TEST_F(FxEffectTest, TheEffectHoldsItsDeviceAndPool)
{
    Com<ID3DXEffectPool> pool;
    ASSERT_EQ(D3DXCreateEffectPool(pool.Out()), D3D_OK);
    const ULONG before = ReferenceCount(device.Get());
    {
        const Com<ID3DXEffect> effect = Make("float x;", pool.Get());
        EXPECT_EQ(ReferenceCount(device.Get()), before + 1);
        Com<IDirect3DDevice9> owner;
        ASSERT_EQ(effect->GetDevice(owner.Out()), D3D_OK);
        EXPECT_EQ(owner.Get(), device.Get());
        Com<ID3DXEffectPool> same;
        ASSERT_EQ(effect->GetPool(same.Out()), D3D_OK);
        EXPECT_EQ(same.Get(), pool.Get());
        EXPECT_EQ(ReferenceCount(effect.Get()), 1u);
    }
    EXPECT_EQ(ReferenceCount(device.Get()), before);
    EXPECT_EQ(ReferenceCount(pool.Get()), 1u);
}

TEST_F(FxEffectTest, SharedParametersHaveOneValueInAPool)
{
    Com<ID3DXEffectPool> pool;
    ASSERT_EQ(D3DXCreateEffectPool(pool.Out()), D3D_OK);
    Com<ID3DXEffect> first = Make("shared float x = 1; float y = 1;", pool.Get());
    const Com<ID3DXEffect> second = Make("float y = 2; shared float x = 2;\n"
                                         "technique { pass { FogStart = <x>; } }",
                                         pool.Get());
    const Com<ID3DXEffect> outside = Make("shared float x = 3;");
    EXPECT_EQ(FloatOf(second.Get(), "x"), 1.0f) << "the value that is there stays";
    EXPECT_EQ(FloatOf(outside.Get(), "x"), 3.0f);
    ASSERT_EQ(first->SetFloat("x", 5.0f), D3D_OK);
    ASSERT_EQ(first->SetFloat("y", 6.0f), D3D_OK);
    EXPECT_EQ(FloatOf(second.Get(), "x"), 5.0f);
    EXPECT_EQ(FloatOf(second.Get(), "y"), 2.0f);
    first.Release();
    EXPECT_EQ(FloatOf(second.Get(), "x"), 5.0f) << "the value outlives the effect it came with";

    Com<ID3DXEffect> other;
    Com<ID3DXBuffer> errors;
    const std::string text = "shared float2 x;";
    EXPECT_EQ(D3DXCreateEffect(device.Get(), text.data(), static_cast<UINT>(text.size()), nullptr,
                               nullptr, 0, pool.Get(), other.Out(), errors.Out()),
              D3DXERR_INVALIDDATA);
    ASSERT_TRUE(errors);
    EXPECT_EQ(std::string(static_cast<const char*>(errors->GetBufferPointer())).substr(0, 27),
              "memory(1,15): error X3010: ");
}

TEST_F(FxEffectTest, AnUnusedValueLeavesThePool)
{
    Com<ID3DXEffectPool> pool;
    ASSERT_EQ(D3DXCreateEffectPool(pool.Out()), D3D_OK);
    Make("shared float x = 1;", pool.Get());
    const Com<ID3DXEffect> next = Make("shared float2 x = {2, 3};", pool.Get());
    D3DXVECTOR4 value;
    ASSERT_EQ(next->GetVector("x", &value), D3D_OK);
    EXPECT_EQ(value.y, 3.0f);
}

TEST_F(FxEffectTest, AReadParameterIsUsed)
{
    const Com<ID3DXEffect> effect = Make(
        "float a; float b; texture t; texture u; int i;\n"
        "sampler s[2] = { sampler_state { Texture = <t>; }, sampler_state { MaxMipLevel = <i>; } };\n"
        "technique q { pass { FogStart = 2 * a; Sampler[0] = <s[1]>; } }\n"
        "technique r { pass { Sampler[0] = <s[(int)b]>; } }");
    ID3DXEffect& e = *effect.Get();
    EXPECT_TRUE(e.IsParameterUsed("a", "q"));
    EXPECT_FALSE(e.IsParameterUsed("b", "q"));
    EXPECT_TRUE(e.IsParameterUsed("i", "q"));
    EXPECT_FALSE(e.IsParameterUsed("t", "q"));
    EXPECT_TRUE(e.IsParameterUsed("b", "r"));
    EXPECT_TRUE(e.IsParameterUsed("t", "r"));
    EXPECT_FALSE(e.IsParameterUsed("u", "r"));
}

TEST_F(FxEffectTest, ALostDeviceDropsOnlyItsOwnTextures)
{
    const Com<ID3DXEffect> effect = Make("texture a; texture b;");
    Com<IDirect3DTexture9> target = Texture(4, 4, 1, D3DPOOL_DEFAULT, D3DUSAGE_RENDERTARGET);
    const Com<IDirect3DTexture9> managed = Texture(4, 4, 1, D3DPOOL_MANAGED);
    ASSERT_EQ(effect->SetTexture("a", target.Get()), D3D_OK);
    ASSERT_EQ(effect->SetTexture("b", managed.Get()), D3D_OK);
    target.Release();
    EXPECT_EQ(device->Reset(&parameters), D3DERR_INVALIDCALL) << "the effect still holds it";
    EXPECT_EQ(effect->OnLostDevice(), D3D_OK);
    EXPECT_EQ(device->Reset(&parameters), D3D_OK);
    EXPECT_EQ(effect->OnResetDevice(), D3D_OK);
    Com<IDirect3DBaseTexture9> left;
    ASSERT_EQ(effect->GetTexture("a", left.Out()), D3D_OK);
    EXPECT_FALSE(left);
    ASSERT_EQ(effect->GetTexture("b", left.Out()), D3D_OK);
    EXPECT_EQ(left.Get(), managed.Get());
}

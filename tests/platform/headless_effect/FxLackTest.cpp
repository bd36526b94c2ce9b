// An unsupported feature disables the technique that needs it, and nothing else.

#include "tests/platform/headless_effect/EffectTest.h"
#include "tests/support/ScratchDirectory.h"

#include <chrono>

namespace {

/// Effects with two techniques: "lacks", whose first pass or shader this host cannot read, then
/// "works".
class FxLackTest : public EffectTest {
protected:
    /// A text with `declarations` and then a pass of `states`. `MinFilter` is there to show that
    /// the text after the unsupported part is read.
    static std::string Text(const std::string& declarations, const std::string& states)
    {
        return declarations + "\ntechnique lacks { pass { " + states +
               " ZEnable = FALSE; } pass { MinFilter[1] = LINEAR; } }\n"
               "technique works { pass { CullMode = CW; } }\n";
    }
    /// Only the second technique of the effect may be drawable.
    void ExpectLack(const std::string& what, const std::string& text)
    {
        const Com<ID3DXEffect> effect = Make(text);
        ASSERT_TRUE(effect) << what;
        EXPECT_EQ(effect->ValidateTechnique("lacks"), D3DXERR_INVALIDDATA) << what;
        D3DXTECHNIQUE_DESC desc = {};
        ASSERT_EQ(effect->GetTechniqueDesc("lacks", &desc), D3D_OK) << what;
        EXPECT_EQ(desc.Passes, 2u) << what;
        ASSERT_EQ(effect->ValidateTechnique("works"), D3D_OK) << what;
        ASSERT_EQ(effect->SetTechnique("works"), D3D_OK) << what;
        BeginFirstPass(effect.Get());
        EXPECT_EQ(Render(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_CW)) << what;
        EndPassAndEffect(effect.Get());
    }
    /// The host's output while a technique is validated.
    std::string LineOf(ID3DXEffect* effect, const char* technique)
    {
        testing::internal::CaptureStderr();
        effect->ValidateTechnique(technique);
        return testing::internal::GetCapturedStderr();
    }
    Com<ID3DXEffect> MakeFile(const char* path, std::string& lineOut)
    {
        Com<ID3DXEffect> effect;
        Com<ID3DXBuffer> errors;
        testing::internal::CaptureStderr();
        EXPECT_EQ(D3DXCreateEffectFromFileA(device.Get(), path, nullptr, nullptr, 0, nullptr,
                                            effect.Out(), errors.Out()),
                  D3D_OK);
        lineOut = testing::internal::GetCapturedStderr();
        EXPECT_FALSE(errors);
        return effect;
    }
};

} // namespace

TEST_F(FxLackTest, AssemblerThatIsRefusedDisablesItsTechnique)
{
    static const struct {
        const char* what;
        const char* block;
    } cases[] = {
        {"a dotted version", "{ vs.1.1\n mov oPos, v0\n }"},
        {"an extended version", "{ vs_2_sw\n mov oPos, v0\n }"},
        {"an old texture shader", "{ tx_1_0\n mov r0, c0\n }"},
        {"no version", "{ mov oPos, v0 }"},
        {"nothing", "{ }"},
        {"a comment with a bracket",
         "{ vs.1.1 ; the end is not here }\n mov oPos, v0 ; nor { here\n }"},
        {"a comment with a closed block", "{ vs.1.1 ; was asm { mov r0, v0 }\n mov oPos, v0\n }"},
        {"a comment with quotation marks", "{ vs.1.1 ; it's 3\" wide }\n mov oPos, v0\n }"},
        {"comments of the other kinds", "{ vs.1.1 // } \n mov oPos, v0 /* } */\n }"},
        {"signs of no language", "{ vs.1.1 $ @ ` \\ ? \x80 }"},
        {"a block in it", "{ vs.1.1 { mov oPos, v0 } }"},
    };
    for (const auto& c : cases) {
        ExpectLack(c.what, Text("", "VertexShader = asm " + std::string(c.block) + ";"));
        ExpectLack(c.what, Text("", "PixelShader = ASM " + std::string(c.block) + ";"));
        const std::string declared = "vertexshader kept = asm " + std::string(c.block) + ";";
        ExpectLack(c.what, Text(declared, "VertexShader = <kept>;"));
        const std::string listed =
            "pixelshader list[2] = { asm " + std::string(c.block) + ", compile ps_9_9 f() };";
        ExpectLack(c.what, Text(listed, "PixelShader = <list[1]>;"));
    }
}

TEST_F(FxLackTest, ACallThatIsNoneOrOfAnUnknownProfileDisablesItsTechnique)
{
    static const char* const kCalls[] = {
        "compile vs_4_0 f(1)",
        "compile nonsense f(1)",
        "COMPILE vs.1.1 f(1)",
        "compile ps_2_0 f",
        "compile PROFILE f({1, 2})",
        "compile",
        "decl { stream 0; } asm { vs.1.1 }",
    };
    const std::string function = "float4 f(uniform float a) : POSITION { return a; }";
    for (const char* call : kCalls) {
        ExpectLack(call, Text(function, "VertexShader = " + std::string(call) + ";"));
        const std::string declared = function + " pixelshader p = " + std::string(call) + ";";
        ExpectLack(call, Text(declared, "PixelShader = (p);"));
    }
}

TEST_F(FxLackTest, AnUnmodelledStateDisablesItsTechnique)
{
    static const char* const kStates[] = {
        "StateBlock = <kept>;",
        "stateblock = stateblock_state { ZEnable = FALSE; FogEnable = TRUE; };",
        "NPatchMode = 2;",
        "LightType[8] = POINT;",
        "LightEnable[100] = TRUE;",
        "MinFilter[257] = POINT;",
        "Texture[256] = <kept>;",
        "PixelShaderConstant1[0] = { 1, 2, 3, 4, 5 };",
    };
    for (const char* state : kStates)
        ExpectLack(state, Text("", state));
}

TEST_F(FxLackTest, AnUnmodelledTypeDisablesTheTechniquesThatUseIt)
{
    static const struct {
        const char* what;
        const char* declaration; ///< of x
    } cases[] = {
        {"a block of states", "stateblock x = stateblock_state { ZEnable = FALSE; };"},
        {"half a shader", "vertexfragment x = compile_fragment vs_1_1 f();"},
        {"half a shader of assembler", "pixelfragment x = asm_fragment { ps.1.1 ; }\n };"},
        {"an array of arrays", "MATRIX x[2][3] = { {1, 2, 3}, {4, 5, 6} };"},
        {"the same with all around it",
         "shared VECTOR x[2][2] : NAME < string a = \"b;\"; > = { 1, 2, 3, 4 };"},
        {"a capital type", "VECTOR x = { 1, 2, 3, 4 };"},
        {"a named array", "typedef VECTOR three[3]; three x = { 1, 2, 3 };"},
        {"another name of it", "typedef stateblock block; block x;"},
        {"a struct in a struct", "struct s { struct i { VECTOR a; } b; } x;"},
        {"a struct without a name in a struct",
         "struct s { struct { VECTOR a; } b; float c; }; s x;"},
        {"a struct's inner type", "struct s { struct i { struct j { VECTOR a; } b; } c; }; j x;"},
        {"an array of arrays in a struct", "struct s { VECTOR a[2][2]; }; s x;"},
        {"a struct of a struct of it", "struct s { MATRIX a; }; struct t { s b; }; t x;"},
        {"a struct with textures and values",
         "struct s { texture a; float b; }; s x = { NULL, 1 };"},
        {"a value of such a thing", "VECTOR y[2]; float x = y[0].y;"},
    };
    for (const auto& c : cases) {
        ExpectLack(c.what, Text(c.declaration, "FogStart = x;"));
        ExpectLack(c.what, Text(c.declaration, "FogStart = 1 + <x.b>;"));
        const Com<ID3DXEffect> unused =
            Make(std::string(c.declaration) + " technique { pass { FogStart = 1; } }");
        ASSERT_TRUE(unused) << c.what;
        EXPECT_EQ(unused->ValidateTechnique(unused->GetTechnique(0)), D3D_OK) << c.what;
        EXPECT_EQ(unused->GetParameterByName(nullptr, "x"), nullptr) << c.what;
    }
}

// Each value is scanned once, not again for each name of a declaration.
TEST_F(FxLackTest, ManyParametersOfOneDeclarationAreReadQuickly)
{
    std::string text = "float y[1][1], x0 = 1";
    for (int i = 1; i < 60000; ++i)
        text += ",x" + std::to_string(i) + "=1";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ErrorOf(text + ";"), "");
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    EXPECT_LT(seconds.count(), 20.0); // takes 0.5; 60,000 times 240,000 words take minutes
}

TEST_F(FxLackTest, AnAnnotationOfAnUnmodelledTypeIsLeftOut)
{
    const Com<ID3DXEffect> effect =
        Make("float x < VECTOR a[2][2] = { 1, 2, 3, 4 }; int b = 5; > = 1;");
    ASSERT_TRUE(effect);
    EXPECT_EQ(effect->GetAnnotationByName("x", "a"), nullptr);
    EXPECT_EQ(IntOf(effect.Get(), effect->GetAnnotationByName("x", "b")), 5);
}

TEST_F(FxLackTest, ABinaryThatIsNoEffectIsRefused)
{
    const ScratchDirectory folder;
    const std::string damaged =
        "glow.fxo(1,1): error X1008: the compiled effect is damaged near byte ";
    const std::string tag("\x01\x09\xFF\xFE", 4);
    const struct {
        std::string bytes, message;
    } cases[] = {
        {std::string("\x01\x09", 2),
         "glow.fxo(1,1): error X1008: this is neither a text nor a compiled effect (fx_2_0)\n"},
        {std::string("\x01\x08\xFF\xFE\0\0\0\0", 8),
         "glow.fxo(1,1): error X1008: this is neither a text nor a compiled effect (fx_2_0)\n"},
        {tag + std::string("\x10\0\0\0\0", 5), damaged + "0: it ends too early\n"},
        {tag + std::string("\x04\0\0\0\0\0\0\0", 8), damaged + "12: it ends too early\n"},
    };
    for (const auto& c : cases) {
        folder.Write("glow.fxo", c.bytes);
        EXPECT_EQ(ErrorOfFile("glow.fxo"), c.message);
    }
}

TEST_F(FxLackTest, ACompiledEffectThatIsTooLongIsNotRead)
{
    const ScratchDirectory folder;
    folder.Write("glow.fxo", "\x01\x09\xFF\xFE" + std::string(17 << 20, 'x'));
    std::string line;
    const Com<ID3DXEffect> effect = MakeFile("glow.fxo", line);
    ASSERT_TRUE(effect);
    EXPECT_EQ(line, "UNMODELLED glow.fxo(1,1): the compiled effect is longer than 16 MiB\n");
    D3DXEFFECT_DESC desc = {};
    ASSERT_EQ(effect->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Techniques, 0u);
    EXPECT_EQ(effect->GetTechnique(0), nullptr);
}

TEST_F(FxLackTest, TheHostLogsOnceWhyAnEffectCannotBeDrawn)
{
    const ScratchDirectory folder;
    // The shader's version is at column 42 of line 2.
    folder.Write("fx/a.fx", "technique a { }\n"); // a valid effect
    folder.Write("fx/b.fx", "float x;\ntechnique a { pass { PixelShader = asm { ps.1.1 }; } }\n"
                            "technique b { pass { CullMode = 9; } }\n");
    std::string line;
    const Com<ID3DXEffect> good = MakeFile("fx/a.fx", line);
    EXPECT_EQ(LineOf(good.Get(), "a"), "");
    const Com<ID3DXEffect> bad = MakeFile("fx/b.fx", line);
    EXPECT_EQ(line, "");
    EXPECT_EQ(LineOf(bad.Get(), "a"), "UNMODELLED fx/b.fx(2,42): r0, the result, is not written\n");
    EXPECT_EQ(LineOf(bad.Get(), "b"), "");
}

TEST_F(FxLackTest, AnEffectWithAFallbackTechniqueLogsNothing)
{
    const Com<ID3DXEffect> effect = Make("technique a { pass { PixelShader = asm { ps.1.1 }; } }\n"
                                         "technique b { pass { CullMode = 9; } }\n"
                                         "technique c { pass { } }");
    for (const char* name : {"a", "b", "c"})
        EXPECT_EQ(LineOf(effect.Get(), name), "") << name;
}

// ---- States that the device refuses

TEST_F(FxLackTest, ATechniqueThatTheDeviceRefusesDoesNotValidate)
{
    static const struct {
        const char* state;
        const char* reason;
    } cases[] = {
        {"CullMode = 9;", "D3DRS_CULLMODE(9)"},
        {"VertexBlend = TWEENING;", "D3DRS_VERTEXBLEND(255)"},
        {"AlphaBlendEnable = TRUE; BlendOp = 7;", "D3DRS_BLENDOP(7)"},
        {"ColorOp[0] = 99;", "D3DTSS_COLOROP(99)"},
        {"ColorOp[1] = MODULATE; AlphaOp[1] = 27;", "D3DTSS_ALPHAOP(27)"},
        {"ResultArg[0] = DIFFUSE;", "D3DTSS_RESULTARG(0)"},
        {"AddressU[0] = 6;", "D3DSAMP_ADDRESS(6)"},
        {"AddressW[0] = 6;", "D3DSAMP_ADDRESS(6)"},
        {"TexCoordIndex[0] = 8;", "D3DTSS_TEXCOORDINDEX(8)"},
        {"FVF = 0xF00;", "D3DFVF(3840)"},
        {"PatchSegments = 3;", "PatchSegments"},
        {"LightType[2] = 0;", "LightType[2]"},
        {"LightType[1] = POINT; LightRange[1] = -1;", "LightType[1]"},
    };
    for (const auto& c : cases) {
        // The second pass begins at column 43.
        const Com<ID3DXEffect> effect = Make("technique bad { pass { ZEnable = FALSE; } pass { " +
                                             std::string(c.state) + " } }");
        ASSERT_TRUE(effect) << c.state;
        testing::internal::CaptureStderr();
        EXPECT_TRUE(FAILED(effect->ValidateTechnique("bad"))) << c.state;
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "UNMODELLED memory(1,43): the device refuses the pass because of " +
                      std::string(c.reason) + "\n");
    }
}

TEST_F(FxLackTest, ValidationKeepsTheDeviceStates)
{
    const Com<ID3DXEffect> effect = Make(
        "texture t; technique a { pass { CullMode = NONE; ColorOp[1] = ADD; Texture[1] = <t>;\n"
        " MinFilter[3] = LINEAR; MaterialPower = 5; } pass { FogEnable = TRUE;\n"
        " WorldTransform[0] = float4x4(2,0,0,0,0,2,0,0,0,0,2,0,0,0,0,1); } }");
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    ASSERT_EQ(device->SetTexture(1, texture.Get()), D3D_OK);
    ASSERT_EQ(effect->ValidateTechnique("a"), D3D_OK);
    EXPECT_EQ(Render(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_CCW));
    EXPECT_EQ(Render(D3DRS_FOGENABLE), 0u);
    EXPECT_EQ(Stage(1, D3DTSS_COLOROP), static_cast<DWORD>(D3DTOP_DISABLE));
    EXPECT_EQ(Sampler(3, D3DSAMP_MINFILTER), static_cast<DWORD>(D3DTEXF_POINT));
    EXPECT_EQ(BoundTexture(1), texture.Get());
    EXPECT_EQ(Transform(D3DTS_WORLD)._11, 1.0f);
    D3DMATERIAL9 material = {};
    ASSERT_EQ(device->GetMaterial(&material), D3D_OK);
    EXPECT_EQ(material.Power, 0.0f);
}

TEST_F(FxLackTest, AnEffectCanBeValidatedWhileItIsDrawn)
{
    const Com<ID3DXEffect> effect =
        Make("technique a { pass { CullMode = NONE; } } technique b { pass { CullMode = CW; } }");
    ASSERT_EQ(effect->SetTechnique("a"), D3D_OK);
    BeginFirstPass(effect.Get());
    EXPECT_EQ(effect->ValidateTechnique("b"), D3D_OK);
    EXPECT_EQ(Render(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_NONE));
    EndPassAndEffect(effect.Get());
    EXPECT_EQ(Render(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_CCW));
}

TEST_F(FxLackTest, TheNextValidTechniqueIsFoundAfterRefusedOnes)
{
    const Com<ID3DXEffect> effect =
        Make("technique a { pass { CullMode = 9; } }\n"
             "technique b { pass { BlendOp = 7; AlphaBlendEnable = TRUE; } }\n"
             "technique c { pass { } }");
    D3DXHANDLE next = nullptr;
    EXPECT_EQ(effect->FindNextValidTechnique(nullptr, &next), D3D_OK);
    EXPECT_EQ(next, effect->GetTechniqueByName("c"));
}

TEST_F(FxLackTest, AParametersCurrentValueDecides)
{
    const Com<ID3DXEffect> effect =
        Make("int mode = 1; technique a { pass { CullMode = <mode>; } }");
    EXPECT_EQ(effect->ValidateTechnique("a"), D3D_OK);
    ASSERT_EQ(effect->SetInt("mode", 9), D3D_OK);
    testing::internal::CaptureStderr();
    EXPECT_EQ(effect->ValidateTechnique("a"), D3DERR_INVALIDCALL);
    testing::internal::GetCapturedStderr();
}

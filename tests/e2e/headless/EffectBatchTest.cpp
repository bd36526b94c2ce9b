// Batches with an unusable effect in the middle.

#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// A triangle that fills most of the view, with a material of the given name.
std::string Scene(const std::string& material)
{
    return "*3DSMAX_QSAEXPORT 211\n"
           "*SCENE {\n\t*SCENE_FIRSTFRAME 0\n\t*SCENE_LASTFRAME 10\n"
           "\t*SCENE_FRAMESPEED 25\n\t*SCENE_TICKSPERFRAME 160\n}\n"
           "*MATERIAL_LIST {\n\t*MATERIAL_COUNT 1\n\t*MATERIAL 0 {\n"
           "\t\t*MATERIAL_NAME \"" +
           material +
           "\"\n\t\t*MATERIAL_DIFFUSE 0.2 0.9 0.3\n\t\t*MATERIAL_TWOSIDED 1\n\t}\n}\n"
           "*GEOMOBJECT {\n\t*NODE_NAME \"Hull\"\n\t*NODE_VISIBLE 1\n\t*MESH {\n"
           "\t\t*MESH_NUMVERTEX 3\n\t\t*MESH_NUMFACES 1\n\t\t*MESH_VERTEX_LIST {\n"
           "\t\t\t*MESH_VERTEX 0 -30 -30 -20\n\t\t\t*MESH_VERTEX 1 30 -30 0\n"
           "\t\t\t*MESH_VERTEX 2 0 30 30\n\t\t}\n\t\t*MESH_FACE_LIST {\n"
           "\t\t\t*MESH_FACE 0: A: 0 B: 1 C: 2 *MESH_SMOOTHING 1 *MESH_MTLID 0\n\t\t}\n\t}\n"
           "\t*MATERIAL_REF 0\n}\n";
}

void AddWord(std::string& bytes, unsigned word)
{
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(word >> shift & 0xFF);
}

/// A compiled effect as compilers write it: one technique, its pass draws wires.
/// Offsets count from the end of the second word.
std::string CompiledEffect()
{
    std::string bytes;
    for (
        const unsigned word :
        {0xFEFF0901u, 36u,
         // The targets of offsets: an empty name at 0, an integer type at 4 (type 2 of class 0,
         // without names, no array, 1 by 1), the number 2 at 32.
         0u, 2u, 0u, 0u, 0u, 0u, 1u, 1u, 2u,
         // No parameters, one technique, a reserved word, one object, which is empty.
         0u, 1u, 0u, 1u,
         // The technique: name, annotations, passes. The pass: name, annotations, states. The state:
         // operation 1, index, type, value.
         0u, 0u, 1u, 0u, 0u, 1u, 1u, 0u, 4u, 32u,
         // No strings, no resources.
         0u, 0u})
        AddWord(bytes, word);
    return bytes;
}

std::string Damaged(std::string bytes)
{
    bytes[0] = 0x40; // a different signature
    return bytes;
}

class EffectBatch : public testing::Test {
protected:
    /// Converts three scenes; the middle one names the effect. All must be converted.
    ProgramRun RunThree(const std::string& effectName, const std::string& bytes)
    {
        scratch.Write("a.qsa", Scene("Plain"));
        scratch.Write("b.qsa", Scene("Paint shader='" + effectName + "'"));
        scratch.Write("c.qsa", Scene("Plain"));
        scratch.Write(effectName, bytes);
        for (const char* name : {"a.qsb", "b.qsb", "c.qsb", "logfile.txt"})
            std::filesystem::remove(name);
        return RunProgram({"*.qsa"});
    }
    /// The picture of a scene converted on its own.
    std::string Frame(const std::string& material)
    {
        scratch.Write("frame/b.qsa", Scene(material));
        setenv("QSA2QSB_FRAMES", "frames", 1);
        RunProgram({"frame/b.qsa"});
        unsetenv("QSA2QSB_FRAMES");
        return scratch.Read("frames/b.qsa.png");
    }

    const ScratchDirectory scratch;
};

} // namespace

TEST_F(EffectBatch, AnEffectThatThisHostCannotUseDoesNotEndTheBatch)
{
    const std::string function = "float4 f() : POSITION { return 1; }\n";
    const struct {
        const char* what;
        const char* name;
        std::string bytes;
        std::string line; ///< what the host says
    } cases[] = {
        {"assembler without a declaration", "glow.fx",
         "technique a { pass {\nVertexShader = asm { vs_1_1 mov oPos, v0 }; } }",
         "glow.fx(2,29): a register is read that is not declared"},
        {"assembler of a dotted version", "glow.fx",
         "technique a { pass {\nVertexShader = asm {\nvs.1.1 ; it's }\nmov oPos, v0\n}; } }",
         "glow.fx(4,1): a register is read that is not declared"},
        {"assembler of a pixel shader", "glow.fx",
         "technique a { pass {\nPixelShader = asm {\nps.1.4 // }\n}; } }",
         "glow.fx(3,1): r0, the result, is not written"},
        {"a version of a later language", "glow.fx",
         function + "technique a { pass {\nPixelShader = compile ps_5_0 f(); } }",
         "glow.fx(3,23): error X3001: there is no profile 'ps_5_0'"},
        {"a block of states", "glow.fx", "technique a { pass {\nStateBlock = <sb>; } }",
         "glow.fx(2,1): this host does not have the state 'StateBlock'"},
        {"a texture in a struct", "glow.fx",
         "struct S { texture t; float a; }; S x = { NULL, 2 };\ntechnique a { pass {\nFogStart = x.a; } }",
         "glow.fx(3,12): this host does not have the type of 'x'"},
        {"a state that the device refuses", "glow.fx", "technique a {\npass { CullMode = 9; } }",
         "glow.fx(2,1): the device refuses the pass because of D3DRS_CULLMODE(9)"},
        {"a light that the device refuses", "glow.fx",
         "technique a {\npass { LightType[0] = 0; } }",
         "glow.fx(2,1): the device refuses the pass because of LightType[0]"},
    };
    for (const auto& c : cases) {
        const ProgramRun run = RunThree(c.name, c.bytes);
        EXPECT_EQ(run.status, 1) << c.what;
        EXPECT_EQ(run.out, "'a.qsa' converted\n'b.qsa' converted\n'c.qsa' converted\n") << c.what;
        EXPECT_EQ(run.err, "UNMODELLED " + c.line + "\n") << c.what;
        EXPECT_THAT(scratch.Read("logfile.txt"),
                    HasSubstr("Warning:KRE_Gfx: Shader could not be validated for this GPU: '" +
                              std::string(c.name) + "'(Time:"))
            << c.what;
        for (const char* name : {"a.qsb", "b.qsb", "c.qsb"})
            EXPECT_TRUE(scratch.Has(name)) << c.what << ' ' << name;
    }
}

TEST_F(EffectBatch, ACompiledEffectDrawsLikeItsText)
{
    scratch.Write("frame/wires.fx", "technique a { pass { FillMode = WIREFRAME; } }");
    const std::string wires = Frame("Paint shader='wires.fx'");
    EXPECT_FALSE(wires == Frame("Paint"));
    scratch.Write("frame/glow.fxo", CompiledEffect());
    EXPECT_TRUE(wires == Frame("Paint shader='glow.fxo'"));
    EXPECT_TRUE(wires == Frame("Paint shader='glow'")) << "found without its extension";
    scratch.Write("frame/glow.fx", CompiledEffect());
    EXPECT_TRUE(wires == Frame("Paint shader='glow.fx'")) << "under a text's name";
}

TEST_F(EffectBatch, ADamagedCompiledEffectEndsTheRun)
{
    const struct {
        std::string bytes, message;
    } cases[] = {
        {CompiledEffect().substr(0, 50),
         "glow.fxo(1,1): error X1008: the compiled effect is damaged near byte 48: it ends too early"},
        {Damaged(CompiledEffect()),
         "glow.fxo(1,1): error X1008: this is neither a text nor a compiled effect (fx_2_0)"},
    };
    for (const auto& c : cases) {
        const ProgramRun run = RunThree("glow.fxo", c.bytes);
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.err, HasSubstr("Could not compile effect from file 'glow.fxo': "
                                       "'D3DXERR_INVALIDDATA'\n\n" +
                                       c.message));
        EXPECT_TRUE(scratch.Has("a.qsb"));
        EXPECT_FALSE(scratch.Has("b.qsb"));
    }
}

TEST_F(EffectBatch, ALaterTechniqueIsDrawnWithoutAMessage)
{
    const ProgramRun run =
        RunThree("glow.fx", "technique a { pass { VertexShader = asm { vs.1.1 }; } }\n"
                            "technique b { pass { CullMode = 9; } }\n"
                            "technique c { pass { Lighting = FALSE; } }\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "'a.qsa' converted\n'b.qsa' converted\n'c.qsa' converted\n");
    EXPECT_EQ(run.err, "");
    EXPECT_FALSE(scratch.Has("logfile.txt"));
}

TEST_F(EffectBatch, AnErrorInTheTextEndsTheRun)
{
    static const struct {
        const char* text;
        const char* message;
    } cases[] = {
        {"technique a { pass {\nColour = 1; } }",
         "glow.fx(2,1): error X3008: there is no state 'Colour'"},
        {"colour x;", "glow.fx(1,1): error X3003: there is no type 'colour'"},
        {"float4 f() : POSITION { return x; }\n"
         "technique a { pass { VertexShader = compile vs_1_1 f(); } }",
         "glow.fx(1,32): error X3001: there is no variable 'x'\n"},
        {"float4 f() : COLOR {\n  x = 1;\n  return y;\n}\n"
         "technique a { pass { PixelShader = compile ps_2_0 f(); } }\n"
         "technique b { pass { PixelShader = compile ps_3_0 g(); } }",
         "glow.fx(2,3): error X3001: there is no variable 'x'\n"
         "glow.fx(3,10): error X3001: there is no variable 'y'\n"
         "glow.fx(6,51): error X3001: there is no function 'g'\n"},
        {"technique a { pass {\nVertexShader = asm { vs.1.1 ",
         "glow.fx(2,20): error X3000: '{' is not closed"},
    };
    for (const auto& c : cases) {
        const ProgramRun run = RunThree("glow.fx", c.text);
        EXPECT_EQ(run.status, 0) << c.text;
        EXPECT_EQ(run.out, "'a.qsa' converted\n") << c.text;
        EXPECT_THAT(run.err, HasSubstr("Could not compile effect from file 'glow.fx': "
                                       "'D3DXERR_INVALIDDATA'\n\n" +
                                       std::string(c.message)))
            << c.text;
        EXPECT_TRUE(scratch.Has("a.qsb")) << c.text;
        EXPECT_FALSE(scratch.Has("b.qsb")) << c.text;
        EXPECT_FALSE(scratch.Has("c.qsb")) << c.text;
    }
}

// The scene names the text form, which does not exist.
TEST_F(EffectBatch, ACompiledEffectReplacesItsMissingText)
{
    scratch.Write("config/Fenwhistle/QSAView.conf", "DefaultBasePath=nowhere\n");
    setenv("XDG_CONFIG_HOME", (scratch.Path() / "config").c_str(), 1);
    scratch.Write("b.qsa", Scene("Paint shader='glow.fx'"));
    scratch.Write("glow.fxo", CompiledEffect());
    const ProgramRun run = RunProgram({"b.qsa"});
    unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(run.out, "'b.qsa' converted\n");
    EXPECT_EQ(run.err, "");
    EXPECT_FALSE(scratch.Has("logfile.txt"));
}

TEST_F(EffectBatch, AMaterialWithSuchAnEffectIsDrawnAsIfItHadNone)
{
    const std::string plain = Frame("Paint");
    scratch.Write("frame/red.fx", "technique a { pass { ColorOp[0] = SELECTARG1;\n"
                                  "ColorArg1[0] = TFACTOR; TextureFactor = 0xFFFF0000; } }");
    EXPECT_NE(Frame("Paint shader='red.fx'"), plain) << "an effect shows in the frame";
    const std::string effects[] = {"technique a { pass { PixelShader = asm { ps.1.1 }; } }",
                                   "technique a { pass { CullMode = 9; } }"};
    for (const std::string& bytes : effects) {
        scratch.Write("frame/glow.fx", bytes);
        EXPECT_EQ(Frame("Paint shader='glow.fx'"), plain);
    }
}

// The effect's initial value can be drawn; the material sets another one.
TEST_F(EffectBatch, AStateRefusedLaterIsNamedBeforeTheError)
{
    static const struct {
        const char* state;
        const char* warning;
        const char* error;
    } cases[] = {
        {"CullMode = <mode>;",
         "Warning:KRE_Gfx: The device refuses D3DRS_CULLMODE = 9 in pass 0 of technique 0 of the "
         "effect 'glow.fx'(Time:",
         "DrawSubset failed: D3DERR_INVALIDCALL"},
        {"FogStart = 1; LightType[1] = <mode>;",
         "Warning:KRE_ShaderEffect: Technique 0 of the effect 'glow.fx' cannot be drawn: "
         "glow.fx(2,15): the device refuses the pass because of LightType[1](Time:",
         "Can not begin pass of effect: D3DERR_INVALIDCALL"},
    };
    for (const auto& c : cases) {
        scratch.Write("glow.fx", "float mode : fParam1 = 1;\ntechnique a { pass { " +
                                     std::string(c.state) + " } }");
        scratch.Write("b.qsa", Scene("Paint shader='glow.fx' fParam1='9'"));
        std::filesystem::remove("logfile.txt");
        const ProgramRun run = RunProgram({"b.qsa"});
        EXPECT_EQ(run.status, 0) << c.state;
        EXPECT_THAT(run.err, HasSubstr(c.error)) << c.state;
        const std::string log = scratch.Read("logfile.txt");
        EXPECT_THAT(log, StartsWith(c.warning)) << c.state;
        EXPECT_THAT(log, HasSubstr(c.error)) << c.state;
    }
}

// The text of compiled effects. Each is laid out by hand, so the text is what its words mean.

#include "platform/EffectListing.h"
#include "tests/support/EffectFile.h"

#include <d3dx9.h>

#include <gtest/gtest.h>

#include <bit>

namespace {

class EffectListing : public testing::Test {
protected:
    std::string Listed()
    {
        std::string text;
        EXPECT_EQ(ListEffect("a.fxo", file.Bytes(), text), "");
        return text;
    }
    EffectFile::Typed Number(uint32_t value) { return file.Int("", static_cast<int32_t>(value)); }
    /// What a technique of one pass with these states is listed as.
    static std::string InPass(const std::string& states)
    {
        return "\ntechnique t\n{\n    pass p\n    {\n" + states + "    }\n}\n";
    }

    EffectFile file;
};

const TableConstant kShift = {"shift", 2, 0, 1, D3DXPC_VECTOR, D3DXPT_FLOAT, 1, 4, 1, {}};

} // namespace

TEST_F(EffectListing, ParametersHaveTheirTypesSemanticsAndValues)
{
    file.AddParameter(file.Float("width", 1.5f), 1);
    file.AddParameter(file.Int("count", -3));
    file.semantic = "WORLD";
    file.AddParameter(file.Matrix("world", std::vector<float>(16)));
    file.semantic = "";
    file.AddParameter(file.Floats("tint", {0.1f, 0, 1, -2}));
    file.AddParameter({file.Put(file.NumberType(D3DXPT_BOOL, D3DXPC_SCALAR, "flags", 1, 1, 2)),
                       file.Put({0, 1})});
    const auto lamp =
        file.StructType("lamp", {file.NumberType(D3DXPT_FLOAT, D3DXPC_SCALAR, "reach", 1, 1),
                                 file.NumberType(D3DXPT_INT, D3DXPC_VECTOR, "place", 1, 2)});
    file.AddParameter({file.Put(lamp), file.Put({std::bit_cast<uint32_t>(4.0f), 5, 6})});
    file.AddParameter(file.Object(D3DXPT_TEXTURE, "map"), 0,
                      {file.String("ResourceName", "sand.png"), file.Int("order", 2)});
    file.AddParameter(file.String("author", "A\nB"));
    EXPECT_EQ(Listed(), "shared float width = 1.5;\n"
                        "int count = -3;\n"
                        "float4x4 world : WORLD;\n"
                        "float4 tint = {0.1, 0, 1, -2};\n"
                        "bool flags[2] = {FALSE, TRUE};\n"
                        "struct { float reach; int2 place; } lamp = {4, 5, 6};\n"
                        "texture map < string ResourceName = \"sand.png\"; int order = 2; >;\n"
                        "string author = \"A\\x0AB\";\n");
}

TEST_F(EffectListing, StatesHaveTheirWords)
{
    file.AddTechnique("t", {{"p",
                             {{0x08, 0, Number(D3DCULL_CW)},
                              {0x03, 0, Number(0)},
                              {0x1E, 0, Number(0x80FF0001)},
                              {0x12, 0, file.Float("", 2.5f)},
                              {0x74, 2, Number(D3DTSS_TCI_CAMERASPACEPOSITION | 2)},
                              {0x77, 0, Number(D3DTTFF_COUNT3 | D3DTTFF_PROJECTED)},
                              {0x06, 0, Number(99)},
                              {0x7F, 0, file.Floats("", {1, 0.5f, 0, 1})},
                              {0x93, 0, file.Object(D3DXPT_PIXELSHADER, "")},
                              {0xFFFF, 0, Number(1)}},
                             {file.String("RenderTarget", "ScreenBuffer1")}}});
    EXPECT_EQ(Listed(),
              "\ntechnique t\n{\n    pass p < string RenderTarget = \"ScreenBuffer1\"; >\n"
              "    {\n"
              "        // Not drawn here: a.fxo(1,1): this host does not have the state "
              "'65535'\n"
              "        CullMode = CW;\n"
              "        ZWriteEnable = FALSE;\n"
              "        TextureFactor = 0x80FF0001;\n"
              "        FogStart = 2.5;\n"
              "        TexCoordIndex[2] = CAMERASPACEPOSITION | 2;\n"
              "        TextureTransformFlags[0] = PROJECTED | COUNT3;\n"
              "        SrcBlend = 99;\n"
              "        MaterialDiffuse = {1, 0.5, 0, 1};\n"
              "        PixelShader = NULL;\n"
              "        // A state that this host does not have.\n"
              "    }\n}\n");
}

TEST_F(EffectListing, StatesNameTheirParameters)
{
    file.AddParameter(
        {file.Put(file.ObjectType(D3DXPT_SAMPLER, "look")),
         file.Put({1, 0xA5, 0, Number(D3DTADDRESS_CLAMP).type, Number(D3DTADDRESS_CLAMP).value})});
    file.AddParameter(file.Int("cull", 2));
    const EffectFile::Typed none = {file.Put(file.ObjectType(D3DXPT_SAMPLER, "")), file.Put({0})};
    file.AddTechnique("t", {{"p", {{0x08, 0, Number(0)}, {0xB2, 3, none}}, {}}});
    file.AddResource({0, 0, EffectFile::kNone, 0, EffectFile::kReference},
                     std::string("cull\0", 5));
    file.AddResource({0, 0, EffectFile::kNone, 1, EffectFile::kReference},
                     std::string("look\0", 5));
    EXPECT_EQ(Listed(), "sampler look = sampler_state\n{\n    AddressU[0] = CLAMP;\n};\n"
                        "int cull = 2;\n" +
                            InPass("        CullMode = <cull>;\n"
                                   "        Sampler[3] = <look>;\n"));
}

/// A product of vectors, a scalar first operand, a dot product, and an operand that is chosen by an index.
TEST_F(EffectListing, ComputationsAreInstructions)
{
    file.AddParameter(file.Floats("shift", {1, 2, 3, 4}));
    file.AddTechnique("t", {{"p", {{0x12, 0, file.Float("", 0)}}, {}}});
    const std::vector<uint32_t> code = {
        0x20500003, 2, 0, 2, 0, 0, 1, 0, 0, 7, 1,  0xA0400002, 2, 0, 1, 3,  0, 7, 4, 0, 7, 8,
        0x50000003, 2, 0, 7, 8, 0, 7, 0, 0, 7, 12, 0x10000001, 1, 1, 7, 12, 2, 5, 0, 4, 0};
    file.AddResource({0, 0, EffectFile::kNone, 0, EffectFile::kComputation},
                     BytesOfWords(ComputationWords({kShift}, {0.1f, 0.1, 2, 0.5}, 4, code)));
    EXPECT_EQ(Listed(), "float4 shift = {1, 2, 3, 4};\n" +
                            InPass("        FogStart = computed\n"
                                   "        {\n"
                                   "            mul r0.yzw, shift.xyz, (0.1, 0.1, 2)\n"
                                   "            add r2.xy, 0.5, r1.xy\n"
                                   "            dot r3.x, r2.xyz, r0.xyz\n"
                                   "            mov out0.x, inputs[r3.x + 1].y\n"
                                   "        };\n"));
}

/// c2 gets the parameter, c3 is computed beforehand.
TEST_F(EffectListing, ShadersAreAssemblerText)
{
    TableConstant inShader = kShift;
    inShader.firstRegister = 2;
    file.AddParameter(file.Floats("shift", {1, 2, 3, 4}));
    file.AddParameter(file.Matrix("world", std::vector<float>(16)));
    file.AddTechnique("t", {{"p", {{0x93, 0, file.Object(D3DXPT_PIXELSHADER, "")}}, {}}});
    std::vector<uint32_t> comments = ProgramComment(
        "CTAB",
        ConstantTableWords(
            {inShader, {"world", 2, 4, 4, D3DXPC_MATRIX_COLUMNS, D3DXPT_FLOAT, 4, 4, 1, {}}}));
    const std::vector<uint32_t> before = ProgramComment(
        "PRES", ComputationWords({kShift}, {}, 1, {0x10100004, 1, 0, 2, 0, 0, 4, 12}));
    comments.insert(comments.end(), before.begin(), before.end());
    file.AddResource(
        {0, 0, EffectFile::kNone, 0, EffectFile::kCode},
        ShaderBytes({0xFFFF0200, 0x02000001, 0x800F0800, 0xA0E40003, 0x0000FFFF}, comments));
    EXPECT_EQ(Listed(), "float4 shift = {1, 2, 3, 4};\nfloat4x4 world;\n" +
                            InPass("        PixelShader = asm\n"
                                   "        {\n"
                                   "            // c2: shift\n"
                                   "            // c4 to c7: transpose(world)\n"
                                   "            // Computed before it runs:\n"
                                   "            //     neg c3, shift\n"
                                   "            ps_2_0\n"
                                   "                mov oC0, c3\n"
                                   "        };\n"));
}

TEST_F(EffectListing, ShadersThatAreRefusedSayWhy)
{
    file.AddParameter(file.Object(D3DXPT_VERTEXSHADER, "bend"));
    file.AddContent(file.lastObject, BytesOfWords({0xFFFE0900, 0x0000FFFF}));
    EXPECT_EQ(Listed(), "vertexshader bend = asm\n{\n    // Refused: the version is not one of vs "
                        "1.1 to 3.0 or ps 1.1 to 3.0\n};\n");
}

TEST_F(EffectListing, ChoicesFromArraysHaveTheirIndex)
{
    const uint32_t first = file.lastObject + 1;
    file.lastObject += 2;
    file.AddParameter(
        {file.Put(file.ObjectType(D3DXPT_TEXTURE, "maps", 2)), file.Put({first, first + 1})});
    file.AddTechnique("t", {{"p", {{0xA4, 1, file.Object(D3DXPT_TEXTURE, "")}}, {}}});
    std::vector<uint32_t> selector = {8};
    for (const auto& part : {WordsOfBytes(std::string("maps\0\0\0\0", 8)),
                             ComputationWords({}, {1}, 1, {0x10000001, 1, 0, 1, 0, 0, 4, 0})})
        selector.insert(selector.end(), part.begin(), part.end());
    file.AddResource({0, 0, EffectFile::kNone, 0, EffectFile::kSelector}, BytesOfWords(selector));
    EXPECT_EQ(Listed(),
              "texture maps[2];\n" + InPass("        Texture[1] = <maps[out0.x]> computed\n"
                                            "        {\n"
                                            "            mov out0.x, 1\n"
                                            "        };\n"));
}

TEST_F(EffectListing, DamagedFilesAreNamed)
{
    file.AddParameter(file.Float("width", 1.5f));
    std::string text;
    EXPECT_EQ(ListEffect("a.fxo", file.Bytes().substr(0, 16), text),
              "a.fxo(1,1): error X1008: the compiled effect is damaged near byte 0: it ends too "
              "early");
    EXPECT_EQ(text, "");
}

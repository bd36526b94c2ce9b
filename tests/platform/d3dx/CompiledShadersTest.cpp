// Shaders of compiled effects: their constants, what is computed beforehand, and their choice from arrays.

#include "tests/platform/d3dx/CompiledEffectFixture.h"

#include <gmock/gmock.h>

#include <bit>

using testing::ElementsAre;
using Typed = EffectFile::Typed;

namespace {

class CompiledShaders : public CompiledEffectFixture {
protected:
    /// A pass with the plain vertex shader and a constant table.
    void AddVertexPass(const std::vector<TableConstant>& constants,
                       const std::vector<uint32_t>& more = {})
    {
        std::vector<uint32_t> comments = ProgramComment("CTAB", ConstantTableWords(constants));
        comments.insert(comments.end(), more.begin(), more.end());
        AddPass({{0x92, 0, file.Object(D3DXPT_VERTEXSHADER, "")}});
        file.AddResource({0, 0, EffectFile::kNone, 0, EffectFile::kCode},
                         ShaderBytes(PlainVertexShader(), comments));
        ASSERT_TRUE(Load());
        BeginPass();
    }
};

std::vector<float> Counted(int count)
{
    std::vector<float> numbers;
    for (int i = 0; i < count; ++i)
        numbers.push_back(static_cast<float>(i + 1));
    return numbers;
}

} // namespace

TEST_F(CompiledShaders, VectorsAndScalarsFillARegister)
{
    file.AddParameter(file.Floats("tint", {1.0f, 2.0f, 3.0f, 4.0f}));
    file.AddParameter(file.Float("size", 5.0f));
    AddVertexPass({{"tint", 2, 7, 1, D3DXPC_VECTOR, D3DXPT_FLOAT, 1, 4, 1, {}},
                   {"size", 2, 9, 1, D3DXPC_SCALAR, D3DXPT_FLOAT, 1, 1, 1, {}},
                   {"nobody", 2, 10, 1, D3DXPC_SCALAR, D3DXPT_FLOAT, 1, 1, 1, {}}});
    EXPECT_THAT(VertexFloats(7, 1), ElementsAre(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_EQ(VertexFloats(9, 1)[0], 5.0f);
    Com<IDirect3DVertexShader9> shader;
    ASSERT_EQ(device->GetVertexShader(shader.Out()), D3D_OK);
    EXPECT_TRUE(shader);
    EndPass();
}

TEST_F(CompiledShaders, MatricesGoByRowsOrByColumns)
{
    file.AddParameter(file.Matrix("m", Counted(16)));
    AddVertexPass({{"m", 2, 0, 4, D3DXPC_MATRIX_COLUMNS, D3DXPT_FLOAT, 4, 4, 1, {}}});
    EXPECT_THAT(VertexFloats(1, 1), ElementsAre(2.0f, 6.0f, 10.0f, 14.0f));
    EndPass();
    file = {};
    file.AddParameter(file.Matrix("m", Counted(16)));
    AddVertexPass({{"m", 2, 0, 4, D3DXPC_MATRIX_ROWS, D3DXPT_FLOAT, 4, 4, 1, {}}});
    EXPECT_THAT(VertexFloats(1, 1), ElementsAre(5.0f, 6.0f, 7.0f, 8.0f));
    EndPass();
}

/// Three registers of the four that a matrix would take, as for the bones of a skin.
TEST_F(CompiledShaders, ArraysOfPartsOfMatrices)
{
    file.AddParameter(file.Matrix("bones", Counted(32), 2));
    AddVertexPass({{"bones", 2, 4, 6, D3DXPC_MATRIX_COLUMNS, D3DXPT_FLOAT, 4, 3, 2, {}}});
    EXPECT_THAT(VertexFloats(4, 1), ElementsAre(1.0f, 5.0f, 9.0f, 13.0f));
    EXPECT_THAT(VertexFloats(7, 1), ElementsAre(17.0f, 21.0f, 25.0f, 29.0f));
    EXPECT_THAT(VertexFloats(9, 1), ElementsAre(19.0f, 23.0f, 27.0f, 31.0f));
    EndPass();
}

TEST_F(CompiledShaders, ConstantsEndWithTheirRegisters)
{
    device->SetVertexShaderConstantF(6, std::vector<float>(4, -1.0f).data(), 1);
    file.AddParameter(file.Matrix("m", Counted(16)));
    AddVertexPass({{"m", 2, 4, 2, D3DXPC_MATRIX_COLUMNS, D3DXPT_FLOAT, 4, 4, 1, {}}});
    EXPECT_THAT(VertexFloats(5, 1), ElementsAre(2.0f, 6.0f, 10.0f, 14.0f));
    EXPECT_THAT(VertexFloats(6, 1), ElementsAre(-1.0f, -1.0f, -1.0f, -1.0f));
    EndPass();
}

TEST_F(CompiledShaders, MembersOfStructsFollowEachOther)
{
    const auto type =
        file.StructType("lamp", {file.NumberType(D3DXPT_FLOAT, D3DXPC_SCALAR, "reach", 1, 1),
                                 file.NumberType(D3DXPT_FLOAT, D3DXPC_VECTOR, "place", 1, 3)});
    const auto bits = [](float value) { return std::bit_cast<uint32_t>(value); };
    file.AddParameter({file.Put(type), file.Put({bits(9.0f), bits(1.0f), bits(2.0f), bits(3.0f)})});
    AddVertexPass({{"lamp",
                    2,
                    3,
                    2,
                    D3DXPC_STRUCT,
                    D3DXPT_VOID,
                    1,
                    4,
                    1,
                    {{"reach", 2, 0, 1, D3DXPC_SCALAR, D3DXPT_FLOAT, 1, 1, 1, {}},
                     {"place", 2, 0, 1, D3DXPC_VECTOR, D3DXPT_FLOAT, 1, 3, 1, {}}}}});
    EXPECT_EQ(VertexFloats(3, 1)[0], 9.0f);
    EXPECT_EQ(VertexFloats(4, 1)[2], 3.0f);
    EndPass();
}

TEST_F(CompiledShaders, IntegersAndTruthsHaveRegistersOfTheirOwn)
{
    const auto ints = file.Put(file.NumberType(D3DXPT_INT, D3DXPC_VECTOR, "rounds", 1, 3));
    file.AddParameter({ints, file.Put({4, 5, 6})});
    file.AddParameter(
        {file.Put(file.NumberType(D3DXPT_BOOL, D3DXPC_SCALAR, "on", 1, 1)), file.Put({1})});
    AddVertexPass({{"rounds", 1, 2, 1, D3DXPC_VECTOR, D3DXPT_INT, 1, 3, 1, {}},
                   {"on", 0, 6, 1, D3DXPC_SCALAR, D3DXPT_BOOL, 1, 1, 1, {}}});
    int rounds[4] = {};
    ASSERT_EQ(device->GetVertexShaderConstantI(2, rounds, 1), D3D_OK);
    EXPECT_EQ(rounds[0], 4);
    EXPECT_EQ(rounds[2], 6);
    BOOL on = FALSE;
    ASSERT_EQ(device->GetVertexShaderConstantB(6, &on, 1), D3D_OK);
    EXPECT_TRUE(on);
    EndPass();
}

TEST_F(CompiledShaders, IntegerParametersBecomeFloatsInFloatRegisters)
{
    file.AddParameter(file.Int("count", 3));
    AddVertexPass({{"count", 2, 1, 1, D3DXPC_SCALAR, D3DXPT_FLOAT, 1, 1, 1, {}}});
    EXPECT_EQ(VertexFloats(1, 1)[0], 3.0f);
    EndPass();
}

TEST_F(CompiledShaders, ChangesAreCommitted)
{
    file.AddParameter(file.Float("size", 5.0f));
    AddVertexPass({{"size", 2, 9, 1, D3DXPC_SCALAR, D3DXPT_FLOAT, 1, 1, 1, {}}});
    ASSERT_EQ(effect->SetFloat("size", 6.0f), D3D_OK);
    EXPECT_EQ(VertexFloats(9, 1)[0], 5.0f);
    ASSERT_EQ(effect->CommitChanges(), D3D_OK);
    EXPECT_EQ(VertexFloats(9, 1)[0], 6.0f);
    EndPass();
}

/// c3 = v * 2 is computed before the shader runs.
TEST_F(CompiledShaders, ConstantsComputedBeforehand)
{
    file.AddParameter(file.Floats("v", {1.0f, 2.0f, 3.0f, 4.0f}));
    const std::vector<uint32_t> instruction = {0xA0500004u, 2, 0, 1, 0, 0, 2, 0, 0, 4, 12};
    std::vector<uint32_t> program = ComputationWords(
        {{"v", 2, 0, 1, D3DXPC_VECTOR, D3DXPT_FLOAT, 1, 4, 1, {}}}, {2.0}, 1, instruction);
    AddVertexPass({}, ProgramComment("PRES", program));
    EXPECT_THAT(VertexFloats(3, 1), ElementsAre(2.0f, 4.0f, 6.0f, 8.0f));
    EndPass();
}

TEST_F(CompiledShaders, ShaderParametersAndTheirArrays)
{
    file.AddParameter(file.Int("choice", 1));
    const uint32_t first = file.lastObject + 1;
    file.lastObject += 2;
    file.AddParameter(
        {file.Put(file.ObjectType(D3DXPT_PIXELSHADER, "looks", 2)), file.Put({first, first + 1})});
    const auto shaderAt = [](uint16_t place) {
        return ShaderBytes(
            PlainPixelShader(),
            ProgramComment(
                "CTAB", ConstantTableWords(
                            {{"choice", 2, place, 1, D3DXPC_SCALAR, D3DXPT_FLOAT, 1, 1, 1, {}}})));
    };
    file.AddContent(first, shaderAt(3));
    file.AddContent(first + 1, shaderAt(4));
    AddPass({{0x93, 0, file.Object(D3DXPT_PIXELSHADER, "")}});
    std::vector<uint32_t> selector = {8};
    const std::vector<uint32_t> name = WordsOfBytes(std::string("looks\0\0\0", 8));
    selector.insert(selector.end(), name.begin(), name.end());
    const std::vector<uint32_t> index =
        ComputationWords({{"choice", 2, 0, 1, D3DXPC_SCALAR, D3DXPT_FLOAT, 1, 1, 1, {}}}, {}, 1,
                         {0x10000001u, 1, 0, 2, 0, 0, 4, 0});
    selector.insert(selector.end(), index.begin(), index.end());
    file.AddResource({0, 0, EffectFile::kNone, 0, EffectFile::kSelector}, BytesOfWords(selector));
    ASSERT_TRUE(Load());
    const float none[8] = {};
    device->SetPixelShaderConstantF(3, none, 2);
    BeginPass();
    EXPECT_EQ(PixelFloats(3, 1)[0], 0.0f) << "the first is not chosen";
    EXPECT_EQ(PixelFloats(4, 1)[0], 1.0f);
    EndPass();
}

TEST_F(CompiledShaders, WithoutCodeThereIsNoShader)
{
    AddPass({{0x93, 0, file.Object(D3DXPT_PIXELSHADER, "")}});
    file.AddContent(file.lastObject, "");
    ASSERT_TRUE(Load());
    Com<IDirect3DPixelShader9> before;
    const std::vector<DWORD> plain(PlainPixelShader().begin(), PlainPixelShader().end());
    ASSERT_EQ(device->CreatePixelShader(plain.data(), before.Out()), D3D_OK);
    ASSERT_EQ(device->SetPixelShader(before.Get()), D3D_OK);
    BeginPass();
    Com<IDirect3DPixelShader9> shader;
    ASSERT_EQ(device->GetPixelShader(shader.Out()), D3D_OK);
    EXPECT_FALSE(shader);
    EndPass();
}

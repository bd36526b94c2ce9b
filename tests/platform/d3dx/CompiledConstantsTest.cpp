// Constants of shaders that a state sets: one register is right.

#include "tests/platform/d3dx/CompiledEffectFixture.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class CompiledConstants : public CompiledEffectFixture {
protected:
    /// Sets all registers that the test looks at, and begins a pass with the states.
    void Begin(const std::vector<EffectFile::State>& states)
    {
        const std::vector<float> floats(64, -1.0f);
        const std::vector<int> wholes(16, -1);
        const BOOL truths[4] = {TRUE, TRUE, TRUE, TRUE};
        device->SetVertexShaderConstantF(0, floats.data(), 16);
        device->SetVertexShaderConstantI(0, wholes.data(), 4);
        device->SetVertexShaderConstantB(0, truths, 4);
        AddPass(states);
        ASSERT_TRUE(Load());
        BeginPass();
    }
};

} // namespace

TEST_F(CompiledConstants, MatricesSetTheirFirstRowAndZeros)
{
    std::vector<float> matrix;
    for (int i = 0; i < 16; ++i)
        matrix.push_back(static_cast<float>(i + 1));
    Begin({{0x94, 0, file.Matrix("", matrix)},
           {0x94, 5, file.Matrix("", std::vector<float>(16))},
           {0x96,
            1,
            {file.Put(file.NumberType(D3DXPT_INT, D3DXPC_MATRIX_ROWS, "", 2, 4)),
             file.Put({1, 2, 3, 4, 5, 6, 7, 8})}},
           {0x95,
            1,
            {file.Put(file.NumberType(D3DXPT_BOOL, D3DXPC_VECTOR, "", 1, 2)), file.Put({1, 1})}}});
    EndPass();
    const std::vector<float> first = {1, 2, 3, 4, 0, 0, 0,  0,  0,  0,
                                      0, 0, 0, 0, 0, 0, -1, -1, -1, -1};
    EXPECT_EQ(VertexFloats(0, 5), first);
    EXPECT_THAT(VertexFloats(8, 2), ElementsAre(0, 0, 0, 0, -1, -1, -1, -1));
    std::vector<int> wholes(16);
    device->GetVertexShaderConstantI(0, wholes.data(), 4);
    EXPECT_THAT(wholes, ElementsAre(-1, -1, -1, -1, 1, 2, 3, 4, 0, 0, 0, 0, -1, -1, -1, -1));
    std::vector<BOOL> truths(4);
    device->GetVertexShaderConstantB(0, truths.data(), 4);
    EXPECT_THAT(truths, ElementsAre(TRUE, TRUE, FALSE, TRUE));
}

TEST_F(CompiledConstants, ParametersOfSeveralRegistersDoTheSame)
{
    file.AddParameter(file.Matrix("m", std::vector<float>(16, 5.0f)));
    file.AddResource({0, 0, EffectFile::kNone, 0, EffectFile::kReference}, std::string("m\0", 2));
    Begin({{0x94, 0, file.Matrix("", std::vector<float>(16))}});
    EndPass();
    EXPECT_THAT(VertexFloats(0, 2), ElementsAre(5, 5, 5, 5, 0, 0, 0, 0));
}

TEST_F(CompiledConstants, ShorterValuesAreFilledWithZeros)
{
    Begin({{0x94, 0, file.Floats("", {1, 2, 3})},
           {0x94, 1, file.Float("", 7)},
           {0x94, 2, file.Floats("", {1, 2})}});
    EndPass();
    EXPECT_THAT(VertexFloats(0, 3), ElementsAre(1, 2, 3, 0, 7, 0, 0, 0, 1, 2, 0, 0));
}

// Computations in compiled effects: each operation, and where operands are.

#include "tests/platform/d3dx/CompiledEffectFixture.h"

#include <bit>
#include <cmath>

namespace {

class CompiledComputations : public CompiledEffectFixture {
protected:
    /// A pass whose only state, with the given value, is a computation that leaves a float.
    void AddComputed(const std::vector<uint32_t>& program)
    {
        AddPass({{0x3C, 0, file.Float("", 0.0f)}}); // PointSize
        file.AddResource({0, 0, EffectFile::kNone, 0, EffectFile::kCode}, BytesOfWords(program));
    }
    float PointSize() { return std::bit_cast<float>(Render(D3DRS_POINTSIZE)); }
    /// What a computation of `program` leaves with the parameters that the file has.
    float Computed(const std::vector<uint32_t>& program)
    {
        AddComputed(program);
        EXPECT_TRUE(Load());
        BeginPass();
        const float result = PointSize();
        EndPass();
        return result;
    }
};

/// An instruction on sources that each are a table and an offset.
std::vector<uint32_t> Instruction(uint32_t operation, uint32_t components,
                                  const std::vector<std::pair<uint32_t, uint32_t>>& sources,
                                  std::pair<uint32_t, uint32_t> target, bool isFirstScalar = false)
{
    std::vector<uint32_t> words = {(isFirstScalar ? 0x80000000u : 0u) | operation << 20 |
                                       components,
                                   static_cast<uint32_t>(sources.size())};
    for (const auto& [table, offset] : sources)
        words.insert(words.end(), {0, table, offset});
    words.insert(words.end(), {0, target.first, target.second});
    return words;
}

/// The system computes only what reads a parameter: a compiler leaves nothing else to compute.
const TableConstant kInput = {"v", 2, 0, 1, D3DXPC_SCALAR, D3DXPT_FLOAT, 1, 1, 1, {}};

constexpr uint32_t kLiterals = 1, kInputs = 2, kFloatsOut = 4, kTemporaries = 7;

} // namespace

TEST_F(CompiledComputations, ComputationsOfOneNumber)
{
    const struct {
        uint32_t operation;
        double input, result;
    } rows[] = {
        {0x100, 1.25, 1.25},
        {0x101, 1.25, -1.25},
        {0x103, 8.0, 0.125},
        {0x104, -1.25, 0.75},
        {0x105, 3.5, std::exp2(3.5)},
        {0x106, 10.0, std::log2(10.0)},
        {0x106, -10.0, std::log2(10.0)},
        {0x106, 0.0, 0.0},
        {0x107, 4.0, 0.5},
        {0x107, -4.0, 0.5},
        {0x108, 0.5, std::sin(0.5)},
        {0x109, 0.5, std::cos(0.5)},
        {0x10A, 0.5, std::asin(0.5)},
        {0x10B, 0.5, std::acos(0.5)},
        {0x10C, 0.5, std::atan(0.5)},
    };
    for (const auto& row : rows) {
        file = {};
        file.AddParameter(file.Float("v", static_cast<float>(row.input)));
        EXPECT_FLOAT_EQ(
            Computed(ComputationWords(
                {kInput}, {}, 1, Instruction(row.operation, 1, {{kInputs, 0}}, {kFloatsOut, 0}))),
            static_cast<float>(row.result))
            << std::hex << row.operation << " of " << row.input;
    }
}

TEST_F(CompiledComputations, ComputationsOfSeveralNumbers)
{
    const struct {
        uint32_t operation;
        std::vector<double> inputs;
        double result;
    } rows[] = {
        {0x200, {2.0, -3.0}, -3.0},
        {0x201, {2.0, -3.0}, 2.0},
        {0x202, {2.0, 3.0}, 1.0},
        {0x202, {3.0, 3.0}, 0.0},
        {0x203, {3.0, 3.0}, 1.0},
        {0x203, {2.0, 3.0}, 0.0},
        {0x204, {2.0, 3.0}, 5.0},
        {0x205, {2.0, 3.0}, 6.0},
        {0x206, {1.0, -2.0}, std::atan2(1.0, -2.0)},
        {0x208, {6.0, 3.0}, 0.0},
        {0x300, {0.0, 4.0, 5.0}, 4.0},
        {0x300, {-0.5, 4.0, 5.0}, 5.0},
        {0x70E, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}, 32.0},
        {0x70E, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0}, 70.0},
    };
    for (const auto& row : rows) {
        file = {};
        file.AddParameter(file.Float("v", static_cast<float>(row.inputs[0])));
        std::vector<std::pair<uint32_t, uint32_t>> sources = {{kInputs, 0}};
        for (uint32_t i = 1; i < row.inputs.size(); ++i)
            sources.emplace_back(kLiterals, i);
        EXPECT_FLOAT_EQ(
            Computed(ComputationWords({kInput}, row.inputs, 1,
                                      Instruction(row.operation, 1, sources, {kFloatsOut, 0}))),
            static_cast<float>(row.result))
            << std::hex << row.operation;
    }
}

/// r = in * literal by components, the first of which stands for all; then the scalar product with itself.
TEST_F(CompiledComputations, ComputationReadsParametersAndKeepsTemporaries)
{
    file.AddParameter(file.Floats("v", {1.0f, 2.0f, 3.0f, 4.0f}));
    std::vector<uint32_t> code =
        Instruction(0x205, 3, {{kLiterals, 1}, {kInputs, 4}}, {kTemporaries, 0}, true);
    const std::vector<uint32_t> dot =
        Instruction(0x500, 3, {{kTemporaries, 0}, {kTemporaries, 0}}, {kFloatsOut, 0});
    code.insert(code.end(), dot.begin(), dot.end());
    AddComputed(ComputationWords({{"v", 2, 1, 1, D3DXPC_VECTOR, D3DXPT_FLOAT, 1, 4, 1, {}}},
                                 {9.0, 0.5, 7.0, 7.0}, 2, code));
    ASSERT_TRUE(Load());
    BeginPass();
    EXPECT_EQ(PointSize(), 0.25f * (1.0f + 4.0f + 9.0f));
    const D3DXVECTOR4 changed(2.0f, 0.0f, 0.0f, 0.0f);
    ASSERT_EQ(effect->SetVector("v", &changed), D3D_OK);
    ASSERT_EQ(effect->CommitChanges(), D3D_OK);
    EXPECT_EQ(PointSize(), 1.0f);
    EndPass();
}

TEST_F(CompiledComputations, ComputationForAnIntegerStateGivesAnInteger)
{
    file.AddParameter(file.Float("f", 2.0f));
    AddPass({{0x08, 0, file.Int("", 0)}});
    file.AddResource({0, 0, EffectFile::kNone, 0, EffectFile::kCode},
                     BytesOfWords(ComputationWords(
                         {{"f", 2, 0, 1, D3DXPC_SCALAR, D3DXPT_FLOAT, 1, 1, 1, {}}}, {1.0}, 1,
                         Instruction(0x204, 1, {{kInputs, 0}, {kLiterals, 0}}, {kFloatsOut, 0}))));
    ASSERT_TRUE(Load());
    BeginPass();
    EXPECT_EQ(Render(D3DRS_CULLMODE), DWORD{D3DCULL_CCW});
    EndPass();
}

// ---- Operands that an index chooses

namespace {

/// `mov result, table[index + first].component`; the index is the first number of an input register.
std::vector<uint32_t> Chosen(uint32_t table, uint32_t first, uint32_t component,
                             uint32_t indexRegister)
{
    return {0x10000001, 1,          1, kInputs, indexRegister * 4, table, first * 4 + component,
            0,          kFloatsOut, 0};
}

} // namespace

/// Four registers of inputs and that of the index make five, so numbers repeat after eight; from the fifth to the
/// seventh there is nothing. The index is rounded to the nearest whole number, half ways to an even one.
TEST_F(CompiledComputations, InputsAreChosenByAnIndex)
{
    const struct {
        float index;
        uint32_t first;
        float result;
    } rows[] = {{0, 0, 20},    {1, 0, 21},    {2, 1, 23},    {3, 0, 23},   {5, 0, 0},   {7, 0, 0},
                {8, 0, 20},    {9, 2, 23},    {-1, 1, 20},   {-1, 0, 0},   {-8, 1, 21}, {-6, 1, 23},
                {0.4f, 0, 20}, {0.6f, 0, 21}, {1.5f, 0, 22}, {2.5f, 0, 22}};
    for (const auto& row : rows) {
        file = {};
        std::vector<uint32_t> values;
        for (int i = 0; i < 4; ++i)
            for (int component = 0; component < 4; ++component)
                values.push_back(
                    std::bit_cast<uint32_t>(static_cast<float>(10 * component + 10 + i)));
        file.AddParameter({file.Put(file.NumberType(D3DXPT_FLOAT, D3DXPC_VECTOR, "v", 1, 4, 4)),
                           file.Put(values)});
        file.AddParameter(file.Float("n", row.index));
        EXPECT_EQ(
            Computed(ComputationWords({{"v", 2, 0, 4, D3DXPC_VECTOR, D3DXPT_FLOAT, 1, 4, 4, {}},
                                       {"n", 2, 4, 1, D3DXPC_SCALAR, D3DXPT_FLOAT, 1, 1, 1, {}}},
                                      {}, 1, Chosen(kInputs, row.first, 1, 4))),
            row.result)
            << row.index << " + " << row.first;
    }
}

/// Three registers of literals; those beyond begin anew.
TEST_F(CompiledComputations, LiteralsAreChosenByAnIndex)
{
    const std::vector<double> literals = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    const struct {
        float index;
        float result;
    } rows[] = {{0, 3}, {1, 7}, {2, 11}, {3, 3}, {4, 7}};
    for (const auto& row : rows) {
        file = {};
        file.AddParameter(file.Float("v", row.index));
        EXPECT_EQ(Computed(ComputationWords({kInput}, literals, 1, Chosen(kLiterals, 0, 2, 0))),
                  row.result)
            << row.index;
    }
}

#include "gfx/KRE_StageProgram.h"

#include <gmock/gmock.h>
#include <vector>

namespace {

std::vector<DWORD> ValuesOf(const KRE_StageProgram& program)
{
    std::vector<DWORD> values;
    for (const KRE_StageState& state : program)
        values.push_back(state.value);
    return values;
}

} // namespace

TEST(KRE_StageProgram, KeepsTheLastValueAtTheFirstPlace)
{
    KRE_StageProgram program;
    program.Put(0, D3DTSS_COLOROP, 1);
    program.Put(1, D3DTSS_COLOROP, 2);
    program.Put(0, D3DTSS_COLOROP, 3);
    program.Put(0, D3DTSS_ALPHAOP, 4);
    EXPECT_EQ(ValuesOf(program), (std::vector<DWORD>{3, 2, 4}));
    EXPECT_EQ(program.begin()->stage, 0);
    EXPECT_EQ(program.begin()->type, D3DTSS_COLOROP);
}

TEST(KRE_StageProgram, ForgetsEverythingWhenCleared)
{
    KRE_StageProgram program;
    EXPECT_THAT(ValuesOf(program), testing::IsEmpty());
    program.Put(0, D3DTSS_COLOROP, 1);
    program.Put(1, D3DTSS_COLOROP, 2);
    program.Clear();
    EXPECT_THAT(ValuesOf(program), testing::IsEmpty());
    program.Put(1, D3DTSS_COLOROP, 5);
    program.Put(0, D3DTSS_COLOROP, 6);
    program.Put(1, D3DTSS_COLOROP, 7);
    EXPECT_EQ(ValuesOf(program), (std::vector<DWORD>{7, 6})) << "old places do not count";
}

TEST(KRE_StageProgram, HoldsEveryStateThereIs)
{
    KRE_StageProgram program;
    std::vector<DWORD> expected;
    for (int32_t round = 0; round < 2; ++round) {
        expected.clear();
        for (int32_t stage = 0; stage < KRE_StageProgram::kStages; ++stage) {
            for (int32_t type = 0; type < KRE_StageProgram::kTypes; ++type) {
                expected.push_back(static_cast<DWORD>(1000 * round + 100 * stage + type));
                program.Put(stage, static_cast<D3DTEXTURESTAGESTATETYPE>(type), expected.back());
            }
        }
    }
    EXPECT_EQ(ValuesOf(program), expected);
}

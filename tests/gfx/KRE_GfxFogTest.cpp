#include "tests/gfx/EngineTest.h"

using testing::ElementsAre;

namespace {

class Fog : public EngineTest {
protected:
    Fog() { Start(); }
};

constexpr KRE_FogRecord kFog = {0xFF808080, D3DFOG_LINEAR, 0, 10.0f, 100.0f, 0.25f};

} // namespace

// What a device itself starts with.
TEST(KRE_FogRecord, StartsWithoutFogFromZeroToOneAtDensityOne)
{
    const KRE_FogRecord record;
    EXPECT_EQ(record.color, 0u);
    EXPECT_EQ(record.mode, D3DFOG_NONE);
    EXPECT_EQ(record.tableFlag, 0);
    EXPECT_EQ(record.start, 0.0f);
    EXPECT_EQ(record.end, 1.0f);
    EXPECT_EQ(record.density, 1.0f);
}

TEST_F(Fog, LinearFogHasStartAndEnd)
{
    gfx.SetFog(kFog);
    EXPECT_THAT(Calls(),
                ElementsAre("SetRenderState D3DRS_FOGCOLOR 0xFF808080",
                            "SetRenderState D3DRS_FOGTABLEMODE D3DFOG_LINEAR",
                            "SetRenderState D3DRS_FOGSTART 10", "SetRenderState D3DRS_FOGEND 100"));
    EXPECT_EQ(gfx.fog.end, 100.0f);
}

TEST_F(Fog, ExponentialFogHasADensity)
{
    for (const auto& [mode, name] :
         {std::pair{D3DFOG_EXP, "D3DFOG_EXP"}, std::pair{D3DFOG_EXP2, "D3DFOG_EXP2"}}) {
        KRE_FogRecord record = kFog;
        record.mode = mode;
        gfx.SetFog(record);
        EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_FOGCOLOR 0xFF808080",
                                         std::string("SetRenderState D3DRS_FOGTABLEMODE ") + name,
                                         "SetRenderState D3DRS_FOGDENSITY 0.25"));
    }
}

TEST_F(Fog, QuirkTableFlagMeansVertexFogByRange)
{
    KRE_FogRecord record = kFog;
    record.tableFlag = 1;
    gfx.SetFog(record);
    EXPECT_THAT(Calls(),
                ElementsAre("SetRenderState D3DRS_FOGCOLOR 0xFF808080",
                            "SetRenderState D3DRS_FOGVERTEXMODE D3DFOG_LINEAR",
                            "SetRenderState D3DRS_RANGEFOGENABLE 1",
                            "SetRenderState D3DRS_FOGSTART 10", "SetRenderState D3DRS_FOGEND 100"));
}

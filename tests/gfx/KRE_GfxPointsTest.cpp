#include "tests/gfx/EngineTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Points : public EngineTest {
protected:
    Points() { Start(); }
};

} // namespace

TEST(KRE_PointRecord, StartsWithPointsOfFourPixelsAndNothingInItsUnusedPart)
{
    const KRE_PointRecord record;
    EXPECT_EQ(record.scaleA, 1.0f);
    EXPECT_EQ(record.scaleB, 0.0f);
    EXPECT_EQ(record.scaleC, 0.0f);
    EXPECT_EQ(record.sizeMax, 64.0f);
    EXPECT_EQ(record.sizeMin, 1.0f);
    EXPECT_EQ(record.size, 4.0f);
    EXPECT_EQ(record.spriteEnable, 0);
    EXPECT_EQ(record.scaleEnable, 0);
    EXPECT_EQ(record.pad, 0);
}

TEST_F(Points, EachValueIsSentIfItIsNew)
{
    KRE_PointRecord record;
    gfx.SetPointParameters(record, 0);
    EXPECT_THAT(
        Calls(),
        ElementsAre("SetRenderState D3DRS_POINTSPRITEENABLE 0",
                    "SetRenderState D3DRS_POINTSCALEENABLE 0", "SetRenderState D3DRS_POINTSIZE 4",
                    "SetRenderState D3DRS_POINTSIZE_MIN 1", "SetRenderState D3DRS_POINTSIZE_MAX 64",
                    "SetRenderState D3DRS_POINTSCALE_A 1", "SetRenderState D3DRS_POINTSCALE_B 0",
                    "SetRenderState D3DRS_POINTSCALE_C 0"));
    gfx.SetPointParameters(record, 0);
    EXPECT_THAT(Calls(), IsEmpty());
    record.spriteEnable = 1;
    record.scaleB = 0.5f;
    gfx.SetPointParameters(record, 0);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_POINTSPRITEENABLE 1",
                                     "SetRenderState D3DRS_POINTSCALE_B 0.5"));
}

TEST_F(Points, TooLargeAMaximumIsLoweredWithAWarningWhenPointsScale)
{
    static const struct {
        const char* what;
        float hardware;
        int32_t sprites, scaleEnable;
        float sizeMax, expected;
    } cases[] = {
        {"hardware's limit", 32.0f, 1, 1, 50.0f, 32.0f},
        {"within the hardware's limit", 32.0f, 1, 1, 32.0f, 32.0f},
        {"software draws up to 64", 32.0f, 0, 1, 50.0f, 50.0f},
        {"and no more", 32.0f, 0, 1, 70.0f, 64.0f},
        {"hardware may do more than software", 256.0f, 0, 1, 200.0f, 200.0f},
        {"without scaling nobody looks", 32.0f, 1, 0, 500.0f, 500.0f},
    };
    for (const auto& c : cases) {
        gfx.caps.MaxPointSize = c.hardware;
        KRE_PointRecord record;
        record.scaleEnable = c.scaleEnable;
        record.sizeMax = c.sizeMax;
        gfx.SetPointParameters(record, c.sprites);
        EXPECT_EQ(record.sizeMax, c.expected) << c.what;
        EXPECT_EQ(LastWarning().empty(), c.sizeMax == c.expected) << c.what;
    }
}

TEST_F(Points, WarningNamesBothSizes)
{
    gfx.caps.MaxPointSize = 32.0f;
    KRE_PointRecord record;
    record.scaleEnable = 1;
    gfx.SetPointParameters(record, 1);
    EXPECT_EQ(LastWarning(), "Point size max adjusted from 64.000000 to 32.000000");
}

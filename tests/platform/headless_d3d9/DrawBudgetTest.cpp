// What a frame may take.

#include "platform/CutDraw.h"
#include "platform/headless/d3d9/Audience.h"
#include "platform/headless/d3d9/Rasterizer.h"
#include "tests/platform/headless_d3d9/DrawFixture.h"

namespace {

/// A triangle over all 64 pixels costs these and 16 for itself.
constexpr uint64_t kCost = 64 + 16;

class DrawBudget : public DrawTest {
protected:
    void SetUp() override
    {
        DrawTest::SetUp();
        TakeCutFrame();
    }
    void TearDown() override
    {
        headless::gFrameBudget = headless::kFrameBudget;
        DrawTest::TearDown();
    }

    /// One draw of triangles in these colours, one over the other.
    void Cover(const std::vector<D3DCOLOR>& colours)
    {
        std::vector<ScreenVertex> corners;
        for (const D3DCOLOR colour : colours) {
            corners.push_back({-0.5f, -0.5f, 0.5f, 1, colour});
            corners.push_back({15.5f, -0.5f, 0.5f, 1, colour});
            corners.push_back({-0.5f, 15.5f, 0.5f, 1, colour});
        }
        EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, static_cast<UINT>(colours.size()), corners), D3D_OK);
    }
};

} // namespace

TEST_F(DrawBudget, TheRestOfADrawIsLeftOut)
{
    // A triangle's pixels count when the next one is drawn: before the fifth, 3 * 64 + 4 * 16 = 256.
    headless::gFrameBudget = 256;
    Cover({0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004, 0xFF000005, 0xFF000006});
    EXPECT_EQ(Pixel(0, 0), 0xFF000004u);
    EXPECT_EQ(Pixel(7, 7), 0xFF000004u);
    EXPECT_TRUE(TakeCutFrame());
    EXPECT_FALSE(TakeCutFrame());
}

TEST_F(DrawBudget, AFrameMayUseItUp)
{
    headless::gFrameBudget = 2 * kCost;
    Cover({0xFF000001});
    Cover({0xFF000002});
    EXPECT_EQ(Pixel(0, 0), 0xFF000002u);
    EXPECT_FALSE(TakeCutFrame()) << "nothing was left out";
}

TEST_F(DrawBudget, LaterDrawsOfTheFrameAreLeftOutAndToldOnce)
{
    headless::gFrameBudget = 2 * kCost;
    Cover({0xFF000001});
    Cover({0xFF000002});
    Cover({0xFF000003});
    EXPECT_TRUE(TakeCutFrame());
    Cover({0xFF000004});
    EXPECT_FALSE(TakeCutFrame());
    EXPECT_EQ(Pixel(0, 0), 0xFF000002u);
}

TEST_F(DrawBudget, EachFrameHasItsOwn)
{
    headless::gFrameBudget = kCost;
    for (const D3DCOLOR colour : {0xFF000001u, 0xFF000002u}) {
        Cover({colour});
        EXPECT_FALSE(TakeCutFrame());
        Cover({0xFF000009});
        EXPECT_TRUE(TakeCutFrame());
        EXPECT_EQ(Pixel(0, 0), colour);
        ASSERT_EQ(device->EndScene(), D3D_OK);
        ASSERT_EQ(device->Present(nullptr, nullptr, nullptr, nullptr), D3D_OK);
        ASSERT_EQ(device->BeginScene(), D3D_OK);
    }
}

TEST_F(DrawBudget, PrimitivesWithoutPixelsCountToo)
{
    headless::gFrameBudget = 32;
    const std::vector<ScreenVertex> outside(9, ScreenVertex{-50, -50});
    EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, 2, outside), D3D_OK);
    EXPECT_FALSE(TakeCutFrame());
    EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, 1, outside), D3D_OK);
    EXPECT_TRUE(TakeCutFrame());
}

TEST_F(DrawBudget, LinesAndPointsCount)
{
    headless::gFrameBudget = 16 + 8 + 16 + 4;
    const std::vector<ScreenVertex> line = {{0, 0, 0.5f, 1, 0xFF000001},
                                            {8, 0, 0.5f, 1, 0xFF000001}};
    EXPECT_EQ(Draw(D3DPT_LINELIST, 1, line), D3D_OK); // 8 pixels of the target
    State(D3DRS_POINTSIZE, 2.0f);
    const std::vector<ScreenVertex> point = {{3.5f, 3.5f, 0.5f, 1, 0xFF000002}};
    EXPECT_EQ(Draw(D3DPT_POINTLIST, 1, point), D3D_OK); // 4 pixels
    EXPECT_EQ(Pixel(3, 3), 0xFF000002u);
    EXPECT_FALSE(TakeCutFrame());
    Cover({0xFF000003});
    EXPECT_TRUE(TakeCutFrame());
}

TEST_F(DrawBudget, WithoutAnAudienceNothingIsTooMuch)
{
    headless::gFrameBudget = 1;
    headless::DismissAudience();
    Cover({0xFF000001, 0xFF000002});
    Cover({0xFF000003});
    headless::RecallAudience();
    EXPECT_FALSE(TakeCutFrame());
}

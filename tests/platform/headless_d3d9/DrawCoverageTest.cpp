// Which pixels belong to a primitive. Pixel centres are at integers.

#include "tests/platform/headless_d3d9/DrawFixture.h"

#include <limits>

namespace {

using DrawCoverageTest = DrawTest;

} // namespace

/// The long edge runs from (4, 0) to (0, 4), through centres with x + y = 4. It is a right edge, so
/// these are outside; the upper edge at y = 0 and the left one at x = 0 belong to the triangle.
/// That leaves x + y <= 3.
TEST_F(DrawCoverageTest, UpperAndLeftEdgesBelongToATriangle)
{
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1, {{0, 0}, {4, 0}, {0, 4}}), D3D_OK);
    EXPECT_EQ(Coverage(), "####....\n"
                          "###.....\n"
                          "##......\n"
                          "#.......\n"
                          "........\n"
                          "........\n"
                          "........\n"
                          "........\n");
}

/// The other half of the square: it includes the long edge, which is its left one, and excludes the
/// right edge at x = 4 and the lower one at y = 4.
TEST_F(DrawCoverageTest, TheOtherHalfTakesWhatTheFirstLeft)
{
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1, {{4, 0}, {4, 4}, {0, 4}}), D3D_OK);
    EXPECT_EQ(Coverage(), "........\n"
                          "...#....\n"
                          "..##....\n"
                          ".###....\n"
                          "........\n"
                          "........\n"
                          "........\n"
                          "........\n");
}

/// With additive blending, a pixel drawn twice would be 2, a missed one 0.
TEST_F(DrawCoverageTest, NeighboursLeaveNoGapAndNoOverlap)
{
    State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_SRCBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    std::vector<ScreenVertex> fan = {{3.37f, 4.61f}};
    const float ring[][2] = {{-1, -1},  {2.9f, -1}, {9, -1},    {9, 3.3f}, {9, 9},
                             {5.1f, 9}, {-1, 9},    {-1, 4.2f}, {-1, -1}};
    for (const auto& place : ring)
        fan.push_back({place[0], place[1]});
    for (ScreenVertex& vertex : fan)
        vertex.diffuse = 0x01010101;
    ASSERT_EQ(Draw(D3DPT_TRIANGLEFAN, 8, fan), D3D_OK);
    EXPECT_EQ(Pixels(), std::vector<uint32_t>(64, 0x01010101));
}

TEST_F(DrawCoverageTest, CullingFollowsTheWinding)
{
    // On the screen, with y downwards, the first is clockwise, the second counterclockwise.
    const std::vector<ScreenVertex> clockwise = {{0, 0}, {4, 0}, {0, 4}};
    const std::vector<ScreenVertex> other = {{0, 0}, {0, 4}, {4, 0}};
    static const struct {
        const char* what;
        DWORD mode;
        bool drawsClockwise, drawsOther;
    } cases[] = {
        {"none", D3DCULL_NONE, true, true},
        {"clockwise", D3DCULL_CW, false, true},
        {"counter-clockwise", D3DCULL_CCW, true, false},
    };
    for (const auto& c : cases) {
        State(D3DRS_CULLMODE, c.mode);
        for (const bool isClockwise : {true, false}) {
            device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0);
            ASSERT_EQ(Draw(D3DPT_TRIANGLELIST, 1, isClockwise ? clockwise : other), D3D_OK);
            EXPECT_EQ(Pixel(0, 0) != 0, isClockwise ? c.drawsClockwise : c.drawsOther) << c.what;
        }
    }
}

/// All triangles of a strip or fan must have the same winding, or half of them would be culled.
TEST_F(DrawCoverageTest, StripsAndFansKeepTheirWinding)
{
    State(D3DRS_CULLMODE, static_cast<DWORD>(D3DCULL_CCW));
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLESTRIP, 4,
                                 {{0, 0}, {4, 0}, {0, 2}, {4, 2}, {0, 4}, {4, 4}}),
              D3D_OK);
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLEFAN, 2, {{4, 4}, {8, 4}, {8, 8}, {4, 8}}), D3D_OK);
    EXPECT_EQ(Coverage(), "####....\n"
                          "####....\n"
                          "####....\n"
                          "####....\n"
                          "....####\n"
                          "....####\n"
                          "....####\n"
                          "....####\n");
}

/// A square of side 3 around (3, 2) spans 1.5 to 4.5 and 0.5 to 3.5.
TEST_F(DrawCoverageTest, APointIsASquareAroundItsPlace)
{
    State(D3DRS_POINTSIZE, 3.0f);
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_POINTLIST, 1, {{3, 2}}), D3D_OK);
    EXPECT_EQ(Coverage(), "........\n"
                          "..###...\n"
                          "..###...\n"
                          "..###...\n"
                          "........\n"
                          "........\n"
                          "........\n"
                          "........\n");
}

TEST_F(DrawCoverageTest, PointSizeIsClamped)
{
    State(D3DRS_POINTSIZE_MIN, 2.0f);
    State(D3DRS_POINTSIZE_MAX, 4.0f);
    State(D3DRS_POINTSIZE, 1.0f);
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_POINTLIST, 1, {{1.5f, 1.5f}}), D3D_OK);
    State(D3DRS_POINTSIZE, 100.0f);
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_POINTLIST, 1, {{5.5f, 5.5f}}), D3D_OK);
    EXPECT_EQ(Coverage(), "........\n"
                          ".##.....\n"
                          ".##.....\n"
                          "........\n"
                          "....####\n"
                          "....####\n"
                          "....####\n"
                          "....####\n");
}

TEST_F(DrawCoverageTest, TheLastPixelOfALineIsOptional)
{
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_LINELIST, 1, {{1, 1}, {5, 1}}), D3D_OK);
    State(D3DRS_LASTPIXEL, static_cast<DWORD>(FALSE));
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_LINELIST, 1, {{1, 3}, {5, 3}}), D3D_OK);
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_LINELIST, 1, {{7, 6}, {7, 2}}), D3D_OK);
    EXPECT_EQ(Coverage(), "........\n"
                          ".#####..\n"
                          "........\n"
                          ".####..#\n"
                          ".......#\n"
                          ".......#\n"
                          ".......#\n"
                          "........\n");
}

/// From (0, 0) to (6, 3) each step right is half a step down; the positions halfway, at y = 0.5,
/// 1.5 and 2.5, go to the lower pixel.
TEST_F(DrawCoverageTest, ALineHasOnePixelPerStepOfItsMajorAxis)
{
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_LINELIST, 1, {{0, 0}, {6, 3}}), D3D_OK);
    EXPECT_EQ(Coverage(), "#.......\n"
                          ".##.....\n"
                          "...##...\n"
                          ".....##.\n"
                          "........\n"
                          "........\n"
                          "........\n"
                          "........\n");
}

/// The shared corner of a strip's lines is drawn once: with additive blending it is no brighter
/// than the rest.
TEST_F(DrawCoverageTest, LinesOfAStripMeetInOnePixel)
{
    State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    std::vector<ScreenVertex> strip = {{1, 1}, {5, 1}, {5, 5}};
    for (ScreenVertex& vertex : strip)
        vertex.diffuse = 0x40404040;
    ASSERT_EQ(Draw(D3DPT_LINESTRIP, 2, strip), D3D_OK);
    EXPECT_EQ(Pixel(5, 1), 0x40404040u);
    EXPECT_EQ(Pixel(5, 5), 0x40404040u) << "the end of the strip";
}

TEST_F(DrawCoverageTest, WireframeDrawsOnlyTheEdges)
{
    State(D3DRS_FILLMODE, static_cast<DWORD>(D3DFILL_WIREFRAME));
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1, {{0, 0}, {6, 0}, {0, 6}}), D3D_OK);
    EXPECT_EQ(Coverage(), "#######.\n"
                          "#....#..\n"
                          "#...#...\n"
                          "#..#....\n"
                          "#.#.....\n"
                          "##......\n"
                          "#.......\n"
                          "........\n");
}

TEST_F(DrawCoverageTest, QuirkPointFillIgnoresThePointSize)
{
    State(D3DRS_FILLMODE, static_cast<DWORD>(D3DFILL_POINT));
    State(D3DRS_POINTSIZE, 4.0f);
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1, {{1, 1}, {6, 1}, {1, 6}}), D3D_OK);
    EXPECT_EQ(Coverage(), "........\n"
                          ".#....#.\n"
                          "........\n"
                          "........\n"
                          "........\n"
                          "........\n"
                          ".#......\n"
                          "........\n");
}

TEST_F(DrawCoverageTest, NothingLeavesTheViewportOrTheScissorRectangle)
{
    const D3DVIEWPORT9 viewport = {2, 1, 4, 6, 0.0f, 1.0f};
    ASSERT_EQ(device->SetViewport(&viewport), D3D_OK);
    const RECT scissor = {0, 3, 5, 100};
    ASSERT_EQ(device->SetScissorRect(&scissor), D3D_OK);
    State(D3DRS_SCISSORTESTENABLE, static_cast<DWORD>(TRUE));
    Fill(-100, -100, 100, 100, 0xFFFFFFFF);
    EXPECT_EQ(Coverage(), "........\n"
                          "........\n"
                          "........\n"
                          "..###...\n"
                          "..###...\n"
                          "..###...\n"
                          "..###...\n"
                          "........\n");
}

TEST_F(DrawCoverageTest, NonFinitePositionsDrawNothing)
{
    const float bad[] = {std::numeric_limits<float>::quiet_NaN(),
                         std::numeric_limits<float>::infinity(),
                         -std::numeric_limits<float>::infinity()};
    for (const float value : bad) {
        for (const D3DPRIMITIVETYPE type : {D3DPT_TRIANGLELIST, D3DPT_POINTLIST, D3DPT_LINELIST}) {
            ASSERT_EQ(Draw<ScreenVertex>(type, 1, {{value, 1}, {value, 5}, {1, value}}), D3D_OK);
            ASSERT_EQ(Draw<ScreenVertex>(type, 1, {{1, 1, value}, {5, 5, value}, {1, 5, value}}),
                      D3D_OK);
        }
    }
    EXPECT_EQ(Coverage().find('#'), std::string::npos);
}

TEST_F(DrawCoverageTest, HugeTrianglesAreCutAndCoverTheTarget)
{
    ASSERT_EQ(
        Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1, {{-3e8f, -3e8f}, {6e8f, -3e8f}, {-3e8f, 6e8f}}),
        D3D_OK);
    EXPECT_EQ(Coverage().find('.'), std::string::npos);
}

TEST_F(DrawCoverageTest, TrianglesWithoutAreaDrawNothing)
{
    ASSERT_EQ(
        Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 2, {{1, 1}, {5, 5}, {3, 3}, {2, 2}, {2, 2}, {2, 2}}),
        D3D_OK);
    EXPECT_EQ(Coverage().find('#'), std::string::npos);
}

#include <cmath>

#include "scene/KRE_Camera.h"
#include "tests/gfx/EngineTest.h"

class KRE_GfxCameraTest : public EngineTest {
protected:
    KRE_GfxCameraTest() { Start(); }

    void ExpectView(const float (&expected)[4][4])
    {
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column)
                EXPECT_NEAR(gfx.view.m[row][column], expected[row][column], 1e-5f)
                    << "row " << row << " column " << column;
    }
};

TEST_F(KRE_GfxCameraTest, SetLookAtStoresAndSendsTheView)
{
    // Five units before the origin, looking along +Z: the world moves five units away.
    gfx.SetLookAt({0, 0, -5}, {0, 0, 0}, {0, 1, 0});
    ExpectView({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 5, 1}});
    EXPECT_EQ(CallsOf("SetTransform").size(), 1u);
}

TEST_F(KRE_GfxCameraTest, SetCameraLooksAlongMinusZOfTheNode)
{
    // The view's z axis is (0, 0, -1), its x axis up x z = (-1, 0, 0), its y axis (0, 1, 0); the
    // translation is minus the eye (1, 2, 3) along each.
    KRE_Camera camera;
    camera.position = {1, 2, 3};
    camera.Evaluate(1, 1, 0);
    gfx.SetCamera(camera, nullptr);
    ExpectView({{-1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, -1, 0}, {1, -2, 3, 1}});
}

TEST_F(KRE_GfxCameraTest, QuirkAPivotMovesTheDirectionAsAPoint)
{
    // A pivot that moves by (0, 0, 2): the eye goes to (1, 2, 5), the direction (0, 0, -1) to (0,
    // 0, 1). The up vector becomes (0, 1, 2); the view drops its part along z.
    KRE_Camera camera;
    camera.pivotTM._43 = 2;
    camera.position = {1, 2, 3};
    camera.Evaluate(1, 1, 0);
    gfx.SetCamera(camera, nullptr);
    ExpectView({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {-1, -2, -5, 1}});
}

TEST_F(KRE_GfxCameraTest, TheExtraMatrixMovesTheCamera)
{
    // A move by (0, 0, 3): the eye from the origin to (0, 0, 3), the direction to (0, 0, 2).
    KRE_Camera camera;
    camera.Evaluate(1, 1, 0);
    D3DXMATRIX extra;
    D3DXMatrixTranslation(&extra, 0, 0, 3);
    gfx.SetCamera(camera, &extra);
    ExpectView({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, -3, 1}});
}

TEST_F(KRE_GfxCameraTest, SetCameraTakesItsFieldOfViewAndKeepsNearAndFar)
{
    gfx.SetProjection(2, 50, 1, 1);
    gfx.viewport.Width = 640;
    gfx.viewport.Height = 480;
    KRE_Camera camera;
    camera.fov = 1.5f;
    camera.Evaluate(1, 1, 0);
    gfx.SetCamera(camera, nullptr);
    // The y scale is the cotangent of half the angle, the x scale that over 640 / 480.
    EXPECT_NEAR(gfx.projection._22, 1 / std::tan(0.75), 1e-5);
    EXPECT_NEAR(gfx.projection._11, 480 / std::tan(0.75) / 640, 1e-5);
    EXPECT_EQ(gfx.nearZ, 2.0f);
    EXPECT_EQ(gfx.farZ, 50.0f);
    EXPECT_NEAR(gfx.projection._33, 50.0 / 48, 1e-5);
}

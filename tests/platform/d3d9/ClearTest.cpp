#include "tests/platform/d3d9/DeviceTestFixture.h"

namespace {

class ClearTest : public DeviceTest {
protected:
    /// An all-black back buffer.
    void SetUp() override
    {
        DeviceTest::SetUp();
        ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0), D3D_OK);
    }

    /// Expects the colour inside `area` and black outside.
    void ExpectOnly(const RECT& area, uint32_t colour)
    {
        const std::vector<uint32_t> pixels = ReadBackBuffer();
        int wrong = 0;
        for (LONG y = 0; y < 48; ++y)
            for (LONG x = 0; x < 64; ++x) {
                const bool inside =
                    x >= area.left && x < area.right && y >= area.top && y < area.bottom;
                const uint32_t expected = inside ? colour : 0;
                wrong += pixels[static_cast<size_t>(y * 64 + x)] != expected;
            }
        EXPECT_EQ(wrong, 0) << "pixels differ";
    }
};

} // namespace

TEST_F(ClearTest, FillsTheTarget)
{
    EXPECT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0xFF102030, 1.0f, 0),
              D3D_OK);
    ExpectOnly({0, 0, 64, 48}, 0x102030);
}

TEST_F(ClearTest, FillsOnlyTheRectangles)
{
    const D3DRECT rects[] = {{4, 6, 10, 8}};
    EXPECT_EQ(device->Clear(1, rects, D3DCLEAR_TARGET, 0xFFFF0000, 1.0f, 0), D3D_OK);
    ExpectOnly({4, 6, 10, 8}, 0xFF0000);
}

TEST_F(ClearTest, StaysInsideTheViewport)
{
    const D3DVIEWPORT9 viewport = {8, 4, 16, 12, 0.0f, 1.0f};
    ASSERT_EQ(device->SetViewport(&viewport), D3D_OK);
    EXPECT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF00FF00, 1.0f, 0), D3D_OK);
    ExpectOnly({8, 4, 24, 16}, 0x00FF00);
}

TEST_F(ClearTest, ClipsRectanglesToTheViewport)
{
    const D3DVIEWPORT9 viewport = {8, 4, 16, 12, 0.0f, 1.0f};
    ASSERT_EQ(device->SetViewport(&viewport), D3D_OK);
    const D3DRECT rects[] = {{-100, 10, 12, 1000}};
    EXPECT_EQ(device->Clear(1, rects, D3DCLEAR_TARGET, 0xFF0000FF, 1.0f, 0), D3D_OK);
    ExpectOnly({8, 10, 12, 16}, 0x0000FF);
}

TEST_F(ClearTest, StaysInsideAnEnabledScissorRectangle)
{
    const RECT scissor = {2, 3, 5, 7};
    ASSERT_EQ(device->SetScissorRect(&scissor), D3D_OK);
    ASSERT_EQ(device->SetRenderState(D3DRS_SCISSORTESTENABLE, TRUE), D3D_OK);
    EXPECT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFFFFFFFF, 1.0f, 0), D3D_OK);
    ExpectOnly({2, 3, 5, 7}, 0xFFFFFF);
}

TEST_F(ClearTest, IgnoresTheColourWriteMask)
{
    ASSERT_EQ(device->SetRenderState(D3DRS_COLORWRITEENABLE, 0), D3D_OK);
    EXPECT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF405060, 1.0f, 0), D3D_OK);
    ExpectOnly({0, 0, 64, 48}, 0x405060);
}

TEST_F(ClearTest, RefusesDepthWithoutADepthBuffer)
{
    ASSERT_EQ(device->SetDepthStencilSurface(nullptr), D3D_OK);
    EXPECT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0xFFFFFFFF, 1.0f, 0),
              D3DERR_INVALIDCALL);
    ExpectOnly({0, 0, 64, 48}, 0);
}

TEST_F(ClearTest, WorksInAndOutOfAScene)
{
    ASSERT_EQ(device->BeginScene(), D3D_OK);
    EXPECT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF010203, 1.0f, 0), D3D_OK);
    ASSERT_EQ(device->EndScene(), D3D_OK);
    ExpectOnly({0, 0, 64, 48}, 0x010203);
}

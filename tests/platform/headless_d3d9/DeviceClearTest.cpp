#include "platform/headless/d3d9/Device.h"

#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <random>

using namespace headless;

namespace {

class DeviceClearTest : public DeviceTest {
protected:
    void UseDepth(D3DFORMAT format)
    {
        Com<IDirect3DSurface9> depth;
        ASSERT_EQ(device->CreateDepthStencilSurface(64, 48, format, D3DMULTISAMPLE_NONE, 0, FALSE,
                                                    depth.Out(), nullptr),
                  D3D_OK);
        ASSERT_EQ(device->SetDepthStencilSurface(depth.Get()), D3D_OK);
    }

    /// The stored word of a pixel of the depth buffer.
    uint32_t DepthWord(UINT x, UINT y)
    {
        const auto& state = static_cast<HeadlessDevice*>(device.Get())->State();
        const PixelBuffer& pixels = state.depthSurface.Get()->Pixels();
        return LoadPixelWord(*pixels.format, pixels.At(x, y));
    }

    HRESULT Clear(DWORD flags, float z, DWORD stencil)
    {
        return device->Clear(0, nullptr, flags, 0, z, stencil);
    }
};

} // namespace

TEST_F(DeviceClearTest, DepthAndStencilAreClearedApart)
{
    UseDepth(D3DFMT_D24S8);
    EXPECT_EQ(Clear(D3DCLEAR_ZBUFFER | D3DCLEAR_STENCIL, 1.0f, 0x12), D3D_OK);
    EXPECT_EQ(DepthWord(0, 0), 0xFFFFFF12u);
    EXPECT_EQ(Clear(D3DCLEAR_STENCIL, 0.0f, 0x34), D3D_OK);
    EXPECT_EQ(DepthWord(63, 47), 0xFFFFFF34u);
    EXPECT_EQ(Clear(D3DCLEAR_ZBUFFER, 0.0f, 0), D3D_OK);
    EXPECT_EQ(DepthWord(63, 47), 0x00000034u);
}

TEST_F(DeviceClearTest, DepthStaysInsideTheViewport)
{
    UseDepth(D3DFMT_D16);
    ASSERT_EQ(Clear(D3DCLEAR_ZBUFFER, 1.0f, 0), D3D_OK);
    const D3DVIEWPORT9 viewport = {10, 10, 20, 20, 0.0f, 1.0f};
    ASSERT_EQ(device->SetViewport(&viewport), D3D_OK);
    ASSERT_EQ(Clear(D3DCLEAR_ZBUFFER, 0.0f, 0), D3D_OK);
    EXPECT_EQ(DepthWord(10, 10), 0u);
    EXPECT_EQ(DepthWord(29, 29), 0u);
    EXPECT_EQ(DepthWord(9, 10), 0xFFFFu);
    EXPECT_EQ(DepthWord(30, 29), 0xFFFFu);
}

TEST_F(DeviceClearTest, EveryDepthFormatCanBeCleared)
{
    static const struct {
        D3DFORMAT format;
        uint32_t word; ///< of depth 1 in a zeroed buffer
    } cases[] = {{D3DFMT_D16, 0xFFFF},
                 {D3DFMT_D24X8, 0xFFFFFF00},
                 {D3DFMT_D24S8, 0xFFFFFF00},
                 {D3DFMT_D32, 0xFFFFFFFF}};
    for (const auto& c : cases) {
        UseDepth(c.format);
        EXPECT_EQ(Clear(D3DCLEAR_ZBUFFER, 1.0f, 0), D3D_OK);
        EXPECT_EQ(DepthWord(5, 5), c.word) << c.format;
    }
}

TEST_F(DeviceClearTest, RefusesInvalidArguments)
{
    EXPECT_EQ(Clear(0, 1.0f, 0), D3DERR_INVALIDCALL) << "nothing to clear";
    EXPECT_EQ(Clear(8, 1.0f, 0), D3DERR_INVALIDCALL) << "an unknown flag";
    EXPECT_EQ(Clear(D3DCLEAR_STENCIL, 1.0f, 0), D3DERR_INVALIDCALL) << "16 bits have no stencil";
    EXPECT_EQ(Clear(D3DCLEAR_ZBUFFER, 1.5f, 0), D3DERR_INVALIDCALL) << "depth above 1";
    EXPECT_EQ(device->Clear(1, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0), D3DERR_INVALIDCALL);
    const D3DRECT rect = {0, 0, 1, 1};
    EXPECT_EQ(device->Clear(0, &rect, D3DCLEAR_TARGET, 0, 1.0f, 0), D3DERR_INVALIDCALL);
}

TEST_F(DeviceClearTest, RectanglesTurnedInsideOutClearNothing)
{
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0), D3D_OK);
    const D3DRECT rects[] = {{10, 10, 5, 5}, {-2147483647, 0, -5, 48}, {100, 0, 2147483647, 48}};
    EXPECT_EQ(device->Clear(3, rects, D3DCLEAR_TARGET, 0xFFFFFFFF, 1.0f, 0), D3D_OK);
    EXPECT_EQ(ReadBackBuffer(), std::vector<uint32_t>(64 * 48, 0));
}

TEST_F(DeviceClearTest, ANarrowTargetTakesTheNearestColour)
{
    const Com<IDirect3DSurface9> target = Target(4, 4, D3DFMT_R5G6B5);
    const Com<IDirect3DSurface9> wide = Target(4, 4);
    ASSERT_EQ(device->SetDepthStencilSurface(nullptr), D3D_OK);
    ASSERT_EQ(device->SetRenderTarget(0, target.Get()), D3D_OK);
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF808080, 1.0f, 0), D3D_OK);
    ASSERT_EQ(device->StretchRect(target.Get(), nullptr, wide.Get(), nullptr, D3DTEXF_NONE),
              D3D_OK);
    // 0x80 becomes 16 of 31 and 32 of 63, which are 132 and 130 of 255.
    EXPECT_EQ(Read(wide.Get()), std::vector<uint32_t>(16, 0xFF848284));
}

TEST(FillArea, ChangesTheMaskedBitsOfTheAreaOnly)
{
    std::minstd_rand random(7);
    for (const D3DFORMAT name : {D3DFMT_A8, D3DFMT_R5G6B5, D3DFMT_D16, D3DFMT_R8G8B8, D3DFMT_D24S8,
                                 D3DFMT_D24X8, D3DFMT_A8R8G8B8}) {
        const PixelFormat& format = *FindPixelFormat(name);
        PixelBuffer pixels;
        ASSERT_TRUE(pixels.Allocate(format, 37, 5));
        for (int round = 0; round < 60; ++round) {
            const auto below = [&random](LONG limit) {
                return static_cast<LONG>(random()) % limit;
            };
            const LONG left = below(36), top = below(4);
            const RECT area = {left, top, left + 1 + below(37 - left), top + 1 + below(5 - top)};
            const auto word = static_cast<uint32_t>(random() * 3),
                       mask = static_cast<uint32_t>(random() * 5);
            for (size_t i = 0; i < pixels.pitchBytes * 5; ++i)
                pixels.bytes[i] = static_cast<uint8_t>(random());
            std::vector<uint32_t> expected;
            for (LONG y = 0; y < 5; ++y) {
                for (LONG x = 0; x < 37; ++x) {
                    const uint32_t old = LoadPixelWord(
                        format, pixels.At(static_cast<UINT>(x), static_cast<UINT>(y)));
                    const bool isInside =
                        x >= area.left && x < area.right && y >= area.top && y < area.bottom;
                    const uint32_t whole = 0xFFFFFFFFu >> (32 - format.unitBytes * 8);
                    expected.push_back(isInside ? ((old & ~mask) | (word & mask)) & whole : old);
                }
            }
            FillArea(pixels, area, word, mask);
            std::vector<uint32_t> actual;
            for (UINT i = 0; i < 37 * 5; ++i)
                actual.push_back(LoadPixelWord(format, pixels.At(i % 37, i / 37)));
            ASSERT_EQ(actual, expected) << name << ", round " << round;
        }
    }
}

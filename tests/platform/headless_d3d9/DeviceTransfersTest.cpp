#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <cstring>

// Rules for copies from the public reference, and checks that other hosts omit.

namespace {

using DeviceTransfersTest = DeviceTest;
using Pixels = std::vector<uint32_t>;

} // namespace

TEST_F(DeviceTransfersTest, UpdateSurfaceGoesFromMemoryToTheDeviceOnly)
{
    const Com<IDirect3DSurface9> system = SystemSurface(2, 2);
    const Com<IDirect3DSurface9> target = Target(2, 2);
    EXPECT_EQ(device->UpdateSurface(target.Get(), nullptr, system.Get(), nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(device->UpdateSurface(nullptr, nullptr, target.Get(), nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->UpdateSurface(system.Get(), nullptr, nullptr, nullptr), D3DERR_INVALIDCALL);
}

TEST_F(DeviceTransfersTest, UpdateSurfaceChecksItsRectangle)
{
    const Com<IDirect3DSurface9> system = SystemSurface(4, 4);
    const Com<IDirect3DSurface9> target = Target(4, 4);
    for (const RECT& area : {RECT{-1, 0, 2, 2}, RECT{0, 0, 5, 2}, RECT{2, 2, 2, 4}}) {
        EXPECT_EQ(device->UpdateSurface(system.Get(), &area, target.Get(), nullptr),
                  D3DERR_INVALIDCALL);
    }
    const POINT places[] = {{-1, 0}, {4, 0}, {0, 2147483647}};
    const RECT one = {0, 0, 1, 1};
    for (const POINT& place : places)
        EXPECT_EQ(device->UpdateSurface(system.Get(), &one, target.Get(), &place),
                  D3DERR_INVALIDCALL);
}

TEST_F(DeviceTransfersTest, UpdateTextureCopiesOnlyWhatChanged)
{
    const Com<IDirect3DTexture9> source = Texture(4, 1, 1, D3DPOOL_SYSTEMMEM);
    const Com<IDirect3DTexture9> target = Texture(4, 1, 1, D3DPOOL_DEFAULT, D3DUSAGE_RENDERTARGET);
    Com<IDirect3DSurface9> level;
    ASSERT_EQ(target->GetSurfaceLevel(0, level.Out()), D3D_OK);
    ASSERT_EQ(device->UpdateTexture(source.Get(), target.Get()), D3D_OK);
    EXPECT_EQ(Read(level.Get()), Pixels(4, 0));

    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(source->LockRect(0, &locked, nullptr, D3DLOCK_NO_DIRTY_UPDATE), D3D_OK);
    const Pixels pixels = {1, 2, 3, 4};
    std::memcpy(locked.pBits, pixels.data(), 16);
    ASSERT_EQ(source->UnlockRect(0), D3D_OK);
    ASSERT_EQ(device->UpdateTexture(source.Get(), target.Get()), D3D_OK);
    EXPECT_EQ(Read(level.Get()), Pixels(4, 0)) << "nothing was marked as changed";

    const RECT changed = {1, 0, 3, 1};
    ASSERT_EQ(source->AddDirtyRect(&changed), D3D_OK);
    ASSERT_EQ(device->UpdateTexture(source.Get(), target.Get()), D3D_OK);
    EXPECT_EQ(Read(level.Get()), (Pixels{0, 2, 3, 0}));
}

TEST_F(DeviceTransfersTest, UpdateTextureCopiesCompressedLevels)
{
    // 8 x 8 in four blocks, then 4 x 4, 2 x 2 and 1 x 1 in one block each.
    const Com<IDirect3DTexture9> source = Texture(8, 8, 0, D3DPOOL_SYSTEMMEM, 0, D3DFMT_DXT1);
    const Com<IDirect3DTexture9> target =
        Texture(8, 8, 0, D3DPOOL_DEFAULT, D3DUSAGE_DYNAMIC, D3DFMT_DXT1);
    ASSERT_EQ(source->GetLevelCount(), 4u);
    for (UINT level = 0; level < 4; ++level) {
        D3DLOCKED_RECT locked = {};
        ASSERT_EQ(source->LockRect(level, &locked, nullptr, 0), D3D_OK);
        std::memset(locked.pBits, static_cast<int>(level + 1), level == 0 ? 32 : 8);
        ASSERT_EQ(source->UnlockRect(level), D3D_OK);
    }
    ASSERT_EQ(device->UpdateTexture(source.Get(), target.Get()), D3D_OK);
    for (UINT level = 0; level < 4; ++level) {
        D3DLOCKED_RECT locked = {};
        ASSERT_EQ(target->LockRect(level, &locked, nullptr, D3DLOCK_READONLY), D3D_OK);
        const auto* bytes = static_cast<const uint8_t*>(locked.pBits);
        EXPECT_EQ(bytes[0], level + 1);
        EXPECT_EQ(bytes[level == 0 ? 31 : 7], level + 1);
        ASSERT_EQ(target->UnlockRect(level), D3D_OK);
    }
}

TEST_F(DeviceTransfersTest, UpdateTextureNeedsMatchingTextures)
{
    const Com<IDirect3DTexture9> source = Texture(4, 4, 1, D3DPOOL_SYSTEMMEM);
    const Com<IDirect3DTexture9> more = Texture(4, 4, 2, D3DPOOL_DEFAULT);
    const Com<IDirect3DTexture9> other = Texture(4, 4, 1, D3DPOOL_DEFAULT, 0, D3DFMT_R5G6B5);
    const Com<IDirect3DTexture9> larger = Texture(8, 4, 1, D3DPOOL_DEFAULT);
    EXPECT_EQ(device->UpdateTexture(source.Get(), more.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->UpdateTexture(source.Get(), other.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->UpdateTexture(source.Get(), larger.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->UpdateTexture(nullptr, larger.Get()), D3DERR_INVALIDCALL);
}

TEST_F(DeviceTransfersTest, GetRenderTargetDataNeedsEqualSizeAndFormatInSystemMemory)
{
    const Com<IDirect3DSurface9> target = Target(4, 4);
    const Com<IDirect3DSurface9> smaller = SystemSurface(2, 2);
    const Com<IDirect3DSurface9> other = SystemSurface(4, 4, {}, D3DFMT_R5G6B5);
    const Com<IDirect3DSurface9> device2 = Target(4, 4);
    EXPECT_EQ(device->GetRenderTargetData(target.Get(), smaller.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetRenderTargetData(target.Get(), other.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetRenderTargetData(target.Get(), device2.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetRenderTargetData(target.Get(), nullptr), D3DERR_INVALIDCALL);
}

/// 0x80 is 16 of 31 and 32 of 63; these widen to 132 and 130.
TEST_F(DeviceTransfersTest, StretchRectConvertsFormats)
{
    const Com<IDirect3DSurface9> first = Target(2, 1);
    const Com<IDirect3DSurface9> narrow = Target(2, 1, D3DFMT_R5G6B5);
    const Com<IDirect3DSurface9> last = Target(2, 1);
    ASSERT_EQ(device->ColorFill(first.Get(), nullptr, 0x40808080), D3D_OK);
    ASSERT_EQ(device->StretchRect(first.Get(), nullptr, narrow.Get(), nullptr, D3DTEXF_NONE),
              D3D_OK);
    ASSERT_EQ(device->StretchRect(narrow.Get(), nullptr, last.Get(), nullptr, D3DTEXF_NONE),
              D3D_OK);
    EXPECT_EQ(Read(last.Get()), Pixels(2, 0xFF848284));
}

/// Target pixel i of 4 samples at (i + 0.5) / 2 - 0.5 = -0.25, 0.25, 0.75, 1.25, clamped to 0..1;
/// between 0 and 0x80 that gives 0, 0x20, 0x60, 0x80.
TEST_F(DeviceTransfersTest, StretchRectGrowsLinearly)
{
    const Com<IDirect3DSurface9> source = Target(2, 1);
    const Com<IDirect3DSurface9> target = Target(4, 1);
    const RECT left = {0, 0, 1, 1}, right = {1, 0, 2, 1};
    ASSERT_EQ(device->ColorFill(source.Get(), &left, 0xFF000000), D3D_OK);
    ASSERT_EQ(device->ColorFill(source.Get(), &right, 0xFF800000), D3D_OK);
    ASSERT_EQ(device->StretchRect(source.Get(), nullptr, target.Get(), nullptr, D3DTEXF_LINEAR),
              D3D_OK);
    EXPECT_EQ(Read(target.Get()), (Pixels{0xFF000000, 0xFF200000, 0xFF600000, 0xFF800000}));
}

TEST_F(DeviceTransfersTest, StretchRectRefusesInvalidArguments)
{
    const Com<IDirect3DSurface9> target = Target(4, 4);
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_DEFAULT);
    Com<IDirect3DSurface9> level;
    ASSERT_EQ(texture->GetSurfaceLevel(0, level.Out()), D3D_OK);
    const RECT outside = {0, 0, 5, 4};
    const auto stretch = [this](IDirect3DSurface9* from, const RECT* area, IDirect3DSurface9* to) {
        return device->StretchRect(from, area, to, nullptr, D3DTEXF_NONE);
    };
    EXPECT_EQ(stretch(target.Get(), nullptr, target.Get()), D3DERR_INVALIDCALL) << "onto itself";
    EXPECT_EQ(stretch(target.Get(), nullptr, level.Get()), D3DERR_INVALIDCALL)
        << "into a level that is no target";
    EXPECT_EQ(stretch(level.Get(), &outside, target.Get()), D3DERR_INVALIDCALL) << "outside";
    EXPECT_EQ(stretch(nullptr, nullptr, target.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->StretchRect(level.Get(), nullptr, target.Get(), nullptr, D3DTEXF_ANISOTROPIC),
              D3DERR_INVALIDCALL)
        << "filter";
}

TEST_F(DeviceTransfersTest, DepthIsCopiedWholeAndOutsideOfAScene)
{
    Com<IDirect3DSurface9> from, to;
    for (IDirect3DSurface9** surface : {from.Out(), to.Out()})
        ASSERT_EQ(device->CreateDepthStencilSurface(8, 8, D3DFMT_D24S8, D3DMULTISAMPLE_NONE, 0,
                                                    FALSE, surface, nullptr),
                  D3D_OK);
    const RECT half = {0, 0, 4, 8};
    EXPECT_EQ(device->StretchRect(from.Get(), nullptr, to.Get(), nullptr, D3DTEXF_NONE), D3D_OK);
    EXPECT_EQ(device->StretchRect(from.Get(), &half, to.Get(), &half, D3DTEXF_NONE),
              D3DERR_INVALIDCALL);
    ASSERT_EQ(device->BeginScene(), D3D_OK);
    EXPECT_EQ(device->StretchRect(from.Get(), nullptr, to.Get(), nullptr, D3DTEXF_NONE),
              D3DERR_INVALIDCALL);
    ASSERT_EQ(device->EndScene(), D3D_OK);
}

TEST_F(DeviceTransfersTest, TheScreenShowsThePresentedPictureAtItsCorner)
{
    const Com<IDirect3DSurface9> screen = SystemSurface(1024, 768);
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF112233, 1.0f, 0), D3D_OK);
    ASSERT_EQ(device->Present(nullptr, nullptr, nullptr, nullptr), D3D_OK);
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF445566, 1.0f, 0), D3D_OK);
    ASSERT_EQ(device->GetFrontBufferData(0, screen.Get()), D3D_OK);
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(screen->LockRect(&locked, nullptr, D3DLOCK_READONLY), D3D_OK);
    const auto* pixels = static_cast<const uint32_t*>(locked.pBits);
    EXPECT_EQ(pixels[0], 0xFF112233u);
    EXPECT_EQ(pixels[47 * 1024 + 63], 0xFF112233u);
    EXPECT_EQ(pixels[64], 0xFF000000u);
    EXPECT_EQ(pixels[48 * 1024], 0xFF000000u);
    ASSERT_EQ(screen->UnlockRect(), D3D_OK);
}

TEST_F(DeviceTransfersTest, TheScreenGoesIntoASurfaceOfItsSizeOnly)
{
    const Com<IDirect3DSurface9> small = SystemSurface(64, 48);
    const Com<IDirect3DSurface9> other = SystemSurface(1024, 768, {}, D3DFMT_X8R8G8B8);
    EXPECT_EQ(device->GetFrontBufferData(0, small.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetFrontBufferData(0, other.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetFrontBufferData(0, nullptr), D3DERR_INVALIDCALL);
}

TEST_F(DeviceTransfersTest, PresentShowsTheWholePictureOnly)
{
    const RECT part = {0, 0, 8, 8};
    EXPECT_EQ(device->Present(&part, nullptr, nullptr, nullptr), D3DERR_INVALIDCALL);
    ASSERT_EQ(device->BeginScene(), D3D_OK);
    EXPECT_EQ(device->Present(nullptr, nullptr, nullptr, nullptr), D3DERR_INVALIDCALL)
        << "the scene is not ended";
    EXPECT_EQ(device->EndScene(), D3D_OK);
}

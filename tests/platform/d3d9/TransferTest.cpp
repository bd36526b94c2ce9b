#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <cstring>

namespace {

using Pixels = std::vector<uint32_t>;

class TransferTest : public DeviceTest {
protected:
    /// A render target that holds `pixels`.
    Com<IDirect3DSurface9> FilledTarget(UINT width, UINT height, const Pixels& pixels)
    {
        Com<IDirect3DSurface9> target = Target(width, height);
        const Com<IDirect3DSurface9> source = SystemSurface(width, height, pixels);
        EXPECT_EQ(device->UpdateSurface(source.Get(), nullptr, target.Get(), nullptr), D3D_OK);
        return target;
    }

    void Fill(IDirect3DTexture9* texture, UINT level, const RECT& area, uint32_t colour)
    {
        D3DLOCKED_RECT locked = {};
        ASSERT_EQ(texture->LockRect(level, &locked, &area, 0), D3D_OK);
        for (LONG y = 0; y < area.bottom - area.top; ++y)
            for (LONG x = 0; x < area.right - area.left; ++x)
                std::memcpy(static_cast<uint8_t*>(locked.pBits) + y * locked.Pitch + x * 4, &colour,
                            4);
        ASSERT_EQ(texture->UnlockRect(level), D3D_OK);
    }

    /// The contents of a level of a texture in the default pool, read via a render target.
    Pixels ReadLevel(IDirect3DTexture9* texture, UINT level)
    {
        Com<IDirect3DSurface9> surface;
        EXPECT_EQ(texture->GetSurfaceLevel(level, surface.Out()), D3D_OK);
        D3DSURFACE_DESC desc = {};
        EXPECT_EQ(surface->GetDesc(&desc), D3D_OK);
        const Com<IDirect3DSurface9> target = Target(desc.Width, desc.Height);
        EXPECT_EQ(device->StretchRect(surface.Get(), nullptr, target.Get(), nullptr, D3DTEXF_NONE),
                  D3D_OK);
        return Read(target.Get());
    }
};

constexpr uint32_t kA = 0xFF0000FF, kB = 0xFF00FF00, kC = 0xFFFF0000, kD = 0x80FFFFFF;

} // namespace

TEST_F(TransferTest, ASurfaceUpdatesAnother)
{
    const Pixels pixels = {kA, kB, kC, kD};
    EXPECT_EQ(Read(FilledTarget(2, 2, pixels).Get()), pixels);
}

TEST_F(TransferTest, APartOfASurfaceGoesToAPoint)
{
    const Com<IDirect3DSurface9> target = FilledTarget(3, 2, Pixels(6, 0));
    const Com<IDirect3DSurface9> source = SystemSurface(2, 2, {kA, kB, kC, kD});
    const RECT area = {1, 0, 2, 2};
    const POINT place = {2, 0};
    EXPECT_EQ(device->UpdateSurface(source.Get(), &area, target.Get(), &place), D3D_OK);
    EXPECT_EQ(Read(target.Get()), (Pixels{0, 0, kB, 0, 0, kD}));
}

TEST_F(TransferTest, UpdateSurfaceRefusesOtherFormatsAndPlacesOutside)
{
    const Com<IDirect3DSurface9> system = SystemSurface(2, 2, {kA, kB, kC, kD});
    const Com<IDirect3DSurface9> target = Target(2, 2);
    const Com<IDirect3DSurface9> other = Target(2, 2, D3DFMT_X8R8G8B8);
    EXPECT_EQ(device->UpdateSurface(system.Get(), nullptr, other.Get(), nullptr),
              D3DERR_INVALIDCALL)
        << "another format";
    const POINT outside = {1, 1};
    EXPECT_EQ(device->UpdateSurface(system.Get(), nullptr, target.Get(), &outside),
              D3DERR_INVALIDCALL)
        << "beyond the border";
}

TEST_F(TransferTest, ATextureUpdatesAllLevels)
{
    const Com<IDirect3DTexture9> source = Texture(2, 2, 2, D3DPOOL_SYSTEMMEM);
    const Com<IDirect3DTexture9> target = Texture(2, 2, 2, D3DPOOL_DEFAULT);
    Fill(source.Get(), 0, {0, 0, 2, 2}, kA);
    Fill(source.Get(), 1, {0, 0, 1, 1}, kB);
    ASSERT_EQ(device->UpdateTexture(source.Get(), target.Get()), D3D_OK);
    EXPECT_EQ(ReadLevel(target.Get(), 0), Pixels(4, kA));
    EXPECT_EQ(ReadLevel(target.Get(), 1), Pixels(1, kB));
}

TEST_F(TransferTest, ASmallerTextureTakesTheSmallerLevels)
{
    const Com<IDirect3DTexture9> source = Texture(4, 4, 3, D3DPOOL_SYSTEMMEM);
    const Com<IDirect3DTexture9> target = Texture(2, 2, 2, D3DPOOL_DEFAULT);
    Fill(source.Get(), 0, {0, 0, 4, 4}, kA);
    Fill(source.Get(), 1, {0, 0, 2, 2}, kB);
    Fill(source.Get(), 2, {0, 0, 1, 1}, kC);
    ASSERT_EQ(device->UpdateTexture(source.Get(), target.Get()), D3D_OK);
    EXPECT_EQ(ReadLevel(target.Get(), 0), Pixels(4, kB));
    EXPECT_EQ(ReadLevel(target.Get(), 1), Pixels(1, kC));
}

TEST_F(TransferTest, UpdateTextureRefusesOtherPools)
{
    const Com<IDirect3DTexture9> managed = Texture(2, 2, 1, D3DPOOL_MANAGED);
    const Com<IDirect3DTexture9> target = Texture(2, 2, 1, D3DPOOL_DEFAULT);
    EXPECT_EQ(device->UpdateTexture(managed.Get(), target.Get()), D3DERR_INVALIDCALL);
}

TEST_F(TransferTest, ColorFillFillsARectangle)
{
    const Com<IDirect3DSurface9> target = FilledTarget(3, 2, Pixels(6, kA));
    const RECT area = {1, 0, 3, 1};
    EXPECT_EQ(device->ColorFill(target.Get(), &area, 0x40302010), D3D_OK);
    EXPECT_EQ(Read(target.Get()), (Pixels{kA, 0x40302010, 0x40302010, kA, kA, kA}));
}

TEST_F(TransferTest, ColorFillRefusesSystemMemory)
{
    const Com<IDirect3DSurface9> system = SystemSurface(2, 2);
    EXPECT_EQ(device->ColorFill(system.Get(), nullptr, kA), D3DERR_INVALIDCALL);
}

TEST_F(TransferTest, StretchRectCopiesARectangle)
{
    const Com<IDirect3DSurface9> source = FilledTarget(2, 2, {kA, kB, kC, kD});
    const Com<IDirect3DSurface9> target = FilledTarget(3, 3, Pixels(9, 0));
    const RECT from = {0, 1, 2, 2}, to = {1, 2, 3, 3};
    EXPECT_EQ(device->StretchRect(source.Get(), &from, target.Get(), &to, D3DTEXF_NONE), D3D_OK);
    EXPECT_EQ(Read(target.Get()), (Pixels{0, 0, 0, 0, 0, 0, 0, kC, kD}));
}

TEST_F(TransferTest, StretchRectScalesToTheNearestPixel)
{
    const Com<IDirect3DSurface9> source = FilledTarget(2, 2, {kA, kB, kC, kD});
    const Com<IDirect3DSurface9> target = Target(4, 4);
    EXPECT_EQ(device->StretchRect(source.Get(), nullptr, target.Get(), nullptr, D3DTEXF_POINT),
              D3D_OK);
    EXPECT_EQ(Read(target.Get()),
              (Pixels{kA, kA, kB, kB, kA, kA, kB, kB, kC, kC, kD, kD, kC, kC, kD, kD}));
}

/// When halving, the linear filter samples at the corner of four pixels: their mean.
TEST_F(TransferTest, StretchRectHalvesLinearlyToTheMean)
{
    const Com<IDirect3DSurface9> source =
        FilledTarget(2, 2, {0xFF000000, 0xFF400000, 0xFF800000, 0xFFC00000});
    const Com<IDirect3DSurface9> target = Target(1, 1);
    EXPECT_EQ(device->StretchRect(source.Get(), nullptr, target.Get(), nullptr, D3DTEXF_LINEAR),
              D3D_OK);
    EXPECT_EQ(Read(target.Get()), Pixels{0xFF600000}); // (0 + 0x40 + 0x80 + 0xC0) / 4
}

TEST_F(TransferTest, StretchRectRefusesSystemMemory)
{
    const Com<IDirect3DSurface9> system = SystemSurface(2, 2);
    const Com<IDirect3DSurface9> target = Target(2, 2);
    EXPECT_EQ(device->StretchRect(system.Get(), nullptr, target.Get(), nullptr, D3DTEXF_NONE),
              D3DERR_INVALIDCALL);
}

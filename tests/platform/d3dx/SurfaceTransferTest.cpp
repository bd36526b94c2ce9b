// Loading surfaces from memory and from other surfaces, and saving them to files.

#include "tests/platform/d3dx/ImageDevice.h"
#include "tests/support/ScratchDirectory.h"

#include <cstring>

namespace {

using SurfaceHandle = ComHandle<IDirect3DSurface9>;
using Pixels = std::vector<uint32_t>;

class SurfaceTransfer : public ImageDevice {
protected:
    SurfaceHandle Plain(UINT width, UINT height, D3DFORMAT format = D3DFMT_A8R8G8B8)
    {
        IDirect3DSurface9* surface = nullptr;
        EXPECT_EQ(device->CreateOffscreenPlainSurface(width, height, format, D3DPOOL_SYSTEMMEM,
                                                      &surface, nullptr),
                  D3D_OK);
        return SurfaceHandle(surface);
    }

    static Pixels Read(IDirect3DSurface9& surface)
    {
        D3DSURFACE_DESC desc = {};
        D3DLOCKED_RECT locked = {};
        EXPECT_EQ(surface.GetDesc(&desc), D3D_OK);
        EXPECT_EQ(surface.LockRect(&locked, nullptr, D3DLOCK_READONLY), D3D_OK);
        Pixels pixels(size_t{desc.Width} * desc.Height);
        for (UINT y = 0; y < desc.Height; ++y)
            std::memcpy(&pixels[size_t{y} * desc.Width],
                        static_cast<const char*>(locked.pBits) +
                            y * static_cast<UINT>(locked.Pitch),
                        size_t{desc.Width} * 4);
        surface.UnlockRect();
        return pixels;
    }

    SurfaceHandle Filled(UINT width, UINT height, const Pixels& pixels)
    {
        SurfaceHandle surface = Plain(width, height);
        const RECT whole = {0, 0, static_cast<LONG>(width), static_cast<LONG>(height)};
        EXPECT_EQ(D3DXLoadSurfaceFromMemory(surface.get(), nullptr, nullptr, pixels.data(),
                                            D3DFMT_A8R8G8B8, width * 4, nullptr, &whole,
                                            D3DX_FILTER_NONE, 0),
                  D3D_OK);
        return surface;
    }
};

const Pixels kFour = {0xFF010203, 0x80040506, 0x00070809, 0xFF0A0B0C};

} // namespace

TEST_F(SurfaceTransfer, FillsASurfaceFromMemory)
{
    EXPECT_EQ(Read(*Filled(2, 2, kFour)), kFour);
}

TEST_F(SurfaceTransfer, ConvertsOnTheWay)
{
    const SurfaceHandle surface = Plain(1, 1);
    const uint16_t word = 0xF81F; // red and blue full, green 0
    const RECT whole = {0, 0, 1, 1};
    ASSERT_EQ(D3DXLoadSurfaceFromMemory(surface.get(), nullptr, nullptr, &word, D3DFMT_R5G6B5, 2,
                                        nullptr, &whole, D3DX_FILTER_NONE, 0),
              D3D_OK);
    EXPECT_EQ(Read(*surface), Pixels{0xFFFF00FF});
}

TEST_F(SurfaceTransfer, TakesAndFillsRectangles)
{
    const SurfaceHandle source = Filled(2, 2, kFour);
    const SurfaceHandle target = Filled(2, 2, Pixels(4, 0x11111111));
    const RECT from = {1, 0, 2, 2};
    const RECT to = {0, 0, 1, 2};
    ASSERT_EQ(D3DXLoadSurfaceFromSurface(target.get(), nullptr, &to, source.get(), nullptr, &from,
                                         D3DX_FILTER_NONE, 0),
              D3D_OK);
    EXPECT_EQ(Read(*target), (Pixels{kFour[1], 0x11111111, kFour[3], 0x11111111}));
}

TEST_F(SurfaceTransfer, FillsWhatCannotBeLocked)
{
    IDirect3DSurface9* raw = nullptr;
    ASSERT_EQ(device->CreateRenderTarget(4, 3, D3DFMT_A8R8G8B8, D3DMULTISAMPLE_NONE, 0, FALSE, &raw,
                                         nullptr),
              D3D_OK);
    const SurfaceHandle target(raw);
    D3DLOCKED_RECT locked = {};
    ASSERT_NE(target->LockRect(&locked, nullptr, 0), D3D_OK) << "it could be locked after all";
    ASSERT_EQ(device->ColorFill(target.get(), nullptr, 0xFF202020), D3D_OK);

    const RECT whole = {0, 0, 2, 2};
    const RECT place = {1, 1, 3, 3};
    ASSERT_EQ(D3DXLoadSurfaceFromMemory(target.get(), nullptr, &place, kFour.data(),
                                        D3DFMT_A8R8G8B8, 8, nullptr, &whole, D3DX_FILTER_NONE, 0),
              D3D_OK);
    const SurfaceHandle copy = Plain(4, 3);
    ASSERT_EQ(device->GetRenderTargetData(target.get(), copy.get()), D3D_OK);
    // The four pixels in columns 1 and 2 of rows 1 and 2, surrounded by the old contents.
    const uint32_t old = 0xFF202020;
    const Pixels expected = {old, old,      old,      old, //
                             old, kFour[0], kFour[1], old, //
                             old, kFour[2], kFour[3], old};
    EXPECT_EQ(Read(*copy), expected);
}

TEST_F(SurfaceTransfer, StretchesToTheNearestPixel)
{
    const SurfaceHandle source = Filled(2, 1, {kFour[0], kFour[1]});
    const SurfaceHandle target = Plain(4, 1);
    ASSERT_EQ(D3DXLoadSurfaceFromSurface(target.get(), nullptr, nullptr, source.get(), nullptr,
                                         nullptr, D3DX_FILTER_POINT, 0),
              D3D_OK);
    EXPECT_EQ(Read(*target), (Pixels{kFour[0], kFour[0], kFour[1], kFour[1]}));
}

TEST_F(SurfaceTransfer, RefusesWhatIsMissing)
{
    const SurfaceHandle surface = Plain(1, 1);
    const RECT whole = {0, 0, 1, 1};
    const uint32_t pixel = 0;
    EXPECT_EQ(D3DXLoadSurfaceFromMemory(nullptr, nullptr, nullptr, &pixel, D3DFMT_A8R8G8B8, 4,
                                        nullptr, &whole, D3DX_FILTER_NONE, 0),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXLoadSurfaceFromMemory(surface.get(), nullptr, nullptr, nullptr, D3DFMT_A8R8G8B8,
                                        4, nullptr, &whole, D3DX_FILTER_NONE, 0),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXLoadSurfaceFromMemory(surface.get(), nullptr, nullptr, &pixel, D3DFMT_A8R8G8B8, 4,
                                        nullptr, nullptr, D3DX_FILTER_NONE, 0),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXLoadSurfaceFromSurface(surface.get(), nullptr, nullptr, nullptr, nullptr, nullptr,
                                         D3DX_FILTER_NONE, 0),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXSaveSurfaceToFileA(nullptr, D3DXIFF_PNG, surface.get(), nullptr, nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXSaveSurfaceToFileA("a.png", D3DXIFF_PNG, nullptr, nullptr, nullptr),
              D3DERR_INVALIDCALL);
}

TEST_F(SurfaceTransfer, SavedPngLoadsAgain)
{
    const ScratchDirectory scratch;
    const SurfaceHandle surface = Filled(2, 2, kFour);
    ASSERT_EQ(D3DXSaveSurfaceToFileA("out.png", D3DXIFF_PNG, surface.get(), nullptr, nullptr),
              D3D_OK);
    EXPECT_EQ(LoadArgb(scratch.Read("out.png")), kFour);
}

TEST_F(SurfaceTransfer, SavedBmpLoadsAgain)
{
    const ScratchDirectory scratch;
    const Pixels opaque = {0xFF010203, 0xFF040506, 0xFF070809, 0xFF0A0B0C};
    const SurfaceHandle surface = Filled(2, 2, opaque);
    ASSERT_EQ(D3DXSaveSurfaceToFileA("out.bmp", D3DXIFF_BMP, surface.get(), nullptr, nullptr),
              D3D_OK);
    EXPECT_EQ(LoadArgb(scratch.Read("out.bmp")), opaque);
}

TEST_F(SurfaceTransfer, SavesOneRectangle)
{
    const ScratchDirectory scratch;
    const SurfaceHandle surface = Filled(2, 2, kFour);
    const RECT right = {1, 0, 2, 2};
    ASSERT_EQ(D3DXSaveSurfaceToFileA("out.png", D3DXIFF_PNG, surface.get(), nullptr, &right),
              D3D_OK);
    EXPECT_EQ(LoadArgb(scratch.Read("out.png")), (Pixels{kFour[1], kFour[3]}));
}

TEST_F(SurfaceTransfer, SavesARenderTarget)
{
    const ScratchDirectory scratch;
    IDirect3DSurface9* target = nullptr;
    ASSERT_EQ(device->GetRenderTarget(0, &target), D3D_OK);
    const SurfaceHandle handle(target);
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF102030, 1.0f, 0), D3D_OK);
    ASSERT_EQ(D3DXSaveSurfaceToFileA("out.png", D3DXIFF_PNG, target, nullptr, nullptr), D3D_OK);
    EXPECT_EQ(LoadArgb(scratch.Read("out.png")), Pixels(64 * 64, 0xFF102030));
}

TEST_F(SurfaceTransfer, DoesNotSaveKindsThatAreMissing)
{
    const ScratchDirectory scratch;
    const SurfaceHandle surface = Filled(2, 2, kFour);
    EXPECT_EQ(D3DXSaveSurfaceToFileA("out.tga", D3DXIFF_TGA, surface.get(), nullptr, nullptr),
              E_NOTIMPL);
    EXPECT_FALSE(scratch.Has("out.tga"));
}

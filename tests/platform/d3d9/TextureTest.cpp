#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <cstring>

namespace {

using TextureTest = DeviceTest;

} // namespace

TEST_F(TextureTest, ALevelCountOfZeroMeansDownToOnePixel)
{
    static const struct {
        UINT width, height, levels;
    } cases[] = {{1, 1, 1}, {2, 1, 2}, {256, 256, 9}, {100, 3, 7}, {3, 5, 3}};
    for (const auto& c : cases) {
        const Com<IDirect3DTexture9> texture = Texture(c.width, c.height, 0, D3DPOOL_MANAGED);
        ASSERT_TRUE(texture);
        EXPECT_EQ(texture->GetLevelCount(), c.levels) << c.width << " x " << c.height;
    }
}

TEST_F(TextureTest, EachLevelHasHalfTheSize)
{
    const Com<IDirect3DTexture9> texture = Texture(20, 6, 0, D3DPOOL_MANAGED);
    static const UINT sizes[][2] = {{20, 6}, {10, 3}, {5, 1}, {2, 1}, {1, 1}};
    ASSERT_EQ(texture->GetLevelCount(), 5u);
    for (UINT level = 0; level < 5; ++level) {
        D3DSURFACE_DESC desc = {};
        ASSERT_EQ(texture->GetLevelDesc(level, &desc), D3D_OK);
        EXPECT_EQ(desc.Width, sizes[level][0]);
        EXPECT_EQ(desc.Height, sizes[level][1]);
        EXPECT_EQ(desc.Format, D3DFMT_A8R8G8B8);
        EXPECT_EQ(desc.Pool, D3DPOOL_MANAGED);
        EXPECT_EQ(desc.Type, D3DRTYPE_SURFACE);
    }
    D3DSURFACE_DESC desc = {};
    EXPECT_EQ(texture->GetLevelDesc(5, &desc), D3DERR_INVALIDCALL);
}

TEST_F(TextureTest, RefusesInvalidArguments)
{
    static const struct {
        const char* what;
        UINT width, height, levels;
        DWORD usage;
        D3DFORMAT format;
        D3DPOOL pool;
    } cases[] = {
        {"no width", 0, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED},
        {"no height", 4, 0, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED},
        {"a managed target", 4, 4, 1, D3DUSAGE_RENDERTARGET, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED},
        {"a managed dynamic one", 4, 4, 1, D3DUSAGE_DYNAMIC, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED},
        {"broken blocks", 6, 6, 1, 0, D3DFMT_DXT1, D3DPOOL_MANAGED},
        {"no format", 4, 4, 1, 0, D3DFMT_UNKNOWN, D3DPOOL_MANAGED},
    };
    for (const auto& c : cases) {
        Com<IDirect3DTexture9> texture;
        EXPECT_TRUE(FAILED(device->CreateTexture(c.width, c.height, c.levels, c.usage, c.format,
                                                 c.pool, texture.Out(), nullptr)))
            << c.what;
        EXPECT_FALSE(texture) << c.what;
    }
}

TEST_F(TextureTest, KeepsWhatIsWrittenThroughALock)
{
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 2, D3DPOOL_MANAGED);
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(texture->LockRect(1, &locked, nullptr, 0), D3D_OK);
    ASSERT_GE(locked.Pitch, 8);
    const uint32_t row[2] = {0x11223344, 0x55667788};
    std::memcpy(static_cast<uint8_t*>(locked.pBits) + locked.Pitch, row, sizeof row);
    ASSERT_EQ(texture->UnlockRect(1), D3D_OK);

    const RECT corner = {1, 1, 2, 2};
    ASSERT_EQ(texture->LockRect(1, &locked, &corner, D3DLOCK_READONLY), D3D_OK);
    uint32_t pixel = 0;
    std::memcpy(&pixel, locked.pBits, sizeof pixel);
    EXPECT_EQ(pixel, 0x55667788u);
    EXPECT_EQ(texture->UnlockRect(1), D3D_OK);
}

TEST_F(TextureTest, LocksEachLevelOnceAtATime)
{
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 2, D3DPOOL_MANAGED);
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(texture->LockRect(0, &locked, nullptr, 0), D3D_OK);
    EXPECT_EQ(texture->LockRect(0, &locked, nullptr, 0), D3DERR_INVALIDCALL) << "locked already";
    EXPECT_EQ(texture->LockRect(1, &locked, nullptr, 0), D3D_OK) << "another level";
    EXPECT_EQ(texture->UnlockRect(0), D3D_OK);
    EXPECT_EQ(texture->UnlockRect(1), D3D_OK);
    EXPECT_EQ(texture->LockRect(2, &locked, nullptr, 0), D3DERR_INVALIDCALL) << "no such level";
    EXPECT_EQ(texture->UnlockRect(2), D3DERR_INVALIDCALL);
}

TEST_F(TextureTest, LocksOfCompressedLevelsCountBlocks)
{
    // 16 x 8 pixels are 4 x 2 blocks of 8 bytes.
    const Com<IDirect3DTexture9> texture = Texture(16, 8, 1, D3DPOOL_MANAGED, 0, D3DFMT_DXT1);
    D3DLOCKED_RECT whole = {}, part = {};
    ASSERT_EQ(texture->LockRect(0, &whole, nullptr, 0), D3D_OK);
    EXPECT_EQ(whole.Pitch, 32);
    ASSERT_EQ(texture->UnlockRect(0), D3D_OK);
    const RECT second = {4, 4, 8, 8};
    ASSERT_EQ(texture->LockRect(0, &part, &second, 0), D3D_OK);
    EXPECT_EQ(static_cast<uint8_t*>(part.pBits) - static_cast<uint8_t*>(whole.pBits), 32 + 8);
    ASSERT_EQ(texture->UnlockRect(0), D3D_OK);
}

TEST_F(TextureTest, ATextureOfTheDefaultPoolCannotBeLocked)
{
    D3DLOCKED_RECT locked = {};
    const Com<IDirect3DTexture9> plain = Texture(4, 4, 1, D3DPOOL_DEFAULT);
    EXPECT_EQ(plain->LockRect(0, &locked, nullptr, 0), D3DERR_INVALIDCALL);
    const Com<IDirect3DTexture9> dynamic = Texture(4, 4, 1, D3DPOOL_DEFAULT, D3DUSAGE_DYNAMIC);
    EXPECT_EQ(dynamic->LockRect(0, &locked, nullptr, D3DLOCK_DISCARD), D3D_OK);
    EXPECT_EQ(dynamic->UnlockRect(0), D3D_OK);
}

TEST_F(TextureTest, ALevelSharesTheReferencesOfItsTexture)
{
    Com<IDirect3DTexture9> texture = Texture(4, 4, 2, D3DPOOL_MANAGED);
    Com<IDirect3DSurface9> level;
    ASSERT_EQ(texture->GetSurfaceLevel(1, level.Out()), D3D_OK);
    EXPECT_EQ(ReferenceCount(texture.Get()), 2u);
    EXPECT_EQ(ReferenceCount(level.Get()), 2u);
    EXPECT_EQ(texture.Release(), 1u);
    D3DSURFACE_DESC desc = {};
    EXPECT_EQ(level->GetDesc(&desc), D3D_OK) << "the level keeps its texture alive";
    EXPECT_EQ(desc.Width, 2u);
    EXPECT_EQ(level.Release(), 0u);
}

TEST_F(TextureTest, ALevelIsTheSameObjectEachTime)
{
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    Com<IDirect3DSurface9> first, second;
    ASSERT_EQ(texture->GetSurfaceLevel(0, first.Out()), D3D_OK);
    ASSERT_EQ(texture->GetSurfaceLevel(0, second.Out()), D3D_OK);
    EXPECT_EQ(first.Get(), second.Get());
    EXPECT_EQ(texture->GetSurfaceLevel(1, second.Out()), D3DERR_INVALIDCALL);
}

TEST_F(TextureTest, LevelAndTextureShareOneLock)
{
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    Com<IDirect3DSurface9> level;
    ASSERT_EQ(texture->GetSurfaceLevel(0, level.Out()), D3D_OK);
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(level->LockRect(&locked, nullptr, 0), D3D_OK);
    EXPECT_EQ(texture->LockRect(0, &locked, nullptr, 0), D3DERR_INVALIDCALL);
    EXPECT_EQ(level->UnlockRect(), D3D_OK);
}

TEST_F(TextureTest, OnlyManagedTexturesHaveALevelOfDetail)
{
    const Com<IDirect3DTexture9> managed = Texture(16, 16, 0, D3DPOOL_MANAGED);
    EXPECT_EQ(managed->SetLOD(2), 0u);
    EXPECT_EQ(managed->GetLOD(), 2u);
    EXPECT_EQ(managed->SetLOD(99), 2u);
    EXPECT_EQ(managed->GetLOD(), 4u) << "the last level";
    const Com<IDirect3DTexture9> other = Texture(16, 16, 0, D3DPOOL_DEFAULT);
    EXPECT_EQ(other->SetLOD(2), 0u);
    EXPECT_EQ(other->GetLOD(), 0u);
}

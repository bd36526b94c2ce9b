#include "tests/platform/d3dx/ImageDevice.h"

namespace {

class TextureRequirements : public ImageDevice {};

} // namespace

TEST_F(TextureRequirements, KeepsWhatTheDeviceSupports)
{
    UINT width = 100;
    UINT height = 60;
    UINT levels = 1;
    D3DFORMAT format = D3DFMT_R5G6B5;
    ASSERT_EQ(
        D3DXCheckTextureRequirements(device, &width, &height, &levels, 0, &format, D3DPOOL_MANAGED),
        D3D_OK);
    EXPECT_EQ(width, 100u);
    EXPECT_EQ(height, 60u);
    EXPECT_EQ(levels, 1u);
    EXPECT_EQ(format, D3DFMT_R5G6B5);
}

TEST_F(TextureRequirements, FillsInSidesThatWereLeftOpen)
{
    static const struct {
        const char* what;
        UINT width, height, expectedWidth, expectedHeight;
    } cases[] = {
        {"width as high", D3DX_DEFAULT, 32, 32, 32},
        {"height as wide", 16, D3DX_DEFAULT, 16, 16},
        {"both", D3DX_DEFAULT, D3DX_DEFAULT, 256, 256},
        {"0 becomes 1", 0, 0, 1, 1},
    };
    for (const auto& c : cases) {
        UINT width = c.width;
        UINT height = c.height;
        ASSERT_EQ(D3DXCheckTextureRequirements(device, &width, &height, nullptr, 0, nullptr,
                                               D3DPOOL_MANAGED),
                  D3D_OK)
            << c.what;
        EXPECT_EQ(width, c.expectedWidth) << c.what;
        EXPECT_EQ(height, c.expectedHeight) << c.what;
    }
}

TEST_F(TextureRequirements, CutsLevelsToTheFullChain)
{
    static const struct {
        UINT given, expected;
    } cases[] = {{0, 7}, {D3DX_DEFAULT, 7}, {3, 3}, {100, 7}}; // 64, 32, 16, 8, 4, 2, 1
    for (const auto& c : cases) {
        UINT width = 64;
        UINT height = 16;
        UINT levels = c.given;
        ASSERT_EQ(D3DXCheckTextureRequirements(device, &width, &height, &levels, 0, nullptr,
                                               D3DPOOL_MANAGED),
                  D3D_OK);
        EXPECT_EQ(levels, c.expected) << c.given;
    }
}

TEST_F(TextureRequirements, TakesTheNearestFormat)
{
    static const struct {
        const char* what;
        D3DFORMAT given, expected;
    } cases[] = {
        {"unknown", D3DFMT_UNKNOWN, D3DFMT_A8R8G8B8},
        {"24 bits", D3DFMT_R8G8B8, D3DFMT_X8R8G8B8},
        {"supported", D3DFMT_DXT5, D3DFMT_DXT5},
    };
    for (const auto& c : cases) {
        D3DFORMAT format = c.given;
        ASSERT_EQ(D3DXCheckTextureRequirements(device, nullptr, nullptr, nullptr, 0, &format,
                                               D3DPOOL_MANAGED),
                  D3D_OK)
            << c.what;
        EXPECT_EQ(format, c.expected) << c.what;
    }
}

TEST_F(TextureRequirements, CompressedSidesAreWholeBlocks)
{
    UINT width = 13;
    UINT height = 2;
    D3DFORMAT format = D3DFMT_DXT3;
    ASSERT_EQ(
        D3DXCheckTextureRequirements(device, &width, &height, nullptr, 0, &format, D3DPOOL_MANAGED),
        D3D_OK);
    EXPECT_EQ(width, 16u);
    EXPECT_EQ(height, 4u);
}

TEST_F(TextureRequirements, RefusesBufferUsages)
{
    EXPECT_EQ(D3DXCheckTextureRequirements(device, nullptr, nullptr, nullptr, D3DUSAGE_WRITEONLY,
                                           nullptr, D3DPOOL_MANAGED),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXCheckTextureRequirements(nullptr, nullptr, nullptr, nullptr, 0, nullptr,
                                           D3DPOOL_MANAGED),
              D3DERR_INVALIDCALL);
}

TEST_F(TextureRequirements, MakesARenderTargetOfAnySize)
{
    IDirect3DTexture9* texture = nullptr;
    ASSERT_EQ(D3DXCreateTexture(device, 255, 191, 1, D3DUSAGE_RENDERTARGET, D3DFMT_A8R8G8B8,
                                D3DPOOL_DEFAULT, &texture),
              D3D_OK);
    const TextureHandle handle(texture);
    EXPECT_EQ(DescOf(*handle).Width, 255u);
    EXPECT_EQ(DescOf(*handle).Height, 191u);
    EXPECT_EQ(DescOf(*handle).Usage, static_cast<DWORD>(D3DUSAGE_RENDERTARGET));
    EXPECT_EQ(handle->GetLevelCount(), 1u);
    EXPECT_EQ(D3DXCreateTexture(device, 1, 1, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, nullptr),
              D3DERR_INVALIDCALL);
}

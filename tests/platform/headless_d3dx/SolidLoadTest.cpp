// What the headless host decides about files of cubes and volumes where hosts differ.

#include "tests/platform/d3dx/ImageBytes.h"
#include "tests/platform/d3dx/ImageDevice.h"
#include "tests/support/ScratchDirectory.h"

#include <cstring>

namespace {

class SolidLoad : public ImageDevice {
protected:
    HRESULT Cube(const std::string& file, UINT size = 0)
    {
        scratch.Write("picture.dds", file);
        IDirect3DCubeTexture9* made = nullptr;
        const HRESULT outcome = D3DXCreateCubeTextureFromFileExA(
            device, "picture.dds", size, 0, 0, D3DFMT_UNKNOWN, D3DPOOL_MANAGED, D3DX_FILTER_LINEAR,
            D3DX_FILTER_BOX, 0, nullptr, nullptr, &made);
        cube.reset(made);
        return outcome;
    }
    HRESULT Volume(const std::string& file, UINT width = 0, DWORD filter = D3DX_FILTER_LINEAR)
    {
        scratch.Write("picture.dds", file);
        IDirect3DVolumeTexture9* made = nullptr;
        const HRESULT outcome = D3DXCreateVolumeTextureFromFileExA(
            device, "picture.dds", width, 0, 0, 0, 0, D3DFMT_UNKNOWN, D3DPOOL_MANAGED, filter,
            D3DX_FILTER_BOX, 0, nullptr, nullptr, &made);
        volume.reset(made);
        return outcome;
    }

    ScratchDirectory scratch;
    ComHandle<IDirect3DCubeTexture9> cube;
    ComHandle<IDirect3DVolumeTexture9> volume;

    void TearDown() override
    {
        cube.reset();
        volume.reset();
        ImageDevice::TearDown();
    }
};

DdsParts Solid(unsigned width, unsigned height, uint32_t caps2, const std::string& pixels)
{
    DdsParts parts = ArgbDds(width, height, pixels);
    parts.caps2 = caps2;
    return parts;
}

} // namespace

/// Eight texels of 0, 40 .. 280 / 2: their mean is (0 + 20 + .. + 140) / 8 = 70.
TEST_F(SolidLoad, LevelsOfVolumesAreMeansOfEight)
{
    std::string texels;
    for (uint32_t i = 0; i < 8; ++i)
        texels += U32(0xFF000000 | i * 20);
    DdsParts parts = Solid(2, 2, 0x200000, texels);
    parts.depth = 2;
    ASSERT_EQ(Volume(DdsFile(parts)), D3D_OK);
    D3DLOCKED_BOX locked = {};
    ASSERT_EQ(volume->LockBox(1, &locked, nullptr, D3DLOCK_READONLY), D3D_OK);
    uint32_t word = 0;
    std::memcpy(&word, locked.pBits, 4);
    ASSERT_EQ(volume->UnlockBox(1), D3D_OK);
    EXPECT_EQ(word, 0xFF000046u);
}

TEST_F(SolidLoad, OtherKindsOfFilesAreRefused)
{
    const std::string flat = DdsFile(ArgbDds(1, 1, U32(1)));
    EXPECT_EQ(Cube(flat), D3DXERR_INVALIDDATA);
    EXPECT_EQ(Volume(flat), D3DXERR_INVALIDDATA);
    DdsParts parts = Solid(1, 1, 0x200000, U32(1));
    parts.depth = 1;
    EXPECT_EQ(Cube(DdsFile(parts)), D3DXERR_INVALIDDATA);
    EXPECT_EQ(Volume(DdsFile(Solid(1, 1, 0xFE00, Repeated(24, 1)))), D3DXERR_INVALIDDATA);
    EXPECT_EQ(Cube(DdsFile(Solid(2, 1, 0xFE00, Repeated(48, 1)))), D3DXERR_INVALIDDATA)
        << "not square";
}

TEST_F(SolidLoad, ArgumentsAreChecked)
{
    IDirect3DCubeTexture9* made = nullptr;
    EXPECT_EQ(D3DXCreateCubeTextureFromFileExA(device, nullptr, 0, 0, 0, D3DFMT_UNKNOWN,
                                               D3DPOOL_MANAGED, D3DX_FILTER_LINEAR, D3DX_FILTER_BOX,
                                               0, nullptr, nullptr, &made),
              D3DERR_INVALIDCALL);
    DdsParts parts = Solid(1, 1, 0x200000, U32(1));
    parts.depth = 1;
    EXPECT_EQ(Volume(DdsFile(parts), 8), D3DERR_INVALIDCALL) << "volumes are not scaled";
    EXPECT_EQ(Volume(DdsFile(parts), 0, 99), D3DERR_INVALIDCALL) << "no such filter";
    ASSERT_EQ(Cube(DdsFile(Solid(1, 1, 0xFE00, Repeated(24, 1))), 4), D3D_OK) << "cubes are";
    EXPECT_EQ(cube->GetLevelCount(), 3u);
}

/// 6 texels of blocks become 8.
TEST_F(SolidLoad, SidesGoUpToWholeBlocks)
{
    DdsParts parts = {6, 6, Repeated(6 * 32, 0)};
    parts.fourCC = "DXT1";
    parts.caps2 = 0xFE00;
    ASSERT_EQ(Cube(DdsFile(parts)), D3D_OK);
    D3DSURFACE_DESC desc = {};
    ASSERT_EQ(cube->GetLevelDesc(0, &desc), D3D_OK);
    EXPECT_EQ(desc.Width, 8u);
}

/// More texels than a volume may have are refused by the device, not by running out of memory.
TEST_F(SolidLoad, VolumesHaveALimit)
{
    IDirect3DVolumeTexture9* made = nullptr;
    EXPECT_EQ(device->CreateVolumeTexture(2048, 2048, 2048, 1, 0, D3DFMT_L8, D3DPOOL_MANAGED, &made,
                                          nullptr),
              D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(
        device->CreateVolumeTexture(2049, 1, 1, 1, 0, D3DFMT_L8, D3DPOOL_MANAGED, &made, nullptr),
        D3DERR_INVALIDCALL);
    EXPECT_EQ(made, nullptr);
}

// Cubes and volumes as objects, on every host.

#include "tests/platform/d3d9/DeviceTestFixture.h"
#include "tests/support/InterfaceIds.h"

#include <cstring>

namespace {

class SolidTextureTest : public DeviceTest {
protected:
    Com<IDirect3DCubeTexture9> Cube(UINT side, UINT levels, D3DFORMAT format = D3DFMT_A8R8G8B8)
    {
        Com<IDirect3DCubeTexture9> cube;
        EXPECT_EQ(device->CreateCubeTexture(side, levels, 0, format, D3DPOOL_MANAGED, cube.Out(),
                                            nullptr),
                  D3D_OK);
        return cube;
    }
    Com<IDirect3DVolumeTexture9> Volume(UINT width, UINT height, UINT depth, UINT levels,
                                        D3DFORMAT format = D3DFMT_A8R8G8B8)
    {
        Com<IDirect3DVolumeTexture9> volume;
        EXPECT_EQ(device->CreateVolumeTexture(width, height, depth, levels, 0, format,
                                              D3DPOOL_MANAGED, volume.Out(), nullptr),
                  D3D_OK);
        return volume;
    }
};

constexpr auto kPositiveX = D3DCUBEMAP_FACE_POSITIVE_X;
constexpr auto kNegativeZ = D3DCUBEMAP_FACE_NEGATIVE_Z;

} // namespace

TEST_F(SolidTextureTest, CapsNameCubesAndVolumes)
{
    D3DCAPS9 caps = {};
    ASSERT_EQ(device->GetDeviceCaps(&caps), D3D_OK);
    constexpr DWORD kSolid = D3DPTEXTURECAPS_CUBEMAP | D3DPTEXTURECAPS_VOLUMEMAP |
                             D3DPTEXTURECAPS_MIPCUBEMAP | D3DPTEXTURECAPS_MIPVOLUMEMAP;
    EXPECT_EQ(caps.TextureCaps & kSolid, kSolid);
    constexpr DWORD kLinear = D3DPTFILTERCAPS_MINFLINEAR | D3DPTFILTERCAPS_MAGFLINEAR;
    EXPECT_EQ(caps.CubeTextureFilterCaps & kLinear, kLinear);
    EXPECT_EQ(caps.VolumeTextureFilterCaps & kLinear, kLinear);
    EXPECT_NE(caps.VolumeTextureAddressCaps & D3DPTADDRESSCAPS_WRAP, 0u);
    EXPECT_GE(caps.MaxVolumeExtent, 256u);
    for (const D3DRESOURCETYPE type : {D3DRTYPE_CUBETEXTURE, D3DRTYPE_VOLUMETEXTURE})
        EXPECT_EQ(d3d->CheckDeviceFormat(D3DADAPTER_DEFAULT, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, 0,
                                         type, D3DFMT_A8R8G8B8),
                  D3D_OK)
            << type;
}

TEST_F(SolidTextureTest, FacesHaveTheSameLevels)
{
    const Com<IDirect3DCubeTexture9> cube = Cube(8, 0);
    ASSERT_TRUE(cube);
    EXPECT_EQ(cube->GetType(), D3DRTYPE_CUBETEXTURE);
    ASSERT_EQ(cube->GetLevelCount(), 4u);
    for (UINT level = 0; level < 4; ++level) {
        D3DSURFACE_DESC desc = {};
        ASSERT_EQ(cube->GetLevelDesc(level, &desc), D3D_OK);
        EXPECT_EQ(desc.Width, 8u >> level);
        EXPECT_EQ(desc.Height, 8u >> level);
        EXPECT_EQ(desc.Type, D3DRTYPE_SURFACE);
        EXPECT_EQ(desc.Pool, D3DPOOL_MANAGED);
    }
    D3DSURFACE_DESC desc = {};
    EXPECT_EQ(cube->GetLevelDesc(4, &desc), D3DERR_INVALIDCALL);
}

TEST_F(SolidTextureTest, EachFaceKeepsWhatIsWritten)
{
    const Com<IDirect3DCubeTexture9> cube = Cube(2, 1);
    ASSERT_TRUE(cube);
    for (uint32_t face = 0; face < 6; ++face) {
        D3DLOCKED_RECT locked = {};
        const auto name = static_cast<D3DCUBEMAP_FACES>(face);
        ASSERT_EQ(cube->LockRect(name, 0, &locked, nullptr, 0), D3D_OK);
        std::memcpy(static_cast<uint8_t*>(locked.pBits) + locked.Pitch, &face, sizeof face);
        ASSERT_EQ(cube->UnlockRect(name, 0), D3D_OK);
    }
    for (uint32_t face = 0; face < 6; ++face) {
        D3DLOCKED_RECT locked = {};
        const auto name = static_cast<D3DCUBEMAP_FACES>(face);
        const RECT lowerLeft = {0, 1, 1, 2};
        ASSERT_EQ(cube->LockRect(name, 0, &locked, &lowerLeft, D3DLOCK_READONLY), D3D_OK);
        uint32_t read = 99;
        std::memcpy(&read, locked.pBits, sizeof read);
        EXPECT_EQ(read, face);
        ASSERT_EQ(cube->UnlockRect(name, 0), D3D_OK);
    }
}

TEST_F(SolidTextureTest, FacesAreSurfacesOfTheirCube)
{
    Com<IDirect3DCubeTexture9> cube = Cube(4, 2);
    ASSERT_TRUE(cube);
    Com<IDirect3DSurface9> face;
    ASSERT_EQ(cube->GetCubeMapSurface(kNegativeZ, 1, face.Out()), D3D_OK);
    EXPECT_EQ(ReferenceCount(cube.Get()), 2u);
    void* container = nullptr;
    ASSERT_EQ(face->GetContainer(kCubeTextureId, &container), D3D_OK);
    EXPECT_EQ(static_cast<IDirect3DCubeTexture9*>(container), cube.Get());
    cube->Release();
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(face->LockRect(&locked, nullptr, 0), D3D_OK);
    EXPECT_EQ(cube->LockRect(kNegativeZ, 1, &locked, nullptr, 0), D3DERR_INVALIDCALL);
    EXPECT_EQ(cube->LockRect(kPositiveX, 1, &locked, nullptr, 0), D3D_OK) << "another face";
    EXPECT_EQ(cube->UnlockRect(kPositiveX, 1), D3D_OK);
    EXPECT_EQ(face->UnlockRect(), D3D_OK);
    EXPECT_EQ(cube->GetCubeMapSurface(kPositiveX, 2, face.Out()), D3DERR_INVALIDCALL);
}

TEST_F(SolidTextureTest, LevelsOfAVolumeHalveInThreeDirections)
{
    const Com<IDirect3DVolumeTexture9> volume = Volume(8, 4, 16, 0);
    ASSERT_TRUE(volume);
    EXPECT_EQ(volume->GetType(), D3DRTYPE_VOLUMETEXTURE);
    ASSERT_EQ(volume->GetLevelCount(), 5u); // 16, 8, 4, 2, 1
    static const UINT sizes[][3] = {{8, 4, 16}, {4, 2, 8}, {2, 1, 4}, {1, 1, 2}, {1, 1, 1}};
    for (UINT level = 0; level < 5; ++level) {
        D3DVOLUME_DESC desc = {};
        ASSERT_EQ(volume->GetLevelDesc(level, &desc), D3D_OK);
        EXPECT_EQ(desc.Width, sizes[level][0]) << level;
        EXPECT_EQ(desc.Height, sizes[level][1]) << level;
        EXPECT_EQ(desc.Depth, sizes[level][2]) << level;
        EXPECT_EQ(desc.Type, D3DRTYPE_VOLUME);
    }
}

TEST_F(SolidTextureTest, BoxesAddressSlices)
{
    const Com<IDirect3DVolumeTexture9> volume = Volume(4, 2, 3, 1);
    ASSERT_TRUE(volume);
    D3DLOCKED_BOX locked = {};
    ASSERT_EQ(volume->LockBox(0, &locked, nullptr, 0), D3D_OK);
    ASSERT_GE(locked.SlicePitch, locked.RowPitch * 2);
    const uint32_t word = 0x11223344;
    std::memcpy(static_cast<uint8_t*>(locked.pBits) + locked.SlicePitch * 2 + locked.RowPitch + 12,
                &word, sizeof word);
    EXPECT_EQ(volume->LockBox(0, &locked, nullptr, 0), D3DERR_INVALIDCALL) << "locked already";
    ASSERT_EQ(volume->UnlockBox(0), D3D_OK);
    const D3DBOX last = {3, 1, 4, 2, 2, 3};
    ASSERT_EQ(volume->LockBox(0, &locked, &last, D3DLOCK_READONLY), D3D_OK);
    uint32_t read = 0;
    std::memcpy(&read, locked.pBits, sizeof read);
    EXPECT_EQ(read, word);
    EXPECT_EQ(volume->UnlockBox(0), D3D_OK);
    EXPECT_EQ(volume->UnlockBox(0), D3DERR_INVALIDCALL);
}

/// 8 x 8 x 2 in blocks of 8 bytes: rows of 2 blocks, slices of 2 rows.
TEST_F(SolidTextureTest, SlicesConsistOfBlocks)
{
    const Com<IDirect3DVolumeTexture9> volume = Volume(8, 8, 2, 1, D3DFMT_DXT1);
    ASSERT_TRUE(volume);
    D3DLOCKED_BOX whole = {};
    ASSERT_EQ(volume->LockBox(0, &whole, nullptr, 0), D3D_OK);
    EXPECT_EQ(whole.RowPitch, 16);
    EXPECT_EQ(whole.SlicePitch, 32);
    ASSERT_EQ(volume->UnlockBox(0), D3D_OK);
}

TEST_F(SolidTextureTest, RefusesInvalidArguments)
{
    Com<IDirect3DCubeTexture9> cube;
    Com<IDirect3DVolumeTexture9> volume;
    const auto makeCube = [&](UINT side, UINT levels, DWORD usage, D3DFORMAT format) {
        return device->CreateCubeTexture(side, levels, usage, format, D3DPOOL_MANAGED, cube.Out(),
                                         nullptr);
    };
    EXPECT_TRUE(FAILED(makeCube(0, 1, 0, D3DFMT_A8R8G8B8)));
    EXPECT_TRUE(FAILED(makeCube(4, 1, 0, D3DFMT_UNKNOWN)));
    EXPECT_TRUE(FAILED(makeCube(4, 1, D3DUSAGE_DYNAMIC, D3DFMT_A8R8G8B8))) << "managed";
    const auto makeVolume = [&](UINT width, UINT height, UINT depth, UINT levels) {
        return device->CreateVolumeTexture(width, height, depth, levels, 0, D3DFMT_A8R8G8B8,
                                           D3DPOOL_MANAGED, volume.Out(), nullptr);
    };
    EXPECT_TRUE(FAILED(makeVolume(0, 4, 4, 1)));
    EXPECT_TRUE(FAILED(makeVolume(4, 0, 4, 1)));
    EXPECT_TRUE(FAILED(makeVolume(4, 4, 0, 1)));
    EXPECT_FALSE(cube);
    EXPECT_FALSE(volume);
}

TEST_F(SolidTextureTest, StagesHoldTexturesOfAllKinds)
{
    Com<IDirect3DCubeTexture9> cube = Cube(4, 1);
    Com<IDirect3DVolumeTexture9> volume = Volume(4, 4, 4, 1);
    ASSERT_TRUE(cube && volume);
    ASSERT_EQ(device->SetTexture(0, cube.Get()), D3D_OK);
    ASSERT_EQ(device->SetTexture(1, volume.Get()), D3D_OK);
    Com<IDirect3DBaseTexture9> bound;
    ASSERT_EQ(device->GetTexture(0, bound.Out()), D3D_OK);
    EXPECT_EQ(bound.Get(), static_cast<IDirect3DBaseTexture9*>(cube.Get()));
    ASSERT_EQ(device->GetTexture(1, bound.Out()), D3D_OK);
    EXPECT_EQ(bound.Get(), static_cast<IDirect3DBaseTexture9*>(volume.Get()));
    bound.Release();
    EXPECT_EQ(cube->SetLOD(0), 0u);
    ASSERT_EQ(device->SetTexture(0, nullptr), D3D_OK);
    ASSERT_EQ(device->SetTexture(1, nullptr), D3D_OK);
}

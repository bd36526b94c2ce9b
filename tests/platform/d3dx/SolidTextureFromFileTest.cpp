// Cubes and volumes from DDS files, on every host. The files hold all their levels, each of one colour, so that
// no filter of a host takes part.

#include "tests/platform/d3dx/ImageBytes.h"
#include "tests/platform/d3dx/ImageDevice.h"
#include "tests/support/ScratchDirectory.h"

#include <cstring>

namespace {

using CubeHandle = ComHandle<IDirect3DCubeTexture9>;
using VolumeHandle = ComHandle<IDirect3DVolumeTexture9>;

constexpr uint32_t kWholeCube = 0xFE00; // a cube, and all six faces
constexpr uint32_t kVolumeCaps = 0x200000;

std::string Texels(size_t count, uint32_t word)
{
    std::string bytes;
    for (size_t i = 0; i < count; ++i)
        bytes += U32(word);
    return bytes;
}

uint32_t FaceColour(unsigned face, unsigned level)
{
    return 0xFF000000 | (face + 1) << 8 | (level + 1);
}

/// Six faces of 4, 2 and 1 texels.
DdsParts CubeParts()
{
    DdsParts parts = ArgbDds(4, 4, "");
    parts.levels = 3;
    parts.caps2 = kWholeCube;
    for (unsigned face = 0; face < 6; ++face)
        for (unsigned level = 0; level < 3; ++level)
            parts.pixels += Texels(size_t{16} >> level * 2, FaceColour(face, level));
    return parts;
}

uint32_t SliceColour(unsigned slice, unsigned level)
{
    return 0xFF000000 | (slice + 1) << 16 | (level + 1);
}

/// 4 x 2 texels in 4 slices, then 2 x 1 in 2 and 1 x 1.
DdsParts VolumeParts()
{
    DdsParts parts = ArgbDds(4, 2, "");
    parts.levels = 3;
    parts.caps2 = kVolumeCaps;
    parts.depth = 4;
    for (unsigned level = 0; level < 3; ++level)
        for (unsigned slice = 0; slice < 4u >> level; ++slice)
            parts.pixels +=
                Texels(level == 0 ? 8 : (level == 1 ? 2 : 1), SliceColour(slice, level));
    return parts;
}

class SolidTextureFromFile : public ImageDevice {
protected:
    CubeHandle LoadCube(const std::string& file, UINT levels = 0, D3DFORMAT format = D3DFMT_UNKNOWN)
    {
        scratch.Write("picture.dds", file);
        IDirect3DCubeTexture9* cube = nullptr;
        result = D3DXCreateCubeTextureFromFileExA(device, "picture.dds", 0, levels, 0, format,
                                                  D3DPOOL_MANAGED, D3DX_FILTER_LINEAR,
                                                  D3DX_FILTER_BOX, 0, nullptr, nullptr, &cube);
        return CubeHandle(cube);
    }
    VolumeHandle LoadVolume(const std::string& file, UINT levels = 0,
                            D3DFORMAT format = D3DFMT_UNKNOWN)
    {
        scratch.Write("picture.dds", file);
        IDirect3DVolumeTexture9* volume = nullptr;
        result = D3DXCreateVolumeTextureFromFileExA(device, "picture.dds", 0, 0, 0, levels, 0,
                                                    format, D3DPOOL_MANAGED, D3DX_FILTER_LINEAR,
                                                    D3DX_FILTER_BOX, 0, nullptr, nullptr, &volume);
        return VolumeHandle(volume);
    }

    /// The last texel of a level of a face.
    static uint32_t LastOf(IDirect3DCubeTexture9& cube, unsigned face, UINT level)
    {
        D3DSURFACE_DESC desc = {};
        D3DLOCKED_RECT locked = {};
        const auto name = static_cast<D3DCUBEMAP_FACES>(face);
        EXPECT_EQ(cube.GetLevelDesc(level, &desc), D3D_OK);
        EXPECT_EQ(cube.LockRect(name, level, &locked, nullptr, D3DLOCK_READONLY), D3D_OK);
        uint32_t word = 0;
        std::memcpy(&word,
                    static_cast<uint8_t*>(locked.pBits) +
                        size_t{desc.Height - 1} * static_cast<UINT>(locked.Pitch) +
                        size_t{desc.Width - 1} * 4,
                    4);
        EXPECT_EQ(cube.UnlockRect(name, level), D3D_OK);
        return word;
    }
    /// The last texel of a slice of a level.
    static uint32_t LastOf(IDirect3DVolumeTexture9& volume, UINT level, UINT slice)
    {
        D3DVOLUME_DESC desc = {};
        D3DLOCKED_BOX locked = {};
        EXPECT_EQ(volume.GetLevelDesc(level, &desc), D3D_OK);
        EXPECT_EQ(volume.LockBox(level, &locked, nullptr, D3DLOCK_READONLY), D3D_OK);
        uint32_t word = 0;
        std::memcpy(&word,
                    static_cast<uint8_t*>(locked.pBits) +
                        size_t{slice} * static_cast<UINT>(locked.SlicePitch) +
                        size_t{desc.Height - 1} * static_cast<UINT>(locked.RowPitch) +
                        size_t{desc.Width - 1} * 4,
                    4);
        EXPECT_EQ(volume.UnlockBox(level), D3D_OK);
        return word;
    }

    ScratchDirectory scratch;
};

} // namespace

TEST_F(SolidTextureFromFile, TheHeaderTellsTheKind)
{
    D3DXIMAGE_INFO info = {};
    scratch.Write("picture.dds", DdsFile(CubeParts()));
    ASSERT_EQ(D3DXGetImageInfoFromFileA("picture.dds", &info), D3D_OK);
    EXPECT_EQ(info.ResourceType, D3DRTYPE_CUBETEXTURE);
    scratch.Write("picture.dds", DdsFile(VolumeParts()));
    ASSERT_EQ(D3DXGetImageInfoFromFileA("picture.dds", &info), D3D_OK);
    EXPECT_EQ(info.ResourceType, D3DRTYPE_VOLUMETEXTURE);
    EXPECT_EQ(info.Depth, 4u);
}

TEST_F(SolidTextureFromFile, ACubeHasItsFacesAndLevels)
{
    const CubeHandle cube = LoadCube(DdsFile(CubeParts()));
    ASSERT_EQ(result, D3D_OK);
    ASSERT_EQ(cube->GetLevelCount(), 3u);
    for (unsigned face = 0; face < 6; ++face)
        for (unsigned level = 0; level < 3; ++level)
            EXPECT_EQ(LastOf(*cube, face, level), FaceColour(face, level)) << face << ' ' << level;
}

TEST_F(SolidTextureFromFile, AVolumeHasItsSlicesAndLevels)
{
    const VolumeHandle volume = LoadVolume(DdsFile(VolumeParts()));
    ASSERT_EQ(result, D3D_OK);
    ASSERT_EQ(volume->GetLevelCount(), 3u);
    for (unsigned level = 0; level < 3; ++level)
        for (unsigned slice = 0; slice < 4u >> level; ++slice)
            EXPECT_EQ(LastOf(*volume, level, slice), SliceColour(slice, level))
                << level << ' ' << slice;
}

/// One block of one colour for each face; the chain below 4 texels is filtered from it.
TEST_F(SolidTextureFromFile, CompressedFacesStayCompressed)
{
    DdsParts parts = {4, 4, ""};
    parts.fourCC = "DXT1";
    parts.caps2 = kWholeCube;
    for (unsigned face = 0; face < 6; ++face)
        parts.pixels += ColourBlock(0xF800 + face, 0, 0);
    const CubeHandle cube = LoadCube(DdsFile(parts), 1);
    ASSERT_EQ(result, D3D_OK);
    for (unsigned face = 0; face < 6; ++face) {
        D3DLOCKED_RECT locked = {};
        const auto name = static_cast<D3DCUBEMAP_FACES>(face);
        ASSERT_EQ(cube->LockRect(name, 0, &locked, nullptr, D3DLOCK_READONLY), D3D_OK);
        EXPECT_EQ(std::memcmp(locked.pBits, ColourBlock(0xF800 + face, 0, 0).data(), 8), 0);
        ASSERT_EQ(cube->UnlockRect(name, 0), D3D_OK);
    }
}

/// Those of volumes only on the headless host: Wine makes none.
TEST_F(SolidTextureFromFile, MissingLevelsOfCubesAreMade)
{
    DdsParts parts = ArgbDds(2, 2, "");
    parts.caps2 = kWholeCube;
    for (unsigned face = 0; face < 6; ++face)
        parts.pixels += Texels(4, FaceColour(face, 0));
    const CubeHandle cube = LoadCube(DdsFile(parts));
    ASSERT_EQ(result, D3D_OK);
    ASSERT_EQ(cube->GetLevelCount(), 2u);
    EXPECT_EQ(LastOf(*cube, 5, 1), FaceColour(5, 0));
}

TEST_F(SolidTextureFromFile, OneLevelIsEnoughIfAskedFor)
{
    const CubeHandle cube = LoadCube(DdsFile(CubeParts()), 1);
    ASSERT_EQ(result, D3D_OK);
    EXPECT_EQ(cube->GetLevelCount(), 1u);
    const VolumeHandle volume = LoadVolume(DdsFile(VolumeParts()), 2);
    ASSERT_EQ(result, D3D_OK);
    EXPECT_EQ(volume->GetLevelCount(), 2u);
}

TEST_F(SolidTextureFromFile, FormatsAreConverted)
{
    const CubeHandle cube = LoadCube(DdsFile(CubeParts()), 1, D3DFMT_X8R8G8B8);
    ASSERT_EQ(result, D3D_OK);
    D3DSURFACE_DESC desc = {};
    ASSERT_EQ(cube->GetLevelDesc(0, &desc), D3D_OK);
    EXPECT_EQ(desc.Format, D3DFMT_X8R8G8B8);
    EXPECT_EQ(LastOf(*cube, 3, 0) & 0xFFFFFF, FaceColour(3, 0) & 0xFFFFFF);
}

TEST_F(SolidTextureFromFile, CutFilesAreRefused)
{
    const std::string cube = DdsFile(CubeParts()), volume = DdsFile(VolumeParts());
    EXPECT_FALSE(LoadCube(cube.substr(0, cube.size() - 1)));
    EXPECT_EQ(result, D3DXERR_INVALIDDATA);
    EXPECT_FALSE(LoadVolume(volume.substr(0, volume.size() - 1)));
    EXPECT_EQ(result, D3DXERR_INVALIDDATA);
    EXPECT_FALSE(LoadCube(cube.substr(0, 100)));
    EXPECT_EQ(result, D3DXERR_INVALIDDATA);
}

TEST_F(SolidTextureFromFile, CubesWithoutAllFacesAreRefused)
{
    DdsParts parts = CubeParts();
    parts.caps2 = 0x7E00; // the last face is missing
    parts.pixels.resize(parts.pixels.size() / 6 * 5);
    EXPECT_FALSE(LoadCube(DdsFile(parts)));
    EXPECT_EQ(result, D3DXERR_INVALIDDATA);
}

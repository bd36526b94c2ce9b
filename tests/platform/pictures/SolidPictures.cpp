// Cubes and volumes: faces, filters, levels, address modes, generated coordinates, shaders.

#include "tests/platform/pictures/ShaderStage.h"

namespace {

/// Three coordinates for a place on the target.
struct SolidPictureVertex {
    float x, y, z, rhw;
    float u, v, w;

    static constexpr DWORD kFormat = D3DFVF_XYZRHW | D3DFVF_TEX1 | D3DFVF_TEXCOORDSIZE3(0);
};

/// A map's coordinates, the rows of a matrix, and an eye vector behind them.
struct MatrixPictureVertex {
    float x, y, z, rhw;
    float map[4], rows[3][4];

    static constexpr DWORD kFormat = D3DFVF_XYZRHW | D3DFVF_TEX4 | D3DFVF_TEXCOORDSIZE4(0) |
                                     D3DFVF_TEXCOORDSIZE4(1) | D3DFVF_TEXCOORDSIZE4(2) |
                                     D3DFVF_TEXCOORDSIZE4(3);
};

/// Binds a texture for one draw.
class BoundTexture {
public:
    BoundTexture(PictureStage& pictureStage, DWORD boundSlot, IDirect3DBaseTexture9* boundTexture)
        : stage(pictureStage),
          slot(boundSlot),
          texture(boundTexture)
    {
        PictureStage::Check(stage->SetTexture(slot, texture.get()));
        if (slot < 4)
            stage.Colour(slot, D3DTOP_SELECTARG1, D3DTA_TEXTURE);
    }
    ~BoundTexture() { stage->SetTexture(slot, nullptr); }
    BoundTexture(const BoundTexture&) = delete;
    BoundTexture& operator=(const BoundTexture&) = delete;

private:
    PictureStage& stage;
    DWORD slot;
    ComHandle<IDirect3DBaseTexture9> texture;
};

using FaceColour = std::function<DWORD(DWORD face, UINT level, UINT x, UINT y)>;

IDirect3DBaseTexture9* MakeCube(PictureStage& stage, UINT side, UINT levels,
                                const FaceColour& colour)
{
    IDirect3DCubeTexture9* cube = nullptr;
    PictureStage::Check(stage->CreateCubeTexture(side, levels, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED,
                                                 &cube, nullptr));
    for (DWORD face = 0; face < 6; ++face)
        for (UINT level = 0; level < cube->GetLevelCount(); ++level) {
            const auto name = static_cast<D3DCUBEMAP_FACES>(face);
            D3DLOCKED_RECT locked = {};
            PictureStage::Check(cube->LockRect(name, level, &locked, nullptr, 0));
            for (UINT y = 0; y < side >> level; ++y)
                for (UINT x = 0; x < side >> level; ++x) {
                    const DWORD word = colour(face, level, x, y);
                    std::memcpy(static_cast<BYTE*>(locked.pBits) + ptrdiff_t{locked.Pitch} * y +
                                    x * 4,
                                &word, 4);
                }
            PictureStage::Check(cube->UnlockRect(name, level));
        }
    return cube;
}

/// Each face has a colour of its own that grows brighter along x and towards another hue along y.
IDirect3DBaseTexture9* FaceGradients(PictureStage& stage, UINT side = 8)
{
    constexpr DWORD kFaces[] = {0x400000, 0x004000, 0x000040, 0x404000, 0x400040, 0x004040};
    return MakeCube(stage, side, 1, [=](DWORD face, UINT, UINT x, UINT y) {
        return 0xFF000000 | (kFaces[face] + x * 0x101010 + (y * 16 << (face % 3 * 8)));
    });
}

IDirect3DBaseTexture9* MakeVolume(PictureStage& stage, UINT width, UINT height, UINT depth,
                                  const std::function<DWORD(UINT x, UINT y, UINT z)>& colour)
{
    IDirect3DVolumeTexture9* volume = nullptr;
    PictureStage::Check(stage->CreateVolumeTexture(width, height, depth, 1, 0, D3DFMT_A8R8G8B8,
                                                   D3DPOOL_MANAGED, &volume, nullptr));
    D3DLOCKED_BOX locked = {};
    PictureStage::Check(volume->LockBox(0, &locked, nullptr, 0));
    for (UINT z = 0; z < depth; ++z)
        for (UINT y = 0; y < height; ++y)
            for (UINT x = 0; x < width; ++x) {
                const DWORD word = colour(x, y, z);
                std::memcpy(static_cast<BYTE*>(locked.pBits) + ptrdiff_t{locked.SlicePitch} * z +
                                ptrdiff_t{locked.RowPitch} * y + x * 4,
                            &word, 4);
            }
    PictureStage::Check(volume->UnlockBox(0));
    return volume;
}

IDirect3DBaseTexture9* Slices(PictureStage& stage)
{
    return MakeVolume(stage, 4, 4, 8, [](UINT x, UINT y, UINT z) {
        return 0xFF000000 | x * 80 << 16 | y * 80 << 8 | z * 36;
    });
}

/// A rectangle whose corners have the given coordinates: upper left, upper right, lower left.
void SolidRectangle(PictureStage& stage, float left, float top, float right, float bottom,
                    const float (&a)[3], const float (&b)[3], const float (&c)[3])
{
    const float x0 = left - 0.5f, y0 = top - 0.5f, x1 = right - 0.5f, y1 = bottom - 0.5f;
    stage.DrawVertices<SolidPictureVertex>(
        D3DPT_TRIANGLESTRIP, 2,
        {{x0, y0, 0.5f, 1, a[0], a[1], a[2]},
         {x1, y0, 0.5f, 1, b[0], b[1], b[2]},
         {x0, y1, 0.5f, 1, c[0], c[1], c[2]},
         {x1, y1, 0.5f, 1, b[0] + c[0] - a[0], b[1] + c[1] - a[1], b[2] + c[2] - a[2]}});
}

/// Six rectangles, each around a face and a little way into its neighbours.
void DrawFaces(PictureStage& stage, float extent)
{
    const float e = extent, f = -extent;
    SolidRectangle(stage, 0, 0, 21, 32, {1, e, e}, {1, e, f}, {1, f, e});
    SolidRectangle(stage, 21, 0, 42, 32, {-1, e, f}, {-1, e, e}, {-1, f, f});
    SolidRectangle(stage, 42, 0, 64, 32, {f, 1, f}, {e, 1, f}, {f, 1, e});
    SolidRectangle(stage, 0, 32, 21, 64, {f, -1, e}, {e, -1, e}, {f, -1, f});
    SolidRectangle(stage, 21, 32, 42, 64, {f, e, 1}, {e, e, 1}, {f, f, 1});
    SolidRectangle(stage, 42, 32, 64, 64, {e, e, -1}, {f, e, -1}, {e, f, -1});
}

void CubeFaces(PictureStage& stage)
{
    const BoundTexture bound(stage, 0, FaceGradients(stage, 7)); // no border in the middle
    DrawFaces(stage, 1.31f);
}

void CubeLinear(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    const BoundTexture bound(stage, 0, FaceGradients(stage));
    DrawFaces(stage, 0.97f);
}

/// Stripes with 0.8 texels of a face per pixel, then 1.6, 3.2 and 6.4.
void CubeLevels(PictureStage& stage)
{
    constexpr DWORD kColours[] = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFF00,
                                  0xFFFFFFFF, 0xFF00FFFF, 0xFFFF00FF};
    stage.Filter(0, D3DTEXF_POINT, D3DTEXF_POINT);
    const BoundTexture bound(stage, 0, MakeCube(stage, 64, 0, [&](DWORD, UINT level, UINT, UINT) {
                                 return kColours[level];
                             }));
    for (int i = 0; i < 4; ++i) {
        const float top = static_cast<float>(i) * 16.0f, width = static_cast<float>(8 << (3 - i));
        const float e = width / 2 * 0.8f * static_cast<float>(1 << i) / 32.0f;
        SolidRectangle(stage, 2, top, 2 + width, top + 12, {-e, 0.1f, 1}, {e, 0.1f, 1},
                       {-e, 0.2f, 1});
    }
}

void GeneratedForCube(PictureStage& stage, DWORD source)
{
    stage.LookAtOrigin();
    stage->SetTextureStageState(0, D3DTSS_TEXCOORDINDEX, source);
    stage->SetTextureStageState(0, D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_COUNT3);
    stage.Filter(0, D3DTEXF_LINEAR);
    const BoundTexture bound(stage, 0, FaceGradients(stage));
    stage.Sphere();
}

void CubeReflection(PictureStage& stage)
{
    GeneratedForCube(stage, D3DTSS_TCI_CAMERASPACEREFLECTIONVECTOR);
}

void CubeNormal(PictureStage& stage)
{
    GeneratedForCube(stage, D3DTSS_TCI_CAMERASPACENORMAL);
}

void VolumeSlices(PictureStage& stage)
{
    const BoundTexture bound(stage, 0, Slices(stage));
    SolidRectangle(stage, 0, 0, 64, 64, {0, 0, 0.003f}, {1, 0, 0.303f}, {0, 1, 0.69f});
}

void VolumeLinear(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    VolumeSlices(stage);
}

void VolumeAddress(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetSamplerState(0, D3DSAMP_BORDERCOLOR, 0xFF00FF00);
    const BoundTexture bound(stage, 0, Slices(stage));
    for (DWORD mode = D3DTADDRESS_WRAP; mode <= D3DTADDRESS_BORDER; ++mode) {
        const float top = static_cast<float>(mode - 1) * 16.0f;
        stage->SetSamplerState(0, D3DSAMP_ADDRESSW, mode);
        SolidRectangle(stage, 0, top, 64, top + 16, {0.5f, 0.5f, -1}, {0.5f, 0.5f, 2},
                       {0.5f, 0.5f, -1});
    }
}

/// A pixel shader that shows what it reads at its first coordinates.
ShaderWords Reading(DWORD version, DWORD kind)
{
    ShaderWords words(version);
    const bool isThird = words.Major() == 3;
    if (isThird)
        words.Declare(V(0), kUsageCoordinates, 0);
    else
        words.Declare(T(0));
    words.DeclareSampler(0, kind);
    words.Op(kTex, R(0), {isThird ? V(0) : T(0), S(0)});
    return words.Op(kMov, kColour, {R(0)});
}

constexpr DWORD kCubeKind = 3, kVolumeKind = 4;

void ShaderCube(PictureStage& stage, const ShaderWords& words)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    const BoundTexture bound(stage, 0, FaceGradients(stage));
    ShaderStage shaders(stage);
    shaders.Set(words);
    DrawFaces(stage, 0.97f);
}

void ShaderVolume(PictureStage& stage, DWORD version)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    const BoundTexture bound(stage, 0, Slices(stage));
    ShaderStage shaders(stage);
    shaders.Set(Reading(version, kVolumeKind));
    SolidRectangle(stage, 0, 0, 64, 64, {0, 0, 0}, {1, 0, 0.3f}, {0, 1, 0.7f});
}

/// The product of a map's vectors with a matrix from the vertices is looked up in a cube.
void MatrixLookup(PictureStage& stage, DWORD version, void (*finish)(ShaderWords& words))
{
    stage->SetTexture(0, stage.Texture(16, [](UINT x, UINT y) {
        return 0xFF000000 | (x * 17) << 16 | (y * 17) << 8 | 0xC0;
    }));
    stage.Filter(3, D3DTEXF_LINEAR);
    const BoundTexture cube(stage, 3, FaceGradients(stage));
    ShaderStage shaders(stage);
    shaders.Constant(0, 0.25f, -0.5f, -1.0f, 0.0f);
    ShaderWords words(version);
    words.Op(kTex, T(0));
    words.Op(kTexM3x3Pad, T(1), {With(T(0), kSigned)});
    words.Op(kTexM3x3Pad, T(2), {With(T(0), kSigned)});
    finish(words);
    shaders.Set(words.Op(kMov, R(0), {T(3)}));
    const auto corner = [](float x, float y, float u, float v) {
        return MatrixPictureVertex{
            x,
            y,
            0.5f,
            1,
            {u, v, 0, 1},
            {{1, 0.2f, 0, 0.3f}, {-0.2f, 1, 0.1f, v - 0.5f}, {0.1f, u - 0.5f, 1, -1}}};
    };
    stage.DrawVertices<MatrixPictureVertex>(D3DPT_TRIANGLESTRIP, 2,
                                            {corner(-0.5f, -0.5f, 0, 0), corner(63.5f, -0.5f, 1, 0),
                                             corner(-0.5f, 63.5f, 0, 1),
                                             corner(63.5f, 63.5f, 1, 1)});
    stage->SetTexture(0, nullptr);
}

} // namespace

const std::vector<PictureProgram> kSolidPictures = {
    {"cube_faces", CubeFaces, 1, 0},
    {"cube_linear", CubeLinear, 1, 0},
    {"cube_levels", CubeLevels, 1, 0},
    {"cube_reflection", CubeReflection, 2, 0},
    {"cube_normal", CubeNormal, 1, 0},
    {"volume_slices", VolumeSlices, 1, 0},
    {"volume_linear", VolumeLinear, 1, 0},
    {"volume_address", VolumeAddress, 1, 0},
    {"ps_2_0_cube", [](PictureStage& stage) { ShaderCube(stage, Reading(0xFFFF0200, kCubeKind)); },
     1, 0},
    {"ps_1_4_cube",
     [](PictureStage& stage) {
         ShaderCube(stage, ShaderWords(0xFFFF0104).Op(kTex, R(0), {T(0)}).Op(kMov, R(0), {R(0)}));
     },
     1, 0},
    {"ps_1_1_cube",
     [](PictureStage& stage) {
         ShaderCube(stage, ShaderWords(0xFFFF0101).Op(kTex, T(0)).Op(kMov, R(0), {T(0)}));
     },
     1, 0},
    {"ps_2_0_volume", [](PictureStage& stage) { ShaderVolume(stage, 0xFFFF0200); }, 1, 0},
    {"ps_1_1_texm3x3tex",
     [](PictureStage& stage) {
         MatrixLookup(stage, 0xFFFF0101, [](ShaderWords& words) {
             words.Op(kTexM3x3Tex, T(3), {With(T(0), kSigned)});
         });
     },
     1, 0},
    {"ps_1_1_texm3x3spec",
     [](PictureStage& stage) {
         MatrixLookup(stage, 0xFFFF0101, [](ShaderWords& words) {
             words.Op(kTexM3x3Spec, T(3), {With(T(0), kSigned), C(0)});
         });
     },
     1, 0},
    {"ps_1_1_texm3x3vspec",
     [](PictureStage& stage) {
         MatrixLookup(stage, 0xFFFF0101, [](ShaderWords& words) {
             words.Op(kTexM3x3VSpec, T(3), {With(T(0), kSigned)});
         });
     },
     1, 0},
};

// Sampling: filters, address modes, levels, formats, coordinates.

#include "tests/platform/pictures/PictureProgram.h"

#include <bit>

namespace {

void FilterPoint(PictureStage& stage)
{
    stage->SetTexture(0, stage.Texture(4, [](UINT x, UINT y) {
        return 0xFF000000 | x * 80 << 16 | y * 80 << 8 | 0x40;
    }));
    stage.Rectangle(2, 2, 62, 62, 0xFFFFFFFF);
}

void FilterLinear(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    FilterPoint(stage);
}

void Addresses(PictureStage& stage, DWORD mode)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    stage.Address(0, mode, mode);
    stage->SetSamplerState(0, D3DSAMP_BORDERCOLOR, 0xFF00FF00);
    stage->SetTexture(
        0, stage.Texture(8, [](UINT x, UINT y) { return 0xFF000000 | x * 32 << 16 | y * 32; }));
    const FlatVertex corners[] = {{1.5f, 1.5f, 0.5f, 1, 0xFFFFFFFF, -1, -1},
                                  {61.5f, 1.5f, 0.5f, 1, 0xFFFFFFFF, 2, -1},
                                  {1.5f, 61.5f, 0.5f, 1, 0xFFFFFFFF, -1, 2},
                                  {61.5f, 61.5f, 0.5f, 1, 0xFFFFFFFF, 2, 2}};
    stage.DrawVertices(D3DPT_TRIANGLESTRIP, 2,
                       std::vector<FlatVertex>(std::begin(corners), std::end(corners)));
}

void AddressWrap(PictureStage& stage)
{
    Addresses(stage, D3DTADDRESS_WRAP);
}

void AddressMirror(PictureStage& stage)
{
    Addresses(stage, D3DTADDRESS_MIRROR);
}

void AddressClamp(PictureStage& stage)
{
    Addresses(stage, D3DTADDRESS_CLAMP);
}

void AddressBorder(PictureStage& stage)
{
    Addresses(stage, D3DTADDRESS_BORDER);
}

void AddressMirrorOnce(PictureStage& stage)
{
    Addresses(stage, D3DTADDRESS_MIRRORONCE);
}

/// Stripes with 0.8 texels per pixel, then 1.6, 3.2 and so on: each shows the colour of its level.
void Levels(PictureStage& stage)
{
    stage->SetTexture(0, stage.LevelColours());
    for (int i = 0; i < 6; ++i) {
        const float top = static_cast<float>(i) * 10.0f + 1.5f;
        const float u = 0.75f * static_cast<float>(1 << i);
        const float v = u * 8.0f / 60.0f;
        const D3DCOLOR white = 0xFFFFFFFF;
        stage.DrawVertices<FlatVertex>(D3DPT_TRIANGLESTRIP, 2,
                                       {{1.5f, top, 0.5f, 1, white, 0, 0},
                                        {61.5f, top, 0.5f, 1, white, u, 0},
                                        {1.5f, top + 8, 0.5f, 1, white, 0, v},
                                        {61.5f, top + 8, 0.5f, 1, white, u, v}});
    }
}

void LevelsNearest(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR, D3DTEXF_POINT);
    Levels(stage);
}

void LevelsMixed(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR, D3DTEXF_LINEAR);
    Levels(stage);
}

void LevelsBiased(PictureStage& stage)
{
    stage->SetSamplerState(0, D3DSAMP_MIPMAPLODBIAS, std::bit_cast<DWORD>(1.5f));
    LevelsNearest(stage);
}

void LevelsFromTheSecond(PictureStage& stage)
{
    stage->SetSamplerState(0, D3DSAMP_MAXMIPLEVEL, 2);
    LevelsNearest(stage);
}

void PerspectiveBoard(PictureStage& stage)
{
    stage.LookAtOrigin();
    stage->SetTexture(0, stage.Checker());
    D3DXMATRIX turn;
    D3DXMatrixRotationY(&turn, 1.1f);
    stage.World(turn);
    stage.Board();
}

void Format565(PictureStage& stage)
{
    stage->SetTexture(
        0, stage.Texture(
               32, [](UINT x, UINT y) { return x << 11 | y * 2 << 5 | (31 - x); }, D3DFMT_R5G6B5));
    stage.Rectangle(0, 0, 64, 64, 0xFFFFFFFF);
}

void FormatLuminanceAlpha(PictureStage& stage)
{
    stage->SetTexture(0, stage.Texture(
                             32, [](UINT x, UINT y) { return y * 8 << 8 | x * 8; }, D3DFMT_A8L8));
    stage.State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_SRCBLEND, static_cast<DWORD>(D3DBLEND_SRCALPHA));
    stage.State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_INVSRCALPHA));
    stage.Rectangle(0, 0, 64, 64, 0xFFFFFFFF);
}

void SizeOtherThanPowersOfTwo(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Texture(11, [](UINT x, UINT y) {
        return 0xFF000000 | x * 23 << 16 | y * 23 << 8;
    }));
    stage.Rectangle(0, 0, 64, 64, 0xFFFFFFFF, 0.5f, 2.5f);
}

void TextureMatrix(PictureStage& stage)
{
    stage.LookAtOrigin();
    stage->SetTexture(0, stage.Checker());
    // Rotated by 30 degrees and translated; the translation is in row 3, which multiplies the 1
    // after (u, v).
    D3DXMATRIX matrix;
    D3DXMatrixRotationZ(&matrix, 0.5235988f);
    matrix._31 = 0.25f;
    matrix._32 = -0.125f;
    stage->SetTransform(D3DTS_TEXTURE0, &matrix);
    stage->SetTextureStageState(0, D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_COUNT2);
    stage.Board();
}

void ProjectedTexture(PictureStage& stage)
{
    stage.LookAtOrigin();
    stage->SetTexture(0, stage.Checker());
    // The camera space position divided by its depth: a slide projected from the eye.
    D3DXMATRIX matrix;
    D3DXMatrixIdentity(&matrix);
    matrix._31 = 0.51f; // not at an edge of the checker, where either square is correct
    matrix._32 = 0.52f;
    stage->SetTransform(D3DTS_TEXTURE0, &matrix);
    stage->SetTextureStageState(0, D3DTSS_TEXCOORDINDEX, D3DTSS_TCI_CAMERASPACEPOSITION);
    stage->SetTextureStageState(0, D3DTSS_TEXTURETRANSFORMFLAGS,
                                static_cast<DWORD>(D3DTTFF_COUNT3) | D3DTTFF_PROJECTED);
    D3DXMATRIX turn;
    D3DXMatrixRotationY(&turn, 0.8f);
    stage.World(turn);
    stage.Board();
}

void Generated(PictureStage& stage, DWORD source)
{
    stage.LookAtOrigin();
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    stage->SetTextureStageState(0, D3DTSS_TEXCOORDINDEX, source);
    D3DXMATRIX matrix; // from -1..1 to 0..1
    D3DXMatrixScaling(&matrix, 0.49f, 0.49f, 1.0f);
    matrix._41 = matrix._42 = 0.5f;
    stage->SetTransform(D3DTS_TEXTURE0, &matrix);
    stage->SetTextureStageState(0, D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_COUNT2);
    stage.Sphere();
}

void GeneratedNormal(PictureStage& stage)
{
    Generated(stage, D3DTSS_TCI_CAMERASPACENORMAL);
}

void GeneratedReflection(PictureStage& stage)
{
    Generated(stage, D3DTSS_TCI_CAMERASPACEREFLECTIONVECTOR);
}

/// Four blocks of red, blue and the two interpolated colours.
void FormatDxt1(PictureStage& stage)
{
    IDirect3DTexture9* made = nullptr;
    PictureStage::Check(
        stage->CreateTexture(8, 8, 1, 0, D3DFMT_DXT1, D3DPOOL_MANAGED, &made, nullptr));
    const ComHandle<IDirect3DTexture9> texture(made);
    D3DLOCKED_RECT locked = {};
    PictureStage::Check(made->LockRect(0, &locked, nullptr, 0));
    for (int row = 0; row < 2; ++row)
        for (int column = 0; column < 2; ++column) {
            const BYTE block[8] = {0x00,
                                   0xF8,
                                   0x1F,
                                   0x00,
                                   0xE4,
                                   0x1B,
                                   static_cast<BYTE>(row * 255),
                                   static_cast<BYTE>(column * 85)};
            std::memcpy(static_cast<BYTE*>(locked.pBits) + row * locked.Pitch + column * 8, block,
                        8);
        }
    PictureStage::Check(made->UnlockRect(0));
    stage->SetTexture(0, made);
    stage.Rectangle(0, 0, 64, 64, 0xFFFFFFFF);
    stage->SetTexture(0, nullptr);
}

struct TwiceMappedVertex {
    float x, y, z, rhw;
    D3DCOLOR diffuse;
    float u0, v0, u1, v1;

    static constexpr DWORD kFormat = D3DFVF_XYZRHW | D3DFVF_DIFFUSE | D3DFVF_TEX2;
};

/// One map on the first coordinates, one on the second, with the sets swapped.
void SecondCoordinates(PictureStage& stage)
{
    stage.Filter(1, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Checker());
    stage->SetTexture(1, stage.Gradient());
    stage->SetTextureStageState(0, D3DTSS_TEXCOORDINDEX, 1);
    stage->SetTextureStageState(1, D3DTSS_TEXCOORDINDEX, 0);
    stage.Colour(1, D3DTOP_ADD, D3DTA_CURRENT, D3DTA_TEXTURE);
    stage.DrawVertices<TwiceMappedVertex>(D3DPT_TRIANGLESTRIP, 2,
                                          {{-0.5f, -0.5f, 0.5f, 1, 0xFF808080, 0.1f, 0.1f, 0, 0},
                                           {63.5f, -0.5f, 0.5f, 1, 0xFF808080, 0.9f, 0.1f, 0, 2},
                                           {-0.5f, 63.5f, 0.5f, 1, 0xFF808080, 0.1f, 0.9f, 2, 0},
                                           {63.5f, 63.5f, 0.5f, 1, 0xFF808080, 0.9f, 0.9f, 2, 2}});
}

/// A matrix with the translation in its third row and a count of three, as used for tiled and
/// rotated maps.
void TextureMatrixOfThree(PictureStage& stage)
{
    stage.LookAtOrigin();
    stage->SetTexture(0, stage.Checker());
    D3DXMATRIX matrix, tile;
    D3DXMatrixRotationZ(&matrix, -0.4f);
    D3DXMatrixScaling(&tile, 2.0f, 1.5f, 1.0f);
    matrix = matrix * tile;
    matrix._31 = 0.37f;
    matrix._32 = 0.21f;
    stage->SetTransform(D3DTS_TEXTURE0, &matrix);
    stage->SetTextureStageState(0, D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_COUNT3);
    stage.Board();
}

/// A block of eight alphas between 255 and 0 over a block of four greens, shown over red.
void FormatDxt5(PictureStage& stage)
{
    IDirect3DTexture9* made = nullptr;
    PictureStage::Check(
        stage->CreateTexture(4, 4, 1, 0, D3DFMT_DXT5, D3DPOOL_MANAGED, &made, nullptr));
    const ComHandle<IDirect3DTexture9> texture(made);
    D3DLOCKED_RECT locked = {};
    PictureStage::Check(made->LockRect(0, &locked, nullptr, 0));
    // Codes 0 to 7, twice, three bits each from the lowest; then 0x07E0 and 0 with codes 0 to 3.
    constexpr BYTE kBlock[16] = {0xFF, 0x00, 0x88, 0xC6, 0xFA, 0x88, 0xC6, 0xFA,
                                 0xE0, 0x07, 0x00, 0x00, 0xE4, 0xE4, 0xE4, 0xE4};
    std::memcpy(locked.pBits, kBlock, sizeof kBlock);
    PictureStage::Check(made->UnlockRect(0));
    stage.Rectangle(0, 0, 64, 64, 0xFFFF0000);
    stage->SetTexture(0, made);
    stage.State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_SRCBLEND, static_cast<DWORD>(D3DBLEND_SRCALPHA));
    stage.State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_INVSRCALPHA));
    stage.Rectangle(0, 0, 64, 64, 0xFFFFFFFF);
    stage->SetTexture(0, nullptr);
}

} // namespace

// Sphere maps are missing: the system's formula has its pole at the centre of a surface that faces
// the eye. When levels are mixed its logarithm is off by up to 0.043, which is 11 steps of 255
// between two full colours.
const std::vector<PictureProgram> kTexturePictures = {
    {"filter_point", FilterPoint, 2, 0},
    {"filter_linear", FilterLinear, 2, 0},
    {"address_wrap", AddressWrap, 2, 0},
    {"address_mirror", AddressMirror, 2, 0},
    {"address_clamp", AddressClamp, 2, 0},
    {"address_border", AddressBorder, 2, 0},
    {"address_mirror_once", AddressMirrorOnce, 2, 0},
    {"levels_nearest", LevelsNearest, 2, 0},
    {"levels_mixed", LevelsMixed, 12, 0},
    {"levels_biased", LevelsBiased, 2, 0},
    {"levels_from_the_second", LevelsFromTheSecond, 2, 0},
    {"perspective_board", PerspectiveBoard, 2, 8},
    {"format_565", Format565, 2, 0},
    {"format_luminance_alpha", FormatLuminanceAlpha, 2, 0},
    {"size_other_than_powers_of_two", SizeOtherThanPowersOfTwo, 2, 0},
    {"texture_matrix", TextureMatrix, 2, 0},
    {"projected_texture", ProjectedTexture, 2, 0},
    {"generated_normal", GeneratedNormal, 2, 0},
    {"generated_reflection", GeneratedReflection, 2, 0},
    {"format_dxt1", FormatDxt1, 2, 0},
    {"second_coordinates", SecondCoordinates, 2, 0},
    {"texture_matrix_of_three", TextureMatrixOfThree, 2, 0},
    {"format_dxt5", FormatDxt5, 2, 0},
};

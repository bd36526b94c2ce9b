// Operations and arguments of the texture stages.

#include "tests/platform/pictures/PictureProgram.h"

#include <bit>

namespace {

/// A sheet of all two-argument operations: each square applies one to the whole gradient, with the
/// vertex colour as the other argument.
void OperationSheet(PictureStage& stage)
{
    constexpr DWORD kOperations[] = {
        D3DTOP_SELECTARG1,       D3DTOP_SELECTARG2,          D3DTOP_MODULATE,
        D3DTOP_MODULATE2X,       D3DTOP_MODULATE4X,          D3DTOP_ADD,
        D3DTOP_ADDSIGNED,        D3DTOP_ADDSIGNED2X,         D3DTOP_SUBTRACT,
        D3DTOP_ADDSMOOTH,        D3DTOP_BLENDDIFFUSEALPHA,   D3DTOP_BLENDTEXTUREALPHA,
        D3DTOP_BLENDFACTORALPHA, D3DTOP_BLENDTEXTUREALPHAPM, D3DTOP_BLENDCURRENTALPHA,
        D3DTOP_DOTPRODUCT3};
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    stage.State(D3DRS_TEXTUREFACTOR, static_cast<DWORD>(0x60FFFFFF));
    int square = 0;
    for (const DWORD operation : kOperations) {
        stage.Colour(0, operation, D3DTA_TEXTURE, D3DTA_DIFFUSE);
        const auto left = static_cast<float>(square % 4 * 16);
        const auto top = static_cast<float>(square / 4 * 16);
        stage.Rectangle(left, top, left + 15, top + 15, 0xA080C040);
        ++square;
    }
}

void ModulationSheet(PictureStage& stage)
{
    constexpr DWORD kOperations[] = {D3DTOP_MODULATEALPHA_ADDCOLOR, D3DTOP_MODULATECOLOR_ADDALPHA,
                                     D3DTOP_MODULATEINVALPHA_ADDCOLOR,
                                     D3DTOP_MODULATEINVCOLOR_ADDALPHA};
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    int square = 0;
    for (const DWORD operation : kOperations) {
        stage.Colour(0, operation, D3DTA_TEXTURE, D3DTA_DIFFUSE);
        const auto left = static_cast<float>(square % 2 * 32);
        const auto top = static_cast<float>(square / 2 * 32);
        stage.Rectangle(left, top, left + 30, top + 30, 0x60804020);
        ++square;
    }
}

void ThreeArguments(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    stage.State(D3DRS_TEXTUREFACTOR, static_cast<DWORD>(0xFF40A0FF));
    stage->SetTextureStageState(0, D3DTSS_COLORARG0, D3DTA_TFACTOR);
    stage.Colour(0, D3DTOP_MULTIPLYADD, D3DTA_TEXTURE, D3DTA_DIFFUSE);
    stage.Rectangle(0, 0, 64, 31, 0xFF808020);
    stage.Colour(0, D3DTOP_LERP, D3DTA_TEXTURE, D3DTA_DIFFUSE);
    stage.Rectangle(0, 32, 64, 64, 0xFF808020);
}

void Arguments(PictureStage& stage)
{
    constexpr DWORD kArguments[] = {D3DTA_TEXTURE | D3DTA_COMPLEMENT,
                                    D3DTA_TEXTURE | D3DTA_ALPHAREPLICATE,
                                    D3DTA_TEXTURE | D3DTA_ALPHAREPLICATE | D3DTA_COMPLEMENT,
                                    D3DTA_CONSTANT,
                                    D3DTA_TFACTOR,
                                    D3DTA_DIFFUSE | D3DTA_COMPLEMENT,
                                    D3DTA_CURRENT,
                                    D3DTA_CONSTANT | D3DTA_ALPHAREPLICATE};
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    stage.State(D3DRS_TEXTUREFACTOR, static_cast<DWORD>(0xFF2060C0));
    stage->SetTextureStageState(0, D3DTSS_CONSTANT, 0x40C08010);
    int row = 0;
    for (const DWORD argument : kArguments) {
        stage.Colour(0, D3DTOP_SELECTARG1, argument);
        const auto top = static_cast<float>(row++ * 8);
        stage.Rectangle(0, top, 64, top + 7, 0xFF30A060);
    }
}

void TwoMaps(PictureStage& stage)
{
    stage->SetTexture(0, stage.Checker());
    stage->SetTexture(1, stage.Gradient());
    stage->SetTextureStageState(1, D3DTSS_TEXCOORDINDEX, 0);
    stage.Colour(1, D3DTOP_MODULATE2X, D3DTA_TEXTURE, D3DTA_CURRENT);
    stage.Alpha(1, D3DTOP_SELECTARG1, D3DTA_CURRENT);
    stage.Rectangle(0, 0, 64, 64, 0xFFFFFFFF);
}

/// A reflection map, dimmed by the stage's constant, under the base map.
void ReflectionUnderMap(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    stage->SetTexture(1, stage.Checker());
    stage->SetTextureStageState(0, D3DTSS_CONSTANT, 0xFF404040);
    stage.Colour(0, D3DTOP_MODULATE, D3DTA_CONSTANT, D3DTA_TEXTURE);
    stage.Alpha(0, D3DTOP_SELECTARG1, D3DTA_DIFFUSE);
    stage->SetTextureStageState(1, D3DTSS_COLORARG0, D3DTA_CURRENT);
    stage.Colour(1, D3DTOP_MULTIPLYADD, D3DTA_TEXTURE, D3DTA_DIFFUSE);
    stage.Alpha(1, D3DTOP_SELECTARG1, D3DTA_TEXTURE);
    stage->SetTextureStageState(1, D3DTSS_TEXCOORDINDEX, 0);
    stage.Rectangle(0, 0, 64, 64, 0xFFA0A0A0);
}

void TempRegister(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    stage.Colour(0, D3DTOP_SELECTARG1, D3DTA_TEXTURE);
    stage->SetTextureStageState(0, D3DTSS_RESULTARG, D3DTA_TEMP);
    stage.Colour(1, D3DTOP_SUBTRACT, D3DTA_CURRENT, D3DTA_TEMP);
    stage.Alpha(1, D3DTOP_SELECTARG1, D3DTA_CURRENT);
    stage.Rectangle(0, 0, 64, 64, 0xFFC0C0C0);
}

/// A wave of signed offsets that distorts the checker of the next stage.
void Bumped(PictureStage& stage, const float (&matrix)[4])
{
    stage->SetTexture(0, stage.Texture(
                             64,
                             [](UINT x, UINT y) {
                                 const int du = static_cast<int>(x % 32) * 8 - 124;
                                 const int dv = static_cast<int>(y % 16) * 8 - 60;
                                 return static_cast<DWORD>((du & 0xFF) | (dv & 0xFF) << 8);
                             },
                             D3DFMT_V8U8));
    stage->SetTexture(1, stage.Checker());
    stage.Colour(0, D3DTOP_BUMPENVMAP, D3DTA_CURRENT, D3DTA_TEXTURE);
    for (int i = 0; i < 4; ++i)
        stage->SetTextureStageState(0,
                                    static_cast<D3DTEXTURESTAGESTATETYPE>(D3DTSS_BUMPENVMAT00 + i),
                                    std::bit_cast<DWORD>(matrix[i]));
    stage.Colour(1, D3DTOP_SELECTARG1, D3DTA_TEXTURE);
    stage.Alpha(1, D3DTOP_SELECTARG1, D3DTA_CURRENT);
    stage->SetTextureStageState(1, D3DTSS_TEXCOORDINDEX, 0);
    stage.Rectangle(0, 0, 64, 64, 0xFFFFFFFF);
}

void BumpMap(PictureStage& stage)
{
    Bumped(stage, {0.125f, 0.0f, 0.0f, 0.0625f});
}

/// Each offset moves both coordinates, by different amounts.
void TurnedBumpMap(PictureStage& stage)
{
    Bumped(stage, {0.125f, 0.03125f, -0.25f, 0.0625f});
}

/// The default operation reads a texture; without one the vertex colour shows.
void NoTexture(PictureStage& stage)
{
    stage.Rectangle(0, 0, 64, 31, 0xFF40C080);
    stage.Colour(0, D3DTOP_ADD, D3DTA_TEXTURE, D3DTA_TFACTOR);
    stage.State(D3DRS_TEXTUREFACTOR, static_cast<DWORD>(0xFF404040));
    stage.Rectangle(0, 32, 64, 64, 0xFF40C080);
}

/// A colour added to a map, with the sum shaded by the vertices.
void TintedMap(PictureStage& stage)
{
    stage->SetTexture(0, stage.Checker());
    stage.State(D3DRS_TEXTUREFACTOR, static_cast<DWORD>(0x80302000));
    stage.Colour(0, D3DTOP_ADD, D3DTA_TEXTURE, D3DTA_TFACTOR);
    stage.Colour(1, D3DTOP_MODULATE, D3DTA_CURRENT, D3DTA_DIFFUSE);
    stage.Alpha(1, D3DTOP_SELECTARG1, D3DTA_CURRENT);
    stage.DrawVertices<FlatVertex>(D3DPT_TRIANGLESTRIP, 2,
                                   {{-0.5f, -0.5f, 0.5f, 1, 0xFFFF8080, 0, 0},
                                    {63.5f, -0.5f, 0.5f, 1, 0xFF80FF80, 1, 0},
                                    {-0.5f, 63.5f, 0.5f, 1, 0xFF8080FF, 0, 1},
                                    {63.5f, 63.5f, 0.5f, 1, 0xFFFFFFFF, 1, 1}});
}

/// A map dimmed by the stage's constant on top of the vertex colour, all in one operation.
void ReflectionAlone(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    stage->SetTextureStageState(0, D3DTSS_CONSTANT, 0xFF808080);
    stage->SetTextureStageState(0, D3DTSS_COLORARG0, D3DTA_DIFFUSE);
    stage.Colour(0, D3DTOP_MULTIPLYADD, D3DTA_TEXTURE, D3DTA_CONSTANT);
    stage.Rectangle(0, 0, 64, 64, 0xFF204010);
}

} // namespace

const std::vector<PictureProgram> kStagePictures = {
    {"operation_sheet", OperationSheet, 2, 0},
    {"modulation_sheet", ModulationSheet, 2, 0},
    {"three_arguments", ThreeArguments, 2, 0},
    {"arguments", Arguments, 2, 0},
    {"two_maps", TwoMaps, 2, 0},
    {"reflection_under_map", ReflectionUnderMap, 2, 0},
    {"temp_register", TempRegister, 2, 0},
    {"bump_map", BumpMap, 2, 0},
    {"bump_map_turned", TurnedBumpMap, 2, 0},
    {"no_texture", NoTexture, 2, 0},
    {"tinted_map", TintedMap, 2, 0},
    {"reflection_alone", ReflectionAlone, 2, 0},
};

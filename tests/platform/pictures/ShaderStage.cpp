#include "tests/platform/pictures/ShaderStage.h"

#include <gtest/gtest.h>

namespace {

BYTE ByteOf(float share)
{
    return static_cast<BYTE>(share * 255.0f + 0.5f);
}

ShaderVertex VertexAt(float s, float t, float z)
{
    // Half a pixel to the upper left, so that no centre of a pixel lies on an edge.
    constexpr float kHalfPixel = 1.0f / 64.0f;
    return {s * 2.0f - 1.0f - kHalfPixel,
            1.0f - t * 2.0f + kHalfPixel,
            z,
            D3DCOLOR_ARGB(ByteOf(1.0f - t), ByteOf(s), ByteOf(t), ByteOf(1.0f - s)),
            D3DCOLOR_ARGB(255, ByteOf(t), ByteOf(1.0f - s), ByteOf(s)),
            {s * 4.0f - 2.0f, t * 4.0f - 2.0f, 2.0f * (s - t), 1.0f + s + t},
            {s, t, 1.0f - s, 0.25f + t * 0.5f}};
}

/// Position and all values as they come, for pixel shaders of 3.0.
ShaderWords PassPositionOn()
{
    ShaderWords words(0xFFFE0300);
    words.Declare(V(0), kUsagePosition);
    words.Declare(V(1), kUsageCoordinates, 0).Declare(V(2), kUsageCoordinates, 1);
    words.Declare(V(3), kUsageColour, 0).Declare(V(4), kUsageColour, 1);
    words.Declare(OutTexture(0), kUsagePosition);
    words.Declare(OutTexture(1), kUsageCoordinates, 0).Declare(OutTexture(2), kUsageCoordinates, 1);
    words.Declare(OutTexture(3), kUsageColour, 0).Declare(OutTexture(4), kUsageColour, 1);
    for (DWORD i = 0; i < 5; ++i)
        words.Op(kMov, OutTexture(i), {V(i)});
    return words;
}

/// Shows the first colour, for vertex shaders of 3.0.
ShaderWords ShowColour()
{
    ShaderWords words(0xFFFF0300);
    words.Declare(V(0), kUsageColour, 0);
    return words.Op(kMov, kColour, {V(0)});
}

ShaderWords VertexInstruction(const VersionRow& version, const InstructionRow& row)
{
    ShaderWords words(version.word);
    words.Declare(V(0), kUsagePosition);
    words.Declare(V(1), kUsageCoordinates, 0).Declare(V(2), kUsageCoordinates, 1);
    words.Declare(V(3), kUsageColour, 0);
    const bool isThird = words.Major() == 3;
    if (isThird)
        words.Declare(OutTexture(0), kUsagePosition).Declare(OutTexture(1), kUsageColour, 0);
    for (DWORD i = 1; i < 4; ++i)
        words.Op(kMov, R(i), {V(i)});
    row.body(words);
    words.Op(kMul, R(0), {R(0), C(30)});
    words.Op(kAdd, isThird ? OutTexture(1) : OutColour(0), {R(0), C(31)});
    return words.Op(kMov, isThird ? OutTexture(0) : kPosition, {V(0)});
}

ShaderWords PixelInstruction(const VersionRow& version, const InstructionRow& row)
{
    ShaderWords words(version.word);
    if (words.Major() == 3) {
        words.Declare(V(0), kUsageCoordinates, 0).Declare(V(1), kUsageCoordinates, 1);
        words.Declare(V(2), kUsageColour, 0);
        for (DWORD i = 0; i < 3; ++i)
            words.Op(kMov, R(i + 1), {V(i)});
    } else {
        words.Declare(T(0)).Declare(T(1)).Declare(V(0));
        words.Op(kMov, R(1), {T(0)}).Op(kMov, R(2), {T(1)}).Op(kMov, R(3), {V(0)});
    }
    row.body(words);
    words.Op(kMad, R(0), {R(0), C(30), C(31)});
    return words.Op(kMov, kColour, {R(0)});
}

void DrawInstruction(PictureStage& stage, const VersionRow& version, const InstructionRow& row)
{
    ShaderStage shaders(stage);
    shaders.SharedConstants();
    shaders.Constant(30, row.scale, row.scale, row.scale, row.scale);
    shaders.Constant(31, row.offset, row.offset, row.offset, row.offset);
    const bool isPixel = version.word >> 16 == 0xFFFF;
    const bool isThird = (version.word >> 8 & 0xFF) == 3;
    shaders.Set(isPixel ? PixelInstruction(version, row) : VertexInstruction(version, row));
    if (isThird)
        shaders.Set(isPixel ? PassPositionOn() : ShowColour());
    shaders.Grid(isPixel ? 1 : 16);
}

void DrawOld(PictureStage& stage, const VersionRow& version, const InstructionRow& row)
{
    ShaderStage shaders(stage);
    shaders.SharedConstants();
    stage->SetTexture(0, stage.Gradient());
    stage->SetTexture(1, stage.Texture(64, [](UINT x, UINT y) {
        return (y * 4) << 24 | (255 - x * 4) << 16 | (x * 4) << 8 | y * 4;
    }));
    stage->SetTexture(2, stage.Texture(64, [](UINT x, UINT y) {
        return 0xFF000000 | (x * y / 16) << 16 | (255 - y * 4) << 8 | (x ^ y) * 4;
    }));
    for (DWORD i = 0; i < 3; ++i)
        stage->SetTextureStageState(i, D3DTSS_TEXCOORDINDEX, 1);
    stage->SetTextureStageState(3, D3DTSS_TEXCOORDINDEX, 0);
    if (row.prepare)
        row.prepare(stage);
    ShaderWords words(version.word);
    row.body(words);
    shaders.Set(words);
    shaders.Grid(1);
    for (DWORD i = 0; i < 4; ++i) {
        stage->SetTextureStageState(i, D3DTSS_TEXCOORDINDEX, i);
        stage->SetTexture(i, nullptr);
    }
}

using DrawRow = void (*)(PictureStage& stage, const VersionRow& version, const InstructionRow& row);

std::vector<PictureProgram> PicturesOf(const std::vector<InstructionRow>& rows, DrawRow draw)
{
    std::vector<PictureProgram> all;
    for (const InstructionRow& row : rows)
        for (const VersionRow& version : kVersionRows)
            if (row.versions & version.bit)
                all.push_back({std::string(version.name) + "_" + row.name,
                               [=](PictureStage& stage) { draw(stage, version, row); },
                               row.allowedStep, row.allowedPixels, row.prepare == nullptr});
    return all;
}

} // namespace

ShaderStage::ShaderStage(PictureStage& pictureStage) : stage(pictureStage)
{
    stage.Colour(0, D3DTOP_SELECTARG1, D3DTA_DIFFUSE);
    stage.Alpha(0, D3DTOP_SELECTARG1, D3DTA_DIFFUSE);
}

ShaderStage::~ShaderStage()
{
    stage->SetVertexShader(nullptr);
    stage->SetPixelShader(nullptr);
}

void ShaderStage::Set(const ShaderWords& words)
{
    const std::vector<DWORD> stream = words.Stream();
    IDirect3DVertexShader9* vertex = nullptr;
    IDirect3DPixelShader9* pixel = nullptr;
    if (words.IsPixel()) {
        PictureStage::Check(stage->CreatePixelShader(stream.data(), &pixel));
        PictureStage::Check(stage->SetPixelShader(pixel));
        pixelShader.reset(pixel);
    } else {
        PictureStage::Check(stage->CreateVertexShader(stream.data(), &vertex));
        PictureStage::Check(stage->SetVertexShader(vertex));
        vertexShader.reset(vertex);
    }
}

void ShaderStage::Constant(UINT number, float x, float y, float z, float w)
{
    const float values[] = {x, y, z, w};
    PictureStage::Check(stage->SetVertexShaderConstantF(number, values, 1));
    PictureStage::Check(stage->SetPixelShaderConstantF(number, values, 1));
}

void ShaderStage::SharedConstants()
{
    Constant(0, 0.5f, -0.25f, 0.75f, 1.0f);
    Constant(1, 0.2f, 0.4f, 0.6f, 0.8f);
    Constant(2, -1.0f, 1.0f, -0.5f, 0.0f);
    Constant(3, 0.0f, 0.25f, 0.5f, 1.0f);
    Constant(4, 0.5f, 0.25f, 0.0f, 0.125f);
    Constant(5, 0.0f, 0.5f, 0.25f, -0.125f);
    Constant(6, -0.25f, 0.0f, 0.5f, 0.25f);
    Constant(7, 0.25f, 0.25f, 0.25f, 0.5f);
    Constant(8, -1.5500992e-6f, -2.1701389e-5f, 0.0026041667f, 0.00026041668f);
    Constant(9, -0.020833334f, -0.125f, 1.0f, 0.5f);
    Constant(10, 3.0f, 2.0f, 1.0f, 0.0f);
    const int counts[] = {3, 1, 2, 0, 2, 0, 1, 0, 2, 1, 1, 0};
    const BOOL switches[] = {TRUE, FALSE};
    PictureStage::Check(stage->SetVertexShaderConstantI(0, counts, 3));
    PictureStage::Check(stage->SetPixelShaderConstantI(0, counts, 3));
    PictureStage::Check(stage->SetVertexShaderConstantB(0, switches, 2));
    PictureStage::Check(stage->SetPixelShaderConstantB(0, switches, 2));
}

void ShaderStage::Grid(int cells, float z)
{
    std::vector<ShaderVertex> vertices;
    const auto corner = [=](int column, int row) {
        return VertexAt(static_cast<float>(column) / static_cast<float>(cells),
                        static_cast<float>(row) / static_cast<float>(cells), z);
    };
    for (int row = 0; row < cells; ++row)
        for (int column = 0; column < cells; ++column)
            for (const auto& [right, down] :
                 {std::pair(0, 0), {1, 0}, {0, 1}, {0, 1}, {1, 0}, {1, 1}})
                vertices.push_back(corner(column + right, row + down));
    stage.DrawVertices(D3DPT_TRIANGLELIST, static_cast<UINT>(vertices.size() / 3), vertices);
}

std::vector<PictureProgram> InstructionPictures(const std::vector<InstructionRow>& rows)
{
    return PicturesOf(rows, DrawInstruction);
}

std::vector<PictureProgram> OldPixelPictures(const std::vector<InstructionRow>& rows)
{
    return PicturesOf(rows, DrawOld);
}

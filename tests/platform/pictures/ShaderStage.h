#pragma once

#include "tests/platform/pictures/PictureProgram.h"
#include "tests/platform/pictures/ShaderWords.h"

/// A vertex of the pictures of shaders, in clip space.
struct ShaderVertex {
    float x, y, z;
    D3DCOLOR diffuse, specular;
    float first[4];  ///< s and t from -2 to 2, 2 (s - t), 1 + s + t
    float second[4]; ///< s and t from 0 to 1, 1 - s, 1/4 + t / 2

    static constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_DIFFUSE | D3DFVF_SPECULAR | D3DFVF_TEX2 |
                                     D3DFVF_TEXCOORDSIZE4(0) | D3DFVF_TEXCOORDSIZE4(1);
};

/// Sets shaders and their constants on a stage, and draws the grid that they are shown on.
class ShaderStage {
public:
    explicit ShaderStage(PictureStage& pictureStage);
    ~ShaderStage();

    /// The pixel or vertex shader, by its version.
    void Set(const ShaderWords& words);
    /// A constant of both kinds of shader.
    void Constant(UINT number, float x, float y, float z, float w);
    /// c0 to c7: the numbers that all pictures of instructions share; i0 counts 3 from 1 in steps
    /// of 2, i1 counts 2 from 0, i2 2 from 1; b0 is true, b1 false.
    void SharedConstants();
    /// `cells` by `cells` squares over the whole target, at depth `z`.
    void Grid(int cells, float z = 0.5f);

    PictureStage& stage;

private:
    ComHandle<IDirect3DVertexShader9> vertexShader;
    ComHandle<IDirect3DPixelShader9> pixelShader;
};

/// What an instruction needs around it to become visible. The body finds its inputs in r1 (first
/// coordinates), r2 (second ones) and r3 (the colour) and leaves its result in r0, which is scaled, moved
/// and shown as a colour.
struct InstructionRow {
    const char* name;
    unsigned versions;
    void (*body)(ShaderWords& words);
    float scale = 1.0f;
    float offset = 0.0f;
    int allowedStep = 1;
    size_t allowedPixels = 0;
    void (*prepare)(PictureStage& stage) = nullptr; ///< textures and states
};

/// One picture for each version of each row, named VERSION_NAME. Vertex shaders are computed on a grid
/// of 16 by 16 squares; pixel shaders on two triangles.
std::vector<PictureProgram> InstructionPictures(const std::vector<InstructionRow>& rows);

/// A whole shader of version 1.x, its result in r0.
std::vector<PictureProgram> OldPixelPictures(const std::vector<InstructionRow>& rows);

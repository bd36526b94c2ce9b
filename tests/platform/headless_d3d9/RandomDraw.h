#pragma once

#include "platform/headless/d3d9/Rasterizer.h"

#include <random>
#include <vector>

/// A draw of primitives at random places with random states, textures and pictures. Equal seeds make equal
/// draws.
class RandomDraw {
public:
    explicit RandomDraw(uint32_t seed);

    /// Shades the pixels by a shader, with random constants. `program` outlives this.
    void ShadeBy(headless::shader::Program& program);

    HRESULT Draw(headless::Rasterizer& rasterizer);
    /// The same with a draw for each primitive, which need not be parts of a strip or fan.
    HRESULT DrawEach(headless::Rasterizer& rasterizer);
    bool HasList() const;
    /// The bytes of the target and of the depth buffer.
    std::vector<uint8_t> Pictures() const;

private:
    struct Vertex {
        float x, y, z, rhw;
        D3DCOLOR diffuse, specular;
        float coordinates[7]; ///< sets of 2, 2 and 3
    };
    struct Texture {
        std::vector<headless::SampledPicture> levels;
        headless::TexturePicture picture;
    };

    HRESULT DrawSome(headless::Rasterizer& rasterizer, UINT firstVertex, UINT count);

    uint32_t Word() { return static_cast<uint32_t>(source()); }
    /// 0 <= result < count.
    unsigned Below(unsigned count);
    float Between(float low, float high);
    template <typename Value, size_t Count>
    Value OneOf(const Value (&values)[Count])
    {
        return values[Below(Count)];
    }

    void FillRandomly(headless::PixelBuffer& pixels);
    void MakePictures();
    void MakeTexture(UINT stage);
    void SetSampler(UINT stage);
    void SetStage(UINT stage);
    void SetOutput();
    void SetDepth();
    void SetFog();
    void MakeVertices();

    std::mt19937 source;
    headless::DrawState state;
    headless::PixelBuffer target, depth;
    Texture textures[3];
    std::vector<Vertex> vertices;
    D3DPRIMITIVETYPE type = D3DPT_TRIANGLELIST;
    UINT primitives = 0;
};

#pragma once

#include "platform/headless/d3d9/TexelCache.h"

#include <array>
#include <map>
#include <vector>

namespace headless {

namespace shader {
struct Program;
}

constexpr UINT kRenderStateCount = 210;
constexpr UINT kStageCount = 8;
constexpr UINT kStageStateCount = 33;
constexpr UINT kPixelSamplerCount = 16;
constexpr UINT kSamplerCount = kPixelSamplerCount + 4; ///< those of vertex shaders come last
constexpr UINT kSamplerStateCount = 14;
constexpr UINT kWorldMatrixCount = 256;
constexpr UINT kClipPlaneCount = 6;

/// A light that has been set or enabled.
struct LightSlot {
    D3DLIGHT9 light;
    bool enabled;
};

enum class TextureKind : uint8_t { Flat, Cube, Volume };

constexpr UINT kCubeFaces = 6;

/// A texture as drawing sees it: its levels, largest first.
struct TexturePicture {
    /// Not empty; not owned. A cube has those of its first face, then those of the next one. In a
    /// level of a volume the slices are below each other, each with whole blocks.
    std::vector<SampledPicture*> levels;
    DWORD leastLevel = 0; ///< larger levels are not read
    TextureKind kind = TextureKind::Flat;
    UINT height = 1; ///< of a slice of level 0, only for volumes
    UINT depth = 1;  ///< slices of level 0

    size_t LevelCount() const
    {
        return kind == TextureKind::Cube ? levels.size() / kCubeFaces : levels.size();
    }
};

/// Registers of constants. Those that were never set are 0.
template <typename T>
class ConstantRegisters {
public:
    /// Each register has `registerWidth` values.
    constexpr ConstantRegisters(UINT registerCount, UINT registerWidth)
        : count(registerCount),
          width(registerWidth)
    {}

    /// Sets or reads `number` registers from `first` on; more than there are is refused.
    HRESULT Set(UINT first, const T* data, UINT number);
    HRESULT Get(UINT first, T* dataOut, UINT number) const;
    void Clear() { values.clear(); }

    /// As many as were needed so far.
    const std::vector<T>& Values() const { return values; }

private:
    bool Has(UINT first, UINT number) const { return first <= count && number <= count - first; }

    UINT count;
    UINT width;
    std::vector<T> values;
};

/// The constants of one kind of shader: four floats or integers for each register, and truths.
struct ShaderConstants {
    ShaderConstants(UINT floatCount, UINT switchCount)
        : floats(floatCount, 4),
          ints(switchCount, 4),
          bools(switchCount, 1)
    {}
    void Clear();

    ConstantRegisters<float> floats;
    ConstantRegisters<int> ints;
    ConstantRegisters<int> bools;
};

/// Every value that drawing reads besides the vertices, indexed by the public enumerations. Floats
/// in render and stage states are kept as their bits, as the caller gives them. Sources and targets
/// are plain memory here, so that drawing needs neither a device nor its objects.
struct DrawState {
    std::array<DWORD, kRenderStateCount> render = {};
    std::array<std::array<DWORD, kStageStateCount>, kStageCount> stage = {};
    std::array<std::array<DWORD, kSamplerStateCount>, kSamplerCount> sampler = {};

    D3DMATRIX view = {};
    D3DMATRIX projection = {};
    std::array<D3DMATRIX, kWorldMatrixCount> world = {};
    std::array<D3DMATRIX, kStageCount> texture = {};

    D3DVIEWPORT9 viewport = {};
    RECT scissor = {};
    D3DMATERIAL9 material = {};
    std::map<DWORD, LightSlot> lights; ///< by rising index
    std::array<std::array<float, 4>, kClipPlaneCount> clipPlanes = {};

    std::array<TexturePicture*, kSamplerCount> pictures = {}; ///< not owned; null without a texture
    shader::Program* vertexProgram = nullptr; ///< not owned; null for the fixed functions
    shader::Program* pixelProgram = nullptr;
    ShaderConstants vertexConstants{8192, 2048}; ///< software vertex shaders reach all of them
    ShaderConstants pixelConstants{224, 16};
    PixelBuffer* target = nullptr; ///< not owned; drawing needs one
    PixelBuffer* depth = nullptr;  ///< not owned; null without depth

    DWORD Render(D3DRENDERSTATETYPE state) const { return render[state]; }
    /// A render state that the public documentation defines as a float.
    float RenderFloat(D3DRENDERSTATETYPE state) const;
};

/// The documented defaults of a new device, with no pictures. `hasDepth` turns the depth test on.
/// Viewport and scissor rectangle are left alone: they follow the target.
void SetDrawDefaults(DrawState& state, bool hasDepth);

/// The slot of a sampler by its public number; `kSamplerCount` for an unknown one.
UINT SamplerSlot(DWORD sampler);

/// Where `state` stores a transform, or null for an unknown type.
D3DMATRIX* FindTransform(DrawState& state, D3DTRANSFORMSTATETYPE type);

bool IsRenderState(D3DRENDERSTATETYPE state);
bool IsStageState(D3DTEXTURESTAGESTATETYPE type);
bool IsSamplerState(D3DSAMPLERSTATETYPE type);

D3DMATRIX IdentityMatrix();
/// Product for row vectors: `a` is applied first, then `b`.
D3DMATRIX MultiplyMatrices(const D3DMATRIX& a, const D3DMATRIX& b);

} // namespace headless

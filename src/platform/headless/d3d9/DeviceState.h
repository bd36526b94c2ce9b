#pragma once

#include "platform/headless/d3d9/Buffer.h"
#include "platform/headless/d3d9/Texture.h"

#include <array>
#include <map>

namespace headless {

constexpr UINT kRenderStateCount = 210;
constexpr UINT kStageCount = 8;
constexpr UINT kStageStateCount = 33;
constexpr UINT kSamplerCount = 16;
constexpr UINT kSamplerStateCount = 14;
constexpr UINT kStreamCount = 16;
constexpr UINT kWorldMatrixCount = 256;
constexpr UINT kClipPlaneCount = 6;

/// A light that was set or enabled once.
struct LightSlot {
    D3DLIGHT9 light;
    bool enabled;
};

struct StreamSlot {
    Binding<HeadlessVertexBuffer> buffer;
    UINT offsetBytes = 0;
    UINT strideBytes = 0;
    UINT divider = 1;
};

/// Every value that a draw call reads, by the numbers of the public enumerations. Floats in render and
/// stage states are kept as their bits, as the caller gives them.
struct DeviceState {
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
    std::map<DWORD, LightSlot> lights; ///< in rising order of their index
    std::array<std::array<float, 4>, kClipPlaneCount> clipPlanes = {};
    D3DCLIPSTATUS9 clipStatus = {0, 0xFFFFFFFF};

    DWORD fvf = 0;
    std::array<StreamSlot, kStreamCount> streams;
    Binding<HeadlessIndexBuffer> indices;
    std::array<Binding<HeadlessTexture>, kSamplerCount> textures;

    Binding<HeadlessSurface> renderTarget; ///< never empty on a working device
    Binding<HeadlessSurface> depthSurface;

    D3DGAMMARAMP gammaRamp = {};
    bool softwareVertexProcessing = false;
    float patchSegments = 0.0f;
    bool inScene = false;

    DWORD Render(D3DRENDERSTATETYPE state) const { return render[state]; }
    /// A render state that the public documentation says to be a float.
    float RenderFloat(D3DRENDERSTATETYPE state) const;
};

/// The published values of a new device; nothing is bound. `hasDepth` makes the depth test start on.
void SetDefaults(DeviceState& state, bool hasDepth);

/// The place of a transform in `state`, or null for a number that names none.
D3DMATRIX* FindTransform(DeviceState& state, D3DTRANSFORMSTATETYPE type);

bool IsRenderState(D3DRENDERSTATETYPE state);
bool IsStageState(D3DTEXTURESTAGESTATETYPE type);
bool IsSamplerState(D3DSAMPLERSTATETYPE type);

D3DMATRIX IdentityMatrix();
/// Row vectors: first `a`, then `b`.
D3DMATRIX MultiplyMatrices(const D3DMATRIX& a, const D3DMATRIX& b);

} // namespace headless

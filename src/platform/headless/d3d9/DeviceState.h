#pragma once

#include "platform/headless/d3d9/Buffer.h"
#include "platform/headless/d3d9/DrawState.h"
#include "platform/headless/d3d9/Shader.h"
#include "platform/headless/d3d9/Texture.h"

namespace headless {

constexpr UINT kStreamCount = 16;

struct StreamSlot {
    Binding<HeadlessVertexBuffer> buffer;
    UINT offsetBytes = 0;
    UINT strideBytes = 0;
    UINT divider = 1;
};

/// Everything that a device was set to: the values that drawing reads, the bound objects, and
/// values that are only stored.
struct DeviceState : DrawState {
    DWORD fvf = 0;
    std::array<StreamSlot, kStreamCount> streams;
    Binding<HeadlessIndexBuffer> indices;
    std::array<Binding<TextureObject>, kSamplerCount> textures;

    Binding<HeadlessVertexShader> vertexShader;
    Binding<HeadlessPixelShader> pixelShader;

    Binding<HeadlessSurface> renderTarget; ///< never empty on a working device
    Binding<HeadlessSurface> depthSurface;

    D3DCLIPSTATUS9 clipStatus = {0, 0xFFFFFFFF};
    D3DGAMMARAMP gammaRamp = {};
    bool softwareVertexProcessing = false;
    float patchSegments = 0.0f;
    bool inScene = false;

    /// This state with `pictures`, `target` and `depth` of what is bound now; valid until a binding
    /// changes.
    const DrawState& ForDrawing();
};

/// The documented defaults of a new device; nothing is bound. `hasDepth` turns the depth test on.
void SetDefaults(DeviceState& state, bool hasDepth);

} // namespace headless

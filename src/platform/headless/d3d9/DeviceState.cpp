#include "platform/headless/d3d9/DeviceState.h"

namespace headless {

namespace {

void Unbind(DeviceState& state)
{
    for (auto& texture : state.textures)
        texture.Set(nullptr);
    for (StreamSlot& stream : state.streams) {
        stream.buffer.Set(nullptr);
        stream.offsetBytes = stream.strideBytes = 0;
        stream.divider = 1;
    }
    state.indices.Set(nullptr);
    state.vertexShader.Set(nullptr);
    state.pixelShader.Set(nullptr);
    state.renderTarget.Set(nullptr);
    state.depthSurface.Set(nullptr);
}

/// Widens 8 bits to 16: 255 becomes 65,535.
void SetStraightRamp(D3DGAMMARAMP& rampOut)
{
    for (WORD i = 0; i < 256; ++i)
        rampOut.red[i] = rampOut.green[i] = rampOut.blue[i] = static_cast<WORD>(i * 257);
}

} // namespace

const DrawState& DeviceState::ForDrawing()
{
    for (size_t i = 0; i < textures.size(); ++i)
        pictures[i] = textures[i].Get() ? &textures[i].Get()->Picture() : nullptr;
    vertexProgram = vertexShader.Get() ? &vertexShader.Get()->Content() : nullptr;
    pixelProgram = pixelShader.Get() ? &pixelShader.Get()->Content() : nullptr;
    target = renderTarget.Get() ? &renderTarget.Get()->Pixels() : nullptr;
    depth = depthSurface.Get() ? &depthSurface.Get()->Pixels() : nullptr;
    return *this;
}

void SetDefaults(DeviceState& state, bool hasDepth)
{
    Unbind(state);
    SetDrawDefaults(state, hasDepth);
    state.clipStatus = {0, 0xFFFFFFFF};
    state.fvf = 0;
    SetStraightRamp(state.gammaRamp);
    state.patchSegments = 0.0f;
    state.inScene = false;
}

} // namespace headless

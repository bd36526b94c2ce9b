#include "platform/headless/d3d9/PixelProgram.h"

#include "platform/headless/d3d9/CallLog.h"

#include <algorithm>

namespace headless {

namespace {

/// A render state and the range of values that drawing supports.
struct KnownRange {
    D3DRENDERSTATETYPE state;
    const char* name;
    DWORD first;
    DWORD last;
};

constexpr KnownRange kKnown[] = {
    {D3DRS_ZENABLE, "D3DRS_ZENABLE", D3DZB_FALSE, D3DZB_USEW},
    {D3DRS_FILLMODE, "D3DRS_FILLMODE", D3DFILL_POINT, D3DFILL_SOLID},
    {D3DRS_SHADEMODE, "D3DRS_SHADEMODE", D3DSHADE_FLAT, D3DSHADE_PHONG},
    {D3DRS_CULLMODE, "D3DRS_CULLMODE", D3DCULL_NONE, D3DCULL_CCW},
    {D3DRS_ZFUNC, "D3DRS_ZFUNC", D3DCMP_NEVER, D3DCMP_ALWAYS},
    {D3DRS_ALPHAFUNC, "D3DRS_ALPHAFUNC", D3DCMP_NEVER, D3DCMP_ALWAYS},
    {D3DRS_FOGTABLEMODE, "D3DRS_FOGTABLEMODE", D3DFOG_NONE, D3DFOG_LINEAR},
    {D3DRS_FOGVERTEXMODE, "D3DRS_FOGVERTEXMODE", D3DFOG_NONE, D3DFOG_LINEAR},
    // UNMODELLED: stencil tests, sRGB colours, cylindrical wrapping of texture coordinates.
    {D3DRS_STENCILENABLE, "D3DRS_STENCILENABLE", FALSE, FALSE},
    {D3DRS_SRGBWRITEENABLE, "D3DRS_SRGBWRITEENABLE", FALSE, FALSE},
    {D3DRS_WRAP0, "D3DRS_WRAP0", 0, 0},
    {D3DRS_WRAP1, "D3DRS_WRAP1", 0, 0},
    {D3DRS_WRAP2, "D3DRS_WRAP2", 0, 0},
    {D3DRS_WRAP3, "D3DRS_WRAP3", 0, 0},
    {D3DRS_WRAP4, "D3DRS_WRAP4", 0, 0},
    {D3DRS_WRAP5, "D3DRS_WRAP5", 0, 0},
    {D3DRS_WRAP6, "D3DRS_WRAP6", 0, 0},
    {D3DRS_WRAP7, "D3DRS_WRAP7", 0, 0},
};

HRESULT CheckStates(const DrawState& state)
{
    for (const KnownRange& known : kKnown)
        if (const DWORD value = state.Render(known.state);
            value < known.first || value > known.last)
            return Unmodelled(known.name, value);
    // UNMODELLED: tweening.
    const DWORD blend = state.Render(D3DRS_VERTEXBLEND);
    if (blend > D3DVBF_3WEIGHTS && blend != D3DVBF_0WEIGHTS)
        return Unmodelled("D3DRS_VERTEXBLEND", blend);
    return D3D_OK;
}

/// Packs the interpolated values without gaps.
VaryingLayout LayOut(PixelProgram& program)
{
    VaryingLayout layout;
    int next = 0;
    const auto take = [&next](int& place, int count) {
        place = next;
        next += count;
    };
    if (program.stages.readsDiffuse)
        take(layout.diffuse, 4);
    if (program.addsSpecular || program.stages.readsSpecular)
        take(layout.specular, 4);
    for (int i = 0; i < program.stages.count; ++i) {
        StageProgram& stage = program.stages.stages[i];
        if (!stage.samples)
            continue;
        take(layout.coordinates[i], stage.isProjected ? 3 : 2);
        layout.isProjected[i] = stage.isProjected;
        stage.coordinates = layout.coordinates[i];
    }
    if (program.fog.source == FogSource::Vertex)
        take(layout.fog, 1);
    layout.count = (next + 3) / 4 * 4;
    return layout;
}

PixelArea AreaOf(const DrawState& state)
{
    const PixelBuffer& target = *state.target;
    const D3DVIEWPORT9& viewport = state.viewport;
    // In 64 bits, because the sums of viewport members may overflow 32.
    const auto clamp = [](int64_t value, UINT most) {
        return static_cast<int>(std::clamp<int64_t>(value, 0, most));
    };
    PixelArea area = {clamp(viewport.X, target.width), clamp(viewport.Y, target.height),
                      clamp(int64_t{viewport.X} + viewport.Width, target.width),
                      clamp(int64_t{viewport.Y} + viewport.Height, target.height)};
    if (state.Render(D3DRS_SCISSORTESTENABLE)) {
        area.left = std::max(area.left, static_cast<int>(state.scissor.left));
        area.top = std::max(area.top, static_cast<int>(state.scissor.top));
        area.right = std::min(area.right, static_cast<int>(state.scissor.right));
        area.bottom = std::min(area.bottom, static_cast<int>(state.scissor.bottom));
    }
    return area;
}

} // namespace

HRESULT CheckPixelStates(const DrawState& state)
{
    OutputMerger output;
    HRESULT result = CheckStates(state);
    if (SUCCEEDED(result))
        result = CheckStageStates(state);
    return FAILED(result) ? result : MakeOutputMerger(state, output);
}

HRESULT MakePixelProgram(const DrawState& state, PixelProgram& programOut)
{
    HRESULT result = CheckStates(state);
    if (SUCCEEDED(result))
        result = MakeStagePrograms(state, programOut.stages);
    if (SUCCEEDED(result))
        result = MakeOutputMerger(state, programOut.output);
    if (FAILED(result))
        return result;
    programOut.depth = MakeDepthTest(state);
    const PixelBuffer& target = *programOut.output.target;
    const PixelBuffer* depth = programOut.depth.buffer;
    if (programOut.depth.isOn && (depth->width < target.width || depth->height < target.height))
        return D3DERR_INVALIDCALL;
    programOut.fog = MakePixelFog(state);
    programOut.addsSpecular = state.Render(D3DRS_SPECULARENABLE) != 0;
    programOut.area = AreaOf(state);
    programOut.varyings = LayOut(programOut);
    return D3D_OK;
}

} // namespace headless

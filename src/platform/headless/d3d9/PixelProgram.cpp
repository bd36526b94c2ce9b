#include "platform/headless/d3d9/PixelProgram.h"

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/ShaderTexture.h"

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
};

bool HasStencil(D3DFORMAT format)
{
    return format == D3DFMT_D24S8 || format == D3DFMT_D24X4S4 || format == D3DFMT_D15S1 ||
           format == D3DFMT_D24FS8;
}

HRESULT CheckStates(const DrawState& state)
{
    for (const KnownRange& known : kKnown)
        if (const DWORD value = state.Render(known.state);
            value < known.first || value > known.last)
            return Unmodelled(known.name, value);
    // Without stencil bits the test passes everywhere. UNMODELLED: buffers that have some.
    const DWORD tests = state.Render(D3DRS_STENCILENABLE);
    if (tests != 0 && state.depth && HasStencil(state.depth->format->format))
        return Unmodelled("D3DRS_STENCILENABLE", tests);
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
        take(layout.coordinates[i], stage.coordinateCount + (stage.isProjected ? 1 : 0));
        layout.coordinateCounts[i] = stage.coordinateCount;
        layout.isProjected[i] = stage.isProjected;
        stage.coordinates = layout.coordinates[i];
    }
    if (program.fog.source == FogSource::Vertex)
        take(layout.fog, 1);
    layout.count = (next + 3) / 4 * 4;
    return layout;
}

/// Four numbers for each register that a pixel shader reads. The fixed vertex functions know colours
/// and coordinates by their places; so does flat shading.
VaryingLayout LayOutShader(const shader::Program& code, const PixelFog& fog)
{
    VaryingLayout layout;
    layout.areWhole = true;
    for (const shader::Binding& input : code.inputs) {
        if (layout.inputCount == kMaxShaderInputs)
            break;
        const bool isColour = input.usage == D3DDECLUSAGE_COLOR;
        ShaderInput& row = layout.inputs[layout.inputCount++];
        row = {input.usage,  input.usageIndex, input.mask,
               layout.count, input.at,         isColour && code.version.major < 3};
        if (isColour && input.usageIndex < 2)
            (input.usageIndex == 0 ? layout.diffuse : layout.specular) = layout.count;
        if (input.usage == D3DDECLUSAGE_TEXCOORD && input.usageIndex < kStageCount)
            layout.coordinates[input.usageIndex] = layout.count;
        layout.count += 4;
    }
    if (fog.source == FogSource::Vertex) {
        layout.fog = layout.count;
        layout.count += 4;
    }
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

/// Shaders of 3.0 are linked to each other only.
bool DoVersionsFit(const DrawState& state)
{
    if (!state.vertexProgram || !state.pixelProgram)
        return true;
    return (state.vertexProgram->version.major == 3) == (state.pixelProgram->version.major == 3);
}

HRESULT CheckShaders(const DrawState& state)
{
    if (!DoVersionsFit(state))
        return Unmodelled("Shaders of 3.0 and of an older version",
                          state.vertexProgram->version.major, state.pixelProgram->version.major);
    HRESULT result = D3D_OK;
    if (state.vertexProgram)
        result = CheckShaderSamplers(state, *state.vertexProgram, kPixelSamplerCount);
    if (SUCCEEDED(result) && state.pixelProgram)
        result = CheckShaderSamplers(state, *state.pixelProgram, 0);
    return result;
}

} // namespace

HRESULT CheckPixelStates(const DrawState& state)
{
    OutputMerger output;
    HRESULT result = CheckStates(state);
    if (SUCCEEDED(result))
        result = CheckShaders(state);
    if (SUCCEEDED(result) && !state.pixelProgram)
        result = CheckStageStates(state);
    return FAILED(result) ? result : MakeOutputMerger(state, output);
}

HRESULT MakePixelProgram(const DrawState& state, PixelProgram& programOut)
{
    HRESULT result = CheckStates(state);
    if (SUCCEEDED(result) && !state.pixelProgram)
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
    if (state.pixelProgram && state.pixelProgram->version.major == 3)
        programOut.fog.source = FogSource::None; // fog is the program's own business
    programOut.varyings =
        state.pixelProgram ? LayOutShader(*state.pixelProgram, programOut.fog) : LayOut(programOut);
    return D3D_OK;
}

} // namespace headless

#include "platform/headless/d3d9/ShaderPixels.h"

#include <bit>

namespace headless {

namespace {

/// What ps 1.x reads from the texture stages.
shader::StageValues StageOf(const DrawState& state, UINT stage)
{
    const auto& states = state.stage[stage];
    const auto number = [&states](D3DTEXTURESTAGESTATETYPE type) {
        return std::bit_cast<float>(states[type]);
    };
    const DWORD flags = states[D3DTSS_TEXTURETRANSFORMFLAGS];
    shader::StageValues values;
    values.isProjected = (flags & D3DTTFF_PROJECTED) != 0;
    values.divisor = (flags & 7) == D3DTTFF_COUNT3 ? 2 : ((flags & 7) == D3DTTFF_COUNT2 ? 1 : 3);
    values.bumpMatrix[0][0] = number(D3DTSS_BUMPENVMAT00);
    values.bumpMatrix[0][1] = number(D3DTSS_BUMPENVMAT01);
    values.bumpMatrix[1][0] = number(D3DTSS_BUMPENVMAT10);
    values.bumpMatrix[1][1] = number(D3DTSS_BUMPENVMAT11);
    values.luminanceScale = number(D3DTSS_BUMPENVLSCALE);
    values.luminanceOffset = number(D3DTSS_BUMPENVLOFFSET);
    return values;
}

} // namespace

HRESULT ShaderPixels::PrepareProgram(const DrawState& state, const PixelProgram& pixelProgram,
                                     uint64_t workLeft, bool isEight)
{
    program = &pixelProgram;
    code = state.pixelProgram;
    machine.UseEight(isEight);
    const HRESULT result = textures.Prepare(state, *code, 0, machine);
    if (FAILED(result))
        return result;
    for (UINT i = 0; i < kStageCount && code->version.major == 1; ++i)
        machine.stages[i] = StageOf(state, i);
    const ShaderConstants& values = state.pixelConstants;
    machine.Prepare(*code, {values.floats.Values(), values.ints.Values(), values.bools.Values()});
    machine.work = 0;
    budget = workLeft;
    const DepthTest& depth = program->depth;
    testsEarly = depth.isOn && !code->writesDepth;
    writesEarly = testsEarly && depth.writes && !program->output.testsAlpha && !code->canKill;
    // An early test has to see the depth that the primitives before have left. With flow control a
    // block may run long, and its work counts before the next primitive.
    const bool testsInOrder = !testsEarly || !depth.writes || writesEarly;
    gathers = testsInOrder && !code->hasFlow;
    colour = nullptr;
    for (const shader::Binding& output : code->outputs)
        if (output.place == shader::Register{shader::RegisterKind::ColorOut, 0})
            colour = reinterpret_cast<const float*>(machine.At(output.at));
    isFrontFace = true;
    FindInputs();
    return D3D_OK;
}

/// The components that the program reads.
void ShaderPixels::FindInputs()
{
    inputCount = 0;
    const VaryingLayout& layout = program->varyings;
    for (int i = 0; i < layout.inputCount; ++i) {
        const ShaderInput& input = layout.inputs[i];
        for (int c = 0; c < 4; ++c)
            if ((input.mask >> c & 1) != 0)
                inputs[inputCount++] = {
                    input.place + c,
                    reinterpret_cast<float*>(machine.At(input.at) + c * shader::kMaxGroups),
                    input.isHeld};
    }
}

} // namespace headless

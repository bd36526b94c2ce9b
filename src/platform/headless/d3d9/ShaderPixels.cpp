#include "platform/headless/d3d9/ShaderPixels.h"

#include <algorithm>
#include <bit>

namespace headless {

namespace {

/// A plane's value over w in one row, at the origin's x.
Lanes RowValue(const Planes& planes, int varying, float down)
{
    return Splat(planes.at[varying] + down * planes.dy[varying]);
}

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

/// The pixels of a row in a block that begins at x.
int LanesOf(int x, int left, int right)
{
    const int first = std::max(left - x, 0), end = std::min(right - x, 4);
    return first < end ? ((1 << end) - 1) & ~((1 << first) - 1) : 0;
}

} // namespace

HRESULT ShaderPixels::Prepare(const DrawState& state, const PixelProgram& pixelProgram,
                              uint64_t workLeft)
{
    program = &pixelProgram;
    code = state.pixelProgram;
    const HRESULT result = textures.Prepare(state, *code, 0, machine);
    if (FAILED(result))
        return result;
    for (UINT i = 0; i < kStageCount && code->version.major == 1; ++i)
        machine.stages[i] = StageOf(state, i);
    const ShaderConstants& values = state.pixelConstants;
    machine.Prepare(*code, {values.floats.Values(), values.ints.Values(), values.bools.Values()});
    machine.work = 0;
    budget = workLeft;
    testsEarly = program->depth.isOn && !code->writesDepth;
    writesEarly =
        testsEarly && program->depth.writes && !program->output.testsAlpha && !code->canKill;
    hasColour = false;
    for (const shader::Binding& output : code->outputs)
        if (output.place == shader::Register{shader::RegisterKind::ColorOut, 0}) {
            hasColour = true;
            colourPlace = output.at;
        }
    isFrontFace = true;
    pending[0] = pending[1] = {};
    blockCount = 0;
    return D3D_OK;
}

void ShaderPixels::AddRow(const Planes& planes, int y, int left, int right)
{
    const int top = y & ~1;
    if (top != pendingY || pending[y & 1].left < pending[y & 1].right)
        EndRows(planes);
    pendingY = top;
    pending[y & 1] = {left, right};
}

void ShaderPixels::Finish(const Planes& planes)
{
    EndRows(planes);
    ShadeBlocks(planes);
}

/// Shades the blocks of the two rows, as many at a time as fit; those left over wait for the next rows.
void ShaderPixels::EndRows(const Planes& planes)
{
    ShadeRows(planes, pendingY, pending);
    pending[0] = pending[1] = {};
}

void ShaderPixels::ShadeRows(const Planes& planes, int y, const Row (&rows)[2])
{
    int left = INT_MAX, right = INT_MIN;
    for (const Row& row : rows) {
        if (row.left >= row.right)
            continue;
        left = std::min(left, row.left);
        right = std::max(right, row.right);
    }
    for (int x = left & ~1; x < right && machine.work < budget; x += 4)
        if (StartBlock(planes, x, y, rows) && blockCount == kMaxBlocks)
            ShadeBlocks(planes);
}

/// False if no pixel of the block is left to draw.
bool ShaderPixels::StartBlock(const Planes& planes, int x, int y, const Row (&rows)[2])
{
    Block& block = blocks[blockCount];
    block.x = x;
    block.y = y;
    block.fromOrigin =
        Splat(static_cast<float>(x) - planes.originX) + MakeFloats(0.0f, 1.0f, 2.0f, 3.0f);
    for (int row = 0; row < 2; ++row) {
        block.lanes[row] = LanesOf(x, rows[row].left, rows[row].right);
        StartGroup(planes, block, row);
    }
    if (block.lanes[0] == 0 && block.lanes[1] == 0)
        return false;
    ++blockCount;
    return true;
}

void ShaderPixels::StartGroup(const Planes& planes, Block& block, int row)
{
    const float down = static_cast<float>(block.y + row) - planes.originY;
    const auto value = [&](const Plane& plane) {
        return Splat(plane.at + down * plane.dy) + block.fromOrigin * Splat(plane.dx);
    };
    const DepthTest& test = program->depth;
    // 1/w is positive inside a primitive, but helper pixels may lie outside it.
    block.w[row] = Splat(1.0f) / Max(value(planes.reciprocalW), Splat(1e-30f));
    block.depth[row] = BiasedDepth(test, planes, value(planes.depth));
    if (!testsEarly || block.lanes[row] == 0)
        return;
    const int y = block.y + row;
    const int count = std::min(4, static_cast<int>(program->output.target->width) - block.x);
    block.steps[row] = DepthSteps(test, block.depth[row], block.w[row]);
    block.lanes[row] = TestDepth(test, block.x, y, count, block.steps[row], block.lanes[row]);
    if (writesEarly && block.lanes[row] != 0)
        WriteDepth(test, block.x, y, block.steps[row], block.lanes[row]);
}

/// The components that the program reads, for both rows of a block.
void ShaderPixels::LoadInputs(const Planes& planes, int index)
{
    const Block& block = blocks[index];
    const VaryingLayout& layout = program->varyings;
    for (int row = 0; row < 2; ++row) {
        const float down = static_cast<float>(block.y + row) - planes.originY;
        for (int i = 0; i < layout.inputCount; ++i) {
            const ShaderInput& input = layout.inputs[i];
            Lanes* at = machine.At(input.at) + index * 2 + row;
            for (int c = 0; c < 4; ++c) {
                if ((input.mask >> c & 1) == 0)
                    continue;
                const int varying = input.place + c;
                const Lanes value = (RowValue(planes, varying, down) +
                                     block.fromOrigin * Splat(planes.dx[varying])) *
                                    block.w[row];
                at[c * shader::kMaxGroups] = input.isHeld ? Saturate(value) : value;
            }
        }
    }
}

/// vPos and vFace.
void ShaderPixels::LoadSpecial(int index)
{
    const Block& block = blocks[index];
    for (int row = 0; row < 2; ++row) {
        const int group = index * 2 + row;
        if (code->readsPosition) {
            Lanes* at = machine.At(code->position) + group;
            at[0] = Splat(static_cast<float>(block.x)) + MakeFloats(0.0f, 1.0f, 2.0f, 3.0f);
            at[shader::kMaxGroups] = Splat(static_cast<float>(block.y + row));
        }
        for (int c = 0; code->readsFace && c < 4; ++c)
            machine.At(code->face)[c * shader::kMaxGroups + group] =
                Splat(isFrontFace ? 1.0f : -1.0f);
    }
}

void ShaderPixels::ShadeBlocks(const Planes& planes)
{
    if (blockCount == 0)
        return;
    for (int i = 0; i < blockCount; ++i) {
        LoadInputs(planes, i);
        if (code->readsPosition || code->readsFace)
            LoadSpecial(i);
    }
    machine.Run(blockCount * 2);
    for (int i = 0; i < blockCount; ++i)
        for (int row = 0; row < 2; ++row)
            if (blocks[i].lanes[row] != 0)
                WriteGroup(planes, blocks[i], i, row);
    blockCount = 0;
}

/// What can still drop a pixel after the program has run, and the depth that follows from it.
bool ShaderPixels::PassesTests(Block& block, int group, int row, Rgba4& colour)
{
    const DepthTest& test = program->depth;
    int& lanes = block.lanes[row];
    if (code->canKill)
        lanes &= ~LaneBits(machine.At(code->kill)[group]);
    if (program->output.testsAlpha && lanes != 0)
        lanes = TestAlpha(program->output, colour.c[3], lanes);
    if (lanes == 0 || !test.isOn || writesEarly)
        return lanes != 0;
    const int y = block.y + row;
    if (code->writesDepth) {
        const int count = std::min(4, static_cast<int>(program->output.target->width) - block.x);
        block.depth[row] = Saturate(machine.At(code->depth)[group]);
        block.steps[row] = DepthSteps(test, block.depth[row], block.w[row]);
        lanes = TestDepth(test, block.x, y, count, block.steps[row], lanes);
    }
    if (test.writes && lanes != 0)
        WriteDepth(test, block.x, y, block.steps[row], lanes);
    return lanes != 0;
}

void ShaderPixels::WriteGroup(const Planes& planes, Block& block, int index, int row)
{
    const int group = index * 2 + row;
    Rgba4 colour = SplatColour(0.0f, 0.0f, 0.0f, 0.0f);
    for (int c = 0; hasColour && c < 4; ++c)
        colour.c[c] = machine.At(colourPlace)[c * shader::kMaxGroups + group];
    if (!PassesTests(block, group, row, colour))
        return;
    if (program->fog.source != FogSource::None) {
        const float down = static_cast<float>(block.y + row) - planes.originY;
        const int place = program->varyings.fog;
        const Lanes factor = program->fog.source == FogSource::Vertex
                                 ? Saturate((RowValue(planes, place, down) +
                                             block.fromOrigin * Splat(planes.dx[place])) *
                                            block.w[row])
                                 : FogFactors(program->fog, block.depth[row], block.w[row]);
        for (Lanes& channel : colour.c)
            channel = Saturate(channel);
        ApplyFog(program->fog, factor, colour);
    }
    const int count = std::min(4, static_cast<int>(program->output.target->width) - block.x);
    WriteColour(program->output, block.x, block.y + row, count, colour, block.lanes[row]);
}

} // namespace headless

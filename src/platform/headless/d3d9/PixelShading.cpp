// The inner loop: four pixels of a row at a time, from interpolation to the target.

#include "platform/headless/d3d9/PixelProgram.h"

#include <algorithm>

namespace headless {

namespace {

/// Where a row of pixels starts: the value of all planes at the origin's x and the row's y.
struct alignas(16) RowStart {
    float varying[kMaxVaryings];
    float depth;
    float reciprocalW;
};

/// Four adjacent pixels of a row, of which the first `count` exist.
struct PixelGroup {
    int x, y;
    int count;
    int lanes;        ///< those still to be drawn
    Lanes fromOrigin; ///< distance of each pixel from the planes' origin along x
    Lanes depth;
    Lanes w;
    IntLanes depthSteps;
};

RowStart StartRow(const PixelProgram& program, const Planes& planes, int y)
{
    RowStart row;
    const float down = static_cast<float>(y) - planes.originY;
    row.depth = planes.depth.at + down * planes.depth.dy;
    row.reciprocalW = planes.reciprocalW.at + down * planes.reciprocalW.dy;
    const Lanes lanesDown = Splat(down);
    for (int i = 0; i < program.varyings.count; i += 4)
        StoreFloats(row.varying + i,
                    LoadFloats(planes.at + i) + LoadFloats(planes.dy + i) * lanesDown);
    return row;
}

/// A varying divided by w, as the planes give it.
Lanes Linear(const RowStart& row, const Planes& planes, const PixelGroup& group, int i)
{
    return Splat(row.varying[i]) + group.fromOrigin * Splat(planes.dx[i]);
}

Rgba4 Colour(const RowStart& row, const Planes& planes, const PixelGroup& group, int place)
{
    Rgba4 colour;
    for (int c = 0; c < 4; ++c)
        colour.c[c] = Saturate(Linear(row, planes, group, place + c) * group.w);
    return colour;
}

/// Coordinates are s / d, where d is the divisor over w, or just 1 / w. Their slopes follow from
/// those of s and d by the quotient rule.
StageCoordinates Coordinates(const StageProgram& stage, const RowStart& row, const Planes& planes,
                             const PixelGroup& group)
{
    const int at = stage.coordinates;
    Lanes scale = group.w;
    float divisorDx = planes.reciprocalW.dx, divisorDy = planes.reciprocalW.dy;
    if (stage.isProjected) {
        scale = Splat(1.0f) / Linear(row, planes, group, at + 2);
        divisorDx = planes.dx[at + 2];
        divisorDy = planes.dy[at + 2];
    }
    StageCoordinates result;
    result.u = Linear(row, planes, group, at) * scale;
    result.v = Linear(row, planes, group, at + 1) * scale;
    result.level = Splat(0.0f);
    if (!stage.needsLevel)
        return result;
    const auto slope = [scale](float ofValue, Lanes value, float ofDivisor) {
        return (Splat(ofValue) - value * Splat(ofDivisor)) * scale;
    };
    const CoordinateSlopes slopes = {
        slope(planes.dx[at], result.u, divisorDx), slope(planes.dx[at + 1], result.v, divisorDx),
        slope(planes.dy[at], result.u, divisorDy), slope(planes.dy[at + 1], result.v, divisorDy)};
    result.level = LevelOfDetail(stage.sampler, slopes);
    return result;
}

void RunStages(const PixelProgram& program, const RowStart& row, const Planes& planes,
               const PixelGroup& group, StageRegisters& registers)
{
    registers.values[D3DTA_CURRENT] = registers.values[D3DTA_DIFFUSE];
    registers.values[D3DTA_TEMP] = SplatColour(0.0f, 0.0f, 0.0f, 0.0f);
    BumpResult bump;
    for (int i = 0; i < program.stages.count; ++i) {
        const StageProgram& stage = program.stages.stages[i];
        StageCoordinates coordinates = {};
        if (stage.samples)
            coordinates = Coordinates(stage, row, planes, group);
        RunStage(stage, coordinates, group.lanes, registers, bump);
    }
}

void AddFog(const PixelProgram& program, const RowStart& row, const Planes& planes,
            const PixelGroup& group, Rgba4& colour)
{
    const Lanes factor = program.fog.source == FogSource::Vertex
                             ? Saturate(Linear(row, planes, group, program.varyings.fog) * group.w)
                             : FogFactors(program.fog, group.depth, group.w);
    ApplyFog(program.fog, factor, colour);
}

/// Computes the group's depth and the lanes that pass the test. Without an alpha test no later step
/// can drop a pixel, so the depth is stored at once.
void RunDepthTest(const PixelProgram& program, PixelGroup& group)
{
    const DepthTest& test = program.depth;
    if (!test.isOn)
        return;
    group.depthSteps = DepthSteps(test, group.depth, group.w);
    group.lanes = TestDepth(test, group.x, group.y, group.count, group.depthSteps, group.lanes);
    if (test.writes && !program.output.testsAlpha && group.lanes != 0)
        WriteDepth(test, group.x, group.y, group.depthSteps, group.lanes);
}

PixelGroup StartGroup(const PixelProgram& program, const RowStart& row, const Planes& planes, int x,
                      int y, int count)
{
    PixelGroup group;
    group.x = x;
    group.y = y;
    group.count = count;
    group.lanes = (1 << count) - 1;
    group.fromOrigin =
        Splat(static_cast<float>(x) - planes.originX) + MakeFloats(0.0f, 1.0f, 2.0f, 3.0f);
    const auto value = [&group](float start, float slope) {
        return Splat(start) + group.fromOrigin * Splat(slope);
    };
    group.depth = BiasedDepth(program.depth, planes, value(row.depth, planes.depth.dx));
    // 1/w is positive inside a primitive, but lines and lanes past the edge may lie outside it.
    const Lanes reciprocal = Max(value(row.reciprocalW, planes.reciprocalW.dx), Splat(1e-30f));
    group.w = Splat(1.0f) / reciprocal;
    group.depthSteps = SplatInt(0);
    return group;
}

void ShadeGroup(const PixelProgram& program, const RowStart& row, const Planes& planes,
                PixelGroup& group, StageRegisters& registers)
{
    RunDepthTest(program, group);
    if (group.lanes == 0)
        return;
    if (program.varyings.diffuse >= 0)
        registers.values[D3DTA_DIFFUSE] = Colour(row, planes, group, program.varyings.diffuse);
    if (program.varyings.specular >= 0)
        registers.values[D3DTA_SPECULAR] = Colour(row, planes, group, program.varyings.specular);
    RunStages(program, row, planes, group, registers);

    Rgba4& colour = registers.values[D3DTA_CURRENT];
    if (program.output.testsAlpha) {
        group.lanes = TestAlpha(program.output, colour.c[3], group.lanes);
        if (group.lanes == 0)
            return;
        if (program.depth.isOn && program.depth.writes)
            WriteDepth(program.depth, group.x, group.y, group.depthSteps, group.lanes);
    }
    for (int c = 0; program.addsSpecular && c < 3; ++c)
        colour.c[c] = Saturate(colour.c[c] + registers.values[D3DTA_SPECULAR].c[c]);
    if (program.fog.source != FogSource::None)
        AddFog(program, row, planes, group, colour);
    WriteColour(program.output, group.x, group.y, group.count, colour, group.lanes);
}

/// Prefetches two rows ahead: small triangles take a few pixels from each of many rows, and every
/// row is on another cache line.
void FetchAhead(const PixelProgram& program, int x, int y)
{
    if (y + 2 >= program.area.bottom)
        return;
    if (program.depth.isOn)
        __builtin_prefetch(program.depth.rows.At(x, y + 2));
    __builtin_prefetch(program.output.rows.At(x, y + 2));
}

} // namespace

void ShadeSpan(const PixelProgram& program, const Planes& planes, int y, int left, int right)
{
    if (left >= right)
        return;
    FetchAhead(program, left, y);
    const RowStart row = StartRow(program, planes, y);
    StageRegisters registers;
    registers.values[D3DTA_TFACTOR] = program.stages.factor;
    for (int x = left; x < right; x += 4) {
        PixelGroup group = StartGroup(program, row, planes, x, y, std::min(4, right - x));
        ShadeGroup(program, row, planes, group, registers);
    }
}

} // namespace headless

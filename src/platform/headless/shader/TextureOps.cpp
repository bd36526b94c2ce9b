// Texture instructions.

#include "platform/headless/shader/Kernels.h"
#include "platform/headless/shader/ShaderMath.h"

namespace headless::shader {

namespace {

/// Coordinates of two rows of a block of quads, or of one group of vertices.
struct Coordinates {
    Lanes rows[2][3];
};

int LanesToSample(const Machine& machine, int group)
{
    return machine.isMasked ? LaneBits(machine.active[group]) : 15;
}

/// Writes the components in their order; `component` has the sampler's swizzle applied.
void Keep(const Operation& operation, Machine& machine, int group, const Lanes (&colour)[4])
{
    Lanes results[4];
    for (int i = 0; i < operation.count; ++i)
        results[i] = colour[operation.component[i]];
    Finish(operation, machine, group, results);
}

/// What a group reads; `sample` gets the texture, the lanes and the colour to fill. A sampler without a
/// texture reads black.
template <typename Sample>
void ReadGroup(const Operation& operation, Machine& machine, int group, Sample sample)
{
    Lanes colour[4] = {Splat(0.0f), Splat(0.0f), Splat(0.0f), Splat(1.0f)};
    const int lanes = LanesToSample(machine, group);
    if (const TextureUnit* unit = machine.units[operation.sampler]; unit && lanes != 0)
        sample(*unit, lanes, colour);
    Keep(operation, machine, group, colour);
}

void SampleGroup(const Operation& operation, Machine& machine, int group,
                 const Lanes (&coordinates)[3], Lanes level)
{
    ReadGroup(operation, machine, group, [&](const TextureUnit& unit, int lanes, auto& colour) {
        unit.Sample(coordinates, level, lanes, colour);
    });
}

void SampleGroupSteps(const Operation& operation, Machine& machine, int group,
                      const Lanes (&coordinates)[3], const CoordinateSteps& steps, Lanes bias)
{
    ReadGroup(operation, machine, group, [&](const TextureUnit& unit, int lanes, auto& colour) {
        unit.SampleSteps(coordinates, steps, bias, lanes, colour);
    });
}

CoordinateSteps StepsOf(const Coordinates& coordinates, int row)
{
    CoordinateSteps steps;
    for (int c = 0; c < 3; ++c) {
        const Lanes value = coordinates.rows[row][c];
        steps.dx[c] = OddLanes(value) - EvenLanes(value);
        steps.dy[c] = coordinates.rows[1][c] - coordinates.rows[0][c];
    }
    return steps;
}

/// Samples two rows at the level that their quads need, plus `bias`.
void SampleRows(const Operation& operation, Machine& machine, int group,
                const Coordinates& coordinates, const Lanes (&bias)[2])
{
    const TextureUnit* unit = machine.units[operation.sampler];
    const bool needsLevel = unit && unit->NeedsLevel();
    for (int row = 0; row < 2; ++row) {
        const auto& places = coordinates.rows[row];
        if (needsLevel)
            SampleGroupSteps(operation, machine, group + row, places, StepsOf(coordinates, row),
                             bias[row]);
        else
            SampleGroup(operation, machine, group + row, places, Splat(0.0f));
    }
}

void ReadCoordinates(const Operation& operation, const Machine& machine, int group,
                     Lanes (&coordinatesOut)[3])
{
    for (int c = 0; c < 3; ++c)
        coordinatesOut[c] = Load(machine, operation.sources[0], c, group);
}

void Divide(Lanes (&coordinates)[3], Lanes divisor)
{
    for (Lanes& coordinate : coordinates)
        coordinate = coordinate / divisor;
}

/// The values of a component for all groups: where they are, or in `aside` if they have to be computed.
const Lanes* RunOf(const Operand& source, const Machine& machine, int component, bool isDivided,
                   Lanes (&aside)[kMaxGroups])
{
    if (source.step == 1 && !source.isAbsolute && !source.isNegated && !isDivided)
        return machine.file + source.place[component];
    for (int g = 0; g < machine.groups; ++g) {
        const Lanes value = Load(machine, source, component, g);
        aside[g] = isDivided ? value / Load(machine, source, 3, g) : value;
    }
    return aside;
}

/// Whether no component of the colour goes to two components of the result.
bool TakesEachOnce(const Operation& operation)
{
    unsigned taken = 0;
    for (int i = 0; i < operation.count; ++i) {
        if ((taken >> operation.component[i] & 1) != 0)
            return false;
        taken |= 1u << operation.component[i];
    }
    return true;
}

/// Samples all groups at once; false if the texture cannot, or if some pixels do not run.
bool SampleRun(const Operation& operation, Machine& machine)
{
    const TextureUnit* unit = machine.units[operation.sampler];
    if (!unit || machine.isMasked)
        return false;
    Lanes coordinates[4][kMaxGroups], colours[4][kMaxGroups];
    const Operand& source = operation.sources[0];
    const bool isProjected = operation.control == kLoadProjected;
    RunCoordinates run = {};
    for (int c = 0; c < 3; ++c)
        run.at[c] = RunOf(source, machine, c, isProjected, coordinates[c]);
    if (operation.control != 0 && !isProjected)
        run.bias = RunOf(source, machine, 3, false, coordinates[3]);
    Lanes* out[4] = {colours[0], colours[1], colours[2], colours[3]};
    const bool isDirect = operation.isFinished && TakesEachOnce(operation);
    for (int i = 0; isDirect && i < operation.count; ++i)
        out[operation.component[i]] = machine.file + operation.out[i];
    if (!unit->SampleRun(run, machine.groups, out))
        return false;
    for (int g = 0; !isDirect && g < machine.groups; ++g)
        Keep(operation, machine, g, {out[0][g], out[1][g], out[2][g], out[3][g]});
    return true;
}

} // namespace

void RunSample(const Operation& operation, Machine& machine)
{
    if (SampleRun(operation, machine))
        return;
    for (int g = 0; g < machine.groups; g += 2) {
        Coordinates coordinates;
        Lanes bias[2] = {Splat(0.0f), Splat(0.0f)};
        for (int row = 0; row < 2; ++row) {
            ReadCoordinates(operation, machine, g + row, coordinates.rows[row]);
            if (operation.control == 0)
                continue;
            const Lanes fourth = Load(machine, operation.sources[0], 3, g + row);
            if (operation.control == kLoadProjected)
                Divide(coordinates.rows[row], fourth);
            else
                bias[row] = fourth;
        }
        SampleRows(operation, machine, g, coordinates, bias);
    }
}

/// tex of ps 1.1 to 1.3: the stage says whether the coordinates are projected.
void RunSampleStage(const Operation& operation, Machine& machine)
{
    const StageValues& stage = machine.stages[operation.sampler];
    for (int g = 0; g < machine.groups; g += 2) {
        Coordinates coordinates;
        for (int row = 0; row < 2; ++row) {
            ReadCoordinates(operation, machine, g + row, coordinates.rows[row]);
            if (stage.isProjected)
                Divide(coordinates.rows[row],
                       Load(machine, operation.sources[0], stage.divisor, g + row));
        }
        SampleRows(operation, machine, g, coordinates, {Splat(0.0f), Splat(0.0f)});
    }
}

void RunSampleLevel(const Operation& operation, Machine& machine)
{
    const TextureUnit* unit = machine.units[operation.sampler];
    const Lanes bias = Splat(unit ? unit->Bias() : 0.0f);
    for (int g = 0; g < machine.groups; ++g) {
        Lanes coordinates[3];
        ReadCoordinates(operation, machine, g, coordinates);
        SampleGroup(operation, machine, g, coordinates,
                    Load(machine, operation.sources[0], 3, g) + bias);
    }
}

/// Sources 1 and 2 are the slopes along x and y.
void RunSampleSlopes(const Operation& operation, Machine& machine)
{
    for (int g = 0; g < machine.groups; ++g) {
        Lanes coordinates[3];
        CoordinateSteps steps;
        ReadCoordinates(operation, machine, g, coordinates);
        for (int c = 0; c < 3; ++c) {
            steps.dx[c] = Load(machine, operation.sources[1], c, g);
            steps.dy[c] = Load(machine, operation.sources[2], c, g);
        }
        SampleGroupSteps(operation, machine, g, coordinates, steps, Splat(0.0f));
    }
}

/// Coordinates of source 0 moved by the first two components of source 1, turned by the matrix of
/// the stage.
void RunBumpCoordinate(const Operation& operation, Machine& machine)
{
    const StageValues& stage = machine.stages[operation.sampler];
    for (int g = 0; g < machine.groups; ++g) {
        Lanes coordinates[3];
        ReadCoordinates(operation, machine, g, coordinates);
        if (stage.isProjected)
            Divide(coordinates, Load(machine, operation.sources[0], stage.divisor, g));
        const Lanes x = Load(machine, operation.sources[1], 0, g);
        const Lanes y = Load(machine, operation.sources[1], 1, g);
        const Lanes moved[4] = {
            coordinates[0] + x * Splat(stage.bumpMatrix[0][0]) + y * Splat(stage.bumpMatrix[1][0]),
            coordinates[1] + x * Splat(stage.bumpMatrix[0][1]) + y * Splat(stage.bumpMatrix[1][1]),
            coordinates[2], Splat(1.0f)};
        Keep(operation, machine, g, moved);
    }
}

/// Scales source 0 by the luminance in z of source 1.
void RunLuminance(const Operation& operation, Machine& machine)
{
    const StageValues& stage = machine.stages[operation.sampler];
    for (int g = 0; g < machine.groups; ++g) {
        const Lanes luminance =
            Load(machine, operation.sources[1], 2, g) * Splat(stage.luminanceScale) +
            Splat(stage.luminanceOffset);
        Lanes colour[4];
        for (int c = 0; c < 4; ++c)
            colour[c] = Load(machine, operation.sources[0], c, g) * luminance;
        Keep(operation, machine, g, colour);
    }
}

/// `count` components of source 0; a pixel with one below 0 is dropped.
void RunKill(const Operation& operation, Machine& machine)
{
    for (int g = 0; g < machine.groups; ++g) {
        Lanes dropped = Splat(0.0f);
        for (int i = 0; i < operation.count; ++i)
            dropped = dropped | IsLess(Load(machine, operation.sources[0], i, g), Splat(0.0f));
        Lanes& kill = machine.file[machine.program->kill + static_cast<uint32_t>(g)];
        Lanes chosen = machine.isMasked ? machine.active[g] : AsFloats(SplatInt(-1));
        if (operation.isPredicated) {
            const Lanes mask = machine.file[operation.predicate[0] + static_cast<uint32_t>(g)];
            chosen = operation.isPredicateInverted ? AndNot(mask, chosen) : mask & chosen;
        }
        kill = kill | (dropped & chosen);
    }
}

/// The quotient of x and y, and 1 where y is 0; texdepth (control 1) holds y to at most 1.
void RunDepth(const Operation& operation, Machine& machine)
{
    for (int g = 0; g < machine.groups; ++g) {
        const Lanes x = Load(machine, operation.sources[0], 0, g);
        Lanes y = Load(machine, operation.sources[0], 1, g);
        if (operation.control == 1)
            y = Min(y, Splat(1.0f));
        const Lanes isZero = IsSame(y, Splat(0.0f));
        const Lanes results[4] = {Select(isZero, Splat(1.0f), x / y)};
        Finish(operation, machine, g, results);
    }
}

/// Reflects the eye vector, source 1, about the normal, source 0, which need not have length 1.
void RunReflect(const Operation& operation, Machine& machine)
{
    for (int g = 0; g < machine.groups; ++g) {
        Lanes normal[3], eye[3];
        for (int c = 0; c < 3; ++c) {
            normal[c] = Load(machine, operation.sources[0], c, g);
            eye[c] = Load(machine, operation.sources[1], c, g);
        }
        const auto dot = [](const Lanes(&a)[3], const Lanes(&b)[3]) {
            return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
        };
        const Lanes scale = Splat(2.0f) * dot(normal, eye) / dot(normal, normal);
        Lanes reflected[4] = {normal[0] * scale - eye[0], normal[1] * scale - eye[1],
                              normal[2] * scale - eye[2], Splat(1.0f)};
        Keep(operation, machine, g, reflected);
    }
}

} // namespace headless::shader

// The arithmetic of shaders.

#include "platform/headless/shader/ArithmeticKernels.h"
#include "platform/headless/shader/ShaderMath.h"

namespace headless::shader {

namespace {

using Four = Arithmetic<FourLanes>;

Lanes Modified(SourceModifier modifier, Lanes value)
{
    const Lanes half = Splat(0.5f), two = Splat(2.0f);
    switch (modifier) {
    case SourceModifier::Bias:
        return value - half;
    case SourceModifier::BiasNeg:
        return half - value;
    case SourceModifier::Sign:
        return (value - half) * two;
    case SourceModifier::SignNeg:
        return (half - value) * two;
    case SourceModifier::Comp:
        return Four::One() - value;
    case SourceModifier::X2:
        return value * two;
    case SourceModifier::X2Neg:
        return Four::Zero() - value * two;
    default:
        return value;
    }
}

} // namespace

const Kernel* FindKernel(Opcode opcode)
{
    for (const auto& row : kKernelRows<FourLanes>)
        if (row.opcode == opcode)
            return &row.kernel;
    return nullptr;
}

void RunMove(const Operation& operation, Machine& machine)
{
    Each<FourLanes, false, 1, Four::Move>(operation, machine);
}

void RunRoundNearest(const Operation& operation, Machine& machine)
{
    Each<FourLanes, false, 1, Four::RoundNearest>(operation, machine);
}

void RunRoundDown(const Operation& operation, Machine& machine)
{
    Each<FourLanes, false, 1, Four::RoundDown>(operation, machine);
}

void RunOldExp(const Operation& operation, Machine& machine)
{
    Whole<FourLanes, Four::OldExp>(operation, machine);
}

void RunOldLog(const Operation& operation, Machine& machine)
{
    Whole<FourLanes, Four::OldLog>(operation, machine);
}

void RunDerivativeX(const Operation& operation, Machine& machine)
{
    Derivative<FourLanes, true>(operation, machine);
}

void RunDerivativeY(const Operation& operation, Machine& machine)
{
    Derivative<FourLanes, false>(operation, machine);
}

/// The sources are whole registers. _dz and _dw divide x and y by the third or fourth component.
void RunModifier(const Operation& operation, Machine& machine)
{
    const auto modifier = static_cast<SourceModifier>(operation.control);
    const bool divides = modifier == SourceModifier::Dz || modifier == SourceModifier::Dw;
    for (int g = 0; g < machine.groups; ++g) {
        Lanes results[4];
        const Lanes divisor =
            Plain(machine, operation.sources[0], modifier == SourceModifier::Dz ? 2 : 3, g);
        for (int i = 0; i < 4; ++i) {
            const Lanes value = Plain(machine, operation.sources[0], i, g);
            results[i] = divides ? (i < 2 ? value / divisor : value) : Modified(modifier, value);
        }
        Finish(operation, machine, g, results);
    }
}

void RunBump(const Operation& operation, Machine& machine)
{
    const auto& matrix = machine.stages[operation.sampler].bumpMatrix;
    for (int g = 0; g < machine.groups; ++g) {
        const Lanes x = Load(machine, operation.sources[1], 0, g);
        const Lanes y = Load(machine, operation.sources[1], 1, g);
        Lanes all[4] = {Load(machine, operation.sources[0], 0, g) + x * Splat(matrix[0][0]) +
                            y * Splat(matrix[1][0]),
                        Load(machine, operation.sources[0], 1, g) + x * Splat(matrix[0][1]) +
                            y * Splat(matrix[1][1]),
                        Four::Zero(), Four::Zero()};
        Lanes results[4];
        for (int i = 0; i < operation.count; ++i)
            results[i] = all[operation.component[i]];
        Finish(operation, machine, g, results);
    }
}

} // namespace headless::shader

#pragma once

#include "platform/headless/shader/Machine.h"

namespace headless::shader {

/// How the places of an operand are laid out.
enum class Shape : uint8_t {
    Each,   ///< place i belongs to the i-th component that is written
    Vector, ///< place i is component i after the swizzle
    Scalar, ///< place 0 is the one component that is read
};

/// The code of an arithmetic instruction, without and with source modifiers.
struct Kernel {
    RunFunction plain;
    RunFunction modified;
    Shape shape;
};

/// Null for instructions that are no arithmetic.
const Kernel* FindKernel(Opcode opcode);

/// Whether this processor and this build can compute eight lanes at once.
bool HasEightForms();
/// The same code for eight lanes at a time, or `four` itself if it has no such form. With HasEightForms only.
RunFunction EightFormOf(RunFunction four);

/// What source modifiers of ps 1.x do before an instruction; `control` is the SourceModifier.
void RunModifier(const Operation& operation, Machine& machine);
/// Rounds to whole numbers for a0: to the nearest, or down in vs 1.1.
void RunRoundNearest(const Operation& operation, Machine& machine);
void RunRoundDown(const Operation& operation, Machine& machine);
void RunCompare(const Operation& operation, Machine& machine); ///< setp
void RunDerivativeX(const Operation& operation, Machine& machine);
void RunDerivativeY(const Operation& operation, Machine& machine);
/// expp and logp of vs 1.1, which give four values.
void RunOldExp(const Operation& operation, Machine& machine);
void RunOldLog(const Operation& operation, Machine& machine);
void RunMove(const Operation& operation, Machine& machine);
void RunBump(const Operation& operation, Machine& machine); ///< bem

// Indexed registers.
void RunLoadIndexed(const Operation& operation, Machine& machine);
void RunStoreIndexed(const Operation& operation, Machine& machine);

// Flow control; `target` is where to go on if no lane runs the next operation.
void RunIfTruth(const Operation& operation, Machine& machine);
void RunIfLanes(const Operation& operation, Machine& machine);
void RunIfCompare(const Operation& operation, Machine& machine);
void RunElse(const Operation& operation, Machine& machine);
void RunEndIf(const Operation& operation, Machine& machine);
void RunRep(const Operation& operation, Machine& machine);
void RunLoop(const Operation& operation, Machine& machine);
void RunEndLoop(const Operation& operation, Machine& machine);
void RunBreak(const Operation& operation, Machine& machine);
void RunBreakCompare(const Operation& operation, Machine& machine);
void RunBreakLanes(const Operation& operation, Machine& machine);
void RunCall(const Operation& operation, Machine& machine);
void RunCallTruth(const Operation& operation, Machine& machine);
void RunCallLanes(const Operation& operation, Machine& machine);
void RunReturn(const Operation& operation, Machine& machine); ///< the end of a subroutine
void RunLeave(const Operation& operation, Machine& machine);  ///< ret in a block
void RunEnd(const Operation& operation, Machine& machine);
void RunNothing(const Operation& operation, Machine& machine);

// Textures. Source 0 is the coordinate.
void RunSample(const Operation& operation, Machine& machine);
void RunSampleLevel(const Operation& operation, Machine& machine);
void RunSampleSlopes(const Operation& operation, Machine& machine);
void RunSampleStage(const Operation& operation, Machine& machine); ///< tex of ps 1.1 to 1.3
void RunBumpCoordinate(const Operation& operation, Machine& machine);
void RunLuminance(const Operation& operation, Machine& machine);
void RunKill(const Operation& operation, Machine& machine);
void RunDepth(const Operation& operation, Machine& machine);   ///< texdepth, texm3x2depth
void RunReflect(const Operation& operation, Machine& machine); ///< texm3x3spec, texm3x3vspec

/// A component of a source for one group.
inline Lanes Plain(const Machine& machine, const Operand& source, int i, int group)
{
    return machine.file[source.place[i] + static_cast<uint32_t>(group) * source.step];
}

inline Lanes Load(const Machine& machine, const Operand& source, int i, int group)
{
    const Lanes value = Plain(machine, source, i, group);
    const Lanes held = source.isAbsolute ? Absolute(value) : value;
    return source.isNegated ? held ^ Splat(-0.0f) : held;
}

inline void Finish(const Operation& operation, Machine& machine, int group, const Lanes* results)
{
    if (!operation.isFinished || machine.isMasked) {
        machine.Store(operation, group, results);
        return;
    }
    for (int i = 0; i < operation.count; ++i)
        machine.file[operation.out[i] + static_cast<uint32_t>(group)] = results[i];
}

} // namespace headless::shader

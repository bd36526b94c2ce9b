// Comparisons, blocks, loops, calls and indexed registers.

#include "platform/headless/shader/Kernels.h"
#include "platform/headless/shader/ShaderMath.h"

#include <algorithm>

namespace headless::shader {

namespace {

Lanes Compared(uint8_t control, Lanes a, Lanes b)
{
    switch (static_cast<Compare>(control)) {
    case Compare::Gt:
        return IsGreater(a, b);
    case Compare::Eq:
        return IsSame(a, b);
    case Compare::Ge:
        return IsAtLeast(a, b);
    case Compare::Lt:
        return IsLess(a, b);
    case Compare::Ne:
        return IsUnequal(a, b);
    default:
        return IsAtLeast(b, a);
    }
}

Lanes ComparedSources(const Operation& operation, const Machine& machine, int group)
{
    return Compared(operation.control, Load(machine, operation.sources[0], 0, group),
                    Load(machine, operation.sources[1], 0, group));
}

Lanes Inverted(Lanes mask)
{
    return AndNot(mask, AsFloats(SplatInt(-1)));
}

/// The lanes of a component of p0.
Lanes PredicateLanes(const Operation& operation, const Machine& machine, int group)
{
    const Lanes mask = Plain(machine, operation.sources[0], 0, group);
    return operation.isInverted ? Inverted(mask) : mask;
}

template <typename MaskOf>
void OpenBlock(const Operation& operation, Machine& machine, MaskOf maskOf)
{
    Machine::BlockFrame& frame = machine.blocks[machine.blockCount++];
    for (int g = 0; g < machine.groups; ++g) {
        frame.condition[g] = machine.condition[g];
        machine.condition[g] = machine.condition[g] & maskOf(g);
    }
    machine.SetActive();
    if (!machine.AnyActive())
        machine.next = static_cast<size_t>(operation.target);
}

template <typename MaskOf>
void BreakLanes(Machine& machine, MaskOf maskOf)
{
    for (int g = 0; g < machine.groups; ++g)
        machine.loopAlive[g] = AndNot(machine.active[g] & maskOf(g), machine.loopAlive[g]);
    machine.SetActive();
}

template <typename MaskOf>
void EnterCall(const Operation& operation, Machine& machine, MaskOf maskOf)
{
    Machine::CallFrame& frame = machine.calls[machine.callCount++];
    frame.next = machine.next;
    for (int g = 0; g < machine.groups; ++g) {
        frame.alive[g] = machine.callAlive[g];
        machine.callAlive[g] = machine.callAlive[g] & machine.active[g] & maskOf(g);
    }
    machine.SetActive();
    machine.next = static_cast<size_t>(operation.target);
}

Lanes All(int)
{
    return AsFloats(SplatInt(-1));
}

/// A count of a constant, 0 to 255.
int Held(int count)
{
    return std::clamp(count, 0, 255);
}

void EnterLoop(const Operation& operation, Machine& machine, int count, int first, int step)
{
    if (count == 0 || !machine.AnyActive()) {
        machine.next = static_cast<size_t>(operation.target);
        return;
    }
    Machine::LoopFrame& frame = machine.loops[machine.loopCount++];
    frame.left = count;
    frame.index = first;
    frame.step = step;
    frame.start = machine.next;
    for (int g = 0; g < machine.groups; ++g)
        frame.alive[g] = machine.loopAlive[g];
}

} // namespace

void RunNothing(const Operation&, Machine&)
{}

void RunCompare(const Operation& operation, Machine& machine)
{
    for (int g = 0; g < machine.groups; ++g) {
        Lanes results[4];
        for (int i = 0; i < operation.count; ++i)
            results[i] = Compared(operation.control, Load(machine, operation.sources[0], i, g),
                                  Load(machine, operation.sources[1], i, g));
        for (int i = 0; i < operation.count; ++i) {
            Lanes& target = machine.file[operation.out[i] + static_cast<uint32_t>(g)];
            target = machine.isMasked ? Select(machine.active[g], results[i], target) : results[i];
        }
    }
}

void RunIfTruth(const Operation& operation, Machine& machine)
{
    const bool isTrue = machine.Truth(operation);
    OpenBlock(operation, machine, [isTrue](int) { return isTrue ? All(0) : Splat(0.0f); });
}

void RunIfLanes(const Operation& operation, Machine& machine)
{
    OpenBlock(operation, machine,
              [&](int group) { return PredicateLanes(operation, machine, group); });
}

void RunIfCompare(const Operation& operation, Machine& machine)
{
    OpenBlock(operation, machine,
              [&](int group) { return ComparedSources(operation, machine, group); });
}

/// The lanes that entered the block but not its first part.
void RunElse(const Operation& operation, Machine& machine)
{
    const Machine::BlockFrame& frame = machine.blocks[machine.blockCount - 1];
    for (int g = 0; g < machine.groups; ++g)
        machine.condition[g] = AndNot(machine.condition[g], frame.condition[g]);
    machine.SetActive();
    if (!machine.AnyActive())
        machine.next = static_cast<size_t>(operation.target);
}

void RunEndIf(const Operation&, Machine& machine)
{
    const Machine::BlockFrame& frame = machine.blocks[--machine.blockCount];
    std::copy_n(frame.condition, machine.groups, machine.condition);
    machine.SetActive();
}

void RunRep(const Operation& operation, Machine& machine)
{
    EnterLoop(operation, machine, Held(machine.Whole(operation.number)[0]), 0, 0);
}

void RunLoop(const Operation& operation, Machine& machine)
{
    const int* values = machine.Whole(operation.number);
    EnterLoop(operation, machine, Held(values[0]), values[1], values[2]);
}

void RunEndLoop(const Operation&, Machine& machine)
{
    Machine::LoopFrame& frame = machine.loops[machine.loopCount - 1];
    if (--frame.left > 0 && machine.AnyActive()) {
        frame.index = static_cast<int>(static_cast<unsigned>(frame.index) +
                                       static_cast<unsigned>(frame.step));
        machine.next = frame.start;
        return;
    }
    --machine.loopCount;
    std::copy_n(frame.alive, machine.groups, machine.loopAlive);
    machine.SetActive();
}

void RunBreak(const Operation&, Machine& machine)
{
    BreakLanes(machine, All);
}

void RunBreakCompare(const Operation& operation, Machine& machine)
{
    BreakLanes(machine, [&](int group) { return ComparedSources(operation, machine, group); });
}

void RunBreakLanes(const Operation& operation, Machine& machine)
{
    BreakLanes(machine, [&](int group) { return PredicateLanes(operation, machine, group); });
}

void RunCall(const Operation& operation, Machine& machine)
{
    if (machine.AnyActive())
        EnterCall(operation, machine, All);
}

void RunCallTruth(const Operation& operation, Machine& machine)
{
    if (machine.AnyActive() && machine.Truth(operation))
        EnterCall(operation, machine, All);
}

void RunCallLanes(const Operation& operation, Machine& machine)
{
    if (machine.AnyActive())
        EnterCall(operation, machine,
                  [&](int group) { return PredicateLanes(operation, machine, group); });
}

void RunReturn(const Operation&, Machine& machine)
{
    const Machine::CallFrame& frame = machine.calls[--machine.callCount];
    std::copy_n(frame.alive, machine.groups, machine.callAlive);
    machine.next = frame.next;
    machine.SetActive();
}

void RunLeave(const Operation&, Machine& machine)
{
    for (int g = 0; g < machine.groups; ++g)
        machine.callAlive[g] = AndNot(machine.active[g], machine.callAlive[g]);
    machine.SetActive();
}

void RunEnd(const Operation&, Machine& machine)
{
    machine.next = machine.program->operations.size();
}

namespace {

/// The register that each lane means; -1 for none.
void Numbers(const Operation& operation, const Machine& machine, int group, int (&numbersOut)[4])
{
    const Indexing& indexing = operation.indexing;
    alignas(16) float index[4];
    const int loop = machine.loopCount > 0 ? machine.loops[machine.loopCount - 1].index : 0;
    if (!indexing.byLoop)
        StoreFloats(index, machine.file[indexing.indexPlace + static_cast<uint32_t>(group)]);
    for (int lane = 0; lane < 4; ++lane) {
        const int64_t offset = indexing.byLoop ? loop : static_cast<int>(index[lane]);
        const int64_t number = indexing.first + offset;
        numbersOut[lane] = number >= 0 && number < indexing.count ? static_cast<int>(number) : -1;
    }
}

float* LaneOf(Machine& machine, const Indexing& indexing, int number, uint32_t component, int group,
              int lane)
{
    const uint32_t place = indexing.base + static_cast<uint32_t>(number) * 4 * kMaxGroups +
                           component * kMaxGroups + static_cast<uint32_t>(group);
    return reinterpret_cast<float*>(machine.file + place) + lane;
}

} // namespace

/// Copies the whole register into scratch, whose places are in `out`.
void RunLoadIndexed(const Operation& operation, Machine& machine)
{
    const Indexing& indexing = operation.indexing;
    for (int g = 0; g < machine.groups; ++g) {
        int numbers[4];
        Numbers(operation, machine, g, numbers);
        for (uint32_t c = 0; c < 4; ++c) {
            alignas(16) float values[4] = {};
            for (int lane = 0; lane < 4; ++lane)
                if (numbers[lane] >= 0)
                    values[lane] =
                        indexing.ofConstants
                            ? machine.program->indexed[static_cast<size_t>(numbers[lane]) * 4 + c]
                            : *LaneOf(machine, indexing, numbers[lane], c, g, lane);
            machine.file[operation.out[c] + static_cast<uint32_t>(g)] = LoadFloats(values);
        }
    }
}

/// Copies scratch, which source 0 names, into the register that each running lane means.
void RunStoreIndexed(const Operation& operation, Machine& machine)
{
    for (int g = 0; g < machine.groups; ++g) {
        int numbers[4];
        Numbers(operation, machine, g, numbers);
        for (int i = 0; i < operation.count; ++i) {
            alignas(16) float values[4];
            StoreFloats(values, Plain(machine, operation.sources[0], i, g));
            Lanes chosen = machine.isMasked ? machine.active[g] : All(0);
            if (operation.isPredicated) {
                const Lanes mask = machine.file[operation.predicate[i] + static_cast<uint32_t>(g)];
                chosen = operation.isPredicateInverted ? AndNot(mask, chosen) : mask & chosen;
            }
            const int lanes = LaneBits(chosen);
            for (int lane = 0; lane < 4; ++lane)
                if (numbers[lane] >= 0 && (lanes >> lane & 1) != 0)
                    *LaneOf(machine, operation.indexing, numbers[lane], operation.component[i], g,
                            lane) = values[lane];
        }
    }
}

} // namespace headless::shader

#include "platform/headless/shader/Machine.h"

#include "platform/headless/shader/Kernels.h"

#include <algorithm>

namespace headless::shader {

namespace {

Lanes AllLanes()
{
    return AsFloats(SplatInt(-1));
}

const DefinedSwitch* FindDefined(const std::vector<DefinedSwitch>& rows, uint32_t number)
{
    for (const DefinedSwitch& row : rows)
        if (row.number == number)
            return &row;
    return nullptr;
}

/// Constants of ps 1.x hold -1..1.
float Held(const Version& version, float value)
{
    if (!version.isPixel || version.major > 1)
        return value;
    return value < 1.0f ? std::max(value, -1.0f) : 1.0f;
}

} // namespace

Machine::Machine() : isEight(HasEightForms())
{}

void Machine::Prepare(Program& next_, const Constants& constants)
{
    program = &next_;
    program->MakeRegisters();
    file = program->registers.front().lanes;
    values = constants;
    const auto value = [&](size_t number, size_t c) {
        const size_t at = number * 4 + c;
        return at < constants.floats.size() ? Held(program->version, constants.floats[at]) : 0.0f;
    };
    for (const ConstantUse& use : program->constants)
        for (size_t c = 0; c < 4; ++c)
            SetConstant(use, c, value(use.number, c));
    for (size_t i = 0; i < program->indexed.size(); ++i)
        program->indexed[i] = value(i / 4, i % 4);
    for (const DefinedFloats& row : program->definedFloats)
        for (size_t c = 0; c < 4; ++c) {
            for (const ConstantUse& use : program->constants)
                if (use.number == row.number)
                    SetConstant(use, c, row.values[c]);
            if (row.number * 4 + c < program->indexed.size())
                program->indexed[row.number * 4 + c] = row.values[c];
        }
}

void Machine::SetConstant(const ConstantUse& use, size_t component, float value)
{
    std::fill_n(file + use.at + component * kConstantCopies, kConstantCopies, Splat(value));
}

bool Machine::Truth(const Operation& operation) const
{
    bool isTrue = operation.number < values.bools.size() && values.bools[operation.number] != 0;
    if (const DefinedSwitch* row = FindDefined(program->definedBools, operation.number))
        isTrue = row->values[0] != 0;
    return isTrue != operation.isInverted;
}

const int* Machine::Whole(uint32_t number) const
{
    static constexpr int kNone[4] = {};
    if (const DefinedSwitch* row = FindDefined(program->definedInts, number))
        return row->values;
    return number * 4 + 3 < values.ints.size() ? &values.ints[number * 4] : kNone;
}

void Machine::Run(int groupCount)
{
    groups = groupCount;
    isMasked = false;
    for (int g = 0; program->canKill && g < groups; ++g)
        file[program->kill + static_cast<uint32_t>(g)] = Splat(0.0f);
    if (program->hasFlow)
        isEight ? RunFlow<&Operation::eight>() : RunFlow<&Operation::run>();
    else
        isEight ? RunStraight<&Operation::eight>() : RunStraight<&Operation::run>();
}

template <RunFunction Operation::*Form>
void Machine::RunStraight()
{
    for (const Operation& operation : program->operations)
        (operation.*Form)(operation, *this);
    work += program->operations.size() * static_cast<uint64_t>(groups);
}

/// With flow control a register may be read that no path has written: it is 0.
template <RunFunction Operation::*Form>
void Machine::RunFlow()
{
    const std::vector<Operation>& operations = program->operations;
    const int used = (groups + 1) / 2 * 2; // code for two groups at once runs the last one, too
    const auto clear = [&](uint32_t from, uint32_t end) {
        for (uint32_t at = from; at < end; at += kMaxGroups)
            std::fill_n(file + at, used, Splat(0.0f));
    };
    for (const Binding& output : program->outputs)
        clear(output.at, output.at + 4 * kMaxGroups);
    clear(0, program->temporaries);
    for (int g = 0; g < used; ++g) {
        active[g] = condition[g] = loopAlive[g] = callAlive[g] = running[g] = AllLanes();
        executed[g] = SplatInt(0);
    }
    blockCount = loopCount = callCount = 0;
    for (next = 0; next < operations.size();) {
        const Operation& operation = operations[next++];
        (operation.*Form)(operation, *this);
        work += static_cast<uint64_t>(groups);
        if (operation.isCounted && program->mayRunLong)
            Count();
    }
}

/// Lanes that have executed as many instructions as a run may stop; the others go on.
void Machine::Count()
{
    const IntLanes last = SplatInt(kMaxExecuted - 1);
    bool anyEnds = false;
    for (int g = 0; g < groups; ++g) {
        executed[g] = executed[g] - AsInts(active[g]); // a set lane is -1
        const Lanes ends = AsFloats(IsGreater(executed[g], last));
        running[g] = AndNot(ends, running[g]);
        anyEnds = anyEnds || LaneBits(ends) != 0;
    }
    if (!anyEnds)
        return;
    SetActive();
    const auto isRunning = [](Lanes lanes) { return LaneBits(lanes) != 0; };
    if (std::none_of(running, running + groups, isRunning))
        next = program->operations.size();
}

void Machine::SetActive()
{
    isMasked = false;
    for (int g = 0; g < groups; ++g) {
        active[g] = condition[g] & loopAlive[g] & callAlive[g] & running[g];
        isMasked = isMasked || LaneBits(active[g]) != 15;
    }
}

bool Machine::AnyActive() const
{
    return std::any_of(active, active + groups, [](Lanes lanes) { return LaneBits(lanes) != 0; });
}

/// Result modifiers, predicates and masks.
void Machine::Store(const Operation& operation, int group, const Lanes* results)
{
    const Lanes scale = Splat(operation.scale);
    for (int i = 0; i < operation.count; ++i) {
        Lanes value = results[i] * scale;
        if (operation.saturates)
            value = Saturate(value);
        Lanes& target = file[operation.out[i] + static_cast<uint32_t>(group)];
        Lanes chosen = isMasked ? active[group] : AllLanes();
        if (operation.isPredicated) {
            const Lanes mask = file[operation.predicate[i] + static_cast<uint32_t>(group)];
            chosen = operation.isPredicateInverted ? AndNot(mask, chosen) : mask & chosen;
        }
        target = Select(chosen, value, target);
    }
}

} // namespace headless::shader

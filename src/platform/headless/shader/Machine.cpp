#include "platform/headless/shader/Machine.h"

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

void Machine::Prepare(Program& next_, const Constants& constants)
{
    program = &next_;
    file = program->registers.data();
    values = constants;
    const auto value = [&](size_t number, size_t c) {
        const size_t at = number * 4 + c;
        return at < constants.floats.size() ? Held(program->version, constants.floats[at]) : 0.0f;
    };
    for (const ConstantUse& use : program->constants)
        for (size_t c = 0; c < 4; ++c)
            file[use.at + c] = Splat(value(use.number, c));
    for (size_t i = 0; i < program->indexed.size(); ++i)
        program->indexed[i] = value(i / 4, i % 4);
    for (const DefinedFloats& row : program->definedFloats)
        for (size_t c = 0; c < 4; ++c) {
            for (const ConstantUse& use : program->constants)
                if (use.number == row.number)
                    file[use.at + c] = Splat(row.values[c]);
            if (row.number * 4 + c < program->indexed.size())
                program->indexed[row.number * 4 + c] = row.values[c];
        }
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
        RunFlow();
    else
        RunStraight();
}

void Machine::RunStraight()
{
    for (const Operation& operation : program->operations)
        operation.run(operation, *this);
    work += program->operations.size() * static_cast<uint64_t>(groups);
}

/// With flow control a register may be read that no path has written: it is 0.
void Machine::RunFlow()
{
    const std::vector<Operation>& operations = program->operations;
    for (const Binding& output : program->outputs)
        std::fill_n(file + output.at, 4 * kMaxGroups, Splat(0.0f));
    std::fill_n(file, program->temporaries, Splat(0.0f));
    for (int g = 0; g < groups; ++g) {
        active[g] = condition[g] = loopAlive[g] = callAlive[g] = running[g] = AllLanes();
        executed[g] = SplatInt(0);
    }
    blockCount = loopCount = callCount = 0;
    for (next = 0; next < operations.size();) {
        const Operation& operation = operations[next++];
        operation.run(operation, *this);
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

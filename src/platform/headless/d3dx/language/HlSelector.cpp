// Sources: direct ones where the version allows them, else copies.

#include "platform/headless/d3dx/language/HlSelector.h"

#include <algorithm>
#include <bit>

namespace headless::hl {

namespace {

/// The turned and spread orders that ps 2.0 knows.
constexpr uint8_t kOrders[][4] = {{0, 1, 2, 3}, {1, 2, 0, 3}, {2, 0, 1, 3}, {3, 2, 1, 0},
                                  {0, 0, 0, 0}, {1, 1, 1, 1}, {2, 2, 2, 2}, {3, 3, 3, 3}};

} // namespace

HlSelector::HlSelector(const HlGraph& source, const HlLiveness& alive,
                       const std::vector<HlBinding>& arguments,
                       const std::vector<HlBinding>& results, HlLiterals& numbers,
                       HlMachineCode& target)
    : graph(source),
      liveness(alive),
      inputs(arguments),
      outputs(results),
      literals(numbers),
      code(target),
      placement(source, alive, results, target)
{}

/// One value as a source, its component at all positions.
HlSource HlSelector::Atom(HlRef ref) const
{
    HlSource source;
    const HlNode& node = graph.Of(ref);
    unsigned component = ref.Lane();
    source.isNegative = ref.IsNegative();
    source.number = node.extra;
    switch (node.op) {
    case HlOp::Input:
        source.kind = HlRegister::Input;
        break;
    case HlOp::Constant:
        source.kind = HlRegister::Uniform;
        break;
    case HlOp::Indexed:
        source.kind = HlRegister::Uniform;
        source.isIndexed = true;
        source.index = node.source[0][0];
        break;
    default: {
        const HlSpot& spot = placement.Of(ref.Node());
        source.kind = spot.kind;
        source.number = spot.number;
        component = spot.component[ref.Lane()];
        break;
    }
    }
    std::fill_n(source.component, 4, static_cast<uint8_t>(component));
    return source;
}

bool HlSelector::IsSame(const HlSource& a, const HlSource& b) const
{
    return a.kind == b.kind && a.number == b.number && a.isNegative == b.isNegative &&
           a.isIndexed == b.isIndexed && (!a.isIndexed || a.index == b.index);
}

/// Fills the components that nobody wants, so that the version has the order. False if it has none.
bool HlSelector::Complete(HlSource& source, unsigned mask, bool isStraight) const
{
    if (!isStraight && (IsFree() || std::popcount(mask) == 1)) {
        unsigned last = source.component[std::countr_zero(mask)];
        for (unsigned i = 0; i < 4; ++i) {
            if ((mask >> i & 1) != 0)
                last = source.component[i];
            source.component[i] = static_cast<uint8_t>(last);
        }
        return true;
    }
    for (const auto& order : kOrders) {
        bool fits = !isStraight || &order == &kOrders[0];
        for (unsigned i = 0; i < 4; ++i)
            fits = fits && ((mask >> i & 1) == 0 || order[i] == source.component[i]);
        if (fits) {
            std::copy_n(order, 4, source.component);
            return true;
        }
    }
    return false;
}

HlSource HlSelector::Numbers(const HlWanted& wanted)
{
    std::array<float, 4> values{};
    bool isNegative = true, isPositive = true;
    for (unsigned i = 0; i < 4; ++i) {
        if ((wanted.mask >> i & 1) == 0)
            continue;
        values[i] = *graph.ValueOf(wanted.refs[i]);
        isNegative = isNegative && (wanted.refs[i].IsNegative() || values[i] == 0.0f);
        isPositive = isPositive && !wanted.refs[i].IsNegative();
    }
    const bool turnsSign = isNegative && !isPositive;
    for (float& value : values)
        value = turnsSign ? -value : value;
    for (float& value : values)
        value = value == 0.0f ? 0.0f : value; // 0 has one sign in a register
    const HlLiterals::Found found = literals.Place(values, wanted.mask);
    HlSource source;
    source.kind = HlRegister::Literal;
    source.number = found.number;
    source.isNegative = turnsSign;
    for (unsigned i = 0; i < 4; ++i)
        source.component[i] = static_cast<uint8_t>(found.components[i]);
    Complete(source, wanted.mask, false);
    return source;
}

/// All wanted values by one source; false if they do not lie so.
bool HlSelector::Direct(const HlWanted& wanted, const Rules& rules, HlSource& sourceOut)
{
    bool isFirst = true, areNumbers = true;
    for (unsigned i = 0; i < 4; ++i)
        areNumbers = areNumbers && ((wanted.mask >> i & 1) == 0 || IsNumber(wanted.refs[i]));
    if (areNumbers) {
        if (rules.isTemporary)
            return false;
        sourceOut = Numbers(wanted);
        return true;
    }
    for (unsigned i = 0; i < 4; ++i) {
        if ((wanted.mask >> i & 1) == 0)
            continue;
        if (IsNumber(wanted.refs[i]))
            return false;
        const HlSource atom = Atom(wanted.refs[i]);
        if (!isFirst && !IsSame(atom, sourceOut))
            return false;
        const uint8_t component = atom.component[0];
        if (isFirst)
            sourceOut = atom;
        sourceOut.component[i] = component;
        isFirst = false;
    }
    const bool isPlain = sourceOut.kind == HlRegister::Virtual ||
                         (sourceOut.kind == HlRegister::Input && graph.Profile().isPixel &&
                          fx::FxSameWord(inputs[sourceOut.number].semantic, "TEXCOORD"));
    if (rules.isTemporary && (!isPlain || sourceOut.isNegative))
        return false;
    const bool isTextured = sourceOut.kind == HlRegister::Virtual &&
                            code.registers[sourceOut.number].floats && rules.isStraight;
    return !isTextured && Complete(sourceOut, wanted.mask, rules.isStraight);
}

HlSource HlSelector::Whole(uint32_t number, unsigned mask) const
{
    HlSource source;
    source.kind = HlRegister::Virtual;
    source.number = number;
    Complete(source, mask, false);
    return source;
}

/// Copies what is wanted to a register: each part that one source gives by one instruction.
void HlSelector::CopyParts(HlRegister kind, uint32_t number, const HlWanted& wanted)
{
    unsigned left = wanted.mask;
    while (left != 0) {
        const auto first = static_cast<unsigned>(std::countr_zero(left));
        const bool isNumber = IsNumber(wanted.refs[first]);
        HlWanted part = wanted;
        part.mask = 0;
        for (unsigned i = first; i < 4; ++i) {
            if ((left >> i & 1) == 0 || IsNumber(wanted.refs[i]) != isNumber)
                continue;
            if (isNumber || IsSame(Atom(wanted.refs[i]), Atom(wanted.refs[first])))
                part.mask |= 1u << i;
        }
        HlSource trial;
        if (!Direct(part, {}, trial))
            part.mask = 1u << first;
        CopyPart(kind, number, part);
        left &= ~part.mask;
    }
}

void HlSelector::CopyPart(HlRegister kind, uint32_t number, const HlWanted& part)
{
    HlInstruction copy;
    copy.opcode = Opcode::Mov;
    copy.kind = kind;
    copy.number = number;
    copy.mask = part.mask;
    copy.sources.emplace_back();
    Direct(part, {}, copy.sources[0]);
    const bool isItself = kind == HlRegister::Virtual && copy.sources[0].kind == kind &&
                          copy.sources[0].number == number && !copy.sources[0].isNegative;
    bool isInPlace = isItself;
    for (unsigned i = 0; i < 4 && isInPlace; ++i)
        isInPlace = (part.mask >> i & 1) == 0 || copy.sources[0].component[i] == i;
    if (!isInPlace)
        Emit(copy);
}

/// The parts that were not made in the group's register go there by copies, once in a block.
HlSource HlSelector::Gathered(const HlWanted& wanted, uint32_t group)
{
    HlWanted rest = wanted;
    for (unsigned i = 0; i < 4; ++i) {
        if ((wanted.mask >> i & 1) == 0 || IsNumber(wanted.refs[i]))
            continue;
        const HlSpot& spot = placement.Of(wanted.refs[i].Node());
        const bool isThere = spot.kind == HlRegister::Virtual && spot.number == group &&
                             !wanted.refs[i].IsNegative() &&
                             spot.component[wanted.refs[i].Lane()] == i;
        if (isThere)
            rest.mask &= ~(1u << i);
    }
    if (copies.try_emplace(wanted.Key(), group).second)
        CopyParts(HlRegister::Virtual, group, rest);
    return Whole(group, wanted.mask);
}

HlSource HlSelector::Source(const HlWanted& wanted, const Rules& rules)
{
    if (const uint32_t* group = placement.GroupOf(wanted))
        return Gathered(wanted, *group);
    HlSource source;
    if (Direct(wanted, rules, source))
        return source;
    const auto [found, isNew] = copies.try_emplace(wanted.Key(), 0);
    if (isNew) {
        const uint32_t made = placement.NewRegister(wanted.mask);
        copies[wanted.Key()] = made;
        CopyParts(HlRegister::Virtual, made, wanted);
        return Whole(made, wanted.mask);
    }
    return Whole(found->second, wanted.mask);
}

/// One value at all positions.
HlSource HlSelector::Spread(HlRef ref)
{
    HlWanted wanted;
    wanted.refs[0] = ref;
    wanted.mask = 1;
    HlSource source;
    Direct(wanted, {}, source);
    std::fill_n(source.component, 4, source.component[0]);
    return source;
}

// ---- Limits of an instruction

void HlSelector::ToTemporary(HlSource& source, unsigned mask)
{
    HlInstruction copy;
    copy.opcode = Opcode::Mov;
    copy.kind = HlRegister::Virtual;
    copy.mask = mask;
    copy.number = placement.NewRegister(mask);
    copy.sources.push_back(source);
    copy.sources[0].isNegative = false;
    for (unsigned i = 0; i < 4; ++i)
        copy.sources[0].component[i] = static_cast<uint8_t>(i);
    HlSource moved = source;
    moved.kind = HlRegister::Virtual;
    moved.number = copy.number;
    moved.isIndexed = false;
    Emit(copy);
    source = moved;
}

/// How many constants and inputs one instruction reads.
void HlSelector::KeepPorts(HlInstruction& instruction)
{
    const HlProfile& profile = graph.Profile();
    const size_t mostConstants = profile.isPixel ? 2 : 1;
    std::vector<HlSource> constants, interpolated;
    for (HlSource& source : instruction.sources) {
        const bool isConstant =
            source.kind == HlRegister::Uniform || source.kind == HlRegister::Literal;
        const bool isInput = source.kind == HlRegister::Input && profile.major < 3;
        if (!isConstant && !isInput)
            continue;
        std::vector<HlSource>& ports = isConstant ? constants : interpolated;
        const bool isKnown = std::any_of(ports.begin(), ports.end(), [&](const HlSource& other) {
            return other.kind == source.kind && other.number == source.number &&
                   other.isIndexed == source.isIndexed;
        });
        if (isKnown)
            continue;
        if (ports.size() < (isConstant ? mostConstants : 1)) {
            ports.push_back(source);
            continue;
        }
        unsigned mask = 0;
        for (const uint8_t component : source.component)
            mask |= 1u << component;
        const HlSource before = source;
        ToTemporary(source, mask);
        for (HlSource& other : instruction.sources) // the same register again
            if (other.kind == before.kind && other.number == before.number &&
                other.isIndexed == before.isIndexed && other.kind != HlRegister::Virtual)
                ToTemporary(other, 15);
    }
}

void HlSelector::LoadIndex(const HlInstruction& instruction)
{
    for (const HlSource& source : instruction.sources) {
        if (!source.isIndexed || source.index == index)
            continue;
        index = source.index;
        HlInstruction load;
        load.opcode = graph.Profile().major == 1 ? Opcode::Mov : Opcode::MovA;
        load.kind = HlRegister::Address;
        load.mask = 1;
        const HlRef wanted = source.index;
        load.sources.push_back(Spread(wanted));
        code.instructions.push_back(load);
    }
}

void HlSelector::Emit(HlInstruction instruction)
{
    if (instruction.opcode != Opcode::SinCos)
        KeepPorts(instruction);
    LoadIndex(instruction);
    code.instructions.push_back(std::move(instruction));
}

} // namespace headless::hl

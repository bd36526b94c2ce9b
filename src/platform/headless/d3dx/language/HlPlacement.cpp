#include "platform/headless/d3dx/language/HlPlacement.h"

#include <algorithm>
#include <bit>

namespace headless::hl {

HlPlacement::HlPlacement(const HlGraph& source, const HlLiveness& alive,
                         const std::vector<HlBinding>& results, HlMachineCode& target)
    : graph(source),
      liveness(alive),
      outputs(results),
      code(target),
      spots(source.Nodes().size())
{
    PlaceOutputs();
    // From the end: what reads a value says where it should be.
    for (auto i = static_cast<uint32_t>(graph.Nodes().size()); i-- > 1;) {
        const HlNode& node = graph.Nodes()[i];
        const bool isPlaced = !HlIsLeaf(node.op) || node.op == HlOp::Variable;
        if (isPlaced && liveness.Lanes(i) != 0 && spots[i].kind == HlRegister::None)
            PlaceAlone(i);
        if (HlIsLeaf(node.op) || (liveness.Lanes(i) == 0 && !HlHasEffect(node.op)) ||
            node.op == HlOp::SetVariable)
            continue;
        for (unsigned s = 0; s < node.sources; ++s)
            Gather(WantedOf(i, s));
    }
}

uint32_t HlPlacement::NewRegister(unsigned mask)
{
    HlVirtual& made = code.registers.emplace_back();
    made.mask = mask;
    return static_cast<uint32_t>(code.registers.size() - 1);
}

const uint32_t* HlPlacement::GroupOf(const HlWanted& wanted) const
{
    const auto found = groups.find(wanted.Key());
    return found == groups.end() ? nullptr : &found->second;
}

/// Steps whose result may go to any components of any register.
bool HlPlacement::CanShare(uint32_t node) const
{
    const HlOp op = graph.Nodes()[node].op;
    const bool isFixed = op == HlOp::Sample || op == HlOp::SinCos || op == HlOp::Nrm ||
                         op == HlOp::Variable ||
                         (op == HlOp::Frc && graph.Profile().version == 0xFFFE0101);
    return !isFixed && spots[node].kind == HlRegister::None && !HlIsLeaf(op);
}

/// Results that nothing else reads are written to the output at once, where the version allows it.
void HlPlacement::PlaceOutputs()
{
    const bool isByCopy = graph.Profile().isPixel && graph.Profile().major < 3;
    for (const HlBinding& output : outputs) {
        HlWanted wanted;
        std::copy_n(output.refs, 4, wanted.refs);
        wanted.mask = output.mask == 1 ? 1 : 15;
        if (isByCopy)
            Gather(wanted);
    }
    for (uint32_t o = 0; o < outputs.size() && !isByCopy; ++o)
        for (unsigned i = 0; i < 4; ++i)
            if ((outputs[o].mask >> i & 1) != 0)
                PlaceInOutput(outputs[o].refs[i].Node(), o);
}

bool HlPlacement::PlaceInOutput(uint32_t node, uint32_t output)
{
    if (!CanShare(node))
        return false;
    const HlBinding& target = outputs[output];
    HlSpot spot = {HlRegister::Output, output};
    unsigned found = 0;
    for (unsigned i = 0; i < 4; ++i) {
        const HlRef ref = target.refs[i];
        if ((target.mask >> i & 1) == 0 || ref.Node() != node)
            continue;
        if (ref.IsNegative() || liveness.Uses(ref) != 1)
            return false;
        spot.component[ref.Lane()] = static_cast<uint8_t>(i);
        found |= 1u << ref.Lane();
    }
    if (found != liveness.Lanes(node))
        return false;
    spots[node] = spot;
    return true;
}

void HlPlacement::PlaceAlone(uint32_t node)
{
    const unsigned lanes = liveness.Lanes(node);
    HlSpot spot = {HlRegister::Virtual, 0};
    const HlOp op = graph.Nodes()[node].op;
    const bool isFixed = op == HlOp::Sample || op == HlOp::SinCos || op == HlOp::Nrm;
    const bool isOne = std::popcount(lanes) == 1;
    const bool isOldFraction = op == HlOp::Frc && graph.Profile().version == 0xFFFE0101;
    const unsigned mask = op == HlOp::Sample  ? 15
                          : op == HlOp::Nrm   ? 7
                          : isOne && !isFixed ? 1
                                              : lanes;
    spot.number = NewRegister(mask);
    if (isOne && !isFixed) {
        std::fill_n(spot.component, 4, uint8_t{0});
        code.registers[spot.number].floats = !isOldFraction;
    }
    spots[node] = spot;
}

HlWanted HlPlacement::WantedOf(uint32_t number, unsigned source) const
{
    const HlNode& node = graph.Nodes()[number];
    HlWanted wanted;
    for (unsigned lane = 0; lane < node.width; ++lane) {
        const bool isLanewise = HlIsLanewise(node.op);
        if (isLanewise && (liveness.Lanes(number) >> lane & 1) == 0)
            continue;
        const unsigned at = isLanewise ? spots[number].component[lane] : lane;
        wanted.refs[at] = node.source[source][lane];
        wanted.mask |= 1u << at;
    }
    return wanted;
}

/// Places a step's result at the positions where it is wanted, if all of it is.
bool HlPlacement::Join(uint32_t node, const HlWanted& wanted, uint32_t group)
{
    if (!CanShare(node))
        return false;
    HlSpot spot = {HlRegister::Virtual, group};
    unsigned found = 0;
    bool isInOrder = true;
    for (unsigned i = 0; i < 4; ++i) {
        const HlRef ref = wanted.refs[i];
        if ((wanted.mask >> i & 1) == 0 || ref.Node() != node)
            continue;
        if (ref.IsNegative() || (found >> ref.Lane() & 1) != 0)
            return false;
        isInOrder = isInOrder && ref.Lane() == i;
        spot.component[ref.Lane()] = static_cast<uint8_t>(i);
        found |= 1u << ref.Lane();
    }
    const bool isFree = graph.Profile().hasFreeSwizzles || isInOrder || std::popcount(found) == 1;
    if (found != liveness.Lanes(node) || !isFree)
        return false;
    spots[node] = spot;
    return true;
}

void HlPlacement::Gather(const HlWanted& wanted)
{
    std::vector<uint32_t> parts;
    for (unsigned i = 0; i < 4; ++i)
        if ((wanted.mask >> i & 1) != 0)
            parts.push_back(wanted.refs[i].Node());
    std::sort(parts.begin(), parts.end());
    parts.erase(std::unique(parts.begin(), parts.end()), parts.end());
    const bool isOne = parts.size() < 2;
    // Copies of one register stay what they are.
    if (isOne ||
        std::none_of(parts.begin(), parts.end(), [&](uint32_t part) { return CanShare(part); }))
        return;
    const uint32_t group = NewRegister(wanted.mask);
    bool isUsed = false;
    for (const uint32_t part : parts)
        isUsed |= Join(part, wanted, group);
    if (isUsed)
        groups.emplace(wanted.Key(), group);
}

} // namespace headless::hl

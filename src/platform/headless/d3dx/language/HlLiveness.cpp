#include "platform/headless/d3dx/language/HlLiveness.h"

#include <algorithm>

namespace headless::hl {

void HlLiveness::MarkRef(HlRef ref)
{
    const unsigned bit = 1u << ref.Lane();
    if ((live[ref.Node()] & bit) != 0)
        return;
    live[ref.Node()] = static_cast<uint8_t>(live[ref.Node()] | bit);
    pending.push_back(ref.Bits() & ~1u);
}

void HlLiveness::Mark()
{
    const std::vector<HlNode>& nodes = graph.Nodes();
    live.assign(nodes.size(), 0);
    settings.assign(nodes.size(), {});
    pending.clear();
    for (const HlBinding& output : outputs)
        for (unsigned i = 0; i < 4; ++i)
            if ((output.mask >> i & 1) != 0)
                MarkRef(output.refs[i]);
    for (uint32_t i = 0; i < nodes.size(); ++i) {
        if (nodes[i].op == HlOp::SetVariable)
            settings[nodes[i].extra].push_back(i);
        else if (HlHasEffect(nodes[i].op))
            for (unsigned lane = 0; lane < nodes[i].width && nodes[i].sources > 0; ++lane)
                MarkRef(nodes[i].source[0][lane]);
    }
    while (!pending.empty()) {
        const uint32_t number = pending.back() >> 3;
        const unsigned lane = pending.back() >> 1 & 3;
        pending.pop_back();
        const HlNode& node = nodes[number];
        for (const uint32_t setting : settings[number])
            MarkRef(nodes[setting].source[0][lane]);
        for (unsigned i = 0; i < node.sources; ++i)
            for (unsigned at = 0; at < node.width; ++at)
                if (!HlIsLanewise(node.op) || at == lane)
                    MarkRef(node.source[i][at]);
    }
}

void HlLiveness::Count()
{
    uses.assign(graph.Nodes().size(), {});
    const auto add = [&](HlRef ref) {
        uint16_t& count = uses[ref.Node()][ref.Lane()];
        count = static_cast<uint16_t>(std::min(count + 1, 60000));
    };
    for (uint32_t i = 0; i < graph.Nodes().size(); ++i)
        if (live[i] != 0 || HlHasEffect(graph.Nodes()[i].op))
            ForSources(i, add);
    for (const HlBinding& output : outputs)
        for (unsigned i = 0; i < 4; ++i)
            if ((output.mask >> i & 1) != 0)
                add(output.refs[i]);
}

void HlLiveness::NumberBlocks()
{
    blocks.clear();
    uint32_t block = 0;
    for (const HlNode& node : graph.Nodes()) {
        block += HlHasEffect(node.op) && node.op != HlOp::Kill ? 1 : 0;
        blocks.push_back(block);
    }
}

/// a * b + c, where nothing else reads the product.
bool HlLiveness::JoinProduct(uint32_t number)
{
    HlNode& sum = graph.Nodes()[number];
    for (unsigned side = 0; side < 2; ++side) {
        bool fits = true;
        for (unsigned lane = 0; lane < sum.lanes && fits; ++lane) {
            if ((live[number] >> lane & 1) == 0)
                continue;
            const HlRef ref = sum.source[side][lane];
            fits = graph.Of(ref).op == HlOp::Mul && Uses(ref) == 1 &&
                   blocks[ref.Node()] == blocks[number];
        }
        if (!fits)
            continue;
        HlNode joined = sum;
        joined.op = HlOp::Mad;
        joined.sources = 3;
        for (unsigned lane = 0; lane < sum.lanes; ++lane) {
            const HlRef ref = sum.source[side][lane];
            joined.source[2][lane] = sum.source[1 - side][lane];
            if ((live[number] >> lane & 1) == 0)
                continue;
            const HlNode& product = graph.Of(ref);
            const HlRef first = product.source[0][ref.Lane()];
            joined.source[0][lane] = ref.IsNegative() ? first.Negated() : first;
            joined.source[1][lane] = product.source[1][ref.Lane()];
        }
        sum = joined;
        return true;
    }
    return false;
}

/// A clamp to 0 and 1 comes with the step before, if that has no other use.
void HlLiveness::JoinClamp(uint32_t number)
{
    HlNode& clamp = graph.Nodes()[number];
    HlRef first;
    bool isFound = false, fits = true;
    for (unsigned lane = 0; lane < clamp.lanes; ++lane) {
        if ((live[number] >> lane & 1) == 0)
            continue;
        const HlRef ref = clamp.source[0][lane];
        first = isFound ? first : ref;
        isFound = true;
        fits = fits && ref.Node() == first.Node() && !ref.IsNegative() && Uses(ref) == 1;
    }
    const HlNode before = graph.Of(first);
    const bool canClamp = !HlIsLeaf(before.op) && before.op != HlOp::Sample &&
                          before.op != HlOp::SinCos && before.op != HlOp::Nrm &&
                          blocks[first.Node()] == blocks[number];
    if (!isFound || !fits || !canClamp || (!HlIsLanewise(before.op) && clamp.lanes > 1))
        return;
    HlNode joined = before;
    joined.saturates = true;
    joined.lanes = clamp.lanes;
    joined.width = HlIsLanewise(before.op) ? clamp.lanes : before.width;
    for (unsigned lane = 0; lane < clamp.lanes && HlIsLanewise(before.op); ++lane)
        for (unsigned i = 0; i < before.sources; ++i)
            if ((live[number] >> lane & 1) != 0)
                joined.source[i][lane] = before.source[i][clamp.source[0][lane].Lane()];
    clamp = joined;
}

void HlLiveness::Run()
{
    NumberBlocks();
    Mark();
    Count();
    for (uint32_t i = 0; i < graph.Nodes().size(); ++i)
        if (live[i] != 0 && graph.Nodes()[i].op == HlOp::Add)
            JoinProduct(i);
    Mark();
    Count();
    for (uint32_t i = 0; i < graph.Nodes().size(); ++i)
        if (live[i] != 0 && graph.Nodes()[i].op == HlOp::Saturate)
            JoinClamp(i);
    Mark();
    Count();
}

} // namespace headless::hl

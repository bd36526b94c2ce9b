#pragma once

#include <array>
#include <vector>

#include "platform/headless/d3dx/language/HlRunner.h"

namespace headless::hl {

/// Which lanes of a program's steps count, and how often each is read.
class HlLiveness {
public:
    HlLiveness(HlGraph& target, const std::vector<HlBinding>& results)
        : graph(target),
          outputs(results)
    {}

    /// Finds the lanes in use, joins products with sums and clamps with what they clamp, and finds them
    /// again.
    void Run();

    unsigned Lanes(uint32_t node) const { return live[node]; }
    unsigned Uses(HlRef ref) const { return uses[ref.Node()][ref.Lane()]; }

    /// What a step of a program reads, source by source: the lanes that count.
    template <typename Visit>
    void ForSources(uint32_t number, const Visit& visit) const
    {
        const HlNode& node = graph.Nodes()[number];
        for (unsigned i = 0; i < node.sources; ++i)
            for (unsigned lane = 0; lane < node.width; ++lane) {
                const bool counts = HlIsLanewise(node.op) ? (live[number] >> lane & 1) != 0
                                    : node.op == HlOp::SetVariable
                                        ? (live[node.extra] >> lane & 1) != 0
                                        : true;
                if (counts)
                    visit(node.source[i][lane]);
            }
    }

private:
    void Mark();
    void MarkRef(HlRef ref);
    void Count();
    void NumberBlocks();
    bool JoinProduct(uint32_t number);
    void JoinClamp(uint32_t number);

    HlGraph& graph;
    const std::vector<HlBinding>& outputs;
    std::vector<uint8_t> live;
    std::vector<std::array<uint16_t, 4>> uses;
    std::vector<uint32_t> blocks; ///< steps of one number have no jump or change between them
    std::vector<uint32_t> pending;
    std::vector<std::vector<uint32_t>> settings; ///< of each variable
};

} // namespace headless::hl

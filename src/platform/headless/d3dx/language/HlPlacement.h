#pragma once

#include <array>
#include <map>
#include <vector>

#include "platform/headless/d3dx/language/HlLiveness.h"
#include "platform/headless/d3dx/language/HlMachineCode.h"

namespace headless::hl {

/// Where the lanes of a step are.
struct HlSpot {
    HlRegister kind = HlRegister::None; ///< Virtual or Output; None for leaves and dead steps
    uint32_t number = 0;
    uint8_t component[4] = {0, 1, 2, 3}; ///< of each lane
};

/// Values wanted at positions of one register. Those without a bit in `mask` are not.
struct HlWanted {
    HlRef refs[4];
    unsigned mask = 0;

    std::array<uint32_t, 5> Key() const
    {
        std::array<uint32_t, 5> key = {mask};
        for (unsigned i = 0; i < 4; ++i)
            key[i + 1] = (mask >> i & 1) != 0 ? refs[i].Bits() : 0;
        return key;
    }
};

/// Chooses registers and components for all values, so that what is read together lies together.
class HlPlacement {
public:
    HlPlacement(const HlGraph& source, const HlLiveness& alive,
                const std::vector<HlBinding>& results, HlMachineCode& target);

    const HlSpot& Of(uint32_t node) const { return spots[node]; }
    /// The register in which wanted values are gathered; null if it is none.
    const uint32_t* GroupOf(const HlWanted& wanted) const;
    uint32_t NewRegister(unsigned mask);
    /// What a source of a placed step needs, at the components of the result.
    HlWanted WantedOf(uint32_t node, unsigned source) const;

private:
    bool IsStep(HlRef ref) const { return !HlIsLeaf(graph.Of(ref).op); }
    bool CanShare(uint32_t node) const;
    void PlaceOutputs();
    bool PlaceInOutput(uint32_t node, uint32_t output);
    void PlaceAlone(uint32_t node);
    void Gather(const HlWanted& wanted);
    bool Join(uint32_t node, const HlWanted& wanted, uint32_t group);

    const HlGraph& graph;
    const HlLiveness& liveness;
    const std::vector<HlBinding>& outputs;
    HlMachineCode& code;
    std::vector<HlSpot> spots;
    std::map<std::array<uint32_t, 5>, uint32_t> groups; ///< by what they hold
};

} // namespace headless::hl

#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/headless/d3dx/language/HlGraph.h"
#include "platform/headless/d3dx/language/HlSyntax.h"

namespace headless::hl {

/// A parameter of the effect that a program reads. Registers are counted through all uniforms until the
/// program is complete; then `HlConstants::Assign` gives those in use their places.
struct HlUniform {
    const HlVariable* variable = nullptr;
    uint32_t first = 0; ///< registers, or samplers
    uint32_t count = 0;
    uint32_t used = 0; ///< of them, from the first on
    uint32_t place = kHlNoRegister;
    bool isSampler = false;
    bool countsRounds = false; ///< also goes to a whole constant
    uint32_t wholePlace = kHlNoRegister;
};

struct HlUsedSampler {
    shader::SamplerKind kind = shader::SamplerKind::Unknown;
    uint32_t place = kHlNoRegister;
};

class HlConstants {
public:
    explicit HlConstants(HlGraph& target) : graph(target) {}

    /// The registers of a parameter as lanes, cell by cell.
    HlRefs Read(const HlVariable& variable);
    HlUniform* FindByRegister(uint32_t number);
    const HlUniform* Find(const HlVariable& variable) const;
    /// Tells which kind of texture a sampler reads; false if it was used for another kind.
    bool UseSampler(uint32_t number, shader::SamplerKind kind);
    /// Gives places to all that live steps read. `isReadRegister` tells which registers those are. Gives
    /// what does not fit, or "".
    std::string Assign(const std::vector<bool>& isReadRegister, uint32_t floatCount,
                       uint32_t samplerCount);
    /// After `Assign`.
    uint32_t PlaceOf(uint32_t number) const;
    uint32_t SamplerPlaceOf(uint32_t number) const { return samplers[number].place; }
    const std::vector<HlUsedSampler>& Samplers() const { return samplers; }
    const std::vector<HlUniform>& Uniforms() const { return uniforms; }
    uint32_t RegisterCount() const { return registers; }
    /// Registers that no parameter has.
    std::vector<bool>& Taken() { return taken; }

    static uint32_t RegistersOf(const HlType& type);

private:
    void Lay(const HlType& type, uint32_t& number, HlRefs& refs);
    bool Place(HlUniform& uniform, uint32_t limit);

    HlGraph& graph;
    std::vector<HlUniform> uniforms;
    std::map<const HlVariable*, size_t> byVariable;
    std::vector<HlUsedSampler> samplers;
    std::vector<bool> taken;
    std::vector<uint32_t> places; ///< of all registers, once assigned
    uint32_t registers = 0;
};

} // namespace headless::hl

#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/d3dx/effect/FxModel.h"
#include "platform/headless/d3dx/effect/FxProgramWriter.h"

namespace headless::fx {

/// Writes a model as a compiled effect (fx_2_0) that the system's D3DX loads, too.
class FxCompiledWriter {
public:
    explicit FxCompiledWriter(const FxModel& source);

    /// False with the reason, and the name of the technique, if a part of the effect has no compiled form.
    bool Write(std::string& bytesOut, std::string& reasonOut);

private:
    using Words = std::vector<uint32_t>;
    /// Whose value a resource is.
    struct Owner {
        uint32_t technique = 0, index = 0, element = 0;
    };

    bool Fail(const std::string& what);
    uint32_t Put(const Words& words);
    uint32_t Text(const std::string& text);
    Words TypeWords(const FxParameter& parameter);
    bool ValueWords(const FxParameter& parameter, uint32_t number, Words& valueOut);
    bool SamplerWords(const FxParameter& sampler, uint32_t number, uint32_t element,
                      Words& valueOut);
    uint32_t Object(const FxParameter& parameter);

    bool Parameter(const FxParameter& parameter, uint32_t number);
    bool Annotations(const std::vector<std::unique_ptr<FxParameter>>& list, Words& target);
    bool Technique(const FxTechnique& technique, uint32_t number);
    bool Pass(const FxPass& pass, uint32_t technique, uint32_t number);
    bool State(const FxAssignment& assignment, const Owner& owner, uint32_t number, Words& target);
    Words ConstantWords(const FxAssignment& assignment);
    bool Resource(const FxAssignment& assignment, const Owner& owner, uint32_t number);
    bool ObjectResource(const FxAssignment& assignment, uint32_t& usageOut, std::string& bytesOut);
    bool NumberResource(const FxAssignment& assignment, uint32_t& usageOut, std::string& bytesOut);
    bool IsConstant(const FxExpression& value) const;

    const FxModel& model;
    FxVisibleParameters visible;
    std::map<const FxParameter*, std::string> names; ///< as callers write them
    Words pool = {0};                                ///< starts with the empty name
    Words parameters, techniques, strings, resources;
    uint32_t parameterCount = 0, stringCount = 0, resourceCount = 0;
    uint32_t objectCount = 1; ///< the number 0 is none
    std::string reason;
};

} // namespace headless::fx

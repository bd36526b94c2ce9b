#include "platform/headless/d3dx/effect/FxTouchedStates.h"

#include <algorithm>

#include "platform/headless/d3dx/effect/FxShader.h"

namespace headless::fx {

namespace {

void AddKeys(const FxParameter& sampler, UINT index, std::vector<FxStateKey>& keysOut)
{
    keysOut.push_back({FxStateKind::Texture, index, 0});
    for (const FxAssignment& assignment : sampler.samplerStates)
        if (assignment.state->kind == FxStateKind::Sampler)
            keysOut.push_back({FxStateKind::Sampler, index, assignment.state->number});
}

/// The samplers of the shaders that an assignment can choose.
void AddShaderKeys(const FxAssignment& assignment, std::vector<FxStateKey>& keysOut)
{
    const UINT first =
        assignment.state->kind == FxStateKind::VertexShader ? D3DVERTEXTEXTURESAMPLER0 : 0;
    const auto add = [&](const FxShader* shader) {
        for (size_t i = 0; shader && i < shader->inputs.samplers.size(); ++i)
            AddKeys(*shader->inputs.samplers[i].sampler, first + shader->inputs.samplers[i].index,
                    keysOut);
    };
    add(assignment.shader.get());
    if (!assignment.object.parameter)
        return;
    add(assignment.object.parameter->shader.get());
    for (const auto& part : assignment.object.parameter->parts)
        add(part->shader.get());
}

/// Records are saved as a whole.
void AddKeys(const FxAssignment& assignment, std::vector<FxStateKey>& keysOut)
{
    const FxState& state = *assignment.state;
    const FxParameter* object = assignment.object.parameter;
    switch (state.kind) {
    case FxStateKind::Transform:
        keysOut.push_back({state.kind, 0, state.number + assignment.index});
        break;
    case FxStateKind::Material:
    case FxStateKind::Light:
        keysOut.push_back({state.kind, assignment.index, 0});
        break;
    case FxStateKind::SamplerObject:
        keysOut.push_back({FxStateKind::Texture, assignment.index, 0});
        if (object)
            AddKeys(*object, assignment.index, keysOut);
        for (size_t i = 0; object && i < object->parts.size(); ++i)
            AddKeys(*object->parts[i], assignment.index, keysOut);
        break;
    case FxStateKind::ShaderConstant:
        break;
    case FxStateKind::VertexShader:
    case FxStateKind::PixelShader:
        keysOut.push_back({state.kind, assignment.index, state.number});
        AddShaderKeys(assignment, keysOut);
        break;
    default:
        keysOut.push_back({state.kind, assignment.index, state.number});
        break;
    }
}

} // namespace

bool FxListTouchedStates(FxTechnique& technique, size_t& leftInOut)
{
    std::vector<FxStateKey>& keys = technique.touched;
    size_t looked = 0;
    const auto unite = [&keys] {
        std::sort(keys.begin(), keys.end());
        keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    };
    for (const auto& pass : technique.passes) {
        for (const FxAssignment& assignment : pass->states) {
            const size_t before = keys.size();
            AddKeys(assignment, keys);
            looked += keys.size() - before;
            if (looked > leftInOut)
                return false;
        }
        unite();
    }
    leftInOut -= looked;
    return true;
}

} // namespace headless::fx

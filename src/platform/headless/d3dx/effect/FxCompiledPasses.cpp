// Techniques, passes and states.

#include <algorithm>
#include <utility>

#include "platform/headless/d3dx/effect/FxCompiledReader.h"
#include "platform/headless/d3dx/effect/FxCompiledStates.h"
#include "platform/headless/d3dx/effect/FxShader.h"
#include "platform/headless/d3dx/effect/FxTouchedStates.h"

namespace headless::fx {

namespace {

/// What stands for a state that this host lacks: the places of the others must not move.
constexpr FxState kMissingState = {"", FxStateKind::Missing, 0, FxStateValue::Number, nullptr, 1};

bool IsShaderState(FxStateKind kind)
{
    return kind == FxStateKind::VertexShader || kind == FxStateKind::PixelShader;
}

} // namespace

bool FxCompiledReader::Techniques(uint32_t count)
{
    for (uint32_t i = 0; i < count; ++i)
        if (!Count(1) ||
            !Technique(*model.techniques.emplace_back(std::make_unique<FxTechnique>())))
            return false;
    return true;
}

bool FxCompiledReader::Technique(FxTechnique& technique)
{
    uint32_t name = 0, annotations = 0, passes = 0;
    if (!body.NextOf(name, annotations, passes))
        return DamagedEnd();
    if (!Name(name, technique.name) || !Annotations(annotations, technique.annotations))
        return false;
    for (uint32_t i = 0; i < passes; ++i)
        if (!Count(1) || !Pass(*technique.passes.emplace_back(std::make_unique<FxPass>())))
            return false;
    return true;
}

bool FxCompiledReader::Pass(FxPass& pass)
{
    uint32_t name = 0, annotations = 0, states = 0;
    if (!body.NextOf(name, annotations, states))
        return DamagedEnd();
    if (!Name(name, pass.name) || !Annotations(annotations, pass.annotations))
        return false;
    pass.place = diagnostics.PlaceText(place);
    for (uint32_t i = 0; i < states; ++i)
        if (!State(body, &pass, pass.states))
            return false;
    return true;
}

/// `pass` is null for the state of a sampler.
bool FxCompiledReader::State(FxCompiledWords& words, FxPass* pass,
                             std::vector<FxAssignment>& statesOut)
{
    uint32_t operation = 0, index = 0, type = 0, value = 0;
    if (!words.NextOf(operation, index, type, value))
        return DamagedEnd();
    if (!Count(1))
        return false;
    const FxState* state = FxFindOperation(operation);
    const bool isOfSampler =
        state && (state->kind == FxStateKind::Sampler || state->kind == FxStateKind::Texture);
    const bool fits = state && index < state->places && (pass || isOfSampler);
    FxAssignment& assignment = statesOut.emplace_back();
    assignment.state = fits ? state : &kMissingState;
    assignment.index = fits ? index : 0;
    assignment.isConverted = true;
    if (!fits && pass && pass->lack.empty())
        pass->lack = pass->place + ": this host does not have the state '" +
                     (state ? std::string(state->name) + "[" + std::to_string(index) + "]"
                            : std::to_string(operation)) +
                     "'";
    return StateValue(type, value, assignment);
}

/// A number is the value unless a resource brings another; objects come as resources.
bool FxCompiledReader::StateValue(uint32_t type, uint32_t value, FxAssignment& assignment)
{
    const bool isObject = assignment.state->value == FxStateValue::Object;
    isStateValue = true;
    const std::unique_ptr<FxParameter> constant = Make(type, value);
    isStateValue = false;
    if (!constant)
        return false;
    const bool isNumber = constant->IsNumeric() && !constant->IsArray();
    if (assignment.state->kind == FxStateKind::Missing || (isObject && !constant->IsNumeric()))
        return true;
    if (isObject || !isNumber)
        return DamagedType();
    FxNumber number;
    number.shape = constant->Shape();
    std::copy_n(constant->Cells(), number.shape.Count(), number.cells.begin());
    assignment.value.AddLiteral(number);
    return true;
}

// ---- When everything is read

/// A shader by a parameter, by an array of them or in place: its version, and why it cannot be used.
void FxCompiledReader::SettleShader(const FxAssignment& assignment, FxPass& pass)
{
    DWORD version = 0;
    const auto settle = [&](const FxShader* shader) {
        if (!shader)
            return;
        version = std::max(version, shader->words.empty() ? DWORD{1} : shader->words[0]);
        if (!shader->fault.empty() && pass.lack.empty())
            pass.lack = pass.place + ": " + shader->fault;
    };
    settle(assignment.shader.get());
    if (const FxParameter* parameter = assignment.object.parameter) {
        settle(parameter->shader.get());
        for (const auto& element : parameter->parts)
            settle(element->shader.get());
    }
    const bool isVertex = assignment.state->kind == FxStateKind::VertexShader;
    (isVertex ? pass.vertexFunction : pass.pixelFunction)[0] = version;
    (isVertex ? pass.vertexShader : pass.pixelShader) = assignment.shader;
}

bool FxCompiledReader::Finish()
{
    for (const auto& technique : model.techniques) {
        for (const auto& pass : technique->passes) {
            for (const FxAssignment& assignment : pass->states)
                if (IsShaderState(assignment.state->kind))
                    SettleShader(assignment, *pass);
        }
        if (!FxListTouchedStates(*technique, touchedLeft))
            return diagnostics.Fail(place, FxError::Limit, "the effect sets too many states");
    }
    return true;
}

} // namespace headless::fx

// Techniques, passes and their state assignments.

#include <algorithm>
#include <utility>

#include "platform/headless/d3dx/effect/FxLimits.h"
#include "platform/headless/d3dx/effect/FxParser.h"
#include "platform/headless/d3dx/effect/FxShader.h"
#include "platform/headless/d3dx/effect/FxTouchedStates.h"

namespace headless::fx {

namespace {

constexpr const char* kNoShaders = "this host has no shader fragments";

/// The shape of a list in braces for a state.
FxShape ListShape(const FxState& state)
{
    switch (state.value) {
    case FxStateValue::Matrix:
        return {D3DXPT_FLOAT, 4, 4};
    case FxStateValue::Color:
        return {D3DXPT_FLOAT, 1, 4};
    case FxStateValue::Floats:
        return {D3DXPT_FLOAT, 1, state.floats};
    case FxStateValue::Float:
        return {D3DXPT_FLOAT, 1, 1};
    default:
        return {D3DXPT_INT, 1, 1};
    }
}

} // namespace

bool FxParser::Technique()
{
    auto technique = std::make_unique<FxTechnique>();
    if (words.Peek().kind == FxTokenKind::Identifier)
        technique->name = words.Next().text;
    if (words.Is("<") && !Annotations(technique->annotations))
        return false;
    if (!words.Expect("{"))
        return false;
    while (!words.Accept("}"))
        if (!Pass(*technique))
            return false;
    if (!FxListTouchedStates(*technique, touchedLeft))
        return words.Fail(FxError::Limit, "the effect sets too many states");
    model.techniques.push_back(std::move(technique));
    return true;
}

bool FxParser::Pass(FxTechnique& technique)
{
    const FxPlace place = words.Peek().place;
    if (!words.AcceptWord("pass"))
        return words.Unexpected("a pass or '}'");
    if (++sizes.nodes > kFxMaxNodes)
        return words.Fail(FxError::Limit, "the effect has too many passes");
    FxPass& pass = *technique.passes.emplace_back(std::make_unique<FxPass>());
    pass.place = diagnostics.PlaceText(place);
    if (words.Peek().kind == FxTokenKind::Identifier)
        pass.name = words.Next().text;
    if (words.Is("<") && !Annotations(pass.annotations))
        return false;
    if (!words.Expect("{"))
        return false;
    while (!words.Accept("}"))
        if (!PassState(pass))
            return false;
    PairShaders(pass);
    return true;
}

bool FxParser::PassState(FxPass& pass)
{
    const FxToken name = words.Peek();
    if (name.kind != FxTokenKind::Identifier)
        return words.Unexpected("a state or '}'");
    const FxState* state = FxFindPassState(name.text);
    if (!state && !FxIsUnmodelledState(name.text))
        return words.Fail(FxError::UnknownState, "there is no state " + FxDescribe(name));
    words.Next();
    if (!state || IsUnmodelledPlace(*state) ||
        (state->kind == FxStateKind::ShaderConstant && RegisterShape().rows == 0)) {
        KeepLack(pass, name, "this host does not have the state " + FxDescribe(name));
        return words.SkipStatement();
    }
    if (state->kind == FxStateKind::VertexShader || state->kind == FxStateKind::PixelShader)
        return PassShader(*state, pass);
    const FxToken* const unmodelled = words.FindInValue([this](const FxToken& word) {
        return word.kind == FxTokenKind::Identifier && model.names.unmodelled.contains(word.text);
    });
    if (unmodelled) {
        KeepLack(pass, *unmodelled,
                 "this host does not have the type of " + FxDescribe(*unmodelled));
        return words.SkipStatement();
    }
    if (IsInlineSampler(*state))
        return InlineSampler(*state, pass);
    FxAssignment assignment;
    if (!Assignment(*state, assignment))
        return false;
    pass.states.push_back(std::move(assignment));
    return true;
}

bool FxParser::IsInlineSampler(const FxState& state) const
{
    if (state.kind != FxStateKind::SamplerObject)
        return false;
    size_t ahead = 0;
    while (words.Peek(ahead).kind != FxTokenKind::End && !words.Peek(ahead).Is("=") &&
           !words.Peek(ahead).Is(";"))
        ++ahead;
    return words.Peek(ahead + 1).IsWord("sampler_state");
}

/// A sampler without a name: its states are those of the pass.
bool FxParser::InlineSampler(const FxState& state, FxPass& pass)
{
    UINT index = 0;
    FxParameter sampler;
    if (!StateIndex(state, index) || !words.Expect("=") || !Sampler(sampler))
        return false;
    for (FxAssignment& assignment : sampler.samplerStates) {
        assignment.index = index;
        pass.states.push_back(std::move(assignment));
    }
    return words.Expect(";");
}

/// Keeps only the first reason why the pass cannot be drawn here.
void FxParser::KeepLack(FxPass& pass, const FxToken& word, const std::string& what) const
{
    if (pass.lack.empty())
        pass.lack = diagnostics.PlaceText(word.place) + ": " + what;
}

/// A light beyond those supported in effects, or a sampler of the vertex stages.
bool FxParser::IsUnmodelledPlace(const FxState& state) const
{
    FxNumber number;
    if (!words.Is("[") || words.Peek(1).kind != FxTokenKind::Number || !words.Peek(2).Is("]") ||
        !FxParseNumber(words.Peek(1).text, number))
        return false;
    const int32_t index = number.Int(0);
    if (state.kind == FxStateKind::Light || state.kind == FxStateKind::LightEnable)
        return index >= static_cast<int32_t>(state.places);
    const bool isSampler = state.kind == FxStateKind::Sampler ||
                           state.kind == FxStateKind::SamplerObject ||
                           state.kind == FxStateKind::Texture;
    return isSampler && index >= D3DDMAPSAMPLER && index <= D3DVERTEXTEXTURESAMPLER3;
}

/// A shader by parameter: its version, and why it cannot be used.
DWORD FxParser::ParameterShader(const FxParameter& shader, const FxToken& value, FxPass& pass) const
{
    DWORD version = shader.shaderVersion;
    KeepShaderLack(pass, value, shader.shaderVersion, shader.shader.get());
    for (const auto& element : shader.parts) {
        version = std::max(version, element->shaderVersion);
        KeepShaderLack(pass, value, element->shaderVersion, element->shader.get());
    }
    return version;
}

/// A shader that has a version but was not assembled, or not without a fault.
void FxParser::KeepShaderLack(FxPass& pass, const FxToken& value, DWORD version,
                              const FxShader* shader) const
{
    if (version == 0)
        return;
    if (!shader)
        KeepLack(pass, value, kNoShaders);
    else if (!shader->fault.empty() && pass.lack.empty())
        pass.lack = diagnostics.PlaceText(shader->place.line ? shader->place : value.place) + ": " +
                    shader->fault;
}

bool FxParser::PassShader(const FxState& state, FxPass& pass)
{
    const bool isVertex = state.kind == FxStateKind::VertexShader;
    DWORD version = 0;
    FxAssignment assignment;
    assignment.state = &state;
    if (!words.Expect("="))
        return false;
    const FxToken value = words.Peek();
    if (model.names.unmodelled.contains(words.Peek(words.Is("<") || words.Is("(") ? 1 : 0).text)) {
        KeepLack(pass, value, kNoShaders);
        return words.SkipStatement();
    }
    const bool isParameter =
        words.Is("<") || words.Is("(") || model.names.parameters.contains(words.Peek().text);
    if (isParameter) {
        if (!ObjectValue(state, assignment))
            return false;
        version = ParameterShader(*assignment.object.parameter, value, pass);
    } else {
        if (!Shader(isVertex, version, assignment.shader))
            return false;
        KeepShaderLack(pass, value, version, assignment.shader.get());
        (isVertex ? pass.vertexShader : pass.pixelShader) = assignment.shader;
    }
    (isVertex ? pass.vertexFunction : pass.pixelFunction)[0] = version;
    pass.states.push_back(std::move(assignment));
    return words.Expect(";");
}

// ---- One assignment

bool FxParser::StateIndex(const FxState& state, UINT& indexOut)
{
    indexOut = 0;
    if (!words.Accept("["))
        return true;
    const FxPlace place = words.Peek().place;
    int32_t index = 0;
    expressions.SetStateWords(nullptr);
    if (!expressions.ReadConstant(index) || !words.Expect("]"))
        return false;
    if (index < 0 || static_cast<UINT>(index) >= state.places)
        return words.FailAt(place, FxError::BadIndex,
                            "the state '" + std::string(state.name) + "' has no place " +
                                std::to_string(index));
    indexOut = static_cast<UINT>(index);
    return true;
}

/// From after the state's name to after the semicolon.
bool FxParser::Assignment(const FxState& state, FxAssignment& assignmentOut)
{
    assignmentOut.state = &state;
    if (!StateIndex(state, assignmentOut.index) || !words.Expect("="))
        return false;
    const bool isRead = state.value == FxStateValue::Object ? ObjectValue(state, assignmentOut)
                                                            : StateValue(state, assignmentOut);
    return isRead && words.Expect(";");
}

/// The shape of a list for shader constants: up to four numbers, or rows of four. No rows for a list
/// of another length.
FxShape FxParser::RegisterShape() const
{
    size_t ahead = 0;
    while (!words.Peek(ahead).Is("{")) {
        if (words.Peek(ahead).Is(";") || words.Peek(ahead).kind == FxTokenKind::End)
            return {D3DXPT_FLOAT, 1, 4}; // no list
        ++ahead;
    }
    UINT count = 1;
    for (++ahead; words.Peek(ahead).kind != FxTokenKind::End && !words.Peek(ahead).Is(";"); ++ahead)
        count += words.Peek(ahead).Is(",") && !words.Peek(ahead + 1).Is("}") ? 1 : 0;
    if (count <= 4)
        return {D3DXPT_FLOAT, 1, count};
    return {D3DXPT_FLOAT, count % 4 == 0 && count <= 16 ? count / 4 : 0, 4};
}

bool FxParser::StateValue(const FxState& state, FxAssignment& assignmentOut)
{
    const bool inAngles = words.Accept("<");
    const FxPlace place = words.Peek().place;
    expressions.SetStateWords(state.words);
    expressions.SetInAngles(inAngles);
    const bool isRead = words.Is("{") ? expressions.ReadList(state.value == FxStateValue::Registers
                                                                 ? RegisterShape()
                                                                 : ListShape(state),
                                                             assignmentOut.value)
                                      : expressions.Read(assignmentOut.value);
    expressions.SetStateWords(nullptr);
    expressions.SetInAngles(false);
    if (!isRead || !CheckValue(state, place, assignmentOut.value))
        return false;
    return !inAngles || words.AcceptClosingAngle() || words.Unexpected("'>'");
}

bool FxParser::CheckValue(const FxState& state, FxPlace place, FxExpression& value)
{
    const FxShape shape = value.Shape();
    const auto fail = [&](const std::string& wanted) {
        return words.FailAt(place, FxError::TypeMismatch,
                            "the state '" + std::string(state.name) + "' takes " + wanted);
    };
    switch (state.value) {
    case FxStateValue::Registers:
        return shape.columns <= 4 || fail("numbers, vectors or a matrix");
    case FxStateValue::Matrix:
        return (shape.rows == 4 && shape.columns == 4) || fail("a matrix of 4 by 4");
    case FxStateValue::Floats:
        return FxAddConversion(value, {D3DXPT_FLOAT, 1, state.floats}) ||
               fail(std::to_string(state.floats) + " numbers");
    case FxStateValue::Color:
        return shape.IsScalar() || (shape.rows == 1 && shape.columns >= 3) ||
               fail("a colour: a packed number, or 3 or 4 floats");
    default:
        return shape.IsScalar() || fail("one number");
    }
}

/// `NULL`, or a parameter: bare, in parentheses or in angle brackets.
bool FxParser::ObjectValue(const FxState& state, FxAssignment& assignmentOut)
{
    if (IsNull()) {
        words.Next();
        return true;
    }
    const bool inAngles = words.Accept("<");
    const bool inBrackets = !inAngles && words.Accept("(");
    const FxToken name = words.Peek();
    FxObject& object = assignmentOut.object;
    if (!expressions.ReadParameter(object.parameter, object.index))
        return false;
    const FxParameter& parameter = *object.parameter;
    if (!FxFits(state, parameter) || (parameter.IsArray() && object.index.IsEmpty()))
        return words.FailAt(name.place, FxError::TypeMismatch,
                            FxDescribe(name) + " does not fit the state '" +
                                std::string(state.name) + "'");
    if (inAngles)
        return words.AcceptClosingAngle() || words.Unexpected("'>'");
    return !inBrackets || words.Expect(")");
}

} // namespace headless::fx

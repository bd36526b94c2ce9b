// The contents of objects: texts, shaders, and what the values of states are made from.

#include <algorithm>
#include <utility>

#include "platform/headless/d3dx/effect/FxCompiledReader.h"
#include "platform/headless/d3dx/effect/FxProgram.h"
#include "platform/headless/d3dx/effect/FxShader.h"

namespace headless::fx {

namespace {

constexpr uint32_t kNone = 0xFFFFFFFF;

/// What a resource is.
enum class Usage : uint32_t {
    Code = 0,      ///< a shader, or a computation for a number
    Reference = 1, ///< the name of a parameter
    Selector = 2,  ///< the name of an array and a computation for the index
    Computation = 3,
};

std::string_view UpToEnd(std::string_view text)
{
    return text.substr(0, text.find('\0'));
}

} // namespace

bool FxCompiledReader::Strings(uint32_t count)
{
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t number = 0;
        std::string_view content;
        if (!body.Next(number) || !body.TakeBlock(content))
            return DamagedEnd();
        if (number >= objects.size())
            return DamagedOffset();
        if (objects[number] && !String(*objects[number], content))
            return false;
    }
    return true;
}

/// The content of a parameter or annotation; textures have none.
bool FxCompiledReader::String(FxParameter& parameter, std::string_view content)
{
    if (parameter.type == D3DXPT_STRING) {
        parameter.storage->strings[parameter.first] = UpToEnd(content);
        return true;
    }
    if (!parameter.IsShader() || content.empty())
        return true;
    parameter.shader = std::make_shared<FxShader>();
    parameter.shaderVersion = content.size() < 4 ? 0 : FxCompiledWords::WordAt(content, 0);
    return ReadFxShader(content, parameter.type == D3DXPT_VERTEXSHADER, model.names.parameters,
                        rowsLeft, *parameter.shader) ||
           DamagedProgram();
}

bool FxCompiledReader::Resources(uint32_t count)
{
    for (uint32_t i = 0; i < count; ++i)
        if (!Resource())
            return false;
    return true;
}

bool FxCompiledReader::Resource()
{
    uint32_t technique = 0, index = 0, element = 0, state = 0, usage = 0;
    std::string_view content;
    if (!body.NextOf(technique, index, element, state, usage) || !body.TakeBlock(content))
        return DamagedEnd();
    FxAssignment* assignment = ResourceState(technique, index, element, state);
    if (!assignment)
        return DamagedOffset();
    if (assignment->state->kind == FxStateKind::Missing)
        return true;
    switch (static_cast<Usage>(usage)) {
    case Usage::Code:
    case Usage::Computation:
        return Code(content, *assignment);
    case Usage::Reference:
        return Reference(content, *assignment);
    case Usage::Selector:
        return Selector(content, *assignment);
    }
    return DamagedType();
}

/// The state of a sampler parameter, or of an element of an array of them, or that of a pass. Null if there
/// is none.
FxAssignment* FxCompiledReader::ResourceState(uint32_t technique, uint32_t index, uint32_t element,
                                              uint32_t state)
{
    std::vector<FxAssignment>* states = nullptr;
    if (technique == kNone) {
        if (index >= model.parameters.size())
            return nullptr;
        FxParameter* parameter = model.parameters[index].get();
        if (parameter->IsArray()) {
            if (element >= parameter->elements)
                return nullptr;
            parameter = parameter->parts[element].get();
        }
        states = &parameter->samplerStates;
    } else if (technique < model.techniques.size() &&
               index < model.techniques[technique]->passes.size()) {
        states = &model.techniques[technique]->passes[index]->states;
    }
    return states && state < states->size() ? &(*states)[state] : nullptr;
}

bool FxCompiledReader::Code(std::string_view content, FxAssignment& assignment)
{
    const FxStateKind kind = assignment.state->kind;
    if (kind == FxStateKind::VertexShader || kind == FxStateKind::PixelShader) {
        if (content.empty())
            return true;
        assignment.shader = std::make_shared<FxShader>();
        return ReadFxShader(content, kind == FxStateKind::VertexShader, model.names.parameters,
                            rowsLeft, *assignment.shader) ||
               DamagedProgram();
    }
    if (assignment.state->value == FxStateValue::Object)
        return DamagedType();
    const FxShape shape = assignment.value.Shape();
    assignment.value.Clear();
    return Program(content, shape, assignment.value);
}

bool FxCompiledReader::Program(std::string_view content, const FxShape& shape, FxExpression& out)
{
    auto program = std::make_shared<FxProgram>();
    if (!program->Read(FxWordsOf(content), model.names.parameters, rowsLeft))
        return DamagedProgram();
    out.AddProgram(std::move(program), shape);
    return true;
}

/// A parameter or a part of one.
const FxParameter* FxCompiledReader::Named(const std::string& name) const
{
    const size_t end = std::min(name.find_first_of(".[@"), name.size());
    const auto whole = model.names.parameters.find(std::string_view(name).substr(0, end));
    if (whole == model.names.parameters.end() || end == name.size())
        return whole == model.names.parameters.end() ? nullptr : whole->second;
    return FxFindPath({}, whole->second, std::string_view(name).substr(end));
}

/// An object must fit its state; a number has the value that the parameter has, bit by bit.
bool FxCompiledReader::Reference(std::string_view content, FxAssignment& assignment)
{
    const std::string name(UpToEnd(content));
    const FxParameter* found = Named(name);
    if (!found)
        return Damaged("it names the parameter '" + name + "', which it does not have");
    const FxParameter& parameter = *found;
    const FxState& state = *assignment.state;
    if (state.value == FxStateValue::Object) {
        assignment.object.parameter = &parameter;
        return FxFits(state, parameter) || DamagedType();
    }
    if (!parameter.IsNumeric())
        return DamagedType();
    assignment.value.Clear();
    FxStep step = FxStepOf(FxOperation::Parameter, parameter.Shape());
    step.parameter = &parameter;
    assignment.value.Add(step);
    return true;
}

/// The size of the array's name, filled to a whole word, the name, and the computation.
bool FxCompiledReader::Selector(std::string_view content, FxAssignment& assignment)
{
    FxCompiledWords words(content);
    uint32_t size = 0;
    std::string_view name;
    if (!words.Next(size) || size % 4 != 0 || !words.Take(size, name))
        return DamagedProgram();
    if (!Reference(name, assignment))
        return false;
    if (assignment.state->value != FxStateValue::Object || !assignment.object.parameter->IsArray())
        return DamagedType();
    return Program(content.substr(words.Position()), {D3DXPT_INT, 1, 1}, assignment.object.index);
}

} // namespace headless::fx

#include "platform/headless/d3dx/effect/FxCompiledWriter.h"

#include <algorithm>
#include <bit>

#include "platform/headless/d3dx/effect/FxCompiledReader.h"
#include "platform/headless/d3dx/effect/FxCompiledStates.h"
#include "platform/headless/d3dx/effect/FxComputation.h"
#include "platform/headless/d3dx/effect/FxDeviceForm.h"
#include "platform/headless/d3dx/effect/FxPassStates.h"
#include "platform/headless/d3dx/effect/FxShader.h"

namespace headless::fx {

namespace {

constexpr uint32_t kNoElement = 0xFFFFFFFF;
constexpr uint32_t kCode = 0, kReference = 1, kSelector = 2;

using Words = std::vector<uint32_t>;

uint32_t CountOf(size_t size)
{
    return static_cast<uint32_t>(size);
}

void Append(Words& target, const Words& words)
{
    target.insert(target.end(), words.begin(), words.end());
}

/// A length and bytes, filled to a whole word.
void AppendBlock(Words& target, std::string bytes)
{
    target.push_back(CountOf(bytes.size()));
    bytes.resize((bytes.size() + 3) / 4 * 4);
    const std::vector<DWORD> words = FxWordsOf(bytes);
    target.insert(target.end(), words.begin(), words.end());
}

std::string BytesOf(std::span<const uint32_t> words)
{
    std::string bytes;
    bytes.reserve(words.size() * 4);
    for (const uint32_t word : words)
        for (int shift = 0; shift < 32; shift += 8)
            bytes += static_cast<char>(word >> shift & 0xFF);
    return bytes;
}

std::string BytesOfCode(const std::vector<DWORD>& code)
{
    return BytesOf(Words(code.begin(), code.end()));
}

void AddNames(const FxParameter& parameter, const std::string& name,
              std::map<const FxParameter*, std::string>& names)
{
    names.emplace(&parameter, name);
    for (size_t i = 0; i < parameter.parts.size(); ++i) {
        const FxParameter& part = *parameter.parts[i];
        AddNames(part,
                 parameter.IsArray() ? name + '[' + std::to_string(i) + ']'
                                     : name + '.' + part.name,
                 names);
    }
}

bool IsOfNumbers(const FxParameter& parameter)
{
    return parameter.IsNumeric() || parameter.kind == D3DXPC_STRUCT;
}

/// The code of a shader; "" for NULL.
std::string CodeOf(const FxShader* shader)
{
    return shader ? BytesOfCode(shader->words) : "";
}

Words NumberTypeWords(const FxShape& shape)
{
    const bool isVector = shape.rows == 1 && shape.columns > 1;
    const D3DXPARAMETER_CLASS kind = isVector         ? D3DXPC_VECTOR
                                     : shape.rows > 1 ? D3DXPC_MATRIX_ROWS
                                                      : D3DXPC_SCALAR;
    return {CountOf(shape.type),
            CountOf(kind),
            0,
            0,
            0,
            isVector ? shape.columns : shape.rows,
            isVector ? shape.rows : shape.columns};
}

} // namespace

FxCompiledWriter::FxCompiledWriter(const FxModel& source)
    : model(source),
      visible(source.parameters)
{
    for (const auto& parameter : model.parameters)
        AddNames(*parameter, parameter->name, names);
}

bool FxCompiledWriter::Fail(const std::string& what)
{
    reason = what;
    return false;
}

bool FxCompiledWriter::Write(std::string& bytesOut, std::string& reasonOut)
{
    bool isWritten = true;
    for (size_t i = 0; isWritten && i < model.parameters.size(); ++i)
        isWritten = Parameter(*model.parameters[i], CountOf(i));
    // Objects that callers cannot see have a name in compiled form: states refer to them by it.
    for (const auto& constant : model.constants) {
        if (!isWritten || IsOfNumbers(*constant))
            continue;
        AddNames(*constant, constant->name, names);
        isWritten = Parameter(*constant, parameterCount);
    }
    for (size_t i = 0; isWritten && i < model.techniques.size(); ++i)
        isWritten = Technique(*model.techniques[i], CountOf(i));
    if (!isWritten) {
        reasonOut = reason;
        return false;
    }
    Words file = {kFxCompiledTag, CountOf(pool.size() * 4)};
    Append(file, pool);
    Append(file, {parameterCount, CountOf(model.techniques.size()), 0, objectCount});
    Append(file, parameters);
    Append(file, techniques);
    Append(file, {stringCount, resourceCount});
    Append(file, strings);
    Append(file, resources);
    bytesOut = BytesOf(file);
    return true;
}

uint32_t FxCompiledWriter::Put(const Words& words)
{
    const uint32_t offset = CountOf(pool.size() * 4);
    Append(pool, words);
    return offset;
}

uint32_t FxCompiledWriter::Text(const std::string& text)
{
    Words words;
    AppendBlock(words, text + '\0');
    return text.empty() ? 0 : Put(words);
}

// ---- Parameters

/// Members lie behind the struct, elements share a type. A matrix is stored row by row, whatever order its text
/// names: only registers are columns, which the constant table tells.
FxCompiledWriter::Words FxCompiledWriter::TypeWords(const FxParameter& parameter)
{
    const FxParameter& one = parameter.IsArray() ? *parameter.parts[0] : parameter;
    const bool isTurned = parameter.kind == D3DXPC_MATRIX_COLUMNS;
    Words words = {CountOf(one.type), CountOf(isTurned ? D3DXPC_MATRIX_ROWS : parameter.kind),
                   Text(parameter.name), parameter.hasSemantic ? Text(parameter.semantic) : 0,
                   parameter.elements};
    if (parameter.kind == D3DXPC_STRUCT) {
        words.push_back(CountOf(one.parts.size()));
        for (const auto& member : one.parts)
            Append(words, TypeWords(*member));
    } else if (parameter.kind == D3DXPC_VECTOR) {
        Append(words, {parameter.columns, parameter.rows});
    } else if (parameter.IsNumeric()) {
        Append(words, {parameter.rows, parameter.columns});
    }
    return words;
}

/// `number` is that of the whole parameter.
bool FxCompiledWriter::ValueWords(const FxParameter& parameter, uint32_t number, Words& valueOut)
{
    if (parameter.IsNumeric()) {
        valueOut.insert(valueOut.end(), parameter.Cells(),
                        parameter.Cells() + parameter.ValueCount());
        return true;
    }
    if (parameter.IsArray() || parameter.kind == D3DXPC_STRUCT) {
        for (size_t i = 0; i < parameter.parts.size(); ++i) {
            const FxParameter& part = *parameter.parts[i];
            const bool isWritten = part.IsSampler() && parameter.IsArray()
                                       ? SamplerWords(part, number, CountOf(i), valueOut)
                                       : ValueWords(part, number, valueOut);
            if (!isWritten)
                return false;
        }
        return true;
    }
    if (parameter.IsSampler())
        return SamplerWords(parameter, number, kNoElement, valueOut);
    valueOut.push_back(Object(parameter));
    return true;
}

bool FxCompiledWriter::SamplerWords(const FxParameter& sampler, uint32_t number, uint32_t element,
                                    Words& valueOut)
{
    valueOut.push_back(CountOf(sampler.samplerStates.size()));
    for (size_t i = 0; i < sampler.samplerStates.size(); ++i)
        if (!State(sampler.samplerStates[i], {kNoElement, number, element}, CountOf(i), valueOut))
            return false;
    return true;
}

/// The number of a new object with the parameter's contents.
uint32_t FxCompiledWriter::Object(const FxParameter& parameter)
{
    const uint32_t number = objectCount++;
    std::string content;
    if (parameter.type == D3DXPT_STRING)
        content = parameter.storage->strings[parameter.first] + '\0';
    else if (parameter.IsShader())
        content = CodeOf(parameter.shader.get());
    strings.push_back(number);
    AppendBlock(strings, content);
    ++stringCount;
    return number;
}

bool FxCompiledWriter::Annotations(const std::vector<std::unique_ptr<FxParameter>>& list,
                                   Words& target)
{
    for (const auto& annotation : list) {
        Words value;
        if (!ValueWords(*annotation, kNoElement, value))
            return false;
        const uint32_t type = Put(TypeWords(*annotation));
        Append(target, {type, Put(value)});
    }
    return true;
}

bool FxCompiledWriter::Parameter(const FxParameter& parameter, uint32_t number)
{
    Words value;
    const bool isLacking = !parameter.shader || !parameter.shader->fault.empty();
    if (parameter.IsShader() && parameter.shaderVersion != 0 && isLacking)
        return Fail("the parameter '" + parameter.name + "' has a shader that is not assembled");
    if (!ValueWords(parameter, number, value))
        return false;
    const uint32_t type = Put(TypeWords(parameter));
    const uint32_t isShared = (parameter.flags & D3DX_PARAMETER_SHARED) != 0 ? 1 : 0;
    Append(parameters, {type, Put(value), isShared, CountOf(parameter.annotations.size())});
    ++parameterCount;
    return Annotations(parameter.annotations, parameters);
}

// ---- Techniques

bool FxCompiledWriter::Technique(const FxTechnique& technique, uint32_t number)
{
    Append(techniques, {Text(technique.name), CountOf(technique.annotations.size()),
                        CountOf(technique.passes.size())});
    if (!Annotations(technique.annotations, techniques))
        return false;
    for (size_t i = 0; i < technique.passes.size(); ++i)
        if (!Pass(*technique.passes[i], number, CountOf(i)))
            return false;
    return true;
}

bool FxCompiledWriter::Pass(const FxPass& pass, uint32_t technique, uint32_t number)
{
    if (!pass.lack.empty())
        return Fail(pass.lack);
    const std::vector<FxAssignment> states = FxByRegisters(pass.states);
    Append(techniques, {Text(pass.name), CountOf(pass.annotations.size()), CountOf(states.size())});
    if (!Annotations(pass.annotations, techniques))
        return false;
    for (size_t i = 0; i < states.size(); ++i)
        if (!State(states[i], {technique, number, kNoElement}, CountOf(i), techniques))
            return Fail(pass.place + ": " + std::string(states[i].state->name) + ": " + reason);
    return true;
}

bool FxCompiledWriter::IsConstant(const FxExpression& value) const
{
    const auto isSeen = [&](const FxParameter* read) { return read && visible.Has(*read); };
    const auto changes = [&](const FxStep& step) {
        if (!step.function)
            return isSeen(step.parameter);
        const auto& read = step.function->Parameters();
        return std::any_of(read.begin(), read.end(), isSeen);
    };
    return std::none_of(value.Steps().begin(), value.Steps().end(), changes);
}

/// Constants have their value here; for everything else a resource brings it.
bool FxCompiledWriter::State(const FxAssignment& assignment, const Owner& owner, uint32_t number,
                             Words& target)
{
    const FxState& state = *assignment.state;
    Append(target, {FxOperationOf(state), assignment.index});
    const bool isObject = state.value == FxStateValue::Object;
    if (!isObject && IsConstant(assignment.value)) {
        const uint32_t type = Put(NumberTypeWords(FxDeviceShape(assignment)));
        Append(target, {type, Put(ConstantWords(assignment))});
        return true;
    }
    if (isObject) {
        const D3DXPARAMETER_TYPE type = state.kind == FxStateKind::Texture         ? D3DXPT_TEXTURE
                                        : state.kind == FxStateKind::SamplerObject ? D3DXPT_SAMPLER
                                        : state.kind == FxStateKind::VertexShader
                                            ? D3DXPT_VERTEXSHADER
                                            : D3DXPT_PIXELSHADER;
        const uint32_t words = Put({CountOf(type), D3DXPC_OBJECT, 0, 0, 0});
        Append(target,
               {words, Put({state.kind == FxStateKind::SamplerObject ? 0 : objectCount++})});
    } else {
        const FxShape shape = FxDeviceShape(assignment);
        const uint32_t type = Put(NumberTypeWords(shape));
        Append(target, {type, Put(Words(shape.Count()))});
    }
    return Resource(assignment, owner, number);
}

/// As the device takes it.
FxCompiledWriter::Words FxCompiledWriter::ConstantWords(const FxAssignment& assignment)
{
    std::vector<FxNumber> scratch;
    const FxShape shape = FxDeviceShape(assignment);
    if (shape.IsScalar() && assignment.state->value != FxStateValue::Registers &&
        assignment.state->value != FxStateValue::Floats)
        return {FxPassStates().Word(assignment)};
    const FxNumber number = assignment.value.Evaluate(scratch);
    Words words;
    for (UINT i = 0; i < shape.Count(); ++i)
        words.push_back(FxConvert(number.cells[i], number.shape.type, shape.type));
    return words;
}

bool FxCompiledWriter::Resource(const FxAssignment& assignment, const Owner& owner, uint32_t number)
{
    uint32_t usage = kReference;
    std::string bytes;
    const bool isObject = assignment.state->value == FxStateValue::Object;
    if (!(isObject ? ObjectResource(assignment, usage, bytes)
                   : NumberResource(assignment, usage, bytes)))
        return false;
    if (bytes.empty())
        return true; // NULL
    Append(resources, {owner.technique, owner.index, owner.element, number, usage});
    AppendBlock(resources, bytes);
    ++resourceCount;
    return true;
}

bool FxCompiledWriter::ObjectResource(const FxAssignment& assignment, uint32_t& usageOut,
                                      std::string& bytesOut)
{
    const FxObject& object = assignment.object;
    if (!object.parameter) {
        usageOut = kCode;
        bytesOut = CodeOf(assignment.shader.get());
        return true;
    }
    bytesOut = names.at(object.parameter) + '\0';
    if (object.index.IsEmpty())
        return true;
    std::vector<DWORD> code;
    if (!FxProgramWriter(visible).Write(object.index, code, reason))
        return false;
    usageOut = kSelector;
    bytesOut.resize((bytesOut.size() + 3) / 4 * 4);
    bytesOut = BytesOf(Words{CountOf(bytesOut.size())}) + bytesOut + BytesOfCode(code);
    return true;
}

/// The name alone if the parameter has what the device takes, else a computation.
bool FxCompiledWriter::NumberResource(const FxAssignment& assignment, uint32_t& usageOut,
                                      std::string& bytesOut)
{
    const FxShape shape = FxDeviceShape(assignment);
    const FxStep& first = assignment.value.Steps()[0];
    const bool isAlone = assignment.value.Steps().size() == 1 && first.parameter;
    if (isAlone && first.shape.type == shape.type && first.shape.HasSameForm(shape)) {
        bytesOut = names.at(first.parameter) + '\0';
        return true;
    }
    usageOut = kCode;
    std::vector<DWORD> code;
    FxProgramWriter writer(visible);
    const bool isColour =
        assignment.state->value == FxStateValue::Color && !assignment.value.Shape().IsScalar();
    if (!(isColour ? writer.WriteColour(assignment.value, code, reason)
                   : writer.Write(assignment.value, code, reason)))
        return false;
    bytesOut = BytesOfCode(code);
    return true;
}

} // namespace headless::fx

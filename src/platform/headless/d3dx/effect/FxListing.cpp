#include "platform/headless/d3dx/effect/FxListing.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "platform/headless/d3dx/effect/FxShader.h"
#include "platform/headless/d3dx/effect/FxStateWords.h"
#include "platform/headless/shader/Bytecode.h"
#include "platform/headless/shader/Disassembler.h"

namespace headless::fx {

namespace {

constexpr size_t kMostBytes = size_t{64} << 20;
constexpr std::string_view kPassIndent = "        ";

/// The words of these are bits that are combined.
constexpr const FxStateWords* kCombined[] = {
    &kFxColorWriteWords, &kFxWrapWords,          &kFxClipPlaneWords,   &kFxTextureArgumentWords,
    &kFxTexCoordWords,   &kFxTransformFlagWords, &kFxVertexFormatWords};

std::string CellText(FxCell cell, D3DXPARAMETER_TYPE type)
{
    switch (type) {
    case D3DXPT_BOOL:
        return cell != 0 ? "TRUE" : "FALSE";
    case D3DXPT_INT:
        return std::to_string(static_cast<int32_t>(cell));
    default:
        return FxListedFloat(FxFloatOfCell(cell, D3DXPT_FLOAT));
    }
}

std::string CellsText(const FxCell* cells, size_t count, D3DXPARAMETER_TYPE type)
{
    std::string text;
    for (size_t i = 0; i < count; ++i)
        text += (i > 0 ? ", " : "") + CellText(cells[i], type);
    return count == 1 ? text : "{" + text + "}";
}

std::string HexText(DWORD number)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(number));
    return text;
}

/// The state's word for a number, or several whose bits make it up; the number if there is none.
std::string WordText(const FxStateWords& table, DWORD number)
{
    for (const FxStateWord& word : table.words)
        if (word.value == number)
            return std::string(word.name);
    const bool isCombined =
        std::find(std::begin(kCombined), std::end(kCombined), &table) != std::end(kCombined);
    std::string text;
    for (size_t i = table.words.size(); isCombined && i-- > 0;) {
        const FxStateWord& word = table.words[i];
        if (word.value == 0 || (number & word.value) != word.value)
            continue;
        text += std::string(word.name) + " | ";
        number &= ~word.value;
    }
    if (!text.empty() && number == 0)
        return text.substr(0, text.size() - 3);
    return text + std::to_string(static_cast<int32_t>(number));
}

/// The device's number for a state that takes one.
std::string NumberText(const FxState& state, DWORD number)
{
    switch (state.value) {
    case FxStateValue::Truth:
        return CellText(number, D3DXPT_BOOL);
    case FxStateValue::Float:
        return CellText(number, D3DXPT_FLOAT);
    case FxStateValue::Color:
        return HexText(number);
    default:
        return state.words ? WordText(*state.words, number) : CellText(number, D3DXPT_INT);
    }
}

std::string TypeText(const FxParameter& parameter)
{
    static constexpr const char* kNames[] = {
        "void",      "bool",      "int",         "float",       "string",      "texture",
        "texture1D", "texture2D", "texture3D",   "textureCUBE", "sampler",     "sampler1D",
        "sampler2D", "sampler3D", "samplerCUBE", "pixelshader", "vertexshader"};
    if (parameter.kind == D3DXPC_STRUCT) {
        const FxParameter& one = parameter.IsArray() ? *parameter.parts[0] : parameter;
        std::string text = "struct { ";
        for (const auto& member : one.parts) {
            text += TypeText(*member) + " " + FxListedText(member->name);
            text += member->IsArray() ? "[" + std::to_string(member->elements) + "]; " : "; ";
        }
        return text + "}";
    }
    std::string text = kNames[parameter.type];
    if (parameter.kind == D3DXPC_VECTOR)
        text += std::to_string(parameter.columns);
    else if (parameter.kind == D3DXPC_MATRIX_ROWS || parameter.kind == D3DXPC_MATRIX_COLUMNS)
        text += std::to_string(parameter.rows) + "x" + std::to_string(parameter.columns);
    return text;
}

void AddNumbers(const FxParameter& parameter, std::string& textOut)
{
    if (parameter.IsNumeric())
        for (size_t i = 0; i < parameter.ValueCount(); ++i)
            textOut +=
                (textOut.empty() ? "" : ", ") + CellText(parameter.Cells()[i], parameter.type);
    else
        for (const auto& part : parameter.parts)
            AddNumbers(*part, textOut);
}

bool HasNumbers(const FxParameter& parameter)
{
    const auto& cells = parameter.storage->cells;
    return std::any_of(cells.begin(), cells.end(), [](FxCell cell) { return cell != 0; });
}

} // namespace

FxListing::FxListing(const FxModel& source) : model(source), names(source.parameters)
{}

bool FxListing::Write(std::string& textOut)
{
    for (const auto& parameter : model.parameters)
        if (!Parameter(*parameter))
            return false;
    for (const auto& technique : model.techniques) {
        Technique(*technique);
        if (!IsShort())
            return false;
    }
    textOut = std::move(text);
    return true;
}

bool FxListing::IsShort() const
{
    return text.size() <= kMostBytes;
}

void FxListing::Line(std::string_view indent, std::string_view rest)
{
    text.append(indent).append(rest).append("\n");
}

// ---- Parameters

bool FxListing::Parameter(const FxParameter& parameter)
{
    text += (parameter.flags & D3DX_PARAMETER_SHARED) != 0 ? "shared " : "";
    text += TypeText(parameter) + " " + names.Of(parameter);
    if (parameter.IsArray())
        text += "[" + std::to_string(parameter.elements) + "]";
    if (parameter.hasSemantic)
        text += " : " + FxListedText(parameter.semantic);
    Annotations(parameter.annotations);
    Content(parameter);
    text += ";\n";
    return IsShort();
}

/// Numbers that are not 0, texts, the states of samplers, shaders.
void FxListing::Content(const FxParameter& parameter)
{
    std::string numbers;
    if (HasNumbers(parameter))
        AddNumbers(parameter, numbers);
    const bool isOne = parameter.IsNumeric() && parameter.ValueCount() == 1;
    if (!numbers.empty())
        text += isOne ? " = " + numbers : " = {" + numbers + "}";
    if (parameter.type == D3DXPT_STRING && !parameter.IsArray())
        text += " = \"" + FxListedText(parameter.storage->strings[parameter.first]) + "\"";
    const auto object = [&](const FxParameter& one) {
        if (one.shader)
            Shader(*one.shader, "");
        if (one.samplerStates.empty())
            return;
        text += " = sampler_state\n{\n";
        for (const FxAssignment& state : one.samplerStates)
            if (!State(state, "    "))
                return;
        text += "}";
    };
    object(parameter);
    for (const auto& part : parameter.parts)
        object(*part);
}

void FxListing::Annotations(const List& list)
{
    if (list.empty())
        return;
    text += " <";
    for (const auto& annotation : list) {
        text += " " + TypeText(*annotation) + " " + FxListedText(annotation->name);
        Content(*annotation);
        text += ";";
    }
    text += " >";
}

// ---- Techniques

void FxListing::Technique(const FxTechnique& technique)
{
    text += "\ntechnique " + FxListedText(technique.name);
    Annotations(technique.annotations);
    text += "\n{\n";
    for (const auto& pass : technique.passes) {
        Pass(*pass);
        if (!IsShort())
            return;
    }
    text += "}\n";
}

void FxListing::Pass(const FxPass& pass)
{
    text += "    pass " + FxListedText(pass.name);
    Annotations(pass.annotations);
    text += "\n    {\n";
    if (!pass.lack.empty())
        Line(kPassIndent, "// Not drawn here: " + pass.lack);
    for (const FxAssignment& state : pass.states)
        if (!State(state, kPassIndent))
            return;
    text += "    }\n";
}

bool FxListing::State(const FxAssignment& assignment, std::string_view indent)
{
    const FxState& state = *assignment.state;
    if (state.kind == FxStateKind::Missing) {
        Line(indent, "// A state that this host does not have.");
        return IsShort();
    }
    text.append(indent).append(state.name);
    if (state.places > 1)
        text += "[" + std::to_string(assignment.index) + "]";
    if (state.value == FxStateValue::Object)
        Object(assignment, indent);
    else
        Value(assignment, indent);
    text += ";\n";
    return IsShort();
}

void FxListing::Value(const FxAssignment& assignment, std::string_view indent)
{
    const FxExpression& value = assignment.value;
    if (value.Program()) {
        text += " =";
        return Computation(*value.Program(), indent);
    }
    const FxStep& step = value.Steps().back();
    if (step.parameter) {
        text += " = <" + names.Of(*step.parameter) + ">";
        return;
    }
    const FxNumber& number = value.Literal(step);
    const FxState& state = *assignment.state;
    const bool isWord = number.shape.IsScalar() && state.value != FxStateValue::Floats &&
                        state.value != FxStateValue::Registers;
    text +=
        " = " + (isWord ? NumberText(state, number.cells[0])
                        : CellsText(number.cells.data(), number.shape.Count(), number.shape.type));
}

void FxListing::Object(const FxAssignment& assignment, std::string_view indent)
{
    const FxObject& object = assignment.object;
    if (assignment.shader)
        return Shader(*assignment.shader, indent);
    if (!object.parameter) {
        text += " = NULL";
        return;
    }
    const FxProgram* const index = object.index.Program();
    text += " = <" + names.Of(*object.parameter) + (index ? "[out0.x]>" : ">");
    if (index)
        Computation(*index, indent);
}

void FxListing::Computation(const FxProgram& program, std::string_view indent)
{
    const std::string inner = std::string(indent) + "    ";
    text += " computed\n";
    Line(indent, "{");
    FxListProgram(program, names, inner, "out", text);
    text.append(indent).append("}");
}

/// What reaches its registers stands before it as comments, so that the rest is assembler text.
void FxListing::Shader(const FxShader& shader, std::string_view indent)
{
    const std::string inner = std::string(indent) + "    ";
    text += " = asm\n";
    Line(indent, "{");
    FxListInputs(shader.inputs, names, inner + "// ", text);
    if (shader.beforehand) {
        Line(inner, "// Computed before it runs:");
        FxListProgram(*shader.beforehand, names, inner + "//     ", "c", text);
    }
    const std::vector<shader::Word> words(shader.words.begin(), shader.words.end());
    shader::Bytecode code;
    shader::Fault fault;
    if (!shader.fault.empty())
        Line(inner, "// Refused: " + shader.fault);
    else if (shader::ReadBytecode(words, code, fault)) {
        const std::string lines = shader::Disassemble(code);
        for (size_t start = 0; start < lines.size();) {
            const size_t end = lines.find('\n', start);
            Line(inner, std::string_view(lines).substr(start, end - start));
            start = end + 1;
        }
    }
    text.append(indent).append("}");
}

} // namespace headless::fx

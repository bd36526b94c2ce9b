#include "platform/headless/d3dx/effect/FxProgramListing.h"

#include <charconv>

namespace headless::fx {

namespace {

constexpr size_t kMostNameBytes = 128;
constexpr char kComponents[] = "xyzw";

template <typename Number>
std::string NumberText(Number value)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

/// Most literals are floats in the effect's text, and have few digits as such.
std::string LiteralText(double value)
{
    const auto rounded = static_cast<float>(value);
    return static_cast<double>(rounded) == value ? NumberText(rounded) : NumberText(value);
}

/// The components of one register, none for all of them; those of several are a range.
std::string ComponentsText(UINT offset, UINT count)
{
    const UINT last = offset + count - 1;
    if (offset % 4 == 0 && count == 4)
        return "";
    if (offset / 4 != last / 4)
        return std::string(".") + kComponents[offset % 4] + " to +" +
               std::to_string(last / 4 - offset / 4) + "." + kComponents[last % 4];
    std::string text = ".";
    for (UINT i = 0; i < count; ++i)
        text += kComponents[offset % 4 + i];
    return text;
}

/// The names of the sets of registers of a shader.
const char* SetName(FxRegisterSet set)
{
    switch (set) {
    case FxRegisterSet::Truth:
        return "b";
    case FxRegisterSet::Whole:
        return "i";
    default:
        return "c";
    }
}

class ProgramLister {
public:
    ProgramLister(const FxProgram& all, const FxListedNames& parameterNames,
                  std::string_view outputName)
        : program(all),
          names(parameterNames),
          outputs(outputName)
    {}

    std::string Line(const FxProgramStep& step) const
    {
        std::string text = step.Name();
        text += ' ' + PlaceText({step.target, {}}, step.ResultCount());
        for (size_t i = 0; i < step.sources.size(); ++i)
            text +=
                ", " + PlaceText(step.sources[i], step.isFirstScalar && i == 0 ? 1 : step.count);
        return text;
    }

private:
    std::string PlaceText(const FxProgramOperand& operand, UINT count) const
    {
        const FxProgramPlace& place = operand.place;
        if (operand.index.table != FxProgramTable::None)
            return TableName(place.table) + "[" + PlaceText({operand.index, {}}, 1) + " + " +
                   std::to_string(place.offset / 4) + "]" + ComponentsText(place.offset, count);
        if (place.table == FxProgramTable::Literal)
            return LiteralsText(place.offset, count);
        if (place.table == FxProgramTable::Input)
            return InputText(place.offset, count);
        return TableName(place.table) + std::to_string(place.offset / 4) +
               ComponentsText(place.offset, count);
    }

    std::string TableName(FxProgramTable table) const
    {
        switch (table) {
        case FxProgramTable::Literal:
            return "literals";
        case FxProgramTable::Input:
            return "inputs";
        case FxProgramTable::FloatOut:
            return std::string(outputs);
        case FxProgramTable::TruthOut:
            return "b";
        case FxProgramTable::WholeOut:
            return "i";
        default:
            return "r";
        }
    }

    std::string LiteralsText(UINT offset, UINT count) const
    {
        std::string text;
        for (UINT i = 0; i < count; ++i)
            text += (i > 0 ? ", " : "") +
                    LiteralText(program.Output(FxProgramTable::Literal, offset + i));
        return count > 1 ? "(" + text + ")" : text;
    }

    /// By the name of the parameter whose register it is.
    std::string InputText(UINT offset, UINT count) const
    {
        for (const FxNumberBinding& row : program.inputs.numbers) {
            const UINT place = offset / 4 - row.firstRegister;
            if (place >= row.registerCount)
                continue;
            const FxParameter& parameter = *row.parameter;
            std::string text = names.Of(parameter);
            if (row.isTransposed)
                text = "transpose(" + text + ")";
            if (row.registerCount > 1)
                text += "[" + std::to_string(place) + "]";
            return text + (parameter.CellCount() > 1 ? ComponentsText(offset, count) : "");
        }
        return TableName(FxProgramTable::Input) + "[" + std::to_string(offset / 4) + "]" +
               ComponentsText(offset, count);
    }

    const FxProgram& program;
    const FxListedNames& names;
    std::string_view outputs;
};

} // namespace

FxListedNames::FxListedNames(const std::vector<std::unique_ptr<FxParameter>>& parameters)
{
    for (const auto& parameter : parameters)
        Add(*parameter, FxListedText(parameter->name));
}

/// Recurses as deep as structs nest, which is limited.
void FxListedNames::Add(const FxParameter& parameter, const std::string& name)
{
    names.emplace(&parameter, name);
    for (size_t i = 0; i < parameter.parts.size(); ++i) {
        const FxParameter& part = *parameter.parts[i];
        Add(part, parameter.IsArray() ? name + '[' + std::to_string(i) + ']'
                                      : name + '.' + FxListedText(part.name));
    }
}

const std::string& FxListedNames::Of(const FxParameter& parameter) const
{
    static const std::string unknown = "?"; // an annotation
    const auto found = names.find(&parameter);
    return found == names.end() ? unknown : found->second;
}

std::string FxListedText(std::string_view bytes)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char c : bytes.substr(0, kMostNameBytes)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7F)
            text += c;
        else
            text += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return text + (bytes.size() > kMostNameBytes ? "..." : "");
}

std::string FxListedFloat(float value)
{
    return NumberText(value);
}

void FxListProgram(const FxProgram& program, const FxListedNames& names, std::string_view indent,
                   std::string_view outputs, std::string& textOut)
{
    const ProgramLister lister(program, names, outputs);
    for (const FxProgramStep& step : program.Steps())
        textOut += std::string(indent) + lister.Line(step) + "\n";
}

void FxListInputs(const FxProgramInputs& inputs, const FxListedNames& names,
                  std::string_view indent, std::string& textOut)
{
    for (const FxNumberBinding& row : inputs.numbers) {
        const UINT last = row.firstRegister + row.registerCount - 1;
        const std::string set = SetName(row.set);
        textOut += std::string(indent) + set + std::to_string(row.firstRegister);
        if (row.registerCount > 1)
            textOut += " to " + set + std::to_string(last);
        const std::string& name = names.Of(*row.parameter);
        textOut += ": " + (row.isTransposed ? "transpose(" + name + ")" : name) + "\n";
    }
    for (const FxSamplerBinding& row : inputs.samplers)
        textOut += std::string(indent) + "s" + std::to_string(row.index) + ": " +
                   names.Of(*row.sampler) + "\n";
}

} // namespace headless::fx

// The entry of a shader: its inputs and outputs.

#include "platform/headless/d3dx/language/HlRunner.h"

#include <algorithm>
#include <charconv>

namespace headless::hl {

namespace {

/// "TEXCOORD3" is TEXCOORD and 3.
std::string_view SplitSemantic(std::string_view semantic, uint32_t& numberOut)
{
    size_t end = semantic.size();
    while (end > 0 && semantic[end - 1] >= '0' && semantic[end - 1] <= '9')
        --end;
    numberOut = 0;
    std::from_chars(semantic.data() + end, semantic.data() + semantic.size(), numberOut);
    return semantic.substr(0, end);
}

/// Rows of a value that go to registers of their own.
uint32_t RowsOf(const HlType& type)
{
    if (type.kind == HlKind::Array)
        return type.count * RowsOf(*type.element);
    return type.form == HlForm::Matrix ? type.rows : 1;
}

} // namespace

/// Each row of a matrix and each element of an array takes the next number.
bool HlRunner::BindInputRows(const HlType& type, std::string_view name, uint32_t& number,
                             FxPlace place, HlRefs& refsOut)
{
    if (type.kind == HlKind::Array) {
        for (uint32_t i = 0; i < type.count; ++i)
            if (!BindInputRows(*type.element, name, number, place, refsOut))
                return false;
        return true;
    }
    if (!type.IsNumber())
        return Fail(place, FxError::UnknownType, "an input of a shader is a number");
    for (uint32_t row = 0; row < RowsOf(type); ++row, ++number) {
        if (!Spend(place) || inputs.size() > 64)
            return Fail(place, FxError::Limit, "the shader has too many inputs");
        size_t at = 0;
        while (at < inputs.size() &&
               !(fx::FxSameWord(inputs[at].semantic, name) && inputs[at].usageIndex == number))
            ++at;
        if (at == inputs.size()) {
            HlBinding& binding = inputs.emplace_back();
            binding.semantic = name;
            binding.usageIndex = number;
            binding.place = place;
        }
        const uint32_t node = graph.Leaf(HlOp::Input, static_cast<uint32_t>(at));
        for (unsigned column = 0; column < type.columns; ++column)
            refsOut.emplace_back(node, column);
    }
    return true;
}

bool HlRunner::BindInput(const HlType& type, std::string_view semantic, FxPlace place,
                         HlRefs& refsOut)
{
    if (type.kind == HlKind::Struct && semantic.empty()) {
        for (const HlMember& member : type.structure->members)
            if (!BindInput(*member.type, member.semantic, place, refsOut))
                return false;
        return true;
    }
    if (semantic.empty())
        return Fail(place, FxError::UnknownName, "an input of a shader needs a semantic");
    uint32_t number = 0;
    const std::string_view name = SplitSemantic(semantic, number);
    return BindInputRows(type, name, number, place, refsOut);
}

void HlRunner::BindOutputRow(std::string_view name, uint32_t number, FxPlace place,
                             std::span<const HlRef> refs)
{
    HlBinding& binding = outputs.emplace_back();
    binding.semantic = name;
    binding.usageIndex = number;
    binding.place = place;
    for (unsigned i = 0; i < refs.size(); ++i) {
        binding.refs[i] = graph.IsUndefined(refs[i]) ? graph.Literal(0.0f) : refs[i];
        binding.mask |= 1u << i;
    }
}

bool HlRunner::BindOutput(const HlType& type, std::string_view semantic, FxPlace place,
                          std::span<const HlRef> refs)
{
    if (type.kind == HlKind::Struct && semantic.empty()) {
        for (const HlMember& member : type.structure->members)
            if (!BindOutput(*member.type, member.semantic, place,
                            refs.subspan(member.first, member.type->cells)))
                return false;
        return true;
    }
    if (semantic.empty())
        return Fail(place, FxError::UnknownName, "an output of a shader needs a semantic");
    const HlType* row = &type;
    while (row->kind == HlKind::Array)
        row = row->element;
    if (!row->IsNumber())
        return Fail(place, FxError::UnknownType, "an output of a shader is a number");
    uint32_t number = 0;
    const std::string_view name = SplitSemantic(semantic, number);
    const bool isWhole =
        std::any_of(refs.begin(), refs.end(), [&](HlRef ref) { return !graph.IsUndefined(ref); });
    if (!isWhole)
        Warn(place, "the output '" + std::string(semantic) + "' is never given a value");
    for (uint32_t i = 0; i < RowsOf(type) && outputs.size() < 64; ++i)
        BindOutputRow(name, number + i, place, refs.subspan(i * row->columns, row->columns));
    return true;
}

/// An argument of `compile` for a uniform one, a default, or an input.
bool HlRunner::EntryParameter(const HlVariable& parameter,
                              const std::vector<HlExpression*>& arguments, size_t& nextInOut)
{
    const uint32_t slot = Declare(parameter.name, parameter, *parameter.type);
    HlRefs refs;
    if (parameter.isUniform) {
        const HlExpression* const value =
            nextInOut < arguments.size() ? arguments[nextInOut] : parameter.value;
        ++nextInOut;
        if (!value)
            return Fail(parameter.place, FxError::BadInitializer,
                        "the parameter '" + std::string(parameter.name) +
                            "' has no value, and none is given");
        if (!Initialize(*parameter.type, *value, refs))
            return false;
    } else if (parameter.isIn) {
        if (!BindInput(*parameter.type, parameter.semantic, parameter.place, refs))
            return false;
    }
    std::copy(refs.begin(), refs.end(), slots.begin() + slot);
    return true;
}

bool HlRunner::RunEntry(HlFunction& function, const std::vector<HlExpression*>& arguments)
{
    if (!DeclareGlobals() || !parser.ReadBody(function, log))
        return false;
    size_t next = 0;
    for (const HlVariable* parameter : function.parameters)
        if (!EntryParameter(*parameter, arguments, next))
            return false;
    if (next < arguments.size())
        return Fail(arguments[next]->place, FxError::BadInitializer,
                    "'" + std::string(function.name) + "' has no more uniform parameters");
    resultSlot = Allocate(function.result->cells, HlRef());
    running = &function;
    function.isUsed = true;
    returnMask = masks.size();
    PushMask();
    Run(*function.body);
    function.isUsed = false;
    if (log.Failed())
        return false;
    const std::span<const HlRef> all(slots);
    if (function.result->kind != HlKind::Void &&
        !BindOutput(*function.result, function.semantic, function.place,
                    all.subspan(resultSlot, function.result->cells)))
        return false;
    for (size_t i = 0; i < function.parameters.size(); ++i) {
        const Named& named = names[frame + i];
        if (named.variable->isOut &&
            !BindOutput(*named.type, named.variable->semantic, named.variable->place,
                        all.subspan(named.slot, named.type->cells)))
            return false;
    }
    if (!log.Failed())
        WarnOfUnused(function);
    return !log.Failed();
}

} // namespace headless::hl

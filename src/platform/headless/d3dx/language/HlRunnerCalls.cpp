// Calls of the text's functions. Intrinsic ones are in HlIntrinsics.

#include "platform/headless/d3dx/language/HlIntrinsics.h"
#include "platform/headless/d3dx/language/HlRunner.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace headless::hl {

HlValue HlRunner::EvaluateCall(const HlExpression& expression)
{
    const auto found = unit.functionsByName.find(expression.name);
    const bool isOwn = found != unit.functionsByName.end();
    if (!isOwn && !HlIntrinsics::Exists(expression.name))
        return FailValue(expression.place, FxError::UnknownName,
                         "there is no function '" + std::string(expression.name) + "'");
    if (!isOwn)
        return HlIntrinsics(*this).Call(expression);
    // `out` arguments have no value yet: they are only places.
    const auto isOutOnly = [&](size_t i) {
        return std::all_of(found->second.begin(), found->second.end(), [&](const HlFunction* one) {
            return i < one->parameters.size() && !one->parameters[i]->isIn;
        });
    };
    std::vector<HlValue> arguments;
    for (size_t i = 0; i < expression.parts.size(); ++i) {
        if (isOutOnly(i)) {
            const HlPlace place = FindPlace(*expression.parts[i]);
            if (!place.type)
                return ErrorValue();
            arguments.push_back({place.type, HlRefs(place.type->cells)});
            continue;
        }
        arguments.push_back(Evaluate(*expression.parts[i]));
        if (arguments.back().type->IsError())
            return ErrorValue();
    }
    HlFunction* const function = ChooseFunction(expression, found->second, arguments);
    return function ? CallFunction(*function, expression, arguments) : ErrorValue();
}

HlValue HlRunner::RunCall(const HlExpression& call, std::vector<HlValue>& arguments)
{
    if (!DeclareGlobals())
        return ErrorValue();
    HlFunction* const function = ChooseFunction(call, unit.functionsByName[call.name], arguments);
    return function ? CallFunction(*function, call, arguments) : ErrorValue();
}

/// The one whose parameters are nearest to the arguments.
HlFunction* HlRunner::ChooseFunction(const HlExpression& expression,
                                     const std::vector<HlFunction*>& overloads,
                                     const std::vector<HlValue>& arguments)
{
    HlFunction* best = nullptr;
    int bestCost = std::numeric_limits<int>::max();
    bool isTie = false;
    for (HlFunction* function : overloads) {
        const auto& parameters = function->parameters;
        bool fits = arguments.size() <= parameters.size() &&
                    (arguments.size() == parameters.size() || parameters[arguments.size()]->value);
        int cost = 0;
        for (size_t i = 0; fits && i < arguments.size(); ++i) {
            const int one = Cost(*arguments[i].type, *parameters[i]->type);
            fits = one >= 0;
            cost += one;
        }
        if (!fits)
            continue;
        isTie = cost == bestCost;
        best = cost < bestCost ? function : best;
        bestCost = std::min(cost, bestCost);
    }
    const std::string name = "'" + std::string(expression.name) + "'";
    if (!best) {
        std::string list;
        for (const HlValue& argument : arguments)
            list += (list.empty() ? "" : ", ") + HlTypes::Name(*argument.type);
        Fail(expression.place, FxError::TypeMismatch,
             "no function " + name + " takes (" + list + ")");
    } else if (isTie) {
        Fail(expression.place, FxError::TypeMismatch, "several functions " + name + " fit equally");
        return nullptr;
    }
    return best;
}

HlValue HlRunner::CallFunction(HlFunction& function, const HlExpression& expression,
                               std::vector<HlValue>& arguments)
{
    if (function.isUsed)
        return FailValue(expression.place, FxError::Limit,
                         "'" + std::string(function.name) + "' calls itself");
    if (!parser.ReadBody(function, log))
        return ErrorValue();
    if (calledOnce.insert(&function).second)
        called.push_back(&function);
    for (size_t i = 0; i < function.parameters.size(); ++i) {
        const HlVariable& parameter = *function.parameters[i];
        if (i >= arguments.size()) {
            HlValue value = {parameter.type, {}};
            if (!Initialize(*parameter.type, *parameter.value, value.refs))
                return ErrorValue();
            arguments.push_back(value);
        } else if (parameter.isIn) {
            if (!Convert(arguments[i], *parameter.type, expression.parts[i]->begin, false))
                return ErrorValue();
        } else {
            arguments[i] = {parameter.type, HlRefs(parameter.type->cells)};
        }
    }
    HlValue result = RunFunction(function, arguments);
    for (size_t i = 0; i < expression.parts.size() && !log.Failed(); ++i) {
        if (!function.parameters[i]->isOut)
            continue;
        const HlPlace place = FindPlace(*expression.parts[i]);
        if (place.type && Convert(arguments[i], *place.type, expression.parts[i]->begin, false))
            Store(place, arguments[i].refs);
    }
    return result;
}

/// The parameters of an entry are those of the stream, and other entries may share them. In a text with errors
/// nothing is told: the variable may belong where the error is.
void HlRunner::WarnOfUnused(const HlFunction& entry)
{
    for (const HlFunction* function : called)
        for (const HlVariable* variable : function->unusedParameters)
            WarnOfUnused(*variable);
    called.push_back(&entry);
    for (const HlFunction* function : called)
        for (const HlVariable* variable : function->unusedLocals)
            WarnOfUnused(*variable);
}

void HlRunner::WarnOfUnused(const HlVariable& variable)
{
    Warn(variable.place, "'" + std::string(variable.name) + "' is never used");
}

/// `values` are those of the parameters, and afterwards what the function left in them.
HlValue HlRunner::RunFunction(HlFunction& function, std::vector<HlValue>& values)
{
    const Scope scope = OpenScope();
    const auto outer = std::make_tuple(frame, running, resultSlot, returnMask, freeSlots);
    frame = names.size();
    for (size_t i = 0; i < values.size(); ++i) {
        const HlVariable& parameter = *function.parameters[i];
        const uint32_t slot = Declare(parameter.name, parameter, *parameter.type);
        std::copy(values[i].refs.begin(), values[i].refs.end(), slots.begin() + slot);
    }
    const size_t first = frame;
    running = &function;
    resultSlot = Allocate(function.result->cells, HlRef());
    returnMask = masks.size();
    freeSlots = {0, 0};
    PushMask();
    function.isUsed = true;
    Run(*function.body);
    function.isUsed = false;
    masks.resize(returnMask);
    HlValue result = {
        function.result,
        {slots.begin() + resultSlot, slots.begin() + resultSlot + function.result->cells}};
    for (size_t i = 0; i < values.size(); ++i) {
        const Named& named = names[first + i];
        values[i].refs.assign(slots.begin() + named.slot,
                              slots.begin() + named.slot + named.type->cells);
    }
    std::tie(frame, running, resultSlot, returnMask, freeSlots) = outer;
    CloseScope(scope);
    return result;
}

} // namespace headless::hl

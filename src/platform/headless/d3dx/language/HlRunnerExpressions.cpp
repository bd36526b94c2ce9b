// Expressions: names, members, indices, conditions, constructors.

#include "platform/headless/d3dx/language/HlRunner.h"

#include <algorithm>
#include <cmath>

namespace headless::hl {

namespace {

constexpr int kMaxCallDepth = 1200;

unsigned RowOf(const HlType& type)
{
    return type.IsNumber() ? type.columns : 4;
}

} // namespace

HlValue HlRunner::Evaluate(const HlExpression& expression)
{
    if (HasToStop() || !Spend(expression.place))
        return ErrorValue();
    if (depth > kMaxCallDepth)
        return FailValue(expression.place, FxError::Limit, "the calls are nested too deep");
    ++depth;
    HlValue value = EvaluateOne(expression);
    --depth;
    return value;
}

HlValue HlRunner::EvaluateOne(const HlExpression& expression)
{
    switch (expression.kind) {
    case HlExpressionKind::Number:
        return {unit.types.Scalar(expression.base), {graph.Literal(expression.number)}};
    case HlExpressionKind::Name:
        return EvaluateName(expression);
    case HlExpressionKind::Unary:
        return EvaluateUnary(expression);
    case HlExpressionKind::Binary:
        return EvaluateBinary(expression);
    case HlExpressionKind::Assign:
        return EvaluateAssign(expression);
    case HlExpressionKind::Step:
        return EvaluateStep(expression);
    case HlExpressionKind::Condition:
        return EvaluateCondition(expression);
    case HlExpressionKind::Cast: {
        HlValue value = Evaluate(*expression.parts[0]);
        return value.type->IsError() || Convert(value, *expression.type, expression.place, true)
                   ? value
                   : ErrorValue();
    }
    case HlExpressionKind::Construct:
        return EvaluateConstruct(expression);
    case HlExpressionKind::Call:
        return EvaluateCall(expression);
    case HlExpressionKind::Member:
        return EvaluateMember(expression);
    case HlExpressionKind::Index:
        return EvaluateIndex(expression);
    case HlExpressionKind::Comma:
        Evaluate(*expression.parts[0]);
        return Evaluate(*expression.parts[1]);
    default:
        return FailValue(expression.place, FxError::Syntax, "a list in braces has no place here");
    }
}

HlValue HlRunner::EvaluateName(const HlExpression& expression)
{
    if (const Named* named = FindName(expression.name)) {
        if (!Spend(expression.place, named->type->cells / 16))
            return ErrorValue();
        HlValue value = {
            named->type,
            {slots.begin() + named->slot, slots.begin() + named->slot + named->type->cells}};
        const bool isEmpty = std::all_of(value.refs.begin(), value.refs.end(),
                                         [&](HlRef ref) { return graph.IsUndefined(ref); });
        if (isEmpty && !value.refs.empty() && value.type->kind == HlKind::Number)
            Warn(expression.place,
                 "'" + std::string(expression.name) + "' is used before it has a value");
        return value;
    }
    const auto global = unit.globals.find(expression.name);
    if (global == unit.globals.end())
        return FailValue(expression.place, FxError::UnknownName,
                         "there is no variable '" + std::string(expression.name) + "'");
    const HlVariable& variable = *global->second;
    if (variable.type->kind == HlKind::Object || variable.type->cells == 0)
        return FailValue(expression.place, FxError::TypeMismatch,
                         "shaders cannot use '" + std::string(expression.name) + "'");
    if (!Spend(expression.place, variable.type->cells / 16))
        return ErrorValue();
    return {variable.type, constants.Read(variable)};
}

HlValue HlRunner::EvaluateCondition(const HlExpression& expression)
{
    HlValue condition = Evaluate(*expression.parts[0]);
    if (condition.type->IsError())
        return condition;
    if (!condition.type->IsNumber())
        return FailValue(expression.parts[0]->begin, FxError::TypeMismatch,
                         "a condition is a number, not " + HlTypes::Name(*condition.type));
    ConvertBase(condition, HlBase::Bool);
    if (condition.refs.size() == 1)
        if (const std::optional<float> known = graph.ValueOf(condition.refs[0])) {
            HlValue chosen = Evaluate(*expression.parts[*known != 0.0f ? 1 : 2]);
            return chosen;
        }
    HlValue a = Evaluate(*expression.parts[1]), b = Evaluate(*expression.parts[2]);
    if (a.type->IsError() || b.type->IsError())
        return ErrorValue();
    if (a.type->IsNumber() && b.type->IsNumber()) {
        if (!Unify(a, b, expression.place))
            return ErrorValue();
    } else if (!Convert(b, *a.type, expression.place, false)) {
        return ErrorValue();
    }
    if (condition.refs.size() != 1 && a.refs.size() == 1) {
        const HlType* shape = unit.types.WithBase(*condition.type, a.type->base);
        if (!Convert(a, *shape, expression.place, true) ||
            !Convert(b, *shape, expression.place, true))
            return ErrorValue();
    }
    if (condition.refs.size() != 1 && condition.refs.size() != a.refs.size())
        return FailValue(expression.place, FxError::TypeMismatch,
                         "the condition is " + HlTypes::Name(*condition.type) +
                             ", the values are " + HlTypes::Name(*a.type));
    return {a.type, graph.Select(condition.refs, a.refs, b.refs, RowOf(*a.type))};
}

HlValue HlRunner::EvaluateConstruct(const HlExpression& expression)
{
    const HlType& type = *expression.type;
    if (!type.IsNumber())
        return FailValue(expression.place, FxError::TypeMismatch,
                         HlTypes::Name(type) + " is not made from a list of numbers");
    HlRefs refs;
    HlValue only;
    for (const HlExpression* part : expression.parts) {
        only = Evaluate(*part);
        if (only.type->IsError())
            return only;
        if (!only.type->IsNumber())
            return FailValue(part->begin, FxError::TypeMismatch,
                             "a number is expected, not " + HlTypes::Name(*only.type));
        HlValue cells = only;
        ConvertBase(cells, type.base);
        refs.insert(refs.end(), cells.refs.begin(), cells.refs.end());
    }
    if (expression.parts.size() == 1 && refs.size() != type.cells)
        return Convert(only, type, expression.place, true) ? only : ErrorValue();
    if (refs.size() != type.cells)
        return FailValue(expression.place, FxError::BadInitializer,
                         HlTypes::Name(type) + " takes " + std::to_string(type.cells) +
                             " numbers, not " + std::to_string(refs.size()));
    return {&type, refs};
}

// ---- Members

/// `xyz`, `rgb`, `_m00_m11`, `_11_22`: the cells that the letters name.
bool HlRunner::Swizzle(const HlType& type, std::string_view name, FxPlace place,
                       std::vector<uint32_t>& cellsOut, const HlType*& typeOut)
{
    const auto fail = [&] {
        return Fail(place, FxError::BadComponent,
                    HlTypes::Name(type) + " has no member '" + std::string(name) + "'");
    };
    if (!type.IsNumber())
        return fail();
    if (name.starts_with('_')) {
        while (!name.empty()) {
            const bool fromZero = name.starts_with("_m");
            const size_t at = fromZero ? 2 : 1;
            if (name[0] != '_' || name.size() < at + 2)
                return fail();
            const int row = name[at] - (fromZero ? '0' : '1');
            const int column = name[at + 1] - (fromZero ? '0' : '1');
            if (row < 0 || column < 0 || row >= type.rows || column >= type.columns)
                return fail();
            cellsOut.push_back(static_cast<uint32_t>(row * type.columns + column));
            name.remove_prefix(at + 2);
        }
    } else {
        static constexpr std::string_view kLetters[] = {"xyzw", "rgba"};
        const std::string_view letters =
            kLetters[kLetters[0].find(name[0]) == std::string_view::npos ? 1 : 0];
        for (const char letter : name) {
            const size_t component = letters.find(letter);
            if (component == std::string_view::npos || type.IsMatrix() || component >= type.columns)
                return fail();
            cellsOut.push_back(static_cast<uint32_t>(component));
        }
    }
    if (cellsOut.size() > 4)
        return fail();
    typeOut = cellsOut.size() == 1
                  ? unit.types.Scalar(type.base)
                  : unit.types.Vector(type.base, static_cast<unsigned>(cellsOut.size()));
    return true;
}

HlValue HlRunner::EvaluateMember(const HlExpression& expression)
{
    HlValue value = Evaluate(*expression.parts[0]);
    if (value.type->IsError())
        return value;
    if (value.type->kind == HlKind::Struct) {
        const HlMember* const member = value.type->structure->Find(expression.name);
        if (!member)
            return FailValue(expression.place, FxError::BadComponent,
                             HlTypes::Name(*value.type) + " has no member '" +
                                 std::string(expression.name) + "'");
        const auto first = value.refs.begin() + member->first;
        return {member->type, {first, first + member->type->cells}};
    }
    std::vector<uint32_t> cells;
    HlValue result;
    if (!Swizzle(*value.type, expression.name, expression.place, cells, result.type))
        return ErrorValue();
    for (const uint32_t cell : cells)
        result.refs.push_back(value.refs[cell]);
    return result;
}

// ---- Indices

HlValue HlRunner::EvaluateIndex(const HlExpression& expression)
{
    const HlValue value = Evaluate(*expression.parts[0]);
    HlValue index = Evaluate(*expression.parts[1]);
    if (value.type->IsError() || index.type->IsError())
        return ErrorValue();
    if (!index.type->IsNumber() || index.refs.size() != 1)
        return FailValue(expression.parts[1]->begin, FxError::BadIndex,
                         "an index is one number, not " + HlTypes::Name(*index.type));
    const bool isWhole = index.type->base != HlBase::Float;
    return Element(value, index.refs[0], isWhole, expression.parts[1]->begin);
}

/// The element of an array, the row of a matrix, or the component of a vector.
HlValue HlRunner::Element(const HlValue& value, HlRef index, bool isWhole, FxPlace place)
{
    const HlType& type = *value.type;
    HlValue result;
    uint32_t count = type.count;
    if (type.kind == HlKind::Array) {
        result.type = type.element;
    } else if (type.IsMatrix()) {
        result.type = unit.types.Vector(type.base, type.columns);
        count = type.rows;
    } else if (type.IsVector()) {
        result.type = unit.types.Scalar(type.base);
        count = type.columns;
    } else {
        return FailValue(place, FxError::BadIndex, HlTypes::Name(type) + " has no elements");
    }
    const uint32_t stride = result.type->cells;
    if (const std::optional<float> known = graph.ValueOf(index)) {
        const double at = std::trunc(double{*known});
        if (at < 0.0 || at >= count)
            return FailValue(place, FxError::BadIndex,
                             "there is no element " +
                                 std::to_string(static_cast<long long>(std::clamp(at, -1e9, 1e9))) +
                                 " of " + std::to_string(count));
        const auto first = value.refs.begin() + static_cast<ptrdiff_t>(at) * stride;
        result.refs.assign(first, first + stride);
        return result;
    }
    if (!Spend(place, value.refs.size()))
        return ErrorValue();
    if (!isWhole)
        index = Floor({index}, 1)[0];
    result.refs = IndexedConstants(value, index, stride);
    if (!result.refs.empty())
        return result;
    result.refs.assign(value.refs.begin(), value.refs.begin() + stride);
    for (uint32_t i = 1; i < count; ++i) {
        const auto first = value.refs.begin() + static_cast<ptrdiff_t>(i) * stride;
        const HlRef isHere = graph.AtLeast(index, graph.Literal(static_cast<float>(i) - 0.5f));
        result.refs =
            graph.Select({isHere}, {first, first + stride}, result.refs, RowOf(*result.type));
    }
    return result;
}

/// Constants of a vertex shader are read by an index register. Empty if the value is something else.
HlRefs HlRunner::IndexedConstants(const HlValue& value, HlRef index, uint32_t stride)
{
    HlRefs result;
    if (graph.Profile().isPixel || graph.Profile().constants == 0 ||
        value.type->kind != HlKind::Array || value.refs.size() < 2 * stride)
        return result;
    const auto registerOf = [&](size_t cell) { return graph.Of(value.refs[cell]).extra; };
    for (size_t i = 0; i < value.refs.size(); ++i)
        if (graph.Of(value.refs[i]).op != HlOp::Constant)
            return result;
    const uint32_t step = registerOf(stride) - registerOf(0);
    HlRef scaled = index;
    if (step != 1)
        scaled = graph.One(HlOp::Mul, index, graph.Literal(static_cast<float>(step)));
    if (graph.Of(scaled).op == HlOp::Indexed) // there is one index register
        scaled = graph.Copy({scaled})[0];
    for (size_t cell = 0; cell < stride; ++cell)
        result.emplace_back(graph.Indexed(registerOf(cell), scaled), value.refs[cell].Lane());
    return result;
}

} // namespace headless::hl

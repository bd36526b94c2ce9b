// Operators on numbers. Whole numbers are floats without a fraction.

#include "platform/headless/d3dx/language/HlRunner.h"

#include <algorithm>

#include "platform/headless/d3dx/effect/FxNumber.h"

namespace headless::hl {

namespace {

bool IsComparison(HlOperator op)
{
    return op >= HlOperator::Less && op <= HlOperator::NotEqual;
}

bool IsLogical(HlOperator op)
{
    return op == HlOperator::LogicalAnd || op == HlOperator::LogicalOr;
}

int32_t ComputeBits(HlOperator op, int32_t a, int32_t b)
{
    const auto x = static_cast<uint32_t>(a), y = static_cast<uint32_t>(b);
    switch (op) {
    case HlOperator::BitAnd:
        return static_cast<int32_t>(x & y);
    case HlOperator::BitOr:
        return static_cast<int32_t>(x | y);
    case HlOperator::BitXor:
        return static_cast<int32_t>(x ^ y);
    case HlOperator::ShiftLeft:
        return static_cast<int32_t>(x << (y & 31));
    default:
        return a >> (y & 31);
    }
}

} // namespace

/// Gives both operands one shape and one base, the wider of both.
bool HlRunner::Unify(HlValue& a, HlValue& b, FxPlace place)
{
    const HlType& x = *a.type;
    const HlType& y = *b.type;
    if (!x.IsNumber() || !y.IsNumber())
        return Fail(place, FxError::TypeMismatch,
                    "there is no such operation with " + HlTypes::Name(x) + " and " +
                        HlTypes::Name(y));
    const HlBase base = std::max(x.base, y.base);
    const HlType* shape = &x;
    if (x.cells == 1 && y.cells != 1) {
        shape = &y;
    } else if (x.cells != 1 && y.cells != 1) {
        if (x.form != y.form && x.cells != y.cells)
            return Fail(place, FxError::TypeMismatch,
                        "there is no such operation with " + HlTypes::Name(x) + " and " +
                            HlTypes::Name(y));
        shape = unit.types.Number(x.base, x.form, std::min(x.rows, y.rows),
                                  x.form == y.form ? std::min(x.columns, y.columns) : x.columns,
                                  x.isColumnMajor);
    }
    const HlType& type = *unit.types.WithBase(*shape, base);
    return Convert(a, type, place, false) && Convert(b, type, place, false);
}

HlValue HlRunner::EvaluateUnary(const HlExpression& expression)
{
    HlValue value = Evaluate(*expression.parts[0]);
    if (value.type->IsError())
        return value;
    if (!value.type->IsNumber())
        return FailValue(expression.place, FxError::TypeMismatch,
                         "a number is expected, not " + HlTypes::Name(*value.type));
    switch (expression.op) {
    case HlOperator::Minus:
        ConvertBase(value, std::max(value.type->base, HlBase::Int));
        for (HlRef& ref : value.refs)
            ref = graph.IsUndefined(ref) ? graph.Literal(0.0f) : ref.Negated();
        return value;
    case HlOperator::Not:
        ConvertBase(value, HlBase::Bool);
        for (HlRef& ref : value.refs)
            ref = graph.Not(ref);
        return value;
    case HlOperator::Complement:
        for (HlRef& ref : value.refs) {
            const std::optional<float> known = graph.ValueOf(ref);
            if (!known || value.type->base == HlBase::Float)
                return FailValue(expression.place, FxError::TypeMismatch,
                                 "operations on bits need whole numbers that the text tells");
            ref = graph.Literal(static_cast<float>(~fx::FxTruncate(*known)));
        }
        return value;
    default:
        return value;
    }
}

HlValue HlRunner::EvaluateBinary(const HlExpression& expression)
{
    HlValue a = Evaluate(*expression.parts[0]);
    HlValue b = Evaluate(*expression.parts[1]);
    return Compute(expression.op, std::move(a), std::move(b), expression.place);
}

HlValue HlRunner::Compute(HlOperator op, HlValue a, HlValue b, FxPlace place)
{
    if (a.type->IsError() || b.type->IsError())
        return ErrorValue();
    if (IsLogical(op) && a.type->IsNumber() && b.type->IsNumber()) {
        ConvertBase(a, HlBase::Bool);
        ConvertBase(b, HlBase::Bool);
    }
    if (!Unify(a, b, place) || !Spend(place, a.refs.size()))
        return ErrorValue();
    if (IsComparison(op))
        return Comparison(op, a, b);
    if (IsLogical(op)) {
        for (size_t i = 0; i < a.refs.size(); ++i)
            a.refs[i] = op == HlOperator::LogicalAnd ? graph.And(a.refs[i], b.refs[i])
                                                     : graph.Or(a.refs[i], b.refs[i]);
        return a;
    }
    if (op >= HlOperator::BitAnd && op <= HlOperator::ShiftRight)
        return Bits(op, a, b, place);
    if (a.type->base == HlBase::Bool) {
        ConvertBase(a, HlBase::Int);
        ConvertBase(b, HlBase::Int);
    }
    for (const HlRef ref : b.refs)
        if (a.type->base == HlBase::Int && (op == HlOperator::Divide || op == HlOperator::Modulo) &&
            graph.IsValue(ref, 0.0f))
            return FailValue(place, FxError::BadInitializer, "a whole number is divided by 0");
    return Arithmetic(op, a, b);
}

/// Matrices whose columns are registers are computed column by column.
bool HlRunner::HasColumns(const HlValue& value) const
{
    const HlType& type = *value.type;
    const auto isOne = [&](size_t step, size_t count) {
        for (size_t i = 1; i < count; ++i)
            if (value.refs[i * step].Node() != value.refs[0].Node())
                return false;
        return count > 1;
    };
    return type.IsMatrix() && graph.Of(value.refs[0]).op != HlOp::Literal &&
           isOne(type.columns, type.rows) && !isOne(1, type.columns);
}

HlValue HlRunner::Turned(const HlValue& value) const
{
    const HlType& type = *value.type;
    HlValue result = {unit.types.Matrix(type.base, type.columns, type.rows), {}};
    for (unsigned column = 0; column < type.columns; ++column)
        for (unsigned line = 0; line < type.rows; ++line)
            result.refs.push_back(value.refs[line * type.columns + column]);
    return result;
}

HlValue HlRunner::Arithmetic(HlOperator op, const HlValue& a, const HlValue& b)
{
    if (HasColumns(a) || HasColumns(b)) {
        HlValue result = Turned(Arithmetic(op, Turned(a), Turned(b)));
        result.type = a.type;
        return result;
    }
    const unsigned row = a.type->columns;
    const bool isWhole = a.type->base == HlBase::Int;
    HlRefs second = b.refs;
    switch (op) {
    case HlOperator::Subtract:
        for (HlRef& ref : second)
            ref = graph.IsUndefined(ref) ? graph.Literal(0.0f) : ref.Negated();
        [[fallthrough]];
    case HlOperator::Add:
        return {a.type, graph.Lanes(HlOp::Add, a.refs, second, {}, row)};
    case HlOperator::Multiply:
        return {a.type, graph.Lanes(HlOp::Mul, a.refs, second, {}, row)};
    case HlOperator::Divide:
        return {a.type, Divide(a.refs, b.refs, isWhole, row)};
    default:
        return {a.type, Modulo(a.refs, b.refs, isWhole, row)};
    }
}

HlValue HlRunner::Comparison(HlOperator op, const HlValue& a, const HlValue& b)
{
    HlValue result = {unit.types.WithBase(*a.type, HlBase::Bool), {}};
    const unsigned row = a.type->columns;
    const bool isTurned = op == HlOperator::Greater || op == HlOperator::LessEqual;
    const HlRefs& x = isTurned ? b.refs : a.refs;
    const HlRefs& y = isTurned ? a.refs : b.refs;
    if (op == HlOperator::Equal || op == HlOperator::NotEqual) {
        for (size_t i = 0; i < x.size(); ++i) {
            const HlRef isSame = graph.Same(x[i], y[i]);
            result.refs.push_back(op == HlOperator::Equal ? isSame : graph.Not(isSame));
        }
        return result;
    }
    const bool isLess = op == HlOperator::Less || op == HlOperator::Greater;
    result.refs = isLess ? graph.Less(x, y, row) : graph.AtLeast(x, y, row);
    return result;
}

/// Shaders have no bits: only numbers that the text tells.
HlValue HlRunner::Bits(HlOperator op, const HlValue& a, const HlValue& b, FxPlace place)
{
    HlValue result = {a.type, {}};
    for (size_t i = 0; i < a.refs.size(); ++i) {
        const std::optional<float> x = graph.ValueOf(a.refs[i]), y = graph.ValueOf(b.refs[i]);
        if (!x || !y || a.type->base == HlBase::Float)
            return FailValue(place, FxError::TypeMismatch,
                             "operations on bits need whole numbers that the text tells");
        result.refs.push_back(graph.Literal(
            static_cast<float>(ComputeBits(op, fx::FxTruncate(*x), fx::FxTruncate(*y)))));
    }
    return result;
}

// ---- Parts of operations

HlRefs HlRunner::FractionOf(const HlRefs& a, unsigned row)
{
    if (graph.Profile().version != 0xFFFE0101)
        return graph.Lanes(HlOp::Frc, a, {}, {}, row);
    HlRefs result; // vs 1.1 gives one or two
    for (const HlRef ref : a)
        result.push_back(graph.One(HlOp::Frc, ref));
    return result;
}

HlRefs HlRunner::AbsOf(const HlRefs& a, unsigned row)
{
    if (graph.Profile().version != 0xFFFE0101)
        return graph.Lanes(HlOp::Abs, a, {}, {}, row);
    HlRefs negative = a;
    for (HlRef& ref : negative)
        ref = ref.Negated();
    return graph.Lanes(HlOp::Max, a, negative, {}, row);
}

HlRefs HlRunner::Floor(const HlRefs& a, unsigned row)
{
    HlRefs fraction = FractionOf(a, row);
    for (HlRef& ref : fraction)
        ref = ref.Negated();
    return graph.Lanes(HlOp::Add, a, fraction, {}, row);
}

/// Towards 0.
HlRefs HlRunner::Truncate(const HlRefs& a, unsigned row)
{
    const HlRefs whole = Floor(AbsOf(a, row), row);
    HlRefs negative = whole;
    for (HlRef& ref : negative)
        ref = ref.Negated();
    const HlRefs isBelow = graph.Less(a, HlRefs(a.size(), graph.Literal(0.0f)), row);
    return graph.Select(isBelow, negative, whole, row);
}

HlRefs HlRunner::Reciprocal(const HlRefs& a)
{
    HlRefs result;
    for (const HlRef ref : a)
        result.push_back(graph.One(HlOp::Rcp, ref));
    return result;
}

/// Whole numbers: half a unit more keeps the rounding of the reciprocal below the next number.
HlRefs HlRunner::Divide(const HlRefs& a, const HlRefs& b, bool isWhole, unsigned row)
{
    if (!isWhole)
        return graph.Lanes(HlOp::Mul, a, Reciprocal(b), {}, row);
    const HlRefs half(a.size(), graph.Literal(0.5f));
    const HlRefs more = graph.Lanes(HlOp::Add, AbsOf(a, row), half, {}, row);
    const HlRefs whole =
        Floor(graph.Lanes(HlOp::Mul, more, Reciprocal(AbsOf(b, row)), {}, row), row);
    HlRefs negative = whole;
    for (HlRef& ref : negative)
        ref = ref.Negated();
    HlRefs isBelow;
    for (const HlRef ref : graph.Lanes(HlOp::Mul, a, b, {}, row))
        isBelow.push_back(graph.Less(ref, graph.Literal(0.0f)));
    return graph.Select(isBelow, negative, whole, row);
}

/// The result has the sign of `a`.
HlRefs HlRunner::Modulo(const HlRefs& a, const HlRefs& b, bool isWhole, unsigned row)
{
    HlRefs back;
    if (isWhole) {
        back = graph.Lanes(HlOp::Mul, Divide(a, b, true, row), b, {}, row);
        for (HlRef& ref : back)
            ref = ref.Negated();
        return graph.Lanes(HlOp::Add, a, back, {}, row);
    }
    const HlRefs ratio = graph.Lanes(HlOp::Mul, a, Reciprocal(b), {}, row);
    const HlRefs fraction = FractionOf(AbsOf(ratio, row), row);
    HlRefs negative = fraction, isBelow;
    for (HlRef& ref : negative)
        ref = ref.Negated();
    for (const HlRef ref : ratio)
        isBelow.push_back(graph.Less(ref, graph.Literal(0.0f)));
    return graph.Lanes(HlOp::Mul, graph.Select(isBelow, negative, fraction, row), b, {}, row);
}

} // namespace headless::hl

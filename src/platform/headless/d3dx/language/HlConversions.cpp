// Conversions between types, initial values, the choice of an overload.

#include "platform/headless/d3dx/language/HlRunner.h"

#include <algorithm>
#include <cmath>

namespace headless::hl {

void HlRunner::ConvertBase(HlValue& value, HlBase base)
{
    const HlBase from = value.type->base;
    value.type = unit.types.WithBase(*value.type, base);
    if (from == base || (base == HlBase::Int && from == HlBase::Bool) || base == HlBase::Float)
        return;
    if (base == HlBase::Int) {
        value.refs = Truncate(value.refs, value.type->columns);
        return;
    }
    for (HlRef& ref : value.refs)
        ref = graph.Not(graph.Same(ref, graph.Literal(0.0f)));
}

/// Numbers: one for all, fewer, or the same number in another form.
bool HlRunner::ConvertShape(HlValue& value, const HlType& type, FxPlace place, bool isExplicit)
{
    const HlType& from = *value.type;
    const bool isSame = from.rows == type.rows && from.columns == type.columns;
    if (isSame)
        return true;
    if (from.cells == 1) {
        value.refs.assign(type.cells, value.refs[0]);
        return true;
    }
    const bool isReshaped =
        from.cells == type.cells && (isExplicit || from.rows == 1 || type.rows == 1);
    const bool isCut = type.rows <= from.rows && type.columns <= from.columns &&
                       (from.form == type.form || type.cells == 1);
    if (!isReshaped && !isCut)
        return Fail(place, FxError::TypeMismatch,
                    HlTypes::Name(from) + " does not become " + HlTypes::Name(type));
    if (isReshaped)
        return true;
    if (!isExplicit)
        Warn(place, HlTypes::Name(from) + " is cut to " + HlTypes::Name(type));
    HlRefs cells;
    for (unsigned row = 0; row < type.rows; ++row)
        for (unsigned column = 0; column < type.columns; ++column)
            cells.push_back(value.refs[row * from.columns + column]);
    value.refs = cells;
    return true;
}

/// A cast between an array of numbers and a vector or matrix with as many. False for others.
bool HlRunner::ConvertCells(HlValue& value, const HlType& type)
{
    const HlType* from = value.type;
    const HlType* to = &type;
    while (from->kind == HlKind::Array)
        from = from->element;
    while (to->kind == HlKind::Array)
        to = to->element;
    if (!from->IsNumber() || !to->IsNumber() || value.refs.size() != type.cells)
        return false;
    for (HlRef& ref : value.refs) {
        HlValue cell = {unit.types.Scalar(from->base), {ref}};
        ConvertBase(cell, to->base);
        ref = cell.refs[0];
    }
    value.type = &type;
    return true;
}

bool HlRunner::Convert(HlValue& value, const HlType& type, FxPlace place, bool isExplicit)
{
    const HlType& from = *value.type;
    if (&from == &type)
        return true;
    const bool isSameStruct = from.kind == HlKind::Struct && type.kind == HlKind::Struct &&
                              from.structure == type.structure;
    const bool isSameArray =
        from.kind == HlKind::Array && type.kind == HlKind::Array && from.cells == type.cells;
    const bool isSampler = from.kind == HlKind::Sampler && type.kind == HlKind::Sampler;
    if (from.IsNumber() && type.IsNumber()) {
        if (!ConvertShape(value, type, place, isExplicit))
            return false;
        value.type = unit.types.WithBase(type, from.base);
        ConvertBase(value, type.base);
    } else if (from.IsNumber() && from.cells == 1 && isExplicit &&
               (type.kind == HlKind::Struct || type.kind == HlKind::Array)) {
        value.refs.assign(type.cells, value.refs[0]);
    } else if (isExplicit && ConvertCells(value, type)) {
        return true;
    } else if (!isSameStruct && !isSameArray && !isSampler) {
        return Fail(place, FxError::TypeMismatch,
                    HlTypes::Name(from) + " does not become " + HlTypes::Name(type));
    }
    value.type = &type;
    return true;
}

// ---- Initial values

/// The numbers of an initial value, in order, whatever braces stand around them.
void HlRunner::Collect(const HlExpression& expression,
                       std::vector<std::pair<HlRef, HlBase>>& cellsOut)
{
    if (expression.kind == HlExpressionKind::List) {
        for (const HlExpression* part : expression.parts)
            Collect(*part, cellsOut);
        return;
    }
    const HlValue value = Evaluate(expression);
    const HlBase base = value.type->IsNumber() ? value.type->base : HlBase::Float;
    for (const HlRef ref : value.refs)
        cellsOut.emplace_back(ref, base);
}

bool HlRunner::Initialize(const HlType& type, const HlExpression& expression, HlRefs& refsOut)
{
    if (expression.kind != HlExpressionKind::List) {
        HlValue value = Evaluate(expression);
        if (value.type->IsError() || !Convert(value, type, expression.begin, false))
            return false;
        refsOut = value.refs;
        return true;
    }
    std::vector<std::pair<HlRef, HlBase>> cells;
    Collect(expression, cells);
    if (log.Failed())
        return false;
    const bool isOpen = type.kind == HlKind::Array && type.count == 0;
    const size_t unitCells = isOpen ? std::max(1u, type.element->cells) : 1;
    if (isOpen ? cells.empty() || cells.size() % unitCells != 0 : cells.size() != type.cells)
        return Fail(expression.place, FxError::BadInitializer,
                    "there are " + std::to_string(cells.size()) + " values, not " +
                        std::to_string(isOpen ? unitCells : type.cells));
    const HlType* leaf = &type;
    while (leaf->kind == HlKind::Array)
        leaf = leaf->element;
    for (const auto& [ref, base] : cells) {
        HlValue cell = {unit.types.Scalar(base), {ref}};
        if (leaf->IsNumber())
            ConvertBase(cell, leaf->base);
        refsOut.push_back(cell.refs[0]);
    }
    return true;
}

// ---- Overloads

/// How far a type is from another: 0 the same, higher worse, -1 not at all.
int HlRunner::Cost(const HlType& from, const HlType& to) const
{
    if (from.IsError() || &from == &to)
        return 0;
    if (from.kind != to.kind)
        return -1;
    if (from.kind == HlKind::Struct)
        return from.structure == to.structure ? 0 : -1;
    if (from.kind == HlKind::Array)
        return from.cells == to.cells ? 0 : -1;
    if (from.kind == HlKind::Sampler)
        return from.sampler == to.sampler ? 0 : 1;
    if (!from.IsNumber())
        return -1;
    const int base = from.base == to.base ? 0 : from.base < to.base ? 1 : 2;
    if (from.rows == to.rows && from.columns == to.columns)
        return base;
    if (from.cells == 1)
        return 8 + base;
    const bool isCut = to.rows <= from.rows && to.columns <= from.columns &&
                       (from.form == to.form || to.cells == 1);
    if (isCut)
        return 16 + base;
    return from.cells == to.cells && (from.rows == 1 || to.rows == 1) ? 12 + base : -1;
}

} // namespace headless::hl

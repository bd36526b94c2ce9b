// Assignments and the places that they write.

#include "platform/headless/d3dx/language/HlRunner.h"

#include <algorithm>
#include <cmath>

namespace headless::hl {

HlPlace HlRunner::IndexPlace(const HlExpression& expression)
{
    HlPlace place = FindPlace(*expression.parts[0]);
    HlValue index = Evaluate(*expression.parts[1]);
    if (!place.type || index.type->IsError())
        return {};
    const HlType& type = *place.type;
    const FxPlace at = expression.parts[1]->begin;
    uint32_t count = type.kind == HlKind::Array ? type.count
                     : type.IsMatrix()          ? type.rows
                                                : type.columns;
    const HlType* const element = type.kind == HlKind::Array ? type.element
                                  : type.IsMatrix() ? unit.types.Vector(type.base, type.columns)
                                  : type.IsVector() ? unit.types.Scalar(type.base)
                                                    : nullptr;
    if (!element || !index.type->IsNumber() || index.refs.size() != 1) {
        Fail(at, FxError::BadIndex,
             element ? "an index is one number, not " + HlTypes::Name(*index.type)
                     : HlTypes::Name(type) + " has no elements");
        return {};
    }
    size_t first = 0;
    if (const std::optional<float> known = graph.ValueOf(index.refs[0])) {
        const double number = std::trunc(double{*known});
        if (number < 0.0 || number >= count) {
            Fail(at, FxError::BadIndex,
                 "there is no element " +
                     std::to_string(static_cast<long long>(std::clamp(number, -1e9, 1e9))) +
                     " of " + std::to_string(count));
            return {};
        }
        first = static_cast<size_t>(number) * element->cells;
    } else if (place.isIndexed) {
        Fail(at, FxError::BadIndex, "only one index of a place that is written may be unknown");
        return {};
    } else {
        place.isIndexed = true;
        place.index = index.type->base == HlBase::Float ? Floor(index.refs, 1)[0] : index.refs[0];
        place.stride =
            place.slots.size() > element->cells ? place.slots[element->cells] - place.slots[0] : 1;
        place.count = count;
    }
    place.slots = {place.slots.begin() + static_cast<ptrdiff_t>(first),
                   place.slots.begin() + static_cast<ptrdiff_t>(first + element->cells)};
    place.type = element;
    return place;
}

/// Reports an error, and gives no type, for what cannot be written.
HlPlace HlRunner::FindPlace(const HlExpression& expression)
{
    HlPlace place;
    if (expression.kind == HlExpressionKind::Index)
        return IndexPlace(expression);
    if (expression.kind == HlExpressionKind::Name) {
        const Named* const named = FindName(expression.name);
        const bool isConst = named && named->variable->isConst;
        if (!named || isConst) {
            const bool exists = named || unit.globals.contains(expression.name);
            Fail(expression.place, exists ? FxError::TypeMismatch : FxError::UnknownName,
                 exists ? "'" + std::string(expression.name) + "' is a constant"
                        : "there is no variable '" + std::string(expression.name) + "'");
            return {};
        }
        place.type = named->type;
        for (uint32_t i = 0; i < named->type->cells; ++i)
            place.slots.push_back(named->slot + i);
        return place;
    }
    if (expression.kind != HlExpressionKind::Member) {
        Fail(expression.place, FxError::TypeMismatch, "this is no variable that can be written");
        return {};
    }
    place = FindPlace(*expression.parts[0]);
    if (!place.type)
        return {};
    std::vector<uint32_t> cells;
    if (place.type->kind == HlKind::Struct) {
        const HlMember* const member = place.type->structure->Find(expression.name);
        if (!member) {
            Fail(expression.place, FxError::BadComponent,
                 HlTypes::Name(*place.type) + " has no member '" + std::string(expression.name) +
                     "'");
            return {};
        }
        for (uint32_t i = 0; i < member->type->cells; ++i)
            cells.push_back(member->first + i);
        place.type = member->type;
    } else if (!Swizzle(*place.type, expression.name, expression.place, cells, place.type)) {
        return {};
    } else {
        std::vector<uint32_t> sorted = cells;
        std::sort(sorted.begin(), sorted.end());
        if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end()) {
            Fail(expression.place, FxError::BadComponent, "a component is written twice");
            return {};
        }
    }
    std::vector<uint32_t> chosen;
    for (const uint32_t cell : cells)
        chosen.push_back(place.slots[cell]);
    place.slots = chosen;
    return place;
}

HlValue HlRunner::Load(const HlPlace& place)
{
    HlValue value = {place.type, {}};
    for (const uint32_t slot : place.slots)
        value.refs.push_back(slots[slot]);
    for (uint32_t i = 1; place.isIndexed && i < place.count; ++i) {
        HlRefs other;
        for (const uint32_t slot : place.slots)
            other.push_back(slots[slot + i * place.stride]);
        const HlRef isHere =
            graph.AtLeast(place.index, graph.Literal(static_cast<float>(i) - 0.5f));
        value.refs = graph.Select({isHere}, other, value.refs);
    }
    return value;
}

/// With an index that is not known every element is written: its own value or the new one.
void HlRunner::Store(const HlPlace& place, const HlRefs& refs)
{
    if (!place.isIndexed) {
        for (size_t i = 0; i < refs.size(); ++i)
            Write(place.slots[i], refs[i]);
        return;
    }
    for (uint32_t element = 0; element < place.count; ++element) {
        HlRefs old;
        for (const uint32_t slot : place.slots)
            old.push_back(slots[slot + element * place.stride]);
        const HlRef isHere = graph.Same(place.index, graph.Literal(static_cast<float>(element)));
        const HlRefs chosen = graph.Select({isHere}, refs, old);
        for (size_t i = 0; i < chosen.size(); ++i)
            Write(place.slots[i] + element * place.stride, chosen[i]);
    }
}

HlValue HlRunner::EvaluateAssign(const HlExpression& expression)
{
    HlValue value = Evaluate(*expression.parts[1]);
    const HlPlace place = FindPlace(*expression.parts[0]);
    if (!place.type || value.type->IsError())
        return ErrorValue();
    if (expression.isCompound) {
        value = Compute(expression.op, Load(place), value, expression.place);
        if (value.type->IsError())
            return value;
    }
    if (!Convert(value, *place.type, expression.place, false) ||
        !Spend(expression.place, value.refs.size() * std::max(1u, place.count)))
        return ErrorValue();
    Store(place, value.refs);
    return value;
}

HlValue HlRunner::EvaluateStep(const HlExpression& expression)
{
    const HlPlace place = FindPlace(*expression.parts[0]);
    if (!place.type)
        return ErrorValue();
    const HlValue before = Load(place);
    const HlValue one = {unit.types.Scalar(HlBase::Int), {graph.Literal(1.0f)}};
    HlValue after =
        Compute(expression.op == HlOperator::Increment ? HlOperator::Add : HlOperator::Subtract,
                before, one, expression.place);
    if (after.type->IsError() || !Convert(after, *place.type, expression.place, true))
        return ErrorValue();
    Store(place, after.refs);
    return expression.isPrefix ? after : before;
}

} // namespace headless::hl

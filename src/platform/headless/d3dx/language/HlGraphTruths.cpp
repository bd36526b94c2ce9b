// Comparisons and choices. Pixel shaders compare with 0; vertex shaders have no choice but a sum of products.

#include "platform/headless/d3dx/language/HlGraph.h"

#include <utility>

namespace headless::hl {

HlRefs HlGraph::Distances(const HlRefs& a, const HlRefs& b, unsigned row)
{
    HlRefs negative;
    for (const HlRef ref : b)
        negative.push_back(Clean(ref).Negated());
    return Lanes(HlOp::Add, a, negative, {}, row);
}

HlRefs HlGraph::Less(const HlRefs& a, const HlRefs& b, unsigned row)
{
    if (!profile.isPixel)
        return Lanes(HlOp::Slt, a, b, {}, row);
    const HlRefs zeros(a.size(), Literal(0.0f)), ones(a.size(), Literal(1.0f));
    return Lanes(HlOp::Cmp, Distances(a, b, row), zeros, ones, row);
}

HlRefs HlGraph::AtLeast(const HlRefs& a, const HlRefs& b, unsigned row)
{
    if (!profile.isPixel)
        return Lanes(HlOp::Sge, a, b, {}, row);
    const HlRefs zeros(a.size(), Literal(0.0f)), ones(a.size(), Literal(1.0f));
    return Lanes(HlOp::Cmp, Distances(a, b, row), ones, zeros, row);
}

HlRef HlGraph::Same(HlRef a, HlRef b)
{
    if (!profile.isPixel)
        return One(HlOp::Mul, {One(HlOp::Sge, a, b), One(HlOp::Sge, b, a)});
    const HlRef distance = One(HlOp::Abs, One(HlOp::Add, a, Clean(b).Negated()));
    const HlRef one = Literal(1.0f), zero = Literal(0.0f);
    return One(HlOp::Cmp, distance.Negated(), one, zero);
}

HlRef HlGraph::Not(HlRef truth)
{
    const HlNode node = Of(truth);
    const unsigned lane = truth.Lane();
    if (node.op == HlOp::Slt || node.op == HlOp::Sge)
        return One(node.op == HlOp::Slt ? HlOp::Sge : HlOp::Slt, node.source[0][lane],
                   node.source[1][lane]);
    if (node.op == HlOp::Cmp && ValueOf(node.source[1][lane]) && ValueOf(node.source[2][lane]))
        return One(HlOp::Cmp, node.source[0][lane], node.source[2][lane], node.source[1][lane]);
    return One(HlOp::Add, Literal(1.0f), truth.Negated());
}

/// Comparisons of a row are turned together.
HlRefs HlGraph::Not(const HlRefs& truths, unsigned row)
{
    HlRefs left, right, result;
    const HlOp op = Of(truths[0]).op;
    bool isRow = op == HlOp::Slt || op == HlOp::Sge;
    for (const HlRef truth : truths) {
        isRow = isRow && Of(truth).op == op;
        left.push_back(Of(truth).source[0][truth.Lane()]);
        right.push_back(Of(truth).source[1][truth.Lane()]);
    }
    if (isRow)
        return Lanes(op == HlOp::Slt ? HlOp::Sge : HlOp::Slt, left, right, {}, row);
    for (const HlRef truth : truths)
        result.push_back(Not(truth));
    return result;
}

HlRef HlGraph::And(HlRef a, HlRef b)
{
    return One(HlOp::Mul, a, b);
}

HlRef HlGraph::Or(HlRef a, HlRef b)
{
    return One(HlOp::Max, a, b);
}

HlRefs HlGraph::Select(const HlRefs& truth, const HlRefs& a, const HlRefs& b, unsigned row)
{
    HlRefs conditions(a.size()), yes(a.size()), no(a.size());
    for (size_t i = 0; i < a.size(); ++i) {
        const HlRef condition = Clean(truth[truth.size() == 1 ? 0 : i]);
        const HlNode node = Of(condition);
        const unsigned lane = condition.Lane();
        // What only one side has is nobody's value on the other.
        yes[i] = IsUndefined(a[i]) ? b[i] : a[i];
        no[i] = IsUndefined(b[i]) ? yes[i] : b[i];
        conditions[i] = condition;
        if (!profile.isPixel)
            continue;
        const bool isChoice = node.op == HlOp::Cmp && !condition.IsNegative();
        if (isChoice && IsValue(node.source[1][lane], 1.0f) &&
            IsValue(node.source[2][lane], 0.0f)) {
            conditions[i] = node.source[0][lane];
        } else if (isChoice && IsValue(node.source[1][lane], 0.0f) &&
                   IsValue(node.source[2][lane], 1.0f)) {
            conditions[i] = node.source[0][lane];
            std::swap(yes[i], no[i]);
        } else {
            conditions[i] = condition.Negated();
            std::swap(yes[i], no[i]);
        }
    }
    if (profile.isPixel)
        return Lanes(HlOp::Cmp, conditions, yes, no, row);
    const HlRefs opposite = Not(conditions, row);
    const HlRefs first = Lanes(HlOp::Mul, yes, conditions, {}, row);
    const HlRefs second = Lanes(HlOp::Mul, no, opposite, {}, row);
    HlRefs result = Lanes(HlOp::Add, first, second, {}, row);
    for (size_t i = 0; i < a.size(); ++i)
        if (yes[i] == no[i])
            result[i] = yes[i];
    return result;
}

} // namespace headless::hl

#include "platform/headless/d3dx/language/HlGraph.h"

#include "platform/headless/d3dx/language/HlCompute.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace headless::hl {

namespace {

unsigned SourcesOf(HlOp op)
{
    switch (op) {
    case HlOp::Mad:
    case HlOp::Cmp:
        return 3;
    case HlOp::Add:
    case HlOp::Mul:
    case HlOp::Min:
    case HlOp::Max:
    case HlOp::Slt:
    case HlOp::Sge:
    case HlOp::Pow:
        return 2;
    default:
        return 1;
    }
}

bool IsCommutative(HlOp op)
{
    return op == HlOp::Add || op == HlOp::Mul || op == HlOp::Min || op == HlOp::Max;
}

} // namespace

HlGraph::HlGraph(const HlProfile& target) : profile(target)
{
    nodes.emplace_back().lanes = 4; // the undefined one
}

size_t HlGraph::Hash::operator()(const Key& key) const
{
    uint64_t hash = 0xcbf29ce484222325u;
    for (const uint32_t word : key)
        hash = (hash ^ word) * 0x100000001b3u;
    return static_cast<size_t>(hash ^ hash >> 29);
}

/// Leaves are the same in all blocks.
HlRef HlGraph::Remember(const Key& key, HlRef ref)
{
    known.emplace(key, ref);
    if (!blocks.empty() && !HlIsLeaf(static_cast<HlOp>(key[0])))
        blocks.back().push_back(key);
    return ref;
}

void HlGraph::CloseBlock()
{
    for (const Key& key : blocks.back())
        known.erase(key);
    blocks.pop_back();
}

void HlGraph::DropEffects(size_t mark)
{
    for (size_t i = mark; i < nodes.size(); ++i)
        if (HlHasEffect(nodes[i].op)) {
            nodes[i] = {};
            nodes[i].lanes = 0;
        }
}

// ---- Leaves

/// Numbers are stored without their sign, so that 1 and -1 share a place.
HlRef HlGraph::Literal(float value)
{
    const bool isNegative = std::signbit(value) && !std::isnan(value);
    const uint32_t bits = std::bit_cast<uint32_t>(isNegative ? -value : value);
    const HlRef ref = {Leaf(HlOp::Literal, bits), 0};
    return isNegative ? ref.Negated() : ref;
}

std::optional<float> HlGraph::ValueOf(HlRef ref) const
{
    const HlNode& node = Of(ref);
    if (node.op == HlOp::Undefined)
        return 0.0f;
    if (node.op != HlOp::Literal)
        return std::nullopt;
    const float value = std::bit_cast<float>(node.extra);
    return ref.IsNegative() ? -value : value;
}

uint32_t HlGraph::Leaf(HlOp op, uint32_t extra)
{
    const Key key = {static_cast<uint32_t>(op), extra};
    const auto found = known.find(key);
    if (found != known.end())
        return found->second.Node();
    HlNode& node = nodes.emplace_back();
    node.op = op;
    node.lanes = op == HlOp::Literal || op == HlOp::Sampler ? 1 : 4;
    node.extra = extra;
    return Remember(key, {static_cast<uint32_t>(nodes.size() - 1), 0}).Node();
}

uint32_t HlGraph::Indexed(uint32_t base, HlRef index)
{
    const Key key = {static_cast<uint32_t>(HlOp::Indexed), base, index.Bits()};
    const auto found = known.find(key);
    if (found != known.end())
        return found->second.Node();
    HlNode& node = nodes.emplace_back();
    node.op = HlOp::Indexed;
    node.lanes = 4;
    node.sources = 1;
    node.extra = base;
    node.source[0][0] = index;
    return Remember(key, {static_cast<uint32_t>(nodes.size() - 1), 0}).Node();
}

uint32_t HlGraph::Variable(unsigned lanes)
{
    HlNode& node = nodes.emplace_back();
    node.op = HlOp::Variable;
    node.lanes = static_cast<uint8_t>(lanes);
    return static_cast<uint32_t>(nodes.size() - 1);
}

// ---- Steps

/// What was never given a value counts as 0.
HlRef HlGraph::Clean(HlRef ref)
{
    return IsUndefined(ref) ? Literal(0.0f) : ref;
}

std::optional<HlRef> HlGraph::FoldSimple(HlOp op, HlRef a, HlRef b, HlRef c)
{
    switch (op) {
    case HlOp::Mov:
        return a;
    case HlOp::Add:
        if (IsValue(b, 0.0f))
            return a;
        if (a == b.Negated())
            return Literal(0.0f);
        break;
    case HlOp::Mul:
        if (IsValue(b, 0.0f))
            return Literal(0.0f);
        if (IsValue(b, 1.0f))
            return a;
        if (IsValue(b, -1.0f))
            return a.Negated();
        break;
    case HlOp::Min:
    case HlOp::Max:
        if (a == b)
            return a;
        break;
    case HlOp::Cmp:
        if (b == c)
            return b;
        break;
    case HlOp::Slt:
    case HlOp::Sge:
        if (a == b)
            return Literal(op == HlOp::Sge ? 1.0f : 0.0f);
        break;
    case HlOp::Abs:
        if (Of(a).op == HlOp::Abs)
            return a.Positive();
        break;
    case HlOp::Saturate:
        if (Of(a).op == HlOp::Saturate && !a.IsNegative())
            return a;
        break;
    default:
        break;
    }
    return std::nullopt;
}

std::optional<HlRef> HlGraph::Fold(HlOp op, HlRef a, HlRef b, HlRef c)
{
    const std::optional<float> x = ValueOf(a), y = ValueOf(b), z = ValueOf(c);
    const unsigned sources = SourcesOf(op);
    if (op == HlOp::Cmp && x)
        return *x >= 0.0f ? b : c;
    const bool isKnown = x && (sources < 2 || y) && (sources < 3 || z);
    if (isKnown && (op == HlOp::Dsx || op == HlOp::Dsy))
        return Literal(0.0f);
    if (isKnown) {
        const float value = HlCompute(op, *x, y.value_or(0.0f), z.value_or(0.0f));
        if (std::isfinite(value) || op == HlOp::Mov)
            return Literal(value);
    }
    return FoldSimple(op, a, b, c);
}

/// One step of up to four lanes. Lanes that are all known already, side by side, are not computed again;
/// fetching them from several places would cost as much as a new step.
void HlGraph::Row(HlOp op, std::span<HlRef> result, std::span<const HlRef> a,
                  std::span<const HlRef> b, std::span<const HlRef> c)
{
    HlNode node;
    node.op = op;
    node.lanes = 0;
    node.sources = static_cast<uint8_t>(SourcesOf(op));
    Key keys[4], rowKeys[4];
    int laneOf[4] = {-1, -1, -1, -1};
    bool isFolded[4], needsStep = false;
    for (unsigned i = 0; i < result.size(); ++i) {
        HlRef x = Clean(a[i]), y = node.sources > 1 ? Clean(b[i]) : HlRef();
        // Numbers, and what is older, stand second.
        if (IsCommutative(op) && (ValueOf(x) || (!ValueOf(y) && x.Bits() > y.Bits())))
            std::swap(x, y);
        const HlRef z = node.sources > 2 ? Clean(c[i]) : HlRef();
        const std::optional<HlRef> folded = Fold(op, x, y, z);
        isFolded[i] = folded.has_value();
        result[i] = folded.value_or(HlRef());
        needsStep |= !isFolded[i];
        rowKeys[i] = {static_cast<uint32_t>(op), 0, x.Bits(), y.Bits(), z.Bits()};
    }
    for (unsigned i = 0; i < result.size() && needsStep; ++i) {
        // A step for its neighbours keeps a value beside them.
        if (isFolded[i] && (ValueOf(result[i]) || op == HlOp::Cmp))
            continue;
        const unsigned lane = node.lanes;
        const auto same = static_cast<unsigned>(std::find(keys, keys + lane, rowKeys[i]) - keys);
        laneOf[i] = static_cast<int>(same);
        if (same < lane)
            continue;
        ++node.lanes;
        for (unsigned s = 0; s < 3; ++s)
            node.source[s][lane] = HlRef::FromBits(rowKeys[i][2 + s]);
        keys[lane] = rowKeys[i];
    }
    if (node.lanes == 0)
        return;
    node.width = node.lanes;
    HlRef lanes[4];
    FindOrAdd(node, keys, lanes);
    for (unsigned i = 0; i < result.size(); ++i)
        if (laneOf[i] >= 0)
            result[i] = lanes[laneOf[i]];
}

void HlGraph::FindOrAdd(const HlNode& node, std::span<const Key> keys, std::span<HlRef> lanesOut)
{
    bool isKnown = true;
    for (unsigned lane = 0; lane < node.lanes && isKnown; ++lane) {
        const auto found = known.find(keys[lane]);
        isKnown = found != known.end() && (lane == 0 || found->second.Node() == lanesOut[0].Node());
        if (isKnown)
            lanesOut[lane] = found->second;
    }
    if (isKnown)
        return;
    nodes.push_back(node);
    for (unsigned lane = 0; lane < node.lanes; ++lane) {
        lanesOut[lane] = {static_cast<uint32_t>(nodes.size() - 1), lane};
        if (!known.contains(keys[lane]))
            Remember(keys[lane], lanesOut[lane]);
    }
}

HlRefs HlGraph::Lanes(HlOp op, const HlRefs& a, const HlRefs& b, const HlRefs& c, unsigned row)
{
    HlRefs result(a.size());
    for (size_t first = 0; first < a.size(); first += row) {
        const size_t count = std::min<size_t>(row, a.size() - first);
        const auto part = [&](const HlRefs& all) {
            return all.empty() ? std::span<const HlRef>() : std::span(all).subspan(first, count);
        };
        Row(op, std::span(result).subspan(first, count), part(a), part(b), part(c));
    }
    return result;
}

HlRef HlGraph::One(HlOp op, HlRef a, HlRef b, HlRef c)
{
    HlRef result;
    Row(op, {&result, 1}, {&a, 1}, {&b, 1}, {&c, 1});
    return result;
}

HlRef HlGraph::Dot(const HlRefs& a, const HlRefs& b)
{
    HlRef sum = Literal(0.0f);
    bool isKnown = true;
    for (size_t i = 0; i < a.size(); ++i)
        isKnown = isKnown &&
                  ((ValueOf(a[i]) && ValueOf(b[i])) || IsValue(a[i], 0.0f) || IsValue(b[i], 0.0f));
    // vs has no product of two; there, and where numbers are known, sums do.
    if (isKnown || a.size() == 1 || (a.size() == 2 && !profile.isPixel)) {
        for (size_t i = 0; i < a.size(); ++i)
            sum = One(HlOp::Add, One(HlOp::Mul, a[i], b[i]), sum);
        return sum;
    }
    const HlRefs sources[] = {a, b};
    const HlOp op = a.size() == 2 ? HlOp::Dot2 : a.size() == 3 ? HlOp::Dot3 : HlOp::Dot4;
    return {Wide(op, 1, 0, sources), 0};
}

/// A step whose lanes belong together.
uint32_t HlGraph::Wide(HlOp op, unsigned lanes, uint32_t extra, std::span<const HlRefs> sources)
{
    HlNode node;
    node.op = op;
    node.lanes = static_cast<uint8_t>(lanes);
    node.width = static_cast<uint8_t>(sources[0].size());
    node.sources = static_cast<uint8_t>(sources.size());
    node.extra = extra;
    Key key = {static_cast<uint32_t>(op), extra};
    size_t at = 2;
    const bool isShort = sources.size() * node.width <= key.size() - at;
    for (size_t i = 0; i < sources.size(); ++i)
        for (size_t lane = 0; lane < sources[i].size(); ++lane) {
            node.source[i][lane] = Clean(sources[i][lane]);
            if (isShort)
                key[at++] = node.source[i][lane].Bits();
        }
    const auto found = isShort ? known.find(key) : known.end();
    if (found != known.end())
        return found->second.Node();
    nodes.push_back(node);
    const HlRef made = {static_cast<uint32_t>(nodes.size() - 1), 0};
    return isShort ? Remember(key, made).Node() : made.Node();
}

HlRefs HlGraph::Copy(const HlRefs& values)
{
    HlNode node;
    node.op = HlOp::Mov;
    node.lanes = node.width = static_cast<uint8_t>(values.size());
    node.sources = 1;
    HlRefs result;
    for (unsigned lane = 0; lane < values.size(); ++lane) {
        node.source[0][lane] = Clean(values[lane]);
        result.emplace_back();
    }
    nodes.push_back(node);
    for (unsigned lane = 0; lane < values.size(); ++lane)
        result[lane] = {static_cast<uint32_t>(nodes.size() - 1), lane};
    return result;
}

uint32_t HlGraph::Effect(HlOp op, uint32_t extra, const HlRefs& a, const HlRefs& b)
{
    HlNode node;
    node.op = op;
    node.lanes = 0;
    node.width = static_cast<uint8_t>(a.size());
    node.sources = a.empty() ? 0 : b.empty() ? 1 : 2;
    node.extra = extra;
    for (size_t lane = 0; lane < a.size(); ++lane)
        node.source[0][lane] = Clean(a[lane]);
    for (size_t lane = 0; lane < b.size(); ++lane)
        node.source[1][lane] = Clean(b[lane]);
    nodes.push_back(node);
    return static_cast<uint32_t>(nodes.size() - 1);
}

} // namespace headless::hl

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/headless/d3dx/language/HlProfile.h"

namespace headless::hl {

/// The steps of a program. `Mov` to `Dsy` work on each lane alone.
enum class HlOp : uint8_t {
    // Values that exist without a step.
    Undefined,
    Literal,  ///< `extra`: the bits of a number that is not negative
    Input,    ///< `extra`: index into the program's inputs
    Constant, ///< `extra`: register
    Indexed,  ///< `extra`: register that the first source, the index, is added to
    Variable, ///< a place that loops and branches write more than once
    Sampler,  ///< `extra`: register
    // Steps.
    Mov,
    Add,
    Mul,
    Mad,
    Min,
    Max,
    Slt,
    Sge,
    Cmp,
    Frc,
    Abs,
    Saturate,
    Dsx,
    Dsy,
    Rcp,
    Rsq,
    Exp,
    Log,
    Pow,
    Dot2,
    Dot3,
    Dot4,
    SinCos, ///< lane 0 the cosine, lane 1 the sine
    Nrm,
    Sample, ///< `extra`: sampler register and HlSampling
    // Steps without a result.
    Kill,
    SetVariable, ///< `extra`: the variable's node
    Repeat,      ///< `extra`: whole constant that counts, or kHlNoRegister
    EndRepeat,
    BreakIf,
    If,
    Else,
    EndIf,
};

constexpr uint32_t kHlNoRegister = 0xFFFF;

enum class HlSampling : uint8_t { Plain, Projected, Biased, Level, Gradients };

/// A lane of a step's result, or its negative.
class HlRef {
public:
    HlRef() = default;
    HlRef(uint32_t node, unsigned lane) : bits(node << 3 | lane << 1) {}

    uint32_t Node() const { return bits >> 3; }
    unsigned Lane() const { return bits >> 1 & 3; }
    bool IsNegative() const { return (bits & 1) != 0; }
    HlRef Negated() const
    {
        HlRef result = *this;
        result.bits ^= 1;
        return result;
    }
    HlRef Positive() const
    {
        HlRef result = *this;
        result.bits &= ~1u;
        return result;
    }
    uint32_t Bits() const { return bits; }
    static HlRef FromBits(uint32_t bits)
    {
        HlRef result;
        result.bits = bits;
        return result;
    }
    bool operator==(const HlRef&) const = default;

private:
    uint32_t bits = 0; ///< node 0 is the undefined one
};

using HlRefs = std::vector<HlRef>;

struct HlNode {
    HlOp op = HlOp::Undefined;
    uint8_t lanes = 1; ///< of the result
    uint8_t width = 1; ///< lanes of each source
    uint8_t sources = 0;
    bool saturates = false;
    uint32_t extra = 0;
    HlRef source[3][4];
};

/// The steps that come before `Mov` take no time.
inline bool HlIsLeaf(HlOp op)
{
    return op < HlOp::Mov;
}
inline bool HlHasEffect(HlOp op)
{
    return op >= HlOp::Kill;
}
/// Whether result lane i depends on lane i of the sources alone.
inline bool HlIsLanewise(HlOp op)
{
    return op >= HlOp::Mov && op <= HlOp::Dsy;
}

/// Nodes of one program.
constexpr size_t kHlMaxNodes = 1u << 16;

/// A program under construction: values in terms of others, each computed once. Numbers that the text
/// tells are computed at once.
class HlGraph {
public:
    explicit HlGraph(const HlProfile& target);

    const HlProfile& Profile() const { return profile; }
    const std::vector<HlNode>& Nodes() const { return nodes; }
    std::vector<HlNode>& Nodes() { return nodes; }
    const HlNode& Of(HlRef ref) const { return nodes[ref.Node()]; }
    bool IsFull() const { return nodes.size() >= kHlMaxNodes; }

    HlRef Literal(float value);
    std::optional<float> ValueOf(HlRef ref) const;
    bool IsValue(HlRef ref, float value) const { return ValueOf(ref) == value; }
    bool IsUndefined(HlRef ref) const { return ref.Node() == 0; }
    /// A leaf with its `extra`; lanes 0 to 3 are its components.
    uint32_t Leaf(HlOp op, uint32_t extra);
    /// A constant register at an index: lane 0 of the node is x.
    uint32_t Indexed(uint32_t base, HlRef index);
    uint32_t Variable(unsigned lanes);

    /// One step for all lanes, cut into rows of `row` lanes. `b` and `c` may be empty.
    HlRefs Lanes(HlOp op, const HlRefs& a, const HlRefs& b, const HlRefs& c, unsigned row = 4);
    HlRef One(HlOp op, HlRef a, HlRef b = {}, HlRef c = {});
    /// Two values in braces are computed from left to right by every compiler, so that all builds of the
    /// program make the same code.
    struct Two {
        HlRef a, b;
    };
    HlRef One(HlOp op, const Two& of) { return One(op, of.a, of.b); }
    HlRef Dot(const HlRefs& a, const HlRefs& b);
    uint32_t Wide(HlOp op, unsigned lanes, uint32_t extra, std::span<const HlRefs> sources);
    /// The values as they are now, though their variables change; up to four.
    HlRefs Copy(const HlRefs& values);
    uint32_t Effect(HlOp op, uint32_t extra, const HlRefs& a, const HlRefs& b = {});

    // Truths are 1 and 0.
    HlRefs Less(const HlRefs& a, const HlRefs& b, unsigned row = 4);
    HlRefs AtLeast(const HlRefs& a, const HlRefs& b, unsigned row = 4);
    HlRef Less(HlRef a, HlRef b) { return Less(HlRefs{a}, HlRefs{b})[0]; }
    HlRef AtLeast(HlRef a, HlRef b) { return AtLeast(HlRefs{a}, HlRefs{b})[0]; }
    HlRef Same(HlRef a, HlRef b);
    HlRef Not(HlRef truth);
    HlRefs Not(const HlRefs& truths, unsigned row);
    HlRef And(HlRef a, HlRef b);
    HlRef Or(HlRef a, HlRef b);
    /// Lane by lane: `a` where the truth holds, else `b`. A single truth serves all lanes.
    HlRefs Select(const HlRefs& truth, const HlRefs& a, const HlRefs& b, unsigned row = 4);

    /// What is found in a block is forgotten behind it, as it may not have run.
    void OpenBlock() { blocks.emplace_back(); }
    void CloseBlock();

    /// For blocks that are run again: what they did from a mark on has no effect.
    size_t Mark() const { return nodes.size(); }
    void DropEffects(size_t mark);

private:
    using Key = std::array<uint32_t, 10>;
    struct Hash {
        size_t operator()(const Key& key) const;
    };

    HlRef Remember(const Key& key, HlRef ref);
    std::optional<HlRef> Fold(HlOp op, HlRef a, HlRef b, HlRef c);
    std::optional<HlRef> FoldSimple(HlOp op, HlRef a, HlRef b, HlRef c);
    void Row(HlOp op, std::span<HlRef> result, std::span<const HlRef> a, std::span<const HlRef> b,
             std::span<const HlRef> c);
    void FindOrAdd(const HlNode& node, std::span<const Key> keys, std::span<HlRef> lanesOut);
    HlRef Clean(HlRef ref);
    HlRefs Distances(const HlRefs& a, const HlRefs& b, unsigned row);

    const HlProfile& profile;
    std::vector<HlNode> nodes;
    std::unordered_map<Key, HlRef, Hash> known;
    std::vector<std::vector<Key>> blocks;
};

} // namespace headless::hl

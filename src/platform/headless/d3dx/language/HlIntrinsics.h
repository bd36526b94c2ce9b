#pragma once

#include <string_view>
#include <vector>

#include "platform/headless/d3dx/language/HlRunner.h"

namespace headless::hl {

/// The functions that the language itself has. `docs/effects.md` lists them.
class HlIntrinsics {
public:
    explicit HlIntrinsics(HlRunner& target) : run(target), graph(target.graph) {}

    static bool Exists(std::string_view name);
    HlValue Call(const HlExpression& expression);

    struct Row;

private:
    using Values = std::vector<HlValue>;
    friend struct HlIntrinsicRows;

    bool Prepare(const Row& row, const HlExpression& expression, Values& argumentsOut);
    bool Alike(const HlExpression& expression, Values& arguments, bool keepsWhole);
    bool IsVector(const HlExpression& expression, size_t i, HlValue& value, unsigned columns);
    bool StoreTo(const HlExpression& expression, size_t i, HlValue value);

    // Lane by lane.
    HlRef Number(float value) { return graph.Literal(value); }
    HlRefs All(const HlRefs& like, float value) { return HlRefs(like.size(), Number(value)); }
    HlRefs Add(const HlRefs& a, const HlRefs& b) { return graph.Lanes(HlOp::Add, a, b, {}, row); }
    HlRefs Mul(const HlRefs& a, const HlRefs& b) { return graph.Lanes(HlOp::Mul, a, b, {}, row); }
    /// In braces, as those of `HlGraph::Two`.
    struct Two {
        HlRefs a, b;
    };
    HlRefs Add(const Two& of) { return Add(of.a, of.b); }
    HlRefs Mul(const Two& of) { return Mul(of.a, of.b); }
    HlRefs Scale(const HlRefs& a, float by) { return Mul(a, All(a, by)); }
    HlRefs Negate(HlRefs a);
    HlRefs Each(HlOp op, const HlRefs& a);
    HlRefs Apply(HlOp op, const HlRefs& a, const HlRefs& b = {})
    {
        return graph.Lanes(op, a, b, {}, row);
    }
    HlRefs Polynomial(const HlRefs& x, std::initializer_list<float> factors);
    HlRefs Saturate(const HlRefs& a);
    HlRefs SquareRoot(const HlRefs& a);
    HlRefs Power(const HlRefs& a, const HlRefs& b);
    HlRefs LessThan(const HlRefs& a, const HlRefs& b);
    HlRefs AtLeast(const HlRefs& a, const HlRefs& b);
    HlRefs ArcCosine(const HlRefs& x);
    HlRefs ArcTangent(const HlRefs& x);
    void SineCosine(const HlRefs& x, HlRefs* sineOut, HlRefs* cosineOut);
    HlRefs TurnedSine(const HlRefs& turns);
    HlRefs Normalized(const HlRefs& a);
    HlRefs SumOf(const HlRefs& a);
    HlRef Product(const HlRefs& a, const HlRefs& b);

    HlValue Simple(const HlExpression& expression, Values& a);
    HlRefs SimpleRefs(std::string_view name, Values& a);
    HlRefs Trigonometry(std::string_view name, Values& a);
    HlValue Truths(const HlExpression& expression, Values& a);
    HlValue Vectors(const HlExpression& expression, Values& a);
    HlValue MixedVectors(const HlExpression& expression, Values& a);
    HlValue Matrices(const HlExpression& expression, Values& a);
    HlValue Multiply(const HlExpression& expression, Values& a);
    HlRefs MultiplyRows(const HlRefs& a, unsigned rows, unsigned inner, const HlRefs& b,
                        unsigned columns);
    HlValue Outputs(const HlExpression& expression, Values& a);
    HlValue Pixels(const HlExpression& expression, Values& a);
    HlValue Texture(const HlExpression& expression, Values& a);
    HlValue Refused(const HlExpression& expression, Values& a);

    HlRunner& run;
    HlGraph& graph;
    unsigned row = 4; ///< lanes of a row of the present values
};

} // namespace headless::hl

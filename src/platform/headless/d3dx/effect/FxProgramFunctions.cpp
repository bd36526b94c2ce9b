// Functions in compiled computations: those of the language, and those of the effect's text.

#include "platform/headless/d3dx/effect/FxProgramWriter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>

#include "platform/headless/d3dx/effect/FxComputation.h"

namespace headless::fx {

bool FxProgramWriter::Call(const FxStep& step)
{
    std::vector<Value> arguments(step.intrinsic->arguments);
    for (size_t i = arguments.size(); i-- > 0;)
        arguments[i] = Pop();
    stack.push_back(step.intrinsic->component ? CallByComponent(step, arguments)
                                              : CallWhole(step, arguments));
    return true;
}

/// To the even one of two neighbours that are equally near.
FxProgramWriter::Place FxProgramWriter::Rounded(const Place& a)
{
    const Place half = Literal(0.5);
    const Place up = Floor(Sum(a, half));
    const Place isBetween = Same(Emit(0x104, {a}), half);
    const Place isOdd = Emit(0x104, {Product(up, half)}); // 0.5 for an odd one
    return Difference(up, Product({isBetween, Sum(isOdd, isOdd)}));
}

/// Functions by component that few effects use.
FxProgramWriter::Place FxProgramWriter::Rarer(std::string_view name, const Place& a, const Place& b)
{
    const auto exponential = [this](const Place& power) {
        return Emit(0x105, {Product(power, Literal(std::numbers::log2e))});
    };
    if (name == "cosh" || name == "sinh") {
        const Place up = exponential(a), down = exponential(Negated(a));
        return Product({name == "cosh" ? Sum(up, down) : Difference(up, down), Literal(0.5)});
    }
    if (name == "tanh")
        return Difference(
            {Literal(1.0), Quotient({Literal(2.0), Sum({exponential(Sum(a, a)), Literal(1.0)})})});
    if (name == "ldexp")
        return Product(a, Emit(0x105, {b}));
    if (name == "trunc")
        return Whole(a);
    if (name == "isnan")
        return Opposite(Emit(0x203, {a, a}));
    if (name == "isinf")
        return Emit(0x202, {Literal(static_cast<double>(std::numeric_limits<float>::max())),
                            Emit(0x201, {a, Negated(a)})});
    if (name == "isfinite")
        return Emit(0x203, {Literal(static_cast<double>(std::numeric_limits<float>::max())),
                            Emit(0x201, {a, Negated(a)})});
    return Rounded(a);
}

// Kept whole: one line for each function.
FxProgramWriter::Value FxProgramWriter::CallByComponent(const FxStep& step,
                                                        const std::vector<Value>& arguments)
{
    const std::string_view name = step.intrinsic->name;
    using P = const Place&;
    const auto clamped = [this](P a, P low, P high) {
        return Emit(0x200, {Emit(0x201, {a, low}), high});
    };
    const auto saturated = [&](P a) {
        const Place low = Literal(0.0);
        return clamped(a, low, Literal(1.0));
    };
    const auto logarithm = [this](P a, double base) {
        return Product({Emit(0x106, {a}), Literal(1.0 / std::log2(base))});
    };
    const auto power = [this](P base, P exponent) {
        return Emit(0x105, {Product(Emit(0x106, {base}), exponent)});
    };
    const auto one = [&](P a, P b, P c) {
        if (name == "abs")
            return Emit(0x201, {a, Negated(a)});
        if (name == "acos")
            return Emit(0x10B, {a});
        if (name == "asin")
            return Emit(0x10A, {a});
        if (name == "atan")
            return Emit(0x10C, {a});
        if (name == "atan2")
            return Emit(0x206, {a, b});
        if (name == "ceil")
            return Negated(Floor(Negated(a)));
        if (name == "clamp")
            return clamped(a, b, c);
        if (name == "cos")
            return Emit(0x109, {a});
        if (name == "degrees")
            return Product(a, Literal(180.0 / std::numbers::pi));
        if (name == "radians")
            return Product(a, Literal(std::numbers::pi / 180.0));
        if (name == "exp")
            return Emit(0x105, {Product(a, Literal(std::numbers::log2e))});
        if (name == "exp2")
            return Emit(0x105, {a});
        if (name == "floor")
            return Floor(a);
        if (name == "fmod")
            return Compute(FxOperation::Modulo, a, b);
        if (name == "frac")
            return Emit(0x104, {a});
        if (name == "lerp")
            return Sum(a, Product(c, Difference(b, a)));
        if (name == "log")
            return logarithm(a, std::numbers::e);
        if (name == "log2")
            return Emit(0x106, {a});
        if (name == "log10")
            return logarithm(a, 10.0);
        if (name == "max")
            return Emit(0x201, {a, b});
        if (name == "min")
            return Emit(0x200, {a, b});
        if (name == "pow")
            return power(a, b);
        if (name == "rsqrt")
            return Emit(0x107, {a});
        if (name == "saturate")
            return saturated(a);
        if (name == "sign")
            return Difference({Emit(0x202, {Literal(0.0), a}), Emit(0x202, {a, Literal(0.0)})});
        if (name == "sin")
            return Emit(0x108, {a});
        if (name == "smoothstep") {
            const Place t = saturated(Quotient({Difference(c, a), Difference(b, a)}));
            return Product({Product(t, t), Difference({Literal(3.0), Product(Literal(2.0), t)})});
        }
        if (name == "sqrt")
            return Root(a);
        if (name == "step")
            return Emit(0x203, {b, a});
        if (name == "tan")
            return Quotient({Emit(0x108, {a}), Emit(0x109, {a})});
        return Rarer(name, a, b);
    };
    Value value = {step.shape, {}};
    for (UINT i = 0; i < step.shape.Count(); ++i)
        value.cells.push_back(one(arguments[0].At(i), arguments[arguments.size() > 1 ? 1 : 0].At(i),
                                  arguments[arguments.size() > 2 ? 2 : 0].At(i)));
    return value;
}

FxProgramWriter::Value FxProgramWriter::Multiplied(const FxStep& step, const Value& a,
                                                   const Value& b)
{
    Value value = {step.shape, {}};
    if (a.shape.IsScalar() || b.shape.IsScalar()) {
        for (UINT i = 0; i < step.shape.Count(); ++i)
            value.cells.push_back(Product(a.At(i), b.At(i)));
        return value;
    }
    const bool isColumn = b.shape.rows == 1;
    const UINT columns = isColumn ? 1 : b.shape.columns;
    for (UINT row = 0; row < (a.shape.rows == 1 ? 1 : a.shape.rows); ++row) {
        for (UINT column = 0; column < columns; ++column) {
            Value left, right;
            for (UINT i = 0; i < a.shape.columns; ++i) {
                left.cells.push_back(a.cells[row * a.shape.columns + i]);
                right.cells.push_back(b.cells[isColumn ? i : i * columns + column]);
            }
            value.cells.push_back(Dot(left, right));
        }
    }
    return value;
}

/// By the first row. Recursion ends at 1 by 1.
FxProgramWriter::Place FxProgramWriter::Determinant(const std::vector<Place>& cells, UINT size)
{
    if (size == 1)
        return cells[0];
    Place sum = Literal(0.0);
    for (UINT without = 0; without < size; ++without) {
        std::vector<Place> rest;
        for (UINT i = size; i < size * size; ++i)
            if (i % size != without)
                rest.push_back(cells[i]);
        const Place share = Product(cells[without], Determinant(rest, size - 1));
        sum = Sum(sum, without % 2 == 0 ? share : Negated(share));
    }
    return sum;
}

/// Functions whose arguments or results differ in shape.
std::vector<FxProgramWriter::Place> FxProgramWriter::Mixed(const FxStep& step,
                                                           const std::vector<Value>& arguments)
{
    const std::string_view name = step.intrinsic->name;
    const Value& a = arguments[0];
    if (name == "determinant")
        return {Determinant(a.cells, a.shape.rows)};
    std::vector<Place> cells;
    if (name == "D3DCOLORtoUBYTE4") {
        for (const UINT i : {2u, 1u, 0u, 3u})
            cells.push_back(Floor(Product(a.cells[i], Literal(kFxBytesOfColour))));
        return cells;
    }
    const Value& b = arguments[1];
    const Place zero = Literal(0.0);
    if (name == "lit") {
        const Place diffuse = a.cells[0], half = b.cells[0];
        const Place power = Emit(0x105, {Product(Emit(0x106, {half}), arguments[2].cells[0])});
        return {Literal(1.0), Emit(0x201, {diffuse, zero}),
                Emit(0x300, {Emit(0x200, {diffuse, half}), power, zero}), Literal(1.0)};
    }
    if (name == "faceforward") {
        const Place slope = Dot(b, arguments[2]);
        for (UINT i = 0; i < step.shape.Count(); ++i)
            cells.push_back(Emit(0x300, {slope, Negated(a.At(i)), a.At(i)}));
        return cells;
    }
    const bool isReflect = name == "reflect";
    const Place slope = Dot(a, b);
    const Place eta = isReflect ? Literal(1.0) : arguments[2].cells[0];
    const Place under =
        isReflect ? zero
                  : Difference({Literal(1.0),
                                Product({Product(eta, eta),
                                         Difference({Literal(1.0), Product(slope, slope)})})});
    const Place along = isReflect ? Sum(slope, slope)
                                  : Sum({Product(eta, slope), Root(Emit(0x201, {under, zero}))});
    for (UINT i = 0; i < step.shape.Count(); ++i)
        cells.push_back(Emit(
            0x300, {under, Difference({Product(eta, a.At(i)), Product(along, b.At(i))}), zero}));
    return cells;
}

FxProgramWriter::Value FxProgramWriter::CallWhole(const FxStep& step,
                                                  const std::vector<Value>& arguments)
{
    const std::string_view name = step.intrinsic->name;
    const Value& a = arguments[0];
    const Value& b = arguments[arguments.size() > 1 ? 1 : 0];
    Value value = {step.shape, {}};
    if (name == "mul") {
        value = Multiplied(step, a, b);
    } else if (name == "dot") {
        value.cells = {Dot(a, b)};
    } else if (name == "length") {
        value.cells = {Root(Dot(a, a))};
    } else if (name == "distance") {
        Value apart;
        for (UINT i = 0; i < a.cells.size(); ++i)
            apart.cells.push_back(Difference(a.At(i), b.At(i)));
        value.cells = {Root(Dot(apart, apart))};
    } else if (name == "normalize") {
        const Place scale = Emit(0x107, {Dot(a, a)});
        for (const Place& cell : a.cells)
            value.cells.push_back(Product(cell, scale));
    } else if (name == "cross") {
        for (UINT i = 0; i < 3; ++i)
            value.cells.push_back(Difference({Product(a.At((i + 1) % 3), b.At((i + 2) % 3)),
                                              Product(a.At((i + 2) % 3), b.At((i + 1) % 3))}));
    } else if (name == "transpose") {
        for (UINT row = 0; row < step.shape.rows; ++row)
            for (UINT column = 0; column < step.shape.columns; ++column)
                value.cells.push_back(a.cells[column * a.shape.columns + row]);
    } else if (name != "all" && name != "any") {
        value.cells = Mixed(step, arguments);
    } else {
        const bool isAll = name == "all";
        Place truth = Truth(a.At(0));
        for (UINT i = 1; i < a.cells.size(); ++i)
            truth = isAll ? Product(truth, Truth(a.At(i))) : Emit(0x201, {truth, Truth(a.At(i))});
        value.cells = {truth};
    }
    return value;
}

// ---- Functions of the text

/// A leaf's number: of the literals, the arguments or a parameter.
FxProgramWriter::Place FxProgramWriter::Leaf(const FxComputation& function, const hl::HlNode& leaf,
                                             unsigned lane, const std::vector<Place>& arguments)
{
    if (leaf.op == hl::HlOp::Literal)
        return Literal(static_cast<double>(std::bit_cast<float>(leaf.extra)));
    const size_t at = size_t{leaf.extra} * 4 + lane;
    if (leaf.op == hl::HlOp::Input && at < arguments.size())
        return arguments[at];
    if (leaf.op == hl::HlOp::Constant && function.CellOf(leaf, lane).part) {
        const FxComputation::Cell& cell = function.CellOf(leaf, lane);
        return Load(*cell.part).cells[cell.cell];
    }
    return Literal(0.0);
}

FxProgramWriter::Place FxProgramWriter::Power(const Place& base, const Place& exponent)
{
    const Place power = Emit(0x105, {Product(Emit(0x106, {base}), exponent)});
    return Emit(0x300, {Negated(Same(base, Literal(0.0))), power, Same(exponent, Literal(0.0))});
}

/// A lane of a step that works on each lane alone.
FxProgramWriter::Place FxProgramWriter::Lane(hl::HlOp op, const Place& a, const Place& b,
                                             const Place& c)
{
    switch (op) {
    case hl::HlOp::Add:
        return Sum(a, b);
    case hl::HlOp::Mul:
        return Product(a, b);
    case hl::HlOp::Min:
        return Emit(0x200, {a, b});
    case hl::HlOp::Max:
        return Emit(0x201, {a, b});
    case hl::HlOp::Slt:
        return Emit(0x202, {a, b});
    case hl::HlOp::Sge:
        return Emit(0x203, {a, b});
    case hl::HlOp::Cmp:
        return Emit(0x300, {a, b, c});
    case hl::HlOp::Frc:
        return Emit(0x104, {a});
    case hl::HlOp::Abs:
        return Emit(0x201, {a, Negated(a)});
    case hl::HlOp::Rcp:
        return Emit(0x103, {a});
    case hl::HlOp::Rsq:
        return Emit(0x107, {a});
    case hl::HlOp::Exp:
        return Emit(0x105, {a});
    case hl::HlOp::Log:
        return Emit(0x106, {a});
    case hl::HlOp::Pow:
        return Power(a, b);
    default:
        return a;
    }
}

std::vector<FxProgramWriter::Place> FxProgramWriter::Lanes(const hl::HlNode& step,
                                                           const std::array<Value, 3>& sources)
{
    const Value& a = sources[0];
    std::vector<Place> lanes;
    switch (step.op) {
    case hl::HlOp::Dot2:
    case hl::HlOp::Dot3:
    case hl::HlOp::Dot4:
        lanes = {Dot(a, sources[1])};
        break;
    case hl::HlOp::SinCos:
        lanes = {Emit(0x109, {a.cells[0]}), Emit(0x108, {a.cells[0]})};
        break;
    case hl::HlOp::Nrm: {
        const Place scale = Emit(0x107, {Dot(a, a)});
        for (const Place& cell : a.cells)
            lanes.push_back(Product(cell, scale));
        break;
    }
    default:
        for (size_t i = 0; i < a.cells.size(); ++i)
            lanes.push_back(Lane(step.op, a.cells[i], sources[step.sources > 1 ? 1 : 0].cells[i],
                                 sources[step.sources > 2 ? 2 : 0].cells[i]));
        break;
    }
    return lanes;
}

/// Step by step, each into places of its own.
bool FxProgramWriter::Function(const FxStep& step)
{
    std::vector<Value> values(step.count);
    for (size_t i = values.size(); i-- > 0;)
        values[i] = Pop();
    std::vector<Place> arguments;
    for (const Value& value : values)
        arguments.insert(arguments.end(), value.cells.begin(), value.cells.end());
    const hl::HlComputation& steps = step.function->Steps();
    std::vector<std::vector<Place>> places;
    const auto take = [&](hl::HlRef ref) {
        const Place& place = places[ref.Node()][ref.Lane()];
        return ref.IsNegative() ? Negated(place) : place;
    };
    for (const hl::HlNode& node : steps.steps) {
        std::array<Value, 3> sources;
        for (unsigned s = 0; s < node.sources; ++s)
            for (unsigned lane = 0; lane < node.width; ++lane)
                sources[s].cells.push_back(take(node.source[s][lane]));
        std::vector<Place> lanes;
        for (unsigned lane = 0; lane < node.lanes && hl::HlIsLeaf(node.op); ++lane)
            lanes.push_back(Leaf(*step.function, node, lane, arguments));
        places.push_back(hl::HlIsLeaf(node.op) ? lanes : Lanes(node, sources));
    }
    Value value = {step.shape, {}};
    for (const hl::HlRef ref : steps.results)
        value.cells.push_back(take(ref));
    stack.push_back(std::move(value));
    return true;
}

} // namespace headless::fx

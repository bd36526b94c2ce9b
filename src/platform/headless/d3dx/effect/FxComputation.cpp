#include "platform/headless/d3dx/effect/FxComputation.h"

#include <array>
#include <bit>
#include <cmath>

#include "platform/headless/d3dx/effect/FxParameter.h"
#include "platform/headless/d3dx/language/HlCompute.h"

namespace headless::fx {

namespace {

using hl::HlNode;
using hl::HlOp;
using Lanes = std::array<double, 4>;

/// The numbers of a parameter with all its parts, in their order. Recursion ends: types nest 16 deep.
void AddCells(const FxParameter& part, std::vector<FxComputation::Cell>& cellsOut)
{
    for (const auto& inner : part.parts)
        AddCells(*inner, cellsOut);
    for (UINT i = 0; part.parts.empty() && part.IsNumeric() && i < part.CellCount(); ++i)
        cellsOut.push_back({&part, i});
}

double Dot(const Lanes& a, const Lanes& b, unsigned width)
{
    double sum = 0.0;
    for (unsigned i = 0; i < width; ++i)
        sum += a[i] * b[i];
    return sum;
}

Lanes Compute(const HlNode& step, const std::array<Lanes, 3>& sources)
{
    const Lanes& a = sources[0];
    Lanes result = {};
    switch (step.op) {
    case HlOp::Dot2:
    case HlOp::Dot3:
    case HlOp::Dot4:
        result[0] = Dot(a, sources[1], step.width);
        break;
    case HlOp::SinCos:
        result = {std::cos(a[0]), std::sin(a[0]), 0.0, 0.0};
        break;
    case HlOp::Nrm:
        for (unsigned i = 0; i < 3; ++i)
            result[i] = a[i] / std::sqrt(Dot(a, a, 3));
        break;
    default:
        for (unsigned i = 0; i < step.lanes; ++i)
            result[i] = hl::HlCompute(step.op, a[i], sources[1][i], sources[2][i]);
        break;
    }
    return result;
}

} // namespace

bool FxComputation::Bind(std::shared_ptr<const hl::HlComputation> made,
                         const FxParameterNames& parameters)
{
    steps = std::move(made);
    std::vector<std::vector<Cell>> all;
    for (const std::string& name : steps->parameters) {
        const auto found = parameters.find(name);
        if (found == parameters.end())
            return false;
        read.push_back(found->second);
        AddCells(*found->second, all.emplace_back());
    }
    for (const hl::HlComputation::Cell& cell : steps->cells) {
        const bool isRead = cell.parameter < all.size() && cell.cell < all[cell.parameter].size();
        cells.push_back(isRead ? all[cell.parameter][cell.cell] : Cell());
    }
    return true;
}

FxShape FxComputation::Shape() const
{
    const D3DXPARAMETER_TYPE type = steps->shape.base == hl::HlBase::Float ? D3DXPT_FLOAT
                                    : steps->shape.base == hl::HlBase::Int ? D3DXPT_INT
                                                                           : D3DXPT_BOOL;
    return {type, steps->shape.rows, steps->shape.columns};
}

double FxComputation::Read(const HlNode& leaf, unsigned lane, std::span<const double> inputs) const
{
    if (leaf.op == HlOp::Literal)
        return static_cast<double>(std::bit_cast<float>(leaf.extra));
    if (leaf.op == HlOp::Input) {
        const size_t at = size_t{leaf.extra} * 4 + lane;
        return at < inputs.size() ? inputs[at] : 0.0;
    }
    if (leaf.op != HlOp::Constant)
        return 0.0;
    const Cell& cell = CellOf(leaf, lane);
    return cell.part
               ? static_cast<double>(FxFloatOfCell(cell.part->Cells()[cell.cell], cell.part->type))
               : 0.0;
}

void FxComputation::Run(std::span<const FxNumber> arguments, FxNumber& resultOut) const
{
    std::vector<double> inputs;
    for (const FxNumber& argument : arguments)
        for (UINT i = 0; i < argument.shape.Count(); ++i)
            inputs.push_back(static_cast<double>(argument.Float(i)));
    std::vector<Lanes> values;
    values.reserve(steps->steps.size());
    const auto take = [&](hl::HlRef ref) {
        const double value = values[ref.Node()][ref.Lane()];
        return ref.IsNegative() ? -value : value;
    };
    for (const HlNode& step : steps->steps) {
        std::array<Lanes, 3> sources = {};
        for (unsigned s = 0; s < step.sources; ++s)
            for (unsigned lane = 0; lane < step.width; ++lane)
                sources[s][lane] = take(step.source[s][lane]);
        Lanes result = {};
        for (unsigned lane = 0; lane < step.lanes && hl::HlIsLeaf(step.op); ++lane)
            result[lane] = Read(step, lane, inputs);
        values.push_back(hl::HlIsLeaf(step.op) ? result : Compute(step, sources));
    }
    for (size_t i = 0; i < steps->results.size(); ++i)
        resultOut.cells[i] =
            FxCellOfFloat(static_cast<float>(take(steps->results[i])), resultOut.shape.type);
}

} // namespace headless::fx

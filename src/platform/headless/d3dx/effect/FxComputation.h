#pragma once

#include <memory>
#include <vector>

#include "platform/headless/d3dx/effect/FxTypes.h"
#include "platform/headless/d3dx/language/HlComputation.h"

namespace headless::fx {

/// A call of a function of the effect's text in a value, with the parameters that the function reads.
/// Immutable; values share it.
class FxComputation {
public:
    /// A number of a parameter.
    struct Cell {
        const FxParameter* part = nullptr; ///< not owned, lives in the effect; null for none
        UINT cell = 0;
    };

    /// False if one of the parameters is not known.
    bool Bind(std::shared_ptr<const hl::HlComputation> made, const FxParameterNames& parameters);

    FxShape Shape() const;
    const hl::HlComputation& Steps() const { return *steps; }
    /// Of a lane of a constant.
    const Cell& CellOf(const hl::HlNode& constant, unsigned lane) const
    {
        return cells[size_t{constant.extra} * 4 + lane];
    }
    /// In double precision, as compiled effects compute it.
    void Run(std::span<const FxNumber> arguments, FxNumber& resultOut) const;
    /// The parameters that it reads.
    const std::vector<const FxParameter*>& Parameters() const { return read; }

private:
    double Read(const hl::HlNode& leaf, unsigned lane, std::span<const double> inputs) const;

    std::shared_ptr<const hl::HlComputation> steps;
    std::vector<Cell> cells; ///< of the four lanes of each constant
    std::vector<const FxParameter*> read;
};

} // namespace headless::fx

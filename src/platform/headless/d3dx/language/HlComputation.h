#pragma once

#include <string>
#include <vector>

#include "platform/headless/d3dx/effect/FxDiagnostics.h"
#include "platform/headless/d3dx/language/HlGraph.h"
#include "platform/headless/d3dx/language/HlTypes.h"

namespace headless::hl {

/// A number that a value passes to a function, or that the function gives.
struct HlShape {
    HlBase base = HlBase::Float;
    unsigned rows = 1; ///< 1 for a vector
    unsigned columns = 1;
    fx::FxPlace place; ///< of an argument
};

/// A function of a text as steps, in the order in which they are computed. Its inputs are the numbers of the
/// arguments, four to a node; its constants are numbers of parameters.
struct HlComputation {
    static constexpr size_t kNothing = ~size_t{0};
    struct Cell {
        size_t parameter = kNothing; ///< index into `parameters`
        uint32_t cell = 0;           ///< of its numbers, row by row
    };

    std::vector<HlNode> steps;
    HlRefs results;
    HlShape shape;
    std::vector<std::string> parameters;
    std::vector<Cell> cells; ///< of the four lanes of each constant
};

} // namespace headless::hl

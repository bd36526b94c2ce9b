#pragma once

#include <span>
#include <string_view>

#include "platform/headless/d3dx/effect/FxNumber.h"

namespace headless::fx {

/// What `D3DCOLORtoUBYTE4` multiplies by.
inline constexpr double kFxBytesOfColour = 255.001953;

/// A function that expressions can call. Arguments and results are floats; each component is
/// computed in double precision and rounded once.
struct FxIntrinsic {
    std::string_view name;
    UINT arguments;
    /// The shape of the result; false if the arguments do not fit.
    bool (*shape)(std::span<const FxShape> arguments, FxShape& resultOut);
    /// `arguments` have the number and shapes that `shape` accepted. `resultInOut` has its result
    /// shape.
    void (*run)(const FxIntrinsic& self, std::span<const FxNumber> arguments,
                FxNumber& resultInOut);
    double (*component)(double a, double b, double c); ///< for component-wise functions
};

/// Null for an unknown name.
const FxIntrinsic* FxFindIntrinsic(std::string_view name);

} // namespace headless::fx

#pragma once

#include <algorithm>
#include <cmath>

#include "platform/headless/d3dx/language/HlGraph.h"

namespace headless::hl {

/// A lane of a step that works on each lane alone, in float or double.
template <typename T>
T HlCompute(HlOp op, T a, T b, T c)
{
    const auto rounded = [](double value) { return static_cast<T>(value); };
    const auto wide = [](T value) { return static_cast<double>(value); };
    switch (op) {
    case HlOp::Add:
        return a + b;
    case HlOp::Mul:
        return a * b;
    case HlOp::Mad:
        return a * b + c;
    case HlOp::Min:
        return a < b ? a : b;
    case HlOp::Max:
        return a >= b ? a : b;
    case HlOp::Slt:
        return a < b ? T{1} : T{0};
    case HlOp::Sge:
        return a >= b ? T{1} : T{0};
    case HlOp::Cmp:
        return a >= T{0} ? b : c;
    case HlOp::Frc:
        return rounded(wide(a) - std::floor(wide(a)));
    case HlOp::Abs:
        return std::fabs(a);
    case HlOp::Saturate:
        return a > T{0} ? std::min(a, T{1}) : T{0};
    case HlOp::Rcp:
        return rounded(1.0 / wide(a));
    case HlOp::Rsq:
        return rounded(1.0 / std::sqrt(std::fabs(wide(a))));
    case HlOp::Exp:
        return rounded(std::exp2(wide(a)));
    case HlOp::Log:
        return rounded(std::log2(std::fabs(wide(a))));
    case HlOp::Pow:
        return b == T{0} ? T{1} : rounded(std::pow(std::fabs(wide(a)), wide(b)));
    default:
        return a;
    }
}

} // namespace headless::hl

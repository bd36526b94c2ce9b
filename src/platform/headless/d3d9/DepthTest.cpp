#include "platform/headless/d3d9/DepthTest.h"

#include <algorithm>
#include <cmath>

namespace headless {

namespace {

int AllOrNone(bool all)
{
    return all ? -1 : 0;
}

/// The w range that a W buffer spreads its steps over, from the published formula for a projection
/// matrix. False for a projection without perspective.
bool FindWRange(const D3DMATRIX& m, float& nearOut, float& farOut)
{
    if (m._33 == 0.0f || m._34 == 0.0f || m._33 == m._34)
        return false;
    nearOut = m._44 - m._43 / m._33 * m._34;
    farOut = (m._44 - m._43) / (m._33 - m._34) * m._34 + m._44;
    // If the far plane is too far for the division to tell it from infinity, the sign is arbitrary.
    return std::isfinite(nearOut) && std::isfinite(farOut) && farOut > nearOut;
}

} // namespace

/// The values of D3DCMPFUNC are bit sets plus one: less 1, equal 2, greater 4.
Comparison::Comparison(D3DCMPFUNC function)
    : less(AllOrNone(((function - 1) & 1) != 0)),
      equal(AllOrNone(((function - 1) & 2) != 0)),
      greater(AllOrNone(((function - 1) & 4) != 0))
{}

DepthTest MakeDepthTest(const DrawState& state)
{
    DepthTest test;
    const DWORD mode = state.Render(D3DRS_ZENABLE);
    if (!state.depth || mode == D3DZB_FALSE)
        return test;
    const auto function = static_cast<D3DCMPFUNC>(state.Render(D3DRS_ZFUNC));
    test.comparison = Comparison(function);
    test.writes = state.Render(D3DRS_ZWRITEENABLE) != 0;
    test.isOn = test.writes || function != D3DCMP_ALWAYS;
    test.buffer = state.depth;
    test.rows = PixelRows(*state.depth);
    test.depthBits = test.buffer->format->r.bits;
    float farW = 1.0f;
    test.usesW = mode == D3DZB_USEW && FindWRange(state.projection, test.nearW, farW);
    test.scaleW = test.usesW ? 1.0f / (farW - test.nearW) : 1.0f;
    test.bias = state.RenderFloat(D3DRS_DEPTHBIAS);
    test.slopeBias = state.RenderFloat(D3DRS_SLOPESCALEDEPTHBIAS);
    return test;
}

float DepthTest::BiasOf(const Planes& planes) const
{
    const float steepest = std::max(std::fabs(planes.depth.dx), std::fabs(planes.depth.dy));
    return bias + slopeBias * steepest;
}

} // namespace headless

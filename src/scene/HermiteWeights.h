#pragma once

/// Weights of the cubic Hermite form at `u`, 0 at the first key and 1 at the second: h00 * from +
/// h10 * outTangent - h11 * inTangent + h01 * to. The minus is there because tangents are stored
/// pointing away from their key.
struct HermiteWeights {
    float h00;
    float h01;
    float h10;
    float h11;
};

/// 2u^3 - 3u^2 + 1, 3u^2 - 2u^3, u^3 - 2u^2 + u, u^3 - u^2, each step rounded to float.
inline HermiteWeights HermiteAt(float u)
{
    const float u2 = u * u;
    const float u3 = u2 * u;
    return {2.0f * u3 - 3.0f * u2 + 1.0f, 3.0f * u2 - 2.0f * u3, u3 - 2.0f * u2 + u, u3 - u2};
}

/// The first derivatives of the weights with respect to `u`.
inline HermiteWeights HermiteSlopeAt(float u)
{
    const float u2 = u * u;
    return {6.0f * u2 - 6.0f * u, 6.0f * u - 6.0f * u2, 3.0f * u2 - 4.0f * u + 1.0f,
            3.0f * u2 - 2.0f * u};
}

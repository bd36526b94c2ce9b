#include "platform/headless/d3d9/SrgbCurve.h"

#include "platform/headless/shader/ShaderMath.h"

namespace headless {

namespace {

Lanes Power(Lanes base, float exponent)
{
    return shader::Exp2(shader::Log2(base) * Splat(exponent));
}

Lanes LinearOfFour(Lanes stored)
{
    const Lanes straight = stored / Splat(12.92f);
    const Lanes curved = Power((stored + Splat(0.055f)) / Splat(1.055f), 2.4f);
    return Select(IsGreater(stored, Splat(0.04045f)), curved, straight);
}

Lanes SrgbOfFour(Lanes light)
{
    const Lanes straight = light * Splat(12.92f);
    const Lanes curved = Splat(1.055f) * Power(light, 1.0f / 2.4f) - Splat(0.055f);
    return Select(IsGreater(light, Splat(0.0031308f)), curved, straight);
}

} // namespace

void LinearOfSrgb(float* values, int count)
{
    for (int i = 0; i < count; i += 4)
        StoreFloats(values + i, LinearOfFour(LoadFloats(values + i)));
}

void SrgbOfLinear(float* values, int count)
{
    for (int i = 0; i < count; i += 4)
        StoreFloats(values + i, SrgbOfFour(LoadFloats(values + i)));
}

} // namespace headless

#include "gltf/ColorSpace.h"

#include <algorithm>
#include <cmath>

// The curve of sRGB (IEC 61966-2-1).

double LinearFromScreen(double value)
{
    const double c = std::clamp(value, 0.0, 1.0);
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double ScreenFromLinear(double value)
{
    const double c = std::clamp(value, 0.0, 1.0);
    return c <= 0.0031308 ? c * 12.92 : 1.055 * std::pow(c, 1 / 2.4) - 0.055;
}

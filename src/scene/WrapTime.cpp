#include "scene/WrapTime.h"

#include <cmath>

float WrapTime(double time, double length)
{
    if (length == 0.0)
        return 0.0f;
    const double periods = std::trunc(time / length);
    const double folded = time < 0.0 ? time + (1.0 - periods) * length : time - periods * length;
    return static_cast<float>(folded);
}

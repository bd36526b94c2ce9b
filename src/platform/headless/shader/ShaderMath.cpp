#include "platform/headless/shader/ShaderMath.h"

#include "platform/headless/shader/ShaderFormulas.h"

namespace headless::shader {

Lanes Reciprocal(Lanes value)
{
    return Formulas<FourLanes>::Reciprocal(value);
}

Lanes ReciprocalRoot(Lanes value)
{
    return Formulas<FourLanes>::ReciprocalRoot(value);
}

Lanes Exp2(Lanes value)
{
    return Formulas<FourLanes>::Exp2(value);
}

Lanes Log2(Lanes value)
{
    return Formulas<FourLanes>::Log2(value);
}

void SinCos(Lanes angle, Lanes& sineOut, Lanes& cosineOut)
{
    Formulas<FourLanes>::SinCos(angle, sineOut, cosineOut);
}

Lanes IsAtLeast(Lanes a, Lanes b)
{
    return Formulas<FourLanes>::IsAtLeast(a, b);
}

Lanes IsSame(Lanes a, Lanes b)
{
    return Formulas<FourLanes>::IsSame(a, b);
}

} // namespace headless::shader

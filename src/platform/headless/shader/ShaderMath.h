#pragma once

#include "platform/headless/d3d9/Lanes.h"

namespace headless::shader {

// The functions of shaders, for four numbers at once. They use additions, multiplications, divisions
// and square roots only, in a fixed order, so that they give the same bits on every machine.

/// 1 / value; exact rounding. 0 gives infinity with its sign.
Lanes Reciprocal(Lanes value);

/// 1 / the square root of |value|; 0 gives infinity. The error is below 2^-22 of the result.
Lanes ReciprocalRoot(Lanes value);

/// 2 to the power of `value`, with an error below 2^-21 of the result. Results too small for a normal
/// number are 0.
Lanes Exp2(Lanes value);

/// The binary logarithm of |value|, with an error below 2^-21, or of 2^-21 of the result if that is
/// more. 0 gives minus infinity; numbers too small for a normal one count as 0.
Lanes Log2(Lanes value);

/// Sine and cosine with an error below 2^-20 for |angle| up to 8192; 0 and 1 beyond 2^23 and for
/// what is not a number.
void SinCos(Lanes angle, Lanes& sineOut, Lanes& cosineOut);

/// All bits set where the number is not below 0; NaN gives none.
Lanes IsAtLeast(Lanes a, Lanes b);

Lanes IsSame(Lanes a, Lanes b);

} // namespace headless::shader

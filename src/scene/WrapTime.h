#pragma once

/// Folds `time` into one period of a looping track. Both in seconds, `length` above 0; taken in
/// double precision and rounded once. Returns [0, length) for a time of 0 or above, (0, length]
/// below. A length of 0 gives 0, because nothing can be folded into it.
/// QUIRK: a negative exact multiple gives `length`, not 0; looped tracks rely on it.
float WrapTime(double time, double length);

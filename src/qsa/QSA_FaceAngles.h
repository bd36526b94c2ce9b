#pragma once

#include <cstddef>

#include "qsa/QSA_ArcCosines.h"

/// The planes and the corners of some triangles in a row: first `Measure` for each, then `Finish`.
struct QSA_FaceAngles {
    static constexpr size_t kMost = 64;

    /// Measures triangle `i`. Everything is computed in float, sums in the order x, y, z. Until
    /// `Finish`, its angles are their cosines. Non-finite corners give non-finite results.
    void Measure(size_t i, const float (&a)[3], const float (&b)[3], const float (&c)[3]);
    /// Makes the angles of the first `number` triangles: in double, rounded once.
    void Finish(size_t number) { ArcCosines(angles, number * 3); }
    /// At corner `c` of triangle `i`, radians.
    float Angle(size_t i, size_t c) const { return angles[i * 3 + c]; }

    float normal[kMost][3] =
        {}; ///< unit length, pointing to where the corners are seen counter-clockwise
    bool isFace[kMost] =
        {}; ///< false: the cross product of its edges is zero, and the rest has no meaning

private:
    alignas(16) float angles[kMost * 3] = {};
    static_assert(kMost * 3 % kArcCosineStep == 0);
};

#pragma once

/// The plane and the corners of a triangle.
struct QSA_FaceAngles {
    float normal[3] = {}; ///< unit length, pointing to where the corners are seen counter-clockwise
    float angle[3] = {};  ///< at each corner, radians
    bool isFace = false;  ///< false: the cross product of its edges is zero, and so is the rest
};

/// Measures a triangle. Everything is computed in float, sums in the order x, y, z; only the arc
/// cosines are computed in double, and rounded once. Non-finite corners give non-finite results.
QSA_FaceAngles MeasureFace(const float (&a)[3], const float (&b)[3], const float (&c)[3]);

/// The arc cosine, computed in double and rounded to float. For every float in [-1, 1] it equals
/// the C library's; for others it is NaN.
float QuickAcos(float cosine);

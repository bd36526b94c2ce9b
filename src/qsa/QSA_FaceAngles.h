#pragma once

/// The plane and the corners of a triangle.
struct QSA_FaceAngles {
    float normal[3] = {}; ///< unit, to the side from which the corners run counter-clockwise
    float angle[3] = {};  ///< at each corner, radians
    bool isFace = false;  ///< false: the product of its edges has no length; the rest is zero then
};

/// Measures a triangle. All is done in float, each sum from x to z, and only the arc cosines in
/// double, rounded once. Corners that are not finite give numbers that are not finite either.
QSA_FaceAngles MeasureFace(const float (&a)[3], const float (&b)[3], const float (&c)[3]);

/// The arc cosine in double, rounded to float: of every float from -1 to 1 the same as the C
/// library's. Others give no number.
float QuickAcos(float cosine);

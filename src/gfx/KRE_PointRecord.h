#pragma once

#include <cstdint>

/// How points are drawn: sizes in pixels, limits, and the factors of the attenuation by distance
/// size * sqrt(1 / (A + B * d + C * d * d)).
struct KRE_PointRecord {
    float scaleA = 1.0f;
    float scaleB = 0.0f;
    float scaleC = 0.0f;
    float sizeMax = 64.0f;
    float sizeMin = 1.0f;
    float size = 4.0f;
    int32_t spriteEnable = 0; ///< the whole texture on each point
    int32_t scaleEnable = 0;  ///< sizes shrink with distance
    int32_t pad = 0;
};
static_assert(sizeof(KRE_PointRecord) == 36);

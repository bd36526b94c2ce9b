#pragma once

#include <cstdint>

#include <d3d9.h>

/// Fog of the device. Start and end are distances, used by `D3DFOG_LINEAR`; density by the others.
struct KRE_FogRecord {
    D3DCOLOR color = 0;
    int32_t mode = D3DFOG_NONE; ///< a D3DFOGMODE
    int32_t tableFlag = 0;      ///< see `KRE_Gfx::SetFog`
    float start = 0.0f;
    float end = 1.0f;
    float density = 1.0f;
};
static_assert(sizeof(KRE_FogRecord) == 24);

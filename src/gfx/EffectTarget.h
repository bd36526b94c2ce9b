#pragma once

#include <cstdint>

/// Textures of the screen's size, and of a quarter of its width and height, that effects may name.
inline constexpr int32_t kScreenBuffers = 2;
inline constexpr int32_t kScreenQuarterBuffers = 3;

enum class EffectTargetKind : int32_t { kNone, kScreenQuarterBuffer, kScreenBuffer, kInitial };

/// Where a pass draws to.
struct EffectPassTarget {
    EffectTargetKind kind = EffectTargetKind::kNone;
    int32_t index = 0; ///< of the buffer, from 0
};

#pragma once

#include <cstdint>

#include <d3d9.h>

/// The last values sent to the device, so that redundant calls can be skipped.
struct KRE_StateCache {
    static constexpr int32_t kUnknown = -1;
    static constexpr int32_t kUnknownCullMode = 999; ///< -1 is a culling mode
    static constexpr uint32_t kRenderStates = 210;
    static constexpr uint32_t kStages = 8;
    static constexpr uint32_t kStageStates = 33;
    static constexpr uint32_t kSamplerStates = 14;
    static constexpr int32_t kLights = 9; ///< indices 0 to 8

    /// The last values by state number, floats as their bits; states outside the tables are not
    /// stored.
    int32_t renderState[kRenderStates];
    int32_t stageState[kStages][kStageStates];
    int32_t samplerState[kStages][kSamplerStates];
    int32_t lightEnable[kLights];
    int32_t softwareVertexProcessing;
    int32_t cullMode;

    KRE_StateCache() { Reset(); }
    /// Marks every value as unknown.
    void Reset();
};

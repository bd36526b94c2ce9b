#pragma once

#include "platform/headless/d3d9/BlendLanes.h"
#include "platform/headless/d3d9/DepthTest.h"

namespace headless {

/// How a target stores colours.
enum class TargetLayout : uint8_t { Argb, Xrgb, Rgb565 };

/// The last step of a draw: alpha test, blending, and writing.
struct OutputMerger {
    bool testsAlpha = false;
    Comparison alphaComparison;
    int alphaReference = 0;

    bool blends = false;
    BlendChoice colour;
    BlendChoice alpha;
    float blendConstant[4] = {};

    TargetLayout layout = TargetLayout::Argb;
    uint32_t unused = 0;           ///< bits of a word without a meaning, which are ones
    PixelBuffer* target = nullptr; ///< not owned
    PixelRows rows;
    int width = 0;                   ///< of the target
    bool isSrgb = false;             ///< colours are stored with the sRGB curve
    uint32_t writeMask = 0xFFFFFFFF; ///< bits of a stored word that change
};

/// Fails for unknown factors, operations or functions, and for targets it cannot write.
HRESULT MakeOutputMerger(const DrawState& state, OutputMerger& mergerOut);

} // namespace headless

#pragma once

#include "platform/headless/d3d9/DepthTest.h"

namespace headless {

/// The inputs of the blend factors.
struct BlendInput {
    const Rgba4* source;
    const Rgba4* target;
    const Rgba4* constant; ///< D3DRS_BLENDFACTOR
};

using BlendFactor = void (*)(const BlendInput& input, Rgba4& factorOut);
using BlendOperation = Lanes (*)(Lanes source, Lanes sourceFactor, Lanes target,
                                 Lanes targetFactor);

/// One blend equation: for colour or for alpha.
struct BlendHalf {
    BlendFactor source = nullptr;
    BlendFactor target = nullptr;
    BlendOperation operation = nullptr;
};

/// How to load and store four pixels of a target.
struct TargetFormat {
    D3DFORMAT format;
    Rgba4 (*load)(const uint8_t* pixels, int count);
    void (*store)(uint8_t* pixels, const Rgba4& colour, uint32_t writeMask, int lanes);
};

/// The last step of a draw: alpha test, blending, and writing.
struct OutputMerger {
    bool testsAlpha = false;
    Comparison alphaComparison;
    IntLanes alphaReference;

    bool blends = false;
    bool blendsAlphaApart = false;
    BlendHalf colour;
    BlendHalf alpha;
    Rgba4 blendConstant;

    const TargetFormat* format = nullptr;
    PixelBuffer* target = nullptr; ///< not owned
    PixelRows rows;
    bool isSrgb = false;             ///< colours are stored with the sRGB curve
    uint32_t writeMask = 0xFFFFFFFF; ///< bits of a stored word that change
};

/// Fails for unknown factors, operations or functions, and for targets it cannot write.
HRESULT MakeOutputMerger(const DrawState& state, OutputMerger& mergerOut);

/// The lanes whose alpha passes, compared in 256 steps.
int TestAlpha(const OutputMerger& merger, Lanes alpha, int lanes);

/// Blends and writes `lanes` of up to `count` pixels starting at (x, y).
void WriteColour(const OutputMerger& merger, int x, int y, int count, const Rgba4& colour,
                 int lanes);

} // namespace headless

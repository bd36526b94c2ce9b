#pragma once

#include "platform/headless/d3d9/DrawVertex.h"
#include "platform/headless/d3d9/TextureSample.h"

#include <cstdint>

namespace headless {

/// The colours that stages work on, indexed by D3DTA_*.
struct StageRegisters {
    Rgba4 values[D3DTA_CONSTANT + 1];
};

/// One argument of an operation: a register and its modifiers.
struct StageArgument {
    uint8_t source = D3DTA_CURRENT;
    bool isComplement = false;
    bool isAlphaReplicate = false;
};

/// The arguments of an operation for four pixels, and the alpha that blend operations use as
/// weight.
struct OperationInput {
    const Rgba4* arg0;
    const Rgba4* arg1;
    const Rgba4* arg2;
    Lanes share;
};

/// Writes its channels of `out`, within 0..1. `out` must not alias an argument.
using StageFunction = void (*)(const OperationInput& input, Rgba4& out);

struct StageOperation {
    StageFunction run = nullptr; ///< null to pass the current value through
    StageArgument arguments[3];
    uint8_t shareFrom = D3DTA_CURRENT; ///< the register whose alpha is the blend weight
};

enum class BumpKind : uint8_t { None, Offsets, OffsetsAndLuminance };

struct StageProgram {
    bool samples = false;
    bool doublesAsAlpha = false;    ///< the colour operation also writes alpha
    bool isModulatedByNext = false; ///< D3DTOP_PREMODULATE
    bool isPremodulated = false;    ///< the previous stage premodulates, and this one has a texture
    bool writesTemp = false;
    BumpKind bump = BumpKind::None;
    int coordinates = -1; ///< index into the varyings
    bool isProjected = false;
    bool needsLevel = false;
    StageOperation colour;
    StageOperation alpha;
    Rgba4 constant;
    float bumpMatrix[2][2] = {};
    float luminanceScale = 0.0f;
    float luminanceOffset = 0.0f;
    Sampler sampler;
};

/// The stages of a draw, and which vertex values they read.
struct StagePrograms {
    int count = 0;
    bool readsDiffuse = false;
    bool readsSpecular = false;
    Rgba4 factor;
    StageProgram stages[kStageCount];
};

/// Resolves all stages up to the first disabled one. An operation that reads a texture where none
/// is set passes the current colour through, which is also how an untextured draw shows its vertex
/// colours. Fails for unknown operations or arguments, and when memory runs out.
HRESULT MakeStagePrograms(const DrawState& state, StagePrograms& programsOut);

/// Whether `MakeStagePrograms` would fail for these states if each stage had a texture.
HRESULT CheckStageStates(const DrawState& state);

/// Coordinates of a stage for four pixels.
struct StageCoordinates {
    Lanes u, v, level;
};

/// Runs one stage. `bumpInOut` carries a bump map's result from one stage to the next.
struct BumpResult {
    bool isSet = false;
    Lanes u, v;
    bool hasLuminance = false;
    Lanes luminance;
};

void RunStage(const StageProgram& stage, const StageCoordinates& coordinates, int lanes,
              StageRegisters& registers, BumpResult& bumpInOut);

} // namespace headless

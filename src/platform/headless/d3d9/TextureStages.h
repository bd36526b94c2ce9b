#pragma once

#include "platform/headless/d3d9/DrawVertex.h"
#include "platform/headless/d3d9/TextureSample.h"

#include <cstdint>

namespace headless {

/// One argument of an operation: a register and its modifiers.
struct StageArgument {
    uint8_t source = D3DTA_CURRENT;
    bool isComplement = false;
    bool isAlphaReplicate = false;
};

struct StageOperation {
    DWORD operation = 0; ///< D3DTEXTUREOP; 0 to pass the current value through
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
    int coordinates = -1;    ///< index into the varyings
    int coordinateCount = 2; ///< 3 for cubes and volumes; the divisor of projected ones follows
    bool isProjected = false;
    bool needsLevel = false;
    bool needsFootprint = false;
    StageOperation colour;
    StageOperation alpha;
    float constant[4] = {};
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
    float factor[4] = {};
    StageProgram stages[kStageCount];
};

/// Resolves all stages up to the first disabled one. An operation that reads a texture where none
/// is set passes the current colour through, which is also how an untextured draw shows its vertex
/// colours. Fails for unknown operations or arguments, and when memory runs out.
HRESULT MakeStagePrograms(const DrawState& state, StagePrograms& programsOut);

/// Whether `MakeStagePrograms` would fail for these states if each stage had a texture.
HRESULT CheckStageStates(const DrawState& state);

} // namespace headless

#pragma once

#include "platform/headless/d3d9/TextureStages.h"

namespace headless {

/// What an operation needs and does; one row per D3DTEXTUREOP.
struct OperationRow {
    DWORD operation;
    StageFunction colour; ///< red, green and blue
    StageFunction alpha;  ///< alpha
    uint8_t arguments;    ///< bits 0 to 2: uses argument 0 to 2
    int shareFrom;        ///< register whose alpha is the blend weight, or -1
};

/// Null for an unknown operation and for D3DTOP_DISABLE.
const OperationRow* FindOperation(DWORD operation);

} // namespace headless

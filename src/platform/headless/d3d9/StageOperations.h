#pragma once

#include <cstdint>
#include <d3d9.h>

namespace headless {

/// What an operation of a stage reads; one row per D3DTEXTUREOP. StageArithmetic.h computes it.
struct OperationRow {
    DWORD operation;
    uint8_t arguments; ///< bits 0 to 2: uses argument 0 to 2
    int shareFrom;     ///< register whose alpha is the blend weight, or -1
};

/// Null for an unknown operation and for D3DTOP_DISABLE.
const OperationRow* FindOperation(DWORD operation);

} // namespace headless

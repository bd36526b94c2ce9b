#pragma once

#include "platform/headless/d3dx/effect/FxStates.h"

namespace headless::fx {

/// The state that an operation of a compiled effect sets, by its public number; null for an unknown one and
/// for one that this host lacks.
const FxState* FxFindOperation(uint32_t operation);
/// The number of a state's operation.
uint32_t FxOperationOf(const FxState& state);

} // namespace headless::fx

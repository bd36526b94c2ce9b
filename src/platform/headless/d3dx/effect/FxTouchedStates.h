#pragma once

#include <cstddef>

#include "platform/headless/d3dx/effect/FxModel.h"

namespace headless::fx {

/// Lists every state that a pass of the technique may change, each once, in rising order. False if more
/// than `left` have to be looked at, which all techniques of an effect share.
bool FxListTouchedStates(FxTechnique& technique, size_t& leftInOut);

} // namespace headless::fx

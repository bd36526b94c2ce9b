#pragma once

#include <vector>

#include "platform/headless/d3dx/effect/FxParameter.h"

namespace headless::fx {

/// The form in which the device takes a state: a colour is one packed number, a constant one register.
FxShape FxDeviceShape(const FxAssignment& assignment);

/// The states with those that set several registers taken apart: the system's D3DX sets the first one right
/// and 0 in those behind it.
std::vector<FxAssignment> FxByRegisters(const std::vector<FxAssignment>& states);

} // namespace headless::fx

#pragma once

#include "platform/headless/d3dx/language/HlSyntax.h"

namespace headless::hl {

/// Finds the parameters and local variables of a function whose values nobody reads. Its body has been read.
void HlFindUnused(HlFunction& function);

} // namespace headless::hl

#pragma once

#include "platform/headless/d3d9/OutputMerger.h"

namespace headless {

/// Resolves a pair of D3DBLEND values and a D3DBLENDOP; fails if one of them is not a known value.
HRESULT MakeBlendChoice(DWORD source, DWORD target, DWORD operation, BlendChoice& choiceOut);

} // namespace headless

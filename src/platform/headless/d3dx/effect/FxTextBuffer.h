#pragma once

#include <d3dx9.h>

#include <string>

namespace headless::fx {

/// A buffer with a terminated text; the caller holds one reference. Null if memory runs out.
ID3DXBuffer* FxMakeTextBuffer(const std::string& text);

} // namespace headless::fx

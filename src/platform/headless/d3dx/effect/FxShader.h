#pragma once

#include <d3dx9.h>

#include <span>
#include <string>
#include <vector>

#include "platform/ComPointer.h"
#include "platform/headless/d3dx/effect/FxToken.h"

namespace headless::fx {

/// A shader of an effect, from an `asm` block.
struct FxShader {
    std::vector<DWORD> words; ///< empty if it has a fault
    std::string fault;        ///< why it cannot be made
    FxPlace place;            ///< of the fault

    /// Sets the shader on the device, which makes it the first time.
    HRESULT Set(IDirect3DDevice9& device, bool isVertex);

private:
    ComPointer<IDirect3DVertexShader9> vertexShader;
    ComPointer<IDirect3DPixelShader9> pixelShader;
};

/// Assembles the contents of an `asm` block, without its brackets.
void AssembleFxShader(std::span<const FxToken> block, bool isVertex, FxShader& shaderOut);

} // namespace headless::fx

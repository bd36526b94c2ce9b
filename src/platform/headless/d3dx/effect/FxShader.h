#pragma once

#include <d3dx9.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/ComPointer.h"
#include "platform/headless/d3dx/effect/FxProgram.h"
#include "platform/headless/d3dx/effect/FxToken.h"

namespace headless::hl {
struct HlShader;
}

namespace headless::fx {

/// A shader of an effect, from an `asm` block or in compiled form.
struct FxShader {
    std::vector<DWORD> words;              ///< empty if it has a fault
    std::string fault;                     ///< why it cannot be made
    FxPlace place;                         ///< of the fault
    std::vector<std::string> warnings;     ///< of the compiler, with their places
    FxProgramInputs inputs;                ///< of a compiled one: its constants
    std::shared_ptr<FxProgram> beforehand; ///< computes more of them; null for none

    /// Sets the shader on the device, which makes it the first time.
    HRESULT Set(IDirect3DDevice9& device, bool isVertex);
    /// Sets its constants, but for samplers, from the parameters.
    HRESULT SetConstants(IDirect3DDevice9& device, bool isVertex);

    bool Reads(const FxParameter& parameter) const;
    /// The stamp of the newest change to a parameter that is read; 0 if none is.
    uint64_t Newest() const;

private:
    ComPointer<IDirect3DVertexShader9> vertexShader;
    ComPointer<IDirect3DPixelShader9> pixelShader;
};

/// Takes the code of a shader, with its constant table and what is computed beforehand, for `parameters`.
/// False if a part of that is damaged, or takes more rows than are left (`FxProgramInputs::Bind`).
bool ReadFxShader(std::string_view code, bool isVertex, const FxParameterNames& parameters,
                  size_t& rowsLeftInOut, FxShader& shaderOut);

/// Takes what the compiler made of a text, with its errors and warnings.
void TakeFxShader(const hl::HlShader& made, bool isVertex, const FxParameterNames& parameters,
                  const FxDiagnostics& files, size_t& rowsLeftInOut, FxShader& shaderOut);

/// Assembles the contents of an `asm` block, without its brackets.
void AssembleFxShader(std::span<const FxToken> block, bool isVertex, FxShader& shaderOut);

} // namespace headless::fx

#pragma once

#include <d3dx9.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/headless/d3dx/effect/FxModel.h"

namespace headless::fx {

/// Applies the states of passes to a device.
class FxPassStates {
public:
    /// Applies the states that read a parameter changed after the stamp `changedAfter`; all states
    /// if it is 0. Tries all of them and returns the first failure.
    HRESULT Apply(IDirect3DDevice9& device, const FxPass& pass, uint64_t changedAfter);
    /// The state that made the last `Apply` fail, such as "LightType[1]"; "" if it succeeded.
    std::string Refused() const;
    /// The number that the device takes for a state of one.
    DWORD Word(const FxAssignment& assignment);

private:
    HRESULT ApplyOne(IDirect3DDevice9& device, const FxAssignment& assignment);
    HRESULT ApplySampler(IDirect3DDevice9& device, UINT index, const FxParameter* sampler);
    HRESULT ApplyTexture(IDirect3DDevice9& device, UINT stage, const FxObject& object);
    HRESULT ApplyShader(IDirect3DDevice9& device, const FxAssignment& assignment);
    HRESULT ApplyRegisters(IDirect3DDevice9& device, const FxAssignment& assignment);
    HRESULT ApplyRecord(IDirect3DDevice9& device, const FxPass& pass, const FxAssignment& first);
    void PutFields(const FxPass& pass, const FxAssignment& first, void* recordOut);
    D3DMATRIX Matrix(const FxExpression& value);

    std::vector<FxNumber> scratch;
    std::vector<FxStateKey> sentRecords;
    const FxAssignment* refused = nullptr; ///< not owned, lives in the pass
};

} // namespace headless::fx

#pragma once

#include <d3dx9.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/headless/d3dx/effect/FxModel.h"

namespace headless::fx {

/// Sends the states of passes to a device.
class FxPassStates {
public:
    /// Those states that read a parameter changed after the stamp `changedAfter`, all for 0. The first
    /// failure, after all have been tried.
    HRESULT Apply(IDirect3DDevice9& device, const FxPass& pass, std::uint64_t changedAfter);
    /// What the last `Apply` failed for, as "LightType[1]"; "" if it did not.
    std::string Refused() const;

private:
    HRESULT ApplyOne(IDirect3DDevice9& device, const FxAssignment& assignment);
    HRESULT ApplySampler(IDirect3DDevice9& device, const FxAssignment& assignment);
    HRESULT ApplyTexture(IDirect3DDevice9& device, UINT stage, const FxObject& object);
    HRESULT ApplyRecord(IDirect3DDevice9& device, const FxPass& pass, const FxAssignment& first);
    DWORD Word(const FxState& state, const FxExpression& value);
    void PutFields(const FxPass& pass, const FxAssignment& first, void* recordOut);
    D3DMATRIX Matrix(const FxExpression& value);

    std::vector<FxNumber> scratch;
    std::vector<FxStateKey> sentRecords;
    const FxAssignment* refused = nullptr; ///< not owned, lives in the pass
};

} // namespace headless::fx

#pragma once

#include <d3dx9.h>

#include <span>
#include <vector>

#include "platform/ComPointer.h"
#include "platform/headless/d3dx/effect/FxStates.h"

namespace headless::fx {

/// The device's states from before a technique began. The device has no state blocks, so this saves
/// just the states that the technique touches.
class FxSavedStates {
public:
    /// Reads the states from the device. `flags` are those of `ID3DXEffect::Begin`.
    void Save(IDirect3DDevice9& device, std::span<const FxStateKey> keys, DWORD flags);
    /// Restores and forgets the states. Tries all of them and returns the first failure.
    HRESULT Restore(IDirect3DDevice9& device);
    /// Forgets everything and releases the objects it holds.
    void Drop();

private:
    struct Saved {
        FxStateKey key;
        DWORD value = 0;
        size_t place = 0; ///< of a record or an object in its list
    };

    bool SaveOne(IDirect3DDevice9& device, Saved& savedInOut);
    HRESULT RestoreOne(IDirect3DDevice9& device, const Saved& saved) const;

    std::vector<Saved> states;
    std::vector<D3DMATRIX> matrices;
    std::vector<D3DLIGHT9> lights;
    D3DMATERIAL9 material = {};
    float patchSegments = 0.0f;
    std::vector<ComPointer<IDirect3DBaseTexture9>> textures;
    ComPointer<IDirect3DVertexShader9> vertexShader;
    ComPointer<IDirect3DPixelShader9> pixelShader;
};

} // namespace headless::fx

#pragma once

#include "tests/platform/d3dx/EffectOnDevice.h"
#include "tests/support/EffectFile.h"

#include <d3dx9.h>

#include <string>

/// A device and a compiled effect that the test lays out.
class CompiledEffectFixture : public EffectOnDevice {
protected:
    /// Makes the effect from `file`. False if it is refused.
    bool Load(ID3DXEffectPool* pool = nullptr);
    HRESULT LoadBytes(const std::string& bytes, ID3DXEffectPool* pool = nullptr);
    void TearDown() override;

    /// Begins the first technique and its first pass.
    void BeginPass();
    void EndPass();

    D3DXHANDLE Handle(const char* name) { return effect->GetParameterByName(nullptr, name); }
    D3DXPARAMETER_DESC Describe(D3DXHANDLE handle);
    std::vector<float> VertexFloats(UINT first, UINT count);
    std::vector<float> PixelFloats(UINT first, UINT count);

    /// Adds a technique with one pass of these states.
    void AddPass(const std::vector<EffectFile::State>& states);

    EffectFile file;
    Com<ID3DXEffect> effect;
};

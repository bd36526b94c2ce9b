#pragma once

#include <d3dx9.h>

#include <cstdlib>
#include <cstring>

#include "platform/ComPointer.h"
#include "tests/support/HiddenWindow.h"

/// A device that effects are made for.
class EffectDevice {
public:
    EffectDevice()
    {
        D3DPRESENT_PARAMETERS parameters = {};
        parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
        parameters.SwapEffect = D3DSWAPEFFECT_DISCARD;
        parameters.Windowed = TRUE;
        parameters.hDeviceWindow = window.Handle();
        *d3d.Out() = Direct3DCreate9(D3D_SDK_VERSION);
        d3d->CreateDevice(D3DADAPTER_DEFAULT, D3DDEVTYPE_HAL, parameters.hDeviceWindow,
                          D3DCREATE_SOFTWARE_VERTEXPROCESSING, &parameters, device.Out());
    }
    IDirect3DDevice9* Get() const { return device.Get(); }

private:
    HiddenWindow window{64, 64};
    ComPointer<IDirect3D9> d3d;
    ComPointer<IDirect3DDevice9> device;
};

inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}

/// "file(line,column): error X1234: text", followed by a line end.
inline void CheckError(ID3DXBuffer& errors)
{
    const auto* text = static_cast<const char*>(errors.GetBufferPointer());
    const size_t length = std::strlen(text);
    Require(length + 1 == errors.GetBufferSize() && text[length - 1] == '\n');
    Require(std::strstr(text, "): error X") != nullptr);
}

inline void UseParameters(ID3DXEffect& effect, bool areNamesUnique)
{
    D3DXEFFECT_DESC desc = {};
    Require(SUCCEEDED(effect.GetDesc(&desc)));
    for (UINT i = 0; i < desc.Parameters && i < 64; ++i) {
        const D3DXHANDLE handle = effect.GetParameter(nullptr, i);
        D3DXPARAMETER_DESC told = {};
        Require(SUCCEEDED(effect.GetParameterDesc(handle, &told)));
        Require(!areNamesUnique || effect.GetParameterByName(nullptr, told.Name) == handle);
        const D3DXVECTOR4 vector = {0.5f, -2.0f, 1e30f, 3.0f};
        effect.SetFloat(handle, 2.5f);
        effect.SetVector(handle, &vector);
        effect.SetFloatArray(handle, &vector.x, 4);
        effect.SetTexture(handle, nullptr);
    }
}

inline void UseTechniques(ID3DXEffect& effect, bool areNamesUnique)
{
    D3DXHANDLE technique = nullptr;
    for (int i = 0; i < 8; ++i) {
        if (effect.FindNextValidTechnique(technique, &technique) != D3D_OK)
            return;
        UINT passes = 0;
        Require(SUCCEEDED(effect.SetTechnique(technique)));
        Require(SUCCEEDED(effect.Begin(&passes, 0)));
        for (UINT pass = 0; pass < passes && pass < 8; ++pass) {
            effect.BeginPass(pass);
            UseParameters(effect, areNamesUnique);
            effect.CommitChanges();
            Require(SUCCEEDED(effect.EndPass()));
        }
        Require(SUCCEEDED(effect.End()));
    }
}

/// A documented error, or an effect whose parameters can be read and set and whose passes can begin and end.
/// Afterwards the device is in its previous state.
inline void UseEffect(const void* data, size_t size, bool areNamesUnique)
{
    static EffectDevice device;
    device.Get()->SetRenderState(D3DRS_CULLMODE, D3DCULL_CW);
    ComPointer<ID3DXEffect> effect;
    ComPointer<ID3DXBuffer> errors;
    const HRESULT result = D3DXCreateEffect(device.Get(), data, static_cast<UINT>(size), nullptr,
                                            nullptr, 0, nullptr, effect.Out(), errors.Out());
    Require(SUCCEEDED(result) == static_cast<bool>(effect) &&
            static_cast<bool>(effect) != static_cast<bool>(errors));
    if (!effect) {
        CheckError(*errors.Get());
        return;
    }
    UseTechniques(*effect.Get(), areNamesUnique);
    DWORD cullMode = 0;
    device.Get()->GetRenderState(D3DRS_CULLMODE, &cullMode);
    Require(cullMode == D3DCULL_CW);
}

// Creating and setting shaders, and their constants.

#include "platform/headless/d3d9/Device.h"

#include <memory>
#include <new>

namespace headless {

namespace {

template <typename Shader, typename Interface>
HRESULT MakeShader(ResourceOwner& owner, const DWORD* code, bool isPixel, Interface** shaderOut)
{
    if (!shaderOut)
        return D3DERR_INVALIDCALL;
    *shaderOut = nullptr;
    if (!code)
        return D3DERR_INVALIDCALL;
    std::unique_ptr<Shader> made(new (std::nothrow) Shader(owner));
    if (!made)
        return E_OUTOFMEMORY;
    std::string reason;
    if (!made->Parts().Read(code, isPixel, reason))
        return LogUnmodelled(isPixel ? "CreatePixelShader" : "CreateVertexShader", reason,
                             D3DERR_INVALIDCALL);
    made->AddRef();
    *shaderOut = made.release();
    return D3D_OK;
}

template <typename Shader, typename Interface>
HRESULT Give(const Binding<Shader>& slot, Interface** shaderOut)
{
    if (!shaderOut)
        return D3DERR_INVALIDCALL;
    *shaderOut = slot.Get();
    if (slot.Get())
        slot.Get()->AddRef();
    return D3D_OK;
}

} // namespace

HRESULT HeadlessDevice::CreateVertexShader(const DWORD* byteCode,
                                           IDirect3DVertexShader9** shaderOut)
{
    return MakeShader<HeadlessVertexShader>(*this, byteCode, false, shaderOut);
}

HRESULT HeadlessDevice::CreatePixelShader(const DWORD* byteCode, IDirect3DPixelShader9** shaderOut)
{
    return MakeShader<HeadlessPixelShader>(*this, byteCode, true, shaderOut);
}

HRESULT HeadlessDevice::SetVertexShader(IDirect3DVertexShader9* next)
{
    state.vertexShader.Set(static_cast<HeadlessVertexShader*>(next));
    return D3D_OK;
}

HRESULT HeadlessDevice::GetVertexShader(IDirect3DVertexShader9** shaderOut)
{
    return Give(state.vertexShader, shaderOut);
}

HRESULT HeadlessDevice::SetPixelShader(IDirect3DPixelShader9* next)
{
    state.pixelShader.Set(static_cast<HeadlessPixelShader*>(next));
    return D3D_OK;
}

HRESULT HeadlessDevice::GetPixelShader(IDirect3DPixelShader9** shaderOut)
{
    return Give(state.pixelShader, shaderOut);
}

HRESULT HeadlessDevice::SetVertexShaderConstantF(UINT first, const float* data, UINT count)
{
    return state.vertexConstants.floats.Set(first, data, count);
}

HRESULT HeadlessDevice::GetVertexShaderConstantF(UINT first, float* dataOut, UINT count)
{
    return state.vertexConstants.floats.Get(first, dataOut, count);
}

HRESULT HeadlessDevice::SetVertexShaderConstantI(UINT first, const int* data, UINT count)
{
    return state.vertexConstants.ints.Set(first, data, count);
}

HRESULT HeadlessDevice::GetVertexShaderConstantI(UINT first, int* dataOut, UINT count)
{
    return state.vertexConstants.ints.Get(first, dataOut, count);
}

HRESULT HeadlessDevice::SetVertexShaderConstantB(UINT first, const BOOL* data, UINT count)
{
    return state.vertexConstants.bools.Set(first, data, count);
}

HRESULT HeadlessDevice::GetVertexShaderConstantB(UINT first, BOOL* dataOut, UINT count)
{
    return state.vertexConstants.bools.Get(first, dataOut, count);
}

HRESULT HeadlessDevice::SetPixelShaderConstantF(UINT first, const float* data, UINT count)
{
    return state.pixelConstants.floats.Set(first, data, count);
}

HRESULT HeadlessDevice::GetPixelShaderConstantF(UINT first, float* dataOut, UINT count)
{
    return state.pixelConstants.floats.Get(first, dataOut, count);
}

HRESULT HeadlessDevice::SetPixelShaderConstantI(UINT first, const int* data, UINT count)
{
    return state.pixelConstants.ints.Set(first, data, count);
}

HRESULT HeadlessDevice::GetPixelShaderConstantI(UINT first, int* dataOut, UINT count)
{
    return state.pixelConstants.ints.Get(first, dataOut, count);
}

HRESULT HeadlessDevice::SetPixelShaderConstantB(UINT first, const BOOL* data, UINT count)
{
    return state.pixelConstants.bools.Set(first, data, count);
}

HRESULT HeadlessDevice::GetPixelShaderConstantB(UINT first, BOOL* dataOut, UINT count)
{
    return state.pixelConstants.bools.Get(first, dataOut, count);
}

} // namespace headless

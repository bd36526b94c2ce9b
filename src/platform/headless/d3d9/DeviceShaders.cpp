// Creating and setting shaders, and their constants.

#include "platform/headless/d3d9/Device.h"

#include <algorithm>
#include <memory>
#include <new>

namespace headless {

namespace {

/// Constants that a device keeps; software vertex shaders reach all of them.
constexpr UINT kVertexFloats = 8192;
constexpr UINT kPixelFloats = 224;
constexpr UINT kVertexSwitches = 2048;
constexpr UINT kPixelSwitches = 16;

template <typename T>
HRESULT SetValues(std::vector<T>& values, UINT registers, UINT width, UINT first, const T* data,
                  UINT count)
{
    if (!data || first > registers || count > registers - first)
        return D3DERR_INVALIDCALL;
    if (values.size() < size_t{registers} * width)
        values.resize(size_t{registers} * width);
    std::copy_n(data, size_t{count} * width, values.begin() + first * width);
    return D3D_OK;
}

/// Constants that were never set are 0.
template <typename T>
HRESULT GetValues(const std::vector<T>& values, UINT registers, UINT width, UINT first, T* dataOut,
                  UINT count)
{
    if (!dataOut || first > registers || count > registers - first)
        return D3DERR_INVALIDCALL;
    for (size_t i = 0; i < size_t{count} * width; ++i) {
        const size_t at = size_t{first} * width + i;
        dataOut[i] = at < values.size() ? values[at] : T{};
    }
    return D3D_OK;
}

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
    return SetValues(state.vertexConstants.floats, kVertexFloats, 4, first, data, count);
}

HRESULT HeadlessDevice::GetVertexShaderConstantF(UINT first, float* dataOut, UINT count)
{
    return GetValues(state.vertexConstants.floats, kVertexFloats, 4, first, dataOut, count);
}

HRESULT HeadlessDevice::SetVertexShaderConstantI(UINT first, const int* data, UINT count)
{
    return SetValues(state.vertexConstants.ints, kVertexSwitches, 4, first, data, count);
}

HRESULT HeadlessDevice::GetVertexShaderConstantI(UINT first, int* dataOut, UINT count)
{
    return GetValues(state.vertexConstants.ints, kVertexSwitches, 4, first, dataOut, count);
}

HRESULT HeadlessDevice::SetVertexShaderConstantB(UINT first, const BOOL* data, UINT count)
{
    return SetValues<int>(state.vertexConstants.bools, kVertexSwitches, 1, first, data, count);
}

HRESULT HeadlessDevice::GetVertexShaderConstantB(UINT first, BOOL* dataOut, UINT count)
{
    return GetValues<int>(state.vertexConstants.bools, kVertexSwitches, 1, first, dataOut, count);
}

HRESULT HeadlessDevice::SetPixelShaderConstantF(UINT first, const float* data, UINT count)
{
    return SetValues(state.pixelConstants.floats, kPixelFloats, 4, first, data, count);
}

HRESULT HeadlessDevice::GetPixelShaderConstantF(UINT first, float* dataOut, UINT count)
{
    return GetValues(state.pixelConstants.floats, kPixelFloats, 4, first, dataOut, count);
}

HRESULT HeadlessDevice::SetPixelShaderConstantI(UINT first, const int* data, UINT count)
{
    return SetValues(state.pixelConstants.ints, kPixelSwitches, 4, first, data, count);
}

HRESULT HeadlessDevice::GetPixelShaderConstantI(UINT first, int* dataOut, UINT count)
{
    return GetValues(state.pixelConstants.ints, kPixelSwitches, 4, first, dataOut, count);
}

HRESULT HeadlessDevice::SetPixelShaderConstantB(UINT first, const BOOL* data, UINT count)
{
    return SetValues<int>(state.pixelConstants.bools, kPixelSwitches, 1, first, data, count);
}

HRESULT HeadlessDevice::GetPixelShaderConstantB(UINT first, BOOL* dataOut, UINT count)
{
    return GetValues<int>(state.pixelConstants.bools, kPixelSwitches, 1, first, dataOut, count);
}

} // namespace headless

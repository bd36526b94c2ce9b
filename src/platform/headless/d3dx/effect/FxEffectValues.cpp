// Getting and setting parameter values.

#include "platform/headless/d3dx/effect/FxEffect.h"
#include "platform/headless/d3dx/effect/FxValues.h"

namespace headless::fx {

namespace {

/// A texture parameter that is not an array, or null.
ComPointer<IDirect3DBaseTexture9>* TextureOf(FxParameter* parameter)
{
    const bool fits = parameter && parameter->IsTexture() && !parameter->IsArray();
    return fits ? &parameter->storage->textures[parameter->first] : nullptr;
}

/// A string parameter that is not an array, or null.
std::string* StringOf(FxParameter* parameter)
{
    const bool fits = parameter && parameter->type == D3DXPT_STRING && !parameter->IsArray();
    return fits ? &parameter->storage->strings[parameter->first] : nullptr;
}

/// The elements that a call addresses, or null if the array is too short.
const std::unique_ptr<FxParameter>* Matrices(const FxParameter* parameter, UINT count)
{
    return parameter && FxHoldsMatrices(*parameter, count) ? parameter->parts.data() : nullptr;
}

} // namespace

HRESULT FxEffect::SetValue(D3DXHANDLE handle, const void* data, UINT bytes)
{
    FxParameter* parameter = Parameter(handle);
    return parameter && data ? FxSetBytes(*parameter, data, bytes) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::GetValue(D3DXHANDLE handle, void* dataOut, UINT bytes)
{
    const FxParameter* parameter = Parameter(handle);
    return parameter && dataOut ? FxGetBytes(*parameter, dataOut, bytes) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::SetRawValue(D3DXHANDLE handle, const void* data, UINT offset, UINT bytes)
{
    FxParameter* parameter = Parameter(handle);
    return parameter && data ? FxSetRawBytes(*parameter, data, offset, bytes) : D3DERR_INVALIDCALL;
}

// ---- Numbers

HRESULT FxEffect::SetBool(D3DXHANDLE handle, BOOL value)
{
    FxParameter* parameter = Parameter(handle);
    return parameter ? FxSetOne(*parameter, value != 0 ? 1 : 0, D3DXPT_BOOL) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::GetBool(D3DXHANDLE handle, BOOL* valueOut)
{
    const FxParameter* parameter = Parameter(handle);
    FxCell cell = 0;
    const HRESULT result =
        parameter && valueOut ? FxGetOne(*parameter, D3DXPT_BOOL, cell) : D3DERR_INVALIDCALL;
    if (SUCCEEDED(result))
        *valueOut = cell != 0 ? TRUE : FALSE;
    return result;
}

HRESULT FxEffect::SetInt(D3DXHANDLE handle, int value)
{
    FxParameter* parameter = Parameter(handle);
    return parameter ? FxSetInteger(*parameter, value) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::GetInt(D3DXHANDLE handle, INT* valueOut)
{
    const FxParameter* parameter = Parameter(handle);
    return parameter && valueOut ? FxGetInteger(*parameter, *valueOut) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::SetFloat(D3DXHANDLE handle, float value)
{
    FxParameter* parameter = Parameter(handle);
    return parameter ? FxSetOne(*parameter, FxCellOfFloat(value, D3DXPT_FLOAT), D3DXPT_FLOAT)
                     : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::GetFloat(D3DXHANDLE handle, float* valueOut)
{
    const FxParameter* parameter = Parameter(handle);
    FxCell cell = 0;
    const HRESULT result =
        parameter && valueOut ? FxGetOne(*parameter, D3DXPT_FLOAT, cell) : D3DERR_INVALIDCALL;
    if (SUCCEEDED(result))
        *valueOut = FxFloatOfCell(cell, D3DXPT_FLOAT);
    return result;
}

HRESULT FxEffect::SetBoolArray(D3DXHANDLE handle, const BOOL* values, UINT count)
{
    FxParameter* parameter = Parameter(handle);
    return parameter && values ? FxSetCells(*parameter, values, D3DXPT_BOOL, count)
                               : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::GetBoolArray(D3DXHANDLE handle, BOOL* valuesOut, UINT count)
{
    const FxParameter* parameter = Parameter(handle);
    return parameter && valuesOut ? FxGetCells(*parameter, valuesOut, D3DXPT_BOOL, count)
                                  : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::SetIntArray(D3DXHANDLE handle, const int* values, UINT count)
{
    FxParameter* parameter = Parameter(handle);
    return parameter && values ? FxSetCells(*parameter, values, D3DXPT_INT, count)
                               : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::GetIntArray(D3DXHANDLE handle, INT* valuesOut, UINT count)
{
    const FxParameter* parameter = Parameter(handle);
    return parameter && valuesOut ? FxGetCells(*parameter, valuesOut, D3DXPT_INT, count)
                                  : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::SetFloatArray(D3DXHANDLE handle, const float* values, UINT count)
{
    FxParameter* parameter = Parameter(handle);
    return parameter && values ? FxSetCells(*parameter, values, D3DXPT_FLOAT, count)
                               : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::GetFloatArray(D3DXHANDLE handle, float* valuesOut, UINT count)
{
    const FxParameter* parameter = Parameter(handle);
    return parameter && valuesOut ? FxGetCells(*parameter, valuesOut, D3DXPT_FLOAT, count)
                                  : D3DERR_INVALIDCALL;
}

// ---- Vectors and matrices

HRESULT FxEffect::SetVector(D3DXHANDLE handle, const D3DXVECTOR4* vector)
{
    FxParameter* parameter = Parameter(handle);
    return parameter && vector ? FxSetVector(*parameter, *vector) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::GetVector(D3DXHANDLE handle, D3DXVECTOR4* vectorOut)
{
    const FxParameter* parameter = Parameter(handle);
    return parameter && vectorOut ? FxGetVector(*parameter, *vectorOut) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::SetVectorArray(D3DXHANDLE handle, const D3DXVECTOR4* vectors, UINT count)
{
    FxParameter* parameter = Parameter(handle);
    return parameter && vectors ? FxSetVectors(*parameter, vectors, count) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::GetVectorArray(D3DXHANDLE handle, D3DXVECTOR4* vectorsOut, UINT count)
{
    const FxParameter* parameter = Parameter(handle);
    return parameter && vectorsOut ? FxGetVectors(*parameter, vectorsOut, count)
                                   : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::SetMatrix(D3DXHANDLE handle, const D3DXMATRIX* matrix)
{
    FxParameter* parameter = Parameter(handle);
    return parameter && matrix ? FxSetMatrix(*parameter, *matrix, false) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::GetMatrix(D3DXHANDLE handle, D3DXMATRIX* matrixOut)
{
    const FxParameter* parameter = Parameter(handle);
    return parameter && matrixOut ? FxGetMatrix(*parameter, *matrixOut, false) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::SetMatrixArray(D3DXHANDLE handle, const D3DXMATRIX* matrices, UINT count)
{
    const auto* parts = Matrices(Parameter(handle), count);
    if (!parts || !matrices)
        return D3DERR_INVALIDCALL;
    for (UINT i = 0; i < count; ++i)
        FxSetMatrix(*parts[i], matrices[i], false);
    return D3D_OK;
}

HRESULT FxEffect::GetMatrixArray(D3DXHANDLE handle, D3DXMATRIX* matricesOut, UINT count)
{
    const auto* parts = Matrices(Parameter(handle), count);
    if (!parts || !matricesOut)
        return D3DERR_INVALIDCALL;
    for (UINT i = 0; i < count; ++i)
        FxGetMatrix(*parts[i], matricesOut[i], false);
    return D3D_OK;
}

HRESULT FxEffect::SetMatrixPointerArray(D3DXHANDLE handle, const D3DXMATRIX** matrices, UINT count)
{
    const auto* parts = Matrices(Parameter(handle), count);
    if (!parts || !matrices)
        return D3DERR_INVALIDCALL;
    for (UINT i = 0; i < count; ++i)
        FxSetMatrix(*parts[i], *matrices[i], false);
    return D3D_OK;
}

HRESULT FxEffect::GetMatrixPointerArray(D3DXHANDLE handle, D3DXMATRIX** matricesOut, UINT count)
{
    const auto* parts = Matrices(Parameter(handle), count);
    if (!parts || !matricesOut)
        return D3DERR_INVALIDCALL;
    for (UINT i = 0; i < count; ++i)
        FxGetMatrix(*parts[i], *matricesOut[i], false);
    return D3D_OK;
}

HRESULT FxEffect::SetMatrixTranspose(D3DXHANDLE handle, const D3DXMATRIX* matrix)
{
    FxParameter* parameter = Parameter(handle);
    return parameter && matrix ? FxSetMatrix(*parameter, *matrix, true) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::GetMatrixTranspose(D3DXHANDLE handle, D3DXMATRIX* matrixOut)
{
    const FxParameter* parameter = Parameter(handle);
    return parameter && matrixOut ? FxGetMatrix(*parameter, *matrixOut, true) : D3DERR_INVALIDCALL;
}

HRESULT FxEffect::SetMatrixTransposeArray(D3DXHANDLE handle, const D3DXMATRIX* matrices, UINT count)
{
    const auto* parts = Matrices(Parameter(handle), count);
    if (!parts || !matrices)
        return D3DERR_INVALIDCALL;
    for (UINT i = 0; i < count; ++i)
        FxSetMatrix(*parts[i], matrices[i], true);
    return D3D_OK;
}

HRESULT FxEffect::GetMatrixTransposeArray(D3DXHANDLE handle, D3DXMATRIX* matricesOut, UINT count)
{
    const auto* parts = Matrices(Parameter(handle), count);
    if (!parts || !matricesOut)
        return D3DERR_INVALIDCALL;
    for (UINT i = 0; i < count; ++i)
        FxGetMatrix(*parts[i], matricesOut[i], true);
    return D3D_OK;
}

HRESULT FxEffect::SetMatrixTransposePointerArray(D3DXHANDLE handle, const D3DXMATRIX** matrices,
                                                 UINT count)
{
    const auto* parts = Matrices(Parameter(handle), count);
    if (!parts || !matrices)
        return D3DERR_INVALIDCALL;
    for (UINT i = 0; i < count; ++i)
        FxSetMatrix(*parts[i], *matrices[i], true);
    return D3D_OK;
}

HRESULT FxEffect::GetMatrixTransposePointerArray(D3DXHANDLE handle, D3DXMATRIX** matricesOut,
                                                 UINT count)
{
    const auto* parts = Matrices(Parameter(handle), count);
    if (!parts || !matricesOut)
        return D3DERR_INVALIDCALL;
    for (UINT i = 0; i < count; ++i)
        FxGetMatrix(*parts[i], *matricesOut[i], true);
    return D3D_OK;
}

// ---- Strings and textures

HRESULT FxEffect::SetString(D3DXHANDLE handle, const char* string)
{
    FxParameter* parameter = Parameter(handle);
    std::string* place = StringOf(parameter);
    if (!place || !string)
        return D3DERR_INVALIDCALL;
    *place = string;
    parameter->storage->Touch();
    return D3D_OK;
}

/// The effect owns the text, which is valid until the parameter changes.
HRESULT FxEffect::GetString(D3DXHANDLE handle, const char** stringOut)
{
    const std::string* place = StringOf(Parameter(handle));
    if (!place || !stringOut)
        return D3DERR_INVALIDCALL;
    *stringOut = place->c_str();
    return D3D_OK;
}

HRESULT FxEffect::SetTexture(D3DXHANDLE handle, IDirect3DBaseTexture9* texture)
{
    FxParameter* parameter = Parameter(handle);
    ComPointer<IDirect3DBaseTexture9>* place = TextureOf(parameter);
    if (!place)
        return D3DERR_INVALIDCALL;
    *place = ComPointer<IDirect3DBaseTexture9>::Share(texture);
    parameter->storage->Touch();
    return D3D_OK;
}

HRESULT FxEffect::GetTexture(D3DXHANDLE handle, IDirect3DBaseTexture9** textureOut)
{
    const ComPointer<IDirect3DBaseTexture9>* place = TextureOf(Parameter(handle));
    if (!place || !textureOut)
        return D3DERR_INVALIDCALL;
    *textureOut = ComPointer<IDirect3DBaseTexture9>(*place).Detach();
    return D3D_OK;
}

} // namespace headless::fx

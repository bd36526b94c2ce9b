#include "platform/headless/d3dx/effect/FxValues.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace headless::fx {

namespace {

bool IsOneNumber(const FxParameter& parameter)
{
    return parameter.IsNumeric() && parameter.ValueCount() == 1 && !parameter.IsArray();
}

bool IsColorVector(const FxParameter& parameter)
{
    return parameter.kind == D3DXPC_VECTOR && parameter.type == D3DXPT_FLOAT &&
           parameter.columns >= 3 && !parameter.IsArray();
}

bool IsVector(const FxParameter& parameter)
{
    return (parameter.kind == D3DXPC_VECTOR || parameter.kind == D3DXPC_SCALAR);
}

bool IsMatrix(const FxParameter& parameter)
{
    return parameter.kind == D3DXPC_MATRIX_ROWS || parameter.kind == D3DXPC_MATRIX_COLUMNS;
}

const float* Floats(const D3DXVECTOR4& vector)
{
    return &vector.x;
}

void PutVector(FxCell* cells, const FxParameter& parameter, const D3DXVECTOR4& vector)
{
    for (UINT i = 0; i < parameter.columns; ++i)
        cells[i] = FxCellOfFloat(Floats(vector)[i], parameter.type);
}

void TakeVector(const FxCell* cells, const FxParameter& parameter, D3DXVECTOR4& vectorOut)
{
    float values[4] = {};
    for (UINT i = 0; i < parameter.columns; ++i)
        values[i] = FxFloatOfCell(cells[i], parameter.type);
    vectorOut = {values[0], values[1], values[2], values[3]};
}

} // namespace

HRESULT FxSetOne(FxParameter& parameter, FxCell value, D3DXPARAMETER_TYPE from)
{
    if (!IsOneNumber(parameter))
        return D3DERR_INVALIDCALL;
    *parameter.Cells() = FxConvert(value, from, parameter.type);
    parameter.storage->Touch();
    return D3D_OK;
}

HRESULT FxGetOne(const FxParameter& parameter, D3DXPARAMETER_TYPE to, FxCell& valueOut)
{
    if (!IsOneNumber(parameter))
        return D3DERR_INVALIDCALL;
    valueOut = FxConvert(*parameter.Cells(), parameter.type, to);
    return D3D_OK;
}

HRESULT FxSetInteger(FxParameter& parameter, INT value)
{
    if (!IsColorVector(parameter))
        return FxSetOne(parameter, static_cast<FxCell>(value), D3DXPT_INT);
    const std::array<float, 4> color = FxUnpackColor(static_cast<D3DCOLOR>(value));
    return FxSetVector(parameter, {color[0], color[1], color[2], color[3]});
}

HRESULT FxGetInteger(const FxParameter& parameter, INT& valueOut)
{
    FxCell cell = 0;
    if (IsColorVector(parameter)) {
        D3DXVECTOR4 color;
        TakeVector(parameter.Cells(), parameter, color);
        cell = FxPackColor(Floats(color), parameter.columns);
    } else if (const HRESULT result = FxGetOne(parameter, D3DXPT_INT, cell); FAILED(result)) {
        return result;
    }
    valueOut = static_cast<INT>(cell);
    return D3D_OK;
}

HRESULT FxSetCells(FxParameter& parameter, const void* values, D3DXPARAMETER_TYPE from, UINT count)
{
    if (!parameter.IsNumeric())
        return D3DERR_INVALIDCALL;
    const auto* bytes = static_cast<const unsigned char*>(values);
    const size_t most = std::min<size_t>(count, parameter.ValueCount());
    for (size_t i = 0; i < most; ++i) {
        FxCell cell = 0;
        std::memcpy(&cell, bytes + i * sizeof cell, sizeof cell);
        parameter.Cells()[i] = FxConvert(cell, from, parameter.type);
    }
    parameter.storage->Touch();
    return D3D_OK;
}

HRESULT FxGetCells(const FxParameter& parameter, void* valuesOut, D3DXPARAMETER_TYPE to, UINT count)
{
    if (!parameter.IsNumeric())
        return D3DERR_INVALIDCALL;
    auto* bytes = static_cast<unsigned char*>(valuesOut);
    const size_t most = std::min<size_t>(count, parameter.ValueCount());
    for (size_t i = 0; i < most; ++i) {
        const FxCell cell = FxConvert(parameter.Cells()[i], parameter.type, to);
        std::memcpy(bytes + i * sizeof cell, &cell, sizeof cell);
    }
    return D3D_OK;
}

HRESULT FxSetVector(FxParameter& parameter, const D3DXVECTOR4& vector)
{
    if (!IsVector(parameter) || parameter.IsArray())
        return D3DERR_INVALIDCALL;
    if (parameter.type == D3DXPT_INT && parameter.columns == 1)
        *parameter.Cells() = FxPackColor(Floats(vector), 4);
    else
        PutVector(parameter.Cells(), parameter, vector);
    parameter.storage->Touch();
    return D3D_OK;
}

HRESULT FxGetVector(const FxParameter& parameter, D3DXVECTOR4& vectorOut)
{
    if (!IsVector(parameter) || parameter.IsArray())
        return D3DERR_INVALIDCALL;
    TakeVector(parameter.Cells(), parameter, vectorOut);
    if (parameter.type == D3DXPT_INT && parameter.columns == 1) {
        const std::array<float, 4> color = FxUnpackColor(*parameter.Cells());
        vectorOut = {color[0], color[1], color[2], color[3]};
    }
    return D3D_OK;
}

HRESULT FxSetVectors(FxParameter& parameter, const D3DXVECTOR4* vectors, UINT count)
{
    if (parameter.kind != D3DXPC_VECTOR || count > parameter.elements)
        return D3DERR_INVALIDCALL;
    for (UINT i = 0; i < count; ++i)
        PutVector(parameter.Cells() + size_t{i} * parameter.columns, parameter, vectors[i]);
    parameter.storage->Touch();
    return D3D_OK;
}

HRESULT FxGetVectors(const FxParameter& parameter, D3DXVECTOR4* vectorsOut, UINT count)
{
    if (parameter.kind != D3DXPC_VECTOR || count > parameter.elements)
        return D3DERR_INVALIDCALL;
    for (UINT i = 0; i < count; ++i)
        TakeVector(parameter.Cells() + size_t{i} * parameter.columns, parameter, vectorsOut[i]);
    return D3D_OK;
}

bool FxHoldsMatrices(const FxParameter& parameter, UINT count)
{
    return IsMatrix(parameter) && count <= parameter.elements;
}

HRESULT FxSetMatrix(FxParameter& parameter, const D3DXMATRIX& matrix, bool isTransposed)
{
    if (!IsMatrix(parameter) || parameter.IsArray())
        return D3DERR_INVALIDCALL;
    for (UINT row = 0; row < parameter.rows; ++row)
        for (UINT column = 0; column < parameter.columns; ++column)
            parameter.Cells()[row * parameter.columns + column] = FxCellOfFloat(
                isTransposed ? matrix.m[column][row] : matrix.m[row][column], parameter.type);
    parameter.storage->Touch();
    return D3D_OK;
}

HRESULT FxGetMatrix(const FxParameter& parameter, D3DXMATRIX& matrixOut, bool isTransposed)
{
    if (!IsMatrix(parameter) || parameter.IsArray())
        return D3DERR_INVALIDCALL;
    for (UINT row = 0; row < 4; ++row) {
        for (UINT column = 0; column < 4; ++column) {
            const bool isThere = row < parameter.rows && column < parameter.columns;
            (isTransposed ? matrixOut.m[column][row] : matrixOut.m[row][column]) =
                isThere ? FxFloatOfCell(parameter.Cells()[row * parameter.columns + column],
                                        parameter.type)
                        : 0.0f;
        }
    }
    return D3D_OK;
}

HRESULT FxSetBytes(FxParameter& parameter, const void* data, UINT bytes)
{
    if (bytes < parameter.ByteCount())
        return D3DERR_INVALIDCALL;
    if (parameter.IsNumeric()) {
        std::memcpy(parameter.Cells(), data, parameter.ByteCount());
    } else if (parameter.IsTexture()) {
        const auto* textures = static_cast<IDirect3DBaseTexture9* const*>(data);
        for (size_t i = 0; i < parameter.ValueCount(); ++i)
            parameter.storage->textures[parameter.first + i] =
                ComPointer<IDirect3DBaseTexture9>::Share(textures[i]);
    } else {
        return D3DERR_INVALIDCALL;
    }
    parameter.storage->Touch();
    return D3D_OK;
}

HRESULT FxGetBytes(const FxParameter& parameter, void* dataOut, UINT bytes)
{
    if (bytes < parameter.ByteCount())
        return D3DERR_INVALIDCALL;
    if (parameter.IsNumeric()) {
        std::memcpy(dataOut, parameter.Cells(), parameter.ByteCount());
        return D3D_OK;
    }
    if (!parameter.IsTexture())
        return D3DERR_INVALIDCALL;
    auto* textures = static_cast<IDirect3DBaseTexture9**>(dataOut);
    for (size_t i = 0; i < parameter.ValueCount(); ++i)
        textures[i] =
            ComPointer<IDirect3DBaseTexture9>(parameter.storage->textures[parameter.first + i])
                .Detach();
    return D3D_OK;
}

HRESULT FxSetRawBytes(FxParameter& parameter, const void* data, UINT offset, UINT bytes)
{
    const UINT size = parameter.ByteCount();
    if (!parameter.IsNumeric() || offset > size || bytes > size - offset)
        return D3DERR_INVALIDCALL;
    std::memcpy(reinterpret_cast<unsigned char*>(parameter.Cells()) + offset, data, bytes);
    parameter.storage->Touch();
    return D3D_OK;
}

} // namespace headless::fx

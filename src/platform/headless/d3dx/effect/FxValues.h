#pragma once

#include "platform/headless/d3dx/effect/FxParameter.h"

namespace headless::fx {

// Setting and getting parameter values, converted between types as the public documentation
// specifies. Each returns `D3DERR_INVALIDCALL` if the parameter's kind or dimensions do not fit the
// call.

/// Sets or gets a single number.
HRESULT FxSetOne(FxParameter& parameter, FxCell value, D3DXPARAMETER_TYPE from);
HRESULT FxGetOne(const FxParameter& parameter, D3DXPARAMETER_TYPE to, FxCell& valueOut);

/// An integer; for a vector of 3 or 4 floats it is a packed colour.
HRESULT FxSetInteger(FxParameter& parameter, INT value);
HRESULT FxGetInteger(const FxParameter& parameter, INT& valueOut);

/// Consecutive numbers, as many as both sides have.
HRESULT FxSetCells(FxParameter& parameter, const void* values, D3DXPARAMETER_TYPE from, UINT count);
HRESULT FxGetCells(const FxParameter& parameter, void* valuesOut, D3DXPARAMETER_TYPE to,
                   UINT count);

/// One vector; for a single integer it is a packed colour. Components that the parameter lacks are
/// returned as 0.
HRESULT FxSetVector(FxParameter& parameter, const D3DXVECTOR4& vector);
HRESULT FxGetVector(const FxParameter& parameter, D3DXVECTOR4& vectorOut);
/// Sets several vectors of an array that must have at least as many.
HRESULT FxSetVectors(FxParameter& parameter, const D3DXVECTOR4* vectors, UINT count);
HRESULT FxGetVectors(const FxParameter& parameter, D3DXVECTOR4* vectorsOut, UINT count);

/// One matrix. Cells that the parameter lacks are returned as 0.
HRESULT FxSetMatrix(FxParameter& parameter, const D3DXMATRIX& matrix, bool isTransposed);
HRESULT FxGetMatrix(const FxParameter& parameter, D3DXMATRIX& matrixOut, bool isTransposed);
/// True if the parameter is an array of at least `count` matrices.
bool FxHoldsMatrices(const FxParameter& parameter, UINT count);

/// All bytes of a number or an array of them, or texture pointers; `bytes` may exceed the size.
HRESULT FxSetBytes(FxParameter& parameter, const void* data, UINT bytes);
/// Each returned texture has a reference.
HRESULT FxGetBytes(const FxParameter& parameter, void* dataOut, UINT bytes);
/// Sets the bytes of numbers from `offset` on.
HRESULT FxSetRawBytes(FxParameter& parameter, const void* data, UINT offset, UINT bytes);

} // namespace headless::fx

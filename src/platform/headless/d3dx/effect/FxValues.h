#pragma once

#include "platform/headless/d3dx/effect/FxParameter.h"

namespace headless::fx {

// Values of parameters in and out, converted between types as the public documentation says. Each
// gives `D3DERR_INVALIDCALL` where form or kind of the parameter does not fit the call.

/// One number, into or out of a parameter that is one number.
HRESULT FxSetOne(FxParameter& parameter, FxCell value, D3DXPARAMETER_TYPE from);
HRESULT FxGetOne(const FxParameter& parameter, D3DXPARAMETER_TYPE to, FxCell& valueOut);

/// An integer; a vector of 3 or 4 floats takes it as a packed colour, and gives one.
HRESULT FxSetInteger(FxParameter& parameter, INT value);
HRESULT FxGetInteger(const FxParameter& parameter, INT& valueOut);

/// Numbers in a row, as many as both sides have.
HRESULT FxSetCells(FxParameter& parameter, const void* values, D3DXPARAMETER_TYPE from, UINT count);
HRESULT FxGetCells(const FxParameter& parameter, void* valuesOut, D3DXPARAMETER_TYPE to,
                   UINT count);

/// One vector; a single integer takes it as a packed colour, and gives one. What the parameter does not
/// have comes out as 0.
HRESULT FxSetVector(FxParameter& parameter, const D3DXVECTOR4& vector);
HRESULT FxGetVector(const FxParameter& parameter, D3DXVECTOR4& vectorOut);
/// Vectors into an array of at least as many.
HRESULT FxSetVectors(FxParameter& parameter, const D3DXVECTOR4* vectors, UINT count);
HRESULT FxGetVectors(const FxParameter& parameter, D3DXVECTOR4* vectorsOut, UINT count);

/// One matrix. What the parameter does not have comes out as 0.
HRESULT FxSetMatrix(FxParameter& parameter, const D3DXMATRIX& matrix, bool isTransposed);
HRESULT FxGetMatrix(const FxParameter& parameter, D3DXMATRIX& matrixOut, bool isTransposed);
/// True if the parameter is an array of at least `count` matrices.
bool FxHoldsMatrices(const FxParameter& parameter, UINT count);

/// All bytes of a number or an array of them, or texture pointers; `bytes` may be more than there are.
HRESULT FxSetBytes(FxParameter& parameter, const void* data, UINT bytes);
/// Textures come out with a reference each.
HRESULT FxGetBytes(const FxParameter& parameter, void* dataOut, UINT bytes);
/// Bytes of numbers from `offset` on.
HRESULT FxSetRawBytes(FxParameter& parameter, const void* data, UINT offset, UINT bytes);

} // namespace headless::fx

#pragma once

// Names of result codes.

#include "minwindef.h"

extern "C" {

/// The name of a `D3DERR_`, `D3DXERR_`, `E_` or success code, "Unknown" for any other. Never null.
LPCSTR WINAPI DXGetErrorString9A(HRESULT result);

/// A sentence that describes the code; "n/a" for a code without a name. Never null.
LPCSTR WINAPI DXGetErrorDescription9A(HRESULT result);

} // extern "C"

// The system's header maps these names by macro.
inline LPCSTR DXGetErrorString9(HRESULT result)
{
    return DXGetErrorString9A(result);
}

inline LPCSTR DXGetErrorDescription9(HRESULT result)
{
    return DXGetErrorDescription9A(result);
}

#pragma once

// Declarations shared by effects and shaders.

#include "d3d9.h"

/// Identifies a parameter, technique, pass or annotation of one effect; valid while the effect
/// lives.
using D3DXHANDLE = LPCSTR;

struct D3DXMACRO {
    LPCSTR Name;
    LPCSTR Definition;
};

enum D3DXPARAMETER_CLASS {
    D3DXPC_SCALAR,
    D3DXPC_VECTOR,
    D3DXPC_MATRIX_ROWS,
    D3DXPC_MATRIX_COLUMNS,
    D3DXPC_OBJECT,
    D3DXPC_STRUCT,
    D3DXPC_FORCE_DWORD = 0x7FFFFFFF
};

enum D3DXPARAMETER_TYPE {
    D3DXPT_VOID,
    D3DXPT_BOOL,
    D3DXPT_INT,
    D3DXPT_FLOAT,
    D3DXPT_STRING,
    D3DXPT_TEXTURE,
    D3DXPT_TEXTURE1D,
    D3DXPT_TEXTURE2D,
    D3DXPT_TEXTURE3D,
    D3DXPT_TEXTURECUBE,
    D3DXPT_SAMPLER,
    D3DXPT_SAMPLER1D,
    D3DXPT_SAMPLER2D,
    D3DXPT_SAMPLER3D,
    D3DXPT_SAMPLERCUBE,
    D3DXPT_PIXELSHADER,
    D3DXPT_VERTEXSHADER,
    D3DXPT_PIXELFRAGMENT,
    D3DXPT_VERTEXFRAGMENT,
    D3DXPT_UNSUPPORTED,
    D3DXPT_FORCE_DWORD = 0x7FFFFFFF
};

enum D3DXINCLUDE_TYPE { D3DXINC_LOCAL, D3DXINC_SYSTEM, D3DXINC_FORCE_DWORD = 0x7fffffff };

/// Answers the `#include` lines of an effect. The handler owns the data, valid until `Close`.
struct ID3DXInclude {
    virtual HRESULT STDMETHODCALLTYPE Open(D3DXINCLUDE_TYPE includeType, const char* fileName,
                                           const void* parentData, const void** dataOut,
                                           UINT* bytesOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE Close(const void* data) = 0;
};

using LPD3DXINCLUDE = ID3DXInclude*;

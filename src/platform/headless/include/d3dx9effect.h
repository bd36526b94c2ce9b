#pragma once

// Effects: the interfaces in the published order of their operations.

#include "d3d9.h"
#include "d3dx9core.h"
#include "d3dx9math.h"
#include "d3dx9shader.h"

#define D3DXFX_DONOTSAVESTATE (1 << 0)
#define D3DXFX_DONOTSAVESHADERSTATE (1 << 1)
#define D3DXFX_DONOTSAVESAMPLERSTATE (1 << 2)
#define D3DXFX_NOT_CLONEABLE (1 << 11)

#define D3DX_PARAMETER_SHARED 1
#define D3DX_PARAMETER_LITERAL 2
#define D3DX_PARAMETER_ANNOTATION 4

struct D3DXEFFECT_DESC {
    LPCSTR Creator;
    UINT Parameters;
    UINT Techniques;
    UINT Functions;
};

struct D3DXPARAMETER_DESC {
    LPCSTR Name;
    LPCSTR Semantic;
    D3DXPARAMETER_CLASS Class;
    D3DXPARAMETER_TYPE Type;
    UINT Rows;
    UINT Columns;
    UINT Elements;
    UINT Annotations;
    UINT StructMembers;
    DWORD Flags;
    UINT Bytes;
};

struct D3DXTECHNIQUE_DESC {
    LPCSTR Name;
    UINT Passes;
    UINT Annotations;
};

struct D3DXPASS_DESC {
    LPCSTR Name;
    UINT Annotations;
    const DWORD* pVertexShaderFunction;
    const DWORD* pPixelShaderFunction;
};

struct D3DXFUNCTION_DESC {
    LPCSTR Name;
    UINT Annotations;
};

struct ID3DXEffectPool : IUnknown {};

struct ID3DXBaseEffect : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetDesc(D3DXEFFECT_DESC* descOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetParameterDesc(D3DXHANDLE parameter,
                                                       D3DXPARAMETER_DESC* descOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTechniqueDesc(D3DXHANDLE technique,
                                                       D3DXTECHNIQUE_DESC* descOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPassDesc(D3DXHANDLE pass, D3DXPASS_DESC* descOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFunctionDesc(D3DXHANDLE shader,
                                                      D3DXFUNCTION_DESC* descOut) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetParameter(D3DXHANDLE parameter, UINT index) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetParameterByName(D3DXHANDLE parameter,
                                                            const char* name) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetParameterBySemantic(D3DXHANDLE parameter,
                                                                const char* semantic) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetParameterElement(D3DXHANDLE parameter, UINT index) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetTechnique(UINT index) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetTechniqueByName(const char* name) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetPass(D3DXHANDLE technique, UINT index) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetPassByName(D3DXHANDLE technique, const char* name) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetFunction(UINT index) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetFunctionByName(const char* name) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetAnnotation(D3DXHANDLE object, UINT index) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetAnnotationByName(D3DXHANDLE object,
                                                             const char* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetValue(D3DXHANDLE parameter, const void* data,
                                               UINT bytes) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetValue(D3DXHANDLE parameter, void* dataOut, UINT bytes) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetBool(D3DXHANDLE parameter, BOOL value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetBool(D3DXHANDLE parameter, BOOL* valueOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetBoolArray(D3DXHANDLE parameter, const BOOL* value,
                                                   UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetBoolArray(D3DXHANDLE parameter, BOOL* valueOut,
                                                   UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetInt(D3DXHANDLE parameter, int value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetInt(D3DXHANDLE parameter, INT* valueOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetIntArray(D3DXHANDLE parameter, const int* value,
                                                  UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIntArray(D3DXHANDLE parameter, INT* valueOut,
                                                  UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFloat(D3DXHANDLE parameter, float value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFloat(D3DXHANDLE parameter, float* valueOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFloatArray(D3DXHANDLE parameter, const float* value,
                                                    UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFloatArray(D3DXHANDLE parameter, float* valueOut,
                                                    UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVector(D3DXHANDLE parameter,
                                                const D3DXVECTOR4* vector) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVector(D3DXHANDLE parameter, D3DXVECTOR4* vectorOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVectorArray(D3DXHANDLE parameter,
                                                     const D3DXVECTOR4* vector, UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVectorArray(D3DXHANDLE parameter, D3DXVECTOR4* vectorOut,
                                                     UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetMatrix(D3DXHANDLE parameter, const D3DXMATRIX* matrix) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMatrix(D3DXHANDLE parameter, D3DXMATRIX* matrixOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetMatrixArray(D3DXHANDLE parameter, const D3DXMATRIX* matrix,
                                                     UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMatrixArray(D3DXHANDLE parameter, D3DXMATRIX* matrixOut,
                                                     UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetMatrixPointerArray(D3DXHANDLE parameter,
                                                            const D3DXMATRIX** matrix,
                                                            UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMatrixPointerArray(D3DXHANDLE parameter,
                                                            D3DXMATRIX** matrixOut, UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetMatrixTranspose(D3DXHANDLE parameter,
                                                         const D3DXMATRIX* matrix) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMatrixTranspose(D3DXHANDLE parameter,
                                                         D3DXMATRIX* matrixOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetMatrixTransposeArray(D3DXHANDLE parameter,
                                                              const D3DXMATRIX* matrix,
                                                              UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMatrixTransposeArray(D3DXHANDLE parameter,
                                                              D3DXMATRIX* matrixOut,
                                                              UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetMatrixTransposePointerArray(D3DXHANDLE parameter,
                                                                     const D3DXMATRIX** matrix,
                                                                     UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMatrixTransposePointerArray(D3DXHANDLE parameter,
                                                                     D3DXMATRIX** matrixOut,
                                                                     UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetString(D3DXHANDLE parameter, const char* string) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetString(D3DXHANDLE parameter, const char** stringOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTexture(D3DXHANDLE parameter,
                                                 IDirect3DBaseTexture9* texture) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTexture(D3DXHANDLE parameter,
                                                 IDirect3DBaseTexture9** textureOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPixelShader(D3DXHANDLE parameter,
                                                     IDirect3DPixelShader9** shaderOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVertexShader(D3DXHANDLE parameter,
                                                      IDirect3DVertexShader9** shaderOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetArrayRange(D3DXHANDLE parameter, UINT start, UINT end) = 0;
};

struct ID3DXEffectStateManager : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE SetTransform(D3DTRANSFORMSTATETYPE state,
                                                   const D3DMATRIX* matrix) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetMaterial(const D3DMATERIAL9* material) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetLight(DWORD index, const D3DLIGHT9* light) = 0;
    virtual HRESULT STDMETHODCALLTYPE LightEnable(DWORD index, BOOL enable) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetRenderState(D3DRENDERSTATETYPE state, DWORD value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTexture(DWORD stage, IDirect3DBaseTexture9* texture) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTextureStageState(DWORD stage,
                                                           D3DTEXTURESTAGESTATETYPE type,
                                                           DWORD value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type,
                                                      DWORD value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetNPatchMode(float num_segments) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFVF(DWORD format) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVertexShader(IDirect3DVertexShader9* shader) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVertexShaderConstantF(UINT register_index,
                                                               const float* constant_data,
                                                               UINT register_count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVertexShaderConstantI(UINT register_index,
                                                               const int* constant_data,
                                                               UINT register_count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVertexShaderConstantB(UINT register_index,
                                                               const BOOL* constant_data,
                                                               UINT register_count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPixelShader(IDirect3DPixelShader9* shader) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPixelShaderConstantF(UINT register_index,
                                                              const float* constant_data,
                                                              UINT register_count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPixelShaderConstantI(UINT register_index,
                                                              const int* constant_data,
                                                              UINT register_count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPixelShaderConstantB(UINT register_index,
                                                              const BOOL* constant_data,
                                                              UINT register_count) = 0;
};

struct ID3DXEffect : ID3DXBaseEffect {
    virtual HRESULT STDMETHODCALLTYPE GetPool(ID3DXEffectPool** poolOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTechnique(D3DXHANDLE technique) = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE GetCurrentTechnique() = 0;
    virtual HRESULT STDMETHODCALLTYPE ValidateTechnique(D3DXHANDLE technique) = 0;
    virtual HRESULT STDMETHODCALLTYPE FindNextValidTechnique(D3DXHANDLE technique,
                                                             D3DXHANDLE* nextOut) = 0;
    virtual BOOL STDMETHODCALLTYPE IsParameterUsed(D3DXHANDLE parameter, D3DXHANDLE technique) = 0;
    virtual HRESULT STDMETHODCALLTYPE Begin(UINT* passesOut, DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE BeginPass(UINT pass) = 0;
    virtual HRESULT STDMETHODCALLTYPE CommitChanges() = 0;
    virtual HRESULT STDMETHODCALLTYPE EndPass() = 0;
    virtual HRESULT STDMETHODCALLTYPE End() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE OnLostDevice() = 0;
    virtual HRESULT STDMETHODCALLTYPE OnResetDevice() = 0;
    virtual HRESULT STDMETHODCALLTYPE SetStateManager(ID3DXEffectStateManager* manager) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetStateManager(ID3DXEffectStateManager** managerOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE BeginParameterBlock() = 0;
    virtual D3DXHANDLE STDMETHODCALLTYPE EndParameterBlock() = 0;
    virtual HRESULT STDMETHODCALLTYPE ApplyParameterBlock(D3DXHANDLE block) = 0;
    virtual HRESULT STDMETHODCALLTYPE DeleteParameterBlock(D3DXHANDLE block) = 0;
    virtual HRESULT STDMETHODCALLTYPE CloneEffect(IDirect3DDevice9* device,
                                                  ID3DXEffect** effectOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetRawValue(D3DXHANDLE parameter, const void* data,
                                                  UINT offset, UINT bytes) = 0;
};

using LPD3DXEFFECTPOOL = ID3DXEffectPool*;
using LPD3DXEFFECT = ID3DXEffect*;

extern "C" {

/// Creates a pool through which effects share parameters; the caller releases it.
HRESULT WINAPI D3DXCreateEffectPool(ID3DXEffectPool** poolOut);

/// Creates an effect from a text in memory. `defines` ends with a record of nulls; null for none.
/// Without `include` the text cannot include files. On failure `errorsOut` receives the compiler's
/// text, or null if there is none; the caller releases it.
HRESULT WINAPI D3DXCreateEffect(IDirect3DDevice9* device, const void* data, UINT sizeBytes,
                                const D3DXMACRO* defines, ID3DXInclude* include, DWORD flags,
                                ID3DXEffectPool* pool, ID3DXEffect** effectOut,
                                ID3DXBuffer** errorsOut);

/// The same from a file. Without `include`, included files are looked up next to the file that
/// includes them. `D3DXERR_INVALIDDATA` if the file is missing or contains no effect.
HRESULT WINAPI D3DXCreateEffectFromFileA(IDirect3DDevice9* device, LPCSTR path,
                                         const D3DXMACRO* defines, ID3DXInclude* include,
                                         DWORD flags, ID3DXEffectPool* pool,
                                         ID3DXEffect** effectOut, ID3DXBuffer** errorsOut);

} // extern "C"

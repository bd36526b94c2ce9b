#pragma once

#include <d3dx9.h>

/// An effect that counts the two calls around a reset and does nothing else: every other operation
/// fails. Like an effect of Wine's library it rejects `OnResetDevice`.
class FakeEffect : public ID3DXEffect {
public:
    int lostCalls = 0;
    int resetCalls = 0;
    ULONG references = 1; // owned by its creator; the last release does not delete it

    virtual ~FakeEffect() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE OnLostDevice() override
    {
        ++lostCalls;
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE OnResetDevice() override
    {
        ++resetCalls;
        return E_NOTIMPL;
    }

    HRESULT STDMETHODCALLTYPE GetDesc(D3DXEFFECT_DESC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetParameterDesc(D3DXHANDLE, D3DXPARAMETER_DESC*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetTechniqueDesc(D3DXHANDLE, D3DXTECHNIQUE_DESC*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetPassDesc(D3DXHANDLE, D3DXPASS_DESC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFunctionDesc(D3DXHANDLE, D3DXFUNCTION_DESC*) override
    {
        return E_NOTIMPL;
    }
    D3DXHANDLE STDMETHODCALLTYPE GetParameter(D3DXHANDLE, UINT) override { return nullptr; }
    D3DXHANDLE STDMETHODCALLTYPE GetParameterByName(D3DXHANDLE, const char*) override
    {
        return nullptr;
    }
    D3DXHANDLE STDMETHODCALLTYPE GetParameterBySemantic(D3DXHANDLE, const char*) override
    {
        return nullptr;
    }
    D3DXHANDLE STDMETHODCALLTYPE GetParameterElement(D3DXHANDLE, UINT) override { return nullptr; }
    D3DXHANDLE STDMETHODCALLTYPE GetTechnique(UINT) override { return nullptr; }
    D3DXHANDLE STDMETHODCALLTYPE GetTechniqueByName(const char*) override { return nullptr; }
    D3DXHANDLE STDMETHODCALLTYPE GetPass(D3DXHANDLE, UINT) override { return nullptr; }
    D3DXHANDLE STDMETHODCALLTYPE GetPassByName(D3DXHANDLE, const char*) override { return nullptr; }
    D3DXHANDLE STDMETHODCALLTYPE GetFunction(UINT) override { return nullptr; }
    D3DXHANDLE STDMETHODCALLTYPE GetFunctionByName(const char*) override { return nullptr; }
    D3DXHANDLE STDMETHODCALLTYPE GetAnnotation(D3DXHANDLE, UINT) override { return nullptr; }
    D3DXHANDLE STDMETHODCALLTYPE GetAnnotationByName(D3DXHANDLE, const char*) override
    {
        return nullptr;
    }
    HRESULT STDMETHODCALLTYPE SetValue(D3DXHANDLE, const void*, UINT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetValue(D3DXHANDLE, void*, UINT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetBool(D3DXHANDLE, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetBool(D3DXHANDLE, BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetBoolArray(D3DXHANDLE, const BOOL*, UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetBoolArray(D3DXHANDLE, BOOL*, UINT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetInt(D3DXHANDLE, int) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetInt(D3DXHANDLE, INT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetIntArray(D3DXHANDLE, const int*, UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetIntArray(D3DXHANDLE, INT*, UINT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetFloat(D3DXHANDLE, float) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFloat(D3DXHANDLE, float*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetFloatArray(D3DXHANDLE, const float*, UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetFloatArray(D3DXHANDLE, float*, UINT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetVector(D3DXHANDLE, const D3DXVECTOR4*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetVector(D3DXHANDLE, D3DXVECTOR4*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetVectorArray(D3DXHANDLE, const D3DXVECTOR4*, UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetVectorArray(D3DXHANDLE, D3DXVECTOR4*, UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetMatrix(D3DXHANDLE, const D3DXMATRIX*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetMatrix(D3DXHANDLE, D3DXMATRIX*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetMatrixArray(D3DXHANDLE, const D3DXMATRIX*, UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetMatrixArray(D3DXHANDLE, D3DXMATRIX*, UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetMatrixPointerArray(D3DXHANDLE, const D3DXMATRIX**, UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetMatrixPointerArray(D3DXHANDLE, D3DXMATRIX**, UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetMatrixTranspose(D3DXHANDLE, const D3DXMATRIX*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetMatrixTranspose(D3DXHANDLE, D3DXMATRIX*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetMatrixTransposeArray(D3DXHANDLE, const D3DXMATRIX*, UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetMatrixTransposeArray(D3DXHANDLE, D3DXMATRIX*, UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetMatrixTransposePointerArray(D3DXHANDLE, const D3DXMATRIX**,
                                                             UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetMatrixTransposePointerArray(D3DXHANDLE, D3DXMATRIX**,
                                                             UINT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetString(D3DXHANDLE, const char*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetString(D3DXHANDLE, const char**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetTexture(D3DXHANDLE, IDirect3DBaseTexture9*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetTexture(D3DXHANDLE, IDirect3DBaseTexture9**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetPixelShader(D3DXHANDLE, IDirect3DPixelShader9**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetVertexShader(D3DXHANDLE, IDirect3DVertexShader9**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetArrayRange(D3DXHANDLE, UINT, UINT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetPool(ID3DXEffectPool**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetTechnique(D3DXHANDLE) override { return E_NOTIMPL; }
    D3DXHANDLE STDMETHODCALLTYPE GetCurrentTechnique() override { return nullptr; }
    HRESULT STDMETHODCALLTYPE ValidateTechnique(D3DXHANDLE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindNextValidTechnique(D3DXHANDLE, D3DXHANDLE*) override
    {
        return E_NOTIMPL;
    }
    BOOL STDMETHODCALLTYPE IsParameterUsed(D3DXHANDLE, D3DXHANDLE) override { return FALSE; }
    HRESULT STDMETHODCALLTYPE Begin(UINT*, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE BeginPass(UINT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CommitChanges() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EndPass() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE End() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetStateManager(ID3DXEffectStateManager*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetStateManager(ID3DXEffectStateManager**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE BeginParameterBlock() override { return E_NOTIMPL; }
    D3DXHANDLE STDMETHODCALLTYPE EndParameterBlock() override { return nullptr; }
    HRESULT STDMETHODCALLTYPE ApplyParameterBlock(D3DXHANDLE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeleteParameterBlock(D3DXHANDLE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CloneEffect(IDirect3DDevice9*, ID3DXEffect**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetRawValue(D3DXHANDLE, const void*, UINT, UINT) override
    {
        return E_NOTIMPL;
    }
};

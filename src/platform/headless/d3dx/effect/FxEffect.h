#pragma once

#include <d3dx9.h>

#include <memory>
#include <string>
#include <unordered_set>

#include "platform/headless/d3d9/ComObject.h"
#include "platform/headless/d3dx/effect/EffectPool.h"
#include "platform/headless/d3dx/effect/FxModel.h"
#include "platform/headless/d3dx/effect/FxPassStates.h"
#include "platform/headless/d3dx/effect/FxSavedStates.h"

namespace headless::fx {

inline constexpr IID kBaseEffectId = {
    0x017C18AC, 0x103F, 0x4417, {0x8C, 0x51, 0x6B, 0xF6, 0xEF, 0x1E, 0x56, 0xBE}};
inline constexpr IID kEffectId = {
    0xF6CEB4B3, 0x4E4C, 0x40DD, {0xB8, 0x83, 0x8D, 0x8D, 0xE5, 0xEA, 0x0C, 0xD5}};

/// An effect made from text. Its operations are split by topic over the files FxEffect*.cpp; those
/// that the host does not model are in FxEffectUnmodelled.cpp.
///
/// A handle is the address of a parameter, technique or pass of this effect. Any other value is
/// taken for a name, as the public interface allows.
class FxEffect final : public ComObject<ID3DXEffect, kBaseEffectId, kEffectId> {
public:
    /// The caller holds one reference. `pool` may be null.
    FxEffect(IDirect3DDevice9& owner, EffectPool* effectPool, std::unique_ptr<FxModel> content);

    HRESULT STDMETHODCALLTYPE GetDesc(D3DXEFFECT_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE GetParameterDesc(D3DXHANDLE parameter,
                                               D3DXPARAMETER_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE GetTechniqueDesc(D3DXHANDLE technique,
                                               D3DXTECHNIQUE_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE GetPassDesc(D3DXHANDLE pass, D3DXPASS_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE GetFunctionDesc(D3DXHANDLE shader,
                                              D3DXFUNCTION_DESC* descOut) override;
    D3DXHANDLE STDMETHODCALLTYPE GetParameter(D3DXHANDLE parameter, UINT index) override;
    D3DXHANDLE STDMETHODCALLTYPE GetParameterByName(D3DXHANDLE parameter,
                                                    const char* name) override;
    D3DXHANDLE STDMETHODCALLTYPE GetParameterBySemantic(D3DXHANDLE parameter,
                                                        const char* semantic) override;
    D3DXHANDLE STDMETHODCALLTYPE GetParameterElement(D3DXHANDLE parameter, UINT index) override;
    D3DXHANDLE STDMETHODCALLTYPE GetTechnique(UINT index) override;
    D3DXHANDLE STDMETHODCALLTYPE GetTechniqueByName(const char* name) override;
    D3DXHANDLE STDMETHODCALLTYPE GetPass(D3DXHANDLE technique, UINT index) override;
    D3DXHANDLE STDMETHODCALLTYPE GetPassByName(D3DXHANDLE technique, const char* name) override;
    D3DXHANDLE STDMETHODCALLTYPE GetFunction(UINT index) override;
    D3DXHANDLE STDMETHODCALLTYPE GetFunctionByName(const char* name) override;
    D3DXHANDLE STDMETHODCALLTYPE GetAnnotation(D3DXHANDLE object, UINT index) override;
    D3DXHANDLE STDMETHODCALLTYPE GetAnnotationByName(D3DXHANDLE object, const char* name) override;
    HRESULT STDMETHODCALLTYPE SetValue(D3DXHANDLE parameter, const void* data, UINT bytes) override;
    HRESULT STDMETHODCALLTYPE GetValue(D3DXHANDLE parameter, void* dataOut, UINT bytes) override;
    HRESULT STDMETHODCALLTYPE SetBool(D3DXHANDLE parameter, BOOL value) override;
    HRESULT STDMETHODCALLTYPE GetBool(D3DXHANDLE parameter, BOOL* valueOut) override;
    HRESULT STDMETHODCALLTYPE SetBoolArray(D3DXHANDLE parameter, const BOOL* value,
                                           UINT count) override;
    HRESULT STDMETHODCALLTYPE GetBoolArray(D3DXHANDLE parameter, BOOL* valueOut,
                                           UINT count) override;
    HRESULT STDMETHODCALLTYPE SetInt(D3DXHANDLE parameter, int value) override;
    HRESULT STDMETHODCALLTYPE GetInt(D3DXHANDLE parameter, INT* valueOut) override;
    HRESULT STDMETHODCALLTYPE SetIntArray(D3DXHANDLE parameter, const int* value,
                                          UINT count) override;
    HRESULT STDMETHODCALLTYPE GetIntArray(D3DXHANDLE parameter, INT* valueOut, UINT count) override;
    HRESULT STDMETHODCALLTYPE SetFloat(D3DXHANDLE parameter, float value) override;
    HRESULT STDMETHODCALLTYPE GetFloat(D3DXHANDLE parameter, float* valueOut) override;
    HRESULT STDMETHODCALLTYPE SetFloatArray(D3DXHANDLE parameter, const float* value,
                                            UINT count) override;
    HRESULT STDMETHODCALLTYPE GetFloatArray(D3DXHANDLE parameter, float* valueOut,
                                            UINT count) override;
    HRESULT STDMETHODCALLTYPE SetVector(D3DXHANDLE parameter, const D3DXVECTOR4* vector) override;
    HRESULT STDMETHODCALLTYPE GetVector(D3DXHANDLE parameter, D3DXVECTOR4* vectorOut) override;
    HRESULT STDMETHODCALLTYPE SetVectorArray(D3DXHANDLE parameter, const D3DXVECTOR4* vector,
                                             UINT count) override;
    HRESULT STDMETHODCALLTYPE GetVectorArray(D3DXHANDLE parameter, D3DXVECTOR4* vectorOut,
                                             UINT count) override;
    HRESULT STDMETHODCALLTYPE SetMatrix(D3DXHANDLE parameter, const D3DXMATRIX* matrix) override;
    HRESULT STDMETHODCALLTYPE GetMatrix(D3DXHANDLE parameter, D3DXMATRIX* matrixOut) override;
    HRESULT STDMETHODCALLTYPE SetMatrixArray(D3DXHANDLE parameter, const D3DXMATRIX* matrix,
                                             UINT count) override;
    HRESULT STDMETHODCALLTYPE GetMatrixArray(D3DXHANDLE parameter, D3DXMATRIX* matrixOut,
                                             UINT count) override;
    HRESULT STDMETHODCALLTYPE SetMatrixPointerArray(D3DXHANDLE parameter, const D3DXMATRIX** matrix,
                                                    UINT count) override;
    HRESULT STDMETHODCALLTYPE GetMatrixPointerArray(D3DXHANDLE parameter, D3DXMATRIX** matrixOut,
                                                    UINT count) override;
    HRESULT STDMETHODCALLTYPE SetMatrixTranspose(D3DXHANDLE parameter,
                                                 const D3DXMATRIX* matrix) override;
    HRESULT STDMETHODCALLTYPE GetMatrixTranspose(D3DXHANDLE parameter,
                                                 D3DXMATRIX* matrixOut) override;
    HRESULT STDMETHODCALLTYPE SetMatrixTransposeArray(D3DXHANDLE parameter,
                                                      const D3DXMATRIX* matrix,
                                                      UINT count) override;
    HRESULT STDMETHODCALLTYPE GetMatrixTransposeArray(D3DXHANDLE parameter, D3DXMATRIX* matrixOut,
                                                      UINT count) override;
    HRESULT STDMETHODCALLTYPE SetMatrixTransposePointerArray(D3DXHANDLE parameter,
                                                             const D3DXMATRIX** matrix,
                                                             UINT count) override;
    HRESULT STDMETHODCALLTYPE GetMatrixTransposePointerArray(D3DXHANDLE parameter,
                                                             D3DXMATRIX** matrixOut,
                                                             UINT count) override;
    HRESULT STDMETHODCALLTYPE SetString(D3DXHANDLE parameter, const char* string) override;
    HRESULT STDMETHODCALLTYPE GetString(D3DXHANDLE parameter, const char** stringOut) override;
    HRESULT STDMETHODCALLTYPE SetTexture(D3DXHANDLE parameter,
                                         IDirect3DBaseTexture9* texture) override;
    HRESULT STDMETHODCALLTYPE GetTexture(D3DXHANDLE parameter,
                                         IDirect3DBaseTexture9** textureOut) override;
    HRESULT STDMETHODCALLTYPE GetPixelShader(D3DXHANDLE parameter,
                                             IDirect3DPixelShader9** shaderOut) override;
    HRESULT STDMETHODCALLTYPE GetVertexShader(D3DXHANDLE parameter,
                                              IDirect3DVertexShader9** shaderOut) override;
    HRESULT STDMETHODCALLTYPE SetArrayRange(D3DXHANDLE parameter, UINT start, UINT end) override;
    HRESULT STDMETHODCALLTYPE GetPool(ID3DXEffectPool** poolOut) override;
    HRESULT STDMETHODCALLTYPE SetTechnique(D3DXHANDLE technique) override;
    D3DXHANDLE STDMETHODCALLTYPE GetCurrentTechnique() override;
    HRESULT STDMETHODCALLTYPE ValidateTechnique(D3DXHANDLE technique) override;
    HRESULT STDMETHODCALLTYPE FindNextValidTechnique(D3DXHANDLE technique,
                                                     D3DXHANDLE* nextOut) override;
    BOOL STDMETHODCALLTYPE IsParameterUsed(D3DXHANDLE parameter, D3DXHANDLE technique) override;
    HRESULT STDMETHODCALLTYPE Begin(UINT* passesOut, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE BeginPass(UINT pass) override;
    HRESULT STDMETHODCALLTYPE CommitChanges() override;
    HRESULT STDMETHODCALLTYPE EndPass() override;
    HRESULT STDMETHODCALLTYPE End() override;
    HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) override;
    HRESULT STDMETHODCALLTYPE OnLostDevice() override;
    HRESULT STDMETHODCALLTYPE OnResetDevice() override;
    HRESULT STDMETHODCALLTYPE SetStateManager(ID3DXEffectStateManager* manager) override;
    HRESULT STDMETHODCALLTYPE GetStateManager(ID3DXEffectStateManager** managerOut) override;
    HRESULT STDMETHODCALLTYPE BeginParameterBlock() override;
    D3DXHANDLE STDMETHODCALLTYPE EndParameterBlock() override;
    HRESULT STDMETHODCALLTYPE ApplyParameterBlock(D3DXHANDLE block) override;
    HRESULT STDMETHODCALLTYPE DeleteParameterBlock(D3DXHANDLE block) override;
    HRESULT STDMETHODCALLTYPE CloneEffect(IDirect3DDevice9* device,
                                          ID3DXEffect** effectOut) override;
    HRESULT STDMETHODCALLTYPE SetRawValue(D3DXHANDLE parameter, const void* data, UINT offset,
                                          UINT bytes) override;

    /// Why a technique cannot be drawn here, with file and place; for null, why the whole effect
    /// cannot. "" if it can.
    std::string Fault(D3DXHANDLE technique);
    /// The compiler's warnings about the shaders of a technique.
    std::vector<std::string> Warnings(D3DXHANDLE technique);

private:
    using List = std::vector<std::unique_ptr<FxParameter>>;

    ~FxEffect() override = default;
    void Register(const List& list);
    /// Null for an unknown handle or name.
    FxParameter* Parameter(D3DXHANDLE handle);
    FxTechnique* Technique(D3DXHANDLE handle);
    FxPass* Pass(D3DXHANDLE handle);
    const List* AnnotationsOf(D3DXHANDLE handle);
    FxParameter* FindPath(FxParameter* parent, std::string_view path);
    void DropDeviceTextures(const List& list);
    HRESULT Validate(const FxTechnique& item, std::string& faultOut);
    HRESULT ValidatePass(const FxPass& pass, std::string& faultOut);
    void ReportOnce();

    ComPointer<IDirect3DDevice9> device;
    ComPointer<EffectPool> pool;
    std::unique_ptr<FxModel> model;
    std::unordered_set<const void*> parameterHandles;
    std::unordered_set<const void*> techniqueHandles;
    std::unordered_set<const void*> passHandles;

    FxTechnique* technique = nullptr; ///< the current one; not owned, lives in `model`
    FxPass* activePass = nullptr;     ///< between `BeginPass` and `EndPass`
    bool isActive = false;            ///< between `Begin` and `End`
    bool isReported = false;          ///< why nothing of it can be drawn has been logged
    uint64_t appliedStamp = 0;        ///< the newest change that the active pass has applied
    FxPassStates passStates;
    FxSavedStates savedStates;
};

} // namespace headless::fx

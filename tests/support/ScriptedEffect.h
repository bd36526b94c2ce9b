#pragma once

#include "tests/support/CallRecorder.h"
#include "tests/support/FakeEffect.h"

#include <deque>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// An effect that has what a test defines, and stores what it is told. Its calls of `Begin`,
/// `BeginPass`, `EndPass`, `End`, `SetTechnique`, `ValidateTechnique` and of all setters are
/// recorded with the device's, setters with the semantic, and fail by the recorder's orders. Other
/// operations fail.
class ScriptedEffect final : public FakeEffect {
public:
    struct Pass {
        const char* renderTarget = nullptr; ///< the annotation's text; null for none
        bool hasVertexShader = false;
    };

    /// Without a recorder no call is recorded.
    explicit ScriptedEffect(std::shared_ptr<CallRecorder> callRecorder = nullptr);

    /// Adds a parameter; if a picture's file name is given, also the annotation that holds it.
    void AddParameter(const std::string& semantic, const char* resourceName = nullptr);
    void AddParameters(std::initializer_list<const char*> semantics);
    /// Adds a technique; one that is not valid runs on no device.
    void AddTechnique(std::vector<Pass> passes, bool isValid = true);
    /// Adds a technique with a single plain pass.
    void AddTechnique();

    /// The values set last, by semantic. Vectors and matrices are stored one after the other.
    std::map<std::string, float> floats;
    std::map<std::string, int> ints;
    std::map<std::string, std::vector<D3DXVECTOR4>> vectors;
    std::map<std::string, std::vector<D3DXMATRIX>> matrices;
    std::map<std::string, IDirect3DBaseTexture9*> textures;
    int chosen = -1; ///< index of the technique that was set

    HRESULT STDMETHODCALLTYPE GetDesc(D3DXEFFECT_DESC* descOut) override;
    D3DXHANDLE STDMETHODCALLTYPE GetParameter(D3DXHANDLE parent, UINT index) override;
    D3DXHANDLE STDMETHODCALLTYPE GetParameterBySemantic(D3DXHANDLE parent,
                                                        const char* semantic) override;
    D3DXHANDLE STDMETHODCALLTYPE GetAnnotationByName(D3DXHANDLE object, const char* name) override;
    HRESULT STDMETHODCALLTYPE GetString(D3DXHANDLE annotation, const char** textOut) override;
    D3DXHANDLE STDMETHODCALLTYPE GetTechnique(UINT index) override;
    HRESULT STDMETHODCALLTYPE GetTechniqueDesc(D3DXHANDLE handle,
                                               D3DXTECHNIQUE_DESC* descOut) override;
    D3DXHANDLE STDMETHODCALLTYPE GetPass(D3DXHANDLE technique, UINT index) override;
    HRESULT STDMETHODCALLTYPE GetPassDesc(D3DXHANDLE handle, D3DXPASS_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE ValidateTechnique(D3DXHANDLE technique) override;
    HRESULT STDMETHODCALLTYPE SetTechnique(D3DXHANDLE technique) override;
    HRESULT STDMETHODCALLTYPE Begin(UINT* passesOut, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE BeginPass(UINT pass) override;
    HRESULT STDMETHODCALLTYPE EndPass() override;
    HRESULT STDMETHODCALLTYPE End() override;
    HRESULT STDMETHODCALLTYPE SetFloat(D3DXHANDLE parameter, float value) override;
    HRESULT STDMETHODCALLTYPE SetInt(D3DXHANDLE parameter, int value) override;
    HRESULT STDMETHODCALLTYPE SetVector(D3DXHANDLE parameter, const D3DXVECTOR4* vector) override;
    HRESULT STDMETHODCALLTYPE SetVectorArray(D3DXHANDLE parameter, const D3DXVECTOR4* first,
                                             UINT count) override;
    HRESULT STDMETHODCALLTYPE SetMatrix(D3DXHANDLE parameter, const D3DXMATRIX* matrix) override;
    HRESULT STDMETHODCALLTYPE SetMatrixArray(D3DXHANDLE parameter, const D3DXMATRIX* first,
                                             UINT count) override;
    HRESULT STDMETHODCALLTYPE SetTexture(D3DXHANDLE parameter,
                                         IDirect3DBaseTexture9* texture) override;

private:
    /// A handle is the address of the text; that of a parameter is its semantic.
    struct Parameter {
        std::string semantic;
        std::string resourceName;
        bool hasResource = false;
    };
    struct Technique {
        std::string handle;
        std::vector<Pass> passes;
        std::deque<std::string> passHandles;
        bool isValid = true;
    };

    HRESULT Note(const char* name, std::initializer_list<std::string> arguments);
    const Technique* FindTechnique(D3DXHANDLE handle) const;
    const Pass* FindPass(D3DXHANDLE handle) const;

    std::shared_ptr<CallRecorder> recorder;
    std::deque<Parameter> parameters; // a deque, so handles stay valid
    std::deque<Technique> techniques;
};

/// What the next effect files give, in place of a compiler. While none of these exists, effect
/// files go to the host's own.
class EffectScript {
public:
    EffectScript();
    ~EffectScript();
    EffectScript(const EffectScript&) = delete;
    EffectScript& operator=(const EffectScript&) = delete;

    std::map<std::string, ScriptedEffect*> effects; ///< by file without directory, not owned
    HRESULT result = D3D_OK;                        ///< a failure gives no effect
    const char* errors = nullptr;                   ///< the compiler's messages; null for no buffer
    int compiled = 0;
    ID3DXEffectPool* pool = nullptr; ///< what was passed last
    DWORD flags = 0;
};

/// For `KRE_GfxRuntime::createEffect`.
HRESULT WINAPI CreateScriptedEffect(IDirect3DDevice9* device, LPCSTR file, const D3DXMACRO* defines,
                                    ID3DXInclude* include, DWORD flags, ID3DXEffectPool* pool,
                                    ID3DXEffect** effectOut, ID3DXBuffer** errorsOut);

#include "tests/support/ScriptedEffect.h"

#include "tests/support/FakeObject.h"

#include <cstring>
#include <utility>

namespace {

EffectScript* gScript = nullptr;
constexpr DWORD kVertexShader[] = {0xFFFE0101, 0x0000FFFF};

std::string LeafOf(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1);
}

class TextBuffer final : public FakeObject<ID3DXBuffer> {
public:
    explicit TextBuffer(std::string bytes) : text(std::move(bytes)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    void* STDMETHODCALLTYPE GetBufferPointer() override { return text.data(); }
    DWORD STDMETHODCALLTYPE GetBufferSize() override
    {
        return static_cast<DWORD>(text.size()) + 1; // with the terminator
    }

private:
    std::string text;
};

} // namespace

ScriptedEffect::ScriptedEffect(std::shared_ptr<CallRecorder> callRecorder)
    : recorder(std::move(callRecorder))
{}

void ScriptedEffect::AddParameter(const std::string& semantic, const char* resourceName)
{
    parameters.push_back({semantic, resourceName ? resourceName : "", resourceName != nullptr});
}

void ScriptedEffect::AddParameters(std::initializer_list<const char*> semantics)
{
    for (const char* semantic : semantics)
        AddParameter(semantic);
}

void ScriptedEffect::AddTechnique(std::vector<Pass> passes, bool isValid)
{
    Technique& added = techniques.emplace_back();
    added.handle = std::to_string(techniques.size() - 1);
    added.isValid = isValid;
    for (size_t i = 0; i < passes.size(); ++i)
        added.passHandles.push_back(added.handle + "." + std::to_string(i));
    added.passes = std::move(passes);
}

void ScriptedEffect::AddTechnique()
{
    AddTechnique({Pass()});
}

HRESULT ScriptedEffect::Note(const char* name, std::initializer_list<std::string> arguments)
{
    return recorder ? recorder->Note(name, arguments).failure.value_or(D3D_OK) : D3D_OK;
}

// ---- What the test defined

HRESULT ScriptedEffect::GetDesc(D3DXEFFECT_DESC* descOut)
{
    *descOut = {"script", static_cast<UINT>(parameters.size()),
                static_cast<UINT>(techniques.size()), 0};
    return D3D_OK;
}

D3DXHANDLE ScriptedEffect::GetParameter(D3DXHANDLE parent, UINT index)
{
    return !parent && index < parameters.size() ? parameters[index].semantic.c_str() : nullptr;
}

D3DXHANDLE ScriptedEffect::GetParameterBySemantic(D3DXHANDLE parent, const char* semantic)
{
    for (const Parameter& parameter : parameters) {
        if (!parent && parameter.semantic == semantic)
            return parameter.semantic.c_str();
    }
    return nullptr;
}

D3DXHANDLE ScriptedEffect::GetAnnotationByName(D3DXHANDLE object, const char* name)
{
    if (const Pass* pass = FindPass(object))
        return std::strcmp(name, "RenderTarget") == 0 ? pass->renderTarget : nullptr;
    for (const Parameter& parameter : parameters) {
        if (parameter.semantic.c_str() == object && parameter.hasResource &&
            std::strcmp(name, "ResourceName") == 0)
            return parameter.resourceName.c_str();
    }
    return nullptr;
}

/// The handle of an annotation is its text.
HRESULT ScriptedEffect::GetString(D3DXHANDLE annotation, const char** textOut)
{
    *textOut = annotation;
    return D3D_OK;
}

const ScriptedEffect::Technique* ScriptedEffect::FindTechnique(D3DXHANDLE handle) const
{
    for (const Technique& technique : techniques) {
        if (technique.handle.c_str() == handle)
            return &technique;
    }
    return nullptr;
}

const ScriptedEffect::Pass* ScriptedEffect::FindPass(D3DXHANDLE handle) const
{
    for (const Technique& technique : techniques) {
        for (size_t i = 0; i < technique.passes.size(); ++i) {
            if (technique.passHandles[i].c_str() == handle)
                return &technique.passes[i];
        }
    }
    return nullptr;
}

D3DXHANDLE ScriptedEffect::GetTechnique(UINT index)
{
    return index < techniques.size() ? techniques[index].handle.c_str() : nullptr;
}

HRESULT ScriptedEffect::GetTechniqueDesc(D3DXHANDLE handle, D3DXTECHNIQUE_DESC* descOut)
{
    const Technique* technique = FindTechnique(handle);
    if (!technique)
        return D3DERR_INVALIDCALL;
    *descOut = {handle, static_cast<UINT>(technique->passes.size()), 0};
    return D3D_OK;
}

D3DXHANDLE ScriptedEffect::GetPass(D3DXHANDLE handle, UINT index)
{
    const Technique* technique = FindTechnique(handle);
    return technique && index < technique->passes.size() ? technique->passHandles[index].c_str()
                                                         : nullptr;
}

HRESULT ScriptedEffect::GetPassDesc(D3DXHANDLE handle, D3DXPASS_DESC* descOut)
{
    const Pass* pass = FindPass(handle);
    if (!pass)
        return D3DERR_INVALIDCALL;
    *descOut = {};
    descOut->Name = handle;
    descOut->pVertexShaderFunction = pass->hasVertexShader ? kVertexShader : nullptr;
    return D3D_OK;
}

// ---- What the effect is told

HRESULT ScriptedEffect::ValidateTechnique(D3DXHANDLE handle)
{
    const Technique* technique = FindTechnique(handle);
    Note("ValidateTechnique", {technique ? technique->handle : "null"});
    return technique && technique->isValid ? D3D_OK : E_FAIL;
}

HRESULT ScriptedEffect::SetTechnique(D3DXHANDLE handle)
{
    const Technique* technique = FindTechnique(handle);
    Note("SetTechnique", {technique ? technique->handle : "null"});
    if (!technique)
        return D3DERR_INVALIDCALL;
    chosen = std::stoi(technique->handle);
    return D3D_OK;
}

HRESULT ScriptedEffect::Begin(UINT* passesOut, DWORD flags)
{
    *passesOut = static_cast<UINT>(techniques.at(static_cast<size_t>(chosen)).passes.size());
    return Note("Begin", {std::to_string(flags)});
}

HRESULT ScriptedEffect::BeginPass(UINT pass)
{
    return Note("BeginPass", {std::to_string(pass)});
}

HRESULT ScriptedEffect::EndPass()
{
    return Note("EndPass", {});
}

HRESULT ScriptedEffect::End()
{
    return Note("End", {});
}

HRESULT ScriptedEffect::SetFloat(D3DXHANDLE parameter, float value)
{
    floats[parameter] = value;
    return Note("SetFloat", {parameter});
}

HRESULT ScriptedEffect::SetInt(D3DXHANDLE parameter, int value)
{
    ints[parameter] = value;
    return Note("SetInt", {parameter});
}

HRESULT ScriptedEffect::SetVector(D3DXHANDLE parameter, const D3DXVECTOR4* vector)
{
    vectors[parameter] = {*vector};
    return Note("SetVector", {parameter});
}

HRESULT ScriptedEffect::SetVectorArray(D3DXHANDLE parameter, const D3DXVECTOR4* first, UINT count)
{
    vectors[parameter].assign(first, first + count);
    return Note("SetVectorArray", {parameter, std::to_string(count)});
}

HRESULT ScriptedEffect::SetMatrix(D3DXHANDLE parameter, const D3DXMATRIX* matrix)
{
    matrices[parameter] = {*matrix};
    return Note("SetMatrix", {parameter});
}

HRESULT ScriptedEffect::SetMatrixArray(D3DXHANDLE parameter, const D3DXMATRIX* first, UINT count)
{
    matrices[parameter].assign(first, first + count);
    return Note("SetMatrixArray", {parameter, std::to_string(count)});
}

HRESULT ScriptedEffect::SetTexture(D3DXHANDLE parameter, IDirect3DBaseTexture9* texture)
{
    textures[parameter] = texture;
    return Note("SetTexture", {parameter});
}

// ---- In place of the compiler

EffectScript::EffectScript()
{
    gScript = this;
}

EffectScript::~EffectScript()
{
    gScript = nullptr;
}

HRESULT WINAPI CreateScriptedEffect(IDirect3DDevice9* device, LPCSTR file, const D3DXMACRO* defines,
                                    ID3DXInclude* include, DWORD flags, ID3DXEffectPool* pool,
                                    ID3DXEffect** effectOut, ID3DXBuffer** errorsOut)
{
    if (!gScript)
        return D3DXCreateEffectFromFileA(device, file, defines, include, flags, pool, effectOut,
                                         errorsOut);
    ++gScript->compiled;
    gScript->pool = pool;
    gScript->flags = flags;
    *effectOut = nullptr;
    *errorsOut = gScript->errors ? new TextBuffer(gScript->errors) : nullptr;
    if (FAILED(gScript->result))
        return gScript->result;
    const auto found = gScript->effects.find(LeafOf(file));
    if (found == gScript->effects.end())
        return D3DXERR_INVALIDDATA;
    *effectOut = found->second;
    (*effectOut)->AddRef();
    return D3D_OK;
}

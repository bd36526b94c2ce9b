// Lifetime of an effect, and queries about its contents.

#include "platform/headless/d3dx/effect/FxEffect.h"
#include "platform/headless/d3dx/effect/FxShader.h"

#include <algorithm>
#include <utility>

#include "platform/headless/d3dx/effect/FxToken.h"

namespace headless::fx {

namespace {

template <typename T>
D3DXHANDLE HandleOf(const T* object)
{
    return reinterpret_cast<D3DXHANDLE>(object);
}

template <typename T>
D3DXHANDLE HandleAt(const std::vector<std::unique_ptr<T>>& list, UINT index)
{
    return index < list.size() ? HandleOf(list[index].get()) : nullptr;
}

template <typename T>
T* FindNamed(const std::vector<std::unique_ptr<T>>& list, std::string_view name)
{
    for (const auto& item : list)
        if (item->name == name)
            return item.get();
    return nullptr;
}

} // namespace

FxEffect::FxEffect(IDirect3DDevice9& owner, EffectPool* effectPool,
                   std::unique_ptr<FxModel> content)
    : device(ComPointer<IDirect3DDevice9>::Share(&owner)),
      pool(ComPointer<EffectPool>::Share(effectPool)),
      model(std::move(content))
{
    Register(model->parameters);
    for (const auto& item : model->techniques) {
        techniqueHandles.insert(item.get());
        Register(item->annotations);
        for (const auto& pass : item->passes) {
            passHandles.insert(pass.get());
            Register(pass->annotations);
        }
    }
    if (!model->techniques.empty())
        technique = model->techniques[0].get();
}

/// Parts nest like structs, so the depth is limited.
void FxEffect::Register(const List& list)
{
    for (const auto& parameter : list) {
        parameterHandles.insert(parameter.get());
        Register(parameter->parts);
        Register(parameter->annotations);
    }
}

HRESULT FxEffect::GetPool(ID3DXEffectPool** poolOut)
{
    if (!poolOut)
        return D3DERR_INVALIDCALL;
    *poolOut = ComPointer<EffectPool>(pool).Detach();
    return D3D_OK;
}

HRESULT FxEffect::GetDevice(IDirect3DDevice9** deviceOut)
{
    if (!deviceOut)
        return D3DERR_INVALIDCALL;
    *deviceOut = ComPointer<IDirect3DDevice9>(device).Detach();
    return D3D_OK;
}

// ---- Handles

FxParameter* FxEffect::Parameter(D3DXHANDLE handle)
{
    if (!handle || techniqueHandles.contains(handle) || passHandles.contains(handle))
        return nullptr;
    if (!parameterHandles.contains(handle))
        return FindPath(nullptr, handle);
    return const_cast<FxParameter*>(reinterpret_cast<const FxParameter*>(handle));
}

FxTechnique* FxEffect::Technique(D3DXHANDLE handle)
{
    if (!handle)
        return nullptr;
    if (!techniqueHandles.contains(handle))
        return parameterHandles.contains(handle) || passHandles.contains(handle)
                   ? nullptr
                   : FindNamed(model->techniques, handle);
    return const_cast<FxTechnique*>(reinterpret_cast<const FxTechnique*>(handle));
}

FxPass* FxEffect::Pass(D3DXHANDLE handle)
{
    if (!passHandles.contains(handle))
        return nullptr;
    return const_cast<FxPass*>(reinterpret_cast<const FxPass*>(handle));
}

const FxEffect::List* FxEffect::AnnotationsOf(D3DXHANDLE handle)
{
    if (const FxPass* pass = Pass(handle))
        return &pass->annotations;
    if (const FxTechnique* found = Technique(handle))
        return &found->annotations;
    const FxParameter* parameter = Parameter(handle);
    return parameter ? &parameter->annotations : nullptr;
}

FxParameter* FxEffect::FindPath(FxParameter* parent, std::string_view path)
{
    return FxFindPath(model->parameters, parent, path);
}

D3DXHANDLE FxEffect::GetParameter(D3DXHANDLE parameter, UINT index)
{
    if (!parameter)
        return HandleAt(model->parameters, index);
    const FxParameter* parent = Parameter(parameter);
    return parent && !parent->IsArray() ? HandleAt(parent->parts, index) : nullptr;
}

D3DXHANDLE FxEffect::GetParameterByName(D3DXHANDLE parameter, const char* name)
{
    FxParameter* parent = Parameter(parameter);
    if (!name || (parameter && !parent))
        return nullptr;
    return HandleOf(FindPath(parent, name));
}

D3DXHANDLE FxEffect::GetParameterBySemantic(D3DXHANDLE parameter, const char* semantic)
{
    const FxParameter* parent = Parameter(parameter);
    if (!semantic || (parameter && (!parent || parent->IsArray())))
        return nullptr;
    for (const auto& item : parent ? parent->parts : model->parameters)
        if (item->hasSemantic && FxSameWord(item->semantic, semantic))
            return HandleOf(item.get());
    return nullptr;
}

D3DXHANDLE FxEffect::GetParameterElement(D3DXHANDLE parameter, UINT index)
{
    const FxParameter* parent = Parameter(parameter);
    return parent && parent->IsArray() ? HandleAt(parent->parts, index) : nullptr;
}

D3DXHANDLE FxEffect::GetTechnique(UINT index)
{
    return HandleAt(model->techniques, index);
}

D3DXHANDLE FxEffect::GetTechniqueByName(const char* name)
{
    return name ? HandleOf(FindNamed(model->techniques, name)) : nullptr;
}

D3DXHANDLE FxEffect::GetPass(D3DXHANDLE handle, UINT index)
{
    const FxTechnique* parent = Technique(handle);
    return parent ? HandleAt(parent->passes, index) : nullptr;
}

D3DXHANDLE FxEffect::GetPassByName(D3DXHANDLE handle, const char* name)
{
    const FxTechnique* parent = Technique(handle);
    return parent && name ? HandleOf(FindNamed(parent->passes, name)) : nullptr;
}

D3DXHANDLE FxEffect::GetAnnotation(D3DXHANDLE object, UINT index)
{
    const List* list = AnnotationsOf(object);
    return list ? HandleAt(*list, index) : nullptr;
}

D3DXHANDLE FxEffect::GetAnnotationByName(D3DXHANDLE object, const char* name)
{
    const List* list = AnnotationsOf(object);
    return list && name ? HandleOf(FxFindByName(*list, name)) : nullptr;
}

// ---- Descriptions

HRESULT FxEffect::GetDesc(D3DXEFFECT_DESC* descOut)
{
    if (!descOut)
        return D3DERR_INVALIDCALL;
    *descOut = {"Headless effect reader", static_cast<UINT>(model->parameters.size()),
                static_cast<UINT>(model->techniques.size()), 0};
    return D3D_OK;
}

HRESULT FxEffect::GetParameterDesc(D3DXHANDLE handle, D3DXPARAMETER_DESC* descOut)
{
    const FxParameter* parameter = Parameter(handle);
    if (!parameter || !descOut)
        return D3DERR_INVALIDCALL;
    const bool isStruct = parameter->kind == D3DXPC_STRUCT;
    const FxParameter* one = parameter->IsArray() ? parameter->parts[0].get() : parameter;
    descOut->Name = parameter->name.c_str();
    descOut->Semantic = parameter->hasSemantic ? parameter->semantic.c_str() : nullptr;
    descOut->Class = parameter->kind;
    descOut->Type = parameter->type;
    descOut->Rows = parameter->rows;
    descOut->Columns = parameter->columns;
    descOut->Elements = parameter->elements;
    descOut->Annotations = static_cast<UINT>(parameter->annotations.size());
    descOut->StructMembers = isStruct ? static_cast<UINT>(one->parts.size()) : 0;
    descOut->Flags = parameter->flags;
    descOut->Bytes = parameter->ByteCount();
    return D3D_OK;
}

HRESULT FxEffect::GetTechniqueDesc(D3DXHANDLE handle, D3DXTECHNIQUE_DESC* descOut)
{
    const FxTechnique* found = Technique(handle);
    if (!found || !descOut)
        return D3DERR_INVALIDCALL;
    *descOut = {found->name.c_str(), static_cast<UINT>(found->passes.size()),
                static_cast<UINT>(found->annotations.size())};
    return D3D_OK;
}

HRESULT FxEffect::GetPassDesc(D3DXHANDLE handle, D3DXPASS_DESC* descOut)
{
    const FxPass* pass = Pass(handle);
    if (!pass || !descOut)
        return D3DERR_INVALIDCALL;
    const auto function = [](const std::array<DWORD, 2>& code,
                             const FxShader* assembled) -> const DWORD* {
        if (assembled && !assembled->words.empty())
            return assembled->words.data();
        return code[0] != 0 ? code.data() : nullptr;
    };
    *descOut = {pass->name.c_str(), static_cast<UINT>(pass->annotations.size()),
                function(pass->vertexFunction, pass->vertexShader.get()),
                function(pass->pixelFunction, pass->pixelShader.get())};
    return D3D_OK;
}

} // namespace headless::fx

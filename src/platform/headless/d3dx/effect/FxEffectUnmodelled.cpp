// UNMODELLED: shaders and their functions, state managers, parameter blocks, array ranges, clones.
// Each call is logged by name and fails; those that return a handle return null.

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3dx/effect/FxEffect.h"

namespace headless::fx {

HRESULT FxEffect::GetFunctionDesc(D3DXHANDLE shader, D3DXFUNCTION_DESC* descOut)
{
    return Unmodelled("ID3DXEffect::GetFunctionDesc", shader, descOut);
}

D3DXHANDLE FxEffect::GetFunction(UINT index)
{
    Unmodelled("ID3DXEffect::GetFunction", index);
    return nullptr;
}

D3DXHANDLE FxEffect::GetFunctionByName(const char* name)
{
    Unmodelled("ID3DXEffect::GetFunctionByName", name);
    return nullptr;
}

HRESULT FxEffect::GetPixelShader(D3DXHANDLE parameter, IDirect3DPixelShader9** shaderOut)
{
    return Unmodelled("ID3DXEffect::GetPixelShader", parameter, shaderOut);
}

HRESULT FxEffect::GetVertexShader(D3DXHANDLE parameter, IDirect3DVertexShader9** shaderOut)
{
    return Unmodelled("ID3DXEffect::GetVertexShader", parameter, shaderOut);
}

HRESULT FxEffect::SetArrayRange(D3DXHANDLE parameter, UINT start, UINT end)
{
    return Unmodelled("ID3DXEffect::SetArrayRange", parameter, start, end);
}

/// Setting null succeeds: there never is a manager.
HRESULT FxEffect::SetStateManager(ID3DXEffectStateManager* manager)
{
    return manager ? Unmodelled("ID3DXEffect::SetStateManager", manager) : D3D_OK;
}

HRESULT FxEffect::GetStateManager(ID3DXEffectStateManager** managerOut)
{
    if (!managerOut)
        return D3DERR_INVALIDCALL;
    *managerOut = nullptr;
    return D3D_OK;
}

HRESULT FxEffect::BeginParameterBlock()
{
    return Unmodelled("ID3DXEffect::BeginParameterBlock");
}

D3DXHANDLE FxEffect::EndParameterBlock()
{
    Unmodelled("ID3DXEffect::EndParameterBlock");
    return nullptr;
}

HRESULT FxEffect::ApplyParameterBlock(D3DXHANDLE block)
{
    return Unmodelled("ID3DXEffect::ApplyParameterBlock", block);
}

HRESULT FxEffect::DeleteParameterBlock(D3DXHANDLE block)
{
    return Unmodelled("ID3DXEffect::DeleteParameterBlock", block);
}

HRESULT FxEffect::CloneEffect(IDirect3DDevice9* target, ID3DXEffect** effectOut)
{
    if (effectOut)
        *effectOut = nullptr;
    return Unmodelled("ID3DXEffect::CloneEffect", target, effectOut);
}

} // namespace headless::fx

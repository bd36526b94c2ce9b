// The cross compiler's header does not declare these operations pure, so deriving a test double
// from the interfaces requires definitions for them. Doubles override all of them.

#include <d3dx9.h>

D3DXHANDLE STDMETHODCALLTYPE ID3DXBaseEffect::GetFunction(UINT)
{
    return nullptr;
}

D3DXHANDLE STDMETHODCALLTYPE ID3DXBaseEffect::GetFunctionByName(const char*)
{
    return nullptr;
}

D3DXHANDLE STDMETHODCALLTYPE ID3DXEffect::GetFunction(UINT)
{
    return nullptr;
}

D3DXHANDLE STDMETHODCALLTYPE ID3DXEffect::GetFunctionByName(const char*)
{
    return nullptr;
}

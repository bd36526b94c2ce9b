// The cross compiler's header forgets to declare these operations pure, so that deriving a double from
// the interfaces asks for their definitions. Doubles override all of them.

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

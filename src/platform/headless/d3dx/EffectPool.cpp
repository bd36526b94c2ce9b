#include <d3dx9.h>

#include "platform/headless/d3dx/InterfaceId.h"

#include <new>

namespace {

constexpr IID kEffectPoolId = {
    0x9537AB04, 0x3250, 0x412E, {0x82, 0x13, 0xFC, 0xD2, 0xF8, 0x67, 0x79, 0x33}};

class EffectPool final : public ID3DXEffectPool {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objectOut) override
    {
        if (!objectOut)
            return E_POINTER;
        *objectOut = nullptr;
        if (!IsSameId(iid, IID_IUnknown) && !IsSameId(iid, kEffectPoolId))
            return E_NOINTERFACE;
        AddRef();
        *objectOut = this;
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }

    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --references;
        if (left == 0)
            delete this;
        return left;
    }

private:
    ULONG references = 1;
};

} // namespace

HRESULT WINAPI D3DXCreateEffectPool(ID3DXEffectPool** poolOut)
{
    if (!poolOut)
        return D3DERR_INVALIDCALL;
    *poolOut = new (std::nothrow) EffectPool;
    return *poolOut ? S_OK : E_OUTOFMEMORY;
}

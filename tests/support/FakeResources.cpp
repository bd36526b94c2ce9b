#include "tests/support/FakeResources.h"

#include "tests/support/InterfaceIds.h"

#include <algorithm>
#include <type_traits>

namespace {

int gFakeObjects = 0;

constexpr UINT kMaxSide = 8192;

struct PixelLayout {
    D3DFORMAT format;
    UINT blockSide; // 1, or 4 for compressed formats
    UINT blockBytes;
};

constexpr PixelLayout kPixelLayouts[] = {
    {D3DFMT_A8R8G8B8, 1, 4}, {D3DFMT_X8R8G8B8, 1, 4}, {D3DFMT_R5G6B5, 1, 2},
    {D3DFMT_X1R5G5B5, 1, 2}, {D3DFMT_A1R5G5B5, 1, 2}, {D3DFMT_A4R4G4B4, 1, 2},
    {D3DFMT_A8, 1, 1},       {D3DFMT_L8, 1, 1},       {D3DFMT_A8L8, 1, 2},
    {D3DFMT_V8U8, 1, 2},     {D3DFMT_DXT1, 4, 8},     {D3DFMT_DXT2, 4, 16},
    {D3DFMT_DXT3, 4, 16},    {D3DFMT_DXT4, 4, 16},    {D3DFMT_DXT5, 4, 16},
    {D3DFMT_D16, 1, 2},      {D3DFMT_D24S8, 1, 4},    {D3DFMT_D24X8, 1, 4},
    {D3DFMT_D32, 1, 4},
};

const PixelLayout* LayoutOf(D3DFORMAT format)
{
    for (const PixelLayout& layout : kPixelLayouts) {
        if (layout.format == format)
            return &layout;
    }
    return nullptr;
}

bool CanMake(const D3DSURFACE_DESC& desc)
{
    return LayoutOf(desc.Format) && desc.Width > 0 && desc.Width <= kMaxSide && desc.Height > 0 &&
           desc.Height <= kMaxSide;
}

UINT Blocks(UINT side, UINT blockSide)
{
    return (side + blockSide - 1) / blockSide;
}

bool IsInside(const RECT& rect, const D3DSURFACE_DESC& desc)
{
    return rect.left >= 0 && rect.top >= 0 && rect.left < rect.right && rect.top < rect.bottom &&
           static_cast<UINT>(rect.right) <= desc.Width &&
           static_cast<UINT>(rect.bottom) <= desc.Height;
}

} // namespace

int FakeObjectsAlive()
{
    return gFakeObjects;
}

void CountFakeObject(int step)
{
    gFakeObjects += step;
}

FakeSurface::FakeSurface(FakeResourceHost* deviceOfSurface, const D3DSURFACE_DESC& surfaceDesc,
                         bool keepsDevice, IUnknown* containerOrNull)
    : FakeResource(deviceOfSurface, keepsDevice),
      description(surfaceDesc),
      container(containerOrNull)
{
    const PixelLayout& layout = *LayoutOf(description.Format);
    pitch = Blocks(description.Width, layout.blockSide) * layout.blockBytes;
    bytes.resize(size_t{pitch} * Blocks(description.Height, layout.blockSide));
}

ComHandle<FakeSurface> FakeSurface::Create(FakeResourceHost* device, const D3DSURFACE_DESC& desc)
{
    return ComHandle<FakeSurface>(CanMake(desc) ? new FakeSurface(device, desc, true, nullptr)
                                                : nullptr);
}

ComHandle<FakeSurface> FakeSurface::CreateImplicit(FakeResourceHost* device,
                                                   const D3DSURFACE_DESC& desc)
{
    return ComHandle<FakeSurface>(CanMake(desc) ? new FakeSurface(device, desc, false, nullptr)
                                                : nullptr);
}

std::unique_ptr<FakeSurface>
FakeSurface::CreateLevel(FakeResourceHost* device, const D3DSURFACE_DESC& desc, IUnknown* container)
{
    return std::unique_ptr<FakeSurface>(
        CanMake(desc) ? new FakeSurface(device, desc, false, container) : nullptr);
}

HRESULT STDMETHODCALLTYPE FakeSurface::QueryInterface(REFIID iid, void** objectOut)
{
    return GiveInterface(this, iid, {kUnknownId, kResourceId, kSurfaceId}, objectOut);
}

ULONG STDMETHODCALLTYPE FakeSurface::AddRef()
{
    return container ? container->AddRef() : FakeResource::AddRef();
}

ULONG STDMETHODCALLTYPE FakeSurface::Release()
{
    return container ? container->Release() : FakeResource::Release();
}

HRESULT STDMETHODCALLTYPE FakeSurface::GetContainer(REFIID iid, void** containerOut)
{
    *containerOut = nullptr;
    return container ? container->QueryInterface(iid, containerOut) : E_NOINTERFACE;
}

HRESULT STDMETHODCALLTYPE FakeSurface::GetDesc(D3DSURFACE_DESC* descOut)
{
    *descOut = description;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeSurface::LockRect(D3DLOCKED_RECT* lockedOut, const RECT* rect, DWORD)
{
    if (isLocked || (rect && !IsInside(*rect, description)))
        return D3DERR_INVALIDCALL;
    if (device && FAILED(device->lockResult))
        return device->lockResult;
    const PixelLayout& layout = *LayoutOf(description.Format);
    const UINT column = rect ? static_cast<UINT>(rect->left) / layout.blockSide : 0;
    const UINT row = rect ? static_cast<UINT>(rect->top) / layout.blockSide : 0;
    lockedOut->Pitch = static_cast<INT>(pitch);
    lockedOut->pBits = bytes.data() + size_t{row} * pitch + column * layout.blockBytes;
    isLocked = true;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeSurface::UnlockRect()
{
    if (!isLocked)
        return D3DERR_INVALIDCALL;
    isLocked = false;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeSurface::GetDC(HDC*)
{
    return D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeSurface::ReleaseDC(HDC)
{
    return D3DERR_INVALIDCALL;
}

ComHandle<FakeTexture> FakeTexture::Create(FakeResourceHost* device, UINT width, UINT height,
                                           UINT levels, DWORD usage, D3DFORMAT format, D3DPOOL pool)
{
    ComHandle<FakeTexture> texture(new FakeTexture(device));
    D3DSURFACE_DESC desc = {format, D3DRTYPE_SURFACE, usage, pool, D3DMULTISAMPLE_NONE, 0, width,
                            height};
    for (UINT level = 0;; ++level) {
        auto surface = FakeSurface::CreateLevel(device, desc, texture.get());
        if (!surface)
            return nullptr;
        texture->surfaces.push_back(std::move(surface));
        const bool isSmallest = desc.Width == 1 && desc.Height == 1;
        if (level + 1 == levels || (levels == 0 && isSmallest))
            return texture;
        if (isSmallest)
            return nullptr; // more levels than exist
        desc.Width = std::max(1u, desc.Width / 2);
        desc.Height = std::max(1u, desc.Height / 2);
    }
}

HRESULT STDMETHODCALLTYPE FakeTexture::QueryInterface(REFIID iid, void** objectOut)
{
    return GiveInterface(this, iid, {kUnknownId, kResourceId, kBaseTextureId, kTextureId},
                         objectOut);
}

DWORD STDMETHODCALLTYPE FakeTexture::GetLevelCount()
{
    return static_cast<DWORD>(surfaces.size());
}

HRESULT STDMETHODCALLTYPE FakeTexture::GetLevelDesc(UINT level, D3DSURFACE_DESC* descOut)
{
    return level < surfaces.size() ? surfaces[level]->GetDesc(descOut) : D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeTexture::GetSurfaceLevel(UINT level,
                                                       IDirect3DSurface9** surfaceLevelOut)
{
    if (level >= surfaces.size())
        return D3DERR_INVALIDCALL;
    *surfaceLevelOut = Shared(surfaces[level].get()).release();
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeTexture::LockRect(UINT level, D3DLOCKED_RECT* lockedOut,
                                                const RECT* rect, DWORD flags)
{
    return level < surfaces.size() ? surfaces[level]->LockRect(lockedOut, rect, flags)
                                   : D3DERR_INVALIDCALL;
}

HRESULT STDMETHODCALLTYPE FakeTexture::UnlockRect(UINT level)
{
    return level < surfaces.size() ? surfaces[level]->UnlockRect() : D3DERR_INVALIDCALL;
}

template <class Interface, class Description>
ComHandle<FakeBuffer<Interface, Description>>
FakeBuffer<Interface, Description>::Create(FakeResourceHost* device, const Description& desc)
{
    return ComHandle<FakeBuffer>(desc.Size > 0 ? new FakeBuffer(device, desc) : nullptr);
}

template <class Interface, class Description>
HRESULT STDMETHODCALLTYPE FakeBuffer<Interface, Description>::QueryInterface(REFIID iid,
                                                                             void** objectOut)
{
    const bool isVertices = std::is_same_v<Interface, IDirect3DVertexBuffer9>;
    return GiveInterface(this, iid,
                         {kUnknownId, kResourceId, isVertices ? kVertexBufferId : kIndexBufferId},
                         objectOut);
}

template <class Interface, class Description>
HRESULT STDMETHODCALLTYPE FakeBuffer<Interface, Description>::Lock(UINT offsetToLock,
                                                                   UINT sizeToLock, void** dataOut,
                                                                   DWORD)
{
    if (offsetToLock >= bytes.size() || sizeToLock > bytes.size() - offsetToLock)
        return D3DERR_INVALIDCALL;
    *dataOut = bytes.data() + offsetToLock;
    ++locks;
    return D3D_OK;
}

template <class Interface, class Description>
HRESULT STDMETHODCALLTYPE FakeBuffer<Interface, Description>::Unlock()
{
    if (locks == 0)
        return D3DERR_INVALIDCALL;
    --locks;
    return D3D_OK;
}

template <class Interface, class Description>
HRESULT STDMETHODCALLTYPE FakeBuffer<Interface, Description>::GetDesc(Description* descOut)
{
    *descOut = description;
    return D3D_OK;
}

template class FakeBuffer<IDirect3DVertexBuffer9, D3DVERTEXBUFFER_DESC>;
template class FakeBuffer<IDirect3DIndexBuffer9, D3DINDEXBUFFER_DESC>;

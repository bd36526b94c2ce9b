// Creating textures, surfaces and buffers.

#include "platform/headless/d3d9/Adapter.h"
#include "platform/headless/d3d9/CubeTexture.h"
#include "platform/headless/d3d9/Device.h"
#include "platform/headless/d3d9/VertexFormat.h"
#include "platform/headless/d3d9/VolumeTexture.h"

#include <algorithm>

namespace headless {

namespace {

bool IsSizePossible(UINT width, UINT height)
{
    return width > 0 && height > 0 && width <= kMaxTextureSide && height <= kMaxTextureSide;
}

/// Compressed textures that a device samples consist of whole blocks.
bool IsWholeBlocks(const PixelFormat& format, UINT width, UINT height)
{
    return width % format.UnitSide() == 0 && height % format.UnitSide() == 0;
}

/// What the pools allow: only the default pool can be drawn into, and managed resources are never
/// dynamic. The scratch pool takes any format that the host knows.
bool IsTexturePossible(const PixelFormat& format, UINT width, UINT height, DWORD usage,
                       D3DPOOL pool)
{
    if (pool == D3DPOOL_SCRATCH)
        return usage == 0;
    if (usage & D3DUSAGE_DEPTHSTENCIL)
        return pool == D3DPOOL_DEFAULT && usage == D3DUSAGE_DEPTHSTENCIL &&
               IsDepthFormat(format.format);
    if (pool != D3DPOOL_DEFAULT && (usage & D3DUSAGE_RENDERTARGET))
        return false;
    if (pool == D3DPOOL_MANAGED && (usage & D3DUSAGE_DYNAMIC))
        return false;
    if ((usage & D3DUSAGE_RENDERTARGET) && !IsRenderTargetFormat(format.format))
        return false;
    return IsTextureFormat(format.format) && IsWholeBlocks(format, width, height);
}

/// Cubes and volumes are not drawn into.
bool IsSolidTexturePossible(const PixelFormat& format, UINT width, UINT height, DWORD usage,
                            D3DPOOL pool)
{
    return (usage & ~static_cast<DWORD>(D3DUSAGE_DYNAMIC)) == 0 &&
           IsTexturePossible(format, width, height, usage, pool);
}

constexpr DWORD kTextureUsages = D3DUSAGE_RENDERTARGET | D3DUSAGE_DEPTHSTENCIL | D3DUSAGE_DYNAMIC;

bool IsPool(D3DPOOL pool)
{
    return pool == D3DPOOL_DEFAULT || pool == D3DPOOL_MANAGED || pool == D3DPOOL_SYSTEMMEM ||
           pool == D3DPOOL_SCRATCH;
}

bool IsBufferPossible(UINT length, DWORD usage, D3DPOOL pool)
{
    if (length == 0 || !IsPool(pool) || pool == D3DPOOL_SCRATCH)
        return false;
    if (pool == D3DPOOL_MANAGED && (usage & D3DUSAGE_DYNAMIC))
        return false;
    return (usage & (D3DUSAGE_RENDERTARGET | D3DUSAGE_DEPTHSTENCIL)) == 0;
}

/// Hands a new object to the caller with a reference; null means that memory ran out.
template <typename Object, typename Interface>
HRESULT HandOut(Object* object, Interface** objectOut)
{
    if (!object)
        return E_OUTOFMEMORY;
    object->AddRef();
    *objectOut = object;
    return D3D_OK;
}

} // namespace

HRESULT HeadlessDevice::CreateTexture(UINT width, UINT height, UINT levels, DWORD usage,
                                      D3DFORMAT format, D3DPOOL pool,
                                      IDirect3DTexture9** textureOut, HANDLE* sharedHandle)
{
    if (!textureOut)
        return D3DERR_INVALIDCALL;
    *textureOut = nullptr;
    const PixelFormat* row = FindPixelFormat(format);
    if (sharedHandle || !row || !IsPool(pool) || !IsSizePossible(width, height) ||
        levels > FullLevelCount(width, height) || (usage & ~kTextureUsages) ||
        !IsTexturePossible(*row, width, height, usage, pool))
        return D3DERR_INVALIDCALL;
    const D3DSURFACE_DESC desc = {
        format, D3DRTYPE_SURFACE, usage, pool, D3DMULTISAMPLE_NONE, 0, width, height};
    const UINT levelCount = levels ? levels : FullLevelCount(width, height);
    return HandOut(HeadlessTexture::Create(*this, desc, levelCount), textureOut);
}

HRESULT HeadlessDevice::CreateCubeTexture(UINT edgeLength, UINT levels, DWORD usage,
                                          D3DFORMAT format, D3DPOOL pool,
                                          IDirect3DCubeTexture9** cubeTextureOut,
                                          HANDLE* sharedHandle)
{
    if (!cubeTextureOut)
        return D3DERR_INVALIDCALL;
    *cubeTextureOut = nullptr;
    const PixelFormat* row = FindPixelFormat(format);
    if (sharedHandle || !row || !IsPool(pool) || !IsSizePossible(edgeLength, edgeLength) ||
        levels > FullLevelCount(edgeLength, edgeLength) ||
        !IsSolidTexturePossible(*row, edgeLength, edgeLength, usage, pool))
        return D3DERR_INVALIDCALL;
    const D3DSURFACE_DESC desc = {format, D3DRTYPE_SURFACE, usage,     pool, D3DMULTISAMPLE_NONE,
                                  0,      edgeLength,       edgeLength};
    const UINT levelCount = levels ? levels : FullLevelCount(edgeLength, edgeLength);
    return HandOut(HeadlessCubeTexture::Create(*this, desc, levelCount), cubeTextureOut);
}

HRESULT HeadlessDevice::CreateVolumeTexture(UINT width, UINT height, UINT depth, UINT levels,
                                            DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                            IDirect3DVolumeTexture9** volumeTextureOut,
                                            HANDLE* sharedHandle)
{
    if (!volumeTextureOut)
        return D3DERR_INVALIDCALL;
    *volumeTextureOut = nullptr;
    const PixelFormat* row = FindPixelFormat(format);
    if (sharedHandle || !row || !IsPool(pool) || width == 0 || height == 0 || depth == 0 ||
        std::max({width, height, depth}) > kMaxVolumeExtent ||
        levels > FullLevelCount(width, height, depth) ||
        !IsSolidTexturePossible(*row, width, height, usage, pool))
        return D3DERR_INVALIDCALL;
    if (uint64_t{width} * SliceRows(*row, height) * depth > kMaxVolumeTexels)
        return D3DERR_OUTOFVIDEOMEMORY;
    const D3DSURFACE_DESC desc = {
        format, D3DRTYPE_SURFACE, usage, pool, D3DMULTISAMPLE_NONE, 0, width, height};
    const UINT levelCount = levels ? levels : FullLevelCount(width, height, depth);
    return HandOut(HeadlessVolumeTexture::Create(*this, desc, depth, levelCount), volumeTextureOut);
}

/// `length` must hold at least one vertex of `fvf`, unless `fvf` is 0.
HRESULT HeadlessDevice::CreateVertexBuffer(UINT length, DWORD usage, DWORD fvf, D3DPOOL pool,
                                           IDirect3DVertexBuffer9** vertexBufferOut,
                                           HANDLE* sharedHandle)
{
    if (!vertexBufferOut)
        return D3DERR_INVALIDCALL;
    *vertexBufferOut = nullptr;
    if (sharedHandle || !IsBufferPossible(length, usage, pool) || length < VertexSize(fvf))
        return D3DERR_INVALIDCALL;
    const D3DVERTEXBUFFER_DESC desc = {
        D3DFMT_VERTEXDATA, D3DRTYPE_VERTEXBUFFER, usage, pool, length, fvf};
    return HandOut(HeadlessVertexBuffer::Create(*this, desc), vertexBufferOut);
}

HRESULT HeadlessDevice::CreateIndexBuffer(UINT length, DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                          IDirect3DIndexBuffer9** indexBufferOut,
                                          HANDLE* sharedHandle)
{
    if (!indexBufferOut)
        return D3DERR_INVALIDCALL;
    *indexBufferOut = nullptr;
    const bool isIndexFormat = format == D3DFMT_INDEX16 || format == D3DFMT_INDEX32;
    if (sharedHandle || !isIndexFormat || !IsBufferPossible(length, usage, pool))
        return D3DERR_INVALIDCALL;
    const D3DINDEXBUFFER_DESC desc = {format, D3DRTYPE_INDEXBUFFER, usage, pool, length};
    return HandOut(HeadlessIndexBuffer::Create(*this, desc), indexBufferOut);
}

HRESULT HeadlessDevice::CreateSurface(const D3DSURFACE_DESC& desc, bool lockable,
                                      IDirect3DSurface9** surfaceOut)
{
    if (!IsSizePossible(desc.Width, desc.Height))
        return D3DERR_INVALIDCALL;
    return HandOut(HeadlessSurface::Create(*this, desc, lockable), surfaceOut);
}

HRESULT HeadlessDevice::CreateRenderTarget(UINT width, UINT height, D3DFORMAT format,
                                           D3DMULTISAMPLE_TYPE multiSample, DWORD quality,
                                           BOOL lockable, IDirect3DSurface9** surfaceOut,
                                           HANDLE* sharedHandle)
{
    if (!surfaceOut)
        return D3DERR_INVALIDCALL;
    *surfaceOut = nullptr;
    if (sharedHandle || multiSample != D3DMULTISAMPLE_NONE || quality != 0 ||
        !IsRenderTargetFormat(format))
        return D3DERR_INVALIDCALL;
    return CreateSurface({format, D3DRTYPE_SURFACE, D3DUSAGE_RENDERTARGET, D3DPOOL_DEFAULT,
                          D3DMULTISAMPLE_NONE, 0, width, height},
                         lockable != 0, surfaceOut);
}

HRESULT HeadlessDevice::CreateDepthStencilSurface(UINT width, UINT height, D3DFORMAT format,
                                                  D3DMULTISAMPLE_TYPE multiSample, DWORD quality,
                                                  BOOL, IDirect3DSurface9** surfaceOut,
                                                  HANDLE* sharedHandle)
{
    if (!surfaceOut)
        return D3DERR_INVALIDCALL;
    *surfaceOut = nullptr;
    if (sharedHandle || multiSample != D3DMULTISAMPLE_NONE || quality != 0 ||
        !IsDepthFormat(format))
        return D3DERR_INVALIDCALL;
    return CreateSurface({format, D3DRTYPE_SURFACE, D3DUSAGE_DEPTHSTENCIL, D3DPOOL_DEFAULT,
                          D3DMULTISAMPLE_NONE, 0, width, height},
                         format == D3DFMT_D16_LOCKABLE, surfaceOut);
}

/// The managed pool is for textures and buffers only.
HRESULT HeadlessDevice::CreateOffscreenPlainSurface(UINT width, UINT height, D3DFORMAT format,
                                                    D3DPOOL pool, IDirect3DSurface9** surfaceOut,
                                                    HANDLE* sharedHandle)
{
    if (!surfaceOut)
        return D3DERR_INVALIDCALL;
    *surfaceOut = nullptr;
    const PixelFormat* row = FindPixelFormat(format);
    if (sharedHandle || !row || !IsPool(pool) || pool == D3DPOOL_MANAGED)
        return D3DERR_INVALIDCALL;
    if (pool != D3DPOOL_SCRATCH &&
        (!IsTextureFormat(format) || !IsWholeBlocks(*row, width, height)))
        return D3DERR_INVALIDCALL;
    return CreateSurface({format, D3DRTYPE_SURFACE, 0, pool, D3DMULTISAMPLE_NONE, 0, width, height},
                         true, surfaceOut);
}

} // namespace headless

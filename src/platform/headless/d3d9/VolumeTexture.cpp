#include "platform/headless/d3d9/VolumeTexture.h"

#include <algorithm>
#include <new>

namespace headless {

namespace {

/// One direction of a box: not empty, inside, and on the borders of blocks of `side` texels.
bool IsValidRange(UINT from, UINT to, UINT size, UINT side)
{
    return from < to && to <= size && from % side == 0 && (to % side == 0 || to == size);
}

bool IsValidBox(const D3DVOLUME_DESC& desc, const D3DBOX& box)
{
    const UINT side = FindPixelFormat(desc.Format)->UnitSide();
    return IsValidRange(box.Left, box.Right, desc.Width, side) &&
           IsValidRange(box.Top, box.Bottom, desc.Height, side) &&
           IsValidRange(box.Front, box.Back, desc.Depth, 1);
}

} // namespace

UINT SliceRows(const PixelFormat& format, UINT height)
{
    const UINT side = format.UnitSide();
    return (height + side - 1) / side * side;
}

HeadlessVolumeTexture::HeadlessVolumeTexture(ResourceOwner& textureOwner,
                                             const D3DSURFACE_DESC& desc, UINT depth)
    : TextureOf(textureOwner, desc),
      first(desc)
{
    picture.kind = TextureKind::Volume;
    picture.height = desc.Height;
    picture.depth = depth;
}

HeadlessVolumeTexture* HeadlessVolumeTexture::Create(ResourceOwner& owner,
                                                     const D3DSURFACE_DESC& desc, UINT depth,
                                                     UINT levels)
{
    std::unique_ptr<HeadlessVolumeTexture> texture(new (std::nothrow)
                                                       HeadlessVolumeTexture(owner, desc, depth));
    for (UINT i = 0; texture && i < levels; ++i)
        if (!texture->AddLevel(i))
            return nullptr;
    return texture.release();
}

bool HeadlessVolumeTexture::AddLevel(UINT number)
{
    std::unique_ptr<Level> level(new (std::nothrow) Level());
    if (!level)
        return false;
    const auto side = [number](UINT ofLevel0) { return std::max(1u, ofLevel0 >> number); };
    level->desc = {first.Format,      D3DRTYPE_VOLUME,    first.Usage,        first.Pool,
                   side(first.Width), side(first.Height), side(picture.depth)};
    const PixelFormat& layout = *FindPixelFormat(first.Format);
    if (!level->picture.pixels.Allocate(layout, level->desc.Width,
                                        SliceRows(layout, level->desc.Height) * level->desc.Depth))
        return false;
    picture.levels.push_back(&level->picture);
    levels.push_back(std::move(level));
    return true;
}

HRESULT HeadlessVolumeTexture::GetLevelDesc(UINT level, D3DVOLUME_DESC* descOut)
{
    if (level >= levels.size() || !descOut)
        return D3DERR_INVALIDCALL;
    *descOut = levels[level]->desc;
    return D3D_OK;
}

HRESULT HeadlessVolumeTexture::GetVolumeLevel(UINT level, IDirect3DVolume9** volumeOut)
{
    if (volumeOut)
        *volumeOut = nullptr;
    return Unmodelled("GetVolumeLevel", level, volumeOut);
}

HRESULT HeadlessVolumeTexture::LockBox(UINT level, D3DLOCKED_BOX* lockedOut, const D3DBOX* box,
                                       DWORD flags)
{
    if (level >= levels.size() || !lockedOut)
        return D3DERR_INVALIDCALL;
    *lockedOut = {};
    Level& locked = *levels[level];
    PixelBuffer& pixels = locked.picture.pixels;
    if (!IsLockableTexture(Pool(), Usage()) || locked.isLocked ||
        (box && !IsValidBox(locked.desc, *box)))
        return D3DERR_INVALIDCALL;
    locked.isLocked = true;
    pixels.changes += (flags & D3DLOCK_READONLY) == 0 ? 1 : 0;
    const UINT rows = SliceRows(*pixels.format, locked.desc.Height);
    const size_t sliceBytes = pixels.pitchBytes * (rows / pixels.format->UnitSide());
    lockedOut->RowPitch = static_cast<INT>(pixels.pitchBytes);
    lockedOut->SlicePitch = static_cast<INT>(sliceBytes);
    lockedOut->pBits = box ? pixels.At(box->Left, box->Front * rows + box->Top) : pixels.At(0, 0);
    return D3D_OK;
}

HRESULT HeadlessVolumeTexture::UnlockBox(UINT level)
{
    if (level >= levels.size() || !levels[level]->isLocked)
        return D3DERR_INVALIDCALL;
    levels[level]->isLocked = false;
    ++levels[level]->picture.pixels.changes;
    return D3D_OK;
}

HRESULT HeadlessVolumeTexture::AddDirtyBox(const D3DBOX* dirtyBox)
{
    return !dirtyBox || IsValidBox(levels[0]->desc, *dirtyBox) ? D3D_OK : D3DERR_INVALIDCALL;
}

} // namespace headless

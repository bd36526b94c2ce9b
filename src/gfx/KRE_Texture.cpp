#include "gfx/KRE_Texture.h"

#include <algorithm>
#include <cmath>

#include "base/Paths.h"
#include "gfx/DirectXErrorName.h"
#include "gfx/KRE_ResourceManager.h"
#include "gfx/KRE_VertexLayout.h"

static constexpr UINT kQuadVertices = 4;
static constexpr int32_t kHighestStageToFree = 7;

KRE_Texture::KRE_Texture()
{
    SetClassName("KRE_Texture");
}

KRE_Texture::~KRE_Texture()
{
    Free();
}

// ---- The selected picture

void KRE_Texture::Lock(const RECT* area, DWORD flags)
{
    D3DLOCKED_RECT bits = {};
    lastResult = current ? current->LockRect(static_cast<UINT>(mipShift), &bits, area, flags)
                         : D3DERR_INVALIDCALL;
    if (FAILED(lastResult))
        Error("LockRect failed: %s", DirectXErrorName(lastResult));
    SIZE size = {};
    GetSize(&size);
    BeginLock(bits, area, size);
}

void KRE_Texture::Unlock()
{
    lastResult = current ? current->UnlockRect(static_cast<UINT>(mipShift)) : D3DERR_INVALIDCALL;
    EndLock();
    if (FAILED(lastResult))
        Error("UnlockRect failed: %s", DirectXErrorName(lastResult));
}

void KRE_Texture::GetRect(RECT* rectOut) const
{
    const float across = static_cast<float>(width);
    const float down = static_cast<float>(height);
    rectOut->left = RoundToInt(originU * across);
    rectOut->top = RoundToInt(originV * down);
    rectOut->right = RoundToInt((originU + axisAU + axisBU) * across);
    rectOut->bottom = RoundToInt((originV + axisAV + axisBV) * down);
}

void KRE_Texture::GetSize(SIZE* sizeOut) const
{
    sizeOut->cx = std::max(width >> mipShift, 1);
    sizeOut->cy = std::max(height >> mipShift, 1);
}

void KRE_Texture::GetFullSize(SIZE* sizeOut) const
{
    *sizeOut = {};
    GetSize(sizeOut);
}

void KRE_Texture::Refresh()
{
    alphaState = -1; // was that of the previous picture
    if (current)
        ReadCurrent();
    hasAlpha = 0;
    if (sequenceCount == 0)
        ReadSlots();
    UpdateQuad();
    if (current)
        InitFormat(format);
}

void KRE_Texture::ReadCurrent()
{
    D3DSURFACE_DESC desc = {};
    lastResult = current->GetLevelDesc(0, &desc);
    if (FAILED(lastResult))
        Error("GetDesc failed: %s", DirectXErrorName(lastResult));
    width = static_cast<int32_t>(desc.Width);
    height = static_cast<int32_t>(desc.Height);
    format = desc.Format;
    levelCount = static_cast<int32_t>(current->GetLevelCount());
}

void KRE_Texture::ReadSlots()
{
    for (int32_t slot = 0; slot < kSlots; ++slot) {
        if (!slotTextures[slot])
            continue;
        D3DSURFACE_DESC& desc = slotDescs[slot];
        lastResult = slotTextures[slot]->GetLevelDesc(0, &desc);
        if (FAILED(lastResult))
            Error("GetDesc failed: %s", DirectXErrorName(lastResult));
        if (desc.Format == D3DFMT_A8R8G8B8 || desc.Format == D3DFMT_A1R5G5B5 ||
            IsBlockFormat(desc.Format))
            hasAlpha = 1;
    }
}

// ---- Slots and frames

void KRE_Texture::SetStage(int32_t slot, int32_t type, float param)
{
    if (slot < 0 || slot >= kSlots)
        Error("Invalid texture stage: %i", slot);
    slots[slot] = {type, param};
}

void KRE_Texture::SelectStage(int32_t slot)
{
    if (sequenceCount > 0)
        Error("No stages with texture sequence allowed");
    if (slot < 0 || slot >= kSlots)
        Error("Invalid texture stage selected: %i", slot);
    currentSlot = slot;
    current = slotTextures[slot];
    Refresh();
}

void KRE_Texture::SetSlotMatrix(const D3DMATRIX* matrix)
{
    slotMatrixSet[currentSlot] = matrix ? 1 : 0;
    if (matrix)
        slotMatrices[currentSlot] = *matrix;
}

void KRE_Texture::SelectFrame(int32_t index)
{
    if (index < 0 || index >= sequenceCount)
        Error("Invalid sequence number");
    frameIndex = index;
    current = frames[index];
}

void KRE_Texture::SetSequenceTiming(float period, float start, int32_t mode)
{
    framePeriod = period;
    sequenceStart = start;
    sequenceMode = mode;
}

void KRE_Texture::CreateSequence(int32_t count, bool keep)
{
    if (keep)
        FreeFrames();
    else
        Free();
    if (count < 1)
        return;
    frameIds = HeapArray<int32_t>(count);
    std::fill_n(frameIds.Get(), count, -1);
    frames = HeapArray<IDirect3DTexture9*>(count);
    sequenceCount = count;
}

void KRE_Texture::FreeStage(int32_t index)
{
    if (sequenceCount > 0) {
        if (index < 0 || index >= sequenceCount)
            Error("Invalid sequence to free: %i", index);
        if (index == frameIndex)
            current = nullptr;
        ReleaseUse(frames[index], frameIds[index]);
        return;
    }
    if (index < 0 || index > kHighestStageToFree)
        Error("Invalid stage: %i", index);
    if (index < kSlots)
        FreeSlot(index);
}

void KRE_Texture::FreeSlot(int32_t slot)
{
    if (sequenceCount == 0 && slot == currentSlot)
        current = nullptr;
    ReleaseUse(slotTextures[slot], slotIds[slot]);
    slotDefaultPool[slot] = 0;
    if (slotFileInfo[slot].isVideo)
        videoSource = -1;
    slotFileInfo[slot] = {};
}

void KRE_Texture::ReleaseUse(IDirect3DTexture9*& texture, int32_t& id)
{
    if (id == -1 && !texture)
        return; // a texture that holds nothing may outlive its manager
    // The manager knows which textures a reset has released; the pointer here is stale then.
    IDirect3DTexture9* const object =
        manager && id != -1 ? static_cast<IDirect3DTexture9*>(manager->GetPointer(id)) : texture;
    const bool isLastUser = !manager || manager->Unacquire(id);
    id = -1;
    texture = nullptr;
    if (isLastUser && object)
        object->Release();
}

void KRE_Texture::FreeFrames()
{
    for (int32_t i = 0; i < sequenceCount; ++i)
        FreeStage(i);
    sequenceCount = 0;
    frameIndex = -1;
    frameIds.Free();
    frames.Free();
    current = slotTextures[currentSlot];
}

void KRE_Texture::Free()
{
    FreeFrames();
    for (int32_t slot = 0; slot < kSlots; ++slot)
        FreeSlot(slot);
    width = 0;
    height = 0;
    levelCount = 0;
    alphaState = -1;
    hasAlpha = 0;
    videoSource = -1;
    EndLock();
    SetDevice(nullptr);
}

void KRE_Texture::FreeCurrent()
{
    if (sequenceCount == 0)
        FreeStage(currentSlot);
    else if (frameIndex >= 0)
        FreeStage(frameIndex);
}

void KRE_Texture::PutTexture(KRE_ResourceManager* newManager, int32_t id,
                             IDirect3DTexture9* texture)
{
    FreeCurrent();
    const bool isFrame = sequenceCount > 0 && frameIndex >= 0;
    manager = newManager;
    (isFrame ? frameIds[frameIndex] : slotIds[currentSlot]) = id;
    (isFrame ? frames[frameIndex] : slotTextures[currentSlot]) = texture;
    current = texture;
}

// ---- Copies

void KRE_Texture::CopyFrom(const KRE_Texture& other)
{
    if (&other == this)
        return;
    Free();
    std::copy_n(other.slotNames, kSlots, slotNames);
    std::copy_n(other.slots, kSlots, slots);
    textureWord = other.textureWord;
    textureValue = other.textureValue;
    loadOptions = other.loadOptions;
    if (!other.manager)
        return;
    CopySettings(other);
    CopyPictures(other);
    SetDevice(other.device);
    SetRect(other.originU, other.originV, other.axisAU, other.axisAV, other.axisBU, other.axisBV);
    Refresh();
    alphaState = other.alphaState;
}

void KRE_Texture::CopySettings(const KRE_Texture& other)
{
    std::copy_n(other.slotDefaultPool, kSlots, slotDefaultPool);
    matrixAni = other.matrixAni;
    slotMatrices.CopyFrom(other.slotMatrices);
    std::copy_n(other.slotMatrixSet, kSlots, slotMatrixSet);
    std::copy_n(other.slotFileInfo, kSlots, slotFileInfo);
    sequenceStart = other.sequenceStart;
    framePeriod = other.framePeriod;
    sequenceMode = other.sequenceMode;
    currentTime = other.currentTime;
    videoSource = other.videoSource;
    sourceWidth = other.sourceWidth;
    sourceHeight = other.sourceHeight;
    mipShift = other.mipShift;
    currentSlot = other.currentSlot;
    clampFlag = other.clampFlag;
    textureIsDynamic = other.textureIsDynamic;
}

void KRE_Texture::CopyPictures(const KRE_Texture& other)
{
    manager = other.manager;
    CreateSequence(other.sequenceCount, true);
    for (int32_t i = 0; i < sequenceCount; ++i) {
        frames[i] = AcquireFrom(other, other.frameIds[i], other.frames[i]);
        frameIds[i] = other.frameIds[i];
    }
    for (int32_t slot = 0; slot < kSlots; ++slot) {
        slotTextures[slot] = AcquireFrom(other, other.slotIds[slot], other.slotTextures[slot]);
        slotIds[slot] = other.slotIds[slot];
    }
    frameIndex = other.frameIndex;
    current = frameIndex >= 0 ? frames[frameIndex] : slotTextures[currentSlot];
}

/// A texture without an id is not shared, so a copy goes without it.
IDirect3DTexture9* KRE_Texture::AcquireFrom(const KRE_Texture& other, int32_t id,
                                            IDirect3DTexture9* texture)
{
    return other.manager->Acquire(id) == -1 ? nullptr : texture;
}

// ---- Sprite rectangle

void KRE_Texture::SetDevice(IDirect3DDevice9* newDevice)
{
    if (newDevice == device)
        return;
    quad.Free();
    device = newDevice;
    if (!device)
        return;
    lastResult =
        device->CreateVertexBuffer(kQuadVertices * sizeof(KRE_TLVertex), D3DUSAGE_WRITEONLY,
                                   KRE_TLVertex::kFvf, D3DPOOL_SYSTEMMEM, quad.Out(), nullptr);
    if (FAILED(lastResult)) {
        device = nullptr;
        Error("CreateVertexBuffer failed: %s", DirectXErrorName(lastResult));
    }
}

void KRE_Texture::SetRectFromPixels(int32_t x1, int32_t y1, int32_t x2, int32_t y2, bool setSize,
                                    bool swapAxes)
{
    constexpr float kCornerInset = 0.25f; // of a pixel
    constexpr float kSideInset = 0.02f;
    const float signX = x2 > x1 ? 1.0f : -1.0f;
    const float signY = y2 > y1 ? 1.0f : -1.0f;
    const float across = static_cast<float>(width);
    const float down = static_cast<float>(height);
    const float sideX = static_cast<float>(x2) - static_cast<float>(x1);
    const float sideY = static_cast<float>(y2) - static_cast<float>(y1);
    const float sideU = (sideX - signX * kSideInset) / across;
    const float sideV = (sideY - signY * kSideInset) / down;
    originU = (static_cast<float>(x1) + signX * kCornerInset) / across;
    originV = (static_cast<float>(y1) + signY * kCornerInset) / down;
    axisAU = swapAxes ? 0.0f : sideU;
    axisAV = swapAxes ? sideV : 0.0f;
    axisBU = swapAxes ? sideU : 0.0f;
    axisBV = swapAxes ? 0.0f : sideV;
    UpdateQuad();
    if (setSize) {
        sourceWidth = std::fabs(sideX);
        sourceHeight = std::fabs(sideY);
    }
}

void KRE_Texture::SetRect(float newOriginU, float newOriginV, float newAxisAU, float newAxisAV,
                          float newAxisBU, float newAxisBV)
{
    originU = newOriginU;
    originV = newOriginV;
    axisAU = newAxisAU;
    axisAV = newAxisAV;
    axisBU = newAxisBU;
    axisBV = newAxisBV;
    UpdateQuad();
}

void KRE_Texture::UpdateQuad()
{
    if (!quad)
        return;
    void* bytes = nullptr;
    lastResult = quad->Lock(0, 0, &bytes, 0);
    if (FAILED(lastResult))
        Error(" VB Lock failed: %s", DirectXErrorName(lastResult));
    KRE_TLVertex* vertices = static_cast<KRE_TLVertex*>(bytes);
    for (UINT i = 0; i < kQuadVertices; ++i) {
        const bool withA = i >= 2;
        const bool withB = i % 2 == 0;
        vertices[i].tu = originU + (withA ? axisAU : 0.0f) + (withB ? axisBU : 0.0f);
        vertices[i].tv = originV + (withA ? axisAV : 0.0f) + (withB ? axisBV : 0.0f);
    }
    lastResult = quad->Unlock();
}

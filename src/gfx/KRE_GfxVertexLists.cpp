#include "gfx/KRE_Gfx.h"

#include "gfx/DirectXErrorName.h"

#include <limits>

/// Whether the hardware's matrix palette includes this bone.
static bool CanBlendByIndex(const KRE_Gfx& gfx, int32_t boneIndex)
{
    if (int64_t{boneIndex} + 1 > gfx.caps.MaxVertexBlendMatrixIndex)
        return false;
    return gfx.hardwareSkinningLimit < 0 || boneIndex <= gfx.hardwareSkinningLimit;
}

int32_t KRE_Gfx::GetVertexProcessing(const VertexInfo& info, int32_t boneIndex, int32_t forEffect)
{
    int32_t answer = 1;
    if (forEffect) {
        if (!skinningEffect || !(skinningEffectCaps & kSkinningCapsVertices))
            return 0;
        answer = 2;
    }
    if (info.fvf & D3DFVF_LASTBETA_UBYTE4) {
        if (boneIndex < 0 || !hardwareSkinning)
            return 0;
        if (skinningEffect && (skinningEffectCaps & kSkinningCapsIndexed)) {
            if (boneIndex > skinningEffectLimit)
                return 0;
            answer = 2;
        } else if (!CanBlendByIndex(*this, boneIndex)) {
            return 0;
        }
    } else if (static_cast<DWORD>(info.blendCount) > caps.MaxVertexBlendMatrices) {
        return 0;
    }
    if (info.pointSizeOffset != VertexInfo::kNoOffset && !(caps.MaxPointSize > 1.0f))
        return 0;
    return answer;
}

void KRE_Gfx::CreateVertexList(KRE_VertexListBase* list, int32_t count, int32_t usage,
                               int32_t systemMemory)
{
    if (!list)
        Error("VertexList is NULL pointer");
    list->Free();
    VertexInfo& info = list->info;
    DWORD flags = static_cast<DWORD>(usage);
    if (usage == -1)
        flags = list->isPointSprite ? D3DUSAGE_POINTS : 0;
    info.processing = GetVertexProcessing(info, 0, 0);
    if (!hardwareVertexProcessing || info.processing == 0)
        flags |= D3DUSAGE_SOFTWAREPROCESSING;
    if (flags & D3DUSAGE_SOFTWAREPROCESSING)
        info.processing = 0;

    const int64_t bytes = int64_t{info.stride} * count;
    lastResult = D3DERR_INVALIDCALL;
    if (bytes > 0 && bytes <= std::numeric_limits<UINT>::max())
        lastResult = device->CreateVertexBuffer(static_cast<UINT>(bytes), flags, info.fvf,
                                                systemMemory ? D3DPOOL_SYSTEMMEM : D3DPOOL_MANAGED,
                                                list->buffer.Out(), nullptr);
    if (FAILED(lastResult))
        Error("CreateVertexBuffer in CreateVertexList failed: %s", DirectXErrorName(lastResult));
    list->vertexCount = count;
    list->SetPrimitiveType(list->primitiveType);
}

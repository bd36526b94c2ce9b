#include "gfx/KRE_VertexListBase.h"

#include "gfx/DirectXErrorName.h"

#include <algorithm>

KRE_VertexListBase::KRE_VertexListBase()
{
    SetClassName("KRE_VertexList");
}

void KRE_VertexListBase::SetPrimitiveType(int32_t type)
{
    int32_t count = 0;
    switch (type) {
    case D3DPT_POINTLIST:
        count = vertexCount;
        break;
    case D3DPT_LINELIST:
        count = vertexCount / 2;
        break;
    case D3DPT_LINESTRIP:
        count = vertexCount - 1;
        break;
    case D3DPT_TRIANGLELIST:
        count = vertexCount / 3;
        break;
    case D3DPT_TRIANGLESTRIP:
    case D3DPT_TRIANGLEFAN:
        count = vertexCount - 2;
        break;
    default:
        Error("Invalid PointList mode selected! (%i)", type);
    }
    primitiveType = type;
    primitiveCount = std::max(count, 0);
}

void* KRE_VertexListBase::Lock(int32_t first, int32_t count, DWORD flags)
{
    const bool isInside = first >= 0 && count >= 0 && first <= vertexCount - count;
    lastResult = D3DERR_INVALIDCALL;
    if (buffer && isInside) {
        const auto stride = static_cast<UINT>(info.stride);
        lastResult = buffer->Lock(stride * static_cast<UINT>(first),
                                  stride * static_cast<UINT>(count), &lockedVertices, flags);
    }
    if (FAILED(lastResult))
        Error("Lock failed: %s", DirectXErrorName(lastResult));
    isLocked = 1;
    lockedCount = count == 0 ? vertexCount - first : count;
    return lockedVertices;
}

void KRE_VertexListBase::Unlock()
{
    lastResult = buffer ? buffer->Unlock() : D3DERR_INVALIDCALL;
    if (FAILED(lastResult))
        Error("Unlock failed: %s", DirectXErrorName(lastResult));
    isLocked = 0;
    lockedVertices = nullptr;
    lockedCount = 0;
}

template <class Element>
Element* KRE_VertexListBase::GetElement(int32_t i, int32_t offset)
{
    if (offset == VertexInfo::kNoOffset || !lockedVertices || i < 0 || i >= lockedCount)
        return nullptr;
    auto* vertex = static_cast<uint8_t*>(lockedVertices) + ptrdiff_t{info.stride} * i;
    return reinterpret_cast<Element*>(vertex + offset);
}

D3DVECTOR* KRE_VertexListBase::GetPosition(int32_t i)
{
    return GetElement<D3DVECTOR>(i, 0);
}

float* KRE_VertexListBase::GetTexCoord(int32_t i)
{
    return GetElement<float>(i, info.textureOffset);
}

D3DCOLOR* KRE_VertexListBase::GetDiffuse(int32_t i)
{
    return GetElement<D3DCOLOR>(i, info.diffuseOffset);
}

D3DCOLOR* KRE_VertexListBase::GetSpecular(int32_t i)
{
    return GetElement<D3DCOLOR>(i, info.specularOffset);
}

void KRE_VertexListBase::Free()
{
    buffer.Free();
    lockedVertices = nullptr;
    lockedCount = 0;
    isLocked = 0;
    vertexCount = 0;
    primitiveCount = 0;
}

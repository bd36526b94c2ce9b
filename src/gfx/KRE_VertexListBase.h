#pragma once

#include "base/KRE_Base.h"
#include "gfx/KRE_PointRecord.h"
#include "gfx/KRE_VertexLayout.h"
#include "platform/ComPointer.h"

/// A vertex buffer with its format, primitive type and point record. `KRE_Gfx::CreateVertexList`
/// makes the buffer.
class KRE_VertexListBase : public KRE_Base {
public:
    KRE_VertexListBase(const KRE_VertexListBase&) = delete; // the buffer belongs to one list
    KRE_VertexListBase& operator=(const KRE_VertexListBase&) = delete;

    void SetFVFInfo(DWORD fvf) { info.SetFVFInfo(fvf); }
    /// Sets a D3DPRIMITIVETYPE and recounts the primitives, never below 0. Any other number is an
    /// `Error`.
    void SetPrimitiveType(int32_t type);

    /// Maps `count` vertices from `first` on until `Unlock` and returns the first of them, also in
    /// `lockedVertices`. 0 and 0 map all. `flags` are D3DLOCK_ flags. A range outside the list is
    /// an `Error`.
    void* Lock(int32_t first, int32_t count, DWORD flags);
    void Unlock();
    bool IsLocked() const { return isLocked != 0; }

    /// Elements of the i-th mapped vertex; null outside the mapped range and for elements that the
    /// format lacks. Texture coordinates are those of the first set.
    D3DVECTOR* GetPosition(int32_t i);
    float* GetTexCoord(int32_t i);
    D3DCOLOR* GetDiffuse(int32_t i);
    D3DCOLOR* GetSpecular(int32_t i);

    /// Releases the buffer; format, primitive type and point record stay.
    void Free();

    VertexInfo info;
    ComPointer<IDirect3DVertexBuffer9> buffer;
    void* lockedVertices = nullptr; ///< first mapped vertex, of the buffer
    int32_t lockedCount = 0;
    int32_t primitiveType = D3DPT_TRIANGLELIST;
    uint8_t isLocked = 0;
    int32_t vertexCount = 0;
    int32_t primitiveCount = 0;
    KRE_PointRecord points;
    int32_t isPointSprite = 0;

protected:
    KRE_VertexListBase();

private:
    template <class Element>
    Element* GetElement(int32_t i, int32_t offset);
};

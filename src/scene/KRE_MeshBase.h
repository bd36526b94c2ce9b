#pragma once

#include <cstdint>

#include <d3dx9.h>

#include "base/HeapArray.h"
#include "gfx/KRE_Texture.h"
#include "gfx/KRE_VertexLayout.h"
#include "platform/ComPointer.h"
#include "scene/KRE_3dClipObject.h"
#include "scene/KRE_MaterialInfo.h"

/// An object with a device mesh, its vertex layout, and one material and one set of textures for
/// each attribute. In `VertexInfo`, `processing` tells how its vertices are blended: 0 by the
/// device's software, 1 by indexed blending in hardware, 2 by an effect. Destroy meshes, and so
/// scenes, before the engine that made them: `manager` points into it, and the device mesh holds
/// its device.
class KRE_MeshBase : public KRE_3dClipObject, public VertexInfo {
public:
    KRE_MeshBase();
    ~KRE_MeshBase() override;

    /// Clears the layout except `processing` and derives it from a format code.
    void SetVertexFormat(DWORD newFvf) { SetFVFInfo(newFvf); }

    /// Locks the index, vertex and attribute buffer, in this order; `flags` are D3DLOCK_ flags. A
    /// buffer that is already locked keeps its pointer. All locks and unlocks return 1; a device
    /// failure is an `Error`. They count as const operations.
    int32_t LockAll(DWORD flags) const;
    int32_t LockIndexBuffer(DWORD flags) const;
    int32_t LockVertexBuffer(DWORD flags) const;
    int32_t LockAttributeBuffer(DWORD flags) const;
    /// Unlocks the attribute, vertex and index buffer. One that is not locked is skipped.
    int32_t UnlockAll() const;
    int32_t UnlockIndexBuffer() const;
    int32_t UnlockVertexBuffer() const;
    int32_t UnlockAttributeBuffer() const;

    /// Parts of a vertex while the vertex buffer is locked. Neither the number nor the presence of
    /// the part in the layout is checked. The first texture set may hold fewer than two
    /// coordinates.
    D3DXVECTOR3* Position(int32_t i) { return Element<D3DXVECTOR3>(i, 0); }
    D3DXVECTOR3* Normal(int32_t i) { return Element<D3DXVECTOR3>(i, normalOffset); }
    float* TexCoord(int32_t i) { return Element<float>(i, textureOffset); }
    float* Weights(int32_t i) { return Element<float>(i, weightOffset); }
    uint8_t* BlendIndices(int32_t i) { return Element<uint8_t>(i, matrixIndexOffset); }
    /// The three indices of a face, and its attribute, while their buffers are locked; not checked.
    uint16_t* Face(int32_t i) { return indexData + ptrdiff_t{3} * i; }
    DWORD* Attribute(int32_t i) { return attributeData + i; }

    /// QUIRK: `i` equal to `materialCount` is accepted and gives the end of the array, for callers
    /// that need it. Anything above is an `Error`.
    KRE_MaterialInfo* GetMaterial(int32_t i);
    /// Makes `target` a copy of texture `i` and returns 1; returns 0 with a `Warning` if there is
    /// none.
    int32_t GetTexture(KRE_Texture& target, int32_t i);
    /// Whether a material is drawn in the transparent pass. Determined once: material animation
    /// does not change it.
    int32_t HasTransparency();
    /// Sorts the faces by attribute, so that each one is a contiguous range.
    void Optimize();

    /// One more than the highest attribute of the faces, which are sorted; 0 without a device mesh.
    int32_t AttributeCount();

    /// Replaces the old materials and textures by `count` new ones; below 1 there are none.
    void AllocateMaterials(int32_t count);
    /// Unlocks the device mesh and releases it as one of its users.
    void ReleaseDeviceMesh();
    /// Releases the device mesh, materials, textures and keys.
    void ReleaseMesh();
    /// Resets the fields to their defaults and releases everything.
    void Reset();

    mutable int32_t indexLocked = 0;
    mutable int32_t vertexLocked = 0;
    mutable int32_t attributeLocked = 0;
    HeapArray<KRE_Texture> textures;       ///< owned; `materialCount` of them
    ComPointer<ID3DXMesh> mesh;            ///< null without geometry; clones share it
    HeapArray<KRE_MaterialInfo> materials; ///< owned; `materialCount` of them
    String cloneSource;                    ///< the mesh whose geometry this one shares; or empty
    int32_t materialCount = 0;
    int32_t hasTransparency = -1; ///< -1 not yet determined
    int32_t vertexCount = 0;      ///< as created
    int32_t faceCount = 0;        ///< as created
    int32_t ownGeometry = 1; ///< kept for files: whether the faces came with texture coordinates
    mutable uint16_t* indexData = nullptr;  ///< while locked
    mutable uint8_t* vertexData = nullptr;  ///< while locked
    mutable DWORD* attributeData = nullptr; ///< while locked
    int32_t visible = 1;                    ///< 0: neither animated nor drawn

protected:
    void PrepareEvaluation(double time, int32_t force) override;
    void CopyMeshFields(const KRE_MeshBase& other);
    void ShareDeviceMesh(KRE_MeshBase& other);

private:
    template <class T>
    T* Element(int32_t i, int32_t offset)
    {
        return reinterpret_cast<T*>(vertexData + ptrdiff_t{stride} * i + offset);
    }
    int32_t CheckLock(HRESULT result, const char* text) const;
    void ForgetLocks();
};

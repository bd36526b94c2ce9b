#pragma once

#include "base/DynaMem.h"
#include "scene/KRE_BoneInfo.h"
#include "scene/KRE_MeshBase.h"

/// A mesh of a scene. With bones its vertices follow other objects.
class KRE_Mesh : public KRE_MeshBase {
public:
    KRE_Mesh();

    /// QUIRK: all blend weights of a vertex but the last are stored, in 16 bits and rounded down,
    /// as are normals: a scene that is loaded and saved repeatedly loses precision.
    void Save(File& file) const override;
    void Load(QSB_InputFile& file) override;
    int32_t IsMesh() const override { return 1; }

    /// Replaces the old pointers by one null pointer per bone.
    void AllocateBoneObjects();
    /// The matrix from the mesh's stored space to the world for a vertex of bone `i`, followed by
    /// `extraTM`. It is the mesh's own movement, without its pivot, for bone 0, for a bone without
    /// an object and for `i` beyond the bones. 0 <= i.
    D3DXMATRIX PaletteMatrix(int32_t i, const D3DXMATRIX& extraTM) const;
    /// Sets `vertexBlendFlags` from the layout; more than four weights are an `Error`.
    void SetVertexBlendFlags();
    /// Makes `dest` a second user of this geometry and returns 1; returns 0, with `dest` reset, if
    /// there is none. `keepObject` leaves its node (name, pose, parent, keys) unchanged,
    /// `keepMaterials` its materials and textures; otherwise it gets copies of this mesh's.
    /// Everything else comes from this mesh, links to bones included.
    /// QUIRK: so does the cached transparency, whichever materials it has.
    int32_t CopyGeometryTo(KRE_Mesh& dest, int32_t keepObject, int32_t keepMaterials);
    /// Resets all fields to their defaults and releases everything.
    void Reset();

    DynaMem<KRE_BoneInfo, 128> bones;        ///< owned; the first represents the mesh itself
    HeapArray<KRE_3dObject*> boneObjects;    ///< one for each bone; not owned, live in the scene
    int32_t boneObjectCount = 0;             ///< length of `boneObjects`
    DWORD vertexBlendFlags = D3DVBF_DISABLE; ///< a D3DVERTEXBLENDFLAGS
    int32_t userTag = -1;                    ///< kept for files; no operation reads it

private:
    void CopyBones(const KRE_Mesh& other);
};

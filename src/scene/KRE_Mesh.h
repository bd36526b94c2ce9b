#pragma once

#include "base/DynaMem.h"
#include "scene/KRE_BoneInfo.h"
#include "scene/KRE_MeshBase.h"

/// A mesh of a scene. With bones its vertices follow other objects.
class KRE_Mesh : public KRE_MeshBase {
public:
    KRE_Mesh();

    /// QUIRK: of the blend weights of a vertex all but the last are stored, in 16 bits and rounded
    /// down, as are normals: a scene that is loaded and saved again and again loses by it.
    void Save(File& file) const override;
    void Load(QSB_InputFile& file) override;
    int32_t IsMesh() const override { return 1; }

    /// Makes one null pointer for each bone in place of the old ones.
    void AllocateBoneObjects();
    /// What carries a vertex of bone `i` from the mesh's stored space into the world, and on by
    /// `extraTM`. The mesh's own movement for bone 0 and for a bone without an object; its pivot
    /// has no part in it. 0 <= i; beyond the bones it is the mesh's own movement, too.
    D3DXMATRIX PaletteMatrix(int32_t i, const D3DXMATRIX& extraTM) const;
    /// Sets `vertexBlendFlags` from the layout; more than four weights are an `Error`.
    void SetVertexBlendFlags();
    /// Makes `dest` a second user of this geometry and gives 1; gives 0, with `dest` reset, if
    /// there is none. `keepObject` leaves its node (name, pose, parent, keys) as it was,
    /// `keepMaterials` its materials and textures; otherwise it gets copies of this mesh's.
    /// Everything else comes from this mesh, links to bones included.
    /// QUIRK: so does what is known of the transparency, whichever materials it has.
    int32_t CopyGeometryTo(KRE_Mesh& dest, int32_t keepObject, int32_t keepMaterials);
    /// Puts all fields back to their defaults and lets go of everything.
    void Reset();

    DynaMem<KRE_BoneInfo, 128> bones;        ///< owned; the first stands for the mesh itself
    HeapArray<KRE_3dObject*> boneObjects;    ///< one for each bone; not owned, live in the scene
    int32_t boneObjectCount = 0;             ///< length of `boneObjects`
    DWORD vertexBlendFlags = D3DVBF_DISABLE; ///< a D3DVERTEXBLENDFLAGS
    int32_t userTag = -1;                    ///< of files; no operation reads it

private:
    void CopyBones(const KRE_Mesh& other);
};

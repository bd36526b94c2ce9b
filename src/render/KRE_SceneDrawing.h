#pragma once

#include <cstdint>
#include <vector>

#include <d3d9.h>
#include <d3dx9.h>

#include "gfx/KRE_Frustum.h"
#include "gfx/KRE_VertexListTemp.h"

class KRE_3dScene;
class KRE_Gfx;
class KRE_MaterialInfo;
class KRE_Mesh;
struct KRE_ClipObject;

/// Draws scenes and meshes through the states of `KRE_Gfx`, inside the scene bracket. The engine
/// owns the only instance, created on first use, and forwards to it. It owns only memory that each
/// frame reuses. Lengths are in scene units.
class KRE_SceneDrawing {
public:
    explicit KRE_SceneDrawing(KRE_Gfx& engine) : gfx(engine) {}

    /// Draws a scene as last evaluated, through its active camera or, without one, the current
    /// view. Returns 1, or 0 for null and for a scene outside the view. Any nonzero flag makes a
    /// plain pass, without clearing, lights, sorting or markers.
    int32_t DrawScene(KRE_3dScene* scene, int32_t singleStage, int32_t noMaterials);
    /// Draws a mesh with its materials and restores states. `parentTM` transforms it,
    /// `overrideMaterial` is combined with each material; both may be null. `singleStage` binds
    /// only the current picture of each texture, `noMaterials` nothing at all. Returns 1, or 0 for
    /// null and for a mesh outside the view.
    int32_t DrawMesh(KRE_Mesh* mesh, const D3DXMATRIX* parentTM,
                     const KRE_MaterialInfo* overrideMaterial, int32_t singleStage,
                     int32_t noMaterials);
    /// Draws one attribute of a mesh that has a device mesh, with the current states. Computes
    /// reflection map coordinates in the vertex buffer. Returns 1.
    int32_t DrawSubset(KRE_Mesh& mesh, int32_t subset);
    /// Whether any part of these bounds, transformed by `matrix`, may be in the view. Bounds just
    /// outside a corner of the view may count as visible.
    bool IsVisible(const KRE_ClipObject& clip, const D3DXMATRIX& matrix);
    /// In world space, unlit, with the current depth test.
    void DrawLine(const D3DXVECTOR3& a, const D3DXVECTOR3& b, D3DCOLOR color);
    void DrawPoint(const D3DXVECTOR3& p, D3DCOLOR color);

private:
    /// States that `DrawMesh` changes from material to material.
    struct MeshDrawStates {
        int32_t blendMode;
        int32_t blendValue;
        int32_t cullMode;
        int32_t zWrite;
        DWORD addressU;
        DWORD addressV;
    };
    struct MeshDraw {
        KRE_Mesh& mesh;
        const KRE_MaterialInfo* overrideMaterial;
        bool singleStage;
        bool noMaterials;
        const MeshDrawStates& before;
    };
    struct SortedMesh {
        int32_t index; ///< into the scene's meshes
        float depth;   ///< of its origin in view space
    };

    void DrawBackground(KRE_3dScene& scene);
    void SetSceneStates(KRE_3dScene& scene);
    void ClearSceneStates(KRE_3dScene& scene);
    void SetPointDrawing();
    void DrawMeshes(KRE_3dScene& scene, int32_t singleStage, int32_t noMaterials);
    void SortMeshes(KRE_3dScene& scene, int32_t first);

    void PutBack(const MeshDrawStates& states);
    int32_t CullModeUnder(const D3DXMATRIX& matrix);
    void DrawRigidMesh(const MeshDraw& draw, const D3DXMATRIX& extraTM);
    void DrawSkinnedMesh(const MeshDraw& draw, const D3DXMATRIX& extraTM);
    void DrawMaterials(const MeshDraw& draw, int32_t meshCullMode);
    void DrawMaterial(const MeshDraw& draw, int32_t index, int32_t meshCullMode);
    void DrawMaterialAs(const KRE_MaterialInfo& info, const MeshDraw& draw, int32_t index,
                        int32_t meshCullMode);
    D3DXATTRIBUTERANGE FindAttributeRange(KRE_Mesh& mesh, int32_t subset);
    void WriteReflection(KRE_Mesh& mesh, const D3DXATTRIBUTERANGE& range, int32_t reflectionSet);

    template <class FillList>
    void DrawMarkerList(KRE_VertexListTemp<KRE_PointVertex>& list, const FillList& fill);
    void DrawMarkers(KRE_3dScene& scene);
    void DrawHierarchy(KRE_3dScene& scene);
    void DrawObjectMarkers(KRE_3dScene& scene);
    void DrawLightMarkers(KRE_3dScene& scene);

    KRE_Gfx& gfx; ///< the owner
    KRE_Frustum frustum;
    std::vector<SortedMesh> sortedMeshes; ///< of one frame; kept for its memory, as is the next
    std::vector<D3DXATTRIBUTERANGE> attributeTable;
};

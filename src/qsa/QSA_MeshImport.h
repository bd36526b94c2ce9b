#pragma once

#include <cstdint>
#include <vector>

#include <d3dx9.h>

#include "base/NameIndex.h"
#include "base/SearchTree.h"
#include "qsa/QSA_LineShape.h"
#include "qsa/QSA_LoadOptions.h"
#include "qsa/QSA_MaterialImport.h"
#include "qsa/QSA_MeshBuilder.h"
#include "qsa/QSA_NodeImport.h"
#include "qsa/QSA_SceneText.h"
#include "scene/CopyBudget.h"
#include "scene/KRE_ObjectFields.h"

class KRE_3dScene;
class KRE_Mesh;
struct KRE_BoneInfo;

/// What the import keeps of a mesh or clone until the scene is linked.
struct QSA_MeshLoadInfo {
    int32_t materialRef = -1;            ///< index of the top-level material, -1 if none
    std::vector<int32_t> subMaterialMap; ///< attribute of each submaterial, or -1
    int32_t attributeCount = 0;          ///< attribute ids handed out
    D3DCOLORVALUE wireColor = {1, 1, 1, 1};
    KRE_Mesh* mesh = nullptr; ///< not owned, lives in the scene
};

/// What a GEOMOBJECT block says about its geometry.
struct QSA_NodeGeometry {
    bool hasGeometry = false;
    bool isClone = false;
    int32_t materialRef = -1;
    D3DCOLORVALUE wireColor = {1, 1, 1, 1};
    int32_t weightCount = 0; ///< most weights of one vertex
};

/// The lists of a MESH block that are announced by a count.
enum QSA_MeshList { kVertexList, kFaceList, kTVertexList, kTFaceList, kMeshLists };

/// Entry `index` of a list that is filled in order: a new one at the end, or one from an earlier
/// block of the same mesh.
template <class T>
T& EntryAt(std::vector<T>& list, int32_t index)
{
    const size_t at = static_cast<size_t>(index);
    if (at == list.size())
        return list.emplace_back();
    return list[at];
}

struct QSA_MeshCounts {
    int32_t number = 0;         ///< announced entries
    bool isKnown = false;       ///< the count was given
    int32_t wrappedCorners = 0; ///< corners that do not fit 16 bits
    int32_t largestCorner = 0;  ///< of those, as in the text
};

/// Reads geometry nodes and builds their device meshes. Block parsers return 0 at the end of the
/// block and 1 if the file ends inside it.
class QSA_MeshImport {
public:
    /// The text is open. All must outlive the import.
    QSA_MeshImport(QSA_SceneText& sceneText, QSA_MaterialImport& materialImport,
                   QSA_NodeImport& nodeImport, KRE_3dScene& target,
                   const QSA_LoadOptions& loadOptions);

    /// Starts at a GEOMOBJECT's opening brace. Reads the node and, at the end of the block or of
    /// the file, builds what it turned out to be: a mesh, a clone, or a helper without geometry.
    int32_t ParseGeomObject();
    /// Called once all nodes are linked: gives clones their geometry and materials of their own.
    void FinishClones();
    bool HasSkinnedMesh() const { return hasSkinnedMesh; }

private:
    // --- nodes: QSA_MeshImport.cpp
    int32_t ReadGeomObject(int32_t slot, KRE_Mesh* mesh);
    int32_t ParseGeomKeyword(QSA_Token token, KRE_Mesh* mesh);
    void FinishMesh(KRE_Mesh* mesh);
    QSA_MeshLoadInfo* KeepMeshInfo(KRE_Mesh* mesh);

    // --- the lists of a mesh: QSA_MeshImportLists.cpp
    int32_t ParseMesh(KRE_Mesh* mesh);
    int32_t ParseMeshKeyword(QSA_Token token, KRE_Mesh* mesh);
    void ReadCount(QSA_MeshList list, const KRE_Mesh* mesh);
    void CheckEntry(int32_t index, int32_t expected, QSA_MeshList list, const KRE_Mesh* mesh)
    {
        if (index != expected || index >= counts[list].number)
            RefuseEntry(index, expected, list, mesh);
    }
    void RefuseEntry(int32_t index, int32_t expected, QSA_MeshList list, const KRE_Mesh* mesh);
    int32_t ParseVertexList(const KRE_Mesh* mesh);
    int32_t ParseFaceList(const KRE_Mesh* mesh);
    void ParseFace(QSA_TextCursor& cursor, int32_t expected, const KRE_Mesh* mesh);
    void ParseSmoothing(QSA_TextCursor& cursor, QSA_SourceFace* face, const KRE_Mesh* mesh);
    int32_t ParseTVertexList(const KRE_Mesh* mesh);
    int32_t ParseTFaceList(const KRE_Mesh* mesh);
    uint16_t CutCorner(int32_t corner, QSA_MeshList list);
    void WarnOfWrappedCorners(const KRE_Mesh* mesh);
    void CheckLists(const KRE_Mesh* mesh);

    // --- lines as exporters write them, read at once; false for others: QSA_MeshImportLines.cpp
    bool TakeVertexLine(QSA_TextCursor& cursor, int32_t expected, const KRE_Mesh* mesh);
    bool TakeFaceLine(QSA_TextCursor& cursor, int32_t expected, const KRE_Mesh* mesh);
    bool LearnFaceLine(QSA_TextCursor& cursor);
    static bool LearnSmoothing(QSA_TextCursor& cursor, QSA_LineShape* shape);
    bool TakeTVertexLine(QSA_TextCursor& cursor, int32_t expected, const KRE_Mesh* mesh);
    bool TakeTFaceLine(QSA_TextCursor& cursor, int32_t expected, const KRE_Mesh* mesh);
    bool LearnTFaceLine(QSA_TextCursor& cursor);

    // --- bone weights: QSA_MeshImportWeights.cpp
    int32_t ParseWeights(KRE_Mesh* mesh);
    int32_t ParseMeshInitTM(KRE_Mesh* mesh);
    int32_t ParseBoneWeight(KRE_Mesh* mesh);
    int32_t AddBone(KRE_Mesh* mesh, const KRE_BoneInfo& bone);
    int32_t FindOrAddBone(KRE_Mesh* mesh, const char* boneName, const D3DXMATRIX& boneInitTM);
    void AddWeight(KRE_Mesh* mesh, int32_t vertex, int32_t bone, float weight);

    // --- the device mesh: QSA_MeshImportBuild.cpp
    void BuildMesh(KRE_Mesh* mesh);
    DWORD VertexFormat(const KRE_Mesh* mesh, const QSA_Material* material);
    void WriteVertices(KRE_Mesh* mesh);

    // --- what it is drawn with: QSA_MeshImportMaterials.cpp
    void ApplyMaterials(KRE_Mesh* mesh, QSA_Material* material);
    void CopyMaterial(KRE_Mesh* mesh, int32_t slot, const QSA_Material* material);
    void FillCloneMaterials(KRE_Mesh* mesh, const QSA_MeshLoadInfo& own,
                            const QSA_MeshLoadInfo& source, const QSA_Material* material);
    void FinishCloneMaterials(KRE_Mesh* mesh);

    QSA_SceneText& text;           ///< not owned, the current file
    QSA_MaterialImport& materials; ///< not owned, of the current load; so are the next three
    QSA_NodeImport& nodes;
    KRE_3dScene& scene;
    const QSA_LoadOptions& options;

    SearchTree<QSA_MeshLoadInfo> meshInfos; ///< by node name
    QSA_MeshBuilder builder;
    QSA_LineShapes faceLines;          ///< of lines with a face
    QSA_LineShapes tFaceLines;         ///< of lines with a texture face
    QSA_NodeGeometry geometry;         ///< of the current node
    QSA_MeshCounts counts[kMeshLists]; ///< of the current MESH block
    bool smoothingCut = false;         ///< a face of the current mesh had too many groups
    NameIndex boneIndex;               ///< bones of the current mesh by name
    /// Of the current mesh; a mesh without one keeps that of the mesh before it.
    D3DXMATRIX meshInitTM = IdentityMatrix();
    int64_t announcedFaces = 0; ///< by all meshes of the file so far
    bool hasSkinnedMesh = false;
    CopyBudget copies; ///< of all meshes of the file
};

#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include <d3dx9.h>

#include "base/DynaMem.h"
#include "base/NameIndex.h"
#include "base/SearchTree.h"
#include "qsa/QSA_LoadOptions.h"
#include "qsa/QSA_Material.h"
#include "qsa/QSA_MeshBuilder.h"
#include "qsa/QSA_SceneHeader.h"
#include "qsa/QSA_SceneText.h"
#include "qsa/QSA_TimeScale.h"
#include "scene/KRE_KeyList.h"
#include "scene/KRE_ObjectFields.h"

class KRE_3dObject;
class KRE_3dScene;
class KRE_Camera;
class KRE_Light;
class KRE_Mesh;
class KRE_RotKeyData;
struct KRE_BoneInfo;

/// What the import keeps of a mesh or clone until the scene is linked.
struct QSA_MeshLoadInfo {
    int32_t materialRef = -1;            ///< index of the top-level material, -1 if none
    std::vector<int32_t> subMaterialMap; ///< attribute of each submaterial, or -1
    int32_t attributeCount = 0;          ///< attribute ids handed out
    D3DCOLORVALUE wireColour = {1, 1, 1, 1};
    KRE_Mesh* mesh = nullptr; ///< not owned, lives in the scene
};

/// What a GEOMOBJECT block says of its geometry.
struct QSA_NodeGeometry {
    bool hasGeometry = false;
    bool isClone = false;
    int32_t materialRef = -1;
    D3DCOLORVALUE wireColour = {1, 1, 1, 1};
    int32_t weightCount = 0; ///< most weights of one vertex
};

/// The lists of a MESH block that are announced by a count.
enum QSA_MeshList { kVertexList, kFaceList, kTVertexList, kTFaceList, kMeshLists };

struct QSA_MeshCounts {
    int32_t number = 0;         ///< entries that were announced
    bool isKnown = false;       ///< the count was there
    int32_t wrappedCorners = 0; ///< corners that 16 bits do not hold
    int32_t largestCorner = 0;  ///< of those, as the text gives it
};

/// Reads QSA texts into scenes: one pass over the file in memory, then the linking of what it held.
/// One loader serves all files, one at a time. Block parsers give 0 at the block's close and 1 when
/// the file ended inside it.
class QSALoader : public QSA_SceneText {
public:
    QSALoader();
    ~QSALoader() override;

    /// Empties `scene` and fills it from the file. `flags` are `QSA_LoadFlag`s; all bits set count
    /// as none. A damaged file is an `Error`; a file that ends early loads as far as it goes, with a
    /// `Warning`. Always 1.
    int32_t Load(KRE_3dScene& scene, const char* path, uint32_t flags);

    /// Of the file loaded last.
    const QSA_TimeScale& Time() const { return time; }

    /// Of the file loaded last, or of what a loader of another format left here.
    QSA_SceneHeader header;

private:
    friend class QSALoaderTestAccess;

    /// A transform block: what it fills, in the order of the node's fields.
    struct Transform {
        D3DXMATRIX initTM = IdentityMatrix();
        D3DXVECTOR3 mirror = {1.0f, 1.0f, 1.0f};
        D3DXVECTOR3 position = {0.0f, 0.0f, 0.0f};
        D3DXVECTOR3 scale = {1.0f, 1.0f, 1.0f};
        D3DXVECTOR3 rotationAxis = {0.0f, 0.0f, 0.0f};
        float rotationAngle = 0.0f;
    };

    // --- the file and its top level: QSALoader.cpp
    void ResetForLoad(uint32_t flags);
    void ForgetLoad();
    int32_t ParseTopLevel();
    int32_t ParseTopLevelKeyword(QSA_Token token);
    template <class T>
    T* CheckMemory(T* object);
    template <class T, int32_t N>
    T* AddTo(DynaMem<T, N>& list);

    // --- scene and atmosphere: QSALoaderScene.cpp
    int32_t ParseScene();
    void UpdateTime();
    int32_t ParseEnvMap();
    void LoadEnvironment(const char* name);
    int32_t ParseAtmospheric();
    int32_t ParseStdFog();

    // --- materials: QSALoaderMaterials.cpp
    int32_t ParseMaterialList();
    QSA_Material* AddMaterial();
    int32_t ParseMaterial(QSA_Material* material);
    void OpenMaterial(QSA_Material* material, std::vector<QSA_Material*>* open);
    int32_t ParseMaterialKeyword(QSA_Token token, QSA_Material* material);
    void ReadMaterialName(QSA_Material* material);
    void ReadTransparencyType(KRE_MaterialInfo* render);
    void FinishMaterials();
    void FinishMaterial(QSA_Material* material);

    // --- maps and their pictures: QSALoaderMaps.cpp
    int32_t ParseMap(QSA_MapKind kind, QSA_Material* material);
    int32_t ParseMapKeyword(QSA_Token token, QSA_Map* map, KRE_MaterialInfo* render);
    int32_t ReadTiling(uint8_t* tile, uint8_t* mirror);
    int32_t ReadEndCondition(int32_t* conditionOut);
    int32_t ParseMapAnimation(QSA_MapAnimation* animation);
    int32_t ParseMapKeys(std::vector<KRE_FloatKey>* keysOut);
    bool LoadMapTexture(const QSA_Map& map, KRE_Texture* texture, const char* text);
    void AttachMapAnimation(const QSA_Map& map, KRE_Texture* texture, int32_t slot);
    void LoadMaterialTextures(QSA_Material* material);
    void LoadOwnTextures(QSA_Material* material);
    void SelectSlotOf(const QSA_Map& map, QSA_Material* material, int32_t slot);
    void LoadReflectionMap(QSA_Material* material, int32_t* slot);
    void LoadDiffuseMap(QSA_Material* material, int32_t* slot);
    void LoadBumpMap(QSA_Material* material, int32_t slot);

    // --- material animation: QSALoaderTracks.cpp
    int32_t ParseMaterialAnimation(QSA_Material* material);
    static KRE_ColorTrack* FindColourTrack(const char* name, KRE_MaterialInfo* render);
    bool CountTrackKey(int32_t* number);
    int32_t ParseColourTrack(KRE_ColorTrack* track);
    int32_t ParseFloatTrack(KRE_FloatTrack* track, bool invert);
    template <class Key>
    void FinishTrack(KRE_ArrayTrack<Key>& track);

    // --- nodes: QSALoaderNodes.cpp
    int32_t ParseNode(int32_t kind);
    int32_t ParseNodeKeyword(QSA_Token token, KRE_3dObject* object);
    int32_t ParseCamera();
    int32_t ParseCameraSettings(KRE_Camera* camera);
    int32_t ParseLight();
    int32_t ParseLightSettings(KRE_Light* light, float (&colour)[3]);
    void FinishLight(KRE_Light* light, const char* typeWord);
    int32_t ParseTransform(Transform* transformOut);
    void ReadMatrixRow(D3DXMATRIX* matrix, int row);
    void FindMirroredAxes(Transform* transform);
    int32_t ParseNodeTransform(KRE_3dObject* object);
    int32_t ParsePivot(KRE_3dObject* object);

    // --- animation: QSALoaderAnimation.cpp
    int32_t ParseNodeAnimation(KRE_3dObject* object);
    int32_t ParsePositionKeys(KRE_3dObject* object);
    int32_t ParseScaleKeys(KRE_3dObject* object);
    int32_t ParseRotationKeys(KRE_3dObject* object);
    void ParseRotationKey(QSA_TextCursor& text, QSA_Token token, KRE_3dObject* object,
                          float* highestTime);
    void AddSplitRotKey(KRE_3dObject* object, const KRE_RotKeyData& key);
    template <class Key>
    void FinishKeyList(KRE_KeyList<Key>& keys);
    void FinishKeys(KRE_3dObject* object);

    // --- geometry nodes and their device meshes: QSALoaderGeometry.cpp
    int32_t ParseGeomObject();
    int32_t ParseGeomKeyword(QSA_Token token, KRE_Mesh* mesh);
    void FinishMesh(KRE_Mesh* mesh);
    QSA_MeshLoadInfo* KeepMeshInfo(KRE_Mesh* mesh);
    QSA_Material* FindMaterial(int32_t index, const KRE_Mesh* mesh);
    void BuildMesh(KRE_Mesh* mesh);
    DWORD ChooseVertexFormat(const KRE_Mesh* mesh, const QSA_Material* material);
    void NormalizeWeights();
    static KRE_MaterialInfo WireMaterial(const D3DCOLORVALUE& colour);
    void CopyMaterial(KRE_Mesh* mesh, int32_t slot, const QSA_Material* material);
    void ApplyMaterials(KRE_Mesh* mesh, QSA_Material* material);
    void WriteFaces(KRE_Mesh* mesh);
    void WriteVertices(KRE_Mesh* mesh);
    D3DXVECTOR3 FinishedNormal(const QSA_BuiltVertex& built, const KRE_Mesh* mesh);
    void WriteWeights(KRE_Mesh* mesh, int32_t vertex, uint32_t source);
    void SetBounds(KRE_Mesh* mesh, const D3DXVECTOR3& low, const D3DXVECTOR3& high);

    // --- the lists of a mesh: QSALoaderMesh.cpp
    int32_t ParseMesh(KRE_Mesh* mesh);
    int32_t ParseMeshKeyword(QSA_Token token, KRE_Mesh* mesh);
    void ReadCount(QSA_MeshList list, const KRE_Mesh* mesh);
    void CheckEntry(int32_t index, int32_t expected, QSA_MeshList list, const KRE_Mesh* mesh);
    int32_t ParseVertexList(const KRE_Mesh* mesh);
    int32_t ParseFaceList(const KRE_Mesh* mesh);
    void ParseFace(QSA_TextCursor& text, int32_t expected, const KRE_Mesh* mesh);
    void ParseSmoothing(QSA_TextCursor& text, QSA_SourceFace* face, const KRE_Mesh* mesh);
    int32_t ParseTVertexList(const KRE_Mesh* mesh);
    int32_t ParseTFaceList(const KRE_Mesh* mesh);
    uint16_t CutCorner(int32_t corner, QSA_MeshList list);
    void WarnOfWrappedCorners(const KRE_Mesh* mesh);
    void CheckLists(const KRE_Mesh* mesh);

    // --- bone weights: QSALoaderWeights.cpp
    int32_t ParseWeights(KRE_Mesh* mesh);
    int32_t ParseMeshInitTM(KRE_Mesh* mesh);
    int32_t ParseBoneWeight(KRE_Mesh* mesh);
    int32_t AddBone(KRE_Mesh* mesh, const KRE_BoneInfo& bone);
    int32_t FindOrAddBone(KRE_Mesh* mesh, const char* boneName, const D3DXMATRIX& boneInitTM);
    void AddWeight(KRE_Mesh* mesh, int32_t vertex, int32_t bone, float weight);

    // --- after the last byte: QSALoaderLink.cpp
    void LinkScene();
    void FinishAllKeys();
    void FinishCloneMaterials(KRE_Mesh* mesh);
    void FillCloneMaterials(KRE_Mesh* mesh, const QSA_MeshLoadInfo& own,
                            const QSA_MeshLoadInfo& source, const QSA_Material* material);
    void CheckCloneMaterials();
    bool TakeBoundsObject();
    void PassOnGeometry(const String& takenMesh);
    static void FillUpMaterials(KRE_Mesh* mesh);

    KRE_3dScene* scene = nullptr; ///< not owned, the one in hand
    QSA_LoadOptions options;      ///< of the load in hand
    QSA_TimeScale time;           ///< of the file loaded last

    bool hasSkinnedMesh = false;
    bool hasKeyword = false; ///< one of the format, outside of stray braces

    std::vector<std::unique_ptr<QSA_Material>> materials; ///< owned; all of the file, in its order
    std::vector<QSA_Material*> topMaterials;              ///< not owned, in `materials`
    size_t finishedMaterials = 0;                         ///< the first ones of `materials`

    SearchTree<QSA_MeshLoadInfo> meshInfos; ///< by node name
    QSA_MeshBuilder builder{*this};
    QSA_NodeGeometry geometry;         ///< of the node in hand
    QSA_MeshCounts counts[kMeshLists]; ///< of the MESH block in hand
    bool smoothingCut = false;         ///< the mesh in hand had too many groups on a face
    D3DXMATRIX meshInitTM;             ///< of the mesh in hand
    NameIndex boneIndex;               ///< bones of the mesh in hand by name
    int64_t announcedFaces = 0;        ///< by all meshes of the file so far
    int64_t keyParts = 0;              ///< rotation keys that were made by splitting
};

template <class T>
T* QSALoader::CheckMemory(T* object)
{
    if (!object)
        Error("Not enough memory for the scene");
    return object;
}

/// Adds an object to a list of the scene, which owns it.
template <class T, int32_t N>
T* QSALoader::AddTo(DynaMem<T, N>& list)
{
    return CheckMemory(list.GetSlot(list.Add()));
}

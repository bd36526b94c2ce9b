#include <algorithm>
#include <cstring>

#include "qsa/QSA_MeshImport.h"
#include "qsa/QSA_NewObject.h"
#include "scene/KRE_Mesh.h"

namespace {

constexpr float kLeastWeight = 0.1f;

/// The index of the smallest weight; ties are resolved as exporters do.
size_t SmallestWeight(const float (&weight)[kMaxVertexWeights])
{
    const size_t a = weight[1] <= weight[0] ? 1 : 0;
    if (weight[3] <= weight[2])
        return weight[3] <= weight[a] ? 3 : a;
    return weight[a] <= weight[2] ? a : 2;
}

} // namespace

int32_t QSA_MeshImport::ParseWeights(KRE_Mesh* mesh)
{
    boneIndex.Clear();
    for (int32_t i = 0; i < mesh->bones.Count(); ++i)
        boneIndex.Add(HashName(mesh->bones.Get(i)->name, false), i);
    const int32_t result = text.ParseBlock([&](QSA_Token token) {
        switch (token) {
        case QSA_Token::MeshInitTM:
            return ParseMeshInitTM(mesh);
        case QSA_Token::BoneWeight:
            text.SkipTo('{');
            return ParseBoneWeight(mesh);
        default:
            return 0;
        }
    });
    mesh->AllocateBoneObjects();
    return result;
}

/// The first bone is for vertices that follow the mesh itself.
int32_t QSA_MeshImport::ParseMeshInitTM(KRE_Mesh* mesh)
{
    QSA_Transform transform;
    const int32_t result = nodes.ParseTransform(&transform);
    meshInitTM = transform.initTM;
    if (!text.FileVersionAtLeast(2, 11))
        D3DXMatrixMultiply(&meshInitTM, &mesh->pivotTM, &meshInitTM);
    if (mesh->bones.Count() == 0)
        AddBone(mesh, KRE_BoneInfo(mesh->name.c_str()));
    return result;
}

int32_t QSA_MeshImport::AddBone(KRE_Mesh* mesh, const KRE_BoneInfo& bone)
{
    const int32_t index = mesh->bones.Count();
    CheckMemory(mesh->bones.GetSlot(mesh->bones.Add(&bone)), text);
    boneIndex.Add(HashName(bone.name, false), index);
    return index;
}

int32_t QSA_MeshImport::FindOrAddBone(KRE_Mesh* mesh, const char* boneName,
                                      const D3DXMATRIX& boneInitTM)
{
    const int32_t found = boneIndex.Find(HashName(boneName, false), [&](int32_t i) {
        return std::strcmp(mesh->bones.Get(i)->name, boneName) == 0;
    });
    return found >= 0 ? found : AddBone(mesh, KRE_BoneInfo(boneName, boneInitTM, meshInitTM));
}

int32_t QSA_MeshImport::ParseBoneWeight(KRE_Mesh* mesh)
{
    TokenBuffer boneName = "";
    int32_t bone = 0;
    QSA_TextCursor cursor = text.Cursor();
    for (;;) {
        QSA_Token token = QSA_Token::IndexWeight;
        if (!cursor.TakeKeyword("*INDEX_WEIGHT"))
            token = text.NextToken(cursor);
        switch (token) {
        case QSA_Token::BlockEnd:
            return 0;
        case QSA_Token::EndOfFile:
            return 1;
        case QSA_Token::BoneName:
            text.MoveTo(cursor);
            text.ReadQuoted(boneName);
            cursor = text.Cursor();
            break;
        case QSA_Token::BoneInitTM: {
            text.MoveTo(cursor);
            QSA_Transform transform;
            if (nodes.ParseTransform(&transform) != 0)
                return 1;
            bone = FindOrAddBone(mesh, boneName, transform.initTM);
            cursor = text.Cursor();
            break;
        }
        case QSA_Token::IndexWeight: {
            int32_t vertex = 0;
            float weight = 0.0f;
            text.ReadInt(cursor, &vertex);
            text.ReadFloat(cursor, &weight);
            AddWeight(mesh, vertex, bone, weight);
            break;
        }
        default:
            break;
        }
    }
}

void QSA_MeshImport::AddWeight(KRE_Mesh* mesh, int32_t vertex, int32_t bone, float weight)
{
    if (vertex < 0 || vertex >= counts[kVertexList].number)
        text.Error("Invalid weight index: %i", vertex);
    if (weight < kLeastWeight)
        return;
    if (bone > UINT8_MAX)
        text.Warning("Mesh '%s' has a weight of bone %i of at most 256", mesh->name.c_str(), bone);
    const size_t at = static_cast<size_t>(vertex);
    if (builder.weights.size() <= at)
        builder.weights.resize(at + 1);
    QSA_VertexWeights& entry = builder.weights[at];
    size_t place = entry.weightCount;
    if (place == kMaxVertexWeights) {
        // QUIRK: the new weight replaces the smallest even if it is smaller still.
        place = SmallestWeight(entry.weight);
        text.Warning("More than 4 bones in vertex of object '%s'", mesh->name.c_str());
    } else {
        ++entry.weightCount;
        geometry.weightCount = std::max<int32_t>(geometry.weightCount, entry.weightCount);
    }
    entry.weight[place] = weight;
    entry.bone[place] = static_cast<uint8_t>(bone);
}

#include <algorithm>
#include <cstring>

#include "gfx/KRE_Gfx.h"
#include "qsa/QSA_MeshImport.h"
#include "qsa/QSA_VertexFormat.h"
#include "scene/KRE_3dScene.h"

namespace {

/// A vertex without any weight left follows the mesh itself.
void NormalizeWeights(std::vector<QSA_VertexWeights>* weights, int32_t weightCount)
{
    for (QSA_VertexWeights& entry : *weights) {
        float sum = 0.0f;
        for (int32_t i = 0; i < weightCount; ++i)
            sum += entry.weight[i];
        if (sum == 0.0f) {
            entry.weight[0] = 1.0f;
            std::fill(std::begin(entry.bone), std::end(entry.bone), uint8_t{0});
            continue;
        }
        for (int32_t i = 0; i < weightCount; ++i)
            entry.weight[i] /= sum;
    }
}

void WriteFaces(const std::vector<QSA_SourceFace>& faces, KRE_Mesh* mesh)
{
    uint16_t* indices = mesh->indexData;
    DWORD* attribute = mesh->attributeData;
    for (const QSA_SourceFace& face : faces) {
        if (face.attribute < 0)
            continue;
        for (const uint32_t built : face.built)
            *indices++ = static_cast<uint16_t>(built);
        *attribute++ = static_cast<DWORD>(face.attribute);
    }
}

D3DXVECTOR3 FinishedNormal(const QSA_BuiltVertex& built, const KRE_Mesh* mesh, ErrorClass& report)
{
    // The count wraps to 0; only the direction matters.
    const float number = built.normalCount != 0 ? built.normalCount : 65536.0f;
    const D3DXVECTOR3 normal(built.normalSum[0] / number, built.normalSum[1] / number,
                             built.normalSum[2] / number);
    const float length = D3DXVec3Length(&normal);
    if (length == 0.0f) {
        report.Warning("Zero normal sum in object %s!", mesh->name.c_str());
        return {0.0f, 0.0f, 0.0f};
    }
    return {normal.x / length, normal.y / length, normal.z / length};
}

/// Writes all four bone indices and all weights but the last, which follows from the others.
void WriteWeights(const QSA_VertexWeights& weights, int32_t weightCount, int32_t vertex,
                  KRE_Mesh* mesh)
{
    std::copy_n(weights.bone, kMaxVertexWeights, mesh->BlendIndices(vertex));
    std::copy_n(weights.weight, weightCount - 1, mesh->Weights(vertex));
}

void SetBounds(const D3DXVECTOR3& low, const D3DXVECTOR3& high, KRE_Mesh* mesh)
{
    mesh->boxMin = low;
    mesh->boxMax = high;
    mesh->center = {(low.x + high.x) / 2.0f, (low.y + high.y) / 2.0f, (low.z + high.z) / 2.0f};
    mesh->radius = 0.0f;
    for (int32_t i = 0; i < mesh->vertexCount; ++i) {
        const D3DXVECTOR3 way = *mesh->Position(i) - mesh->center;
        mesh->radius = std::max(mesh->radius, D3DXVec3Length(&way));
    }
}

} // namespace

/// Builds the device mesh from the file's lists.
void QSA_MeshImport::BuildMesh(KRE_Mesh* mesh)
{
    WarnOfWrappedCorners(mesh);
    CheckLists(mesh);
    QSA_MeshLoadInfo* const info = KeepMeshInfo(mesh);
    const char* name = mesh->name.c_str();
    QSA_Material* material = materials.Find(geometry.materialRef, name);
    const DWORD fvf = VertexFormat(mesh, material);
    if (geometry.weightCount > 0)
        builder.weights.resize(builder.vertices.size());
    if (mesh->bones.Count() > 0)
        NormalizeWeights(&builder.weights, geometry.weightCount);
    builder.Build(name, material ? static_cast<int32_t>(material->subMaterials.size()) : 0);
    if (builder.built.empty())
        text.Error("Mesh without vertices: '%s'", name);

    const int32_t faces = static_cast<int32_t>(builder.faces.size()) - builder.invalidFaceCount;
    gGfx->CreateMesh(
        mesh, faces, static_cast<int32_t>(builder.built.size()), builder.attributeCount, fvf,
        options.Has(kLoadSystemMemory) ? KRE_Gfx::kMeshSystemMemory : 0, mesh->bones.Count());
    ApplyMaterials(mesh, material);
    mesh->LockAll(0);
    WriteFaces(builder.faces, mesh);
    WriteVertices(mesh);
    mesh->UnlockAll();
    mesh->clipMode = 3;
    if (mesh->bones.Count() > 0) {
        mesh->clipMode = 0; // bones can move vertices out of any box
        hasSkinnedMesh = true;
    }
    mesh->Optimize();
    if (mesh->bones.Count() > 0)
        mesh->bones.SetSize(mesh->bones.Count());
    if (info) {
        info->subMaterialMap = builder.subMaterialMap;
        info->attributeCount = builder.attributeCount;
    }
}

DWORD QSA_MeshImport::VertexFormat(const KRE_Mesh* mesh, const QSA_Material* material)
{
    if (geometry.weightCount == 1) {
        text.Warning("Only one bone in object %s", mesh->name.c_str());
        geometry.weightCount = 2;
    }
    return ChooseVertexFormat(
        {geometry.weightCount, options.Has(kLoadVertexColors), builder.hasTextureFaces, material},
        text);
}

void QSA_MeshImport::WriteVertices(KRE_Mesh* mesh)
{
    std::memset(mesh->vertexData, 0, static_cast<size_t>(mesh->stride) * builder.built.size());
    const QSA_SourceVertex& first = builder.vertices[builder.built[0].source];
    D3DXVECTOR3 low(first.position[0], first.position[1], first.position[2]);
    D3DXVECTOR3 high = low;
    const bool hasTexCoords = builder.hasTextureFaces && mesh->textureCount > 0;
    for (int32_t i = 0; i < mesh->vertexCount; ++i) {
        const QSA_BuiltVertex& built = builder.built[static_cast<size_t>(i)];
        const QSA_SourceVertex& source = builder.vertices[built.source];
        const D3DXVECTOR3 point(source.position[0], source.position[1], source.position[2]);
        *mesh->Position(i) = point;
        low = {std::min(low.x, point.x), std::min(low.y, point.y), std::min(low.z, point.z)};
        high = {std::max(high.x, point.x), std::max(high.y, point.y), std::max(high.z, point.z)};
        if (hasTexCoords && built.texCoordSet != 0)
            std::copy_n(built.texCoord, 2, mesh->TexCoord(i));
        *mesh->Normal(i) = FinishedNormal(built, mesh, text);
        if (geometry.weightCount > 0)
            WriteWeights(builder.weights[built.source], geometry.weightCount, i, mesh);
    }
    SetBounds(low, high, mesh);
}

#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/LoadInHand.h"
#include "gfx/KRE_Gfx.h"
#include "qsa/QSALoader.h"
#include "scene/KRE_3dScene.h"

/// At a GEOMOBJECT's brace: reads the node and, at its close as at the end of the file, builds what
/// it turned out to be.
int32_t QSALoader::ParseGeomObject()
{
    const int32_t slot = scene->meshes.Add();
    KRE_Mesh* mesh = CheckMemory(scene->meshes.GetSlot(slot));
    geometry = QSA_NodeGeometry();
    std::fill(std::begin(counts), std::end(counts), QSA_MeshCounts{});
    builder.Clear();
    int32_t result = 0;
    for (bool isOpen = true; isOpen && result == 0;) {
        const QSA_Token token = NextToken();
        switch (token) {
        case QSA_Token::BlockEnd:
            isOpen = false;
            break;
        case QSA_Token::EndOfFile:
            result = 1;
            break;
        default:
            result = ParseGeomKeyword(token, mesh);
            break;
        }
    }
    if (geometry.hasGeometry) {
        FinishMesh(mesh);
        return result;
    }
    // A node without faces is no mesh.
    KRE_3dObject* object = AddTo(scene->objects);
    object->Assign(*mesh);
    object->objectKind = kObjectHelper;
    scene->meshes.DeleteSlot(slot);
    return result;
}

int32_t QSALoader::ParseGeomKeyword(QSA_Token token, KRE_Mesh* mesh)
{
    switch (token) {
    case QSA_Token::NodeVisible: {
        int32_t isVisible = 0;
        ReadInt(&isVisible);
        mesh->visible = isVisible != 0 ? 1 : 0;
        return 0;
    }
    case QSA_Token::Mesh: {
        if (geometry.isClone)
            return 0; // the block is skipped like an unknown one
        SkipTo('{');
        const int32_t result = ParseMesh(mesh);
        if (counts[kFaceList].number > 0)
            geometry.hasGeometry = true;
        return result;
    }
    case QSA_Token::Clone:
        ReadQuoted(&mesh->cloneSource);
        geometry.isClone = true;
        geometry.hasGeometry = true;
        return 0;
    case QSA_Token::MaterialRef:
        ReadInt(&geometry.materialRef);
        return 0;
    case QSA_Token::WireframeColor: {
        float rgb[3];
        ReadVector(rgb);
        geometry.wireColour = {rgb[0], rgb[1], rgb[2], 1.0f};
        return 0;
    }
    default:
        return ParseNodeKeyword(token, mesh);
    }
}

void QSALoader::FinishMesh(KRE_Mesh* mesh)
{
    const LoadScope inHand(mesh->name);
    if (!mesh->cloneSource.IsEmpty()) { // a clone of no name has geometry of its own, or none
        KeepMeshInfo(mesh);
        return;
    }
    if (FileMajor() == 1)
        D3DXMatrixIdentity(&mesh->pivotTM);
    BuildMesh(mesh);
    builder.Clear();
}

/// Makes the record of the mesh in hand. Of meshes with one name the first keeps it: then null.
QSA_MeshLoadInfo* QSALoader::KeepMeshInfo(KRE_Mesh* mesh)
{
    auto* entry = meshInfos.Insert(mesh->name);
    if (!entry)
        return nullptr;
    entry->data.materialRef = geometry.materialRef;
    entry->data.wireColour = geometry.wireColour;
    entry->data.mesh = mesh;
    return &entry->data;
}

/// The top-level material of an index, or null for -1. One that is not there counts as none.
QSA_Material* QSALoader::FindMaterial(int32_t index, const KRE_Mesh* mesh)
{
    if (index < 0)
        return nullptr;
    if (static_cast<size_t>(index) < topMaterials.size())
        return topMaterials[static_cast<size_t>(index)];
    Warning("Mesh '%s' has material %i of %i", mesh->name.c_str(), index,
            static_cast<int32_t>(topMaterials.size()));
    return nullptr;
}

/// Turns the lists of the file into the device mesh.
void QSALoader::BuildMesh(KRE_Mesh* mesh)
{
    WarnOfWrappedCorners(mesh);
    CheckLists(mesh);
    QSA_MeshLoadInfo* const info = KeepMeshInfo(mesh);
    const char* name = mesh->name.c_str();
    QSA_Material* material = FindMaterial(geometry.materialRef, mesh);
    const DWORD fvf = ChooseVertexFormat(mesh, material);
    if (geometry.weightCount > 0)
        builder.weights.resize(builder.vertices.size());
    if (mesh->bones.Count() > 0)
        NormalizeWeights();
    builder.Build(name, material ? static_cast<int32_t>(material->subMaterials.size()) : 0);
    if (builder.built.empty())
        Error("Mesh without vertices: '%s'", name);

    const int32_t faces = static_cast<int32_t>(builder.faces.size()) - builder.invalidFaceCount;
    gGfx->CreateMesh(
        mesh, faces, static_cast<int32_t>(builder.built.size()), builder.attributeCount, fvf,
        options.Has(kLoadSystemMemory) ? KRE_Gfx::kMeshSystemMemory : 0, mesh->bones.Count());
    ApplyMaterials(mesh, material);
    mesh->LockAll(0);
    WriteFaces(mesh);
    WriteVertices(mesh);
    mesh->UnlockAll();
    mesh->clipMode = 3;
    if (mesh->bones.Count() > 0) {
        mesh->clipMode = 0; // bones carry vertices out of any box
        hasSkinnedMesh = true;
    }
    mesh->Optimize();
    mesh->bones.SetSize(mesh->bones.Count());
    if (info) {
        info->subMaterialMap = builder.subMaterialMap;
        info->attributeCount = builder.attributeCount;
    }
}

DWORD QSALoader::ChooseVertexFormat(const KRE_Mesh* mesh, const QSA_Material* material)
{
    static constexpr DWORD kBlended = D3DFVF_NORMAL | D3DFVF_LASTBETA_UBYTE4;
    static constexpr DWORD kFormats[] = {D3DFVF_XYZ | D3DFVF_NORMAL, D3DFVF_XYZB2 | kBlended,
                                         D3DFVF_XYZB2 | kBlended, D3DFVF_XYZB3 | kBlended,
                                         D3DFVF_XYZB4 | kBlended};
    if (geometry.weightCount < 0 || geometry.weightCount > kMaxVertexWeights)
        Error("Invalid number of weightings: %i", geometry.weightCount);
    if (geometry.weightCount == 1) {
        Warning("Only one bone in object %s", mesh->name.c_str());
        geometry.weightCount = 2;
    }
    DWORD fvf = kFormats[geometry.weightCount];
    if (options.Has(kLoadVertexColors))
        fvf |= D3DFVF_DIFFUSE | D3DFVF_SPECULAR;

    int32_t sets = 0;
    if (material) {
        sets += material->hasDiffuse ? 1 : 0;
        if (material->hasBump) {
            fvf |= D3DFVF_TEXCOORDSIZE3(1);
            ++sets;
        }
        sets += material->hasReflect ? 1 : 0;
    }
    // QUIRK: three sets add no count at all; meshes of materials with all three maps are drawn
    // without their maps, and files are compared by that.
    if (sets == 1 || (sets == 0 && builder.hasTextureFaces))
        fvf |= D3DFVF_TEX1;
    else if (sets == 2)
        fvf |= D3DFVF_TEX2;
    return fvf;
}

/// A vertex that lost all its weights is carried by the mesh itself.
void QSALoader::NormalizeWeights()
{
    for (QSA_VertexWeights& entry : builder.weights) {
        float sum = 0.0f;
        for (int32_t i = 0; i < geometry.weightCount; ++i)
            sum += entry.weight[i];
        if (sum == 0.0f) {
            entry.weight[0] = 1.0f;
            std::fill(std::begin(entry.bone), std::end(entry.bone), uint8_t{0});
            continue;
        }
        for (int32_t i = 0; i < geometry.weightCount; ++i)
            entry.weight[i] /= sum;
    }
}

// ---- What goes into the device mesh

/// A material of one colour, for meshes that have none.
KRE_MaterialInfo QSALoader::WireMaterial(const D3DCOLORVALUE& colour)
{
    KRE_MaterialInfo material;
    material.diffuse = colour;
    material.ambient = colour;
    material.specular = {0.0f, 0.0f, 0.0f, 1.0f};
    material.emissive = {0.0f, 0.0f, 0.0f, 1.0f};
    return material;
}

void QSALoader::CopyMaterial(KRE_Mesh* mesh, int32_t slot, const QSA_Material* material)
{
    mesh->materials[slot] = material->render;
    if (material->texture)
        mesh->textures[slot].CopyFrom(*material->texture);
}

void QSALoader::ApplyMaterials(KRE_Mesh* mesh, QSA_Material* material)
{
    if (!material) {
        mesh->materials[0] = WireMaterial(geometry.wireColour);
        return;
    }
    LoadMaterialTextures(material);
    if (material->subMaterials.empty()) {
        CopyMaterial(mesh, 0, material);
        return;
    }
    for (size_t s = 0; s < builder.subMaterialMap.size(); ++s) {
        if (builder.subMaterialMap[s] >= 0)
            CopyMaterial(mesh, builder.subMaterialMap[s], material->subMaterials[s]);
    }
}

void QSALoader::WriteFaces(KRE_Mesh* mesh)
{
    uint16_t* indices = mesh->indexData;
    DWORD* attribute = mesh->attributeData;
    for (const QSA_SourceFace& face : builder.faces) {
        if (face.attribute < 0)
            continue;
        for (const uint32_t built : face.built)
            *indices++ = static_cast<uint16_t>(built);
        *attribute++ = static_cast<DWORD>(face.attribute);
    }
}

void QSALoader::WriteVertices(KRE_Mesh* mesh)
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
        *mesh->Normal(i) = FinishedNormal(built, mesh);
        if (geometry.weightCount > 0)
            WriteWeights(mesh, i, built.source);
    }
    SetBounds(mesh, low, high);
}

D3DXVECTOR3 QSALoader::FinishedNormal(const QSA_BuiltVertex& built, const KRE_Mesh* mesh)
{
    // The count wraps, and only the direction matters.
    const float number = built.normalCount != 0 ? built.normalCount : 65536.0f;
    const D3DXVECTOR3 normal(built.normalSum[0] / number, built.normalSum[1] / number,
                             built.normalSum[2] / number);
    const float length = D3DXVec3Length(&normal);
    if (length == 0.0f) {
        Warning("Zero normal sum in object %s!", mesh->name.c_str());
        return {0.0f, 0.0f, 0.0f};
    }
    return {normal.x / length, normal.y / length, normal.z / length};
}

/// All four bone bytes and all weights but the last, which follows from the others.
void QSALoader::WriteWeights(KRE_Mesh* mesh, int32_t vertex, uint32_t source)
{
    const QSA_VertexWeights& entry = builder.weights[source];
    std::copy_n(entry.bone, kMaxVertexWeights, mesh->BlendIndices(vertex));
    std::copy_n(entry.weight, geometry.weightCount - 1, mesh->Weights(vertex));
}

void QSALoader::SetBounds(KRE_Mesh* mesh, const D3DXVECTOR3& low, const D3DXVECTOR3& high)
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

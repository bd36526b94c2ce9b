#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <vector>

#include "base/FormatText.h"
#include "check/SceneFaults.h"
#include "gfx/KRE_ResourceManager.h"

namespace {

constexpr int32_t kMostVertices = 65535;
constexpr float kBoundsTolerance = 1e-5f; ///< of the sphere's radius

bool IsNear(float low, float value, float high, float tolerance)
{
    return value >= low - tolerance && value <= high + tolerance;
}

/// Checks one mesh.
class MeshChecker {
public:
    MeshChecker(KRE_Mesh& meshIn, SceneFaults& faultsIn) : mesh(meshIn), faults(faultsIn) {}

    void Check(MeshCheck extent)
    {
        CheckMaterials();
        CheckShare();
        CheckBones();
        if (mesh.indexLocked || mesh.vertexLocked || mesh.attributeLocked || mesh.indexData ||
            mesh.vertexData || mesh.attributeData)
            Fault("a buffer is locked");
        if (!mesh.mesh) {
            if (mesh.vertexCount != 0 || mesh.faceCount != 0)
                Fault("%i vertices and %i faces without a device mesh", mesh.vertexCount,
                      mesh.faceCount);
            return;
        }
        if (!CheckLayout() || extent == MeshCheck::kWithoutGeometry)
            return;
        mesh.LockAll(D3DLOCK_READONLY);
        CheckFaces();
        CheckVertices();
        CheckAttributeTable();
        mesh.UnlockAll();
    }

private:
    [[gnu::format(printf, 2, 3)]] void Fault(const char* format, ...)
    {
        char text[256];
        va_list arguments;
        va_start(arguments, format);
        FormatTextV(text, sizeof text, format, arguments);
        va_end(arguments);
        faults.Add(mesh.name.c_str(), "%s", text);
    }

    void CheckMaterials()
    {
        const bool hasSome = mesh.materialCount > 0;
        if (mesh.materialCount < 0 || static_cast<bool>(mesh.materials) != hasSome ||
            static_cast<bool>(mesh.textures) != hasSome) {
            Fault("%i materials do not agree with their arrays", mesh.materialCount);
            return;
        }
        for (int32_t i = 0; i < mesh.materialCount; ++i) {
            CheckMaterial(mesh.name.c_str(), mesh.materials[i], faults);
            CheckTexture(mesh.name.c_str(), mesh.textures[i], faults);
        }
    }

    void CheckShare()
    {
        if ((mesh.resourceId == -1) != (mesh.manager == nullptr))
            Fault("id %i does not go with its manager", mesh.resourceId);
        else if (mesh.manager && mesh.manager->GetPointer(mesh.resourceId) != mesh.mesh.Get())
            Fault("id %i is of another device mesh", mesh.resourceId);
    }

    void CheckBones()
    {
        int32_t i = 0;
        for (const KRE_BoneInfo* bone : mesh.bones) {
            D3DXMATRIX bind;
            D3DXMatrixMultiply(&bind, &bone->meshInitTM, &bone->boneInitTM);
            if (!(bind == bone->bindTM))
                Fault("the matrices of bone %i do not agree", i);
            if (!std::memchr(bone->name, 0, sizeof bone->name))
                Fault("the name of bone %i has no end", i);
            ++i;
        }
    }

    bool CheckLayout()
    {
        ID3DXMesh& device = *mesh.mesh.Get();
        VertexInfo derived;
        derived.SetFVFInfo(mesh.fvf);
        if (derived.stride != mesh.stride || derived.blendCount != mesh.blendCount ||
            derived.textureCount != mesh.textureCount)
            Fault("the layout is not that of the format 0x%lX",
                  static_cast<unsigned long>(mesh.fvf));
        if (mesh.processing < 0 || mesh.processing > 2)
            Fault("the blend path is %i", mesh.processing);
        static constexpr DWORD kFlags[] = {D3DVBF_DISABLE, D3DVBF_0WEIGHTS, D3DVBF_1WEIGHTS,
                                           D3DVBF_2WEIGHTS, D3DVBF_3WEIGHTS};
        if (mesh.blendCount < 0 || mesh.blendCount > 4 ||
            mesh.vertexBlendFlags != kFlags[mesh.blendCount])
            Fault("the blend flags are %lu for %i weights",
                  static_cast<unsigned long>(mesh.vertexBlendFlags), mesh.blendCount);
        const bool isSame = device.GetNumVertices() == static_cast<DWORD>(mesh.vertexCount) &&
                            device.GetNumFaces() == static_cast<DWORD>(mesh.faceCount) &&
                            device.GetFVF() == mesh.fvf &&
                            device.GetNumBytesPerVertex() >= static_cast<DWORD>(mesh.stride) &&
                            mesh.vertexCount <= kMostVertices;
        if (!isSame)
            Fault("%i vertices, %i faces or the format are not the device mesh's", mesh.vertexCount,
                  mesh.faceCount);
        return isSame;
    }

    void CheckFaces()
    {
        // A clone may have fewer materials of its own than its shared geometry has attributes.
        const bool isClone = !mesh.cloneSource.IsEmpty();
        const int32_t attributes = std::max(mesh.materialCount, 1);
        for (int32_t i = 0; i < mesh.faceCount; ++i) {
            for (int32_t corner = 0; corner < 3; ++corner) {
                if (mesh.Face(i)[corner] >= mesh.vertexCount)
                    Fault("face %i has the vertex %i of %i", i, mesh.Face(i)[corner],
                          mesh.vertexCount);
            }
            if (!isClone && *mesh.Attribute(i) >= static_cast<DWORD>(attributes))
                Fault("face %i has the attribute %lu of %i", i,
                      static_cast<unsigned long>(*mesh.Attribute(i)), attributes);
        }
    }

    void CheckVertices()
    {
        const int32_t palette = std::max(mesh.bones.Count(), 1);
        const float tolerance = kBoundsTolerance * mesh.radius;
        for (int32_t i = 0; i < mesh.vertexCount; ++i) {
            const D3DXVECTOR3 p = *mesh.Position(i);
            const D3DXVECTOR3 way = p - mesh.center;
            const bool isInBox = IsNear(mesh.boxMin.x, p.x, mesh.boxMax.x, tolerance) &&
                                 IsNear(mesh.boxMin.y, p.y, mesh.boxMax.y, tolerance) &&
                                 IsNear(mesh.boxMin.z, p.z, mesh.boxMax.z, tolerance);
            if ((mesh.clipMode & 2) && !isInBox)
                Fault("vertex %i is outside the box", i);
            if ((mesh.clipMode & 1) && !IsNear(0, D3DXVec3Length(&way), mesh.radius, tolerance))
                Fault("vertex %i is outside the sphere", i);
            for (int32_t k = 0; mesh.matrixIndexOffset != VertexInfo::kNoOffset && k < 4; ++k) {
                if (mesh.BlendIndices(i)[k] >= palette)
                    Fault("vertex %i has the bone %i of %i", i, mesh.BlendIndices(i)[k], palette);
            }
        }
    }

    /// Ranges in attribute order, each directly after the one before, that cover all faces and
    /// their vertices.
    void CheckAttributeTable()
    {
        DWORD count = 0;
        mesh.mesh->GetAttributeTable(nullptr, &count);
        std::vector<D3DXATTRIBUTERANGE> table(count);
        mesh.mesh->GetAttributeTable(table.data(), &count);
        if (count == 0) {
            Fault("the faces are not sorted");
            return;
        }
        DWORD nextFace = 0;
        for (DWORD i = 0; i < count; ++i) {
            const D3DXATTRIBUTERANGE& range = table[i];
            if (i > 0 && range.AttribId <= table[i - 1].AttribId)
                Fault("range %lu of the attribute table is out of order",
                      static_cast<unsigned long>(i));
            if (range.FaceStart != nextFace || !IsRangeSound(range))
                Fault("range %lu of the attribute table does not fit the faces",
                      static_cast<unsigned long>(i));
            nextFace = range.FaceStart + range.FaceCount;
        }
        if (nextFace != static_cast<DWORD>(mesh.faceCount))
            Fault("the attribute table ends at face %lu of %i",
                  static_cast<unsigned long>(nextFace), mesh.faceCount);
    }

    bool IsRangeSound(const D3DXATTRIBUTERANGE& range)
    {
        const DWORD faces = static_cast<DWORD>(mesh.faceCount);
        if (range.FaceStart > faces || range.FaceCount > faces - range.FaceStart)
            return false;
        for (DWORD face = range.FaceStart; face < range.FaceStart + range.FaceCount; ++face) {
            const int32_t i = static_cast<int32_t>(face);
            if (*mesh.Attribute(i) != range.AttribId)
                return false;
            for (int32_t corner = 0; corner < 3; ++corner) {
                const DWORD vertex = mesh.Face(i)[corner];
                if (vertex < range.VertexStart || vertex - range.VertexStart >= range.VertexCount)
                    return false;
            }
        }
        return true;
    }

    KRE_Mesh& mesh;
    SceneFaults& faults;
};

template <class Track>
void CheckFlatTrack(const char* owner, const char* what, const Track& track, SceneFaults& faults)
{
    if (track.GetKeyCount() < 0 || (track.GetKeyCount() > 0) != (track.Keys() != nullptr))
        faults.Add(owner, "%i keys of the %s track do not agree with their array",
                   track.GetKeyCount(), what);
}

void CheckPicture(const char* owner, const KRE_Texture& texture, int32_t id, const void* picture,
                  SceneFaults& faults)
{
    if (id == -1)
        return;
    const void* shared = texture.manager ? texture.manager->GetPointer(id) : nullptr;
    if (!texture.manager || (shared && shared != picture))
        faults.Add(owner, "picture id %i is of another picture", id);
}

} // namespace

void CheckMaterial(const char* owner, const KRE_MaterialInfo& material, SceneFaults& faults)
{
    CheckFlatTrack(owner, "diffuse", material.diffuseTrack, faults);
    CheckFlatTrack(owner, "ambient", material.ambientTrack, faults);
    CheckFlatTrack(owner, "specular", material.specularTrack, faults);
    CheckFlatTrack(owner, "self-illumination", material.selfIllumTrack, faults);
    CheckFlatTrack(owner, "opacity", material.opacityTrack, faults);
}

void CheckTexture(const char* owner, const KRE_Texture& texture, SceneFaults& faults)
{
    if (texture.currentSlot < 0 || texture.currentSlot >= KRE_Texture::kSlots)
        faults.Add(owner, "texture slot %i is selected", texture.currentSlot);
    if (texture.sequenceCount < 0 ||
        texture.frameIndex >= std::max(texture.sequenceCount, int32_t{1}))
        faults.Add(owner, "frame %i of %i is selected", texture.frameIndex, texture.sequenceCount);
    if (texture.locked)
        faults.Add(owner, "a picture is locked");
    for (int32_t i = 0; i < KRE_Texture::kSlots; ++i)
        CheckPicture(owner, texture, texture.slotIds[i], texture.slotTextures[i], faults);
    for (int32_t i = 0; i < texture.sequenceCount; ++i)
        CheckPicture(owner, texture, texture.frameIds[i], texture.frames[i], faults);
}

void CheckMesh(KRE_Mesh& mesh, MeshCheck extent, SceneFaults& faults)
{
    MeshChecker(mesh, faults).Check(extent);
}

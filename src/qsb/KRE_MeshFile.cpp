// Meshes in QSB files. Data is first read into separate memory and checked there, so no device
// buffer is locked when an error is raised.

#include <algorithm>
#include <cstring>

#include "gfx/KRE_Gfx.h"
#include "platform/LittleEndian.h"
#include "qsb/QSB_SceneFields.h"
#include "qsb/QSB_Vertices.h"

namespace {

constexpr int32_t kFaceBytes = 6;
constexpr int32_t kAttributeBytes = 2;
constexpr DWORD kVertexColors = D3DFVF_DIFFUSE | D3DFVF_SPECULAR;
/// Two sets of texture coordinates, the second with three floats: what bump maps use.
constexpr DWORD kBumpSets = D3DFVF_TEX2 | D3DFVF_TEXCOORDSIZE3(1);
static_assert(kVertexColors == 0xC0 && kBumpSets == 0x40200);

HeapArray<uint8_t> ReadBlock(QSB_InputFile& file, int64_t size)
{
    // The caller has checked the size against the bytes left, so it fits an int32.
    auto block = HeapArray<uint8_t>::Try(static_cast<int32_t>(size));
    file.CheckMemory(block.Get());
    file.Read(block.Get(), static_cast<int32_t>(size));
    return block;
}

HeapArray<uint8_t> TryBlock(File& file, const KRE_Mesh& mesh, int64_t size)
{
    HeapArray<uint8_t> block;
    if (size <= INT32_MAX)
        block = HeapArray<uint8_t>::Try(static_cast<int32_t>(size));
    if (!block)
        file.Error("Not enough memory for %lli bytes of geometry of mesh '%s'",
                   static_cast<long long>(size), mesh.name.c_str());
    return block;
}

/// Fails if a vertex uses a bone index that does not exist. A mesh without bones is moved by the
/// object itself, whose index is 0.
void CheckBones(const QSB_InputFile& file, const HeapArray<uint8_t>& records,
                const QSB_VertexForm& form, int32_t vertexCount, int32_t boneCount)
{
    if (form.boneOffset < 0)
        return;
    const int32_t limit = std::max(boneCount, 1);
    const uint8_t* at = records.Get() + form.boneOffset;
    for (int32_t i = 0; i < vertexCount; ++i, at += form.size) {
        const uint8_t highest = std::max({at[0], at[1], at[2], at[3]});
        if (highest >= limit)
            file.Fail("Invalid bone index in vertex %i: %i of %i", i, highest, boneCount);
    }
}

/// The oldest files with colours have a check and a message of their own.
void CheckFirstBones(const QSB_InputFile& file, KRE_Mesh& mesh, const HeapArray<uint8_t>& records,
                     const QSB_VertexForm& form, int32_t boneCount)
{
    if (!form.isRaw || !file.vertexColors || form.boneOffset < 0)
        return;
    const uint8_t* at = records.Get() + form.boneOffset;
    for (int32_t i = 0; i < mesh.vertexCount; ++i, at += form.size) {
        if (*at >= boneCount)
            mesh.Error("Invalid bone index: %i", *at);
    }
}

/// Checks `what` of a face: each value must be below `limit`.
void CheckFaceValues(const QSB_InputFile& file, const char* what, const uint16_t* values,
                     int32_t count, int32_t perFace, int32_t limit)
{
    uint16_t highest = 0;
    for (int32_t i = 0; i < count; ++i)
        highest = std::max(highest, values[i]);
    if (count == 0 || highest < limit)
        return;
    const uint16_t* bad =
        std::find_if(values, values + count, [limit](uint16_t value) { return value >= limit; });
    file.Fail("Invalid %s in face %i: %i of %i", what, static_cast<int>((bad - values) / perFace),
              *bad, limit);
}

// ---- Saving

class MeshSaver : public QSB_SaveArchive {
public:
    using QSB_SaveArchive::QSB_SaveArchive;

    void Materials(const char*, const KRE_Mesh& mesh)
    {
        file.WriteInt32(mesh.materialCount);
        for (int32_t i = 0; i < mesh.materialCount; ++i)
            mesh.materials[i].Save(file);
        for (int32_t i = 0; i < mesh.materialCount; ++i)
            mesh.textures[i].Save(file);
    }
    void BoneCount(const char*, const KRE_Mesh& mesh) { file.WriteInt32(mesh.bones.Count()); }
    void Geometry(const KRE_Mesh& mesh)
    {
        if (mesh.cloneSource.IsEmpty())
            SaveGeometry(mesh);
    }
    void Bones(const KRE_Mesh& mesh)
    {
        for (const KRE_BoneInfo* bone : mesh.bones)
            bone->Save(file);
    }

private:
    void SaveGeometry(const KRE_Mesh& mesh);
};

void MeshSaver::SaveGeometry(const KRE_Mesh& mesh)
{
    if (!CanStoreFormat(mesh.fvf))
        mesh.Error("Vertex format 0x%X can not be stored", static_cast<unsigned>(mesh.fvf));
    const int64_t vertexBytes = int64_t{QSB_VertexForm(mesh, kQsbCurrent).size} * mesh.vertexCount;
    const int64_t faceBytes = int64_t{kFaceBytes + kAttributeBytes} * mesh.faceCount;
    HeapArray<uint8_t> vertices = TryBlock(file, mesh, vertexBytes);
    HeapArray<uint8_t> faces = TryBlock(file, mesh, faceBytes);
    if (!vertices || !faces)
        return; // errors of this file do not throw

    mesh.LockAll(D3DLOCK_READONLY);
    const int32_t clamped = PackVertices(mesh.vertexData, mesh, mesh.vertexCount, vertices.Get());
    const size_t indexBytes = static_cast<size_t>(mesh.faceCount) * kFaceBytes;
    std::memcpy(faces.Get(), mesh.indexData, indexBytes);
    ReorderWords(faces.Get(), sizeof(uint16_t), indexBytes / sizeof(uint16_t));
    for (int32_t i = 0; i < mesh.faceCount; ++i)
        StoreLittle(faces.Get() + indexBytes + ptrdiff_t{kAttributeBytes} * i,
                    static_cast<uint16_t>(mesh.attributeData[i]));
    mesh.UnlockAll();

    if (clamped > 0)
        mesh.Warning("%i values of normals and weights exceed the file format", clamped);
    Fields(*this, QSB_Geometry{mesh.vertexCount, mesh.faceCount, mesh.fvf});
    file.Write(vertices.Get(), static_cast<int32_t>(vertexBytes));
    file.Write(faces.Get(), static_cast<int32_t>(faceBytes));
}

// ---- Loading

/// Whether vertices need room for what a bump map uses. Leaves slot 0 of the textures selected.
/// QUIRK: the map of the selected slot is the one that moves, and an import leaves the last slot
/// selected. So for a diffuse map over a reflection, an import tiles and moves the diffuse map, but
/// its binary scene moves the reflection: `KRE_Texture::Evaluate` looks at one slot only.
bool HasBumpMap(KRE_Mesh& mesh)
{
    bool found = false;
    for (int32_t i = 0; i < mesh.materialCount; ++i) {
        KRE_Texture& texture = mesh.textures[i];
        if (texture.sequenceCount > 0)
            continue; // its slots cannot be selected
        for (int32_t slot = 0; slot < KRE_Texture::kSlots; ++slot) {
            const int32_t type = texture.slots[slot].type;
            if (texture.slotTextures[slot] && (type == StageBump || type == StageReflection))
                found = true;
        }
        texture.SelectStage(0);
    }
    return found;
}

class MeshLoader : public QSB_LoadArchive {
public:
    using QSB_LoadArchive::QSB_LoadArchive;

    void Materials(const char*, KRE_Mesh& mesh);
    void BoneCount(const char*, KRE_Mesh&) { boneCount = file.ReadCount("bones", kQsbLeastBone); }
    void Geometry(KRE_Mesh& mesh)
    {
        if (mesh.cloneSource.IsEmpty())
            LoadGeometry(mesh);
    }
    void Bones(KRE_Mesh& mesh);

private:
    void LoadGeometry(KRE_Mesh& mesh);
    void LoadVertices(KRE_Mesh& mesh, const VertexInfo& stored);
    void LoadFaces(KRE_Mesh& mesh);

    int32_t boneCount = 0;
    bool hasBumpMap = false;
};

void MeshLoader::Materials(const char*, KRE_Mesh& mesh)
{
    const int32_t count = file.ReadCount("materials", kQsbLeastMaterial + kQsbLeastTexture);
    mesh.AllocateMaterials(count);
    for (int32_t i = 0; i < count; ++i)
        mesh.materials[i].Load(file);
    for (int32_t i = 0; i < count; ++i) {
        file.material = i;
        mesh.textures[i].Load(file);
    }
    file.material = -1;
    hasBumpMap = HasBumpMap(mesh);
}

void MeshLoader::LoadGeometry(KRE_Mesh& mesh)
{
    QSB_Geometry geometry;
    Fields(*this, geometry);
    if (!CanStoreFormat(geometry.fvf))
        file.Fail("Invalid vertex format: 0x%X", static_cast<unsigned>(geometry.fvf));
    VertexInfo stored;
    stored.SetFVFInfo(geometry.fvf);
    const QSB_VertexForm form(stored, file.version);
    file.CheckCount("vertices", geometry.vertexCount, form.size);
    file.CheckCount("faces", geometry.faceCount, kFaceBytes + kAttributeBytes);

    DWORD format = geometry.fvf;
    if (file.vertexColors)
        format |= kVertexColors;
    if (file.bumpMaps && hasBumpMap) {
        if (stored.textureCount > 1)
            mesh.Error("Multiple texture coords not supported");
        format = (format & ~DWORD{D3DFVF_TEX1}) | kBumpSets;
    }
    gGfx->CreateMesh(&mesh, geometry.faceCount, geometry.vertexCount, mesh.materialCount, format, 0,
                     boneCount);
    if (mesh.mesh->GetNumBytesPerVertex() != static_cast<DWORD>(mesh.stride))
        file.Fail("Invalid vertex format: 0x%X", static_cast<unsigned>(format));
    LoadVertices(mesh, stored);
    LoadFaces(mesh);
}

void MeshLoader::LoadVertices(KRE_Mesh& mesh, const VertexInfo& stored)
{
    const QSB_VertexForm form(stored, file.version);
    const auto records = ReadBlock(file, int64_t{form.size} * mesh.vertexCount);
    CheckFirstBones(file, mesh, records, form, boneCount);
    CheckBones(file, records, form, mesh.vertexCount, boneCount);
    mesh.LockVertexBuffer(0);
    UnpackVertices(records.Get(), form, stored, mesh.vertexCount, mesh, mesh.vertexData);
    mesh.UnlockVertexBuffer();
}

void MeshLoader::LoadFaces(KRE_Mesh& mesh)
{
    const int32_t count = mesh.faceCount;
    auto block = ReadBlock(file, int64_t{kFaceBytes + kAttributeBytes} * count);
    ReorderWords(block.Get(), sizeof(uint16_t), size_t{4} * static_cast<size_t>(count));
    const auto* indices = reinterpret_cast<const uint16_t*>(block.Get());
    const uint16_t* attributes = indices + ptrdiff_t{3} * count;
    CheckFaceValues(file, "vertex", indices, 3 * count, 3, mesh.vertexCount);
    CheckFaceValues(file, "attribute", attributes, count, 1, std::max(mesh.materialCount, 1));
    mesh.LockIndexBuffer(0);
    std::memcpy(mesh.indexData, indices, static_cast<size_t>(count) * kFaceBytes);
    mesh.UnlockIndexBuffer();
    mesh.LockAttributeBuffer(0);
    std::copy_n(attributes, count, mesh.attributeData);
    mesh.UnlockAttributeBuffer();
}

void MeshLoader::Bones(KRE_Mesh& mesh)
{
    // Counted before the geometry, so checked against the bytes left once more.
    file.CheckCount("bones", boneCount, kQsbLeastBone);
    if (boneCount > mesh.bones.Capacity())
        mesh.bones.SetSize(boneCount);
    for (int32_t i = 0; i < boneCount; ++i) {
        KRE_BoneInfo* bone = mesh.bones.GetSlot(mesh.bones.Add());
        file.CheckMemory(bone);
        bone->Load(file);
    }
    mesh.AllocateBoneObjects();
}

} // namespace

void KRE_Mesh::Save(File& file) const
{
    MeshSaver saver(file);
    Fields(saver, *this);
}

void KRE_Mesh::Load(QSB_InputFile& file)
{
    const QSB_ObjectInHand inHand(file, *this);
    Reset();
    MeshLoader loader(file);
    Fields(loader, *this);
    if (cloneSource.IsEmpty())
        Optimize();
}

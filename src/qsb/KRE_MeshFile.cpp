// Meshes in QSB files. What is read goes through memory of its own and is checked there, so that no
// buffer of the device is locked when an error is raised.

#include <algorithm>
#include <cstring>

#include "gfx/KRE_Gfx.h"
#include "qsb/QSB_ReadContext.h"
#include "qsb/QSB_Record.h"
#include "qsb/QSB_Vertices.h"
#include "scene/KRE_Mesh.h"

namespace {

struct StoredGeometry {
    int32_t vertexCount;
    int32_t faceCount;
    uint32_t fvf;
};
static_assert(sizeof(StoredGeometry) == 12);

constexpr int32_t kFaceBytes = 6;
constexpr int32_t kAttributeBytes = 2;
constexpr DWORD kVertexColors = D3DFVF_DIFFUSE | D3DFVF_SPECULAR;
/// Two sets of texture coordinates, three floats in the second: what a bump map moves along.
constexpr DWORD kBumpSets = D3DFVF_TEX2 | D3DFVF_TEXCOORDSIZE3(1);
static_assert(kVertexColors == 0xC0 && kBumpSets == 0x40200);

HeapArray<uint8_t> ReadBlock(File& file, int64_t size)
{
    // The caller has held the size against the bytes left, so it is one of an int32.
    auto block = HeapArray<uint8_t>::Try(static_cast<int32_t>(size));
    gQsbReadContext.CheckMemory(file, block.Get());
    file.Read(block.Get(), static_cast<int32_t>(size));
    return block;
}

HeapArray<uint8_t> TryBlock(const KRE_Mesh& mesh, int64_t size)
{
    HeapArray<uint8_t> block;
    if (size <= INT32_MAX)
        block = HeapArray<uint8_t>::Try(static_cast<int32_t>(size));
    if (!block)
        mesh.Error("Not enough memory for %lli bytes of geometry", static_cast<long long>(size));
    return block;
}

/// An index of a bone that a vertex uses and that is not there. A mesh without bones is moved by the
/// object itself, whose index is 0.
void CheckBones(const File& file, const HeapArray<uint8_t>& records, const QSB_VertexForm& form,
                int32_t vertexCount, int32_t boneCount)
{
    if (form.boneOffset < 0)
        return;
    const int32_t limit = std::max(boneCount, 1);
    const uint8_t* at = records.Get() + form.boneOffset;
    for (int32_t i = 0; i < vertexCount; ++i, at += form.size) {
        const uint8_t highest = std::max({at[0], at[1], at[2], at[3]});
        if (highest >= limit)
            gQsbReadContext.Fail(file, "Invalid bone index in vertex %i: %i of %i", i, highest,
                                 boneCount);
    }
}

/// The route of the oldest files with colours has a test and a text of its own.
void CheckFirstBones(KRE_Mesh& mesh, const HeapArray<uint8_t>& records, const QSB_VertexForm& form,
                     int32_t boneCount)
{
    if (!form.isRaw || !gQsbReadContext.vertexColors || form.boneOffset < 0)
        return;
    const uint8_t* at = records.Get() + form.boneOffset;
    for (int32_t i = 0; i < mesh.vertexCount; ++i, at += form.size) {
        if (*at >= boneCount)
            mesh.Error("Invalid bone index: %i", *at);
    }
}

/// `what` of a face, each below `limit`.
void CheckFaceValues(const File& file, const char* what, const uint16_t* values, int32_t count,
                     int32_t perFace, int32_t limit)
{
    uint16_t highest = 0;
    for (int32_t i = 0; i < count; ++i)
        highest = std::max(highest, values[i]);
    if (count == 0 || highest < limit)
        return;
    const uint16_t* bad =
        std::find_if(values, values + count, [limit](uint16_t value) { return value >= limit; });
    gQsbReadContext.Fail(file, "Invalid %s in face %i: %i of %i", what,
                         static_cast<int>((bad - values) / perFace), *bad, limit);
}

} // namespace

// ---- Saving

void KRE_Mesh::Save(File& file) const
{
    KRE_3dObject::Save(file);
    KRE_ClipObject::Save(file);
    file.WriteInt32(ownGeometry);
    file.WriteInt32(visible);
    file.WriteInt32(hasTransparency);
    file.WriteInt32(materialCount);
    for (int32_t i = 0; i < materialCount; ++i)
        materials[i].Save(file);
    for (int32_t i = 0; i < materialCount; ++i)
        textures[i].Save(file);
    WriteText(file, cloneSource);
    file.WriteInt32(bones.Count());
    if (cloneSource.IsEmpty())
        SaveGeometry(file);
    file.WriteInt32(userTag);
    for (const KRE_BoneInfo* bone : bones)
        bone->Save(file);
}

void KRE_Mesh::SaveGeometry(File& file) const
{
    if (!CanStoreFormat(fvf))
        Error("Vertex format 0x%X can not be stored", static_cast<unsigned>(fvf));
    const int64_t vertexBytes = int64_t{QSB_VertexForm(*this, kQsbCurrent).size} * vertexCount;
    const int64_t faceBytes = int64_t{kFaceBytes + kAttributeBytes} * faceCount;
    HeapArray<uint8_t> vertices = TryBlock(*this, vertexBytes);
    HeapArray<uint8_t> faces = TryBlock(*this, faceBytes);

    LockAll(D3DLOCK_READONLY);
    const int32_t clamped = PackVertices(vertexData, *this, vertexCount, vertices.Get());
    const size_t indexBytes = static_cast<size_t>(faceCount) * kFaceBytes;
    std::memcpy(faces.Get(), indexData, indexBytes);
    for (int32_t i = 0; i < faceCount; ++i) {
        const auto attribute = static_cast<uint16_t>(attributeData[i]);
        std::memcpy(faces.Get() + indexBytes + ptrdiff_t{kAttributeBytes} * i, &attribute,
                    sizeof attribute);
    }
    UnlockAll();

    if (clamped > 0)
        Warning("%i values of normals and weights exceed the file format", clamped);
    WriteRecord(file, StoredGeometry{vertexCount, faceCount, fvf});
    file.Write(vertices.Get(), static_cast<int32_t>(vertexBytes));
    file.Write(faces.Get(), static_cast<int32_t>(faceBytes));
}

// ---- Loading

void KRE_Mesh::Load(File& file)
{
    const QSB_ObjectInHand inHand(*this);
    Reset();
    KRE_3dObject::Load(file);
    KRE_ClipObject::Load(file);
    file.ReadInt32(&ownGeometry);
    file.ReadInt32(&visible);
    file.ReadInt32(&hasTransparency);
    LoadMaterials(file);
    const bool hasBumpMap = HasBumpMap();
    gQsbReadContext.ReadText(file, &cloneSource);
    const int32_t boneCount = gQsbReadContext.ReadCount(file, "bones", kQsbLeastBone);
    const bool hasGeometry = cloneSource.IsEmpty();
    if (hasGeometry)
        LoadGeometry(file, boneCount, hasBumpMap);
    file.ReadInt32(&userTag);
    LoadBones(file, boneCount);
    if (hasGeometry)
        Optimize();
}

void KRE_Mesh::LoadMaterials(File& file)
{
    const int32_t count =
        gQsbReadContext.ReadCount(file, "materials", kQsbLeastMaterial + kQsbLeastTexture);
    AllocateMaterials(count);
    for (int32_t i = 0; i < count; ++i)
        materials[i].Load(file);
    for (int32_t i = 0; i < count; ++i) {
        gQsbReadContext.material = i;
        textures[i].Load(file);
    }
    gQsbReadContext.material = -1;
}

/// Whether vertices need room for what a bump map wants. Leaves slot 0 of the textures selected.
/// QUIRK: the selected slot is the one whose map moves, and an import leaves the last one selected. So of a
/// diffuse map over a reflection an import tiles and moves the diffuse map, and its binary scene the
/// reflection: `KRE_Texture::Evaluate` looks at one slot.
bool KRE_Mesh::HasBumpMap()
{
    bool found = false;
    for (int32_t i = 0; i < materialCount; ++i) {
        KRE_Texture& texture = textures[i];
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

void KRE_Mesh::LoadGeometry(File& file, int32_t boneCount, bool hasBumpMap)
{
    StoredGeometry geometry;
    ReadRecord(file, &geometry);
    if (!CanStoreFormat(geometry.fvf))
        gQsbReadContext.Fail(file, "Invalid vertex format: 0x%X",
                             static_cast<unsigned>(geometry.fvf));
    VertexInfo stored;
    stored.SetFVFInfo(geometry.fvf);
    const QSB_VertexForm form(stored, gQsbReadContext.version);
    gQsbReadContext.CheckCount(file, "vertices", geometry.vertexCount, form.size);
    gQsbReadContext.CheckCount(file, "faces", geometry.faceCount, kFaceBytes + kAttributeBytes);

    DWORD format = geometry.fvf;
    if (gQsbReadContext.vertexColors)
        format |= kVertexColors;
    if (gQsbReadContext.bumpMaps && hasBumpMap) {
        if (stored.textureCount > 1)
            Error("Multiple texture coords not supported");
        format = (format & ~DWORD{D3DFVF_TEX1}) | kBumpSets;
    }
    gGfx->CreateMesh(this, geometry.faceCount, geometry.vertexCount, materialCount, format, 0,
                     boneCount);
    if (mesh->GetNumBytesPerVertex() != static_cast<DWORD>(stride))
        gQsbReadContext.Fail(file, "Invalid vertex format: 0x%X", static_cast<unsigned>(format));
    LoadVertices(file, stored, boneCount);
    LoadFaces(file);
}

void KRE_Mesh::LoadVertices(File& file, const VertexInfo& stored, int32_t boneCount)
{
    const QSB_VertexForm form(stored, gQsbReadContext.version);
    const auto records = ReadBlock(file, int64_t{form.size} * vertexCount);
    CheckFirstBones(*this, records, form, boneCount);
    CheckBones(file, records, form, vertexCount, boneCount);
    LockVertexBuffer(0);
    UnpackVertices(records.Get(), form, stored, vertexCount, *this, vertexData);
    UnlockVertexBuffer();
}

void KRE_Mesh::LoadFaces(File& file)
{
    const auto block = ReadBlock(file, int64_t{kFaceBytes + kAttributeBytes} * faceCount);
    const auto* indices = reinterpret_cast<const uint16_t*>(block.Get());
    const uint16_t* attributes = indices + ptrdiff_t{3} * faceCount;
    CheckFaceValues(file, "vertex", indices, 3 * faceCount, 3, vertexCount);
    CheckFaceValues(file, "attribute", attributes, faceCount, 1, std::max(materialCount, 1));
    LockIndexBuffer(0);
    std::memcpy(indexData, indices, static_cast<size_t>(faceCount) * kFaceBytes);
    UnlockIndexBuffer();
    LockAttributeBuffer(0);
    std::copy_n(attributes, faceCount, attributeData);
    UnlockAttributeBuffer();
}

void KRE_Mesh::LoadBones(File& file, int32_t boneCount)
{
    // Counted before the geometry, and held against the bytes left once more.
    gQsbReadContext.CheckCount(file, "bones", boneCount, kQsbLeastBone);
    if (boneCount > bones.Capacity())
        bones.SetSize(boneCount);
    for (int32_t i = 0; i < boneCount; ++i) {
        KRE_BoneInfo* bone = bones.GetSlot(bones.Add());
        gQsbReadContext.CheckMemory(file, bone);
        bone->Load(file);
    }
    AllocateBoneObjects();
}

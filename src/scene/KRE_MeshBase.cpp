#include "scene/KRE_MeshBase.h"

#include <vector>

#include "gfx/DirectXErrorName.h"
#include "gfx/KRE_Gfx.h"
#include "scene/WrapTime.h"

KRE_MeshBase::KRE_MeshBase()
{
    SetClassName("KRE_MeshBase");
}

KRE_MeshBase::~KRE_MeshBase()
{
    ReleaseDeviceMesh();
}

// ---- Locks

int32_t KRE_MeshBase::LockAll(DWORD flags) const
{
    LockIndexBuffer(flags);
    LockVertexBuffer(flags);
    return LockAttributeBuffer(flags);
}

int32_t KRE_MeshBase::UnlockAll() const
{
    UnlockAttributeBuffer();
    UnlockVertexBuffer();
    return UnlockIndexBuffer();
}

/// `text` holds one %s for the name of a failure.
int32_t KRE_MeshBase::CheckLock(HRESULT result, const char* text) const
{
    lastResult = result;
    if (FAILED(result))
        Error(text, DirectXErrorName(result));
    return 1;
}

int32_t KRE_MeshBase::LockIndexBuffer(DWORD flags) const
{
    if (indexLocked)
        return 1;
    void* bits = nullptr;
    CheckLock(mesh ? mesh->LockIndexBuffer(flags, &bits) : D3DERR_INVALIDCALL,
              "LockIndexBuffer failed: %s");
    indexData = static_cast<uint16_t*>(bits);
    return indexLocked = 1;
}

int32_t KRE_MeshBase::LockVertexBuffer(DWORD flags) const
{
    if (vertexLocked)
        return 1;
    void* bits = nullptr;
    CheckLock(mesh ? mesh->LockVertexBuffer(flags, &bits) : D3DERR_INVALIDCALL,
              "LockVertexBuffer failed: %s");
    vertexData = static_cast<uint8_t*>(bits);
    return vertexLocked = 1;
}

int32_t KRE_MeshBase::LockAttributeBuffer(DWORD flags) const
{
    if (attributeLocked)
        return 1;
    CheckLock(mesh ? mesh->LockAttributeBuffer(flags, &attributeData) : D3DERR_INVALIDCALL,
              "LockAttributeBuffer failed: %s");
    return attributeLocked = 1;
}

int32_t KRE_MeshBase::UnlockIndexBuffer() const
{
    if (!indexLocked)
        return 1;
    indexLocked = 0;
    indexData = nullptr;
    return CheckLock(mesh->UnlockIndexBuffer(), "UnlockIndexBuffer failed: %s");
}

int32_t KRE_MeshBase::UnlockVertexBuffer() const
{
    if (!vertexLocked)
        return 1;
    vertexLocked = 0;
    vertexData = nullptr;
    return CheckLock(mesh->UnlockVertexBuffer(), "UnlockVertexBuffer failed: %s");
}

int32_t KRE_MeshBase::UnlockAttributeBuffer() const
{
    if (!attributeLocked)
        return 1;
    attributeLocked = 0;
    attributeData = nullptr;
    return CheckLock(mesh->UnlockAttributeBuffer(), "UnlockAttributeBuffer failed: %s");
}

// ---- Materials and textures

KRE_MaterialInfo* KRE_MeshBase::GetMaterial(int32_t i)
{
    if (i < 0 || i > materialCount)
        Error("Wrong material number !");
    return materials.Get() + i;
}

int32_t KRE_MeshBase::GetTexture(KRE_Texture& target, int32_t i)
{
    if (i < 0 || i >= materialCount) {
        Warning("Invalid texture number in SetTexture!");
        return 0;
    }
    target.CopyFrom(textures[i]);
    return 1;
}

int32_t KRE_MeshBase::HasTransparency()
{
    if (hasTransparency >= 0)
        return hasTransparency;
    hasTransparency = 0;
    for (int32_t i = 0; i < materialCount && !hasTransparency; ++i)
        hasTransparency = materials[i].transparent != 0 ? 1 : 0;
    return hasTransparency;
}

void KRE_MeshBase::Optimize()
{
    if (!mesh)
        return;
    lastResult = mesh->OptimizeInplace(D3DXMESHOPT_ATTRSORT, nullptr, nullptr, nullptr, nullptr);
    if (FAILED(lastResult))
        Error("OptimizeInplace failed: %s", DirectXErrorName(lastResult));
}

int32_t KRE_MeshBase::AttributeCount()
{
    if (!mesh)
        return 0;
    DWORD ranges = 0;
    lastResult = mesh->GetAttributeTable(nullptr, &ranges);
    std::vector<D3DXATTRIBUTERANGE> table(ranges);
    if (SUCCEEDED(lastResult))
        lastResult = mesh->GetAttributeTable(table.data(), &ranges);
    if (FAILED(lastResult))
        Error("GetAttributeTable failed: %s", DirectXErrorName(lastResult));
    return table.empty() ? 0 : static_cast<int32_t>(table.back().AttribId) + 1;
}

void KRE_MeshBase::AllocateMaterials(int32_t count)
{
    materials.Free();
    textures.Free();
    materialCount = count > 0 ? count : 0;
    if (materialCount == 0)
        return;
    materials = HeapArray<KRE_MaterialInfo>(materialCount);
    textures = HeapArray<KRE_Texture>(materialCount);
}

// ---- Animation

void KRE_MeshBase::PrepareEvaluation(double time, int32_t force)
{
    if (visible == 0 && force == 0)
        return;
    const float t = loop ? WrapTime(time, loopEnd) : static_cast<float>(time);
    for (int32_t i = 0; i < materialCount; ++i) {
        textures[i].Evaluate(t);
        materials[i].Evaluate(t);
    }
}

// ---- Life

/// Copies everything that a second user of the geometry needs, except materials and textures.
void KRE_MeshBase::CopyMeshFields(const KRE_MeshBase& other)
{
    static_cast<VertexInfo&>(*this) = other;
    static_cast<KRE_ClipObject&>(*this) = other;
    cloneSource = other.cloneSource;
    hasTransparency = other.hasTransparency;
    vertexCount = other.vertexCount;
    faceCount = other.faceCount;
    ownGeometry = other.ownGeometry;
    visible = other.visible;
}

/// Becomes one more user of the other's device mesh, which is registered with the engine's shared
/// objects. Each user's reference keeps it alive; if the table is full, only that counts.
void KRE_MeshBase::ShareDeviceMesh(KRE_MeshBase& other)
{
    ReleaseDeviceMesh();
    KRE_ResourceManager& shared = gGfx->meshManager;
    if (!other.manager && shared.GetCount() < KRE_ResourceManager::kCapacity) {
        other.manager = &shared;
        other.resourceId = shared.Add(other.mesh.Get(), other.name.c_str());
    }
    manager = other.manager;
    resourceId = manager ? manager->Acquire(other.resourceId) : -1;
    mesh = ComPointer<ID3DXMesh>::Share(other.mesh.Get());
}

/// Other users of the device mesh lock it too, so no lock may remain.
void KRE_MeshBase::ForgetLocks()
{
    if (attributeLocked)
        mesh->UnlockAttributeBuffer();
    if (vertexLocked)
        mesh->UnlockVertexBuffer();
    if (indexLocked)
        mesh->UnlockIndexBuffer();
    indexLocked = vertexLocked = attributeLocked = 0;
    indexData = nullptr;
    vertexData = nullptr;
    attributeData = nullptr;
}

void KRE_MeshBase::ReleaseDeviceMesh()
{
    ForgetLocks();
    if (manager)
        manager->Unacquire(resourceId);
    manager = nullptr;
    resourceId = -1;
    mesh.Free();
}

void KRE_MeshBase::ReleaseMesh()
{
    ReleaseDeviceMesh();
    AllocateMaterials(0);
    ClearKeys();
}

void KRE_MeshBase::Reset()
{
    ReleaseMesh();
    KRE_3dClipObject::Reset();
    processing = 0;
    SetVertexFormat(0);
    cloneSource.Clear();
    hasTransparency = -1;
    vertexCount = faceCount = 0;
    ownGeometry = 1;
    visible = 1;
}

#include "gfx/DirectXErrorName.h"
#include "gfx/KRE_Gfx.h"
#include "scene/KRE_Mesh.h"

namespace {

constexpr int32_t kMaxVertices = 65535; // the range of 16-bit indices, less the strip cut value

constexpr DWORD kManagedBuffers = D3DXMESH_VB_MANAGED | D3DXMESH_IB_MANAGED;
constexpr DWORD kSystemBuffers = D3DXMESH_VB_SYSTEMMEM | D3DXMESH_IB_SYSTEMMEM;
constexpr DWORD kSoftwareBuffers = D3DXMESH_SOFTWAREPROCESSING | kSystemBuffers;
static_assert(kManagedBuffers == 0x220 && kSystemBuffers == 0x110 && kSoftwareBuffers == 0x18110);

/// Whether every part that the layout names lies within a device vertex. Formats come from files:
/// some have no position, or matrix indices without the weights that precede them, or too many
/// texture sets.
bool IsLayoutPossible(const VertexInfo& info)
{
    const DWORD position = info.fvf & (D3DFVF_XYZ | D3DFVF_XYZRHW | D3DFVF_XYZB2);
    const bool hasIndices = (info.fvf & D3DFVF_LASTBETA_UBYTE4) != 0;
    const bool hasTooManySets = (info.fvf & D3DFVF_TEXCOUNT_MASK) > D3DFVF_TEX8;
    return position != 0 && (!hasIndices || info.blendCount > 0) && !hasTooManySets;
}

} // namespace

void KRE_Gfx::CreateMesh(KRE_Mesh* mesh, int32_t faces, int32_t vertices, int32_t materialCount,
                         DWORD fvf, DWORD options, int32_t boneCount)
{
    mesh->SetVertexFormat(fvf);
    if (options == 0 || options == ~DWORD{0})
        options = kManagedBuffers;
    else if (options == kMeshSystemMemory)
        options = kSystemBuffers;
    mesh->processing = GetVertexProcessing(*mesh, boneCount, 0);
    if (!hardwareVertexProcessing || mesh->processing == 0) {
        mesh->processing = 0;
        options = kSoftwareBuffers;
    }
    if (vertices > kMaxVertices)
        Error("Number of vertices too high: %i - only 65535 allowed", vertices);
    if (mesh->materials && mesh->materialCount != materialCount)
        Error("nrMat does not match!");

    mesh->ReleaseDeviceMesh();
    lastResult = D3DERR_INVALIDCALL;
    if (faces > 0 && vertices > 0 && IsLayoutPossible(*mesh))
        lastResult = D3DXCreateMeshFVF(static_cast<DWORD>(faces), static_cast<DWORD>(vertices),
                                       options, fvf, device.Get(), mesh->mesh.Out());
    if (FAILED(lastResult))
        Error(" D3DXCreateMeshFVF failed: %s ", DirectXErrorName(lastResult));
    mesh->faceCount = faces;
    mesh->vertexCount = vertices;

    if (!mesh->materials) {
        mesh->AllocateMaterials(materialCount);
        for (int32_t i = 0; i < mesh->materialCount; ++i) {
            mesh->materials[i].SetDrawingDefaults();
            mesh->textures[i].SetDevice(device.Get());
        }
    }
    mesh->SetVertexBlendFlags();
}

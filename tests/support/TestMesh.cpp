#include "tests/support/TestMesh.h"

#include <algorithm>
#include <cmath>

#include "gfx/KRE_Gfx.h"

static void WriteVertices(KRE_Mesh& mesh)
{
    for (int32_t i = 0; i < mesh.vertexCount; ++i) {
        *mesh.Position(i) = {static_cast<float>(i), static_cast<float>(i % 2), 0};
        if (mesh.normalOffset != VertexInfo::kNoOffset)
            *mesh.Normal(i) = {0, 0, 1};
        if (mesh.matrixIndexOffset != VertexInfo::kNoOffset)
            std::fill_n(mesh.BlendIndices(i), 4, uint8_t{0});
        for (int32_t weight = 0; weight < mesh.blendCount - 1; ++weight)
            mesh.Weights(i)[weight] = weight == 0 ? 1.0f : 0.0f;
    }
}

static void WriteFaces(KRE_Mesh& mesh)
{
    for (int32_t i = 0; i < mesh.faceCount; ++i) {
        for (int32_t corner = 0; corner < 3; ++corner)
            mesh.Face(i)[corner] = static_cast<uint16_t>(i + corner);
        *mesh.Attribute(i) =
            mesh.materialCount > 0 ? static_cast<DWORD>(i % mesh.materialCount) : 0;
    }
}

void MakeStrip(KRE_Mesh& mesh, int32_t faces, int32_t materials, DWORD fvf)
{
    const int32_t vertices = faces + 2;
    gGfx->CreateMesh(&mesh, faces, vertices, materials, fvf, 0, 0);
    mesh.LockAll(0);
    WriteVertices(mesh);
    WriteFaces(mesh);
    mesh.UnlockAll();
    mesh.Optimize();
    const float last = static_cast<float>(vertices - 1);
    mesh.clipMode = 3;
    mesh.boxMin = {0, 0, 0};
    mesh.boxMax = {last, 1, 0};
    mesh.center = {last / 2, 0.5f, 0};
    mesh.radius = static_cast<float>(std::hypot(double{last} / 2, 0.5));
}

KRE_Mesh& AddStrip(KRE_3dScene& scene, const char* name, int32_t faces, int32_t materials,
                   DWORD fvf)
{
    KRE_Mesh* mesh = scene.meshes.GetSlot(scene.meshes.Add());
    mesh->name = name;
    MakeStrip(*mesh, faces, materials, fvf);
    return *mesh;
}

KRE_Mesh& AddClone(KRE_3dScene& scene, const char* name, const char* source, int32_t materials)
{
    KRE_Mesh* mesh = scene.meshes.GetSlot(scene.meshes.Add());
    mesh->name = name;
    mesh->cloneSource = source;
    mesh->AllocateMaterials(materials);
    return *mesh;
}

void AddBones(KRE_Mesh& mesh, std::initializer_list<const char*> names)
{
    const KRE_BoneInfo itself(mesh.name.c_str());
    mesh.bones.Add(&itself);
    for (const char* name : names) {
        const KRE_BoneInfo bone(name);
        mesh.bones.Add(&bone);
    }
}

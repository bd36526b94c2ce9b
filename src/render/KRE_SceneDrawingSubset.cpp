// Draws one attribute of a mesh and computes its reflection coordinates for each frame.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "gfx/EffectPasses.h"
#include "gfx/KRE_Gfx.h"
#include "render/KRE_SceneDrawing.h"
#include "scene/KRE_Mesh.h"

namespace {

/// Scales a reflected ray to coordinates from -0.5 to 0.5 on the picture of a mirror ball; about 2
/// * sqrt(2). QUIRK: the mirror ball's formula multiplies it by sqrt(z + 1), but here z is squared,
/// so what is behind is shown like what is in front; scenes are painted for that.
constexpr double kSphereScale = 2.828399896621704;

/// Byte offset of a set of two texture coordinates, or -1 if the layout does not hold one.
int32_t TexCoordOffset(const VertexInfo& info, int32_t set)
{
    static constexpr int32_t kFloats[] = {2, 3, 4, 1}; // by the two bits of the format code
    if (set < 0 || set >= info.textureCount || info.textureOffset < 0)
        return -1;
    int32_t offset = info.textureOffset;
    for (int32_t i = 0; i < set; ++i)
        offset += 4 * kFloats[info.fvf >> (16 + 2 * i) & 3];
    const bool hasTwo = kFloats[info.fvf >> (16 + 2 * set) & 3] >= 2;
    return hasTwo ? offset : -1;
}

/// Adds `part` times a matrix to a sum.
void AddScaled(D3DXMATRIX& sum, const D3DXMATRIX& matrix, float part)
{
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            sum.m[row][column] += matrix.m[row][column] * part;
    }
}

/// The palette matrices blended by a vertex's weights. The last weight is 1 minus the others.
/// QUIRK: the environment matrix is not applied.
D3DXMATRIX BlendedMatrix(KRE_Mesh& mesh, int32_t vertex, const D3DXMATRIX* palette)
{
    D3DXMATRIX sum(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    const float* weights = mesh.Weights(vertex);
    const uint8_t* indices = mesh.BlendIndices(vertex);
    float total = 0.0f;
    int32_t i = 0;
    for (; i < mesh.blendCount - 1 && total < 1.0f; ++i) {
        AddScaled(sum, palette[indices[i]], weights[i]);
        total += weights[i];
    }
    if (total < 1.0f)
        AddScaled(sum, palette[indices[i]], 1.0f - total);
    return sum;
}

/// The point on a mirror ball that shows what a surface reflects into the eye. All arguments are in
/// one space; `normal` has length 1.
D3DXVECTOR2 SphereCoordinates(const D3DXVECTOR3& eye, const D3DXVECTOR3& position,
                              const D3DXVECTOR3& normal)
{
    D3DXVECTOR3 toEye = eye - position;
    D3DXVec3Normalize(&toEye, &toEye);
    const float along = D3DXVec3Dot(&toEye, &normal);
    const D3DXVECTOR3 mirrored = normal * (2.0f * along) - toEye;
    const double f = std::sqrt(double{mirrored.z} * mirrored.z + 1.0) * kSphereScale;
    return {static_cast<float>(mirrored.x / f + 0.5), static_cast<float>(mirrored.y / f + 0.5)};
}

} // namespace

int32_t KRE_SceneDrawing::DrawSubset(KRE_Mesh& mesh, int32_t subset)
{
    if (KRE_ShaderEffect* effect = gfx.GetActiveEffect(mesh)) {
        gfx.PrepareEffect(*effect, &mesh, subset);
        DrawInPasses(
            gfx, effect, [&] { return mesh.mesh->DrawSubset(static_cast<DWORD>(subset)); },
            "DrawSubset failed: %s");
        return 1;
    }
    const bool hasMaterial = subset >= 0 && subset < mesh.materialCount;
    const int32_t reflectionSet = hasMaterial ? mesh.materials[subset].reflectionSet : -1;
    if (reflectionSet == -1) {
        DrawOnce(
            gfx, [&] { return mesh.mesh->DrawSubset(static_cast<DWORD>(subset)); },
            "DrawSubset failed: %s");
        return 1;
    }
    const D3DXATTRIBUTERANGE range = FindAttributeRange(mesh, subset);
    if (reflectionSet >= 0)
        WriteReflection(mesh, range, reflectionSet);
    gfx.DrawMesh(*mesh.mesh.Get(), mesh, range.FaceStart, range.FaceCount);
    return 1;
}

D3DXATTRIBUTERANGE KRE_SceneDrawing::FindAttributeRange(KRE_Mesh& mesh, int32_t subset)
{
    static constexpr const char* kFailed = "GetAttributeTable failed: %s";
    DWORD count = 0;
    gfx.Check(mesh.mesh->GetAttributeTable(nullptr, &count), kFailed);
    attributeTable.resize(count);
    gfx.Check(mesh.mesh->GetAttributeTable(attributeTable.data(), &count), kFailed);
    const auto id = static_cast<DWORD>(subset);
    if (id >= count || attributeTable[id].AttribId != id)
        gfx.Error("Attribute set for material %i in mesh '%s' with wrong ID", subset,
                  mesh.name.c_str());
    return attributeTable[id];
}

void KRE_SceneDrawing::WriteReflection(KRE_Mesh& mesh, const D3DXATTRIBUTERANGE& range,
                                       int32_t reflectionSet)
{
    const int32_t offset = TexCoordOffset(mesh, reflectionSet);
    const bool isBlended = mesh.blendCount > 0;
    const bool hasBlendData = mesh.weightOffset >= 0 && mesh.matrixIndexOffset >= 0;
    if (offset < 0 || mesh.normalOffset < 0 || (isBlended && !hasBlendData))
        return; // the layout cannot hold them
    D3DXVECTOR3 viewPosition;
    D3DXVECTOR3 eye;
    gfx.GetViewPosition(viewPosition);
    D3DXVec3TransformCoord(&eye, &viewPosition, &gfx.environmentTM);
    D3DXMATRIX matrix = gfx.world[0] * gfx.environmentTM;

    mesh.LockVertexBuffer(0);
    const DWORD vertexCount = mesh.mesh->GetNumVertices();
    const DWORD first = std::min(range.VertexStart, vertexCount);
    const auto end = static_cast<int32_t>(first + std::min(range.VertexCount, vertexCount - first));
    for (auto i = static_cast<int32_t>(first); i < end; ++i) {
        if (isBlended)
            matrix = BlendedMatrix(mesh, i, gfx.world);
        D3DXVECTOR3 position;
        D3DXVECTOR3 normal;
        D3DXVec3TransformCoord(&position, mesh.Position(i), &matrix);
        D3DXVec3TransformNormal(&normal, mesh.Normal(i), &matrix);
        D3DXVec3Normalize(&normal, &normal);
        const D3DXVECTOR2 coordinates = SphereCoordinates(eye, position, normal);
        std::memcpy(mesh.vertexData + ptrdiff_t{mesh.stride} * i + offset, &coordinates,
                    sizeof coordinates);
    }
    mesh.UnlockVertexBuffer();
}

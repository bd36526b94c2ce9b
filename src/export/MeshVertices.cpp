#include "export/MeshVertices.h"

#include <cmath>

#include "export/GltfSpace.h"
#include "scene/KRE_Mesh.h"

namespace {

constexpr int kJoints = 4;

bool IsIdentity(const D3DXMATRIX& matrix)
{
    return matrix == IdentityMatrix();
}

void PutPoint(std::vector<float>& values, const D3DXVECTOR3& v)
{
    values.insert(values.end(), {v.x, v.y, v.z});
}

/// Reads a locked mesh.
class VertexReader {
public:
    explicit VertexReader(KRE_Mesh& meshIn)
        : mesh(meshIn),
          hasPivot(!IsIdentity(mesh.pivotTM) && mesh.blendCount == 0),
          mirrors(hasPivot && D3DXMatrixDeterminant(&mesh.pivotTM) < 0)
    {
        D3DXMATRIX inverse = IdentityMatrix();
        if (hasPivot)
            D3DXMatrixInverse(&inverse, nullptr, &mesh.pivotTM);
        D3DXMatrixTranspose(&normalTM, &inverse);
    }

    MeshVertices Read()
    {
        for (int32_t i = 0; i < mesh.vertexCount; ++i) {
            ReadPoint(i);
            if (mesh.textureCount > 0) {
                const float* uv = mesh.TexCoord(i);
                for (int part = 0; part < 2; ++part)
                    read.texCoords.push_back(std::isfinite(uv[part]) ? uv[part] : 0.0f);
            }
            if (mesh.blendCount > 0)
                ReadWeights(i);
        }
        for (int32_t i = 0; i < mesh.faceCount; ++i)
            ReadFace(i);
        RepairNormals();
        return std::move(read);
    }

private:
    void ReadPoint(int32_t i)
    {
        D3DXVECTOR3 point = *mesh.Position(i);
        D3DXVECTOR3 normal = mesh.normalOffset >= 0 ? *mesh.Normal(i) : D3DXVECTOR3(0, 0, 0);
        if (hasPivot) {
            D3DXVECTOR4 moved;
            const D3DXVECTOR4 at(point.x, point.y, point.z, 1);
            const D3DXVECTOR4 way(normal.x, normal.y, normal.z, 0);
            D3DXVec4Transform(&moved, &at, &mesh.pivotTM);
            point = {moved.x, moved.y, moved.z};
            D3DXVec4Transform(&moved, &way, &normalTM);
            normal = {moved.x, moved.y, moved.z};
        }
        if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) {
            ++read.repairedPositions;
            point = {0, 0, 0};
        }
        PutPoint(read.positions, ToYUp(point));
        PutPoint(read.normals, ToYUp(normal));
    }

    /// The last weight is what the others leave. A bone counts once, and without a weight it is 0.
    void ReadWeights(int32_t i)
    {
        float weight[kJoints] = {};
        uint8_t joint[kJoints] = {};
        float rest = 1;
        int count = 0;
        for (int b = 0; b < mesh.blendCount && b < kJoints; ++b) {
            const bool isLast = b == mesh.blendCount - 1;
            const float given = isLast ? rest : mesh.Weights(i)[b];
            rest -= given;
            // What the last one leaves may be the rounding of the others.
            if (!(given > (isLast ? 1e-4f : 0.0f)))
                continue;
            const uint8_t bone = mesh.BlendIndices(i)[b];
            int at = 0;
            while (at < count && joint[at] != bone)
                ++at;
            count = at == count ? count + 1 : count;
            joint[at] = bone;
            weight[at] += given;
        }
        if (count == 0)
            weight[0] = 1;
        float sum = 0;
        for (const float value : weight)
            sum += value;
        for (int b = 0; b < kJoints; ++b) {
            read.joints.push_back(joint[b]);
            read.weights.push_back(weight[b] / sum);
        }
    }

    void ReadFace(int32_t i)
    {
        const uint16_t* corner = mesh.Face(i);
        std::vector<uint16_t>& corners = read.faces[*mesh.Attribute(i)];
        for (const int c : {0, mirrors ? 2 : 1, mirrors ? 1 : 2})
            corners.push_back(corner[c]);
    }

    D3DXVECTOR3 PointAt(size_t i) const
    {
        return {read.positions[3 * i], read.positions[3 * i + 1], read.positions[3 * i + 2]};
    }

    /// A vertex without a usable normal gets that of its first face with an area, or the way up.
    void RepairNormals()
    {
        const size_t count = read.normals.size() / 3;
        std::vector<D3DXVECTOR3> ofFaces;
        for (size_t i = 0; i < count; ++i) {
            D3DXVECTOR3 normal(read.normals[3 * i], read.normals[3 * i + 1],
                               read.normals[3 * i + 2]);
            float length = D3DXVec3Length(&normal);
            if (!(length > 1e-6f) || !std::isfinite(length)) {
                if (ofFaces.empty())
                    ofFaces = FaceNormals(count);
                normal = ofFaces[i];
                length = 1;
                ++read.repairedNormals;
            }
            const float parts[] = {normal.x, normal.y, normal.z};
            for (size_t part = 0; part < 3; ++part)
                read.normals[3 * i + part] = parts[part] / length;
        }
    }

    std::vector<D3DXVECTOR3> FaceNormals(size_t count) const
    {
        std::vector<D3DXVECTOR3> normals(count, D3DXVECTOR3(0, 1, 0));
        std::vector<bool> isSet(count);
        for (const auto& [attribute, corners] : read.faces) {
            for (size_t i = 0; i + 2 < corners.size(); i += 3) {
                const D3DXVECTOR3 a = PointAt(corners[i]);
                const D3DXVECTOR3 side = PointAt(corners[i + 1]) - a;
                const D3DXVECTOR3 other = PointAt(corners[i + 2]) - a;
                D3DXVECTOR3 normal;
                D3DXVec3Cross(&normal, &side, &other);
                const float length = D3DXVec3Length(&normal);
                if (!(length > 0) || !std::isfinite(length))
                    continue;
                for (size_t c = i; c < i + 3; ++c) {
                    if (!isSet[corners[c]])
                        normals[corners[c]] = normal / length;
                    isSet[corners[c]] = true;
                }
            }
        }
        return normals;
    }

    KRE_Mesh& mesh;
    bool hasPivot;
    bool mirrors;
    D3DXMATRIX normalTM;
    MeshVertices read;
};

} // namespace

MeshVertices ReadMeshVertices(KRE_Mesh& mesh)
{
    mesh.LockAll(D3DLOCK_READONLY);
    MeshVertices read = VertexReader(mesh).Read();
    mesh.UnlockAll();
    return read;
}

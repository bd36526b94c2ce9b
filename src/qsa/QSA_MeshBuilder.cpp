#include "qsa/QSA_MeshBuilder.h"

#include <algorithm>

#include "qsa/QSA_FaceAngles.h"

namespace {

/// The remainder that is never negative.
int32_t Modulo(int32_t value, int32_t divisor)
{
    const int32_t rest = value % divisor;
    return rest < 0 ? rest + divisor : rest;
}

void AddNormal(QSA_BuiltVertex* vertex, const float (&normal)[3])
{
    for (size_t i = 0; i < 3; ++i)
        vertex->normalSum[i] += normal[i];
    ++vertex->normalCount;
}

} // namespace

void QSA_MeshBuilder::Clear()
{
    vertices.clear();
    weights.clear();
    faces.clear();
    tVertices.clear();
    tFaces.clear();
    hasTextureFaces = false;
    built.clear();
    capacity = 0;
    subMaterialMap.clear();
    attributeCount = 0;
    duplicateCount = 0;
    invalidFaceCount = 0;
}

void QSA_MeshBuilder::Build(const char* meshName, int32_t subMaterials)
{
    built.clear();
    capacity = faces.size() * 3;
    built.reserve(std::min(capacity, vertices.size() * 2));
    subMaterialMap.assign(static_cast<size_t>(std::max(subMaterials, 0)), -1);
    attributeCount = 0;
    duplicateCount = 0;
    invalidFaceCount = 0;

    for (size_t i = 0; i < faces.size(); ++i)
        BuildFace(i, meshName, subMaterials);
    if (duplicateCount > 0)
        report.Warning("%i vertices duplicated in mesh '%s'", duplicateCount, meshName);
    ShareNormals();
    if (subMaterials <= 0)
        attributeCount = 1;
}

void QSA_MeshBuilder::BuildFace(size_t index, const char* meshName, int32_t subMaterials)
{
    QSA_SourceFace& face = faces[index];
    face.material = subMaterials > 0 ? Modulo(face.material, subMaterials) : 0;

    const QSA_FaceAngles angles =
        MeasureFace(vertices[face.vertex[0]].position, vertices[face.vertex[1]].position,
                    vertices[face.vertex[2]].position);
    if (!angles.isFace) {
        report.Warning("Invalid face %i in mesh '%s'", static_cast<int32_t>(index), meshName);
        ++invalidFaceCount;
        face.attribute = -1;
        return;
    }
    for (size_t c = 0; c < 3; ++c) {
        const float cornerNormal[3] = {angles.normal[0] * angles.angle[c],
                                       angles.normal[1] * angles.angle[c],
                                       angles.normal[2] * angles.angle[c]};
        const QSA_TextureVertex* tVertex =
            hasTextureFaces ? &tVertices[tFaces[index].vertex[c]] : nullptr;
        const uint32_t vertex =
            AddBuiltVertex(face.vertex[c], face.smoothing, cornerNormal, face.material, tVertex);
        if (tVertex) {
            built[vertex].texCoord[0] = tVertex->u;
            built[vertex].texCoord[1] = tVertex->v;
            ++built[vertex].texCoordSet;
        }
        face.built[c] = vertex;
    }
    face.attribute = AttributeOf(face.material, subMaterials);
}

/// Attribute ids are assigned in the order in which submaterials are first used.
int32_t QSA_MeshBuilder::AttributeOf(int32_t subMaterial, int32_t subMaterials)
{
    if (subMaterials <= 0)
        return 0;
    int32_t& attribute = subMaterialMap[static_cast<size_t>(subMaterial)];
    if (attribute == -1)
        attribute = attributeCount++;
    return attribute;
}

uint32_t QSA_MeshBuilder::AddBuiltVertex(uint32_t sourceVertex, const QSA_SmoothingSet& smoothing,
                                         const float (&normal)[3], int32_t material,
                                         const QSA_TextureVertex* tVertex)
{
    QSA_SourceVertex& source = vertices[sourceVertex];
    for (uint32_t copy = source.firstCopy; copy != kNoVertex; copy = built[copy].nextCopy) {
        QSA_BuiltVertex& vertex = built[copy];
        if (vertex.material != material)
            continue;
        if (tVertex && !(vertex.texCoord[0] == tVertex->u && vertex.texCoord[1] == tVertex->v))
            continue;
        const QSA_SmoothingSet common = smoothing & vertex.smoothing;
        if (common.IsEmpty())
            continue;
        vertex.smoothing = common;
        AddNormal(&vertex, normal);
        return copy;
    }

    if (source.copyCount >= kMaxVertexCopies) {
        report.Warning("Too many smoothing groups on vertex %i!",
                       static_cast<int32_t>(sourceVertex));
        // A corner that no copy matched goes to the first copy, whose smoothing groups become
        // empty: the last intersection tried is empty, or it would have matched.
        QSA_BuiltVertex& first = built[source.firstCopy];
        first.smoothing.Clear();
        AddNormal(&first, normal);
        return source.firstCopy;
    }
    if (built.size() >= capacity) {
        report.Error("Vertex buffer too small!");
        return kNoVertex;
    }

    const uint32_t added = static_cast<uint32_t>(built.size());
    QSA_BuiltVertex& vertex = built.emplace_back();
    vertex.source = sourceVertex;
    vertex.smoothing = smoothing;
    vertex.material = material;
    AddNormal(&vertex, normal);
    if (source.copyCount > 0) {
        ++duplicateCount;
        built[source.lastCopy].nextCopy = added;
    } else {
        source.firstCopy = added;
    }
    source.lastCopy = added;
    ++source.copyCount;
    return added;
}

void QSA_MeshBuilder::ShareNormals()
{
    for (const QSA_SourceVertex& vertex : vertices) {
        if (vertex.copyCount >= 2)
            ShareNormalsOf(vertex);
    }
}

/// Only sums from before this step are shared: a copy that meets two others adds both, but those
/// two do not add each other unless they meet too.
void QSA_MeshBuilder::ShareNormalsOf(const QSA_SourceVertex& vertex)
{
    struct Sum {
        float normal[3];
        uint16_t count;
    };
    QSA_BuiltVertex* copies[kMaxVertexCopies];
    Sum sums[kMaxVertexCopies];
    uint32_t number = 0;
    for (uint32_t copy = vertex.firstCopy; copy != kNoVertex; copy = built[copy].nextCopy) {
        const QSA_BuiltVertex& from = built[copy];
        sums[number] = {{from.normalSum[0], from.normalSum[1], from.normalSum[2]},
                        from.normalCount};
        copies[number++] = &built[copy];
    }

    const auto add = [](Sum& sum, const QSA_BuiltVertex& from) {
        for (size_t i = 0; i < 3; ++i)
            sum.normal[i] += from.normalSum[i];
        sum.count = static_cast<uint16_t>(sum.count + from.normalCount);
    };
    for (uint32_t i = 0; i < number; ++i) {
        for (uint32_t j = i + 1; j < number; ++j) {
            if ((copies[i]->smoothing & copies[j]->smoothing).IsEmpty())
                continue;
            add(sums[i], *copies[j]);
            add(sums[j], *copies[i]);
        }
    }
    for (uint32_t i = 0; i < number; ++i) {
        std::copy_n(sums[i].normal, 3, copies[i]->normalSum);
        copies[i]->normalCount = sums[i].count;
    }
}

#include "qsa/QSA_MeshBuilder.h"

#include <algorithm>

#include "qsa/QSA_FaceAngles.h"

namespace {

/// The remainder that is never negative.
int32_t Modulo(int32_t value, int32_t divisor)
{
    if (value >= 0 && value < divisor) // most are, and dividing takes longer
        return value;
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

    QSA_FaceAngles angles;
    for (size_t first = 0; first < faces.size(); first += QSA_FaceAngles::kMost) {
        const size_t number = std::min(faces.size() - first, QSA_FaceAngles::kMost);
        for (size_t i = 0; i < number; ++i) {
            const uint16_t(&corner)[3] = faces[first + i].vertex;
            angles.Measure(i, vertices[corner[0]].position, vertices[corner[1]].position,
                           vertices[corner[2]].position);
        }
        angles.Finish(number);
        for (size_t i = 0; i < number; ++i)
            BuildFace(first + i, angles, i, meshName, subMaterials);
    }
    if (duplicateCount > 0)
        report.Warning("%i vertices duplicated in mesh '%s'", duplicateCount, meshName);
    ShareNormals();
    if (subMaterials <= 0)
        attributeCount = 1;
}

/// Face `index` is the one at `place` of the measured ones.
void QSA_MeshBuilder::BuildFace(size_t index, const QSA_FaceAngles& angles, size_t place,
                                const char* meshName, int32_t subMaterials)
{
    QSA_SourceFace& face = faces[index];
    face.material = subMaterials > 0 ? Modulo(face.material, subMaterials) : 0;

    if (!angles.isFace[place]) {
        report.Warning("Invalid face %i in mesh '%s'", static_cast<int32_t>(index), meshName);
        ++invalidFaceCount;
        face.attribute = -1;
        return;
    }
    for (size_t c = 0; c < 3; ++c) {
        const float(&normal)[3] = angles.normal[place];
        const float angle = angles.Angle(place, c);
        const float cornerNormal[3] = {normal[0] * angle, normal[1] * angle, normal[2] * angle};
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
    for (uint32_t copy = vertices[sourceVertex].firstCopy; copy != kNoVertex;
         copy = built[copy].nextCopy) {
        QSA_BuiltVertex& vertex = built[copy];
        if (vertex.material != material)
            continue;
        if (tVertex && !(vertex.texCoord[0] == tVertex->u && vertex.texCoord[1] == tVertex->v))
            continue;
        if (!vertex.smoothing.Meets(smoothing))
            continue;
        vertex.smoothing.Narrow(smoothing);
        AddNormal(&vertex, normal);
        return copy;
    }
    return AddCopy(sourceVertex, smoothing, normal, material);
}

/// For a corner that no copy matched.
uint32_t QSA_MeshBuilder::AddCopy(uint32_t sourceVertex, const QSA_SmoothingSet& smoothing,
                                  const float (&normal)[3], int32_t material)
{
    QSA_SourceVertex& source = vertices[sourceVertex];
    if (source.copyCount >= kMaxVertexCopies) {
        report.Warning("Too many smoothing groups on vertex %i!",
                       static_cast<int32_t>(sourceVertex));
        // It goes to the first copy, whose smoothing groups become empty: the last intersection tried is
        // empty, or it would have matched.
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
            if (!copies[i]->smoothing.Meets(copies[j]->smoothing))
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

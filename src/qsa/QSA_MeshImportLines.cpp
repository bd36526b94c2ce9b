// Lines of a mesh's lists as exporters write them. Each is read to its end before anything is done with
// it; one that looks any different is left to the loops of QSA_MeshImportLists.cpp, which read number by
// number what they can and report what they cannot.

#include "qsa/QSA_MeshImport.h"
#include "qsa/QSA_NumberRow.h"

bool QSA_MeshImport::TakeVertexLine(QSA_TextCursor& cursor, int32_t expected, const KRE_Mesh* mesh)
{
    QSA_TextCursor line = cursor;
    if (!line.TakeKeyword("*MESH_VERTEX"))
        return false;
    QSA_NumberRow row(line);
    int32_t index = 0;
    float position[3];
    if (!row.TakeInt(&index) || !row.TakeFloats(position))
        return false;
    CheckEntry(index, expected, kVertexList, mesh);
    std::copy_n(position, 3, EntryAt(builder.vertices, expected).position);
    cursor.at = row.Place();
    return true;
}

bool QSA_MeshImport::TakeTVertexLine(QSA_TextCursor& cursor, int32_t expected, const KRE_Mesh* mesh)
{
    QSA_TextCursor line = cursor;
    if (!line.TakeKeyword("*MESH_TVERT"))
        return false;
    QSA_NumberRow row(line);
    int32_t index = 0;
    float value[3];
    if (!row.TakeInt(&index) || !row.TakeFloats(value))
        return false;
    CheckEntry(index, expected, kTVertexList, mesh);
    EntryAt(builder.tVertices, expected) = {value[0], 1.0f - value[1], value[2]};
    cursor.at = row.Place();
    return true;
}

bool QSA_MeshImport::TakeTFaceLine(QSA_TextCursor& cursor, int32_t expected, const KRE_Mesh* mesh)
{
    if (!tFaceLines.Take(cursor) && !LearnTFaceLine(cursor))
        return false;
    const QSA_LineShape& shape = tFaceLines.Last();
    CheckEntry(shape.Number(0), expected, kTFaceList, mesh);
    QSA_TextureFace& face = EntryAt(builder.tFaces, expected);
    for (size_t c = 0; c < 3; ++c)
        face.vertex[c] = CutCorner(shape.Number(c + 1), kTFaceList);
    return true;
}

bool QSA_MeshImport::LearnTFaceLine(QSA_TextCursor& cursor)
{
    QSA_TextCursor line = cursor;
    QSA_LineShape& shape = tFaceLines.Last();
    shape.Start(line);
    if (!line.TakeKeyword("*MESH_TFACE"))
        return false;
    for (int number = 0; number < 4; ++number) {
        if (!shape.TakeInt(line))
            return false;
    }
    shape.Finish(line);
    cursor = line;
    return true;
}

/// A face with its smoothing groups and its material.
bool QSA_MeshImport::TakeFaceLine(QSA_TextCursor& cursor, int32_t expected, const KRE_Mesh* mesh)
{
    if (!faceLines.Take(cursor) && !LearnFaceLine(cursor))
        return false;
    const QSA_LineShape& shape = faceLines.Last();
    constexpr size_t kFirstGroup = 4; // behind the index and the corners
    const size_t last = shape.NumberCount() - 1;
    CheckEntry(shape.Number(0), expected, kFaceList, mesh);
    QSA_SourceFace& face = EntryAt(builder.faces, expected);
    for (size_t c = 0; c < 3; ++c)
        face.vertex[c] = CutCorner(shape.Number(c + 1), kFaceList);
    face.smoothing.Clear();
    for (size_t i = kFirstGroup; i < last; ++i)
        face.smoothing.Add(shape.Number(i));
    face.material = shape.Number(last);
    return true;
}

bool QSA_MeshImport::LearnFaceLine(QSA_TextCursor& cursor)
{
    QSA_TextCursor line = cursor;
    QSA_LineShape& shape = faceLines.Last();
    shape.Start(line);
    line.SkipLineRest();
    if (!line.TakeKeyword("*MESH_FACE") || !shape.TakeInt(line))
        return false;
    for (const char corner : {'A', 'B', 'C'}) {
        if (!line.TakeThrough(corner) || !line.TakeThrough(':') || !shape.TakeInt(line))
            return false;
    }
    line.SkipLineRest();
    if (!line.TakeKeyword("*MESH_SMOOTHING") || !LearnSmoothing(line, &shape))
        return false;
    line.SkipLineRest();
    if (!line.TakeKeyword("*MESH_MTLID") || !shape.TakeInt(line))
        return false;
    shape.Finish(line);
    cursor = line;
    return true;
}

/// Fewer groups than a line may have numbers, so never too many for a face.
bool QSA_MeshImport::LearnSmoothing(QSA_TextCursor& cursor, QSA_LineShape* shape)
{
    static_assert(QSA_LineShape::kMostNumbers - 4 <= kMaxSmoothingGroups);
    cursor.SkipSpace();
    if (*cursor.at == '*')
        return true;
    while (shape->TakeInt(cursor)) {
        cursor.SkipSpace();
        if (*cursor.at != ',')
            return true;
        ++cursor.at;
    }
    return false;
}

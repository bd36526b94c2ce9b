#include <algorithm>

#include "qsa/QSA_MeshImport.h"
#include "scene/KRE_Mesh.h"

namespace {

struct ListRules {
    const char* what;
    /// The fewest bytes that an entry takes: keyword, a delimiter, its index and values. A count
    /// that needs more than the rest of the file must be wrong.
    int32_t leastBytes;
    const char* tooMany;
    const char* wrongOrder;
};

constexpr ListRules kListRules[kMeshLists] = {
    {"vertices", 17, "Too many vertices", "Wrong vertex list order!"}, // *MESH_VERTEX 0,,,
    {"faces", 18, "Too many faces", "Wrong face list order!"},         // *MESH_FACE 0A:B:C:
    {"texture vertices", 16, "Too many t-vertices", "Wrong vertex list order!"}, // *MESH_TVERT 0,,,
    {"texture faces", 13, "Too many t-faces", "Wrong face list order!"},         // *MESH_TFACE 0
};

} // namespace

int32_t QSA_MeshImport::ParseMesh(KRE_Mesh* mesh)
{
    builder.Clear();
    std::fill(std::begin(counts), std::end(counts), QSA_MeshCounts{});
    smoothingCut = false;
    mesh->ownGeometry = 0;
    return text.ParseBlock([&](QSA_Token token) { return ParseMeshKeyword(token, mesh); });
}

int32_t QSA_MeshImport::ParseMeshKeyword(QSA_Token token, KRE_Mesh* mesh)
{
    switch (token) {
    case QSA_Token::MeshNumVertices:
        ReadCount(kVertexList, mesh);
        return 0;
    case QSA_Token::MeshNumFaces:
        ReadCount(kFaceList, mesh);
        return 0;
    case QSA_Token::MeshNumTVertices:
        ReadCount(kTVertexList, mesh);
        return 0;
    case QSA_Token::MeshNumTVFaces:
        ReadCount(kTFaceList, mesh);
        return 0;
    case QSA_Token::MeshVertexList:
        text.SkipTo('{');
        return ParseVertexList(mesh);
    case QSA_Token::MeshFaceList:
        text.SkipTo('{');
        return ParseFaceList(mesh);
    case QSA_Token::MeshTVertList:
        text.SkipTo('{');
        return ParseTVertexList(mesh);
    case QSA_Token::MeshTFaceList:
        mesh->ownGeometry = 1;
        builder.hasTextureFaces = true;
        text.SkipTo('{');
        return ParseTFaceList(mesh);
    case QSA_Token::MeshWeights:
        text.SkipTo('{');
        return ParseWeights(mesh);
    case QSA_Token::BoundingBoxMin:
        text.ReadVector(&mesh->boxMin);
        return 0;
    case QSA_Token::BoundingBoxMax:
        text.ReadVector(&mesh->boxMax);
        return 0;
    default:
        return 0;
    }
}

/// Reads a count and discards the list that an earlier count announced.
void QSA_MeshImport::ReadCount(QSA_MeshList list, const KRE_Mesh* mesh)
{
    int32_t number = 0;
    text.ReadInt(&number);
    const ListRules& rules = kListRules[list];
    if (number < 0 || number > text.BytesLeft() / rules.leastBytes)
        text.Error("Mesh '%s' can not have %i %s", mesh->name.c_str(), number, rules.what);
    if (list == kFaceList) {
        // Announced faces that are missing are dropped one by one, with a warning each. Limited by
        // the size of the file, they cannot cost more than it.
        announcedFaces += number;
        if (announcedFaces > text.TextSize())
            text.Error("Mesh '%s' can not have %i %s", mesh->name.c_str(), number, rules.what);
    }
    counts[list] = {number, true};

    const size_t room = static_cast<size_t>(number);
    switch (list) {
    case kVertexList:
        builder.vertices.clear();
        builder.weights.clear(); // they belong to the vertices
        builder.vertices.reserve(room);
        break;
    case kFaceList:
        builder.faces.clear();
        builder.faces.reserve(room);
        break;
    case kTVertexList:
        builder.tVertices.clear();
        builder.tVertices.reserve(room);
        break;
    default:
        builder.tFaces.clear();
        builder.tFaces.reserve(room);
        break;
    }
}

void QSA_MeshImport::RefuseEntry(int32_t index, int32_t expected, QSA_MeshList list,
                                 const KRE_Mesh* mesh)
{
    const ListRules& rules = kListRules[list];
    if (!counts[list].isKnown)
        text.Error("Mesh '%s' has %s ahead of their count: %i", mesh->name.c_str(), rules.what,
                   index);
    if (index != expected)
        text.Error("%s", rules.wrongOrder);
    text.Error("%s", rules.tooMany);
}

int32_t QSA_MeshImport::ParseVertexList(const KRE_Mesh* mesh)
{
    QSA_TextCursor cursor = text.Cursor();
    for (int32_t expected = 0;;) {
        if (TakeVertexLine(cursor, expected, mesh)) {
            ++expected;
            continue;
        }
        if (!cursor.TakeKeyword("*MESH_VERTEX")) {
            const QSA_Token token = text.NextToken(cursor);
            if (token == QSA_Token::BlockEnd || token == QSA_Token::EndOfFile)
                return token == QSA_Token::EndOfFile ? 1 : 0;
            if (token != QSA_Token::MeshVertex)
                continue;
        }
        int32_t index = 0;
        text.ReadInt(cursor, &index);
        CheckEntry(index, expected, kVertexList, mesh);
        text.ReadVector(cursor, EntryAt(builder.vertices, expected++).position);
    }
}

int32_t QSA_MeshImport::ParseFaceList(const KRE_Mesh* mesh)
{
    QSA_TextCursor cursor = text.Cursor();
    for (int32_t expected = 0;;) {
        if (TakeFaceLine(cursor, expected, mesh)) {
            ++expected;
            continue;
        }
        QSA_Token token = QSA_Token::MeshFace;
        cursor.SkipLineRest();
        if (cursor.TakeKeyword("*MESH_SMOOTHING"))
            token = QSA_Token::MeshSmoothing;
        else if (cursor.TakeKeyword("*MESH_MTLID"))
            token = QSA_Token::MeshMaterialId;
        else if (!cursor.TakeKeyword("*MESH_FACE"))
            token = text.NextToken(cursor);

        QSA_SourceFace* const last =
            expected > 0 ? &builder.faces[static_cast<size_t>(expected - 1)] : nullptr;
        switch (token) {
        case QSA_Token::BlockEnd:
        case QSA_Token::EndOfFile:
            text.MoveTo(cursor);
            return token == QSA_Token::EndOfFile ? 1 : 0;
        case QSA_Token::MeshFace:
            ParseFace(cursor, expected++, mesh);
            break;
        case QSA_Token::MeshSmoothing:
            if (last)
                ParseSmoothing(cursor, last, mesh);
            break;
        case QSA_Token::MeshMaterialId:
            if (last)
                text.ReadInt(cursor, &last->material);
            break;
        default:
            break;
        }
    }
}

/// A face's corners: each a letter, a colon and a vertex index. Edge flags after them are skipped
/// with the rest of the line.
void QSA_MeshImport::ParseFace(QSA_TextCursor& cursor, int32_t expected, const KRE_Mesh* mesh)
{
    int32_t index = 0;
    text.ReadInt(cursor, &index);
    CheckEntry(index, expected, kFaceList, mesh);
    QSA_SourceFace& face = EntryAt(builder.faces, expected);
    for (size_t c = 0; c < 3; ++c) {
        text.SkipTo(cursor, static_cast<char>('A' + c));
        text.SkipTo(cursor, ':');
        int32_t corner = 0;
        text.ReadInt(cursor, &corner);
        face.vertex[c] = CutCorner(corner, kFaceList);
    }
}

/// Group numbers separated by commas, or nothing at all.
void QSA_MeshImport::ParseSmoothing(QSA_TextCursor& cursor, QSA_SourceFace* face,
                                    const KRE_Mesh* mesh)
{
    face->smoothing.Clear();
    if (text.PeekBehindSpace(cursor) == '*')
        return;
    for (int32_t number = 0;; ++number) {
        int32_t group = 0;
        text.ReadInt(cursor, &group);
        if (number < kMaxSmoothingGroups) {
            face->smoothing.Add(group);
        } else if (!smoothingCut) {
            smoothingCut = true;
            text.Warning("More than %i smoothing groups on a face in mesh '%s'",
                         kMaxSmoothingGroups, mesh->name.c_str());
        }
        if (text.PeekBehindSpace(cursor) != ',')
            return;
        ++cursor.at;
    }
}

int32_t QSA_MeshImport::ParseTVertexList(const KRE_Mesh* mesh)
{
    QSA_TextCursor cursor = text.Cursor();
    for (int32_t expected = 0;;) {
        if (TakeTVertexLine(cursor, expected, mesh)) {
            ++expected;
            continue;
        }
        if (!cursor.TakeKeyword("*MESH_TVERT")) {
            const QSA_Token token = text.NextToken(cursor);
            if (token == QSA_Token::BlockEnd || token == QSA_Token::EndOfFile)
                return token == QSA_Token::EndOfFile ? 1 : 0;
            if (token != QSA_Token::MeshTVert)
                continue;
        }
        int32_t index = 0;
        text.ReadInt(cursor, &index);
        CheckEntry(index, expected, kTVertexList, mesh);
        float value[3];
        text.ReadVector(cursor, value);
        EntryAt(builder.tVertices, expected++) = {value[0], 1.0f - value[1], value[2]};
    }
}

int32_t QSA_MeshImport::ParseTFaceList(const KRE_Mesh* mesh)
{
    QSA_TextCursor cursor = text.Cursor();
    for (int32_t expected = 0;;) {
        if (TakeTFaceLine(cursor, expected, mesh)) {
            ++expected;
            continue;
        }
        if (!cursor.TakeKeyword("*MESH_TFACE")) {
            const QSA_Token token = text.NextToken(cursor);
            if (token == QSA_Token::BlockEnd || token == QSA_Token::EndOfFile)
                return token == QSA_Token::EndOfFile ? 1 : 0;
            if (token != QSA_Token::MeshTFace)
                continue;
        }
        int32_t index = 0;
        text.ReadInt(cursor, &index);
        CheckEntry(index, expected, kTFaceList, mesh);
        QSA_TextureFace& face = EntryAt(builder.tFaces, expected++);
        for (uint16_t& vertex : face.vertex) {
            int32_t corner = 0;
            text.ReadInt(cursor, &corner);
            vertex = CutCorner(corner, kTFaceList);
        }
    }
}

/// Corners have 16 bits; those that are truncated are counted.
uint16_t QSA_MeshImport::CutCorner(int32_t corner, QSA_MeshList list)
{
    const auto cut = static_cast<uint16_t>(corner);
    if (cut == corner)
        return cut;
    QSA_MeshCounts& count = counts[list];
    count.largestCorner =
        count.wrappedCorners == 0 ? corner : std::max(count.largestCorner, corner);
    ++count.wrappedCorners;
    return cut;
}

/// One line per list: a mesh whose corners wrap has thousands of them.
void QSA_MeshImport::WarnOfWrappedCorners(const KRE_Mesh* mesh)
{
    for (const QSA_MeshList list : {kFaceList, kTFaceList}) {
        if (counts[list].wrappedCorners > 0)
            text.Warning("Mesh '%s': %i corners of its %s wrap at 16 bits, the largest is %i",
                         mesh->name.c_str(), counts[list].wrappedCorners, kListRules[list].what,
                         counts[list].largestCorner);
    }
}

/// Pads the lists to their counts with zeroed entries and checks every index against its list.
void QSA_MeshImport::CheckLists(const KRE_Mesh* mesh)
{
    const int32_t faceNumber = counts[kFaceList].number;
    if (faceNumber == 0)
        return;
    builder.faces.resize(static_cast<size_t>(faceNumber));
    uint32_t highest = 0;
    for (const QSA_SourceFace& face : builder.faces) {
        for (const uint16_t vertex : face.vertex)
            highest = std::max<uint32_t>(highest, vertex);
    }
    if (static_cast<int64_t>(highest) >= counts[kVertexList].number)
        text.Error("Mesh '%s' has a face with vertex %u of %i", mesh->name.c_str(), highest,
                   counts[kVertexList].number);
    if (builder.vertices.size() <= highest)
        builder.vertices.resize(size_t{highest} + 1);
    if (!builder.hasTextureFaces)
        return;

    if (counts[kTFaceList].number < faceNumber)
        text.Error("Mesh '%s' has %i texture faces for %i faces", mesh->name.c_str(),
                   counts[kTFaceList].number, faceNumber);
    if (builder.tFaces.size() < static_cast<size_t>(faceNumber))
        builder.tFaces.resize(static_cast<size_t>(faceNumber));
    highest = 0;
    for (const QSA_TextureFace& face : builder.tFaces) {
        for (const uint16_t vertex : face.vertex)
            highest = std::max<uint32_t>(highest, vertex);
    }
    if (static_cast<int64_t>(highest) >= counts[kTVertexList].number)
        text.Error("Mesh '%s' has a texture face with vertex %u of %i", mesh->name.c_str(), highest,
                   counts[kTVertexList].number);
    if (builder.tVertices.size() <= highest)
        builder.tVertices.resize(size_t{highest} + 1);
}

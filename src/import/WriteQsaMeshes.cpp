#include "import/ModelPose.h"
#include "import/QsaWriter.h"

namespace {

/// The inverse of a matrix that mirrors one axis is itself.
constexpr ModelMatrix kMirrorX = {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

} // namespace

void QsaWriter::WriteMesh(const QsaNode& node)
{
    const MeshPiece& piece = *node.piece;
    text.Open("*MESH");
    text.Line("*MESH_NUMVERTEX").AddWhole(static_cast<long long>(piece.vertices.size()));
    text.Line("*MESH_NUMFACES").AddWhole(static_cast<long long>(piece.faces.size()));
    text.Open("*MESH_VERTEX_LIST");
    for (size_t i = 0; i < piece.vertices.size(); ++i) {
        text.Line("*MESH_VERTEX").AddWhole(static_cast<long long>(i));
        for (const float part : piece.vertices[i])
            text.AddExact(part);
    }
    text.Close();
    WriteFaces(piece);
    WriteTexCoords(piece);
    WriteWeights(node);
    text.Close();
}

void QsaWriter::WriteFaces(const MeshPiece& piece)
{
    text.Open("*MESH_FACE_LIST");
    for (size_t i = 0; i < piece.faces.size(); ++i) {
        const MeshPiece::Face& face = piece.faces[i];
        const auto corner = [&](size_t c) { return std::to_string(face.vertex[c]); };
        text.Line("*MESH_FACE")
            .AddPlain(std::to_string(i) + ":")
            .AddPlain("A: " + corner(0) + " B: " + corner(1) + " C: " + corner(2))
            .AddPlain("*MESH_SMOOTHING " + std::to_string(face.group))
            .AddPlain("*MESH_MTLID " + std::to_string(face.material));
    }
    text.Close();
}

/// The scene format's v points upward.
void QsaWriter::WriteTexCoords(const MeshPiece& piece)
{
    if (piece.texCoords.empty())
        return;
    text.Line("*MESH_NUMTVERTEX").AddWhole(static_cast<long long>(piece.texCoords.size()));
    text.Open("*MESH_TVERTLIST");
    for (size_t i = 0; i < piece.texCoords.size(); ++i) {
        const double u = piece.texCoords[i][0];
        const double v = 1.0 - double{piece.texCoords[i][1]};
        text.Line("*MESH_TVERT").AddWhole(static_cast<long long>(i)).Add(u).Add(v).Add(0);
    }
    text.Close();
    text.Line("*MESH_NUMTVFACES").AddWhole(static_cast<long long>(piece.faces.size()));
    text.Open("*MESH_TFACELIST");
    for (size_t i = 0; i < piece.faces.size(); ++i) {
        const std::array<uint32_t, 3>& corners = piece.faces[i].texture;
        text.Line("*MESH_TFACE").AddWhole(static_cast<long long>(i));
        for (const uint32_t corner : corners)
            text.AddWhole(corner);
    }
    text.Close();
}

/// Only the product of both matrices moves vertices; the first one tells whether the bones mirror the mesh.
void QsaWriter::WriteWeights(const QsaNode& node)
{
    if (node.bones.empty())
        return;
    text.Open("*MESH_WEIGHTS");
    WriteMatrix("*MESH_INIT_TM", node.mirrorsBind ? kMirrorX : kModelIdentity);
    for (const QsaBone& bone : node.bones) {
        text.Open("*BONE_WEIGHT");
        text.Line("*BONE_NAME").AddText(bone.name);
        WriteMatrix("*BONE_INIT_TM", node.mirrorsBind ? Product(kMirrorX, bone.bind) : bone.bind);
        const MeshPiece& piece = *node.piece;
        for (size_t i = 0; i < piece.weights.size(); ++i) {
            for (const ModelWeight& weight : piece.weights[i]) {
                if (weight.joint == bone.joint)
                    text.Line("*INDEX_WEIGHT")
                        .AddWhole(static_cast<long long>(i))
                        .Add(weight.weight);
            }
        }
        text.Close();
    }
    text.Close();
}

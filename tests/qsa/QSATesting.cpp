#include "tests/qsa/QSATesting.h"

#include <sstream>

namespace {

/// The corners of each side, in order as seen from outside.
constexpr int kSides[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                              {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};

void WriteTexturePart(std::ostringstream& out, const MeshText& mesh)
{
    out << "*MESH_NUMTVERTEX " << mesh.tVertices.size() << "\n*MESH_TVERTLIST {\n";
    for (size_t i = 0; i < mesh.tVertices.size(); ++i)
        out << "*MESH_TVERT " << i << ' ' << mesh.tVertices[i][0] << ' ' << mesh.tVertices[i][1]
            << " 0\n";
    out << "}\n*MESH_NUMTVFACES " << mesh.tFaces.size() << "\n*MESH_TFACELIST {\n";
    for (size_t i = 0; i < mesh.tFaces.size(); ++i)
        out << "*MESH_TFACE " << i << ' ' << mesh.tFaces[i][0] << ' ' << mesh.tFaces[i][1] << ' '
            << mesh.tFaces[i][2] << '\n';
    out << "}\n";
}

} // namespace

const std::array<D3DXVECTOR3, 6> kCubeSides = {D3DXVECTOR3(0, 0, -1), D3DXVECTOR3(0, 0, 1),
                                               D3DXVECTOR3(0, -1, 0), D3DXVECTOR3(0, 1, 0),
                                               D3DXVECTOR3(-1, 0, 0), D3DXVECTOR3(1, 0, 0)};

std::string MeshText::MeshBlock() const
{
    std::ostringstream out;
    out << "*MESH {\n*MESH_NUMVERTEX " << vertices.size() << "\n*MESH_NUMFACES " << faces.size()
        << "\n*MESH_VERTEX_LIST {\n";
    for (size_t i = 0; i < vertices.size(); ++i)
        out << "*MESH_VERTEX " << i << ' ' << vertices[i][0] << ' ' << vertices[i][1] << ' '
            << vertices[i][2] << '\n';
    out << "}\n*MESH_FACE_LIST {\n";
    for (size_t i = 0; i < faces.size(); ++i)
        out << "*MESH_FACE " << i << ": A: " << faces[i].a << " B: " << faces[i].b
            << " C: " << faces[i].c << " AB: 1 BC: 1 CA: 0 *MESH_SMOOTHING " << faces[i].smoothing
            << " *MESH_MTLID " << faces[i].material << '\n';
    out << "}\n";
    if (!tFaces.empty())
        WriteTexturePart(out, *this);
    if (!weights.empty())
        out << "*MESH_WEIGHTS {\n" << weights << "}\n";
    out << "}\n";
    return out.str();
}

std::string MeshText::Text() const
{
    return "*GEOMOBJECT {\n*NODE_NAME \"" + name + "\"\n" + MeshBlock() + more + "}\n";
}

MeshText Cube(const std::vector<std::string>& smoothing)
{
    MeshText cube;
    cube.name = "Cube";
    for (int i = 0; i < 8; ++i)
        cube.vertices.push_back({double(i & 1), double(i >> 1 & 1), double(i >> 2)});
    for (size_t side = 0; side < 6; ++side) {
        const int(&c)[4] = kSides[side];
        const std::string& groups = smoothing[smoothing.size() == 1 ? 0 : side];
        cube.faces.push_back({c[0], c[1], c[2], groups});
        cube.faces.push_back({c[0], c[2], c[3], groups});
    }
    return cube;
}

MeshText Triangle()
{
    MeshText mesh;
    mesh.name = "Triangle";
    mesh.vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    mesh.faces = {{0, 1, 2, "1"}};
    return mesh;
}

std::string Named(const MeshText& mesh, const char* name, const std::string& more)
{
    MeshText named = mesh;
    named.name = name;
    named.more += more;
    return named.Text();
}

std::string Clone(const std::string& name, const std::string& source, const std::string& more)
{
    return "*GEOMOBJECT { *NODE_NAME \"" + name + "\" *CLONE \"" + source + "\" " + more + " }\n";
}

const char* const kTwoParts =
    "*NUMSUBMTLS 2 *SUBMATERIAL 0 { *MATERIAL_DIFFUSE 1 0 0 } *SUBMATERIAL 1 "
    "{ *MATERIAL_DIFFUSE 0 1 0 }";

MeshContents ReadMesh(KRE_Mesh& mesh)
{
    MeshContents contents;
    mesh.LockAll(D3DLOCK_READONLY);
    for (int32_t i = 0; i < mesh.vertexCount; ++i) {
        MeshContents::Vertex vertex = {*mesh.Position(i), *mesh.Normal(i), 0, 0, {}, {}};
        if (mesh.textureCount > 0) {
            vertex.u = mesh.TexCoord(i)[0];
            vertex.v = mesh.TexCoord(i)[1];
        }
        if (mesh.blendCount > 0) {
            std::copy_n(mesh.BlendIndices(i), 4, vertex.bones.begin());
            vertex.weights.assign(mesh.Weights(i), mesh.Weights(i) + mesh.blendCount - 1);
        }
        contents.vertices.push_back(vertex);
    }
    for (int32_t i = 0; i < mesh.faceCount; ++i) {
        contents.faces.push_back({mesh.Face(i)[0], mesh.Face(i)[1], mesh.Face(i)[2]});
        contents.attributes.push_back(*mesh.Attribute(i));
    }
    mesh.UnlockAll();
    return contents;
}

void QSALoaderTest::Load(const std::string& text, uint32_t flags)
{
    directory.Write("scene.qsa", text);
    EXPECT_EQ(loader.Load(scene, "scene.qsa", flags), 1);
    EXPECT_EQ(FaultsOf(scene), "");
}

std::string QSALoaderTest::LoadError(const std::string& text, uint32_t flags)
{
    directory.Write("scene.qsa", text);
    return RaisedBy([&] { loader.Load(scene, "scene.qsa", flags); });
}

QSA_SceneText& QSALoaderTest::Opened(const std::string& text)
{
    opened.Close();
    directory.Write("scene.qsa", text);
    opened.SetFileName("scene.qsa");
    opened.Open("scene.qsa");
    return opened;
}

std::vector<std::string> QSALoaderTest::AllWarnings() const
{
    std::vector<std::string> warnings;
    std::istringstream lines(LogText());
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, 8, "Warning:") != 0)
            continue;
        const size_t label = line.find(": ");
        const size_t note = line.rfind("(Time:");
        std::string text = line.substr(label + 2, note - label - 2);
        if (text.compare(0, 11, "scene.qsa: ") == 0)
            text.erase(0, 11);
        warnings.push_back(text);
    }
    return warnings;
}

int QSALoaderTest::Warnings(const std::string& text) const
{
    int number = 0;
    for (const std::string& warning : AllWarnings())
        number += warning == text ? 1 : 0;
    return number;
}

std::string MaterialList(const std::vector<std::string>& materials)
{
    std::ostringstream out;
    out << "*MATERIAL_LIST {\n*MATERIAL_COUNT " << materials.size() << '\n';
    for (size_t i = 0; i < materials.size(); ++i)
        out << "*MATERIAL " << i << " {\n" << materials[i] << "\n}\n";
    out << "}\n";
    return out.str();
}

std::string Helper(const std::string& inside)
{
    return "*HELPEROBJECT {\n" + inside + "\n}\n";
}

std::string OnePixelBitmap()
{
    std::string bytes("BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0", 30);
    return bytes + std::string(24, '\0') + std::string("\x10\x20\x30\0", 4);
}

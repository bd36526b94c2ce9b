#include <bit>
#include <random>

#include "tests/qsa/QSATesting.h"
#include "tests/support/HostCost.h"

namespace {

std::string MeshOf(const std::string& inside)
{
    return "*GEOMOBJECT { *NODE_NAME \"m\" *MESH { " + inside + " } }";
}

/// Room for any small count.
const std::string kPlenty(200, ' ');

using QSA_MeshImportListsTest = QSALoaderTest;

} // namespace

TEST_F(QSA_MeshImportListsTest, ListsMustBeInOrderAndWithinTheirCounts)
{
    const struct {
        const char* what;
        const char* lists;
        const char* expected;
    } cases[] = {
        {"vertex order", "*MESH_NUMVERTEX 3 *MESH_VERTEX_LIST { *MESH_VERTEX 1 0 0 0 }",
         "Wrong vertex list order!"},
        {"vertex twice",
         "*MESH_NUMVERTEX 3 *MESH_VERTEX_LIST { *MESH_VERTEX 0 0 0 0 *MESH_VERTEX 0 0 0 0 }",
         "Wrong vertex list order!"},
        {"too many vertices",
         "*MESH_NUMVERTEX 1 *MESH_VERTEX_LIST { *MESH_VERTEX 0 0 0 0 *MESH_VERTEX 1 0 0 0 }",
         "Too many vertices"},
        {"face order", "*MESH_NUMFACES 3 *MESH_FACE_LIST { *MESH_FACE 1: A: 0 B: 0 C: 0 }",
         "Wrong face list order!"},
        {"too many faces",
         "*MESH_NUMFACES 1 *MESH_FACE_LIST { *MESH_FACE 0: A: 0 B: 0 C: 0 *MESH_FACE 1: A: 0 B: 0 }",
         "Too many faces"},
        {"texture vertex order", "*MESH_NUMTVERTEX 3 *MESH_TVERTLIST { *MESH_TVERT 2 0 0 0 }",
         "Wrong vertex list order!"},
        {"too many texture vertices",
         "*MESH_NUMTVERTEX 1 *MESH_TVERTLIST { *MESH_TVERT 0 0 0 0 *MESH_TVERT 1 0 0 0 }",
         "Too many t-vertices"},
        {"texture face order", "*MESH_NUMTVFACES 3 *MESH_TFACELIST { *MESH_TFACE -1 0 0 0 }",
         "Wrong face list order!"},
        {"too many texture faces",
         "*MESH_NUMTVFACES 1 *MESH_TFACELIST { *MESH_TFACE 0 0 0 0 *MESH_TFACE 1 0 0 0 }",
         "Too many t-faces"},
        {"vertices ahead of their count", "*MESH_VERTEX_LIST { *MESH_VERTEX 0 0 0 0 }",
         "Mesh 'm' has vertices ahead of their count: 0"},
        {"faces ahead of their count", "*MESH_FACE_LIST { *MESH_FACE 0: A: 0 B: 0 C: 0 }",
         "Mesh 'm' has faces ahead of their count: 0"},
        {"texture vertices ahead of their count", "*MESH_TVERTLIST { *MESH_TVERT 0 0 0 0 }",
         "Mesh 'm' has texture vertices ahead of their count: 0"},
        {"texture faces ahead of their count", "*MESH_TFACELIST { *MESH_TFACE 0 0 0 0 }",
         "Mesh 'm' has texture faces ahead of their count: 0"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(LoadError(MeshOf(c.lists) + kPlenty), std::string("scene.qsa: ") + c.expected)
            << c.what;
}

TEST_F(QSA_MeshImportListsTest, CountsThatCannotBeTrueAreErrors)
{
    const struct {
        const char* keyword;
        const char* what;
        int32_t leastBytes; ///< of an entry: keyword, a delimiter, its index and values
    } lists[] = {{"*MESH_NUMVERTEX ", "vertices", 17},
                 {"*MESH_NUMFACES ", "faces", 18},
                 {"*MESH_NUMTVERTEX ", "texture vertices", 16},
                 {"*MESH_NUMTVFACES ", "texture faces", 13}};
    for (const auto& list : lists) {
        for (const char* number : {"-1", "-2147483648", "2147483647", "1000000"}) {
            EXPECT_EQ(LoadError(MeshOf(list.keyword + std::string(number)) + kPlenty),
                      std::string("scene.qsa: Mesh 'm' can not have ") + number + ' ' + list.what);
        }
        // Exactly enough bytes after the number, and one too few.
        const std::string head =
            std::string("*GEOMOBJECT { *NODE_NAME \"m\" *MESH { ") + list.keyword + "3";
        const size_t enough = static_cast<size_t>(3 * list.leastBytes);
        EXPECT_THAT(LoadError(head + std::string(enough, ' ')),
                    testing::Not(testing::HasSubstr("3")));
        EXPECT_EQ(LoadError(head + std::string(enough - 1, ' ')),
                  std::string("scene.qsa: Mesh 'm' can not have 3 ") + list.what);
    }
}

TEST_F(QSA_MeshImportListsTest, CornersOutsideTheirListsAreErrors)
{
    MeshText mesh = Triangle();
    mesh.faces[0].b = 3;
    EXPECT_EQ(LoadError(mesh.Text()), "scene.qsa: Mesh 'Triangle' has a face with vertex 3 of 3");
    mesh.faces[0].b = -1; // 65535 in 16 bits
    EXPECT_EQ(LoadError(mesh.Text()),
              "scene.qsa: Mesh 'Triangle' has a face with vertex 65535 of 3");

    mesh = Triangle();
    mesh.tVertices = {{0, 0}};
    mesh.tFaces = {{0, 0, 1}};
    EXPECT_EQ(LoadError(mesh.Text()),
              "scene.qsa: Mesh 'Triangle' has a texture face with vertex 1 of 1");
    mesh.faces.push_back({0, 1, 2, "1"});
    mesh.tFaces = {{0, 0, 0}};
    EXPECT_EQ(LoadError(mesh.Text()), "scene.qsa: Mesh 'Triangle' has 1 texture faces for 2 faces");
    mesh.faces.pop_back();
    mesh.tFaces = {{0, 0, 0}, {0, 0, 9}}; // one that no face uses
    EXPECT_EQ(LoadError(mesh.Text()),
              "scene.qsa: Mesh 'Triangle' has a texture face with vertex 9 of 1");
}

TEST_F(QSA_MeshImportListsTest, FaceMayHaveAllItsCornersOnTheOnlyVertex)
{
    // The list is sound; the face is a point, and no other one uses a vertex.
    MeshText mesh = Triangle();
    mesh.vertices.resize(1);
    mesh.faces = {{0, 0, 0, "1"}};
    EXPECT_EQ(LoadError(mesh.Text()), "scene.qsa: Mesh without vertices: 'Triangle'");
    EXPECT_EQ(Warnings("Invalid face 0 in mesh 'Triangle'"), 1);
}

TEST_F(QSA_MeshImportListsTest, FourthNumberOfATextureFaceIsSkipped)
{
    MeshText mesh = Triangle();
    mesh.tVertices = {{0, 0}, {1, 0}, {0, 1}};
    mesh.tFaces = {{0, 1, 2}};
    std::string text = mesh.Text();
    text.replace(text.find("*MESH_TFACE 0 0 1 2"), 19, "*MESH_TFACE 0 0 1 2 9");
    EXPECT_EQ(LoadError(text), "no error"); // there is no texture vertex 9
}

TEST_F(QSA_MeshImportListsTest, CornersAreCutTo16Bits)
{
    MeshText mesh = Triangle();
    mesh.faces[0] = {65536, 65537 + 65536, -65534, "1"}; // 0, 1 and 2
    Load(mesh.Text());
    EXPECT_EQ(Mesh(0).faceCount, 1);
    EXPECT_EQ(Mesh(0).vertexCount, 3);
    EXPECT_EQ(AllWarnings(),
              std::vector<std::string>{"Mesh 'Triangle': 3 corners of its faces wrap at 16 "
                                       "bits, the largest is 131073"});
}

TEST_F(QSA_MeshImportListsTest, EachListThatWrapsIsReportedOnce)
{
    const std::string start = "Mesh 'Triangle': ";
    MeshText mesh = Triangle();
    mesh.tVertices = {{0, 0}, {1, 0}, {0, 1}};
    mesh.tFaces = {{65537, 2, 65536}}; // 1, 2 and 0
    Load(mesh.Text());
    EXPECT_EQ(AllWarnings(),
              std::vector<std::string>{start + "2 corners of its texture faces wrap at 16 "
                                               "bits, the largest is 65537"});
    // Another mesh starts afresh, and an index of 65535 fits.
    mesh.name = "Square";
    mesh.tFaces = {{0, 1, 2}};
    mesh.faces[0].c = -65534; // 2
    Load(mesh.Text());
    EXPECT_EQ(
        Warnings("Mesh 'Square': 1 corners of its faces wrap at 16 bits, the largest is -65534"),
        1);
    EXPECT_EQ(AllWarnings().size(), 2u);
    mesh.faces[0].c = 65535;
    EXPECT_EQ(LoadError(mesh.Text()), "scene.qsa: Mesh 'Square' has a face with vertex 65535 of 3");
    EXPECT_EQ(AllWarnings().size(), 2u);
}

TEST_F(QSA_MeshImportListsTest, WrapIsReportedBeforeTheErrorItLeadsTo)
{
    MeshText mesh = Triangle();
    mesh.faces[0].b = 65536 + 7;
    EXPECT_EQ(LoadError(mesh.Text()), "scene.qsa: Mesh 'Triangle' has a face with vertex 7 of 3");
    EXPECT_EQ(
        Warnings("Mesh 'Triangle': 1 corners of its faces wrap at 16 bits, the largest is 65543"),
        1);
}

TEST_F(QSA_MeshImportListsTest, AnnouncedFaceThatIsNeverGivenIsDegenerate)
{
    std::string text = Triangle().Text();
    text.replace(text.find("*MESH_NUMFACES 1"), 16, "*MESH_NUMFACES 2");
    Load(text);
    EXPECT_EQ(Mesh(0).faceCount, 1);
    EXPECT_EQ(Warnings("Invalid face 1 in mesh 'Triangle'"), 1);
}

TEST_F(QSA_MeshImportListsTest, AnnouncedVertexThatIsNeverGivenIsTheOrigin)
{
    MeshText mesh = Triangle();
    mesh.vertices = {{1, 0, 0}, {0, 1, 0}, {7, 7, 7}};
    std::string text = mesh.Text();
    text.replace(text.find("*MESH_VERTEX 2 7 7 7"), 20, "*OTHER 2 7 7 7");
    Load(text);
    ExpectVec3(Mesh(0).boxMin, 0, 0, 0);
    ExpectVec3(Mesh(0).boxMax, 1, 1, 0);
}

TEST_F(QSA_MeshImportListsTest, EdgeFlagsAndOtherWordsOfAFaceAreSkipped)
{
    std::string text = Triangle().Text();
    const size_t at = text.find("AB: 1");
    text.insert(at,
                "*MESH_EDGES { *MESH_FACE 5 } plain words that go on for longer than any line has "
                "flags, and then some more of them ");
    Load(text);
    EXPECT_EQ(Mesh(0).faceCount, 1);
}

TEST_F(QSA_MeshImportListsTest, NinthSmoothingGroupIsDroppedWithOneWarningForEachMesh)
{
    // Only the first eight are kept: group 8 joins, group 9 does not.
    for (const auto& [second, vertices] : {std::pair{"8", 3}, {"9", 6}}) {
        MeshText mesh = Triangle();
        mesh.faces[0].smoothing = "1,2,3,4,5,6,7,8,9,10";
        mesh.faces.push_back({0, 1, 2, second});
        mesh.faces.push_back({0, 1, 2, "1,2,3,4,5,6,7,8,9"});
        Load(mesh.Text());
        EXPECT_EQ(Mesh(0).vertexCount, vertices) << second;
    }
    EXPECT_EQ(Warnings("More than 8 smoothing groups on a face in mesh 'Triangle'"), 2);
}

TEST_F(QSA_MeshImportListsTest, SmoothingGroupsAreHeldModulo256)
{
    MeshText mesh = Triangle();
    mesh.faces[0].smoothing = "3";
    mesh.faces.push_back({0, 1, 2, "259"});
    mesh.faces.push_back({0, 1, 2, "-253 , 7"});
    Load(mesh.Text());
    EXPECT_EQ(Mesh(0).vertexCount, 3);
}

TEST_F(QSA_MeshImportListsTest, SmoothingAndMaterialBelongToTheLastFace)
{
    // Before any face they have no effect.
    std::string text = Triangle().Text();
    text.insert(text.find("*MESH_FACE 0"), "*MESH_SMOOTHING 1 *MESH_MTLID 4 ");
    Load(text);
    EXPECT_EQ(Mesh(0).faceCount, 1);
}

TEST_F(QSA_MeshImportListsTest, SecondListOfSmoothingGroupsReplacesTheFirst)
{
    // Faces share their corners where their groups meet.
    const struct {
        const char* what;
        const char* first;
        const char* second; ///< of the next face
        int32_t vertices;
    } cases[] = {
        {"the last list counts", "1\n*MESH_SMOOTHING 2", "2", 3},
        {"the first one does not", "1\n*MESH_SMOOTHING 2", "1", 6},
        {"an empty one takes all away", "1\n*MESH_SMOOTHING", "1", 6},
    };
    for (const auto& c : cases) {
        MeshText mesh = Triangle();
        mesh.faces[0].smoothing = c.first;
        mesh.faces.push_back({0, 1, 2, c.second});
        Load(mesh.Text());
        EXPECT_EQ(Mesh(0).vertexCount, c.vertices) << c.what;
    }
}

TEST_F(QSA_MeshImportListsTest, AsManyFacesAsTheFileHasBytesMayBeAnnouncedInAll)
{
    // 20 times 1000 in a file of 20,000 bytes: each count has the 18,000 bytes it needs after it.
    const auto fileThatAnnounces = [](int32_t last) {
        std::string text = "*GEOMOBJECT { *NODE_NAME \"m\" *MESH { ";
        for (int i = 0; i < 19; ++i)
            text += "*MESH_NUMFACES 1000 ";
        text += "*MESH_NUMFACES " + std::to_string(last) + " *MESH_NUMFACES 0";
        text.resize(19998, ' ');
        return text + "}}";
    };
    EXPECT_EQ(LoadError(fileThatAnnounces(1000)), "no error");
    EXPECT_EQ(LoadError(fileThatAnnounces(1001)), "scene.qsa: Mesh 'm' can not have 1001 faces");
}

TEST_F(QSA_MeshImportListsTest, SecondMeshBlockReplacesTheFirst)
{
    std::string text =
        "*GEOMOBJECT { *NODE_NAME \"m\" " + Cube({"1"}).MeshBlock() + Triangle().MeshBlock() + "}";
    Load(text);
    EXPECT_EQ(Mesh(0).faceCount, 1);
    EXPECT_EQ(Mesh(0).vertexCount, 3);
}

TEST_F(QSA_MeshImportListsTest, NewCountDiscardsThePreviousList)
{
    std::string text = Triangle().Text();
    const size_t faces = text.find("*MESH_FACE_LIST");
    text.insert(faces,
                "*MESH_NUMVERTEX 3 *MESH_VERTEX_LIST { *MESH_VERTEX 0 5 0 0 *MESH_VERTEX 1 6 0 "
                "0 *MESH_VERTEX 2 5 1 0 } ");
    Load(text);
    ExpectVec3(Mesh(0).boxMin, 5, 0, 0);
}

TEST_F(QSA_MeshImportListsTest, NumberStylesOfExportersGiveTheSameMesh)
{
    const std::string plain = Triangle().Text();
    Load(plain);
    const MeshContents expected = ReadMesh(Mesh(0));
    for (const char* number :
         {"1.0000", "1.000000e+00", "1e0", "+1", "10.0E-1", "0x1", "1.", "\t1"}) {
        std::string text = plain;
        text.replace(text.find("*MESH_VERTEX 1 1"), 16, "*MESH_VERTEX 1 " + std::string(number));
        Load(text);
        const MeshContents contents = ReadMesh(Mesh(0));
        for (size_t i = 0; i < 3; ++i)
            EXPECT_EQ(contents.Corner(0, i).position.x, expected.Corner(0, i).position.x) << number;
    }
}

namespace {

std::string Replaced(std::string text, const std::string& from, const std::string& to)
{
    for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

/// The text as the loops over single numbers read it: no line begins as exporters write it.
std::string NotInLines(std::string text)
{
    for (const char* keyword : {"VERTEX", "TVERT", "TFACE"})
        text = Replaced(text, std::string("*MESH_") + keyword, std::string("*mesh_") + keyword);
    return Replaced(text, "*MESH_SMOOTHING", "*mesh_smoothing");
}

const char* const kThreeLines =
    "*MESH_NUMVERTEX 4\n*MESH_VERTEX_LIST {\n"
    "\t*MESH_VERTEX    0\t-1.500000\t0.250000\t10.000000\n"
    "\t*MESH_VERTEX    1\t2.000000\t0.250000\t10.000000\n"
    "\t*MESH_VERTEX    2\t2.000000\t-0.750000\t11.000000\n}\n"
    "*MESH_NUMFACES 4\n*MESH_FACE_LIST {\n"
    "\t*MESH_FACE    0:    A:    0 B:    1 C:    2 AB:    1 BC:    1 CA:    0\t *MESH_SMOOTHING 1 "
    "\t*MESH_MTLID 0\n"
    "\t*MESH_FACE    1:    A:    1 B:    0 C:    2 AB:    0 BC:    1 CA:    0\t *MESH_SMOOTHING 2 "
    "\t*MESH_MTLID 3\n"
    "\t*MESH_FACE    2:    A:    2 B:    1 C:    0 AB:    0 BC:    1 CA:    0\t *MESH_SMOOTHING "
    "1,2 \t*MESH_MTLID 1\n}\n"
    "*MESH_NUMTVERTEX 3\n*MESH_TVERTLIST {\n"
    "\t*MESH_TVERT 0\t0.000000\t0.500000\t0.000000\n"
    "\t*MESH_TVERT 1\t1.000000\t0.250000\t0.000000\n"
    "\t*MESH_TVERT 2\t0.125000\t1.000000\t0.000000\n}\n"
    "*MESH_NUMTVFACES 4\n*MESH_TFACELIST {\n"
    "\t*MESH_TFACE 0\t0\t1\t2\n\t*MESH_TFACE 1\t2\t1\t0\n\t*MESH_TFACE 2\t1\t1\t1\n}\n";

/// Loads a mesh and tells everything that its lists decide.
class QSA_MeshImportLinesTest : public QSALoaderTest {
protected:
    std::string Outcome(const std::string& lists)
    {
        scene.Reset();
        loader.Warning("Outcome %i", ++outcomes); // what follows repeats nothing
        const size_t before = AllWarnings().size();
        std::string outcome = LoadError(MaterialList({kTwoParts}) +
                                        MeshOf(lists + "} *MATERIAL_REF 0 *X {") + kPlenty);
        if (scene.meshes.Count() == 1 && Mesh(0).mesh) {
            const MeshContents contents = ReadMesh(Mesh(0));
            for (const MeshContents::Vertex& v : contents.vertices) {
                for (const float value : {v.position.x, v.position.y, v.position.z, v.normal.x,
                                          v.normal.y, v.normal.z, v.u, v.v})
                    outcome += ' ' + std::to_string(std::bit_cast<uint32_t>(value));
            }
            for (const auto& face : contents.faces)
                outcome += '\n' + std::to_string(face[0]) + ' ' + std::to_string(face[1]) + ' ' +
                           std::to_string(face[2]);
            for (const DWORD attribute : contents.attributes)
                outcome += '/' + std::to_string(attribute);
        }
        const std::vector<std::string> warnings = AllWarnings();
        for (size_t i = before; i < warnings.size(); ++i)
            outcome += '\n' + warnings[i];
        return outcome;
    }

private:
    int outcomes = 0;
};

} // namespace

TEST_F(QSA_MeshImportLinesTest, LinesReadAtOnceGiveWhatTheirNumbersGive)
{
    const std::string expected = Outcome(NotInLines(kThreeLines));
    EXPECT_THAT(expected, testing::HasSubstr("/1"));
    EXPECT_EQ(Outcome(kThreeLines), expected);
    EXPECT_EQ(Outcome(Replaced(kThreeLines, "\n", "\r\n")), expected);
    EXPECT_EQ(Outcome(Replaced(kThreeLines, "\t", "  ")), expected);
}

TEST_F(QSA_MeshImportLinesTest, OddLinesAreReadNumberByNumber)
{
    const struct {
        const char* from;
        const char* to;
    } cases[] = {
        {"-1.500000", "-1.5e0"},
        {"-1.500000", "-1.50000000000"},
        {"0.250000\t", "0.25,\t"},
        {"10.000000", "+10.0"},
        {"10.000000", "1e400"},
        {"10.000000", "0x10"},
        {"10.000000", "nan"},
        {"10.000000", "10.0 12"},
        {"\t2.000000", " 2"},
        {"   1:", "  -1:"},
        {"B:    1", "B: 100000"},
        {"B:    1", "B:"},
        {"SMOOTHING 2 ", "SMOOTHING "},
        {"SMOOTHING 2 ", "SMOOTHING 2,3,4,5,6,7,8,9,10 "},
        {"SMOOTHING 2 ", "SMOOTHING -1 "},
        {"MTLID 3", "MTLID -3"},
        {"MTLID 3", "MTLID"},
        {"MTLID 3", "MTLID 99999999999"},
        {"CA:    0\t", "CA: { 7 } "},
        {"CA:    0\t", "\"*CA\" "},
        {"\t2\t1\t0\n", "\t2\t1\n"},
        {"\t2\t1\t0\n", "\t2\t1\t0\t5\n"},
        {"*MESH_TFACE 1", "*X 1"},
    };
    for (const auto& c : cases) {
        const std::string text = Replaced(kThreeLines, c.from, c.to);
        ASSERT_NE(text, kThreeLines) << c.from;
        EXPECT_EQ(Outcome(text), Outcome(NotInLines(text))) << c.from << " -> " << c.to;
    }
}

TEST_F(QSA_MeshImportLinesTest, AnyByteAnywhereGivesWhatNumbersReadOneByOneGive)
{
    const std::string bytes("\0 \t\r\n09-+.,{}*\"AaE:\x80", 20);
    std::mt19937 random(6);
    for (int i = 0; i < AffordableCases(300); ++i) {
        std::string text = kThreeLines;
        const size_t place = text.find("\t*MESH_VERTEX") + random() % (text.size() - 60);
        const char byte = bytes[random() % bytes.size()];
        switch (random() % 3) {
        case 0:
            text[place] = byte;
            break;
        case 1:
            text.insert(place, 1, byte);
            break;
        default:
            text.erase(place, 1 + random() % 12);
            break;
        }
        ASSERT_EQ(Outcome(text), Outcome(NotInLines(text))) << text;
    }
}

#include "qsa/QSA_MeshImport.h"

#include <cmath>

#include "tests/qsa/QSATesting.h"

namespace {

/// A map block with a file that does not exist.
std::string Map(const char* kind)
{
    return std::string("*MAP_") + kind + " { *BITMAP \"none.bmp\" }\n";
}

MeshText WithMaterial(MeshText mesh)
{
    mesh.more += "*MATERIAL_REF 0\n";
    return mesh;
}

/// A mesh of this many triangles that share nothing.
MeshText LooseTriangles(int number)
{
    MeshText mesh;
    mesh.vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    mesh.faces.assign(static_cast<size_t>(number), {0, 1, 2, ""});
    return mesh;
}

/// Triangles that each have vertices of their own.
MeshText SeparateTriangles(int number)
{
    MeshText mesh;
    for (int i = 0; i < number; ++i) {
        mesh.vertices.push_back({double(i), 0, 0});
        mesh.vertices.push_back({i + 0.5, 0, 0});
        mesh.vertices.push_back({double(i), 1, 0});
        mesh.faces.push_back({i * 3, i * 3 + 1, i * 3 + 2, "1"});
    }
    return mesh;
}

using QSA_MeshImportTest = QSALoaderTest;

} // namespace

TEST_F(QSA_MeshImportTest, MeshWithoutFacesBecomesAPlainObject)
{
    MeshText mesh;
    mesh.name = "Dot";
    mesh.vertices = {{1, 2, 3}};
    mesh.more = "*NODE_PARENT \"\" *MATERIAL_REF 7 *NODE_TM { *TM_POS 4 5 6 *TM_ROW3 4 5 6 }";
    Load(mesh.Text());
    EXPECT_EQ(scene.meshes.Count(), 0);
    ASSERT_EQ(scene.objects.Count(), 1);
    EXPECT_STREQ(Object(0).name.c_str(), "Dot");
    EXPECT_EQ(Object(0).objectKind, 4);
    ExpectVec3(Object(0).position, 4, 5, 6);
    EXPECT_THAT(AllWarnings(), testing::IsEmpty()); // the reference is ignored
}

TEST_F(QSA_MeshImportTest, CubeOfSixGroupsHas24VerticesAndReports16Duplicates)
{
    Load(Cube({"1", "2", "3", "4", "5", "6"}).Text());
    EXPECT_EQ(Mesh(0).vertexCount, 24);
    EXPECT_EQ(Mesh(0).faceCount, 12);
    EXPECT_EQ(Warnings("16 vertices duplicated in mesh 'Cube'"), 1);
    // Each corner has the normal of its side.
    const MeshContents cube = ReadMesh(Mesh(0));
    for (size_t face = 0; face < 12; ++face) {
        const D3DXVECTOR3& n = kCubeSides[face / 2];
        for (size_t corner = 0; corner < 3; ++corner)
            ExpectVec3(cube.Corner(face, corner).normal, n.x, n.y, n.z, std::to_string(face));
    }
}

TEST_F(QSA_MeshImportTest, CubeOfOneGroupHas8Vertices)
{
    Load(Cube({"1"}).Text());
    EXPECT_EQ(Mesh(0).vertexCount, 8);
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
    // Each of the three sides at a corner adds a right angle, in one or two triangles, so the sum
    // points along the diagonal: from the middle of the cube through the corner.
    const float third = 1.0f / std::sqrt(3.0f);
    for (const MeshContents::Vertex& vertex : ReadMesh(Mesh(0)).vertices) {
        const D3DXVECTOR3& p = vertex.position;
        ExpectVec3(vertex.normal, p.x > 0.5f ? third : -third, p.y > 0.5f ? third : -third,
                   p.z > 0.5f ? third : -third);
    }
}

TEST_F(QSA_MeshImportTest, CubeOfEmptySmoothingSetsHas36Vertices)
{
    Load(Cube({""}).Text());
    EXPECT_EQ(Mesh(0).vertexCount, 36);
    EXPECT_EQ(Warnings("28 vertices duplicated in mesh 'Cube'"), 1);
}

TEST_F(QSA_MeshImportTest, CornersOfOtherTextureCoordinatesAreCopiesThatShareNormals)
{
    // Two triangles of one group that meet at a right angle along the edge from (0,0,0) to (0,1,0).
    MeshText mesh;
    mesh.vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    mesh.faces = {{0, 1, 2, "1"}, {0, 2, 3, "1"}}; // normals +z and +x
    mesh.tVertices = {{0, 0}, {1, 0}, {0, 1}, {0.5, 0.5}};
    mesh.tFaces = {{0, 1, 2}, {3, 2, 1}}; // vertex 0 has other coordinates, vertex 2 the same
    Load(mesh.Text());
    EXPECT_EQ(Mesh(0).vertexCount, 5);
    EXPECT_EQ(Warnings("1 vertices duplicated in mesh 'Solid'"), 1);
    const MeshContents contents = ReadMesh(Mesh(0));
    // Both triangles have a right angle at vertex 0, so the sum has equal parts of z and x.
    const float half = std::sqrt(0.5f);
    for (size_t face = 0; face < 2; ++face)
        ExpectVec3(contents.Corner(face, 0).normal, half, 0, half, "shared");
    EXPECT_EQ(contents.Corner(0, 0).u, 0.0f);
    EXPECT_EQ(contents.Corner(0, 0).v, 1.0f); // 1 - 0
    EXPECT_EQ(contents.Corner(1, 0).u, 0.5f);
    EXPECT_EQ(contents.Corner(1, 0).v, 0.5f);
    EXPECT_EQ(contents.faces[0][2], contents.faces[1][1]);
}

TEST_F(QSA_MeshImportTest, FacesOfDifferentMaterialsNeverShareAVertex)
{
    MeshText mesh = WithMaterial(Cube({"1"}));
    for (size_t i = 0; i < 2; ++i)
        mesh.faces[i].material = 1; // one side, whose corners are then copies
    Load(MaterialList({"*NUMSUBMTLS 2 *SUBMATERIAL 0 { } *SUBMATERIAL 1 { }"}) + mesh.Text());
    EXPECT_EQ(Mesh(0).vertexCount, 12);
    EXPECT_EQ(Mesh(0).materialCount, 2);
}

TEST_F(QSA_MeshImportTest, DegenerateFaceIsLeftOutOfTheMesh)
{
    MeshText mesh = Triangle();
    mesh.faces.insert(mesh.faces.begin(), {0, 0, 1, "1"});
    Load(mesh.Text());
    EXPECT_EQ(Mesh(0).faceCount, 1);
    EXPECT_EQ(Mesh(0).vertexCount, 3);
    EXPECT_EQ(Warnings("Invalid face 0 in mesh 'Triangle'"), 1);
}

TEST_F(QSA_MeshImportTest, MeshOfDegenerateFacesOnlyIsAnError)
{
    MeshText mesh = Triangle();
    mesh.faces[0].c = 1;
    EXPECT_EQ(LoadError(mesh.Text()), "scene.qsa: Mesh without vertices: 'Triangle'");
}

TEST_F(QSA_MeshImportTest, OppositeFacesOfOneGroupGiveAZeroNormalAndAWarning)
{
    MeshText mesh = Triangle();
    mesh.faces.push_back({0, 2, 1, "1"}); // the same corners reversed: +z and -z cancel out
    Load(mesh.Text());
    ASSERT_EQ(Mesh(0).vertexCount, 3);
    EXPECT_GE(Warnings("Zero normal sum in object Triangle!"), 1);
    for (const MeshContents::Vertex& vertex : ReadMesh(Mesh(0)).vertices)
        ExpectVec3(vertex.normal, 0, 0, 0);
}

TEST_F(QSA_MeshImportTest, MostVerticesAre65535)
{
    Load(SeparateTriangles(21845).Text()); // 65535 of them
    EXPECT_EQ(Mesh(0).vertexCount, 65535);
    const MeshContents contents = ReadMesh(Mesh(0));
    EXPECT_EQ(contents.Corner(21844, 0).position.x, 21844.0f);
}

TEST_F(QSA_MeshImportTest, MoreThan65535VerticesAreAnError)
{
    // Corners without a group never join: 3 source vertices with 128 copies each are far too few,
    // so the faces are spread over 3 x 171 of them.
    MeshText mesh = SeparateTriangles(171);
    mesh.faces.clear();
    for (int i = 0; i < 21846; ++i) // 65538 corners; the 128 copies of a vertex are not exceeded
        mesh.faces.push_back({i % 171 * 3, i % 171 * 3 + 1, i % 171 * 3 + 2, ""});
    EXPECT_THAT(LoadError(mesh.Text()),
                testing::HasSubstr("Number of vertices too high: 65538 - only 65535 allowed"));
    EXPECT_EQ(Warnings("File 'scene.qsa', object 'Solid': cannot be loaded, the error follows"), 1);
    EXPECT_LT(LogText().find("object 'Solid'"), LogText().find("Error:"));
}

TEST_F(QSA_MeshImportTest, HundredAndTwentyNineCopiesOfAVertexWarn)
{
    Load(LooseTriangles(129).Text());
    EXPECT_EQ(Mesh(0).vertexCount, 3 * 128);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Warnings("Too many smoothing groups on vertex " + std::to_string(i) + "!"), 1);
}

TEST_F(QSA_MeshImportTest, VertexFormatFollowsTheMaterialsMaps)
{
    const DWORD plain = D3DFVF_XYZ | D3DFVF_NORMAL;
    const struct {
        const char* what;
        std::string material;
        uint32_t flags;
        DWORD expected;
    } cases[] = {
        {"none", "", 0, plain},
        {"diffuse", Map("DIFFUSE"), 0, plain | D3DFVF_TEX1},
        {"reflection", Map("REFLECT"), 0, plain | D3DFVF_TEX1},
        {"both", Map("DIFFUSE") + Map("REFLECT"), 0, plain | D3DFVF_TEX2},
        {"bump off", Map("BUMP"), 0, plain},
        {"bump on", Map("BUMP"), kLoadBumpMaps, plain | D3DFVF_TEX1 | 0x40000},
        {"diffuse and bump", Map("DIFFUSE") + Map("BUMP"), kLoadBumpMaps,
         plain | D3DFVF_TEX2 | 0x40000},
        {"colours", "", kLoadVertexColors, plain | D3DFVF_DIFFUSE | D3DFVF_SPECULAR},
        {"child's diffuse", "*NUMSUBMTLS 1 *SUBMATERIAL 0 { " + Map("DIFFUSE") + "}", 0,
         plain | D3DFVF_TEX1},
        {"child's bump, off", "*NUMSUBMTLS 1 *SUBMATERIAL 0 { " + Map("BUMP") + "}", 0,
         plain | D3DFVF_TEX1 | 0x40000},
    };
    for (const auto& c : cases) {
        Load(MaterialList({c.material}) + WithMaterial(Triangle()).Text(), c.flags);
        EXPECT_EQ(Mesh(0).fvf, c.expected) << c.what;
    }
}

TEST_F(QSA_MeshImportTest, RoomForColorsIsZeroWhateverTheBufferHeldBefore)
{
    StartRecording();
    static_cast<RecordingDevice*>(gGfx->device.Get())->FillNewVertexBuffers(0xCD);
    Load(Triangle().Text(), kLoadVertexColors);
    KRE_Mesh& mesh = Mesh(0);
    ASSERT_EQ(mesh.vertexCount, 3);
    ASSERT_EQ(mesh.stride, 32) << "position, normal and two colours";
    mesh.LockAll(D3DLOCK_READONLY);
    for (int32_t i = 0; i < 3; ++i) {
        for (int32_t byte = 24; byte < 32; ++byte)
            EXPECT_EQ(mesh.vertexData[mesh.stride * i + byte], 0) << i << ", " << byte;
    }
    mesh.UnlockAll();
    scene.Reset(); // it goes before its device
}

TEST_F(QSA_MeshImportTest, QuirkThreeMapsGiveAFormatWithoutTextureCoordinates)
{
    MeshText mesh = WithMaterial(Triangle());
    mesh.tVertices = {{0.5, 0.5}};
    mesh.tFaces = {{0, 0, 0}};
    Load(MaterialList({Map("DIFFUSE") + Map("REFLECT") + Map("BUMP")}) + mesh.Text(),
         kLoadBumpMaps);
    EXPECT_EQ(Mesh(0).fvf, DWORD{D3DFVF_XYZ | D3DFVF_NORMAL | 0x40000});
    EXPECT_EQ(Mesh(0).stride, 24);
}

TEST_F(QSA_MeshImportTest, TextureFacesWithoutMapsGiveOneSet)
{
    MeshText mesh = Triangle();
    mesh.tVertices = {{0.25, 0.75}, {1, 0}};
    mesh.tFaces = {{0, 1, 0}};
    Load(mesh.Text());
    EXPECT_EQ(Mesh(0).fvf, DWORD{D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1});
    EXPECT_EQ(Mesh(0).ownGeometry, 1);
    const MeshContents contents = ReadMesh(Mesh(0));
    EXPECT_EQ(contents.Corner(0, 0).u, 0.25f);
    EXPECT_EQ(contents.Corner(0, 0).v, 0.25f);
    EXPECT_EQ(contents.Corner(0, 1).v, 1.0f);
    Load(Triangle().Text());
    EXPECT_EQ(Mesh(0).ownGeometry, 0);
}

TEST_F(QSA_MeshImportTest, WireColorIsTheMaterialOfAMeshWithoutOne)
{
    MeshText mesh = Triangle();
    mesh.more = "*WIREFRAME_COLOR 0.25 0.5,1";
    Load(mesh.Text());
    const KRE_MaterialInfo& material = Mesh(0).materials[0];
    ExpectColor(material.diffuse, 0.25f, 0.5f, 1, 1);
    ExpectColor(material.ambient, 0.25f, 0.5f, 1, 1);
    ExpectColor(material.specular, 0, 0, 0, 1);
    ExpectColor(material.emissive, 0, 0, 0, 1);
    EXPECT_EQ(Mesh(0).materialCount, 1);
}

TEST_F(QSA_MeshImportTest, WireColorIsWhiteUnlessTheTextNamesOne)
{
    Load(Triangle().Text());
    ExpectColor(Mesh(0).materials[0].diffuse, 1, 1, 1, 1);
    ExpectColor(QSA_MeshLoadInfo().wireColor, 1, 1, 1, 1, "kept for the link");
    ExpectColor(QSA_NodeGeometry().wireColor, 1, 1, 1, 1, "of the node in hand");
}

TEST_F(QSA_MeshImportTest, SubmaterialsGoToTheAttributesInOrderOfFirstUse)
{
    MeshText mesh = WithMaterial(Triangle());
    mesh.faces.push_back({0, 1, 2, "1", 3}); // 3 modulo 2 is 1
    mesh.faces[0].material = 1;
    mesh.faces.push_back({0, 1, 2, "1", -2}); // 0
    const std::string list =
        MaterialList({"*NUMSUBMTLS 2 *SUBMATERIAL 0 { *MATERIAL_DIFFUSE 1 0 0 } *SUBMATERIAL 1 { "
                      "*MATERIAL_DIFFUSE 0 1 0 }"});
    Load(list + mesh.Text());
    ASSERT_EQ(Mesh(0).materialCount, 2);
    ExpectColor(Mesh(0).materials[0].diffuse, 0, 1, 0, 1, "submaterial 1 came first");
    ExpectColor(Mesh(0).materials[1].diffuse, 1, 0, 0, 1);
    EXPECT_THAT(ReadMesh(Mesh(0)).attributes, testing::ElementsAre(0u, 0u, 1u));
}

TEST_F(QSA_MeshImportTest, MaterialBeyondTheListCountsAsNone)
{
    MeshText mesh = Triangle();
    mesh.more = "*MATERIAL_REF 2 *WIREFRAME_COLOR 1 0 0";
    Load(MaterialList({"*MATERIAL_DIFFUSE 0 0 1", ""}) + mesh.Text());
    ExpectColor(Mesh(0).materials[0].diffuse, 1, 0, 0, 1);
    EXPECT_EQ(Warnings("Mesh 'Triangle' has material 2 of 2"), 1);
}

TEST_F(QSA_MeshImportTest, BoundsComeFromTheVerticesAndNotFromTheFile)
{
    MeshText mesh = Cube({"1"});
    mesh.vertices[7] = {3, 2, 1}; // a far corner
    std::string text = mesh.Text();
    text.insert(text.find("*MESH_NUMVERTEX"), "*BOUNDINGBOX_MIN -9 -9 -9 *BOUNDINGBOX_MAX 9 9 9 ");
    Load(text);
    ExpectVec3(Mesh(0).boxMin, 0, 0, 0);
    ExpectVec3(Mesh(0).boxMax, 3, 2, 1);
    ExpectVec3(Mesh(0).center, 1.5f, 1, 0.5f);
    // Both far corners of the box are vertices: sqrt(1.5^2 + 1^2 + 0.5^2).
    EXPECT_FLOAT_EQ(Mesh(0).radius, std::sqrt(3.5f));
    EXPECT_EQ(Mesh(0).clipMode, 3);
}

TEST_F(QSA_MeshImportTest, VerticesThatNoFaceUsesDoNotCount)
{
    MeshText mesh = Triangle();
    mesh.vertices.push_back({100, 100, 100});
    Load(mesh.Text());
    EXPECT_EQ(Mesh(0).vertexCount, 3);
    ExpectVec3(Mesh(0).boxMax, 1, 1, 0);
}

TEST_F(QSA_MeshImportTest, VisibleIsAnythingButZero)
{
    for (const auto& [text, expected] : {std::pair{"0", 0}, {"1", 1}, {"-5", 1}, {"x", 0}}) {
        MeshText mesh = Triangle();
        mesh.more = std::string("*NODE_VISIBLE ") + text;
        Load(mesh.Text());
        EXPECT_EQ(Mesh(0).visible, expected) << text;
    }
}

TEST_F(QSA_MeshImportTest, MeshThatIsCutOffIsBuiltFromWhatIsThere)
{
    const std::string text = Triangle().Text();
    Load(text.substr(0, text.rfind('}') - 4));
    ASSERT_EQ(scene.meshes.Count(), 1);
    EXPECT_EQ(Mesh(0).faceCount, 1);
}

TEST_F(QSA_MeshImportTest, NameOutsideAsciiIsTheNameTreesError)
{
    for (const std::string name : {"\xC3\xA4rger", "\xFF", "\tx"}) {
        MeshText mesh = Triangle();
        mesh.name = name;
        EXPECT_EQ(LoadError(mesh.Text()), "Character in name string out of range: " +
                                              std::to_string(static_cast<signed char>(name[0])));
        const size_t warning = LogText().find("Warning:SearchTree: File 'scene.qsa', object '" +
                                              name + "': cannot be loaded, the error follows");
        ASSERT_NE(warning, std::string::npos) << name;
        EXPECT_EQ(LogText().find("Error:", warning), LogText().find('\n', warning) + 1) << name;
    }
    MeshText mesh = Triangle();
    mesh.name = "";
    EXPECT_EQ(LoadError(mesh.Text()), "Empty name string");
    EXPECT_EQ(Warnings("File 'scene.qsa': cannot be loaded, the error follows"), 1);
    // Other nodes are not in the tree.
    Load(Helper("*NODE_NAME \"\xC3\xA4\""));
    EXPECT_STREQ(Object(0).name.c_str(), "\xC3\xA4");
    // Nor is anything after the first character.
    mesh.name = "z\xC3\xA4";
    Load(mesh.Text());
    EXPECT_STREQ(Mesh(0).name.c_str(), "z\xC3\xA4");
}

TEST_F(QSA_MeshImportTest, NotFiniteVerticesLoadAsTheyAre)
{
    MeshText mesh = Cube({"1"});
    std::string text = mesh.Text();
    text.replace(text.find("*MESH_VERTEX 1 1 0 0"), 20, "*MESH_VERTEX 1 inf nan -inf");
    directory.Write("scene.qsa", text);
    EXPECT_EQ(loader.Load(scene, "scene.qsa", 0), 1);
    EXPECT_EQ(Mesh(0).faceCount, 12);
}

TEST_F(QSA_MeshImportTest, GeometryNodeBecomesAMeshOrAHelper)
{
    const QSA_TimeScale time;
    const QSA_LoadOptions options;
    const std::string node = Triangle().Text();
    QSA_SceneText& text = Opened(node.substr(node.find('{') + 1) + "*NODE_NAME \"empty\" }");
    QSA_MaterialImport materials(text, time, options);
    QSA_NodeImport nodes(text, scene);
    QSA_MeshImport meshes(text, materials, nodes, scene, options);
    EXPECT_EQ(meshes.ParseGeomObject(), 0);
    EXPECT_EQ(meshes.ParseGeomObject(), 0);
    EXPECT_EQ(text.BytesLeft(), 0);
    ASSERT_EQ(scene.meshes.Count(), 1);
    EXPECT_STREQ(Mesh(0).name.c_str(), "Triangle");
    EXPECT_EQ(Mesh(0).faceCount, 1);
    ASSERT_EQ(scene.objects.Count(), 1);
    EXPECT_STREQ(Object(0).name.c_str(), "empty");
    EXPECT_EQ(Object(0).objectKind, kObjectHelper);
    EXPECT_FALSE(meshes.HasSkinnedMesh());
}

#include "tests/qsb/SceneFileTest.h"

#include <cmath>
#include <cstring>

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

constexpr uint32_t kVertexColors = 8;

class KRE_MeshFileTest : public SceneFileTest {
protected:
    static QsbFile FileWith(const QsbMesh& mesh)
    {
        QsbFile file;
        file.scene.object.name = "scene.qsb"; // the path of the load: a save gives the same bytes
        file.scene.meshes = {mesh};
        return file;
    }
    KRE_Mesh& LoadMesh(const QsbMesh& mesh, uint32_t flags = 0)
    {
        Load(scene, FileWith(mesh), flags);
        return *scene.meshes.Get(0);
    }
    std::string ErrorOf(const QsbMesh& mesh, uint32_t flags = 0)
    {
        return LoadError(MakeQsb(FileWith(mesh)).bytes, flags);
    }
    std::string ErrorWith(const QsbMesh& mesh, const std::string& field, int32_t value)
    {
        return LoadError(MakeQsb(FileWith(mesh)).WithInt32("mesh0." + field, value));
    }

    KRE_3dScene scene;
};

/// A triangle of the given format, with this many bones.
QsbMesh Triangle(uint32_t fvf, size_t bones = 0)
{
    QsbMesh mesh = QsbTriangle("Hull");
    mesh.fvf = fvf;
    mesh.bones.resize(bones);
    for (size_t i = 0; i < bones; ++i)
        mesh.bones[i].name = "bone" + std::to_string(i);
    return mesh;
}

/// A 24-bit picture with one pixel.
std::string OnePixelBmp()
{
    return std::string("BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0", 30) +
           std::string(24, '\0') + std::string("\1\2\3\0", 4);
}

template <class T>
void Append(std::string& bytes, T value)
{
    char text[sizeof value];
    std::memcpy(text, &value, sizeof value);
    bytes.append(text, sizeof value);
}

} // namespace

TEST_F(KRE_MeshFileTest, AllFieldsComeFromTheirPlaces)
{
    QsbMesh mesh = Triangle(0x112);
    mesh.clip.mode = 2;
    mesh.ownGeometry = 0;
    mesh.visible = 0;
    mesh.hasTransparency = 1;
    mesh.userTag = 55;
    mesh.vertices[1].u = 0.25f;
    mesh.vertices[1].v = 0.75f;
    mesh.vertices[2].normal = {32767, 0, -32767};
    KRE_Mesh& loaded = LoadMesh(mesh);
    EXPECT_STREQ(loaded.name.c_str(), "Hull");
    EXPECT_EQ(loaded.clipMode, 2);
    EXPECT_EQ(loaded.boxMax, D3DXVECTOR3(1, 1, 0));
    EXPECT_EQ(loaded.ownGeometry, 0);
    EXPECT_EQ(loaded.visible, 0);
    EXPECT_EQ(loaded.hasTransparency, 1);
    EXPECT_EQ(loaded.materialCount, 1);
    EXPECT_EQ(loaded.userTag, 55);
    EXPECT_EQ(loaded.vertexCount, 3);
    EXPECT_EQ(loaded.faceCount, 1);
    EXPECT_EQ(loaded.fvf, 0x112u);
    loaded.LockAll(D3DLOCK_READONLY);
    EXPECT_EQ(*loaded.Position(1), D3DXVECTOR3(1, 0, 0));
    EXPECT_EQ(loaded.TexCoord(1)[0], 0.25f);
    EXPECT_EQ(loaded.TexCoord(1)[1], 0.75f);
    EXPECT_EQ(*loaded.Normal(2), D3DXVECTOR3(1, 0, -1));
    EXPECT_EQ(loaded.Face(0)[1], 1);
    EXPECT_EQ(*loaded.Attribute(0), 0u);
    loaded.UnlockAll();
}

TEST_F(KRE_MeshFileTest, VertexSizesFollowFromTheFormat)
{
    const struct {
        const char* what;
        uint32_t fvf;
        size_t size; ///< 12 + 8 with coordinates + 6 + 2 W + 4 with bones
    } cases[] = {
        {"plain, no texture coordinates", 0x12, 12 + 6},
        {"plain, one set", 0x112, 12 + 8 + 6},
        {"plain, three sets", 0x312, 12 + 8 + 6},
        {"one beta", 0x1016, 12 + 6 + 2 + 4},
        {"two betas", 0x1018, 12 + 6 + 4 + 4},
        {"three betas", 0x101A, 12 + 6 + 6 + 4},
        {"four betas, one set", 0x111C, 12 + 8 + 6 + 8 + 4},
        {"point size and colours are not stored", 0xF2, 12 + 6},
        {"three coordinates in set 0 store two", 0x10112, 12 + 8 + 6},
    };
    for (const auto& c : cases) {
        const QsbImage image = MakeQsb(FileWith(Triangle(c.fvf, 1)));
        EXPECT_EQ(image.at.at("mesh0.indices") - image.at.at("mesh0.vertices"), 3 * c.size)
            << c.what;
        EXPECT_EQ(QsbDifference(Resaved(image.bytes), image.bytes), "") << c.what;
    }
}

TEST_F(KRE_MeshFileTest, OldFilesHaveRoomForTextureCoordinatesInEveryVertex)
{
    for (const int32_t version : {101, 102}) {
        QsbFile file = FileWith(Triangle(0x12));
        file.version = version;
        file.scene.meshes[0].vertices[0].u = 99;
        file.scene.meshes[0].vertices[0].normal = {32767, 0, 0};
        const QsbImage image = MakeQsb(file);
        const size_t size = version == 101 ? 12 + 8 + 6 : 12 + 6;
        EXPECT_EQ(image.at.at("mesh0.indices") - image.at.at("mesh0.vertices"), 3 * size);
        Load(scene, file);
        KRE_Mesh& mesh = *scene.meshes.Get(0);
        mesh.LockAll(D3DLOCK_READONLY);
        EXPECT_EQ(*mesh.Normal(0), D3DXVECTOR3(1, 0, 0));
        mesh.UnlockAll();
    }
}

TEST_F(KRE_MeshFileTest, ANormalOf1IsStoredAs32767AndReadsAsExactly1)
{
    QsbMesh mesh = Triangle(0x12);
    mesh.vertices[0].normal = {32767, 0, 0};
    KRE_Mesh& loaded = LoadMesh(mesh);
    loaded.LockAll(0);
    EXPECT_EQ(*loaded.Normal(0), D3DXVECTOR3(1, 0, 0));
    loaded.UnlockAll();
    EXPECT_EQ(QsbDifference(Saved(scene), MakeQsb(FileWith(mesh)).bytes), "");
}

TEST_F(KRE_MeshFileTest, AWeightOfOneHalfIsStoredAs32767AndReadsSlightlyBelow)
{
    QsbMesh mesh = Triangle(0x1018, 2);
    KRE_Mesh& loaded = LoadMesh(mesh);
    loaded.LockAll(0);
    loaded.Weights(0)[0] = 0.5f;
    loaded.UnlockAll();
    const std::string bytes = Saved(scene);
    const QsbImage image = MakeQsb(FileWith(mesh));
    uint16_t stored = 0; // after position and normal
    std::memcpy(&stored, bytes.data() + image.at.at("mesh0.vertices") + 18, 2);
    EXPECT_EQ(stored, 32767); // 0.5 * 65535 = 32767.5, truncated
    LoadBytes(scene, bytes);
    KRE_Mesh& again = *scene.meshes.Get(0);
    again.LockAll(D3DLOCK_READONLY);
    EXPECT_EQ(again.Weights(0)[0], static_cast<float>(32767 / 65535.0));
    EXPECT_LT(again.Weights(0)[0], 0.5f);
    again.UnlockAll();
}

TEST_F(KRE_MeshFileTest, QuirkRepeatedSavesDriftDownward)
{
    // What a stored number becomes after one load and save: as a float it may be slightly below the
    // quotient, and the product is then truncated.
    const auto next = [](uint16_t number, double unit) {
        return static_cast<uint16_t>(static_cast<double>(static_cast<float>(number / unit)) * unit);
    };
    QsbMesh mesh = Triangle(0x1018, 2);
    for (uint16_t start = 1000; start < 1020; ++start) {
        mesh.vertices[0].weights[0] = start;
        mesh.vertices[0].normal[0] = static_cast<int16_t>(start);
        QsbMesh expected = mesh;
        expected.vertices[0].weights[0] = next(start, 65535.0);
        expected.vertices[0].normal[0] = static_cast<int16_t>(next(start, 32767.0));
        EXPECT_LE(expected.vertices[0].weights[0], start);
        EXPECT_EQ(QsbDifference(Resaved(MakeQsb(FileWith(mesh)).bytes),
                                MakeQsb(FileWith(expected)).bytes),
                  "")
            << start;
    }
}

TEST_F(KRE_MeshFileTest, TheLastWeightIsWrittenAs0)
{
    for (const uint32_t fvf : {0x1016u, 0x1018u, 0x101Cu}) {
        QsbMesh mesh = Triangle(fvf, 3);
        mesh.vertices[0].weights = {65535, 65535, 65535, 65535};
        mesh.vertices[0].bones = {2, 1, 0, 1};
        QsbMesh expected = mesh;
        expected.vertices[0].weights[(fvf & 0xE) / 2 - 3] = 0; // 6, 8, 12: the 1st, 2nd, 4th
        EXPECT_EQ(QsbDifference(Resaved(MakeQsb(FileWith(mesh)).bytes),
                                MakeQsb(FileWith(expected)).bytes),
                  "");
    }
}

TEST_F(KRE_MeshFileTest, ValuesOutside16BitsAreClampedWithOneWarning)
{
    KRE_Mesh& mesh = LoadMesh(Triangle(0x1018, 2));
    mesh.LockAll(0);
    *mesh.Normal(0) = {2, -2, NAN};
    *mesh.Normal(1) = {1e30f, -1e30f, -1.00002f}; // -32767.66 still fits 16 bits
    mesh.Weights(0)[0] = 1.5f;
    mesh.Weights(1)[0] = -1;
    mesh.Weights(2)[0] = NAN;
    mesh.UnlockAll();
    const std::string bytes = Saved(scene);
    EXPECT_THAT(LogText(),
                HasSubstr("Hull: 8 values of normals and weights exceed the file format"));
    QsbMesh expected = Triangle(0x1018, 2);
    expected.vertices[0].normal = {32767, -32768, 0};
    expected.vertices[0].weights[0] = 65535;
    expected.vertices[1].normal = {32767, -32768, -32767};
    EXPECT_EQ(QsbDifference(bytes, MakeQsb(FileWith(expected)).bytes), "");
}

// ---- Damaged geometry

TEST_F(KRE_MeshFileTest, UnsupportedFormatsAreErrors)
{
    const struct {
        const char* what;
        uint32_t fvf;
    } cases[] = {
        {"no position", 0x10},
        {"on the screen", 0x14},
        {"with w", 0x4012},
        {"five betas", 0x101E},
        {"betas without bone indices", 0x18},
        {"bone indices without betas", 0x1012},
        {"bone indices as a colour", 0x8018},
        {"no normal", 0x02},
        {"nine texture sets", 0x912},
        {"one number in set 0", 0x30112},
        {"a reserved bit", 0x13},
    };
    for (const auto& c : cases) {
        char text[100];
        std::snprintf(text, sizeof text, "Hull: File 'scene.qsb': Invalid vertex format: 0x%X",
                      c.fvf);
        EXPECT_EQ(ErrorOf(Triangle(c.fvf, 1)), text) << c.what;
    }
}

TEST_F(KRE_MeshFileTest, CountsAreCheckedAgainstTheBytesLeft)
{
    const struct {
        const char* field;
        const char* what;
    } counts[] = {{"material count", "materials"},
                  {"bone count", "bones"},
                  {"vertex count", "vertices"},
                  {"face count", "faces"},
                  {"track count", "track keys"}};
    for (const auto& c : counts) {
        EXPECT_EQ(ErrorWith(Triangle(0x12, 1), c.field, -7),
                  std::string("Hull: File 'scene.qsb': Invalid number of ") + c.what + ": -7");
        EXPECT_THAT(ErrorWith(Triangle(0x12, 1), c.field, 0x40000000),
                    HasSubstr(std::string("Hull: File 'scene.qsb': Invalid number of ") + c.what +
                              ": 1073741824, with "));
    }
}

TEST_F(KRE_MeshFileTest, IndicesOutsideTheirArraysAreErrors)
{
    QsbMesh mesh = Triangle(0x1018, 2);
    mesh.faces = {{0, 1, 2}, {0, 3, 2}};
    EXPECT_EQ(ErrorOf(mesh), "Hull: File 'scene.qsb': Invalid vertex in face 1: 3 of 3");
    mesh.faces = {{0, 1, 2}, {0, 1, 2}, {0, 1, 2}};
    mesh.attributes = {0, 0, 1};
    EXPECT_EQ(ErrorOf(mesh), "Hull: File 'scene.qsb': Invalid attribute in face 2: 1 of 1");
    mesh.attributes.clear();
    mesh.vertices[2].bones = {0, 1, 2, 0};
    EXPECT_EQ(ErrorOf(mesh), "Hull: File 'scene.qsb': Invalid bone index in vertex 2: 2 of 2");
}

TEST_F(KRE_MeshFileTest, WithoutBonesTheObjectItselfMovesTheVertices)
{
    LoadMesh(Triangle(0x1018));
    QsbMesh mesh = Triangle(0x1018);
    mesh.vertices[0].bones = {1, 0, 0, 0};
    EXPECT_EQ(ErrorOf(mesh), "Hull: File 'scene.qsb': Invalid bone index in vertex 0: 1 of 0");
}

TEST_F(KRE_MeshFileTest, AMeshWithoutMaterialsHasOneAttribute)
{
    QsbMesh mesh = Triangle(0x12);
    mesh.materials.clear();
    mesh.textures.clear();
    EXPECT_EQ(LoadMesh(mesh).materialCount, 0);
    mesh.attributes = {1};
    EXPECT_EQ(ErrorOf(mesh), "Hull: File 'scene.qsb': Invalid attribute in face 0: 1 of 1");
}

TEST_F(KRE_MeshFileTest, GeometryThatTheDeviceRefusesIsAnError)
{
    QsbMesh mesh = Triangle(0x12);
    mesh.faces.clear();
    EXPECT_THAT(ErrorOf(mesh), HasSubstr(" D3DXCreateMeshFVF failed: "));
    mesh = Triangle(0x12);
    mesh.vertices.resize(65536);
    EXPECT_EQ(ErrorOf(mesh), "Number of vertices too high: 65536 - only 65535 allowed");
    mesh.vertices.resize(65535);
    mesh.clip.mode = 0;
    EXPECT_EQ(LoadMesh(mesh).vertexCount, 65535);
}

TEST_F(KRE_MeshFileTest, AnErrorOfTheDeviceComesAfterTheNamesOfFileAndMesh)
{
    QsbMesh mesh = Triangle(0x12);
    mesh.vertices.resize(65536);
    EXPECT_EQ(ErrorOf(mesh), "Number of vertices too high: 65536 - only 65535 allowed");
    const std::string log = LogText();
    const size_t warning =
        log.find("File 'scene.qsb', object 'Hull': cannot be loaded, the error follows");
    ASSERT_NE(warning, std::string::npos);
    EXPECT_EQ(log.find("Error:KRE_Gfx: Number of vertices"), log.find('\n', warning) + 1);
}

TEST_F(KRE_MeshFileTest, ADifferentNumberOfMaterialsIsAnError)
{
    KRE_Mesh& mesh = LoadMesh(Triangle(0x12));
    EXPECT_EQ(ErrorText([&] { gGfx->CreateMesh(&mesh, 1, 3, 2, 0x12, 0, 0); }),
              "nrMat does not match!");
}

TEST_F(KRE_MeshFileTest, AFormatThatCannotBeReadIsNotSaved)
{
    KRE_Mesh& mesh = LoadMesh(Triangle(0x12));
    mesh.SetVertexFormat(0x02);
    EXPECT_EQ(ErrorText([&] { Saved(scene); }), "Hull: Vertex format 0x2 can not be stored");
    EXPECT_FALSE(directory.Has("saved.qsb"));
}

TEST_F(KRE_MeshFileTest, AMeshWithoutGeometryIsNotSaved)
{
    KRE_Mesh& mesh = *scene.meshes.GetSlot(scene.meshes.Add());
    mesh.SetVertexFormat(0x12);
    EXPECT_THAT(ErrorText([&] { Saved(scene); }), HasSubstr("LockIndexBuffer failed: "));
}

TEST_F(KRE_MeshFileTest, TransparencyIsWhatTheFileSaysUnlessItIsNegative)
{
    QsbMesh mesh = Triangle(0x12);
    mesh.hasTransparency = 99;
    EXPECT_EQ(LoadMesh(mesh).hasTransparency, 99);
    mesh.hasTransparency = -99; // not used: the materials decide
    EXPECT_EQ(LoadMesh(mesh).hasTransparency, 0);
}

// ---- Clones

TEST_F(KRE_MeshFileTest, ACloneHasMaterialsAndBonesAndNoGeometry)
{
    QsbFile file = FileWith(Triangle(0x1018, 2));
    QsbMesh clone = Triangle(0x1018, 2);
    clone.object.name = "Copy";
    clone.cloneSource = "Hull";
    clone.materials[0].power = 9;
    clone.visible = 0;
    file.scene.meshes.push_back(clone);
    const QsbImage image = MakeQsb(file);
    EXPECT_EQ(image.at.count("mesh1.vertex count"), 0u);
    EXPECT_EQ(image.at.at("mesh1.user tag"), image.at.at("mesh1.bone count") + 4);
    Load(scene, file);
    KRE_Mesh& loaded = *scene.meshes.Get(1);
    EXPECT_EQ(loaded.mesh.Get(), scene.meshes.Get(0)->mesh.Get());
    EXPECT_EQ(loaded.materials[0].power, 9);
    EXPECT_EQ(loaded.visible, 0);
    EXPECT_EQ(loaded.bones.Count(), 2);
    EXPECT_EQ(QsbDifference(Saved(scene), image.bytes), "");
}

TEST_F(KRE_MeshFileTest, QuirkATransparentCloneOfAnOpaqueMeshIsSortedLastOnlyOnce)
{
    QsbFile file = FileWith(Triangle(0x12));
    QsbMesh clone = Triangle(0x12);
    clone.object.name = "Glass";
    clone.cloneSource = "Hull";
    clone.materials[0].transparent = 1;
    clone.hasTransparency = 1;
    file.scene.meshes.insert(file.scene.meshes.begin(), clone);
    Load(scene, file);
    EXPECT_EQ(scene.opaqueMeshCount, 1);
    EXPECT_STREQ(scene.meshes.Get(1)->name.c_str(), "Glass");
    EXPECT_EQ(scene.meshes.Get(1)->hasTransparency, 0) << "its source's";
    const std::string first = Saved(scene);
    LoadBytes(scene, first);
    EXPECT_EQ(scene.opaqueMeshCount, 2);
    EXPECT_EQ(QsbDifference(Saved(scene), first), "");
}

TEST_F(KRE_MeshFileTest, ACloneWithoutItsSourceIsAnError)
{
    QsbMesh clone = Triangle(0x12);
    clone.cloneSource = "None";
    EXPECT_EQ(ErrorOf(clone), "scene.qsb: Clone Mesh 'None' not found");
}

// ---- Bones

TEST_F(KRE_MeshFileTest, BonesComeFromTheirPlaces)
{
    QsbMesh mesh = Triangle(0x1018, 2);
    mesh.bones[1].name = std::string(300, 'b');
    mesh.bones[1].boneInit[12] = 2; // translates along x
    mesh.bones[1].meshInit[0] = 5;  // scales along x
    mesh.bones[1].meshInit[12] = 3;
    const KRE_Mesh& loaded = LoadMesh(mesh);
    const KRE_BoneInfo& bone = *loaded.bones.Get(1);
    EXPECT_EQ(bone.name, std::string(255, 'b'));
    EXPECT_EQ(bone.boneInitTM._41, 2);
    EXPECT_EQ(bone.meshInitTM._11, 5);
    // The mesh's matrix comes first: (x, y, z) becomes 5 x + 3, then 2 more.
    EXPECT_EQ(bone.bindTM._11, 5);
    EXPECT_EQ(bone.bindTM._41, 5);
    EXPECT_EQ(loaded.boneObjectCount, 2);
}

TEST_F(KRE_MeshFileTest, ABoneNamesAnObjectOfTheScene)
{
    QsbFile file = FileWith(Triangle(0x1018, 2));
    file.scene.meshes[0].bones[0].name = "Hull";
    file.scene.objects.resize(1);
    file.scene.objects[0].name = "bone1";
    Load(scene, file);
    EXPECT_EQ(scene.meshes.Get(0)->boneObjects[0], scene.meshes.Get(0));
    EXPECT_EQ(scene.meshes.Get(0)->boneObjects[1], scene.objects.Get(0));
}

// ---- Load flags

TEST_F(KRE_MeshFileTest, Flag8AddsColors)
{
    QsbMesh mesh = Triangle(0x1118, 2);
    mesh.vertices[0].bones = {1, 1, 1, 1};
    KRE_Mesh& loaded = LoadMesh(mesh, kVertexColors);
    EXPECT_EQ(loaded.fvf, 0x11D8u);
    loaded.LockAll(D3DLOCK_READONLY);
    DWORD diffuse = 1;
    std::memcpy(&diffuse, loaded.vertexData + loaded.diffuseOffset, 4);
    EXPECT_EQ(diffuse, 0u);
    EXPECT_EQ(*loaded.Normal(0), D3DXVECTOR3(0, 0, 1));
    EXPECT_EQ(loaded.BlendIndices(0)[0], 1);
    loaded.UnlockAll();
}

TEST_F(KRE_MeshFileTest, Flag2WidensMeshesWithABumpOrReflectionPicture)
{
    directory.Write("map.bmp", OnePixelBmp());
    for (const int32_t type : {1, 2, 3}) {
        QsbMesh mesh = Triangle(0x112);
        mesh.vertices[2].u = 0.5f;
        mesh.textures[0].slots[0].file = "map.bmp";
        mesh.textures[0].slots[0].type = type;
        KRE_Mesh& loaded = LoadMesh(mesh, kBumpMaps);
        EXPECT_EQ(loaded.fvf, type == 1 ? 0x112u : 0x40212u) << type;
        loaded.LockAll(D3DLOCK_READONLY);
        EXPECT_EQ(loaded.TexCoord(2)[0], 0.5f);
        if (type != 1) {
            const D3DXVECTOR3* second =
                reinterpret_cast<const D3DXVECTOR3*>(loaded.TexCoord(2) + 2);
            EXPECT_EQ(*second, D3DXVECTOR3(0, 0, 0));
        }
        loaded.UnlockAll();
    }
}

TEST_F(KRE_MeshFileTest, Flag2WithoutAPictureChangesNothing)
{
    QsbMesh mesh = Triangle(0x112);
    mesh.textures[0].slots[0].type = 2;
    EXPECT_EQ(LoadMesh(mesh, kBumpMaps).fvf, 0x112u);
}

TEST_F(KRE_MeshFileTest, BumpMapsWithTwoSetsOfCoordinatesAreAnError)
{
    directory.Write("map.bmp", OnePixelBmp());
    QsbMesh mesh = Triangle(0x212);
    mesh.textures[0].slots[0].file = "map.bmp";
    mesh.textures[0].slots[0].type = 2;
    EXPECT_EQ(ErrorOf(mesh, kBumpMaps), "Hull: Multiple texture coords not supported");
    LoadMesh(mesh);
}

// ---- Version 100

/// A skinned vertex in memory: position, one weight, bone indices, normal, one set of coordinates.
static std::string RawVertex(float x, float y, uint32_t bones)
{
    std::string bytes;
    for (const float value : {x, y, 0.0f, 0.75f})
        Append(bytes, value);
    Append(bytes, bones);
    for (const float value : {0.0f, 0.6f, 0.8f, 0.25f, 0.5f})
        Append(bytes, value);
    return bytes;
}

static QsbMesh RawTriangle(uint32_t bones)
{
    QsbMesh mesh = Triangle(0x1118, 2);
    mesh.rawVertices = RawVertex(0, 0, bones) + RawVertex(1, 0, 0) + RawVertex(0, 1, 0);
    mesh.rawCount = 3;
    return mesh;
}

TEST_F(KRE_MeshFileTest, TheOldestFilesHoldVerticesAsInMemory)
{
    QsbFile file = FileWith(RawTriangle(0x0001));
    file.version = 100;
    for (const uint32_t flags : {0u, kVertexColors}) {
        Load(scene, file, flags);
        KRE_Mesh& mesh = *scene.meshes.Get(0);
        EXPECT_EQ(mesh.fvf, flags ? 0x11D8u : 0x1118u);
        mesh.LockAll(D3DLOCK_READONLY);
        EXPECT_EQ(*mesh.Position(1), D3DXVECTOR3(1, 0, 0));
        EXPECT_EQ(mesh.Weights(0)[0], 0.75f);
        EXPECT_EQ(mesh.BlendIndices(0)[0], 1);
        EXPECT_EQ(*mesh.Normal(0), D3DXVECTOR3(0, 0.6f, 0.8f));
        EXPECT_EQ(mesh.TexCoord(2)[1], 0.5f);
        mesh.UnlockAll();
    }
}

TEST_F(KRE_MeshFileTest, TheOldestFilesAreWidenedForBumpMapsToo)
{
    directory.Write("map.bmp", OnePixelBmp());
    QsbFile file = FileWith(RawTriangle(0));
    file.version = 100;
    file.scene.meshes[0].textures[0].slots[0].file = "map.bmp";
    file.scene.meshes[0].textures[0].slots[0].type = 2;
    Load(scene, file, kBumpMaps);
    KRE_Mesh& mesh = *scene.meshes.Get(0);
    EXPECT_EQ(mesh.fvf, 0x41218u);
    mesh.LockAll(D3DLOCK_READONLY);
    EXPECT_EQ(mesh.TexCoord(2)[0], 0.25f);
    EXPECT_EQ(mesh.TexCoord(2)[2], 0);
    mesh.UnlockAll();
}

TEST_F(KRE_MeshFileTest, ABadBoneOfTheOldestFilesIsAnError)
{
    QsbFile file = FileWith(RawTriangle(0x0002));
    file.version = 100;
    EXPECT_EQ(LoadError(MakeQsb(file).bytes, kVertexColors), "Hull: Invalid bone index: 2");
    EXPECT_EQ(LoadError(MakeQsb(file).bytes),
              "Hull: File 'scene.qsb': Invalid bone index in vertex 0: 2 of 2");
}

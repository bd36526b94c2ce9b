#pragma once

#include <array>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "qsa/QSALoader.h"
#include "scene/KRE_3dScene.h"
#include "tests/qsa/SceneFaultsOf.h"
#include "tests/support/RaisedBy.h"
#include "tests/support/SceneEngine.h"

/// What a text meets that is read by the operations of the loader, and the loader's own settings.
class QSALoaderTestAccess {
public:
    /// Bytes of the window that moves over the text.
    static void SetWindow(QSALoader& loader, int32_t bytes) { loader.windowBytes = bytes; }
    static void Open(QSALoader& loader, const char* path)
    {
        loader.SetFileName(path);
        loader.OpenText(path);
    }
    static void Close(QSALoader& loader) { loader.CloseText(); }
    static int32_t Position(const QSALoader& loader) { return loader.TextPosition(); }
    static int32_t AtEnd(const QSALoader& loader) { return loader.BytesLeft() == 0 ? 1 : 0; }

    static QSA_Token NextToken(QSALoader& loader) { return loader.NextToken(); }
    static int32_t ReadInt(QSALoader& loader, int32_t* value) { return loader.ReadInt(value); }
    static int32_t ReadFloat(QSALoader& loader, float* value) { return loader.ReadFloat(value); }
    static int32_t ReadVector(QSALoader& loader, float (&value)[3])
    {
        return loader.ReadVector(value);
    }
    static int32_t ReadWord(QSALoader& loader, TokenBuffer& word) { return loader.ReadWord(word); }
    static int32_t ReadQuoted(QSALoader& loader, TokenBuffer& text)
    {
        return loader.ReadQuoted(text);
    }
    static int32_t ReadQuoted(QSALoader& loader, String* text) { return loader.ReadQuoted(text); }
    static int32_t SkipSpace(QSALoader& loader) { return loader.SkipSpace(); }
    static int32_t SkipTo(QSALoader& loader, char c) { return loader.SkipTo(c); }
    static uint8_t PeekBehindSpace(QSALoader& loader) { return loader.PeekBehindSpace(); }
    static int32_t ReadIntInList(QSALoader& loader)
    {
        int32_t value = 0;
        QSA_TextCursor text = loader.Cursor();
        loader.ReadInt(text, &value);
        loader.MoveTo(text);
        return value;
    }
    static float ReadFloatInList(QSALoader& loader)
    {
        float value = 0.0f;
        QSA_TextCursor text = loader.Cursor();
        loader.ReadFloat(text, &value);
        loader.MoveTo(text);
        return value;
    }
    static bool VersionAtLeast(QSALoader& loader, int32_t version, int32_t major, int32_t minor)
    {
        loader.fileMajor = static_cast<uint8_t>(version / 100);
        loader.fileMinor = static_cast<uint8_t>(version % 100);
        return loader.FileVersionAtLeast(major, minor);
    }
    /// The format of a mesh with that many weights and without a material.
    static DWORD ChooseVertexFormat(QSALoader& loader, int32_t weightCount)
    {
        const KRE_Mesh mesh;
        loader.geometry.weightCount = weightCount;
        return loader.ChooseVertexFormat(&mesh, nullptr);
    }
    static float SecondsPerTick(const QSALoader& loader) { return loader.secondsPerTick; }
    static float Duration(const QSALoader& loader) { return loader.duration; }
    /// Whether anything is left of the last load that only it needed.
    static bool HoldsLoad(const QSALoader& loader)
    {
        return loader.data || loader.textFile || !loader.materials.empty() ||
               loader.builder.faces.capacity() > 0;
    }
};

/// A GEOMOBJECT block from lists. Faces are given by their corners.
struct MeshText {
    struct Face {
        int32_t a, b, c;
        std::string smoothing; ///< group numbers with commas between them; empty for none
        int32_t material = 0;
    };

    std::string name = "Solid";
    std::vector<std::array<double, 3>> vertices;
    std::vector<Face> faces;
    std::vector<std::array<double, 2>> tVertices;
    std::vector<std::array<int32_t, 3>> tFaces; ///< none: no list of texture faces
    std::string weights;                        ///< the inside of a MESH_WEIGHTS block
    std::string more;                           ///< further keywords of the node

    std::string Text() const;
    std::string MeshBlock() const; ///< without the node around it
};

/// The cube from (0, 0, 0) to (1, 1, 1): 8 vertices, whose indices have a bit each for x, y and z; two
/// triangles for each of the sides -z, +z, -y, +y, -x, +x, all seen from outside. `smoothing` has a
/// text for each side, or one for all.
MeshText Cube(const std::vector<std::string>& smoothing);
/// The outward normals of the sides of `Cube`, in its order.
extern const std::array<D3DXVECTOR3, 6> kCubeSides;

/// One triangle in the plane z = 0, whose normal is +z.
MeshText Triangle();

/// What a device mesh holds.
struct MeshContents {
    struct Vertex {
        D3DXVECTOR3 position;
        D3DXVECTOR3 normal;
        float u, v; ///< 0 without texture coordinates
        std::array<uint8_t, 4> bones;
        std::vector<float> weights; ///< those that are stored, the last one is not
    };
    std::vector<Vertex> vertices;
    std::vector<std::array<uint16_t, 3>> faces;
    std::vector<DWORD> attributes;

    const Vertex& Corner(size_t face, size_t corner) const { return vertices[faces[face][corner]]; }
};
MeshContents ReadMesh(KRE_Mesh& mesh);

/// An engine, a loader and a scene. Every scene that loads is checked.
class QSALoaderTest : public SceneEngineTest {
protected:
    /// Loads a text under the name "scene.qsa".
    void Load(const std::string& text, uint32_t flags = 0);
    /// The message of the error that the load of a text ends in, or "no error".
    std::string LoadError(const std::string& text, uint32_t flags = 0);
    /// How many warnings of the loader with this text were logged; repeats count once.
    int Warnings(const std::string& text) const;
    /// All warnings so far, without what stands in front of each text.
    std::vector<std::string> AllWarnings() const;

    KRE_Mesh& Mesh(int32_t i) { return *scene.meshes.Get(i); }
    KRE_3dObject& Object(int32_t i) { return *scene.objects.Get(i); }

    KRE_3dScene scene;
    QSALoader loader;
};

/// The texts of material and node blocks that many tests need.
std::string MaterialList(const std::vector<std::string>& materials);
std::string Helper(const std::string& inside);

inline void ExpectVec3(const D3DXVECTOR3& actual, float x, float y, float z,
                       const std::string& what = "", float tolerance = 1e-6f)
{
    EXPECT_NEAR(actual.x, x, tolerance) << what;
    EXPECT_NEAR(actual.y, y, tolerance) << what;
    EXPECT_NEAR(actual.z, z, tolerance) << what;
}

inline void ExpectColour(const D3DCOLORVALUE& actual, float r, float g, float b, float a,
                         const std::string& what = "")
{
    EXPECT_FLOAT_EQ(actual.r, r) << what;
    EXPECT_FLOAT_EQ(actual.g, g) << what;
    EXPECT_FLOAT_EQ(actual.b, b) << what;
    EXPECT_FLOAT_EQ(actual.a, a) << what;
}

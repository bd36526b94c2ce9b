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

/// A GEOMOBJECT block from lists. Faces are given by their corners.
struct MeshText {
    struct Face {
        int32_t a, b, c;
        std::string smoothing; ///< group numbers separated by commas; empty for none
        int32_t material = 0;
    };

    std::string name = "Solid";
    std::vector<std::array<double, 3>> vertices;
    std::vector<Face> faces;
    std::vector<std::array<double, 2>> tVertices;
    std::vector<std::array<int32_t, 3>> tFaces; ///< empty: no list of texture faces
    std::string weights;                        ///< the contents of a MESH_WEIGHTS block
    std::string more;                           ///< further keywords of the node

    std::string Text() const;
    std::string MeshBlock() const; ///< without the node around it
};

/// The cube from (0, 0, 0) to (1, 1, 1): 8 vertices, whose indices have one bit each for x, y and
/// z; two triangles for each of the sides -z, +z, -y, +y, -x, +x, all facing outwards. `smoothing`
/// has one text per side, or one for all.
MeshText Cube(const std::vector<std::string>& smoothing);
/// The outward normals of the sides of `Cube`, in its order.
extern const std::array<D3DXVECTOR3, 6> kCubeSides;

/// The text of a mesh with another name.
std::string Named(const MeshText& mesh, const char* name, const std::string& more = "");
std::string Clone(const std::string& name, const std::string& source, const std::string& more = "");
/// The contents of a material with a red and a green submaterial.
extern const char* const kTwoParts;

/// One triangle in the plane z = 0, whose normal is +z.
MeshText Triangle();

/// What a device mesh holds.
struct MeshContents {
    struct Vertex {
        D3DXVECTOR3 position;
        D3DXVECTOR3 normal;
        float u, v; ///< 0 if there are no texture coordinates
        std::array<uint8_t, 4> bones;
        std::vector<float> weights; ///< only those that are stored: not the last one
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
    /// Loads a text as "scene.qsa".
    void Load(const std::string& text, uint32_t flags = 0);
    /// The message of the error that loading a text ends in, or "no error".
    std::string LoadError(const std::string& text, uint32_t flags = 0);
    /// How many of the loader's warnings with this text were logged; repeats count once.
    int Warnings(const std::string& text) const;
    /// All warnings so far, without the prefix of each text.
    std::vector<std::string> AllWarnings() const;

    KRE_Mesh& Mesh(int32_t i) { return *scene.meshes.Get(i); }
    KRE_3dObject& Object(int32_t i) { return *scene.objects.Get(i); }

    /// Opens a text under the same name, to test a part of the importer on its own.
    QSA_SceneText& Opened(const std::string& text);

    KRE_3dScene scene;
    QSALoader loader;

private:
    QSA_SceneText opened;
};

/// The texts of material and node blocks that many tests need.
std::string MaterialList(const std::vector<std::string>& materials);
std::string Helper(const std::string& inside);
/// The bytes of a bitmap file of 1 by 1 pixels.
std::string OnePixelBitmap();

inline void ExpectVec3(const D3DXVECTOR3& actual, float x, float y, float z,
                       const std::string& what = "", float tolerance = 1e-6f)
{
    EXPECT_NEAR(actual.x, x, tolerance) << what;
    EXPECT_NEAR(actual.y, y, tolerance) << what;
    EXPECT_NEAR(actual.z, z, tolerance) << what;
}

inline void ExpectColor(const D3DCOLORVALUE& actual, float r, float g, float b, float a,
                        const std::string& what = "")
{
    EXPECT_FLOAT_EQ(actual.r, r) << what;
    EXPECT_FLOAT_EQ(actual.g, g) << what;
    EXPECT_FLOAT_EQ(actual.b, b) << what;
    EXPECT_FLOAT_EQ(actual.a, a) << what;
}

#include "tests/render/SceneDrawing.h"

#include <cmath>
#include <cstring>

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

/// The coordinate for one component of a reflected ray: component / (sqrt(z * z + 1) * 2.8284) +
/// 0.5.
float Coordinate(double component, double z)
{
    return static_cast<float>(component / (std::sqrt(z * z + 1.0) * 2.8284) + 0.5);
}

class SubsetDraw : public SceneDrawing {
protected:
    /// A mesh of four vertices with one material, whose reflection is computed into `set`.
    KRE_Mesh& AddMirror(int32_t set, DWORD fvf = kPlainFormat)
    {
        KRE_Mesh& mesh = AddMesh("mirror", 1, 0.0f, fvf);
        mesh.materials[0].reflectionSet = set;
        MakeVertices(mesh, 4);
        DeviceMesh(mesh).table = {{0, 0, 2, 0, 4}};
        return mesh;
    }

    template <class Value>
    static void Write(KRE_Mesh& mesh, int32_t vertex, int32_t offset, const Value& value)
    {
        std::memcpy(&DeviceMesh(mesh).vertices[static_cast<size_t>(mesh.stride * vertex + offset)],
                    &value, sizeof value);
    }
    static D3DXVECTOR2 Read(KRE_Mesh& mesh, int32_t vertex, int32_t offset)
    {
        D3DXVECTOR2 value;
        std::memcpy(&value,
                    &DeviceMesh(mesh).vertices[static_cast<size_t>(mesh.stride * vertex + offset)],
                    sizeof value);
        return value;
    }

    /// The coordinates that the first vertex gets when drawn with this position and normal.
    D3DXVECTOR2 Reflect(KRE_Mesh& mesh, const D3DXVECTOR3& position, const D3DXVECTOR3& normal)
    {
        Write(mesh, 0, 0, position);
        Write(mesh, 0, mesh.normalOffset, normal);
        gGfx->DrawSubset(mesh, 0);
        return Read(mesh, 0, mesh.textureOffset);
    }
};

/// A skinned vertex at the origin, with a normal pointing up.
class SkinReflection : public SubsetDraw {
protected:
    D3DXVECTOR2 Reflect(const float (&weights)[2], const uint8_t (&bones)[4],
                        DWORD position = D3DFVF_XYZB3)
    {
        KRE_Mesh& mesh =
            AddMirror(0, position | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL | D3DFVF_TEX1);
        for (int32_t i = 0; i < mesh.blendCount - 1; ++i)
            Write(mesh, 0, mesh.weightOffset + 4 * i, weights[i]);
        Write(mesh, 0, mesh.matrixIndexOffset, bones);
        return SubsetDraw::Reflect(mesh, {0, 0, 0}, {0, 1, 0});
    }
};

} // namespace

// ---- Without a reflection

TEST_F(SubsetDraw, MeshDrawsItsOwnAttribute)
{
    KRE_Mesh& mesh = AddMesh("box", 3);
    EXPECT_EQ(gGfx->DrawSubset(mesh, 2), 1);
    EXPECT_THAT(Calls(), ElementsAre("Mesh::DrawSubset box 2"));
}

TEST_F(SubsetDraw, AttributeWithoutAMaterialHasNoReflection)
{
    KRE_Mesh& mesh = AddMesh("box", 1);
    for (const int32_t subset : {-1, 1, INT32_MAX})
        EXPECT_EQ(gGfx->DrawSubset(mesh, subset), 1);
    EXPECT_THAT(Calls(), Not(Contains(HasSubstr("GetAttributeTable"))));
}

TEST_F(SubsetDraw, FailureToDrawIsAnError)
{
    KRE_Mesh& mesh = AddMesh("box");
    recorder->FailNext("Mesh::DrawSubset", D3DERR_INVALIDCALL);
    EXPECT_EQ(RaisedBy([&] { gGfx->DrawSubset(mesh, 0); }),
              "DrawSubset failed: D3DERR_INVALIDCALL");
}

TEST_F(SubsetDraw, DisabledDrawingLeavesTheMeshAlone)
{
    gGfx->drawDisabled = 1;
    EXPECT_EQ(gGfx->DrawSubset(AddMesh("box"), 0), 1);
    EXPECT_EQ(gGfx->DrawSubset(AddMirror(0), 0), 1);
    EXPECT_THAT(Calls(), Not(Contains(HasSubstr("Draw"))));
}

// ---- The attribute table

// The mesh has four vertices; face 2 begins with index 6.
TEST_F(SubsetDraw, ReflectingSubsetIsDrawnByItsEntryOfTheTable)
{
    KRE_Mesh& mesh = AddMirror(0);
    DeviceMesh(mesh).table = {{0, 2, 2, 0, 4}};
    Calls();
    EXPECT_EQ(gGfx->DrawSubset(mesh, 0), 1);
    EXPECT_THAT(Calls(),
                ElementsAre("Mesh::GetAttributeTable count", "Mesh::GetAttributeTable entries",
                            "Mesh::LockVertexBuffer 0", "Mesh::UnlockVertexBuffer",
                            HasSubstr("SetIndices"), "SetFVF D3DFVF_XYZ|D3DFVF_NORMAL|D3DFVF_TEX1",
                            HasSubstr("SetStreamSource"),
                            "DrawIndexedPrimitive D3DPT_TRIANGLELIST 0 0 4 6 2"));
}

TEST_F(SubsetDraw, EntryOutOfOrderIsAnErrorAndNothingIsDrawn)
{
    static const struct {
        const char* what;
        std::vector<D3DXATTRIBUTERANGE> table;
    } cases[] = {
        {"no table", {}},
        {"too short", {{0, 0, 2, 0, 4}}},
        {"an attribute without faces is left out", {{0, 0, 2, 0, 4}, {2, 2, 2, 0, 4}}},
    };
    KRE_Mesh& mesh = AddMirror(0);
    mesh.AllocateMaterials(2);
    mesh.materials[1].reflectionSet = 0;
    for (const auto& c : cases) {
        DeviceMesh(mesh).table = c.table;
        EXPECT_EQ(RaisedBy([&] { gGfx->DrawSubset(mesh, 1); }),
                  "Attribute set for material 1 in mesh 'mirror' with wrong ID")
            << c.what;
    }
    EXPECT_FALSE(WasCalled("Draw"));
}

TEST_F(SubsetDraw, FailureToReadTheTableIsAnError)
{
    KRE_Mesh& mesh = AddMirror(0);
    for (const char* what : {"count", "entries"}) {
        recorder->FailNext("Mesh::GetAttributeTable", E_OUTOFMEMORY, what);
        EXPECT_EQ(RaisedBy([&] { gGfx->DrawSubset(mesh, 0); }),
                  "GetAttributeTable failed: E_OUTOFMEMORY");
    }
}

TEST_F(SubsetDraw, OtherNegativeSetTakesTheTableAndNoCoordinates)
{
    KRE_Mesh& mesh = AddMirror(-2);
    gGfx->DrawSubset(mesh, 0);
    EXPECT_TRUE(WasCalled("DrawIndexedPrimitive"));
    EXPECT_FALSE(WasCalled("LockVertexBuffer"));
}

// ---- Coordinates of a rigid mesh

// The eye is at the origin, the vertex five in front of it, so the ray to the eye is (0, 0, -1); it
// is reflected at the normal.
TEST_F(SubsetDraw, NormalReflectsTheRayToTheEye)
{
    static const struct {
        const char* what;
        D3DXVECTOR3 normal;
        double x, y, z; // the reflected ray
    } cases[] = {
        {"straight back", {0, 0, -1}, 0, 0, -1},
        {"to the right", {1, 0, -1}, 1, 0, 0},
        {"up", {0, 1, -1}, 0, 1, 0},
        {"on past an edge", {0, 1, 0}, 0, 0, 1},
        // 2 * 0.8 * (0.6, 0, -0.8) - (0, 0, -1)
        {"aside", {0.6f, 0, -0.8f}, 0.96, 0, -0.28},
        {"normal of any length", {-30, 0, -40}, -0.96, 0, -0.28},
    };
    KRE_Mesh& mesh = AddMirror(0);
    for (const auto& c : cases) {
        const D3DXVECTOR2 actual = Reflect(mesh, {0, 0, 5}, c.normal);
        EXPECT_NEAR(actual.x, Coordinate(c.x, c.z), 1e-6f) << c.what;
        EXPECT_NEAR(actual.y, Coordinate(c.y, c.z), 1e-6f) << c.what;
    }
}

TEST_F(SubsetDraw, WorldMatrixPlacesVertexAndNormal)
{
    KRE_Mesh& mesh = AddMirror(0);
    // A quarter turn about z takes x to y; scaled by 3 and five away.
    gGfx->SetWorldMatrix(D3DXMATRIX(0, 3, 0, 0, -3, 0, 0, 0, 0, 0, 3, 0, 0, 0, 5, 1));
    const D3DXVECTOR2 actual = Reflect(mesh, {0, 0, 0}, {1, 0, -1});
    EXPECT_NEAR(actual.x, 0.5f, 1e-6f);
    EXPECT_NEAR(actual.y, Coordinate(1, 0), 1e-6f);
}

TEST_F(SubsetDraw, EyeIsWhereTheViewLooksFrom)
{
    KRE_Mesh& mesh = AddMirror(0);
    gGfx->SetLookAt({10, 0, 5}, {0, 0, 5}, {0, 1, 0});
    const D3DXVECTOR2 actual = Reflect(mesh, {0, 0, 5}, {1, 0, 0});
    EXPECT_NEAR(actual.x, Coordinate(1, 0), 1e-6f) << "(1, 0, 0) comes straight back";
}

// Eye, vertex and normal rotate together, and so does the reflected ray: from (1, 0, 0) to (0, 1,
// 0).
TEST_F(SubsetDraw, EnvironmentMovesEyeAndRigidMesh)
{
    KRE_Mesh& mesh = AddMirror(0);
    gGfx->environmentTM = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 9, 8, 7, 1};
    const D3DXVECTOR2 actual = Reflect(mesh, {0, 0, 5}, {1, 0, -1});
    EXPECT_NEAR(actual.x, 0.5f, 1e-6f);
    EXPECT_NEAR(actual.y, Coordinate(1, 0), 1e-6f);
}

// (0, 0, -1) and (0, 0, 1) both give the centre; the mirror ball's own formula has no limit for the
// latter.
TEST_F(SubsetDraw, QuirkWhatIsBehindIsShownLikeWhatIsInFront)
{
    KRE_Mesh& mesh = AddMirror(0);
    const D3DXVECTOR2 front = Reflect(mesh, {0, 0, 5}, {0, 0, -1});
    const D3DXVECTOR2 behind = Reflect(mesh, {0, 0, 5}, {0, 1, 0});
    EXPECT_NEAR(front.x, behind.x, 1e-6f);
    EXPECT_NEAR(front.y, behind.y, 1e-6f);
}

TEST_F(SubsetDraw, CoordinatesAreWrittenEachTimeTheSubsetIsDrawn)
{
    KRE_Mesh& mesh = AddMirror(0);
    const D3DXVECTOR2 before = Reflect(mesh, {0, 0, 5}, {1, 0, -1});
    gGfx->SetLookAt({10, 0, 5}, {0, 0, 5}, {0, 1, 0});
    gGfx->DrawSubset(mesh, 0);
    EXPECT_NE(Read(mesh, 0, mesh.textureOffset).x, before.x);
    EXPECT_EQ(CallsOf("Mesh::LockVertexBuffer").size(), 2u);
}

// ---- Where they are written

TEST_F(SubsetDraw, OnlyTheVerticesOfTheEntryAreWritten)
{
    static const struct {
        const char* what;
        DWORD first, count;
        bool written[4];
    } cases[] = {
        {"middle", 1, 2, {false, true, true, false}},
        {"more than there are", 3, 1000, {false, false, false, true}},
        {"behind the end", 9, 4, {false, false, false, false}},
        {"sum that overflows", 2, 0xFFFFFFFF, {false, false, true, true}},
    };
    for (const auto& c : cases) {
        KRE_Mesh& mesh = AddMirror(0);
        DeviceMesh(mesh).table = {{0, 0, 2, c.first, c.count}};
        for (int32_t i = 0; i < 4; ++i) {
            Write(mesh, i, 0, D3DXVECTOR3(0, 0, 5));
            Write(mesh, i, mesh.normalOffset, D3DXVECTOR3(0, 0, -1));
        }
        gGfx->DrawSubset(mesh, 0);
        for (int32_t i = 0; i < 4; ++i)
            EXPECT_EQ(Read(mesh, i, mesh.textureOffset).x, c.written[i] ? 0.5f : 0.0f)
                << c.what << ", vertex " << i;
    }
}

// Position 12, normal 12, a first set of 4, 8, 12 or 16 bytes, then the set that is written.
TEST_F(SubsetDraw, PrecedingSetsCountWithTheirSizes)
{
    static const struct {
        DWORD size;
        int32_t offset;
    } cases[] = {{D3DFVF_TEXCOORDSIZE1(0), 28},
                 {D3DFVF_TEXCOORDSIZE2(0), 32},
                 {D3DFVF_TEXCOORDSIZE3(0), 36},
                 {D3DFVF_TEXCOORDSIZE4(0), 40}};
    for (const auto& c : cases) {
        KRE_Mesh& mesh = AddMirror(1, D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX2 | c.size);
        Reflect(mesh, {0, 0, 5}, {1, 0, -1});
        EXPECT_NEAR(Read(mesh, 0, c.offset).x, Coordinate(1, 0), 1e-6f) << c.offset;
        EXPECT_NEAR(Read(mesh, 0, c.offset).y, 0.5f, 1e-6f) << c.offset;
        EXPECT_EQ(Read(mesh, 0, 24).x, 0.0f) << "the set ahead stays";
    }
}

// Files may name any set, and a material with three maps has a format without such a set.
TEST_F(SubsetDraw, LayoutThatCannotHoldThemIsDrawnAsItIs)
{
    static const struct {
        const char* what;
        int32_t set;
        DWORD fvf;
    } cases[] = {
        {"one set too many", 1, kPlainFormat},
        {"far outside", INT32_MAX, kPlainFormat},
        {"no set", 0, D3DFVF_XYZ | D3DFVF_NORMAL},
        {"one coordinate", 0, kPlainFormat | D3DFVF_TEXCOORDSIZE1(0)},
        {"no normal", 0, D3DFVF_XYZ | D3DFVF_TEX1},
        {"weights without bones", 0, D3DFVF_XYZB2 | D3DFVF_NORMAL | D3DFVF_TEX1},
    };
    for (const auto& c : cases) {
        KRE_Mesh& mesh = AddMirror(c.set, c.fvf);
        Calls();
        EXPECT_EQ(gGfx->DrawSubset(mesh, 0), 1) << c.what;
        EXPECT_TRUE(WasCalled("DrawIndexedPrimitive")) << c.what;
        EXPECT_FALSE(WasCalled("LockVertexBuffer")) << c.what;
    }
}

TEST_F(SubsetDraw, BufferThatCannotBeLockedIsAnError)
{
    KRE_Mesh& mesh = AddMirror(0);
    recorder->FailNext("Mesh::LockVertexBuffer", D3DERR_INVALIDCALL);
    EXPECT_THAT(RaisedBy([&] { gGfx->DrawSubset(mesh, 0); }),
                HasSubstr("LockVertexBuffer failed: D3DERR_INVALIDCALL"));
}

// ---- Coordinates of a skinned mesh

// The palette shifts the vertex away from the eye at the origin; its normal is perpendicular to the
// ray, so the reflected ray continues through the vertex: it is the normalised position of the
// vertex.
TEST_F(SkinReflection, WeightsBlendThePalette)
{
    gGfx->SetWorldMatrix(Shift(100, 0, 100), 0);
    gGfx->SetWorldMatrix(Shift(3, 0, 4), 1);
    gGfx->SetWorldMatrix(Shift(0, 0, 8), 2);
    gGfx->SetWorldMatrix(Shift(-3, 0, 4), 3);
    static const struct {
        const char* what;
        DWORD position;
        float weights[2];
        uint8_t bones[4];
        double x, z; // the vertex's position
    } cases[] = {
        {"the rest goes to the last bone", D3DFVF_XYZB3, {0.5f, 0.25f}, {1, 2, 3, 0}, 0.75, 5},
        {"all of it", D3DFVF_XYZB3, {0, 0}, {1, 2, 3, 0}, -3, 4},
        {"the first weight reaches 1", D3DFVF_XYZB3, {1, 0.5f}, {1, 2, 3, 0}, 3, 4},
        {"the first goes beyond 1", D3DFVF_XYZB3, {2, 0.5f}, {1, 2, 3, 0}, 3, 4},
        {"the second reaches 1", D3DFVF_XYZB3, {0.5f, 0.5f}, {1, 3, 2, 0}, 0, 4},
        // Weights of 1.25 in total: (0.5 * 3 - 0.75 * 3, 0.5 * 4 + 0.75 * 4), divided by w of 1.25.
        {"the second goes beyond 1", D3DFVF_XYZB3, {0.5f, 0.75f}, {1, 3, 2, 0}, -0.6, 4},
        {"one weight", D3DFVF_XYZB2, {0.25f, 9}, {1, 2, 0, 0}, 0.75, 7},
        {"no weight: one bone", D3DFVF_XYZB1, {9, 9}, {3, 0, 0, 0}, -3, 4},
    };
    for (const auto& c : cases) {
        const D3DXVECTOR2 actual = Reflect(c.weights, c.bones, c.position);
        const double length = std::sqrt(c.x * c.x + c.z * c.z);
        EXPECT_NEAR(actual.x, Coordinate(c.x / length, c.z / length), 1e-6f) << c.what;
        EXPECT_NEAR(actual.y, 0.5f, 1e-6f) << c.what;
    }
}

TEST_F(SkinReflection, FourthBoneTakesWhatThreeWeightsLeave)
{
    for (int32_t i = 0; i < 4; ++i)
        gGfx->SetWorldMatrix(i == 3 ? Shift(3, 0, 4) : Shift(0, 0, 4), i);
    KRE_Mesh& mesh =
        AddMirror(0, D3DFVF_XYZB4 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL | D3DFVF_TEX1);
    const uint8_t bones[4] = {0, 1, 2, 3};
    Write(mesh, 0, mesh.matrixIndexOffset, bones);
    const D3DXVECTOR2 actual = SubsetDraw::Reflect(mesh, {0, 0, 0}, {0, 1, 0});
    EXPECT_NEAR(actual.x, Coordinate(0.6, 0.8), 1e-6f);
}

TEST_F(SkinReflection, EveryBoneByteIsInsideThePalette)
{
    gGfx->SetWorldMatrix(Shift(3, 0, 4), 255);
    EXPECT_NEAR(Reflect({1, 0}, {255, 255, 255, 255}).x, Coordinate(0.6, 0.8), 1e-6f);
}

// The eye goes to (5, 0, 5), the vertex stays at (0, 0, 5): the ray to the eye is (1, 0, 0), and
// reflected at the normal (1, 0, -1) it is (0, 0, -1).
TEST_F(SkinReflection, QuirkEnvironmentMovesOnlyTheEye)
{
    gGfx->environmentTM = Shift(5, 0, 5);
    KRE_Mesh& mesh = AddMirror(0, kBlendedFormat);
    const D3DXVECTOR2 actual = SubsetDraw::Reflect(mesh, {0, 0, 5}, {1, 0, -1});
    EXPECT_NEAR(actual.x, 0.5f, 1e-6f);
    EXPECT_NEAR(actual.y, 0.5f, 1e-6f);
}

TEST_F(SkinReflection, NormalIsBlendedAndNormalised)
{
    // Half of a scaling by 2 and half of the identity: scaled by 1.5.
    gGfx->SetWorldMatrix(Scale(2, 2, 2), 1);
    gGfx->SetWorldMatrix(Scale(1, 1, 1), 2);
    KRE_Mesh& mesh = AddMirror(0, kBlendedFormat);
    const float weights[2] = {0.5f, 0.5f};
    const uint8_t bones[4] = {1, 2, 0, 0};
    Write(mesh, 0, mesh.weightOffset, weights);
    Write(mesh, 0, mesh.matrixIndexOffset, bones);
    const D3DXVECTOR2 actual = SubsetDraw::Reflect(mesh, {0, 0, 5}, {1, 0, -1});
    EXPECT_NEAR(actual.x, Coordinate(1, 0), 1e-6f);
}

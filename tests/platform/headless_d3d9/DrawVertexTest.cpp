// Vertex processing: transforms, lights, fog and point sizes, generated coordinates, clipping. The
// numbers are computed by hand; most draws cover the whole target with one vertex.

#include "tests/platform/headless_d3d9/DrawFixture.h"

namespace {

struct LitVertex {
    float x, y, z;
    float nx, ny, nz;
    D3DCOLOR diffuse;
    D3DCOLOR specular;

    static constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_DIFFUSE | D3DFVF_SPECULAR;
};

struct PlainVertex {
    float x, y, z;
    D3DCOLOR diffuse = 0xFFFFFFFF;

    static constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_DIFFUSE;
};

D3DMATRIX Identity()
{
    D3DMATRIX matrix = {};
    matrix._11 = matrix._22 = matrix._33 = matrix._44 = 1.0f;
    return matrix;
}

D3DMATRIX Moved(float x, float y, float z)
{
    D3DMATRIX matrix = Identity();
    matrix._41 = x;
    matrix._42 = y;
    matrix._43 = z;
    return matrix;
}

class DrawVertexTest : public DrawTest {
protected:
    /// The centre pixel after drawing a vertex as a point that covers the target.
    template <typename Vertex>
    uint32_t Shown(const Vertex& vertex)
    {
        State(D3DRS_POINTSIZE, 16.0f);
        EXPECT_EQ(Draw<Vertex>(D3DPT_POINTLIST, 1, {vertex}), D3D_OK);
        return Pixel(4, 4);
    }

    /// Where a point of one pixel is drawn, as x + 10 * y, or -1.
    template <typename Vertex>
    int Place(const Vertex& vertex)
    {
        EXPECT_EQ(device->ColorFill(target.Get(), nullptr, 0), D3D_OK);
        State(D3DRS_POINTSIZE, 1.0f);
        EXPECT_EQ(Draw<Vertex>(D3DPT_POINTLIST, 1, {vertex}), D3D_OK);
        const std::vector<uint32_t> pixels = Pixels();
        for (UINT i = 0; i < kSide * kSide; ++i)
            if (pixels[i] != 0)
                return static_cast<int>(i % kSide + 10 * (i / kSide));
        return -1;
    }
};

class DrawLightTest : public DrawVertexTest {
protected:
    void SetUp() override
    {
        DrawVertexTest::SetUp();
        State(D3DRS_LIGHTING, static_cast<DWORD>(TRUE));
        State(D3DRS_COLORVERTEX, static_cast<DWORD>(FALSE));
        material.Diffuse = {1.0f, 0.5f, 0.25f, 0.5f};
        material.Power = 2.0f;
        light.Type = D3DLIGHT_DIRECTIONAL;
        light.Diffuse = {1.0f, 1.0f, 1.0f, 1.0f};
        light.Direction = {0.0f, 0.0f, 1.0f};
        light.Attenuation0 = 1.0f;
        light.Range = 100.0f;
    }

    /// The colour of a vertex at (0, 0, 0.5), facing the eye or with the given normal.
    uint32_t Lit(float nx = 0.0f, float ny = 0.0f, float nz = -1.0f, D3DCOLOR diffuse = 0xFFFFFFFF,
                 D3DCOLOR specular = 0)
    {
        EXPECT_EQ(device->SetMaterial(&material), D3D_OK);
        EXPECT_EQ(device->SetLight(0, &light), D3D_OK);
        EXPECT_EQ(device->LightEnable(0, TRUE), D3D_OK);
        return Shown(LitVertex{0.0f, 0.0f, 0.5f, nx, ny, nz, diffuse, specular});
    }

    D3DMATERIAL9 material = {};
    D3DLIGHT9 light = {};
};

} // namespace

/// x = -1..1 spans the 8 pixels from their left edge at position 0 to 8, y downwards. Centres are
/// at integers: 0 is position 4, 0.25 is position 5; y of 0.5 is position 2.
TEST_F(DrawVertexTest, TheViewportMapsMinusOneToOne)
{
    EXPECT_EQ(Place(PlainVertex{0.0f, 0.0f, 0.5f}), 44);
    EXPECT_EQ(Place(PlainVertex{0.25f, 0.5f, 0.5f}), 25);
    const D3DVIEWPORT9 viewport = {2, 4, 4, 2, 0.0f, 1.0f};
    ASSERT_EQ(device->SetViewport(&viewport), D3D_OK);
    EXPECT_EQ(Place(PlainVertex{0.0f, 0.0f, 0.5f}), 54) << "2 + 4 / 2, 4 + 2 / 2";
}

/// First world, then view, then projection: ((0 + 0.25) * 2 - 0.25) / 1 = 0.25, position 5.
TEST_F(DrawVertexTest, TransformsApplyInOrder)
{
    const D3DMATRIX world = Moved(0.25f, 0.0f, 0.0f);
    D3DMATRIX view = Identity();
    view._11 = 2.0f;
    const D3DMATRIX projection = Moved(-0.25f, 0.0f, 0.0f);
    device->SetTransform(D3DTS_WORLD, &world);
    device->SetTransform(D3DTS_VIEW, &view);
    device->SetTransform(D3DTS_PROJECTION, &projection);
    EXPECT_EQ(Place(PlainVertex{0.0f, 0.0f, 0.5f}), 45);
}

/// Weight 0.75 of a translation by 0 and the remaining 0.25 of one by 1: 0.25, position 5.
TEST_F(DrawVertexTest, TheLastWeightIsTheRemainderToOne)
{
    struct Blended {
        float x, y, z, weight;
        D3DCOLOR diffuse;
    };
    const Blended vertex = {0.0f, 0.0f, 0.5f, 0.75f, 0xFFFFFFFF};
    const D3DMATRIX second = Moved(1.0f, 0.0f, 0.0f);
    device->SetTransform(D3DTS_WORLDMATRIX(1), &second);
    State(D3DRS_VERTEXBLEND, static_cast<DWORD>(D3DVBF_1WEIGHTS));
    ASSERT_EQ(device->SetFVF(D3DFVF_XYZB1 | D3DFVF_DIFFUSE), D3D_OK);
    ASSERT_EQ(device->DrawPrimitiveUP(D3DPT_POINTLIST, 1, &vertex, sizeof vertex), D3D_OK);
    EXPECT_EQ(Pixel(5, 4), 0xFFFFFFFFu);
}

/// Indices 7 and 200: half of a translation by (0.5, 0) and half of one by (0, 1) is (0.25, 0.5):
/// position 5, 2.
TEST_F(DrawVertexTest, IndicesChooseTheMatricesThatAreBlended)
{
    struct Skinned {
        float x, y, z, weight;
        BYTE indices[4];
        D3DCOLOR diffuse;
    };
    const Skinned vertex = {0.0f, 0.0f, 0.5f, 0.5f, {7, 200, 0, 0}, 0xFFFFFFFF};
    const D3DMATRIX right = Moved(0.5f, 0.0f, 0.0f), up = Moved(0.0f, 1.0f, 0.0f);
    device->SetTransform(D3DTS_WORLDMATRIX(7), &right);
    device->SetTransform(D3DTS_WORLDMATRIX(200), &up);
    State(D3DRS_VERTEXBLEND, static_cast<DWORD>(D3DVBF_1WEIGHTS));
    State(D3DRS_INDEXEDVERTEXBLENDENABLE, static_cast<DWORD>(TRUE));
    ASSERT_EQ(device->SetFVF(D3DFVF_XYZB2 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_DIFFUSE), D3D_OK);
    ASSERT_EQ(device->DrawPrimitiveUP(D3DPT_POINTLIST, 1, &vertex, sizeof vertex), D3D_OK);
    EXPECT_EQ(Pixel(5, 2), 0xFFFFFFFFu);
}

TEST_F(DrawVertexTest, WithoutWeightsOneIndexChoosesTheMatrix)
{
    struct Rigid {
        float x, y, z;
        BYTE indices[4];
        D3DCOLOR diffuse;
    };
    const Rigid vertex = {0.0f, 0.0f, 0.5f, {3, 0, 0, 0}, 0xFFFFFFFF};
    const D3DMATRIX right = Moved(0.5f, 0.0f, 0.0f);
    device->SetTransform(D3DTS_WORLDMATRIX(3), &right);
    State(D3DRS_VERTEXBLEND, static_cast<DWORD>(D3DVBF_0WEIGHTS));
    State(D3DRS_INDEXEDVERTEXBLENDENABLE, static_cast<DWORD>(TRUE));
    ASSERT_EQ(device->SetFVF(D3DFVF_XYZB1 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_DIFFUSE), D3D_OK);
    ASSERT_EQ(device->DrawPrimitiveUP(D3DPT_POINTLIST, 1, &vertex, sizeof vertex), D3D_OK);
    EXPECT_EQ(Pixel(6, 4), 0xFFFFFFFFu);
}

/// Facing the light the vertex shows its full diffuse colour; alpha is the material's.
TEST_F(DrawLightTest, DirectionalLightFollowsTheCosine)
{
    EXPECT_EQ(Lit(), 0x80FF8040u);
    // cos 60 degrees = 0.5: 127.5, 63.75, 31.875
    const uint32_t half = Lit(0.8660254f, 0.0f, -0.5f);
    EXPECT_NEAR(static_cast<double>(half >> 16 & 0xFF), 127.5, 0.6);
    EXPECT_EQ(half & 0xFFFF, 0x4020u);
    EXPECT_EQ(Lit(0.0f, 0.0f, 1.0f) & 0xFFFFFF, 0u) << "turned away";
}

TEST_F(DrawLightTest, AmbientAndEmissiveShineFromEverywhere)
{
    light.Diffuse = {};
    light.Ambient = {0.2f, 0.2f, 0.2f, 0.0f};
    material.Ambient = {0.5f, 1.0f, 0.0f, 0.0f};
    material.Emissive = {0.0f, 0.0f, 0.4f, 0.0f};
    State(D3DRS_AMBIENT, static_cast<DWORD>(0x00666666)); // 0.4
    // (0.4 + 0.2) * 0.5 = 0.3 (76.5), 0.6 (153), emissive 0.4 (102)
    const uint32_t pixel = Lit(0.0f, 0.0f, 1.0f);
    EXPECT_NEAR(static_cast<double>(pixel >> 16 & 0xFF), 76.5, 0.6);
    EXPECT_EQ(pixel & 0xFFFF, 0x9966u);
}

/// At distance 2: 1 / (0.5 + 0.25 * 2 + 0.25 * 4) = 0.5.
TEST_F(DrawLightTest, PointLightWeakensWithDistance)
{
    light.Type = D3DLIGHT_POINT;
    light.Position = {0.0f, 0.0f, -1.5f};
    light.Attenuation0 = 0.5f;
    light.Attenuation1 = light.Attenuation2 = 0.25f;
    EXPECT_EQ(Lit() & 0xFFFF, 0x4020u);
    light.Range = 1.9f;
    EXPECT_EQ(Lit() & 0xFFFFFF, 0u) << "out of range";
}

/// A cone from straight above the vertex, tilted so that the vertex is 45 degrees off its axis: cos
/// 45 = 0.7071. Inner half angle 30 (0.8660), outer 60 (0.5): (0.7071 - 0.5) / 0.3660 = 0.5659.
TEST_F(DrawLightTest, SpotLightFallsOffBetweenItsCones)
{
    light.Type = D3DLIGHT_SPOT;
    light.Position = {0.0f, 0.0f, -0.5f};
    light.Direction = {1.0f, 0.0f, 1.0f};
    light.Theta = 1.0471976f;
    light.Phi = 2.0943951f;
    light.Falloff = 1.0f;
    EXPECT_EQ(Lit() >> 16 & 0xFF, 144u) << "0.5659 * 255 = 144.3";
    light.Falloff = 2.0f;
    EXPECT_EQ(Lit() >> 16 & 0xFF, 82u) << "0.5659^2 * 255 = 81.7";
    light.Phi = 1.5f;
    light.Theta = 0.5f;
    EXPECT_EQ(Lit() & 0xFFFFFF, 0u) << "outside: half of 1.5 is less than 45 degrees";
    light.Phi = light.Theta = 1.6f;
    EXPECT_EQ(Lit() & 0xFFFF, 0x8040u) << "inside";
}

/// The light comes along the view: the halfway vector is the normal, so the highlight is full.
TEST_F(DrawLightTest, HighlightsAreAddedOnlyIfAskedFor)
{
    light.Diffuse = {};
    light.Specular = {1.0f, 1.0f, 1.0f, 0.0f};
    material.Specular = {0.2f, 0.4f, 0.6f, 0.0f};
    EXPECT_EQ(Lit() & 0xFFFFFF, 0u);
    State(D3DRS_SPECULARENABLE, static_cast<DWORD>(TRUE));
    EXPECT_EQ(Lit() & 0xFFFFFF, 0x336699u);
    // Light from the side, at 90 degrees: the halfway vector is at 45, and so is the tilted normal.
    light.Direction = {-1.0f, 0.0f, 0.0f};
    EXPECT_EQ(Lit(0.7071068f, 0.0f, -0.7071068f) & 0xFFFFFF, 0x336699u);
    // With the normal towards the eye it would be cos 45 squared = 0.5, but the light does not
    // reach that face.
    EXPECT_EQ(Lit() & 0xFFFFFF, 0u);
}

/// The vertex's colours replace the material's if they are selected and present.
TEST_F(DrawLightTest, MaterialColoursCanComeFromTheVertex)
{
    State(D3DRS_COLORVERTEX, static_cast<DWORD>(TRUE));
    EXPECT_EQ(Lit(0, 0, -1, 0x40112233, 0xFF445566), 0x40112233u) << "diffuse from colour 1";
    State(D3DRS_DIFFUSEMATERIALSOURCE, static_cast<DWORD>(D3DMCS_COLOR2));
    EXPECT_EQ(Lit(0, 0, -1, 0x40112233, 0xFF445566), 0xFF445566u);
    State(D3DRS_DIFFUSEMATERIALSOURCE, static_cast<DWORD>(D3DMCS_MATERIAL));
    EXPECT_EQ(Lit(0, 0, -1, 0x40112233, 0xFF445566), 0x80FF8040u);
    State(D3DRS_DIFFUSEMATERIALSOURCE, static_cast<DWORD>(D3DMCS_COLOR1));
    State(D3DRS_COLORVERTEX, static_cast<DWORD>(FALSE));
    EXPECT_EQ(Lit(0, 0, -1, 0x40112233), 0x80FF8040u);
}

/// Scaling by 2 halves the normals (they transform by the inverse), and so the light, unless they
/// are normalised.
TEST_F(DrawLightTest, NormalsOfScaledModelsNeedNormalising)
{
    D3DMATRIX scale = Identity();
    scale._11 = scale._22 = scale._33 = 2.0f;
    ASSERT_EQ(device->SetTransform(D3DTS_WORLD, &scale), D3D_OK);
    EXPECT_EQ(Lit() & 0xFFFF, 0x4020u);
    State(D3DRS_NORMALIZENORMALS, static_cast<DWORD>(TRUE));
    EXPECT_EQ(Lit() & 0xFFFF, 0x8040u);
}

TEST_F(DrawLightTest, LightsAddUp)
{
    light.Diffuse = {0.25f, 0.25f, 0.25f, 0.0f};
    material.Diffuse = {1.0f, 1.0f, 1.0f, 1.0f};
    for (DWORD i = 1; i < 3; ++i) {
        ASSERT_EQ(device->SetLight(i, &light), D3D_OK);
        ASSERT_EQ(device->LightEnable(i, TRUE), D3D_OK);
    }
    EXPECT_EQ(Lit() & 0xFF, 191u) << "0.75 * 255 = 191.25";
}

/// Depth 0.5 in camera space between 0 and 1 is half: (255 + 1) / 2 = 128.
TEST_F(DrawVertexTest, VertexFogUsesDepthOrDistance)
{
    State(D3DRS_FOGENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_FOGCOLOR, static_cast<DWORD>(0x00010101));
    State(D3DRS_FOGVERTEXMODE, static_cast<DWORD>(D3DFOG_LINEAR));
    EXPECT_EQ(Shown(PlainVertex{0.0f, 0.0f, 0.5f}), 0xFF808080u);
    // (0.48, 0.36, 0.8) is at distance 1: all fog.
    State(D3DRS_RANGEFOGENABLE, static_cast<DWORD>(TRUE));
    EXPECT_EQ(Shown(PlainVertex{0.48f, 0.36f, 0.8f}), 0xFF010101u);
}

/// 0.25 * 8 pixels / sqrt(1 * 1^2) = 2 pixels at distance 1, 1 pixel at distance 2 (clamped to the
/// minimum size).
TEST_F(DrawVertexTest, ScaledPointsShrinkWithDistance)
{
    const D3DMATRIX view = Moved(0.0f, 0.0f, 0.5f);
    ASSERT_EQ(device->SetTransform(D3DTS_VIEW, &view), D3D_OK);
    State(D3DRS_POINTSCALEENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_POINTSCALE_A, 0.0f);
    State(D3DRS_POINTSCALE_C, 1.0f);
    State(D3DRS_POINTSIZE, 0.25f);
    ASSERT_EQ(Draw<PlainVertex>(D3DPT_POINTLIST, 1, {{0.0f, 0.0f, 0.5f}}), D3D_OK);
    EXPECT_EQ(Coverage(), "........\n"
                          "........\n"
                          "........\n"
                          "...##...\n"
                          "...##...\n"
                          "........\n"
                          "........\n"
                          "........\n");
}

/// A sprite of 4 pixels shows four texels, regardless of the vertex's own coordinates.
TEST_F(DrawVertexTest, SpritesShowTheWholeTexture)
{
    BindTexels(0, 4, 1, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    Stage(0, D3DTSS_COLOROP, D3DTOP_SELECTARG1);
    State(D3DRS_POINTSPRITEENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_POINTSIZE, 4.0f);
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_POINTLIST, 1,
                                 {{3.5f, 3.5f, 0.5f, 1.0f, 0xFFFFFFFF, 0, 0.9f, 0.9f}}),
              D3D_OK);
    for (UINT i = 0; i < 4; ++i)
        EXPECT_EQ(Pixel(2 + i, 3), 0xFF000001u + i);
    EXPECT_EQ(Pixel(1, 3), 0u);
    EXPECT_EQ(Pixel(6, 3), 0u);
}

/// A point at (0.3, 0, 0.5) in camera space reads 0.3 of a texture of four texels, the second;
/// facing the eye, the normal (0, 0, -1) reads 0, the first; moved by 0.6 in row 4 it reads the
/// third.
TEST_F(DrawVertexTest, CoordinatesAreGeneratedInCameraSpace)
{
    BindTexels(0, 4, 1, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    Stage(0, D3DTSS_COLOROP, D3DTOP_SELECTARG1);
    const LitVertex vertex = {0.3f, 0.0f, 0.5f, 0.0f, 0.0f, -1.0f, 0xFFFFFFFF, 0};
    Stage(0, D3DTSS_TEXCOORDINDEX, D3DTSS_TCI_CAMERASPACEPOSITION);
    EXPECT_EQ(Shown(vertex) & 0xFF, 2u);
    Stage(0, D3DTSS_TEXCOORDINDEX, D3DTSS_TCI_CAMERASPACENORMAL);
    EXPECT_EQ(Shown(vertex) & 0xFF, 1u);
    const D3DMATRIX move = Moved(0.6f, 0.0f, 0.0f);
    ASSERT_EQ(device->SetTransform(D3DTS_TEXTURE0, &move), D3D_OK);
    Stage(0, D3DTSS_TEXTURETRANSFORMFLAGS, D3DTTFF_COUNT2);
    EXPECT_EQ(Shown(vertex) & 0xFF, 3u);
}

/// Viewed along (0.6, 0, 0.8), a face towards the eye reflects the view along (0.6, 0, -0.8): the
/// third of four texels. On a sphere map: halfway between (0.6, 0, -0.8) and (0, 0, -1), of length
/// sqrt(0.36 + 3.24) = 1.897, u = 0.6 / (2 * 1.897) + 0.5 = 0.658, the third again; viewed from the
/// other side 0.342, the second.
TEST_F(DrawVertexTest, CoordinatesAreGeneratedFromReflection)
{
    BindTexels(0, 4, 1, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    Stage(0, D3DTSS_COLOROP, D3DTOP_SELECTARG1);
    const LitVertex right = {0.6f, 0.0f, 0.8f, 0.0f, 0.0f, -1.0f, 0xFFFFFFFF, 0};
    LitVertex left = right;
    left.x = -0.6f;
    Stage(0, D3DTSS_TEXCOORDINDEX, D3DTSS_TCI_CAMERASPACEREFLECTIONVECTOR);
    EXPECT_EQ(Shown(right) & 0xFF, 3u);
    EXPECT_EQ(Shown(left) & 0xFF, 2u) << "-0.6 wraps to 0.4";
    Stage(0, D3DTSS_TEXCOORDINDEX, D3DTSS_TCI_SPHEREMAP);
    EXPECT_EQ(Shown(right) & 0xFF, 3u);
    EXPECT_EQ(Shown(left) & 0xFF, 2u);
}

/// The part in front of the near plane at z = 0 is cut off: half of a rectangle from z = -1 to 1.
TEST_F(DrawVertexTest, TheNearPlaneClips)
{
    const std::vector<PlainVertex> board = {{-1.125f, 1.125f, -1.0f},
                                            {0.875f, 1.125f, 1.0f},
                                            {-1.125f, -0.875f, -1.0f},
                                            {0.875f, -0.875f, 1.0f}};
    ASSERT_EQ(Draw(D3DPT_TRIANGLESTRIP, 2, board), D3D_OK);
    // z = 0 is at x = -0.125, position 3.5.
    EXPECT_EQ(Coverage().substr(0, 9), "....####\n");
    State(D3DRS_CLIPPING, static_cast<DWORD>(FALSE));
    ASSERT_EQ(Draw(D3DPT_TRIANGLESTRIP, 2, board), D3D_OK);
    EXPECT_EQ(Coverage().substr(0, 9), "########\n") << "depth is held at 0";
}

/// Behind the eye w is negative; only the part in front is drawn, and on the correct side. From (0,
/// 0) at w = 1 towards x = 1 at w = -1 the line reaches x / w = 1 after a third.
TEST_F(DrawVertexTest, PartsBehindTheEyeAreCutOff)
{
    D3DMATRIX projection = Identity();
    projection._44 = 0.0f;
    projection._34 = 1.0f; // w = z
    projection._33 = 0.0f;
    projection._43 = 0.1f;
    ASSERT_EQ(device->SetTransform(D3DTS_PROJECTION, &projection), D3D_OK);
    ASSERT_EQ(Draw<PlainVertex>(D3DPT_LINELIST, 1, {{0.0f, 0.0f, 1.0f}, {1.0f, 0.0f, -1.0f}}),
              D3D_OK);
    EXPECT_EQ(Coverage().substr(4 * 9, 9), "....####\n");
    EXPECT_EQ(Place(PlainVertex{0.0f, 0.0f, -1.0f}), -1);
}

/// x >= 0.125 in world space: position 4.5.
TEST_F(DrawVertexTest, UserPlanesClipInWorldSpace)
{
    const float plane[4] = {1.0f, 0.0f, 0.0f, -0.125f};
    ASSERT_EQ(device->SetClipPlane(2, plane), D3D_OK);
    State(D3DRS_CLIPPLANEENABLE, static_cast<DWORD>(D3DCLIPPLANE2));
    // The view moves everything, including the planes.
    const D3DMATRIX view = Moved(-0.25f, 0.0f, 0.0f);
    ASSERT_EQ(device->SetTransform(D3DTS_VIEW, &view), D3D_OK);
    ASSERT_EQ(
        Draw<PlainVertex>(
            D3DPT_TRIANGLESTRIP, 2,
            {{-2.0f, 2.0f, 0.5f}, {2.0f, 2.0f, 0.5f}, {-2.0f, -2.0f, 0.5f}, {2.0f, -2.0f, 0.5f}}),
        D3D_OK);
    // 0.125 - 0.25 = -0.125: position 3.5.
    EXPECT_EQ(Coverage().substr(0, 9), "....####\n");
}

/// The whole triangle has the colour of its first vertex.
TEST_F(DrawVertexTest, FlatShadingTakesTheFirstColour)
{
    State(D3DRS_SHADEMODE, static_cast<DWORD>(D3DSHADE_FLAT));
    ASSERT_EQ(Draw<PlainVertex>(D3DPT_TRIANGLELIST, 1,
                                {{-3.0f, 3.0f, 0.5f, 0xFF102030},
                                 {3.0f, 3.0f, 0.5f, 0xFFFFFFFF},
                                 {-3.0f, -3.0f, 0.5f, 0xFFFFFFFF}}),
              D3D_OK);
    EXPECT_EQ(Pixel(1, 1), 0xFF102030u);
}

/// From 0 at position 0 to 240 at position 8, in blue: 30 per pixel.
TEST_F(DrawVertexTest, ColoursAreMixedBetweenCorners)
{
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLESTRIP, 2,
                                 {{0, -1, 0.5f, 1, 0xFF000000},
                                  {8, -1, 0.5f, 1, 0xFF0000F0},
                                  {0, 9, 0.5f, 1, 0xFF000000},
                                  {8, 9, 0.5f, 1, 0xFF0000F0}}),
              D3D_OK);
    for (UINT x = 0; x < kSide; ++x)
        EXPECT_EQ(Pixel(x, 3) & 0xFF, x * 30);
}

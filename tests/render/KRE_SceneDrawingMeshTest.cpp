#include "tests/render/SceneDrawing.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class MeshDraw : public SceneDrawing {
protected:
    /// The culling modes with which a mesh's materials are drawn, first to last.
    std::vector<int32_t> CullModesOf(KRE_Mesh& mesh)
    {
        std::vector<int32_t> modes;
        DeviceMesh(mesh).onDraw = [&] { modes.push_back(gGfx->cullMode); };
        Draw(mesh);
        DeviceMesh(mesh).onDraw = nullptr;
        return modes;
    }

    /// A picture for the material's first slot.
    static void PutPicture(KRE_Mesh& mesh, int32_t material)
    {
        gGfx->CreateTexture(&mesh.textures[material], 4, 4, -1, D3DFMT_X8R8G8B8, 1);
    }
};

class SkinDraw : public MeshDraw {
protected:
    KRE_Mesh& skin = AddMesh("skin", 1, 10.0f, kBlendedFormat);
};

} // namespace

// ---- Whether there is something to draw

TEST_F(MeshDraw, NullMeshIsAWarningAndReturnsZero)
{
    EXPECT_EQ(gGfx->DrawMesh(nullptr, nullptr, nullptr, 0, 0), 0);
    EXPECT_EQ(LastWarning(), "Pointer to mesh is zero");
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(MeshDraw, HiddenMeshAndMeshWithoutGeometryDrawNothingAndReturnOne)
{
    KRE_Mesh& hidden = AddMesh("hidden");
    hidden.visible = 0;
    KRE_Mesh& empty = AddMesh("empty");
    empty.mesh.Free();
    for (KRE_Mesh* mesh : {&hidden, &empty})
        EXPECT_EQ(Draw(*mesh), 1) << mesh->name.c_str();
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(gGfx->drawnMeshes, 0);
}

TEST_F(MeshDraw, MeshOutsideTheViewReturnsZeroAndChangesNoState)
{
    KRE_Mesh& mesh = AddMesh("behind", 1, -10.0f);
    mesh.clipMode = 1;
    mesh.radius = 1.0f;
    EXPECT_EQ(Draw(mesh), 0);
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(gGfx->drawnMeshes, 0);
}

TEST_F(MeshDraw, FrustumTestUsesPivotWorldAndParent)
{
    KRE_Mesh& mesh = AddMesh("moved", 1, -10.0f);
    mesh.clipMode = 1;
    mesh.radius = 1.0f;
    mesh.pivotTM = Shift(0, 0, 4); // -6 with the mesh's own matrix
    EXPECT_EQ(Draw(mesh), 0);
    const D3DXMATRIX forward = Shift(0, 0, 16);
    EXPECT_EQ(Draw(mesh, &forward), 1);
}

TEST_F(MeshDraw, ClipModeZeroIsDrawnWhereverItIs)
{
    EXPECT_EQ(Draw(AddMesh("behind", 1, -10.0f)), 1);
    EXPECT_THAT(Drawn(), ElementsAre("behind 0"));
    EXPECT_EQ(gGfx->drawnMeshes, 1);
}

// ---- Rigid meshes

// With the device in an unknown state, each state is sent: vertex blending, vertex processing,
// normals, the world matrix, colours, the material's culling; at the end the states that the
// material does not touch.
TEST_F(MeshDraw, RigidMeshSendsItsStatesInOrder)
{
    KRE_Mesh& mesh = AddMesh("box");
    gGfx->ResetStateCache();
    EXPECT_EQ(Draw(mesh), 1);
    EXPECT_THAT(CallsButBinding(),
                ElementsAre("SetRenderState D3DRS_VERTEXBLEND D3DVBF_DISABLE",
                            "SetSoftwareVertexProcessing 0",
                            "SetRenderState D3DRS_NORMALIZENORMALS 1",
                            "SetTransform D3DTS_WORLDMATRIX(0) [1 0 0 0 0 1 0 0 0 0 1 0 0 0 10 1]",
                            HasSubstr("SetMaterial diffuse[1 1 1 1]"),
                            "SetRenderState D3DRS_CULLMODE D3DCULL_CCW", "Mesh::DrawSubset box 0",
                            "SetRenderState D3DRS_ZWRITEENABLE 1"));
}

// Pivot: one to the right. Own matrix: scaled by 2. Parent: five deeper. So x becomes 2 * (x + 1).
TEST_F(MeshDraw, RigidMeshIsAtPivotTimesWorldTimesParent)
{
    KRE_Mesh& mesh = AddMesh("box");
    mesh.pivotTM = Shift(1, 0, 0);
    mesh.worldTM = Scale(2, 2, 2);
    const D3DXMATRIX parent = Shift(0, 0, 5);
    Draw(mesh, &parent);
    EXPECT_TRUE(WasCalled("SetTransform D3DTS_WORLDMATRIX(0) [2 0 0 0 0 2 0 0 0 0 2 0 2 0 5 1]"));
}

TEST_F(MeshDraw, SoftwareProcessesWhatNothingElseCan)
{
    static const struct {
        int32_t processing;
        const char* expected;
    } cases[] = {{0, "SetSoftwareVertexProcessing 1"},
                 {1, "SetSoftwareVertexProcessing 0"},
                 {2, "SetSoftwareVertexProcessing 0"}};
    KRE_Mesh& mesh = AddMesh("box");
    for (const auto& c : cases) {
        mesh.processing = c.processing;
        gGfx->ResetStateCache();
        Draw(mesh);
        EXPECT_TRUE(WasCalled(c.expected)) << c.processing;
        Calls();
    }
}

TEST_F(MeshDraw, PointSizesAreSetUpOnlyForAMeshWithoutAParent)
{
    KRE_Mesh& mesh = AddMesh("box");
    gGfx->SetFillMode(D3DFILL_POINT, nullptr);
    const D3DXMATRIX parent = Shift(0, 0, 0);
    gGfx->pointRecord.size = 7.0f;
    Calls();
    Draw(mesh, &parent);
    EXPECT_FALSE(WasCalled("D3DRS_POINTSIZE 7"));
    Draw(mesh);
    EXPECT_TRUE(WasCalled("D3DRS_POINTSIZE 7"));

    gGfx->SetFillMode(D3DFILL_SOLID, nullptr);
    gGfx->pointRecord.size = 8.0f;
    Draw(mesh);
    EXPECT_FALSE(WasCalled("D3DRS_POINTSIZE 8"));
}

// ---- Materials

TEST_F(MeshDraw, TransparencyOfExactlyOneDrawsNothing)
{
    KRE_Mesh& mesh = AddMesh("glass", 3);
    mesh.materials[0].transparency = 1.0f;
    mesh.materials[1].transparency = 0.999f;
    EXPECT_EQ(Draw(mesh), 1);
    EXPECT_THAT(Drawn(), ElementsAre("glass 1", "glass 2"));
}

TEST_F(MeshDraw, OverrideCanMakeAllInvisible)
{
    KRE_Mesh& mesh = AddMesh("glass");
    KRE_MaterialInfo invisible;
    invisible.transparency = 1.0f;
    EXPECT_EQ(gGfx->DrawMesh(&mesh, nullptr, &invisible, 0, 0), 1);
    EXPECT_THAT(Drawn(), IsEmpty());
}

TEST_F(MeshDraw, OpaqueMaterialsComeBeforeTransparentOnes)
{
    KRE_Mesh& mesh = AddMesh("mixed", 4);
    mesh.materials[0].transparent = 1;
    mesh.materials[2].transparent = 1;
    Draw(mesh);
    EXPECT_THAT(Drawn(), ElementsAre("mixed 1", "mixed 3", "mixed 0", "mixed 2"));
}

TEST_F(MeshDraw, TransparentNeitherZeroNorOneIsNeverDrawn)
{
    KRE_Mesh& mesh = AddMesh("odd", 4);
    mesh.materials[0].transparent = 2;
    mesh.materials[1].transparent = -1;
    mesh.materials[3].transparent = INT32_MAX;
    Draw(mesh);
    EXPECT_THAT(Drawn(), ElementsAre("odd 2"));
}

TEST_F(MeshDraw, MirroredMeshIsDrawnWithTheOtherFacesCulled)
{
    static const struct {
        const char* what;
        D3DXMATRIX matrix;
        int32_t noted;
        int32_t expected;
    } cases[] = {
        {"upright", Scale(1, 2, 3), -1, -1},
        {"mirrored on one axis", Scale(-1, 1, 1), -1, 1},
        {"mirrored on another", Scale(1, 1, -2), -1, 1},
        {"mirrored on two, which is a turn", Scale(-1, -1, 1), -1, -1},
        {"mirrored on three", Scale(-1, -1, -1), -1, 1},
        {"flat", Scale(1, 0, 1), -1, -1},
        {"mirrored in a mirrored view", Scale(-1, 1, 1), 1, -1},
        {"without culling", Scale(-1, 1, 1), 0, 0},
    };
    KRE_Mesh& mesh = AddMesh("box");
    for (const auto& c : cases) {
        gGfx->SetCullMode(c.noted);
        mesh.worldTM = c.matrix;
        EXPECT_THAT(CullModesOf(mesh), ElementsAre(c.expected)) << c.what;
        EXPECT_EQ(gGfx->cullMode, c.noted) << c.what;
    }
}

TEST_F(MeshDraw, TwoSidedMaterialIsNeverCulled)
{
    KRE_Mesh& mesh = AddMesh("box", 3);
    mesh.materials[1].twoSided = 1;
    EXPECT_THAT(CullModesOf(mesh), ElementsAre(-1, 0, -1));
    mesh.worldTM = Scale(1, -1, 1);
    EXPECT_THAT(CullModesOf(mesh), ElementsAre(1, 0, 1));
}

TEST_F(MeshDraw, OverrideDoesNotChangeTwoSided)
{
    KRE_Mesh& mesh = AddMesh("box", 2);
    mesh.materials[0].twoSided = 1;
    KRE_MaterialInfo other;
    other.twoSided = 1;
    std::vector<int32_t> modes;
    DeviceMesh(mesh).onDraw = [&] { modes.push_back(gGfx->cullMode); };
    gGfx->DrawMesh(&mesh, nullptr, &other, 0, 0);
    EXPECT_THAT(modes, ElementsAre(0, -1));
}

// The override halves all colours; transparencies 0.5 and 0.5 leave 0.25, of 255 that is 63.75.
TEST_F(MeshDraw, OverrideIsCombinedWithEachMaterial)
{
    KRE_Mesh& mesh = AddMesh("box");
    mesh.materials[0].diffuse = {1.0f, 0.5f, 0.25f, 1.0f};
    mesh.materials[0].transparency = 0.5f;
    KRE_MaterialInfo half;
    half.diffuse = {0.5f, 0.5f, 0.5f, 1.0f};
    half.transparency = 0.5f;
    int32_t value = 0;
    DeviceMesh(mesh).onDraw = [&] { value = gGfx->blendValue; };
    gGfx->DrawMesh(&mesh, nullptr, &half, 0, 0);
    EXPECT_TRUE(WasCalled("SetMaterial diffuse[0.5 0.25 0.125 1]"));
    EXPECT_EQ(value, 64);
}

TEST_F(MeshDraw, OpaquePictureIsDrawnWithTheBlendingThatWasSet)
{
    KRE_Mesh& mesh = AddMesh("box");
    PutPicture(mesh, 0);
    gGfx->SetBlendMode(12, 100, 0);
    int32_t mode = 0, value = 0;
    DeviceMesh(mesh).onDraw = [&] {
        mode = gGfx->blendMode;
        value = gGfx->blendValue;
    };
    Draw(mesh);
    EXPECT_EQ(mode, 12);
    EXPECT_EQ(value, 100);
}

// The material's own reflection counts, not that of the combination, which is the override's.
TEST_F(MeshDraw, ReflectingMaterialIsWhiteIfReflectionsTakeTheDiffuseColor)
{
    KRE_Mesh& mesh = AddMesh("box", 2);
    mesh.materials[0].diffuse = mesh.materials[1].diffuse = {0.5f, 0, 0, 1};
    mesh.materials[1].reflectionSet = 0;
    mesh.materials[1].reflectionAmount = 0.25f;
    MakeVertices(mesh, 1);
    DeviceMesh(mesh).table = {{0, 0, 2, 0, 1}, {1, 2, 2, 0, 1}};
    gGfx->reflectionWithDiffuse = 1;
    KRE_MaterialInfo other;
    other.reflectionAmount = 0.5f;
    gGfx->DrawMesh(&mesh, nullptr, &other, 0, 0);
    EXPECT_THAT(CallsOf("SetMaterial"),
                ElementsAre(HasSubstr("diffuse[0.5 0 0 1]"), HasSubstr("diffuse[1 1 1 1]")));
    EXPECT_EQ(gGfx->reflectionAmount, 0.125f);
}

TEST_F(MeshDraw, MeshWithoutMaterialsTakesTheOverrideOrTheDefault)
{
    KRE_Mesh& mesh = AddMesh("bare", 0);
    gGfx->defaultMaterial.Diffuse = {0.75f, 0, 0, 1};
    mesh.worldTM = Scale(-1, 1, 1);
    EXPECT_THAT(CullModesOf(mesh), ElementsAre(1));
    EXPECT_EQ(gGfx->currentTexture, nullptr);
    EXPECT_TRUE(WasCalled("SetMaterial diffuse[0.75 0 0 1]"));
    EXPECT_THAT(Drawn(), ElementsAre("bare 0"));

    KRE_MaterialInfo other;
    other.diffuse = {0, 0.5f, 0, 1};
    gGfx->DrawMesh(&mesh, nullptr, &other, 0, 0);
    EXPECT_TRUE(WasCalled("SetMaterial diffuse[0 0.5 0 1]"));
    Calls();
    gGfx->DrawMesh(&mesh, nullptr, &other, 0, 1);
    EXPECT_FALSE(WasCalled("SetMaterial"));
    EXPECT_THAT(Drawn(), ElementsAre("bare 0"));
}

TEST_F(MeshDraw, MeshWithoutMaterialsShowsNoPictureOfThePreviousMesh)
{
    KRE_Mesh& box = AddMesh("box");
    PutPicture(box, 0);
    KRE_Mesh& bare = AddMesh("bare", 0);
    gGfx->DrawMesh(&box, nullptr, nullptr, 0, 0);
    ASSERT_EQ(gGfx->currentTexture, &box.textures[0]);
    gGfx->DrawMesh(&bare, nullptr, nullptr, 0, 0);
    EXPECT_EQ(gGfx->currentTexture, nullptr);
}

TEST_F(MeshDraw, SingleStageBindsThePictureAlone)
{
    KRE_Mesh& mesh = AddMesh("box");
    PutPicture(mesh, 0);
    gGfx->ResetStateCache();
    Calls();
    gGfx->DrawMesh(&mesh, nullptr, nullptr, 1, 0);
    const std::string picture = recorder->NameOfObject("texture", mesh.textures[0].current);
    EXPECT_THAT(CallsOf("SetTexture"), ElementsAre("SetTexture 1 null", "SetTexture 0 " + picture));
    EXPECT_FALSE(WasCalled("D3DTSS_COLOROP"));
}

TEST_F(MeshDraw, NoMaterialsBindsNothingAtAll)
{
    KRE_Mesh& mesh = AddMesh("box", 2);
    PutPicture(mesh, 0);
    mesh.materials[1].transparency = 1.0f; // is skipped regardless
    mesh.materials[0].twoSided = 1;
    gGfx->ResetStateCache();
    gGfx->SetBlendMode(1, 255, 0);
    Calls();
    gGfx->DrawMesh(&mesh, nullptr, nullptr, 0, 1);
    const std::vector<std::string> calls = Calls();
    EXPECT_THAT(calls, Contains("Mesh::DrawSubset box 0"));
    EXPECT_THAT(calls, Contains("SetRenderState D3DRS_CULLMODE D3DCULL_NONE"));
    EXPECT_THAT(calls, Not(Contains(HasSubstr("SetTexture"))));
    EXPECT_THAT(calls, Not(Contains(HasSubstr("SetMaterial"))));
    EXPECT_THAT(calls, Not(Contains("Mesh::DrawSubset box 1")));
}

TEST_F(MeshDraw, AllStatesAreRestored)
{
    KRE_Mesh& mesh = AddMesh("all", 2);
    for (int32_t i = 0; i < 2; ++i)
        PutPicture(mesh, i);
    mesh.materials[0].tileU = mesh.materials[0].tileV = 0; // clamp
    mesh.materials[0].twoSided = 1;
    mesh.materials[1].transparencyType = kTransparencyAdditive; // no depth writes
    mesh.materials[1].transparency = 0.5f;
    mesh.materials[1].mirrorU = mesh.materials[1].mirrorV = 1;
    mesh.worldTM = Scale(-1, 1, 1);
    gGfx->SetBlendMode(7, 99, 0);
    gGfx->SetCullMode(1);
    gGfx->SetTextureAddressU(D3DTADDRESS_BORDER, 0);
    gGfx->SetTextureAddressV(D3DTADDRESS_CLAMP, 0); // neither is that of the last material
    for (const int32_t zWrite : {0, 1}) {
        gGfx->SetZWrite(zWrite);
        Draw(mesh);
        EXPECT_EQ(gGfx->blendMode, 7);
        EXPECT_EQ(gGfx->blendValue, 99);
        EXPECT_EQ(gGfx->cullMode, 1);
        EXPECT_EQ(gGfx->zWrite, zWrite);
        EXPECT_EQ(gGfx->addressU[0], D3DTADDRESS_BORDER);
        EXPECT_EQ(gGfx->addressV[0], D3DTADDRESS_CLAMP);

        // The device has them as well.
        DWORD value = 0;
        gGfx->device->GetRenderState(D3DRS_ZWRITEENABLE, &value);
        EXPECT_EQ(value, static_cast<DWORD>(zWrite));
        gGfx->device->GetRenderState(D3DRS_CULLMODE, &value);
        EXPECT_EQ(value, DWORD{D3DCULL_CW});
        gGfx->device->GetRenderState(D3DRS_DESTBLEND, &value);
        EXPECT_EQ(value, DWORD{D3DBLEND_INVSRCALPHA}); // of mode 7
        gGfx->device->GetSamplerState(0, D3DSAMP_ADDRESSU, &value);
        EXPECT_EQ(value, DWORD{D3DTADDRESS_BORDER});
        gGfx->device->GetSamplerState(0, D3DSAMP_ADDRESSV, &value);
        EXPECT_EQ(value, DWORD{D3DTADDRESS_CLAMP});
    }
}

// ---- Skinned meshes

// Entry 1 shifts by bind and bone; entry 2 was not found. Parent: scaled by 2. The pivot is not
// used.
TEST_F(SkinDraw, PaletteIsSentBetweenSwitchingOnAndOff)
{
    KRE_3dObject& bone = AddObject(Shift(0, 3, 0));
    SetBones(skin, {nullptr, &bone, nullptr});
    skin.bones.Get(1)->bindTM = Shift(1, 0, 0);
    skin.pivotTM = Shift(100, 100, 100);
    const D3DXMATRIX doubled = Scale(2, 2, 2);
    gGfx->ResetStateCache();
    gGfx->SetCullMode(-1);
    Calls();
    Draw(skin, &doubled);
    EXPECT_THAT(CallsButBinding(),
                ElementsAre("SetRenderState D3DRS_VERTEXBLEND D3DVBF_2WEIGHTS",
                            "SetSoftwareVertexProcessing 0",
                            "SetRenderState D3DRS_NORMALIZENORMALS 1",
                            "SetRenderState D3DRS_INDEXEDVERTEXBLENDENABLE 1",
                            "SetTransform D3DTS_WORLDMATRIX(0) [2 0 0 0 0 2 0 0 0 0 2 0 0 0 20 1]",
                            "SetTransform D3DTS_WORLDMATRIX(1) [2 0 0 0 0 2 0 0 0 0 2 0 2 6 0 1]",
                            "SetTransform D3DTS_WORLDMATRIX(2) [2 0 0 0 0 2 0 0 0 0 2 0 0 0 20 1]",
                            HasSubstr("SetMaterial"), "Mesh::DrawSubset skin 0",
                            "SetRenderState D3DRS_INDEXEDVERTEXBLENDENABLE 0",
                            "SetRenderState D3DRS_VERTEXBLEND D3DVBF_DISABLE",
                            "SetRenderState D3DRS_ZWRITEENABLE 1"));
}

TEST_F(SkinDraw, BoneThatWasNotFoundMovesItsVerticesWithTheMesh)
{
    SetBones(skin, {nullptr, nullptr});
    skin.bones.Get(1)->bindTM = Shift(7, 7, 7);
    Draw(skin);
    EXPECT_EQ(gGfx->world[1], gGfx->world[0]);
    EXPECT_EQ(gGfx->world[1]._43, 10.0f);
}

TEST_F(SkinDraw, WithoutBonesTheMeshsOwnMatrixIsThePalette)
{
    Draw(skin);
    EXPECT_THAT(CallsOf("SetTransform"), ElementsAre(HasSubstr("D3DTS_WORLDMATRIX(0)")));
}

TEST_F(SkinDraw, TooManyBonesForTheHardwareAreAWarningAndDrawingGoesOn)
{
    SetBones(skin, {nullptr, nullptr, nullptr});
    static const struct {
        const char* what;
        int32_t processing;
        DWORD limit;
        const char* expected;
    } cases[] = {
        {"as many as the limit", 1, 3, ""},
        {"one more", 1, 2, "Number of bones too high for hardware vertex blending: 3"},
        {"in software", 0, 2, ""},
        {"by an effect", 2, 2, ""},
    };
    for (const auto& c : cases) {
        skin.processing = c.processing;
        gGfx->caps.MaxVertexBlendMatrixIndex = c.limit;
        EXPECT_EQ(Draw(skin), 1) << c.what;
        EXPECT_EQ(LastWarning(), c.expected) << c.what;
        EXPECT_THAT(Drawn(), ElementsAre("skin 0")) << c.what;
    }
}

TEST_F(SkinDraw, IndexedBlendingStaysOffWithoutSupport)
{
    gGfx->caps.MaxVertexBlendMatrixIndex = 0;
    skin.processing = 1;
    Draw(skin);
    EXPECT_FALSE(WasCalled("D3DRS_INDEXEDVERTEXBLENDENABLE"));
    skin.processing = 0;
    Draw(skin);
    EXPECT_TRUE(WasCalled("D3DRS_INDEXEDVERTEXBLENDENABLE 1"));
}

TEST_F(SkinDraw, PaletteEndsWith256Bones)
{
    for (int i = 0; i < 300; ++i) {
        const KRE_BoneInfo bone("bone");
        skin.bones.Add(&bone);
    }
    skin.AllocateBoneObjects();
    EXPECT_EQ(Draw(skin), 1);
    EXPECT_EQ(CallsOf("SetTransform").size(), 256u);
}

TEST_F(SkinDraw, FacesAreThoseOfTheBindPoseOfTheFirstBone)
{
    static const struct {
        const char* what;
        D3DXMATRIX meshTM, bindPose;
        int32_t bones;
        int32_t expected;
    } cases[] = {
        {"upright", Scale(1, 1, 1), Scale(1, 1, 1), 2, -1},
        {"bound mirrored", Scale(1, 1, 1), Scale(-1, 1, 1), 2, 1},
        {"mirrored by its own matrix alone", Scale(-1, 1, 1), Scale(1, 1, 1), 2, -1},
        {"without a bone its own matrix counts", Scale(-1, 1, 1), Scale(1, 1, 1), 1, 1},
    };
    for (const auto& c : cases) {
        KRE_Mesh& mesh = AddMesh("bound", 1, 0.0f, kBlendedFormat);
        mesh.worldTM = c.meshTM;
        if (c.bones == 1)
            SetBones(mesh, {nullptr});
        else {
            SetBones(mesh, {nullptr, nullptr});
            mesh.bones.Get(1)->meshInitTM = c.bindPose;
        }
        EXPECT_THAT(CullModesOf(mesh), ElementsAre(c.expected)) << c.what;
        EXPECT_EQ(gGfx->cullMode, -1) << c.what;
    }
}

TEST_F(SkinDraw, SceneThatMirrorsFlipsTheFacesToo)
{
    SetBones(skin, {nullptr, nullptr});
    const D3DXMATRIX mirror = Scale(1, -1, 1);
    int32_t mode = 0;
    DeviceMesh(skin).onDraw = [&] { mode = gGfx->cullMode; };
    Draw(skin, &mirror);
    EXPECT_EQ(mode, 1);
}

TEST_F(SkinDraw, BoneThatIsACameraMovesTheVertices)
{
    KRE_Camera& camera = *scene.cameras.GetSlot(scene.cameras.Add());
    camera.worldTM = Shift(0, 0, 33);
    SetBones(skin, {nullptr, &camera});
    Draw(skin);
    EXPECT_EQ(gGfx->world[1]._43, 33.0f);
}

#include "tests/gfx/EngineTest.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class KRE_GfxVertexListsTest : public EngineTest {
protected:
    KRE_GfxVertexListsTest() { Start(); }

    VertexInfo InfoOf(DWORD fvf)
    {
        VertexInfo info;
        info.SetFVFInfo(fvf);
        return info;
    }

    char place = 0;
    /// The effect itself is never used: the engine stores its capabilities separately.
    KRE_ShaderEffect* const effect = reinterpret_cast<KRE_ShaderEffect*>(&place);
    KRE_VertexListTemp<KRE_PointVertex> list;
};

constexpr DWORD kBlended = D3DFVF_XYZB2 | D3DFVF_LASTBETA_UBYTE4;

} // namespace

TEST_F(KRE_GfxVertexListsTest, ListIsMadeWithPoolAndUsage)
{
    gfx.CreateVertexList(&list, 10, -1, 0);
    EXPECT_THAT(Calls(), ElementsAre("CreateVertexBuffer 160 0 D3DFVF_XYZ|D3DFVF_DIFFUSE "
                                     "D3DPOOL_MANAGED -> vertexbuffer#8"));
    EXPECT_EQ(list.vertexCount, 10);
    EXPECT_EQ(list.primitiveCount, 3);
    EXPECT_EQ(list.info.processing, 1);
    gfx.CreateVertexList(&list, 2, D3DUSAGE_WRITEONLY, 1);
    EXPECT_THAT(Calls(), ElementsAre("CreateVertexBuffer 32 D3DUSAGE_WRITEONLY "
                                     "D3DFVF_XYZ|D3DFVF_DIFFUSE D3DPOOL_SYSTEMMEM "
                                     "-> vertexbuffer#9"));
    EXPECT_EQ(list.primitiveCount, 0);
}

TEST_F(KRE_GfxVertexListsTest, PointSpritesAreDrawnAsPoints)
{
    list.isPointSprite = 1;
    gfx.CreateVertexList(&list, 1, -1, 1);
    EXPECT_THAT(Calls().at(0), HasSubstr(" 16 D3DUSAGE_POINTS "));
    gfx.CreateVertexList(&list, 1, 0, 1);
    EXPECT_THAT(Calls().at(0), HasSubstr(" 16 0 ")) << "a given usage stands";
}

TEST_F(KRE_GfxVertexListsTest, SoftwareProcessingIsPartOfTheUsage)
{
    gfx.CreateVertexList(&list, 1, D3DUSAGE_SOFTWAREPROCESSING, 1);
    EXPECT_EQ(list.info.processing, 0) << "asked for";
    list.SetFVFInfo(kBlended);
    Calls();
    gfx.CreateVertexList(&list, 1, -1, 1);
    EXPECT_THAT(Calls().at(0), HasSubstr("D3DUSAGE_SOFTWAREPROCESSING"))
        << "the hardware cannot blend by index";
    EXPECT_EQ(list.info.processing, 0);

    Start(nullptr, 0);
    list.SetFVFInfo(KRE_PointVertex::kFvf);
    gfx.CreateVertexList(&list, 1, -1, 1);
    EXPECT_THAT(Calls().at(0), HasSubstr("D3DUSAGE_SOFTWAREPROCESSING")) << "a software device";
    EXPECT_EQ(list.info.processing, 0);
}

TEST_F(KRE_GfxVertexListsTest, RecreatedListLosesItsVerticesAndTheirLock)
{
    gfx.CreateVertexList(&list, 3, -1, 1);
    list.Lock(0, 3, 0);
    gfx.CreateVertexList(&list, 2, -1, 1);
    EXPECT_FALSE(list.IsLocked());
    EXPECT_EQ(list.lockedVertices, nullptr);
    EXPECT_EQ(list.vertexCount, 2);
    FailNext("CreateVertexBuffer");
    EXPECT_NE(RaisedBy([&] { gfx.CreateVertexList(&list, 2, -1, 1); }), "no error");
    EXPECT_FALSE(list.buffer) << "the old one went first";
}

TEST_F(KRE_GfxVertexListsTest, BadRequestsAreErrors)
{
    EXPECT_EQ(RaisedBy([&] { gfx.CreateVertexList(nullptr, 1, -1, 1); }),
              "VertexList is NULL pointer");
    for (int32_t count : {0, -1, 2147483647})
        EXPECT_EQ(RaisedBy([&] { gfx.CreateVertexList(&list, count, -1, 1); }),
                  "CreateVertexBuffer in CreateVertexList failed: D3DERR_INVALIDCALL")
            << count;
    EXPECT_THAT(Calls(), IsEmpty());
    FailNext("CreateVertexBuffer", E_OUTOFMEMORY);
    EXPECT_EQ(RaisedBy([&] { gfx.CreateVertexList(&list, 1, -1, 1); }),
              "CreateVertexBuffer in CreateVertexList failed: E_OUTOFMEMORY");
    EXPECT_FALSE(list.buffer);
    EXPECT_EQ(list.vertexCount, 0);
}

TEST_F(KRE_GfxVertexListsTest, ProcessingOfPlainVertices)
{
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(D3DFVF_XYZ), 0, 0), 1);
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(D3DFVF_XYZB4), 0, 0), 1) << "four blend matrices";
    gfx.caps.MaxVertexBlendMatrices = 3;
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(D3DFVF_XYZB4), 0, 0), 0);
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(D3DFVF_XYZB3), 0, 0), 1);
}

TEST_F(KRE_GfxVertexListsTest, ProcessingOfPointsNeedsSizesAboveOne)
{
    const VertexInfo info = InfoOf(D3DFVF_XYZ | D3DFVF_PSIZE);
    EXPECT_EQ(gfx.GetVertexProcessing(info, 0, 0), 1);
    gfx.caps.MaxPointSize = 1.0f;
    EXPECT_EQ(gfx.GetVertexProcessing(info, 0, 0), 0);
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(D3DFVF_XYZ), 0, 0), 1);
}

TEST_F(KRE_GfxVertexListsTest, ProcessingByIndexFollowsThePalette)
{
    static const struct {
        const char* what;
        DWORD deviceLimit;
        int32_t configuredLimit, hardwareSkinning, boneIndex, expected;
    } cases[] = {
        {"no bones", 255, 18, 1, -1, 0},
        {"switched off", 255, 18, 0, 0, 0},
        {"device cannot", 0, 18, 1, 0, 0},
        {"within both", 255, 18, 1, 17, 1},
        {"at the configured limit", 255, 18, 1, 18, 1},
        {"above the configured limit", 255, 18, 1, 19, 0},
        {"no configured limit", 255, -1, 1, 254, 1},
        {"above the device's limit", 255, -1, 1, 255, 0},
        {"within a small device", 8, 18, 1, 7, 1},
        {"above a small device", 8, 18, 1, 8, 0},
        {"highest number there is", 255, -1, 1, 2147483647, 0},
    };
    for (const auto& c : cases) {
        gfx.caps.MaxVertexBlendMatrixIndex = c.deviceLimit;
        gfx.hardwareSkinningLimit = c.configuredLimit;
        gfx.hardwareSkinning = c.hardwareSkinning;
        EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(kBlended), c.boneIndex, 0), c.expected) << c.what;
    }
}

TEST_F(KRE_GfxVertexListsTest, SkinningEffectBlendsUpToItsLimit)
{
    gfx.skinningEffect = effect;
    gfx.skinningEffectCaps = KRE_Gfx::kSkinningCapsIndexed;
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(kBlended), 26, 0), 2);
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(kBlended), 27, 0), 0);
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(kBlended), -1, 0), 0);
    gfx.skinningEffectCaps = 0;
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(kBlended), 0, 0), 0) << "left to the hardware";
}

TEST_F(KRE_GfxVertexListsTest, ForEffectNeedsACapableEffect)
{
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(D3DFVF_XYZ), 0, 1), 0);
    gfx.skinningEffect = effect;
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(D3DFVF_XYZ), 0, 1), 0);
    gfx.skinningEffectCaps = KRE_Gfx::kSkinningCapsVertices;
    EXPECT_EQ(gfx.GetVertexProcessing(InfoOf(D3DFVF_XYZ), 0, 1), 2);
}

#include "tests/gfx/MaterialEngine.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

namespace {

class KRE_MaterialBindingTest : public MaterialEngine {
protected:
    KRE_MaterialBindingTest()
    {
        PutMap(0, StageDiffuse);
        Calls();
    }

    std::string NameOf(const IDirect3DTexture9* picture)
    {
        return recorder->NameOfObject("texture", picture);
    }
};

} // namespace

// ---- Nothing to bind

TEST_F(KRE_MaterialBindingTest, NullLeavesStageZeroWithTheVertexColor)
{
    gfx.ResetStateCache();
    gfx.SetTexture(nullptr, -1);
    EXPECT_THAT(Calls(), UnorderedElementsAreArray(Lines(R"(
        0 TEXTURE null
        1 TEXTURE null
        0 COLOROP SELECTARG2
        0 COLORARG2 DIFFUSE
        0 ALPHAOP SELECTARG1
        0 ALPHAARG1 DIFFUSE
        1 COLOROP DISABLE)")));
    EXPECT_EQ(gfx.blendMode, -1);
    EXPECT_EQ(gfx.blendValue, -1);
    EXPECT_EQ(gfx.currentTexture, nullptr);
    gfx.SetTexture(nullptr);
    EXPECT_THAT(Calls(), IsEmpty()) << "nothing is bound any more";
}

TEST_F(KRE_MaterialBindingTest, TextureWithoutAPictureIsBoundAsNull)
{
    KRE_Texture empty;
    gfx.SetTexture(&texture);
    Calls();
    gfx.SetTexture(&empty);
    EXPECT_THAT(CallsOf("SetTexture"), ElementsAre("SetTexture 0 null"));
    EXPECT_EQ(gfx.blendMode, -1);
    EXPECT_EQ(gfx.currentTexture, &empty);
    gfx.SetTexture(nullptr); // it is destroyed before the engine
}

TEST_F(KRE_MaterialBindingTest, BlendingAfterNullIsOffUntilItIsSet)
{
    gfx.SetBlendMode(7, 100, 0);
    gfx.SetTexture(nullptr);
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.blendMode, 1) << "-1 counts as 1";
    EXPECT_EQ(gfx.cache.renderState[D3DRS_ALPHABLENDENABLE], 0);
}

// ---- One stage alone

TEST_F(KRE_MaterialBindingTest, GivenStageTakesThePictureAndNoStageState)
{
    gfx.SetTexture(&texture, 3);
    EXPECT_EQ(Calls(), std::vector<std::string>({"SetRenderState D3DRS_ALPHATESTENABLE 0",
                                                 "SetTexture 3 " + NameOf(texture.current)}));
    EXPECT_EQ(gfx.currentTexture, &texture);
    gfx.SetTexture(&texture, 3);
    EXPECT_THAT(Calls(), IsEmpty());
    gfx.SetTexture(nullptr, 3);
    EXPECT_THAT(Calls(), ElementsAre("SetTexture 3 null"));
    gfx.SetTexture(nullptr, 3);
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(KRE_MaterialBindingTest, GivenStageTakesTheCurrentSlot)
{
    IDirect3DTexture9* const upper = PutMap(2, StageAdd);
    gfx.SetTexture(&texture, 0);
    EXPECT_EQ(gfx.boundTexture[0], upper);
    texture.SelectStage(0);
    gfx.SetTexture(&texture, 0);
    EXPECT_EQ(gfx.boundTexture[0], texture.slotTextures[0]);
}

TEST_F(KRE_MaterialBindingTest, StageOutsideTheEightIsAnError)
{
    for (const int32_t stage : {8, -2})
        EXPECT_EQ(RaisedBy([&] { gfx.SetTexture(&texture, stage); }),
                  "Invalid stage: " + std::to_string(stage));
}

// ---- The whole material

TEST_F(KRE_MaterialBindingTest, MapsAboveTheSecondSlotStayUnbound)
{
    PutMap(2, StageAdd);
    PutMap(3, StageModulate);
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.boundTexture[0], texture.slotTextures[0]);
    EXPECT_EQ(gfx.boundTexture[1], nullptr);
    EXPECT_EQ(gfx.boundTexture[2], KRE_Gfx::UnknownTexture());
}

TEST_F(KRE_MaterialBindingTest, MapWithAMatrixGetsItOnItsStage)
{
    texture.SelectStage(0);
    texture.SetMatrixFromTrack(0.25f, 0.0f, 1.0f, 1.0f, 0.0f);
    gfx.SetTexture(&texture);
    EXPECT_EQ(CallsOf("SetTransform").size(), 1u);
    EXPECT_THAT(Calls(), testing::IsSupersetOf(Lines(R"(
        0 TEXTURETRANSFORMFLAGS COUNT3
        1 TEXTURETRANSFORMFLAGS DISABLE)")));
    // A shift alone: the third row is -0.5 - 0.25 + 0.5 and 0 - 0.5 + 0.5.
    D3DXMATRIX sent;
    gfx.device->GetTransform(D3DTS_TEXTURE0, &sent);
    const FLOAT* const elements = sent;
    EXPECT_EQ(std::vector<FLOAT>(elements, elements + 16),
              std::vector<FLOAT>({1, 0, 0, 0, 0, 1, 0, 0, -0.25f, 0, 1, 0, 0, 0, 0, 1}));
    EXPECT_THAT(CallsOfRepeat(), IsEmpty());
    texture.SetMatrixFromTrack(0.5f, 0.0f, 1.0f, 1.0f, 0.0f);
    EXPECT_EQ(CallsOfRepeat().size(), 1u) << "the new matrix alone";
    texture.SetMatrixFromTrack(0.0f, 0.0f, 1.0f, 1.0f, 0.0f);
    EXPECT_EQ(CallsOfRepeat(), Lines("0 TEXTURETRANSFORMFLAGS DISABLE"));
    texture.SetMatrixFromTrack(0.5f, 0.0f, 1.0f, 1.0f, 0.0f);
    EXPECT_EQ(CallsOfRepeat().size(), 2u) << "switched on again, with the matrix";
}

TEST_F(KRE_MaterialBindingTest, BothStagesOfAMapTakeItsMatrix)
{
    PutMap(1, StageDiffuse); // added on stage 1 and lit on stage 2
    texture.SetMatrixFromTrack(0.25f, 0.0f, 1.0f, 1.0f, 0.0f);
    gfx.SetTexture(&texture);
    const int32_t expected[] = {D3DTTFF_DISABLE, D3DTTFF_COUNT3, D3DTTFF_COUNT3};
    for (size_t stage = 0; stage < std::size(expected); ++stage)
        EXPECT_EQ(gfx.cache.stageState[stage][D3DTSS_TEXTURETRANSFORMFLAGS], expected[stage])
            << stage;
    EXPECT_EQ(gfx.textureMatrix[1]._31, -0.25f);
    EXPECT_EQ(gfx.textureMatrix[2]._31, -0.25f);
}

TEST_F(KRE_MaterialBindingTest, BlendModeGoesToTheStageOfTheDiffuseMap)
{
    gfx.blendMode = 7;
    gfx.blendValue = 100;
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.cache.stageState[0][D3DTSS_ALPHAARG1], D3DTA_TFACTOR);
    texture.SetStage(0, StageReflection, 1.0f);
    PutMap(1, StageDiffuse);
    gfx.ResetStateCache();
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.cache.stageState[1][D3DTSS_ALPHAARG1], D3DTA_TFACTOR);
    EXPECT_EQ(gfx.cache.stageState[0][D3DTSS_ALPHAARG1], D3DTA_DIFFUSE);
}

TEST_F(KRE_MaterialBindingTest, AlphaTestFollowsTheFormat)
{
    gfx.alphaReference = 77;
    PutMap(0, StageDiffuse, D3DFMT_A8R8G8B8);
    gfx.ResetStateCache();
    Calls();
    gfx.SetTexture(&texture);
    EXPECT_THAT(CallsOf("SetRenderState"),
                testing::IsSupersetOf({"SetRenderState D3DRS_ALPHATESTENABLE 1",
                                       "SetRenderState D3DRS_ALPHAFUNC D3DCMP_GREATER",
                                       "SetRenderState D3DRS_ALPHAREF 77"}));
    PutMap(0, StageDiffuse, D3DFMT_R5G6B5);
    Calls();
    gfx.SetTexture(&texture);
    EXPECT_THAT(Calls(), Contains("SetRenderState D3DRS_ALPHATESTENABLE 0"));
}

TEST_F(KRE_MaterialBindingTest, RefusedPictureIsAnErrorAndStaysUnknown)
{
    FailNext("SetTexture", D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(RaisedBy([&] { gfx.SetTexture(&texture); }),
              "SetTexture failed: D3DERR_OUTOFVIDEOMEMORY");
    EXPECT_EQ(gfx.boundTexture[0], KRE_Gfx::UnknownTexture());
    EXPECT_EQ(gfx.currentTexture, &texture);
}

TEST_F(KRE_MaterialBindingTest, ResetMakesTheNextBindingReachTheDevice)
{
    gfx.SetTexture(&texture);
    gfx.ResetStateCache();
    Calls();
    gfx.SetTexture(&texture);
    EXPECT_THAT(Calls(), Contains("SetTexture 0 " + NameOf(texture.slotTextures[0])));
}

TEST_F(KRE_MaterialBindingTest, FreedDeviceForgetsTheTexture)
{
    gfx.SetTexture(&texture);
    gfx.FreeDevice();
    EXPECT_EQ(gfx.currentTexture, nullptr);
}

// ---- Sequences

TEST_F(KRE_MaterialBindingTest, SequenceShowsItsFrameOnStageZero)
{
    PutFrames();
    gfx.stageSource[0] = 1;
    gfx.blendValue = 200;
    EXPECT_THAT(CallsOfBinding(), UnorderedElementsAreArray(Lines(R"(
        ALPHATESTENABLE 0
        0 COLOROP MODULATE
        0 COLORARG1 TEXTURE
        0 COLORARG2 DIFFUSE
        0 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0
        0 TEXTURETRANSFORMFLAGS DISABLE
        0 TEXTURE frame
        1 TEXTURE null)")));
    EXPECT_EQ(gfx.blendValue, 200);
    EXPECT_THAT(CallsOfRepeat(), IsEmpty());
    texture.SelectFrame(0);
    EXPECT_EQ(CallsOfRepeat(), Lines("0 TEXTURE frame"));
}

TEST_F(KRE_MaterialBindingTest, SequenceTakesTheMatrixOfTheCurrentSlot)
{
    PutFrames();
    texture.SetMatrixFromTrack(0.25f, 0.0f, 1.0f, 1.0f, 0.0f);
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.textureMatrix[0]._31, -0.25f);
    EXPECT_EQ(gfx.cache.stageState[0][D3DTSS_TEXTURETRANSFORMFLAGS], int32_t{D3DTTFF_COUNT3});
}

TEST_F(KRE_MaterialBindingTest, QuirkSequenceIsLitOnlyBySourceOne)
{
    PutFrames();
    for (const int32_t source : {-1, 2, 3}) {
        gfx.stageSource[0] = source;
        const std::vector<std::string> calls = CallsOfBinding();
        EXPECT_THAT(calls, Contains(Lines("0 COLOROP SELECTARG2").front())) << source;
        EXPECT_THAT(calls, testing::Not(Contains(testing::HasSubstr("COLORARG1")))) << source;
    }
}

TEST_F(KRE_MaterialBindingTest, SequenceWithoutACurrentFrameShowsTheSlots)
{
    IDirect3DTexture9* const slot = texture.slotTextures[0];
    texture.CreateSequence(2, true);
    ASSERT_EQ(texture.frameIndex, -1);
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.boundTexture[0], slot);
}

// ---- Video sources

namespace {

int gVideoUpdates = 0;

void CountUpdate(KRE_Surface*, uint32_t userWord)
{
    gVideoUpdates += static_cast<int>(userWord);
}

} // namespace

TEST_F(KRE_MaterialBindingTest, VideoSourceIsUpdatedByEveryBinding)
{
    gVideoUpdates = 0;
    KRE_VideoSource& source = gfx.videoSources[5];
    source.update = CountUpdate;
    source.userWord = 10;
    source.texture = ComPointer<IDirect3DTexture9>::Adopt(MakePicture());
    texture.videoSource = 5;
    gfx.SetTexture(&texture);
    EXPECT_EQ(gVideoUpdates, 10);
    gfx.SetTexture(&texture);
    EXPECT_EQ(gVideoUpdates, 20);
    gfx.SetTexture(&texture, 1);
    EXPECT_EQ(gVideoUpdates, 30);
}

TEST_F(KRE_MaterialBindingTest, MissingVideoSourceIsAnError)
{
    texture.videoSource = 16;
    EXPECT_EQ(RaisedBy([&] { gfx.SetTexture(&texture); }),
              "Invalid video source nurber in UpdateVideoSource(): 16");
    texture.videoSource = 4;
    EXPECT_EQ(RaisedBy([&] { gfx.SetTexture(&texture); }),
              "No video source update function specified for source 4");
}

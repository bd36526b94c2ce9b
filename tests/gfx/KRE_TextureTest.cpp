#include "gfx/KRE_Texture.h"

#include "gfx/KRE_VertexLayout.h"
#include "tests/gfx/StubResources.h"
#include "tests/gfx/TextureEngine.h"

using KRE_TextureTest = TextureEngine;

namespace {

/// The texture coordinates of the quad's vertices.
std::vector<std::pair<float, float>> QuadOf(const KRE_Texture& texture)
{
    std::vector<std::pair<float, float>> corners;
    void* bytes = nullptr;
    EXPECT_EQ(texture.quad->Lock(0, 0, &bytes, 0), D3D_OK);
    const KRE_TLVertex* vertices = static_cast<const KRE_TLVertex*>(bytes);
    for (int i = 0; i < 4; ++i)
        corners.emplace_back(vertices[i].tu, vertices[i].tv);
    texture.quad->Unlock();
    return corners;
}

/// A texture whose current slot holds a stub with a size and a format.
struct TextureOverStub {
    TextureOverStub(D3DFORMAT format, UINT width, UINT height)
        : stub(new StubTexture(format, width, height, static_cast<int>(width) * 4,
                               std::vector<uint8_t>(width * height * 4)))
    {
        texture.PutTexture(nullptr, -1, stub);
    }

    KRE_Texture texture;
    StubTexture* stub; // owned by `texture`
};

} // namespace

TEST(KRE_Texture, StartsWithItsDefaults)
{
    const KRE_Texture texture;
    for (int32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(texture.slots[i].type, 1);
        EXPECT_EQ(texture.slots[i].param, 1.0f);
        EXPECT_EQ(texture.slotIds[i], -1);
        EXPECT_EQ(texture.slotMatrixSet[i], 0);
    }
    uint32_t periodBits = 0;
    std::memcpy(&periodBits, &texture.framePeriod, 4);
    EXPECT_EQ(periodBits, 0x3E4CCCCDu);
    EXPECT_EQ(texture.frameIndex, -1);
    EXPECT_EQ(texture.videoSource, -1);
    EXPECT_EQ(texture.alphaState, -1);
    EXPECT_EQ(texture.textureWord, 0u);
    EXPECT_EQ(texture.textureValue, 0.0f);
    EXPECT_EQ(texture.loadOptions, 0u);
    const float rect[] = {texture.originU, texture.originV, texture.axisAU,
                          texture.axisAV,  texture.axisBU,  texture.axisBV};
    const float expected[] = {0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 1.0f};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(rect[i], expected[i]) << i;
    EXPECT_FALSE(texture.IsValid());
}

/// Expects the fields of a texture without a picture.
static void ExpectNoPicture(const KRE_Texture& texture, const char* when)
{
    EXPECT_FALSE(texture.IsValid()) << when;
    EXPECT_EQ(texture.width, 0) << when;
    EXPECT_EQ(texture.height, 0) << when;
    EXPECT_EQ(texture.levelCount, 0) << when;
    EXPECT_EQ(texture.hasAlpha, 0) << when;
    EXPECT_EQ(texture.sequenceCount, 0) << when;
}

TEST(KRE_Texture, HasNoSizeBeforeItHasAPictureAndNoneAfterItIsFreed)
{
    ExpectNoPicture(KRE_Texture(), "new");
    TextureOverStub t(D3DFMT_A8R8G8B8, 8, 4);
    t.texture.Refresh();
    EXPECT_EQ(t.texture.width, 8);
    EXPECT_EQ(t.texture.height, 4);
    EXPECT_EQ(t.texture.levelCount, 1);
    EXPECT_EQ(t.texture.hasAlpha, 1);
    t.texture.Free();
    ExpectNoPicture(t.texture, "freed");
}

TEST(KRE_Texture, StartsAtTheBeginningOfASequenceInSlotZero)
{
    const KRE_Texture texture;
    EXPECT_EQ(texture.sequenceStart, 0.0f);
    EXPECT_EQ(texture.sequenceMode, kSequenceLoop);
    EXPECT_EQ(texture.currentTime, 0.0f);
    EXPECT_EQ(texture.sourceWidth, 0.0f);
    EXPECT_EQ(texture.sourceHeight, 0.0f);
    EXPECT_EQ(texture.mipShift, 0);
    EXPECT_EQ(texture.currentSlot, 0);
    EXPECT_EQ(texture.clampFlag, 0);
    EXPECT_EQ(texture.textureIsDynamic, 0);
    for (const KRE_Texture::SlotFileInfo& info : texture.slotFileInfo) {
        EXPECT_EQ(info.sizeBytes, 0);
        EXPECT_EQ(info.isVideo, 0);
    }
    for (const int32_t pool : texture.slotDefaultPool)
        EXPECT_EQ(pool, 0);
}

TEST(KRE_Texture, SetStageKeepsTypeAndParameter)
{
    KRE_Texture texture;
    texture.SetStage(3, StageSphere, 0.5f);
    EXPECT_EQ(texture.slots[3].type, 6);
    EXPECT_EQ(texture.slots[3].param, 0.5f);
    EXPECT_EQ(ErrorText([&] { texture.SetStage(4, 1, 1.0f); }), "Invalid texture stage: 4");
    EXPECT_EQ(ErrorText([&] { texture.SetStage(-1, 1, 1.0f); }), "Invalid texture stage: -1");
}

TEST(KRE_Texture, SelectStageTakesTheSlotsPicture)
{
    TextureOverStub t(D3DFMT_L8, 8, 4);
    t.texture.SelectStage(1);
    EXPECT_FALSE(t.texture.IsValid());
    t.texture.SelectStage(0);
    EXPECT_TRUE(t.texture.IsValid());
    t.texture.Refresh();
    EXPECT_EQ(t.texture.width, 8);
    EXPECT_EQ(t.texture.height, 4);
    EXPECT_EQ(ErrorText([&] { t.texture.SelectStage(4); }), "Invalid texture stage selected: 4");
    EXPECT_EQ(ErrorText([&] { t.texture.SelectStage(-1); }), "Invalid texture stage selected: -1");
}

TEST(KRE_Texture, StagesOfASequenceAreAnError)
{
    KRE_Texture texture;
    texture.CreateSequence(2, false);
    EXPECT_EQ(ErrorText([&] { texture.SelectStage(0); }),
              "No stages with texture sequence allowed");
}

TEST(KRE_Texture, CreateSequenceGivesEmptyFrames)
{
    KRE_Texture texture;
    texture.CreateSequence(3, false);
    ASSERT_EQ(texture.sequenceCount, 3);
    for (int32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(texture.frameIds[i], -1);
        EXPECT_EQ(texture.frames[i], nullptr);
    }
    EXPECT_EQ(texture.frameIndex, -1);
}

TEST(KRE_Texture, SequenceOfNoFramesHasNoLists)
{
    for (const int32_t count : {0, -1}) {
        KRE_Texture texture;
        texture.CreateSequence(2, false);
        texture.CreateSequence(count, false);
        EXPECT_EQ(texture.sequenceCount, 0) << count;
        EXPECT_FALSE(texture.frameIds) << count;
        EXPECT_FALSE(texture.frames) << count;
    }
}

TEST(KRE_Texture, CreateSequenceFreesTheSlotsUnlessAskedToKeepThem)
{
    const int before = FakeObjectsAlive();
    TextureOverStub t(D3DFMT_L8, 8, 4);
    t.texture.CreateSequence(2, true);
    EXPECT_EQ(t.texture.slotTextures[0], t.stub);
    t.texture.CreateSequence(2, false);
    EXPECT_EQ(t.texture.slotTextures[0], nullptr);
    EXPECT_EQ(FakeObjectsAlive(), before);
}

TEST(KRE_Texture, FramesOutsideTheSequenceAreAnError)
{
    KRE_Texture texture;
    EXPECT_EQ(ErrorText([&] { texture.SelectFrame(0); }), "Invalid sequence number");
    texture.CreateSequence(2, false);
    texture.SelectFrame(1);
    EXPECT_EQ(texture.frameIndex, 1);
    EXPECT_EQ(ErrorText([&] { texture.SelectFrame(2); }), "Invalid sequence number");
    EXPECT_EQ(ErrorText([&] { texture.SelectFrame(-1); }), "Invalid sequence number");
}

TEST(KRE_Texture, FreeStageReleasesAndClearsTheSelectedPicture)
{
    const int before = FakeObjectsAlive();
    TextureOverStub t(D3DFMT_L8, 8, 4);
    t.texture.FreeStage(0);
    EXPECT_EQ(FakeObjectsAlive(), before);
    EXPECT_EQ(t.texture.slotTextures[0], nullptr);
    EXPECT_EQ(t.texture.slotIds[0], -1);
    EXPECT_FALSE(t.texture.IsValid());
}

TEST(KRE_Texture, FreeStageKeepsTheSelectionOfAnotherSlot)
{
    TextureOverStub t(D3DFMT_L8, 8, 4);
    t.texture.FreeStage(2);
    EXPECT_TRUE(t.texture.IsValid());
}

TEST(KRE_Texture, QuirkSlotsUpToSevenMayBeFreed)
{
    KRE_Texture texture;
    for (int32_t i = 0; i <= 7; ++i)
        texture.FreeStage(i);
    EXPECT_EQ(ErrorText([&] { texture.FreeStage(8); }), "Invalid stage: 8");
    EXPECT_EQ(ErrorText([&] { texture.FreeStage(-1); }), "Invalid stage: -1");
}

TEST(KRE_Texture, FreeingASlotAboveTheFourthLeavesThePicturesAlone)
{
    const int before = FakeObjectsAlive();
    {
        TextureOverStub t(D3DFMT_L8, 8, 4);
        const int alive = FakeObjectsAlive();
        for (int32_t i = 4; i <= 7; ++i) {
            t.texture.FreeStage(i);
            ASSERT_EQ(t.texture.current, t.stub) << i;
            ASSERT_EQ(t.texture.slotTextures[0], t.stub) << i;
            ASSERT_EQ(FakeObjectsAlive(), alive) << i;
        }
    }
    EXPECT_EQ(FakeObjectsAlive(), before);
}

TEST(KRE_Texture, FreeStageOfASequenceFreesAFrame)
{
    const int before = FakeObjectsAlive();
    KRE_Texture texture;
    texture.CreateSequence(2, false);
    texture.SelectFrame(1);
    texture.PutTexture(nullptr, -1, new StubTexture(D3DFMT_L8, 1, 1, 4, std::vector<uint8_t>(4)));
    EXPECT_TRUE(texture.IsValid());
    texture.FreeStage(0);
    EXPECT_TRUE(texture.IsValid());
    texture.FreeStage(1);
    EXPECT_FALSE(texture.IsValid());
    EXPECT_EQ(FakeObjectsAlive(), before);
    EXPECT_EQ(ErrorText([&] { texture.FreeStage(2); }), "Invalid sequence to free: 2");
    EXPECT_EQ(ErrorText([&] { texture.FreeStage(-1); }), "Invalid sequence to free: -1");
}

TEST(KRE_Texture, ASharedPictureIsReleasedByItsLastUser)
{
    const int before = FakeObjectsAlive();
    KRE_ResourceManager manager;
    auto first = std::make_unique<KRE_Texture>();
    StubTexture* stub = new StubTexture(D3DFMT_L8, 1, 1, 4, std::vector<uint8_t>(4));
    first->PutTexture(&manager, manager.Add(stub, "a"), stub);
    KRE_Texture second;
    second.CopyFrom(*first);
    EXPECT_EQ(second.slotTextures[0], stub);
    EXPECT_EQ(manager.GetEntry(0)->useCount, 2);
    first.reset();
    EXPECT_EQ(FakeObjectsAlive(), before + StubTexture::kObjects);
    second.Free();
    EXPECT_EQ(FakeObjectsAlive(), before);
    EXPECT_EQ(manager.GetCount(), 0);
}

TEST(KRE_Texture, APictureReleasedByAResetIsNotReleasedAgain)
{
    KRE_ResourceManager manager;
    KRE_Texture texture;
    StubTexture* stub = new StubTexture(D3DFMT_L8, 1, 1, 4, std::vector<uint8_t>(4));
    texture.PutTexture(&manager, manager.Add(stub, "a"), stub);
    stub->Release();
    manager.GetEntry(0)->pointer = nullptr;
    texture.Free(); // would touch a dead object
    EXPECT_EQ(manager.GetCount(), 0);
}

TEST(KRE_Texture, PutTextureReleasesThePreviousPicture)
{
    const int before = FakeObjectsAlive();
    TextureOverStub t(D3DFMT_L8, 8, 4);
    t.texture.PutTexture(nullptr, -1, new StubTexture(D3DFMT_L8, 1, 1, 4, std::vector<uint8_t>(4)));
    EXPECT_EQ(FakeObjectsAlive(), before + StubTexture::kObjects);
}

TEST(KRE_Texture, RefreshSetsHasAlphaByTheFormatsOfTheSlots)
{
    static const struct {
        const char* what;
        D3DFORMAT format;
        int32_t expected;
    } cases[] = {
        {"A8R8G8B8", D3DFMT_A8R8G8B8, 1}, {"A1R5G5B5", D3DFMT_A1R5G5B5, 1},
        {"DXT1", D3DFMT_DXT1, 1},         {"DXT3", D3DFMT_DXT3, 1},
        {"DXT5", D3DFMT_DXT5, 1},         {"A4R4G4B4", D3DFMT_A4R4G4B4, 0},
        {"X8R8G8B8", D3DFMT_X8R8G8B8, 0}, {"A8L8", D3DFMT_A8L8, 0},
    };
    for (const auto& c : cases) {
        TextureOverStub t(c.format, 4, 4);
        t.texture.Refresh();
        EXPECT_EQ(t.texture.hasAlpha, c.expected) << c.what;
        t.texture.SelectStage(1); // the picture of slot 0 still counts
        EXPECT_EQ(t.texture.hasAlpha, c.expected) << c.what;
    }
}

TEST(KRE_Texture, RefreshOfASequenceHasNoAlpha)
{
    KRE_Texture texture;
    texture.CreateSequence(1, false);
    texture.SelectFrame(0);
    texture.PutTexture(nullptr, -1,
                       new StubTexture(D3DFMT_A8R8G8B8, 4, 2, 16, std::vector<uint8_t>(32)));
    texture.Refresh();
    EXPECT_EQ(texture.hasAlpha, 0);
    EXPECT_EQ(texture.width, 4);
    EXPECT_EQ(texture.height, 2);
    EXPECT_EQ(texture.levelCount, 1);
}

TEST(KRE_Texture, APictureWithHardAlphaHasAlphaByFormatButNotBySamples)
{
    TextureOverStub t(D3DFMT_A8R8G8B8, 4, 4);
    for (size_t i = 3; i < t.stub->surface.bytes.size(); i += 8)
        t.stub->surface.bytes[i] = 0xFF;
    t.texture.Refresh();
    EXPECT_EQ(t.texture.hasAlpha, 1);
    EXPECT_FALSE(t.texture.HasAlpha());
}

TEST(KRE_Texture, RefreshForgetsTheAlphaOfThePreviousPicture)
{
    TextureOverStub t(D3DFMT_A8R8G8B8, 4, 4);
    t.texture.Refresh();
    EXPECT_FALSE(t.texture.HasAlpha());
    std::fill(t.stub->surface.bytes.begin(), t.stub->surface.bytes.end(), uint8_t{0x80});
    EXPECT_FALSE(t.texture.HasAlpha());
    t.texture.Refresh();
    EXPECT_TRUE(t.texture.HasAlpha());
}

TEST(KRE_Texture, RefreshReportsFormatsThatTheEngineDoesNotRead)
{
    TextureOverStub t(D3DFMT_V8U8, 4, 4);
    EXPECT_EQ(ErrorText([&] { t.texture.Refresh(); }), "Unsupported pixel format! (60)");
}

TEST(KRE_Texture, FailuresOfTheDeviceAreErrorsWithTheirNames)
{
    TextureOverStub t(D3DFMT_L8, 4, 4);
    t.stub->surface.lockResult = D3DERR_INVALIDCALL;
    EXPECT_EQ(ErrorText([&] { t.texture.Lock(nullptr, 0); }),
              "LockRect failed: D3DERR_INVALIDCALL");
    t.stub->surface.unlockResult = D3DERR_INVALIDCALL;
    EXPECT_EQ(ErrorText([&] { t.texture.Unlock(); }), "UnlockRect failed: D3DERR_INVALIDCALL");
    t.stub->surface.descResult = D3DERR_DEVICELOST;
    EXPECT_EQ(ErrorText([&] { t.texture.Refresh(); }), "GetDesc failed: D3DERR_DEVICELOST");
    KRE_Texture none;
    EXPECT_EQ(ErrorText([&] { none.Lock(nullptr, 0); }), "LockRect failed: D3DERR_INVALIDCALL");
    EXPECT_EQ(ErrorText([&] { none.Unlock(); }), "UnlockRect failed: D3DERR_INVALIDCALL");
    none.quad = ComPointer<IDirect3DVertexBuffer9>::Adopt(new BrokenVertexBuffer);
    EXPECT_EQ(ErrorText([&] { none.UpdateQuad(); }), " VB Lock failed: D3DERR_OUTOFVIDEOMEMORY");
}

TEST(KRE_Texture, SizeIsThatOfTheChosenLevelAndAtLeastOne)
{
    TextureOverStub t(D3DFMT_L8, 8, 2);
    t.texture.Refresh();
    t.texture.mipShift = 2;
    SIZE size = {};
    t.texture.GetSize(&size);
    EXPECT_EQ(size.cx, 2);
    EXPECT_EQ(size.cy, 1);
    t.texture.mipShift = 4;
    t.texture.GetSize(&size);
    EXPECT_EQ(size.cx, 1);
    EXPECT_EQ(size.cy, 1);
    t.texture.mipShift = 2;
    SIZE full = {99, 99};
    t.texture.GetFullSize(&full);
    EXPECT_EQ(full.cx, 2);
    EXPECT_EQ(full.cy, 1);
}

TEST(KRE_Texture, RectFromPixelsIsInset)
{
    TextureOverStub t(D3DFMT_L8, 256, 256);
    t.texture.Refresh();
    t.texture.SetRectFromPixels(0, 0, 256, 256, false, false);
    EXPECT_EQ(t.texture.originU, 0.25f / 256.0f);
    EXPECT_EQ(t.texture.originV, 0.25f / 256.0f);
    EXPECT_EQ(t.texture.axisAU, 255.98f / 256.0f);
    EXPECT_EQ(t.texture.axisAV, 0.0f);
    EXPECT_EQ(t.texture.axisBU, 0.0f);
    EXPECT_EQ(t.texture.axisBV, 255.98f / 256.0f);
    EXPECT_EQ(t.texture.sourceWidth, 0.0f);
    RECT rect = {};
    t.texture.GetRect(&rect);
    EXPECT_EQ(rect.left, 0);
    EXPECT_EQ(rect.top, 0);
    EXPECT_EQ(rect.right, 256);
    EXPECT_EQ(rect.bottom, 256);
}

TEST(KRE_Texture, RectFromPixelsMayRunBackwards)
{
    TextureOverStub t(D3DFMT_L8, 64, 32);
    t.texture.Refresh();
    // x from 40 to 8: (40 - 0.25) / 64 and (-32 + 0.02) / 64; y from 4 to 4 counts as backwards.
    t.texture.SetRectFromPixels(40, 4, 8, 4, true, false);
    EXPECT_EQ(t.texture.originU, 39.75f / 64.0f);
    EXPECT_EQ(t.texture.axisAU, (-32.0f + 0.02f) / 64.0f);
    EXPECT_EQ(t.texture.originV, 3.75f / 32.0f);
    EXPECT_EQ(t.texture.axisBV, 0.02f / 32.0f);
    EXPECT_EQ(t.texture.sourceWidth, 32.0f);
    EXPECT_EQ(t.texture.sourceHeight, 0.0f);
}

TEST(KRE_Texture, RectFromPixelsSetsTheSizeOnlyIfAsked)
{
    TextureOverStub t(D3DFMT_L8, 64, 32);
    t.texture.Refresh();
    t.texture.SetRectFromPixels(3, 20, 10, 4, true, false); // 7 across; 16 down, from below
    EXPECT_EQ(t.texture.sourceWidth, 7.0f);
    EXPECT_EQ(t.texture.sourceHeight, 16.0f);
    t.texture.SetRectFromPixels(0, 0, 64, 32, false, false);
    EXPECT_EQ(t.texture.sourceWidth, 7.0f);
    EXPECT_EQ(t.texture.sourceHeight, 16.0f);
}

TEST(KRE_Texture, SwapAxesMirrorsTheRectangleOverItsDiagonal)
{
    TextureOverStub t(D3DFMT_L8, 64, 32);
    t.texture.Refresh();
    t.texture.SetRectFromPixels(0, 0, 64, 32, false, true);
    EXPECT_EQ(t.texture.axisAU, 0.0f);
    EXPECT_EQ(t.texture.axisAV, (32.0f - 0.02f) / 32.0f);
    EXPECT_EQ(t.texture.axisBU, (64.0f - 0.02f) / 64.0f);
    EXPECT_EQ(t.texture.axisBV, 0.0f);
}

TEST(KRE_Texture, SlotMatrixBelongsToTheCurrentSlot)
{
    KRE_Texture texture;
    texture.SelectStage(2);
    D3DMATRIX matrix = {};
    matrix._11 = 3.0f;
    texture.SetSlotMatrix(&matrix);
    EXPECT_EQ(texture.slotMatrixSet[2], 1);
    EXPECT_EQ(texture.slotMatrices[2]._11, 3.0f);
    EXPECT_EQ(texture.slotMatrixSet[0], 0);
    texture.SetSlotMatrix(nullptr);
    EXPECT_EQ(texture.slotMatrixSet[2], 0);
}

TEST(KRE_Texture, CopyTakesPicturesSettingsAndTracks)
{
    KRE_ResourceManager manager;
    KRE_Texture texture;
    StubTexture* stub = new StubTexture(D3DFMT_A8R8G8B8, 8, 4, 32, std::vector<uint8_t>(128));
    texture.SelectStage(1);
    texture.PutTexture(&manager, manager.Add(stub, "a"), stub);
    texture.Refresh();
    texture.SetStage(1, StageReflection, 0.5f);
    texture.SetSequenceTiming(0.5f, 2.0f, kSequenceOnce);
    texture.SetRectFromPixels(0, 0, 4, 4, true, false);
    texture.matrixAni[1].constants[KRE_TextMatrixAni::kTileU] = 7.0f;
    texture.slotNames[1].Assign("sky.bmp");
    texture.textureWord = 11;
    texture.textureValue = 12.0f;
    texture.loadOptions = 1;
    texture.clampFlag = 1;
    texture.mipShift = 1;
    texture.currentTime = 1.5f;

    KRE_Texture copy;
    copy.slotNames[0].Assign("old.bmp");
    copy.CopyFrom(texture);
    EXPECT_EQ(copy.current, stub);
    EXPECT_EQ(copy.currentSlot, 1);
    EXPECT_EQ(copy.slotIds[1], texture.slotIds[1]);
    EXPECT_EQ(copy.width, 8);
    EXPECT_EQ(copy.hasAlpha, 1);
    EXPECT_EQ(copy.slots[1].type, 3);
    EXPECT_EQ(copy.slots[1].param, 0.5f);
    EXPECT_EQ(copy.framePeriod, 0.5f);
    EXPECT_EQ(copy.sequenceStart, 2.0f);
    EXPECT_EQ(copy.sequenceMode, 2);
    EXPECT_EQ(copy.axisAU, texture.axisAU);
    EXPECT_EQ(copy.sourceWidth, 4.0f);
    EXPECT_EQ(copy.matrixAni[1].constants[KRE_TextMatrixAni::kTileU], 7.0f);
    EXPECT_STREQ(copy.slotNames[1].c_str(), "sky.bmp");
    EXPECT_TRUE(copy.slotNames[0].IsEmpty());
    EXPECT_EQ(copy.textureWord, 11u);
    EXPECT_EQ(copy.textureValue, 12.0f);
    EXPECT_EQ(copy.loadOptions, 1u);
    EXPECT_EQ(copy.clampFlag, 1);
    EXPECT_EQ(copy.mipShift, 1);
    EXPECT_EQ(copy.currentTime, 1.5f);
    SIZE size = {};
    copy.GetSize(&size);
    EXPECT_EQ(size.cx, 4) << "the second level of 8 by 4";
    EXPECT_EQ(size.cy, 2);
}

TEST(KRE_Texture, CopyTellsWhichPicturesLieInTheDefaultPool)
{
    KRE_ResourceManager manager;
    KRE_Texture texture;
    StubTexture* stub = new StubTexture(D3DFMT_L8, 4, 4, 4, std::vector<uint8_t>(16));
    texture.SelectStage(2);
    texture.PutTexture(&manager, manager.Add(stub, "a"), stub);
    texture.slotDefaultPool[2] = 1;
    KRE_Texture copy;
    copy.CopyFrom(texture);
    for (int32_t slot = 0; slot < KRE_Texture::kSlots; ++slot)
        EXPECT_EQ(copy.slotDefaultPool[slot], slot == 2 ? 1 : 0) << slot;
}

TEST(KRE_Texture, CopyOfASequenceSharesTheFrames)
{
    KRE_ResourceManager manager;
    KRE_Texture texture;
    texture.CreateSequence(2, false);
    StubTexture* stubs[2];
    for (int32_t i = 0; i < 2; ++i) {
        stubs[i] = new StubTexture(D3DFMT_L8, 4, 4, 4, std::vector<uint8_t>(16));
        texture.SelectFrame(i);
        texture.PutTexture(&manager, manager.Add(stubs[i], "f"), stubs[i]);
    }
    KRE_Texture copy;
    copy.CopyFrom(texture);
    ASSERT_EQ(copy.sequenceCount, 2);
    EXPECT_EQ(copy.frameIndex, 1);
    EXPECT_EQ(copy.current, stubs[1]);
    copy.SelectFrame(0);
    EXPECT_EQ(copy.current, stubs[0]);
    EXPECT_EQ(manager.GetEntry(0)->useCount, 2);
    EXPECT_EQ(manager.GetEntry(1)->useCount, 2);
}

TEST(KRE_Texture, QuirkCopyOfOneThatNeverHadAPictureCopiesOnlyTheStoredSlotFields)
{
    KRE_Texture texture;
    texture.slotNames[2].Assign("lost.bmp");
    texture.SetStage(2, StageBump, 0.25f);
    texture.matrixAni[2].constants[KRE_TextMatrixAni::kTileU] = 7.0f;
    texture.SetSequenceTiming(0.5f, 2.0f, kSequenceOnce);
    texture.textureWord = 5;
    texture.loadOptions = 1;
    KRE_Texture copy;
    copy.SetStage(0, StageAdd, 0.5f);
    copy.CopyFrom(texture);
    EXPECT_STREQ(copy.slotNames[2].c_str(), "lost.bmp");
    EXPECT_EQ(copy.slots[2].type, StageBump);
    EXPECT_EQ(copy.slots[2].param, 0.25f);
    EXPECT_EQ(copy.slots[0].type, StageDiffuse) << "as in a new texture";
    EXPECT_EQ(copy.slots[0].param, 1.0f);
    EXPECT_EQ(copy.textureWord, 5u);
    EXPECT_EQ(copy.loadOptions, 1u);
    // Tracks and timing belong to pictures, so they stay as in a new texture.
    EXPECT_EQ(copy.matrixAni[2].constants[KRE_TextMatrixAni::kTileU], 1.0f);
    EXPECT_EQ(copy.framePeriod, 0.2f);
    EXPECT_EQ(copy.manager, nullptr);
}

TEST(KRE_Texture, CopyOfItselfChangesNothing)
{
    TextureOverStub t(D3DFMT_L8, 4, 4);
    t.texture.CopyFrom(t.texture);
    EXPECT_EQ(t.texture.current, t.stub);
}

TEST_F(KRE_TextureTest, TheQuadIsAVertexBufferInSystemMemory)
{
    KRE_Texture texture;
    direct3D->ClearLines();
    texture.SetDevice(gfx->device.Get());
    texture.SetDevice(gfx->device.Get()); // no change
    const std::vector<std::string> lines = direct3D->Recorder()->LinesOf("CreateVertexBuffer");
    ASSERT_EQ(lines.size(), 1u);
    D3DVERTEXBUFFER_DESC desc = {};
    ASSERT_TRUE(texture.quad);
    EXPECT_EQ(texture.quad->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Size, 128u);
    EXPECT_EQ(desc.Usage & D3DUSAGE_WRITEONLY, DWORD{D3DUSAGE_WRITEONLY});
    EXPECT_EQ(desc.FVF, 0x1C4u);
    EXPECT_EQ(desc.Pool, D3DPOOL_SYSTEMMEM);
    texture.SetDevice(nullptr);
    EXPECT_FALSE(texture.quad);
}

TEST_F(KRE_TextureTest, AQuadThatCannotBeMadeIsAnError)
{
    KRE_Texture texture;
    direct3D->FailNext("CreateVertexBuffer", D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(ErrorText([&] { texture.SetDevice(gfx->device.Get()); }),
              "CreateVertexBuffer failed: D3DERR_OUTOFVIDEOMEMORY");
    texture.SetDevice(gfx->device.Get()); // tries again
    EXPECT_TRUE(texture.quad);
}

TEST_F(KRE_TextureTest, TheQuadHasTheCornersOfTheRectangle)
{
    KRE_Texture texture;
    texture.SetDevice(gfx->device.Get());
    // Origin (1, 2), A (4, 8), B (16, 32): origin + B, origin, origin + A + B, origin + A.
    texture.SetRect(1.0f, 2.0f, 4.0f, 8.0f, 16.0f, 32.0f);
    const std::vector<std::pair<float, float>> expected = {
        {17.0f, 34.0f}, {1.0f, 2.0f}, {21.0f, 42.0f}, {5.0f, 10.0f}};
    EXPECT_EQ(QuadOf(texture), expected);
}

TEST_F(KRE_TextureTest, ACopyHasAQuadOfItsOwn)
{
    directory.Write("a.bmp", PlainBmp(4, 4, 0));
    KRE_Texture texture;
    Load(texture, "a.bmp");
    texture.SetRect(1.0f, 2.0f, 4.0f, 8.0f, 16.0f, 32.0f);
    KRE_Texture copy;
    copy.CopyFrom(texture);
    EXPECT_NE(copy.quad.Get(), texture.quad.Get());
    EXPECT_EQ(QuadOf(copy), QuadOf(texture));
}

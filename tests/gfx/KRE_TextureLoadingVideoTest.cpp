#include "tests/gfx/TextureEngine.h"

namespace {

/// Fills each pixel with its column in red, its row in green and the user word in blue.
void DrawGradient(KRE_Surface* surface, uint32_t userWord)
{
    surface->Lock(nullptr, 0);
    for (int32_t y = 0; y < surface->height; ++y) {
        for (int32_t x = 0; x < surface->width; ++x)
            surface->PutPixel(x, y, 0xFF000000 | DWORD(x) << 16 | DWORD(y) << 8 | userWord);
    }
    surface->Unlock();
}

} // namespace

class KRE_TextureLoadingVideoTest : public TextureEngine {
protected:
    KRE_VideoSource& Offer(int32_t source, int32_t width, int32_t height)
    {
        KRE_VideoSource& entry = gfx->videoSources[source];
        entry.update = DrawGradient;
        entry.userWord = 77;
        entry.width = width;
        entry.height = height;
        return entry;
    }
};

TEST_F(KRE_TextureLoadingVideoTest, AreEmptyAtFirst)
{
    for (const KRE_VideoSource& source : gfx->videoSources) {
        EXPECT_EQ(source.update, nullptr);
        EXPECT_EQ(source.userWord, 0u);
        EXPECT_FALSE(source.texture);
        EXPECT_EQ(source.width, 0);
        EXPECT_EQ(source.height, 0);
    }
}

TEST_F(KRE_TextureLoadingVideoTest, LoadMakesATextureOfTheTablesSize)
{
    KRE_VideoSource& entry = Offer(3, 6, 4);
    gfx->caps.TextureCaps &= ~DWORD{D3DPTEXTURECAPS_POW2};
    KRE_Texture texture;
    Load(texture, ">>VIDEO3");
    EXPECT_EQ(texture.videoSource, 3);
    EXPECT_EQ(texture.width, 6);
    EXPECT_EQ(texture.height, 4);
    EXPECT_EQ(texture.levelCount, 1);
    EXPECT_EQ(texture.slotDescs[0].Pool, D3DPOOL_MANAGED);
    EXPECT_EQ(texture.format, gfx->backBufferFormat);
    EXPECT_EQ(texture.current, entry.texture.Get());
    EXPECT_EQ(texture.slotFileInfo[0].isVideo, 1);
    EXPECT_EQ(texture.sourceWidth, 6.0f);
    EXPECT_TRUE(texture.quad);
}

TEST_F(KRE_TextureLoadingVideoTest, TheFormatIsTheTablesOrTheLoads)
{
    Offer(0, 4, 4).format = D3DFMT_R5G6B5;
    Offer(1, 4, 4);
    KRE_Texture texture;
    Load(texture, ">>Video0", -1, D3DFMT_A4R4G4B4);
    EXPECT_EQ(texture.format, D3DFMT_R5G6B5);
    Load(texture, ">>Video1", -1, D3DFMT_A4R4G4B4);
    EXPECT_EQ(texture.format, D3DFMT_A4R4G4B4);
}

TEST_F(KRE_TextureLoadingVideoTest, SizesGoUpToPowersOf2WhereTheDeviceNeedsThem)
{
    Offer(3, 6, 4);
    gfx->caps.TextureCaps |= D3DPTEXTURECAPS_POW2;
    KRE_Texture texture;
    Load(texture, ">>Video3");
    EXPECT_EQ(texture.width, 8);
    EXPECT_EQ(texture.sourceWidth, 6.0f) << "the table's size, not the rounded one";
}

TEST_F(KRE_TextureLoadingVideoTest, TexturesOfOneSourceAreShared)
{
    Offer(3, 4, 4);
    KRE_Texture first;
    KRE_Texture second;
    Load(first, ">>Video3");
    Load(second, ">>video 03");
    EXPECT_EQ(first.current, second.current);
    EXPECT_EQ(second.videoSource, 3);
    EXPECT_EQ(gfx->textureManager.GetCount(), 1);
}

TEST_F(KRE_TextureLoadingVideoTest, ANameWithoutANumberIsSource0)
{
    Offer(0, 4, 4);
    KRE_Texture texture;
    Load(texture, ">>Video");
    EXPECT_EQ(texture.videoSource, 0);
}

TEST_F(KRE_TextureLoadingVideoTest, NumbersOutsideTheTableAreAnError)
{
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, ">>Video16"), "Invalid video source for texture: 16");
    EXPECT_EQ(LoadError(texture, ">>Video-1"), "Invalid video source for texture: -1");
    EXPECT_EQ(LoadError(texture, ">>Video99999999999"),
              "Invalid video source for texture: 2147483647");
    EXPECT_EQ(texture.videoSource, -1);
}

TEST_F(KRE_TextureLoadingVideoTest, AnEntryThatIsNotSetUpIsAnError)
{
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, ">>Video3"), "Invalid video source specifications for source 3");
    Offer(3, 4, 0);
    EXPECT_EQ(LoadError(texture, ">>Video3"), "Invalid video source specifications for source 3");
}

TEST_F(KRE_TextureLoadingVideoTest, ATextureThatCannotBeMadeIsAnError)
{
    Offer(3, 4, 4);
    direct3D->FailNext("CreateTexture", D3DERR_OUTOFVIDEOMEMORY);
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, ">>Video3"),
              "CreateTexture for video source failed: D3DERR_OUTOFVIDEOMEMORY ");
}

TEST_F(KRE_TextureLoadingVideoTest, AShorterNameIsAFile)
{
    KRE_Texture texture;
    EXPECT_EQ(LoadError(texture, ">>Vide"), "Can not open file >>Vide");
}

TEST_F(KRE_TextureLoadingVideoTest, UpdateLetsTheCallbackFillTheTexture)
{
    Offer(3, 4, 4);
    KRE_Texture texture;
    Load(texture, ">>Video3");
    gfx->UpdateVideoSource(3);
    EXPECT_EQ(PixelOf(texture, 2, 1) & 0xFFFFFF, 0x02014Du); // 77 is 0x4D
    EXPECT_EQ(PixelOf(texture, 0, 3) & 0xFFFFFF, 0x00034Du);
}

TEST_F(KRE_TextureLoadingVideoTest, UpdateOfASourceThatIsNotSetUpIsAnError)
{
    EXPECT_EQ(ErrorText([&] { gfx->UpdateVideoSource(16); }),
              "Invalid video source nurber in UpdateVideoSource(): 16");
    EXPECT_EQ(ErrorText([&] { gfx->UpdateVideoSource(-1); }),
              "Invalid video source nurber in UpdateVideoSource(): -1");
    EXPECT_EQ(ErrorText([&] { gfx->UpdateVideoSource(2); }),
              "No video source update function specified for source 2");
    Offer(2, 4, 4);
    EXPECT_EQ(ErrorText([&] { gfx->UpdateVideoSource(2); }),
              "GetSurfaceLevel of video source failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_TextureLoadingVideoTest, TheTableKeepsItsTextureWhenTheLastUserGoes)
{
    Offer(3, 4, 4);
    {
        KRE_Texture texture;
        Load(texture, ">>Video3");
    }
    EXPECT_EQ(gfx->textureManager.GetCount(), 0);
    gfx->UpdateVideoSource(3); // touches a live texture
}

TEST_F(KRE_TextureLoadingVideoTest, AnotherPictureInTheSlotEndsTheSource)
{
    Offer(3, 4, 4);
    directory.Write("a.bmp", PlainBmp(4, 4, 0));
    KRE_Texture texture;
    Load(texture, ">>Video3");
    Load(texture, "a.bmp");
    EXPECT_EQ(texture.videoSource, -1);
    EXPECT_EQ(texture.slotFileInfo[0].isVideo, 0);
}

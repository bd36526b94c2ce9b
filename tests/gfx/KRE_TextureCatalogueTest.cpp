#include "gfx/KRE_TextureCatalogue.h"

#include "tests/gfx/TextureEngine.h"

#include "tests/support/SolidDds.h"

using KRE_TextureCatalogueTest = TextureEngine;

TEST_F(KRE_TextureCatalogueTest, LoadsATextureOnFirstUse)
{
    directory.Write("sky.bmp", PlainBmp(8, 4, 0x123456));
    EXPECT_TRUE(gfx->catalogue.AddTexture("Sky", "sky.bmp", 0, true));
    EXPECT_EQ(gfx->textureManager.GetCount(), 0);
    KRE_Texture* texture = gfx->catalogue.GetTexture("Sky");
    ASSERT_NE(texture, nullptr);
    EXPECT_EQ(PixelOf(*texture, 0, 0) & 0xFFFFFF, 0x123456u);
    EXPECT_EQ(texture->levelCount, 4); // the full chain: 8, 4, 2, 1
    EXPECT_EQ(gfx->catalogue.GetTexture("Sky"), texture);
    EXPECT_EQ(gfx->textureManager.GetCount(), 1);
}

TEST_F(KRE_TextureCatalogueTest, ANameWithoutAnEntryGivesNull)
{
    EXPECT_EQ(gfx->catalogue.GetTexture("nothing"), nullptr);
}

TEST_F(KRE_TextureCatalogueTest, ADuplicateNameWarnsAndKeepsTheFirst)
{
    directory.Write("one.bmp", PlainBmp(4, 4, 0x111111));
    directory.Write("two.bmp", PlainBmp(4, 4, 0x222222));
    EXPECT_TRUE(gfx->catalogue.AddTexture("Sky", "one.bmp", 0, true));
    EXPECT_FALSE(gfx->catalogue.AddTexture("Sky", "two.bmp", 0, true));
    EXPECT_EQ(Warnings(), "Duplicate entry 'Sky' in file 'two.bmp'");
    EXPECT_EQ(PixelOf(*gfx->catalogue.GetTexture("Sky"), 0, 0) & 0xFFFFFF, 0x111111u);
}

TEST_F(KRE_TextureCatalogueTest, AMissingFileWarnsAndTurnsGrey)
{
    EXPECT_TRUE(gfx->catalogue.AddTexture("Sky", "gone.bmp", 0, true));
    EXPECT_EQ(Warnings(), "Texture file not found: 'gone.bmp'");
    KRE_Texture* texture = gfx->catalogue.GetTexture("Sky");
    ASSERT_NE(texture, nullptr);
    EXPECT_EQ(texture->width, 4);
    EXPECT_EQ(PixelOf(*texture, 2, 2), 0xFF969696u);
}

TEST_F(KRE_TextureCatalogueTest, FindsFilesInTheDefaultTexturePath)
{
    directory.Write("maps/sky.bmp", PlainBmp(4, 4, 0x111111));
    gfx->SetDefaultTexturePath("maps");
    gfx->catalogue.AddTexture("Sky", "C:\\work\\sky.bmp", 0, true);
    EXPECT_EQ(PixelOf(*gfx->catalogue.GetTexture("Sky"), 0, 0) & 0xFFFFFF, 0x111111u);
}

TEST_F(KRE_TextureCatalogueTest, ColorKeyAndStretchGoToTheLoad)
{
    directory.Write("odd.bmp", Bmp24(12, 1, std::vector<DWORD>(12, 0xFF00FF)));
    gfx->SetTextureCompression(1, 0);
    gfx->catalogue.AddTexture("stretched", "odd.bmp", 0, true);
    EXPECT_EQ(gfx->catalogue.GetTexture("stretched")->width, 16);
    gfx->catalogue.Free();
    gfx->catalogue.AddTexture("kept", "odd.bmp", 0, false);
    EXPECT_EQ(gfx->catalogue.GetTexture("kept")->width, 12);
    gfx->catalogue.Free();
    gfx->SetTextureCompression(0, 0);
    gfx->catalogue.AddTexture("keyed", "odd.bmp", 0xFFFF00FF, true);
    EXPECT_EQ(PixelOf(*gfx->catalogue.GetTexture("keyed"), 3, 0) >> 24, 0u);
}

TEST_F(KRE_TextureCatalogueTest, OnlyAStretchedEntryIsResampled)
{
    directory.Write("sky.bmp", PlainBmp(8, 4, 0x123456));
    gfx->catalogue.AddTexture("stretched", "sky.bmp", 0, true);
    gfx->catalogue.GetTexture("stretched");
    EXPECT_EQ(LastCreation().filter, DWORD{D3DX_FILTER_LINEAR});
    gfx->catalogue.Free();
    gfx->catalogue.AddTexture("kept", "sky.bmp", 0, false);
    gfx->catalogue.GetTexture("kept");
    EXPECT_EQ(LastCreation().filter, DWORD{D3DX_FILTER_NONE});
}

TEST_F(KRE_TextureCatalogueTest, AFileThatIsNotAPictureIsAnErrorEachTime)
{
    directory.Write("bad.bmp", "no picture");
    gfx->catalogue.AddTexture("Sky", "bad.bmp", 0, true);
    EXPECT_NE(ErrorText([&] { gfx->catalogue.GetTexture("Sky"); }), "");
    EXPECT_NE(ErrorText([&] { gfx->catalogue.GetTexture("Sky"); }), "");
}

TEST_F(KRE_TextureCatalogueTest, EffectsGetAllOfACubeOrAVolume)
{
    directory.Write("sky.dds", CubeDds({1, 2, 3, 4, 5, 6}));
    directory.Write("smoke.dds", VolumeDds({7, 8, 9}));
    gfx->catalogue.AddTexture("Sky", "sky.dds", 0, true);
    gfx->catalogue.AddTexture("Smoke", "smoke.dds", 0, true);
    IDirect3DBaseTexture9* sky = nullptr;
    IDirect3DBaseTexture9* smoke = nullptr;
    ASSERT_TRUE(gfx->catalogue.GetBaseTexture("Sky", &sky));
    ASSERT_TRUE(gfx->catalogue.GetBaseTexture("Smoke", &smoke));
    ASSERT_EQ(sky->GetType(), D3DRTYPE_CUBETEXTURE);
    ASSERT_EQ(smoke->GetType(), D3DRTYPE_VOLUMETEXTURE);
    D3DLOCKED_RECT face = {};
    auto* cube = static_cast<IDirect3DCubeTexture9*>(sky);
    ASSERT_EQ(cube->LockRect(D3DCUBEMAP_FACE_NEGATIVE_Z, 0, &face, nullptr, D3DLOCK_READONLY),
              D3D_OK);
    EXPECT_EQ(*static_cast<const uint32_t*>(face.pBits), 6u);
    ASSERT_EQ(cube->UnlockRect(D3DCUBEMAP_FACE_NEGATIVE_Z, 0), D3D_OK);
    D3DVOLUME_DESC desc = {};
    ASSERT_EQ(static_cast<IDirect3DVolumeTexture9*>(smoke)->GetLevelDesc(0, &desc), D3D_OK);
    EXPECT_EQ(desc.Depth, 3u);
    IDirect3DBaseTexture9* again = nullptr;
    EXPECT_TRUE(gfx->catalogue.GetBaseTexture("Sky", &again));
    EXPECT_EQ(again, sky);
    EXPECT_EQ(gfx->textureManager.GetCount(), 0) << "scenes do not share them";
}

TEST_F(KRE_TextureCatalogueTest, EffectsGetPicturesLikeEverybody)
{
    directory.Write("sky.bmp", PlainBmp(8, 4, 0x123456));
    gfx->catalogue.AddTexture("Sky", "sky.bmp", 0, true);
    gfx->catalogue.AddTexture("Gone", "gone.dds", 0, true);
    IDirect3DBaseTexture9* texture = nullptr;
    ASSERT_TRUE(gfx->catalogue.GetBaseTexture("Sky", &texture));
    EXPECT_EQ(texture, gfx->catalogue.GetTexture("Sky")->current);
    ASSERT_TRUE(gfx->catalogue.GetBaseTexture("Gone", &texture));
    EXPECT_EQ(texture, gfx->catalogue.GetTexture("Gone")->current) << "the grey one";
    EXPECT_FALSE(gfx->catalogue.GetBaseTexture("nothing", &texture));
}

TEST_F(KRE_TextureCatalogueTest, MapsOfCubeFilesStayFlat)
{
    directory.Write("sky.dds", CubeDds({1, 2, 3, 4, 5, 6}));
    gfx->catalogue.AddTexture("Sky", "sky.dds", 0, true);
    KRE_Texture* map = gfx->catalogue.GetTexture("Sky");
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->current->GetType(), D3DRTYPE_TEXTURE);
    EXPECT_EQ(PixelOf(*map, 0, 0), 1u) << "the first face";
}

TEST_F(KRE_TextureCatalogueTest, DamagedCubesAndVolumesAreErrors)
{
    for (const std::string& whole : {CubeDds({1, 2, 3, 4, 5, 6}), VolumeDds({7, 8, 9})}) {
        directory.Write("cut.dds", whole.substr(0, whole.size() - 1));
        gfx->catalogue.AddTexture("Sky", "cut.dds", 0, true);
        IDirect3DBaseTexture9* texture = nullptr;
        for (int i = 0; i < 2; ++i)
            EXPECT_NE(ErrorText([&] {
                          gfx->catalogue.GetBaseTexture("Sky", &texture);
                      }).find("failed: D3DXERR_INVALIDDATA (file:"),
                      std::string::npos);
        EXPECT_EQ(texture, nullptr);
        gfx->catalogue.Free();
    }
}

TEST_F(KRE_TextureCatalogueTest, CompressionAppliesToCubesToo)
{
    directory.Write("sky.dds", CubeDds({1, 2, 3, 4, 5, 6}));
    gfx->SetTextureCompression(2, 0);
    gfx->catalogue.AddTexture("Sky", "sky.dds", 0, true);
    IDirect3DBaseTexture9* texture = nullptr;
    ASSERT_TRUE(gfx->catalogue.GetBaseTexture("Sky", &texture));
    D3DSURFACE_DESC desc = {};
    ASSERT_EQ(static_cast<IDirect3DCubeTexture9*>(texture)->GetLevelDesc(0, &desc), D3D_OK);
    EXPECT_EQ(desc.Format, D3DFMT_DXT5);
}

TEST_F(KRE_TextureCatalogueTest, FreeForgetsEntriesAndReleasesTextures)
{
    directory.Write("sky.bmp", PlainBmp(8, 4, 0x123456));
    gfx->catalogue.AddTexture("Sky", "sky.bmp", 0, true);
    gfx->catalogue.GetTexture("Sky");
    gfx->catalogue.Free();
    EXPECT_EQ(gfx->catalogue.GetTexture("Sky"), nullptr);
    EXPECT_EQ(gfx->textureManager.GetCount(), 0);
    EXPECT_TRUE(gfx->catalogue.AddTexture("Sky", "sky.bmp", 0, true));
}

TEST_F(KRE_TextureCatalogueTest, NamesThatTheTreeCannotHoldAreErrors)
{
    EXPECT_EQ(ErrorText([&] { gfx->catalogue.AddTexture("", "a.bmp", 0, true); }),
              "Empty name string");
    EXPECT_NE(ErrorText([&] { gfx->catalogue.AddTexture("\xE4", "a.bmp", 0, true); }), "");
}
